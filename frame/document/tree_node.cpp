#include "tree_node.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace {

// How many trees have a guard: as long as there is none, a change need not climb to the root to ask.
std::atomic<int> guardCount{0};

} // namespace

G_Object::~G_Object() = default;

OVJson G_Object::ToJson() const
{
    return OVJson();
}

bool G_Object::FromJson(const OVJson&)
{
    return true;
}

CCA_String G_Object::ToString() const
{
    return CCA_String(OVJsonFactory::BuildJsonString(std::make_shared<OVJson>(ToJson())));
}

G_NodeData::~G_NodeData() = default;

void G_NodeData::TakePlaceOf(const G_NodeData&) {}

G_TreeNode::G_TreeNode() = default;

G_TreeNode* G_TreeNode::CreateRoot()
{
    return new G_TreeNode;
}

// Frees the descendants one by one from a list, since a tree may be deeper than the stack allows to recurse.
G_TreeNode::~G_TreeNode()
{
    std::vector<std::unique_ptr<G_TreeNode>> pending = std::move(subNodes);
    while (!pending.empty()) {
        const std::unique_ptr<G_TreeNode> node = std::move(pending.back());
        pending.pop_back();
        std::move(node->subNodes.begin(), node->subNodes.end(), std::back_inserter(pending));
        node->subNodes.clear();
    }
    if (guard)
        --guardCount;
    delete data;
}

G_TreeNode* G_TreeNode::SubNode(int position) const
{
    if (position < 0 || position >= SubNodeCount())
        return nullptr;
    return subNodes[static_cast<size_t>(position)].get();
}

G_TreeNode* G_TreeNode::AddSubNode(int position, G_NodeData* payload)
{
    if (position < 0 || position > SubNodeCount() || !Allows(Change::Add, position))
        return nullptr;
    std::unique_ptr<G_TreeNode> node(new G_TreeNode);
    G_TreeNode* added = node.get();
    subNodes.insert(subNodes.begin() + position, std::move(node));
    added->level = level + 1;
    added->parent = this;
    added->data = payload;
    Renumber(position, SubNodeCount());
    return added;
}

bool G_TreeNode::RemoveSubNode(int position)
{
    if (!SubNode(position) || !Allows(Change::Remove, position))
        return false;
    // Freed last, so that a payload's destructor sees a tree that is in order.
    const std::unique_ptr<G_TreeNode> removed = TakeSubNode(position);
    return true;
}

bool G_TreeNode::MoveSubNode(G_TreeNode* srcParent, int srcIndex, G_TreeNode* dstParent, int dstIndex)
{
    G_TreeNode* moved = srcParent ? srcParent->SubNode(srcIndex) : nullptr;
    if (!moved || !dstParent || dstIndex < 0)
        return false;
    const bool isSameParent = srcParent == dstParent;
    if (dstIndex > dstParent->SubNodeCount() - (isSameParent ? 1 : 0))
        return false;
    for (const G_TreeNode* node = dstParent; node; node = node->parent) {
        if (node == moved)
            return false;
    }
    if (!srcParent->Allows(Change::MoveFrom, srcIndex) || !dstParent->Allows(Change::MoveTo, dstIndex))
        return false;
    if (isSameParent) {
        srcParent->ShiftSubNode(srcIndex, dstIndex);
        return true;
    }
    dstParent->subNodes.insert(dstParent->subNodes.begin() + dstIndex, srcParent->TakeSubNode(srcIndex));
    moved->parent = dstParent;
    dstParent->Renumber(dstIndex, dstParent->SubNodeCount());
    if (moved->level != dstParent->level + 1)
        moved->SetLevels(dstParent->level + 1);
    return true;
}

void G_TreeNode::SetNodeData(G_NodeData* payload)
{
    if (payload == data)
        return;
    if (payload && data)
        payload->TakePlaceOf(*data);
    delete data;
    data = payload;
}

CCA_String G_TreeNode::NodeText() const
{
    return data ? data->NodeText() : CCA_String();
}

G_TreeNode* G_TreeNode::Root()
{
    G_TreeNode* node = this;
    while (node->parent)
        node = node->parent;
    return node;
}

void G_TreeNode::SetChangeGuard(ChangeGuard newGuard)
{
    G_TreeNode* root = parent ? Root() : this;
    guardCount += (newGuard ? 1 : 0) - (root->guard ? 1 : 0);
    root->guard = newGuard ? std::make_unique<ChangeGuard>(std::move(newGuard)) : nullptr;
}

bool G_TreeNode::Allows(Change change, int position)
{
    if (guardCount == 0)
        return true;
    const G_TreeNode* root = Root();
    return !root->guard || (*root->guard)(change, this, position);
}

std::unique_ptr<G_TreeNode> G_TreeNode::TakeSubNode(int position)
{
    std::unique_ptr<G_TreeNode> taken = std::move(subNodes[static_cast<size_t>(position)]);
    subNodes.erase(subNodes.begin() + position);
    Renumber(position, SubNodeCount());
    taken->parent = nullptr;
    return taken;
}

// Moves a sub-node among its siblings; only those between the two places change their number.
void G_TreeNode::ShiftSubNode(int from, int to)
{
    const auto begin = subNodes.begin();
    if (from < to)
        std::rotate(begin + from, begin + from + 1, begin + to + 1);
    else
        std::rotate(begin + to, begin + from, begin + from + 1);
    Renumber(std::min(from, to), std::max(from, to) + 1);
}

void G_TreeNode::Renumber(int from, int end)
{
    for (int i = from; i < end; ++i)
        subNodes[static_cast<size_t>(i)]->index = i;
}

void G_TreeNode::SetLevels(int newLevel)
{
    const int rise = newLevel - level;
    std::vector<G_TreeNode*> pending{this};
    while (!pending.empty()) {
        G_TreeNode* node = pending.back();
        pending.pop_back();
        node->level += rise;
        for (const auto& subNode : node->subNodes)
            pending.push_back(subNode.get());
    }
}
