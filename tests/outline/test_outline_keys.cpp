#include "outline_gestures.h"

#include <outline/outline_pane.h>
#include <outline/outline_tree.h>
#include <tests/support/test_main.h>
#include <tests/support/undo_verbs.h>
#include <tests/support/unscaled_test.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTextEdit>
#include <QTimer>
#include <QToolButton>
#include <QUndoStack>
#include <QtTest>

namespace {

QString Many(int count)
{
    QString text = QStringLiteral("page 210 297\n");
    for (int i = 0; i < count; ++i)
        text += QStringLiteral("outline \"N%1\" page=1\n").arg(i);
    return text;
}

void Alt(const OutlineTab* tab, Qt::Key key)
{
    tab->Tree()->setFocus(); // else Alt+Down would mean the add button, which has it at first
    QTest::keyClick(tab->Tree(), key, Qt::AltModifier);
}

// Picks entries one by one with the Ctrl key held, as a user does.
void CtrlClick(const OutlineTab* tab, const QStringList& titles)
{
    tab->Tree()->setFocus();
    QTest::keyPress(tab->Tree(), Qt::Key_Control, Qt::ControlModifier);
    for (const QString& title : titles)
        Gesture::Click(tab, title, Qt::ControlModifier);
    QTest::keyRelease(tab->Tree(), Qt::Key_Control);
}

} // namespace

class TestOutlineKeys : public UnscaledTest
{
    Q_OBJECT
private slots:
    void enterGoesToTheEntryAsAClickDoes();
    void arrowsWalkTheTreeAndOpenAndCloseIt();
    void f2OpensTheEditorOfTheCurrentEntry();
    void keysWithoutACurrentEntryDoNothing();
    void deleteRemovesTheSelectionAndGoesOnWithTheNextEntry();
    void deleteAsksAndTakesANo();
    void thePaneMayDieWhileDeleteAsks();
    void deleteWithoutASelectionTellsSo();
    void altUpAndDownMoveAnEntryAmongItsSiblings();
    void altUpAtTheTopAndAltDownAtTheBottomDoNothing();
    void altRightMakesAnEntryTheLastChildOfItsPreviousSiblingAndAltLeftTakesItBack();
    void altLeftAtTheTopLevelAndAltRightOfAFirstChildDoNothing();
    void aSelectionMovesAsOneRun();
    void altRightOpensTheNewParent();
    void altArrowsDoNothingWhereEditingIsNotAllowed();
    void otherAltKeysAreNotTaken();
    void theMenuKeyOpensTheMenuAtTheCurrentEntryAlsoWhenItIsScrolledAway();
    void ctrlIsHeldFromItsPressToItsReleaseOrUntilTheFocusGoes();
    void ctrlClicksOnSeveralEntriesTakeWhatIsBelowThemAlong();
    void aCtrlSelectionOfAParentAndItsChildIsLeftAlone();
    void withoutCtrlAReleaseSelectsNothingMore();
    void theTabKeyGoesThroughTheButtonsToTheTree();
    void altAndDownOpensTheMenuOfTheAddButton();
    void addingRenamingAndMovingWithRealEventsUndoesAndRedoesCompletely();
};

