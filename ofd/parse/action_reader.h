#pragma once

#include <ofd/model/object_actions.h>

#include <pugixml.hpp>

namespace ofd {

struct DocumentStructure;

// When an action is meant to be run. Those of a page that comes into view are kept in the file and never run: a place
// must not change under whoever scrolls, nor may a file open anything by itself.
enum class ActionEvent { Click, DocumentOpen, PageOpen };

// What an action element does, but for jumps inside the document; one that is not understood does nothing. Never null.
std::unique_ptr<G_Action> ReadOtherAction(const pugi::xml_node& action);

// A copy that knows where it leads: the index of its page, the number of its attachment. Jumps by way of a bookmark
// stay as they are, since bookmarks change. Never null.
std::unique_ptr<G_Action> ResolvedAction(const G_Action& action, const DocumentStructure& structure);

// The actions of an object, a page or the document that are run at that event; null when there are none. They may stand
// anywhere among the element's children. Whatever has no known event is run by a click.
std::unique_ptr<const ObjectActions> ReadActions(const pugi::xml_node& holder, ActionEvent event);

} // namespace ofd
