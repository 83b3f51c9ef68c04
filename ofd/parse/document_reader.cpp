#include "document_reader.h"

#include <ofd/model/problem_log.h>
#include <ofd/package/entry_names.h>
#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>

#include <algorithm>

namespace ofd {

namespace {

void TellOfDuplicate(const QString& text, int id)
{
    ReportProblem(ProblemKind::DuplicateIdentifier, text.arg(quint32(id)));
}

QString Resolve(const Package& package, const pugi::xml_node& holder, const LocationContext& context)
{
    return holder ? ResolveLocation(package, TrimmedText(holder), context).part : QString();
}

// The date a text begins with; writers use one or two digits and dashes or slashes.
QDate LeadingDate(const QString& text)
{
    const QStringList pieces = text.trimmed()
                                   .section(QLatin1Char('T'), 0, 0)
                                   .section(QLatin1Char(' '), 0, 0)
                                   .split(text.contains(QLatin1Char('/')) ? QLatin1Char('/') : QLatin1Char('-'));
    return pieces.size() < 3 ? QDate() : QDate(pieces[0].toInt(), pieces[1].toInt(), pieces[2].toInt());
}

Permissions ReadPermissions(const pugi::xml_node& element)
{
    Permissions permissions;
    permissions.exist = bool(element);
    const auto flag = [&element](const char* name) {
        const pugi::xml_node child = ChildElement(element, name);
        return child ? ParseBoolean(TrimmedText(child).toStdString()).value_or(true) : true;
    };
    permissions.edit = flag("Edit");
    permissions.annotate = flag("Annot");
    permissions.exportContent = flag("Export");
    const pugi::xml_node print = ChildElement(element, "Print");
    permissions.print = BooleanAttribute(print, "Printable", true);
    bool isNumber = false;
    const int copies = AttributeText(print, "Copies").trimmed().toInt(&isNumber);
    permissions.copies = isNumber ? copies : -1;
    const pugi::xml_node period = ChildElement(element, "ValidPeriod");
    permissions.validFrom = LeadingDate(AttributeText(period, "StartDate"));
    permissions.validUntil = LeadingDate(AttributeText(period, "EndDate"));
    return permissions;
}

class StructureReader
{
public:
    StructureReader(const Package& package, const XmlPart& document, DocumentStructure& structure)
        : package(package)
        , document(document)
        , structure(structure)
    {
        context.holderPart = structure.documentPart;
        context.documentFolder = structure.documentFolder;
    }

    void Read()
    {
        const pugi::xml_node root = document.GetRoot();
        for (const char* name : {"CommonData", "Annotations", "CustomTags", "Attachments"})
            TellOfFurther(document, ChildElements(root, name),
                          QCoreApplication::translate("OfdDocument", "Of more than one \"%1\" the first is read.")
                              .arg(QLatin1String(name)));
        ReadCommonData(ChildElement(root, "CommonData"));
        const std::vector<pugi::xml_node> pageLists = ChildElements(root, "Pages");
        TellOfFurther(document, pageLists,
                      QCoreApplication::translate(
                          "OfdDocument", "The document has more than one list of pages; they are read as one."));
        for (const pugi::xml_node& list : pageLists)
            ReadPages(list);
        structure.permissions = ReadPermissions(ChildElement(root, "Permissions"));
        structure.annotationsPart = Resolve(package, ChildElement(root, "Annotations"), context);
        structure.customTagsPart = Resolve(package, ChildElement(root, "CustomTags"), context);
        const pugi::xml_node attachments = ChildElement(root, "Attachments");
        if (!TrimmedText(attachments).isEmpty()) // else the list itself stands here
            structure.attachmentsPart = Resolve(package, attachments, context);
    }

private:
    // Children come in any order in the wild, so they are looked up by name.
    void ReadCommonData(const pugi::xml_node& common)
    {
        structure.pageSizeMm = ReadAreaSize(ChildElement(common, "PageArea"));
        Reach(int(ParseId(TrimmedText(ChildElement(common, "MaxUnitID")).toStdString()).value_or(0)));
        structure.defaultColorSpace = ParseId(TrimmedText(ChildElement(common, "DefaultCS")).toStdString()).value_or(0);
        for (pugi::xml_node child = FirstElement(common); child; child = NextElement(child)) {
            if (IsElement(child, "PublicRes"))
                AppendPart(structure.publicRes, child);
            else if (IsElement(child, "DocumentRes"))
                AppendPart(structure.documentRes, child);
            else if (IsElement(child, "TemplatePage"))
                AppendTemplate(child);
        }
    }

    void Reach(int id) { structure.highestId = std::max(structure.highestId, id); }

    void AppendPart(QStringList& parts, const pugi::xml_node& element)
    {
        const ProblemPlace place(0, document.PlaceOf(element));
        const QString part = Resolve(package, element, context);
        if (!part.isEmpty())
            parts.append(part);
    }

