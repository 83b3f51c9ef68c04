#include "reader_desk.h"

#include <tests/support/test_main.h>

#include <reader/navigation_bar.h>
#include <reader/recent_files.h>

#include <frame/document/ig_document.h>
#include <frame/navigation/navigation_page.h>
#include <frame/operation/registry.h>
#include <frame/view/doc_view.h>

#include <QFile>
#include <QMessageBox>
#include <QMimeData>
#include <QTabBar>
#include <QToolButton>
#include <QtTest>

namespace {

constexpr char bookmarkPane[] = "ui.navis.bookmark";

} // namespace

// The window around documents: panes, navigation, host operations, what happens to files that are none.
class TestReaderWindow : public QObject
{
    Q_OBJECT
private slots:
    void openingASampleMakesItsPanesAfterTheFirstPage();
    void navigationButtonsFollowThePositionsOfThePages();
    void eNavigationOpensButNeverToggles();
    void eNavigationRefusesAnUnknownPane();
    void theNavigationButtonClosesItsPaneAgain();
    void aFileThatIsNoDocumentGivesAMessageAndTheWindowLivesOn_data();
    void aFileThatIsNoDocumentGivesAMessageAndTheWindowLivesOn();
    void openingAnOpenFileActivatesItsTab();
    void fOpenOpensReadOnly();
    void annotationsAreShownAndHiddenAsAskedOrTurnedOver();
    void droppedFilesAreOpened();
    void withoutTheModuleTheReaderWorksWithoutPanes();
    void aModuleThatIsNoPluginIsRefusedWithAReason();
    void recentFilesKeepTheNewestFirstAndAtMostTen();
};

void TestReaderWindow::openingASampleMakesItsPanesAfterTheFirstPage()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    QVERIFY(desk.WaitForPanes());
    QVERIFY(desk.Window()->ShowPane(bookmarkPane, true));
    QCOMPARE(desk.Window()->CurrentPaneId(), QString(bookmarkPane));
}

void TestReaderWindow::navigationButtonsFollowThePositionsOfThePages()
{
    ReaderDesk desk;
    const auto* bar = desk.Window()->findChild<NavigationBar*>();
    QVERIFY(bar);
    int last = -1;
    const QList<QString> ids = bar->PaneIds();
    QVERIFY(ids.contains(bookmarkPane));
    for (const QString& id : ids) {
        QVERIFY(bar->PageOf(id)->Position() > last);
        last = bar->PageOf(id)->Position();
    }
    const QList<QToolButton*> buttons = bar->findChildren<QToolButton*>();
    QCOMPARE(buttons.size(), ids.size());
    for (const QToolButton* button : buttons) {
        QCOMPARE(button->focusPolicy(), Qt::NoFocus);
        QVERIFY(!button->accessibleName().isEmpty());
        QVERIFY(!button->icon().isNull());
    }
}

void TestReaderWindow::eNavigationOpensButNeverToggles()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    for (int i = 0; i < 2; ++i) {
        QVERIFY(desk.Context()->PerformOperation("vn_bookmark", QString()));
        QCOMPARE(desk.Window()->CurrentPaneId(), QString(bookmarkPane));
    }
}

void TestReaderWindow::eNavigationRefusesAnUnknownPane()
{
    ReaderDesk desk;
    G_Operation* operation = desk.Context()->CreateOperationByName("e_navigation", QString());
    QVERIFY(operation);
    operation->Params->Add("navi_params", R"({"navi_open_status":"1","navi_btn_checked":"ui.navis.nothing"})");
    QVERIFY(!operation->PerformAction());
    operation->Params->Add("navi_params", "no json");
    QVERIFY(!operation->PerformAction());
    operation->DeleteLater();
}

void TestReaderWindow::theNavigationButtonClosesItsPaneAgain()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    auto* button = desk.Window()->findChild<NavigationBar*>()->findChild<QToolButton*>();
    QVERIFY(button);
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(!desk.Window()->CurrentPaneId().isEmpty());
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(desk.Window()->CurrentPaneId().isEmpty());
}

void TestReaderWindow::aFileThatIsNoDocumentGivesAMessageAndTheWindowLivesOn_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("this is no document");
    QTest::newRow("zip head only") << QByteArray("PK\x03\x04 and nothing that belongs to it");
}

