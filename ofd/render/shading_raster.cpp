#include "shading_raster.h"

#include <ofd/model/paint.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace ofd {

namespace {

constexpr int TableSize = 2048;
constexpr int Samples = 2; // in each direction of a pixel, where a shading ends inside of the picture

QRgb Premultiplied(const QColor& color)
{
    return qPremultiply(color.rgba());
}

// Between two premultiplied colours.
QRgb Mixed(QRgb a, QRgb b, double share)
{
    const auto mix = [share](int x, int y) { return int(std::lround(x + (y - x) * share)); };
    return qRgba(mix(qRed(a), qRed(b)), mix(qGreen(a), qGreen(b)), mix(qBlue(a), qBlue(b)), mix(qAlpha(a), qAlpha(b)));
}

// The colours of a shading by place along its axis, 0 to 1 from start to end.
class ShadingColors
{
public:
    explicit ShadingColors(const Shading& shading)
        : shading(shading)
    {
        int next = 0; // first stop behind the place
        for (int i = 0; i < TableSize; ++i) {
            const double place = double(i) / (TableSize - 1);
            while (next < shading.stops.size() && shading.stops.at(next).position <= place)
                ++next;
            table[size_t(i)] = ColorAt(place, next);
        }
        const QPointF axis = shading.end - shading.start;
        double length = std::hypot(axis.x(), axis.y());
        if (shading.kind == Shading::Kind::Radial && length < 1e-6)
            length = std::abs(shading.endRadius - shading.startRadius);
        if (shading.mapUnit > 0 && length > 0)
            runs = length / shading.mapUnit;
    }

    bool Reaches(double place) const
    {
        return std::isfinite(place) && (place >= 0 || shading.extendsStart) && (place <= 1 || shading.extendsEnd);
    }

    // Nothing where the shading does not reach.
    std::optional<QRgb> At(double place) const
    {
        if (!Reaches(place))
            return std::nullopt;
        switch (shading.repeat) {
        case Shading::Repeat::Direct:
            place = std::clamp(place, 0.0, 1.0);
            break;
        case Shading::Repeat::Repeat:
            place = place * runs - std::floor(place * runs);
            break;
        case Shading::Repeat::Reflect:
            place = std::abs(std::remainder(place * runs, 2.0));
            break;
        }
        if (!(place >= 0 && place <= 1)) // there are more runs than numbers
            return std::nullopt;
        return table[size_t(std::lround(place * (TableSize - 1)))];
    }

private:
    QRgb ColorAt(double place, int next) const
    {
        const QVector<Shading::Stop>& stops = shading.stops;
        if (next == 0)
            return Premultiplied(stops.first().color);
        if (next == stops.size())
            return Premultiplied(stops.last().color);
        const Shading::Stop& before = stops.at(next - 1);
        const Shading::Stop& behind = stops.at(next);
        return Mixed(Premultiplied(before.color), Premultiplied(behind.color),
                     (place - before.position) / (behind.position - before.position));
    }

    const Shading& shading;
    std::array<QRgb, TableSize> table{};
    double runs = 1; // of the colours between start and end
};

class AxialField
{
public:
    AxialField(const Shading& shading, const ShadingColors& colors)
        : colors(colors)
        , start(shading.start)
    {
        const QPointF axis = shading.end - shading.start;
        perLength = axis / QPointF::dotProduct(axis, axis);
    }

    std::optional<QRgb> At(const QPointF& point) const
    {
        return colors.At(QPointF::dotProduct(point - start, perLength));
    }

private:
    const ShadingColors& colors;
    QPointF start;
    QPointF perLength;
};

// A circle moves and grows from the first to the second; a point has the place of the last circle that runs through it.
class RadialField
{
public:
    // Points are those of a space in which the shading's ellipses are circles.
    RadialField(const Shading& shading, const ShadingColors& colors, const QTransform& toCircles)
        : colors(colors)
        , start(toCircles.map(shading.start))
        , axis(toCircles.map(shading.end) - start)
        , radius(shading.startRadius)
        , growth(shading.endRadius - shading.startRadius)
        , square(QPointF::dotProduct(axis, axis) - growth * growth)
    {
    }

