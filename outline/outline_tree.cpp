#include "outline_tree.h"

#include "outline_item.h"
#include "outline_pane.h"

#include <common/rights.h>
#include <frame/document/ig_document.h>

#include <QDropEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <vector>

namespace {

constexpr int ChildIndent = 22; // px right of the row's left edge where a drop means "below this entry"

} // namespace

CTreeWidget::CTreeWidget(QWidget* parent, G_DocView* docView)
    : ReorderTree(parent, docView)
    , pendingParent(pendingNode)
{
    viewport()->setAttribute(Qt::WA_Hover); // the delegate paints the row under the mouse
}

NaviOutlineWidget* CTreeWidget::Pane() const
{
    return qobject_cast<NaviOutlineWidget*>(parentWidget());
}

QTreeWidgetItem* CTreeWidget::ItemAt(const QModelIndex& index) const
{
    return itemFromIndex(index);
}

QModelIndex CTreeWidget::IndexOf(const QTreeWidgetItem* item) const
{
    return indexFromItem(item);
}

void CTreeWidget::ForEachBranch(const QModelIndex& top, const RowVisitor& visit) const
{
    std::vector<QModelIndex> waiting{top}; // a stack of its own: an outline from a file may be deeper than ours
    while (!waiting.empty()) {
        const QModelIndex index = waiting.back();
        waiting.pop_back();
        QTreeWidgetItem* item = index.isValid() ? itemFromIndex(index) : invisibleRootItem();
        if (item->childCount() == 0)
            continue;
        if (index.isValid())
            visit(item, index);
        for (int row = 0; row < item->childCount(); ++row) {
            // By its row: asked for an item's place, the model would look for it among its siblings.
            if (item->child(row)->childCount() > 0)
                waiting.push_back(model()->index(row, 0, index));
        }
    }
}

void CTreeWidget::ForEachRow(const QModelIndex& top, const RowVisitor& visit) const
{
    if (top.isValid())
        visit(itemFromIndex(top), top);
    const auto visitChildren = [this, &visit](const QTreeWidgetItem* item, const QModelIndex& index) {
        for (int row = 0; row < item->childCount(); ++row)
            visit(item->child(row), model()->index(row, 0, index));
    };
    if (!top.isValid())
        visitChildren(invisibleRootItem(), top);
    ForEachBranch(top, visitChildren);
}

void CTreeWidget::ExpandRows(const QModelIndex& top, bool isExpanded)
{
    scheduleDelayedItemsLayout(); // while a layout is due, the view only notes what is expanded
    ForEachBranch(top,
                  [this, isExpanded](QTreeWidgetItem*, const QModelIndex& index) { setExpanded(index, isExpanded); });
}

void CTreeWidget::RestoreExpansion()
{
    scheduleDelayedItemsLayout();
    ForEachBranch(QModelIndex(), [this](QTreeWidgetItem* item, const QModelIndex& index) {
        if (static_cast<OutlineTreeItem*>(item)->IsRecordOpen())
            expand(index);
    });
}

void CTreeWidget::RelayOutRows()
{
    scheduleDelayedItemsLayout();
}

EntryPlace CTreeWidget::CurrentPlace() const
{
    EntryPlace place;
    for (QModelIndex index = currentIndex(); index.isValid(); index = index.parent())
        place.rows.prepend(index.row());
    place.scrollValue = wantedScroll >= 0 ? wantedScroll : verticalScrollBar()->value();
    return place;
}

void CTreeWidget::GoBackTo(const EntryPlace& place)
{
    QModelIndex index;
    for (const int row : place.rows) {
        const int count = model()->rowCount(index);
        if (count == 0)
            break;
        index = model()->index(qMin(row, count - 1), 0, index);
        if (row >= count)
            break; // the entry that is gone had no such neighbour
    }
    if (index.isValid()) {
        // Unheard by the view, which would lay out all rows at once to find the one.
        const QSignalBlocker blocker(selectionModel());
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    }
    wantedScroll = place.scrollValue > 0 ? place.scrollValue : -1;
}

void CTreeWidget::doItemsLayout()
{
    ReorderTree::doItemsLayout();
    if (wantedScroll < 0)
        return;
    verticalScrollBar()->setValue(wantedScroll);
    wantedScroll = -1;
}

void CTreeWidget::SelectNodes(const QList<G_TreeNode*>& nodes)
{
    const NaviOutlineWidget* pane = Pane();
    QItemSelection rows;
    QModelIndex first;
    for (G_TreeNode* node : nodes) {
        const QModelIndex index = indexFromItem(pane->ItemOf(node));
        if (!index.isValid())
            continue;
        rows.select(index, index);
        if (!first.isValid())
            first = index;
    }
    if (!first.isValid())
        return;
    selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(first); // and expands what it lies in
}

