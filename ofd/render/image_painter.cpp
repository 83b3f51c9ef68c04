#include "image_painter.h"

#include "image_store.h"
#include "painting_costs.h"
#include "painting_tools.h"
#include "painting_work.h"

#include <ofd/model/problem_log.h>
#include <ofd/model/resources.h>
#include <ofd/package/limits.h>

#include <QCoreApplication>
#include <cmath>

namespace ofd {

namespace {

constexpr qint64 BandPixels = 8'000'000;
const QRectF UnitSquare(0, 0, 1, 1);

// From the unit square to the container: the object's matrix, or its boundary when it has none.
QTransform PlaceOf(const ImageObject& object)
{
    if (object.hasMatrix)
        return object.toContainer;
    return QTransform::fromScale(object.boundary.width(), object.boundary.height()) * object.toContainer;
}

// Scales down band by band, so that a very large picture of few bits a pixel is never unpacked as a whole.
QImage ShrunkInBands(const QImage& image, const QSize& target)
{
    QImage result(target, image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    result.fill(0);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    const double rowsPerRow = double(image.height()) / target.height();
    const int step = std::max(1, int(double(BandPixels) / image.width() / rowsPerRow));
    for (int top = 0; top < target.height(); top += step) {
        const int bottom = std::min(top + step, target.height());
        const int from = int(top * rowsPerRow);
        const int to = std::clamp(int(bottom * rowsPerRow), from + 1, image.height());
        const QImage band = image.copy(0, from, image.width(), to - from);
        painter.drawImage(0, top,
                          band.scaled(target.width(), bottom - top, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    return result;
}

// How much of a picture shows through a mask: its brightness, and nothing where it is transparent.
QImage CoverageOf(const QImage& mask)
{
    QImage opaque = mask;
    if (mask.hasAlphaChannel()) {
        opaque = QImage(mask.size(), QImage::Format_RGB32);
        opaque.fill(Qt::black);
        QPainter(&opaque).drawImage(0, 0, mask);
    }
    QImage coverage = opaque.convertToFormat(QImage::Format_Grayscale8);
    coverage.reinterpretAsFormat(QImage::Format_Alpha8);
    return coverage;
}

// The picture with what the mask hides taken out. The finer of the two decides how fine the result is.
QImage SeenThrough(const QImage& image, const QImage& mask)
{
    QSize size = image.size().expandedTo(mask.size());
    const double excess = std::sqrt(double(size.width()) * size.height() / double(limits::MaxMaskedPixels));
    if (excess > 1) // an enormous picture, looked at from very near: coarser, but not out of memory
        size = QSize(std::max(1, int(size.width() / excess)), std::max(1, int(size.height() / excess)));
    const auto fitted = [&size](const QImage& picture) {
        return picture.size() == size ? picture : picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    QImage result = fitted(image).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, fitted(CoverageOf(mask)));
    return result;
}

} // namespace

QSizeF SidesOf(const QTransform& transform)
{
    return QSizeF(std::hypot(transform.m11(), transform.m12()), std::hypot(transform.m21(), transform.m22()));
}

QImage ShrunkTo(const QImage& image, const QSizeF& sizePx)
{
    const bool isMuchLarger = image.width() > 2 * sizePx.width() || image.height() > 2 * sizePx.height();
    if (!isMuchLarger || sizePx.width() < 1 || sizePx.height() < 1)
        return image;
    const QSize target(int(std::ceil(std::min(double(image.width()), sizePx.width()))),
                       int(std::ceil(std::min(double(image.height()), sizePx.height()))));
    if (qint64(image.width()) * image.height() > BandPixels)
        return ShrunkInBands(image, target);
    return image.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QRectF ImagePainter::BoxOf(const ImageObject& object)
{
    return PlaceOf(object).mapRect(UnitSquare);
}

PictureFrame ImagePainter::FrameOf(const ImageObject& object)
{
    PictureFrame frame;
    const QTransform place = PlaceOf(object);
    const QSizeF sidesMm = SidesOf(place);
    if (sidesMm.isEmpty())
        return frame;
    const double rx = std::min(object.border->cornerWidthMm, sidesMm.width() / 2);
    const double ry = std::min(object.border->cornerHeightMm, sidesMm.height() / 2);
    const QRectF rect(QPointF(), sidesMm);
    if (rx > 0 && ry > 0)
        frame.outline.addRoundedRect(rect, rx, ry);
    else
        frame.outline.addRect(rect);
    frame.toContainer = QTransform::fromScale(1 / sidesMm.width(), 1 / sidesMm.height()) * place;
    return frame;
}

bool ImagePainter::Paint(const ImageObject& object, const Resources& resources, double alpha)
{
    const QImage image = PictureOf(object, resources);
    if (image.isNull() || !IsUsable(PlaceOf(object) * painter.worldTransform()))
        return false;
    const PainterScope scope(painter);
    PaintPicture(image, object, alpha);
    return true;
}

// Null when there is none or when it cannot be read; nothing when it is too much work.
std::optional<QImage> ImagePainter::ImageOf(int mediaId, const Resources& resources, const QSizeF& sidesPx) const
{
    const MediaResource* media = resources.FindMedia(mediaId);
    if (mediaId && !media)
        ReportProblem(ProblemKind::DanglingReference,
                      QCoreApplication::translate("OfdDocument", "There is no picture %1.").arg(quint32(mediaId)));
    if (!media || media->part.isEmpty())
        return QImage();
    if (work.IsExhausted())
        return std::nullopt;
    const QImage image = images.GetImage(package, media->part, sidesPx, isCancelled);
    return TakePicture(media->part) ? std::optional(image) : std::nullopt;
}

// Pictures count by the size that they have in the file, decoded or already there.
bool ImagePainter::TakePicture(const QString& part) const
{
    const QSize size = images.GetWholeSize(part);
    const double pixels = double(size.width()) * size.height();
    return work.Take(pixels * (work.IsDecodedFor(part, pixels) ? ShrunkPixel : DecodedPixel));
}

QImage ImagePainter::PictureOf(const ImageObject& object, const Resources& resources) const
{
    if (!object.mediaId)
        ReportProblem(ProblemKind::DanglingReference,
                      QCoreApplication::translate("OfdDocument", "The object names no picture."));
    const QSizeF sidesPx = SidesOf(PlaceOf(object) * painter.worldTransform());
    QImage image = ImageOf(object.mediaId, resources, sidesPx).value_or(QImage());
    if (image.isNull())
        image = ImageOf(object.substitutionId, resources, sidesPx).value_or(QImage());
    if (image.isNull())
        return image;
    image = ShrunkTo(image, sidesPx);
    const std::optional<QImage> mask = ImageOf(object.maskId, resources, sidesPx);
    if (!mask) // what it hides must not show because hiding it is too much work
        return QImage();
    if (mask->isNull()) // one that cannot be read hides nothing
        return image;
    const QSize size = image.size().expandedTo(mask->size());
    return work.Take(std::min(double(size.width()) * size.height(), double(limits::MaxMaskedPixels)) * MaskedPixel)
               ? SeenThrough(image, ShrunkTo(*mask, sidesPx))
               : QImage();
}

void ImagePainter::PaintPicture(const QImage& image, const ImageObject& object, double alpha)
{
    const QTransform place = PlaceOf(object);
    if (object.border && object.border->HasRoundCorners()) { // nothing sticks out at them
        const PictureFrame frame = FrameOf(object);
        painter.setClipPath(frame.toContainer.map(frame.outline), Qt::IntersectClip);
    }
    painter.setWorldTransform(place, true);
    painter.setOpacity(alpha);
    painter.drawImage(UnitSquare, image);
}

} // namespace ofd
