#include "glyph_stamps.h"

#include <ofd/model/content.h>

#include <QPainter>

#include <cmath>
#include <cstring>

namespace ofd {

namespace {

constexpr int CachedBytes = 32 << 20;
constexpr double LargestPx = 48; // size of the font; larger glyphs are few and are filled
constexpr int PlacesX = 4;       // a pixel
constexpr int PlacesY = 2;
constexpr int Overhead = 200; // bytes that a stamp takes besides its pixels

// The pixel and the place in it that a coordinate falls into.
int SplitPlace(double value, int places, int* place)
{
    const int steps = int(std::lround(value * places));
    const int pixel = int(std::floor(double(steps) / places));
    *place = steps - pixel * places;
    return pixel;
}

GlyphStamp MakeStamp(const FontFace& face, quint32 glyph, const QTransform& toPixels, QRgb color)
{
    GlyphStamp stamp;
    const QPainterPath outline = PrivateCopy(toPixels.map(face.OutlineOf(glyph)));
    if (outline.isEmpty())
        return stamp;
    const QRect box = outline.controlPointRect().toAlignedRect().adjusted(-1, -1, 1, 1);
    if (box.width() > 4 * LargestPx || box.height() > 4 * LargestPx)
        return stamp;
    stamp.image = QImage(box.size(), QImage::Format_ARGB32_Premultiplied);
    stamp.image.fill(0);
    stamp.topLeft = box.topLeft();
    QPainter painter(&stamp.image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-box.topLeft());
    painter.fillPath(outline, QColor::fromRgba(color));
    return stamp;
}

} // namespace

GlyphStamps::GlyphStamps()
    : stamps(CachedBytes)
{
}

qint64 GlyphStamps::GetKeptBytes()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return stamps.totalCost();
}

qint64 GlyphStamps::GetLimit()
{
    return CachedBytes;
}

bool operator==(const GlyphStamps::Key& a, const GlyphStamps::Key& b)
{
    return a.face == b.face && a.glyph == b.glyph && a.color == b.color && a.place == b.place &&
           // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): by their bits, as the hash takes them
           std::memcmp(a.matrix, b.matrix, sizeof a.matrix) == 0;
}

uint qHash(const GlyphStamps::Key& key, uint seed)
{
    return qHashBits(key.matrix, sizeof key.matrix, seed) ^ ::qHash(key.face, seed) ^ (key.glyph * 2654435761U) ^
           key.color ^ (uint(key.place) << 27);
}

bool GlyphStamps::IsSmall(const QTransform& toPixels)
{
    const double reach =
        std::max(std::hypot(toPixels.m11(), toPixels.m12()), std::hypot(toPixels.m21(), toPixels.m22()));
    return reach > 0 && reach <= LargestPx && std::abs(toPixels.dx()) < 1e6 && std::abs(toPixels.dy()) < 1e6;
}

GlyphStamp GlyphStamps::GetStamp(const FontFace& face, quint32 glyph, const QTransform& toPixels, QRgb color,
                                 QPoint& origin)
{
    int placeX = 0;
    int placeY = 0;
    origin = QPoint(SplitPlace(toPixels.dx(), PlacesX, &placeX), SplitPlace(toPixels.dy(), PlacesY, &placeY));
    const Key key{&face,
                  glyph,
                  color,
                  {float(toPixels.m11()), float(toPixels.m12()), float(toPixels.m21()), float(toPixels.m22())},
                  placeX + PlacesX * placeY};
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (const GlyphStamp* known = stamps.object(key))
            return *known;
    }
    const QTransform place(toPixels.m11(), toPixels.m12(), toPixels.m21(), toPixels.m22(), double(placeX) / PlacesX,
                           double(placeY) / PlacesY);
    const GlyphStamp stamp = MakeStamp(face, glyph, place, color);
    const std::lock_guard<std::mutex> lock(mutex);
    stamps.insert(key, new GlyphStamp(stamp), int(stamp.image.sizeInBytes()) + Overhead);
    return stamp;
}

} // namespace ofd
