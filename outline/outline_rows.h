#pragma once

#include "pointer_table.h"

#include <QList>
#include <QVector>

class G_TreeNode;
class IG_Document;
class QTreeWidgetItem;

// Where an entry leads, for following the page: the first of its actions when that goes to a destination.
struct OutlineTarget
{
    QTreeWidgetItem* item; // not owned
    int pageId;
    float left; // page mm
    float top;
};

// The rows of an outline, not yet in a tree, with all that is known of them after one walk.
struct OutlineRows
{
    QList<QTreeWidgetItem*> topItems;         // with their children; owned by who takes them
    PointerTable<G_TreeNode*, int> nodeOrder; // numbers in pre-order; the root has 0
    int nextOrder = 0;                        // one more than there are rows
    QVector<OutlineTarget> targets;           // in pre-order
};

// Makes a row for each node below the root; a null root gives none. `expectedCount` only spares growing the tables.
// Walks without recursion: an outline from a file may be deeper than the stack.
OutlineRows MakeOutlineRows(G_TreeNode* root, IG_Document* document, bool isEditable, int expectedCount);
