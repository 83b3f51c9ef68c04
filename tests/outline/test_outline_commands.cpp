#include "outline_commands_fixture.h"

#include <frame/base/converters.h>
#include <outline/outline_commands.h>
#include <outline/outline_node.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>
#include <tests/support/undo_verbs.h>
#include <tests/support/view_fixture.h>

#include <QUndoStack>
#include <QtTest>

#include <memory>

// The commands alone, on a view's undo stack without a pane.
class TestOutlineCommands : public OutlineCommandsFixture
{
    Q_OBJECT
private slots:
    // Add

    void pushingAnAdditionLeavesTheTreeAsItIs()
    {
        Push(new AddOutlineCommand(Node({0, 0}), Context()));
        QCOMPARE(Dump(), original);
        QCOMPARE(probe->Total(), 0);
    }

    void undoOfAnAdditionRemovesTheEntryAndRedoBringsItBackWithAllItHolds()
    {
        Push(new AddOutlineCommand(Node({0, 0, 0, 0}), Context()));
        const QString before = Dump();
        Stack()->undo();
        QVERIFY(!Dump().contains("A1a1"));
        QCOMPARE(probe->Types(), QList<int>{110});
        Stack()->redo();
        QCOMPARE(Dump(), before);
        QCOMPARE(probe->Types(), (QList<int>{110, 110}));
        Stack()->undo();
        Stack()->redo();
        QCOMPARE(Dump(), before);
    }

    void anAdditionBelowARebuiltParentIsUndoneThere()
    {
        Push(new AddOutlineCommand(Node({0, 0, 0, 0}), Context()));
        Push(new BatchDelOutlineCommand({Node({0})}, Context()));
        Stack()->undo(); // A and all below are other nodes now
        Stack()->undo();
        QCOMPARE(Node({0, 0, 0})->SubNodeCount(), 0);
        Stack()->redo();
        QCOMPARE(Dump(), original);
    }

    void aRefusedUndoOfAnAdditionIsLoggedAndRedoDoesNotAddTheEntryTwice()
    {
        Push(new AddOutlineCommand(Node({1}), Context()));
        Refuse(G_TreeNode::Change::Remove);
        Stack()->undo();
        QCOMPARE(Failures(), QList<QByteArray>{"AddOutlineCommand::undo failed!"});
        root->SetChangeGuard({});
        Stack()->redo();
        QCOMPARE(Failures(), (QList<QByteArray>{"AddOutlineCommand::undo failed!", "AddOutlineCommand::redo failed!"}));
        QCOMPARE(Dump(), original);
        QCOMPARE(probe->Total(), 0);
    }

    void aRefusedRedoOfAnAdditionIsLoggedAndTheNextUndoTakesNoOtherEntry()
    {
        Push(new AddOutlineCommand(Node({1}), Context()));
        Stack()->undo();
        const QString without = Dump();
        Refuse(G_TreeNode::Change::Add);
        Stack()->redo();
        QCOMPARE(Failures(), QList<QByteArray>{"AddOutlineCommand::redo failed!"});
        root->SetChangeGuard({});
        Stack()->undo();
        QCOMPARE(Dump(), without);
        QCOMPARE(Failures(), (QList<QByteArray>{"AddOutlineCommand::redo failed!", "AddOutlineCommand::undo failed!"}));
        Stack()->redo();
        QCOMPARE(Dump(), original); // the record was kept all the while
    }

    void anAdditionWhoseParentIsGoneChangesNothing()
    {
        Push(new AddOutlineCommand(Node({2, 0, 0}), Context()));
        root->RemoveSubNode(2);
        const QString without = Dump();
        Stack()->undo();
        Stack()->redo();
        QCOMPARE(Dump(), without);
        QCOMPARE(Failures(), (QList<QByteArray>{"AddOutlineCommand::undo failed!", "AddOutlineCommand::redo failed!"}));
    }

    // Modify

    void pushingAModificationLeavesTheTreeAsItIs()
    {
        PushRename({1}, "B");
        QCOMPARE(Dump(), original);
        QCOMPARE(probe->Total(), 0);
    }

    void aModificationSwapsTheRecordsAtEachStep()
    {
        PushRename({0, 0}, "new");
        const QString changed = Dump();
        QVERIFY(changed.contains("new"));
        for (int round = 0; round < 3; ++round) {
            Stack()->undo();
            QCOMPARE(Dump(), original);
            Stack()->redo();
            QCOMPARE(Dump(), changed);
        }
        QCOMPARE(probe->Count(110), 6);
        QVERIFY(Failures().isEmpty());
    }

