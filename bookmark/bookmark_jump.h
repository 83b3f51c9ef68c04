#pragma once

#include <frame/base/geometry.h>

class G_Dest;
class IG_Document;

// What a click on a bookmark asks of the view.
struct BookmarkJump
{
    int pageIndex = 0;
    int viewZoomMode = 0; // a G_Preferences::ZoomMode
    bool fitRect = false; // the rectangle is to fill the view
    bool hasZoom = false; // the zoom is to be set
    float zoomFactor = 0; // 1 = 100 percent
    CCA_GRect rect;       // mm on the page
};

BookmarkJump JumpTo(const G_Dest& dest, IG_Document& document);
