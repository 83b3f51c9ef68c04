#include <frame/document/payloads.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>

#include <QtTest>

#include <memory>

// What the conformance suite cannot ask of a document's trees: detached roots, size, depth, refusals of single nodes.
class TestTreeNode : public QObject
{
    Q_OBJECT

private slots:
    void aDetachedRootStandsAlone();
    void aHundredThousandSiblingsAreBuiltAndMoved();
    void aDeepChainIsMovedAndFreedWithoutRecursion();
    void aSubTreeMovesBetweenTwoTrees();
    void aMoveAcrossTreesAsksBothGuards();
    void theGuardBelongsToTheWholeTree();
    void aGuardIsAskedWithTheRowThatWouldChange();
    void aGuardDiesWithItsTree();
    void aDumpShowsFieldsThatDoNotFit();
};

namespace {

G_Bookmark* NewRecord(const char* name)
{
    auto* record = new G_Bookmark;
    record->name = name;
    return record;
}

std::unique_ptr<G_TreeNode> MakeRoot()
{
    return std::unique_ptr<G_TreeNode>(G_TreeNode::CreateRoot());
}

} // namespace

void TestTreeNode::aDetachedRootStandsAlone()
{
    const auto root = MakeRoot();
    QCOMPARE(root->level, 0);
    QCOMPARE(root->index, 0);
    QVERIFY(!root->data);
    QVERIFY(!root->parent);
    QVERIFY(root->NodeText().IsEmpty());
    QCOMPARE(root->Root(), root.get());
    QVERIFY(!root->SubNode(0));
    QVERIFY(!root->RemoveSubNode(0));
}

void TestTreeNode::aHundredThousandSiblingsAreBuiltAndMoved()
{
    constexpr int count = 100000;
    const auto root = MakeRoot();
    for (int i = 0; i < count; ++i)
        QVERIFY(root->AddSubNode(i, NewRecord("n")));
    QCOMPARE(root->SubNodeCount(), count);
    G_TreeNode* first = root->SubNode(0);
    QVERIFY(G_TreeNode::MoveSubNode(root.get(), 0, root.get(), count - 1));
    QCOMPARE(first->index, count - 1);
    bool isNumbered = true;
    for (int i = 0; i < count; ++i)
        isNumbered = isNumbered && root->SubNode(i)->index == i;
    QVERIFY(isNumbered);
    while (root->SubNodeCount() > 0)
        QVERIFY(root->RemoveSubNode(root->SubNodeCount() - 1));
}

void TestTreeNode::aDeepChainIsMovedAndFreedWithoutRecursion()
{
    constexpr int depth = 300000;
    const auto root = MakeRoot();
    root->AddSubNode(0, NewRecord("top"));
    root->AddSubNode(1, NewRecord("chain"));
    G_TreeNode* deepest = root->SubNode(1);
    for (int i = 1; i < depth; ++i)
        deepest = deepest->AddSubNode(0, NewRecord("n"));
    QCOMPARE(deepest->level, depth);
    QCOMPARE(deepest->Root(), root.get());
    QVERIFY(G_TreeNode::MoveSubNode(root.get(), 1, root->SubNode(0), 0));
    QCOMPARE(deepest->level, depth + 1);
    QVERIFY(!G_TreeNode::MoveSubNode(root.get(), 0, deepest, 0));
    QVERIFY(root->RemoveSubNode(0));
    QCOMPARE(root->SubNodeCount(), 0);
}

void TestTreeNode::aSubTreeMovesBetweenTwoTrees()
{
    const auto source = MakeRoot();
    const auto target = MakeRoot();
    source->AddSubNode(0, NewRecord("a"))->AddSubNode(0, NewRecord("b"));
    target->AddSubNode(0, NewRecord("x"))->AddSubNode(0, NewRecord("y"));
    G_TreeNode* moved = source->SubNode(0);
    QVERIFY(G_TreeNode::MoveSubNode(source.get(), 0, target->SubNode(0), 1));
    QCOMPARE(DumpNames(source.get()), QString());
    QCOMPARE(DumpNames(target.get()), QStringLiteral("x\n  y\n  a\n    b\n"));
    QCOMPARE(moved->Root(), target.get());
}