    std::optional<QRgb> At(const QPointF& point) const
    {
        const QPointF from = point - start;
        const double b = QPointF::dotProduct(from, axis) + radius * growth;
        const double c = QPointF::dotProduct(from, from) - radius * radius;
        if (std::abs(square) < 1e-12)
            return b == 0 ? std::nullopt : Visible(c / (2 * b));
        const double root = b * b - square * c;
        if (root < 0)
            return std::nullopt;
        const double one = (b + std::sqrt(root)) / square;
        const double other = (b - std::sqrt(root)) / square;
        if (const std::optional<QRgb> color = Visible(std::max(one, other)))
            return *color;
        return Visible(std::min(one, other));
    }

private:
    std::optional<QRgb> Visible(double place) const
    {
        return radius + place * growth < 0 ? std::nullopt : colors.At(place);
    }

    const ShadingColors& colors;
    QPointF start;
    QPointF axis;
    double radius;
    double growth;
    double square;
};

// Turns ellipses of the shading's form into circles.
QTransform CirclesOf(const Shading& shading)
{
    QTransform turn;
    turn.rotate(-shading.angle);
    const double flat = std::sqrt(1 - shading.eccentricity * shading.eccentricity);
    return turn * QTransform::fromScale(1, 1 / flat);
}

template <typename Field>
QRgb Averaged(const Field& field, const QTransform& fromPixels, int x, int y)
{
    int red = 0, green = 0, blue = 0, alpha = 0;
    for (int i = 0; i < Samples * Samples; ++i) {
        const QPointF at(x + (i % Samples + 0.5) / Samples, y + (i / Samples + 0.5) / Samples); // NOLINT: whole parts
        const QRgb color = field.At(fromPixels.map(at)).value_or(0);
        red += qRed(color);
        green += qGreen(color);
        blue += qBlue(color);
        alpha += qAlpha(color);
    }
    constexpr int count = Samples * Samples;
    return qRgba(red / count, green / count, blue / count, alpha / count);
}

// Which pixels around a row the shading reaches; the places before the first and behind the last column count too.
class ReachedRow
{
public:
    explicit ReachedRow(int width)
        : reached(size_t(width) + 2)
        , colors(size_t(width) + 2)
    {
    }

    template <typename Field>
    void Read(const Field& field, const QTransform& fromPixels, int y)
    {
        for (int i = 0; i < int(reached.size()); ++i) {
            const std::optional<QRgb> color = field.At(fromPixels.map(QPointF(i - 0.5, y + 0.5)));
            reached[size_t(i)] = color.has_value();
            colors[size_t(i)] = color.value_or(0);
        }
    }

    bool Reaches(int x) const { return reached[size_t(x) + 1]; }
    QRgb ColorAt(int x) const { return colors[size_t(x) + 1]; }

private:
    std::vector<char> reached;
    std::vector<QRgb> colors;
};

// Smooth where the shading ends: pixels with a neighbour that it reaches and one that it does not.
template <typename Field>
void Fill(QImage& image, const Field& field, const QTransform& fromPixels, const std::function<bool()>& isCancelled)
{
    ReachedRow above(image.width());
    ReachedRow row(image.width());
    ReachedRow below(image.width());
    above.Read(field, fromPixels, -1);
    row.Read(field, fromPixels, 0);
    for (int y = 0; y < image.height() && !(isCancelled && isCancelled()); ++y) {
        below.Read(field, fromPixels, y + 1);
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y)); // not owned
        for (int x = 0; x < image.width(); ++x) {
            const bool here = row.Reaches(x);
            const bool isInside = row.Reaches(x - 1) == here && row.Reaches(x + 1) == here &&
                                  above.Reaches(x) == here && below.Reaches(x) == here;
            line[x] = isInside ? row.ColorAt(x) : Averaged(field, fromPixels, x, y);
        }
        std::swap(above, row);
        std::swap(row, below);
    }
}

} // namespace

void PaintShading(QImage& image, const Shading& shading, const QTransform& toPixels,
                  const std::function<bool()>& isCancelled)
{
    const QTransform fromPixels = toPixels.inverted();
    const ShadingColors colors(shading);
    if (shading.kind == Shading::Kind::Axial) {
        Fill(image, AxialField(shading, colors), fromPixels, isCancelled);
        return;
    }
    const QTransform toCircles = CirclesOf(shading);
    Fill(image, RadialField(shading, colors, toCircles), fromPixels * toCircles, isCancelled);
}

} // namespace ofd
