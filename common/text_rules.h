#pragma once

#include <QString>

// Cuts leading and trailing blanks, and only the character " " counts as one; a text of blanks only becomes empty.
QString RemoveBlanks(const QString& text);

// The most characters a name typed or taken from the page may have.
constexpr int MaxNameLength = 100;
