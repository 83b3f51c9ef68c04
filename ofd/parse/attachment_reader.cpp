#include "attachment_reader.h"

#include <ofd/model/problem_log.h>
#include <ofd/model/structure.h>
#include <ofd/package/entry_names.h>
#include <ofd/package/limits.h>
#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <limits>

namespace ofd {

namespace {

constexpr int shownLength = 80;

CCA_String Utf8(const QString& text)
{
    return CCA_String(text.toUtf8());
}

bool IsMisleading(QChar c)
{
    const QChar::Category category = c.category();
    return category == QChar::Other_Control || category == QChar::Other_Format || c == QLatin1Char('/') ||
           c == QLatin1Char('\\');
}

QString DateOf(const pugi::xml_node& element)
{
    const QString created = AttributeText(element, "CreationDate").trimmed();
    return created.isEmpty() ? AttributeText(element, "ModDate").trimmed() : created;
}

// The number of an identifier, which is or ends in one; 0 when there is none.
int NumberOf(const QString& identifier)
{
    int first = identifier.size();
    while (first > 0 && identifier.at(first - 1).isDigit())
        --first;
    return identifier.mid(first).toInt();
}

AttachmentEntry ReadEntry(const pugi::xml_node& element, const Package& package, const LocationContext& context)
{
    AttachmentEntry entry;
    const QString location = TrimmedText(ChildElement(element, "FileLoc"));
    entry.part = ResolveLocation(package, location, context).part;
    QString format = AttributeText(element, "Format").trimmed();
    if (format.isEmpty()) {
        const QString fileName = FileNameOf(location);
        format = fileName.contains(QLatin1Char('.')) ? fileName.section(QLatin1Char('.'), -1) : QString();
    }
    QString name = AttributeText(element, "Name").trimmed();
    if (name.isEmpty())
        name = FileNameOf(entry.part.isEmpty() ? location : entry.part);
    const QString ending = QLatin1Char('.') + format;
    if (!format.isEmpty() && name.endsWith(ending, Qt::CaseInsensitive))
        name.chop(ending.size());
    entry.info.name = Utf8(HarmlessName(name));
    entry.info.format = Utf8(HarmlessName(format));
    entry.info.addDate = Utf8(DateOf(element));
    const qint64 bytes = entry.part.isEmpty() ? -1 : package.GetPartSize(entry.part);
    entry.info.size = bytes >= 0 ? float(bytes / 1024.0) : float(NumberAttribute(element, "Size"));
    entry.identifier = AttributeText(element, "ID").trimmed();
    entry.info.id = NumberOf(entry.identifier);
    entry.info.visible = BooleanAttribute(element, "Visible", true);
    return entry;
}

void TellOfIdentifier(const QString& identifier, QSet<QString>& known)
{
    if (!identifier.isEmpty() && known.contains(identifier))
        ReportProblem(ProblemKind::DuplicateIdentifier,
                      QCoreApplication::translate("OfdDocument", "More than one attachment has the ID %1.")
                          .arg(identifier.left(shownLength)));
    known.insert(identifier);
}

// Missing and repeated identifiers get free numbers, in memory only.
void MakeIdsUnique(QVector<AttachmentEntry>& entries)
{
    QSet<int> given;
    int highest = 0;
    for (const AttachmentEntry& entry : qAsConst(entries)) {
        given.insert(entry.info.id);
        highest = std::max(highest, entry.info.id);
    }
    QSet<int> taken;
    int next = highest < std::numeric_limits<int>::max() / 2 ? highest + 1 : 1;
    for (AttachmentEntry& entry : entries) {
        if (entry.info.id <= 0 || taken.contains(entry.info.id)) {
            while (given.contains(next))
                ++next;
            entry.info.id = next++;
        }
        taken.insert(entry.info.id);
    }
}

} // namespace

AttachmentIds AttachmentIdsOf(const QVector<AttachmentEntry>& entries)
{
    AttachmentIds ids;
    for (const AttachmentEntry& entry : entries) {
        const int number = NumberOf(entry.identifier);
        if (!entry.identifier.isEmpty() && !ids.byWord.contains(entry.identifier))
            ids.byWord.insert(entry.identifier, entry.info.id);
        if (number > 0 && !ids.byNumber.contains(number))
            ids.byNumber.insert(number, entry.info.id);
        if (entry.info.id != number)
            ids.madeUp.insert(entry.info.id);
    }
    return ids;
}

int FindAttachmentId(const AttachmentIds& ids, const QString& identifier)
{
    const QString word = identifier.trimmed();
    const auto known = ids.byWord.constFind(word);
    if (known != ids.byWord.constEnd())
        return *known;
    const int number = NumberOf(word);
    return ids.byNumber.value(number, ids.madeUp.contains(number) ? 0 : number);
}

QString HarmlessName(const QString& name)
{
    QString cleaned;
    for (const QChar c : name)
        cleaned += IsMisleading(c) ? QChar(QLatin1Char('_')) : c;
    while (cleaned.startsWith(QLatin1Char('.')))
        cleaned.remove(0, 1);
    return cleaned.left(limits::MaxAttachmentName).trimmed();
}

QString CleanedName(const QString& name)
{
    QString cleaned = HarmlessName(name);
    for (QChar& c : cleaned) {
        if (QStringLiteral(":*?\"<>|").contains(c))
            c = QLatin1Char('_');
    }
    return cleaned;
}

QVector<AttachmentEntry> ReadAttachments(const Package& package, const DocumentStructure& structure,
                                         const pugi::xml_node& documentRoot)
{
    QVector<AttachmentEntry> entries;
    LocationContext context;
    context.documentFolder = structure.documentFolder;
    context.holderPart = structure.documentPart;
    pugi::xml_node holder = ChildElement(documentRoot, "Attachments");
    std::unique_ptr<XmlPart> list;
    if (!structure.attachmentsPart.isEmpty()) {
        list = XmlPart::Load(package, structure.attachmentsPart);
        holder = list ? list->GetRoot() : pugi::xml_node();
        context.holderPart = structure.attachmentsPart;
    }
    const ProblemScope scope(context.holderPart);
    QSet<QString> identifiers;
    int ordinal = 0;
    for (const pugi::xml_node& element : ChildElements(holder, "Attachment")) {
        const ProblemPlace place(0, list ? list->PlaceOf(element) : -1);
        entries.append(ReadEntry(element, package, context));
        entries.last().ordinal = ordinal++;
        TellOfIdentifier(entries.last().identifier, identifiers);
    }
    MakeIdsUnique(entries);
    return entries;
}

} // namespace ofd
