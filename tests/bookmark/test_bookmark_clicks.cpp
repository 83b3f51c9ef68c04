#include "pane_desk.h"

#include <bookmark/bookmark_jump.h>
#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/unscaled_test.h>

#include <frame/operation/event_manager.h>
#include <frame/view/settings.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

namespace {

// A document with one bookmark whose destination is given, on the second of three pages.
QString OneBookmark(const QString& destination)
{
    return QStringLiteral("page 210 297\npage 210 297\npage 210 297\nbookmark \"A\" page=2 %1\n").arg(destination);
}

} // namespace

class TestBookmarkClicks : public UnscaledTest
{
    Q_OBJECT
private slots:
    // Clicks
    void aClickOnAnotherPagesBookmarkDoesNotChangeTheSelectionWhenThePageChangeArrives();
    void pagingByHandSelectsTheFirstOfSeveralVisibleBookmarks();
    void aPageChangeOfAnotherDocumentSelectsNothing();
    void withKeepZoomOnlyThePageChanges();
    void withoutKeepZoomTheModeTheZoomAndTheEventFollowTheBookmark();
    void zoomIsTakenOverOnlyWithinItsRange_data();
    void zoomIsTakenOverOnlyWithinItsRange();
    void zoomModesMapToTheViewsModes_data();
    void zoomModesMapToTheViewsModes();
    void aPageIdWinsOverThePageIndex();
    // Menus and rename
    void theContextMenuNamesTheToolAndTheStateOfWordWrap();
    void noMenuOpensBesideARowOrWhereEditingIsNotAllowed_data();
    void noMenuOpensBesideARowOrWhereEditingIsNotAllowed();
    void aDoubleClickOpensTheEditorAndEnterRenames();
    void onAReadOnlyDocumentADoubleClickOpensNoEditor();
    void afterARenameTheRowGoesToTheBookmarksNewRecord();
    // Two documents
    void twoDocumentsHaveTheirOwnPanesInterceptorsAndStacks();
    void deletingActsOnTheCurrentDocumentOnly();
    void renamingResettingAndWrappingActOnTheCurrentDocumentOnly();
    void deletingAllAsksOnceAndActsOnTheCurrentDocumentOnly();
};

void TestBookmarkClicks::aClickOnAnotherPagesBookmarkDoesNotChangeTheSelectionWhenThePageChangeArrives()
{
    PaneDesk desk(QStringLiteral("page 210 297\npage 210 297\npage 210 297\n"
                                 "bookmark \"first of three\" page=3 rect=0,0,10,10 zoom=1\n"
                                 "bookmark \"second of three\" page=3 rect=0,0,10,10 zoom=1"));
    const DeskTab* tab = desk.First();
    tab->SwallowPageChange();
    QVERIFY(!tab->pane->clickedByUser);
    QSignalSpy pageChanges(desk.Context()->EventMgr(), &G_EventMgr::PageChange);
    tab->Click(1); // the first row would match the page as well
    ViewFixture::Settle();
    QCOMPARE(tab->view->CurrentPageIndex(), 2);
    QCOMPARE(pageChanges.count(), 1);
    QCOMPARE(tab->Tree()->currentIndex().row(), 1);
    QCOMPARE(tab->SelectedRows(), QList<int>{1});
    QVERIFY(!tab->pane->clickedByUser);
}

void TestBookmarkClicks::pagingByHandSelectsTheFirstOfSeveralVisibleBookmarks()
{
    PaneDesk desk(QStringLiteral("page 210 297\npage 210 297\npage 210 297\n"
                                 "bookmark \"far below\" page=2 rect=0,290,10,297 zoom=1\n"
                                 "bookmark \"one\" page=2 rect=10,5,20,20 zoom=1\n"
                                 "bookmark \"two\" page=2 rect=10,5,20,20 zoom=1\n"
                                 "bookmark \"by index\" index=2 rect=10,5,20,20 zoom=1"));
    const DeskTab* tab = desk.First();
    tab->SwallowPageChange();
    tab->view->SetZoom(200, false);
    tab->view->GoToPage(tab->view, 1, CCA_GRect(), false);
    QCOMPARE(tab->Tree()->currentIndex().row(), 1);
    tab->view->GoToPage(tab->view, 2, CCA_GRect(), false);
    QCOMPARE(tab->Tree()->currentIndex().row(), 3);
}

void TestBookmarkClicks::aPageChangeOfAnotherDocumentSelectsNothing()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    DeskTab* other = desk.Open(DocumentWithBookmarks(2));
    desk.First()->SwallowPageChange(); // swallowed by both panes
    desk.First()->Tree()->setCurrentItem(nullptr);
    QVERIFY(!other->pane->clickedByUser);
    emit desk.Context()->EventMgr()->PageChange(other->view);
    QCOMPARE(desk.First()->Tree()->currentIndex().row(), -1);
    QCOMPARE(other->Tree()->currentIndex().row(), 0);
}

