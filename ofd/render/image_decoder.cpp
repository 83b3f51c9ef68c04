#include "image_decoder.h"

#include "embedded_profile.h"
#include "jbig2_decoder.h"
#include "jpeg_decoder.h"
#include "picture_colors.h"

#include <ofd/package/limits.h>

#include <QBuffer>
#include <QImageReader>
#include <QPixelFormat>

namespace ofd {

namespace {

constexpr int WholeInEighths = 8;
constexpr int Lights = 3; // channels of a JPEG file
constexpr int Inks = 4;

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

bool IsWithinLimits(const QSize& size, QImage::Format format, qint64 packedBytes)
{
    const qint64 pixels = qint64(size.width()) * size.height();
    const int bits = format == QImage::Format_Invalid ? 32 : QImage::toPixelFormat(format).bitsPerPixel();
    const qint64 bytes = pixels * bits / 8;
    return pixels <= limits::MaxImagePixels && bytes <= limits::MaxImageBytes &&
           (bytes <= limits::FreeImageBytes || bytes / limits::MaxImageRatio <= packedBytes);
}

QImage DecodeByReader(const QByteArray& bytes, qint64 packedBytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(false);
    if (!IsKnownKind(reader.format()))
        return QImage();
    // The size stands in the header; a picture that does not tell it is not decoded on trust.
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty() || !IsWithinLimits(size, reader.imageFormat(), packedBytes))
        return QImage();
    return reader.read();
}

} // namespace

QImage DecodeImage(const QByteArray& bytes)
{
    return DecodeImage(bytes, WholeInEighths, bytes.size());
}

QImage DecodeImage(const QByteArray& bytes, int eighths, qint64 packedBytes)
{
    if (IsJbig2(bytes))
        return DecodeJbig2(bytes);
    if (HasTooManyScans(bytes))
        return QImage();
    const std::unique_ptr<const PictureColors> colors = PictureColors::FromProfile(EmbeddedProfile(bytes));
    const int components = JpegComponents(bytes);
    if (components == Inks)
        return DecodeInkJpeg(bytes, colors && colors->IsForInks() ? colors.get() : nullptr);
    // Straight into the pixels of a picture, which takes four fifths of the time.
    const bool isPlainJpeg = components == Lights || (eighths < WholeInEighths && ShrinkableSize(bytes).isValid());
    QImage image = isPlainJpeg ? DecodePlainJpeg(bytes, eighths) : DecodeByReader(bytes, packedBytes);
    if (colors && !image.isNull())
        colors->Convert(image);
    if (image.format() == QImage::Format_ARGB32) // as it is painted, which would be worked out again each time
        image = std::move(image).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    return image;
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
