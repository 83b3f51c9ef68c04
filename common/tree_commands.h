#pragma once

#include "tree_node_key.h"

#include <QList>
#include <QMap>
#include <QUndoCommand>

class G_TreeNode;
class G_UIContext;

// The first line of each redo whose change was made before the push: pushing calls redo at once, and that call must do
// nothing. True, once, while the flag is down; the flag is up afterwards.
inline bool SkipsFirstRedo(bool& redoArmed)
{
    const bool skips = !redoArmed;
    redoArmed = true;
    return skips;
}

// The base of commands on one node. Records where the node stood in a form that outlives node pointers. Lives on the
// undo stack of one view. Main thread only.
class G_TreeNodeBaseCommand : public QUndoCommand
{
public:
    G_TreeNodeBaseCommand(G_TreeNode* node, G_UIContext* context, QUndoCommand* parentCommand = nullptr);

protected:
    G_UIContext* context; // not owned
    G_TreeNode* node;     // not owned; only good within one step
    G_TreeNode* parent;   // not owned; the node itself when it has no parent
    int index;            // the node's place in the parent; 0 without a parent
    bool ownsItem = false;
    bool redoArmed = false;
    TreeNodePath parentPath; // from `parent` up to the root
};

// The base of commands on a list of nodes.
class G_TreeNodeBatchBaseCommand : public QUndoCommand
{
public:
    G_TreeNodeBatchBaseCommand(const QList<G_TreeNode*>& nodes, G_UIContext* context,
                               QUndoCommand* parentCommand = nullptr);
    // Replaces the list and what is recorded of it.
    void SetNodes(const QList<G_TreeNode*>& newNodes);

protected:
    G_UIContext* context;     // not owned
    QList<G_TreeNode*> nodes; // not owned; only good within one step
    QList<int> indices;       // 0 for a null node or a root
    bool ownsItems = false;
    QMap<int, TreeNodePath> paths; // by position in `nodes`: from the parent (from a root itself) up to the root
};
