#include "outline_node.h"

#include <frame/base/converters.h>
#include <frame/document/ig_document.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>

G_OutlineItem* OutlineItemOf(const G_TreeNode* node)
{
    return node ? dynamic_cast<G_OutlineItem*>(node->data) : nullptr;
}

G_OutlineItem* CopyOfItem(const G_TreeNode* node)
{
    const G_OutlineItem* item = OutlineItemOf(node);
    return item ? new G_OutlineItem(*item) : nullptr;
}

QString OutlineTitle(const G_TreeNode* node)
{
    return node ? GQ_ToQStringFromUtf8(node->NodeText()) : QString();
}

G_TreeNode* CurrentOutlineRoot(G_UIContext* context)
{
    const G_DocView* view = context ? context->CurrentDocView() : nullptr;
    IG_Document* document = view ? view->GDocument() : nullptr;
    return document ? document->GetOutlineRoot() : nullptr;
}
