#pragma once

#include <common/reorder_tree.h>

class NaviBookmarkWidget;

// Where the user stood in the list, by row, so that a refill does not throw them back to the top.
struct RowPlace
{
    int currentRow = -1;
    int scrollValue = 0;
};

// The list of the bookmark pane: rows are reordered by dragging and by Alt+Up and Alt+Down; Enter goes to a bookmark,
// F2 renames it, Delete deletes the selection. A direct child of its NaviBookmarkWidget. Main thread only.
class CBookmarkTreeWidget : public ReorderTree
{
    Q_OBJECT
public:
    CBookmarkTreeWidget(QWidget* parent, G_DocView* docView);

    G_TreeNode*& pendingRoot; // the list's root while a new bookmark waits for its editor, else null

    // Null once the pane is being destroyed.
    NaviBookmarkWidget* Pane() const;
    QMimeData* PrepareDrag() override;
    RowPlace CurrentPlace() const;
    // Makes the row current without selecting it and scrolls back; a row that is gone is left alone.
    void GoBackTo(const RowPlace& place);

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

private:
    QList<int> SelectedRows() const;
    QList<G_TreeNode*> NodesAt(const QList<int>& rows) const;
    G_TreeNode* ListRoot() const;
    bool MoveDragged(const QList<G_TreeNode*>& nodes, const QPoint& position, QTreeWidgetItem* source);
    void MoveBlock(int step);
    void SelectBlock(int firstRow, int count, int currentRow);
};
