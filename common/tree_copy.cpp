#include "public_method.h"

#include <frame/document/payloads.h>
#include <frame/document/tree_node.h>

#include <utility>
#include <vector>

namespace {

using NodePair = std::pair<const G_TreeNode*, G_TreeNode*>;

// A copy of the record for a node of the new tree; a node without a record stays one.
template <typename Payload>
G_NodeData* CopyPayload(const G_TreeNode* node)
{
    const auto* payload = dynamic_cast<const Payload*>(node->data);
    return payload ? new Payload(*payload) : nullptr;
}

// Copies one node's children; a refused one is left out. Returns the pairs whose children come next.
template <typename Payload>
void CopyLevel(const G_TreeNode* source, G_TreeNode* destination, std::vector<NodePair>& waiting)
{
    for (int i = 0; i < source->SubNodeCount(); ++i) {
        const G_TreeNode* child = source->SubNode(i);
        G_NodeData* payload = CopyPayload<Payload>(child);
        G_TreeNode* added = destination->AddSubNode(i, payload);
        if (!added)
            delete payload;
        else if (child->SubNodeCount() > 0)
            waiting.emplace_back(child, added);
    }
}

// A stack of its own: a tree from a file may be deeper than the program's.
template <typename Payload>
void CopyDescendants(const G_TreeNode* source, G_TreeNode* destination)
{
    if (!source || !destination)
        return;
    std::vector<NodePair> waiting{{source, destination}};
    while (!waiting.empty()) {
        const NodePair next = waiting.back();
        waiting.pop_back();
        CopyLevel<Payload>(next.first, next.second, waiting);
    }
}

} // namespace

void PublicMethod::CopyCustomTagChildren(const G_TreeNode* source, G_TreeNode* destination)
{
    CopyDescendants<G_CustomTagItem>(source, destination);
}

void PublicMethod::CopyOutlineChildren(const G_TreeNode* source, G_TreeNode* destination)
{
    CopyDescendants<G_OutlineItem>(source, destination);
}

// Into a detached tree nothing is refused, so the two below need no answer of their own to a refusal; a null one would
// end its branch all the same.
void PublicMethod::CopyCustomTagTree(const G_TreeNode* source, G_TreeNode* destination)
{
    CopyDescendants<G_CustomTagItem>(source, destination);
}

void PublicMethod::CopyOutlineTree(const G_TreeNode* source, G_TreeNode* destination)
{
    CopyDescendants<G_OutlineItem>(source, destination);
}

void PublicMethod::DeleteSubTree(G_TreeNode* node)
{
    if (!node)
        return;
    while (node->SubNodeCount() > 0) {
        if (!node->RemoveSubNode(0))
            return; // a tree that refuses keeps what it has
    }
    // Row 0 on purpose: undo commands hand in detached nodes, for which there is no parent.
    if (node->parent)
        node->parent->RemoveSubNode(0);
    else
        delete node;
}
