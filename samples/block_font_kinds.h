#pragma once

#include <QByteArray>

namespace samples {

// The block font in other wrappings.
QByteArray BlockOpenTypeCff(); // outlines in a CFF table
// Two faces: the first, "Other Sample", has empty glyphs; the second is "Block Sample".
QByteArray BlockCollection();
QByteArray BlockTypeOneText();   // Type 1, its encrypted part in hexadecimal digits
QByteArray BlockTypeOneBinary(); // Type 1 in segments

// The TrueType font without a table.
QByteArray BlockWithout(const char* table);
// The TrueType font, cut off inside the outlines of its last letter; the directory still tells the whole length.
QByteArray BlockCutOff();
// The TrueType font with a table whose place lies outside the file.
QByteArray BlockWithTableOutside(const char* table);
// The TrueType font with a character map of the simplified Chinese encoding alone, which has 国 as its letter A.
QByteArray BlockWithChineseMap();

} // namespace samples
