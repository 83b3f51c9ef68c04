#pragma once

#include <QPainter>

#include <functional>

namespace ofd {

class DocumentStore;

// Paints the first page of a document onto the painter, which maps that page's millimetres; false when cancelled.
using FirstPagePainting = std::function<bool(QPainter& painter, DocumentStore& document)>;

// Paints the seals of a page's stamps, each stretched to its boundary and cut to its clip, with a painter that maps the
// page's millimetres. `paintDocument` is called for seals that hold a document. `isCancelled` is asked between seals;
// false when it was.
bool PaintSeals(QPainter& painter, DocumentStore& store, int pageIndex, const FirstPagePainting& paintDocument,
                const std::function<bool()>& isCancelled);

} // namespace ofd
