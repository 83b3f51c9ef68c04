#pragma once

#include <ofd/model/record_sources.h>

#include <pugixml.hpp>

namespace ofd {

class XmlEdit;
class XmlFragment;
struct DocumentStructure;

// Actions of an outline entry. Those that cannot be written, because they are neither understood nor came from a file,
// do not count.

bool AreActionsChanged(const G_OutlineItem& item, const std::vector<ActionValue>& saved);
// Brings the actions in the entry's element up to date. `saved` are those that are in it, in order.
void EditActions(XmlEdit& edit, const pugi::xml_node& entry, const G_OutlineItem& item,
                 const std::vector<ActionValue>& saved, const DocumentStructure& structure);
// Adds the actions to a new entry; nothing when there are none.
void AppendActions(XmlFragment& xml, const QByteArray& prefix, const G_OutlineItem& item,
                   const DocumentStructure& structure);
// After a save: `read` is what the file holds now; the actions get their elements, and what they are compared with from
// now on is what they hold.
void AdoptActions(G_OutlineItem& item, std::vector<ActionValue>& read);

} // namespace ofd
