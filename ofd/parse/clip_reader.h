#pragma once

#include <ofd/model/objects.h>

#include <pugixml.hpp>

namespace ofd {

struct Resources;

// The clips of an object whose boundary and matrix are known. A clip without an area that can be read cuts nothing and
// is reported.
std::vector<Clip> ReadClips(const pugi::xml_node& element, const GraphicObject& object, const Resources& resources);

} // namespace ofd
