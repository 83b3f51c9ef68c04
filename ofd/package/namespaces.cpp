#include "namespaces.h"

#include "xml_scan.h"

#include <algorithm>
#include <cstring>

namespace ofd {

namespace {

bool IsNameEnd(char c)
{
    return std::strchr(" \t\r\n=/>", c) != nullptr;
}

// An attribute of a tag, raw.
struct RawAttribute
{
    QByteArray name;
    QByteArray value;
};

// The element's name, then its attributes.
class TagWalker
{
public:
    explicit TagWalker(const QByteArray& tag)
        : tag(tag)
    {
    }

    QByteArray Name()
    {
        const int begin = ++at;
        while (at < tag.size() && !IsNameEnd(tag.at(at)))
            ++at;
        return tag.mid(begin, at - begin);
    }

    bool NextAttribute(RawAttribute& attribute)
    {
        while (at < tag.size() && std::strchr(" \t\r\n", tag.at(at)))
            ++at;
        const int begin = at;
        while (at < tag.size() && !IsNameEnd(tag.at(at)))
            ++at;
        attribute.name = tag.mid(begin, at - begin);
        while (at < tag.size() && tag.at(at) != '"' && tag.at(at) != '\'')
            ++at;
        const int end = at < tag.size() ? tag.indexOf(tag.at(at), at + 1) : -1;
        if (attribute.name.isEmpty() || end < 0)
            return false;
        attribute.value = tag.mid(at + 1, end - at - 1);
        at = end + 1;
        return true;
    }

private:
    const QByteArray& tag;
    int at = 0;
};

QByteArray PrefixOfName(const QByteArray& name)
{
    return name.left(std::max(name.indexOf(':'), 0));
}

bool IsDeclaration(const QByteArray& attributeName)
{
    return attributeName == "xmlns" || attributeName.startsWith("xmlns:");
}

} // namespace

std::vector<std::pair<QByteArray, QByteArray>> DeclarationsIn(const QByteArray& startTag)
{
    std::vector<std::pair<QByteArray, QByteArray>> declarations;
    if (!startTag.contains("xmlns"))
        return declarations;
    TagWalker walker(startTag);
    walker.Name();
    for (RawAttribute attribute; walker.NextAttribute(attribute);) {
        if (IsDeclaration(attribute.name))
            declarations.emplace_back(attribute.name.mid(6), attribute.value);
    }
    return declarations;
}

QByteArray DeclarationTextIn(const QByteArray& startTag)
{
    QByteArray text;
    TagWalker walker(startTag);
    walker.Name();
    for (RawAttribute attribute; walker.NextAttribute(attribute);) {
        if (IsDeclaration(attribute.name))
            text += ' ' + attribute.name + "=\"" + QByteArray(attribute.value).replace('"', "&quot;") + '"';
    }
    return text;
}

QSet<QByteArray> PrefixesIn(const QByteArray& xml)
{
    QSet<QByteArray> prefixes;
    XmlScanner scanner(xml, 0);
    for (XmlToken token = scanner.Next(); token.kind != XmlToken::End; token = scanner.Next()) {
        if (token.kind != XmlToken::StartTag && token.kind != XmlToken::EmptyTag)
            continue;
        const QByteArray tag = xml.mid(int(token.begin), int(token.end - token.begin));
        TagWalker walker(tag);
        prefixes.insert(PrefixOfName(walker.Name()));
        for (RawAttribute attribute; walker.NextAttribute(attribute);) {
            const QByteArray prefix = PrefixOfName(attribute.name);
            if (!prefix.isEmpty() && prefix != "xmlns" && prefix != "xml")
                prefixes.insert(prefix);
        }
    }
    return prefixes;
}

} // namespace ofd
