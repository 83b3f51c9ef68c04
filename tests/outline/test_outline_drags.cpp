#include "outline_drops.h"
#include "outline_gestures.h"

#include <frame/operation/event_manager.h>
#include <frame/view/tool_handler.h>
#include <outline/outline_pane.h>
#include <outline/outline_tree.h>
#include <tests/support/editing_states.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>
#include <tests/support/undo_verbs.h>
#include <tests/support/unscaled_test.h>

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUndoStack>
#include <QtTest>

using Gesture::AsChild;
using Gesture::AsSibling;

namespace {

const QString format = QStringLiteral("application/x-qabstractitemmodeldatalist");

// Enters and drops without the move between them, which would have refused the place. True when the drop was taken.
bool DropUnasked(const OutlineTab* tab, const QMimeData* data, const QPoint& place)
{
    QWidget* viewport = tab->Tree()->viewport();
    QDragEnterEvent enter(place, Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &enter);
    QDropEvent drop(place, Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    drop.accept();
    QApplication::sendEvent(viewport, &drop);
    return enter.isAccepted() && drop.isAccepted();
}

std::function<QString()> DumpOf(const OutlineTab* tab)
{
    return [tab] { return tab->Dump(); };
}

} // namespace

class TestOutlineDrags : public UnscaledTest
{
    Q_OBJECT
private slots:
    void aMouseDragCarriesTheAddressOfTheFirstSelectedItemAndMovesItsEntry();
    void threeEntriesSelectedAsThreeOneTwoArePlacedAsOneTwoThree();
    void entriesOfSeveralParentsGatherInTheTreesOrder();
    void aDropToTheRightMakesTheEntryTheFirstChild();
    void aWholeBranchMovesWithAllThatItsRecordsHold();
    void aSelectedEntryBelowASelectedOneIsNotMovedByItself();
    void aRefusedDropThatArrivesAllTheSameChangesNothing();
    void aDropInTheTopPixelsMovesTheRunToTheFirstPlacesOfThatRowsParent();
    void aMoveIsOneUndoStepAndFiresTwice();
    void theMovedEntriesAreSelectedAfterwards();
    void whatWasExpandedStaysExpandedOverADrag();
    void noDragBeginsWhereEditingIsNotAllowed_data();
    void noDragBeginsWhereEditingIsNotAllowed();
    void noDragBeginsWithoutASelection();
    void anotherTreesDragIsRefusedAndAForgedAddressIsNeverFollowed();
    void aDragWithTheSignatureToolActiveSwitchesToTheHandToolOnce();
    void aTreeThatRefusesTheMoveKeepsItsRows();
    void nodesThatDiedDuringTheDragAreNotMoved();
    void aDropAfterTheRightsOrTheTabChangedMovesNoRows_data();
    void aDropAfterTheRightsOrTheTabChangedMovesNoRows();
};

void TestOutlineDrags::aMouseDragCarriesTheAddressOfTheFirstSelectedItemAndMovesItsEntry()
{
    OutlineDesk desk(Flat("ABCD"));
    const OutlineTab* tab = desk.First();
    const auto address = QByteArray::number(reinterpret_cast<quintptr>(tab->Item("B")));
    QByteArray carried;
    QStringList formats;
    ReorderTree::SetDragRunner([&](QDrag* drag) {
        carried = drag->mimeData()->data(format);
        formats = drag->mimeData()->formats();
        return Drag::DropAt(tab->Tree()->viewport(), drag->mimeData(), {AsSibling(tab, "C")}).action;
    });
    Drag::MouseDrag(tab->Tree()->viewport(), AsSibling(tab, "B"), AsSibling(tab, "C"));
    ReorderTree::SetDragRunner({});
    QCOMPARE(formats, QStringList{format});
    QCOMPARE(carried, address);
    QCOMPARE(tab->Names(), QStringLiteral("A\nC\nB\nD\n"));
    QCOMPARE(tab->Rows(), tab->Names());
    QVERIFY(!tab->Tree()->isDragging);
}

void TestOutlineDrags::threeEntriesSelectedAsThreeOneTwoArePlacedAsOneTwoThree()
{
    OutlineDesk desk(Flat("123456"));
    const OutlineTab* tab = desk.First();
    tab->Select({"3", "1", "2"});
    VERIFY_UNDO_REDO(tab->Stack(), DumpOf(tab), [tab] { Gesture::DragEntry(tab, "3", {AsSibling(tab, "5")}); });
    QCOMPARE(tab->Names(), QStringLiteral("4\n5\n1\n2\n3\n6\n"));
    QCOMPARE(tab->Rows(), tab->Names());
}

void TestOutlineDrags::entriesOfSeveralParentsGatherInTheTreesOrder()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->pane->SyncExpandStates(); // no part of the step
    tab->Select({"C1", "A1a", "B"});
    VERIFY_UNDO_REDO(tab->Stack(), DumpOf(tab), [tab] { Gesture::DragEntry(tab, "B", {AsSibling(tab, "A2")}); });
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n  A2\n  A1a\n  B\n  C1\nC\n"));
    QCOMPARE(tab->Rows(), tab->Names());
}

