#include "outline_gestures.h"

#include <outline/outline_pane.h>
#include <outline/outline_tree.h>
#include <tests/support/test_main.h>
#include <tests/support/undo_verbs.h>
#include <tests/support/unscaled_test.h>

#include <frame/document/payloads.h>
#include <frame/operation/event_manager.h>

#include <QApplication>
#include <QMimeData>
#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

namespace {

// Opens the editor of an entry and types over its title; the edit stays open.
void Type(const OutlineTab* tab, const QString& title, const QString& text)
{
    tab->MakeCurrent(title);
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QVERIFY(tab->Editor());
    QTest::keyClicks(tab->Editor(), text);
}

// The tree answers, and the next rename works.
void VerifyAlive(const OutlineTab* tab)
{
    QVERIFY(!tab->Tree()->signalsBlocked());
    QCOMPARE(tab->Rows(), tab->Names());
    QTreeWidgetItem* item = tab->Tree()->topLevelItem(0);
    Type(tab, item->text(0), QStringLiteral("alive"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QVERIFY(tab->Item("alive"));
    QCOMPARE(tab->Rows(), tab->Names());
    QVERIFY(!tab->Editor());
}

} // namespace

// What becomes of a row's edit, of a drag or of a question when something else happens meanwhile: a shortcut, another
// tab, a change from elsewhere.
class TestOutlineInterruptions : public UnscaledTest
{
    Q_OBJECT
private slots:
    void anAdditionKeepsWhatWasTypedInAnotherEntryAndOpensTheNewOne_data();
    void anAdditionKeepsWhatWasTypedInAnotherEntryAndOpensTheNewOne();
    void anUndoEndsAnEditWithoutItsText();
    void deletingTheEntryInEditKeepsTheTypedTitleForTheUndo();
    void movingDuringAnEditKeepsWhatWasTyped();
    void aClickOnAnotherEntryRenamesAndGoesThere();
    void aDoubleClickOnAnotherEntryRenamesAndOpensThatOne();
    void pagingByHandDuringAnEditRenamesAndSelectsTheVisibleEntry();
    void pagingByHandToTheEntryInEditLeavesTheEditOpen();
    void keysThatTheEditorLeavesDoNothingToTheTree_data();
    void keysThatTheEditorLeavesDoNothingToTheTree();
    void anEditThatEndsAfterTheTabWasSwitchedTouchesTheOtherDocumentNever();
    void aPaneMayDieDuringAnEdit();
    void aSelectionThatVanishesWhileTheQuestionIsUpDeletesNothingElse();
    void aCurrentEntryThatVanishesWhileTheQuestionIsUpGetsNoDestination();
    void aTreeFilledAnewDuringADragTakesNoDropOfNodesThatMayBeGone();
    void aDragThatEndedElsewhereLeavesNothingBehind();
};

void TestOutlineInterruptions::anAdditionKeepsWhatWasTypedInAnotherEntryAndOpensTheNewOne_data()
{
    QTest::addColumn<QByteArray>("operation");
    QTest::addColumn<QString>("names");
    QTest::newRow("sibling") << QByteArray("d_outline_add") << "A\n  Typed\n    A1a\n  new outline\n  A2\nB\nC\n  C1\n";
    QTest::newRow("child") << QByteArray("d_outline_addsub")
                           << "A\n  Typed\n    A1a\n    new outline\n  A2\nB\nC\n  C1\n";
}

void TestOutlineInterruptions::anAdditionKeepsWhatWasTypedInAnotherEntryAndOpensTheNewOne()
{
    QFETCH(QByteArray, operation);
    QFETCH(QString, names);
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    Type(tab, "A1", "Typed");
    QVERIFY(desk.Perform(operation)); // by a shortcut: the focus stays in the editor
    QCOMPARE(tab->Names(), names);
    QCOMPARE(tab->Rows(), names);
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("new outline"));
    QTest::keyClicks(tab->Editor(), QStringLiteral("Fresh"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QString(names).replace("new outline", "Fresh"));
    QCOMPARE(tab->Stack()->count(), 3);
    QVERIFY(StepTo(tab->Stack(), 0));
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\n"));
    QVERIFY(StepTo(tab->Stack(), 3));
    VerifyAlive(tab);
}

void TestOutlineInterruptions::anUndoEndsAnEditWithoutItsText()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("B");
    tab->pane->DelOutline();
    Type(tab, "A1", "Typed");
    tab->Stack()->undo(); // from the tool bar, whose buttons take no focus
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\n"));
    QVERIFY(!tab->Editor());
    QVERIFY(tab->Stack()->canRedo()); // a rename now would have thrown it away
    VerifyAlive(tab);
}

void TestOutlineInterruptions::deletingTheEntryInEditKeepsTheTypedTitleForTheUndo()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    Type(tab, "B", "Typed");
    tab->Item("B")->setSelected(true);
    desk.Context()->AnswerAllWith(1024);
    desk.Perform("d_outline_delall");
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QString());
    QVERIFY(!tab->Editor());
    tab->Stack()->undo();
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nTyped\nC\n  C1\n"));
    VerifyAlive(tab);
}

