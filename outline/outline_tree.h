#pragma once

#include <common/reorder_tree.h>

class NaviOutlineWidget;

// The tree of the outline pane: entries are moved by dragging, behind another or, 22 pixels to the right, below it. A
// direct child of its NaviOutlineWidget. Main thread only.
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
    // Null in a read-only or locked document and without a selection. dragNodes stands in the tree's order.
    QMimeData* PrepareDrag() override;

protected:
    QString MimeType() const override;
    int LineStart(const QRect& rowRect, const QPoint& position) override;
    bool CanDropOn(QTreeWidgetItem* source, QTreeWidgetItem* target) const override;
    void Drop(QDropEvent* event) override;
    void Resized() override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
};
