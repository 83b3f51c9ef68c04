#include "pane_desk.h"

#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <tests/support/drag.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/undo_verbs.h>

#include <frame/operation/event_manager.h>
#include <frame/utils/dpi.h>
#include <frame/view/tool_handler.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QCursor>
#include <QDrag>
#include <QMimeData>
#include <QScrollBar>
#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

namespace {

// Presses a row and drags it along the path with real mouse and drag events; the pointer is let go at its end.
Drag::Outcome DragRow(const DeskTab* tab, int row, const QList<QPoint>& path)
{
    Drag::Outcome outcome;
    QWidget* viewport = tab->Tree()->viewport();
    ReorderTree::SetDragRunner([&](QDrag* drag) {
        outcome = Drag::DropAt(viewport, drag->mimeData(), path);
        return outcome.action;
    });
    Drag::MouseDrag(viewport, tab->RowPoint(row), path.last());
    ReorderTree::SetDragRunner({});
    ViewFixture::Settle();
    return outcome;
}

// A point that lies in the row but not in the zone at the top of the view.
QPoint Low(const DeskTab* tab, int row)
{
    return tab->RowPoint(row) + QPoint(0, 3);
}

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

class TestBookmarkTree : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
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
    // Keys
    void enterGoesToTheBookmarkAsAClickDoes();
    void f2OpensTheEditorOfTheCurrentRow();
    void f2WithoutACurrentRowDoesNothing();
    void deleteRemovesTheSelectionAndGoesOnWithTheNextRow();
    void deleteWithoutASelectionTellsSo();
    void altUpAndDownMoveTheSelectionByOneRow();
    void altUpGathersScatteredRowsAsOneBlock();
    void altUpAtTheTopAndAltDownAtTheBottomDoNothing();
    void altArrowsDoNothingWhereEditingIsNotAllowed();
    void theMenuKeyOpensTheMenuAtTheCurrentRowAlsoWhenItIsScrolledAway();
    void theTabKeyEndsAnEditWithoutOpeningAnotherRow();
    // Geometry
    void wrappedRowsAreMeasuredAnewAtAnotherWidth();
    void switchingWordWrapChangesTheRowHeightAndBack();
    // The whole way
    void addingRenamingAndDraggingWithRealEventsUndoesAndRedoesCompletely();
};

void TestBookmarkTree::init()
{
    Utils::OVDpi::Instance()->OverrideScale(1); // whatever screen this runs on
}

void TestBookmarkTree::cleanup()
{
    Utils::OVDpi::Instance()->OverrideScale(0);
}

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
    const Drag::Outcome outcome = DragRow(tab, 7, {tab->RowPoint(6), QPoint(20, 2)});
    QVERIFY(outcome.wasDropped);
    QCOMPARE(tab->Names().mid(0, 5), (QStringList{"H", "A", "B", "C", "D"}));
    QCOMPARE(tab->Rows(), tab->Names());
}

void TestBookmarkTree::aSelectedRowAtTheTopRefusesTheDropThere()
{
    PaneDesk desk(DocumentWithBookmarks(4));
    const DeskTab* tab = desk.First();
    const Drag::Outcome outcome = DragRow(tab, 0, {tab->RowPoint(1), QPoint(20, 2)});
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
    DragRow(desk.First(), 2, {QPoint(20, y)});
    QCOMPARE(desk.First()->Names(), names);
}

void TestBookmarkTree::aDropOnASelectedRowDoesNothingTheIndicatorVanishesAndNoDropIsOffered()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({1, 3});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    QVERIFY(data);
    Drag::Outcome outcome = Drag::HoverAt(tab->Tree()->viewport(), data.get(), {Low(tab, 2)});
    QVERIFY(outcome.wasMoved);
    QVERIFY(tab->Tree()->canDrop);
    QVERIFY(!tab->Tree()->line.isNull());
    outcome = Drag::DropAt(tab->Tree()->viewport(), data.get(), {Low(tab, 2), Low(tab, 3)});
    QVERIFY(outcome.wasEntered);
    QVERIFY(!outcome.wasMoved);
    QVERIFY(!outcome.wasDropped);
    QVERIFY(!tab->Tree()->canDrop);
    QVERIFY(tab->Tree()->line.isNull());
    QCOMPARE(tab->Tree()->oldLine.y1(), tab->Tree()->visualItemRect(tab->Tree()->topLevelItem(3)).bottom());
    // A drop event that arrives all the same changes neither the document nor the items.
    QDropEvent drop(Low(tab, 3), Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
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
            DragRow(tab, 1, {Low(tab, 3), Low(tab, 4)});
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
    const Drag::Outcome outcome = DragRow(tab, 0, {Low(tab, 1), beside});
    QVERIFY(!outcome.wasMoved);
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C"}));
}

