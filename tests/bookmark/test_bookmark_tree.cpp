#include "pane_desk.h"

#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <tests/support/drag.h>
#include <tests/support/editing_states.h>
#include <tests/support/event_probe.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>
#include <tests/support/undo_verbs.h>
#include <tests/support/unscaled_test.h>

#include <frame/operation/event_manager.h>
#include <frame/view/tool_handler.h>

#include <QApplication>
#include <QCursor>
#include <QDrag>
#include <QMimeData>
#include <QScrollBar>
#include <QUndoStack>
#include <QtTest>

namespace {

int DragsBegun(const DeskTab* tab, int row)
{
    int begun = 0;
    ReorderTree::SetDragRunner([&](QDrag*) {
        ++begun;
        return Qt::IgnoreAction;
    });
    Drag::MouseDrag(tab->Tree()->viewport(), tab->RowPoint(row), tab->RowPoint(row) + QPoint(0, 60));
    ReorderTree::SetDragRunner({});
    return begun;
}

} // namespace

class TestBookmarkTree : public UnscaledTest
{
    Q_OBJECT
private slots:
    // Drags
    void aMouseDragCarriesTheAddressOfTheFirstSelectedItemAndMovesItsRow();
    void aDropInTheTopPixelsMovesTheSelectionToTheTopWhateverRowLiesThere();
    void aSelectedRowAtTheTopRefusesTheDropThere();
    void theTopZoneIsFivePixelsHigh_data();
    void theTopZoneIsFivePixelsHigh();
    void aDropOnASelectedRowDoesNothingTheIndicatorVanishesAndNoDropIsOffered();
    void aDropOnTheLastRowPlacesTheBlockAfterIt();
    void aDropBesideTheRowsDoesNothing();
    void draggingSeveralRowsKeepsTheirOrderAndIsOneUndoStep();
    void aMoveFiresOneEventForEachRowAndOneForTheWhole();
    void anotherPanesDragIsRefusedAndAForgedAddressIsNeverFollowed();
    void noDragBeginsWhereEditingIsNotAllowed_data();
    void noDragBeginsWhereEditingIsNotAllowed();
    void noDragBeginsWithoutASelection();
    void theIndicatorStandsBelowTheRowAndAboveItAtTheTop();
    void theIndicatorIsPaintedWhileDraggingAndGoneOnceTheViewIsLeft();
    void theMovedRowsAreSelectedAfterwards();
    void holdingADragNearTheEdgeScrollsAndLeavingStopsIt();
    void aDragThatEndedElsewhereLeavesNothingForTheNext();
    void aDragOverTheListEndsTheSignatureToolAndOnlyThatTool();
};

void TestBookmarkTree::aMouseDragCarriesTheAddressOfTheFirstSelectedItemAndMovesItsRow()
{
    PaneDesk desk(DocumentWithBookmarks(4));
    const DeskTab* tab = desk.First();
    const auto address = QByteArray::number(reinterpret_cast<quintptr>(tab->Tree()->topLevelItem(1)));
    QByteArray carried;
    QStringList formats;
    ReorderTree::SetDragRunner([&](QDrag* drag) {
        carried = drag->mimeData()->data(QStringLiteral("BookmarkMoveDstItem"));
        formats = drag->mimeData()->formats();
        return Drag::DropAt(tab->Tree()->viewport(), drag->mimeData(), {tab->RowPoint(2)}).action;
    });
    Drag::MouseDrag(tab->Tree()->viewport(), tab->RowPoint(1), tab->RowPoint(2));
    ReorderTree::SetDragRunner({});
    QCOMPARE(formats, QStringList{"BookmarkMoveDstItem"});
    QCOMPARE(carried, address);
    QCOMPARE(tab->Names(), (QStringList{"A", "C", "B", "D"}));
    QCOMPARE(tab->Rows(), tab->Names());
    QVERIFY(!tab->Tree()->isDragging);
}

void TestBookmarkTree::aDropInTheTopPixelsMovesTheSelectionToTheTopWhateverRowLiesThere()
{
    PaneDesk desk(DocumentWithBookmarks(40));
    const DeskTab* tab = desk.First();
    tab->Tree()->verticalScrollBar()->setValue(3); // row 3 lies at the top of the view
    QCOMPARE(tab->Tree()->itemAt(QPoint(20, 2)), tab->Tree()->topLevelItem(3));
    const Drag::Outcome outcome = tab->DragRow(7, {tab->RowPoint(6), QPoint(20, 2)});
    QVERIFY(outcome.wasDropped);
    QCOMPARE(tab->Names().mid(0, 5), (QStringList{"H", "A", "B", "C", "D"}));
    QCOMPARE(tab->Rows(), tab->Names());
}