void TestOutlineInterruptions::movingDuringAnEditKeepsWhatWasTyped()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    Type(tab, "A1", "Typed");
    tab->pane->MoveOutlineNodes({tab->Node({1})}, tab->Node({0}), true);
    QCOMPARE(tab->Names(), QStringLiteral("A\n  B\n  Typed\n    A1a\n  A2\nC\n  C1\n"));
    QCOMPARE(tab->Stack()->count(), 2);
    VerifyAlive(tab);
}

void TestOutlineInterruptions::aClickOnAnotherEntryRenamesAndGoesThere()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    Type(tab, "A1", "Typed");
    Gesture::Click(tab, "C");
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QStringLiteral("A\n  Typed\n    A1a\n  A2\nB\nC\n  C1\n"));
    QCOMPARE(tab->view->CurrentPageIndex(), 1);
    QCOMPARE(Gesture::Selected(tab), QStringList{"C"});
    QVERIFY(!tab->Editor());
    VerifyAlive(tab);
}

void TestOutlineInterruptions::aDoubleClickOnAnotherEntryRenamesAndOpensThatOne()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    Type(tab, "A1", "Typed");
    Gesture::DoubleClick(tab, "C");
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QStringLiteral("A\n  Typed\n    A1a\n  A2\nB\nC\n  C1\n"));
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("C"));
    QVERIFY(tab->Item("C")->isExpanded()); // the double click began an edit and did not close the branch
}

void TestOutlineInterruptions::pagingByHandDuringAnEditRenamesAndSelectsTheVisibleEntry()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->pane->skipNextPageSync = false;
    Type(tab, "A1", "Typed");
    tab->view->GoToPage(tab->view, 1, CCA_GRect(), false);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QStringLiteral("A\n  Typed\n    A1a\n  A2\nB\nC\n  C1\n"));
    QCOMPARE(tab->Rows(), tab->Names());
    QCOMPARE(Gesture::Selected(tab), QStringList{"C"});
    QCOMPARE(tab->Tree()->currentItem(), tab->Item("C"));
    QVERIFY(!tab->Editor());
    VerifyAlive(tab);
}

void TestOutlineInterruptions::pagingByHandToTheEntryInEditLeavesTheEditOpen()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->pane->skipNextPageSync = false;
    Type(tab, "C", "Typed");
    tab->view->GoToPage(tab->view, 1, CCA_GRect(), false);
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("Typed"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nTyped\n  C1\n"));
}

void TestOutlineInterruptions::keysThatTheEditorLeavesDoNothingToTheTree_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::newRow("F2") << int(Qt::Key_F2) << int(Qt::NoModifier);
    QTest::newRow("Alt+Down") << int(Qt::Key_Down) << int(Qt::AltModifier);
    QTest::newRow("Alt+Up") << int(Qt::Key_Up) << int(Qt::AltModifier);
    QTest::newRow("Alt+Left") << int(Qt::Key_Left) << int(Qt::AltModifier);
    QTest::newRow("Alt+Right") << int(Qt::Key_Right) << int(Qt::AltModifier);
    QTest::newRow("Ctrl+PageDown") << int(Qt::Key_PageDown) << int(Qt::ControlModifier);
    QTest::newRow("Ctrl+Down") << int(Qt::Key_Down) << int(Qt::ControlModifier);
    QTest::newRow("Shift+F10") << int(Qt::Key_F10) << int(Qt::ShiftModifier);
    QTest::newRow("Delete at the end") << int(Qt::Key_Delete) << int(Qt::NoModifier);
}

