#pragma once

#include <frame/view/doc_view.h>

#include <QLine>
#include <QList>
#include <QPointer>
#include <QTreeWidget>

#include <functional>

class G_TreeNode;
class QDrag;
class QMimeData;

// The base of the tree views whose rows are reordered by dragging: the document's tree is changed, not the items. Holds
// the request to rename a new row, the state of a drag and the drop indicator; a subclass says what may be dragged,
// where it may be dropped, and moves it. Main thread only.
class ReorderTree : public QTreeWidget
{
    Q_OBJECT
public:
    ReorderTree(QWidget* parent, G_DocView* docView);

    // What a drag of the selection carries, owned by the caller; null when nothing may be dragged. Fills dragNodes and
    // begins the dragging state.
    virtual QMimeData* PrepareDrag() = 0;
    // Makes Qt ask the delegate for all row heights again: the width goes one less and back.
    void RemeasureRows();
    // Forgets a request to rename a new row.
    void ClearPending();
    // Ends an open edit of a row and keeps what was typed; what that sets off may fill the tree anew.
    void CommitEdit();
    // Ends an open edit of a row without its text. False when none was open.
    bool DropEdit();

    // Replaces QDrag::exec, which blocks until the user lets go; an empty function brings it back. For tests. The drag
    // is deleted by the tree afterwards.
    static void SetDragRunner(std::function<Qt::DropAction(QDrag*)> runner);

    G_TreeNode* pendingNode = nullptr; // not owned; the parent of a new row that waits for its editor
    int pendingRow = -1;

    bool isDragging = false;
    bool leftView = false;
    bool canDrop = true;
    QLine oldLine; // the indicator, earlier and now; null = none. Viewport coordinates
    QLine line;
    QList<G_TreeNode*> dragNodes; // not owned; what is dragged, in the tree's order
    bool dropAtTop = false;
    QPointer<G_DocView> docView; // not owned

protected:
    // The drag format; its content is the address of the first selected item as decimal text.
    virtual QString MimeType() const = 0;
    // x of the indicator's start over a row, viewport coordinates.
    virtual int LineStart(const QRect& rowRect, const QPoint& position) = 0;
    // May the dragged rows go to this row? Neither is null and something is selected when it is asked.
    virtual bool CanDropOn(QTreeWidgetItem* source, QTreeWidgetItem* target) const = 0;
    // A drop with the right format: accepts or ignores the event, moves, and calls the base class's dropEvent where
    // that is wanted.
    virtual void Drop(QDropEvent* event) = 0;
    // The tree was resized; the pane places its no-content picture anew.
    virtual void Resized();

    // Keys do what the mouse does. Enter:
    virtual void GoToCurrent();
    // F2:
    virtual void RenameCurrent();
    // Delete:
    virtual void DeleteSelection();
    // Alt with this arrow key, as a drag would; false when the arrow means nothing here.
    virtual bool MoveSelection(int arrowKey);

    // Packs the first selected item for a drag. Owned by the caller.
    QMimeData* PackSelection() const;
    // Asks for the context menu of the current row, scrolled into view: what the menu key and Shift+F10 do.
    void OpenMenuAtCurrent();
    // The item a drag began with when it is one of this tree's selected items, else null: the number in the data is
    // compared, never followed.
    QTreeWidgetItem* SourceItem(const QMimeData* data) const;

    // The menu key asks for the menu of the current row, not of where the mouse happens to be.
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    bool PerformKey(const QKeyEvent& event);
    bool LeaveSignatureTool();
    void PlaceIndicator(const QTreeWidgetItem* target, const QPoint& position);
    void HideIndicator();
    void PaintIndicator();
    void PaintFocus();
    void ScrollNearEdge(const QPoint& position);
};
