#include "xml_scan.h"

#include "limits.h"

#include <QCoreApplication>

#include <array>
#include <cstring>
#include <vector>

namespace ofd {

XmlToken XmlScanner::Next()
{
    XmlToken token;
    token.begin = at;
    token.end = at;
    if (at >= size)
        return token;
    if (data[at] == '<')
        return Markup();
    const void* next = std::memchr(data + at, '<', size_t(size - at));
    at = next ? static_cast<const char*>(next) - data : size;
    token.kind = XmlToken::Text;
    token.end = at;
    return token;
}

XmlToken XmlScanner::Markup()
{
    auto startsWith = [this](const char* text) {
        const size_t length = std::strlen(text);
        return size_t(size - at) >= length && std::memcmp(data + at, text, length) == 0;
    };
    const char second = at + 1 < size ? data[at + 1] : '\0';
    if (second == '!' && startsWith("<!--"))
        return Delimited(XmlToken::Comment, 4, "-->");
    if (second == '!' && startsWith("<![CDATA["))
        return Delimited(XmlToken::CData, 9, "]]>");
    if (second == '?')
        return Delimited(XmlToken::Instruction, 2, "?>");
    XmlToken token;
    token.begin = at;
    token.end = TagEnd(at + 1);
    if (token.end < 0)
        token.kind = XmlToken::Bad;
    else if (second == '!')
        token.kind = XmlToken::DocType;
    else if (second == '/')
        token.kind = XmlToken::EndTag;
    else
        token.kind = data[token.end - 2] == '/' ? XmlToken::EmptyTag : XmlToken::StartTag;
    at = token.kind == XmlToken::Bad ? size : token.end;
    return token;
}

XmlToken XmlScanner::Delimited(XmlToken::Kind kind, int openLength, const char* close)
{
    XmlToken token;
    token.begin = at;
    const void* found = size - at > openLength
                            ? memmem(data + at + openLength, size_t(size - at - openLength), close, std::strlen(close))
                            : nullptr;
    token.kind = found ? kind : XmlToken::Bad;
    token.end = found ? static_cast<const char*>(found) - data + qint64(std::strlen(close)) : size;
    at = token.end;
    return token;
}

// Behind the '>' that ends a tag, -1 when there is none. A '>' between quotes does not.
qint64 XmlScanner::TagEnd(qint64 from) const
{
    static const std::array<bool, 256> stops = [] {
        std::array<bool, 256> table{};
        for (const unsigned char c : {'>', '"', '\''})
            table[c] = true;
        return table;
    }();
    for (qint64 i = from; i < size; ++i) {
        if (!stops[static_cast<unsigned char>(data[i])])
            continue;
        if (data[i] == '>')
            return i + 1;
        const void* close = std::memchr(data + i + 1, data[i], size_t(size - i - 1));
        if (!close)
            return -1;
        i = static_cast<const char*>(close) - data;
    }
    return -1;
}

namespace {

PackageError BadXml(const QString& reason)
{
    return {PackageErrorKind::BadXml, reason};
}

} // namespace

std::string_view TagName(const QByteArray& bytes, const XmlToken& tag)
{
    const char* begin = bytes.constData() + tag.begin + (tag.kind == XmlToken::EndTag ? 2 : 1);
    const char* end = begin;
    while (*end != '>' && *end != '/' && *end != ' ' && *end != '\n' && *end != '\r' && *end != '\t')
        ++end; // the '>' of the tag is there
    return {begin, size_t(end - begin)};
}

XmlRange ContentOfChild(const QByteArray& bytes, std::string_view localName)
{
    XmlRange content;
    std::vector<std::string_view> open;
    XmlScanner scanner(bytes, 0);
    for (XmlToken token = scanner.Next(); token.kind != XmlToken::End; token = scanner.Next()) {
        if (token.kind == XmlToken::StartTag) {
            open.push_back(TagName(bytes, token));
            const std::string_view name = open.back();
            if (open.size() == 2 && content.begin == 0 && name.substr(name.find(':') + 1) == localName)
                content.begin = token.end;
        } else if (token.kind == XmlToken::EndTag) {
            if (open.empty() || open.back() != TagName(bytes, token))
                return {};
            open.pop_back();
            if (open.size() == 1 && content.begin > 0) {
                content.end = token.begin;
                return content;
            }
        }
    }
    return {};
}

PackageError CheckXml(const QByteArray& bytes)
{
    if (std::memchr(bytes.constData(), 0, size_t(bytes.size())))
        return BadXml(QCoreApplication::translate("OfdPackage", "The XML holds a zero byte."));
    XmlScanner scanner(bytes, 0);
    int depth = 0;
    int elements = 0;
    for (XmlToken token = scanner.Next(); token.kind != XmlToken::End; token = scanner.Next()) {
        switch (token.kind) {
        case XmlToken::DocType:
            return BadXml(QCoreApplication::translate(
                "OfdPackage", "The XML has a document type declaration, which is not allowed."));
        case XmlToken::Bad:
            return BadXml(QCoreApplication::translate("OfdPackage", "The XML ends in the middle of a tag."));
        case XmlToken::StartTag:
            if (++depth > limits::MaxXmlDepth)
                return BadXml(QCoreApplication::translate("OfdPackage", "The XML is nested too deep."));
            ++elements;
            break;
        case XmlToken::EmptyTag:
            ++elements;
            break;
        case XmlToken::EndTag:
            --depth;
            break;
        default:
            break;
        }
        if (elements > limits::MaxXmlElements)
            return BadXml(QCoreApplication::translate("OfdPackage", "The XML has too many elements."));
    }
    return {};
}

} // namespace ofd