void TestBookmarkTree::draggingSeveralRowsKeepsTheirOrderAndIsOneUndoStep()
{
    PaneDesk desk(DocumentWithBookmarks(6));
    const DeskTab* tab = desk.First();
    tab->Select({4, 0, 2});
    VERIFY_UNDO_REDO(
        tab->Stack(), [tab] { return tab->Dump(); }, [tab] { DragRow(tab, 2, {Low(tab, 3)}); });
    QCOMPARE(tab->Names(), (QStringList{"B", "D", "A", "C", "E", "F"}));
    QCOMPARE(tab->Stack()->count(), 1);
}

void TestBookmarkTree::aMoveFiresOneEventForEachRowAndOneForTheWhole()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({0, 1});
    const EventProbe probe(desk.Context()->EventMgr());
    DragRow(tab, 0, {Low(tab, 4)});
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
    QVERIFY(!Drag::DropAt(other->Tree()->viewport(), foreign.get(), {Low(other, 1)}).wasMoved);
    QMimeData forged;
    for (const char* text : {"", "1", "not a number", "18446744073709551615"}) {
        forged.setData(QStringLiteral("BookmarkMoveDstItem"), text);
        QVERIFY(!Drag::DropAt(other->Tree()->viewport(), &forged, {Low(other, 1)}).wasMoved);
        QDropEvent drop(Low(other, 1), Qt::MoveAction, &forged, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(other->Tree()->viewport(), &drop);
        QVERIFY(!drop.isAccepted());
    }
    QMimeData text;
    text.setText(QStringLiteral("A"));
    QVERIFY(!Drag::DropAt(other->Tree()->viewport(), &text, {Low(other, 1)}).wasEntered);
    QDropEvent drop(Low(other, 1), Qt::MoveAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(other->Tree()->viewport(), &drop);
    QVERIFY(!drop.isAccepted());
    QCOMPARE(other->Names(), (QStringList{"A", "B", "C", "D"}));
    QCOMPARE(other->Rows(), other->Names());
}

void TestBookmarkTree::noDragBeginsWhereEditingIsNotAllowed_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<int>("begun");
    QTest::newRow("plain") << QString() << 1;
    QTest::newRow("permissions that allow editing") << "rights edit=yes\n" << 1;
    QTest::newRow("permissions that forbid editing") << "rights edit=no\n" << 0;
    QTest::newRow("read-only") << "readonly\n" << 0;
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
    Drag::HoverAt(tab->Tree()->viewport(), data.get(), {Low(tab, 1)});
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
    QDragEnterEvent enter(Low(tab, 1), Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &enter);
    QDragMoveEvent move(Low(tab, 1), Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &move);
    const QImage during = viewport->grab().toImage();
    QVERIFY(during != before);
    const QLine line = tab->Tree()->line;
    int dashes = 0;
    for (int x = line.x1(); x <= line.x2(); ++x)
        dashes += during.pixelColor(x, line.y1()) == QColor(100, 101, 106) ? 1 : 0;
    QVERIFY(dashes > line.dx() / 4);
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
    DragRow(tab, 0, {Low(tab, 3)});
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
    Drag::HoverAt(tab->Tree()->viewport(), data.get(), {Low(tab, 0)});
    QCOMPARE(tab->view->CurrentToolHandler()->Name(), CCA_String("t_handtool"));
    QCOMPARE(probe.Count(260), 2);
    Drag::HoverAt(tab->Tree()->viewport(), data.get(), {Low(tab, 0)});
    QCOMPARE(probe.Count(260), 2);
    tab->view->SetCurrentToolHandler(tab->view->ToolHandlerByName("t_textselect"));
    Drag::HoverAt(tab->Tree()->viewport(), data.get(), {Low(tab, 0)});
    QCOMPARE(tab->view->CurrentToolHandler()->Name(), CCA_String("t_textselect"));
}

void TestBookmarkTree::enterGoesToTheBookmarkAsAClickDoes()
{
    PaneDesk desk(QStringLiteral("page 210 297\npage 210 297\npage 210 297\n"
                                 "bookmark \"A\" page=1 zoom=1\nbookmark \"B\" page=3 rect=0,0,9,9 zoom=2"));
    const DeskTab* tab = desk.First();
    tab->Tree()->setFocus();
    tab->Tree()->setCurrentItem(tab->Tree()->topLevelItem(0));
    QTest::keyClick(tab->Tree(), Qt::Key_Down);
    QCOMPARE(tab->view->CurrentPageIndex(), 0);
    const EventProbe probe(desk.Context()->EventMgr());
    QTest::keyClick(tab->Tree(), Qt::Key_Return);
    QCOMPARE(tab->view->CurrentPageIndex(), 2);
    QCOMPARE(tab->view->GetZoom(), 200.0F);
    QCOMPARE(probe.Count(152), 1);
    QCOMPARE(tab->SelectedRows(), QList<int>{1});
    QTest::keyClick(tab->Tree(), Qt::Key_Up);
    QTest::keyClick(tab->Tree(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(tab->view->CurrentPageIndex(), 0);
}

void TestBookmarkTree::f2OpensTheEditorOfTheCurrentRow()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    tab->Select({1});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QVERIFY(tab->Editor());
    QTest::keyClicks(tab->Editor(), QStringLiteral("renamed"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"A", "renamed", "C"}));
    QCOMPARE(tab->Tree()->currentIndex().row(), 1); // the keyboard goes on from there
}

