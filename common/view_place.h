#pragma once

#include <frame/document/destination.h>

class G_DocView;

// A rectangle (mm) on a page of the view's document, with the view's present zoom. The view must have a document.
G_Dest DestOnPage(G_DocView* view, int pageIndex, const CCA_GRect& rectMm);
// The place that the view shows now.
G_Dest DestOfView(G_DocView* view);
