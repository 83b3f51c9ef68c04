#pragma once

#include <common/row_delegate.h>
#include <common/wrap_layout.h>

class CBookmarkTreeWidget;
class G_TreeNode;
class NaviBookmarkWidget;

// Paints the rows of the bookmark list on one line or wrapped, opens the editor of a row and applies the rules of
// names: at most 100 characters, no two alike. Its parent is the list, the list's parent the pane. Main thread only.
class BookMarkTreeItemDelegate : public RowDelegate
{
    Q_OBJECT
public:
    explicit BookMarkTreeItemDelegate(CBookmarkTreeWidget* tree);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    // Shows the stored name as plain text.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

private:
    CBookmarkTreeWidget* Tree() const;
    NaviBookmarkWidget* Pane() const;
    bool IsWrapped() const;
    QString RowText(int row) const;
    void FitWidth(QWidget* editor, const QRect& row) const;
    const WrappedText& Wrapped(const QString& text) const;
    void PaintGround(QPainter* painter, const QRect& rect, QStyle::State state) const;
    void PaintText(QPainter* painter, const QRect& rect, const QString& text) const;
    bool IsTaken(const G_TreeNode* node, const QString& name) const;
    bool RefusesDuplicate() const;
    void EndRename() const;

    mutable WrapLayoutCache layouts;
    mutable bool isAsking = false; // the duplicate box is up: losing the focus to it commits the editor once more
};
