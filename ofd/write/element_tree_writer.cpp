#include "element_tree_writer.h"

#include "child_order.h"

#include <frame/document/tree_node.h>
#include <ofd/package/namespaces.h>
#include <ofd/package/package_error.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>

#include <QHash>

namespace ofd {

namespace {

std::vector<pugi::xml_node> NodeElements(const pugi::xml_node& element, ElementTree::NodeTest isNode)
{
    std::vector<pugi::xml_node> nodes;
    for (pugi::xml_node child = FirstElement(element); child; child = NextElement(child)) {
        if (isNode(LocalName(child)))
            nodes.push_back(child);
    }
    return nodes;
}

// "ofd:" of "<ofd:OutlineElem …". An empty prefix, as in "<:name …", is an accident of that element and not for others.
QByteArray PrefixOfTag(const ElementTree& tree, int element)
{
    const QByteArray name = tree.NameOf(element);
    const int colon = name.indexOf(':');
    return colon > 0 ? name.left(colon + 1) : QByteArray();
}

} // namespace

ElementTreeWriter::ElementTreeWriter(ElementTree::NodeTest isNode, const QByteArray& placeHolder)
    : isNode(isNode)
    , placeHolder(placeHolder)
{
}

ElementTreeWriter::~ElementTreeWriter() = default;

QByteArray ElementTreeWriter::Write(const G_TreeNode& top, PackageError& error)
{
    failure = &error;
    QByteArray written;
    Open(top);
    while (!frames.empty() && !error) {
        Frame& frame = frames.back();
        const ElementTree& tree = *frame.tree;
        const bool isDone = frame.nextChild < 0;
        const int end = isDone ? tree.At(frame.element).end : tree.At(frame.nextChild).begin;
        written.append(tree.GetBytes().constData() + frame.at, end - frame.at);
        if (isDone) {
            frames.pop_back();
            continue;
        }
        frame.at = tree.At(frame.nextChild).end;
        frame.nextChild = tree.At(frame.nextChild).nextSibling;
        const G_TreeNode* node = frame.node->SubNode(frame.nextRow++);
        Open(*node); // the frame may lie elsewhere now
    }
    frames.clear();
    return error ? QByteArray() : written;
}

void ElementTreeWriter::Open(const G_TreeNode& node)
{
    Frame frame;
    frame.node = &node;
    frame.source = SourceOf(node);
    if (frame.source && !frames.empty()) {
        const Frame& outer = frames.back();
        const bool isInPlace = outer.source && outer.source->tree == frame.source->tree &&
                               frame.source->tree->At(frame.source->element).parent == outer.source->element;
        frame.isForeign = outer.isForeign || !isInPlace;
    }
    std::vector<std::pair<QByteArray, QByteArray>> declarations;
    if (frame.isForeign)
        declarations = MissingDeclarations(*frame.source);
    const bool isSame = frame.source && declarations.empty() && !IsOwnChanged(node, *frame.source) &&
                        HasSameChildren(node, *frame.source);
    if (isSame) {
        frame.tree = frame.source->tree;
        frame.element = frame.source->element;
    } else {
        const QByteArray edited = Edited(node, frame.source, declarations);
        if (edited.isEmpty())
            return;
        frame.tree = std::make_shared<const ElementTree>(edited, isNode);
    }
    frame.at = frame.tree->At(frame.element).begin;
    frame.nextChild = frame.tree->At(frame.element).firstChild;
    frames.push_back(std::move(frame));
}

bool ElementTreeWriter::HasSameChildren(const G_TreeNode& node, const ElementSource& source) const
{
    int element = source.tree->At(source.element).firstChild;
    for (int i = 0; i < node.SubNodeCount(); ++i) {
        const ElementSource* child = SourceOf(*node.SubNode(i));
        if (element < 0 || !child || child->tree != source.tree || child->element != element)
            return false;
        element = source.tree->At(element).nextSibling;
    }
    return element < 0;
}

// For each sub-node the position of its element among those of the node, -1 when it is not there.
std::vector<int> ElementTreeWriter::MatchChildren(const G_TreeNode& node, const ElementSource& source) const
{
    QHash<int, int> places;
    for (int child = source.tree->At(source.element).firstChild; child >= 0; child = source.tree->At(child).nextSibling)
        places.insert(child, places.size());
    std::vector<int> matches;
    for (int i = 0; i < node.SubNodeCount(); ++i) {
        const ElementSource* child = SourceOf(*node.SubNode(i));
        const auto place = child && child->tree == source.tree ? places.find(child->element) : places.end();
        matches.push_back(place == places.end() ? -1 : *place);
        if (place != places.end())
            places.erase(place); // a copy of the record gets an element of its own
    }
    return matches;
}

QByteArray ElementTreeWriter::OwnBytes(const G_TreeNode&, const ElementSource& source) const
{
    return source.tree->WithPlaceHolders(source.element, placeHolder);
}

// The element of a node with place holders for its sub-nodes, as they are now.
QByteArray ElementTreeWriter::Edited(const G_TreeNode& node, const ElementSource* source,
                                     const std::vector<std::pair<QByteArray, QByteArray>>& declarations)
{
    const QByteArray prefix = frames.empty() ? QByteArray() : PrefixOfTag(*frames.back().tree, frames.back().element);
    const QByteArray old = source ? OwnBytes(node, *source) : MakeElement(node, prefix);
    const std::unique_ptr<XmlPart> part = XmlPart::Parse(QString(), old, failure);
    if (!part)
        return {};
    XmlEdit edit(*part);
    const pugi::xml_node element = part->GetRoot();
    for (const auto& declaration : declarations) {
        const QByteArray name = declaration.first.isEmpty() ? QByteArray("xmlns") : "xmlns:" + declaration.first;
        edit.SetAttribute(element, name,
                          QString::fromUtf8(declaration.second).replace(QLatin1String("&amp;"), QLatin1String("&")));
    }
    if (source)
        EditOwn(edit, element, node, *source);
    const std::vector<int> matches =
        source ? MatchChildren(node, *source) : std::vector<int>(size_t(node.SubNodeCount()), -1);
    ArrangeChildren(edit, element, NodeElements(element, isNode), matches, [this](int) { return placeHolder; });
    return edit.IsEmpty() ? old : edit.Apply(failure);
}

// Namespaces that the element uses, that its old place declared and that its new place does not.
std::vector<std::pair<QByteArray, QByteArray>> ElementTreeWriter::MissingDeclarations(const ElementSource& source) const
{
    std::vector<std::pair<QByteArray, QByteArray>> missing;
    const ElementTree& tree = *source.tree;
    QSet<QByteArray> prefixes = PrefixesIn(tree.WithPlaceHolders(source.element, QByteArray()));
    for (const auto& own : DeclarationsIn(tree.StartTagOf(source.element)))
        prefixes.remove(own.first);
    for (const QByteArray& prefix : qAsConst(prefixes)) {
        QByteArray address;
        for (int at = tree.At(source.element).parent; at >= 0 && address.isEmpty(); at = tree.At(at).parent) {
            for (const auto& declared : DeclarationsIn(tree.StartTagOf(at))) {
                if (declared.first == prefix)
                    address = declared.second;
            }
        }
        const bool mayBeUndeclared = !prefix.isEmpty(); // no prefix and no default is a namespace too: none
        if ((address.isEmpty() && mayBeUndeclared) || AddressInScope(prefix) == address)
            continue;
        missing.emplace_back(prefix, address);
    }
    return missing;
}

// What the prefix stands for where the next element is written; empty when it is not declared there.
QByteArray ElementTreeWriter::AddressInScope(const QByteArray& prefix) const
{
    for (auto frame = frames.rbegin(); frame != frames.rend(); ++frame) {
        for (const auto& declared : DeclarationsIn(frame->tree->StartTagOf(frame->element))) {
            if (declared.first == prefix)
                return declared.second;
        }
    }
    return {};
}

} // namespace ofd
