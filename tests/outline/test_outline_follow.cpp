#include "outline_gestures.h"

#include <outline/outline_pane.h>
#include <outline/outline_tree.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/unscaled_test.h>

#include <frame/document/payloads.h>
#include <frame/operation/event_manager.h>
#include <frame/view/settings.h>

#include <QTreeWidget>
#include <QtTest>

namespace {

QString Pages(int count)
{
    return QString(QStringLiteral("page 210 297\n")).repeated(count);
}

// Lets the page change that follows the opening or a click be swallowed.
void SwallowPageChange(const OutlineTab* tab)
{
    emit tab->view->UIContext()->EventMgr()->PageChange(tab->view);
    QVERIFY(!tab->pane->skipNextPageSync);
}

void GoToPage(const OutlineTab* tab, int page)
{
    tab->view->GoToPage(tab->view, page, CCA_GRect(), false);
}

QString Current(const OutlineTab* tab)
{
    const QTreeWidgetItem* item = tab->Tree()->currentItem();
    return item ? item->text(0) : QStringLiteral("none");
}

G_OutlineItem* Record(const OutlineTab* tab, const QList<int>& rows)
{
    return static_cast<G_OutlineItem*>(tab->Node(rows)->data);
}

} // namespace

// The view and the tree in step: clicks go to pages, page changes make entries current.
class TestOutlineFollow : public UnscaledTest
{
    Q_OBJECT
private slots:
    void theFirstPageChangeAfterOpeningMovesNothing();
    void anOutlineWithoutDestinationsShowsDotsAndNeverMovesTheCurrentEntry();
    void aClickGoesToThePageWithoutThePaneJumpingToAnotherEntryOfThatPage();
    void aClickOnThePageColumnGoesThereToo();
    void aClickOnAnEntryWithoutActionsStillSwallowsTheNextPageChange();
    void ofTwoEntriesOnTheSameScreenTheFirstInTheTreeBecomesCurrent();
    void aCurrentEntryOffTheVisiblePageStaysWhenNoTargetIsOnScreen();
    void aTargetOnThePageButOffTheScreenDoesNotCount();
    void aTargetOnTheEdgeOfTheScreenCounts();
    void theFirstActionAloneIsFollowed();
    void anEntryInACollapsedBranchIsOpenedWhenItBecomesCurrent();
    void aPageChangeOfAnotherDocumentMovesNothing();
    void anotherScreenOfTheSameDocumentIsFollowedToo();
    void aClickRunsAllActionsInTurn();
    void aDestinationToAPageThatIsNotThereGoesNowhere();
    void onlyTheCurrentDocumentsViewMoves();
    void afterAChangeThePageIsFollowedByTheNewDestinations();
};

void TestOutlineFollow::theFirstPageChangeAfterOpeningMovesNothing()
{
    OutlineDesk desk(Pages(2) + "outline \"A\" page=1\noutline \"B\" page=2\n");
    const OutlineTab* tab = desk.First();
    QVERIFY(tab->pane->skipNextPageSync);
    emit desk.Context()->EventMgr()->PageChange(tab->view);
    QCOMPARE(Current(tab), QStringLiteral("none"));
    emit desk.Context()->EventMgr()->PageChange(tab->view);
    QCOMPARE(Current(tab), QStringLiteral("A"));
}

void TestOutlineFollow::anOutlineWithoutDestinationsShowsDotsAndNeverMovesTheCurrentEntry()
{
    OutlineDesk desk(Pages(3) + "outline \"A\"\n  outline \"B\"\noutline \"C\"\n");
    const OutlineTab* tab = desk.First();
    SwallowPageChange(tab);
    tab->MakeCurrent("B");
    for (const int page : {1, 2, 0}) {
        GoToPage(tab, page);
        QCOMPARE(Current(tab), QStringLiteral("B"));
    }
    for (const char* title : {"A", "B", "C"})
        QCOMPARE(tab->Item(QString(title))->text(1), QStringLiteral("..."));
}

void TestOutlineFollow::aClickGoesToThePageWithoutThePaneJumpingToAnotherEntryOfThatPage()
{
    OutlineDesk desk(Pages(3) + "outline \"first of three\" page=3 rect=0,0,9,9\n"
                                "outline \"second of three\" page=3 rect=0,0,9,9\n");
    const OutlineTab* tab = desk.First();
    SwallowPageChange(tab);
    QSignalSpy pageChanges(desk.Context()->EventMgr(), &G_EventMgr::PageChange);
    Gesture::Click(tab, "second of three");
    ViewFixture::Settle();
    QCOMPARE(tab->view->CurrentPageIndex(), 2);
    QCOMPARE(pageChanges.count(), 1);
    QCOMPARE(Current(tab), QStringLiteral("second of three"));
    QCOMPARE(Gesture::Selected(tab), QStringList{"second of three"});
    QVERIFY(!tab->pane->skipNextPageSync);
}

