#include "view_place.h"

#include "public_method.h"

#include <frame/document/ig_document.h>
#include <frame/view/doc_view.h>

G_Dest DestOnPage(G_DocView* view, int pageIndex, const CCA_GRect& rectMm)
{
    G_Dest dest;
    dest.pageIndex = pageIndex;
    dest.pageId = view->GDocument()->PageIdFromIndex(pageIndex);
    dest.left = rectMm.left;
    dest.top = rectMm.top;
    dest.right = rectMm.right;
    dest.bottom = rectMm.bottom;
    dest.zoom = view->GetZoom() / 100;
    dest.zoomMode = PublicMethod::DestZoomMode(view->ZoomMode());
    return dest;
}

G_Dest DestOfView(G_DocView* view)
{
    return DestOnPage(view, view->CurrentPageIndex(), view->CurrentPageVisibleRectMM());
}