void TestBookmarkClicks::withKeepZoomOnlyThePageChanges()
{
    PaneDesk desk(OneBookmark(QStringLiteral("rect=0,0,50,50 zoom=3 mode=0")));
    const DeskTab* tab = desk.First();
    G_SettingMgr::Instance()->SetConfigValue(QStringLiteral("read.keepcurrentzoom"), true);
    tab->view->SetZoomMode(G_Preferences::FitWidth);
    const float zoom = tab->view->GetZoom();
    const EventProbe probe(desk.Context()->EventMgr());
    tab->Click(0);
    QCOMPARE(tab->view->CurrentPageIndex(), 1);
    QCOMPARE(tab->view->GetZoom(), zoom);
    QCOMPARE(tab->view->ZoomMode(), G_Preferences::FitWidth);
    QCOMPARE(probe.Count(152), 0);
}

void TestBookmarkClicks::withoutKeepZoomTheModeTheZoomAndTheEventFollowTheBookmark()
{
    PaneDesk desk(OneBookmark(QStringLiteral("rect=0,0,50,50 zoom=1.5 mode=0")));
    const DeskTab* tab = desk.First();
    tab->view->SetZoomMode(G_Preferences::FitWidth);
    const EventProbe probe(desk.Context()->EventMgr());
    tab->Click(0);
    QCOMPARE(tab->view->CurrentPageIndex(), 1);
    QCOMPARE(tab->view->GetZoom(), 150.0F);
    QCOMPARE(tab->view->ZoomMode(), G_Preferences::Custom);
    QCOMPARE(probe.Count(152), 1);
}

void TestBookmarkClicks::zoomIsTakenOverOnlyWithinItsRange_data()
{
    QTest::addColumn<float>("zoom");
    QTest::addColumn<int>("mode");
    QTest::addColumn<float>("taken"); // 0: left alone
    QTest::newRow("none") << 0.0F << 0 << 0.0F;
    QTest::newRow("below") << 0.0099F << 0 << 0.0F;
    QTest::newRow("smallest") << 0.01F << 0 << 0.01F;
    QTest::newRow("plain") << 2.5F << 0 << 2.5F;
    QTest::newRow("just below 64 is raised") << 63.99995F << 0 << 64.0F;
    QTest::newRow("well below 64 stays") << 63.99F << 0 << 63.99F;
    QTest::newRow("64") << 64.0F << 0 << 64.0F;
    QTest::newRow("just above 64 is out of range") << 64.00005F << 0 << 0.0F;
    QTest::newRow("far above") << 100.0F << 0 << 0.0F;
    QTest::newRow("other modes carry no zoom") << 2.5F << 2 << 0.0F;
}

void TestBookmarkClicks::zoomIsTakenOverOnlyWithinItsRange()
{
    QFETCH(float, zoom);
    QFETCH(int, mode);
    QFETCH(float, taken);
    PaneDesk desk(OneBookmark(QStringLiteral("rect=0,0,50,50")));
    const DeskTab* tab = desk.First();
    G_Dest* dest = static_cast<G_Bookmark*>(tab->document->GetBookmarkRoot()->SubNode(0)->data)->dest;
    dest->zoom = zoom;
    dest->zoomMode = mode;
    tab->view->SetZoom(120, false);
    tab->Click(0);
    if (mode == 0)
        QCOMPARE(tab->view->GetZoom(), taken > 0 ? taken * 100 : 120.0F);
    const BookmarkJump jump = JumpTo(*dest, *tab->document);
    QCOMPARE(jump.hasZoom, taken > 0);
    QCOMPARE(jump.zoomFactor, taken);
}

void TestBookmarkClicks::zoomModesMapToTheViewsModes_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("shown");
    QTest::addColumn<bool>("fitRect");
    QTest::newRow("plain") << 0 << 0 << false;
    QTest::newRow("page") << 1 << 4 << false;
    QTest::newRow("width") << 2 << 2 << false;
    QTest::newRow("height") << 3 << 3 << false;
    QTest::newRow("rectangle") << 4 << 5 << true;
    QTest::newRow("unknown") << 7 << 0 << false;
    QTest::newRow("negative") << -1 << 0 << false;
}

