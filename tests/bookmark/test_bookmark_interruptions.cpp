#include "pane_desk.h"

#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <tests/support/test_main.h>
#include <tests/support/undo_verbs.h>
#include <tests/support/unscaled_test.h>

#include <QApplication>
#include <QMimeData>
#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

namespace {

constexpr int okButton = 1024;

// Opens the editor of a row and types over its text; the edit stays open.
void Type(const DeskTab* tab, int row, const QString& text)
{
    tab->Select({row});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QVERIFY(tab->Editor());
    QTest::keyClicks(tab->Editor(), text);
}

// The list answers, and the next rename works.
void VerifyAlive(const DeskTab* tab)
{
    QVERIFY(!tab->Tree()->signalsBlocked());
    QCOMPARE(tab->Rows(), tab->Names());
    Type(tab, 1, QStringLiteral("alive"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names().at(1), QStringLiteral("alive"));
    QVERIFY(!tab->pane->isRenaming);
    QVERIFY(!tab->Editor());
}

} // namespace

// What becomes of a row's edit, or of a drag, when something else happens meanwhile: a shortcut, another tab, a change
// from elsewhere.
class TestBookmarkInterruptions : public UnscaledTest
{
    Q_OBJECT
private slots:
    void anAdditionKeepsWhatWasTypedInAnotherRowAndOpensTheNewOne();
    void anAdditionDuringAnUnchangedEditIsOneStep();
    void anAdditionDuringAnEditToATakenNameAsksOnceAndGoesOn();
    void anUndoEndsAnEditWithoutItsText();
    void anUndoDuringAnEditToATakenNameAsksNothing();
    void deletingAllEndsAnEditWithoutItsText();
    void aClickOnAnotherRowRenamesAndGoesThere();
    void aDoubleClickOnAnotherRowRenamesAndOpensThatOne();
    void pagingByHandDuringAnEditRenamesAndSelectsTheVisibleBookmark();
    void pagingByHandToTheRowInEditLeavesTheEditOpen();
    void keysThatTheEditorLeavesDoNothingToTheList_data();
    void keysThatTheEditorLeavesDoNothingToTheList();
    void anEditThatEndsAfterTheTabWasSwitchedRenamesInItsOwnDocument();
    void aPaneMayDieDuringAnEdit();
    void aPaneMayDieWhileDeleteAllAsks();
    void aRenameThatFindsNoRowForgetsTheOneCancelledBefore();
    void aListFilledAnewDuringADragTakesNoDropOfNodesThatMayBeGone();
};

void TestBookmarkInterruptions::anAdditionKeepsWhatWasTypedInAnotherRowAndOpensTheNewOne()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    Type(tab, 0, QStringLiteral("Typed"));
    QVERIFY(desk.Perform("d_addbookmark")); // by a shortcut: the focus stays in the editor
    QCOMPARE(tab->Names(), (QStringList{"Typed", "B", "C", "new bookmark"}));
    QCOMPARE(tab->Rows(), tab->Names());
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("new bookmark"));
    QCOMPARE(tab->Tree()->currentIndex().row(), 3);
    QTest::keyClicks(tab->Editor(), QStringLiteral("Fourth"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"Typed", "B", "C", "Fourth"}));
    QCOMPARE(tab->Stack()->count(), 3);
    QVERIFY(StepTo(tab->Stack(), 0));
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C"}));
    QVERIFY(StepTo(tab->Stack(), 3));
    QCOMPARE(tab->Names(), (QStringList{"Typed", "B", "C", "Fourth"}));
}

void TestBookmarkInterruptions::anAdditionDuringAnUnchangedEditIsOneStep()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    Type(tab, 0, QStringLiteral("A"));
    QVERIFY(desk.Perform("d_addbookmark"));
    QCOMPARE(tab->Stack()->count(), 1);
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("new bookmark"));
}

void TestBookmarkInterruptions::anAdditionDuringAnEditToATakenNameAsksOnceAndGoesOn()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    Type(tab, 0, QStringLiteral("B"));
    desk.Context()->Answer(okButton);
    QVERIFY(desk.Perform("d_addbookmark"));
    QCOMPARE(desk.Context()->Asked().size(), 1);
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C", "new bookmark"}));
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("new bookmark"));
}

