#pragma once

#include <QByteArray>
#include <QImage>

#include <functional>

namespace ofd {

class PictureColors;

// How a JPEG file is to be decoded. Outlives the decoding.
struct JpegOrder
{
    int eighths = 8;                   // of its size; inks are decoded whole
    qint64 mostBytes = 0;              // that the picture may take
    std::function<bool()> isCancelled; // asked for each row; may be empty
};

// Whether a JPEG file goes over its picture more often than a picture needs: a few bytes each, and all of it each time.
bool HasTooManyScans(const QByteArray& bytes);

// The channels that a JPEG file tells: 1 gray, 3 lights, 4 inks; 0 for other files and those that do not tell.
int JpegComponents(const QByteArray& bytes);
// Whether the bytes are a JPEG file whose colours are four inks.
bool IsInkJpeg(const QByteArray& bytes);
// Decodes one, in the colours of the screen; null when it is broken, too large or given up. Files that carry the mark
// of the programs that store inks the other way round (0 = full) are told by it. `colors` are those of the file's
// profile for inks; null when it has none. What was read before some damage is shown. Throws std::bad_alloc. Any
// thread.
QImage DecodeInkJpeg(const QByteArray& bytes, const PictureColors* colors, const JpegOrder& order);

// The same for a picture of one or three channels.
QImage DecodePlainJpeg(const QByteArray& bytes, const JpegOrder& order);

} // namespace ofd
