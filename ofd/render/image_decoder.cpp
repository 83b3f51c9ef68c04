#include "image_decoder.h"

#include "jbig2_decoder.h"
#include "jpeg_decoder.h"

#include <ofd/package/limits.h>

#include <QBuffer>
#include <QImageReader>
#include <QPixelFormat>

namespace ofd {

namespace {

bool IsWithinLimits(const QSize& size, QImage::Format format)
{
    const qint64 pixels = qint64(size.width()) * size.height();
    const int bits = format == QImage::Format_Invalid ? 32 : QImage::toPixelFormat(format).bitsPerPixel();
    return pixels <= limits::MaxImagePixels && pixels * bits / 8 <= limits::MaxImageBytes;
}

} // namespace

QImage DecodeImage(const QByteArray& bytes)
{
    if (IsJbig2(bytes))
        return DecodeJbig2(bytes);
    if (IsInkJpeg(bytes))
        return DecodeInkJpeg(bytes);
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(false);
    // The size stands in the header; a picture that does not tell it is not decoded on trust.
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty() || !IsWithinLimits(size, reader.imageFormat()))
        return QImage();
    // Vector pictures could reach for other files, and the format has no place for them.
    if (reader.format() == "svg" || reader.format() == "svgz")
        return QImage();
    return reader.read();
}

} // namespace ofd
