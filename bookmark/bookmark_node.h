#pragma once

#include <frame/document/payloads.h>
#include <frame/document/tree_node.h>

#include <QString>

class IG_Document;

// The record of a node; null for a null node, the root, or a foreign payload.
G_Bookmark* BookmarkOf(const G_TreeNode* node);
// The bookmark at a row of a document's list; null when there is no root or no such row.
G_TreeNode* BookmarkNode(IG_Document* document, int row);
// A node's name as stored; empty for a null node.
QString BookmarkName(const G_TreeNode* node);
