#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QSizeF>

#include <functional>

namespace ofd {

// How a picture is to be decoded. Outlives the decoding.
struct ImageOrder
{
    int eighths = 8;                   // of its size, 1 to 8, for a picture that can be decoded smaller
    qint64 packedBytes = 0;            // that it takes in the file: very large pictures must take a little there too
    std::function<bool()> isCancelled; // asked now and then; may be empty. Bilevel pictures do not ask.
};

// Decodes PNG, JPEG, BMP, GIF, TIFF, WebP and JBIG2. The kind is told by the bytes, never by a name. Colours
// follow the profile that the file carries, which is that of its own numbers; without one they are those of the screen.
// Null when the picture is broken, unknown, larger than the limit or given up. Throws std::bad_alloc. Any thread.
QImage DecodeImage(const QByteArray& bytes, const ImageOrder& order);
// The whole picture, of a file that is these bytes.
QImage DecodeImage(const QByteArray& bytes);
// The size of a picture that takes less time to decode smaller: most JPEG pictures. Invalid for all others.
QSize ShrinkableSize(const QByteArray& bytes);
// A half, a quarter or an eighth where that is enough for the size in which it is painted, else all; in eighths.
// Nothing else decides, so that all parts of a page and all who paint it show the same.
int EighthsFor(const QSize& shrinkable, const QSizeF& paintedPx);

} // namespace ofd
