#include "outline_commands_fixture.h"

#include <outline/outline_commands.h>
#include <outline/outline_node.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>
#include <tests/support/undo_verbs.h>

#include <QUndoStack>
#include <QtTest>

// The commands on several entries, on a view's undo stack without a pane.
class TestOutlineBatches : public OutlineCommandsFixture
{
    Q_OBJECT
private slots:
    // Batch add

    void pushingABatchAdditionLeavesTheTreeAsItIs()
    {
        Push(new BatchAddOutlineCommand({Node({0}), Node({1})}, Context()));
        QCOMPARE(Dump(), original);
        QCOMPARE(probe->Total(), 0);
    }

    void aBatchAdditionIsUndoneAndRedoneAsOneStepAndOneEvent()
    {
        const QList<G_TreeNode*> nodes = AddRun(Node({2, 0}), 1, {"n1", "n2", "n3"});
        Push(new BatchAddOutlineCommand(nodes, Context()));
        const QString added = Dump();
        for (int round = 0; round < 3; ++round) {
            probe->Clear();
            Stack()->undo();
            QCOMPARE(Dump(), original);
            QCOMPARE(probe->Types(), QList<int>{110});
            Stack()->redo();
            QCOMPARE(Dump(), added);
            QCOMPARE(probe->Types(), (QList<int>{110, 110}));
        }
    }

    void anEmptyBatchAdditionDoesNothingAtEveryStep()
    {
        Push(new BatchAddOutlineCommand({}, Context()));
        Stack()->undo();
        Stack()->redo();
        QCOMPARE(Dump(), original);
        QCOMPARE(probe->Total(), 0);
        QVERIFY(Failures().isEmpty());
    }

    void undoOfABatchUnderTwoParentsTakesTheFirstRowInBoth()
    {
        // D1 and D2 stand at row 0 of D; E1 at row 1 of E, so that row 0 of E is what the undo removes.
        AddRun(Node({4}), 0, {"E0"});
        const QList<G_TreeNode*> nodes = AddRun(Node({3}), 0, {"D1", "D2"}) + AddRun(Node({4}), 1, {"E1"});
        Push(new BatchAddOutlineCommand(nodes, Context()));
        Stack()->undo();
        QCOMPARE(Node({3})->SubNodeCount(), 0);
        QCOMPARE(Node({4})->SubNodeCount(), 1);
        QCOMPARE(Title({4, 0}), QStringLiteral("E1"));
        Stack()->redo();
        QCOMPARE(Title({3, 1}), QStringLiteral("D2"));
        QCOMPARE(Node({4})->SubNodeCount(), 2);
    }

    void undoOfABatchUnderTwoParentsTouchesNoFreedNode()
    {
        // The removals free nodes that are still to be copied: rows 0 and 2 of E, with the first row 2.
        AddRun(Node({3}), 0, {"D0", "D1"});
        AddRun(Node({4}), 0, {"E0", "E1", "E2", "E3"});
        const QList<G_TreeNode*> nodes{AddRun(Node({3}), 2, {"D2"}).first(), Node({4, 0}), Node({4, 2})};
        Push(new BatchAddOutlineCommand(nodes, Context()));
        Stack()->undo();
        QCOMPARE(Node({4})->SubNodeCount(), 2);
        QCOMPARE(Title({4, 0}), QStringLiteral("E0"));
        QCOMPARE(Title({4, 1}), QStringLiteral("E1"));
    }

    void refusalsOfABatchAdditionAreLoggedByPosition()
    {
        const QList<G_TreeNode*> nodes = AddRun(root, 5, {"n0", "n1", "n2", "n3"});
        Push(new BatchAddOutlineCommand(nodes, Context()));
        const QString added = Dump();
        Refuse(G_TreeNode::Change::Remove);
        Stack()->undo();
        QCOMPARE(Dump(), added);
        QCOMPARE(Failures().size(), 4);
        QCOMPARE(Failures().at(3), QByteArray("BatchAddOutlineCommand::undo 3 failed!"));
        QCOMPARE(probe->Total(), 0);
    }

