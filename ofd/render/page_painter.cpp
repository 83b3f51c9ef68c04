#include "page_painter.h"

#include "glyph_stamps.h"
#include "image_store.h"
#include "shading_brush.h"

#include <ofd/model/document_store.h>
#include <ofd/package/limits.h>
#include <ofd/package/package.h>
#include <ofd/text/font_store.h>
#include <ofd/text/glyph_layout.h>

#include <cmath>

namespace ofd {

namespace {

constexpr double ThinnestLinePx = 0.7; // thinner lines would fade away on the screen
constexpr double MaxDashesInLine = 20'000;
constexpr double MaxScale = 1e6; // pixels a unit; beyond it nothing sensible can be painted

// Pixels for one unit of the painter's space, the mean of both directions.
double ScaleOf(const QTransform& transform)
{
    return std::sqrt(std::abs(transform.determinant()));
}

bool IsUsable(const QTransform& transform)
{
    const double scale = ScaleOf(transform);
    return std::isfinite(scale) && scale > 0 && scale < MaxScale && std::isfinite(transform.dx()) &&
           std::isfinite(transform.dy());
}

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

// Averages a picture down to about the size it is painted in; painting alone would only pick some of its pixels.
QImage ShrunkTo(const QImage& image, const QTransform& unitToPixels)
{
    const double width = std::hypot(unitToPixels.m11(), unitToPixels.m12());
    const double height = std::hypot(unitToPixels.m21(), unitToPixels.m22());
    const bool isMuchLarger = image.width() > 2 * width || image.height() > 2 * height;
    if (!isMuchLarger || width < 1 || height < 1)
        return image;
    const QSize target(std::min(image.width(), int(std::ceil(width))),
                       std::min(image.height(), int(std::ceil(height))));
    return image.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// Each glyph is a path of its own where the paint covers what it overlaps: the rasterizer's time grows with the square
// of what crosses a row of pixels. Translucent glyphs are one path, since overlaps would show.
void AddOutline(QVector<QPainterPath>& outlines, QPainterPath&& glyph, bool isCovering)
{
    if (isCovering) {
        outlines.append(std::move(glyph));
        return;
    }
    if (outlines.isEmpty()) {
        outlines.append(QPainterPath());
        outlines.first().setFillRule(Qt::WindingFill);
    }
    outlines.first().addPath(glyph);
}

} // namespace

ContentPainter::ContentPainter(QPainter& painter, DocumentStore& store, std::shared_ptr<const Package> package,
                               std::function<bool()> isCancelled)
    : painter(painter)
    , store(store)
    , package(std::move(package))
    , isCancelled(std::move(isCancelled))
{
}

bool ContentPainter::PaintObjects(const ObjectList& objects, const Resources& resources)
{
    for (const std::unique_ptr<const GraphicObject>& object : objects) {
        if (isCancelled && isCancelled())
            return false;
        if (object->isVisible && object->alpha > 0)
            PaintObject(*object, resources);
    }
    return true;
}

void ContentPainter::PaintObject(const GraphicObject& object, const Resources& resources)
{
    if (object.kind == GraphicObject::Kind::Group) {
        PaintObjects(static_cast<const GroupObject&>(object).objects, resources);
        return;
    }
    if (!IsUsable(object.toContainer * painter.worldTransform()))
        return;
    const PainterScope scope(painter);
    switch (object.kind) {
    case GraphicObject::Kind::Path:
        PaintPath(static_cast<const PathObject&>(object));
        break;
    case GraphicObject::Kind::Text:
        PaintText(static_cast<const TextObject&>(object), resources);
        break;
    case GraphicObject::Kind::Image:
        PaintImage(static_cast<const ImageObject&>(object), resources);
        break;
    case GraphicObject::Kind::Composite:
        PaintComposite(static_cast<const CompositeObject&>(object), resources);
        break;
    case GraphicObject::Kind::Group:
        break;
    }
}

// Cuts to the object's clips, and to its boundary where that is a box and what is painted reaches beyond it.
void ContentPainter::ClipTo(const GraphicObject& object, const QRectF& painted)
{
    for (const QPainterPath& clip : object.clips)
        painter.setClipPath(PrivateCopy(clip), Qt::IntersectClip);
    if (object.boundary.width() <= 0 || object.boundary.height() <= 0)
        return;
    const double grow = object.stroke.widthMm * ScaleOf(object.toContainer) / 2;
    const QRectF box = object.boundary.adjusted(-grow, -grow, grow, grow);
    if (!box.contains(painted))
        painter.setClipRect(box, Qt::IntersectClip);
}

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

void ContentPainter::PaintText(const TextObject& object, const Resources& resources)
{
    for (const QPainterPath& clip : object.clips)
        painter.setClipPath(PrivateCopy(clip), Qt::IntersectClip); // never to the boundary, which is often empty
    painter.setWorldTransform(object.toContainer, true);
    const double alpha = object.alpha * groupAlpha;
    TextPaint paint;
    paint.isFilled = object.isFilled && object.fillPaint.IsVisible();
    paint.isStroked = object.isStroked && object.strokePaint.IsVisible();
    if (paint.isFilled)
        paint.fill = BrushOf(object.fillPaint, alpha, object);
    if (paint.isStroked)
        paint.pen = PenOf(object.stroke, BrushOf(object.strokePaint, alpha, object));
    const TextLayout layout = LayOutText(object, resources, *package, store.GetFonts());
    if (paint.CanBeStamped() && StampGlyphs(layout, paint))
        return;
    FillGlyphs(layout, paint);
}

// Lays down kept pictures of the glyphs; false, and nothing painted, when they are too large for that.
bool ContentPainter::StampGlyphs(const TextLayout& layout, const TextPaint& paint)
{
    const QTransform toPixels = painter.worldTransform();
    for (const PlacedGlyph& glyph : layout.glyphs) {
        if (glyph.extraWeight > 0 || !GlyphStamps::IsSmall(glyph.toObject * toPixels))
            return false;
    }
    painter.setWorldTransform(QTransform());
    for (const PlacedGlyph& glyph : layout.glyphs) {
        if (!glyph.face)
            continue;
        QPoint origin;
        const GlyphStamp stamp = store.GetStamps().GetStamp(*glyph.face, glyph.glyph, glyph.toObject * toPixels,
                                                            paint.fill.color().rgba(), origin);
        if (!stamp.image.isNull())
            painter.drawImage(origin + stamp.topLeft, stamp.image);
    }
    return true;
}

void ContentPainter::FillGlyphs(const TextLayout& layout, const TextPaint& paint)
{
    const bool isCovering =
        (!paint.isFilled || paint.fill.isOpaque()) && (!paint.isStroked || paint.pen.brush().isOpaque());
    double extraWeight = 0;
    QVector<QPainterPath> outlines;
    for (const PlacedGlyph& glyph : layout.glyphs) {
        if (glyph.face)
            AddOutline(outlines, glyph.toObject.map(glyph.face->OutlineOf(glyph.glyph)), isCovering);
        extraWeight = glyph.extraWeight;
    }
    for (const QPainterPath& outline : qAsConst(outlines)) {
        if (paint.isFilled)
            painter.fillPath(outline, paint.fill);
        if (paint.isFilled && extraWeight > 0)
            painter.strokePath(outline, QPen(paint.fill, extraWeight));
    }
    for (const QPainterPath& outline : qAsConst(outlines)) {
        if (paint.isStroked)
            painter.strokePath(outline, paint.pen);
    }
}

void ContentPainter::PaintImage(const ImageObject& object, const Resources& resources)
{
    QImage image;
    for (const int id : {object.mediaId, object.substitutionId}) {
        const MediaResource* media = image.isNull() ? resources.FindMedia(id) : nullptr;
        if (media && !media->part.isEmpty())
            image = store.GetImages().GetImage(*package, media->part);
    }
    if (image.isNull())
        return;
    QTransform place = object.toContainer; // from the unit square
    if (!object.hasMatrix)
        place = QTransform::fromScale(object.boundary.width(), object.boundary.height()) * place;
    if (!IsUsable(place * painter.worldTransform()))
        return;
    ClipTo(object, place.mapRect(QRectF(0, 0, 1, 1)));
    painter.setWorldTransform(place, true);
    painter.setOpacity(object.alpha * groupAlpha);
    painter.drawImage(QRectF(0, 0, 1, 1), ShrunkTo(image, painter.worldTransform()));
}

void ContentPainter::PaintComposite(const CompositeObject& object, const Resources& resources)
{
    const CompositeUnit* unit = resources.FindUnit(object.unitId);
    if (!unit || openUnits.contains(unit) || openUnits.size() >= limits::MaxReferenceDepth)
        return;
    for (const QPainterPath& clip : object.clips)
        painter.setClipPath(PrivateCopy(clip), Qt::IntersectClip);
    painter.setWorldTransform(object.toContainer, true);
    openUnits.append(unit);
    const double outerAlpha = groupAlpha;
    groupAlpha *= object.alpha;
    PaintObjects(unit->objects, resources);
    groupAlpha = outerAlpha;
    openUnits.removeLast();
}

} // namespace ofd
