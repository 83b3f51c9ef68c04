#include "bookmark_jump.h"

#include <common/zoom_modes.h>
#include <frame/document/destination.h>
#include <frame/document/ig_document.h>

namespace {

constexpr double SmallestZoom = 0.00999;
constexpr double LargestZoom = 64.0;

} // namespace

BookmarkJump JumpTo(const G_Dest& dest, IG_Document& document)
{
    BookmarkJump jump;
    jump.pageIndex = dest.pageId == 0 ? dest.pageIndex : document.PageIndexFromId(dest.pageId);
    const ViewZoom viewZoom = ViewZoomOf(dest.zoomMode);
    jump.viewZoomMode = viewZoom.mode;
    jump.fitRect = viewZoom.fitsRectangle;
    jump.rect.SetRect(dest.left, dest.top, dest.right, dest.bottom);
    const double zoom = dest.zoomMode == 0 ? double(dest.zoom) : 0.0; // only the plain mode carries a zoom
    jump.hasZoom = zoom >= SmallestZoom && zoom <= LargestZoom;
    if (jump.hasZoom)
        jump.zoomFactor = static_cast<float>(zoom - LargestZoom > -0.0001 ? LargestZoom : zoom);
    return jump;
}
