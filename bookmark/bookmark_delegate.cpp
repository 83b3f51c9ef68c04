#include "bookmark_delegate.h"

#include "bookmark_item.h"
#include "bookmark_node.h"
#include "bookmark_pane.h"
#include "bookmark_tree.h"

#include <common/text_edits.h>
#include <common/text_rules.h>
#include <frame/base/converters.h>
#include <frame/utils/dpi.h>
#include <frame/view/ui_context.h>

#include <QAbstractItemView>
#include <QDebug>
#include <QHelpEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QToolTip>

#include <cmath>

using Utils::OVDpi;

namespace {

constexpr int OkButton = 1024;
constexpr int CloseButton = 2097152;

float Scaled(float size)
{
    return OVDpi::Instance()->ScaleSize(size);
}

// The room that a list without a scroll bar leaves free at its right.
int RightGap()
{
    return qRound(4 * OVDpi::Instance()->DpiScale());
}

bool HasScrollBar(const QTreeWidget* tree)
{
    return tree->verticalScrollBar()->isVisible();
}

int RowWidth(const QTreeWidget* tree)
{
    return tree->width() - (HasScrollBar(tree) ? tree->verticalScrollBar()->width() : 0);
}

QFont WrappedFont()
{
    QFont font(QStringLiteral("Microsoft YaHei"));
    font.setPixelSize(qRound(Scaled(12)));
    return font;
}

QFont LineFont(QFont font)
{
    font.setPixelSize(qRound(Scaled(12)));
    return font;
}

WrapStyle WrapStyleOf(const QTreeWidget* tree)
{
    WrapStyle style;
    style.font = WrappedFont();
    style.lineWidth = RowWidth(tree) - Scaled(16);
    style.left = Scaled(8);
    style.top = Scaled(4);
    const bool isScaledUp = OVDpi::Instance()->DpiScale() > 1;
    style.beforeLine = Scaled(QFontMetrics(style.font).leading()) + (isScaledUp ? 1 : 0);
    style.afterLine = Scaled(4);
    return style;
}

} // namespace

BookMarkTreeItemDelegate::BookMarkTreeItemDelegate(CBookmarkTreeWidget* tree)
    : RowDelegate(tree)
{
}

CBookmarkTreeWidget* BookMarkTreeItemDelegate::Tree() const
{
    return qobject_cast<CBookmarkTreeWidget*>(parent());
}

NaviBookmarkWidget* BookMarkTreeItemDelegate::Pane() const
{
    const CBookmarkTreeWidget* tree = Tree();
    return tree ? tree->Pane() : nullptr;
}

bool BookMarkTreeItemDelegate::IsWrapped() const
{
    const NaviBookmarkWidget* pane = Pane();
    return pane && pane->wrapEnabled;
}

QString BookMarkTreeItemDelegate::RowText(int row) const
{
    const QTreeWidgetItem* item = Tree()->topLevelItem(row);
    return item ? item->text(BookmarkItem::NameColumn) : QString();
}

const WrappedText& BookMarkTreeItemDelegate::Wrapped(const QString& text) const
{
    return layouts.Layout(text, WrapStyleOf(Tree()));
}

void BookMarkTreeItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const
{
    QRect rect = option.rect;
    if (!HasScrollBar(Tree()))
        rect.setWidth(rect.width() - RightGap());
    painter->save();
    PaintGround(painter, rect, option.state);
    painter->setPen(QColor(54, 66, 90));
    PaintText(painter, rect, RowText(index.row()));
    painter->restore();
}

void BookMarkTreeItemDelegate::PaintGround(QPainter* painter, const QRect& rect, QStyle::State state) const
{
    painter->eraseRect(rect);
    painter->setPen(Qt::transparent);
    const auto fill = [painter, &rect](double alpha) {
        QColor colour(198, 206, 214);
        colour.setAlphaF(alpha);
        painter->setBrush(colour);
        painter->drawRoundedRect(rect, 0, 0);
    };
    if (state & QStyle::State_MouseOver)
        fill(0.2);
    if (state & QStyle::State_Selected)
        fill(0.4);
}

void BookMarkTreeItemDelegate::PaintText(QPainter* painter, const QRect& rect, const QString& text) const
{
    if (IsWrapped()) {
        Wrapped(text).Draw(painter, rect.topLeft());
        return;
    }
    const QFont font = LineFont(painter->font());
    painter->setFont(font);
    const QRect line = rect.adjusted(qRound(Scaled(8)), 0, 0, 0);
    const QString elided = QFontMetrics(font).elidedText(text, Qt::ElideRight, line.width(), Qt::TextShowMnemonic);
    painter->drawText(line, Qt::AlignLeft | Qt::AlignVCenter, elided);
}

