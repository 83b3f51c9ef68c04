#pragma once

#include <ofd/model/reading_turns.h>

#include <QCache>
#include <QImage>

#include <QHash>
#include <QPair>
#include <QSizeF>
#include <QString>

#include <functional>
#include <mutex>

namespace ofd {

class Package;

// Decoded pictures of a document, the recently used ones kept. Any thread.
class ImageStore
{
public:
    ImageStore();

    // Null when the part is missing, no picture, too large, broken, or given up, which `isCancelled` (may be empty) is
    // asked now and then.
    // With the size in which it is painted, what decodes faster smaller comes smaller, though never below that size.
    QImage GetImage(const Package& package, const QString& part, const QSizeF& paintedPx = QSizeF(),
                    const std::function<bool()>& isCancelled = {});

    // Of a part that was decoded before: its size when it is decoded whole. Else an empty size.
    QSize GetWholeSize(const QString& part);

    qint64 GetKeptBytes();
    static qint64 GetLimit();

private:
    QImage Decode(const Package& package, const QString& part, const QSizeF& paintedPx,
                  const std::function<bool()>& isCancelled);
    bool FindImage(const QString& part, const QSizeF& paintedPx, QImage* image);
    ReadingTurns turns;
    std::mutex mutex;
    QHash<QString, QSize> shrinkables;          // of the parts that were decoded; see ShrinkableSize
    QHash<QString, QSize> wholeSizes;           // of the same parts
    QCache<QPair<QString, int>, QImage> images; // by part and eighths; weighed in KB
};

} // namespace ofd