    void aModificationSwapsWithTheRecordThatTheTreeHoldsNow()
    {
        PushRename({1}, "new");
        auto* replaced = new G_OutlineItem(*OutlineItemOf(Node({1}))); // as writing an expansion state does
        replaced->expanded = false;
        Node({1})->SetNodeData(replaced);
        const QString closed = Dump();
        Stack()->undo();
        QCOMPARE(Dump(), original);
        Stack()->redo();
        QCOMPARE(Dump(), closed);
    }

    void aModificationOfAnEntryThatIsGoneChangesNothingSilently()
    {
        PushRename({2, 0, 0}, "new");
        root->RemoveSubNode(2);
        const QString without = Dump();
        Stack()->undo();
        Stack()->redo();
        QCOMPARE(Dump(), without);
        QVERIFY(Failures().isEmpty());
        QCOMPARE(probe->Total(), 0);
    }

    void entriesThatLookAlikeAreToldApartByTheWholePath()
    {
        PushRename({2, 0, 0}, "first");
        PushRename({2, 1, 0}, "second");
        Stack()->undo();
        QCOMPARE(Title({2, 0, 0}), QStringLiteral("first"));
        QCOMPARE(Title({2, 1, 0}), QStringLiteral("x"));
        Stack()->undo();
        QCOMPARE(Title({2, 0, 0}), QStringLiteral("x"));
        Stack()->redo();
        QCOMPARE(Title({2, 0, 0}), QStringLiteral("first"));
        QCOMPARE(Title({2, 1, 0}), QStringLiteral("x"));
    }

    void renamingAnAncestorBetweenTwoStepsKeepsTheOlderCommandTrue()
    {
        PushRename({2, 0, 0}, "y");
        PushRename({2, 0}, "P3");
        PushRename({2}, "T3");
        const QString changed = Dump();
        QVERIFY(StepTo(Stack(), 0));
        QCOMPARE(Dump(), original);
        QVERIFY(StepTo(Stack(), 3));
        QCOMPARE(Dump(), changed);
    }

    // All

    void commandsNeverMergeAndHaveNoText()
    {
        PushRename({1}, "b");
        PushRename({1}, "bb");
        QCOMPARE(Stack()->count(), 2);
        QCOMPARE(Stack()->command(0)->id(), -1);
        QCOMPARE(Stack()->command(0)->text(), QString());
    }

    void aDroppedCommandFreesWhatItHolds()
    {
        // What is wrong here is found by the address sanitizer: each kind is dropped in both states.
        for (const bool undone : {true, false}) {
            Push(new AddOutlineCommand(Node({0, 0, 0, 0}), Context()));
            PushRename({1}, undone ? "u" : "r");
            Push(new BatchAddOutlineCommand(AddRun(root, root->SubNodeCount(), {"n", "m"}), Context()));
            Push(new BatchDelOutlineCommand({Node({0}), Node({1})}, Context()));
            PushMove({{0}}, {1}, true);
            if (undone)
                QVERIFY(StepTo(Stack(), 0));
            Stack()->clear();
            fixture = std::make_unique<ViewFixture>(sample);
            root = fixture->Document()->GetOutlineRoot();
        }
        QCOMPARE(Dump(), original);
    }

    void stepsActOnTheCurrentDocumentOnly()
    {
        PushRename({1}, "new");
        const QString changed = Dump();
        OpenTab* other = fixture->Open(sample);
        const QString untouched = DumpTree(other->document->GetOutlineRoot());
        fixture->SetCurrent(fixture->View());
        Stack()->undo();
        QCOMPARE(Dump(), original);
        QCOMPARE(DumpTree(other->document->GetOutlineRoot()), untouched);
        Stack()->redo();
        QCOMPARE(Dump(), changed);
    }

private:
    // As the operation does: the record in the tree first, then the command.
    void PushRename(const Rows& rows, const QString& title)
    {
        G_TreeNode* node = Node(rows);
        G_OutlineItem* oldItem = CopyOfItem(node);
        auto* newItem = new G_OutlineItem(*oldItem);
        newItem->text = newItem->title = GQ_ToCAS(title);
        node->SetNodeData(newItem);
        Push(new ModifyOutlineCommand(oldItem, newItem, node, Context()));
    }
};

TETO_TEST_MAIN(TestOutlineCommands)
#include "test_outline_commands.moc"
