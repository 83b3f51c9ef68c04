#include "outline_gestures.h"
#include "outline_records.h"

#include <frame/base/converters.h>
#include <frame/operation/event_manager.h>
#include <frame/utils/no_content.h>
#include <outline/outline_events.h>
#include <outline/outline_interceptors.h>
#include <outline/outline_pane.h>
#include <outline/outline_rename.h>
#include <outline/outline_tree.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/unscaled_test.h>

#include <QPushButton>
#include <QScrollBar>
#include <QTextEdit>
#include <QToolButton>
#include <QUndoCommand>
#include <QUndoStack>
#include <QtTest>

// What is expanded, and what a refill of the tree keeps and brings.
class TestOutlineRefills : public UnscaledTest
{
    Q_OBJECT
private slots:
    void theTreeShowsWhatTheDocumentHasOverRefills();
    void aRefillTurnsButtonsOnByTheEntriesAlone();
    // Expansion
    void thePaneOpensFullyExpandedWhateverTheRecordsSay();
    void theExpandButtonCollapsesAndExpandsAndItsOperationDoesNotFlipIt();
    void expansionIsWrittenIntoTheDocumentByTheNextOperationWithoutACommandOrAnEvent();
    void aLeafsRecordFollowsTheExpansionOfAll();
    void expandSubAndCollapseSubReachFromTheCurrentEntryDown();
    void aRefillTakesTheExpansionFromTheRecords();
    void syncingPassesOverNodesThatAreGone();
    // Refills
    void undoOfAnyEntryRebuildsTheTreeAndStillOpensThePendingEditor();
    void aPendingRequestForWhatIsNotThereIsForgotten();
    void aRefillKeepsTheCurrentEntryAndThePlaceScrolledTo();
    void theTreeGetsThePictureWithItsLastEntryAndLosesItWithTheFirst();
    void thePictureIsPlacedAnewOnAResize();
    void aPageStructureChangeRebuildsOnTheNextShowAndNotBefore();
    void onlyTheRequestForThisDocumentAddsAnEntry();
    // Two documents
    void twoDocumentsHaveTheirOwnPanesInterceptorsAndStacks();
    void undoRefreshesThePaneOfTheCurrentDocumentOnly();
};

void TestOutlineRefills::theTreeShowsWhatTheDocumentHasOverRefills()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    // No QAbstractItemModelTester: Qt's own tree model breaks its rules with two columns.
    const QString before = tab->Names();
    tab->MakeCurrent("A1");
    desk.Perform("d_outline_add");
    QCOMPARE(tab->Rows(), tab->Names());
    tab->Select({"A2", "C"});
    desk.Context()->AnswerAllWith(1024);
    tab->pane->DelOutline();
    tab->Stack()->undo();
    tab->Stack()->undo();
    QCOMPARE(tab->Rows(), before);
    tab->Stack()->redo();
    QCOMPARE(tab->Rows(), tab->Names());
}

void TestOutlineRefills::aRefillTurnsButtonsOnByTheEntriesAlone()
{
    OutlineDesk encrypted("encrypted\n" + SmallOutline());
    encrypted.First()->pane->UpdateOutline(0);
    QVERIFY(encrypted.First()->pane->expandButton->isEnabled()); // on purpose: asked for at the start alone
    OutlineDesk restricted("rights edit=no\n" + SmallOutline());
    restricted.First()->pane->UpdateOutline(0);
    QVERIFY(restricted.First()->pane->delButton->isEnabled()); // on purpose: the operation refuses
    const QString before = restricted.First()->Names();
    restricted.First()->MakeCurrent("B");
    restricted.First()->pane->DelOutline();
    QCOMPARE(restricted.First()->Names(), before);
    OutlineDesk readOnly("readonly\n" + SmallOutline());
    readOnly.First()->pane->UpdateOutline(0);
    QVERIFY(!readOnly.First()->pane->delButton->isEnabled());
    QVERIFY(!readOnly.First()->pane->addButton->isEnabled());
    QVERIFY(readOnly.First()->pane->expandButton->isEnabled());
}

void TestOutlineRefills::thePaneOpensFullyExpandedWhateverTheRecordsSay()
{
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"A\" closed\n  outline \"A1\" closed\n"
                                    "    outline \"A1a\"\noutline \"C\"\n  outline \"C1\"\n"));
    QCOMPARE(Expansion(desk.First()), AllOf(true));
    QVERIFY(!desk.First()->pane->expandButton->isChecked());
    QCOMPARE(desk.First()->pane->expandState.size(), 5);
    QVERIFY(!Record(desk.First(), {0})->expanded); // nothing is written by opening
    QVERIFY(!desk.First()->document->IsModified());
}

