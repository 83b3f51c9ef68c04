#include "bookmark_tree.h"

#include "bookmark_node.h"
#include "bookmark_pane.h"

#include <common/public_method.h>
#include <common/rights.h>
#include <common/text_edits.h>
#include <frame/document/ig_document.h>

#include <QDropEvent>
#include <QMimeData>
#include <QScrollBar>

namespace {

constexpr int LineInset = 6; // px from the row's left edge

} // namespace

CBookmarkTreeWidget::CBookmarkTreeWidget(QWidget* parent, G_DocView* docView)
    : ReorderTree(parent, docView)
    , pendingRoot(pendingNode)
{
    viewport()->setAttribute(Qt::WA_Hover); // the delegate paints the row under the mouse
}

NaviBookmarkWidget* CBookmarkTreeWidget::Pane() const
{
    return qobject_cast<NaviBookmarkWidget*>(parentWidget());
}

G_TreeNode* CBookmarkTreeWidget::ListRoot() const
{
    const NaviBookmarkWidget* pane = Pane();
    return pane && pane->document ? pane->document->GetBookmarkRoot() : nullptr;
}

// Ascending.
QList<int> CBookmarkTreeWidget::SelectedRows() const
{
    QList<int> rows;
    const QModelIndexList selected = selectionModel()->selectedRows();
    rows.reserve(selected.size());
    for (const QModelIndex& index : selected)
        rows.append(index.row());
    PublicMethod::SortRows(rows);
    return rows;
}

QList<G_TreeNode*> CBookmarkTreeWidget::NodesAt(const QList<int>& rows) const
{
    QList<G_TreeNode*> nodes;
    G_TreeNode* root = ListRoot();
    for (const int row : rows) {
        if (G_TreeNode* node = root ? root->SubNode(row) : nullptr)
            nodes.append(node);
    }
    return nodes;
}

QMimeData* CBookmarkTreeWidget::PrepareDrag()
{
    const NaviBookmarkWidget* pane = Pane();
    if (!pane || !MayReorder(pane->document))
        return nullptr;
    const QList<int> rows = SelectedRows();
    if (rows.isEmpty())
        return nullptr;
    dragNodes = NodesAt(rows);
    line = oldLine = QLine(); // what an earlier drag left behind when it ended elsewhere
    dropAtTop = false;
    isDragging = true;
    return PackSelection();
}

QString CBookmarkTreeWidget::MimeType() const
{
    return QStringLiteral("BookmarkMoveDstItem");
}

int CBookmarkTreeWidget::LineStart(const QRect& rowRect, const QPoint&)
{
    return rowRect.left() + LineInset;
}

bool CBookmarkTreeWidget::CanDropOn(QTreeWidgetItem*, QTreeWidgetItem* target) const
{
    return !target->isSelected();
}

void CBookmarkTreeWidget::Drop(QDropEvent* event)
{
    const QList<G_TreeNode*> nodes = dragNodes; // the refill that a move brings about forgets them
    const bool isMoved = MoveDragged(nodes, event->pos(), SourceItem(event->mimeData()));
    if (isMoved) {
        event->setDropAction(Qt::MoveAction);
        event->accept();
    } else {
        // Ignored altogether: with any other action Qt would move the items itself, and the list would show an order
        // that the document does not have.
        event->setDropAction(Qt::IgnoreAction);
        event->ignore();
    }
    QTreeWidget::dropEvent(event); // NOLINT(bugprone-parent-virtual-call): ReorderTree would handle the drop again
    // Selected only now: what is selected while Qt handles the drop might be moved by it.
    if (isMoved)
        SelectBlock(nodes.first()->index, nodes.size(), nodes.first()->index);
    dragNodes.clear(); // an undo would leave dead nodes
}

bool CBookmarkTreeWidget::MoveDragged(const QList<G_TreeNode*>& nodes, const QPoint& position, QTreeWidgetItem* source)
{
    QTreeWidgetItem* target = itemAt(position);
    if (nodes.isEmpty() || !source || !target || source == target || target->isSelected())
        return false;
    G_TreeNode* root = ListRoot();
    G_TreeNode* node = root ? root->SubNode(indexOfTopLevelItem(target)) : nullptr;
    if (!node)
        return false;
    if (dropAtTop)
        Pane()->MoveBookmarks(nodes, node->parent, true);
    else
        Pane()->MoveBookmarks(nodes, node, false);
    return true;
}

