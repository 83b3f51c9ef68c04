#pragma once

#include <ofd/model/reading_turns.h>

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

    qint64 GetKeptBytes();
    static qint64 GetLimit();

private:
    bool FindImage(const QString& part, QImage* image);
    ReadingTurns turns;
    std::mutex mutex;
    QCache<QString, QImage> images; // by part; weighed in KB
};

} // namespace ofd
