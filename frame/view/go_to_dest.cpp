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

int PageOf(const G_Dest& dest, IG_Document* document)
{
    const int page = dest.pageId == 0 ? dest.pageIndex : document->PageIndexFromId(dest.pageId);
    return page < document->GetPageCount() ? qMax(page, -1) : -1;
}

const G_Dest* PlaceOf(const G_ActionGoto& jump, IG_Document* document)
{
    if (jump.bookmarkName.IsEmpty())
        return jump.dest;
    const G_TreeNode* root = document->GetBookmarkRoot();
    for (int row = 0; root && row < root->SubNodeCount(); ++row) {
        const auto* bookmark = dynamic_cast<const G_Bookmark*>(root->SubNode(row)->data);
        if (bookmark && bookmark->name == jump.bookmarkName)
            return bookmark->dest;
    }
    return nullptr;
}

bool GoToDest(G_DocView* view, const G_Dest& dest, bool keepZoom)
{
    const int page = PageOf(dest, view->GDocument());
    if (page < 0)
        return false;
    const G_Preferences::ZoomMode mode = ViewZoomMode(dest.zoomMode);
    if (!keepZoom) {
        view->BeginJump();
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
