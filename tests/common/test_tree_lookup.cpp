#include <common/public_method.h>
#include <frame/base/converters.h>
#include <frame/document/memory_document.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>

#include <QRandomGenerator>
#include <QtTest>

namespace {

const char twins[] = "outline \"T\"\n"
                     "  outline \"P1\"\n"
                     "    outline \"x\"\n"
                     "  outline \"P2\"\n"
                     "    outline \"x\"\n"
                     "outline \"U\"\n"
                     "  outline \"P1\"\n"
                     "    outline \"x\"\n";

G_TreeNode* NodeAt(G_TreeNode* root, const QList<int>& rows)
{
    for (const int row : rows)
        root = root ? root->SubNode(row) : nullptr;
    return root;
}

G_TreeNode* FindAgain(G_TreeNode* root, G_TreeNode* node)
{
    return PublicMethod::FindOutlineNode(root, TreeNodeKey::Of(node), PathFrom(node));
}

void AddRandomNodes(G_TreeNode* parent, QRandomGenerator& random, int depth)
{
    const int count = random.bounded(1, 4);
    for (int i = 0; i < count; ++i) {
        auto* item = new G_OutlineItem;
        item->text = random.bounded(2) ? "a" : "b"; // few texts, so that many nodes look alike
        G_TreeNode* node = parent->AddSubNode(i, item);
        if (depth > 0)
            AddRandomNodes(node, random, depth - 1);
    }
}

QList<G_TreeNode*> AllNodes(G_TreeNode* root)
{
    QList<G_TreeNode*> nodes{root};
    for (int at = 0; at < nodes.size(); ++at) {
        for (int i = 0; i < nodes.at(at)->SubNodeCount(); ++i)
            nodes.append(nodes.at(at)->SubNode(i));
    }
    return nodes;
}

// A tree that goes down the given number of levels.
G_TreeNode* DeepTree(int levels)
{
    G_TreeNode* root = G_TreeNode::CreateRoot();
    G_TreeNode* node = root;
    for (int i = 0; i < levels; ++i) {
        auto* item = new G_OutlineItem;
        item->text = "deep";
        node = node->AddSubNode(0, item);
    }
    return root;
}

} // namespace