void TestBookmarkTree::f2WithoutACurrentRowDoesNothing()
{
    PaneDesk desk(DocumentWithBookmarks(0));
    QTest::keyClick(desk.First()->Tree(), Qt::Key_F2);
    QTest::keyClick(desk.First()->Tree(), Qt::Key_Return);
    QVERIFY(!desk.First()->Editor());
    QVERIFY(!desk.First()->pane->isRenaming);
}

void TestBookmarkTree::deleteRemovesTheSelectionAndGoesOnWithTheNextRow()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({1, 2});
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QCOMPARE(tab->Names(), (QStringList{"A", "D", "E"}));
    QCOMPARE(tab->SelectedRows(), QList<int>{1});
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QCOMPARE(tab->Names(), QStringList());
    QCOMPARE(tab->Stack()->count(), 4);
    QVERIFY(StepTo(tab->Stack(), 0));
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C", "D", "E"}));
}

void TestBookmarkTree::deleteWithoutASelectionTellsSo()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    desk.First()->Tree()->clearSelection();
    desk.Context()->Answer(1024);
    QTest::keyClick(desk.First()->Tree(), Qt::Key_Delete);
    QCOMPARE(desk.Context()->LastAsked().text, QStringLiteral("Please select a bookmark first."));
    QCOMPARE(desk.First()->Names().size(), 2);
}

