#include "public_method.h"

#include <frame/base/converters.h>
#include <frame/document/payloads.h>
#include <frame/document/tree_node.h>

#include <QSet>

#include <algorithm>
#include <vector>

namespace {

using TextOf = QString (*)(const G_TreeNode* node);

QString OutlineText(const G_TreeNode* node)
{
    return node->level == 0 ? QString() : GQ_ToQStringFromUtf8(node->NodeText());
}

// Tags are compared by the name field of their record.
QString TagText(const G_TreeNode* node)
{
    const auto* item = dynamic_cast<const G_CustomTagItem*>(node->data);
    return item ? GQ_ToQStringFromUtf8(item->tagName) : QString();
}

// Texts are converted last: the numbers tell nearly all nodes apart.
bool Equals(const G_TreeNode* node, const TreeNodeKey& key, TextOf textOf)
{
    return node->level == key.level && node->index == key.index && textOf(node) == key.text;
}

// The whole path equals the chain of parents that starts at the node.
bool PathFits(const G_TreeNode* node, const TreeNodePath& path, TextOf textOf)
{
    int equal = 0;
    for (; node && equal < path.size() && Equals(node, path.at(equal), textOf); node = node->parent)
        ++equal;
    return equal == path.size();
}

// The node of a path that reaches from the node up to the root: a path's rows lead to one place only, so the way down
// needs no search. Null when the tree has no such place or its texts are others.
G_TreeNode* Descend(G_TreeNode* root, const TreeNodePath& path)
{
    G_TreeNode* node = root;
    for (int i = path.size() - 2; node && i >= 0; --i)
        node = node->SubNode(path.at(i).index);
    return node && PathFits(node, path, OutlineText) ? node : nullptr;
}

// The nodes with the key at or below `top`, in pre-order; with `belowMatches` also those below a match.
std::vector<G_TreeNode*> CollectMatches(G_TreeNode* top, const TreeNodeKey& key, TextOf textOf, bool belowMatches)
{
    std::vector<G_TreeNode*> matches;
    std::vector<G_TreeNode*> waiting{top}; // a stack of its own: a tree from a file may be deeper than ours
    while (!waiting.empty()) {
        G_TreeNode* node = waiting.back();
        waiting.pop_back();
        if (Equals(node, key, textOf)) {
            matches.push_back(node);
            if (!belowMatches)
                continue;
        }
        for (int i = node->SubNodeCount() - 1; i >= 0; --i)
            waiting.push_back(node->SubNode(i));
    }
    return matches;
}

} // namespace

TreeNodeKey TreeNodeKey::Of(const G_TreeNode* node)
{
    TreeNodeKey key;
    if (node) {
        key.text = OutlineText(node);
        key.level = node->level;
        key.index = node->index;
    }
    return key;
}

TreeNodePath PathFrom(const G_TreeNode* node)
{
    TreeNodePath path;
    for (; node; node = node->parent)
        path.append(TreeNodeKey::Of(node));
    return path;
}

G_TreeNode* PublicMethod::FindOutlineNode(G_TreeNode* root, const TreeNodeKey& key, const TreeNodePath& path)
{
    if (!root || path.isEmpty())
        return nullptr;
    if (key.level == root->level && key.index == root->index)
        return root;
    if (key == path.first() && key.level - root->level == path.size() - 1)
        return Descend(root, path);
    for (int i = 0; i < root->SubNodeCount(); ++i) {
        // A node equal to the key has none such below it: its level differs from theirs.
        std::vector<G_TreeNode*> matches = CollectMatches(root->SubNode(i), key, OutlineText, false);
        const auto fits = [&path](const G_TreeNode* node) { return PathFits(node, path, OutlineText); };
        const auto last = std::find_if(matches.rbegin(), matches.rend(), fits);
        if (last != matches.rend())
            return *last;
    }
    return nullptr;
}

G_TreeNode* PublicMethod::FindCustomTagNode(G_TreeNode* root, const TreeNodeKey& key, const TreeNodePath& path)
{
    if (!root || path.isEmpty())
        return nullptr;
    G_TreeNode* top = root->SubNode(0);
    if (!top)
        return nullptr;
    if (key.level == top->level && key.index == top->index)
        return top;
    for (int i = 0; i < top->SubNodeCount(); ++i) {
        for (G_TreeNode* match : CollectMatches(top->SubNode(i), key, TagText, true)) {
            // The path of a tag does not hold the tag itself.
            if (PathFits(match->parent, path, TagText))
                return match;
        }
    }
    return nullptr;
}

void PublicMethod::SortRows(QList<int>& rows)
{
    std::sort(rows.begin(), rows.end());
}

void PublicMethod::DropDescendants(QList<G_TreeNode*>& nodes)
{
    const QSet<G_TreeNode*> chosen(nodes.cbegin(), nodes.cend());
    const auto hasChosenAncestor = [&chosen](const G_TreeNode* node) {
        for (G_TreeNode* above = node ? node->parent : nullptr; above; above = above->parent) {
            if (chosen.contains(above))
                return true;
        }
        return false;
    };
    nodes.erase(std::remove_if(nodes.begin(), nodes.end(), hasChosenAncestor), nodes.end());
}
