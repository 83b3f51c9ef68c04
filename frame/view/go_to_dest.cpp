#include "go_to_dest.h"

#include "doc_view.h"
#include "ui_context.h"

#include <frame/document/ig_document.h>
#include <frame/operation/event.h>

namespace {

constexpr float kLeastZoom = 0.00999F;
constexpr float kMostZoom = 64.0F;
constexpr float kMostZoomTolerance = 0.0001F;

G_Preferences::ZoomMode ViewZoomMode(int destinationMode)
{
    switch (destinationMode) {
    case 1:
        return G_Preferences::FitPage;
    case 2:
        return G_Preferences::FitWidth;
    case 3:
        return G_Preferences::FitHeight;
    case 4:
        return G_Preferences::FitRect;
    default:
        return G_Preferences::Custom;
    }
}

} // namespace

bool GoToDest(G_DocView* view, const G_Dest& dest, bool keepZoom)
{
    IG_Document* document = view->GDocument();
    const int page = dest.pageId == 0 ? dest.pageIndex : document->PageIndexFromId(dest.pageId);
    if (page < 0 || page >= document->GetPageCount())
        return false;
    const G_Preferences::ZoomMode mode = ViewZoomMode(dest.zoomMode);
    if (!keepZoom) {
        view->SetZoomMode(mode);
        if (dest.zoomMode == 0 && dest.zoom >= kLeastZoom && dest.zoom <= kMostZoom) {
            const bool isAtMost = dest.zoom - kMostZoom > -kMostZoomTolerance;
            view->SetZoom((isAtMost ? kMostZoom : dest.zoom) * 100, false);
        }
    }
    view->GoToPage(view, page, dest.Rect(), mode == G_Preferences::FitRect && !keepZoom);
    if (!keepZoom && view->UIContext())
        view->UIContext()->FireEvent(new G_DocViewEvent(view, EventType::ViewZoomChanged));
    return true;
}
