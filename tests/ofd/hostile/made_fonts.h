#pragma once

#include <QByteArray>
#include <QVector>

// TrueType fonts that ask for more than they are, in as few bytes as possible.

namespace made_fonts {

// A glyph put together from others, by their indices.
QByteArray Composite(const QVector<int>& parts);
// A glyph of one contour that runs to and fro between two places.
QByteArray Outline(int points);
// A font of these glyphs, glyph 0 first.
QByteArray TrueType(const QVector<QByteArray>& glyphs);
// A font of so many glyphs; each second one is this.
QByteArray TrueTypeOfOne(const QByteArray& glyph, int count);
// A bare CFF font whose glyph 1 calls a subroutine that calls the next so many times, and so on.
QByteArray CffOfCalls(int calls);

} // namespace made_fonts
