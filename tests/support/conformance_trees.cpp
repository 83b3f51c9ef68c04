#include "conformance_checks.h"
#include "tree_dump.h"

#include <frame/base/converters.h>

#include <QtTest>

namespace {

// A record that tells when it is freed.
class CountedRecord : public G_Bookmark
{
public:
    CountedRecord(const char* text, int* freedCount)
        : freedCount(freedCount)
    {
        name = text;
    }
    ~CountedRecord() override { ++*freedCount; }

private:
    int* freedCount; // not owned
};

G_Bookmark* NewRecord(const QString& name)
{
    auto* record = new G_Bookmark;
    record->name = GQ_ToCAS(name);
    return record;
}

void Append(G_TreeNode* parent, const QString& name)
{
    QVERIFY(parent->AddSubNode(parent->SubNodeCount(), NewRecord(name)));
}

// An outline root with A B C D E below it.
std::unique_ptr<IG_Document> MakeRows(ConformanceBackend& backend, G_TreeNode** root)
{
    std::unique_ptr<IG_Document> document = backend.Make(QStringLiteral("page 210 297\n"));
    *root = document && document->CreateOutlineRoot() ? document->GetOutlineRoot() : nullptr;
    for (const char name : {'A', 'B', 'C', 'D', 'E'}) {
        if (*root)
            Append(*root, QChar::fromLatin1(name));
    }
    return document;
}

void TreesAreReadAsDescribed(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    QCOMPARE(DumpTree(document->GetBookmarkRoot()), QStringLiteral("Alpha -> 7/1 (0,10,100,50) x1 mode 0\n"
                                                                   "Beta -> 1/0 (0,0,0,0) x0 mode 1\n"));
    QCOMPARE(DumpTree(document->GetOutlineRoot()), QStringLiteral("One -> 1/0 (0,0,0,0) x0 mode 0\n"
                                                                  "  Inner -> 7/1 (0,0,0,0) x0 mode 0\n"
                                                                  "    Innermost -> 9/2 (0,0,0,0) x0 mode 0\n"
                                                                  "Two closed -> 9/2 (0,0,0,0) x0 mode 0\n"));
    QCOMPARE(document->CustomTagRootCount(), 1);
    QCOMPARE(DumpNames(document->CustomTagRoot(0)), QStringLiteral("Invoice\n"
                                                                   "  Buyer\n"
                                                                   "  Seller\n"));
}

void RootsAreMadeOnceAndKept(ConformanceBackend& backend)
{
    const auto document = backend.Make(QStringLiteral("page 210 297\n"));
    QVERIFY(document);
    QVERIFY(!document->GetBookmarkRoot());
    QVERIFY(!document->GetOutlineRoot());
    QVERIFY(document->CreateBookmarkRoot());
    QVERIFY(document->CreateOutlineRoot());
    G_TreeNode* bookmarks = document->GetBookmarkRoot();
    G_TreeNode* outline = document->GetOutlineRoot();
    QVERIFY(bookmarks && outline && bookmarks != outline);
    for (G_TreeNode* root : {bookmarks, outline}) {
        QCOMPARE(root->level, 0);
        QCOMPARE(root->index, 0);
        QVERIFY(!root->data);
        QVERIFY(!root->parent);
        QCOMPARE(root->SubNodeCount(), 0);
    }
    Append(bookmarks, QStringLiteral("kept"));
    QVERIFY(document->CreateBookmarkRoot());
    QVERIFY(document->CreateOutlineRoot());
    QCOMPARE(document->GetBookmarkRoot(), bookmarks);
    QCOMPARE(document->GetOutlineRoot(), outline);
    QCOMPARE(DumpNames(bookmarks), QStringLiteral("kept\n"));
}

void ANewTagRootHasItsTopTag(ConformanceBackend& backend)
{
    const auto document = backend.Make(QStringLiteral("page 210 297\n"));
    QVERIFY(document);
    QCOMPARE(document->CustomTagRootCount(), 0);
    QVERIFY(!document->CustomTagRoot(0));
    QVERIFY(document->AddCustomTagRoot("Invoice", "fp", "namespace", 0));
    QVERIFY(document->AddCustomTagRoot("\xE5\x8F\x91\xE7\xA5\xA8", "fp", "namespace", 0));
    QCOMPARE(document->CustomTagRootCount(), 2);
    QVERIFY(!document->CustomTagRoot(2));
    QVERIFY(!document->CustomTagRoot(-1));
    QCOMPARE(DumpTree(document->CustomTagRoot(0)), QStringLiteral("Invoice\n"));
    QCOMPARE(DumpTree(document->CustomTagRoot(1)), QString::fromUtf8("\xE5\x8F\x91\xE7\xA5\xA8\n"));
    G_TreeNode* root = document->CustomTagRoot(0);
    QCOMPARE(root->level, 0);
    QVERIFY(!root->data);
    QVERIFY(dynamic_cast<G_CustomTagItem*>(root->SubNode(0)->data));
    QVERIFY(root->SubNode(0)->data->nodeTitle.IsEmpty());
}

void ReadTagsHaveNoNodeTitle(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document && document->CustomTagRoot(0));
    G_TreeNode* top = document->CustomTagRoot(0)->SubNode(0);
    QVERIFY(top && top->SubNode(0));
    QVERIFY(top->data->nodeTitle.IsEmpty());
    QVERIFY(top->SubNode(0)->data->nodeTitle.IsEmpty());
}

