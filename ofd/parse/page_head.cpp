#include "page_head.h"

#include "document_reader.h"

#include <ofd/package/byte_source.h>
#include <ofd/package/limits.h>
#include <ofd/package/package.h>
#include <ofd/package/part_inflater.h>
#include <ofd/package/wide_xml.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_values.h>
#include <ofd/package/zip_records.h>

#include <algorithm>
#include <cstring>

#include <zlib.h>

namespace ofd {

namespace {

bool IsInName(char c)
{
    return !std::strchr("<>/ \t\r\n\"'=", c);
}

// Where the element of that local name begins ("<ofd:Content"), or ends when `isEndTag`; -1 when it does not.
int FindTag(const QByteArray& bytes, const char* localName, bool isEndTag, int from = 0)
{
    const int length = int(std::strlen(localName));
    for (int at = bytes.indexOf(localName, from); at >= 0; at = bytes.indexOf(localName, at + 1)) {
        const char next = at + length < bytes.size() ? bytes.at(at + length) : '\0';
        if (next != '>' && next != '/' && next != ' ' && next != '\n' && next != '\r' && next != '\t')
            continue;
        int open = at - 1;
        while (open >= 0 && at - open < limits::MaxPrefix && IsInName(bytes.at(open)))
            --open;
        if (open > 0 && bytes.at(open) == '/')
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
        head.templates.append(
            {int(IdAttribute(reference, "TemplateID")), AttributeText(reference, "ZOrder").trimmed()});
    return head;
}

// The bytes without what stands inside the content element, which can be long.
QByteArray WithoutContent(const QByteArray& bytes)
{
    const int begin = FindTag(bytes, "Content", false);
    const int tagEnd = bytes.indexOf('>', begin);
    if (begin < 0 || (tagEnd > 0 && bytes.at(tagEnd - 1) == '/')) // no content, or an empty one
        return bytes;
    int behind = -1; // the last end tag
    for (int at = FindTag(bytes, "Content", true, begin); at >= 0; at = FindTag(bytes, "Content", true, behind)) {
        behind = bytes.indexOf('>', at) + 1;
        if (behind <= 0)
            break;
    }
    return behind <= 0 ? bytes.left(begin) : bytes.left(begin) + bytes.mid(behind);
}

// Inflates the beginning of a part: one read, and one stream that is used again and again by each thread, since the
// sizes of all pages are asked for at once. Empty when the part is packed in a way that is left to the package.
class BeginningReader
{
public:
    BeginningReader() { isReady = inflateInit2(&stream, -MAX_WBITS) == Z_OK; }
    ~BeginningReader() { inflateEnd(&stream); }
    BeginningReader(const BeginningReader&) = delete;
    BeginningReader& operator=(const BeginningReader&) = delete;

    QByteArray Read(const ByteSource& source, const ZipEntry& entry)
    {
        char packed[PackedBytes];
        const qint64 region = std::min<qint64>(PackedBytes, entry.regionEnd - entry.headerOffset);
        const qint64 got = source.ReadAt(entry.headerOffset, packed, region);
        if (!isReady || got < zip::LocalSize || zip::Get32(packed) != zip::LocalSignature)
            return {};
        const int skip = zip::LocalSize + zip::Get16(packed + 26) + zip::Get16(packed + 28);
        const qint64 count = std::min(got - skip, entry.compressedSize);
        if (count <= 0)
            return {};
        if (entry.method == zip::MethodStored)
            return QByteArray(packed + skip, int(count));
        return Inflate(packed + skip, count);
    }

private:
    static constexpr int PackedBytes = 1024;
    static constexpr int PlainBytes = 4096;

    QByteArray Inflate(char* packed, qint64 count)
    {
        QByteArray bytes(PlainBytes, Qt::Uninitialized);
        inflateReset(&stream);
        stream.next_in = reinterpret_cast<Bytef*>(packed);
        stream.avail_in = uInt(count);
        stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
        stream.avail_out = PlainBytes;
        const int code = inflate(&stream, Z_SYNC_FLUSH);
        if (code != Z_OK && code != Z_STREAM_END && code != Z_BUF_ERROR)
            return {};
        bytes.truncate(PlainBytes - int(stream.avail_out));
        return bytes;
    }

    z_stream stream = {};
    bool isReady = false;
};

QByteArray ReadBeginning(const Package& package, const QString& part)
{
    static thread_local BeginningReader reader;
    const int position = package.FindEntry(part);
    if (position < 0)
        return {};
    const ZipEntry& entry = package.GetDirectory().entries[size_t(position)];
    return CheckEntry(entry, true) ? QByteArray() : reader.Read(package.GetSource(), entry);
}

} // namespace

PageHead ReadPageHead(const Package& package, const QString& part)
{
    const QByteArray beginning = ReadBeginning(package, part);
    if (FindTag(beginning, "Area", true) >= 0) { // complete, and mostly in front of the content
        const PageHead head = ParseHead(beginning);
        if (head.areaSize.isValid())
            return head;
    }
    const QByteArray bare = WithoutContent(NarrowXml(package.Read(part).bytes));
    PageHead head = bare.size() <= limits::MaxPageHeadBytes ? ParseHead(bare) : PageHead();
    head.tookWholePart = true;
    return head;
}

bool HasPageResources(const Package& package, const QString& part)
{
    return FindTag(NarrowXml(package.Read(part).bytes), "PageRes", false) >= 0;
}

} // namespace ofd
