#include "jpeg_decoder.h"

#include "picture_colors.h"

#include <ofd/package/limits.h>

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <vector>

#include <jpeglib.h>

namespace ofd {

namespace {

constexpr int Inks = 4;

// Errors leave the decoder by a long jump, over frames that own nothing.
struct ErrorExit
{
    jpeg_error_mgr base; // first: the decoder hands this back
    std::jmp_buf target;
};

void Leave(j_common_ptr decoder)
{
    std::longjmp(reinterpret_cast<ErrorExit*>(decoder->err)->target, 1);
}

void IgnoreMessage(j_common_ptr) {}
void IgnoreLevel(j_common_ptr, int) {}

// One row of four inks a pixel as red, green and blue; `colors` may be null.
void ConvertRow(std::vector<quint8>& row, QRgb* out, int width, bool isFullZero, const PictureColors* colors)
{
    if (colors) {
        if (isFullZero)
            std::transform(row.begin(), row.end(), row.begin(), [](quint8 ink) { return quint8(255 - ink); });
        colors->ConvertInks(row.data(), out, width);
        return;
    }
    const quint8* inks = row.data(); // not owned
    for (int x = 0; x < width; ++x, inks += Inks) {
        int light[Inks]; // what each ink leaves
        for (int i = 0; i < Inks; ++i)
            light[i] = isFullZero ? inks[i] : 255 - inks[i];
        out[x] = qRgb(light[0] * light[3] / 255, light[1] * light[3] / 255, light[2] * light[3] / 255);
    }
}

// Begins to decode, with the four inks as what comes out. False when it is none of ours.
bool Start(jpeg_decompress_struct& decoder, const QByteArray& bytes)
{
    jpeg_mem_src(&decoder, reinterpret_cast<const unsigned char*>(bytes.constData()), size_t(bytes.size()));
    if (jpeg_read_header(&decoder, TRUE) != JPEG_HEADER_OK || decoder.num_components != Inks)
        return false;
    if (qint64(decoder.image_width) * decoder.image_height > limits::MaxImagePixels)
        return false;
    decoder.out_color_space = JCS_CMYK;
    return jpeg_start_decompress(&decoder) && decoder.output_components == Inks;
}

// `image` and `row` belong to the caller, so that nothing is lost when an error jumps out of here. False on failure.
bool Decode(jpeg_decompress_struct& decoder, ErrorExit& errors, const QByteArray& bytes, const PictureColors* colors,
            QImage& image, std::vector<quint8>& row)
{
    if (setjmp(errors.target))  // NOLINT(cert-err52-cpp): the decoder knows no other way
        return !image.isNull(); // what was read before the damage is shown
    if (!Start(decoder, bytes))
        return false;
    row.resize(size_t(decoder.output_width) * Inks);
    image = QImage(int(decoder.output_width), int(decoder.output_height), QImage::Format_RGB32);
    if (image.isNull())
        return false;
    image.fill(Qt::white);
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPROW rows[] = {row.data()};
        const int y = int(decoder.output_scanline);
        if (jpeg_read_scanlines(&decoder, rows, 1) != 1)
            return true;
        ConvertRow(row, reinterpret_cast<QRgb*>(image.scanLine(y)), image.width(), decoder.saw_Adobe_marker, colors);
    }
    return true;
}

// Begins to decode into the bytes of an image's pixels. False when it is none of ours.
bool StartPlain(jpeg_decompress_struct& decoder, const QByteArray& bytes, int eighths)
{
    jpeg_mem_src(&decoder, reinterpret_cast<const unsigned char*>(bytes.constData()), size_t(bytes.size()));
    if (jpeg_read_header(&decoder, TRUE) != JPEG_HEADER_OK || decoder.num_components == Inks)
        return false;
    decoder.scale_num = unsigned(eighths);
    decoder.scale_denom = 8;
    decoder.out_color_space = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRA : JCS_EXT_ARGB;
    jpeg_calc_output_dimensions(&decoder);
    const qint64 pixels = qint64(decoder.output_width) * decoder.output_height;
    if (qint64(decoder.image_width) * decoder.image_height > limits::MaxImagePixels ||
        pixels * qint64(sizeof(QRgb)) > limits::MaxImageBytes)
        return false;
    return jpeg_start_decompress(&decoder) && decoder.output_components == int(sizeof(QRgb));
}

// As Decode does; what is missing behind the damage is left as it is, from row `decoder.output_scanline`.
bool DecodePlain(jpeg_decompress_struct& decoder, ErrorExit& errors, const QByteArray& bytes, int eighths,
                 QImage& image)
{
    if (setjmp(errors.target)) // NOLINT(cert-err52-cpp): the decoder knows no other way
        return !image.isNull();
    if (!StartPlain(decoder, bytes, eighths))
        return false;
    image = QImage(int(decoder.output_width), int(decoder.output_height), QImage::Format_RGB32);
    if (image.isNull())
        return false;
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPROW rows[] = {image.scanLine(int(decoder.output_scanline))};
        if (jpeg_read_scanlines(&decoder, rows, 1) != 1)
            return true;
    }
    return true;
}