void TestBookmarkTree::aSelectedRowAtTheTopRefusesTheDropThere()
{
    PaneDesk desk(DocumentWithBookmarks(4));
    const DeskTab* tab = desk.First();
    const Drag::Outcome outcome = tab->DragRow(0, {tab->RowPoint(1), QPoint(20, 2)});
    QVERIFY(!outcome.wasMoved);
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C", "D"}));
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestBookmarkTree::theTopZoneIsFivePixelsHigh_data()
{
    QTest::addColumn<int>("y");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("inside") << 4 << QStringList{"C", "A", "B", "D"};
    QTest::newRow("below") << 5 << QStringList{"A", "C", "B", "D"};
}

void TestBookmarkTree::theTopZoneIsFivePixelsHigh()
{
    QFETCH(int, y);
    QFETCH(QStringList, names);
    PaneDesk desk(DocumentWithBookmarks(4));
    desk.First()->DragRow(2, {QPoint(20, y)});
    QCOMPARE(desk.First()->Names(), names);
}

void TestBookmarkTree::aDropOnASelectedRowDoesNothingTheIndicatorVanishesAndNoDropIsOffered()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({1, 3});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    QVERIFY(data);
    Drag::Outcome outcome = Drag::HoverAt(tab->Tree()->viewport(), data.get(), {tab->LowPoint(2)});
    QVERIFY(outcome.wasMoved);
    QVERIFY(tab->Tree()->canDrop);
    QVERIFY(!tab->Tree()->line.isNull());
    outcome = Drag::DropAt(tab->Tree()->viewport(), data.get(), {tab->LowPoint(2), tab->LowPoint(3)});
    QVERIFY(outcome.wasEntered);
    QVERIFY(!outcome.wasMoved);
    QVERIFY(!outcome.wasDropped);
    QVERIFY(!tab->Tree()->canDrop);
    QVERIFY(tab->Tree()->line.isNull());
    QCOMPARE(tab->Tree()->oldLine.y1(), tab->Tree()->visualItemRect(tab->Tree()->topLevelItem(3)).bottom());
    // A drop event that arrives all the same changes neither the document nor the items.
    QDropEvent drop(tab->LowPoint(3), Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(tab->Tree()->viewport(), &drop);
    QVERIFY(!drop.isAccepted());
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C", "D", "E"}));
    QCOMPARE(tab->Rows(), tab->Names());
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestBookmarkTree::aDropOnTheLastRowPlacesTheBlockAfterIt()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({0, 1});
    VERIFY_UNDO_REDO(
        tab->Stack(), [tab] { return tab->Dump(); },
        [tab] {
            tab->DragRow(1, {tab->LowPoint(3), tab->LowPoint(4)});
        });
    QCOMPARE(tab->Names(), (QStringList{"C", "D", "E", "A", "B"}));
    QCOMPARE(tab->Rows(), tab->Names());
}

void TestBookmarkTree::aDropBesideTheRowsDoesNothing()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    const QPoint beside(20, tab->Tree()->viewport()->height() - 4);
    QVERIFY(!tab->Tree()->itemAt(beside));
    const Drag::Outcome outcome = tab->DragRow(0, {tab->LowPoint(1), beside});
    QVERIFY(!outcome.wasMoved);
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C"}));
}

void TestBookmarkTree::draggingSeveralRowsKeepsTheirOrderAndIsOneUndoStep()
{
    PaneDesk desk(DocumentWithBookmarks(6));
    const DeskTab* tab = desk.First();
    tab->Select({4, 0, 2});
    VERIFY_UNDO_REDO(
        tab->Stack(), [tab] { return tab->Dump(); }, [tab] { tab->DragRow(2, {tab->LowPoint(3)}); });
    QCOMPARE(tab->Names(), (QStringList{"B", "D", "A", "C", "E", "F"}));
    QCOMPARE(tab->Stack()->count(), 1);
}

