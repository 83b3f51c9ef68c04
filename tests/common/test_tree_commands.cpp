#include <common/tree_commands.h>
#include <frame/document/memory_document.h>
#include <tests/support/test_main.h>

#include <QtTest>

namespace {

// Shows what the bases recorded.
class OneNodeCommand : public G_TreeNodeBaseCommand
{
public:
    using G_TreeNodeBaseCommand::context;
    using G_TreeNodeBaseCommand::G_TreeNodeBaseCommand;
    using G_TreeNodeBaseCommand::index;
    using G_TreeNodeBaseCommand::node;
    using G_TreeNodeBaseCommand::ownsItem;
    using G_TreeNodeBaseCommand::parent;
    using G_TreeNodeBaseCommand::parentPath;
    using G_TreeNodeBaseCommand::redoArmed;
};

class ManyNodesCommand : public G_TreeNodeBatchBaseCommand
{
public:
    using G_TreeNodeBatchBaseCommand::G_TreeNodeBatchBaseCommand;
    using G_TreeNodeBatchBaseCommand::indices;
    using G_TreeNodeBatchBaseCommand::nodes;
    using G_TreeNodeBatchBaseCommand::ownsItems;
    using G_TreeNodeBatchBaseCommand::paths;
};

} // namespace

// What the undo bases record of the nodes they are given.
class TestTreeCommands : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        document = MemoryDocument::FromText("outline \"A\"\n"
                                            "  outline \"B\"\n"
                                            "  outline \"C\"\n"
                                            "    outline \"D\"\n");
        root = document->GetOutlineRoot();
    }

    void aRootIsItsOwnParentAtIndexZeroWithOneKeyOfEmptyText()
    {
        const OneNodeCommand command(root, nullptr);
        QCOMPARE(command.node, root);
        QCOMPARE(command.parent, root);
        QCOMPARE(command.index, 0);
        QCOMPARE(command.parentPath, (TreeNodePath{{QString(), 0, 0}}));
    }

    void aNodeIsRecordedByItsParentsPathAndItsIndex()
    {
        G_TreeNode* c = root->SubNode(0)->SubNode(1);
        const OneNodeCommand command(c->SubNode(0), nullptr);
        QCOMPARE(command.parent, c);
        QCOMPARE(command.index, 0);
        QCOMPARE(command.parentPath, (TreeNodePath{{"C", 2, 1}, {"A", 1, 0}, {QString(), 0, 0}}));
    }

    void theFlagsAreDownAtTheStart()
    {
        const OneNodeCommand one(root, nullptr);
        QVERIFY(!one.ownsItem);
        QVERIFY(!one.redoArmed);
        const ManyNodesCommand many({root}, nullptr);
        QVERIFY(!many.ownsItems);
    }

    void aCommandHasNoTextAndNeverMerges()
    {
        OneNodeCommand command(root, nullptr);
        OneNodeCommand other(root, nullptr);
        QVERIFY(command.text().isEmpty());
        QCOMPARE(command.id(), -1);
        QVERIFY(!command.mergeWith(&other));
    }

    void aListIsRecordedByTheParentsPathsAndTheIndices()
    {
        G_TreeNode* a = root->SubNode(0);
        const ManyNodesCommand command({a->SubNode(1)->SubNode(0), a, root, nullptr}, nullptr);
        QCOMPARE(command.indices, (QList<int>{0, 0, 0, 0}));
        const TreeNodeKey rootKey{QString(), 0, 0};
        QCOMPARE(command.paths.value(0), (TreeNodePath{{"C", 2, 1}, {"A", 1, 0}, rootKey}));
        QCOMPARE(command.paths.value(1), (TreeNodePath{rootKey}));
        QCOMPARE(command.paths.value(2), (TreeNodePath{rootKey}));
        QVERIFY(command.paths.value(3).isEmpty());
    }

    void settingNodesAgainReplacesWhatWasRecorded()
    {
        G_TreeNode* a = root->SubNode(0);
        ManyNodesCommand command({a, a->SubNode(0)}, nullptr);
        command.SetNodes({a->SubNode(1)});
        QCOMPARE(command.nodes, (QList<G_TreeNode*>{a->SubNode(1)}));
        QCOMPARE(command.indices, (QList<int>{1}));
        QCOMPARE(command.paths.value(0), (TreeNodePath{{"A", 1, 0}, {QString(), 0, 0}}));
    }

    void onlyTheFirstRedoIsSkipped()
    {
        bool redoArmed = false;
        QVERIFY(SkipsFirstRedo(redoArmed));
        QVERIFY(redoArmed);
        QVERIFY(!SkipsFirstRedo(redoArmed));
    }

    void aNullNodeIsRecordedAsNothing()
    {
        const OneNodeCommand command(nullptr, nullptr);
        QVERIFY(!command.parent);
        QCOMPARE(command.index, 0);
        QVERIFY(command.parentPath.isEmpty());
    }

private:
    std::unique_ptr<MemoryDocument> document;
    G_TreeNode* root = nullptr;
};

TETO_TEST_MAIN(TestTreeCommands)
#include "test_tree_commands.moc"
