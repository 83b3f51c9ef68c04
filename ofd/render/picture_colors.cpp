#include "picture_colors.h"

#include <ofd/model/problem_log.h>
#include <ofd/package/limits.h>

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdlib>

#include <lcms2.h>

namespace ofd {

namespace {

constexpr int Levels = 256;

void IgnoreMessage(cmsContext, cmsUInt32Number, const char*) {}

// Closes a profile at the end of a scope.
struct ProfileCloser
{
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using ProfilePointer = std::unique_ptr<void, ProfileCloser>;

// As the bytes of a QRgb lie in memory.
cmsUInt32Number PixelFormat()
{
    return Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? TYPE_BGRA_8 : TYPE_ARGB_8;
}

// What a profile says that it is for; 0 when that is none of ours. It stands at a fixed place.
int ChannelsOf(const QByteArray& profile)
{
    const QByteArray space = profile.mid(16, 4);
    return space == "GRAY" ? 1 : space == "RGB " ? 3 : space == "CMYK" ? 4 : 0;
}

bool IsGrayFormat(QImage::Format format)
{
    return format == QImage::Format_Grayscale8 || format == QImage::Format_Grayscale16;
}

// Pictures of few grays come with a table of them.
bool IsGray(const QImage& image)
{
    const QVector<QRgb> table = image.colorTable();
    return table.isEmpty() ? image.isGrayscale() : std::all_of(table.begin(), table.end(), qIsGray);
}

} // namespace

std::unique_ptr<PictureColors> PictureColors::FromProfile(const QByteArray& profile)
{
    if (profile.isEmpty())
        return nullptr;
    std::unique_ptr<PictureColors> colors(new PictureColors(ChannelsOf(profile)));
    if (!colors->Open(profile)) {
        ReportProblem(ProblemKind::BadValue,
                      QCoreApplication::translate("OfdDocument", "The colour profile of the picture cannot be used."));
        return nullptr;
    }
    return colors->ChangesNothing() ? nullptr : std::move(colors);
}

bool PictureColors::Open(const QByteArray& profile)
{
    context = channelCount > 0 ? cmsCreateContext(nullptr, nullptr) : nullptr;
    if (!context)
        return false;
    auto* const library = static_cast<cmsContext>(context); // not owned
    cmsSetLogErrorHandlerTHR(library, &IgnoreMessage);
    const ProfilePointer source(
        cmsOpenProfileFromMemTHR(library, profile.constData(), cmsUInt32Number(profile.size())));
    const ProfilePointer screen(cmsCreate_sRGBProfileTHR(library));
    if (!source || !screen)
        return false;
    const cmsUInt32Number from = channelCount == 1 ? TYPE_GRAY_8 : channelCount == 4 ? TYPE_CMYK_8 : PixelFormat();
    const cmsUInt32Number flags = cmsFLAGS_BLACKPOINTCOMPENSATION | (channelCount == 3 ? cmsFLAGS_COPY_ALPHA : 0);
    transform = cmsCreateTransformTHR(library, source.get(), from, screen.get(), PixelFormat(),
                                      INTENT_RELATIVE_COLORIMETRIC, flags);
    return transform;
}

PictureColors::~PictureColors()
{
    if (transform)
        cmsDeleteTransform(transform);
    if (context)
        cmsDeleteContext(static_cast<cmsContext>(context));
}

// Most profiles are that of the screen, in one of its many writings: going over all pixels would be for nothing.
bool PictureColors::ChangesNothing() const
{
    constexpr int steps = 5, tolerance = 2;
    if (channelCount != 3)
        return false;
    std::array<QRgb, steps * steps * steps> colors{};
    for (int i = 0; i < int(colors.size()); ++i)
        colors[size_t(i)] = qRgb(i % steps * 255 / (steps - 1), i / steps % steps * 255 / (steps - 1),
                                 i / (steps * steps) * 255 / (steps - 1));
    std::array<QRgb, colors.size()> seen = colors;
    ConvertLights(seen.data(), int(seen.size()));
    return std::equal(colors.begin(), colors.end(), seen.begin(), [](QRgb a, QRgb b) {
        return std::abs(qRed(a) - qRed(b)) <= tolerance && std::abs(qGreen(a) - qGreen(b)) <= tolerance &&
               std::abs(qBlue(a) - qBlue(b)) <= tolerance;
    });
}

void PictureColors::Convert(QImage& image) const
{
    const bool isTable = !image.colorTable().isEmpty();
    if (!isTable && qint64(image.width()) * image.height() > limits::MaxProfiledPixels)
        return;
    if (channelCount == 3 && !IsGrayFormat(image.format()))
        ConvertLights(image);
    else if (channelCount == 1 && IsGray(image))
        ConvertGray(image);
}

void PictureColors::ConvertLights(QRgb* pixels, int count) const
{
    cmsDoTransform(transform, pixels, pixels, cmsUInt32Number(count));
}

void PictureColors::ConvertLights(QImage& image) const
{
    QVector<QRgb> table = image.colorTable();
    if (!table.isEmpty()) {
        ConvertLights(table.data(), table.size());
        image.setColorTable(table);
        return;
    }
    image = std::move(image).convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        ConvertLights(reinterpret_cast<QRgb*>(image.scanLine(y)), image.width());
}

// Grays are few: each is asked for once.
void PictureColors::ConvertGray(QImage& image) const
{
    std::array<quint8, Levels> levels{};
    std::array<QRgb, Levels> seen{};
    for (int i = 0; i < Levels; ++i)
        levels[size_t(i)] = quint8(i);
    cmsDoTransform(transform, levels.data(), seen.data(), Levels);
    const auto look = [&](QRgb pixel) { return (pixel & 0xff000000) | (seen[size_t(qBlue(pixel))] & 0x00ffffff); };
    QVector<QRgb> table = image.colorTable();
    if (!table.isEmpty()) {
        std::transform(table.begin(), table.end(), table.begin(), look);
        image.setColorTable(table);
        return;
    }
    if (IsGrayFormat(image.format())) {
        image = std::move(image).convertToFormat(QImage::Format_Grayscale8);
        for (int y = 0; y < image.height(); ++y) {
            uchar* row = image.scanLine(y); // not owned
            std::transform(row, row + image.width(), row,
                           [&](uchar level) { return uchar(qGreen(seen[size_t(level)])); });
        }
        return;
    }
    image = std::move(image).convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y)); // not owned
        std::transform(row, row + image.width(), row, look);
    }
}

void PictureColors::ConvertInks(const quint8* inks, QRgb* out, int width) const
{
    cmsDoTransform(transform, inks, out, cmsUInt32Number(width));
    std::for_each(out, out + width, [](QRgb& pixel) { pixel |= 0xff000000; });
}

} // namespace ofd