void TestOutlineRefills::theExpandButtonCollapsesAndExpandsAndItsOperationDoesNotFlipIt()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    QTest::mouseClick(tab->pane->expandButton, Qt::LeftButton);
    QCOMPARE(Expansion(tab), AllOf(false));
    QCOMPARE(tab->pane->expandButton->toolTip(), QStringLiteral("Expand all outline"));
    tab->Item("A")->setExpanded(true);
    QVERIFY(desk.Perform("d_outline_expandorcollapse"));
    QCOMPARE(Expansion(tab), AllOf(false));
    QVERIFY(tab->pane->expandButton->isChecked());
    QTest::mouseClick(tab->pane->expandButton, Qt::LeftButton);
    QCOMPARE(Expansion(tab), AllOf(true));
    QCOMPARE(tab->pane->expandButton->toolTip(), QStringLiteral("Collapse all outline"));
    QVERIFY(!tab->Tree()->signalsBlocked());
}

void TestOutlineRefills::expansionIsWrittenIntoTheDocumentByTheNextOperationWithoutACommandOrAnEvent()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->pane->SyncExpandStates();
    QVERIFY(tab->pane->expandState.isEmpty());
    QVERIFY(Record(tab, {0, 1})->expanded);
    const EventProbe probe(desk.Context()->EventMgr());
    tab->Item("C")->setExpanded(false); // as a click on its arrow
    QCOMPARE(tab->pane->expandState.size(), 1);
    QVERIFY(Record(tab, {2})->expanded); // not by the click itself
    tab->pane->SyncExpandStates();
    QVERIFY(!Record(tab, {2})->expanded);
    QVERIFY(Record(tab, {0})->expanded);
    QVERIFY(tab->pane->expandState.isEmpty());
    QCOMPARE(probe.Total(), 0);
    QCOMPARE(tab->Stack()->count(), 0);
    // As part of an operation, ahead of the records being copied.
    tab->Item("C")->setExpanded(true);
    tab->MakeCurrent("C1");
    desk.Perform("d_outline_add");
    QVERIFY(Record(tab, {2})->expanded);
}

void TestOutlineRefills::aLeafsRecordFollowsTheExpansionOfAll()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    QVERIFY(!Record(tab, {0, 1})->expanded); // closed in the document
    tab->pane->SyncExpandStates();
    QVERIFY(Record(tab, {0, 1})->expanded);
    tab->pane->expandButton->click();
    tab->pane->SyncExpandStates();
    QVERIFY(!Record(tab, {0, 1})->expanded);
    QVERIFY(!Record(tab, {1})->expanded);
    QVERIFY(!Record(tab, {0})->expanded);
    // And is what it was after a refill from the records.
    tab->pane->UpdateOutline(0);
    tab->pane->RecordExpandState();
    QCOMPARE(tab->pane->expandState.value(tab->Node({1}), true), false);
    QCOMPARE(tab->pane->expandState.value(tab->Node({0}), true), false);
}

void TestOutlineRefills::expandSubAndCollapseSubReachFromTheCurrentEntryDown()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->pane->expandButton->click();
    tab->pane->SyncExpandStates();
    tab->MakeCurrent("A");
    tab->pane->ExpandSubOutline();
    QCOMPARE(Expansion(tab), (QMap<QString, bool>{{"A", true}, {"A1", true}, {"C", false}}));
    QCOMPARE(tab->pane->expandState.size(), 2);
    QVERIFY(tab->pane->expandState.value(tab->Node({0})) && tab->pane->expandState.value(tab->Node({0, 0})));
    tab->MakeCurrent("A1");
    tab->pane->CollapseSubOutline();
    QCOMPARE(Expansion(tab), (QMap<QString, bool>{{"A", true}, {"A1", false}, {"C", false}}));
    QCOMPARE(tab->pane->expandState.value(tab->Node({0, 0})), false);
    tab->Tree()->setCurrentItem(nullptr);
    tab->pane->ExpandSubOutline();
    QCOMPARE(Expansion(tab), (QMap<QString, bool>{{"A", true}, {"A1", false}, {"C", false}}));
}

