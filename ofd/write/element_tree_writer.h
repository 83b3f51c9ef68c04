#pragma once

#include <ofd/model/record_sources.h>

#include <QByteArray>
#include <QSet>

#include <memory>
#include <vector>

#include <pugixml.hpp>

class G_TreeNode;

namespace ofd {

class XmlEdit;
struct PackageError;

// Writes a tree of records as an element with elements inside. Whatever has a source keeps its bytes: an element that
// was not edited is copied, wherever it stands now; of one that was, only what changed is edited. Neither the time nor
// the stack that it takes depends on how the entries are nested.
class ElementTreeWriter
{
public:
    virtual ~ElementTreeWriter();

    // The bytes of the node's element; empty on an error.
    QByteArray Write(const G_TreeNode& top, PackageError& error);

protected:
    // An element without content that stands for a sub-node while its parent is edited; must pass `isNode`.
    ElementTreeWriter(ElementTree::NodeTest isNode, const QByteArray& placeHolder);

    // Null for a node that is new.
    virtual const ElementSource* SourceOf(const G_TreeNode& node) const = 0;
    // Whether the node differs from its source, apart from its sub-nodes.
    virtual bool IsOwnChanged(const G_TreeNode& node, const ElementSource& source) const = 0;
    // Edits what differs. The element has place holders for its nodes.
    virtual void EditOwn(XmlEdit& edit, const pugi::xml_node& element, const G_TreeNode& node,
                         const ElementSource& source) const = 0;
    // The element of a node that has no source, without sub-nodes. The prefix is its parent's.
    virtual QByteArray MakeElement(const G_TreeNode& node, const QByteArray& prefix) const = 0;
    // The element of a node whose source is to be edited, with place holders for its nodes.
    virtual QByteArray OwnBytes(const G_TreeNode& node, const ElementSource& source) const;

    const QByteArray& PlaceHolder() const { return placeHolder; }

private:
    // An element that is being written: bytes up to its next sub-node, then that, and so on.
    struct Frame
    {
        const G_TreeNode* node = nullptr;        // not owned
        const ElementSource* source = nullptr;   // not owned; null for a new one
        std::shared_ptr<const ElementTree> tree; // where its bytes are
        int element = 0;
        int nextChild = -1;
        int nextRow = 0;
        int at = 0;
        bool isForeign = false; // it or one around it stands elsewhere than in its source
    };

    void Open(const G_TreeNode& node);
    bool HasSameChildren(const G_TreeNode& node, const ElementSource& source) const;
    QByteArray Edited(const G_TreeNode& node, const ElementSource* source,
                      const std::vector<std::pair<QByteArray, QByteArray>>& declarations);
    std::vector<int> MatchChildren(const G_TreeNode& node, const ElementSource& source) const;
    std::vector<std::pair<QByteArray, QByteArray>> MissingDeclarations(const ElementSource& source) const;
    QByteArray AddressInScope(const QByteArray& prefix) const;

    const ElementTree::NodeTest isNode;
    const QByteArray placeHolder;
    std::vector<Frame> frames;
    PackageError* failure = nullptr; // not owned
};

} // namespace ofd
