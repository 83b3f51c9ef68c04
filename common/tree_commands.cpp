#include "tree_commands.h"

#include <frame/document/tree_node.h>

G_TreeNodeBaseCommand::G_TreeNodeBaseCommand(G_TreeNode* node, G_UIContext* context, QUndoCommand* parentCommand)
    : QUndoCommand(parentCommand)
    , context(context)
    , node(node)
    , parent(node && node->parent ? node->parent : node)
    , index(node && node->parent ? node->index : 0)
    , parentPath(PathFrom(parent))
{
}

G_TreeNodeBatchBaseCommand::G_TreeNodeBatchBaseCommand(const QList<G_TreeNode*>& nodes, G_UIContext* context,
                                                       QUndoCommand* parentCommand)
    : QUndoCommand(parentCommand)
    , context(context)
{
    SetNodes(nodes);
}

void G_TreeNodeBatchBaseCommand::SetNodes(const QList<G_TreeNode*>& newNodes)
{
    nodes = newNodes;
    indices.clear();
    paths.clear();
    for (int i = 0; i < nodes.size(); ++i) {
        const G_TreeNode* node = nodes.at(i);
        const bool isRoot = !node || node->level == 0;
        indices.append(isRoot ? 0 : node->index);
        paths.insert(i, PathFrom(isRoot ? node : node->parent));
    }
}
