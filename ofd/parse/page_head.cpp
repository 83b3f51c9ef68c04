#include "page_head.h"

#include "document_reader.h"

#include <ofd/package/package.h>
#include <ofd/package/part_inflater.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_values.h>

#include <cstring>

namespace ofd {

namespace {

// Where the element of that local name begins ("<ofd:Content"), or ends when `isEndTag`; -1 when it does not.
int FindTag(const QByteArray& bytes, const char* localName, bool isEndTag, int from = 0)
{
    const int length = int(std::strlen(localName));
    for (int at = bytes.indexOf(localName, from); at >= 0; at = bytes.indexOf(localName, at + 1)) {
        const char next = at + length < bytes.size() ? bytes.at(at + length) : '\0';
        if (next != '>' && next != '/' && next != ' ' && next != '\n' && next != '\r' && next != '\t')
            continue;
        int open = at - 1;
        while (open >= 0 && bytes.at(open) != '<' && bytes.at(open) != '>' && bytes.at(open) != ' ')
            --open;
        if (open < 0 || bytes.at(open) != '<')
            continue;
        const bool endsElement = bytes.at(open + 1) == '/';
        if (endsElement == isEndTag)
            return open;
    }
    return -1;
}

// Parses what is there, even if its end is missing.
PageHead ParseHead(const QByteArray& bytes)
{
    PageHead head;
    pugi::xml_document document;
    document.load_buffer(bytes.constData(), size_t(bytes.size()), pugi::parse_default, pugi::encoding_utf8);
    const pugi::xml_node page = document.document_element();
    head.areaSize = ReadAreaSize(ChildElement(page, "Area"));
    for (const pugi::xml_node& reference : ChildElements(page, "Template"))
        head.templateIds.append(int(IdAttribute(reference, "TemplateID")));
    return head;
}

// The bytes without what stands inside the content element, which can be long.
QByteArray WithoutContent(const QByteArray& bytes)
{
    const int begin = FindTag(bytes, "Content", false);
    if (begin < 0)
        return bytes;
    int behind = -1; // the last end tag
    for (int at = FindTag(bytes, "Content", true, begin); at >= 0; at = FindTag(bytes, "Content", true, behind)) {
        behind = bytes.indexOf('>', at) + 1;
        if (behind <= 0)
            break;
    }
    return behind <= 0 ? bytes.left(begin) : bytes.left(begin) + bytes.mid(behind);
}

// Inflates until the area is complete or the content begins.
QByteArray ReadBeginning(const Package& package, const QString& part)
{
    QByteArray bytes;
    const int entry = package.FindEntry(part);
    if (entry < 0)
        return bytes;
    bool hasWrongChecksum = false;
    InflateEntry(
        package.GetSource(), package.GetDirectory().entries[size_t(entry)],
        [&bytes](const char* data, qint64 count) {
            bytes.append(data, int(count));
            return FindTag(bytes, "Area", true) < 0 && FindTag(bytes, "Content", false) < 0;
        },
        &hasWrongChecksum);
    return bytes;
}

} // namespace

PageHead ReadPageHead(const Package& package, const QString& part)
{
    const QByteArray beginning = ReadBeginning(package, part);
    if (FindTag(beginning, "Area", true) >= 0) {
        const PageHead head = ParseHead(beginning);
        if (head.areaSize.isValid())
            return head;
    }
    return ParseHead(WithoutContent(package.Read(part).bytes));
}

} // namespace ofd
