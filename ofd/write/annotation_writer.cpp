#include "annotation_writer.h"

#include "child_order.h"
#include "part_making.h"

#include <frame/document/ig_page.h>
#include <ofd/ofd_annot.h>
#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <ofd/package/package_changes.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_text.h>

#include <QHash>
#include <QVector>

#include <algorithm>

namespace ofd {

namespace {

QString TextOf(const CCA_String& text)
{
    return QString::fromUtf8(text.Bytes());
}

// A date that comes back comes back with the blanks that were around it.
QString DateToWrite(OfdAnnot& annot)
{
    const QString date = TextOf(annot.GetDate());
    const AnnotationRecord& record = annot.Record();
    return date == record.date && !record.blankDate.isEmpty() ? record.blankDate : date;
}

} // namespace

AnnotationWriter::AnnotationWriter(const Package& package, const QString& documentFolder, const QString& listPart,
                                   const EmptiedParts& emptied)
    : package(package)
    , documentFolder(documentFolder)
    , listPart(listPart)
    , emptied(emptied)
{
}

bool AnnotationWriter::Write(const std::vector<OfdAnnot*>& annots, PackageChanges& changes, PackageError& error)
{
    QMap<QString, std::vector<OfdAnnot*>> byPart;
    for (OfdAnnot* annot : annots)
        byPart[annot->Record().part].push_back(annot);
    for (auto part = byPart.cbegin(); part != byPart.cend(); ++part) {
        const bool isEdited =
            std::any_of(part->begin(), part->end(), [](const OfdAnnot* annot) { return annot->IsEdited(); });
        if (isEdited && !WritePart(part.key(), *part, changes, error))
            return false;
    }
    return (gone.isEmpty() && returned.isEmpty()) || WriteList(changes, error);
}

bool AnnotationWriter::WritePart(const QString& name, const std::vector<OfdAnnot*>& annots, PackageChanges& changes,
                                 PackageError& error)
{
    const bool returns = emptied.contains(name);
    const std::unique_ptr<XmlPart> part =
        returns ? XmlPart::Parse(name, emptied.value(name), &error) : XmlPart::Load(package, name, &error);
    if (!part)
        return false;
    XmlEdit edit(*part);
    EditPart(edit, *part, annots);
    const QByteArray bytes = edit.IsEmpty() ? part->GetBytes() : edit.Apply(&error);
    if (bytes.isEmpty())
        return false;
    const bool isEmpty =
        std::all_of(annots.begin(), annots.end(), [](const OfdAnnot* annot) { return annot->IsRemoved(); });
    if (isEmpty) {
        changes.RemovePart(name);
        emptied.insert(name, part->GetBytes());
        gone.append(name);
    } else {
        changes.SetPart(name, bytes);
        emptied.remove(name);
        if (returns)
            returned.insert(name, annots.front()->GetOwnerPage()->PageId());
    }
    return true;
}

void AnnotationWriter::EditPart(XmlEdit& edit, const XmlPart& part, const std::vector<OfdAnnot*>& annots)
{
    const std::vector<pugi::xml_node> elements = ChildElements(part.GetRoot(), "Annot");
    std::vector<OfdAnnot*> wanted;
    std::vector<int> matches;
    QHash<QByteArray, QVector<int>> emptiedElements; // of a part that comes back
    for (int i = int(elements.size()) - 1; i >= 0 && emptied.contains(part.GetName()); --i)
        emptiedElements[edit.GetElementBytes(elements[size_t(i)])].append(i);
    for (OfdAnnot* annot : annots) {
        const bool hasElement = annot->IsInFile() && annot->GetOrdinal() < int(elements.size());
        if (annot->IsRemoved()) {
            const QByteArray xml =
                hasElement ? edit.GetElementBytes(elements[size_t(annot->GetOrdinal())]) : annot->GetXml();
            places.push_back({annot, -1, xml});
            continue;
        }
        places.push_back({annot, int(wanted.size()), {}});
        wanted.push_back(annot);
        QVector<int>& same = emptiedElements[annot->GetXml()];
        matches.push_back(hasElement ? annot->GetOrdinal() : same.isEmpty() ? -1 : same.takeLast());
    }
    const std::vector<bool> stays =
        ArrangeChildren(edit, part.GetRoot(), elements, matches, [&](int i) { return BytesOf(*wanted[size_t(i)]); });
    for (size_t i = 0; i < wanted.size(); ++i) {
        if (stays[i])
            EditAnnotation(edit, elements[size_t(matches[i])], *wanted[i]);
    }
}

// The element of an annotation that comes back, with what was changed since it left.
QByteArray AnnotationWriter::BytesOf(OfdAnnot& annot)
{
    const std::unique_ptr<XmlPart> old = XmlPart::Parse(QString(), annot.GetXml());
    if (!old)
        return {};
    XmlEdit edit(*old);
    EditAnnotation(edit, old->GetRoot(), annot);
    return edit.IsEmpty() ? annot.GetXml() : edit.Apply();
}

void AnnotationWriter::EditAnnotation(XmlEdit& edit, const pugi::xml_node& element, OfdAnnot& annot)
{
    const bool isValueEdited = annot.IsDateEdited() || annot.IsRemarkEdited();
    if (isValueEdited && annot.GetId() != annot.Record().id) { // it had none, or that of another
        edit.SetAttribute(element, "ID", QString::number(annot.GetId()));
        highestNewId = std::max(highestNewId, annot.GetId());
    }
    if (annot.IsDateEdited()) {
        if (annot.GetDate().IsEmpty())
            edit.RemoveAttribute(element, "LastModDate");
        else
            edit.SetAttribute(element, "LastModDate", DateToWrite(annot));
    }
    if (!annot.IsRemarkEdited())
        return;
    const pugi::xml_node remark = ChildElement(element, "Remark");
    if (annot.GetRemark().IsEmpty())
        edit.Remove(remark);
    else if (remark)
        edit.SetText(remark, TextOf(annot.GetRemark()));
    else
        edit.PrependChild(element,
                          XmlFragment(PrefixOf(element)).Element("Remark", TextOf(annot.GetRemark())).GetBytes());
}

// Entries go and come with their parts. The list itself may be empty.
bool AnnotationWriter::WriteList(PackageChanges& changes, PackageError& error)
{
    const std::unique_ptr<XmlPart> list = XmlPart::Load(package, listPart, &error);
    if (!list)
        return false;
    const pugi::xml_node root = list->GetRoot();
    LocationContext context;
    context.holderPart = listPart;
    context.documentFolder = documentFolder;
    XmlEdit edit(*list);
    for (const pugi::xml_node& page : ChildElements(root, "Page")) {
        const QString part = ResolveLocation(package, TrimmedText(ChildElement(page, "FileLoc")), context).part;
        if (gone.contains(part))
            edit.Remove(page);
    }
    for (auto part = returned.cbegin(); part != returned.cend(); ++part) {
        XmlFragment xml(PrefixOf(root));
        xml.Open("Page").Attribute("PageID", FormatId(*part));
        xml.Element("FileLoc", MakeReference(part.key(), listPart, RefersFromRoot(root)));
        edit.AppendChild(root, xml.Close().GetBytes());
    }
    const QByteArray bytes = edit.IsEmpty() ? list->GetBytes() : edit.Apply(&error);
    if (bytes.isEmpty())
        return false;
    if (bytes != list->GetBytes())
        changes.SetPart(listPart, bytes);
    return true;
}

} // namespace ofd