void TestReaderWindow::aFileThatIsNoDocumentGivesAMessageAndTheWindowLivesOn()
{
    QFETCH(QByteArray, content);
    ReaderDesk desk;
    const QString path = desk.Folder() + "/strange.ofd";
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    desk.Context()->Answer(QMessageBox::Ok);
    QVERIFY(!desk.Window()->OpenFile(path));
    QCOMPARE(desk.Context()->Texts().size(), 1);
    QVERIFY(desk.Context()->Texts().first().contains("strange.ofd"));
    QCOMPARE(desk.Window()->TabCount(), 0);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);
    QVERIFY(desk.Window()->OpenFile(desk.Sample("letter.ofd")));
}

void TestReaderWindow::openingAnOpenFileActivatesItsTab()
{
    ReaderDesk desk;
    const QString tour = desk.Sample("tour.ofd");
    QVERIFY(desk.Window()->OpenFile(tour));
    QVERIFY(desk.Window()->OpenFile(desk.Sample("letter.ofd")));
    QCOMPARE(desk.Window()->TabCount(), 2);
    QVERIFY(desk.Window()->OpenFile(tour));
    QCOMPARE(desk.Window()->TabCount(), 2);
    QCOMPARE(desk.Window()->CurrentTab()->Path(), tour);
}

void TestReaderWindow::fOpenOpensReadOnly()
{
    ReaderDesk desk;
    G_Operation* operation = desk.Context()->CreateOperationByName("f_open", QString());
    operation->Params->Add("filename", desk.Sample("tour.ofd"));
    operation->Params->Add("readonly", true);
    QVERIFY(operation->PerformAction());
    operation->DeleteLater();
    QVERIFY(desk.View()->GDocument()->IsReadOnly());
    QVERIFY(!desk.Context()->PerformOperation("d_addbookmark", QString()));
}

void TestReaderWindow::annotationsAreShownAndHiddenAsAskedOrTurnedOver()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    const auto show = [&desk](const QVariant& isVisible) {
        G_Operation* operation = desk.Context()->CreateOperationByName("t_showannot", QString());
        if (isVisible.isValid())
            operation->Params->Add("isVisible", isVisible.toBool());
        const bool isDone = operation->PerformAction();
        operation->DeleteLater();
        return isDone && desk.View()->AnnotStatus();
    };
    QVERIFY(show(true));
    QVERIFY(show(true)); // asked for again: they stay
    QVERIFY(!show(false));
    QVERIFY(!show(false));
    QVERIFY(show({}));
    QVERIFY(!show({}));
}

void TestReaderWindow::droppedFilesAreOpened()
{
    ReaderDesk desk;
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(desk.Sample("tour.ofd")), QUrl::fromLocalFile(desk.Sample("letter.ofd"))});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(desk.Window(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(desk.Window(), &drop);
    QCOMPARE(desk.Window()->TabCount(), 2);
}

void TestReaderWindow::withoutTheModuleTheReaderWorksWithoutPanes()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    QVERIFY(Core::G_NavigationPage::allNaviPages().isEmpty());
    QVERIFY(!desk.Window()->ShowPane(bookmarkPane, true));
    QVERIFY(!desk.Context()->PerformOperation("d_addbookmark", QString()));
    QVERIFY(desk.Window()->CloseTab(0));
}

void TestReaderWindow::aModuleThatIsNoPluginIsRefusedWithAReason()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("libtetobaisfla.so");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("no module");
    file.close();
    qputenv("TETO_PLUGIN", path.toUtf8());
    PluginHost host;
    const bool isLoaded = host.Load();
    qunsetenv("TETO_PLUGIN");
    QVERIFY(!isLoaded);
    QVERIFY(!host.Error().isEmpty());
    QVERIFY(!host.Plugin());
}

void TestReaderWindow::recentFilesKeepTheNewestFirstAndAtMostTen()
{
    ReaderDesk desk(false);
    RecentFiles recent;
    for (int i = 0; i < 12; ++i)
        recent.Add(QStringLiteral("/files/%1.ofd").arg(i));
    recent.Add("/files/5.ofd");
    QCOMPARE(recent.Paths().size(), 10);
    QCOMPARE(recent.Paths().first(), QString("/files/5.ofd"));
    QCOMPARE(recent.Paths().count("/files/5.ofd"), 1);
    recent.Remove("/files/5.ofd");
    QVERIFY(!recent.Paths().contains("/files/5.ofd"));
}

TETO_TEST_MAIN(TestReaderWindow)
#include "test_reader_window.moc"
