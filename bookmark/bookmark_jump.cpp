#include "bookmark_jump.h"

#include <frame/document/destination.h>
#include <frame/document/ig_document.h>

namespace {

constexpr double SmallestZoom = 0.00999;
constexpr double LargestZoom = 64.0;

int ViewZoomMode(int destinationMode)
{
    switch (destinationMode) {
    case 1:
        return 4;
    case 2:
        return 2;
    case 3:
        return 3;
    case 4:
        return 5;
    default:
        return 0;
    }
}

} // namespace

BookmarkJump JumpTo(const G_Dest& dest, IG_Document& document)
{
    BookmarkJump jump;
    jump.pageIndex = dest.pageId == 0 ? dest.pageIndex : document.PageIndexFromId(dest.pageId);
    jump.viewZoomMode = ViewZoomMode(dest.zoomMode);
    jump.fitRect = dest.zoomMode == 4;
    jump.rect.SetRect(dest.left, dest.top, dest.right, dest.bottom);
    const double zoom = dest.zoomMode == 0 ? double(dest.zoom) : 0.0; // only the plain mode carries a zoom
    jump.hasZoom = zoom >= SmallestZoom && zoom <= LargestZoom;
    if (jump.hasZoom)
        jump.zoomFactor = static_cast<float>(zoom - LargestZoom > -0.0001 ? LargestZoom : zoom);
    return jump;
}