void TestOutlineDrags::aDropToTheRightMakesTheEntryTheFirstChild()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->pane->SyncExpandStates(); // no part of the step
    VERIFY_UNDO_REDO(tab->Stack(), DumpOf(tab), [tab] { Gesture::DragEntry(tab, "B", {AsChild(tab, "A")}); });
    QCOMPARE(tab->Names(), QStringLiteral("A\n  B\n  A1\n    A1a\n  A2\nC\n  C1\n"));
    QCOMPARE(tab->Rows(), tab->Names());
}

void TestOutlineDrags::aWholeBranchMovesWithAllThatItsRecordsHold()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->pane->SyncExpandStates(); // no part of the step
    VERIFY_UNDO_REDO(tab->Stack(), DumpOf(tab), [tab] { Gesture::DragEntry(tab, "A", {AsChild(tab, "C")}); });
    QCOMPARE(tab->Names(), QStringLiteral("B\nC\n  A\n    A1\n      A1a\n    A2\n  C1\n"));
    QCOMPARE(tab->Item("A1a")->data(0, Qt::UserRole).toInt(), 4);
    QCOMPARE(tab->Item("A1a")->text(1), QStringLiteral("1"));
}

void TestOutlineDrags::aSelectedEntryBelowASelectedOneIsNotMovedByItself()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Select({"A1a", "A"}); // the entry between them is not selected
    Gesture::DragEntry(tab, "A", {AsSibling(tab, "C")});
    QCOMPARE(tab->Names(), QStringLiteral("B\nC\n  C1\nA\n  A1\n    A1a\n  A2\n"));
}

void TestOutlineDrags::aRefusedDropThatArrivesAllTheSameChangesNothing()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    const QString before = tab->Names();
    tab->Select({"A"});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    for (const QPoint& place : {AsSibling(tab, "A1"), AsSibling(tab, "A"), QPoint(30, 400)})
        QVERIFY(!DropUnasked(tab, data.get(), place));
    QCOMPARE(tab->Names(), before);
    QCOMPARE(tab->Rows(), before);
    QCOMPARE(tab->Stack()->count(), 0);
    QVERIFY(DropUnasked(tab, data.get(), AsSibling(tab, "C"))); // it was the place alone
    QCOMPARE(tab->Names(), QStringLiteral("B\nC\n  C1\nA\n  A1\n    A1a\n  A2\n"));
}

void TestOutlineDrags::aDropInTheTopPixelsMovesTheRunToTheFirstPlacesOfThatRowsParent()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->pane->SyncExpandStates(); // no part of the step
    tab->Select({"C1", "B"});
    VERIFY_UNDO_REDO(tab->Stack(), DumpOf(tab), [tab] {
        Gesture::DragEntry(tab, "B", {AsSibling(tab, "A2"), QPoint(40, 2)});
    });
    QCOMPARE(tab->Names(), QStringLiteral("B\nC1\nA\n  A1\n    A1a\n  A2\nC\n"));
    QCOMPARE(tab->Rows(), tab->Names());
}

