#include "reader_desk.h"

#include <tests/ofd/document/sample_files.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>

#include <frame/document/ig_document.h>
#include <frame/utils/safe_process.h>
#include <frame/view/doc_view.h>
#include <frame/view/status_note.h>

#include <QAbstractScrollArea>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTimer>
#include <QUndoStack>
#include <QtTest>

namespace {

constexpr int ok = 1024;

const QString copyAddress = QStringLiteral("Copy Link Address");
const QString openLink = QStringLiteral("Open Link");

// The window with one of the samples of links, and hands on the mouse.
class LinkDesk
{
public:
    explicit LinkDesk(const QString& sample)
        : desk(false)
    {
        Utils::Safe::OV_SafeProcess::SetOpener([this](const QUrl& url) {
            opened.append(url.toString());
            return true;
        });
        path = desk.Folder() + '/' + sample + ".ofd";
        if (!QFile::copy(SamplePath("features/" + sample), path) || !desk.Window()->OpenFile(path) ||
            !QTest::qWaitForWindowActive(desk.Window()))
            QTest::qFail("the file does not open", __FILE__, __LINE__);
        View()->FinishRendering();
    }
    ~LinkDesk() { Utils::Safe::OV_SafeProcess::SetOpener({}); }
    G_DocView* View() const { return desk.View(); }
    QWidget* Viewport() const { return qobject_cast<QAbstractScrollArea*>(View()->Widget())->viewport(); }
    // A point of the viewport over a place of the first page, in mm.
    QPoint At(float x, float y) const
    {
        const CCA_Point scene = View()->ScenePointFromDocPoint({x, y}, 0);
        return QPoint(scene.x, scene.y) - View()->VisibleSceneRect().topLeft();
    }
    void Click(float x, float y) const
    {
        QTest::mouseClick(Viewport(), Qt::LeftButton, {}, At(x, y));
        QCoreApplication::processEvents();
    }
    // Right-clicks and chooses the entry of that text, or none; the texts of the menu that came up.
    QStringList RightClick(float x, float y, const QString& entry = QString())
    {
        QStringList shown;
        QTimer::singleShot(0, desk.Window(), [&shown, entry] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (!menu)
                return;
            QAction* wanted = nullptr;
            for (QAction* action : menu->actions()) {
                if (!action->isSeparator())
                    shown << action->text();
                if (action->text() == entry)
                    wanted = action;
            }
            Screens::SaveScreen(menu, "link-menu");
            if (wanted)
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(wanted).center());
            else
                menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, At(x, y), Viewport()->mapToGlobal(At(x, y)));
        QApplication::sendEvent(Viewport(), &event);
        QCoreApplication::processEvents();
        return shown;
    }
    QString Note() const
    {
        const auto* note = View()->Widget()->findChild<G_StatusNote*>();
        return note ? note->text() : QString();
    }

    ReaderDesk desk;
    QString path;
    QStringList opened;
};

} // namespace

// Links in the window: clicks, the menu of the page, attachments, and what happens on opening a file.
class TestReaderLinks : public QObject
{
    Q_OBJECT
private slots:
    void aClickGoesWhereTheLinkLeads_data();
    void aClickGoesWhereTheLinkLeads();
    void anAddressIsAskedForAndOpened();
    void theMenuOnALinkOpensItAndCopiesItsAddress();
    void theMenuOfALinkWithoutAnAddressOnlyOpensIt();
    void theMenuBesideALinkIsAsEver();
    void anAttachmentIsSavedWhereTheUserWants();
    void anAttachmentNeverGoesOverAnOpenDocument();
    void soundsAndMoviesAreToldInOneNote();
    void aDocumentOpensWhereItWants();
    void aDocumentThatWasLookedAtBeforeOpensWhereItWasLeft();
    void aDocumentOpensNoAddressByItself();
};

void TestReaderLinks::aClickGoesWhereTheLinkLeads_data()
{
    QTest::addColumn<QString>("sample");
    QTest::addColumn<QPointF>("place");
    QTest::newRow("behind children") << "link_behind_children" << QPointF(50, 110);
    QTest::newRow("bookmark") << "link_to_bookmark" << QPointF(50, 110);
    QTest::newRow("region") << "link_region" << QPointF(25, 105);
    QTest::newRow("turned composite") << "link_in_turned_composite" << QPointF(30, 150);
    QTest::newRow("empty boundary") << "link_on_empty_boundary" << QPointF(24, 106);
    QTest::newRow("page") << "link_of_page" << QPointF(50, 110);
}

void TestReaderLinks::aClickGoesWhereTheLinkLeads()
{
    QFETCH(QString, sample);
    QFETCH(QPointF, place);
    LinkDesk desk(sample);
    desk.View()->SetZoom(60, false);
    desk.View()->GoToPage(desk.View(), 0, CCA_GRect(), false);
    desk.View()->FinishRendering();
    QVERIFY(desk.Viewport()->rect().contains(desk.At(float(place.x()), float(place.y()))));
    desk.Click(float(place.x()), float(place.y()));
    QTRY_COMPARE(desk.View()->CurrentPageIndex(), 1);
    QVERIFY(!desk.desk.Window()->CurrentTab()->IsDirty());
    QCOMPARE(desk.View()->UndoStack()->count(), 0);
}