void TestOutlineKeys::enterGoesToTheEntryAsAClickDoes()
{
    OutlineDesk desk(QStringLiteral("page 210 297\npage 210 297\npage 210 297\n"
                                    "outline \"A\" page=1\n  outline \"B\" page=3\n"));
    const OutlineTab* tab = desk.First();
    tab->Tree()->setFocus();
    tab->MakeCurrent("A");
    QTest::keyClick(tab->Tree(), Qt::Key_Down);
    QCOMPARE(tab->view->CurrentPageIndex(), 0);
    QTest::keyClick(tab->Tree(), Qt::Key_Return);
    QCOMPARE(tab->view->CurrentPageIndex(), 2);
    QCOMPARE(Gesture::Selected(tab), QStringList{"B"});
    QTest::keyClick(tab->Tree(), Qt::Key_Up);
    QTest::keyClick(tab->Tree(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(tab->view->CurrentPageIndex(), 0);
}

void TestOutlineKeys::arrowsWalkTheTreeAndOpenAndCloseIt()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("A");
    QTest::keyClick(tab->Tree(), Qt::Key_Left);
    QVERIFY(!tab->Item("A")->isExpanded());
    QCOMPARE(tab->pane->expandState.value(tab->Node({0}), true), false);
    QTest::keyClick(tab->Tree(), Qt::Key_Down);
    QCOMPARE(tab->Tree()->currentItem(), tab->Item("B"));
    QTest::keyClick(tab->Tree(), Qt::Key_Up);
    QTest::keyClick(tab->Tree(), Qt::Key_Right);
    QVERIFY(tab->Item("A")->isExpanded());
    QCOMPARE(tab->pane->expandState.value(tab->Node({0}), false), true);
}

void TestOutlineKeys::f2OpensTheEditorOfTheCurrentEntry()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("A1a");
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QVERIFY(tab->Editor());
    QTest::keyClicks(tab->Editor(), QStringLiteral("renamed"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    renamed\n  A2\nB\nC\n  C1\n"));
    QCOMPARE(tab->Stack()->count(), 1);
    QCOMPARE(tab->Tree()->currentItem(), tab->Item("renamed")); // the keyboard goes on from there
}

void TestOutlineKeys::keysWithoutACurrentEntryDoNothing()
{
    OutlineDesk desk(QStringLiteral("page 210 297"));
    const OutlineTab* tab = desk.First();
    for (const Qt::Key key : {Qt::Key_F2, Qt::Key_Return})
        QTest::keyClick(tab->Tree(), key);
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right})
        Alt(tab, key);
    QTest::keyClick(tab->Tree(), Qt::Key_F10, Qt::ShiftModifier);
    QVERIFY(!tab->Editor());
    QCOMPARE(desk.menu->shown, QStringList());
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestOutlineKeys::deleteRemovesTheSelectionAndGoesOnWithTheNextEntry()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    desk.Context()->AnswerAllWith(1024);
    tab->Select({"A1"});
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A2\nB\nC\n  C1\n"));
    QCOMPARE(Gesture::Selected(tab), QStringList{"A2"});
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QCOMPARE(Gesture::Selected(tab), QStringList{"A"}); // the last below it is gone
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QCOMPARE(Gesture::Selected(tab), QStringList{"B"});
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QCOMPARE(tab->Names(), QString());
    QCOMPARE(tab->Stack()->count(), 5);
    QVERIFY(StepTo(tab->Stack(), 0));
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\n"));
    QCOMPARE(tab->Rows(), tab->Names());
}

void TestOutlineKeys::deleteAsksAndTakesANo()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Select({"A1"});
    desk.Context()->Answer(4194304); // cancel
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QCOMPARE(tab->Stack()->count(), 0);
    QCOMPARE(Gesture::Selected(tab), QStringList{"A1"});
}

void TestOutlineKeys::thePaneMayDieWhileDeleteAsks()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Select({"A1"});
    desk.Context()->SetWhileOpen([tab](const AskedBox&) { delete tab->pane; });
    desk.Context()->Answer(4194304); // cancel
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
    QApplication::sendEvent(tab->Tree(), &press); // and no release: it would go to a tree that is gone
    QVERIFY(!tab->pane);
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestOutlineKeys::deleteWithoutASelectionTellsSo()
{
    OutlineDesk desk(SmallOutline());
    desk.First()->Tree()->clearSelection();
    desk.Context()->Answer(2097152);
    QTest::keyClick(desk.First()->Tree(), Qt::Key_Delete);
    QCOMPARE(desk.Context()->LastAsked().text, QStringLiteral("No select item"));
    QCOMPARE(desk.First()->Stack()->count(), 0);
}

