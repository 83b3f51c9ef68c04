#include "custom_tag_reader.h"

#include <frame/document/payloads.h>
#include <ofd/model/problem_log.h>
#include <ofd/model/record_sources.h>
#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <ofd/package/tag_names.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_values.h>

#include <QHash>
#include <QSet>
#include <QStringList>

#include <algorithm>

namespace ofd {

namespace {

CCA_String Utf8(const QString& text)
{
    return CCA_String(text.toUtf8());
}

// `byPage` finds the tag's references again: there may be very many.
void AddReference(const pugi::xml_node& element, G_CustomTagItem& tag, QHash<int, G_PageObjRef*>& byPage)
{
    const int objectId = int(ParseId(TrimmedText(element).toStdString()).value_or(0));
    const int pageId = int(IdAttribute(element, "PageRef"));
    if (objectId == 0 || pageId == 0) // tied to nothing; stays in the file
        return;
    G_PageObjRef*& reference = byPage[pageId];
    if (!reference) {
        reference = new G_PageObjRef; // owned by the tag
        reference->pageId = pageId;
        tag.objects.Add(reference);
    }
    reference->objectIds.append(objectId);
}

// Reads one tag without those below it. Owned by the caller.
G_CustomTagItem* ReadTag(const pugi::xml_node& element, const std::shared_ptr<const ElementTree>& tree, int position)
{
    auto* tag = new G_CustomTagItem;
    const std::string_view name = LocalName(element);
    tag->tagName = Utf8(UnescapeTagName(QString::fromUtf8(name.data(), int(name.size()))));
    for (const pugi::xml_attribute& attribute : element.attributes()) {
        if (!IsDeclaration(attribute))
            tag->attributes.Add(CCA_String(QByteArray(attribute.name()) + '=' + attribute.value()));
    }
    QHash<int, G_PageObjRef*> byPage; // not owned
    for (pugi::xml_node child = FirstElement(element); child; child = NextElement(child)) {
        if (IsElement(child, "ObjectRef"))
            AddReference(child, *tag, byPage);
        else if (IsElement(child, "ObjectData"))
            tag->attributes.Add(Utf8(QStringLiteral("ObjectData=") + ElementText(child)));
    }
    auto source = std::make_shared<TagSource>();
    source->tree = tree;
    source->element = position;
    source->name = tag->tagName;
    source->attributes = tag->attributes.Values();
    source->objects = ObjectsOf(*tag);
    tag->source = source;
    return tag;
}

} // namespace

bool IsTagElement(std::string_view localName)
{
    return localName != "ObjectRef" && localName != "ObjectData";
}

QVector<G_PageObjRef> ObjectsOf(const G_CustomTagItem& tag)
{
    QVector<G_PageObjRef> objects;
    for (const G_PageObjRef* reference : tag.objects.Values()) {
        if (reference && !reference->objectIds.isEmpty())
            objects.append(*reference);
    }
    return objects;
}

std::shared_ptr<const ElementTree> ReadTagTree(const XmlPart& part, G_TreeNode* root)
{
    const auto tree = std::make_shared<const ElementTree>(XmlEdit(part).GetElementBytes(part.GetRoot()), IsTagElement);
    // Tags come in document order, which is the order of the tree's elements too.
    std::vector<std::pair<pugi::xml_node, G_TreeNode*>> pending{{part.GetRoot(), root}};
    for (int position = 0; !pending.empty(); ++position) {
        const auto [element, parent] = pending.back();
        pending.pop_back();
        G_TreeNode* node = parent->AddSubNode(parent->SubNodeCount(), ReadTag(element, tree, position));
        const size_t first = pending.size();
        for (pugi::xml_node child = FirstElement(element); child; child = NextElement(child)) {
            if (IsTagElement(LocalName(child)))
                pending.emplace_back(child, node);
        }
        std::reverse(pending.begin() + std::ptrdiff_t(first), pending.end());
    }
    return tree;
}

std::vector<TagTree> ReadCustomTags(const Package& package, const QString& listPart, const QString& documentFolder)
{
    std::vector<TagTree> trees;
    const std::unique_ptr<XmlPart> list = listPart.isEmpty() ? nullptr : XmlPart::Load(package, listPart);
    if (!list)
        return trees;
    LocationContext context;
    context.holderPart = listPart;
    context.documentFolder = documentFolder;
    QSet<QString> seen;
    for (const pugi::xml_node& entry : ChildElements(list->GetRoot(), "CustomTag")) {
        const ProblemPlace place(0, list->PlaceOf(entry));
        const QString part = ResolveLocation(package, TrimmedText(ChildElement(entry, "FileLoc")), context).part;
        if (part.isEmpty() || seen.contains(part))
            continue;
        seen.insert(part);
        const std::unique_ptr<XmlPart> xml = XmlPart::Load(package, part);
        if (!xml)
            continue;
        TagTree tree;
        tree.root.reset(G_TreeNode::CreateRoot());
        tree.part = part;
        tree.prefix = QString::fromUtf8(PrefixOf(xml->GetRoot())).remove(QLatin1Char(':'));
        tree.nameSpace = AttributeText(entry, "NameSpace");
        const ProblemScope scope(part);
        tree.elements = ReadTagTree(*xml, tree.root.get());
        trees.push_back(std::move(tree));
    }
    return trees;
}

} // namespace ofd
