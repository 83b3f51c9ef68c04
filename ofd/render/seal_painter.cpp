#include "seal_painter.h"

#include "seal_store.h"

#include <ofd/model/document_store.h>

#include <cmath>

namespace ofd {

namespace {

// A picture with many more pixels than it is painted with is averaged down first.
QImage Fitted(const QImage& image, const QSizeF& sizeMm, const QTransform& toPixels)
{
    const QSizeF size(std::ceil(sizeMm.width() * std::hypot(toPixels.m11(), toPixels.m12())),
                      std::ceil(sizeMm.height() * std::hypot(toPixels.m21(), toPixels.m22())));
    if (size.width() < 1 || size.height() < 1 || image.width() <= 2 * size.width() ||
        image.height() <= 2 * size.height())
        return image;
    return image.scaled(size.toSize(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

bool PaintDocument(QPainter& painter, DocumentStore& document, const QRectF& boundary, const FirstPagePainting& paint)
{
    const QSizeF size = document.GetPageSize(0);
    if (size.isEmpty())
        return true;
    painter.setClipRect(boundary, Qt::IntersectClip);
    painter.translate(boundary.topLeft());
    painter.scale(boundary.width() / size.width(), boundary.height() / size.height());
    return paint(painter, document);
}

} // namespace

bool PaintSeals(QPainter& painter, DocumentStore& store, int pageIndex, const FirstPagePainting& paintDocument)
{
    for (const Stamp& stamp : store.GetSeals().GetStamps(store, pageIndex)) {
        const SealFace face = store.GetSeals().GetFace(store, stamp);
        painter.save();
        if (!stamp.clip.isEmpty())
            painter.setClipRect(stamp.clip.translated(stamp.boundary.topLeft()), Qt::IntersectClip);
        bool isDone = true;
        if (face.document)
            isDone = PaintDocument(painter, *face.document, stamp.boundary, paintDocument);
        else if (!face.image.isNull())
            painter.drawImage(stamp.boundary, Fitted(face.image, stamp.boundary.size(), painter.worldTransform()));
        painter.restore();
        if (!isDone)
            return false;
    }
    return true;
}

} // namespace ofd
