#pragma once

#include <ofd/model/object_actions.h>

#include <pugixml.hpp>

namespace ofd {

// When an action is run.
enum class ActionEvent { Click, DocumentOpen, PageOpen };

// What an action element does, but for jumps inside the document; one that is not understood does nothing. Never null.
std::unique_ptr<G_Action> ReadOtherAction(const pugi::xml_node& action);

// The actions of an object, a page or the document that are run at that event; null when there are none. They may stand
// anywhere among the element's children. Whatever has no known event is run by a click.
std::unique_ptr<const ObjectActions> ReadActions(const pugi::xml_node& holder, ActionEvent event);

} // namespace ofd
