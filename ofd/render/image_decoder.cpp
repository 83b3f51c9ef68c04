#include "image_decoder.h"

#include "embedded_profile.h"
#include "jbig2_decoder.h"
#include "jpeg_decoder.h"
#include "picture_colors.h"

#include <ofd/package/limits.h>

#include <QBuffer>
#include <QImageReader>
#include <QPixelFormat>

#include <algorithm>
#include <new>

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

// That a picture may take which takes so many in the file.
qint64 MostBytesFor(qint64 packedBytes)
{
    return std::clamp(packedBytes * limits::MaxImageRatio, limits::FreeImageBytes, limits::MaxImageBytes);
}

bool IsWithinLimits(const QSize& size, QImage::Format format, qint64 packedBytes)
{
    const qint64 pixels = qint64(size.width()) * size.height();
    const int bits = format == QImage::Format_Invalid ? 32 : QImage::toPixelFormat(format).bitsPerPixel();
    return pixels <= limits::MaxImagePixels && pixels * bits / 8 <= MostBytesFor(packedBytes);
}

// Bytes that end when the picture is not wanted any more: decoders know no other way to be stopped.
class StoppableBytes : public QBuffer
{
public:
    StoppableBytes(const QByteArray& bytes, const std::function<bool()>& isCancelled)
        : isCancelled(isCancelled)
    {
        setData(bytes);
    }
    bool IsStopped() const { return isStopped; }

protected:
    qint64 readData(char* to, qint64 size) override
    {
        try {
            isStopped = isStopped || (isCancelled && isCancelled());
        } catch (const std::bad_alloc&) { // which the frames of a decoder could not bear
            isStopped = true;
        }
        return isStopped ? -1 : QBuffer::readData(to, size);
    }

private:
    const std::function<bool()>& isCancelled;
    bool isStopped = false;
};

QImage DecodeByReader(const QByteArray& bytes, const ImageOrder& order)
{
    StoppableBytes buffer(bytes, order.isCancelled);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(false);
    if (!IsKnownKind(reader.format()))
        return QImage();
    // The size stands in the header; a picture that does not tell it is not decoded on trust.
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty() || !IsWithinLimits(size, reader.imageFormat(), order.packedBytes))
        return QImage();
    const QImage image = reader.read();
    if (buffer.IsStopped())
        return QImage(); // half a picture is no picture
    if (image.isNull() && QImage(size, QImage::Format_RGB32).isNull())
        throw std::bad_alloc(); // it need not be broken
    return image;
}

} // namespace

QImage DecodeImage(const QByteArray& bytes)
{
    ImageOrder order;
    order.packedBytes = bytes.size();
    return DecodeImage(bytes, order);
}

QImage DecodeImage(const QByteArray& bytes, const ImageOrder& order)
{
    if (IsJbig2(bytes))
        return DecodeJbig2(bytes);
    if (HasTooManyScans(bytes))
        return QImage();
    const std::unique_ptr<const PictureColors> colors = PictureColors::FromProfile(EmbeddedProfile(bytes));
    const int components = JpegComponents(bytes);
    const JpegOrder jpeg{order.eighths, MostBytesFor(order.packedBytes), order.isCancelled};
    if (components == Inks)
        return DecodeInkJpeg(bytes, colors && colors->IsForInks() ? colors.get() : nullptr, jpeg);
    // Straight into the pixels of a picture, which takes four fifths of the time.
    const bool isPlainJpeg =
        components == Lights || (order.eighths < WholeInEighths && ShrinkableSize(bytes).isValid());
    QImage image = isPlainJpeg ? DecodePlainJpeg(bytes, jpeg) : DecodeByReader(bytes, order);
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