    void aBatchAdditionThatIsRefusedAtRedoIsGoneAndTheNextUndoTakesNoOtherEntry()
    {
        const QList<G_TreeNode*> nodes = AddRun(root, 0, {"n0", "n1"});
        Push(new BatchAddOutlineCommand(nodes, Context()));
        Stack()->undo();
        Refuse(G_TreeNode::Change::Add);
        Stack()->redo();
        QCOMPARE(Failures(), (QList<QByteArray>{"BatchAddOutlineCommand::redo 0 failed!",
                                                "BatchAddOutlineCommand::redo 1 failed!"}));
        root->SetChangeGuard({});
        Stack()->undo();
        QCOMPARE(Dump(), original);
    }

    void aPartlyRefusedRedoOfABatchAdditionFreesWhatWasRefused()
    {
        const QList<G_TreeNode*> nodes = AddRun(root, 5, {"n0", "n1", "n2"});
        Push(new BatchAddOutlineCommand(nodes, Context()));
        Stack()->undo();
        RefuseAt(G_TreeNode::Change::Add, 7);
        Stack()->redo();
        QCOMPARE(Failures(), QList<QByteArray>{"BatchAddOutlineCommand::redo 2 failed!"});
        root->SetChangeGuard({});
        QCOMPARE(root->SubNodeCount(), 7);
        Stack()->undo();
        QCOMPARE(Dump(), original);
    }

    void aNullEntryInABatchStopsTheStepWithoutAnEvent()
    {
        Push(new BatchAddOutlineCommand({Node({1}), nullptr}, Context()));
        Stack()->undo();
        QCOMPARE(Dump(), original);
        QCOMPARE(Failures(), QList<QByteArray>{"BatchAddOutlineCommand::undo 1 find parent failed!"});
        Stack()->redo();
        Stack()->undo();
        QCOMPARE(Dump(), original);
        QCOMPARE(probe->Total(), 0);
    }

    // Batch delete

    void pushingADeletionDoesTheWholeWork()
    {
        Push(new BatchDelOutlineCommand({Node({0, 0}), Node({1}), Node({2, 1})}, Context()));
        QCOMPARE(DumpNames(root), QStringLiteral("A\n  A2\nT\n  P1\n    x\nD\nE\n"));
        QCOMPARE(probe->Types(), QList<int>{110});
    }

    void undoOfADeletionRestoresOrderRecordsAndDescendantsAtAnyDepth()
    {
        VERIFY_UNDO_REDO(Stack(), root, [this] {
            Push(new BatchDelOutlineCommand({Node({0}), Node({2, 0}), Node({2, 1}), Node({3})}, Context()));
        });
        Stack()->undo();
        QCOMPARE(Dump(), original);
        QVERIFY(original.contains("A1a1"));
    }

    void deletingEveryEntryThenUndoingRestoresTheOutline()
    {
        VERIFY_UNDO_REDO(Stack(), root, [this] {
            Push(new BatchDelOutlineCommand({Node({0}), Node({1}), Node({2}), Node({3}), Node({4})}, Context()));
        });
        QCOMPARE(root->SubNodeCount(), 0);
        Stack()->undo();
        QCOMPARE(Dump(), original);
    }

    void anEmptyDeletionDoesNothingAtEveryStep()
    {
        Push(new BatchDelOutlineCommand({}, Context()));
        Stack()->undo();
        Stack()->redo();
        QCOMPARE(Dump(), original);
        QCOMPARE(probe->Total(), 0);
    }

    void refusalsOfADeletionAreLoggedByPositionAndTheRestGoesOn()
    {
        RefuseAt(G_TreeNode::Change::Remove, 3);
        Push(new BatchDelOutlineCommand({Node({0}), Node({1}), Node({2}), Node({3}), Node({4})}, Context()));
        root->SetChangeGuard({});
        QCOMPARE(Failures(), QList<QByteArray>{"BatchDelOutlineCommand::redo 3 failed!"});
        QCOMPARE(DumpNames(root), QStringLiteral("D\n"));
        Stack()->undo();
        QCOMPARE(Dump(), original);
    }

    void aRefusedUndoOfADeletionIsLoggedAndFreesWhatWasRefused()
    {
        Push(new BatchDelOutlineCommand({Node({3}), Node({4})}, Context()));
        RefuseAt(G_TreeNode::Change::Add, 4);
        Stack()->undo();
        root->SetChangeGuard({});
        QCOMPARE(Failures(), QList<QByteArray>{"BatchDelOutlineCommand::undo 1 failed!"});
        QCOMPARE(TopLevel(), QStringLiteral("A B T D"));
        Stack()->redo();
        QCOMPARE(Failures().size(), 2); // the one that is gone cannot be removed
        QCOMPARE(root->SubNodeCount(), 3);
        Stack()->undo();
        QCOMPARE(root->SubNodeCount(), 4);
    }

