#include <bookmark/bookmark_commands.h>
#include <bookmark/bookmark_node.h>
#include <frame/base/converters.h>
#include <frame/base/log.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>
#include <tests/support/undo_verbs.h>
#include <tests/support/view_fixture.h>

#include <frame/operation/event_manager.h>

#include <QUndoStack>
#include <QtTest>

#include <memory>

namespace {

const char fiveBookmarks[] = "page 210 297\n"
                             "bookmark \"A\" page=1 rect=0,0,10,10 zoom=1 mode=0\n"
                             "bookmark \"B\" page=1 rect=0,10,20,20 zoom=1.5 mode=0\n"
                             "bookmark \"C\" page=1 rect=0,20,30,30 zoom=2 mode=1\n"
                             "bookmark \"D\" page=1 rect=0,30,40,40 zoom=1 mode=2\n"
                             "bookmark \"E\" page=1 rect=0,40,50,50 zoom=1 mode=4\n";

} // namespace

// The commands alone, on a view's undo stack without a pane.
class TestBookmarkCommands : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        lines.clear();
        SetFrameLogListener([this](const QByteArray& line) { lines.append(line); });
        fixture = std::make_unique<ViewFixture>(fiveBookmarks);
        root = fixture->Document()->GetBookmarkRoot();
        probe = std::make_unique<EventProbe>(Context()->EventMgr());
    }

    void cleanup()
    {
        probe.reset();
        fixture.reset();
        SetFrameLogListener({});
    }

    void pushingAnAdditionLeavesTheTreeAsItIs()
    {
        const QString before = DumpTree(root);
        Push(new AddBookmarkCommand(root->SubNode(4), Context()));
        QCOMPARE(DumpTree(root), before);
        QCOMPARE(probe->Total(), 0);
    }

    void undoOfAnAdditionRemovesTheRowAndRedoBringsItBackWithNameAndDestination()
    {
        const QString before = DumpTree(root);
        Push(new AddBookmarkCommand(root->SubNode(2), Context()));
        Stack()->undo();
        QCOMPARE(Names(), QStringLiteral("A B D E"));
        QCOMPARE(probe->Types(), QList<int>{110});
        Stack()->redo();
        QCOMPARE(DumpTree(root), before);
        QCOMPARE(probe->Types(), (QList<int>{110, 110}));
        Stack()->undo();
        Stack()->redo();
        QCOMPARE(DumpTree(root), before);
    }

    void pushingAModificationLeavesTheTreeAsItIs()
    {
        const QString before = DumpTree(root);
        PushRename(1, "B", "B");
        QCOMPARE(DumpTree(root), before);
        QCOMPARE(probe->Total(), 0);
    }

    void aModificationExchangesTheRecordsAtEachStep()
    {
        SetName(1, "new");
        PushRename(1, "old", "new");
        const QString changed = DumpTree(root);
        Stack()->undo();
        QCOMPARE(Names(), QStringLiteral("A old C D E"));
        QCOMPARE(probe->Types(), QList<int>{110});
        Stack()->redo();
        QCOMPARE(DumpTree(root), changed);
        Stack()->undo();
        Stack()->redo();
        QCOMPARE(DumpTree(root), changed);
        QCOMPARE(probe->Count(110), 4);
    }

    void aModificationCopiesWhatItIsGiven()
    {
        auto oldItem = std::make_unique<G_Bookmark>();
        auto newItem = std::make_unique<G_Bookmark>();
        oldItem->name = "old";
        newItem->name = "B";
        Push(new ModifyBookmarkCommand(oldItem.get(), newItem.get(), root->SubNode(1), Context()));
        oldItem.reset();
        newItem.reset();
        Stack()->undo();
        QCOMPARE(Names(), QStringLiteral("A old C D E"));
        Stack()->redo();
        QCOMPARE(Names(), QStringLiteral("A B C D E"));
    }

    void deletingRowsOneAndThreeThenUndoingRestoresTheOrder()
    {
        const QString before = DumpTree(root);
        Push(new DeleteBookmarkCommand(Nodes({1, 3}), Context()));
        QCOMPARE(Names(), QStringLiteral("A C E"));
        Stack()->undo();
        QCOMPARE(DumpTree(root), before);
        Stack()->redo();
        QCOMPARE(Names(), QStringLiteral("A C E"));
        Stack()->undo();
        QCOMPARE(DumpTree(root), before);
    }

    void aDeletionFiresOneChangeHoweverManyRows()
    {
        Push(new DeleteBookmarkCommand(Nodes({0, 1, 2, 3, 4}), Context()));
        QCOMPARE(probe->Types(), QList<int>{110});
        Stack()->undo();
        QCOMPARE(probe->Types(), (QList<int>{110, 110}));
    }

    void anEmptyDeletionChangesNothingAndItsUndoIsLogged()
    {
        const QString before = DumpTree(root);
        Push(new DeleteBookmarkCommand({}, Context()));
        QCOMPARE(DumpTree(root), before);
        Stack()->undo();
        QVERIFY(lines.contains("DeleteBookmarkCommand::undo failed!"));
        Stack()->redo();
        QCOMPARE(DumpTree(root), before);
        QCOMPARE(probe->Total(), 0);
    }

    void movingTheFirstTwoBelowTheLastKeepsTheirOrderAndUndoRestoresTheList()
    {
        const QString before = DumpTree(root);
        PushMove({0, 1}, 4);
        QCOMPARE(Names(), QStringLiteral("C D E A B"));
        Stack()->undo();
        QCOMPARE(DumpTree(root), before);
        Stack()->redo();
        QCOMPARE(Names(), QStringLiteral("C D E A B"));
        Stack()->undo();
        QCOMPARE(DumpTree(root), before);
    }

    void rowsAreMovedBehindTheDestination_data()
    {
        QTest::addColumn<QList<int>>("rows");
        QTest::addColumn<int>("destination");
        QTest::addColumn<QString>("names");
        QTest::newRow("up") << QList<int>{3, 4} << 0 << "A D E B C";
        QTest::newRow("down") << QList<int>{1} << 2 << "A C B D E";
        QTest::newRow("from both sides") << QList<int>{0, 4} << 2 << "B C A E D";
        QTest::newRow("scattered above") << QList<int>{0, 2} << 4 << "B D E A C";
        QTest::newRow("to its own place") << QList<int>{1} << 0 << "A B C D E";
    }

    void rowsAreMovedBehindTheDestination()
    {
        QFETCH(QList<int>, rows);
        QFETCH(int, destination);
        QFETCH(QString, names);
        const QString before = DumpTree(root);
        PushMove(rows, destination);
        QCOMPARE(Names(), names);
        for (int round = 0; round < 2; ++round) {
            Stack()->undo();
            QCOMPARE(DumpTree(root), before);
            Stack()->redo();
            QCOMPARE(Names(), names);
        }
    }

    void movingToTheTopPlacesTheSelectedRowsFirst()
    {
        const QString before = DumpTree(root);
        Push(new BatchMoveBookmarkCommand(Nodes({2, 4}), root, true, Context())); // the node is not used
        QCOMPARE(Names(), QStringLiteral("C E A B D"));
        Stack()->undo();
        QCOMPARE(DumpTree(root), before);
        Push(new BatchMoveBookmarkCommand(Nodes({1}), nullptr, true, Context()));
        QCOMPARE(Names(), QStringLiteral("B A C D E"));
    }

    void aMoveFiresOneChangeForEachMovedRow()
    {
        PushMove({0, 1, 2}, 4);
        QCOMPARE(probe->Types(), (QList<int>{110, 110, 110}));
        Stack()->undo();
        QCOMPARE(probe->Count(110), 6);
    }

    void aMoveKeepsTheNodesWhileItsUndoMakesNewOnes()
    {
        G_TreeNode* moved = root->SubNode(0);
        PushMove({0}, 4);
        QCOMPARE(root->SubNode(4), moved);
        Stack()->undo();
        QCOMPARE(Names(), QStringLiteral("A B C D E"));
    }

    void aMoveWithoutADestinationIsLoggedAndMovesNothing()
    {
        Push(new BatchMoveBookmarkCommand(Nodes({0}), nullptr, false, Context()));
        QCOMPARE(Names(), QStringLiteral("A B C D E"));
        QVERIFY(lines.contains("BatchMoveBookmarkCommand::redo failed!"));
        Stack()->undo();
        QCOMPARE(Names(), QStringLiteral("A B C D E"));
    }

    void anEmptyMoveChangesNothing()
    {
        Push(new BatchMoveBookmarkCommand({}, root->SubNode(1), false, Context()));
        Stack()->undo();
        Stack()->redo();
        QCOMPARE(Names(), QStringLiteral("A B C D E"));
        QCOMPARE(probe->Total(), 0);
    }

    void aRefusedUndoOfAnAdditionIsToldToTheUser()
    {
        Push(new AddBookmarkCommand(root->SubNode(4), Context()));
        Refuse(G_TreeNode::Change::Remove);
        Stack()->undo();
        Allow();
        QCOMPARE(Names(), QStringLiteral("A B C D E"));
        QCOMPARE(probe->Types(), QList<int>{173});
        QCOMPARE(probe->StatusTexts(), QStringList{"Undo failed"});
        // The record is still the tree's, so its redo must not hand it over a second time.
        Stack()->redo();
        QCOMPARE(Names(), QStringLiteral("A B C D E"));
        QCOMPARE(probe->StatusTexts(), (QStringList{"Undo failed", "Redo failed"}));
    }

    void anUndoneAdditionWhoseNodeIsGoneIsToldToTheUser()
    {
        Push(new AddBookmarkCommand(root->SubNode(4), Context()));
        root->RemoveSubNode(4);
        Stack()->undo();
        QCOMPARE(probe->StatusTexts(), QStringList{"Undo failed"});
        QCOMPARE(Names(), QStringLiteral("A B C D"));
    }

    void aRefusedRedoOfAnAdditionIsToldToTheUser()
    {
        Push(new AddBookmarkCommand(root->SubNode(4), Context()));
        Stack()->undo();
        Refuse(G_TreeNode::Change::Add);
        Stack()->redo();
        Allow();
        QCOMPARE(Names(), QStringLiteral("A B C D"));
        QCOMPARE(probe->Types(), (QList<int>{110, 173}));
        QCOMPARE(probe->StatusTexts(), QStringList{"Redo failed"});
    }

    void aModificationOfATreeThatChangedBehindTheStackDoesNothing()
    {
        PushRename(4, "old", "E");
        root->RemoveSubNode(4);
        Stack()->undo();
        Stack()->redo();
        QCOMPARE(Names(), QStringLiteral("A B C D"));
        QCOMPARE(probe->Total(), 0);
    }

    void aRefusedDeletionIsLoggedAndNotToldToTheUser()
    {
        Refuse(G_TreeNode::Change::Remove);
        Push(new DeleteBookmarkCommand(Nodes({1, 3}), Context()));
        Allow();
        QCOMPARE(Names(), QStringLiteral("A B C D E"));
        QVERIFY(lines.contains("DeleteBookmarkCommand::redo failed!"));
        QCOMPARE(probe->Total(), 0);
        Stack()->undo();
        QVERIFY(lines.contains("DeleteBookmarkCommand::undo failed!"));
        QCOMPARE(Names(), QStringLiteral("A B C D E"));
    }

    void aDeletionGoesByTheAnswerForItsFirstRowAlone()
    {
        RefuseAt(G_TreeNode::Change::Remove, 3);
        Push(new DeleteBookmarkCommand(Nodes({1, 3}), Context()));
        Allow();
        QCOMPARE(Names(), QStringLiteral("A C D E"));
        QCOMPARE(probe->Types(), QList<int>{110});
        QVERIFY(!lines.contains("DeleteBookmarkCommand::redo failed!"));
    }

    void anUndoneDeletionThatTheTreeRefusesIsLoggedAndCanBeRedone()
    {
        Push(new DeleteBookmarkCommand(Nodes({1, 3}), Context()));
        Refuse(G_TreeNode::Change::Add);
        Stack()->undo();
        Allow();
        QCOMPARE(Names(), QStringLiteral("A C E"));
        QVERIFY(lines.contains("DeleteBookmarkCommand::undo failed!"));
        QCOMPARE(probe->Types(), QList<int>{110});
        Stack()->redo(); // takes what stands at the rows now: only row 1 of the three is left of them
        Stack()->undo();
        QCOMPARE(Names().left(3), QStringLiteral("A C"));
    }

    void anUndoneDeletionOfWhichOneRowIsRefusedBringsBackTheOthers()
    {
        Push(new DeleteBookmarkCommand(Nodes({1, 3}), Context()));
        RefuseAt(G_TreeNode::Change::Add, 3);
        Stack()->undo();
        Allow();
        QCOMPARE(Names(), QStringLiteral("A B C E"));
        QCOMPARE(probe->Count(110), 2);
        Stack()->redo();
        QCOMPARE(Names(), QStringLiteral("A C"));
    }

    void aRefusedRowOfAMoveIsLoggedAndTheOthersGoOn()
    {
        G_TreeNode* second = root->SubNode(1);
        root->SetChangeGuard([second](G_TreeNode::Change change, G_TreeNode* parent, int index) {
            return change != G_TreeNode::Change::MoveFrom || parent->SubNode(index) != second;
        });
        PushMove({0, 1, 2}, 4);
        Allow();
        QCOMPARE(Names(), QStringLiteral("B D E A C"));
        QVERIFY(lines.contains("BatchMoveBookmarkCommand::redo failed!"));
        QCOMPARE(probe->Count(110), 2);
        Stack()->undo();
        QCOMPARE(Names(), QStringLiteral("A B C D E"));
    }

    void aRefusedInsertionOfAnUndoneMoveIsLoggedAndTheOthersGoOn()
    {
        PushMove({0, 1}, 4);
        probe->Clear();
        RefuseAt(G_TreeNode::Change::Add, 0);
        Stack()->undo();
        Allow();
        QCOMPARE(Names(), QStringLiteral("C B D E"));
        QCOMPARE(lines.count("BatchMoveBookmarkCommand::undo failed!"), 1);
        QCOMPARE(probe->Types(), QList<int>{110});
    }

    void eachCommandSaysInTheLogThatItDies()
    {
        Push(new AddBookmarkCommand(root->SubNode(0), Context()));
        PushRename(1, "B", "B");
        Push(new DeleteBookmarkCommand(Nodes({4}), Context()));
        PushMove({0}, 2);
        lines.clear();
        Stack()->clear();
        for (const char* line :
             {"AddBookmarkCommand::~AddBookmarkCommand", "ModifyBookmarkCommand::~ModifyBookmarkCommand",
              "DeleteBookmarkCommand::~DeleteBookmarkCommand", "BatchMoveBookmarkCommand::~BatchMoveBookmarkCommand"})
            QVERIFY2(lines.contains(line), line);
        QCOMPARE(lines.count("BookmarkBaseCommand::~BookmarkBaseCommand"), 2);
    }

    void commandsHaveNoTextAndNeverMerge()
    {
        const AddBookmarkCommand add(root->SubNode(0), Context());
        const ModifyBookmarkCommand modify(nullptr, nullptr, root->SubNode(0), Context());
        const DeleteBookmarkCommand remove(Nodes({0}), Context());
        const BatchMoveBookmarkCommand move(Nodes({0}), nullptr, true, Context());
        for (const QUndoCommand* command : std::initializer_list<const QUndoCommand*>{&add, &modify, &remove, &move}) {
            QVERIFY(command->text().isEmpty());
            QCOMPARE(command->id(), -1);
        }
    }

    void nodesThatAreMissingAmongThoseToDeleteAreLeftOut()
    {
        const QString before = DumpTree(root);
        Push(new DeleteBookmarkCommand({root->SubNode(1), nullptr, root->SubNode(3)}, Context()));
        QCOMPARE(root->SubNodeCount(), 3);
        Stack()->undo();
        QCOMPARE(DumpTree(root), before);
        Push(new DeleteBookmarkCommand({nullptr, root->SubNode(1)}, Context()));
        QCOMPARE(DumpTree(root), before);
    }

    void aMoveOfRowsThatAreMissingMovesTheOthers()
    {
        const QString before = DumpTree(root);
        Push(new BatchMoveBookmarkCommand({root->SubNode(1), nullptr, root->SubNode(3)}, nullptr, true, Context()));
        QCOMPARE(BookmarkName(root->SubNode(0)), QStringLiteral("B"));
        QCOMPARE(BookmarkName(root->SubNode(1)), QStringLiteral("D"));
        Stack()->undo();
        QCOMPARE(DumpTree(root), before);
    }

    void everyKindOfStepUndoneAndRedoneKeepsTheDump()
    {
        VERIFY_UNDO_REDO(Stack(), root, [this] {
            PushMove({0, 2}, 4);
            Push(new DeleteBookmarkCommand(Nodes({0, 2, 4}), Context()));
            Push(new BatchMoveBookmarkCommand(Nodes({1}), nullptr, true, Context()));
        });
    }

