#pragma once

#include <ofd/model/content.h>

#include <pugixml.hpp>

namespace ofd {

struct ColorSpace;

// The colour or shading that a colour element describes. A shading wins over a value, which is the fallback for kinds
// that are not drawn; without any of them all channels are 0.
Paint ReadPaint(const pugi::xml_node& color, const Resources& resources);

// A colour from channel values in the range of the colour space (clamped); missing channels are 0.
QColor ColorFromChannels(const QVector<double>& channels, const ColorSpace& space);

} // namespace ofd
