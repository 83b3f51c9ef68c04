#pragma once

#include <memory>

#include <pugixml.hpp>

namespace ofd {

struct Pattern;
struct Resources;

// Null when its cell has no size. Objects of the cell start from the defaults, whatever is around what they paint.
std::shared_ptr<const Pattern> ReadPattern(const pugi::xml_node& element, const Resources& resources);

} // namespace ofd
