#include "bookmark_node.h"

#include <frame/base/converters.h>
#include <frame/document/ig_document.h>

G_Bookmark* BookmarkOf(const G_TreeNode* node)
{
    return node ? dynamic_cast<G_Bookmark*>(node->data) : nullptr;
}

G_TreeNode* BookmarkNode(IG_Document* document, int row)
{
    const G_TreeNode* root = document ? document->GetBookmarkRoot() : nullptr;
    return root ? root->SubNode(row) : nullptr;
}

QString BookmarkName(const G_TreeNode* node)
{
    return node ? GQ_ToQStringFromUtf8(node->NodeText()) : QString();
}
