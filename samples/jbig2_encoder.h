#pragma once

#include <QByteArray>
#include <QImage>

namespace samples {

// A JBIG2 file (with file header, sequential) of one page that holds the bitmap as one generic region. Pixels of colour
// index 1 are black. The samples need such files, and the usual encoders are not found on every machine.
QByteArray EncodeJbig2(const QImage& bitmap);

} // namespace samples
