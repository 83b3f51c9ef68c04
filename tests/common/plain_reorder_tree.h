#pragma once

#include <common/reorder_tree.h>

#include <QDropEvent>
#include <QMimeData>

// The smallest tree on the shared base: rows drag when `mayDrag` is set, and drop on rows that are not selected.
class PlainReorderTree : public ReorderTree
{
public:
    explicit PlainReorderTree(G_DocView* view)
        : ReorderTree(nullptr, view)
    {
        setHeaderHidden(true);
        setSelectionMode(ExtendedSelection);
        setEditTriggers(NoEditTriggers);
    }

    QMimeData* PrepareDrag() override
    {
        if (!mayDrag || selectedItems().isEmpty())
            return nullptr;
        isDragging = true;
        return PackSelection();
    }

    using ReorderTree::dropEvent;
    using ReorderTree::SourceItem;

    bool mayDrag = true;
    int resizeCount = 0;
    int childAskedX = -1;
    QList<QTreeWidgetItem*> dropTargets;

protected:
    QString MimeType() const override { return QStringLiteral("Test/Row"); }
    int LineStart(const QRect& rowRect, const QPoint& position) override
    {
        childAskedX = position.x();
        return rowRect.left() + 6;
    }
    bool CanDropOn(QTreeWidgetItem*, QTreeWidgetItem* target) const override { return !target->isSelected(); }
    void Drop(QDropEvent* event) override
    {
        dropTargets.append(itemAt(event->pos()));
        event->accept();
    }
    void Resized() override { ++resizeCount; }
};
