#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace samples {

// A font of our own of capital letters, digits and blank, made of square blocks, so that a page shows at a glance
// whether the embedded font was used. Every character is 0.6 em wide.
struct BlockFontTables
{
    bool hasCmap = true;
    bool hasNames = true; // name, OS/2 and post
};

QByteArray BlockTrueType(const BlockFontTables& tables = {});
// The same glyphs as a bare CFF font, without an OpenType wrapping.
QByteArray BlockCff();

// A rectangle of a glyph, in thousandths of an em, upward.
struct Block
{
    int left, bottom, right, top;
};

constexpr int kBlockAdvance = 600;
// The rectangles of a glyph; glyph 0 is a filled box.
QVector<Block> BlocksOf(int glyph);
int BlockGlyphCount();
// The character of a glyph from 1.
QChar BlockLetter(int glyph);
// Glyph index of a character in both; 0 for what the font lacks.
int BlockGlyph(QChar character);

} // namespace samples
