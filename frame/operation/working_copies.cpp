#include "registry.h"

#include "copy_keeper.h"

#include <frame/base/log.h>

G_WorkingCopies::G_WorkingCopies(G_OperationHost* host, G_UIContext* context, QObject* parent)
    : QObject(parent)
    , host(host)
    , context(context)
    , keeper(CopyKeeper::Create())
{
    G_OperationRegistry::Instance().AddCopies(this);
}

G_WorkingCopies::~G_WorkingCopies()
{
    G_OperationRegistry::Instance().RemoveCopies(this);
    keeper->ContextDies();
}

G_Operation* G_WorkingCopies::Make(const QByteArray& name, G_DocView* view, IG_Document* document)
{
    const G_Operation* const prototype = G_OperationRegistry::Instance().Find(name);
    G_Operation* const copy = prototype ? prototype->Clone() : nullptr;
    if (!copy) {
        FrameLog("unknown operation \"" + name + "\" G_WorkingCopies Make");
        return nullptr;
    }
    keeper->Add(copy, host, context, view, document);
    return copy;
}

void G_WorkingCopies::ForgetView(G_DocView* view)
{
    keeper->ForgetView(view);
}

void G_WorkingCopies::ForgetInterceptor(G_OperationInterceptor* interceptor)
{
    keeper->ForgetInterceptor(interceptor);
}

int G_WorkingCopies::Count() const
{
    return keeper->Count();
}
