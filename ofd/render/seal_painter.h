#pragma once

#include <QPainter>

#include <functional>

namespace ofd {

class DocumentStore;
class PaintingWork;

// Paints the first page of a document onto the painter, which maps that page's millimetres; false when cancelled.
using FirstPagePainting = std::function<bool(QPainter& painter, DocumentStore& document)>;

// Paints the seals of a page's stamps, each stretched to its boundary and cut to its clip, with a painter that maps the
// page's millimetres. `paintDocument` is called for seals that hold a document. `isCancelled` is asked between seals;
// false when it was. Pictures that are too much for `work` are left out.
bool PaintSeals(QPainter& painter, DocumentStore& store, int pageIndex, PaintingWork& work,
                const FirstPagePainting& paintDocument, const std::function<bool()>& isCancelled);

} // namespace ofd
