#pragma once

#include <QByteArray>
#include <QColor>

namespace samples {

// Pictures of 64 by 64 pixels in one colour, whose file carries a colour profile; without one they are plain. What they
// look like comes of both.
QByteArray ProfiledPng(const QColor& colour, const QByteArray& profile);
QByteArray ProfiledGrayPng(int level, const QByteArray& profile);
QByteArray ProfiledSixteenGraysPng(int level, const QByteArray& profile); // 0 to 15
QByteArray ProfiledPalettePng(const QColor& colour, const QByteArray& profile);
QByteArray ProfiledJpeg(const QColor& colour, const QByteArray& profile); // the profile comes in many pieces
QByteArray ProfiledGrayJpeg(int level, const QByteArray& profile);
QByteArray ProfiledTiff(const QColor& colour, const QByteArray& profile);
// All of the first of four inks; with the mark of the programs that store them the other way round, or without it.
QByteArray ProfiledInkJpeg(bool isMarked, const QByteArray& profile);

} // namespace samples