void TestOutlineFollow::aClickOnThePageColumnGoesThereToo()
{
    OutlineDesk desk(Pages(3) + "outline \"A\" page=3\n");
    QTest::mouseClick(desk.First()->Tree()->viewport(), Qt::LeftButton, {}, Gesture::PagePoint(desk.First(), "A"));
    QCOMPARE(desk.First()->view->CurrentPageIndex(), 2);
}

void TestOutlineFollow::aClickOnAnEntryWithoutActionsStillSwallowsTheNextPageChange()
{
    OutlineDesk desk(Pages(2) + "outline \"A\"\noutline \"B\" page=2\n");
    const OutlineTab* tab = desk.First();
    SwallowPageChange(tab);
    Gesture::Click(tab, "A");
    QVERIFY(tab->pane->skipNextPageSync);
    GoToPage(tab, 1);
    QCOMPARE(Current(tab), QStringLiteral("A"));
    GoToPage(tab, 0);
    GoToPage(tab, 1);
    QCOMPARE(Current(tab), QStringLiteral("B"));
    tab->pane->OnClickItem(nullptr, 0);
    QVERIFY(tab->pane->skipNextPageSync);
}

void TestOutlineFollow::ofTwoEntriesOnTheSameScreenTheFirstInTheTreeBecomesCurrent()
{
    OutlineDesk desk(Pages(2) + "outline \"A\" page=1\n  outline \"deep\" page=2 rect=0,60,9,70\n"
                                "outline \"near\" page=2 rect=0,0,9,9\n");
    const OutlineTab* tab = desk.First();
    SwallowPageChange(tab);
    tab->view->SetZoom(100, false);
    GoToPage(tab, 1);
    QCOMPARE(Current(tab), QStringLiteral("deep"));
    QVERIFY(Gesture::Selected(tab) == QStringList{"deep"});
}

void TestOutlineFollow::aCurrentEntryOffTheVisiblePageStaysWhenNoTargetIsOnScreen()
{
    OutlineDesk desk(Pages(3) + "outline \"A\" page=1\noutline \"C\" page=3\n");
    const OutlineTab* tab = desk.First();
    SwallowPageChange(tab);
    tab->view->SetZoom(200, false);
    tab->MakeCurrent("A");
    GoToPage(tab, 1);
    QCOMPARE(Current(tab), QStringLiteral("A"));
    GoToPage(tab, 2);
    QCOMPARE(Current(tab), QStringLiteral("C"));
    GoToPage(tab, 1);
    QCOMPARE(Current(tab), QStringLiteral("C"));
}

void TestOutlineFollow::aTargetOnThePageButOffTheScreenDoesNotCount()
{
    OutlineDesk desk(Pages(2) + "outline \"below\" page=2 rect=0,290,9,297\noutline \"top\" page=2 rect=5,5,9,9\n");
    const OutlineTab* tab = desk.First();
    SwallowPageChange(tab);
    tab->view->SetZoom(200, false);
    GoToPage(tab, 1);
    QCOMPARE(Current(tab), QStringLiteral("top"));
}

void TestOutlineFollow::aTargetOnTheEdgeOfTheScreenCounts()
{
    OutlineDesk desk(Pages(2) + "outline \"edge\" page=2 rect=0,0,9,9\n");
    const OutlineTab* tab = desk.First();
    SwallowPageChange(tab);
    tab->view->SetZoom(400, false);
    tab->view->GoToPage(tab->view, 1, CCA_GRect(0, 100, 0, 100), false);
    QCOMPARE(Current(tab), QStringLiteral("none"));
    // The destination stands exactly in the view's top left corner.
    const QPoint corner = tab->view->VisibleSceneRect().topLeft();
    int page = -1;
    const CCA_GPoint place = tab->view->DocPointFromScenePoint({corner.x(), corner.y()}, &page);
    auto* jump = static_cast<G_ActionGoto*>(Record(tab, {0})->actions[0]);
    jump->dest->left = place.x;
    jump->dest->top = place.y;
    tab->pane->UpdateOutline(0);
    const CCA_Point back = tab->view->ScenePointFromDocPoint({place.x, place.y}, 1);
    QCOMPARE(QPoint(back.x, back.y), corner);
    emit desk.Context()->EventMgr()->PageChange(tab->view);
    QCOMPARE(Current(tab), QStringLiteral("edge"));
}

void TestOutlineFollow::theFirstActionAloneIsFollowed()
{
    OutlineDesk desk(Pages(3) + "outline \"A\" page=2\noutline \"link\" uri=https://example.org\n");
    const OutlineTab* tab = desk.First();
    for (const QList<int>& rows : {QList<int>{0}, QList<int>{1}}) {
        auto* jump = new G_ActionGoto;
        jump->dest->pageId = 3;
        Record(tab, rows)->actions.Add(jump);
    }
    tab->pane->UpdateOutline(0);
    QCOMPARE(tab->Item("A")->text(1), QStringLiteral("3"));
    QCOMPARE(tab->Item("link")->text(1), QStringLiteral("3"));
    SwallowPageChange(tab);
    GoToPage(tab, 2);
    QCOMPARE(Current(tab), QStringLiteral("none")); // neither by its second action
    GoToPage(tab, 1);
    QCOMPARE(Current(tab), QStringLiteral("A"));
}

