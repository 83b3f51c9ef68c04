#pragma once

#include <QRawFont>
#include <QString>

#include <memory>

namespace samples {

// How wide the characters of a font are taken to be when a document is laid out. Fonts that are not embedded have no
// metrics of their own here, so that a document comes out the same on every machine.
enum class Face {
    Cjk,      // full width, other characters half of it
    Sans,     // full width, Latin as in the usual sans faces
    Mono,     // Latin 0.6
    Embedded, // measured in the font file
};

struct Font
{
    int id = 0;
    Face face = Face::Cjk;
    std::shared_ptr<QRawFont> file; // set for Embedded; its pixel size is 1000
};

// Advance in em.
double Advance(const Font& font, uint codePoint);
// Width of the text at size 1.
double TextWidth(const Font& font, const QString& text);
// Index of the character's glyph in an embedded font.
int GlyphIndex(const Font& font, uint codePoint);
bool IsWide(uint codePoint);

} // namespace samples