void TestBookmarkClicks::zoomModesMapToTheViewsModes()
{
    QFETCH(int, stored);
    QFETCH(int, shown);
    QFETCH(bool, fitRect);
    PaneDesk desk(OneBookmark(QStringLiteral("rect=10,20,50,60")));
    const DeskTab* tab = desk.First();
    G_Dest* dest = static_cast<G_Bookmark*>(tab->document->GetBookmarkRoot()->SubNode(0)->data)->dest;
    dest->zoomMode = stored;
    const BookmarkJump jump = JumpTo(*dest, *tab->document);
    QCOMPARE(jump.viewZoomMode, shown);
    QCOMPARE(jump.fitRect, fitRect);
    QCOMPARE(jump.rect, CCA_GRect(10, 20, 50, 60));
    tab->Click(0);
    QCOMPARE(static_cast<int>(tab->view->ZoomMode()), shown);
    QCOMPARE(tab->view->CurrentPageIndex(), 1);
}

void TestBookmarkClicks::aPageIdWinsOverThePageIndex()
{
    PaneDesk desk(QStringLiteral("page 210 297 id=7\npage 210 297 id=9\n"));
    G_Dest dest;
    dest.pageId = 9;
    dest.pageIndex = 0;
    QCOMPARE(JumpTo(dest, *desk.First()->document).pageIndex, 1);
    dest.pageId = 0;
    QCOMPARE(JumpTo(dest, *desk.First()->document).pageIndex, 0);
    dest.pageId = 8; // no such page
    QVERIFY(JumpTo(dest, *desk.First()->document).pageIndex < 0);
}

void TestBookmarkClicks::theContextMenuNamesTheToolAndTheStateOfWordWrap()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    QContextMenuEvent request(QContextMenuEvent::Mouse, tab->RowPoint(1),
                              tab->Tree()->viewport()->mapToGlobal(tab->RowPoint(1)));
    QApplication::sendEvent(tab->Tree()->viewport(), &request);
    QCOMPARE(desk.menu->shown, QStringList{"vn_bookmark"});
    ContextMenuItemState state = desk.menu->lastStates.value(QStringLiteral("d_bookmarkwrap"));
    QVERIFY(state.checked && state.enabled && state.visible && state.hasIcon && !state.reserved);
    QCOMPARE(state.iconPath, QStringLiteral(":/nodeQrc/image/select.svg"));
    QVERIFY(desk.Perform("d_bookmarkwrap"));
    tab->pane->popMenu(tab->RowPoint(0));
    state = desk.menu->lastStates.value(QStringLiteral("d_bookmarkwrap"));
    QVERIFY(!state.checked && state.enabled && state.visible && state.hasIcon && !state.reserved);
    QCOMPARE(state.iconPath, QStringLiteral(":/nodeQrc/image/unselect.svg"));
    QCOMPARE(desk.menu->lastStates.size(), 1);
}

void TestBookmarkClicks::noMenuOpensBesideARowOrWhereEditingIsNotAllowed_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("besideRows");
    QTest::newRow("beside the rows") << QString() << true;
    QTest::newRow("read-only document") << "readonly\n" << false;
    QTest::newRow("no right to edit") << "rights edit=no\n" << false;
}

