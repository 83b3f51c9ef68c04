#include "jpeg_decoder.h"

#include "picture_colors.h"

#include <ofd/package/limits.h>

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <new>
#include <vector>

#include <jpeglib.h>

#include <jerror.h>

namespace ofd {

namespace {

constexpr int Inks = 4;
constexpr int OutOfMemory = JERR_OUT_OF_MEMORY;

// Decodes one file. Errors leave the decoder by a long jump, over frames that own nothing.
struct JpegDecoding
{
    JpegDecoding(const QByteArray& bytes, const JpegOrder& order);
    ~JpegDecoding() { jpeg_destroy_decompress(&decoder); }
    JpegDecoding(const JpegDecoding&) = delete;
    JpegDecoding& operator=(const JpegDecoding&) = delete;

    // Whether the picture may be decoded, once its head is read.
    bool MayStart();
    // Null when it was given up, since half a picture is no picture then. Throws std::bad_alloc.
    QImage Take(bool isDone) const;

    jpeg_decompress_struct decoder = {};
    jpeg_error_mgr errors = {};
    jpeg_progress_mgr progress = {};
    std::jmp_buf target = {};
    const QByteArray& bytes;
    const JpegOrder& order;
    QImage image;
    bool isGivenUp = false;
    bool isOutOfMemory = false;
};

void Leave(j_common_ptr decoder)
{
    auto* decoding = static_cast<JpegDecoding*>(decoder->client_data);
    decoding->isOutOfMemory |= decoder->err->msg_code == OutOfMemory;
    std::longjmp(decoding->target, 1);
}

// Called for each row. What is asked may throw, which the decoder's own frames could not bear.
void LeaveWhenGivenUp(j_common_ptr decoder)
{
    auto* decoding = static_cast<JpegDecoding*>(decoder->client_data);
    try {
        decoding->isGivenUp = decoding->order.isCancelled();
    } catch (const std::bad_alloc&) {
        decoding->isOutOfMemory = true;
    }
    if (decoding->isGivenUp || decoding->isOutOfMemory)
        std::longjmp(decoding->target, 1);
}

void IgnoreMessage(j_common_ptr) {}
void IgnoreLevel(j_common_ptr, int) {}

JpegDecoding::JpegDecoding(const QByteArray& bytes, const JpegOrder& order)
    : bytes(bytes)
    , order(order)
{
    decoder.err = jpeg_std_error(&errors);
    errors.error_exit = &Leave;
    errors.output_message = &IgnoreMessage;
    errors.emit_message = &IgnoreLevel;
    decoder.client_data = this;
    if (setjmp(target))         // NOLINT(cert-err52-cpp): the decoder knows no other way
        throw std::bad_alloc(); // nothing else makes it fail
    jpeg_create_decompress(&decoder);
    progress.progress_monitor = &LeaveWhenGivenUp;
    if (order.isCancelled)
        decoder.progress = &progress;
}

// The sizes are those of what comes out. What goes over its picture more than once, or might, is kept whole besides.
bool JpegDecoding::MayStart()
{
    const qint64 pixels = qint64(decoder.image_width) * decoder.image_height;
    const qint64 pixelsOut = qint64(decoder.output_width) * decoder.output_height;
    const bool isKept = jpeg_has_multiple_scans(&decoder);
    return pixels <= (isKept ? limits::MaxScannedPixels : limits::MaxImagePixels) &&
           pixelsOut * qint64(sizeof(QRgb)) <= order.mostBytes;
}

QImage JpegDecoding::Take(bool isDone) const
{
    if (isOutOfMemory)
        throw std::bad_alloc();
    return isDone && !isGivenUp ? image : QImage();
}

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

void ReadHead(JpegDecoding& decoding)
{
    jpeg_decompress_struct& decoder = decoding.decoder;
    jpeg_mem_src(&decoder, reinterpret_cast<const unsigned char*>(decoding.bytes.constData()),
                 size_t(decoding.bytes.size()));
    jpeg_read_header(&decoder, TRUE);
}

// Makes the picture and begins to decode. False when it is none of ours.
bool Start(JpegDecoding& decoding, int channels)
{
    jpeg_decompress_struct& decoder = decoding.decoder;
    jpeg_calc_output_dimensions(&decoder);
    if (!decoding.MayStart() || !jpeg_start_decompress(&decoder) || decoder.output_components != channels)
        return false;
    decoding.image = QImage(int(decoder.output_width), int(decoder.output_height), QImage::Format_RGB32);
    decoding.isOutOfMemory = decoding.image.isNull();
    return !decoding.isOutOfMemory;
}

// `row` belongs to the caller, so that nothing is lost when an error jumps out of here. False on failure; what was read
// before some damage is there, up to row `output_scanline`.
bool DecodeInks(JpegDecoding& decoding, const PictureColors* colors, std::vector<quint8>& row)
{
    jpeg_decompress_struct& decoder = decoding.decoder;
    if (setjmp(decoding.target)) // NOLINT(cert-err52-cpp): the decoder knows no other way
        return !decoding.image.isNull();
    ReadHead(decoding);
    decoder.out_color_space = JCS_CMYK;
    if (decoder.num_components != Inks || !Start(decoding, Inks))
        return false;
    row.resize(size_t(decoder.output_width) * Inks);
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPROW rows[] = {row.data()};
        const int y = int(decoder.output_scanline);
        if (jpeg_read_scanlines(&decoder, rows, 1) != 1)
            return true;
        ConvertRow(row, reinterpret_cast<QRgb*>(decoding.image.scanLine(y)), decoding.image.width(),
                   decoder.saw_Adobe_marker, colors);
    }
    return true;
}

// Decodes into the bytes of an image's pixels; otherwise the same.
bool DecodeLights(JpegDecoding& decoding)
{
    jpeg_decompress_struct& decoder = decoding.decoder;
    if (setjmp(decoding.target)) // NOLINT(cert-err52-cpp): the decoder knows no other way
        return !decoding.image.isNull();
    ReadHead(decoding);
    decoder.scale_num = unsigned(decoding.order.eighths);
    decoder.scale_denom = 8;
    decoder.out_color_space = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRA : JCS_EXT_ARGB;
    if (decoder.num_components == Inks || !Start(decoding, int(sizeof(QRgb))))
        return false;
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPROW rows[] = {decoding.image.scanLine(int(decoder.output_scanline))};
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

QImage DecodeInkJpeg(const QByteArray& bytes, const PictureColors* colors, const JpegOrder& order)
{
    JpegDecoding decoding(bytes, order);
    std::vector<quint8> row;
    const bool isDone = DecodeInks(decoding, colors, row);
    FillFrom(decoding.image, int(decoding.decoder.output_scanline));
    return decoding.Take(isDone);
}

QImage DecodePlainJpeg(const QByteArray& bytes, const JpegOrder& order)
{
    JpegDecoding decoding(bytes, order);
    const bool isDone = DecodeLights(decoding);
    FillFrom(decoding.image, int(decoding.decoder.output_scanline));
    return decoding.Take(isDone);
}

} // namespace ofd
