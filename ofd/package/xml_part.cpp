#include "xml_part.h"

#include "limits.h"
#include "package.h"
#include "wide_xml.h"

#include <ofd/model/problem_log.h>

#include <QCoreApplication>
#include <QTextCodec>

#include <algorithm>
#include <new>

namespace ofd {

namespace {

constexpr char Utf8Mark[] = "\xef\xbb\xbf";

// The encoding named in the XML declaration, in capitals; empty when none is named.
QByteArray DeclaredEncoding(const QByteArray& bytes, int* begin, int* end)
{
    const int start = bytes.startsWith(Utf8Mark) ? 3 : 0;
    if (!bytes.mid(start, 6).startsWith("<?xml"))
        return {};
    const int stop = bytes.indexOf("?>", start);
    const int name = bytes.indexOf("encoding", start);
    if (stop < 0 || name < 0 || name > stop)
        return {};
    int open = name + 8;
    while (open < stop && bytes.at(open) != '"' && bytes.at(open) != '\'')
        ++open;
    const int close = bytes.indexOf(bytes.at(open), open + 1);
    if (close < 0 || close > stop)
        return {};
    *begin = open + 1;
    *end = close;
    return bytes.mid(open + 1, close - open - 1).trimmed().toUpper();
}

// What the bytes beyond ASCII are when they are read as UTF-8.
struct Utf8Count
{
    int pairs = 0; // characters of two bytes, as they come about by chance in other encodings
    int longer = 0;
    int strayBytes = 0; // parts of no character
};

Utf8Count CountUtf8(const QByteArray& bytes)
{
    Utf8Count count;
    const auto isContinuation = [&](int at) { return at < bytes.size() && (uchar(bytes.at(at)) & 0xc0) == 0x80; };
    for (int at = 0; at < bytes.size();) {
        const uchar lead = uchar(bytes.at(at++));
        if (lead < 0x80)
            continue;
        const int more = lead < 0xc2 || lead >= 0xf5 ? 0 : lead >= 0xf0 ? 3 : lead >= 0xe0 ? 2 : 1;
        int read = 0;
        while (read < more && isContinuation(at + read))
            ++read;
        at += read;
        if (more == 0 || read < more)
            ++count.strayBytes;
        else if (more == 1)
            ++count.pairs;
        else
            ++count.longer;
    }
    return count;
}

// Some writers call their parts UTF-8, or nothing, and write what their system writes: GB18030. That it is where hardly
// anything reads as UTF-8; single damaged letters stay visible as such.
QByteArray FromUnmarked(const QByteArray& bytes)
{
    const Utf8Count count = CountUtf8(bytes);
    QTextCodec* codec = QTextCodec::codecForName("GB18030"); // not owned
    if (count.strayBytes <= count.longer || count.strayBytes < count.pairs / 2 || !codec)
        return bytes;
    QTextCodec::ConverterState state;
    const QString text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0 ? text.toUtf8() : bytes;
}

// Bytes in UTF-8. Everything in the wild is; a part in another encoding becomes UTF-8 when it is written again. Zero
// bytes behind the end, from writers that wrote their whole buffer, are left out.
QByteArray ToUtf8(const QByteArray& bytes)
{
    QByteArray text = NarrowXml(bytes);
    int size = text.size();
    while (size > 0 && text.at(size - 1) == '\0')
        --size;
    if (size < text.size())
        text.truncate(size);
    if (bytes.startsWith(Utf8Mark))
        return text;
    int begin = 0;
    int end = 0;
    const QByteArray encoding = DeclaredEncoding(text, &begin, &end);
    if (encoding.isEmpty() || encoding == "UTF-8" || encoding == "UTF8" || encoding == "US-ASCII")
        return FromUnmarked(text);
    if (!encoding.startsWith("UTF-16")) {
        QTextCodec* codec = QTextCodec::codecForName(encoding); // not owned
        if (!codec)
            return text;
        text = codec->toUnicode(text).toUtf8(); // the declaration is ASCII, so its places stay
    }
    return text.replace(begin, end - begin, "UTF-8");
}

PackageError ParseError(const QString& partName, const QString& reason)
{
    const QString text =
        QCoreApplication::translate("OfdPackage", "The part \"%1\" cannot be read: %2").arg(partName, reason);
    ReportProblem(ProblemKind::BadXml, partName, text);
    return {PackageErrorKind::BadXml, text};
}

// A small part that unpacks to a large one is refused before it is unpacked: its tree would be larger still.
PackageError CheckRatio(const Package& package, const QString& partName)
{
    const int position = package.FindEntry(partName);
    if (position < 0)
        return {}; // reading it tells
    const ZipEntry& entry = package.GetDirectory().entries[size_t(position)];
    if (entry.size <= limits::XmlRatioFreeBytes || entry.size / limits::MaxXmlRatio <= entry.compressedSize)
        return {};
    const QString text =
        QCoreApplication::translate("OfdPackage", "The part \"%1\" is too big when unpacked.").arg(partName);
    ReportProblem(ProblemKind::Limit, partName, text);
    return {PackageErrorKind::TooBig, text};
}

} // namespace

std::unique_ptr<XmlPart> XmlPart::Parse(const QString& partName, const QByteArray& bytes, PackageError* error,
                                        std::string_view bare)
{
    PackageError ignored;
    PackageError& result = error ? *error : ignored;
    result = {};
    std::unique_ptr<XmlPart> part(new XmlPart);
    part->name = partName;
    const QByteArray text = ToUtf8(bytes);
    part->bytes = std::make_shared<PackedBytes>(text);
    if (const PackageError bad = CheckXml(text)) {
        result = ParseError(partName, bad.text);
        return nullptr;
    }
    // No namespace checks here, on purpose: roots like <:name xmlns:=""> and prefixes nobody declared are in real
    // files.
    constexpr unsigned mode =
        pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_comments | pugi::parse_pi | pugi::parse_declaration;
    part->bareChild = bare;
    if (!bare.empty())
        part->leftOut = ContentOfChild(text, bare);
    QByteArray parsedBytes = text;
    if (part->leftOut.end > part->leftOut.begin)
        parsedBytes = text.left(int(part->leftOut.begin)) + text.mid(int(part->leftOut.end));
    if (std::count(parsedBytes.cbegin(), parsedBytes.cend(), '<') > limits::MaxTreeTags) {
        result = ParseError(partName, QCoreApplication::translate("OfdPackage", "The XML has too many elements."));
        return nullptr;
    }
    const pugi::xml_parse_result parsed =
        part->document.load_buffer(parsedBytes.constData(), size_t(parsedBytes.size()), mode, pugi::encoding_utf8);
    if (parsed.status == pugi::status_out_of_memory)
        throw std::bad_alloc(); // a part that is sound must not count as broken: lists that are get a new one beside
    if (!parsed || !part->document.document_element()) {
        const char* reason = parsed ? "no element" : parsed.description();
        result = ParseError(partName, QString::fromLatin1(reason));
        return nullptr;
    }
    part->hasByteOrderMark = text.startsWith(Utf8Mark);
    const int firstLineEnd = text.indexOf('\n');
    part->usesCrLf = firstLineEnd > 0 && text.at(firstLineEnd - 1) == '\r';
    return part;
}

std::unique_ptr<XmlPart> XmlPart::Load(const Package& package, const QString& partName, PackageError* error,
                                       std::string_view bare)
{
    if (const PackageError tooBig = CheckRatio(package, partName)) {
        if (error)
            *error = tooBig;
        return nullptr;
    }
    const PartData data = package.Read(partName);
    if (!data.error)
        return Parse(partName, data.bytes, error, bare);
    if (error)
        *error = data.error;
    return nullptr;
}

std::unique_ptr<XmlPart> XmlPart::Reparse(const QByteArray& newBytes, PackageError* error) const
{
    return Parse(name, newBytes, error, bareChild);
}

qint64 XmlPart::PlaceOf(const pugi::xml_node& element) const
{
    // The parser knows where the name is; the '<' stands right in front of it.
    const ptrdiff_t offset = element.type() == pugi::node_element ? element.offset_debug() : -1;
    if (offset <= 0)
        return -1;
    const qint64 place = qint64(offset) - 1;
    return place < leftOut.begin ? place : place + leftOut.end - leftOut.begin;
}

} // namespace ofd
