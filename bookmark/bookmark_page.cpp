#include "bookmark_page.h"

#include "bookmark_pane.h"

#include <frame/document/ig_document.h>
#include <frame/operation/event_manager.h>
#include <frame/view/ui_context.h>

NaviBookmark::NaviBookmark()
    : Core::G_NavigationPage(nullptr)
{
    setObjectName(QStringLiteral("Bookmark"));
    title = tr("Bookmark");
    tooltip = tr("View document bookmarks (Alt+Shift+4)");
    iconPath = QStringLiteral(":/core/res/icons/navi/vn_bookmark");
    id = Core::Id("ui.navis.bookmark");
    position = 40;
}

QWidget* NaviBookmark::CreateWidget(IG_Document* document)
{
    auto* pane = new NaviBookmarkWidget;
    pane->context = context;
    pane->Init(document);
    G_EventMgr* events = context->EventMgr();
    connect(events, SIGNAL(PageChange(G_DocView*)), pane, SLOT(pageChangeSlot(G_DocView*)));
    connect(events, SIGNAL(ActivedScreenChanged(G_DocView*)), pane, SLOT(pageChangeSlot(G_DocView*)));
    // Direct: the event dies when its delivery ends. Unique: a second row for one added bookmark would be a second
    // undo step.
    connect(events, SIGNAL(EventFired(G_Event*)), pane, SLOT(UpdateBookmarkAll(G_Event*)),
            static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::UniqueConnection));
    connect(events, &CRF_EventMgr::PageStructChanged, pane, &NaviBookmarkWidget::PageStructChanged);
    return pane;
}
