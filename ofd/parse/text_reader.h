#pragma once

#include <ofd/model/content.h>

#include <pugixml.hpp>

namespace ofd {

// Reads what only text objects have: font, size, directions, and the characters with their places.
void ReadTextObject(const pugi::xml_node& element, TextObject& text);

// Expands a list of distances: numbers, or "g n v" for n times v. At most `limit` values come out.
QVector<double> ExpandDeltas(std::string_view list, int limit);

} // namespace ofd
