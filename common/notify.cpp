#include "notify.h"

#include <frame/operation/event.h>
#include <frame/view/ui_context.h>

void FireDocumentChanged(G_UIContext* context)
{
    if (context)
        context->FireEvent(new G_DocumentChangedEvent(context->CurrentDocView(), EventType::DocumentChanged, 0));
}

void FireStatusText(G_UIContext* context, const QString& text)
{
    if (context)
        context->FireEvent(new G_StringEvent(text, EventType::StatusText));
}
