#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QSizeF>

namespace ofd {

// Decodes PNG, JPEG, BMP, GIF, TIFF, WebP and JBIG2. The kind is told by the bytes, never by a name. Colours
// follow the profile that the file carries, which is that of its own numbers; without one they are those of the screen.
// Null when the picture is broken, unknown or larger than the limit. Any thread.
QImage DecodeImage(const QByteArray& bytes);
// The same in so many eighths of its size, 1 to 8, for a picture that can be decoded smaller. Of very large pictures
// the file must have a little too: `packedBytes` is what they take there.
QImage DecodeImage(const QByteArray& bytes, int eighths, qint64 packedBytes);
// The size of a picture that takes less time to decode smaller: most JPEG pictures. Invalid for all others.
QSize ShrinkableSize(const QByteArray& bytes);
// A half, a quarter or an eighth where that is enough for the size in which it is painted, else all; in eighths.
// Nothing else decides, so that all parts of a page and all who paint it show the same.
int EighthsFor(const QSize& shrinkable, const QSizeF& paintedPx);

} // namespace ofd
