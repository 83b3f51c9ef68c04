#pragma once

#include <QByteArray>
#include <QImage>

namespace ofd {

class PictureColors;

// Whether a JPEG file goes over its picture more often than a picture needs: a few bytes each, and all of it each time.
bool HasTooManyScans(const QByteArray& bytes);

// The channels that a JPEG file tells: 1 gray, 3 lights, 4 inks; 0 for other files and those that do not tell.
int JpegComponents(const QByteArray& bytes);
// Whether the bytes are a JPEG file whose colours are four inks.
bool IsInkJpeg(const QByteArray& bytes);
// Decodes one, in the colours of the screen; null when it is broken or too large. Files that carry the mark of the
// programs that store inks the other way round (0 = full) are told by it. `colors` are those of the file's profile for
// inks; null when it has none. Any thread.
QImage DecodeInkJpeg(const QByteArray& bytes, const PictureColors* colors = nullptr);

// Decodes a picture of one or three channels in so many eighths of its size; null on failure. What was read before some
// damage is shown.
QImage DecodePlainJpeg(const QByteArray& bytes, int eighths);

} // namespace ofd