void TestOutlineRefills::aRefillTakesTheExpansionFromTheRecords()
{
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"A\"\n  outline \"A1\" closed\n    outline \"A1a\"\n"
                                    "outline \"C\" closed\n  outline \"C1\"\n"));
    desk.First()->pane->UpdateOutline(0);
    QCOMPARE(Expansion(desk.First()), (QMap<QString, bool>{{"A", true}, {"A1", false}, {"C", false}}));
}

void TestOutlineRefills::syncingPassesOverNodesThatAreGone()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    QVERIFY(!tab->pane->expandState.isEmpty());
    QVERIFY(tab->Node({})->RemoveSubNode(0));
    tab->pane->UpdateOutline(0); // the states of the dead nodes are still there
    QVERIFY(tab->pane->expandState.size() > tab->pane->itemToNode.size());
    tab->pane->SyncExpandStates();
    QVERIFY(tab->pane->expandState.isEmpty());
    QCOMPARE(tab->Names(), QStringLiteral("B\nC\n  C1\n"));
}

void TestOutlineRefills::undoOfAnyEntryRebuildsTheTreeAndStillOpensThePendingEditor()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Stack()->push(new QUndoCommand(QStringLiteral("another pane's entry")));
    // The tree changes behind the pane: only a refill shows it.
    QVERIFY(tab->Node({})->RemoveSubNode(0));
    tab->Tree()->pendingParent = tab->Node({1});
    tab->Tree()->pendingRow = 0;
    tab->Stack()->undo();
    QCOMPARE(tab->Rows(), QStringLiteral("B\nC\n  C1\n"));
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("C1"));
    QCOMPARE(tab->Tree()->currentItem(), tab->Item("C1"));
    QVERIFY(!tab->Tree()->pendingParent);
    QCOMPARE(tab->Tree()->pendingRow, -1);
    tab->Tree()->pendingParent = tab->Node({}); // and among the top-level ones
    tab->Tree()->pendingRow = 1;
    tab->Stack()->redo();
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("C"));
}

void TestOutlineRefills::aPendingRequestForWhatIsNotThereIsForgotten()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    G_TreeNode* dead = tab->Node({0});
    QVERIFY(tab->Node({})->RemoveSubNode(0));
    for (G_TreeNode* parent : {tab->Node({}), dead}) {
        tab->Tree()->pendingParent = parent;
        tab->Tree()->pendingRow = 55;
        tab->pane->UpdateOutline(0);
        QVERIFY(!tab->Editor());
        QVERIFY(!tab->Tree()->pendingParent);
        QCOMPARE(tab->Tree()->pendingRow, -1);
    }
}

void TestOutlineRefills::aRefillKeepsTheCurrentEntryAndThePlaceScrolledTo()
{
    QString text = QStringLiteral("page 210 297\n");
    for (int i = 0; i < 40; ++i)
        text += QStringLiteral("outline \"N%1\" page=1\n  outline \"below %1\" page=1\n").arg(i);
    OutlineDesk desk(text);
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("below 35");
    tab->Tree()->verticalScrollBar()->setValue(60);
    tab->pane->UpdateOutline(0);
    QCOMPARE(tab->Tree()->currentItem(), tab->Item("below 35"));
    QVERIFY(tab->Tree()->selectedItems().isEmpty());
    ViewFixture::Settle();
    QCOMPARE(tab->Tree()->verticalScrollBar()->value(), 60);
    // What is gone gives way to what stands there now.
    QVERIFY(tab->Node({35})->RemoveSubNode(0));
    tab->pane->UpdateOutline(0);
    QCOMPARE(tab->Tree()->currentItem(), tab->Item("N35"));
}

void TestOutlineRefills::theTreeGetsThePictureWithItsLastEntryAndLosesItWithTheFirst()
{
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"A\"\n"));
    const OutlineTab* tab = desk.First();
    QVERIFY(!tab->pane->noContent);
    tab->MakeCurrent("A");
    tab->pane->DelOutline();
    const QPointer<OVPaintNoContent> picture(tab->pane->noContent);
    QVERIFY(picture);
    QCOMPARE(picture->parentWidget(), static_cast<QWidget*>(tab->Tree()));
    QVERIFY(picture->isVisible());
    QVERIFY(!tab->pane->delButton->isEnabled());
    QVERIFY(!tab->pane->expandButton->isEnabled());
    tab->pane->AddOutline();
    QVERIFY(!tab->pane->noContent);
    QVERIFY(picture.isNull());
    QVERIFY(tab->pane->delButton->isEnabled());
    QVERIFY(tab->pane->expandButton->isEnabled());
}

