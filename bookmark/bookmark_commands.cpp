#include "bookmark_commands.h"

#include "bookmark_node.h"

#include <common/notify.h>
#include <frame/base/log.h>
#include <frame/view/application.h>

namespace {

// Null for a node without a record.
G_Bookmark* CopyOf(const G_Bookmark* bookmark)
{
    return bookmark ? new G_Bookmark(*bookmark) : nullptr;
}

QList<int> RowsOf(const QList<G_TreeNode*>& nodes)
{
    QList<int> rows;
    for (const G_TreeNode* node : nodes)
        rows.append(node ? node->index : -1);
    return rows;
}

// The nodes that stand at the rows now; null where there is none.
QList<G_TreeNode*> NodesAt(const G_TreeNode* parent, const QList<int>& rows)
{
    QList<G_TreeNode*> nodes;
    for (const int row : rows)
        nodes.append(parent->SubNode(row));
    return nodes;
}

QList<G_Bookmark*> RecordsOf(const QList<G_TreeNode*>& nodes)
{
    QList<G_Bookmark*> items;
    for (const G_TreeNode* node : nodes)
        items.append(BookmarkOf(node));
    return items;
}

QList<G_Bookmark*> CopiesOf(const QList<G_Bookmark*>& items)
{
    QList<G_Bookmark*> copies;
    for (const G_Bookmark* item : items)
        copies.append(CopyOf(item));
    return copies;
}

G_TreeNode* ParentOf(const QList<G_TreeNode*>& nodes)
{
    const G_TreeNode* first = nodes.value(0);
    return first ? first->parent : nullptr;
}

} // namespace

BookmarkBaseCommand::BookmarkBaseCommand(G_TreeNode* node, G_UIContext* context, QUndoCommand* parentCommand)
    : G_TreeNodeBaseCommand(node, context, parentCommand)
    , item(node && node->level != 0 ? BookmarkOf(node) : nullptr)
{
}

BookmarkBaseCommand::~BookmarkBaseCommand()
{
    FrameLog("BookmarkBaseCommand::~BookmarkBaseCommand");
    if (ownsItem)
        delete item;
}

AddBookmarkCommand::AddBookmarkCommand(G_TreeNode* node, G_UIContext* context, QUndoCommand* parentCommand)
    : BookmarkBaseCommand(node, context, parentCommand)
{
}

AddBookmarkCommand::~AddBookmarkCommand()
{
    FrameLog("AddBookmarkCommand::~AddBookmarkCommand");
}

void AddBookmarkCommand::undo()
{
    node = parent ? parent->SubNode(index) : nullptr;
    G_Bookmark* copy = CopyOf(BookmarkOf(node));
    if (node && parent->RemoveSubNode(index)) {
        if (ownsItem)
            delete item; // left over from a redo that the tree refused
        item = copy;
        ownsItem = true;
        FireDocumentChanged(context);
        return;
    }
    delete copy;
    FireStatusText(context, tr("Undo failed"));
}

void AddBookmarkCommand::redo()
{
    if (SkipsFirstRedo(redoArmed))
        return;
    // A record that the tree still has (its undo failed) must not be given to it twice.
    node = parent && ownsItem ? parent->AddSubNode(index, item) : nullptr;
    if (!node) {
        FireStatusText(context, tr("Redo failed"));
        return;
    }
    ownsItem = false;
    FireDocumentChanged(context);
}

ModifyBookmarkCommand::ModifyBookmarkCommand(const G_Bookmark* oldItem, const G_Bookmark* newItem, G_TreeNode* node,
                                             G_UIContext* context, QUndoCommand* parentCommand)
    : BookmarkBaseCommand(node, context, parentCommand)
    , otherItem(CopyOf(newItem))
{
    item = CopyOf(oldItem);
    ownsItem = true;
}

ModifyBookmarkCommand::~ModifyBookmarkCommand()
{
    FrameLog("ModifyBookmarkCommand::~ModifyBookmarkCommand");
    delete otherItem;
}

void ModifyBookmarkCommand::undo()
{
    Exchange();
}

void ModifyBookmarkCommand::redo()
{
    if (!SkipsFirstRedo(redoArmed))
        Exchange();
}

// The record in the tree changes places with the one kept here. A tree that was changed behind the stack is left alone.
void ModifyBookmarkCommand::Exchange()
{
    node = parent ? parent->SubNode(index) : nullptr;
    const G_Bookmark* present = BookmarkOf(node);
    if (!present || !item)
        return;
    delete otherItem;
    otherItem = new G_Bookmark(*present);
    G_Bookmark* copy = new G_Bookmark(*item);
    node->SetNodeData(item); // the tree's from here on
    item = otherItem;
    otherItem = copy;
    FireDocumentChanged(context);
}

DeleteBookmarkCommand::DeleteBookmarkCommand(const QList<G_TreeNode*>& nodes, G_UIContext* context,
                                             QUndoCommand* parentCommand)
    : QUndoCommand(parentCommand)
    , nodes(nodes)
    , parent(ParentOf(nodes))
    , rows(parent ? RowsOf(nodes) : QList<int>())
    , context(context)
    , items(parent ? RecordsOf(nodes) : QList<G_Bookmark*>())
{
}

DeleteBookmarkCommand::~DeleteBookmarkCommand()
{
    FrameLog("DeleteBookmarkCommand::~DeleteBookmarkCommand");
    ReleaseItems();
}

void DeleteBookmarkCommand::ReleaseItems()
{
    if (ownsItems)
        qDeleteAll(items);
    items.clear();
    ownsItems = false;
}

