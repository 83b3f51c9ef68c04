#pragma once

#include <frame/base/export.h>
#include <frame/document/destination.h>

class G_DocView;
class IG_Document;

// Brings a destination into view: zoom mode, zoom and place as it says. With `keepZoom` only the place. Tells the
// listeners that the zoom changed, unless it was kept. False, and nothing happens, when the page does not exist.
FRAME_EXPORT bool GoToDest(G_DocView* view, const G_Dest& dest, bool keepZoom);

// The index of the page that a destination leads to; -1 when it does not exist.
FRAME_EXPORT int PageOf(const G_Dest& dest, IG_Document* document);

// Where a jump leads now: a bookmark's place is looked up each time, since it may have been moved, renamed or deleted
// since the document was read. Null when the bookmark does not exist. Good until the bookmarks change.
FRAME_EXPORT const G_Dest* PlaceOf(const G_ActionGoto& jump, IG_Document* document);
