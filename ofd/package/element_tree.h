#pragma once

#include "packed_bytes.h"

#include <QByteArray>

#include <memory>
#include <string_view>
#include <vector>

namespace ofd {

// One element of an ElementTree. Places are offsets into its bytes, ends are one past; relatives are positions in the
// tree, -1 for none.
struct TreeElement
{
    int begin = 0;       // the '<'
    int startTagEnd = 0; // behind the '>' of the start tag
    int contentEnd = 0;  // the '<' of the end tag; startTagEnd for an empty tag
    int end = 0;         // behind the last '>'
    int parent = -1;
    int firstChild = -1;
    int nextSibling = -1;

    bool IsEmptyTag() const { return startTagEnd == end; }
};

// An element, and where those of its descendants stand that are the nodes of a tree: an outline's entries,
// say. An element that is no node, and all inside it, belongs to the node around it. Found in one pass, whatever the
// depth. Immutable, so that any number of records may share it.
class ElementTree
{
public:
    // Whether an element of that local name is a node.
    using NodeTest = bool (*)(std::string_view localName);

    // An element of well-formed XML begins at `begin`; it is a node whatever its name.
    ElementTree(const QByteArray& bytes, NodeTest isNode, qint64 begin = 0);
    ElementTree(std::shared_ptr<const PackedBytes> bytes, NodeTest isNode, qint64 begin);

    // All of the bytes, with what stands around the element.
    const QByteArray& GetBytes() const { return bytes->Get(); }
    // In document order; the outer element is the first.
    int GetCount() const { return int(elements.size()); }
    const TreeElement& At(int element) const { return elements[size_t(element)]; }
    std::vector<int> ChildrenOf(int element) const;

    QByteArray BytesOf(int element) const;
    QByteArray StartTagOf(int element) const;
    // With its prefix.
    QByteArray NameOf(int element) const;
    // The bytes of an element with an empty element in the place of each of its nodes, so that what is its own can be
    // edited apart from them.
    QByteArray WithPlaceHolders(int element, const QByteArray& placeHolder) const;

private:
    std::shared_ptr<const PackedBytes> bytes; // never null
    std::vector<TreeElement> elements;
};

// The name at the start of a tag that begins there, with its prefix.
QByteArray NameOfTag(const QByteArray& bytes, int begin);

} // namespace ofd