private:
    ScriptedContext* Context() const { return fixture->Context(); }
    QUndoStack* Stack() const { return fixture->View()->UndoStack(); }
    void Push(QUndoCommand* command) { Stack()->push(command); }

    void PushRename(int row, const char* oldName, const char* newName)
    {
        G_Bookmark oldItem(*BookmarkOf(root->SubNode(row)));
        G_Bookmark newItem(oldItem);
        oldItem.name = oldName;
        newItem.name = newName;
        Push(new ModifyBookmarkCommand(&oldItem, &newItem, root->SubNode(row), Context()));
    }

    void PushMove(const QList<int>& rows, int destination)
    {
        Push(new BatchMoveBookmarkCommand(Nodes(rows), root->SubNode(destination), false, Context()));
    }

    void SetName(int row, const char* name)
    {
        auto* item = new G_Bookmark(*BookmarkOf(root->SubNode(row)));
        item->name = name;
        root->SubNode(row)->SetNodeData(item);
    }

    QList<G_TreeNode*> Nodes(const QList<int>& rows) const
    {
        QList<G_TreeNode*> nodes;
        for (const int row : rows)
            nodes.append(root->SubNode(row));
        return nodes;
    }

    QString Names() const
    {
        return DumpNames(root).split(QLatin1Char('\n'), Qt::SkipEmptyParts).join(QLatin1Char(' '));
    }

    void Refuse(G_TreeNode::Change refused)
    {
        root->SetChangeGuard([refused](G_TreeNode::Change change, G_TreeNode*, int) { return change != refused; });
    }

    void RefuseAt(G_TreeNode::Change refused, int row)
    {
        root->SetChangeGuard([refused, row](G_TreeNode::Change change, G_TreeNode*, int index) {
            return change != refused || index != row;
        });
    }

    void Allow() { root->SetChangeGuard({}); }

    QList<QByteArray> lines;
    std::unique_ptr<ViewFixture> fixture;
    std::unique_ptr<EventProbe> probe;
    G_TreeNode* root = nullptr;
};

TETO_TEST_MAIN(TestBookmarkCommands)
#include "test_bookmark_commands.moc"
