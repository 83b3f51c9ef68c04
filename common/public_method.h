#pragma once

#include "tree_node_key.h"

#include <frame/base/arrays.h>
#include <frame/base/geometry.h>

#include <QList>
#include <QModelIndex>
#include <QString>
#include <QStringList>

class G_Operation;
class G_TreeNode;
class G_UIContext;

// The rectangles of one highlight.
struct SelectionRects
{
    int pageIndex = 0;
    CCA_ArrayTemplate<CCA_GRect> rects; // page mm
};

// What all trees of the add-on share: how an operation is told which node is meant, how a node is found again after
// its tree changed, how sub-trees are copied and freed, how names are kept apart. Keeps no state and reports nothing:
// failures are null results. Main thread only.
class PublicMethod
{
public:
    // Writes the rows from the index up to its top-level row under prefix0, prefix1, ..., and their number under
    // prefix + "Count" (0 for an invalid index).
    static void AddIndexPath(QModelIndex index, G_Operation* op, const QString& prefix);
    // The same for entry `batchNumber` of a list, keys prefix + number + infix + level. With the prefix "Del" also
    // stores `deleteRow`, the entry's row in the list on the screen.
    static void AddBatchIndexPath(QModelIndex index, G_Operation* op, int batchNumber, int deleteRow,
                                  const QString& prefix, const QString& infix);

    // Ascending, in place.
    static void SortRows(QList<int>& rows);
    // Keeps only the nodes of which no ancestor is in the list too, in their order.
    static void DropDescendants(QList<G_TreeNode*>& nodes);

    // Copy the source's descendants under the destination; neither's own payload is touched. These stop at null
    // arguments and leave out, with its descendants, a node that the tree refuses.
    static void CopyCustomTagChildren(const G_TreeNode* source, G_TreeNode* destination);
    static void CopyOutlineChildren(const G_TreeNode* source, G_TreeNode* destination);
    // The same for destinations that refuse nothing (detached trees): insertions are not tested one by one.
    static void CopyCustomTagTree(const G_TreeNode* source, G_TreeNode* destination);
    static void CopyOutlineTree(const G_TreeNode* source, G_TreeNode* destination);

    // The node with the key whose path, beginning at the node itself, is `path`. Null when there is none or the path
    // is empty. A key with the root's level and index means the root, whatever its text.
    static G_TreeNode* FindOutlineNode(G_TreeNode* root, const TreeNodeKey& key, const TreeNodePath& path);
    // The same in a tag tree, where `path` begins at the node's parent and texts are tag names. Looks below the top
    // tag, the first sub-node of `root`; a key with that tag's level and index means it.
    static G_TreeNode* FindCustomTagNode(G_TreeNode* root, const TreeNodeKey& key, const TreeNodePath& path);

    // Changes `name` to "name(1)", "name(2)", ... until no descendant of root has it as its text.
    static void MakeUniqueNodeName(G_TreeNode* root, QString& name);
    // Appends the texts of all descendants, pre-order.
    static void CollectNodeTexts(const G_TreeNode* node, QStringList& texts);

    // Frees a detached node and everything below it; null is accepted. A node that hangs under a parent must be its
    // sub-node 0: that row is what is removed.
    static void DeleteSubTree(G_TreeNode* node);

    // The destination's zoom mode for a view's.
    static int DestZoomMode(int viewZoomMode);

    // The tooltip of a custom tag: a heading and its second to fifth attributes, names padded to one width.
    static QString FormatNodeTip(const G_TreeNode* node);
    // Appends one record for each highlight of the current view.
    static void CollectSelectionRects(G_UIContext* context, CCA_ArrayTemplate<SelectionRects>& result);

    // The highlighted text of the current view, cut to `limit` characters, with the rectangle (page mm) and the page of
    // its first run; without a highlight, no text and the whole current page. Without a view nothing is changed.
    static void ParseTextPage(G_UIContext* context, QString& text, CCA_GRect& rect, int& pageIndex, int limit);
};
