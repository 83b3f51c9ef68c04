#include "icore.h"

#include <frame/view/ui_context.h>

namespace Core {

namespace {
QPointer<G_UIContext>& Current()
{
    static QPointer<G_UIContext> current;
    return current;
}
} // namespace

QWidget* ICore::dialogParent()
{
    return Current() ? Current()->DialogParent() : nullptr;
}

G_UIContext* ICore::context()
{
    return Current();
}

void ICore::SetContext(G_UIContext* context)
{
    Current() = context;
}

} // namespace Core