void TestBookmarkTree::altUpAndDownMoveTheSelectionByOneRow()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({1, 2});
    QTest::keyClick(tab->Tree(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(tab->Names(), (QStringList{"A", "D", "B", "C", "E"}));
    QCOMPARE(tab->SelectedRows(), (QList<int>{2, 3}));
    QTest::keyClick(tab->Tree(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(tab->Names(), (QStringList{"A", "D", "E", "B", "C"}));
    for (int press = 0; press < 3; ++press)
        QTest::keyClick(tab->Tree(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(tab->Names(), (QStringList{"B", "C", "A", "D", "E"}));
    QCOMPARE(tab->SelectedRows(), (QList<int>{0, 1}));
    QCOMPARE(tab->Stack()->count(), 5);
    QVERIFY(StepTo(tab->Stack(), 0));
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C", "D", "E"}));
}

void TestBookmarkTree::altUpGathersScatteredRowsAsOneBlock()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({0, 2, 4});
    QTest::keyClick(tab->Tree(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(tab->Names(), (QStringList{"A", "C", "E", "B", "D"}));
    QCOMPARE(tab->SelectedRows(), (QList<int>{0, 1, 2}));
}

void TestBookmarkTree::altUpAtTheTopAndAltDownAtTheBottomDoNothing()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    tab->Select({0, 1});
    QTest::keyClick(tab->Tree(), Qt::Key_Up, Qt::AltModifier);
    tab->Select({2});
    QTest::keyClick(tab->Tree(), Qt::Key_Down, Qt::AltModifier);
    tab->Tree()->clearSelection();
    QTest::keyClick(tab->Tree(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C"}));
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestBookmarkTree::altArrowsDoNothingWhereEditingIsNotAllowed()
{
    PaneDesk desk(QStringLiteral("readonly\n") + DocumentWithBookmarks(3));
    desk.First()->Select({1});
    QTest::keyClick(desk.First()->Tree(), Qt::Key_Up, Qt::AltModifier);
    QTest::keyClick(desk.First()->Tree(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(desk.First()->Names(), (QStringList{"A", "B", "C"}));
}

void TestBookmarkTree::theMenuKeyOpensTheMenuAtTheCurrentRowAlsoWhenItIsScrolledAway()
{
    PaneDesk desk(DocumentWithBookmarks(60));
    const DeskTab* tab = desk.First();
    QSignalSpy requests(tab->Tree(), &QWidget::customContextMenuRequested);
    tab->Tree()->setCurrentItem(tab->Tree()->topLevelItem(1));
    tab->Tree()->verticalScrollBar()->setValue(tab->Tree()->verticalScrollBar()->maximum());
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(0, 0));
    QApplication::sendEvent(tab->Tree(), &menuKey);
    QCOMPARE(desk.menu->shown, QStringList{"vn_bookmark"});
    QCOMPARE(requests.count(), 1);
    QCOMPARE(tab->Tree()->itemAt(requests.first().first().toPoint()), tab->Tree()->topLevelItem(1));
    QTest::keyClick(tab->Tree(), Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(desk.menu->shown.size(), 2);
    tab->Tree()->setCurrentItem(nullptr);
    QApplication::sendEvent(tab->Tree(), &menuKey);
    QCOMPARE(desk.menu->shown.size(), 2);
}

void TestBookmarkTree::theTabKeyEndsAnEditWithoutOpeningAnotherRow()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    tab->Select({0});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QTest::keyClicks(tab->Editor(), QStringLiteral("X"));
    QTest::keyClick(tab->Editor(), Qt::Key_Tab);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"X", "B", "C"}));
    QVERIFY(!tab->Editor());
}

void TestBookmarkTree::wrappedRowsAreMeasuredAnewAtAnotherWidth()
{
    PaneDesk desk(QStringLiteral("page 210 297\nbookmark \"%1\" page=1").arg(QString(90, QLatin1Char('w'))));
    const DeskTab* tab = desk.First();
    const auto height = [tab] { return tab->Tree()->visualItemRect(tab->Tree()->topLevelItem(0)).height(); };
    const int narrow = height();
    tab->pane->resize(500, 420);
    ViewFixture::Settle();
    const int wide = height();
    QVERIFY2(wide < narrow, qPrintable(QStringLiteral("%1 %2").arg(wide).arg(narrow)));
    tab->pane->resize(260, 420);
    ViewFixture::Settle();
    QCOMPARE(height(), narrow);
}

void TestBookmarkTree::switchingWordWrapChangesTheRowHeightAndBack()
{
    PaneDesk desk(QStringLiteral("page 210 297\nbookmark \"%1\" page=1").arg(QString(90, QLatin1Char('w'))));
    const DeskTab* tab = desk.First();
    const auto height = [tab] { return tab->Tree()->visualItemRect(tab->Tree()->topLevelItem(0)).height(); };
    const int wrapped = height();
    QVERIFY(desk.Perform("d_bookmarkwrap"));
    QCOMPARE(height(), 25);
    QVERIFY(wrapped > 2 * height());
    QVERIFY(desk.Perform("d_bookmarkwrap"));
    QCOMPARE(height(), wrapped);
    QCOMPARE(tab->Stack()->count(), 0);
    QVERIFY(tab->pane->wordWrap && tab->pane->wrapEnabled);
}

void TestBookmarkTree::addingRenamingAndDraggingWithRealEventsUndoesAndRedoesCompletely()
{
    PaneDesk desk(QStringLiteral("page 210 297\n  text 20 30 Chapter One\npage 210 297\n"
                                 "bookmark \"Start\" page=1 zoom=1\nbookmark \"End\" page=2 zoom=1"));
    const DeskTab* tab = desk.First();
    QStringList states{tab->Dump()};
    // Add from the selected text.
    tab->view->SelectAllText();
    QVERIFY(!tab->view->SelectHighLightText().isEmpty());
    QTest::mouseClick(tab->pane->addButton, Qt::LeftButton);
    states.append(tab->Dump());
    QCOMPARE(tab->Names(), (QStringList{"Start", "End", "Chapter One"}));
    // Rename it in the editor that opened.
    QVERIFY(tab->Editor());
    QTest::keyClick(tab->Editor(), Qt::Key_End);
    QTest::keyClicks(tab->Editor(), QStringLiteral(": the beginning"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    states.append(tab->Dump());
    QCOMPARE(tab->Names().last(), QStringLiteral("Chapter One: the beginning"));
    // Drag it between the other two.
    const Drag::Outcome outcome = DragRow(tab, 2, {Low(tab, 1), Low(tab, 0)});
    QVERIFY(outcome.wasDropped);
    states.append(tab->Dump());
    QCOMPARE(tab->Names(), (QStringList{"Start", "Chapter One: the beginning", "End"}));
    QCOMPARE(tab->Stack()->count(), 3);
    for (int round = 0; round < 2; ++round) {
        for (int step = 2; step >= 0; --step) {
            tab->Stack()->undo();
            QCOMPARE(tab->Dump(), states.at(step));
            QCOMPARE(tab->Rows(), tab->Names());
        }
        QVERIFY(!tab->Stack()->canUndo());
        for (int step = 1; step <= 3; ++step) {
            tab->Stack()->redo();
            QCOMPARE(tab->Dump(), states.at(step));
            QCOMPARE(tab->Rows(), tab->Names());
        }
        QVERIFY(!tab->Stack()->canRedo());
    }
}

TETO_TEST_MAIN(TestBookmarkTree)
#include "test_bookmark_tree.moc"
