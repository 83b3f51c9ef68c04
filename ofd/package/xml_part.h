#pragma once

#include "package_error.h"
#include "packed_bytes.h"
#include "xml_scan.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace ofd {

class Package;

// One XML part: its bytes and the tree parsed from them. Nothing is thrown away: blank text, comments, CDATA and
// processing instructions are nodes of their own, names are raw with their prefix, namespaces are not looked at. The
// tree is for reading; changes go through XmlEdit, which works on the bytes. Belongs to one thread at a time.
class XmlPart
{
public:
    // Null on failure: not well-formed, a DOCTYPE, too deep, too many elements. The first child of the document element
    // with the local name `bare` has no content in the tree, only in the bytes: a long list would take many times as
    // much as its bytes. Its tags are checked all the same.
    static std::unique_ptr<XmlPart> Parse(const QString& partName, const QByteArray& bytes,
                                          PackageError* error = nullptr, std::string_view bare = {});
    // Reads the part from the package and parses it.
    static std::unique_ptr<XmlPart> Load(const Package& package, const QString& partName, PackageError* error = nullptr,
                                         std::string_view bare = {});
    // Parses other bytes of this part in the same way.
    std::unique_ptr<XmlPart> Reparse(const QByteArray& newBytes, PackageError* error = nullptr) const;

    const QString& GetName() const { return name; }
    // The bytes the tree was parsed from. They differ from the part's own only when that was not in UTF-8.
    const QByteArray& GetBytes() const { return bytes->Get(); }
    // The same, to share them and to pack them while nobody looks at them.
    const std::shared_ptr<PackedBytes>& GetPackedBytes() const { return bytes; }
    // The document element; never null.
    pugi::xml_node GetRoot() const { return document.document_element(); }
    const pugi::xml_document& GetDocument() const { return document; }
    // Where the '<' of an element of the tree stands in the bytes; -1 when the node is no element of the part.
    qint64 PlaceOf(const pugi::xml_node& element) const;
    bool HasByteOrderMark() const { return hasByteOrderMark; }
    // "\r\n" when the part uses it, else "\n".
    QByteArray GetLineEnd() const { return usesCrLf ? QByteArrayLiteral("\r\n") : QByteArrayLiteral("\n"); }

private:
    XmlPart() = default;

    QString name;
    std::shared_ptr<PackedBytes> bytes; // never null
    pugi::xml_document document;
    std::string bareChild; // its local name; empty for none
    XmlRange leftOut;      // the bytes that are not in the tree
    bool hasByteOrderMark = false;
    bool usesCrLf = false;
};

} // namespace ofd
