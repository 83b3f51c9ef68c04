#pragma once

#include <QByteArray>
#include <QImage>

namespace ofd {

// Decodes PNG, JPEG, BMP, GIF, TIFF, JBIG2 and whatever else Qt has a plugin for. The kind is told by the bytes, never
// by a name. Null when the picture is broken, unknown or larger than the limit. Any thread.
QImage DecodeImage(const QByteArray& bytes);

} // namespace ofd