// How nodes are found again after node pointers were lost, and what a selection of them keeps.
class TestTreeLookup : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyPathFindsNothingEvenWhenTheKeyWouldFit()
    {
        const auto document = MemoryDocument::FromText(twins);
        G_TreeNode* root = document->GetOutlineRoot();
        QVERIFY(!PublicMethod::FindOutlineNode(root, TreeNodeKey::Of(NodeAt(root, {0})), {}));
        QVERIFY(!PublicMethod::FindOutlineNode(root, TreeNodeKey::Of(root), {}));
    }

    void theRootsLevelAndIndexMeanTheRootWhateverTheText()
    {
        const auto document = MemoryDocument::FromText(twins);
        G_TreeNode* root = document->GetOutlineRoot();
        const TreeNodeKey key{QStringLiteral("no such text"), 0, 0};
        QCOMPARE(PublicMethod::FindOutlineNode(root, key, {key}), root);
    }

    void equalTextsUnderDifferentParentsAreToldApartByThePath()
    {
        const auto document = MemoryDocument::FromText(twins);
        G_TreeNode* root = document->GetOutlineRoot();
        G_TreeNode* first = NodeAt(root, {0, 0, 0});
        G_TreeNode* second = NodeAt(root, {0, 1, 0});
        G_TreeNode* third = NodeAt(root, {1, 0, 0});
        QVERIFY(TreeNodeKey::Of(first) == TreeNodeKey::Of(second));
        QCOMPARE(FindAgain(root, first), first);
        QCOMPARE(FindAgain(root, second), second);
        QCOMPARE(FindAgain(root, third), third);
    }

    void underParentsThatLookEqualTheWholePathDecides()
    {
        const auto document = MemoryDocument::FromText("outline \"P\"\n"
                                                       "  outline \"x\"\n"
                                                       "outline \"P\"\n"
                                                       "  outline \"x\"\n");
        G_TreeNode* root = document->GetOutlineRoot();
        QCOMPARE(FindAgain(root, NodeAt(root, {0, 0})), NodeAt(root, {0, 0}));
        QCOMPARE(FindAgain(root, NodeAt(root, {1, 0})), NodeAt(root, {1, 0}));
    }

    void aPathThatEndsBelowTheRootIsSearchedForAndTheLastCandidateUnderTheFirstTopNodeWins()
    {
        const auto document = MemoryDocument::FromText(twins);
        G_TreeNode* root = document->GetOutlineRoot();
        const TreeNodeKey key = TreeNodeKey::Of(NodeAt(root, {0, 0, 0}));
        QCOMPARE(PublicMethod::FindOutlineNode(root, key, {key}), NodeAt(root, {0, 1, 0}));
        const TreeNodePath first = PathFrom(NodeAt(root, {0, 0, 0})).mid(0, 2);
        QCOMPARE(PublicMethod::FindOutlineNode(root, key, first), NodeAt(root, {0, 0, 0}));
        QVERIFY(!PublicMethod::FindOutlineNode(root, key, PathFrom(NodeAt(root, {0}))));
    }

    void aWholePathWithOneOtherTextOnTheWayFindsNothing()
    {
        const auto document = MemoryDocument::FromText(twins);
        G_TreeNode* root = document->GetOutlineRoot();
        G_TreeNode* node = NodeAt(root, {0, 1, 0});
        for (int step = 1; step < 3; ++step) {
            TreeNodePath path = PathFrom(node);
            path[step].text += "!";
            QVERIFY(!PublicMethod::FindOutlineNode(root, path.first(), path));
        }
    }

    void aNodeWhoseTextChangedIsNotFound()
    {
        const auto document = MemoryDocument::FromText(twins);
        G_TreeNode* root = document->GetOutlineRoot();
        G_TreeNode* node = NodeAt(root, {0, 0, 0});
        const TreeNodeKey key = TreeNodeKey::Of(node);
        const TreeNodePath path = PathFrom(node);
        static_cast<G_OutlineItem*>(node->data)->text = "y";
        QVERIFY(!PublicMethod::FindOutlineNode(root, key, path));
    }

    void aPathLongerThanTheChainOfParentsFindsNothing()
    {
        const auto document = MemoryDocument::FromText(twins);
        G_TreeNode* root = document->GetOutlineRoot();
        G_TreeNode* node = NodeAt(root, {1});
        TreeNodePath path = PathFrom(node);
        path.append(TreeNodeKey());
        QVERIFY(!PublicMethod::FindOutlineNode(root, TreeNodeKey::Of(node), path));
    }

    void aNullRootFindsNothing()
    {
        QVERIFY(!PublicMethod::FindOutlineNode(nullptr, TreeNodeKey(), {TreeNodeKey()}));
        QVERIFY(!PublicMethod::FindCustomTagNode(nullptr, TreeNodeKey(), {TreeNodeKey()}));
    }

    void everyNodeOfARandomTreeIsFoundByItsOwnPath()
    {
        const quint32 seed = QRandomGenerator::global()->generate();
        qInfo("seed %u", seed);
        QRandomGenerator random(seed);
        const std::unique_ptr<G_TreeNode> root(G_TreeNode::CreateRoot());
        AddRandomNodes(root.get(), random, 4);
        for (G_TreeNode* node : AllNodes(root.get()))
            QCOMPARE(FindAgain(root.get(), node), node);
    }

    void aTagIsFoundByThePathOfItsParent()
    {
        const auto document = MemoryDocument::FromText("tag \"Top\"\n"
                                                       "  tag \"Buyer\"\n"
                                                       "    tag \"name\"\n"
                                                       "  tag \"Seller\"\n"
                                                       "    tag \"name\"\n");
        G_TreeNode* root = document->CustomTagRoot(0);
        G_TreeNode* sellersName = NodeAt(root, {0, 1, 0});
        G_TreeNode* buyersName = NodeAt(root, {0, 0, 0});
        QVERIFY(sellersName && buyersName);
        const TreeNodeKey key = TreeNodeKey::Of(sellersName);
        QCOMPARE(PublicMethod::FindCustomTagNode(root, key, PathFrom(sellersName->parent)), sellersName);
        QCOMPARE(PublicMethod::FindCustomTagNode(root, key, PathFrom(buyersName->parent)), buyersName);
        QVERIFY(!PublicMethod::FindCustomTagNode(root, key, PathFrom(sellersName)));
        QVERIFY(!PublicMethod::FindCustomTagNode(root, key, {}));
    }

    void theTopTagsLevelAndIndexMeanTheTopTag()
    {
        const auto document = MemoryDocument::FromText("tag \"Top\"\n  tag \"Buyer\"\n");
        G_TreeNode* root = document->CustomTagRoot(0);
        const TreeNodeKey key{QStringLiteral("no such text"), 1, 0};
        QCOMPARE(PublicMethod::FindCustomTagNode(root, key, {key}), root->SubNode(0));
    }

    void nodesWithASelectedAncestorLeaveTheSelection()
    {
        const auto document = MemoryDocument::FromText(twins);
        G_TreeNode* root = document->GetOutlineRoot();
        G_TreeNode* parent = NodeAt(root, {0});
        G_TreeNode* grandchild = NodeAt(root, {0, 1, 0});
        G_TreeNode* other = NodeAt(root, {1, 0});
        QList<G_TreeNode*> nodes{grandchild, other, parent};
        PublicMethod::DropDescendants(nodes); // the child between the two is not selected
        QCOMPARE(nodes, (QList<G_TreeNode*>{other, parent}));
    }

    void aSelectionWithoutAncestorsStaysAsItIs()
    {
        const auto document = MemoryDocument::FromText(twins);
        G_TreeNode* root = document->GetOutlineRoot();
        const QList<G_TreeNode*> nodes{NodeAt(root, {1}), NodeAt(root, {0, 1}), NodeAt(root, {0, 0})};
        QList<G_TreeNode*> kept = nodes;
        PublicMethod::DropDescendants(kept);
        QCOMPARE(kept, nodes);
    }

    void copiesOfASubTreeAreEqualAndTheirOwn()
    {
        const auto document = MemoryDocument::FromText(twins);
        G_TreeNode* source = document->GetOutlineRoot();
        const std::unique_ptr<G_TreeNode> tree(G_TreeNode::CreateRoot());
        const std::unique_ptr<G_TreeNode> children(G_TreeNode::CreateRoot());
        PublicMethod::CopyOutlineTree(source, tree.get());
        PublicMethod::CopyOutlineChildren(tree.get(), children.get());
        QCOMPARE(DumpTree(tree.get()), DumpTree(source));
        QCOMPARE(DumpTree(children.get()), DumpTree(source));
        QVERIFY(!tree->data);
        QVERIFY(NodeAt(tree.get(), {0, 1})->data != NodeAt(source, {0, 1})->data);
    }

    void copiesOfTagsKeepAttributesAndObjects()
    {
        const auto document = MemoryDocument::FromText("page 210 297\n"
                                                       "tag \"Top\" a=1 objects=1:1,2\n"
                                                       "  tag \"Child\" b=2\n");
        G_TreeNode* source = document->CustomTagRoot(0);
        const std::unique_ptr<G_TreeNode> copy(G_TreeNode::CreateRoot());
        PublicMethod::CopyCustomTagChildren(source, copy.get());
        QCOMPARE(DumpTree(copy.get()), DumpTree(source));
        const std::unique_ptr<G_TreeNode> tree(G_TreeNode::CreateRoot());
        PublicMethod::CopyCustomTagTree(source, tree.get());
        QCOMPARE(DumpTree(tree.get()), DumpTree(source));
    }

    void aRefusedNodeIsLeftOutOfACopyWithWhatIsBelowItAndItsFollowersGoOn()
    {
        const auto document = MemoryDocument::FromText(twins);
        const std::unique_ptr<G_TreeNode> destination(G_TreeNode::CreateRoot());
        G_TreeNode* top = destination.get();
        destination->SetChangeGuard([top](G_TreeNode::Change, G_TreeNode* parent, int index) {
            return parent == top || index != 0; // below the top entries the first row is refused
        });
        PublicMethod::CopyOutlineChildren(document->GetOutlineRoot(), destination.get());
        destination->SetChangeGuard({});
        // "P2" is asked for at row 1 of an empty list and is out of range, so both are missing.
        QCOMPARE(DumpNames(destination.get()), QStringLiteral("T\nU\n"));
    }

    void copyingStopsAtNullArguments()
    {
        const std::unique_ptr<G_TreeNode> root(G_TreeNode::CreateRoot());
        PublicMethod::CopyOutlineChildren(nullptr, root.get());
        PublicMethod::CopyOutlineChildren(root.get(), nullptr);
        PublicMethod::CopyCustomTagChildren(nullptr, nullptr);
        QCOMPARE(root->SubNodeCount(), 0);
    }

    void aNodeWithoutARecordIsCopiedAsOne()
    {
        const std::unique_ptr<G_TreeNode> source(G_TreeNode::CreateRoot());
        source->AddSubNode(0, nullptr);
        const std::unique_ptr<G_TreeNode> copy(G_TreeNode::CreateRoot());
        PublicMethod::CopyOutlineTree(source.get(), copy.get());
        QCOMPARE(copy->SubNodeCount(), 1);
        QVERIFY(!copy->SubNode(0)->data);
    }

    void deletingASubTreeRemovesRowZeroOfItsParent()
    {
        const auto document = MemoryDocument::FromText(twins);
        G_TreeNode* root = document->GetOutlineRoot();
        PublicMethod::DeleteSubTree(root->SubNode(0));
        QCOMPARE(DumpNames(root), QStringLiteral("U\n  P1\n    x\n"));
        PublicMethod::DeleteSubTree(nullptr);
    }

    void aVeryDeepTreeIsCopiedSearchedAndFreed()
    {
        constexpr int levels = 100000;
        G_TreeNode* root = DeepTree(levels);
        G_TreeNode* copy = G_TreeNode::CreateRoot();
        PublicMethod::CopyOutlineTree(root, copy);
        QStringList texts;
        PublicMethod::CollectNodeTexts(copy, texts);
        QCOMPARE(texts.size(), levels);
        const TreeNodeKey deepest{QStringLiteral("deep"), levels, 0};
        QVERIFY(!PublicMethod::FindOutlineNode(copy, deepest, {deepest, deepest}));
        PublicMethod::DeleteSubTree(copy);
        PublicMethod::DeleteSubTree(root);
    }
};

TETO_TEST_MAIN(TestTreeLookup)
#include "test_tree_lookup.moc"
