#pragma once

#include <ofd/model/structure.h>
#include <ofd/package/package_error.h>

#include <QSizeF>

#include <memory>
#include <vector>

#include <pugixml.hpp>

namespace ofd {

class Package;
class XmlPart;

// The document part with what was read from it.
struct DocumentParts
{
    DocumentStructure structure;
    std::unique_ptr<XmlPart> document; // null on failure
    QString error;                     // a sentence for people
};

// Reads the entry part and the document part. Fails only without an entry part, a document part, or any page; all else
// degrades.
DocumentParts ReadDocument(const Package& package);

// The document part. Its tree lacks the entries of the outline, of which there may be very many: ReadOutline finds them
// in the bytes. Null on failure.
std::unique_ptr<XmlPart> LoadDocumentPart(const Package& package, const QString& part, PackageError* error = nullptr);

// Reports `text` at the second of the elements, of which there should be one.
void TellOfFurther(const XmlPart& document, const std::vector<pugi::xml_node>& elements, const QString& text);

// The size told by an area element (PageArea or Area); invalid when it has none that is usable, which is reported.
QSizeF ReadAreaSize(const pugi::xml_node& area);

} // namespace ofd