void TestOutlineKeys::altUpAndDownMoveAnEntryAmongItsSiblings()
{
    OutlineDesk desk(Many(4));
    const OutlineTab* tab = desk.First();
    tab->Select({"N1"});
    const auto order = [tab] { return tab->Names().split('\n', Qt::SkipEmptyParts).join(' '); };
    Alt(tab, Qt::Key_Down);
    QCOMPARE(order(), QStringLiteral("N0 N2 N1 N3"));
    Alt(tab, Qt::Key_Down);
    QCOMPARE(order(), QStringLiteral("N0 N2 N3 N1"));
    for (int press = 0; press < 3; ++press)
        Alt(tab, Qt::Key_Up);
    QCOMPARE(order(), QStringLiteral("N1 N0 N2 N3"));
    QCOMPARE(Gesture::Selected(tab), QStringList{"N1"});
    QCOMPARE(tab->Stack()->count(), 5);
    QVERIFY(StepTo(tab->Stack(), 0));
    QCOMPARE(order(), QStringLiteral("N0 N1 N2 N3"));
}

void TestOutlineKeys::altUpAtTheTopAndAltDownAtTheBottomDoNothing()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Select({"A1"});
    Alt(tab, Qt::Key_Up);
    tab->Select({"A2"});
    Alt(tab, Qt::Key_Down);
    tab->Select({"C1"});
    Alt(tab, Qt::Key_Up);
    Alt(tab, Qt::Key_Down);
    tab->Tree()->clearSelection();
    Alt(tab, Qt::Key_Down);
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestOutlineKeys::altRightMakesAnEntryTheLastChildOfItsPreviousSiblingAndAltLeftTakesItBack()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    const QString before = tab->Names();
    tab->Select({"B"});
    Alt(tab, Qt::Key_Right);
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\n  B\nC\n  C1\n"));
    Alt(tab, Qt::Key_Right); // A2 has no children yet
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\n    B\nC\n  C1\n"));
    QCOMPARE(Gesture::Selected(tab), QStringList{"B"});
    Alt(tab, Qt::Key_Left);
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\n  B\nC\n  C1\n"));
    Alt(tab, Qt::Key_Left);
    QCOMPARE(tab->Names(), before);
    QCOMPARE(tab->Stack()->count(), 4);
    QVERIFY(StepTo(tab->Stack(), 2));
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\n    B\nC\n  C1\n"));
    QVERIFY(StepTo(tab->Stack(), 0));
    QCOMPARE(tab->Names(), before);
    QCOMPARE(tab->Rows(), before);
}

void TestOutlineKeys::altLeftAtTheTopLevelAndAltRightOfAFirstChildDoNothing()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    for (const char* title : {"A", "B", "C"}) {
        tab->Select({title});
        Alt(tab, Qt::Key_Left);
    }
    for (const char* title : {"A", "A1", "A1a", "C1"}) {
        tab->Select({title});
        Alt(tab, Qt::Key_Right);
    }
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestOutlineKeys::aSelectionMovesAsOneRun()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->pane->SyncExpandStates(); // no part of the step
    tab->Select({"C1", "B"});
    VERIFY_UNDO_REDO(
        tab->Stack(), [tab] { return tab->Dump(); }, [tab] { Alt(tab, Qt::Key_Up); });
    QCOMPARE(tab->Names(), QStringLiteral("B\nC1\nA\n  A1\n    A1a\n  A2\nC\n"));
    tab->Select({"A1", "A2"});
    Alt(tab, Qt::Key_Left);
    QCOMPARE(tab->Names(), QStringLiteral("B\nC1\nA\nA1\n  A1a\nA2\nC\n"));
    QCOMPARE(Gesture::Selected(tab), (QStringList{"A1", "A2"}));
    Alt(tab, Qt::Key_Down);
    QCOMPARE(tab->Names(), QStringLiteral("B\nC1\nA\nC\nA1\n  A1a\nA2\n"));
    Alt(tab, Qt::Key_Right);
    QCOMPARE(tab->Names(), QStringLiteral("B\nC1\nA\nC\n  A1\n    A1a\n  A2\n"));
}