void TestOutlineInterruptions::keysThatTheEditorLeavesDoNothingToTheTree()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    Type(tab, "A1", "Typed");
    QTest::keyClick(tab->Editor(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("Typed"));
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\n"));
    QCOMPARE(tab->Tree()->currentItem(), tab->Item("A1"));
    QCOMPARE(desk.menu->shown, QStringList());
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QStringLiteral("A\n  Typed\n    A1a\n  A2\nB\nC\n  C1\n"));
    QCOMPARE(tab->Stack()->count(), 1);
}

void TestOutlineInterruptions::anEditThatEndsAfterTheTabWasSwitchedTouchesTheOtherDocumentNever()
{
    OutlineDesk desk(SmallOutline());
    OutlineTab* other = desk.Open(SmallOutline());
    desk.MakeCurrent(desk.First());
    const OutlineTab* tab = desk.First();
    const QString untouched = other->Dump();
    Type(tab, "A1", "Typed");
    desk.fixture.SetCurrent(other->view);
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(other->Dump(), untouched);
    QCOMPARE(other->Stack()->count(), 0);
    QCOMPARE(tab->Rows(), tab->Names());
    desk.MakeCurrent(desk.First());
    VerifyAlive(tab);
}

void TestOutlineInterruptions::aPaneMayDieDuringAnEdit()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    const QString before = tab->Names();
    Type(tab, "A1", "Typed");
    delete tab->pane.data();
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), before);
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestOutlineInterruptions::aSelectionThatVanishesWhileTheQuestionIsUpDeletesNothingElse()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Select({"C"});
    desk.Context()->Answer(1024);
    desk.Context()->SetWhileOpen([tab](const AskedBox&) {
        tab->Node({})->RemoveSubNode(2); // by somebody else
        tab->pane->UpdateOutline(0);
    });
    desk.Perform("d_outline_del");
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\n"));
    QCOMPARE(tab->Rows(), tab->Names());
    tab->Stack()->undo();
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\n"));
    desk.Context()->SetWhileOpen({});
    VerifyAlive(tab);
}

void TestOutlineInterruptions::aCurrentEntryThatVanishesWhileTheQuestionIsUpGetsNoDestination()
{
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"A\" page=1\n"));
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("A");
    desk.Context()->Answer(1024);
    desk.Context()->Answer(2097152);
    desk.Context()->SetWhileOpen([tab](const AskedBox&) {
        tab->Node({})->RemoveSubNode(0);
        tab->pane->UpdateOutline(0);
    });
    desk.Perform("d_outline_resetpos");
    QCOMPARE(desk.Context()->LastAsked().text, QStringLiteral("Associate failed!"));
    QCOMPARE(tab->Names(), QString());
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestOutlineInterruptions::aTreeFilledAnewDuringADragTakesNoDropOfNodesThatMayBeGone()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Select({"B"});
    const std::unique_ptr<QMimeData> old(tab->Tree()->PrepareDrag());
    QCOMPARE(tab->Tree()->dragNodes.size(), 1);
    QVERIFY(tab->Node({})->RemoveSubNode(1));
    tab->pane->UpdateOutline(0);
    QVERIFY(tab->Tree()->dragNodes.isEmpty());
    tab->Select({"C"});
    QMimeData present; // what a drag of the entry that is selected now would carry
    present.setData(QStringLiteral("application/x-qabstractitemmodeldatalist"),
                    QByteArray::number(reinterpret_cast<quintptr>(tab->Item("C"))));
    Drag::DropAt(tab->Tree()->viewport(), &present, {Gesture::AsSibling(tab, "A1")});
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nC\n  C1\n"));
    QCOMPARE(tab->Rows(), tab->Names());
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestOutlineInterruptions::aDragThatEndedElsewhereLeavesNothingBehind()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Select({"B"});
    const std::unique_ptr<QMimeData> first(tab->Tree()->PrepareDrag());
    Drag::HoverAt(tab->Tree()->viewport(), first.get(), {QPoint(40, 2)});
    QVERIFY(tab->Tree()->dropAtTop && tab->Tree()->dropAsChild);
    const std::unique_ptr<QMimeData> second(tab->Tree()->PrepareDrag());
    QVERIFY(tab->Tree()->line.isNull());
    QVERIFY(!tab->Tree()->dropAtTop && !tab->Tree()->dropAsChild);
}

TETO_TEST_MAIN(TestOutlineInterruptions)
#include "test_outline_interruptions.moc"
