#include "picture_kinds.h"

#include "pictures.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>

#include <jpeglib.h>

namespace samples {

namespace {

QImage Quadrants()
{
    return QImage::fromData(QuadrantsPng()).convertToFormat(QImage::Format_RGB32);
}

QByteArray Encode(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format))
        qFatal("no %s encoder", format);
    return bytes;
}

// A little-endian number.
QByteArray Little(int value, int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes.append(char(value >> (8 * i)));
    return bytes;
}

// Codes of three bits, the lowest first, in blocks of at most 255 bytes.
class GifCodes
{
public:
    void Add(int code)
    {
        bits |= code << count;
        for (count += 3; count >= 8; count -= 8, bits >>= 8)
            bytes.append(char(bits & 0xFF));
    }
    QByteArray Finish()
    {
        bytes.append(char(bits & 0xFF));
        QByteArray blocks;
        for (int at = 0; at < bytes.size(); at += 255) {
            const QByteArray block = bytes.mid(at, 255);
            blocks += char(block.size()) + block;
        }
        return blocks + '\0';
    }

private:
    QByteArray bytes;
    int bits = 0;
    int count = 0;
};

QByteArray TiffEntry(int tag, int type, int count, int value)
{
    return Little(tag, 2) + Little(type, 2) + Little(count, 4) + Little(value, 4);
}

// Not compressed; `meaning` says what the channels of eight bits are.
QByteArray Tiff(const QSize& size, int channels, int meaning, const QByteArray& pixels)
{
    constexpr int entries = 9, start = 8, bits = start + 2 + entries * 12 + 4;
    const int data = bits + 2 * channels;
    QByteArray file = "II" + Little(42, 2) + Little(start, 4) + Little(entries, 2);
    file += TiffEntry(256, 3, 1, size.width()) + TiffEntry(257, 3, 1, size.height());
    file += TiffEntry(258, 3, channels, bits) + TiffEntry(259, 3, 1, 1) + TiffEntry(262, 3, 1, meaning);
    file += TiffEntry(273, 4, 1, data) + TiffEntry(277, 3, 1, channels) + TiffEntry(278, 3, 1, size.height());
    file += TiffEntry(279, 4, 1, pixels.size()) + Little(0, 4);
    return file + Little(8, 2).repeated(channels) + pixels;
}

using Inks = std::array<int, 4>; // 255 = full

Inks InksOf(QRgb colour)
{
    return {255 - qRed(colour), 255 - qGreen(colour), 255 - qBlue(colour), 0};
}

QByteArray InkJpeg(const QSize& size, bool isMarked, const std::function<Inks(int x, int y)>& inksAt)
{
    jpeg_compress_struct encoder = {};
    jpeg_error_mgr errors = {};
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    unsigned char* bytes = nullptr; // owned
    unsigned long length = 0;
    jpeg_mem_dest(&encoder, &bytes, &length);
    encoder.image_width = JDIMENSION(size.width());
    encoder.image_height = JDIMENSION(size.height());
    encoder.input_components = 4;
    encoder.in_color_space = JCS_CMYK;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, 95, TRUE);
    encoder.write_Adobe_marker = isMarked;
    jpeg_start_compress(&encoder, TRUE);
    for (int y = 0; y < size.height(); ++y) {
        QByteArray row;
        for (int x = 0; x < size.width(); ++x) {
            for (const int ink : inksAt(x, y))
                row.append(char(isMarked ? 255 - ink : ink));
        }
        JSAMPROW rows[] = {reinterpret_cast<JSAMPROW>(row.data())};
        jpeg_write_scanlines(&encoder, rows, 1);
    }
    jpeg_finish_compress(&encoder);
    jpeg_destroy_compress(&encoder);
    const QByteArray file(reinterpret_cast<const char*>(bytes), int(length));
    std::free(bytes);
    return file;
}

} // namespace

QByteArray QuadrantsBmp()
{
    return Encode(Quadrants(), "BMP");
}

QByteArray QuadrantsGif()
{
    const QImage image = Quadrants();
    QVector<QRgb> colours;
    GifCodes codes;
    for (int at = 0; at < image.width() * image.height(); ++at) {
        const QRgb colour = image.pixel(at % image.width(), at / image.width());
        if (!colours.contains(colour))
            colours.append(colour);
        if (at % 2 == 0)
            codes.Add(4); // forget what was learnt, so that codes stay three bits long
        codes.Add(colours.indexOf(colour));
    }
    codes.Add(5);
    QByteArray file = "GIF89a" + Little(image.width(), 2) + Little(image.height(), 2) + '\x91' + '\0' + '\0';
    for (const QRgb colour : qAsConst(colours))
        file += QByteArray(1, char(qRed(colour))) + char(qGreen(colour)) + char(qBlue(colour));
    file += ',' + Little(0, 4) + Little(image.width(), 2) + Little(image.height(), 2) + '\0' + '\2';
    return file + codes.Finish() + ';';
}

QByteArray QuadrantsTiff()
{
    const QImage image = Quadrants().convertToFormat(QImage::Format_RGB888);
    QByteArray pixels;
    for (int y = 0; y < image.height(); ++y)
        pixels.append(reinterpret_cast<const char*>(image.constScanLine(y)), image.width() * 3);
    constexpr int lights = 2;
    return Tiff(image.size(), 3, lights, pixels);
}

QByteArray QuadrantsInkTiff()
{
    const QImage image = Quadrants();
    QByteArray pixels;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            for (const int ink : InksOf(image.pixel(x, y)))
                pixels.append(char(ink));
        }
    }
    constexpr int inks = 5;
    return Tiff(image.size(), 4, inks, pixels);
}

QByteArray QuadrantsInkJpeg(bool isMarked)
{
    const QImage image = Quadrants();
    return InkJpeg(image.size(), isMarked, [&image](int x, int y) { return InksOf(image.pixel(x, y)); });
}

QByteArray FirstInkJpeg(bool isMarked)
{
    return InkJpeg(QSize(64, 64), isMarked, [](int, int) { return Inks{255, 0, 0, 0}; });
}

QByteArray MaskPng()
{
    QImage mask(64, 64, QImage::Format_RGB32);
    QPainter painter(&mask);
    painter.fillRect(0, 0, 32, 64, Qt::black);
    painter.fillRect(32, 0, 32, 64, Qt::white);
    painter.fillRect(0, 24, 64, 16, QColor(128, 128, 128));
    painter.end();
    return Encode(mask, "PNG");
}

QByteArray TransparentMaskPng()
{
    QImage mask(64, 64, QImage::Format_ARGB32);
    mask.fill(Qt::white);
    QPainter painter(&mask);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(0, 32, 64, 32, QColor(255, 255, 255, 0));
    painter.end();
    return Encode(mask, "PNG");
}

} // namespace samples