void DeleteBookmarkCommand::redo()
{
    ReleaseItems();
    nodes = NodesAt(parent, rows);
    if (!nodes.value(0))
        return;
    items = RecordsOf(nodes);
    if (!items.value(0)) {
        items.clear(); // they are the tree's
        return;
    }
    const QList<G_Bookmark*> copies = CopiesOf(items);
    if (RemoveRows()) {
        items = copies;
        ownsItems = true;
        FireDocumentChanged(context);
        return;
    }
    qDeleteAll(copies);
    items.clear();
    G_Application::Instance().Log("DeleteBookmarkCommand::redo failed!");
}

// From the last to the first, so that lower rows stay valid; the answer is that of the first row alone.
bool DeleteBookmarkCommand::RemoveRows()
{
    bool isRemoved = false;
    for (int i = rows.size() - 1; i >= 0; --i)
        isRemoved = parent->RemoveSubNode(rows.at(i));
    return isRemoved;
}

void DeleteBookmarkCommand::undo()
{
    nodes.clear();
    if (items.value(0)) {
        for (int i = 0; i < items.size(); ++i) {
            nodes.append(parent->AddSubNode(rows.at(i), items.at(i)));
            if (nodes.last())
                items[i] = nullptr; // the tree's now; what it refused stays ours
        }
    }
    if (!nodes.value(0)) {
        G_Application::Instance().Log("DeleteBookmarkCommand::undo failed!");
        return;
    }
    ReleaseItems();
    FireDocumentChanged(context);
}

BatchMoveBookmarkCommand::BatchMoveBookmarkCommand(const QList<G_TreeNode*>& nodes, G_TreeNode* dstNode, bool toTop,
                                                   G_UIContext* context, QUndoCommand* parentCommand)
    : QUndoCommand(parentCommand)
    , nodes(nodes)
    , context(context)
    , parent(ParentOf(nodes))
    , dstNode(dstNode)
    , dstRow(!toTop && dstNode ? dstNode->index : -1)
    , toTop(toTop)
{
    if (parent) {
        rows = RowsOf(nodes);
        items = RecordsOf(nodes);
    }
}

BatchMoveBookmarkCommand::~BatchMoveBookmarkCommand()
{
    FrameLog("BatchMoveBookmarkCommand::~BatchMoveBookmarkCommand");
    ReleaseItems();
}

void BatchMoveBookmarkCommand::ReleaseItems()
{
    if (ownsItems)
        qDeleteAll(items);
    items.clear();
    ownsItems = false;
}

void BatchMoveBookmarkCommand::redo()
{
    ReleaseItems();
    movedCount = 0;
    nodes = NodesAt(parent, rows);
    if (!nodes.value(0))
        return;
    if (!toTop) {
        dstNode = parent->SubNode(dstRow);
        if (!dstNode) {
            G_Application::Instance().Log("BatchMoveBookmarkCommand::redo failed!");
            return;
        }
    }
    MoveNodes();
    if (!toTop)
        dstRow = dstNode->index;
}

// Where a node goes (a row counted after the node was taken out). The destination's row is read at each step, because
// the nodes moved so far have shifted it.
int BatchMoveBookmarkCommand::TargetRow(const G_TreeNode* node, int moved) const
{
    if (toTop)
        return moved;
    return node->index < dstNode->index ? dstNode->index + moved : dstNode->index + 1 + moved;
}

// Moves the nodes one by one and keeps a copy of each record; the copies stay aligned with the rows, null where nothing
// was moved. One change is told for each moved row.
void BatchMoveBookmarkCommand::MoveNodes()
{
    items = RecordsOf(nodes);
    QList<G_Bookmark*> copies;
    int lastTarget = 0;
    for (int i = 0; i < items.size(); ++i) {
        copies.append(nullptr);
        if (!items.at(i))
            continue;
        G_Bookmark* copy = CopyOf(items.at(i));
        const int target = TargetRow(nodes.at(i), movedCount);
        if (!G_TreeNode::MoveSubNode(parent, nodes.at(i)->index, parent, target)) {
            delete copy;
            G_Application::Instance().Log("BatchMoveBookmarkCommand::redo failed!");
            continue;
        }
        copies.last() = copy;
        lastTarget = target;
        ++movedCount;
        FireDocumentChanged(context);
    }
    items = copies;
    ownsItems = true;
    firstMovedRow = toTop ? 0 : lastTarget - movedCount + 1;
}

void BatchMoveBookmarkCommand::undo()
{
    if (!parent)
        return;
    if (!toTop)
        dstNode = parent->SubNode(dstRow);
    for (int i = movedCount - 1; i >= 0; --i)
        parent->RemoveSubNode(firstMovedRow + i);
    movedCount = 0;
    RestoreRows();
    if (!toTop && dstNode)
        dstRow = dstNode->index;
}

// Adds the saved copies at their old rows, first to last. Copies that the tree refuses are of no more use: a later redo
// takes the records from the tree again.
void BatchMoveBookmarkCommand::RestoreRows()
{
    nodes.clear();
    for (int i = 0; i < items.size(); ++i) {
        nodes.append(nullptr);
        if (!items.at(i))
            continue;
        nodes.last() = parent->AddSubNode(rows.at(i), items.at(i));
        if (!nodes.last()) {
            G_Application::Instance().Log("BatchMoveBookmarkCommand::undo failed!");
            continue;
        }
        items[i] = nullptr; // the tree's now
        FireDocumentChanged(context);
    }
    ReleaseItems();
}