QSize BookMarkTreeItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    if (IsWrapped())
        return QSize(RowWidth(Tree()), static_cast<int>(std::ceil(Wrapped(RowText(index.row())).Height())));
    const QSize size = RowDelegate::sizeHint(option, index);
    return QSize(qRound(Scaled(size.width())), qRound(Scaled(size.height())));
}

QWidget* BookMarkTreeItemDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                                const QModelIndex&) const
{
    auto* editor = new BookmarkEnterMonitorTextEdit(parent, Tree());
    editor->setFont(IsWrapped() ? WrappedFont() : LineFont(Tree()->font()));
    editor->setAccessibleName(tr("bookmark name"));
    FitWidth(editor, option.rect);
    return editor;
}

void BookMarkTreeItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    auto* edit = qobject_cast<RowTextEdit*>(editor);
    const QTreeWidgetItem* item = Tree()->topLevelItem(index.row());
    if (edit && item)
        edit->Show(item->data(BookmarkItem::StoredNameColumn, Qt::UserRole).toString(),
                   QMarginsF(Scaled(8), Scaled(4), Scaled(4), 0), Scaled(4));
}

void BookMarkTreeItemDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                                    const QModelIndex&) const
{
    FitWidth(editor, option.rect); // the list may have got another width: a hidden pane is shown after its row opened
    editor->setGeometry(option.rect);
}

void BookMarkTreeItemDelegate::FitWidth(QWidget* editor, const QRect& row) const
{
    if (HasScrollBar(Tree())) {
        editor->setMinimumWidth(0);
        editor->setMaximumWidth(QWIDGETSIZE_MAX);
    } else {
        editor->setFixedWidth(row.width() - RightGap());
    }
}

// The name as it is: Qt would take one with markup in it for a page of its own, pictures included.
bool BookMarkTreeItemDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                                         const QModelIndex& index)
{
    if (!event || !view || event->type() != QEvent::ToolTip)
        return RowDelegate::helpEvent(event, view, option, index);
    QString tip = index.data(Qt::ToolTipRole).toString();
    if (!tip.isEmpty())
        tip = QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>").arg(TipMarkup(tip));
    QToolTip::showText(event->globalPos(), tip, view, view->visualRect(index));
    event->setAccepted(!tip.isEmpty());
    return true;
}

void BookMarkTreeItemDelegate::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const
{
    auto* edit = qobject_cast<QTextEdit*>(editor);
    NaviBookmarkWidget* pane = Pane();
    if (isAsking || !edit || !pane)
        return;
    QString text = edit->toPlainText().remove(QLatin1Char('\n')); // the editor may be gone after the box below
    const int row = index.row();
    const G_TreeNode* node = BookmarkNode(pane->document, row);
    if (!node) {
        EndRename();
        return;
    }
    const QPointer<CBookmarkTreeWidget> tree(Tree());
    if (text == BookmarkName(node)) {
        EndRename();
        tree->topLevelItem(row)->setText(BookmarkItem::NameColumn, RemoveBlanks(text));
        return;
    }
    text = CutText(text, MaxNameLength);
    if (IsTaken(node, text) && RefusesDuplicate())
        return;
    QTreeWidgetItem* item = tree ? tree->topLevelItem(row) : nullptr;
    if (!item)
        return;
    const bool isSilent = item->text(BookmarkItem::NameColumn) == text;
    item->setText(BookmarkItem::NameColumn, text); // itemChanged: the rename goes on in its interceptor
    if (isSilent)
        emit tree->itemChanged(item, BookmarkItem::NameColumn); // only the blanks around the shown name changed
    qDebug() << "BookMarkTreeItemDelegate::setModelData";
}

// Is it the name of another row? Exact, so another case is another name.
bool BookMarkTreeItemDelegate::IsTaken(const G_TreeNode* node, const QString& name) const
{
    const CCA_String wanted = GQ_ToCAS(name);
    for (int row = 0; const G_TreeNode* other = node->parent->SubNode(row); ++row) {
        if (other != node && other->NodeText() == wanted)
            return true;
    }
    return false;
}

// Tells the user; true when the edit is dropped.
bool BookMarkTreeItemDelegate::RefusesDuplicate() const
{
    const QPointer<const BookMarkTreeItemDelegate> self(this);
    isAsking = true;
    const int answer = Pane()->context->ShowMessageBox(
        tr("remark"), tr("Duplicate bookmark name,please modify the bookmark name."), OkButton, OkButton);
    if (!self)
        return true;
    isAsking = false;
    const bool isRefused = answer == OkButton || answer == CloseButton;
    if (isRefused)
        EndRename();
    return isRefused;
}

void BookMarkTreeItemDelegate::EndRename() const
{
    if (NaviBookmarkWidget* pane = Pane())
        pane->isRenaming = false;
}
