#pragma once

#include "objects.h"

#include <QVector>

#include <vector>

namespace ofd {

// Maps some characters of a text to glyphs of an embedded font.
struct GlyphMapping
{
    int firstCode = 0;
    int codeCount = 1;
    QVector<quint32> glyphs;
};

struct TextCode
{
    double x = 0;
    double y = 0;
    QVector<uint> codes;     // Unicode code points
    QVector<double> deltasX; // expanded; at most one more than there are glyphs
    QVector<double> deltasY;
    bool hasDeltas = false;             // either list was given
    std::vector<GlyphMapping> mappings; // by rising firstCode, not overlapping
};

struct TextObject : GraphicObject
{
    TextObject()
        : GraphicObject(Kind::Text)
    {
    }

    int fontId = 0;
    double size = 0;
    double horizontalScale = 1;
    int characterDirection = 0; // degrees clockwise: 0, 90, 180 or 270
    int readDirection = 0;
    int weight = 400;
    bool isItalic = false;
    bool isFilled = true;
    bool isStroked = false;
    Paint fillPaint;
    Paint strokePaint;
    std::vector<TextCode> codes;
};

} // namespace ofd
