#pragma once

#include <frame/base/geometry.h>

#include <QString>

class G_DocView;

// What the walk over the highlighted text found.
struct PageTextProbe
{
    QString text;
    CCA_GRect rect; // page mm
    int pageIndex = 0;
};

// Walks the view's highlight, a page at a time, and appends what the text pages say. Stops after the item with which
// the text outgrew `limit`, and cuts it there. A page whose text would have to be read off the main thread first adds
// the texts of its highlight. A page that does not load is logged with `logName` and adds nothing. Without a highlight:
// no text, the current page and its whole rectangle.
void ProbePageText(G_DocView* view, int limit, const char* logName, PageTextProbe& probe);
