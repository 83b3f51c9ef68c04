#pragma once

#include <frame/base/export.h>
#include <frame/base/strings.h>
#include <frame/json/ovjson.h>

#include <QMetaType>

#include <functional>
#include <memory>
#include <vector>

// Root of the serialisable records.
class FRAME_EXPORT G_Object
{
public:
    virtual ~G_Object();
    // The base answers with an empty object and accepts everything.
    virtual OVJson ToJson() const;
    virtual bool FromJson(const OVJson& json);
    // ToJson as text.
    CCA_String ToString() const;
};

// What a tree node carries.
class FRAME_EXPORT G_NodeData
{
public:
    virtual ~G_NodeData();
    // The text the node is shown and found by, UTF-8.
    virtual CCA_String NodeText() const = 0;
    // Called when this record takes the place of another on a node; the base does nothing.
    virtual void TakePlaceOf(const G_NodeData& previous);

    // Reserved for the display of custom tags. Nothing in the frame ever fills it: the redo of a tag's addition relies
    // on it being empty.
    CCA_String nodeTitle;
};

// A node of one of a document's trees. The document owns the root, a node owns its sub-nodes and its payload. Main
// thread only. Refusals are results, never exceptions; a refused payload stays the caller's. Sub-nodes stand in a
// vector with a stored index, so SubNode and appending take constant time.
class FRAME_EXPORT G_TreeNode
{
public:
    enum class Change { Add, Remove, MoveFrom, MoveTo };
    // Asked before a change, with the parent and the row that would change; false refuses.
    using ChangeGuard = std::function<bool(Change change, G_TreeNode* parent, int index)>;

    // Makes a detached root: level 0, index 0, no payload. Owned by the caller.
    static G_TreeNode* CreateRoot();
    virtual ~G_TreeNode();

    int SubNodeCount() const { return static_cast<int>(subNodes.size()); }
    // Null when the index is out of range.
    G_TreeNode* SubNode(int position) const;
    // Inserts a node with the payload (null is allowed) and takes the payload over; null when the index is outside
    // 0..SubNodeCount() or the tree refuses, and the payload then stays the caller's.
    virtual G_TreeNode* AddSubNode(int position, G_NodeData* payload);
    // Removes and frees the sub-node with everything below it; false when out of range or refused.
    virtual bool RemoveSubNode(int position);
    // Moves a sub-node, keeping the object. `dstIndex` counts after the source has been taken out. False, and nothing
    // changed, when a row is out of range, the destination lies in the moved sub-tree, or the tree refuses. Levels of
    // the whole moved sub-tree and the index fields of both parents are right afterwards.
    static bool MoveSubNode(G_TreeNode* srcParent, int srcIndex, G_TreeNode* dstParent, int dstIndex);
    // Replaces the payload, frees the old one and takes over the new one; the pointer already held is left alone.
    void SetNodeData(G_NodeData* payload);
    // The payload's text, empty without a payload.
    CCA_String NodeText() const;

    // The topmost node of this tree; never null.
    G_TreeNode* Root();
    // The guard of the whole tree, kept at its root; an empty function removes it. A read-only tree and tests of
    // refusals use it.
    void SetChangeGuard(ChangeGuard guard);

    int level = 0;
    int index = 0;
    G_NodeData* data = nullptr;   // owned
    G_TreeNode* parent = nullptr; // not owned

protected:
    G_TreeNode();

private:
    G_TreeNode(const G_TreeNode&) = delete;
    G_TreeNode& operator=(const G_TreeNode&) = delete;
    bool Allows(Change change, int position);
    std::unique_ptr<G_TreeNode> TakeSubNode(int position);
    void ShiftSubNode(int from, int to);
    void Renumber(int from, int end);
    void SetLevels(int newLevel);

    std::vector<std::unique_ptr<G_TreeNode>> subNodes;
    std::unique_ptr<ChangeGuard> guard; // at the root only
};

Q_DECLARE_METATYPE(G_TreeNode*)
