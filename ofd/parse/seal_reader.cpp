#include "seal_reader.h"

#include "der_reader.h"
#include "signature_parts.h"

#include <ofd/model/problem_log.h>
#include <ofd/package/limits.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>
#include <QSet>

#include <deque>

namespace ofd {

namespace {

// A stretch of bytes still to be looked at.
struct Stretch
{
    qint64 begin;
    qint64 end;
    int depth;
};

bool IsWord(const DerElement& element)
{
    return element.tag == der::Ia5String || element.tag == der::Utf8String || element.tag == der::PrintableString;
}

int NumberOf(const QByteArray& bytes, const DerElement& element)
{
    if (element.end - element.begin > 3)
        return 0; // no seal is that large
    int number = 0;
    for (qint64 i = element.begin; i < element.end; ++i)
        number = number << 8 | quint8(bytes.at(int(i)));
    return number;
}

// The content of a string of octets, also of one that comes in pieces; nothing of anything else.
std::optional<QByteArray> OctetsOf(const QByteArray& bytes, const DerElement& element, int& elementsLeft)
{
    if (element.tag == der::OctetString)
        return bytes.mid(int(element.begin), int(element.end - element.begin));
    if (element.tag != der::OctetPieces)
        return std::nullopt;
    QByteArray octets;
    DerReader reader(bytes, element.begin, element.end, elementsLeft);
    for (DerElement piece; reader.Next(piece);) {
        if (piece.tag != der::OctetString)
            return std::nullopt;
        octets.append(bytes.constData() + piece.begin, int(piece.end - piece.begin));
    }
    return reader.IsAtEnd() ? std::optional<QByteArray>(octets) : std::nullopt;
}

// The picture block, when the stretch begins as one: word, bytes, number, number.
std::optional<SealPicture> PictureAt(const QByteArray& bytes, const DerElement& sequence, int& elementsLeft)
{
    DerReader reader(bytes, sequence.begin, sequence.end, elementsLeft);
    DerElement type, data, width, height;
    if (!reader.Next(type) || !IsWord(type) || !reader.Next(data) || !reader.Next(width) || width.tag != der::Integer ||
        !reader.Next(height) || height.tag != der::Integer)
        return std::nullopt;
    const std::optional<QByteArray> octets = OctetsOf(bytes, data, elementsLeft);
    if (!octets)
        return std::nullopt;
    SealPicture picture;
    picture.type = QString::fromLatin1(bytes.mid(int(type.begin), int(type.end - type.begin))).trimmed().toLower();
    picture.bytes = *octets;
    picture.widthMm = NumberOf(bytes, width);
    picture.heightMm = NumberOf(bytes, height);
    return picture;
}

// Whether bytes that are a plain string of octets hold an encoded sequence and nothing else.
bool HoldsSequence(const QByteArray& bytes, const DerElement& element, int& elementsLeft)
{
    if (element.tag != der::OctetString)
        return false;
    DerReader reader(bytes, element.begin, element.end, elementsLeft);
    DerElement inside;
    return reader.Next(inside) && inside.tag == der::Sequence && reader.IsAtEnd();
}

class StampReader
{
public:
    StampReader(const Package& package, const QString& documentFolder)
        : package(package)
        , documentFolder(documentFolder)
    {
    }

    QVector<Stamp> Read()
    {
        const std::unique_ptr<XmlPart> entry = XmlPart::Load(package, package.GetEntryPoint());
        const pugi::xml_node list =
            entry ? ChildElement(ChildElement(entry->GetRoot(), "DocBody"), "Signatures") : pugi::xml_node();
        const QString part = list ? PartAt(TrimmedText(list), package.GetEntryPoint()) : QString();
        const std::unique_ptr<XmlPart> signatures = part.isEmpty() ? nullptr : XmlPart::Load(package, part);
        if (!signatures)
            return stamps;
        const ProblemScope scope(part);
        int count = 0;
        QSet<QString> read; // a list may name one part again and again
        for (const pugi::xml_node& signature : ChildElements(signatures->GetRoot(), "Signature")) {
            if (++count > limits::MaxSignatures)
                break;
            const QString signaturePart = PartAt(AttributeText(signature, "BaseLoc"), part);
            if (!read.contains(signaturePart))
                ReadSignature(signaturePart);
            read.insert(signaturePart);
        }
        return stamps;
    }

private:
    QString PartAt(const QString& reference, const QString& holder) const
    {
        return SignaturePart(package, reference, holder, documentFolder);
    }

    void ReadSignature(const QString& part)
    {
        const std::unique_ptr<XmlPart> xml = part.isEmpty() ? nullptr : XmlPart::Load(package, part);
        if (!xml)
            return;
        const ProblemScope scope(part);
        const pugi::xml_node info = ChildElement(xml->GetRoot(), "SignedInfo");
        const std::vector<pugi::xml_node> found = ChildElements(info, "StampAnnot");
        if (found.empty())
            return;
        Stamp stamp;
        stamp.part = part;
        stamp.sealPart = PartAt(TrimmedText(Descend(info, {"Seal", "BaseLoc"})), part);
        stamp.signedValuePart = PartAt(TrimmedText(ChildElement(xml->GetRoot(), "SignedValue")), part);
        for (const pugi::xml_node& element : found) {
            stamp.pageId = int(IdAttribute(element, "PageRef"));
            stamp.boundary = BoxAttribute(element, "Boundary").value_or(QRectF());
            stamp.clip = BoxAttribute(element, "Clip").value_or(QRectF());
            if (stamps.size() < limits::MaxStamps && !stamp.boundary.isEmpty())
                stamps.append(stamp);
        }
    }

    const Package& package;
    const QString documentFolder;
    QVector<Stamp> stamps;
};

} // namespace

// Breadth first with a queue of its own: nothing in the data deepens the program's stack.
std::optional<SealPicture> FindSealPicture(const QByteArray& bytes)
{
    std::deque<Stretch> open = {{0, bytes.size(), 0}};
    int elementsLeft = limits::MaxSealElements;
    for (; !open.empty() && elementsLeft > 0; open.pop_front()) {
        const Stretch stretch = open.front();
        DerReader reader(bytes, stretch.begin, stretch.end, elementsLeft);
        DerElement element;
        while (reader.Next(element)) {
            if (element.tag == der::Sequence) {
                if (std::optional<SealPicture> picture = PictureAt(bytes, element, elementsLeft))
                    return picture;
            }
            const bool hasInside = element.IsConstructed() || HoldsSequence(bytes, element, elementsLeft);
            if (hasInside && stretch.depth < limits::MaxSealDepth)
                open.push_back({element.begin, element.end, stretch.depth + 1});
        }
    }
    return std::nullopt;
}

QVector<Stamp> ReadStamps(const Package& package, const QString& documentFolder)
{
    return StampReader(package, documentFolder).Read();
}

} // namespace ofd
