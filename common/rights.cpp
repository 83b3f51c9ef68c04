#include "rights.h"

#include <frame/document/ig_document.h>
#include <frame/view/application.h>
#include <frame/view/doc_view.h>

bool IsRestricted(IG_Document* document)
{
    return G_Application::Instance().IsRestricted(document);
}

bool MayEdit(IG_Document* document)
{
    return document && document->CheckRight(true) && !document->IsReadOnly();
}

bool MayReorder(IG_Document* document)
{
    return document && !IsRestricted(document) && !document->IsReadOnly();
}

bool MayEditRows(G_DocView* view, IG_Document* document)
{
    return MayReorder(document) && !(view && view->IsReadOnly());
}
