#pragma once

#include <QByteArray>
#include <QVector>

// TrueType fonts that ask for more than they are, in as few bytes as possible.

namespace samples {

// A glyph put together from others, by their indices.
QByteArray GlyphOfGlyphs(const QVector<int>& parts);
// A glyph of one contour that runs to and fro between two places.
QByteArray GlyphOfPoints(int points);
// A font of these glyphs, glyph 0 first.
QByteArray FontOfGlyphs(const QVector<QByteArray>& glyphs);
// Glyphs 1 to `depth`, each of which uses the next so many times; then the last.
QByteArray FontOfNestedGlyphs(int depth, int times, const QByteArray& last);
// A font of so many glyphs; each second one is this.
QByteArray FontOfOneGlyph(const QByteArray& glyph, int count);
// A bare CFF font whose glyphs from 1 to 200 call a subroutine that calls the next so many times, and so on.
QByteArray CffOfCalls(int calls);

} // namespace samples
