#pragma once

#include <QByteArray>

namespace samples {

// Pictures drawn in memory; all without text, so that no font of the machine shows in them.
QByteArray LandscapePng();  // hills and a sun, opaque
QByteArray LandscapeJpeg(); // the same as a baseline JPEG
QByteArray LogoPng();       // coloured discs on a transparent ground
QByteArray CodePng();       // a square code of 25 x 25 modules in black on white, one bit a pixel
QByteArray QuadrantsPng();  // four coloured quarters: red, green / blue, yellow
QByteArray QuadrantsJpeg(); // the same as a baseline JPEG
// The modules of CodePng() as a file of JBIG2, four pixels a module.
QByteArray CodeJbig2();

} // namespace samples