    void AppendTemplate(const pugi::xml_node& element)
    {
        TemplateEntry entry;
        entry.id = int(IdAttribute(element, "ID"));
        Reach(entry.id);
        const ProblemPlace place(entry.id, document.PlaceOf(element));
        entry.part = ResolveLocation(package, AttributeText(element, "BaseLoc"), context).part;
        entry.name = AttributeText(element, "Name");
        entry.zOrder = AttributeText(element, "ZOrder").trimmed();
        if (structure.templateById.contains(entry.id))
            TellOfDuplicate(QCoreApplication::translate("OfdDocument", "More than one template has the ID %1."),
                            entry.id);
        else
            structure.templateById.insert(entry.id, structure.templates.size());
        structure.templates.append(entry);
    }

    void ReadPages(const pugi::xml_node& pages)
    {
        for (pugi::xml_node child = FirstElement(pages); child; child = NextElement(child)) {
            if (!IsElement(child, "Page"))
                continue;
            PageEntry page;
            page.id = int(IdAttribute(child, "ID"));
            Reach(page.id);
            const ProblemPlace place(page.id, document.PlaceOf(child));
            page.part = ResolveLocation(package, AttributeText(child, "BaseLoc"), context).part;
            if (structure.pageIndexById.contains(page.id))
                TellOfDuplicate(QCoreApplication::translate("OfdDocument", "More than one page has the ID %1."),
                                page.id);
            else
                structure.pageIndexById.insert(page.id, structure.pages.size());
            structure.pages.append(page);
        }
    }

