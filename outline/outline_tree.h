#pragma once

#include <common/reorder_tree.h>

#include <functional>

class NaviOutlineWidget;

// Where the user stood in the tree, by rows, so that a refill does not throw them back to the top.
struct EntryPlace
{
    QList<int> rows; // of the current entry, the top-level one first; empty without a current entry
    int scrollValue = 0;
};

// The tree of the outline pane: entries are moved by dragging, behind another or, 22 pixels to the right, below it. A
// direct child of its NaviOutlineWidget. Keys do the same: Alt with an arrow moves the selection, Enter goes, F2
// renames, Delete deletes. Main thread only.
class CTreeWidget : public ReorderTree
{
    Q_OBJECT
public:
    CTreeWidget(QWidget* parent, G_DocView* docView);

    // A request to rename the child `pendingRow` of this node once the tree has been filled anew; null = no request.
    G_TreeNode*& pendingParent; // not owned
    bool dropAsChild = false;
    bool ctrlHeld = false;

    // Null once the pane is being destroyed.
    NaviOutlineWidget* Pane() const;
    // For the delegate: the item of an index; null for an invalid one.
    QTreeWidgetItem* ItemAt(const QModelIndex& index) const;
    QModelIndex IndexOf(const QTreeWidgetItem* item) const;
    // Null in a read-only or locked document and without a selection. dragNodes stands in the tree's order.
    QMimeData* PrepareDrag() override;

    using RowVisitor = std::function<void(QTreeWidgetItem* item, const QModelIndex& index)>;
    // Visits the row of the index and all rows below it, parents before children; an invalid index means all rows.
    void ForEachRow(const QModelIndex& top, const RowVisitor& visit) const;
    // The same for the rows that have children.
    void ForEachBranch(const QModelIndex& top, const RowVisitor& visit) const;
    // Expands or collapses the rows with children, from the row of the index down; an invalid index means all rows. The
    // rows are laid out once, later.
    void ExpandRows(const QModelIndex& top, bool isExpanded);
    // After a refill: expands the rows that the document's records say.
    void RestoreExpansion();
    // Has all rows measured again.
    void RelayOutRows();
    EntryPlace CurrentPlace() const;
    // Makes the entry at the place current without selecting it, or what stands there now, and scrolls back.
    void GoBackTo(const EntryPlace& place);
    // Selects the entries' rows and makes the first one current.
    void SelectNodes(const QList<G_TreeNode*>& nodes);
    void doItemsLayout() override;

protected:
    QString MimeType() const override;
    int LineStart(const QRect& rowRect, const QPoint& position) override;
    bool CanDropOn(QTreeWidgetItem* source, QTreeWidgetItem* target) const override;
    void Drop(QDropEvent* event) override;
    void Resized() override;
    void GoToCurrent() override;
    void RenameCurrent() override;
    void DeleteSelection() override;
    bool MoveSelection(int arrowKey) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool MoveDragged(QTreeWidgetItem* target);
    void SelectSubtrees(const QList<G_TreeNode*>& nodes);
    void MoveSelectionUp(const QList<G_TreeNode*>& nodes);
    void MoveSelectionDown(const QList<G_TreeNode*>& nodes);
    void OutdentSelection(const QList<G_TreeNode*>& nodes);
    void IndentSelection(const QList<G_TreeNode*>& nodes);
    void MoveAndSelect(const QList<G_TreeNode*>& nodes, G_TreeNode* dst, bool asChild);

    int wantedScroll = -1; // set at the next layout; -1: none
};
