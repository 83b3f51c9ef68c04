#pragma once

#include <common/tree_commands.h>
#include <frame/document/payloads.h>

#include <QCoreApplication>
#include <QList>
#include <QUndoCommand>

// The base of commands on one bookmark. Owns `item` while ownsItem says so.
class BookmarkBaseCommand : public G_TreeNodeBaseCommand
{
public:
    BookmarkBaseCommand(G_TreeNode* node, G_UIContext* context, QUndoCommand* parentCommand = nullptr);
    ~BookmarkBaseCommand() override;

protected:
    G_Bookmark* item; // owned when ownsItem is set, else the tree's
};

// A bookmark was added. The node is in the tree already when the command is pushed, so the first redo does nothing.
class AddBookmarkCommand : public BookmarkBaseCommand
{
    Q_DECLARE_TR_FUNCTIONS(AddBookmarkCommand)
public:
    AddBookmarkCommand(G_TreeNode* node, G_UIContext* context, QUndoCommand* parentCommand = nullptr);
    ~AddBookmarkCommand() override;
    void undo() override;
    void redo() override;
};

// A bookmark was renamed or given a new destination. The node holds the new state already when the command is pushed.
class ModifyBookmarkCommand : public BookmarkBaseCommand
{
public:
    // Copies both records; the caller keeps its own.
    ModifyBookmarkCommand(const G_Bookmark* oldItem, const G_Bookmark* newItem, G_TreeNode* node, G_UIContext* context,
                          QUndoCommand* parentCommand = nullptr);
    ~ModifyBookmarkCommand() override;
    void undo() override;
    void redo() override;

private:
    void Exchange();
    G_Bookmark* otherItem; // owned
};

// Removes bookmarks; its first redo is the change itself.
class DeleteBookmarkCommand : public QUndoCommand
{
public:
    // The nodes in ascending row order; an empty list is legal and changes nothing.
    DeleteBookmarkCommand(const QList<G_TreeNode*>& nodes, G_UIContext* context, QUndoCommand* parentCommand = nullptr);
    ~DeleteBookmarkCommand() override;
    void undo() override;
    void redo() override;

private:
    void ReleaseItems();
    bool RemoveRows();

    QList<G_TreeNode*> nodes; // not owned; only good within one step
    G_TreeNode* parent;       // not owned; the bookmark root, null for an empty list
    QList<int> rows;
    G_UIContext* context;     // not owned
    QList<G_Bookmark*> items; // owned when ownsItems is set, nulls excepted
    bool ownsItems = false;
};

// Moves bookmarks behind another one or to the top; its first redo is the change itself. Undo removes the moved block
// and adds saved copies at the old rows: only rows carry over between undo and redo, never nodes.
class BatchMoveBookmarkCommand : public QUndoCommand
{
public:
    // `dstNode` is not used with `toTop`.
    BatchMoveBookmarkCommand(const QList<G_TreeNode*>& nodes, G_TreeNode* dstNode, bool toTop, G_UIContext* context,
                             QUndoCommand* parentCommand = nullptr);
    ~BatchMoveBookmarkCommand() override;
    void undo() override;
    void redo() override;

private:
    void ReleaseItems();
    int TargetRow(const G_TreeNode* node, int moved) const;
    void MoveNodes();
    void RestoreRows();

    QList<G_TreeNode*> nodes; // not owned; only good within one step
    QList<int> rows;
    G_UIContext* context;     // not owned
    QList<G_Bookmark*> items; // aligned with rows; owned when ownsItems is set, nulls excepted
    G_TreeNode* parent;       // not owned; the bookmark root, null for an empty list
    G_TreeNode* dstNode;      // not owned; refreshed at each step
    int firstMovedRow = 0;
    int movedCount = 0;
    int dstRow = -1;
    bool ownsItems = false;
    bool toTop;
};