void TestBookmarkInterruptions::anUndoEndsAnEditWithoutItsText()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    tab->Select({2});
    tab->pane->DelBookmark();
    Type(tab, 0, QStringLiteral("Typed"));
    tab->Stack()->undo(); // from the tool bar, whose buttons take no focus
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C"}));
    QVERIFY(!tab->Editor());
    QVERIFY(!tab->pane->isRenaming);
    QVERIFY(tab->Stack()->canRedo()); // a rename now would have thrown it away
    VerifyAlive(tab);
}

void TestBookmarkInterruptions::anUndoDuringAnEditToATakenNameAsksNothing()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    tab->Select({2});
    tab->pane->DelBookmark();
    Type(tab, 0, QStringLiteral("B"));
    tab->Stack()->undo();
    ViewFixture::Settle();
    QCOMPARE(desk.Context()->Asked().size(), 0); // a box here would run its loop while the list is being cleared
    VerifyAlive(tab);
}

void TestBookmarkInterruptions::deletingAllEndsAnEditWithoutItsText()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    Type(tab, 0, QStringLiteral("B"));
    desk.Context()->Answer(okButton);
    QVERIFY(desk.Perform("d_bookmarkdeleteall"));
    ViewFixture::Settle();
    QCOMPARE(desk.Context()->Asked().size(), 1); // the question alone
    QCOMPARE(tab->Names(), QStringList());
    QVERIFY(!tab->Editor());
    tab->Stack()->undo();
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C"}));
    VerifyAlive(tab);
}

void TestBookmarkInterruptions::aClickOnAnotherRowRenamesAndGoesThere()
{
    PaneDesk desk(QStringLiteral("page 210 297\npage 210 297\nbookmark \"A\" page=1 zoom=1\n"
                                 "bookmark \"B\" page=2 zoom=1"));
    const DeskTab* tab = desk.First();
    Type(tab, 0, QStringLiteral("Typed"));
    tab->Click(1);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"Typed", "B"}));
    QCOMPARE(tab->view->CurrentPageIndex(), 1);
    QCOMPARE(tab->SelectedRows(), QList<int>{1});
    QVERIFY(!tab->Editor());
}

void TestBookmarkInterruptions::aDoubleClickOnAnotherRowRenamesAndOpensThatOne()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    Type(tab, 0, QStringLiteral("Typed"));
    tab->DoubleClick(1);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"Typed", "B", "C"}));
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("B"));
}

void TestBookmarkInterruptions::pagingByHandDuringAnEditRenamesAndSelectsTheVisibleBookmark()
{
    PaneDesk desk(QStringLiteral("page 210 297\npage 210 297\nbookmark \"A\" page=1 zoom=1\n"
                                 "bookmark \"B\" page=2 rect=10,5,20,20 zoom=1"));
    const DeskTab* tab = desk.First();
    tab->SwallowPageChange();
    Type(tab, 0, QStringLiteral("Typed"));
    tab->view->GoToPage(tab->view, 1, CCA_GRect(), false);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"Typed", "B"}));
    QCOMPARE(tab->Rows(), tab->Names());
    QCOMPARE(tab->SelectedRows(), QList<int>{1});
    QCOMPARE(tab->Tree()->currentIndex().row(), 1);
    QVERIFY(!tab->Editor());
    VerifyAlive(tab);
}

void TestBookmarkInterruptions::pagingByHandToTheRowInEditLeavesTheEditOpen()
{
    PaneDesk desk(QStringLiteral("page 210 297\npage 210 297\nbookmark \"A\" page=1 zoom=1\n"
                                 "bookmark \"B\" page=2 rect=10,5,20,20 zoom=1"));
    const DeskTab* tab = desk.First();
    tab->SwallowPageChange();
    Type(tab, 1, QStringLiteral("Typed"));
    tab->view->GoToPage(tab->view, 1, CCA_GRect(), false);
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("Typed"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"A", "Typed"}));
}

void TestBookmarkInterruptions::keysThatTheEditorLeavesDoNothingToTheList_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::newRow("F2") << int(Qt::Key_F2) << int(Qt::NoModifier);
    QTest::newRow("Alt+Down") << int(Qt::Key_Down) << int(Qt::AltModifier);
    QTest::newRow("Alt+Up") << int(Qt::Key_Up) << int(Qt::AltModifier);
    QTest::newRow("Ctrl+PageDown") << int(Qt::Key_PageDown) << int(Qt::ControlModifier);
    QTest::newRow("Ctrl+Down") << int(Qt::Key_Down) << int(Qt::ControlModifier);
    QTest::newRow("Shift+F10") << int(Qt::Key_F10) << int(Qt::ShiftModifier);
    QTest::newRow("Delete at the end") << int(Qt::Key_Delete) << int(Qt::NoModifier);
}

