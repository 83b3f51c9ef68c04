#include "shading_brush.h"

#include <ofd/model/content.h>

#include <QGradient>

#include <algorithm>
#include <cmath>

namespace ofd {

namespace {

constexpr double Sharp = 1e-4; // width of the step from "painted" to "not painted" at an end that is not extended

QColor Faded(QColor color, double alpha)
{
    color.setAlphaF(color.alphaF() * alpha);
    return color;
}

// Stops between `from` and `to` of the gradient's length. Ends that are not extended are transparent outside.
void SetStops(QGradient& gradient, const Shading& shading, double alpha, double from, double to)
{
    QGradientStops stops;
    for (const Shading::Stop& stop : shading.stops)
        stops.append({from + (to - from) * stop.position, Faded(stop.color, alpha)});
    if (shading.repeat == Shading::Repeat::Direct) {
        if (!shading.extendsStart)
            stops.prepend({std::max(0.0, from - Sharp), Faded(shading.stops.first().color, 0)});
        if (!shading.extendsEnd)
            stops.append({std::min(1.0, to + Sharp), Faded(shading.stops.last().color, 0)});
    }
    gradient.setStops(stops);
}

void SetSpread(QGradient& gradient, Shading::Repeat repeat)
{
    gradient.setSpread(repeat == Shading::Repeat::Repeat    ? QGradient::RepeatSpread
                       : repeat == Shading::Repeat::Reflect ? QGradient::ReflectSpread
                                                            : QGradient::PadSpread);
}

QBrush AxialBrush(const Shading& shading, double alpha)
{
    QPointF start = shading.start;
    QPointF end = shading.end;
    const double length = std::hypot(end.x() - start.x(), end.y() - start.y());
    const bool isDirect = shading.repeat == Shading::Repeat::Direct;
    if (!isDirect && shading.mapUnit > 0 && length > 0)
        end = start + (end - start) * (shading.mapUnit / length);
    double from = 0;
    double to = 1;
    if (isDirect) { // room for the step at both ends
        const QPointF margin = (end - start) * 0.01;
        start -= margin;
        end += margin;
        from = 0.01 / 1.02;
        to = 1.01 / 1.02;
    }
    QLinearGradient gradient(start, end);
    SetSpread(gradient, shading.repeat);
    SetStops(gradient, shading, alpha, from, to);
    return gradient;
}

QBrush RadialBrush(const Shading& shading, double alpha)
{
    const bool shrinks = shading.startRadius > shading.endRadius;
    Shading outward = shading;
    if (shrinks) { // Qt wants the larger circle at the end
        std::swap(outward.start, outward.end);
        std::swap(outward.startRadius, outward.endRadius);
        std::swap(outward.extendsStart, outward.extendsEnd);
        std::reverse(outward.stops.begin(), outward.stops.end());
        for (Shading::Stop& stop : outward.stops)
            stop.position = 1 - stop.position;
    }
    const bool isDirect = outward.repeat == Shading::Repeat::Direct;
    const double to = isDirect ? 1 / 1.01 : 1;
    QRadialGradient gradient(outward.end, outward.endRadius / to, outward.start, outward.startRadius);
    SetSpread(gradient, outward.repeat);
    SetStops(gradient, outward, alpha, 0, to);
    if (outward.startRadius <= 0 && isDirect && !outward.extendsStart) {
        QGradientStops stops = gradient.stops();
        stops.removeFirst(); // there is nothing inside a point
        gradient.setStops(stops);
    }
    return gradient;
}

// Turns a circle about the start point into the ellipse that the shading asks for.
QTransform EllipseOf(const Shading& shading)
{
    QTransform ellipse;
    if (shading.kind != Shading::Kind::Radial || shading.eccentricity <= 0)
        return ellipse;
    ellipse.translate(shading.start.x(), shading.start.y());
    ellipse.rotate(shading.angle);
    ellipse.scale(1, std::sqrt(1 - shading.eccentricity * shading.eccentricity));
    ellipse.rotate(-shading.angle);
    ellipse.translate(-shading.start.x(), -shading.start.y());
    return ellipse;
}

} // namespace

QBrush ShadingBrush(const Shading& shading, double alpha, const QTransform& toLocal)
{
    QBrush brush = shading.kind == Shading::Kind::Axial ? AxialBrush(shading, alpha) : RadialBrush(shading, alpha);
    brush.setTransform(EllipseOf(shading) * toLocal);
    return brush;
}

} // namespace ofd
