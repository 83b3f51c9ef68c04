#include "font.h"

#include <QVector>

namespace samples {

namespace {

// Thousandths of an em for the characters from blank to tilde.
const short kSansWidths[] = {278,  278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333, 278, 278,
                             556,  556, 556, 556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556,
                             1015, 667, 667, 722, 722, 667, 611, 778, 722, 278, 500, 667, 556, 833, 722, 778,
                             667,  778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 278, 278, 278, 469, 556,
                             333,  556, 556, 500, 556, 556, 278, 556, 556, 222, 222, 500, 222, 833, 556, 556,
                             556,  556, 333, 500, 278, 556, 500, 722, 500, 500, 500, 334, 260, 334, 584};

double SansAdvance(uint codePoint)
{
    if (codePoint >= 32 && codePoint < 127)
        return kSansWidths[codePoint - 32] / 1000.0;
    return 0.556;
}

} // namespace

bool IsWide(uint codePoint)
{
    return codePoint >= 0x2E80 || (codePoint >= 0x2014 && codePoint <= 0x2026) || codePoint == 0x00D7;
}

int GlyphIndex(const Font& font, uint codePoint)
{
    const QVector<quint32> glyphs = font.file->glyphIndexesForString(QString::fromUcs4(&codePoint, 1));
    return glyphs.isEmpty() ? 0 : int(glyphs.first());
}

double Advance(const Font& font, uint codePoint)
{
    if (font.face == Face::Embedded) {
        const QVector<QPointF> advances = font.file->advancesForGlyphIndexes({quint32(GlyphIndex(font, codePoint))});
        return advances.isEmpty() ? 0.5 : advances.first().x() / font.file->pixelSize();
    }
    if (IsWide(codePoint))
        return 1.0;
    switch (font.face) {
    case Face::Sans:
        return SansAdvance(codePoint);
    case Face::Mono:
        return 0.6;
    default:
        return 0.5;
    }
}

double TextWidth(const Font& font, const QString& text)
{
    double width = 0;
    for (uint codePoint : text.toUcs4())
        width += Advance(font, codePoint);
    return width;
}

} // namespace samples
