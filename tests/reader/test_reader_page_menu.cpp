#include "reader_desk.h"

#include <tests/ofd/document/document_export.h>
#include <tests/support/host_doubles.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>

#include <reader/find_bar.h>
#include <reader/menus.h>
#include <reader/properties_dialog.h>

#include <frame/document/memory_document.h>
#include <frame/view/context_menu.h>
#include <frame/view/doc_view.h>

#include <QAbstractScrollArea>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTimer>
#include <QtTest>

namespace {

// The window with one page of text, and a hand on the right mouse button.
class PageMenuDesk
{
public:
    PageMenuDesk()
        : desk(false)
    {
        const auto document =
            MemoryDocument::FromText("page 210 297\n  layer 1 Text\n  text 20 30 The contract begins\n");
        const QString path = desk.Folder() + "/page.ofd";
        ExportDocument(*document, path);
        if (!desk.Window()->OpenFile(path) || !QTest::qWaitForWindowActive(desk.Window()))
            QTest::qFail("the file does not open", __FILE__, __LINE__);
    }
    G_DocView* View() const { return desk.View(); }
    void Choose(const char* tool) const { View()->SetCurrentToolHandler(View()->ToolHandlerByName(tool)); }
    // Right-clicks the page and clicks the entry of that text, or closes the menu for an empty text. False when no menu
    // came up or it has no such entry that is enabled.
    bool RightClick(const QString& entry = QString())
    {
        bool isChosen = false;
        shown.clear();
        enabled.clear();
        QTimer::singleShot(0, desk.Window(), [this, entry, &isChosen] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (!menu)
                return;
            Screens::SaveScreen(menu, "page-menu");
            QAction* wanted = nullptr;
            for (QAction* action : menu->actions()) {
                if (action->isSeparator())
                    continue;
                shown << action->text();
                if (action->isEnabled())
                    enabled << action->text();
                if (action->text() == entry && action->isEnabled())
                    wanted = action;
            }
            isChosen = wanted || entry.isEmpty();
            if (wanted)
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(wanted).center());
            else
                menu->close();
        });
        QWidget* viewport = qobject_cast<QAbstractScrollArea*>(View()->Widget())->viewport();
        const QPoint place = viewport->rect().center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, viewport->mapToGlobal(place));
        QApplication::sendEvent(viewport, &event);
        QCoreApplication::processEvents();
        return isChosen;
    }

    ReaderDesk desk;
    QStringList shown, enabled; // of the last menu
};

const QStringList allEntries{"Copy", "Select All", QString::fromUtf8("Find…"), QString::fromUtf8("Properties…")};

} // namespace

// The menu of a right click on a page.
class TestReaderPageMenu : public QObject
{
    Q_OBJECT
private slots:
    void bothToolsOfferTheSameAndCopyOnlyWithASelection_data() { AddTools(); }
    void bothToolsOfferTheSameAndCopyOnlyWithASelection();
    void eachEntryDoesWhatItSays_data() { AddTools(); }
    void eachEntryDoesWhatItSays();
    void aRightClickKeepsTheSelection();
    void theMenuIsThatOfTheToolAndOtherToolsHaveNone();
    void closingTheTabIsRefusedWhileTheMenuIsUp();

private:
    static void AddTools()
    {
        QTest::addColumn<QByteArray>("tool");
        QTest::newRow("hand") << QByteArray("t_handtool");
        QTest::newRow("text") << QByteArray("t_textselect");
    }
};

void TestReaderPageMenu::bothToolsOfferTheSameAndCopyOnlyWithASelection()
{
    QFETCH(QByteArray, tool);
    PageMenuDesk desk;
    desk.Choose(tool);
    QVERIFY(desk.RightClick());
    QCOMPARE(desk.shown, allEntries);
    QCOMPARE(desk.enabled, allEntries.mid(1));
    desk.View()->SelectAllText();
    QVERIFY(desk.RightClick());
    QCOMPARE(desk.enabled, allEntries);
}

void TestReaderPageMenu::eachEntryDoesWhatItSays()
{
    QFETCH(QByteArray, tool);
    PageMenuDesk desk;
    desk.Choose(tool);
    QVERIFY(!desk.RightClick("Copy"));
    QVERIFY(desk.RightClick("Select All"));
    QCOMPARE(desk.View()->SelectedText(), QString("The contract begins"));
    QGuiApplication::clipboard()->clear();
    QVERIFY(desk.RightClick("Copy"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("The contract begins"));
    QVERIFY(desk.RightClick(allEntries.at(2)));
    QVERIFY(desk.desk.Window()->findChild<FindBar*>()->isVisible());
    QVERIFY(desk.RightClick(allEntries.at(3)));
    QVERIFY(desk.desk.Window()->findChild<PropertiesDialog*>()->isVisible());
}

void TestReaderPageMenu::aRightClickKeepsTheSelection()
{
    PageMenuDesk desk;
    desk.Choose("t_textselect");
    desk.View()->SelectAllText();
    QWidget* viewport = qobject_cast<QAbstractScrollArea*>(desk.View()->Widget())->viewport();
    QTest::mousePress(viewport, Qt::RightButton);
    QVERIFY(desk.RightClick());
    QTest::mouseRelease(viewport, Qt::RightButton);
    QCOMPARE(desk.View()->SelectedText(), QString("The contract begins"));
}

void TestReaderPageMenu::theMenuIsThatOfTheToolAndOtherToolsHaveNone()
{
    DeskSignatureTool prototype;
    prototype.RegisterHandlerToGlobal();
    PageMenuDesk desk;
    auto owned = std::make_unique<DeskMenu>(desk.desk.Context());
    DeskMenu* menu = owned.get();
    FillContextMenus(menu);
    desk.desk.Context()->SetContextMenu(std::move(owned));
    for (const char* tool : {"t_handtool", "t_textselect", "d_electronicsignature"}) {
        desk.Choose(tool);
        desk.RightClick();
        QCOMPARE(menu->shown.value(menu->shown.size() - 1), QString(tool));
    }
    QVERIFY(menu->Entries("d_electronicsignature").isEmpty()); // for which nothing is shown
}

void TestReaderPageMenu::closingTheTabIsRefusedWhileTheMenuIsUp()
{
    PageMenuDesk desk;
    bool isRefused = false;
    QTimer::singleShot(0, desk.desk.Window(), [&] { isRefused = !desk.desk.Window()->CloseTab(0); });
    QVERIFY(desk.RightClick());
    QVERIFY(isRefused);
    QCOMPARE(desk.desk.Window()->TabCount(), 1);
    QVERIFY(desk.desk.Window()->CloseTab(0));
}

TETO_TEST_MAIN(TestReaderPageMenu)
#include "test_reader_page_menu.moc"
