#pragma once

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>

namespace ofd {

// Pixels for one unit of the painter's space, the mean of both directions.
double ScaleOf(const QTransform& transform);
// Whether anything sensible can be painted under the transform: it is finite, not singular and not absurdly large.
bool IsUsable(const QTransform& transform);

// The pixels of a rectangle in pixels, with one around it for rounding, as far as they lie within the others.
QRect PixelsWithin(const QRectF& rect, const QRect& others);
// The pixels of the painter's device that its clip leaves.
QRect VisiblePixels(const QPainter& painter);
// What a line around the outline covers, fine enough where so many pixels are one unit of its space.
QPainterPath LineAround(const QPainterPath& outline, const QPen& pen, double pixelsPerUnit);
// A transparent picture; null without memory.
QImage TransparentImage(const QSize& size);
// As all pages are painted.
void SetPageHints(QPainter& painter);

// Restores the painter at the end of a scope.
class PainterScope
{
public:
    explicit PainterScope(QPainter& painter)
        : painter(painter)
    {
        painter.save();
    }
    ~PainterScope() { painter.restore(); }
    PainterScope(const PainterScope&) = delete;
    PainterScope& operator=(const PainterScope&) = delete;

private:
    QPainter& painter;
};

} // namespace ofd
