// How a page's painter paints paths, and fills and strokes outlines with whatever paint.
#include "coverage.h"
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

// Whether it is straight pieces alone that hang together with no other and have neither gaps nor round ends.
bool IsOfSinglePieces(const QPainterPath& outline, const QPen& pen)
{
    if (pen.style() != Qt::SolidLine || pen.capStyle() == Qt::RoundCap)
        return false;
    for (int i = 0; i < outline.elementCount(); ++i) {
        const QPainterPath::Element element = outline.elementAt(i);
        if (i % 2 ? !element.isLineTo() : !element.isMoveTo())
            return false;
    }
    return true;
}

// Left to itself the painter makes one outline of them all under a transform that stretches, which takes very long.
void StrokeOneByOne(QPainter& painter, const QPainterPath& outline, const QPen& pen)
{
    const PainterScope scope(painter);
    painter.setPen(pen);
    for (int i = 0; i + 1 < outline.elementCount(); i += 2)
        painter.drawLine(QPointF(outline.elementAt(i)), QPointF(outline.elementAt(i + 1)));
}

QPainterPath MappedShape(const QPainterPath& outline, const QTransform& transform)
{
    QPainterPath mapped = transform.map(outline);
    mapped.setFillRule(outline.fillRule());
    return mapped;
}

// What of the texture is covered.
QImage CutOut(QImage texture, const QImage& coverage)
{
    QPainter cutter(&texture);
    cutter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    cutter.drawImage(0, 0, coverage);
    return texture;
}

// The colour wherever something is covered, as strong as it is covered.
QImage Colored(QImage coverage, const QColor& color)
{
    QVector<QRgb> strengths;
    for (int i = 0; i < 256; ++i)
        strengths.append(qRgba(color.red(), color.green(), color.blue(), qRound(color.alpha() * i / 255.0)));
    coverage.reinterpretAsFormat(QImage::Format_Indexed8);
    coverage.setColorTable(strengths);
    return coverage;
}

} // namespace

// Whether it looks the same wherever parts of the object lie over each other, painted in one piece or one by one.
bool ContentPainter::Covers(const Paint& paint, const Around& around)
{
    return paint.IsColor() && paint.color.alpha() == 255 && around.alpha >= 1 &&
           around.object.blendMode == BlendMode::Normal;
}

QColor ContentPainter::SeenColor(const Paint& paint, const Around& around)
{
    QColor color = paint.color;
    color.setAlphaF(color.alphaF() * around.alpha);
    return color;
}

double ContentPainter::PixelCostOf(const Paint& paint, const Around& around)
{
    if (around.object.blendMode != BlendMode::Normal)
        return ModePixel;
    return Covers(paint, around) ? OpaquePixel : BlendedPixel;
}

void ContentPainter::FillShape(const QPainterPath& outline, const Paint& paint, const Around& around)
{
    const ShapeCost cost = FillCost(outline, painter->worldTransform(), ground, PixelCostOf(paint, around));
    if (work.Take(cost.units))
        FillCounted(outline, paint, around, cost.isDense);
}

// What was counted as work already.
void ContentPainter::FillCounted(const QPainterPath& outline, const Paint& paint, const Around& around, bool isDense)
{
    if (isDense)
        FillDensely(outline, paint, around);
    else if (paint.IsColor())
        painter->fillPath(outline, SeenColor(paint, around));
    else
        FillWithTexture(outline, paint, around);
}

// What it covers is found out first, and then coloured.
void ContentPainter::FillDensely(const QPainterPath& outline, const Paint& paint, const Around& around)
{
    const QPainterPath inPixels = MappedShape(outline, painter->worldTransform());
    const QRectF filled = inPixels.controlPointRect();
    const QRect box = PixelsWithin(filled, VisiblePixels(*painter));
    QImage texture;
    if (!paint.IsColor()) {
        texture = TextureWithin(paint, around, box, filled); // it counts even where nothing of it is seen
        if (texture.isNull())
            return;
    }
    const QImage coverage = box.isEmpty() ? QImage() : CoverageOf(inPixels, box, isCancelled);
    if (coverage.isNull())
        return;
    const QImage covered =
        paint.IsColor() ? Colored(coverage, SeenColor(paint, around)) : CutOut(std::move(texture), coverage);
    const PainterScope scope(*painter);
    painter->setWorldTransform(QTransform());
    painter->setOpacity(paint.IsColor() ? 1 : paint.color.alphaF() * around.alpha);
    painter->drawImage(box.topLeft(), covered);
}

void ContentPainter::FillWithTexture(const QPainterPath& outline, const Paint& paint, const Around& around)
{
    const QPainterPath inPixels = MappedShape(outline, painter->worldTransform());
    const QRectF filled = inPixels.controlPointRect();
    const QRect box = PixelsWithin(filled, VisiblePixels(*painter));
    const QImage texture = TextureWithin(paint, around, box, filled);
    if (texture.isNull())
        return;
    const PainterScope scope(*painter);
    painter->setWorldTransform(QTransform());
    painter->setOpacity(paint.color.alphaF() * around.alpha);
    QBrush brush(texture);
    brush.setTransform(QTransform::fromTranslate(box.x(), box.y()));
    painter->fillPath(inPixels, brush);
}

// Counted as work, what it covers included.
QImage ContentPainter::TextureWithin(const Paint& paint, const Around& around, const QRect& box, const QRectF& filled)
{
    if (!work.Take(TextureCostOf(paint, around, filled)))
        return QImage();
    const QScopedValueRollback<WorkGround> groundAround(ground);
    ground.reach &= ground.toStandard.mapRect(filled);
    return box.isEmpty() ? QImage() : TextureOf(paint, around, box, filled);
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
    // Translucent pieces that lie over each other would show twice: they are painted as one outline.
    const bool isCovering = Covers(paint, around);
    const bool isOneByOne = isCovering && IsOfSinglePieces(outline, pen);
    const QTransform toPixels = painter->worldTransform();
    const LineFacts facts{width, DashesAlong(outline, pen), isOneByOne};
    const ShapeCost cost = StrokeCost(outline, facts, toPixels, ground, PixelCostOf(paint, around));
    if (!work.Take(cost.units))
        return;
    if (isCovering && !cost.isDense) {
        QPen colored = pen;
        colored.setBrush(SeenColor(paint, around));
        if (isOneByOne)
            StrokeOneByOne(*painter, outline, colored);
        else
            painter->strokePath(outline, colored);
        return;
    }
    FillCounted(LineAround(outline, pen, ScaleOf(toPixels)), paint, around, cost.isDense);
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
