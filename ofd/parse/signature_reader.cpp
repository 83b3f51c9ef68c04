#include "signature_reader.h"

#include "signature_parts.h"

#include <ofd/package/entry_names.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>

#include <QSet>

namespace ofd {

namespace {

class SignatureReader
{
public:
    explicit SignatureReader(const Package& package)
        : package(package)
    {
    }

    SignedParts Read()
    {
        const std::unique_ptr<XmlPart> entry = XmlPart::Load(package, package.GetEntryPoint());
        if (entry) {
            for (const pugi::xml_node& body : ChildElements(entry->GetRoot(), "DocBody"))
                ReadBody(body);
        }
        const QString list = package.FindIgnoringCase(QStringLiteral("OFDEntries.xml"));
        if (!list.isEmpty())
            ReadIntegrityList(list);
        return result;
    }

private:
    QString PartAt(const QString& reference, const QString& holder) const
    {
        return SignaturePart(package, reference, holder, documentFolder);
    }

    void ReadBody(const pugi::xml_node& body)
    {
        documentFolder = FolderOf(PartAt(TrimmedText(ChildElement(body, "DocRoot")), package.GetEntryPoint()));
        const pugi::xml_node signatures = ChildElement(body, "Signatures");
        const QString listPart = signatures ? PartAt(TrimmedText(signatures), package.GetEntryPoint()) : QString();
        const std::unique_ptr<XmlPart> list = listPart.isEmpty() ? nullptr : XmlPart::Load(package, listPart);
        if (!list) { // one that is not there names no signature, but one that cannot be read may
            result.coversAll |= !listPart.isEmpty();
            return;
        }
        QSet<QString> read; // a list may name one part again and again
        for (const pugi::xml_node& signature : ChildElements(list->GetRoot(), "Signature")) {
            const QString part = PartAt(AttributeText(signature, "BaseLoc"), listPart);
            if (!read.contains(part))
                ReadSignature(part);
            read.insert(part);
        }
    }

    void ReadSignature(const QString& part)
    {
        const std::unique_ptr<XmlPart> xml = part.isEmpty() ? nullptr : XmlPart::Load(package, part);
        const pugi::xml_node references =
            xml ? Descend(xml->GetRoot(), {"SignedInfo", "References"}) : pugi::xml_node();
        if (!FirstElement(references))
            result.coversAll = true;
        for (const pugi::xml_node& reference : ChildElements(references, "Reference"))
            Add(AttributeText(reference, "FileRef"), part);
    }

    void ReadIntegrityList(const QString& part)
    {
        const std::unique_ptr<XmlPart> xml = XmlPart::Load(package, part);
        const pugi::xml_node files = xml ? ChildElement(xml->GetRoot(), "FileList") : pugi::xml_node();
        if (!FirstElement(files))
            result.coversAll = true;
        for (const pugi::xml_node& file : ChildElements(files))
            Add(TrimmedText(file), part);
    }

    // What is not there cannot be changed; what is not even named may be anything.
    void Add(const QString& reference, const QString& holder)
    {
        const QString part = PartAt(reference, holder);
        if (!part.isEmpty())
            result.parts.insert(part);
        else if (reference.trimmed().isEmpty())
            result.coversAll = true;
    }

    const Package& package;
    QString documentFolder;
    SignedParts result;
};

} // namespace

SignedParts ReadSignedParts(const Package& package)
{
    return SignatureReader(package).Read();
}

} // namespace ofd
