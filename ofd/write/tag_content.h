#pragma once

#include <ofd/model/record_sources.h>

#include <pugixml.hpp>

namespace ofd {

class XmlEdit;
class XmlFragment;

// What a tag's element holds besides tags: attributes, literal data, references to objects.

// Whether both name the same objects in the same order.
bool HasSameObjects(const QVector<G_PageObjRef>& a, const QVector<G_PageObjRef>& b);
// Edits what differs from the source.
void EditTagContent(XmlEdit& edit, const pugi::xml_node& element, const G_CustomTagItem& tag, const TagSource& source,
                    const QByteArray& referencePrefix);
// Adds it to a new element whose start tag is open.
void AppendTagContent(XmlFragment& xml, const G_CustomTagItem& tag, const QByteArray& referencePrefix);

} // namespace ofd
