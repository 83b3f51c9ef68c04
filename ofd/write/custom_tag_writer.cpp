#include "custom_tag_writer.h"

#include "tag_content.h"

#include <frame/document/payloads.h>
#include <ofd/package/namespaces.h>
#include <ofd/package/package_error.h>
#include <ofd/package/tag_names.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_scan.h>
#include <ofd/package/xml_text.h>
#include <ofd/parse/custom_tag_reader.h>

#include <algorithm>
#include <cstring>

namespace ofd {

namespace {

const G_CustomTagItem* TagOf(const G_TreeNode& node)
{
    return dynamic_cast<const G_CustomTagItem*>(node.data);
}

const TagSource* OwnSourceOf(const G_TreeNode& node)
{
    const G_CustomTagItem* tag = TagOf(node);
    return tag ? dynamic_cast<const TagSource*>(tag->source.get()) : nullptr;
}

// Of a fresh record that took the place of another.
const TagSource* PredecessorOf(const G_TreeNode& node)
{
    const G_CustomTagItem* tag = TagOf(node);
    return tag && !tag->source ? dynamic_cast<const TagSource*>(tag->predecessor.get()) : nullptr;
}

// The node and all below it, parents before children.
template <typename Node>
std::vector<Node*> WithDescendants(Node* top)
{
    std::vector<Node*> nodes;
    std::vector<Node*> pending;
    if (top)
        pending.push_back(top);
    while (!pending.empty()) {
        Node* node = pending.back();
        pending.pop_back();
        nodes.push_back(node);
        for (int i = node->SubNodeCount() - 1; i >= 0; --i)
            pending.push_back(node->SubNode(i));
    }
    return nodes;
}

bool AreObjectsChanged(const G_TreeNode& node)
{
    const G_CustomTagItem* tag = TagOf(node);
    const TagSource* source = OwnSourceOf(node);
    return tag && !HasSameObjects(ObjectsOf(*tag), source ? source->objects : QVector<G_PageObjRef>());
}

// The white space that a piece of content ends in; its tags, text and comments are left out.
QByteArray TrailingBlank(const QByteArray& content)
{
    int at = content.size();
    while (at > 0 && std::strchr(" \t\r\n", content.at(at - 1)))
        --at;
    return content.mid(at);
}

// "ofd:" of the first reference to an object in the bytes; null when there is none.
QByteArray PrefixOfReferences(const QByteArray& xml)
{
    XmlScanner scanner(xml, 0);
    for (XmlToken token = scanner.Next(); token.kind != XmlToken::End; token = scanner.Next()) {
        if (token.kind != XmlToken::StartTag && token.kind != XmlToken::EmptyTag)
            continue;
        const QByteArray name = NameOfTag(xml, int(token.begin));
        if (LocalName(name.constData()) == "ObjectRef")
            return name.left(name.indexOf(':') + 1) + ""; // not null even when it is empty
    }
    return {};
}

class TagWriter : public ElementTreeWriter
{
public:
    TagWriter(const TagTree& tree, const QByteArray& formatNamespace)
        : ElementTreeWriter(IsTagElement, "<tag/>")
        , tree(tree)
        , top(*tree.root->SubNode(0))
        , formatNamespace(formatNamespace)
    {
        ChooseReferencePrefix();
    }

protected:
    const ElementSource* SourceOf(const G_TreeNode& node) const override
    {
        const TagSource* own = OwnSourceOf(node);
        return own ? own : PredecessorOf(node);
    }

    bool IsOwnChanged(const G_TreeNode& node, const ElementSource&) const override
    {
        const TagSource* source = OwnSourceOf(node);
        if (!source || (&node == &top && declaresReferences))
            return true;
        const G_CustomTagItem& tag = *TagOf(node);
        return !(tag.tagName == source->name) || tag.attributes.Values() != source->attributes ||
               AreObjectsChanged(node);
    }

    QByteArray OwnBytes(const G_TreeNode& node, const ElementSource& source) const override
    {
        if (const TagSource* own = OwnSourceOf(node)) {
            const QByteArray bytes = ElementTreeWriter::OwnBytes(node, source);
            return TagOf(node)->tagName == own->name ? bytes : Renamed(bytes, node, source);
        }
        return Successor(node, static_cast<const TagSource&>(source));
    }

    void EditOwn(XmlEdit& edit, const pugi::xml_node& element, const G_TreeNode& node,
                 const ElementSource&) const override
    {
        static const TagSource nothing; // a fresh record began without content
        const TagSource* own = OwnSourceOf(node);
        EditTagContent(edit, element, *TagOf(node), own ? *own : nothing, referencePrefix);
        if (&node == &top && declaresReferences)
            edit.SetAttribute(element, "xmlns:" + referencePrefix.chopped(1), QString::fromUtf8(formatNamespace));
    }

