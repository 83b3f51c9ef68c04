#include "custom_tag_reader.h"

#include <frame/document/payloads.h>
#include <ofd/model/record_sources.h>
#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_values.h>

#include <QRegularExpression>
#include <QStringList>

namespace ofd {

namespace {

constexpr uint EmptyNameMark = 0xffff; // stands for a name without any characters

CCA_String Utf8(const QString& text)
{
    return CCA_String(text.toUtf8());
}

bool IsDeclaration(const pugi::xml_attribute& attribute)
{
    const std::string_view name = attribute.name();
    return name == "xmlns" || name.substr(0, 6) == "xmlns:";
}

void AddReference(const pugi::xml_node& element, G_CustomTagItem& tag)
{
    const int objectId = int(ParseId(TrimmedText(element).toStdString()).value_or(0));
    const int pageId = int(IdAttribute(element, "PageRef"));
    if (objectId == 0 || pageId == 0) // tied to nothing; stays in the file
        return;
    for (G_PageObjRef* reference : tag.objects.Values()) {
        if (reference->pageId == pageId) {
            reference->objectIds.append(objectId);
            return;
        }
    }
    auto* reference = new G_PageObjRef; // owned by the tag
    reference->pageId = pageId;
    reference->objectIds.append(objectId);
    tag.objects.Add(reference);
}

class TagReader
{
public:
    explicit TagReader(const XmlPart& part)
        : edit(part)
    {
    }

    void ReadTag(const pugi::xml_node& element, G_TreeNode* parent) const
    {
        auto* tag = new G_CustomTagItem; // owned by its node
        const std::string_view name = LocalName(element);
        tag->tagName = Utf8(UnescapeTagName(QString::fromUtf8(name.data(), int(name.size()))));
        for (const pugi::xml_attribute& attribute : element.attributes()) {
            if (!IsDeclaration(attribute))
                tag->attributes.Add(CCA_String(QByteArray(attribute.name()) + '=' + attribute.value()));
        }
        auto source = std::make_shared<TagSource>();
        tag->source = source;
        G_TreeNode* node = parent->AddSubNode(parent->SubNodeCount(), tag);
        for (pugi::xml_node child = FirstElement(element); child; child = NextElement(child))
            ReadChild(child, *tag, node);
    }

private:
    void ReadChild(const pugi::xml_node& child, G_CustomTagItem& tag, G_TreeNode* node) const
    {
        if (IsElement(child, "ObjectRef"))
            AddReference(child, tag);
        else if (IsElement(child, "ObjectData"))
            tag.attributes.Add(Utf8(QStringLiteral("ObjectData=") + ElementText(child)));
        else
            ReadTag(child, node);
    }

    const XmlEdit edit;
};

} // namespace

QString UnescapeTagName(const QString& name)
{
    static const QRegularExpression escape(QStringLiteral("_x([0-9A-Fa-f]{4}|[0-9A-Fa-f]{6}|[0-9A-Fa-f]{8})_"));
    QString result;
    int from = 0;
    for (QRegularExpressionMatchIterator i = escape.globalMatch(name); i.hasNext();) {
        const QRegularExpressionMatch match = i.next();
        result += name.midRef(from, match.capturedStart() - from);
        const uint code = match.capturedRef(1).toUInt(nullptr, 16);
        if (code > 0x10ffff)
            result += match.capturedRef();
        else if (code != EmptyNameMark)
            result += QString::fromUcs4(&code, 1);
        from = match.capturedEnd();
    }
    return result + name.midRef(from);
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
    QStringList seen;
    for (const pugi::xml_node& entry : ChildElements(list->GetRoot(), "CustomTag")) {
        const QString part = ResolveLocation(package, TrimmedText(ChildElement(entry, "FileLoc")), context).part;
        if (part.isEmpty() || seen.contains(part))
            continue;
        seen.append(part);
        const std::unique_ptr<XmlPart> xml = XmlPart::Load(package, part);
        if (!xml)
            continue;
        TagTree tree;
        tree.root.reset(G_TreeNode::CreateRoot());
        tree.part = part;
        tree.prefix = QString::fromUtf8(PrefixOf(xml->GetRoot())).remove(QLatin1Char(':'));
        tree.nameSpace = AttributeText(entry, "NameSpace");
        TagReader(*xml).ReadTag(xml->GetRoot(), tree.root.get());
        trees.push_back(std::move(tree));
    }
    return trees;
}

} // namespace ofd
