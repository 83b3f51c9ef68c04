#pragma once

#include <QCache>
#include <QImage>

#include <QString>

#include <mutex>

namespace ofd {

class Package;

// Decoded pictures of a document, the recently used ones kept. Any thread.
class ImageStore
{
public:
    ImageStore();

    // Null when the part is missing, no picture, too large, or broken.
    QImage GetImage(const Package& package, const QString& part);

private:
    std::mutex mutex;
    QCache<QString, QImage> images; // by part; weighed in KB
};

} // namespace ofd