    QByteArray MakeElement(const G_TreeNode& node, const QByteArray& parentPrefix) const override
    {
        const G_CustomTagItem* tag = TagOf(node);
        const QString name = tag ? QString::fromUtf8(tag->tagName.Bytes()) : QString();
        XmlFragment xml(&node == &top ? TopPrefix() : parentPrefix);
        xml.Open(EscapeTagName(name).toUtf8());
        if (&node == &top)
            DeclareNamespaces(xml);
        if (tag)
            AppendTagContent(xml, *tag, referencePrefix);
        return xml.Close().GetBytes();
    }

private:
    // References are spelled as elsewhere in the part, else with the prefix that it declares for the format, else with
    // one that is declared for them.
    void ChooseReferencePrefix()
    {
        const ElementSource* source = SourceOf(top);
        referencePrefix = source ? PrefixOfReferences(source->tree->GetBytes()) : QByteArray();
        if (!referencePrefix.isNull())
            return;
        const QByteArray startTag = source ? source->tree->StartTagOf(source->element) : QByteArray();
        QSet<QByteArray> taken{TopPrefix().chopped(TopPrefix().isEmpty() ? 0 : 1)};
        for (const auto& declared : DeclarationsIn(startTag)) {
            taken.insert(declared.first);
            if (declared.second == formatNamespace && !declared.first.isEmpty())
                referencePrefix = declared.first + ':';
        }
        if (!referencePrefix.isNull())
            return;
        QByteArray word = "ofd";
        for (int number = 2; taken.contains(word); ++number)
            word = "ofd" + QByteArray::number(number);
        referencePrefix = word + ':';
        const std::vector<const G_TreeNode*> nodes = WithDescendants<const G_TreeNode>(&top);
        declaresReferences = !source || std::any_of(nodes.begin(), nodes.end(),
                                                    [](const G_TreeNode* node) { return AreObjectsChanged(*node); });
    }

    // Of a top tag that was made in memory.
    QByteArray TopPrefix() const
    {
        const bool hasPrefix = !tree.prefix.isEmpty() && !tree.nameSpace.isEmpty();
        return hasPrefix ? EscapeTagName(tree.prefix).toUtf8() + ':' : QByteArray();
    }

    void DeclareNamespaces(XmlFragment& xml) const
    {
        const QByteArray prefix = TopPrefix().chopped(TopPrefix().isEmpty() ? 0 : 1);
        if (!tree.nameSpace.isEmpty())
            xml.Attribute(prefix.isEmpty() ? QByteArray("xmlns") : "xmlns:" + prefix, tree.nameSpace);
        if (declaresReferences)
            xml.Attribute("xmlns:" + referencePrefix.chopped(1), QString::fromUtf8(formatNamespace));
    }

    // The name that the node's element gets in the place of the one in the source, with the same prefix.
    static QByteArray NewName(const G_TreeNode& node, const TagSource& source)
    {
        const QByteArray old = source.tree->NameOf(source.element);
        if (TagOf(node)->tagName == source.name)
            return old;
        return old.left(old.indexOf(':') + 1) + EscapeTagName(QString::fromUtf8(TagOf(node)->tagName.Bytes())).toUtf8();
    }

    static QByteArray Renamed(QByteArray bytes, const G_TreeNode& node, const ElementSource& source)
    {
        const auto& tagSource = static_cast<const TagSource&>(source);
        const int oldSize = source.tree->NameOf(source.element).size();
        const QByteArray name = NewName(node, tagSource);
        if (!source.tree->At(source.element).IsEmptyTag())
            bytes.replace(bytes.lastIndexOf("</") + 2, oldSize, name);
        return bytes.replace(1, oldSize, name);
    }

    // What is left of an element under a record that took its place: its prefix, its declarations and, so that the
    // lines stay where they are, the white space around its tags.
    QByteArray Successor(const G_TreeNode& node, const TagSource& source) const
    {
        const ElementTree& old = *source.tree;
        const TreeElement& element = old.At(source.element);
        const QByteArray name = NewName(node, source);
        QByteArray bytes = '<' + name + DeclarationTextIn(old.StartTagOf(source.element));
        if (element.firstChild < 0)
            return bytes + "/>";
        bytes += '>';
        int at = element.startTagEnd;
        for (const int child : old.ChildrenOf(source.element)) {
            bytes += TrailingBlank(old.GetBytes().mid(at, old.At(child).begin - at)) + PlaceHolder();
            at = old.At(child).end;
        }
        return bytes + TrailingBlank(old.GetBytes().mid(at, element.contentEnd - at)) + "</" + name + '>';
    }

    const TagTree& tree;
    const G_TreeNode& top;
    const QByteArray formatNamespace;
    QByteArray referencePrefix;
    bool declaresReferences = false;
};

} // namespace

bool AreTagsChanged(const TagTree& tree)
{
    const G_TreeNode* top = tree.root->SubNode(0);
    if (!tree.elements || !top)
        return tree.elements || top;
    int element = 0;
    for (const G_TreeNode* node : WithDescendants(top)) {
        const TagSource* source = OwnSourceOf(*node);
        if (!source || source->tree != tree.elements || source->element != element)
            return true;
        const TagSource* parent = node == top ? nullptr : OwnSourceOf(*node->parent);
        const G_CustomTagItem& tag = *TagOf(*node);
        if (tree.elements->At(element).parent != (parent ? parent->element : -1) || !(tag.tagName == source->name) ||
            tag.attributes.Values() != source->attributes || AreObjectsChanged(*node))
            return true;
        ++element;
    }
    return element != tree.elements->GetCount();
}

QByteArray WriteTags(const TagTree& tree, const QByteArray& formatNamespace, PackageError& error)
{
    return TagWriter(tree, formatNamespace).Write(*tree.root->SubNode(0), error);
}

void AdoptTagSources(G_TreeNode* root, G_TreeNode* fresh)
{
    const std::vector<G_TreeNode*> nodes = WithDescendants(root->SubNode(0));
    const std::vector<G_TreeNode*> freshNodes = WithDescendants(fresh->SubNode(0));
    if (nodes.size() != freshNodes.size())
        return;
    for (size_t i = 0; i < nodes.size(); ++i) {
        auto* tag = dynamic_cast<G_CustomTagItem*>(nodes[i]->data);
        const TagSource* read = OwnSourceOf(*freshNodes[i]);
        if (!tag || !read)
            continue;
        auto source = std::make_shared<TagSource>(*read);
        source->name = tag->tagName;
        source->attributes = tag->attributes.Values();
        source->objects = ObjectsOf(*tag);
        tag->source = source;
        tag->predecessor.reset();
    }
}

} // namespace ofd
