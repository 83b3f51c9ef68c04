#pragma once

#include <QByteArray>
#include <QImage>

namespace ofd {

// Whether a JPEG file goes over its picture more often than a picture needs: a few bytes each, and all of it each time.
bool HasTooManyScans(const QByteArray& bytes);

// Whether the bytes are a JPEG file whose colours are four inks.
bool IsInkJpeg(const QByteArray& bytes);
// Decodes one, in the colours of the screen; null when it is broken or too large. Files that carry the mark of the
// programs that store inks the other way round (0 = full) are told by it. Any thread.
QImage DecodeInkJpeg(const QByteArray& bytes);

// Decodes a picture of one or three channels in so many eighths of its size; null on failure. What was read before some
// damage is shown.
QImage DecodeSmallJpeg(const QByteArray& bytes, int eighths);

} // namespace ofd
