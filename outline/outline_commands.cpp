#include "outline_commands.h"

#include "outline_ids.h"
#include "outline_node.h"
#include "outline_pane.h"

#include <common/notify.h>
#include <common/public_method.h>
#include <frame/base/log.h>
#include <frame/navigation/navigation_page.h>
#include <frame/view/application.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>

#include <algorithm>

namespace {

constexpr char addRedo[] = "AddOutlineCommand::redo";
constexpr char addUndo[] = "AddOutlineCommand::undo";
constexpr char batchAddRedo[] = "BatchAddOutlineCommand::redo";
constexpr char batchAddUndo[] = "BatchAddOutlineCommand::undo";
constexpr char batchDelRedo[] = "BatchDelOutlineCommand::redo";
constexpr char batchDelUndo[] = "BatchDelOutlineCommand::undo";
constexpr char batchMoveRedo[] = "BatchMoveOutlineCommand::redo";
constexpr char batchMoveUndo[] = "BatchMoveOutlineCommand::undo";

enum ChangeType { Addition = 1, Deletion = 2, Modification = 3, Move = 4 };

void LogFailure(const char* where)
{
    G_Application::Instance().Log(QByteArray(where) + " failed!");
}

void LogFailure(const char* where, int position)
{
    G_Application::Instance().Log(QByteArray(where) + " " + QByteArray::number(position) + " failed!");
}

void LogNoPath(const char* where, int position)
{
    G_Application::Instance().Log(QByteArray(where) + " " + QByteArray::number(position) + " find parent failed!");
}

G_TreeNode* Lookup(G_UIContext* context, const TreeNodePath& path)
{
    return PublicMethod::FindOutlineNode(CurrentOutlineRoot(context), path.value(0), path);
}

void Refill(NaviOutlineWidget* pane)
{
    pane->UpdateOutline(0);
    pane->RecordExpandState();
}

// Fills the current document's pane anew, when it has one.
void RefreshPane(G_UIContext* context)
{
    const G_DocView* view = context ? context->CurrentDocView() : nullptr;
    for (const Core::G_NavigationPage* page : Core::G_NavigationPage::allNaviPages()) {
        if (page->objectName() != QLatin1String(OutlineId::PageName))
            continue;
        if (auto* pane = qobject_cast<NaviOutlineWidget*>(view ? page->WidgetFor(view->GDocument()) : nullptr))
            Refill(pane);
        return;
    }
}

// A record that can be put back: a node without one comes back with an empty one, so that what is below it is kept.
G_OutlineItem* KeptCopy(const G_TreeNode* node)
{
    G_OutlineItem* copy = CopyOfItem(node);
    return copy ? copy : new G_OutlineItem;
}

// Adds the record where it stood, and what was below it. On a refusal the record is freed. The entry of the list is
// null in both cases: the record is no longer the command's.
G_TreeNode* PutBack(G_TreeNode* parent, int index, G_OutlineItem*& item, const G_TreeNode* subtree)
{
    G_TreeNode* node = parent->AddSubNode(index, item);
    if (!node)
        delete item;
    else if (subtree)
        PublicMethod::CopyOutlineChildren(subtree, node);
    item = nullptr;
    return node;
}

} // namespace

OutlineBaseCommand::OutlineBaseCommand(G_TreeNode* node, G_UIContext* context, QUndoCommand* parentCommand)
    : G_TreeNodeBaseCommand(node, context, parentCommand)
    , item(OutlineItemOf(node))
{
}

OutlineBaseCommand::~OutlineBaseCommand()
{
    if (ownsItem)
        delete item;
    item = nullptr;
}

void OutlineBaseCommand::FindNode()
{
    parent = Lookup(context, parentPath);
    node = parent ? parent->SubNode(index) : nullptr;
}

AddOutlineCommand::AddOutlineCommand(G_TreeNode* node, G_UIContext* context, QUndoCommand* parentCommand)
    : OutlineBaseCommand(node, context, parentCommand)
{
    type = Addition;
}

