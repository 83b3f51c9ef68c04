#include "attachment_writer.h"

#include "document_order.h"
#include "part_making.h"

#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <ofd/package/package_changes.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_text.h>
#include <ofd/package/xml_values.h>
#include <ofd/parse/attachment_reader.h>

#include <QFile>
#include <QSet>

namespace ofd {

namespace {

const QString AttachmentFolder = QStringLiteral("Attachs/");

QString TextOf(const CCA_String& text)
{
    return QString::fromUtf8(text.Bytes());
}

} // namespace

AttachmentWriter::AttachmentWriter(const Package& package, const XmlPart& document, XmlEdit& edit,
                                   const QString& documentFolder, const QString& listPart)
    : package(package)
    , document(document)
    , edit(edit)
    , documentFolder(documentFolder)
    , listPart(listPart)
{
}

bool AttachmentWriter::Write(const QVector<AttachmentEntry>& current, PackageChanges& changes, PackageError& error)
{
    written = current;
    const pugi::xml_node inlined = ChildElement(document.GetRoot(), "Attachments");
    for (const AttachmentEntry& entry : current) {
        if (entry.file)
            highestNewId = std::max(highestNewId, entry.info.id);
    }
    if (listPart.isEmpty() && FirstElement(inlined)) { // the list stands in the document part itself
        listPart = document.GetName();
        EditList(edit, inlined, changes);
        listPart.clear();
        return true;
    }
    const std::unique_ptr<XmlPart> list = LoadList(package, listPart, error);
    if (error)
        return false;
    if (!list)
        return MakeList(changes);
    XmlEdit listEdit(*list);
    EditList(listEdit, list->GetRoot(), changes);
    const QByteArray bytes = listEdit.Apply(&error);
    if (bytes.isEmpty())
        return false;
    changes.SetPart(listPart, bytes);
    return true;
}

void AttachmentWriter::EditList(XmlEdit& list, const pugi::xml_node& holder, PackageChanges& changes)
{
    RemoveGone(list, holder, changes);
    int ordinal = 0;
    for (AttachmentEntry& entry : written) {
        if (entry.file) {
            AddPart(entry, changes);
            list.AppendChild(holder, ElementOf(entry, PrefixOf(holder), RefersFromRoot(holder)));
            entry.file.reset();
        }
        entry.ordinal = ordinal++;
    }
}

// A part goes only when no attachment that stays is the same part.
void AttachmentWriter::RemoveGone(XmlEdit& list, const pugi::xml_node& holder, PackageChanges& changes)
{
    QSet<int> kept;
    QSet<QString> neededParts;
    for (const AttachmentEntry& entry : qAsConst(written)) {
        kept.insert(entry.ordinal);
        neededParts.insert(entry.part);
    }
    LocationContext context;
    context.holderPart = listPart;
    context.documentFolder = documentFolder;
    const std::vector<pugi::xml_node> elements = ChildElements(holder, "Attachment");
    for (int i = 0; i < int(elements.size()); ++i) {
        if (kept.contains(i))
            continue;
        const pugi::xml_node& element = elements[size_t(i)];
        const QString location = TrimmedText(ChildElement(element, "FileLoc"));
        const QString part = ResolveLocation(package, location, context).part;
        if (!part.isEmpty() && !neededParts.contains(part))
            changes.RemovePart(part);
        list.Remove(element);
    }
}

void AttachmentWriter::AddPart(AttachmentEntry& entry, PackageChanges& changes) const
{
    const QString format = CleanedName(TextOf(entry.info.format));
    const QString name = CleanedName(TextOf(entry.info.name));
    const QString stem = name.isEmpty() ? QStringLiteral("attachment") : name;
    const QString ending = format.isEmpty() ? QString() : QLatin1Char('.') + format;
    const QString folder = documentFolder + AttachmentFolder;
    const QString plain = folder + stem + ending;
    entry.part = changes.IsFreeName(package, plain)
                     ? plain
                     : changes.FreePartName(package, folder, stem + QLatin1Char('_'), ending);
    const auto openData = [file = entry.file] {
        auto device = std::make_unique<QFile>(file->fileName());
        device->open(QIODevice::ReadOnly);
        return device->isOpen() ? std::unique_ptr<QIODevice>(std::move(device)) : nullptr;
    };
    changes.SetPartFromDevice(entry.part, openData, entry.isBig);
}

QByteArray AttachmentWriter::ElementOf(const AttachmentEntry& entry, const QByteArray& prefix, bool isFromRoot) const
{
    XmlFragment xml(prefix);
    xml.Open("Attachment")
        .Attribute("ID", QString::number(entry.info.id))
        .Attribute("Name", TextOf(entry.info.name))
        .Attribute("Format", TextOf(entry.info.format))
        .Attribute("CreationDate", TextOf(entry.info.addDate))
        .Attribute("Size", double(entry.info.size));
    return xml.Element("FileLoc", MakeReference(entry.part, listPart, isFromRoot)).Close().GetBytes();
}

// A document without a list gets one in a part of its own; an element that named a missing or broken part is put right.
bool AttachmentWriter::MakeList(PackageChanges& changes)
{
    const pugi::xml_node root = document.GetRoot();
    const QByteArray prefix = PrefixOf(root);
    listPart = documentFolder + QStringLiteral("Attachments.xml");
    if (package.HasPartIgnoringCase(listPart))
        listPart =
            changes.FreePartName(package, documentFolder, QStringLiteral("Attachments_"), QStringLiteral(".xml"));
    const bool isFromRoot = ListsAreFromRoot(root);
    QByteArray xml;
    int ordinal = 0;
    for (AttachmentEntry& entry : written) {
        AddPart(entry, changes);
        xml += ElementOf(entry, prefix, isFromRoot);
        entry.file.reset();
        entry.ordinal = ordinal++;
    }
    changes.SetXmlPart(listPart, NewPart(root, "Attachments", xml));
    const QString reference = MakeReference(listPart, document.GetName(), isFromRoot);
    if (const pugi::xml_node element = ChildElement(root, "Attachments"))
        edit.SetText(element, reference);
    else
        edit.InsertInOrder(root, "Attachments", XmlFragment(prefix).Element("Attachments", reference).GetBytes(),
                           DocumentOrder());
    return true;
}

} // namespace ofd
