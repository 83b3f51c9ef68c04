#include "object_writer.h"

#include <cmath>

namespace samples {

namespace {

// The part of the em above the base line that a text object's boundary covers.
constexpr double kAscent = 0.88;

QString WithoutBlanksAtEnds(QString line)
{
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    while (line.startsWith(QLatin1Char(' ')))
        line.remove(0, 1);
    return line;
}

QVector<QString> WrapLines(const QString& text, const TextStyle& style, double widthMm)
{
    QVector<QString> lines;
    QString line, word;
    double lineWidth = 0, wordWidth = 0;
    auto endWord = [&] {
        if (lineWidth + wordWidth > widthMm && !line.isEmpty()) {
            lines.append(WithoutBlanksAtEnds(line));
            line.clear();
            lineWidth = 0;
        }
        line += word;
        lineWidth += wordWidth;
        word.clear();
        wordWidth = 0;
    };
    for (uint codePoint : text.toUcs4()) {
        const bool isWide = IsWide(codePoint);
        // A closing mark stays on the line of what it closes.
        const bool closes = QString::fromUtf8("，。；：、！？）」”").contains(QString::fromUcs4(&codePoint, 1));
        if (isWide && !closes)
            endWord();
        word += QString::fromUcs4(&codePoint, 1);
        wordWidth += Advance(style.font, codePoint) * style.sizeMm + style.letterSpaceMm;
        if (codePoint == ' ')
            endWord();
    }
    endWord();
    lines.append(WithoutBlanksAtEnds(line));
    return lines;
}

void WriteGlyphs(XmlPart& xml, const TextStyle& style, const QString& text)
{
    const QVector<uint> codes = text.toUcs4();
    QStringList glyphs;
    for (uint code : codes)
        glyphs.append(Num(GlyphIndex(style.font, code)));
    xml.Open("CGTransform",
             {{"CodePosition", "0"}, {"CodeCount", Num(codes.size())}, {"GlyphCount", Num(codes.size())}});
    xml.Leaf("Glyphs", {}, glyphs.join(QLatin1Char(' ')));
    xml.Close();
}

Attributes TextAttributes(int id, const QRectF& boundary, const TextStyle& style)
{
    Attributes attributes{
        {"ID", Num(id)}, {"Boundary", Box(boundary)}, {"Font", Num(style.font.id)}, {"Size", Num(style.sizeMm)}};
    if (style.hScale != 1)
        attributes.push_back({"HScale", Num(style.hScale)});
    if (style.charDirection != 0)
        attributes.push_back({"CharDirection", Num(style.charDirection)});
    if (style.weight != 400)
        attributes.push_back({"Weight", Num(style.weight)});
    if (style.isItalic)
        attributes.push_back({"Italic", "true"});
    if (style.isOutlined)
        attributes += Attributes{{"Stroke", "true"}, {"Fill", "false"}, {"LineWidth", "0.2"}};
    return attributes;
}

} // namespace

QString ColourValue(const QColor& colour)
{
    return QStringLiteral("%1 %2 %3").arg(colour.red()).arg(colour.green()).arg(colour.blue());
}

Attributes ColourAttributes(const QColor& colour)
{
    Attributes attributes{{"Value", ColourValue(colour)}};
    if (colour.alpha() != 255)
        attributes.push_back({"Alpha", Num(colour.alpha())});
    return attributes;
}

QString Deltas(const QString& text, const TextStyle& style)
{
    const QVector<uint> codes = text.toUcs4();
    QStringList items;
    for (int at = 0; at + 1 < codes.size();) {
        const QString step = Num(Advance(style.font, codes[at]) * style.sizeMm * style.hScale + style.letterSpaceMm);
        int count = 0;
        while (at + 1 < codes.size() &&
               Num(Advance(style.font, codes[at]) * style.sizeMm * style.hScale + style.letterSpaceMm) == step) {
            ++count;
            ++at;
        }
        if (count > 2)
            items.append(QStringLiteral("g %1 %2").arg(count).arg(step));
        else
            for (int k = 0; k < count; ++k)
                items.append(step);
    }
    return items.join(QLatin1Char(' '));
}

ObjectWriter::ObjectWriter(XmlPart& xml, Ids& ids)
    : xml(xml)
    , ids(ids)
{
}

int ObjectWriter::Text(const QPointF& at, const QString& text, const TextStyle& style)
{
    const int id = ids.Next();
    const double ascent = kAscent * style.sizeMm;
    const double width =
        TextWidth(style.font, text) * style.sizeMm * style.hScale + style.letterSpaceMm * (text.toUcs4().size() - 1);
    const QRectF boundary(at.x(), at.y() - ascent, width, style.sizeMm * 1.12);
    xml.Open("TextObject", TextAttributes(id, boundary, style));
    xml.Leaf(style.isOutlined ? "StrokeColor" : "FillColor", ColourAttributes(style.colour));
    if (style.hasGlyphs)
        WriteGlyphs(xml, style, text);
    Attributes code{{"X", "0"}, {"Y", Num(ascent)}};
    const QString deltas = Deltas(text, style);
    if (!deltas.isEmpty())
        code.push_back({"DeltaX", deltas});
    xml.Leaf("TextCode", code, text);
    xml.Close();
    return id;
}

int ObjectWriter::TextRight(const QPointF& at, const QString& text, const TextStyle& style)
{
    return Text(at - QPointF(TextWidth(style.font, text) * style.sizeMm * style.hScale, 0), text, style);
}

int ObjectWriter::TextCentred(const QPointF& at, const QString& text, const TextStyle& style)
{
    return Text(at - QPointF(TextWidth(style.font, text) * style.sizeMm * style.hScale / 2, 0), text, style);
}

int ObjectWriter::TextTurned(const QPointF& at, double degrees, const QString& text, const TextStyle& style)
{
    const int id = ids.Next();
    const double width = TextWidth(style.font, text) * style.sizeMm;
    const double half = width / 2 + style.sizeMm;
    const double cosine = std::cos(degrees * M_PI / 180), sine = std::sin(degrees * M_PI / 180);
    const QRectF boundary(at - QPointF(half, half), QSizeF(2 * half, 2 * half));
    Attributes attributes = TextAttributes(id, boundary, style);
    attributes.push_back({"CTM", Nums({cosine, sine, -sine, cosine, half, half})});
    xml.Open("TextObject", attributes);
    xml.Leaf("FillColor", ColourAttributes(style.colour));
    Attributes code{{"X", Num(-width / 2)}, {"Y", "0"}};
    const QString deltas = Deltas(text, style);
    if (!deltas.isEmpty())
        code.push_back({"DeltaX", deltas});
    xml.Leaf("TextCode", code, text);
    xml.Close();
    return id;
}

double ObjectWriter::Paragraph(const QPointF& at, double widthMm, const QString& text, const TextStyle& style,
                               double leadingMm, QVector<int>* written)
{
    double y = at.y();
    for (const QString& line : WrapLines(text, style, widthMm)) {
        const int id = Text(QPointF(at.x(), y), line, style);
        if (written)
            written->append(id);
        y += leadingMm;
    }
    return y;
}

int ObjectWriter::Path(const QRectF& boundary, const QString& data, const PathStyle& style)
{
    const int id = ids.Next();
    Attributes attributes{{"ID", Num(id)}, {"Boundary", Box(boundary)}, {"LineWidth", Num(style.widthMm)}};
    if (!style.stroke.isValid())
        attributes.push_back({"Stroke", "false"});
    const bool isFilled = style.fill.isValid() || style.fillPattern;
    if (isFilled)
        attributes.push_back({"Fill", "true"});
    xml.Open("PathObject", attributes + style.more);
    if (style.actions)
        style.actions(xml);
    if (style.clips)
        style.clips(xml);
    if (style.stroke.isValid())
        xml.Leaf("StrokeColor", ColourAttributes(style.stroke));
    if (style.fillPattern) {
        xml.Open("FillColor");
        style.fillPattern(xml);
        xml.Close();
    } else if (isFilled) {
        xml.Leaf("FillColor", ColourAttributes(style.fill));
    }
    xml.Leaf("AbbreviatedData", {}, data);
    xml.Close();
    return id;
}

int ObjectWriter::Line(const QPointF& from, const QPointF& to, const PathStyle& style)
{
    // Half a line width around the line, so that the boundary holds all of its ink.
    const double margin = style.widthMm / 2;
    const QRectF boundary = QRectF(from, to).normalized().adjusted(-margin, -margin, margin, margin);
    const QPointF a = from - boundary.topLeft(), b = to - boundary.topLeft();
    return Path(boundary, QStringLiteral("M %1 L %2").arg(Nums({a.x(), a.y()}), Nums({b.x(), b.y()})), style);
}

int ObjectWriter::Rect(const QRectF& rect, const PathStyle& style)
{
    const double m = style.stroke.isValid() ? style.widthMm / 2 : 0;
    const QString data = QStringLiteral("M %1 L %2 L %3 L %4 C")
                             .arg(Nums({m, m}), Nums({m + rect.width(), m}),
                                  Nums({m + rect.width(), m + rect.height()}), Nums({m, m + rect.height()}));
    return Path(rect.adjusted(-m, -m, m, m), data, style);
}

int ObjectWriter::Ellipse(const QRectF& rect, const PathStyle& style)
{
    const double m = style.stroke.isValid() ? style.widthMm / 2 : 0;
    const double rx = rect.width() / 2, ry = rect.height() / 2;
    const double kx = rx * 0.5523, ky = ry * 0.5523, cx = rx + m, cy = ry + m;
    const QString data = QStringLiteral("M %1 B %2 B %3 B %4 B %5 C")
                             .arg(Nums({cx - rx, cy}), Nums({cx - rx, cy - ky, cx - kx, cy - ry, cx, cy - ry}),
                                  Nums({cx + kx, cy - ry, cx + rx, cy - ky, cx + rx, cy}),
                                  Nums({cx + rx, cy + ky, cx + kx, cy + ry, cx, cy + ry}),
                                  Nums({cx - kx, cy + ry, cx - rx, cy + ky, cx - rx, cy}));
    return Path(rect.adjusted(-m, -m, m, m), data, style);
}

int ObjectWriter::Image(const QRectF& rect, int resource, const Attributes& more)
{
    const int id = ids.Next();
    Attributes attributes{{"ID", Num(id)}, {"Boundary", Box(rect)}, {"ResourceID", Num(resource)}};
    bool hasMatrix = false;
    for (const auto& attribute : more)
        hasMatrix = hasMatrix || attribute.first == QLatin1String("CTM");
    if (!hasMatrix)
        attributes.push_back({"CTM", Nums({rect.width(), 0, 0, rect.height(), 0, 0})});
    xml.Leaf("ImageObject", attributes + more);
    return id;
}

int ObjectWriter::Composite(const QRectF& boundary, int resource, const Attributes& more)
{
    const int id = ids.Next();
    xml.Leaf("CompositeObject",
             Attributes{{"ID", Num(id)}, {"Boundary", Box(boundary)}, {"ResourceID", Num(resource)}} + more);
    return id;
}

} // namespace samples