void ASubNodeOutOfRangeIsNull(ConformanceBackend& backend)
{
    G_TreeNode* root = nullptr;
    const auto document = MakeRows(backend, &root);
    QVERIFY(root);
    QVERIFY(!root->SubNode(-1));
    QVERIFY(!root->SubNode(5));
    QVERIFY(!root->SubNode(1000000));
    QVERIFY(root->SubNode(4));
}

void AddingOutOfRangeIsRefusedAndThePayloadStaysTheCallers(ConformanceBackend& backend)
{
    G_TreeNode* root = nullptr;
    const auto document = MakeRows(backend, &root);
    QVERIFY(root);
    int freedCount = 0;
    auto* record = new CountedRecord("X", &freedCount);
    QVERIFY(!root->AddSubNode(-1, record));
    QVERIFY(!root->AddSubNode(6, record));
    QCOMPARE(freedCount, 0);
    QVERIFY(root->AddSubNode(0, record));
    QCOMPARE(DumpNames(root), QStringLiteral("X\nA\nB\nC\nD\nE\n"));
    QVERIFY(root->RemoveSubNode(0));
    QCOMPARE(freedCount, 1);
}

void ANodeWithoutPayloadIsAccepted(ConformanceBackend& backend)
{
    G_TreeNode* root = nullptr;
    const auto document = MakeRows(backend, &root);
    QVERIFY(root);
    G_TreeNode* node = root->AddSubNode(5, nullptr);
    QVERIFY(node && !node->data);
    QVERIFY(node->NodeText().IsEmpty());
    QCOMPARE(node->index, 5);
    QCOMPARE(node->level, 1);
}

void RemovingLowersTheIndexOfLaterSubNodes(ConformanceBackend& backend)
{
    G_TreeNode* root = nullptr;
    const auto document = MakeRows(backend, &root);
    QVERIFY(root);
    G_TreeNode* last = root->SubNode(4);
    QVERIFY(root->RemoveSubNode(1));
    QCOMPARE(last->index, 3);
    QCOMPARE(DumpNames(root), QStringLiteral("A\nC\nD\nE\n"));
    QVERIFY(!root->RemoveSubNode(4));
    QVERIFY(!root->RemoveSubNode(-1));
    QCOMPARE(root->SubNodeCount(), 4);
}

void RemovingFreesEverythingBelow(ConformanceBackend& backend)
{
    G_TreeNode* root = nullptr;
    const auto document = MakeRows(backend, &root);
    QVERIFY(root);
    int freedCount = 0;
    G_TreeNode* parent = root->AddSubNode(5, new CountedRecord("P", &freedCount));
    G_TreeNode* child = parent->AddSubNode(0, new CountedRecord("Q", &freedCount));
    QVERIFY(child->AddSubNode(0, new CountedRecord("R", &freedCount)));
    QVERIFY(root->RemoveSubNode(5));
    QCOMPARE(freedCount, 3);
}

void ReplacingAPayloadKeepsLevelIndexAndSubNodes(ConformanceBackend& backend)
{
    G_TreeNode* root = nullptr;
    const auto document = MakeRows(backend, &root);
    QVERIFY(root);
    int freedCount = 0;
    G_TreeNode* node = root->SubNode(2);
    Append(node, QStringLiteral("child"));
    node->SetNodeData(new CountedRecord("first", &freedCount));
    node->SetNodeData(NewRecord(QStringLiteral("second")));
    QCOMPARE(freedCount, 1);
    QCOMPARE(node->level, 1);
    QCOMPARE(node->index, 2);
    node->SetNodeData(node->data); // must not free what it keeps
    QCOMPARE(DumpNames(root), QStringLiteral("A\nB\nsecond\n  child\nD\nE\n"));
}

void AMoveCountsItsDestinationAfterTheRemoval(ConformanceBackend& backend)
{
    G_TreeNode* root = nullptr;
    const auto document = MakeRows(backend, &root);
    QVERIFY(root);
    G_TreeNode* moved = root->SubNode(0);
    QVERIFY(G_TreeNode::MoveSubNode(root, 0, root, 4));
    QCOMPARE(root->SubNode(4), moved);
    QVERIFY(G_TreeNode::MoveSubNode(root, 0, root, 4));
    QCOMPARE(DumpNames(root), QStringLiteral("C\nD\nE\nA\nB\n"));
    QVERIFY(G_TreeNode::MoveSubNode(root, 4, root, 1));
    QCOMPARE(DumpNames(root), QStringLiteral("C\nB\nD\nE\nA\n"));
    QVERIFY(G_TreeNode::MoveSubNode(root, 2, root, 2));
    QVERIFY(!G_TreeNode::MoveSubNode(root, 0, root, 5)); // four are left once it is out
    QVERIFY(!G_TreeNode::MoveSubNode(root, 5, root, 0));
    QVERIFY(!G_TreeNode::MoveSubNode(root, -1, root, 0));
    QVERIFY(!G_TreeNode::MoveSubNode(root, 0, root, -1));
    QVERIFY(!G_TreeNode::MoveSubNode(nullptr, 0, root, 0));
    QVERIFY(!G_TreeNode::MoveSubNode(root, 0, nullptr, 0));
    QCOMPARE(DumpNames(root), QStringLiteral("C\nB\nD\nE\nA\n"));
}

