#include "tool_handler.h"

#include "doc_view.h"

#include <frame/base/log.h>
#include <frame/operation/registry.h>

G_ToolHandler::~G_ToolHandler()
{
    G_ToolRegistry::Instance().Unregister(this);
    if (view)
        view->ForgetTool(this);
}

IG_Document* G_ToolHandler::GDocument() const
{
    return view ? view->GDocument() : nullptr;
}

G_UIContext* G_ToolHandler::UIContext() const
{
    return view ? view->UIContext() : nullptr;
}

void G_ToolHandler::RegisterHandlerToGlobal()
{
    G_ToolRegistry::Instance().Register(this);
}

G_AnnotationHandler::~G_AnnotationHandler() = default;

void G_AnnotationHandler::SetCurrentAnnot(IG_Annot* annot)
{
    current = annot;
}

void GT_Base::OnDestroy() {}
void GT_Base::OnActivate() {}
void GT_Base::OnDeactivate() {}

int GT_Base::OnLButtonDown(unsigned /*flags*/, CCA_Point /*point*/)
{
    return 0;
}

int GT_Base::OnLButtonUp(unsigned /*flags*/, CCA_Point /*point*/)
{
    return 0;
}

int GT_Base::OnLButtonDblClk(unsigned /*flags*/, CCA_Point /*point*/)
{
    return 0;
}

int GT_Base::OnMButtonDown(unsigned /*flags*/, CCA_Point /*point*/)
{
    return 0;
}

int GT_Base::OnMButtonUp(unsigned /*flags*/, CCA_Point /*point*/)
{
    return 0;
}

int GT_Base::OnMButtonDblClk(unsigned /*flags*/, CCA_Point /*point*/)
{
    return 0;
}

int GT_Base::OnRButtonDown(unsigned /*flags*/, CCA_Point /*point*/)
{
    return 0;
}

int GT_Base::OnRButtonUp(unsigned /*flags*/, CCA_Point /*point*/)
{
    return 0;
}

int GT_Base::OnRButtonDblClk(unsigned /*flags*/, CCA_Point /*point*/)
{
    return 0;
}

int GT_Base::OnMouseMove(unsigned /*flags*/, CCA_Point /*point*/)
{
    return 0;
}

int GT_Base::OnEnter()
{
    return 0;
}

int GT_Base::OnLeave()
{
    return 0;
}

int GT_Base::OnWheel(unsigned /*flags*/, int /*delta*/, CCA_Point /*point*/)
{
    return 0;
}

int GT_Base::OnKeyDown(int /*key*/, unsigned /*flags*/)
{
    return 0;
}

int GT_Base::OnKeyUp(int /*key*/, unsigned /*flags*/)
{
    return 0;
}

int GT_Base::ShortCutActivated(int /*id*/)
{
    return 0;
}

int GT_Base::OnWinEvent(void* /*event*/)
{
    return 0;
}

int GT_Base::OnWinActiveEvent(bool /*active*/)
{
    return 0;
}

void GT_Base::SimulateBegin(IG_Annot* annot)
{
    simulatedAnnot = annot;
}

void GT_Base::SimulateEnd()
{
    simulatedAnnot = nullptr;
}

G_ToolRegistry& G_ToolRegistry::Instance()
{
    static auto* registry = new G_ToolRegistry; // never freed: tools with static life leave it at the end
    return *registry;
}

void G_ToolRegistry::Register(G_ToolHandler* prototype)
{
    const QByteArray name = prototype->Name().Bytes();
    for (auto& entry : prototypes) {
        if (entry.first != name)
            continue;
        if (entry.second != prototype)
            FrameLog("tool " + name + " was registered already and is replaced");
        entry.second = prototype;
        return;
    }
    prototypes.append({name, prototype});
}

void G_ToolRegistry::Unregister(G_ToolHandler* prototype)
{
    for (int i = 0; i < prototypes.size(); ++i) {
        if (prototypes.at(i).second != prototype)
            continue;
        G_OperationRegistry::Instance().LogDeregistration(prototypes.at(i).first);
        prototypes.removeAt(i);
        return;
    }
}

G_ToolHandler* G_ToolRegistry::Find(const QByteArray& name) const
{
    for (const auto& entry : prototypes) {
        if (entry.first == name)
            return entry.second;
    }
    return nullptr;
}

QList<QByteArray> G_ToolRegistry::Names() const
{
    QList<QByteArray> names;
    for (const auto& entry : prototypes)
        names.append(entry.first);
    return names;
}
