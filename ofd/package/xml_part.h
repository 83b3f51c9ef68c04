#pragma once

#include "package_error.h"

#include <QByteArray>
#include <QString>

#include <memory>

#include <pugixml.hpp>

namespace ofd {

class Package;

// One XML part: its bytes and the tree parsed from them. Nothing is thrown away: blank text, comments, CDATA and
// processing instructions are nodes of their own, names are raw with their prefix, namespaces are not looked at. The
// tree is for reading; changes go through XmlEdit, which works on the bytes. Belongs to one thread at a time.
class XmlPart
{
public:
    // Null on failure: not well-formed, a DOCTYPE, too deep, too many elements.
    static std::unique_ptr<XmlPart> Parse(const QString& partName, const QByteArray& bytes,
                                          PackageError* error = nullptr);
    // Reads the part from the package and parses it.
    static std::unique_ptr<XmlPart> Load(const Package& package, const QString& partName,
                                         PackageError* error = nullptr);

    const QString& GetName() const { return name; }
    // The bytes the tree was parsed from. They differ from the part's own only when that was not in UTF-8.
    const QByteArray& GetBytes() const { return bytes; }
    // The document element; never null.
    pugi::xml_node GetRoot() const { return document.document_element(); }
    const pugi::xml_document& GetDocument() const { return document; }
    bool HasByteOrderMark() const { return hasByteOrderMark; }
    // "\r\n" when the part uses it, else "\n".
    QByteArray GetLineEnd() const { return usesCrLf ? QByteArrayLiteral("\r\n") : QByteArrayLiteral("\n"); }

private:
    XmlPart() = default;

    QString name;
    QByteArray bytes;
    pugi::xml_document document;
    bool hasByteOrderMark = false;
    bool usesCrLf = false;
};

} // namespace ofd