    void aDeletionWhoseParentIsGoneSkipsThatPosition()
    {
        Push(new BatchDelOutlineCommand({Node({1}), Node({2, 0, 0})}, Context()));
        root->RemoveSubNode(1); // T stands there now
        Stack()->undo();
        QCOMPARE(DumpNames(root), QStringLiteral("A\n  A1\n    A1a\n      A1a1\n  A2\nB\nD\nE\n"));
        QVERIFY(Failures().isEmpty());
    }

    void aNullEntryInADeletionStopsItBeforeAnythingIsRemoved()
    {
        Push(new BatchDelOutlineCommand({Node({1}), nullptr}, Context()));
        QCOMPARE(Dump(), original);
        QCOMPARE(Failures(), QList<QByteArray>{"BatchDelOutlineCommand::redo 1 find parent failed!"});
        Stack()->undo();
        Stack()->redo();
        QCOMPARE(Dump(), original);
        QCOMPARE(probe->Total(), 0);
    }

    void anEntryWithoutARecordComesBackWithAnEmptyOneAndItsChildren()
    {
        G_TreeNode* bare = root->AddSubNode(0, nullptr);
        AddRun(bare, 0, {"child"});
        Push(new BatchDelOutlineCommand({bare}, Context()));
        QCOMPARE(Dump(), original);
        Stack()->undo();
        QCOMPARE(Title({0}), QString());
        QCOMPARE(Title({0, 0}), QStringLiteral("child"));
    }

    // Batch move

    void pushingAMoveDoesTheWholeWork()
    {
        PushMove({{0}, {1}}, {4}, false);
        QCOMPARE(TopLevel(), QStringLiteral("T D E A B"));
        QCOMPARE(probe->Types(), QList<int>{110});
    }

    void movesOfEveryKindAreUndoneAndRedone_data()
    {
        QTest::addColumn<QList<QList<int>>>("moved");
        QTest::addColumn<QList<int>>("destination");
        QTest::addColumn<bool>("asChild");
        QTest::addColumn<QString>("names");
        using Paths = QList<QList<int>>;
        QTest::newRow("down, one") << Paths{{0}} << Rows{1} << false << "B A T D E";
        QTest::newRow("up, two") << Paths{{3}, {4}} << Rows{0} << false << "A D E B T";
        QTest::newRow("from both sides") << Paths{{0}, {4}} << Rows{2} << false << "B T A E D";
        QTest::newRow("apart, around the destination") << Paths{{0}, {2}, {4}} << Rows{1} << false << "B A T E D";
        QTest::newRow("from other parents behind a sibling of one")
            << Paths{{0, 0}, {1}, {2, 0, 0}} << Rows{3} << false << "A T D A1 B x E";
        QTest::newRow("to the front of the top level") << Paths{{2}, {4}} << Rows{} << true << "T E A B D";
        QTest::newRow("below another") << Paths{{0}, {4}} << Rows{1} << true << "B T D";
        QTest::newRow("to be first below its own parent") << Paths{{0, 1}} << Rows{0} << true << "A B T D E";
        QTest::newRow("deep") << Paths{{1}, {3}} << Rows{0, 0, 0, 0} << true << "A T E";
        QTest::newRow("out of a deep place") << Paths{{0, 0, 0, 0}} << Rows{4} << false << "A B T D E A1a1";
        QTest::newRow("a whole sub-tree below a sibling") << Paths{{0}} << Rows{2, 1, 0} << true << "B T D E";
    }

    void movesOfEveryKindAreUndoneAndRedone()
    {
        QFETCH(QList<QList<int>>, moved);
        QFETCH(QList<int>, destination);
        QFETCH(bool, asChild);
        QFETCH(QString, names);
        VERIFY_UNDO_REDO(Stack(), root, [&] { PushMove(moved, destination, asChild); });
        QCOMPARE(TopLevel(), names);
        QVERIFY(Failures().isEmpty());
        Stack()->undo();
        QCOMPARE(Dump(), original);
    }

