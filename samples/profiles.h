#pragma once

#include <QByteArray>

namespace samples {

// Colour profiles made for the purpose, so that the colours that come of them can be reasoned out.
QByteArray LinearGrayProfile(); // half of the value is half of the light
QByteArray LinearRgbProfile();  // the usual colours, their light linear
// Four inks of which the first alone gives the colour of InkLab, the fourth alone black, the others nothing.
QByteArray InkProfile();

// Lightness and the two axes of colour of a full first ink.
constexpr double InkLab[3] = {60, -30, 20};

} // namespace samples