void TestBookmarkTree::aMoveFiresOneEventForEachRowAndOneForTheWhole()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({0, 1});
    const EventProbe probe(desk.Context()->EventMgr());
    tab->DragRow(0, {tab->LowPoint(4)});
    QCOMPARE(probe.Count(110), 3);
}

void TestBookmarkTree::anotherPanesDragIsRefusedAndAForgedAddressIsNeverFollowed()
{
    PaneDesk desk(DocumentWithBookmarks(4));
    DeskTab* other = desk.Open(DocumentWithBookmarks(4));
    desk.First()->Select({0});
    other->Select({2});
    const std::unique_ptr<QMimeData> foreign(desk.First()->Tree()->PrepareDrag());
    QVERIFY(foreign);
    const std::unique_ptr<QMimeData> own(other->Tree()->PrepareDrag());
    QVERIFY(!Drag::DropAt(other->Tree()->viewport(), foreign.get(), {other->LowPoint(1)}).wasMoved);
    QMimeData forged;
    for (const char* text : {"", "1", "not a number", "18446744073709551615"}) {
        forged.setData(QStringLiteral("BookmarkMoveDstItem"), text);
        QVERIFY(!Drag::DropAt(other->Tree()->viewport(), &forged, {other->LowPoint(1)}).wasMoved);
        QDropEvent drop(other->LowPoint(1), Qt::MoveAction, &forged, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(other->Tree()->viewport(), &drop);
        QVERIFY(!drop.isAccepted());
    }
    QMimeData text;
    text.setText(QStringLiteral("A"));
    QVERIFY(!Drag::DropAt(other->Tree()->viewport(), &text, {other->LowPoint(1)}).wasEntered);
    QDropEvent drop(other->LowPoint(1), Qt::MoveAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(other->Tree()->viewport(), &drop);
    QVERIFY(!drop.isAccepted());
    QCOMPARE(other->Names(), (QStringList{"A", "B", "C", "D"}));
    QCOMPARE(other->Rows(), other->Names());
}

void TestBookmarkTree::noDragBeginsWhereEditingIsNotAllowed_data()
{
    AddEditingStates<int>("begun", 1, 0);
}

void TestBookmarkTree::noDragBeginsWhereEditingIsNotAllowed()
{
    QFETCH(QString, state);
    QFETCH(int, begun);
    PaneDesk desk(state + DocumentWithBookmarks(3));
    QCOMPARE(DragsBegun(desk.First(), 0), begun);
    QCOMPARE(desk.First()->Tree()->isDragging, begun == 1);
}

void TestBookmarkTree::noDragBeginsWithoutASelection()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    desk.First()->Tree()->clearSelection();
    QVERIFY(!desk.First()->Tree()->PrepareDrag());
    QVERIFY(!desk.First()->Tree()->isDragging);
    desk.First()->Select({2, 0});
    const std::unique_ptr<QMimeData> data(desk.First()->Tree()->PrepareDrag());
    QVERIFY(data);
    const G_TreeNode* root = desk.First()->document->GetBookmarkRoot();
    QCOMPARE(desk.First()->Tree()->dragNodes, (QList<G_TreeNode*>{root->SubNode(0), root->SubNode(2)}));
}

void TestBookmarkTree::theIndicatorStandsBelowTheRowAndAboveItAtTheTop()
{
    PaneDesk desk(DocumentWithBookmarks(4));
    const DeskTab* tab = desk.First();
    tab->Select({3});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    Drag::HoverAt(tab->Tree()->viewport(), data.get(), {tab->LowPoint(1)});
    const QRect row = tab->Tree()->visualItemRect(tab->Tree()->topLevelItem(1));
    QCOMPARE(tab->Tree()->line, QLine(row.left() + 6, row.bottom(), row.right() - 4, row.bottom()));
    QVERIFY(!tab->Tree()->dropAtTop);
    Drag::HoverAt(tab->Tree()->viewport(), data.get(), {QPoint(20, 3)});
    const QRect top = tab->Tree()->visualItemRect(tab->Tree()->topLevelItem(0));
    QCOMPARE(tab->Tree()->line, QLine(top.left() + 6, top.top() + 4, top.right() - 4, top.top() + 4));
    QVERIFY(tab->Tree()->dropAtTop);
}

void TestBookmarkTree::theIndicatorIsPaintedWhileDraggingAndGoneOnceTheViewIsLeft()
{
    PaneDesk desk(DocumentWithBookmarks(4));
    const DeskTab* tab = desk.First();
    QWidget* viewport = tab->Tree()->viewport();
    tab->Select({3});
    const QImage before = viewport->grab().toImage();
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    QDragEnterEvent enter(tab->LowPoint(1), Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &enter);
    QDragMoveEvent move(tab->LowPoint(1), Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &move);
    const QImage during = viewport->grab().toImage();
    QVERIFY(during != before);
    QVERIFY(Screens::ShowsIndicator(during, tab->Tree()->line));
    QDragLeaveEvent leave;
    QApplication::sendEvent(viewport, &leave);
    QVERIFY(tab->Tree()->leftView);
    QVERIFY(viewport->grab().toImage() == before);
}

void TestBookmarkTree::theMovedRowsAreSelectedAfterwards()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({0, 2});
    tab->DragRow(0, {tab->LowPoint(3)});
    QCOMPARE(tab->Names(), (QStringList{"B", "D", "A", "C", "E"}));
    QCOMPARE(tab->SelectedRows(), (QList<int>{2, 3}));
}