    void undoOfAMoveRebuildsTheEntriesInsteadOfMovingThemBack()
    {
        const G_TreeNode* moved = Node({0});
        int removals = 0;
        PushMove({{0}}, {4}, false);
        QCOMPARE(static_cast<const G_TreeNode*>(Node({4})), moved); // redo keeps the object
        root->SetChangeGuard([&removals](G_TreeNode::Change change, G_TreeNode*, int) {
            removals += change == G_TreeNode::Change::Remove ? 1 : 0;
            return change != G_TreeNode::Change::MoveFrom;
        });
        Stack()->undo();
        QCOMPARE(removals, 1);
        QCOMPARE(Dump(), original);
    }

    void aMoveBehindABatchAddedEntryIsFoundAgainThoughItsTitleFieldIsEmpty()
    {
        auto* item = new G_OutlineItem;
        item->text = "added";
        root->AddSubNode(5, item);
        const QString before = Dump();
        VERIFY_UNDO_REDO(Stack(), root, [this] { PushMove({{0}}, {5}, false); });
        Stack()->undo();
        QCOMPARE(Dump(), before);
    }

    void refusalsOfAMoveAreLoggedByPositionAndTheRestGoesOn()
    {
        RefuseAt(G_TreeNode::Change::MoveFrom, 3);
        PushMove({{0}, {3}, {4}}, {1}, false);
        root->SetChangeGuard({});
        QCOMPARE(Failures(), QList<QByteArray>{"BatchMoveOutlineCommand::redo 1 failed!"});
        QCOMPARE(TopLevel(), QStringLiteral("B A E T D"));
        Stack()->undo();
        QCOMPARE(Dump(), original);
    }

    void aRefusedUndoOfAMoveIsLogged()
    {
        PushMove({{0}, {1}}, {4}, false);
        RefuseAt(G_TreeNode::Change::Add, 1);
        Stack()->undo();
        QCOMPARE(Failures(), QList<QByteArray>{"BatchMoveOutlineCommand::undo 1 failed!"});
        QCOMPARE(TopLevel(), QStringLiteral("A T D E"));
    }

    void aMoveToNowhereChangesNothing()
    {
        Push(new BatchMoveOutlineCommand({Node({0})}, nullptr, false, Context(), nullptr));
        Push(new BatchMoveOutlineCommand({Node({0})}, nullptr, true, Context(), nullptr));
        Push(new BatchMoveOutlineCommand({Node({0})}, root, false, Context(), nullptr)); // behind the root is no place
        QCOMPARE(Dump(), original);
        QVERIFY(StepTo(Stack(), 0));
        QCOMPARE(Dump(), original);
        QVERIFY(StepTo(Stack(), 3));
        QCOMPARE(Dump(), original);
        QCOMPARE(probe->Total(), 0);
    }

    void aMoveBelowItselfIsRefusedAndUndoneWithoutLoss()
    {
        PushMove({{0}}, {0, 0}, true);
        QCOMPARE(Failures(), QList<QByteArray>{"BatchMoveOutlineCommand::redo 0 failed!"});
        QCOMPARE(Dump(), original);
        Stack()->undo();
        QCOMPARE(Dump(), original);
        QCOMPARE(probe->Total(), 0);
    }

    void anEmptyMoveDoesNothingAtEveryStep()
    {
        PushMove({}, {1}, true);
        Stack()->undo();
        Stack()->redo();
        QCOMPARE(Dump(), original);
        QCOMPARE(probe->Total(), 0);
    }

    void aNullEntryInAMoveStopsItBeforeAnythingIsMoved()
    {
        Push(new BatchMoveOutlineCommand({Node({0}), nullptr}, Node({4}), false, Context(), nullptr));
        QCOMPARE(Dump(), original);
        QCOMPARE(Failures(), QList<QByteArray>{"BatchMoveOutlineCommand::redo 1 find parent failed!"});
        Stack()->undo();
        QCOMPARE(Dump(), original);
    }

private:
    QString TopLevel() const
    {
        QStringList titles;
        for (int row = 0; row < root->SubNodeCount(); ++row)
            titles.append(OutlineTitle(root->SubNode(row)));
        return titles.join(' ');
    }

    void RefuseAt(G_TreeNode::Change refused, int row)
    {
        root->SetChangeGuard([refused, row](G_TreeNode::Change change, G_TreeNode*, int index) {
            return change != refused || index != row;
        });
    }
};

TETO_TEST_MAIN(TestOutlineBatches)
#include "test_outline_batches.moc"
