#pragma once

#include <common/row_delegate.h>
#include <common/wrap_layout.h>

#include <map>

class CTreeWidget;
class NaviOutlineWidget;
class QTreeWidget;
class QTreeWidgetItem;

// Paints the rows of the outline, titles on one line or wrapped, and edits titles. Owned by the tree; the tree's parent
// is the pane. Main thread only.
class OutLineTreeItemDelegate : public RowDelegate
{
    Q_OBJECT
public:
    OutLineTreeItemDelegate(CTreeWidget* tree, NaviOutlineWidget* widget);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    // Titles are shown as text, whatever markup they hold.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

private:
    bool IsWrapped() const;
    // Of a title's cell, with room for the page column and a shown scroll bar.
    int TitleWidth(int depth) const;
    const WrappedText& Wrapped(const QString& text, int depth) const;
    void PaintTitle(QPainter* painter, QRect rect, const QString& text, int depth) const;

    CTreeWidget* tree;         // not owned
    NaviOutlineWidget* widget; // not owned
    // By depth, since each has lines of its own width.
    mutable std::map<int, WrapLayoutCache> layouts;
};
