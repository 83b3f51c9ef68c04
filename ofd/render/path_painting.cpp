// How a page's painter paints paths, and what it fills and strokes with.
#include "page_painter.h"
#include "painting_tools.h"
#include "shading_brush.h"

namespace ofd {

namespace {

constexpr double ThinnestLinePx = 0.7; // thinner lines would fade away on the screen
constexpr double MaxDashesInLine = 20'000;

} // namespace

QBrush ContentPainter::BrushOf(const Paint& paint, double alpha, const GraphicObject& object) const
{
    if (paint.shading) {
        const QTransform boundaryToLocal =
            QTransform::fromTranslate(object.boundary.x(), object.boundary.y()) * object.toContainer.inverted();
        return ShadingBrush(*paint.shading, alpha, boundaryToLocal);
    }
    QColor color = paint.color;
    color.setAlphaF(color.alphaF() * alpha);
    return color;
}

QPen ContentPainter::PenOf(const StrokeStyle& style, const QBrush& brush) const
{
    const double width = std::max(style.widthMm, ThinnestLinePx / ScaleOf(painter.worldTransform()));
    QPen pen(brush, width, Qt::SolidLine, style.cap, style.join);
    pen.setMiterLimit(std::max(1.0, style.miterLimit));
    if (!style.dashes.isEmpty()) {
        QVector<qreal> dashes; // Qt counts them in widths of the line
        for (const double dash : style.dashes)
            dashes.append(dash / width);
        pen.setDashPattern(dashes);
        pen.setDashOffset(style.dashOffset / width);
    }
    return pen;
}

void ContentPainter::PaintPath(const PathObject& object)
{
    const QPainterPath path = PrivateCopy(object.path);
    ClipTo(object, object.toContainer.mapRect(path.controlPointRect()));
    painter.setWorldTransform(object.toContainer, true);
    const double alpha = object.alpha * groupAlpha;
    if (object.isFilled && object.fillPaint.IsVisible())
        painter.fillPath(path, BrushOf(object.fillPaint, alpha, object));
    if (!object.isStroked || !object.strokePaint.IsVisible())
        return;
    QPen pen = PenOf(object.stroke, BrushOf(object.strokePaint, alpha, object));
    double dashLength = 0;
    for (const double dash : object.stroke.dashes)
        dashLength += dash;
    const QRectF extent = path.controlPointRect();
    if (dashLength > 0 && (extent.width() + extent.height()) / dashLength > MaxDashesInLine)
        pen.setStyle(Qt::SolidLine);
    painter.strokePath(path, pen);
}

} // namespace ofd
