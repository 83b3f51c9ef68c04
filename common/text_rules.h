#pragma once

#include <QString>

// Cuts leading and trailing blanks, and only the character " " counts as one; a text of blanks only becomes empty.
QString RemoveBlanks(const QString& text);

// The most characters a name typed or taken from the page may have.
constexpr int MaxNameLength = 100;

// The first `most` characters; one less where the cut would halve a character of two code units, which no file can
// hold.
QString CutText(const QString& text, int most);
