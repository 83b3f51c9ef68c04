#include "outline_page.h"

#include "outline_ids.h"
#include "outline_pane.h"

#include <frame/document/ig_document.h>
#include <frame/operation/event_manager.h>
#include <frame/view/ui_context.h>

NaviPageOutline::NaviPageOutline()
    : Core::G_NavigationPage(nullptr)
{
    setObjectName(QLatin1String(OutlineId::PageName));
    title = tr("Catalog");
    tooltip = tr("View the document directory (Alt+Shift+1)");
    iconPath = QStringLiteral(":/core/res/icons/navi/vn_outline");
    id = Core::Id(OutlineId::Pane);
    position = 10;
}

QWidget* NaviPageOutline::CreateWidget(IG_Document* document)
{
    auto* pane = new NaviOutlineWidget;
    pane->context = context;
    pane->Init(document);
    G_EventMgr* events = context->EventMgr();
    connect(events, SIGNAL(PageChange(G_DocView*)), pane, SLOT(PageChangeSlot(G_DocView*)));
    connect(events, SIGNAL(ActivedScreenChanged(G_DocView*)), pane, SLOT(PageChangeSlot(G_DocView*)));
    // Direct: the event dies when its delivery ends. Unique: a second listener would add a second entry.
    connect(events, SIGNAL(EventFired(G_Event*)), pane, SLOT(UpdateOutline(G_Event*)),
            static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::UniqueConnection));
    connect(events, &CRF_EventMgr::PageStructChanged, pane, &NaviOutlineWidget::PageStructChanged);
    return pane;
}