void AddOutlineCommand::redo()
{
    if (SkipsFirstRedo(redoArmed))
        return;
    parent = Lookup(context, parentPath);
    // A record that the tree still has (its undo failed) must not be given to it twice.
    node = parent && ownsItem ? parent->AddSubNode(index, item) : nullptr;
    if (node) {
        ownsItem = false;
        FireDocumentChanged(context);
    } else {
        LogFailure(addRedo);
    }
    RefreshPane(context);
}

void AddOutlineCommand::undo()
{
    FindNode();
    G_OutlineItem* copy = CopyOfItem(node);
    // While the record is ours the entry is not in the tree (its redo failed), and the one at its place is another.
    if (!ownsItem && node && parent->RemoveSubNode(index)) {
        item = copy;
        ownsItem = true;
        FireDocumentChanged(context);
    } else {
        delete copy;
        LogFailure(addUndo);
    }
    RefreshPane(context);
}

ModifyOutlineCommand::ModifyOutlineCommand(G_OutlineItem* oldItem, G_OutlineItem* newItem, G_TreeNode* node,
                                           G_UIContext* context, QUndoCommand* parentCommand)
    : OutlineBaseCommand(node, context, parentCommand)
    , otherItem(newItem)
{
    type = Modification;
    item = oldItem;
    ownsItem = true;
}

void ModifyOutlineCommand::redo()
{
    if (!SkipsFirstRedo(redoArmed))
        Exchange();
}

void ModifyOutlineCommand::undo()
{
    Exchange();
}

// The record in the tree changes places with the one kept here, by way of a copy: expansion states are written into the
// document by replacing records, so that a pointer into the tree would not last until the next step. An entry that is
// not there is left alone.
void ModifyOutlineCommand::Exchange()
{
    FindNode();
    G_OutlineItem* copy = CopyOfItem(node);
    if (!copy || !item) {
        delete copy;
        return;
    }
    node->SetNodeData(item); // the tree's from here on
    otherItem = item;
    item = copy;
    FireDocumentChanged(context);
}

OutlineBatchBaseCommand::OutlineBatchBaseCommand(const QList<G_TreeNode*>& nodes, G_UIContext* context,
                                                 QUndoCommand* parentCommand)
    : G_TreeNodeBatchBaseCommand(nodes, context, parentCommand)
{
}

OutlineBatchBaseCommand::~OutlineBatchBaseCommand()
{
    FrameLog("type " + QByteArray::number(type) + " OutlineBatchBaseCommand::~OutlineBatchBaseCommand");
    ReleaseItems();
    ReleaseSubtrees();
}

G_TreeNode* OutlineBatchBaseCommand::FindParent(int position, const char* where, bool* hasPath) const
{
    const TreeNodePath path = paths.value(position);
    *hasPath = !path.isEmpty();
    if (!*hasPath)
        LogNoPath(where, position);
    return *hasPath ? Lookup(context, path) : nullptr;
}

bool OutlineBatchBaseCommand::FindNodes(QList<G_TreeNode*>& parents, const char* where)
{
    nodes.clear();
    for (int i = 0; i < Count(); ++i) {
        bool hasPath = false;
        G_TreeNode* parent = FindParent(i, where, &hasPath);
        if (!hasPath)
            return false;
        parents.append(parent);
        nodes.append(parent ? parent->SubNode(indices.at(i)) : nullptr);
    }
    return true;
}

void OutlineBatchBaseCommand::ReleaseItems()
{
    if (ownsItems)
        qDeleteAll(items);
    items.clear();
    ownsItems = false;
}

void OutlineBatchBaseCommand::ReleaseSubtrees()
{
    for (G_TreeNode* subtree : subtrees)
        PublicMethod::DeleteSubTree(subtree);
    subtrees.clear();
}

void OutlineBatchBaseCommand::KeepSubtree(const G_TreeNode* node)
{
    subtrees.append(G_TreeNode::CreateRoot());
    PublicMethod::CopyOutlineTree(node, subtrees.last());
}

void OutlineBatchBaseCommand::EndStep(bool isChanged)
{
    ownsItems = std::any_of(items.cbegin(), items.cend(), [](const G_OutlineItem* item) { return item != nullptr; });
    if (isChanged)
        FireDocumentChanged(context);
}

