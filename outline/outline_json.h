#pragma once

#include <frame/json/ovjson.h>

#include <QList>
#include <QString>
#include <QStringList>

class G_TreeNode;

// How outline operations are told what to act on: JSON texts under "jsonParam". A place in the tree is an ancestor
// walk: an array with {"index", "level"} of a node, then of its parent, up to the top-level ancestor; the root is not
// in it, so the root's walk is empty. "level" is written for whoever reads the text; nothing here reads it.
namespace OutlineJson {

// The walk of a node; empty for null and for the root.
OVJson AncestorWalk(const G_TreeNode* node);
// The node that the elements `begin` and above of a walk lead to from the root. Null when the tree has no such place,
// or without a root.
G_TreeNode* NodeAt(G_TreeNode* root, const OVJson& walk, int begin = 0);

// "jsonParam" of add: the row of the entry to add behind (-1: none, the new one becomes the last), then the walk of
// its parent.
QString AddText(int row, const G_TreeNode* parent);
// The walk alone, as text: "jsonParam" of the operations on one entry (the walk of its parent) and of add-sub.
QString WalkText(const G_TreeNode* node);
// "jsonParam" of batch add: an array for each line with the title, the row of the entry to stand behind and the walk
// of the parent; the rows count up from `row`, so that the entries stand one behind the other.
QString BatchAddText(const QStringList& titles, int row, const G_TreeNode* parent);
// "jsonParam" of delete: for entry i (from 1) an object "outline<i>" with "position1" for the entry, "position2" for
// its parent and so on.
QString DeleteText(const QList<G_TreeNode*>& nodes);
// The nodes that DeleteText named, in its order, without those that the tree no longer has.
QList<G_TreeNode*> NodesOfDeleteText(G_TreeNode* root, const OVJson& json);

// Null when the text is empty or malformed.
OVSharedPtr<OVJson> Parse(const QString& text);

} // namespace OutlineJson
