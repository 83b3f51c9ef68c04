#pragma once

#include "font_face.h"

#include <QPointF>
#include <QRectF>
#include <QString>

#include <memory>
#include <vector>

namespace ofd {

class DocumentStore;
class Package;
class FontStore;
struct Resources;
struct TextObject;

// A glyph in its place.
struct PlacedGlyph
{
    std::shared_ptr<const FontFace> face; // null: nothing is drawn
    quint32 glyph = 0;
    QTransform toObject;    // from the font's space (1 = the font size, y down) to the object's local space
    double extraWeight = 0; // width of a line around the outline that makes it bolder, in local units
};

// What is selected and extracted as one: mostly one character with its glyph, or all of a mapping of several to
// several.
struct TextCluster
{
    QString text;
    QPolygonF box;      // of the cell, in the object's local space
    QPointF baseline;   // of its first glyph
    QPointF along;      // the way the text runs, in the object's local space; 1 long
    int firstGlyph = 0; // in TextLayout::glyphs
    int glyphCount = 0;
    bool isFirst = false; // of a piece that the file writes by itself
};

struct TextLayout
{
    std::vector<PlacedGlyph> glyphs;
    std::vector<TextCluster> clusters;
};

// Places the glyphs of a text object. Any thread.
TextLayout LayOutText(const TextObject& text, const Resources& resources, const Package& package, FontStore& fonts);

} // namespace ofd