void TestOutlineFollow::anEntryInACollapsedBranchIsOpenedWhenItBecomesCurrent()
{
    OutlineDesk desk(Pages(2) + "outline \"A\"\n  outline \"A1\"\n    outline \"A1a\" page=2\n");
    const OutlineTab* tab = desk.First();
    SwallowPageChange(tab);
    tab->Tree()->collapseAll();
    GoToPage(tab, 1);
    QCOMPARE(Current(tab), QStringLiteral("A1a"));
    QVERIFY(tab->Item("A")->isExpanded() && tab->Item("A1")->isExpanded());
    QVERIFY(tab->Tree()->viewport()->rect().contains(Gesture::TitleRect(tab, "A1a").center()));
}

void TestOutlineFollow::aPageChangeOfAnotherDocumentMovesNothing()
{
    OutlineDesk desk(Pages(2) + "outline \"A\" page=1\n");
    OutlineTab* other = desk.Open(Pages(2) + "outline \"B\" page=1\n");
    SwallowPageChange(desk.First());
    QVERIFY(!other->pane->skipNextPageSync); // swallowed by both panes
    desk.First()->Tree()->setCurrentItem(nullptr);
    emit desk.Context()->EventMgr()->PageChange(other->view);
    QCOMPARE(Current(desk.First()), QStringLiteral("none"));
    QCOMPARE(Current(other), QStringLiteral("B"));
    emit desk.Context()->EventMgr()->PageChange(nullptr);
    QCOMPARE(Current(desk.First()), QStringLiteral("none"));
}

void TestOutlineFollow::anotherScreenOfTheSameDocumentIsFollowedToo()
{
    OutlineDesk desk(Pages(2) + "outline \"A\" page=1\n");
    SwallowPageChange(desk.First());
    emit desk.Context()->EventMgr()->ActivedScreenChanged(desk.First()->view);
    QCOMPARE(Current(desk.First()), QStringLiteral("A"));
}

void TestOutlineFollow::aClickRunsAllActionsInTurn()
{
    OutlineDesk desk(Pages(3) + "outline \"A\" page=2\n");
    const OutlineTab* tab = desk.First();
    auto* jump = new G_ActionGoto;
    jump->dest->pageId = 3;
    Record(tab, {0})->actions.Add(jump);
    tab->pane->UpdateOutline(0);
    QSignalSpy pageChanges(desk.Context()->EventMgr(), &G_EventMgr::PageChange);
    Gesture::Click(tab, "A");
    QCOMPARE(pageChanges.count(), 2);
    QCOMPARE(tab->view->CurrentPageIndex(), 2);
}

void TestOutlineFollow::aDestinationToAPageThatIsNotThereGoesNowhere()
{
    OutlineDesk desk(Pages(2) + "outline \"A\" page=99\noutline \"B\" index=77\n  outline \"C\" page=99\n");
    const OutlineTab* tab = desk.First();
    QCOMPARE(tab->Item("A")->text(1), QStringLiteral("..."));
    for (const char* title : {"A", "B", "C"}) {
        Gesture::Click(tab, title);
        QCOMPARE(tab->view->CurrentPageIndex(), 0);
    }
}

void TestOutlineFollow::onlyTheCurrentDocumentsViewMoves()
{
    OutlineDesk desk(Pages(2) + "outline \"A\" page=2\n");
    OutlineTab* other = desk.Open(Pages(2));
    Gesture::Click(desk.First(), "A"); // its tab is not the current one
    QCOMPARE(other->view->CurrentPageIndex(), 0);
    QCOMPARE(desk.First()->view->CurrentPageIndex(), 0);
    desk.MakeCurrent(desk.First());
    Gesture::Click(desk.First(), "A");
    QCOMPARE(desk.First()->view->CurrentPageIndex(), 1);
    QCOMPARE(other->view->CurrentPageIndex(), 0);
}

void TestOutlineFollow::afterAChangeThePageIsFollowedByTheNewDestinations()
{
    OutlineDesk desk(Pages(3) + "outline \"A\"\noutline \"B\" page=3\n");
    const OutlineTab* tab = desk.First();
    SwallowPageChange(tab);
    GoToPage(tab, 1);
    tab->MakeCurrent("A");
    QVERIFY(desk.Perform("d_outline_resetpos"));
    QCOMPARE(tab->Item("A")->text(1), QStringLiteral("2"));
    GoToPage(tab, 2);
    QCOMPARE(Current(tab), QStringLiteral("B"));
    GoToPage(tab, 1);
    QCOMPARE(Current(tab), QStringLiteral("A"));
}

TETO_TEST_MAIN(TestOutlineFollow)
#include "test_outline_follow.moc"
