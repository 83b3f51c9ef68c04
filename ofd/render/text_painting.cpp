// How a page's painter paints texts.
#include "glyph_stamps.h"
#include "page_painter.h"
#include "painting_tools.h"
#include "painting_work.h"

#include <ofd/model/document_store.h>
#include <ofd/model/united_areas.h>
#include <ofd/package/package.h>
#include <ofd/text/font_store.h>
#include <ofd/text/glyph_layout.h>

namespace ofd {

namespace {

constexpr double ClipLetterCost = 20'000; // as a part of one outline, which is walked again and again

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
    outlines.first().addPath(Clockwise(glyph));
}

double CountLetters(const TextObject& object)
{
    double count = 0;
    for (const TextCode& code : object.codes) {
        count += code.codes.size();
        for (const GlyphMapping& mapping : code.mappings)
            count += mapping.glyphs.size();
    }
    return count;
}

} // namespace

void ContentPainter::PaintText(const TextObject& object, const Around& around)
{
    // Never cut to the boundary, which is often empty.
    painter->setWorldTransform(object.toContainer, true);
    const double lettersPx = object.size * ScaleOf(painter->worldTransform() * ground.toStandard);
    const double letterArea = std::min(lettersPx * lettersPx, AreaOf(ground.reach));
    if (!work.Take(CountLetters(object) * (GlyphCost + letterArea)))
        return;
    const TextLayout layout = LayOutText(object, around.resources, *package, store.GetFonts());
    const Paint& fill = object.fillPaint;
    const bool isStroked = object.isStroked && object.strokePaint.IsVisible();
    const bool canBeStamped = object.isFilled && !isStroked && Covers(fill, around);
    if (canBeStamped && StampGlyphs(layout, fill.color))
        return;
    FillGlyphs(layout, object, around);
}

// Lays down kept pictures of the glyphs; false, and nothing painted, when they are too large for that.
bool ContentPainter::StampGlyphs(const TextLayout& layout, const QColor& color)
{
    const QTransform toPixels = painter->worldTransform();
    for (const PlacedGlyph& glyph : layout.glyphs) {
        if (glyph.extraWeight > 0 || !GlyphStamps::IsSmall(glyph.toObject * toPixels))
            return false;
    }
    painter->setWorldTransform(QTransform());
    for (const PlacedGlyph& glyph : layout.glyphs) {
        if (!glyph.face)
            continue;
        QPoint origin;
        const GlyphStamp stamp =
            store.GetStamps().GetStamp(*glyph.face, glyph.glyph, glyph.toObject * toPixels, color.rgba(), origin);
        if (!stamp.image.isNull())
            painter->drawImage(origin + stamp.topLeft, stamp.image);
    }
    return true;
}

void ContentPainter::FillGlyphs(const TextLayout& layout, const TextObject& object, const Around& around)
{
    const bool isFilled = object.isFilled && object.fillPaint.IsVisible();
    const bool isStroked = object.isStroked && object.strokePaint.IsVisible();
    const bool isCovering =
        (!isFilled || Covers(object.fillPaint, around)) && (!isStroked || Covers(object.strokePaint, around));
    double extraWeight = 0;
    QVector<QPainterPath> outlines;
    for (const PlacedGlyph& glyph : layout.glyphs) {
        if (glyph.face)
            AddOutline(outlines, glyph.toObject.map(glyph.face->OutlineOf(glyph.glyph)), isCovering);
        extraWeight = glyph.extraWeight;
    }
    const QPen extraPen(Qt::black, extraWeight);
    const bool isOneShape = isFilled && extraWeight > 0 && !isCovering;
    for (const QPainterPath& outline : qAsConst(outlines)) {
        if (isOneShape) {
            QPainterPath shape = LineAround(outline, extraPen, ScaleOf(painter->worldTransform()));
            shape.addPath(outline);
            FillShape(shape, object.fillPaint, around);
            continue;
        }
        if (isFilled)
            FillShape(outline, object.fillPaint, around);
        if (isFilled && extraWeight > 0)
            StrokeWith(extraPen, extraWeight, outline, object.fillPaint, around);
    }
    for (const QPainterPath& outline : qAsConst(outlines)) {
        if (isStroked)
            StrokeShape(outline, object.stroke, object.strokePaint, around);
    }
}

// Letters count with their line where they have one.
QPainterPath ContentPainter::OutlineOf(const Clip& clip, const Resources& resources)
{
    if (clip.texts.empty())
        return PrivateCopy(clip.outline);
    QVector<QPainterPath> areas;
    if (!clip.outline.isEmpty())
        areas.append(PrivateCopy(clip.outline));
    for (const ClipText& part : clip.texts) {
        if (work.Take(CountLetters(*part.text) * ClipLetterCost))
            areas.append(part.toContainer.map(LettersOf(*part.text, resources)));
    }
    return UnitedAreas(areas);
}

QPainterPath ContentPainter::LettersOf(const TextObject& text, const Resources& resources)
{
    QPainterPath letters;
    letters.setFillRule(Qt::WindingFill);
    const TextLayout layout = LayOutText(text, resources, *package, store.GetFonts());
    for (const PlacedGlyph& glyph : layout.glyphs) {
        if (glyph.face)
            letters.addPath(Clockwise(glyph.toObject.map(glyph.face->OutlineOf(glyph.glyph))));
    }
    QPainterPath shape;
    if (text.isStroked)
        shape = LineAround(letters, PenOf(text.stroke, letters), ScaleOf(painter->worldTransform()));
    if (text.isFilled)
        shape.addPath(letters);
    shape.setFillRule(Qt::WindingFill);
    return shape;
}

} // namespace ofd
