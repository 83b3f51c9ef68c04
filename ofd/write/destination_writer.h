#pragma once

#include <pugixml.hpp>

class G_Dest;

namespace ofd {

class XmlEdit;
class XmlFragment;
struct DocumentStructure;

// Adds a destination element. Values that its zoom mode does not use are left out.
void AppendDestination(XmlFragment& xml, const G_Dest& dest, const DocumentStructure& structure);
// Makes a destination element say this; attributes that we do not know stay.
void EditDestination(XmlEdit& edit, const pugi::xml_node& element, const G_Dest& dest,
                     const DocumentStructure& structure);

} // namespace ofd
