#include "outline_writer.h"

#include "action_writer.h"
#include "document_order.h"

#include <frame/document/payloads.h>
#include <ofd/model/structure.h>
#include <ofd/package/package_error.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_text.h>
#include <ofd/parse/outline_reader.h>

#include <algorithm>
#include <cstdlib>

namespace ofd {

namespace {

const G_OutlineItem* ItemOf(const G_TreeNode& node)
{
    return dynamic_cast<const G_OutlineItem*>(node.data);
}

const OutlineSource* OutlineSourceOf(const G_TreeNode& node)
{
    const G_OutlineItem* item = ItemOf(node);
    return item ? dynamic_cast<const OutlineSource*>(item->source.get()) : nullptr;
}

QString TextOf(const G_OutlineItem* item)
{
    return item ? QString::fromUtf8(item->text.Bytes()) : QString();
}

// The nodes below one, parents before children.
template <typename Node>
std::vector<Node*> NodesBelow(Node* root)
{
    std::vector<Node*> nodes;
    std::vector<Node*> pending{root};
    while (!pending.empty()) {
        Node* node = pending.back();
        pending.pop_back();
        if (node != root)
            nodes.push_back(node);
        for (int i = node->SubNodeCount() - 1; i >= 0; --i)
            pending.push_back(node->SubNode(i));
    }
    return nodes;
}

bool IsItemChanged(const G_OutlineItem& item, const OutlineSource& source)
{
    return !(item.text == source.text) || item.expanded != source.expanded || AreActionsChanged(item, source.actions);
}

// Which of the counts a file writes is told by the number that it wrote; the leaves when that fits none.
int CountAs(const OutlineSource& source, const EntryCounts& counts)
{
    const int written = std::abs(source.count);
    if (written != source.counts.leaves && written == source.counts.children)
        return counts.children;
    if (written != source.counts.leaves && written == source.counts.all)
        return counts.all;
    return counts.leaves;
}

class OutlineWriter : public ElementTreeWriter
{
public:
    // `top` is the source of the outline's own element; its tree is null when that must be made.
    OutlineWriter(const G_TreeNode& root, const ElementSource& top, const DocumentStructure& structure,
                  const QByteArray& prefix)
        : ElementTreeWriter(IsOutlineEntry, "<OutlineElem/>")
        , root(root)
        , top(top)
        , structure(structure)
        , prefix(prefix)
    {
        CountEntries();
    }

protected:
    const ElementSource* SourceOf(const G_TreeNode& node) const override
    {
        if (&node == &root)
            return top.tree ? &top : nullptr;
        return OutlineSourceOf(node);
    }

    bool IsOwnChanged(const G_TreeNode& node, const ElementSource& source) const override
    {
        if (&node == &root)
            return false;
        const auto& outlineSource = static_cast<const OutlineSource&>(source);
        return IsItemChanged(*ItemOf(node), outlineSource) || IsCountChanged(node, outlineSource);
    }

    void EditOwn(XmlEdit& edit, const pugi::xml_node& element, const G_TreeNode& node,
                 const ElementSource& source) const override
    {
        if (&node == &root)
            return;
        const G_OutlineItem& item = *ItemOf(node);
        const auto& old = static_cast<const OutlineSource&>(source);
        if (!(item.text == old.text))
            edit.SetAttribute(element, "Title", TextOf(&item));
        if (item.expanded != old.expanded)
            edit.SetAttribute(element, "Expanded", item.expanded ? QStringLiteral("true") : QStringLiteral("false"));
        if (IsCountChanged(node, old)) {
            const int count = CountAs(old, counts.value(&node));
            edit.SetAttribute(element, "Count", QString::number(old.count < 0 ? -count : count));
        }
        if (AreActionsChanged(item, old.actions))
            EditActions(edit, element, item, old.actions, structure);
    }