void TestOutlineKeys::altRightOpensTheNewParent()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Item("A")->setExpanded(false);
    tab->Select({"B"});
    Alt(tab, Qt::Key_Right);
    QVERIFY(tab->Item("A")->isExpanded());
    QCOMPARE(tab->Tree()->currentItem(), tab->Item("B"));
}

void TestOutlineKeys::altArrowsDoNothingWhereEditingIsNotAllowed()
{
    for (const char* state : {"readonly\n", "rights edit=no\n"}) {
        OutlineDesk desk(state + SmallOutline());
        const OutlineTab* tab = desk.First();
        const QString before = tab->Dump();
        tab->Select({"B"});
        for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right})
            Alt(tab, key);
        QTest::keyClick(tab->Tree(), Qt::Key_F2);
        QVERIFY(!tab->Editor());
        QTest::keyClick(tab->Tree(), Qt::Key_Delete);
        QCOMPARE(tab->Dump(), before);
        QCOMPARE(tab->Stack()->count(), 0);
    }
}

void TestOutlineKeys::otherAltKeysAreNotTaken()
{
    OutlineDesk desk(SmallOutline());
    QKeyEvent key(QEvent::KeyPress, Qt::Key_1, Qt::AltModifier | Qt::ShiftModifier);
    key.accept();
    QApplication::sendEvent(desk.First()->Tree(), &key);
    QVERIFY(!key.isAccepted()); // the reader's own
}

void TestOutlineKeys::theMenuKeyOpensTheMenuAtTheCurrentEntryAlsoWhenItIsScrolledAway()
{
    OutlineDesk desk(Many(60));
    const OutlineTab* tab = desk.First();
    QSignalSpy requests(tab->Tree(), &QWidget::customContextMenuRequested);
    tab->MakeCurrent("N1");
    tab->Tree()->verticalScrollBar()->setValue(tab->Tree()->verticalScrollBar()->maximum());
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(0, 0));
    QApplication::sendEvent(tab->Tree(), &menuKey);
    QCOMPARE(desk.menu->shown, QStringList{"vn_outline"});
    QCOMPARE(requests.count(), 1);
    QCOMPARE(tab->Tree()->itemAt(requests.first().first().toPoint()), tab->Item("N1"));
    QTest::keyClick(tab->Tree(), Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(desk.menu->shown.size(), 2);
    tab->Tree()->setCurrentItem(nullptr);
    QApplication::sendEvent(tab->Tree(), &menuKey);
    QCOMPARE(desk.menu->shown.size(), 2);
}

void TestOutlineKeys::ctrlIsHeldFromItsPressToItsReleaseOrUntilTheFocusGoes()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Tree()->setFocus();
    QVERIFY(!tab->Tree()->ctrlHeld);
    QTest::keyPress(tab->Tree(), Qt::Key_Control);
    QVERIFY(tab->Tree()->ctrlHeld);
    QTest::keyRelease(tab->Tree(), Qt::Key_Control);
    QVERIFY(!tab->Tree()->ctrlHeld);
    QTest::keyPress(tab->Tree(), Qt::Key_Control);
    tab->pane->delButton->setFocus(); // the release goes elsewhere
    QVERIFY(!tab->Tree()->ctrlHeld);
    QTest::keyRelease(tab->pane->delButton, Qt::Key_Control);
}

void TestOutlineKeys::ctrlClicksOnSeveralEntriesTakeWhatIsBelowThemAlong()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    CtrlClick(tab, {"C"});
    QCOMPARE(Gesture::Selected(tab), QStringList{"C"}); // a single one stays single
    CtrlClick(tab, {"A"});
    QCOMPARE(Gesture::Selected(tab), (QStringList{"A", "A1", "A1a", "A2", "C", "C1"}));
    CtrlClick(tab, {"B"});
    QCOMPARE(Gesture::Selected(tab), (QStringList{"A", "A1", "A1a", "A2", "B", "C", "C1"}));
}

