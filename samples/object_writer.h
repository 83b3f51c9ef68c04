#pragma once

#include "font.h"
#include "xml_part.h"

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <functional>

namespace samples {

// Gives out the unit ids of one document, from 1.
class Ids
{
public:
    int Next() { return ++last; }
    int Max() const { return last; }

private:
    int last = 0;
};

using XmlHook = std::function<void(XmlPart&)>;

struct TextStyle
{
    Font font;
    double sizeMm = 4;
    QColor colour = Qt::black;
    double hScale = 1;
    int charDirection = 0; // degrees, clockwise
    int weight = 400;
    bool isItalic = false;
    bool isOutlined = false; // stroked, not filled
    double letterSpaceMm = 0;
    bool hasGlyphs = false; // name the glyphs of an embedded font one by one
};

struct PathStyle
{
    QColor stroke = QColor(0x36, 0x42, 0x5A); // invalid: no stroke
    QColor fill = QColor();                   // invalid: no fill
    double widthMm = 0.25;
    Attributes more;     // further attributes, e.g. Cap or DashPattern
    XmlHook actions;     // writes Actions
    XmlHook clips;       // writes Clips
    XmlHook fillPattern; // writes the child of FillColor
};

// Writes page objects into a part: page, template, annotation and composite content all consist of them. Positions are
// millimetres on the page, or in the space of the container. Every function returns the new object's id.
class ObjectWriter
{
public:
    ObjectWriter(XmlPart& xml, Ids& ids);

    // `at` is the start of the base line.
    int Text(const QPointF& at, const QString& text, const TextStyle& style);
    // The text ends, or is centred, at the point's x.
    int TextRight(const QPointF& at, const QString& text, const TextStyle& style);
    int TextCentred(const QPointF& at, const QString& text, const TextStyle& style);
    // One character, or a short word, turned clockwise about the middle of its base line, which is at the point.
    int TextTurned(const QPointF& at, double degrees, const QString& text, const TextStyle& style);
    // Wraps the text to the width, one text object a line, whose ids go to `written`; returns the base line that a
    // next line would have. Wide blanks at the start are kept: they indent a Chinese paragraph.
    double Paragraph(const QPointF& at, double widthMm, const QString& text, const TextStyle& style, double leadingMm,
                     QVector<int>* written = nullptr);

    // `data` is relative to the boundary's top left corner.
    int Path(const QRectF& boundary, const QString& data, const PathStyle& style);
    int Line(const QPointF& from, const QPointF& to, const PathStyle& style);
    int Rect(const QRectF& rect, const PathStyle& style);
    int Ellipse(const QRectF& rect, const PathStyle& style);

    int Image(const QRectF& rect, int resource, const Attributes& more = {});
    int Composite(const QRectF& boundary, int resource, const Attributes& more = {});

    XmlPart& Xml() { return xml; }
    int NextId() { return ids.Next(); }

private:
    XmlPart& xml;
    Ids& ids;
};

// A seal in the space of its box: an ellipse, a star, the name along the upper arc and a line of text below the star.
void DrawSeal(ObjectWriter& objects, const QSizeF& sizeMm, const QString& name, const QString& below, const Font& font);

// "r g b" of a colour.
QString ColourValue(const QColor& colour);
// Attributes Value and, where it is not opaque, Alpha.
Attributes ColourAttributes(const QColor& colour);
// Steps between the glyphs of the text, equal neighbours written as "g count step".
QString Deltas(const QString& text, const TextStyle& style);

} // namespace samples