    QByteArray MakeElement(const G_TreeNode& node, const QByteArray& parentPrefix) const override
    {
        if (&node == &root)
            return XmlFragment(prefix).Open("Outlines").Close().GetBytes();
        const G_OutlineItem* item = ItemOf(node);
        XmlFragment xml(parentPrefix);
        xml.Open("OutlineElem").Attribute("Title", TextOf(item));
        if (item && !item->expanded)
            xml.Attribute("Expanded", QStringLiteral("false"));
        if (item)
            AppendActions(xml, parentPrefix, *item, structure);
        return xml.Close().GetBytes();
    }

private:
    bool IsCountChanged(const G_TreeNode& node, const OutlineSource& source) const
    {
        return source.hasCount && CountAs(source, counts.value(&node)) != CountAs(source, source.counts);
    }

    // Only where a file counts; most do not.
    void CountEntries()
    {
        const std::vector<const G_TreeNode*> nodes = NodesBelow<const G_TreeNode>(&root);
        const bool isNeeded = std::any_of(nodes.begin(), nodes.end(), [](const G_TreeNode* node) {
            const OutlineSource* source = OutlineSourceOf(*node);
            return source && source->hasCount;
        });
        if (!isNeeded)
            return;
        for (auto node = nodes.rbegin(); node != nodes.rend(); ++node) {
            const EntryCounts below = counts.value(*node);
            EntryCounts& above = counts[(*node)->parent];
            above.leaves += std::max(below.leaves, 1);
            above.children += 1;
            above.all += below.all + 1;
        }
    }

    const G_TreeNode& root;
    const ElementSource& top;
    const DocumentStructure& structure;
    const QByteArray prefix;
    QHash<const G_TreeNode*, EntryCounts> counts; // of nodes that have sub-nodes
};

} // namespace

bool IsOutlineChanged(const OutlineTree& saved, const G_TreeNode* root)
{
    if (!saved || !root)
        return root && root->SubNodeCount() > 0;
    int element = 0; // entries are compared in document order, so the elements must come one by one
    for (const G_TreeNode* node : NodesBelow<const G_TreeNode>(root)) {
        const OutlineSource* source = OutlineSourceOf(*node);
        if (!source || source->tree != saved || source->element != ++element)
            return true;
        const OutlineSource* parent = OutlineSourceOf(*node->parent);
        if (saved->At(element).parent != (parent ? parent->element : 0) || IsItemChanged(*ItemOf(*node), *source))
            return true;
    }
    return element + 1 != saved->GetCount();
}

bool WriteOutline(XmlEdit& edit, const XmlPart& document, const DocumentStructure& structure, const OutlineTree& saved,
                  const G_TreeNode* root, PackageError& error)
{
    const pugi::xml_node part = document.GetRoot();
    const pugi::xml_node list = ChildElement(part, "Outlines");
    if (!root || root->SubNodeCount() == 0) {
        if (ChildElements(part, "Outlines").size() < 2)
            edit.Remove(list);
        else
            edit.ReplaceContent(list, QByteArray()); // else the next one, which nobody saw, would take its place
        return true;
    }
    ElementSource top;
    top.tree = saved;
    const QByteArray bytes = OutlineWriter(*root, top, structure, PrefixOf(part)).Write(*root, error);
    if (error)
        return false;
    if (!list)
        edit.InsertInOrder(part, "Outlines", bytes, DocumentOrder());
    else if (bytes != saved->BytesOf(0))
        edit.ReplaceElement(list, bytes);
    return true;
}

void AdoptOutlineSources(G_TreeNode* root, G_TreeNode* fresh)
{
    const std::vector<G_TreeNode*> nodes = NodesBelow(root);
    const std::vector<G_TreeNode*> freshNodes = NodesBelow(fresh);
    if (nodes.size() != freshNodes.size())
        return;
    for (size_t i = 0; i < nodes.size(); ++i) {
        auto* item = dynamic_cast<G_OutlineItem*>(nodes[i]->data);
        const OutlineSource* read = OutlineSourceOf(*freshNodes[i]);
        if (!item || !read)
            continue;
        auto source = std::make_shared<OutlineSource>(*read);
        source->text = item->text;
        source->expanded = item->expanded;
        AdoptActions(*item, source->actions);
        item->source = source;
    }
}

} // namespace ofd