void TestTreeNode::aMoveAcrossTreesAsksBothGuards()
{
    const auto source = MakeRoot();
    const auto target = MakeRoot();
    source->AddSubNode(0, NewRecord("a"));
    bool mayLeave = false;
    bool mayEnter = false;
    source->SetChangeGuard([&mayLeave](G_TreeNode::Change, G_TreeNode*, int) { return mayLeave; });
    target->SetChangeGuard([&mayEnter](G_TreeNode::Change, G_TreeNode*, int) { return mayEnter; });
    QVERIFY(!G_TreeNode::MoveSubNode(source.get(), 0, target.get(), 0));
    mayLeave = true;
    QVERIFY(!G_TreeNode::MoveSubNode(source.get(), 0, target.get(), 0));
    QCOMPARE(DumpNames(source.get()), QStringLiteral("a\n"));
    mayEnter = true;
    QVERIFY(G_TreeNode::MoveSubNode(source.get(), 0, target.get(), 0));
    QCOMPARE(DumpNames(target.get()), QStringLiteral("a\n"));
}

void TestTreeNode::theGuardBelongsToTheWholeTree()
{
    const auto root = MakeRoot();
    G_TreeNode* inner = root->AddSubNode(0, NewRecord("a"))->AddSubNode(0, NewRecord("b"));
    inner->SetChangeGuard([](G_TreeNode::Change, G_TreeNode*, int) { return false; }); // goes to the root
    QVERIFY(!root->RemoveSubNode(0));
    root->SetChangeGuard(nullptr);
    QVERIFY(root->RemoveSubNode(0));
}

void TestTreeNode::aGuardIsAskedWithTheRowThatWouldChange()
{
    const auto root = MakeRoot();
    G_TreeNode* parent = root->AddSubNode(0, NewRecord("a"));
    parent->AddSubNode(0, NewRecord("b"));
    G_TreeNode* askedParent = nullptr;
    int askedIndex = -1;
    root->SetChangeGuard([&](G_TreeNode::Change, G_TreeNode* changed, int index) {
        askedParent = changed;
        askedIndex = index;
        return true;
    });
    QVERIFY(parent->AddSubNode(1, NewRecord("c")));
    QCOMPARE(askedParent, parent);
    QCOMPARE(askedIndex, 1);
    QVERIFY(parent->RemoveSubNode(0));
    QCOMPARE(askedIndex, 0);
    askedParent = nullptr;
    QVERIFY(!parent->RemoveSubNode(7)); // refused before anybody is asked
    QVERIFY(!askedParent);
}

void TestTreeNode::aGuardDiesWithItsTree()
{
    int askedCount = 0;
    auto guarded = MakeRoot();
    guarded->SetChangeGuard([&askedCount](G_TreeNode::Change, G_TreeNode*, int) { return ++askedCount > 0; });
    const auto other = MakeRoot();
    QVERIFY(other->AddSubNode(0, NewRecord("a")));
    QCOMPARE(askedCount, 0);
    QVERIFY(guarded->AddSubNode(0, NewRecord("a")));
    QCOMPARE(askedCount, 1);
    guarded.reset();
    QVERIFY(other->AddSubNode(0, NewRecord("b")));
    QCOMPARE(askedCount, 1);
}

void TestTreeNode::aDumpShowsFieldsThatDoNotFit()
{
    const auto root = MakeRoot();
    G_TreeNode* node = root->AddSubNode(0, NewRecord("a"));
    node->level = 3;
    node->index = 2;
    QCOMPARE(DumpNames(root.get()), QStringLiteral("a !level !index\n"));
    QCOMPARE(DumpTree(nullptr), QStringLiteral("no tree"));
}

TETO_TEST_MAIN(TestTreeNode)
#include "test_tree_node.moc"
