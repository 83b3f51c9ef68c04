#pragma once

#include <QByteArray>

namespace samples {

// The picture of four coloured quarters in further kinds of files.
QByteArray QuadrantsBmp();
QByteArray QuadrantsGif();
QByteArray QuadrantsTiff();    // not compressed
QByteArray QuadrantsInkTiff(); // of four inks
// As a JPEG of four inks; with the mark of the programs that store them the other way round, or without it.
QByteArray QuadrantsInkJpeg(bool isMarked);
// The same kind of file, all of the first ink and none of the others.
QByteArray FirstInkJpeg(bool isMarked);
// Black left half, white right half, with a gray stripe of half brightness in the middle of both: a mask.
QByteArray MaskPng();
// A white picture that is transparent in its lower half.
QByteArray TransparentMaskPng();

} // namespace samples
