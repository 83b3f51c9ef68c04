#include "image_store.h"

#include "image_decoder.h"

#include <ofd/model/problem_log.h>
#include <ofd/package/package.h>

#include <QCoreApplication>

namespace ofd {

namespace {

constexpr int CachedKilobytes = 256 << 10;

} // namespace

ImageStore::ImageStore()
    : images(CachedKilobytes)
{
}

QImage ImageStore::GetImage(const Package& package, const QString& part)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (const QImage* known = images.object(part))
            return *known;
    }
    const PartData data = package.Read(part);
    const QImage image = data.error ? QImage() : DecodeImage(data.bytes);
    if (!data.error && image.isNull())
        ReportProblem(ProblemKind::BadImage, part,
                      QCoreApplication::translate("OfdDocument", "The picture cannot be decoded."));
    const int cost = int(image.sizeInBytes() / 1024) + 1;
    const std::lock_guard<std::mutex> lock(mutex);
    images.insert(part, new QImage(image), cost);
    return image;
}

} // namespace ofd