// Moves the selected rows as one block up or down by one row, through the same command as a drag.
void CBookmarkTreeWidget::MoveBlock(int step)
{
    NaviBookmarkWidget* pane = Pane();
    const QList<int> rows = SelectedRows();
    if (!pane || rows.isEmpty() || !MayReorder(pane->document))
        return;
    const int count = rows.size();
    const int currentOffset = qMax(0, rows.indexOf(currentIndex().row()));
    const bool isBlock = rows.last() - rows.first() + 1 == count;
    if (step < 0) {
        if (rows.first() == 0 && isBlock)
            return;
        const int first = qMax(0, rows.first() - 1);
        G_TreeNode* before = first > 0 ? ListRoot()->SubNode(first - 1) : nullptr;
        pane->MoveBookmarks(NodesAt(rows), before ? before : ListRoot(), !before);
        SelectBlock(first, count, first + currentOffset);
        return;
    }
    G_TreeNode* behind = ListRoot()->SubNode(rows.last() + 1);
    if (!behind)
        return;
    pane->MoveBookmarks(NodesAt(rows), behind, false);
    const int first = rows.last() + 2 - count;
    SelectBlock(first, count, first + currentOffset);
}

void CBookmarkTreeWidget::SelectBlock(int firstRow, int count, int currentRow)
{
    const int lastRow = qMin(firstRow + count, topLevelItemCount()) - 1;
    if (firstRow < 0 || lastRow < firstRow)
        return;
    const QItemSelection block(model()->index(firstRow, 0), model()->index(lastRow, 0));
    selectionModel()->setCurrentIndex(model()->index(currentRow, 0), QItemSelectionModel::NoUpdate);
    selectionModel()->select(block, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

RowPlace CBookmarkTreeWidget::CurrentPlace() const
{
    return {currentIndex().row(), verticalScrollBar()->value()};
}

void CBookmarkTreeWidget::GoBackTo(const RowPlace& place)
{
    const int row = qMin(place.currentRow, topLevelItemCount() - 1);
    if (row >= 0) {
        // Without scrolling, which would lay out all rows now and not when they are shown.
        const bool scrolls = hasAutoScroll();
        setAutoScroll(false);
        selectionModel()->setCurrentIndex(model()->index(row, 0), QItemSelectionModel::NoUpdate);
        setAutoScroll(scrolls);
    }
    if (place.scrollValue > 0) {
        executeDelayedItemsLayout();
        verticalScrollBar()->setValue(place.scrollValue);
    }
}

// The key goes on with the row that took the place of the deleted ones.
void CBookmarkTreeWidget::DeleteSelection()
{
    const int count = topLevelItemCount();
    const QList<int> rows = SelectedRows();
    const QPointer<CBookmarkTreeWidget> self(this); // a box's loop may close the document
    if (NaviBookmarkWidget* pane = Pane())
        pane->DelBookmark();
    if (!self)
        return;
    const int left = topLevelItemCount();
    if (left > 0 && left < count && !rows.isEmpty())
        setCurrentItem(topLevelItem(qMin(rows.first(), left - 1)));
}

void CBookmarkTreeWidget::GoToCurrent()
{
    if (NaviBookmarkWidget* pane = Pane())
        pane->onClickItem(currentItem(), 0);
}

void CBookmarkTreeWidget::RenameCurrent()
{
    if (NaviBookmarkWidget* pane = Pane())
        pane->RenameBookmark(currentItem());
}

// A list has no levels: left and right mean nothing.
bool CBookmarkTreeWidget::MoveSelection(int arrowKey)
{
    if (arrowKey != Qt::Key_Up && arrowKey != Qt::Key_Down)
        return false;
    MoveBlock(arrowKey == Qt::Key_Up ? -1 : 1);
    return true;
}

void CBookmarkTreeWidget::Resized()
{
    NaviBookmarkWidget* pane = Pane();
    if (!pane)
        return;
    pane->UpdateNoContent();
    if (pane->wrapEnabled)
        scheduleDelayedItemsLayout(); // lines break elsewhere now
}
