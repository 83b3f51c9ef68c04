#pragma once

#include <QList>
#include <QString>

class G_TreeNode;

// Names a node in a way that survives the loss of pointers. A value type.
struct TreeNodeKey
{
    QString text;  // the node's text; empty at the root
    int level = 0; // depth, 0 at the root
    int index = 0; // place among the parent's sub-nodes

    // The key of a node as it stands now; the text of a level-0 node is empty. A null node gives a default key.
    static TreeNodeKey Of(const G_TreeNode* node);
    friend bool operator==(const TreeNodeKey& a, const TreeNodeKey& b)
    {
        return a.level == b.level && a.index == b.index && a.text == b.text;
    }
};

// A path: a node first, then its parents upward, the root last.
using TreeNodePath = QList<TreeNodeKey>;

// The path that starts at the node itself; empty for a null node.
TreeNodePath PathFrom(const G_TreeNode* node);
