#include "profiled_pictures.h"

#include "picture_kinds.h"

#include <QBuffer>
#include <QImage>
#include <QtEndian>

#include <zlib.h>

namespace samples {

namespace {

constexpr int kSide = 64;
constexpr int kPiece = 200; // bytes of a profile in one segment of a JPEG file

QByteArray Encode(const QImage& image, const char* format, int quality = -1)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format, quality))
        qFatal("no %s encoder", format);
    return bytes;
}

QImage Filled(const QColor& colour)
{
    QImage image(kSide, kSide, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

QImage Gray(int level)
{
    QImage image(kSide, kSide, QImage::Format_Grayscale8);
    image.fill(uint(level));
    return image;
}

template <typename T>
QByteArray Big(T value)
{
    QByteArray bytes(int(sizeof value), '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

template <typename T>
QByteArray Little(T value)
{
    QByteArray bytes(int(sizeof value), '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray PngChunk(const QByteArray& kindAndContent)
{
    const auto checksum =
        crc32(0, reinterpret_cast<const Bytef*>(kindAndContent.constData()), uInt(kindAndContent.size()));
    return Big(quint32(kindAndContent.size() - 4)) + kindAndContent + Big(quint32(checksum));
}

// Without the size that Qt puts in front.
QByteArray Deflated(const QByteArray& plain)
{
    return qCompress(plain).mid(4);
}

// Puts the profile behind the head of a PNG file.
QByteArray IntoPng(const QByteArray& png, const QByteArray& profile)
{
    constexpr int headEnd = 8 + 4 + 4 + 13 + 4;
    if (profile.isEmpty())
        return png;
    const QByteArray chunk = PngChunk(QByteArray("iCCPmade", 9) + '\0' + Deflated(profile));
    return png.left(headEnd) + chunk + png.mid(headEnd);
}

// Puts the profile in front of all else of a JPEG file.
QByteArray IntoJpeg(const QByteArray& jpeg, const QByteArray& profile)
{
    QByteArray segments;
    const int count = (profile.size() + kPiece - 1) / kPiece;
    for (int i = 0; i < count; ++i) {
        const QByteArray piece =
            QByteArray("ICC_PROFILE", 12) + char(i + 1) + char(count) + profile.mid(i * kPiece, kPiece);
        segments += "\xff\xe2" + Big(quint16(piece.size() + 2)) + piece;
    }
    return jpeg.left(2) + segments + jpeg.mid(2);
}

} // namespace

QByteArray ProfiledPng(const QColor& colour, const QByteArray& profile)
{
    return IntoPng(Encode(Filled(colour), "PNG"), profile);
}

QByteArray ProfiledGrayPng(int level, const QByteArray& profile)
{
    return IntoPng(Encode(Gray(level), "PNG"), profile);
}

QByteArray ProfiledSixteenGraysPng(int level, const QByteArray& profile)
{
    constexpr char bits = 4, gray = 0;
    const QByteArray head = "IHDR" + Big(quint32(kSide)) + Big(quint32(kSide)) + bits + gray + QByteArray(3, '\0');
    const QByteArray row = '\0' + QByteArray(kSide / 2, char(level << bits | level));
    return IntoPng(QByteArray("\x89PNG\r\n\x1a\n") + PngChunk(head) + PngChunk("IDAT" + Deflated(row.repeated(kSide))) +
                       PngChunk("IEND"),
                   profile);
}

QByteArray ProfiledPalettePng(const QColor& colour, const QByteArray& profile)
{
    QImage image(kSide, kSide, QImage::Format_Indexed8);
    image.setColorTable({qRgb(0, 0, 0), colour.rgb()});
    image.fill(1U);
    return IntoPng(Encode(image, "PNG"), profile);
}

QByteArray ProfiledJpeg(const QColor& colour, const QByteArray& profile)
{
    return IntoJpeg(Encode(Filled(colour), "JPEG", 100), profile);
}

QByteArray ProfiledGrayJpeg(int level, const QByteArray& profile)
{
    return IntoJpeg(Encode(Gray(level), "JPEG", 100), profile);
}

// One strip of pixels, then the profile; the list of both is the file's first.
QByteArray ProfiledTiff(const QColor& colour, const QByteArray& profile)
{
    struct Entry
    {
        int tag, type, count, value;
    };
    constexpr int headSize = 8, entryCount = 10, bits = headSize + 2 + entryCount * 12 + 4, data = bits + 6;
    const QByteArray pixel = QByteArray(1, char(colour.red())) + char(colour.green()) + char(colour.blue());
    const QByteArray pixels = pixel.repeated(kSide * kSide);
    const Entry entries[entryCount] = {{256, 3, 1, kSide},
                                       {257, 3, 1, kSide},
                                       {258, 3, 3, bits},
                                       {259, 3, 1, 1},
                                       {262, 3, 1, 2},
                                       {273, 4, 1, data},
                                       {277, 3, 1, 3},
                                       {278, 3, 1, kSide},
                                       {279, 4, 1, pixels.size()},
                                       {34675, 7, profile.size(), data + pixels.size()}};
    QByteArray file = "II" + Little(quint16(42)) + Little(quint32(headSize)) + Little(quint16(entryCount));
    for (const Entry& entry : entries)
        file += Little(quint16(entry.tag)) + Little(quint16(entry.type)) + Little(quint32(entry.count)) +
                Little(quint32(entry.value));
    return file + Little(quint32(0)) + Little(quint16(8)).repeated(3) + pixels + profile;
}

QByteArray ProfiledInkJpeg(bool isMarked, const QByteArray& profile)
{
    return IntoJpeg(FirstInkJpeg(isMarked), profile);
}

} // namespace samples
