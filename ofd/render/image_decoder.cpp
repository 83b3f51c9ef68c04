#include "image_decoder.h"

#include "jbig2_decoder.h"
#include "jpeg_decoder.h"

#include <ofd/package/limits.h>

#include <QBuffer>
#include <QImageReader>
#include <QPixelFormat>

namespace ofd {

namespace {

constexpr int WholeInEighths = 8;

// What documents carry. Vector pictures could reach for other files, and each further decoder that happens to be
// installed would be one more that hostile bytes could be meant for.
bool IsKnownKind(const QByteArray& format)
{
    for (const char* known : {"png", "jpeg", "jpg", "bmp", "gif", "tiff", "tif", "webp"}) {
        if (format == known)
            return true;
    }
    return false;
}

bool IsWithinLimits(const QSize& size, QImage::Format format)
{
    const qint64 pixels = qint64(size.width()) * size.height();
    const int bits = format == QImage::Format_Invalid ? 32 : QImage::toPixelFormat(format).bitsPerPixel();
    return pixels <= limits::MaxImagePixels && pixels * bits / 8 <= limits::MaxImageBytes;
}

} // namespace

QImage DecodeImage(const QByteArray& bytes)
{
    return DecodeImage(bytes, WholeInEighths);
}

QImage DecodeImage(const QByteArray& bytes, int eighths)
{
    if (IsJbig2(bytes))
        return DecodeJbig2(bytes);
    if (HasTooManyScans(bytes))
        return QImage();
    if (IsInkJpeg(bytes))
        return DecodeInkJpeg(bytes);
    if (eighths < WholeInEighths && ShrinkableSize(bytes).isValid())
        return DecodeSmallJpeg(bytes, eighths);
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(false);
    if (!IsKnownKind(reader.format()))
        return QImage();
    // The size stands in the header; a picture that does not tell it is not decoded on trust.
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty() || !IsWithinLimits(size, reader.imageFormat()))
        return QImage();
    return reader.read();
}

QSize ShrinkableSize(const QByteArray& bytes)
{
    if (!bytes.startsWith("\xff\xd8") || IsInkJpeg(bytes))
        return QSize();
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, "jpeg");
    return reader.size();
}

int EighthsFor(const QSize& shrinkable, const QSizeF& paintedPx)
{
    if (!shrinkable.isValid() || !(paintedPx.width() >= 1 && paintedPx.height() >= 1))
        return WholeInEighths;
    int eighths = WholeInEighths;
    const auto isEnough = [&](int wanted) {
        return shrinkable.width() * (wanted / double(WholeInEighths)) >= paintedPx.width() &&
               shrinkable.height() * (wanted / double(WholeInEighths)) >= paintedPx.height();
    };
    while (eighths > 1 && isEnough(eighths / 2))
        eighths /= 2;
    return eighths;
}

} // namespace ofd
