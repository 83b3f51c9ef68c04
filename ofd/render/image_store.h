#pragma once

#include <QCache>
#include <QImage>
#include <QMutex>
#include <QString>

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
    QMutex mutex;
    QCache<QString, QImage> images; // by part; weighed in KB
};

} // namespace ofd
