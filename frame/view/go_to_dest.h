#pragma once

#include <frame/base/export.h>
#include <frame/document/destination.h>

class G_DocView;

// Brings a destination into view: zoom mode, zoom and place as it says. With `keepZoom` only the place. Tells the
// listeners that the zoom changed, unless it was kept. False, and nothing happens, when the page does not exist.
FRAME_EXPORT bool GoToDest(G_DocView* view, const G_Dest& dest, bool keepZoom);
