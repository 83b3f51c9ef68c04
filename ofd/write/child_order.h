#pragma once

#include <QByteArray>

#include <functional>
#include <vector>

#include <pugixml.hpp>

namespace ofd {

class XmlEdit;

// Brings the child elements of a list into a new order with as few edits as possible. `matches` has for each wanted
// child its position in `elements`, -1 when it is not there; each position once. What is wanted no more is removed,
// what moves or is new is inserted with the bytes that `newBytes` gives for it. Tells for each wanted child whether its
// element stays where it is.
std::vector<bool> ArrangeChildren(XmlEdit& edit, const pugi::xml_node& list,
                                  const std::vector<pugi::xml_node>& elements, const std::vector<int>& matches,
                                  const std::function<QByteArray(int)>& newBytes);

} // namespace ofd