void FillFrom(QImage& image, int top)
{
    for (int y = top; y < image.height(); ++y)
        std::fill_n(reinterpret_cast<QRgb*>(image.scanLine(y)), image.width(), qRgb(255, 255, 255));
}

bool IsFrame(int marker)
{
    return marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
}

bool IsTooMuch(qint64 scans, qint64 pixels)
{
    return scans > limits::MaxJpegScans || pixels > limits::MaxScannedPixels ||
           scans * pixels > limits::MaxScannedPixelsInAll;
}

} // namespace

bool HasTooManyScans(const QByteArray& bytes)
{
    if (!bytes.startsWith("\xff\xd8"))
        return false;
    const auto at = [&bytes](int i) { return int(quint8(bytes.at(i))); };
    qint64 scans = 0;
    qint64 pixels = 0; // of the first picture in it
    for (int place = bytes.indexOf('\xff', 2); place >= 0 && place + 3 < bytes.size();) {
        const int marker = at(place + 1);
        if (marker == 0xd9)
            return false;
        int next = place + 2; // behind what has no length: bytes of the picture, and marks between them
        if (marker == 0xff)
            next = place + 1;
        else if (marker > 0x01 && !(marker >= 0xd0 && marker <= 0xd8))
            next += at(place + 2) << 8 | at(place + 3);
        if (pixels == 0 && IsFrame(marker) && place + 8 < bytes.size())
            pixels = qint64(at(place + 5) << 8 | at(place + 6)) * (at(place + 7) << 8 | at(place + 8));
        if (marker == 0xda && ++scans > 1 && IsTooMuch(scans, pixels))
            return true;
        place = bytes.indexOf('\xff', next);
    }
    return false;
}

int JpegComponents(const QByteArray& bytes)
{
    if (!bytes.startsWith("\xff\xd8"))
        return 0;
    const auto at = [&bytes](int i) { return int(quint8(bytes.at(i))); };
    for (int place = 2; place + 9 < bytes.size();) {
        if (at(place) != 0xff)
            return 0;
        const int marker = at(place + 1);
        if (marker == 0xff) { // filling
            ++place;
            continue;
        }
        if (IsFrame(marker))
            return at(place + 9);
        if (marker == 0xda || marker == 0xd9)
            return 0;
        place += 2 + (at(place + 2) << 8 | at(place + 3));
    }
    return 0;
}

bool IsInkJpeg(const QByteArray& bytes)
{
    return JpegComponents(bytes) == Inks;
}

QImage DecodeInkJpeg(const QByteArray& bytes, const PictureColors* colors)
{
    jpeg_decompress_struct decoder = {};
    ErrorExit errors = {};
    decoder.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = &Leave;
    errors.base.output_message = &IgnoreMessage;
    errors.base.emit_message = &IgnoreLevel;
    QImage image;
    std::vector<quint8> row;
    jpeg_create_decompress(&decoder);
    const bool isDone = Decode(decoder, errors, bytes, colors, image, row);
    jpeg_destroy_decompress(&decoder);
    return isDone ? image : QImage();
}

QImage DecodePlainJpeg(const QByteArray& bytes, int eighths)
{
    jpeg_decompress_struct decoder = {};
    ErrorExit errors = {};
    decoder.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = &Leave;
    errors.base.output_message = &IgnoreMessage;
    errors.base.emit_message = &IgnoreLevel;
    QImage image;
    jpeg_create_decompress(&decoder);
    const bool isDone = DecodePlain(decoder, errors, bytes, eighths, image);
    FillFrom(image, int(decoder.output_scanline));
    jpeg_destroy_decompress(&decoder);
    return isDone ? image : QImage();
}

} // namespace ofd
