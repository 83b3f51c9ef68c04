#include "signature_parts.h"

#include <ofd/document_facts.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>

namespace ofd {

namespace {

class SignatureFactsReader
{
public:
    SignatureFactsReader(const Package& package, const QString& documentFolder)
        : package(package)
        , documentFolder(documentFolder)
    {
    }

    SignatureList Read(int most) const
    {
        SignatureList list;
        const std::unique_ptr<XmlPart> entry = XmlPart::Load(package, package.GetEntryPoint());
        const pugi::xml_node place = entry ? Descend(entry->GetRoot(), {"DocBody", "Signatures"}) : pugi::xml_node();
        const QString part = place ? PartAt(TrimmedText(place), package.GetEntryPoint()) : QString();
        const std::unique_ptr<XmlPart> xml = part.isEmpty() ? nullptr : XmlPart::Load(package, part);
        if (!xml)
            return list;
        for (const pugi::xml_node& signature : ChildElements(xml->GetRoot(), "Signature")) {
            if (int(list.signatures.size()) < most)
                list.signatures.push_back(ReadSignature(signature, part));
            else
                ++list.more;
        }
        return list;
    }

private:
    QString PartAt(const QString& reference, const QString& holder) const
    {
        return SignaturePart(package, reference, holder, documentFolder);
    }

    SignatureFacts ReadSignature(const pugi::xml_node& signature, const QString& listPart) const
    {
        SignatureFacts facts;
        facts.id = AttributeText(signature, "ID").trimmed();
        facts.isSeal = AttributeText(signature, "Type").trimmed().compare(QLatin1String("Sign"), Qt::CaseInsensitive);
        const QString part = PartAt(AttributeText(signature, "BaseLoc"), listPart);
        const std::unique_ptr<XmlPart> xml = part.isEmpty() ? nullptr : XmlPart::Load(package, part);
        const pugi::xml_node info = xml ? ChildElement(xml->GetRoot(), "SignedInfo") : pugi::xml_node();
        if (!info)
            return facts;
        facts.isRead = true;
        const pugi::xml_node provider = ChildElement(info, "Provider");
        facts.provider = Said(provider, "ProviderName");
        facts.company = Said(provider, "Company");
        facts.providerVersion = Said(provider, "Version");
        facts.date = TrimmedText(ChildElement(info, "SignatureDateTime"));
        facts.stamps = int(ChildElements(info, "StampAnnot").size());
        facts.coveredParts = int(ChildElements(ChildElement(info, "References"), "Reference").size());
        return facts;
    }

    // Some files write child elements where others have attributes.
    static QString Said(const pugi::xml_node& element, const char* name)
    {
        const QString text = AttributeText(element, name).trimmed();
        return text.isEmpty() ? TrimmedText(ChildElement(element, name)) : text;
    }

    const Package& package;
    const QString documentFolder;
};

} // namespace

SignatureList ReadSignatureFacts(const Package& package, const QString& documentFolder, int most)
{
    return SignatureFactsReader(package, documentFolder).Read(most);
}

} // namespace ofd
