#pragma once

#include <frame/document/payloads.h>

#include <QString>

class G_UIContext;
class IG_Document;

// The record of a node; null for a null node, the root, or a foreign payload.
G_OutlineItem* OutlineItemOf(const G_TreeNode* node);
// A copy of a node's record, owned by the caller; null where there is none.
G_OutlineItem* CopyOfItem(const G_TreeNode* node);
// A node's title as stored; empty for a null node.
QString OutlineTitle(const G_TreeNode* node);
// The outline of the current view's document; null without a view or an outline.
G_TreeNode* CurrentOutlineRoot(G_UIContext* context);
