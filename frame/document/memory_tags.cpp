#include "memory_tags.h"

#include "memory_page.h"

#include <QCryptographicHash>

namespace {

// Calls `visit` with every node below the root, parents first and in order, however deep the tree is.
template <typename Visit>
void ForEachNode(G_TreeNode* root, const Visit& visit)
{
    QVector<G_TreeNode*> pending;
    const auto push = [&pending](G_TreeNode* parent) {
        for (int i = parent->SubNodeCount() - 1; i >= 0; --i)
            pending.append(parent->SubNode(i));
    };
    if (root)
        push(root);
    while (!pending.isEmpty()) {
        G_TreeNode* node = pending.takeLast();
        visit(node);
        push(node);
    }
}

struct TagHit
{
    G_TreeNode* node = nullptr; // not owned
    int objectId = 0;
    float area = 0;
};

bool IsBetter(const TagHit& hit, const TagHit& best)
{
    if (!best.node || hit.area != best.area)
        return !best.node || hit.area < best.area;
    return hit.node->level > best.node->level;
}

void TestTag(G_TreeNode* node, const MemoryPage& page, int pageId, const CCA_GPoint& point, TagHit* best)
{
    const auto* tag = dynamic_cast<const G_CustomTagItem*>(node->data);
    const QVector<G_PageObjRef*> refs = tag ? tag->objects.Values() : QVector<G_PageObjRef*>();
    for (const G_PageObjRef* ref : refs) {
        if (!ref || ref->pageId != pageId)
            continue;
        for (const int objectId : ref->objectIds) {
            CCA_GRect box;
            if (!page.ObjectBox(objectId, &box) || !box.Contains(point))
                continue;
            TagHit hit;
            hit.node = node;
            hit.objectId = objectId;
            hit.area = box.Width() * box.Height();
            if (IsBetter(hit, *best))
                *best = hit;
        }
    }
}

} // namespace

bool FindTagAtPoint(IG_Document* document, const MemoryPage& page, const CCA_GPoint& point, G_TreeNode** node,
                    int* objectId)
{
    TagHit best;
    const int pageId = page.Id();
    for (int i = 0; i < document->CustomTagRootCount(); ++i) {
        ForEachNode(document->CustomTagRoot(i),
                    [&](G_TreeNode* tagNode) { TestTag(tagNode, page, pageId, point, &best); });
    }
    if (!best.node)
        return false;
    if (node)
        *node = best.node;
    if (objectId)
        *objectId = best.objectId;
    return true;
}

QByteArray FingerprintTrees(IG_Document* document)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    const auto addTree = [&hash](G_TreeNode* root) {
        ForEachNode(root, [&hash](G_TreeNode* node) {
            const auto* record = dynamic_cast<const G_Object*>(node->data);
            hash.addData(QByteArray::number(node->level) + ' ' + (record ? record->ToString().Bytes() : QByteArray()) +
                         '\n');
        });
        hash.addData("tree\n");
    };
    addTree(document->GetOutlineRoot());
    addTree(document->GetBookmarkRoot());
    for (int i = 0; i < document->CustomTagRootCount(); ++i)
        addTree(document->CustomTagRoot(i));
    return hash.result();
}