BatchAddOutlineCommand::BatchAddOutlineCommand(const QList<G_TreeNode*>& nodes, G_UIContext* context,
                                               QUndoCommand* parentCommand)
    : OutlineBatchBaseCommand(nodes, context, parentCommand)
{
    type = Addition;
}

void BatchAddOutlineCommand::redo()
{
    bool isChanged = false;
    for (int i = 0; i < items.size(); ++i) {
        bool hasPath = false;
        G_TreeNode* parent = FindParent(i, batchAddRedo, &hasPath);
        if (!hasPath)
            return;
        nodes[i] = nullptr;
        if (!parent || !items.at(i))
            continue;
        nodes[i] = PutBack(parent, indices.at(i), items[i], nullptr);
        if (!nodes.at(i))
            LogFailure(batchAddRedo, i);
        else
            isChanged = true;
    }
    EndStep(isChanged);
    RefreshPane(context);
}

void BatchAddOutlineCommand::undo()
{
    const QList<G_TreeNode*> added = nodes; // not followed: only tells which entries are in the tree
    QList<G_TreeNode*> parents;
    if (!FindNodes(parents, batchAddUndo))
        return;
    QList<G_OutlineItem*> copies; // all of them ahead of the removals, which free nodes
    for (int i = 0; i < nodes.size(); ++i)
        copies.append(nodes.at(i) && added.value(i) ? KeptCopy(nodes.at(i)) : nullptr);
    ReleaseItems();
    bool isChanged = false;
    // Always the first entry's row, on purpose: the batch was added as one run, so that after each removal the next of
    // the run stands there.
    const int first = indices.value(0);
    for (int i = 0; i < copies.size(); ++i) {
        items.append(nullptr);
        if (!copies.at(i))
            continue;
        if (!parents.at(i)->RemoveSubNode(first)) {
            delete copies.at(i);
            LogFailure(batchAddUndo, i);
            continue;
        }
        items.last() = copies.at(i);
        isChanged = true;
    }
    EndStep(isChanged);
    RefreshPane(context);
}

BatchDelOutlineCommand::BatchDelOutlineCommand(const QList<G_TreeNode*>& nodes, G_UIContext* context,
                                               QUndoCommand* parentCommand)
    : OutlineBatchBaseCommand(nodes, context, parentCommand)
{
    type = Deletion;
}

void BatchDelOutlineCommand::redo()
{
    ReleaseItems();
    ReleaseSubtrees();
    QList<G_TreeNode*> parents;
    if (!FindNodes(parents, batchDelRedo))
        return;
    const bool isChanged = RemoveNodes(parents);
    EndStep(isChanged);
    RefreshPane(context);
}

// From the last to the first, so that the rows of those still to be removed stay true. So the kept records and
// sub-trees stand in the reverse order of the nodes.
bool BatchDelOutlineCommand::RemoveNodes(const QList<G_TreeNode*>& parents)
{
    bool isChanged = false;
    for (int i = Count() - 1; i >= 0; --i) {
        KeepSubtree(nodes.at(i));
        items.append(nullptr);
        if (!parents.at(i))
            continue;
        G_OutlineItem* copy = KeptCopy(nodes.at(i));
        if (!parents.at(i)->RemoveSubNode(indices.at(i))) {
            delete copy;
            LogFailure(batchDelRedo, i);
            continue;
        }
        items.last() = copy;
        isChanged = true;
    }
    return isChanged;
}

void BatchDelOutlineCommand::undo()
{
    nodes.clear();
    bool isChanged = false;
    for (int i = 0; i < items.size(); ++i) {
        const int kept = items.size() - 1 - i;
        bool hasPath = false;
        G_TreeNode* parent = FindParent(i, batchDelUndo, &hasPath);
        if (!hasPath)
            return;
        nodes.append(nullptr);
        if (!parent || !items.at(kept))
            continue;
        nodes.last() = PutBack(parent, indices.at(i), items[kept], subtrees.at(kept));
        if (!nodes.last())
            LogFailure(batchDelUndo, i);
        else
            isChanged = true;
    }
    EndStep(isChanged);
    RefreshPane(context);
}

