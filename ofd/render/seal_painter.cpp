#include "seal_painter.h"

#include "image_painter.h"
#include "painting_costs.h"
#include "painting_work.h"
#include "seal_store.h"

#include <ofd/model/document_store.h>

namespace ofd {

namespace {

// What a picture takes, in the file and on the page as far as it is seen.
double PictureCost(const QImage& image, const Stamp& stamp, const PaintingWork& work)
{
    QRectF seen = stamp.boundary;
    if (!stamp.clip.isEmpty())
        seen &= stamp.clip.translated(stamp.boundary.topLeft());
    const QTransform toStandard = QTransform::fromScale(work.GetPixelsPerMm(), work.GetPixelsPerMm());
    return double(image.width()) * image.height() * DecodedPixel +
           AreaOf(toStandard.mapRect(seen) & work.GetPageRect()) * PicturePixel;
}

void PaintPicture(QPainter& painter, const QImage& image, const QRectF& boundary)
{
    const QSizeF unit = SidesOf(painter.worldTransform());
    const QSizeF sizePx(boundary.width() * unit.width(), boundary.height() * unit.height());
    painter.drawImage(boundary, ShrunkTo(image, sizePx));
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

bool PaintSeals(QPainter& painter, DocumentStore& store, int pageIndex, PaintingWork& work,
                const FirstPagePainting& paintDocument, const std::function<bool()>& isCancelled)
{
    for (const Stamp& stamp : store.GetSeals().GetStamps(store, pageIndex)) {
        if (isCancelled())
            return false;
        if (work.IsExhausted())
            return true;
        const SealFace face = store.GetSeals().GetFace(store, stamp);
        painter.save();
        if (!stamp.clip.isEmpty())
            painter.setClipRect(stamp.clip.translated(stamp.boundary.topLeft()), Qt::IntersectClip);
        bool isDone = true;
        if (face.document)
            isDone = PaintDocument(painter, *face.document, stamp.boundary, paintDocument);
        else if (!face.image.isNull() && work.Take(PictureCost(face.image, stamp, work)))
            PaintPicture(painter, face.image, stamp.boundary);
        painter.restore();
        if (!isDone)
            return false;
    }
    return true;
}

} // namespace ofd
