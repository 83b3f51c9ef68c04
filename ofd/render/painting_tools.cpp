#include "painting_tools.h"

#include <ofd/package/limits.h>

#include <QPainterPathStroker>

#include <cmath>

namespace ofd {

double ScaleOf(const QTransform& transform)
{
    return std::sqrt(std::abs(transform.determinant()));
}

bool IsUsable(const QTransform& transform)
{
    const double scale = ScaleOf(transform);
    return std::isfinite(scale) && scale > 0 && scale < limits::MaxScale && std::isfinite(transform.dx()) &&
           std::isfinite(transform.dy());
}

QRect PixelsWithin(const QRectF& rect, const QRect& others)
{
    const QRectF seen = rect.normalized().adjusted(-1, -1, 1, 1) & QRectF(others);
    return seen.isEmpty() ? QRect() : seen.toAlignedRect() & others;
}

QRect VisiblePixels(const QPainter& painter)
{
    const QRect all(0, 0, painter.device()->width(), painter.device()->height());
    if (!painter.hasClipping())
        return all;
    return PixelsWithin(painter.worldTransform().mapRect(painter.clipBoundingRect()), all);
}

QPainterPath LineAround(const QPainterPath& outline, const QPen& pen, double pixelsPerUnit)
{
    QPainterPathStroker stroker(pen);
    stroker.setCurveThreshold(0.25 / pixelsPerUnit);
    QPainterPath line = stroker.createStroke(outline);
    line.setFillRule(Qt::WindingFill);
    return line;
}

QImage TransparentImage(const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void SetPageHints(QPainter& painter)
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
}

} // namespace ofd