void TestBookmarkInterruptions::keysThatTheEditorLeavesDoNothingToTheList()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    Type(tab, 1, QStringLiteral("Typed"));
    QTest::keyClick(tab->Editor(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("Typed"));
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C"}));
    QCOMPARE(tab->Tree()->currentIndex().row(), 1);
    QCOMPARE(desk.menu->shown, QStringList());
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"A", "Typed", "C"}));
    QCOMPARE(tab->Stack()->count(), 1);
}

void TestBookmarkInterruptions::anEditThatEndsAfterTheTabWasSwitchedRenamesInItsOwnDocument()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    DeskTab* other = desk.Open(DocumentWithBookmarks(2));
    desk.MakeCurrent(desk.First());
    const DeskTab* tab = desk.First();
    Type(tab, 0, QStringLiteral("Typed"));
    desk.fixture.SetCurrent(other->view);
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"Typed", "B", "C"}));
    QCOMPARE(other->Names(), (QStringList{"A", "B"}));
    QCOMPARE(tab->Stack()->count(), 1);
    QCOMPARE(other->Stack()->count(), 0);
    desk.MakeCurrent(desk.First());
    VerifyAlive(tab);
}

void TestBookmarkInterruptions::aPaneMayDieDuringAnEdit()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    Type(tab, 0, QStringLiteral("B")); // taken: no box may come up any more
    delete tab->pane.data();
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C"}));
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestBookmarkInterruptions::aPaneMayDieWhileDeleteAllAsks()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    desk.Context()->Answer(1024);
    desk.Context()->SetWhileOpen([tab](const AskedBox&) { delete tab->pane; });
    QVERIFY(!desk.Perform("d_bookmarkdeleteall"));
    QCOMPARE(desk.Context()->Asked().size(), 1);
    QVERIFY(!tab->pane);
    QCOMPARE(tab->Names().size(), 3);
}

void TestBookmarkInterruptions::aRenameThatFindsNoRowForgetsTheOneCancelledBefore()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    Type(tab, 0, QStringLiteral("Typed"));
    QTest::keyClick(tab->Editor(), Qt::Key_Escape);
    ViewFixture::Settle();
    QVERIFY(tab->pane->isRenaming);
    tab->Tree()->setCurrentItem(nullptr);
    QVERIFY(!desk.Perform("d_bookmarkrename")); // the copy kept for the cancelled one is freed by this
    ViewFixture::Settle();
    tab->Tree()->topLevelItem(1)->setText(0, QStringLiteral("no rename"));
    ViewFixture::Settle();
    QVERIFY(!tab->pane->isRenaming);
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C"}));
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestBookmarkInterruptions::aListFilledAnewDuringADragTakesNoDropOfNodesThatMayBeGone()
{
    PaneDesk desk(DocumentWithBookmarks(4));
    const DeskTab* tab = desk.First();
    tab->Select({0});
    const std::unique_ptr<QMimeData> old(tab->Tree()->PrepareDrag());
    QCOMPARE(tab->Tree()->dragNodes.size(), 1);
    QVERIFY(tab->document->GetBookmarkRoot()->RemoveSubNode(0));
    tab->pane->UpdateBookmark(0);
    QVERIFY(tab->Tree()->dragNodes.isEmpty());
    tab->Select({2});
    QMimeData present; // what a drag of the row that is selected now would carry
    present.setData(QStringLiteral("BookmarkMoveDstItem"),
                    QByteArray::number(reinterpret_cast<quintptr>(tab->Tree()->topLevelItem(2))));
    Drag::DropAt(tab->Tree()->viewport(), &present, {tab->LowPoint(0)});
    QCOMPARE(tab->Names(), (QStringList{"B", "C", "D"}));
    QCOMPARE(tab->Rows(), tab->Names());
    QCOMPARE(tab->Stack()->count(), 0);
}

TETO_TEST_MAIN(TestBookmarkInterruptions)
#include "test_bookmark_interruptions.moc"