void TestOutlineDrags::aMoveIsOneUndoStepAndFiresTwice()
{
    OutlineDesk desk(Flat("ABCDE"));
    const OutlineTab* tab = desk.First();
    tab->Select({"A", "B"});
    const EventProbe probe(desk.Context()->EventMgr());
    Gesture::DragEntry(tab, "A", {AsSibling(tab, "D")});
    QCOMPARE(probe.Count(110), 2); // the command's and the whole's
    QCOMPARE(tab->Stack()->count(), 1);
}

void TestOutlineDrags::theMovedEntriesAreSelectedAfterwards()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Select({"B", "A2"});
    Gesture::DragEntry(tab, "B", {AsChild(tab, "C1")});
    QCOMPARE(Gesture::Selected(tab), (QStringList{"A2", "B"}));
    QCOMPARE(tab->Tree()->currentItem(), tab->Item("A2"));
    QVERIFY(tab->Tree()->dragNodes.isEmpty());
}

void TestOutlineDrags::whatWasExpandedStaysExpandedOverADrag()
{
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"A\" closed\n  outline \"A1\"\n"
                                    "outline \"B\"\n  outline \"B1\"\noutline \"C\"\n"));
    const OutlineTab* tab = desk.First();
    tab->Item("B")->setExpanded(false);
    Gesture::DragEntry(tab, "C", {AsSibling(tab, "A1")});
    QCOMPARE(tab->Rows(), QStringLiteral("A\n  A1\n  C\nB\n  B1\n"));
    QVERIFY(tab->Item("A")->isExpanded());
    QVERIFY(!tab->Item("B")->isExpanded());
}

void TestOutlineDrags::noDragBeginsWhereEditingIsNotAllowed_data()
{
    AddEditingStates<int>("begun", 1, 0);
}

void TestOutlineDrags::noDragBeginsWhereEditingIsNotAllowed()
{
    QFETCH(QString, state);
    QFETCH(int, begun);
    OutlineDesk desk(state + Flat("ABC"));
    QCOMPARE(Gesture::DragsBegun(desk.First(), "A"), begun);
    QCOMPARE(desk.First()->Tree()->isDragging, begun == 1);
}

void TestOutlineDrags::noDragBeginsWithoutASelection()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Tree()->clearSelection();
    QVERIFY(!tab->Tree()->PrepareDrag());
    QVERIFY(!tab->Tree()->isDragging);
    tab->Select({"C", "A1", "A1a"});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    QVERIFY(data);
    QCOMPARE(tab->Tree()->dragNodes, (QList<G_TreeNode*>{tab->Node({0, 0}), tab->Node({2})}));
}

void TestOutlineDrags::anotherTreesDragIsRefusedAndAForgedAddressIsNeverFollowed()
{
    OutlineDesk desk(Flat("ABCD"));
    OutlineTab* other = desk.Open(Flat("ABCD"));
    desk.First()->Select({"A"});
    other->Select({"C"});
    const std::unique_ptr<QMimeData> foreign(desk.First()->Tree()->PrepareDrag());
    QVERIFY(foreign);
    const std::unique_ptr<QMimeData> own(other->Tree()->PrepareDrag());
    QWidget* viewport = other->Tree()->viewport();
    QVERIFY(!Drag::DropAt(viewport, foreign.get(), {AsSibling(other, "B")}).wasMoved);
    QMimeData forged;
    for (const char* text : {"", "1", "not a number", "18446744073709551615"}) {
        forged.setData(format, text);
        QVERIFY(!Drag::DropAt(viewport, &forged, {AsSibling(other, "B")}).wasMoved);
        QVERIFY(!DropUnasked(other, &forged, AsSibling(other, "B")));
    }
    QMimeData text;
    text.setText(QStringLiteral("A"));
    QVERIFY(!Drag::DropAt(viewport, &text, {AsSibling(other, "B")}).wasEntered);
    QVERIFY(!DropUnasked(other, &text, AsSibling(other, "B")));
    QCOMPARE(other->Names(), QStringLiteral("A\nB\nC\nD\n"));
    QCOMPARE(other->Rows(), other->Names());
}

