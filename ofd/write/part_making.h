#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

#include <pugixml.hpp>

namespace ofd {

class Package;
class XmlEdit;
class XmlPart;
struct PackageError;

// For parts of our own: prefix, address and declaration of the format's namespace as another part has them.
QByteArray FormatNamespace(const pugi::xml_node& root);
QByteArray NamespaceDeclaration(const pugi::xml_node& root);
// A whole part with a root element of that name, in the manner of the other part.
QByteArray NewPart(const pugi::xml_node& other, const QByteArray& rootName, const QByteArray& content);

// A list of parts, to be edited. Null without an error when there is none, and also when it is damaged or no XML: then
// nobody can add to it, and what is added goes into a new list beside it, whose bytes stay as they are. Null with the
// error when it may be sound, but is not for us to read: encrypted, too big.
std::unique_ptr<XmlPart> LoadList(const Package& package, const QString& listPart, PackageError& error);

// Whether the elements of a list refer to parts from the root of the package; what is added does as they do.
bool RefersFromRoot(const pugi::xml_node& list);

// The same for the lists that the document part names; without any it does as it does for its pages.
bool ListsAreFromRoot(const pugi::xml_node& documentRoot);

// Lets the document part's highest identifier be no lower than this.
void RaiseMaxUnitId(XmlEdit& edit, const pugi::xml_node& documentRoot, int id);

} // namespace ofd