BatchMoveOutlineCommand::BatchMoveOutlineCommand(const QList<G_TreeNode*>& nodes, G_TreeNode* dst, bool asChild,
                                                 G_UIContext* context, NaviOutlineWidget* widget,
                                                 QUndoCommand* parentCommand)
    : OutlineBatchBaseCommand(nodes, context, parentCommand)
    , dstNode(dst)
    , dstParent(asChild || !dst ? dst : dst->parent)
    , asChild(asChild)
    , widget(widget)
{
    type = Move;
    CaptureDestination();
}

void BatchMoveOutlineCommand::CaptureDestination()
{
    dstKey = TreeNodeKey::Of(dstNode);
    dstPath = PathFrom(dstNode);
    dstParentKey = TreeNodeKey::Of(dstParent);
    dstParentPath = PathFrom(dstParent);
}

void BatchMoveOutlineCommand::RefreshWidget()
{
    if (widget)
        Refill(widget);
}

void BatchMoveOutlineCommand::redo()
{
    ReleaseItems();
    ReleaseSubtrees();
    movedCount = 0;
    dstNode = PublicMethod::FindOutlineNode(CurrentOutlineRoot(context), dstKey, dstPath);
    dstParent = asChild || !dstNode ? dstNode : dstNode->parent;
    if (!dstParent) {
        LogFailure(batchMoveRedo);
        return;
    }
    QList<G_TreeNode*> parents;
    if (!FindNodes(parents, batchMoveRedo))
        return;
    MoveNodes();
    EndStep(movedCount > 0);
    CaptureDestination(); // the move may have changed its row
    RefreshWidget();
}

// Where a node goes: a row counted after the node was taken out. The destination's row is read at each step, because
// the nodes moved so far have shifted it; taking a node out from above the destination shifts it once more.
int BatchMoveOutlineCommand::TargetRow(const G_TreeNode* node) const
{
    if (asChild)
        return dstIndex + movedCount;
    const bool shiftsDestination = node->parent == dstNode->parent && node->index < dstNode->index;
    return dstNode->index + (shiftsDestination ? 0 : 1) + movedCount;
}

void BatchMoveOutlineCommand::MoveNodes()
{
    int lastTarget = 0;
    for (int i = 0; i < nodes.size(); ++i) {
        G_TreeNode* node = nodes.at(i);
        KeepSubtree(node);
        items.append(nullptr);
        if (!node)
            continue;
        G_OutlineItem* copy = KeptCopy(node);
        const int target = TargetRow(node);
        if (!G_TreeNode::MoveSubNode(node->parent, node->index, dstParent, target)) {
            delete copy;
            LogFailure(batchMoveRedo, i);
            continue;
        }
        items.last() = copy;
        lastTarget = target;
        ++movedCount;
    }
    if (!asChild)
        dstIndex = lastTarget - movedCount + 1;
}

void BatchMoveOutlineCommand::undo()
{
    G_TreeNode* root = CurrentOutlineRoot(context);
    dstNode = PublicMethod::FindOutlineNode(root, dstKey, dstPath);
    dstParent = PublicMethod::FindOutlineNode(root, dstParentKey, dstParentPath);
    if (!dstParent) {
        LogFailure(batchMoveUndo);
        return;
    }
    for (int i = movedCount - 1; i >= 0; --i)
        dstParent->RemoveSubNode(dstIndex + i);
    movedCount = 0;
    if (!RestoreNodes())
        return;
    CaptureDestination();
    RefreshWidget();
}

// Adds the saved copies at their old rows, first to last: the nodes stand in the tree's order, so that each lands where
// it stood. False when a path is missing.
bool BatchMoveOutlineCommand::RestoreNodes()
{
    bool isChanged = false;
    for (int i = 0; i < items.size(); ++i) {
        bool hasPath = false;
        G_TreeNode* parent = FindParent(i, batchMoveUndo, &hasPath);
        if (!hasPath)
            return false;
        if (!parent || !items.at(i))
            continue;
        if (PutBack(parent, indices.at(i), items[i], subtrees.at(i)))
            isChanged = true;
        else
            LogFailure(batchMoveUndo, i);
    }
    EndStep(isChanged);
    return true;
}