QMimeData* CTreeWidget::PrepareDrag()
{
    const NaviOutlineWidget* pane = Pane();
    if (!pane || !MayReorder(pane->document) || selectedItems().isEmpty())
        return nullptr;
    dragNodes = pane->SelectedNodes();
    line = oldLine = QLine(); // what an earlier drag left behind when it ended elsewhere
    dropAtTop = dropAsChild = false;
    isDragging = true;
    return PackSelection();
}

QString CTreeWidget::MimeType() const
{
    return QStringLiteral("application/x-qabstractitemmodeldatalist");
}

int CTreeWidget::LineStart(const QRect& rowRect, const QPoint& position)
{
    const bool isRight = position.x() > rowRect.left() + ChildIndent;
    dropAsChild = dropAtTop || isRight; // at the top, of the row's parent
    return rowRect.left() + (isRight && !dropAtTop ? ChildIndent : 0);
}

bool CTreeWidget::CanDropOn(QTreeWidgetItem*, QTreeWidgetItem* target) const
{
    const NaviOutlineWidget* pane = Pane();
    if (!pane || target->isSelected())
        return false;
    for (const G_TreeNode* node = pane->NodeOf(target); node; node = node->parent) {
        if (dragNodes.contains(const_cast<G_TreeNode*>(node)))
            return false;
    }
    return true;
}

void CTreeWidget::Drop(QDropEvent* event)
{
    QTreeWidgetItem* dragged = SourceItem(event->mimeData());
    QTreeWidgetItem* target = itemAt(event->pos());
    const QList<G_TreeNode*> moved = dragNodes;
    // A refused drop does not reach the base class, which would move the rows itself.
    if (!dragged || !target || target == dragged || !CanDropOn(dragged, target) || !MoveDragged(target)) {
        event->setDropAction(Qt::IgnoreAction);
        event->ignore();
        stopAutoScroll();
        return;
    }
    event->setDropAction(Qt::MoveAction);
    event->accept();
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): ReorderTree would handle the drop again
    QTreeWidget::dropEvent(event); // ends the drag; the refill left nothing selected that it could move
    SelectNodes(moved);
}

bool CTreeWidget::MoveDragged(QTreeWidgetItem* target)
{
    NaviOutlineWidget* pane = Pane();
    const QList<G_TreeNode*> nodes = dragNodes; // which the refill clears
    G_TreeNode* dst = pane->NodeOf(target);
    if (dst && dropAtTop)
        dst = dst->parent; // to the first place among the target's siblings
    if (!dst || nodes.isEmpty())
        return false;
    // The tab or the rights may have changed since the drag began. Rows that only the base class moved would no longer
    // be those of the document.
    if (!pane->IsCurrentDocument() || !MayReorder(pane->document))
        return false;
    pane->MoveOutlineNodes(nodes, dst, dropAsChild);
    return true;
}

void CTreeWidget::mouseReleaseEvent(QMouseEvent* event)
{
    const NaviOutlineWidget* pane = Pane();
    if (ctrlHeld && event->button() == Qt::LeftButton && pane && selectedItems().size() > 1) {
        const QList<G_TreeNode*> nodes = pane->SelectedNodes();
        if (nodes.size() > 1)
            SelectSubtrees(nodes);
    }
    ReorderTree::mouseReleaseEvent(event);
}

// Entries picked one by one take what is below them along.
void CTreeWidget::SelectSubtrees(const QList<G_TreeNode*>& nodes)
{
    const NaviOutlineWidget* pane = Pane();
    QItemSelection rows;
    for (G_TreeNode* node : nodes) {
        const QModelIndex top = indexFromItem(pane->ItemOf(node));
        if (!top.isValid())
            continue;
        rows.select(top, top);
        ForEachBranch(top, [this, &rows](QTreeWidgetItem* item, const QModelIndex& index) {
            // a range for all children of one entry
            rows.select(model()->index(0, 0, index), model()->index(item->childCount() - 1, 0, index));
        });
    }
    selectionModel()->select(rows, QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

void CTreeWidget::focusOutEvent(QFocusEvent* event)
{
    ctrlHeld = false; // its release goes elsewhere
    ReorderTree::focusOutEvent(event);
}

void CTreeWidget::Resized()
{
    if (NaviOutlineWidget* pane = Pane())
        pane->UpdateNoContent();
}
