#pragma once

#include <common/tree_commands.h>
#include <frame/document/payloads.h>

#include <QPointer>

class NaviOutlineWidget;

// All outline commands find their nodes again at each step, in the outline of the current view's document: nodes die
// and are rebuilt between steps. Failures go to the log alone and never stop the undo stack. Main thread only.

// The base of commands on one entry. Owns `item` while ownsItem says so.
class OutlineBaseCommand : public G_TreeNodeBaseCommand
{
public:
    OutlineBaseCommand(G_TreeNode* node, G_UIContext* context, QUndoCommand* parentCommand = nullptr);
    ~OutlineBaseCommand() override;

protected:
    // Looks the parent up, and the node below it; either may be null afterwards.
    void FindNode();

    G_OutlineItem* item; // owned when ownsItem is set, else the tree's, and then not to be read: it may be gone
    int type = 0;        // which change; for the log
};

// An entry was added. The node is in the tree already when the command is pushed, so the first redo does nothing.
class AddOutlineCommand : public OutlineBaseCommand
{
public:
    AddOutlineCommand(G_TreeNode* node, G_UIContext* context, QUndoCommand* parentCommand = nullptr);
    void undo() override;
    void redo() override;
};

// An entry was renamed or given a new destination. The node holds the new record already when the command is pushed.
// Does not refresh the pane: that follows the undo stack's index.
class ModifyOutlineCommand : public OutlineBaseCommand
{
public:
    // Takes `oldItem` over; `newItem` is the record that the node holds now, and stays the tree's.
    ModifyOutlineCommand(G_OutlineItem* oldItem, G_OutlineItem* newItem, G_TreeNode* node, G_UIContext* context,
                         QUndoCommand* parentCommand = nullptr);
    void undo() override;
    void redo() override;

private:
    void Exchange();
    G_OutlineItem* otherItem; // not owned; which record was handed to the tree last, never read
};

// The base of commands on several entries. Lists stand by position; a null is a position where nothing was done.
class OutlineBatchBaseCommand : public G_TreeNodeBatchBaseCommand
{
public:
    OutlineBatchBaseCommand(const QList<G_TreeNode*>& nodes, G_UIContext* context,
                            QUndoCommand* parentCommand = nullptr);
    ~OutlineBatchBaseCommand() override;

protected:
    int Count() const { return indices.size(); }
    // The parent recorded for a position, found again; null when it is gone. `hasPath` is false, and the log says so,
    // when nothing was recorded.
    G_TreeNode* FindParent(int position, const char* where, bool* hasPath) const;
    // Fills `nodes` and the list with what stands at the recorded places now; false when a path is missing.
    bool FindNodes(QList<G_TreeNode*>& parents, const char* where);
    void ReleaseItems();
    void ReleaseSubtrees();
    // Keeps a detached copy of what is below a node.
    void KeepSubtree(const G_TreeNode* node);
    // Ends a redo or an undo: notes which records are the command's now, and tells a change of the document.
    void EndStep(bool isChanged);

    QList<G_OutlineItem*> items; // owned when ownsItems is set
    QList<G_TreeNode*> subtrees; // owned; detached roots
    int type = 0;                // which change; for the log
};

// Several entries were added as one run. They are in the tree already when the command is pushed: `items` is empty
// then, so that the first redo changes nothing.
class BatchAddOutlineCommand : public OutlineBatchBaseCommand
{
public:
    // An empty list is legal.
    BatchAddOutlineCommand(const QList<G_TreeNode*>& nodes, G_UIContext* context,
                           QUndoCommand* parentCommand = nullptr);
    void undo() override;
    void redo() override;
};

// Removes entries with all that is below them; its first redo is the change itself.
class BatchDelOutlineCommand : public OutlineBatchBaseCommand
{
public:
    // The nodes in the tree's order, none below another; an empty list is legal.
    BatchDelOutlineCommand(const QList<G_TreeNode*>& nodes, G_UIContext* context,
                           QUndoCommand* parentCommand = nullptr);
    void undo() override;
    void redo() override;

private:
    bool RemoveNodes(const QList<G_TreeNode*>& parents);
};

// Moves entries behind another one, or to be its first children; its first redo is the change itself. Undo does not
// move back: it removes the moved run and adds saved copies at the old places.
class BatchMoveOutlineCommand : public OutlineBatchBaseCommand
{
public:
    // The nodes in the tree's order, none below another, none of them `dst` or above it. `widget` may be null.
    BatchMoveOutlineCommand(const QList<G_TreeNode*>& nodes, G_TreeNode* dst, bool asChild, G_UIContext* context,
                            NaviOutlineWidget* widget, QUndoCommand* parentCommand = nullptr);
    void undo() override;
    void redo() override;

private:
    void CaptureDestination();
    int TargetRow(const G_TreeNode* node) const;
    void MoveNodes();
    bool RestoreNodes();
    void RefreshWidget();

    G_TreeNode* dstNode;   // not owned; only good within one step
    G_TreeNode* dstParent; // not owned; only good within one step
    int dstIndex = 0;      // the first slot of the moved run; 0 for children
    bool asChild;
    TreeNodeKey dstKey;
    TreeNodeKey dstParentKey;
    TreeNodePath dstPath;
    TreeNodePath dstParentPath;
    QPointer<NaviOutlineWidget> widget; // not owned
    int movedCount = 0;
};
