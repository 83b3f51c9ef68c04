#pragma once

#include <QByteArray>
#include <QImage>

namespace ofd {

// Whether the bytes begin as a JBIG2 file.
bool IsJbig2(const QByteArray& bytes);
// The first page of a JBIG2 file, black on white; null when it is broken or would take too much memory. Any thread.
QImage DecodeJbig2(const QByteArray& bytes);

} // namespace ofd
