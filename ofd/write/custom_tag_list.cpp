#include "custom_tag_list.h"

#include "custom_tag_writer.h"
#include "document_order.h"
#include "part_making.h"

#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <ofd/package/package_changes.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_text.h>
#include <ofd/parse/custom_tag_reader.h>

#include <algorithm>

namespace ofd {

CustomTagListWriter::CustomTagListWriter(const Package& package, const XmlPart& document, XmlEdit& edit,
                                         const QString& documentFolder, const QString& listPart)
    : package(package)
    , document(document)
    , edit(edit)
    , documentFolder(documentFolder)
    , listPart(listPart)
{
}

bool CustomTagListWriter::Write(const std::vector<TagTree>& trees, PackageChanges& changes, PackageError& error)
{
    bool isListChanged = false;
    for (const TagTree& tree : trees) {
        const QString part = AreTagsChanged(tree) ? WriteTree(tree, changes, error) : tree.part;
        if (error)
            return false;
        isListChanged |= part != tree.part;
        parts.append(part);
    }
    return !isListChanged || WriteList(trees, changes, error);
}

// The part that the tree is in then.
QString CustomTagListWriter::WriteTree(const TagTree& tree, PackageChanges& changes, PackageError& error)
{
    if (tree.root->SubNodeCount() == 0) {
        if (!tree.part.isEmpty())
            changes.RemovePart(tree.part);
        return {};
    }
    const QByteArray bytes = WriteTags(tree, FormatNamespace(document.GetRoot()), error);
    if (error)
        return {};
    if (tree.part.isEmpty()) {
        const QString folder = documentFolder + QStringLiteral("Tags/");
        const QString part = changes.FreePartName(package, folder, QStringLiteral("Tag_"), QStringLiteral(".xml"));
        changes.SetXmlPart(part, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + bytes);
        return part;
    }
    const std::unique_ptr<XmlPart> part = XmlPart::Load(package, tree.part, &error);
    if (!part || (tree.elements && bytes == tree.elements->GetBytes()))
        return tree.part;
    XmlEdit partEdit(*part);
    partEdit.ReplaceElement(part->GetRoot(), bytes);
    changes.SetPart(tree.part, partEdit.Apply(&error));
    return tree.part;
}

bool CustomTagListWriter::WriteList(const std::vector<TagTree>& trees, PackageChanges& changes, PackageError& error)
{
    const std::unique_ptr<XmlPart> list = LoadList(package, listPart, error);
    if (error)
        return false;
    if (!list) {
        MakeList(trees, changes);
        return true;
    }
    XmlEdit listEdit(*list);
    EditList(listEdit, list->GetRoot(), trees);
    changes.SetPart(listPart, listEdit.Apply(&error));
    return !error;
}

// An element of the document part that named a missing or broken list is put right.
void CustomTagListWriter::MakeList(const std::vector<TagTree>& trees, PackageChanges& changes)
{
    const pugi::xml_node root = document.GetRoot();
    listPart = documentFolder + QStringLiteral("CustomTags.xml");
    if (package.HasPartIgnoringCase(listPart))
        listPart = changes.FreePartName(package, documentFolder, QStringLiteral("CustomTags_"), QStringLiteral(".xml"));
    const QByteArray empty = NewPart(root, "CustomTags", QByteArray());
    const std::unique_ptr<XmlPart> list = XmlPart::Parse(listPart, empty);
    XmlEdit listEdit(*list);
    EditList(listEdit, list->GetRoot(), trees);
    changes.SetXmlPart(listPart, listEdit.Apply());
    const QString reference = MakeReference(listPart, document.GetName(), ListsAreFromRoot(root));
    if (const pugi::xml_node element = ChildElement(root, "CustomTags"))
        edit.SetText(element, reference);
    else
        edit.InsertInOrder(root, "CustomTags", XmlFragment(PrefixOf(root)).Element("CustomTags", reference).GetBytes(),
                           DocumentOrder());
}

void CustomTagListWriter::EditList(XmlEdit& list, const pugi::xml_node& root, const std::vector<TagTree>& trees) const
{
    LocationContext context;
    context.holderPart = listPart;
    context.documentFolder = documentFolder;
    QStringList gone;
    for (size_t i = 0; i < trees.size(); ++i) {
        const QString& part = parts.at(int(i));
        if (part.isEmpty() && !trees[i].part.isEmpty())
            gone.append(trees[i].part);
        else if (part != trees[i].part)
            list.AppendChild(root, EntryFor(trees[i], part, root));
    }
    for (const pugi::xml_node& entry : ChildElements(root, "CustomTag")) {
        const QString part = ResolveLocation(package, TrimmedText(ChildElement(entry, "FileLoc")), context).part;
        if (!part.isEmpty() && gone.contains(part))
            list.Remove(entry);
    }
}

// Writers in the wild tell the prefix of the vocabulary in an attribute of their own; where they do, so do we.
QByteArray CustomTagListWriter::EntryFor(const TagTree& tree, const QString& part, const pugi::xml_node& list) const
{
    const std::vector<pugi::xml_node> entries = ChildElements(list, "CustomTag");
    const bool hasTypes = std::any_of(entries.begin(), entries.end(),
                                      [](const pugi::xml_node& entry) { return HasAttribute(entry, "TypeID"); });
    XmlFragment xml(PrefixOf(list));
    xml.Open("CustomTag").Attribute("NameSpace", tree.nameSpace);
    if (hasTypes)
        xml.Attribute("TypeID", tree.prefix);
    return xml.Element("FileLoc", MakeReference(part, listPart, RefersFromRoot(list))).Close().GetBytes();
}

} // namespace ofd
