#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>
#include <vector>

#include <pugixml.hpp>

namespace ofd {

// Elements and attributes are matched by the name behind the first ':'. Files in the wild leave the namespace out of
// some elements, do not declare the prefix, or declare an address of their own, and mean the same.

// Of "ofd:Page" this is "Page"; of ":name" it is "name".
std::string_view LocalName(const char* qualifiedName);
std::string_view LocalName(const pugi::xml_node& node);
// Of "ofd:Page" this is "ofd:"; of "Page" it is empty. What a new child of the node should use too.
QByteArray PrefixOf(const pugi::xml_node& node);

// Whether it is an element of that name.
bool IsElement(const pugi::xml_node& node, std::string_view localName);
// The first child element of that name; a null node when there is none. A null parent gives a null node.
pugi::xml_node ChildElement(const pugi::xml_node& parent, std::string_view localName);
// The first child element of any name.
pugi::xml_node FirstElement(const pugi::xml_node& parent);
// The next sibling that is an element.
pugi::xml_node NextElement(const pugi::xml_node& node);
// All child elements of that name, or all child elements when the name is empty.
std::vector<pugi::xml_node> ChildElements(const pugi::xml_node& parent, std::string_view localName = {});
// Follows first children: Descend(root, {"CommonData", "PageArea"}).
pugi::xml_node Descend(const pugi::xml_node& from, std::initializer_list<std::string_view> localNames);

// The attribute whose local name fits (xmlns declarations never do), of several the one without a prefix, else the
// first; a null attribute when there is none.
pugi::xml_attribute Attribute(const pugi::xml_node& node, std::string_view localName);
// Whether it declares a namespace.
bool IsDeclaration(const pugi::xml_attribute& attribute);
bool HasAttribute(const pugi::xml_node& node, std::string_view localName);
// The value as text; the default when the attribute is missing.
QString AttributeText(const pugi::xml_node& node, std::string_view localName, const QString& missing = {});
// All direct text and CDATA of the element, blanks kept.
QString ElementText(const pugi::xml_node& node);
// The same, without white space at both ends.
QString TrimmedText(const pugi::xml_node& node);
// The address that the prefix ("ofd", or "" for none) stands for at the node; empty when it is not declared.
QString NamespaceOfPrefix(const pugi::xml_node& node, std::string_view prefix);

} // namespace ofd