void TestOutlineKeys::aCtrlSelectionOfAParentAndItsChildIsLeftAlone()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    CtrlClick(tab, {"A", "A2"}); // but one of them without an ancestor in the selection
    QCOMPARE(Gesture::Selected(tab), (QStringList{"A", "A2"}));
}

void TestOutlineKeys::withoutCtrlAReleaseSelectsNothingMore()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    Gesture::Click(tab, "A2");
    Gesture::Click(tab, "C", Qt::ShiftModifier);
    QCOMPARE(Gesture::Selected(tab), (QStringList{"A2", "B", "C"}));
}

void TestOutlineKeys::theTabKeyGoesThroughTheButtonsToTheTree()
{
    OutlineDesk desk(SmallOutline());
    const NaviOutlineWidget* pane = desk.First()->pane;
    pane->addButton->setFocus();
    for (QWidget* next : std::initializer_list<QWidget*>{pane->delButton, pane->expandButton, pane->tree}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), next);
    }
}

void TestOutlineKeys::altAndDownOpensTheMenuOfTheAddButton()
{
    OutlineDesk desk(QStringLiteral("page 210 297\n"));
    const NaviOutlineWidget* pane = desk.First()->pane;
    pane->addButton->setFocus();
    QStringList lines;
    // The menu is open as long as the key's call lasts.
    QTimer::singleShot(0, [&lines, pane] {
        for (const QAction* action : pane->addButton->menu()->actions()) {
            if (pane->addButton->menu()->isVisible())
                lines.append(action->text());
        }
        pane->addButton->menu()->close();
    });
    QTest::keyClick(pane->addButton, Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(lines, QStringList{"Batch add"});
}

void TestOutlineKeys::addingRenamingAndMovingWithRealEventsUndoesAndRedoesCompletely()
{
    OutlineDesk desk(QStringLiteral("page 210 297\n  text 20 30 Chapter One\npage 210 297\n"
                                    "outline \"Start\" page=1\n  outline \"Preface\" page=1\noutline \"End\" page=2"));
    const OutlineTab* tab = desk.First();
    QStringList states{tab->Dump()};
    // Add from the selected text, behind the current entry.
    tab->view->SelectAllText();
    tab->MakeCurrent("Start");
    QTest::mouseClick(tab->pane->addButton, Qt::LeftButton, {}, QPoint(8, 12));
    QCOMPARE(tab->Names(), QStringLiteral("Start\n  Preface\nChapter One\nEnd\n"));
    states.append(tab->Dump());
    // Rename it in the editor that opened.
    QVERIFY(tab->Editor());
    QTest::keyClick(tab->Editor(), Qt::Key_End);
    QTest::keyClicks(tab->Editor(), QStringLiteral(": the beginning"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    states.append(tab->Dump());
    // Drag it below the first one, then move it up by the keyboard.
    const QString title = QStringLiteral("Chapter One: the beginning");
    QVERIFY(Gesture::DragEntry(tab, title, {Gesture::AsSibling(tab, "Preface")}).wasDropped);
    states.append(tab->Dump());
    Alt(tab, Qt::Key_Up);
    states.append(tab->Dump());
    QCOMPARE(tab->Names(), QStringLiteral("Start\n  %1\n  Preface\nEnd\n").arg(title));
    QCOMPARE(tab->Stack()->count(), 4);
    for (int round = 0; round < 2; ++round) {
        for (int step = 3; step >= 0; --step) {
            tab->Stack()->undo();
            QCOMPARE(tab->Dump(), states.at(step));
            QCOMPARE(tab->Rows(), tab->Names());
        }
        for (int step = 1; step <= 4; ++step) {
            tab->Stack()->redo();
            QCOMPARE(tab->Dump(), states.at(step));
            QCOMPARE(tab->Rows(), tab->Names());
        }
    }
}

TETO_TEST_MAIN(TestOutlineKeys)
#include "test_outline_keys.moc"
