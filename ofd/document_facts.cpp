#include "document_facts.h"

#include "document_private.h"

#include <ofd/model/resources.h>
#include <ofd/package/xml_names.h>
#include <ofd/parse/document_reader.h>
#include <ofd/text/font_store.h>

#include <QFileInfo>

#include <algorithm>

namespace ofd {

namespace {

void ReadInformation(const pugi::xml_node& info, DocumentFacts& facts)
{
    const auto text = [&info](const char* name) { return TrimmedText(ChildElement(info, name)); };
    facts.author = text("Author");
    facts.subject = text("Subject");
    facts.summary = text("Abstract");
    facts.creator = text("Creator");
    facts.creatorVersion = text("CreatorVersion");
    facts.creationDate = text("CreationDate");
    facts.modificationDate = text("ModDate");
    for (const pugi::xml_node& keyword : ChildElements(ChildElement(info, "Keywords"), "Keyword")) {
        const QString word = TrimmedText(keyword);
        if (!word.isEmpty())
            facts.keywords.append(word);
    }
}

QString NameOf(const FontResource& font)
{
    return font.fontName.isEmpty() ? font.familyName : font.fontName;
}

} // namespace

// The entry part is read anew: it is small, and a save writes into it.
DocumentFacts OfdDocument::GetFacts()
{
    DocumentFacts facts;
    facts.path = d->path;
    facts.bytes = QFileInfo(d->path).size();
    facts.title = GetTitle();
    facts.pages = GetPageCount();
    facts.templates = GetTemplateCount();
    facts.attachments = GetAttachmentCount();
    facts.permissions = d->Structure().permissions;
    facts.version = d->Structure().version;
    facts.isSigned = IsSignProtected();
    facts.isEncrypted = IsEncrypted();
    const std::shared_ptr<const Package> package = d->store->GetPackage();
    if (const std::unique_ptr<XmlPart> entry = XmlPart::Load(*package, package->GetEntryPoint())) {
        facts.formatVersion = AttributeText(entry->GetRoot(), "Version").trimmed();
        ReadInformation(Descend(entry->GetRoot(), {"DocBody", "DocInfo"}), facts);
    }
    return facts;
}

SignatureList OfdDocument::GetSignatures(int most) const
{
    const std::shared_ptr<const Package> package = d->store->GetPackage();
    return ReadSignatureFacts(*package, d->Structure().documentFolder, most);
}

// Embedded fonts are taken at their word: opening each would read megabytes that nothing may ever paint with.
FontList OfdDocument::GetFonts(int most)
{
    FontList list;
    const std::shared_ptr<const Resources> resources = d->store->GetResources();
    std::vector<const FontResource*> fonts;
    for (const FontResource& font : resources->fonts)
        fonts.push_back(&font);
    std::sort(fonts.begin(), fonts.end(), [](const FontResource* one, const FontResource* other) {
        const int order = NameOf(*one).localeAwareCompare(NameOf(*other));
        return order != 0 ? order < 0 : one->part < other->part;
    });
    const std::shared_ptr<const Package> package = d->store->GetPackage();
    const ProblemScope scope(d->store->GetProblems(), QString()); // a font that is looked for here is not told again
    for (const FontResource* font : fonts) {
        FontFacts facts;
        facts.name = NameOf(*font);
        facts.isEmbedded = !font->part.isEmpty();
        const bool isRepeated = !list.fonts.empty() && list.fonts.back().name == facts.name &&
                                list.fonts.back().isEmbedded == facts.isEmbedded;
        if (isRepeated)
            continue;
        if (int(list.fonts.size()) >= most) {
            ++list.more;
            continue;
        }
        if (!facts.isEmbedded)
            facts.standIn = d->store->GetFonts().GetFont(*package, font, 0, false).family;
        list.fonts.push_back(facts);
    }
    return list;
}

} // namespace ofd