void TestBookmarkTree::holdingADragNearTheEdgeScrollsAndLeavingStopsIt()
{
    PaneDesk desk(DocumentWithBookmarks(60));
    const DeskTab* tab = desk.First();
    QWidget* viewport = tab->Tree()->viewport();
    const QScrollBar* bar = tab->Tree()->verticalScrollBar();
    tab->Select({0});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    const QPoint edge(30, viewport->height() - 6);
    QCursor::setPos(viewport->mapToGlobal(edge));
    QDragEnterEvent enter(edge, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &enter);
    QDragMoveEvent move(edge, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &move);
    QTRY_VERIFY(bar->value() >= 2);
    QDragLeaveEvent leave;
    QApplication::sendEvent(viewport, &leave);
    const int reached = bar->value();
    QTest::qWait(200);
    QCOMPARE(bar->value(), reached);
    QCursor::setPos(0, 0);
}

void TestBookmarkTree::aDragThatEndedElsewhereLeavesNothingForTheNext()
{
    PaneDesk desk(DocumentWithBookmarks(4));
    const DeskTab* tab = desk.First();
    tab->Select({3});
    std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    Drag::HoverAt(tab->Tree()->viewport(), data.get(), {QPoint(20, 2)});
    QVERIFY(tab->Tree()->dropAtTop);
    QVERIFY(!tab->Tree()->line.isNull());
    data.reset(tab->Tree()->PrepareDrag());
    QVERIFY(!tab->Tree()->dropAtTop);
    QVERIFY(tab->Tree()->line.isNull());
}

void TestBookmarkTree::aDragOverTheListEndsTheSignatureToolAndOnlyThatTool()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    // A view clones its tools when it is made: this one knows the signature tool.
    const DeskTab* tab = desk.Open(DocumentWithBookmarks(3));
    G_ToolHandler* signature = tab->view->ToolHandlerByName("d_electronicsignature");
    QVERIFY(signature);
    tab->view->SetCurrentToolHandler(signature);
    tab->Select({2});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    EventProbe probe(desk.Context()->EventMgr());
    Drag::HoverAt(tab->Tree()->viewport(), data.get(), {QPoint(20, 2)});
    QCOMPARE(tab->view->CurrentToolHandler(), signature); // the zone at the top does not ask for the tool
    Drag::HoverAt(tab->Tree()->viewport(), data.get(), {tab->LowPoint(0)});
    QCOMPARE(tab->view->CurrentToolHandler()->Name(), CCA_String("t_handtool"));
    QCOMPARE(probe.Count(260), 2);
    Drag::HoverAt(tab->Tree()->viewport(), data.get(), {tab->LowPoint(0)});
    QCOMPARE(probe.Count(260), 2);
    tab->view->SetCurrentToolHandler(tab->view->ToolHandlerByName("t_textselect"));
    Drag::HoverAt(tab->Tree()->viewport(), data.get(), {tab->LowPoint(0)});
    QCOMPARE(tab->view->CurrentToolHandler()->Name(), CCA_String("t_textselect"));
}

TETO_TEST_MAIN(TestBookmarkTree)
#include "test_bookmark_tree.moc"
