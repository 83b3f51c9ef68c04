#include "navigation_open_operation.h"

#include <common/param_keys.h>
#include <frame/json/ovjson.h>
#include <frame/view/ui_context.h>

bool OpenNavigationPane(G_UIContext* context, const char* paneId)
{
    G_Operation* navigation = context ? context->CreateOperationByName("e_navigation", QString()) : nullptr;
    if (!navigation)
        return false;
    const OVSharedPtr<OVJson> params = OVJsonFactory::ParseJsonString("{}", -1, nullptr);
    params->SetString("navi_open_status", QStringLiteral("1"));
    params->SetString("navi_btn_checked", QString::fromLatin1(paneId));
    navigation->Params->Add(ParamKey::NaviParams, QString::fromUtf8(OVJsonFactory::BuildJsonString(params, nullptr)));
    navigation->PerformAction();
    navigation->DeleteLater();
    return true;
}

bool NavigationOpenOperation::DoAction()
{
    return DocView() && OpenNavigationPane(UIContext(), PaneId());
}
