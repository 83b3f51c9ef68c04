#pragma once

#include <ofd/model/paint.h>

#include <pugixml.hpp>

namespace ofd {

struct ColorSpace;
struct Resources;

// What a colour element describes. A shading or pattern wins over a value, which is the fallback for those that cannot
// be read; without any of them all channels are 0.
Paint ReadPaint(const pugi::xml_node& color, const Resources& resources);

// The colour of a colour element without a look at shadings and patterns.
QColor ReadColor(const pugi::xml_node& color, const Resources& resources);

// The values of a colour's channels: decimal numbers, or hexadecimal ones behind '#'.
QVector<double> ParseChannels(const char* text);

// A colour from channel values in the range of the colour space (clamped); missing channels are 0.
QColor ColorFromChannels(const QVector<double>& channels, const ColorSpace& space);

} // namespace ofd