void TestOutlineDrags::aDragWithTheSignatureToolActiveSwitchesToTheHandToolOnce()
{
    OutlineDesk desk(Flat("ABC"));
    // A view clones its tools when it is made: this one knows the signature tool.
    const OutlineTab* tab = desk.Open(Flat("ABC"));
    G_ToolHandler* signature = tab->view->ToolHandlerByName("d_electronicsignature");
    QVERIFY(signature);
    tab->view->SetCurrentToolHandler(signature);
    tab->Select({"C"});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    const EventProbe probe(desk.Context()->EventMgr());
    const auto hover = [&](const QPoint& place) { Drag::HoverAt(tab->Tree()->viewport(), data.get(), {place}); };
    hover(QPoint(25, 2));
    QCOMPARE(tab->view->CurrentToolHandler(), signature); // the zone at the top does not ask for the tool
    hover(AsSibling(tab, "A"));
    QCOMPARE(tab->view->CurrentToolHandler()->Name(), CCA_String("t_handtool"));
    QCOMPARE(probe.Count(260), 2);
    hover(AsSibling(tab, "B"));
    QCOMPARE(probe.Count(260), 2); // the tool is the hand already
}

void TestOutlineDrags::aTreeThatRefusesTheMoveKeepsItsRows()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    const QString before = tab->Dump();
    tab->Node({})->SetChangeGuard([](G_TreeNode::Change, G_TreeNode*, int) { return false; });
    Gesture::DragEntry(tab, "B", {AsSibling(tab, "A1")});
    QCOMPARE(tab->Rows(), tab->Names());
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\n"));
    tab->Stack()->undo(); // of a step that did nothing
    tab->Node({})->SetChangeGuard({});
    QCOMPARE(DumpTree(tab->Node({})).size(), before.size() - int(qstrlen(" closed"))); // but for what is expanded now
    QCOMPARE(tab->Rows(), tab->Names());
}

void TestOutlineDrags::nodesThatDiedDuringTheDragAreNotMoved()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Select({"B", "C"});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    QVERIFY(tab->Node({})->RemoveSubNode(1)); // a timer's work while the pointer is down
    tab->pane->UpdateOutline(0);
    tab->Tree()->setCurrentItem(tab->Item("C"));
    QVERIFY(!DropUnasked(tab, data.get(), AsSibling(tab, "A1"))); // the rows are others now
    tab->pane->MoveOutlineNodes(tab->Tree()->dragNodes, tab->Node({0}), false);
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nC\n  C1\n"));
    QCOMPARE(tab->Rows(), tab->Names());
}

void TestOutlineDrags::aDropAfterTheRightsOrTheTabChangedMovesNoRows_data()
{
    QTest::addColumn<bool>("isReadOnly");
    QTest::newRow("the document became read-only") << true;
    QTest::newRow("another tab came to the front") << false;
}

void TestOutlineDrags::aDropAfterTheRightsOrTheTabChangedMovesNoRows()
{
    QFETCH(bool, isReadOnly);
    OutlineDesk desk(Flat("ABC"));
    const OutlineTab* tab = desk.First();
    tab->Select({"A"});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    if (isReadOnly)
        tab->document->SetReadOnly(true);
    else
        desk.Open(Flat("XYZ"));
    QVERIFY(!Drag::DropAt(tab->Tree()->viewport(), data.get(), {AsSibling(tab, "C")}).wasDropped);
    QCOMPARE(tab->Names(), QStringLiteral("A\nB\nC\n"));
    QCOMPARE(tab->Rows(), tab->Names());
    QCOMPARE(tab->Stack()->count(), 0);
}

TETO_TEST_MAIN(TestOutlineDrags)
#include "test_outline_drags.moc"