    const Package& package;
    const XmlPart& document;
    DocumentStructure& structure;
    LocationContext context;
};

// Whether no other version has a higher number; where they have none, the last one is the newest.
bool IsNewestVersion(const std::vector<pugi::xml_node>& versions, size_t place)
{
    const auto number = [&](size_t i) { return IntegerAttribute(versions[i], "Index"); };
    for (size_t i = 0; i < versions.size(); ++i) {
        if (number(i) > number(place) || (number(i) == number(place) && i > place))
            return false;
    }
    return true;
}

// The document part of a version; empty, when it leads to none. `name` gets how people call it.
QString PartOfVersion(const Package& package, const pugi::xml_node& version, const LocationContext& context,
                      QString& name)
{
    LocationContext inside = context;
    inside.holderPart = ResolveLocation(package, AttributeText(version, "BaseLoc"), context).part;
    const std::unique_ptr<XmlPart> xml =
        inside.holderPart.isEmpty() ? nullptr : XmlPart::Load(package, inside.holderPart);
    if (!xml)
        return QString();
    for (const char* attribute : {"Name", "Version"}) {
        if (name.isEmpty())
            name = AttributeText(xml->GetRoot(), attribute).trimmed();
    }
    if (name.isEmpty())
        name = AttributeText(version, "ID").trimmed();
    return Resolve(package, ChildElement(xml->GetRoot(), "DocRoot"), inside);
}

// The part that holds the document: that of the current version when there is one, else the body's own.
QString FindDocumentPart(const Package& package, const pugi::xml_node& body, const LocationContext& context,
                         VersionFacts& facts)
{
    const std::vector<pugi::xml_node> versions = ChildElements(ChildElement(body, "Versions"), "Version");
    facts.count = int(versions.size());
    for (size_t i = 0; i < versions.size(); ++i) {
        if (!BooleanAttribute(versions[i], "Current", false))
            continue;
        QString name;
        const QString root = PartOfVersion(package, versions[i], context, name);
        facts.isWanted = !root.isEmpty();
        if (!facts.isWanted)
            continue;
        facts.shown = int(i) + 1;
        facts.name = name;
        facts.isNewest = IsNewestVersion(versions, i);
        return root;
    }
    facts.isNewest = versions.empty();
    return Resolve(package, ChildElement(body, "DocRoot"), context);
}

// A file may keep several states of its document, of which one is open. Whoever edits it should know which.
void TellOfVersion(const VersionFacts& facts)
{
    if (facts.count == 0)
        return;
    if (!facts.isWanted)
        ReportProblem(
            ProblemKind::MissingPart,
            QCoreApplication::translate("OfdDocument", "The current version of the document cannot be read."));
    const QString number = QString::number(facts.shown);
    const QString count = QString::number(facts.count);
    if (facts.shown == 0)
        ReportProblem(ProblemKind::VersionShown,
                      QCoreApplication::translate(
                          "OfdDocument",
                          "The file lists %1 versions of the document; none of them is shown and edited, but what the "
                          "file names as the document itself.")
                          .arg(count));
    else if (facts.isNewest)
        ReportProblem(
            ProblemKind::VersionShown,
            QCoreApplication::translate("OfdDocument", "Version %1 of %2 of the document is shown and edited.")
                .arg(number, count));
    else
        ReportProblem(
            ProblemKind::VersionShown,
            QCoreApplication::translate(
                "OfdDocument", "Version %1 of %2 of the document is shown and edited, which is not the newest one.")
                .arg(number, count));
}

// A document counts as signed when it lists a signature, whether or not that can be found, when its list cannot be
// read, or when it carries a list that guards the whole package.
bool IsSigned(const Package& package, const pugi::xml_node& body, const LocationContext& context)
{
    if (package.HasPartIgnoringCase(QStringLiteral("OFDEntries.xml")))
        return true;
    const pugi::xml_node signatures = ChildElement(body, "Signatures");
    if (!signatures)
        return false;
    const QString part = Resolve(package, signatures, context);
    if (part.isEmpty())
        return false;
    const std::unique_ptr<XmlPart> xml = XmlPart::Load(package, part);
    return !xml || ChildElement(xml->GetRoot(), "Signature");
}

// Whoever opens a file with several documents should know that there is more than what is shown.
void TellOfOthers(const XmlPart& entry, const std::vector<pugi::xml_node>& bodies)
{
    if (bodies.size() < 2)
        return;
    const ProblemPlace place(0, entry.PlaceOf(bodies[1]));
    ReportProblem(
        ProblemKind::Unsupported,
        QCoreApplication::translate("OfdDocument", "The file holds %1 documents; the first one is shown and edited.")
            .arg(bodies.size()));
}

// The entry part's facts; false, and `error` set, when there is no document behind it.
bool ReadEntryPart(const Package& package, DocumentStructure& structure, QString& error)
{
    PackageError xmlError;
    const std::unique_ptr<XmlPart> entry = XmlPart::Load(package, package.GetEntryPoint(), &xmlError);
    if (!entry) {
        error = xmlError.kind == PackageErrorKind::Encrypted
                    ? QCoreApplication::translate("OfdDocument", "The document is encrypted and cannot be opened.")
                    : QCoreApplication::translate("OfdDocument", "The document's entry part cannot be read: %1")
                          .arg(xmlError.text);
        return false;
    }
    const std::vector<pugi::xml_node> bodies = ChildElements(entry->GetRoot(), "DocBody");
    TellOfOthers(*entry, bodies);
    const pugi::xml_node body = bodies.empty() ? pugi::xml_node() : bodies.front();
    LocationContext context;
    context.holderPart = package.GetEntryPoint();
    structure.documentPart = FindDocumentPart(package, body, context, structure.version);
    TellOfVersion(structure.version);
    if (structure.documentPart.isEmpty()) {
        error = QCoreApplication::translate("OfdDocument",
                                            "The file names no document, or the document it names is missing.");
        return false;
    }
    structure.documentFolder = FolderOf(structure.documentPart);
    structure.title = TrimmedText(Descend(body, {"DocInfo", "Title"}));
    context.documentFolder = structure.documentFolder;
    structure.isSigned = IsSigned(package, body, context);
    structure.isEncrypted =
        package.HasEncryptedParts() || package.HasPartIgnoringCase(QStringLiteral("Encryptions.xml"));
    return true;
}

} // namespace

bool Permissions::IsValidOn(const QDate& day) const
{
    return (!validFrom.isValid() || validFrom <= day) && (!validUntil.isValid() || day <= validUntil);
}

QSizeF ReadAreaSize(const pugi::xml_node& area)
{
    const pugi::xml_node box = ChildElement(area, "PhysicalBox");
    if (!box)
        return QSizeF();
    const QString text = TrimmedText(box);
    const std::optional<QRectF> rect = ParseBox(text.toStdString());
    if (rect && rect->width() > 0 && rect->height() > 0)
        return rect->size();
    constexpr int shownLength = 80;
    ReportProblem(
        ProblemKind::BadValue,
        QCoreApplication::translate("OfdDocument", "\"%1\" is no size of a page.").arg(text.left(shownLength)));
    return QSizeF();
}

void TellOfFurther(const XmlPart& document, const std::vector<pugi::xml_node>& elements, const QString& text)
{
    if (elements.size() < 2)
        return;
    const ProblemPlace place(0, document.PlaceOf(elements[1]));
    ReportProblem(ProblemKind::DuplicateIdentifier, text);
}

std::unique_ptr<XmlPart> LoadDocumentPart(const Package& package, const QString& part, PackageError* error)
{
    return XmlPart::Load(package, part, error, "Outlines");
}

DocumentParts ReadDocument(const Package& package)
{
    DocumentParts parts;
    DocumentStructure& structure = parts.structure;
    if (!ReadEntryPart(package, structure, parts.error))
        return parts;
    PackageError xmlError;
    std::unique_ptr<XmlPart> document = LoadDocumentPart(package, structure.documentPart, &xmlError);
    if (!document) {
        parts.error =
            structure.isEncrypted
                ? QCoreApplication::translate("OfdDocument", "The document is encrypted and cannot be opened.")
                : QCoreApplication::translate("OfdDocument", "The document part cannot be read: %1").arg(xmlError.text);
        return parts;
    }
    const ProblemScope scope(structure.documentPart);
    StructureReader(package, *document, structure).Read();
    if (structure.pages.isEmpty()) {
        parts.error = QCoreApplication::translate("OfdDocument", "The document has no pages.");
        return parts;
    }
    parts.document = std::move(document);
    return parts;
}

} // namespace ofd
