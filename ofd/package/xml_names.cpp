#include "xml_names.h"

#include <cstring>

namespace ofd {

namespace {

QString ToText(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

std::string_view LocalName(const char* qualifiedName)
{
    const char* colon = std::strchr(qualifiedName, ':');
    return colon ? colon + 1 : qualifiedName;
}

std::string_view LocalName(const pugi::xml_node& node)
{
    return LocalName(node.name());
}

QByteArray PrefixOf(const pugi::xml_node& node)
{
    const char* name = node.name();
    const char* colon = std::strchr(name, ':');
    return colon ? QByteArray(name, int(colon - name) + 1) : QByteArray();
}

bool IsElement(const pugi::xml_node& node, std::string_view localName)
{
    return node.type() == pugi::node_element && LocalName(node) == localName;
}

pugi::xml_node ChildElement(const pugi::xml_node& parent, std::string_view localName)
{
    for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling()) {
        if (IsElement(child, localName))
            return child;
    }
    return {};
}

pugi::xml_node FirstElement(const pugi::xml_node& parent)
{
    const pugi::xml_node child = parent.first_child();
    return !child || child.type() == pugi::node_element ? child : NextElement(child);
}

pugi::xml_node NextElement(const pugi::xml_node& node)
{
    pugi::xml_node next = node.next_sibling();
    while (next && next.type() != pugi::node_element)
        next = next.next_sibling();
    return next;
}

std::vector<pugi::xml_node> ChildElements(const pugi::xml_node& parent, std::string_view localName)
{
    std::vector<pugi::xml_node> children;
    for (pugi::xml_node child = FirstElement(parent); child; child = NextElement(child)) {
        if (localName.empty() || LocalName(child) == localName)
            children.push_back(child);
    }
    return children;
}

pugi::xml_node Descend(const pugi::xml_node& from, std::initializer_list<std::string_view> localNames)
{
    pugi::xml_node node = from;
    for (const std::string_view name : localNames)
        node = ChildElement(node, name);
    return node;
}

pugi::xml_attribute Attribute(const pugi::xml_node& node, std::string_view localName)
{
    pugi::xml_attribute prefixed;
    for (pugi::xml_attribute attribute = node.first_attribute(); attribute; attribute = attribute.next_attribute()) {
        const std::string_view name = attribute.name();
        const bool endsLikeIt = name.size() >= localName.size() &&
                                name.compare(name.size() - localName.size(), localName.size(), localName) == 0;
        if (!endsLikeIt || LocalName(attribute.name()) != localName || IsDeclaration(attribute))
            continue;
        if (name.size() == localName.size())
            return attribute;
        if (!prefixed)
            prefixed = attribute;
    }
    return prefixed;
}

bool IsDeclaration(const pugi::xml_attribute& attribute)
{
    const char* name = attribute.name();
    return std::strncmp(name, "xmlns", 5) == 0 && (name[5] == 0 || name[5] == ':');
}

bool HasAttribute(const pugi::xml_node& node, std::string_view localName)
{
    return bool(Attribute(node, localName));
}

QString AttributeText(const pugi::xml_node& node, std::string_view localName, const QString& missing)
{
    const pugi::xml_attribute attribute = Attribute(node, localName);
    return attribute ? ToText(attribute.value()) : missing;
}

QString ElementText(const pugi::xml_node& node)
{
    QString text;
    for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
            text += ToText(child.value());
    }
    return text;
}

QString TrimmedText(const pugi::xml_node& node)
{
    return ElementText(node).trimmed();
}

QString NamespaceOfPrefix(const pugi::xml_node& node, std::string_view prefix)
{
    const std::string wanted = prefix.empty() ? std::string("xmlns") : "xmlns:" + std::string(prefix);
    for (pugi::xml_node at = node; at; at = at.parent()) {
        const pugi::xml_attribute declaration = at.attribute(wanted.c_str());
        if (declaration)
            return ToText(declaration.value());
    }
    return {};
}

} // namespace ofd
