// How a page's painter paints paths, and fills and strokes outlines with whatever paint.
#include "page_painter.h"
#include "painting_tools.h"
#include "painting_work.h"

#include <ofd/package/limits.h>

#include <QScopedValueRollback>

#include <cmath>
#include <numeric>

namespace ofd {

namespace {

constexpr double ThinnestLinePx = 0.7; // thinner lines would fade away on the screen
constexpr int ManyElements = 1000;     // of a line that is painted piece by piece
constexpr double DotLength = 1e-3;     // of a dash that only its caps show, in widths of the line

// The length of all lines of the outline; of curves that of their control points.
double LengthOf(const QPainterPath& outline)
{
    double length = 0;
    for (int i = 1; i < outline.elementCount(); ++i) {
        const QPainterPath::Element& element = outline.elementAt(i);
        const QPainterPath::Element& last = outline.elementAt(i - 1);
        if (element.type != QPainterPath::MoveToElement)
            length += std::hypot(element.x - last.x, element.y - last.y);
    }
    return length;
}

// At the most.
double DashesAlong(const QPainterPath& outline, const QPen& pen)
{
    const QVector<qreal> dashes = pen.dashPattern();
    if (pen.style() == Qt::SolidLine || dashes.isEmpty())
        return 0;
    const double length = std::accumulate(dashes.begin(), dashes.end(), 0.0) * pen.widthF();
    return std::min(LengthOf(outline) / length * dashes.size(), limits::MaxDashesInLine);
}

// The subpaths of an outline.
QVector<QPainterPath> PiecesOf(const QPainterPath& outline)
{
    QVector<QPainterPath> pieces;
    for (int i = 0; i < outline.elementCount(); ++i) {
        const QPainterPath::Element element = outline.elementAt(i);
        if (element.isMoveTo() || pieces.isEmpty())
            pieces.append(QPainterPath(element));
        else if (element.isLineTo())
            pieces.last().lineTo(element);
        else if (element.isCurveTo() && i + 2 < outline.elementCount())
            pieces.last().cubicTo(element, outline.elementAt(i + 1), outline.elementAt(i + 2));
    }
    return pieces;
}

} // namespace

// Whether it looks the same wherever parts of the object lie over each other, painted in one piece or one by one.
bool ContentPainter::Covers(const Paint& paint, const Around& around)
{
    return paint.IsColor() && paint.color.alpha() == 255 && around.alpha >= 1 &&
           around.object.blendMode == BlendMode::Normal;
}

double ContentPainter::PixelCostOf(const Paint& paint, const Around& around)
{
    if (around.object.blendMode != BlendMode::Normal)
        return ModePixel;
    return Covers(paint, around) ? OpaquePixel : BlendedPixel;
}

void ContentPainter::FillShape(const QPainterPath& outline, const Paint& paint, const Around& around)
{
    if (!work.Take(FillCost(outline, painter->worldTransform(), ground, PixelCostOf(paint, around))))
        return;
    if (paint.IsColor()) {
        QColor color = paint.color;
        color.setAlphaF(color.alphaF() * around.alpha);
        painter->fillPath(outline, color);
        return;
    }
    QPainterPath inPixels = painter->worldTransform().map(outline);
    inPixels.setFillRule(outline.fillRule());
    const QRectF filled = inPixels.controlPointRect();
    if (!work.Take(TextureCostOf(paint, around, filled)))
        return;
    const QScopedValueRollback<WorkGround> groundAround(ground);
    ground.reach &= ground.toStandard.mapRect(filled);
    const QRect box = PixelsWithin(filled, VisiblePixels(*painter));
    if (box.isEmpty())
        return;
    const QImage texture = TextureOf(paint, around, box, filled);
    if (texture.isNull())
        return;
    const PainterScope scope(*painter);
    painter->setWorldTransform(QTransform());
    painter->setOpacity(paint.color.alphaF() * around.alpha);
    QBrush brush(texture);
    brush.setTransform(QTransform::fromTranslate(box.x(), box.y()));
    painter->fillPath(inPixels, brush);
}

QPen ContentPainter::PenOf(const StrokeStyle& style, const QPainterPath& outline) const
{
    const double width = std::max(style.widthMm, ThinnestLinePx / ScaleOf(painter->worldTransform()));
    QPen pen(Qt::black, width, Qt::SolidLine, style.cap, style.join);
    pen.setMiterLimit(std::max(1.0, style.miterLimit));
    double patternLength = 0;
    double gapLength = 0; // without gaps the dashes are one line, which shows no seams
    for (int i = 0; i < style.dashes.size(); ++i) {
        patternLength += style.dashes[i];
        gapLength += i % 2 ? style.dashes[i] : 0;
    }
    if (gapLength > 0 && LengthOf(outline) / patternLength * style.dashes.size() <= limits::MaxDashesInLine) {
        // A dash without length is a dot of its two caps; Qt leaves it out.
        const double shortest = style.cap == Qt::FlatCap ? 0 : DotLength;
        QVector<qreal> dashes; // Qt counts them in widths of the line
        for (int i = 0; i < style.dashes.size(); ++i)
            dashes.append(std::max(style.dashes[i] / width, i % 2 ? 0 : shortest));
        pen.setDashPattern(dashes);
        pen.setDashOffset(style.dashOffset / width);
    }
    return pen;
}

void ContentPainter::StrokeShape(const QPainterPath& outline, const StrokeStyle& style, const Paint& paint,
                                 const Around& around)
{
    StrokeWith(PenOf(style, outline), style.widthMm, outline, paint, around);
}

void ContentPainter::StrokeWith(const QPen& pen, double width, const QPainterPath& outline, const Paint& paint,
                                const Around& around)
{
    const double cost = StrokeCost(outline, width, DashesAlong(outline, pen), painter->worldTransform(), ground,
                                   PixelCostOf(paint, around));
    if (!work.Take(cost))
        return;
    if (paint.IsColor()) {
        QPen colored = pen;
        QColor color = paint.color;
        color.setAlphaF(color.alphaF() * around.alpha);
        colored.setBrush(color);
        // The rasterizer's time grows with what crosses a row of pixels.
        if (outline.elementCount() < ManyElements || !Covers(paint, around)) {
            painter->strokePath(outline, colored);
            return;
        }
        for (const QPainterPath& piece : PiecesOf(outline))
            painter->strokePath(piece, colored);
        return;
    }
    FillShape(LineAround(outline, pen, ScaleOf(painter->worldTransform())), paint, around);
}

void ContentPainter::PaintPath(const PathObject& object, const Around& around)
{
    const QPainterPath path = PrivateCopy(object.path);
    ClipToBoundary(object, object.toContainer.mapRect(path.controlPointRect()),
                   object.stroke.widthMm * ScaleOf(object.toContainer));
    painter->setWorldTransform(object.toContainer, true);
    if (object.isFilled && object.fillPaint.IsVisible())
        FillShape(path, object.fillPaint, around);
    if (object.isStroked && object.strokePaint.IsVisible())
        StrokeShape(path, object.stroke, object.strokePaint, around);
}

} // namespace ofd
