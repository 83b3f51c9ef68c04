#include "doc_view.h"
#include "go_to_dest.h"
#include "settings.h"
#include "ui_context.h"

#include <frame/document/ig_document.h>
#include <frame/operation/event.h>

G_ActionHandler::G_ActionHandler(G_UIContext* context)
    : QObject(context)
    , context(context)
{
}

void G_ActionHandler::DoActions(const CCA_ArrayTemplate<G_Action*>& actions, IG_Document* document, int /*kind*/)
{
    G_DocView* view = context->CurrentDocView();
    if (!view || !document || view->GDocument() != document)
        return;
    const bool keepsZoom = G_SettingMgr::Instance()->ConfigValue(QStringLiteral("read.keepcurrentzoom")).toBool();
    bool wasAnyIgnored = false;
    for (const G_Action* action : actions) {
        if (const auto* jump = dynamic_cast<const G_ActionGoto*>(action))
            GoToDest(view, *jump->dest, keepsZoom);
        else
            wasAnyIgnored = true;
    }
    if (wasAnyIgnored)
        context->FireEvent(new G_StringEvent(tr("This kind of action is not supported."), EventType::StatusText));
}