void TestReaderLinks::anAddressIsAskedForAndOpened()
{
    LinkDesk desk(QStringLiteral("link_annotation_hidden"));
    desk.desk.Context()->Answer(ok);
    desk.Click(50, 110);
    QTRY_COMPARE(desk.opened, QStringList{"https://example.org/"});
    QVERIFY(desk.desk.Context()->Texts().last().contains("https://example.org/"));
}

void TestReaderLinks::theMenuOnALinkOpensItAndCopiesItsAddress()
{
    LinkDesk desk(QStringLiteral("link_uri_with_base"));
    const QStringList shown = desk.RightClick(50, 110, copyAddress);
    QCOMPARE(shown.mid(0, 2), (QStringList{openLink, copyAddress}));
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("https://example.org/guide/one.html"));
    QVERIFY(desk.opened.isEmpty());
    desk.desk.Context()->Answer(ok);
    desk.RightClick(50, 110, openLink);
    QCOMPARE(desk.opened, QStringList{"https://example.org/guide/one.html"});
}

void TestReaderLinks::theMenuOfALinkWithoutAnAddressOnlyOpensIt()
{
    LinkDesk desk(QStringLiteral("link_behind_children"));
    const QStringList shown = desk.RightClick(50, 110, openLink);
    QVERIFY(shown.contains(openLink) && !shown.contains(copyAddress));
    QCOMPARE(desk.View()->CurrentPageIndex(), 1);
}

void TestReaderLinks::theMenuBesideALinkIsAsEver()
{
    LinkDesk desk(QStringLiteral("link_uri_with_base"));
    const QStringList shown = desk.RightClick(150, 110);
    QVERIFY(!shown.isEmpty());
    QVERIFY(!shown.contains(openLink) && !shown.contains(copyAddress));
}

void TestReaderLinks::anAttachmentIsSavedWhereTheUserWants()
{
    LinkDesk desk(QStringLiteral("link_to_attachment"));
    const QString target = desk.desk.Folder() + "/saved.txt";
    desk.desk.Context()->AnswerSavePath(target);
    desk.Click(50, 110);
    QTRY_VERIFY(QFile::exists(target));
    QVERIFY(desk.desk.Context()->ProposedPath().endsWith("/note.txt"));
    QFile saved(target);
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QVERIFY(saved.readAll().startsWith("A text attachment."));
    QVERIFY(!QFileInfo(target).isExecutable());
    QCOMPARE(desk.Note(), QString("The attachment was saved."));
    QVERIFY(desk.opened.isEmpty()); // it is kept, never run
}

void TestReaderLinks::anAttachmentNeverGoesOverAnOpenDocument()
{
    LinkDesk desk(QStringLiteral("link_to_attachment"));
    const qint64 size = QFileInfo(desk.path).size();
    desk.desk.Context()->AnswerSavePath(desk.path);
    desk.Click(50, 110);
    QTRY_COMPARE(desk.Note(), QString("The attachment cannot be saved there."));
    QCOMPARE(QFileInfo(desk.path).size(), size);
}

void TestReaderLinks::soundsAndMoviesAreToldInOneNote()
{
    LinkDesk desk(QStringLiteral("link_sound_and_movie"));
    desk.Click(50, 110);
    QTRY_COMPARE(desk.Note(), QString("Sounds and movies cannot be played."));
    QVERIFY(desk.View()->Widget()->findChild<G_StatusNote*>()->Waiting().isEmpty());
}

void TestReaderLinks::aDocumentOpensWhereItWants()
{
    LinkDesk desk(QStringLiteral("opens_on_second_page"));
    QCOMPARE(desk.View()->CurrentPageIndex(), 1);
    QVERIFY(desk.View()->VisibleSceneRect().top() > desk.View()->PageRect(1).top());
    // The zoom is kept, and it is that of other documents: as wide as the window.
    QVERIFY(desk.View()->PageRect(1).width() > desk.Viewport()->width() * 9 / 10);
    QVERIFY(!desk.desk.Window()->CurrentTab()->IsDirty());
}

void TestReaderLinks::aDocumentThatWasLookedAtBeforeOpensWhereItWasLeft()
{
    LinkDesk desk(QStringLiteral("opens_on_second_page"));
    desk.View()->GoToPage(desk.View(), 0, CCA_GRect(), false);
    QVERIFY(desk.desk.Window()->CloseTab(0));
    QVERIFY(desk.desk.Window()->OpenFile(desk.path));
    QCoreApplication::processEvents();
    QCOMPARE(desk.View()->CurrentPageIndex(), 0);
}

void TestReaderLinks::aDocumentOpensNoAddressByItself()
{
    LinkDesk desk(QStringLiteral("opens_address"));
    QTest::qWait(50);
    QCOMPARE(desk.View()->CurrentPageIndex(), 0);
    QVERIFY(desk.opened.isEmpty());
    QVERIFY(desk.desk.Context()->Texts().isEmpty());
}

TETO_TEST_MAIN(TestReaderLinks)
#include "test_reader_links.moc"