void TestOutlineRefills::thePictureIsPlacedAnewOnAResize()
{
    OutlineDesk desk(QStringLiteral("page 210 297"));
    const OutlineTab* tab = desk.First();
    QVERIFY(tab->pane->noContent);
    VerifyPicturePlaces(tab->pane, tab->Tree(), tab->pane->noContent);
}

void TestOutlineRefills::aPageStructureChangeRebuildsOnTheNextShowAndNotBefore()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    const QString before = tab->Rows();
    tab->pane->hide();
    emit desk.Context()->EventMgr()->PageStructChanged(tab->document);
    QVERIFY(tab->pane->rebuildOnShow);
    QVERIFY(tab->Node({})->RemoveSubNode(0));
    ViewFixture::Settle();
    QCOMPARE(tab->Rows(), before);
    tab->pane->show();
    QCOMPARE(tab->Rows(), QStringLiteral("B\nC\n  C1\n"));
    QVERIFY(!tab->pane->rebuildOnShow);
    QVERIFY(tab->Node({})->RemoveSubNode(0));
    tab->pane->hide();
    tab->pane->show();
    QCOMPARE(tab->Rows(), QStringLiteral("B\nC\n  C1\n")); // nothing was marked
}

void TestOutlineRefills::onlyTheRequestForThisDocumentAddsAnEntry()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    const QString key = GQ_ToQStringFromUtf8(tab->document->GetDocumentKey());
    const auto fire = [&](G_Event* event) { desk.Context()->FireEvent(event); };
    fire(new G_OutlineAddEvent(QStringLiteral("d_outline_add"), key + QLatin1Char('x'), 1000));
    fire(new G_OutlineAddEvent(QStringLiteral("d_addoutline"), key, 1000));
    fire(new G_OutlineAddEvent(QStringLiteral("D_OUTLINE_ADD"), key, 1000));
    fire(new G_OutlineAddEvent(QStringLiteral("d_outline_add"), key, 1001));
    fire(new G_StringEvent(QStringLiteral("d_outline_add"), 1000));
    tab->pane->UpdateOutline(static_cast<G_Event*>(nullptr));
    QCOMPARE(tab->Stack()->count(), 0);
    fire(new G_OutlineAddEvent(QStringLiteral("d_outline_add"), key, 1000));
    QCOMPARE(tab->Stack()->count(), 1);
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\nnew outline\n"));
}

void TestOutlineRefills::twoDocumentsHaveTheirOwnPanesInterceptorsAndStacks()
{
    OutlineDesk desk(SmallOutline());
    OutlineTab* other = desk.Open(SmallOutline());
    OutlineTab* first = desk.First();
    QVERIFY(first->pane != other->pane);
    QVERIFY(first->pane->renameHandler != other->pane->renameHandler);
    QVERIFY(first->Stack() != other->Stack());
    const QString untouched = first->Dump();
    other->MakeCurrent("B");
    first->MakeCurrent("A");
    desk.Perform("d_outline_addsub");
    QCOMPARE(other->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\n  new outline\nC\n  C1\n"));
    QVERIFY(other->Editor());
    QVERIFY(!first->Editor());
    desk.Perform("d_outline_wordwrap");
    QVERIFY(first->pane->wordWrap && !other->pane->wordWrap);
    desk.Context()->AnswerAllWith(1024);
    desk.Perform("d_outline_delall");
    QVERIFY(!other->pane->HasEntries());
    QCOMPARE(first->Dump(), untouched);
    QCOMPARE(first->Stack()->count(), 0);
    QCOMPARE(first->Rows(), first->Names());
}

void TestOutlineRefills::undoRefreshesThePaneOfTheCurrentDocumentOnly()
{
    OutlineDesk desk(SmallOutline());
    OutlineTab* other = desk.Open(SmallOutline());
    OutlineTab* first = desk.First();
    desk.MakeCurrent(first);
    const QString before = first->Dump();
    first->MakeCurrent("A");
    desk.Context()->AnswerAllWith(1024);
    desk.Perform("d_outline_del");
    QCOMPARE(first->Rows(), QStringLiteral("B\nC\n  C1\n"));
    const QTreeWidgetItem* item = other->Item("A");
    first->Stack()->undo();
    QCOMPARE(first->Rows(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\n"));
    QCOMPARE(first->Names(), first->Rows());
    QCOMPARE(other->Item("A"), item); // not filled anew
    QVERIFY(before != QString());
}

TETO_TEST_MAIN(TestOutlineRefills)
#include "test_outline_refills.moc"
