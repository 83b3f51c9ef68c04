#include "image_store.h"

#include "image_decoder.h"

#include <ofd/model/problem_log.h>
#include <ofd/package/packed_size.h>

#include <QCoreApplication>

#include <new>

namespace ofd {

namespace {

constexpr int CachedKilobytes = 256 << 10;

} // namespace

ImageStore::ImageStore()
    : images(CachedKilobytes)
{
}

QImage ImageStore::GetImage(const Package& package, const QString& part, const QSizeF& paintedPx,
                            const std::function<bool()>& isCancelled)
{
    QImage known;
    if (FindImage(part, paintedPx, &known))
        return known;
    const ReadingTurns::Turn turn(turns, part);
    if (FindImage(part, paintedPx, &known)) // another thread has just decoded it
        return known;
    const ProblemScope scope(part);
    try {
        return Decode(package, part, paintedPx, isCancelled);
    } catch (const std::bad_alloc&) { // the rest of the page may need less; and there may be memory later
        ReportProblem(ProblemKind::Limit, part,
                      QCoreApplication::translate("OfdDocument", "There is not enough memory for the picture."));
        return QImage();
    }
}

QImage ImageStore::Decode(const Package& package, const QString& part, const QSizeF& paintedPx,
                          const std::function<bool()>& isCancelled)
{
    const PartData data = package.Read(part);
    const QSize shrinkable = data.error ? QSize() : ShrinkableSize(data.bytes);
    ImageOrder order;
    order.eighths = EighthsFor(shrinkable, paintedPx);
    order.packedBytes = PackedSizeOf(package, part);
    order.isCancelled = isCancelled;
    const QImage image = data.error ? QImage() : DecodeImage(data.bytes, order);
    if (image.isNull() && isCancelled && isCancelled())
        return image; // who still wants it decodes it anew
    if (!data.error && image.isNull())
        ReportProblem(ProblemKind::BadImage, part,
                      QCoreApplication::translate("OfdDocument", "The picture cannot be decoded."));
    const int cost = int(image.sizeInBytes() / 1024) + 1;
    const std::lock_guard<std::mutex> lock(mutex);
    shrinkables.insert(part, shrinkable);
    wholeSizes.insert(part, shrinkable.isValid() ? shrinkable : image.size());
    images.insert({part, order.eighths}, new QImage(image), cost);
    return image;
}

QSize ImageStore::GetWholeSize(const QString& part)
{
    const std::lock_guard<std::mutex> lock(mutex);
    return wholeSizes.value(part, QSize(0, 0));
}

qint64 ImageStore::GetKeptBytes()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return qint64(images.totalCost()) * 1024;
}

qint64 ImageStore::GetLimit()
{
    return qint64(CachedKilobytes) * 1024;
}

bool ImageStore::FindImage(const QString& part, const QSizeF& paintedPx, QImage* image)
{
    const std::lock_guard<std::mutex> lock(mutex);
    const auto shrinkable = shrinkables.constFind(part);
    if (shrinkable == shrinkables.constEnd())
        return false;                                                                // never decoded
    const QImage* known = images.object({part, EighthsFor(*shrinkable, paintedPx)}); // not owned
    if (known)
        *image = *known;
    return known;
}

} // namespace ofd