void TestBookmarkClicks::noMenuOpensBesideARowOrWhereEditingIsNotAllowed()
{
    QFETCH(QString, state);
    QFETCH(bool, besideRows);
    PaneDesk desk(state + DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    const QPoint place = besideRows ? QPoint(20, tab->Tree()->viewport()->height() - 5) : tab->RowPoint(0);
    QContextMenuEvent request(QContextMenuEvent::Mouse, place, tab->Tree()->viewport()->mapToGlobal(place));
    QApplication::sendEvent(tab->Tree()->viewport(), &request);
    QCOMPARE(desk.menu->shown, QStringList());
}

void TestBookmarkClicks::aDoubleClickOpensTheEditorAndEnterRenames()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    tab->DoubleClick(1);
    QVERIFY(tab->Editor());
    QCOMPARE(tab->pane->previousName, QStringLiteral("B"));
    QTest::keyClicks(tab->Editor(), QStringLiteral("Beta"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QVERIFY(!tab->Editor());
    QCOMPARE(tab->Rows(), (QStringList{"A", "Beta", "C"}));
    QCOMPARE(tab->Names(), (QStringList{"A", "Beta", "C"}));
    QCOMPARE(tab->Stack()->count(), 1);
    QVERIFY(!tab->pane->isRenaming);
    QVERIFY(!tab->Tree()->signalsBlocked());
    tab->Stack()->undo();
    QCOMPARE(tab->Rows(), (QStringList{"A", "B", "C"}));
}

void TestBookmarkClicks::onAReadOnlyDocumentADoubleClickOpensNoEditor()
{
    PaneDesk desk(QStringLiteral("readonly\n") + DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    tab->DoubleClick(1);
    QVERIFY(!tab->Editor());
    QVERIFY(!tab->pane->isRenaming);
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestBookmarkClicks::afterARenameTheRowGoesToTheBookmarksNewRecord()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    tab->DoubleClick(0);
    QTest::keyClicks(tab->Editor(), QStringLiteral("Alpha"));
    QTest::keyClick(tab->Editor(), Qt::Key_Enter);
    ViewFixture::Settle();
    const auto destOfNode = [&](int row) {
        return static_cast<G_Bookmark*>(tab->document->GetBookmarkRoot()->SubNode(row)->data)->dest;
    };
    QCOMPARE(tab->Tree()->topLevelItem(0)->data(0, Qt::UserRole).value<G_Dest*>(), destOfNode(0));
    tab->view->GoToPage(tab->view, 2, CCA_GRect(), false);
    tab->Tree()->setCurrentItem(tab->Tree()->topLevelItem(1));
    QVERIFY(desk.Perform("d_bookmarkresetposition"));
    QCOMPARE(tab->Tree()->topLevelItem(1)->data(0, Qt::UserRole).value<G_Dest*>(), destOfNode(1));
    tab->view->GoToPage(tab->view, 0, CCA_GRect(), false);
    tab->Click(1);
    QCOMPARE(tab->view->CurrentPageIndex(), 2);
}

void TestBookmarkClicks::twoDocumentsHaveTheirOwnPanesInterceptorsAndStacks()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    DeskTab* other = desk.Open(DocumentWithBookmarks(3));
    QVERIFY(desk.First()->pane != other->pane);
    QVERIFY(desk.First()->pane->renameHandler != other->pane->renameHandler);
    QVERIFY(desk.First()->pane->deleteHandler != other->pane->deleteHandler);
    QVERIFY(desk.First()->Stack() != other->Stack());
    desk.Perform("d_addbookmark");
    QCOMPARE(other->Rows().size(), 4);
    QCOMPARE(desk.First()->Rows().size(), 2);
    desk.MakeCurrent(desk.First());
    desk.Perform("d_addbookmark");
    QCOMPARE(other->Rows().size(), 4);
    QCOMPARE(desk.First()->Rows().size(), 3);
    QCOMPARE(desk.First()->Stack()->count(), 1);
    QCOMPARE(other->Stack()->count(), 1);
}

void TestBookmarkClicks::deletingActsOnTheCurrentDocumentOnly()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    DeskTab* other = desk.Open(DocumentWithBookmarks(4));
    desk.First()->Select({0, 1});
    other->Select({3});
    other->pane->DelBookmark();
    QCOMPARE(other->Rows(), (QStringList{"A", "B", "C"}));
    QCOMPARE(desk.First()->Rows(), (QStringList{"A", "B", "C"}));
    desk.MakeCurrent(desk.First());
    desk.First()->pane->DelBookmark();
    QCOMPARE(desk.First()->Rows(), QStringList{"C"});
    QCOMPARE(other->Rows(), (QStringList{"A", "B", "C"}));
}

void TestBookmarkClicks::renamingResettingAndWrappingActOnTheCurrentDocumentOnly()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    DeskTab* other = desk.Open(DocumentWithBookmarks(2));
    desk.First()->Select({0});
    other->Select({1});
    const QString untouched = desk.First()->Dump();
    other->DoubleClick(1);
    QVERIFY(other->Editor());
    QVERIFY(!desk.First()->Editor());
    QTest::keyClicks(other->Editor(), QStringLiteral("Z"));
    QTest::keyClick(other->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(other->Rows(), (QStringList{"A", "Z"}));
    other->view->GoToPage(other->view, 1, CCA_GRect(), false);
    other->Select({0});
    QVERIFY(desk.Perform("d_bookmarkresetposition"));
    QCOMPARE(static_cast<G_Bookmark*>(other->document->GetBookmarkRoot()->SubNode(0)->data)->dest->pageIndex, 1);
    QVERIFY(desk.Perform("d_bookmarkwrap"));
    QVERIFY(!other->pane->wordWrap);
    QVERIFY(desk.First()->pane->wordWrap);
    QCOMPARE(desk.First()->Dump(), untouched);
    QCOMPARE(desk.First()->Stack()->count(), 0);
}

void TestBookmarkClicks::deletingAllAsksOnceAndActsOnTheCurrentDocumentOnly()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    DeskTab* other = desk.Open(DocumentWithBookmarks(3));
    desk.Context()->Answer(4194304); // cancel
    QVERIFY(!desk.Perform("d_bookmarkdeleteall"));
    QCOMPARE(other->Rows().size(), 3);
    desk.Context()->Answer(1024);
    QVERIFY(desk.Perform("d_bookmarkdeleteall"));
    QCOMPARE(desk.Context()->Asked().size(), 2);
    QCOMPARE(other->Rows(), QStringList());
    QCOMPARE(desk.First()->Rows(), (QStringList{"A", "B"}));
    other->Stack()->undo();
    QCOMPARE(other->Rows(), (QStringList{"A", "B", "C"}));
}

TETO_TEST_MAIN(TestBookmarkClicks)
#include "test_bookmark_clicks.moc"
