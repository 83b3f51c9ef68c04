#pragma once

#include <ofd/model/content.h>

#include <memory>

#include <pugixml.hpp>

namespace ofd {

// Turns elements of a page, template, composite unit or annotation into objects. Never fails: what cannot be understood
// is left out or gets its default.

// A page or template; `resources` must hold what its objects may refer to.
std::shared_ptr<PageContent> ReadPageContent(const pugi::xml_node& page,
                                             const std::shared_ptr<const Resources>& resources);
// The objects below the element (a layer, a block, an appearance), drawn with no outer draw parameters.
ObjectList ReadObjects(const pugi::xml_node& parent, const Resources& resources);

} // namespace ofd
