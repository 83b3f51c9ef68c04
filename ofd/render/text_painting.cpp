// How a page's painter paints texts.
#include "glyph_stamps.h"
#include "page_painter.h"
#include "painting_tools.h"

#include <ofd/model/document_store.h>
#include <ofd/package/package.h>
#include <ofd/text/font_store.h>
#include <ofd/text/glyph_layout.h>

namespace ofd {

namespace {

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

} // namespace ofd