void AMoveBetweenParentsSetsTheLevelsOfTheWholeSubTree(ConformanceBackend& backend)
{
    G_TreeNode* root = nullptr;
    const auto document = MakeRows(backend, &root);
    QVERIFY(root);
    Append(root->SubNode(1), QStringLiteral("b"));
    Append(root->SubNode(1)->SubNode(0), QStringLiteral("bb"));
    Append(root->SubNode(3), QStringLiteral("d"));
    G_TreeNode* moved = root->SubNode(1);
    QVERIFY(G_TreeNode::MoveSubNode(root, 1, root->SubNode(3), 1)); // behind its only sub-node
    QCOMPARE(DumpNames(root), QStringLiteral("A\nC\nD\n  d\n  B\n    b\n      bb\nE\n"));
    QCOMPARE(moved->level, 2);
    QVERIFY(G_TreeNode::MoveSubNode(moved->parent, 1, root, 0));
    QCOMPARE(DumpNames(root), QStringLiteral("B\n  b\n    bb\nA\nC\nD\n  d\nE\n"));
}

void AMoveBelowItselfIsRefused(ConformanceBackend& backend)
{
    G_TreeNode* root = nullptr;
    const auto document = MakeRows(backend, &root);
    QVERIFY(root);
    Append(root->SubNode(1), QStringLiteral("b"));
    G_TreeNode* inner = root->SubNode(1)->SubNode(0);
    QVERIFY(!G_TreeNode::MoveSubNode(root, 1, root->SubNode(1), 0));
    QVERIFY(!G_TreeNode::MoveSubNode(root, 1, inner, 0));
    QCOMPARE(DumpNames(root), QStringLiteral("A\nB\n  b\nC\nD\nE\n"));
}

void AGuardedTreeRefusesEveryChange(ConformanceBackend& backend)
{
    using Change = G_TreeNode::Change;
    G_TreeNode* root = nullptr;
    const auto document = MakeRows(backend, &root);
    QVERIFY(root);
    G_TreeNode* parent = root->SubNode(1);
    Append(parent, QStringLiteral("b"));
    QVector<Change> asked;
    root->SetChangeGuard([&asked](Change change, G_TreeNode*, int) {
        asked.append(change);
        return change == Change::MoveFrom;
    });
    int freedCount = 0;
    const std::unique_ptr<G_NodeData> record(new CountedRecord("X", &freedCount));
    QVERIFY(!parent->AddSubNode(0, record.get()));
    QCOMPARE(freedCount, 0);
    QVERIFY(!parent->RemoveSubNode(0));
    QVERIFY(!G_TreeNode::MoveSubNode(parent, 0, root, 0));
    QCOMPARE(asked, (QVector<Change>{Change::Add, Change::Remove, Change::MoveFrom, Change::MoveTo}));
    QCOMPARE(DumpNames(root), QStringLiteral("A\nB\n  b\nC\nD\nE\n"));
    root->SetChangeGuard(nullptr);
    QVERIFY(parent->RemoveSubNode(0));
}

} // namespace

QVector<ConformanceCheck> TreeConformanceChecks()
{
    return {
        {"trees are read as described", TreesAreReadAsDescribed},
        {"roots are made once and kept", RootsAreMadeOnceAndKept},
        {"a new tag root has its top tag", ANewTagRootHasItsTopTag},
        {"read tags have no node title", ReadTagsHaveNoNodeTitle},
        {"a sub-node out of range is null", ASubNodeOutOfRangeIsNull},
        {"adding out of range leaves the payload to the caller", AddingOutOfRangeIsRefusedAndThePayloadStaysTheCallers},
        {"a node without payload is accepted", ANodeWithoutPayloadIsAccepted},
        {"removing lowers the index of later sub-nodes", RemovingLowersTheIndexOfLaterSubNodes},
        {"removing frees everything below", RemovingFreesEverythingBelow},
        {"replacing a payload keeps level, index and sub-nodes", ReplacingAPayloadKeepsLevelIndexAndSubNodes},
        {"a move counts its destination after the removal", AMoveCountsItsDestinationAfterTheRemoval},
        {"a move sets the levels of the whole sub-tree", AMoveBetweenParentsSetsTheLevelsOfTheWholeSubTree},
        {"a move below itself is refused", AMoveBelowItselfIsRefused},
        {"a guarded tree refuses every change", AGuardedTreeRefusesEveryChange},
    };
}
