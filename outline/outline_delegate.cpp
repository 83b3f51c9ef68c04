#include "outline_delegate.h"

#include "outline_pane.h"
#include "outline_tree.h"

#include <common/text_edits.h>
#include <frame/utils/dpi.h>

#include <QHelpEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include <cmath>

using Utils::OVDpi;

namespace {

constexpr int MostDepthsKept = 32;
constexpr int MostRowHeight = 32000; // px; a view counts row heights in 16 bits

float Scale()
{
    return OVDpi::Instance()->DpiScale();
}

int CeilScaled(qreal size)
{
    return static_cast<int>(std::ceil(size * Scale()));
}

bool HasScrollBar(const QTreeWidget* tree)
{
    return tree->verticalScrollBar()->isVisible();
}

QFont RowFont()
{
    QFont font(QStringLiteral("Microsoft YaHei"));
    font.setPointSize(9);
    return font;
}

WrapStyle WrapStyleFor(int titleWidth)
{
    const int side = CeilScaled(8);
    const int grown = Scale() > 1 ? 1 : 0; // twice a line: rows of a scaled display stand wider apart
    WrapStyle style;
    style.font = RowFont();
    style.lineWidth = titleWidth - side;
    style.left = side;
    style.top = CeilScaled(4);
    style.beforeLine = CeilScaled(QFontMetrics(style.font).leading()) + grown;
    style.afterLine = CeilScaled(4) + grown;
    return style;
}

void PaintGround(QPainter* painter, const QRect& rect, QStyle::State state)
{
    painter->eraseRect(rect);
    const bool isSelected = state.testFlag(QStyle::State_Selected);
    if (!isSelected && !state.testFlag(QStyle::State_MouseOver))
        return;
    QColor ground(198, 206, 214);
    ground.setAlphaF(isSelected ? 0.4 : 0.2);
    painter->setPen(Qt::transparent);
    painter->setBrush(ground);
    painter->drawRoundedRect(rect, 2.0, 2.0);
}

} // namespace

OutLineTreeItemDelegate::OutLineTreeItemDelegate(CTreeWidget* tree, NaviOutlineWidget* widget)
    : RowDelegate(tree)
    , tree(tree)
    , widget(widget)
{
}

bool OutLineTreeItemDelegate::IsWrapped() const
{
    return widget->wordWrap;
}

int OutLineTreeItemDelegate::TitleWidth(int depth) const
{
    const int width = tree->width() - qRound((depth * 20 + 64) * Scale());
    return HasScrollBar(tree) ? width - tree->verticalScrollBar()->width() : width;
}

const WrappedText& OutLineTreeItemDelegate::Wrapped(const QString& text, int depth) const
{
    if (layouts.size() > MostDepthsKept && layouts.count(depth) == 0)
        layouts.clear();
    return layouts[depth].Layout(text, WrapStyleFor(TitleWidth(depth)));
}

void OutLineTreeItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const
{
    const QTreeWidgetItem* item = tree->ItemAt(index);
    if (!item || !tree->verticalScrollBar())
        return;
    const int column = index.column();
    const int depth = item->data(column, Qt::UserRole).toInt();
    const bool isTitle = column == OutlineColumn::Title;
    QRect rect = option.rect;
    if (isTitle)
        rect.setWidth(TitleWidth(depth));
    else if (!HasScrollBar(tree))
        rect.setWidth(rect.width() - qRound(4 * Scale()));
    painter->save();
    PaintGround(painter, rect, option.state);
    painter->setPen(QColor(54, 66, 90));
    painter->setFont(RowFont());
    if (isTitle) {
        PaintTitle(painter, rect, item->text(column), depth);
    } else {
        rect.setWidth(rect.width() - CeilScaled(8));
        painter->drawText(rect, Qt::AlignRight | Qt::AlignVCenter, item->text(column));
    }
    painter->restore();
}

void OutLineTreeItemDelegate::PaintTitle(QPainter* painter, QRect rect, const QString& text, int depth) const
{
    if (IsWrapped()) {
        painter->setClipRect(rect, Qt::IntersectClip); // a title may be higher than a row can be
        Wrapped(text, depth).Draw(painter, rect.topLeft());
        return;
    }
    rect.setLeft(rect.left() + CeilScaled(12));
    const QString elided = QFontMetrics(RowFont()).elidedText(text, Qt::ElideRight, rect.width(), Qt::TextShowMnemonic);
    painter->drawText(rect, Qt::AlignLeft | Qt::AlignVCenter, elided);
}

QSize OutLineTreeItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QTreeWidgetItem* item = tree->ItemAt(index);
    if (item && index.column() == OutlineColumn::Title && IsWrapped()) {
        const int depth = item->data(OutlineColumn::Title, Qt::UserRole).toInt();
        const qreal height = std::ceil(Wrapped(item->text(OutlineColumn::Title), depth).Height());
        return QSize(TitleWidth(depth), static_cast<int>(qMin<qreal>(height, MostRowHeight)));
    }
    QSize size = RowDelegate::sizeHint(option, index);
    size.setHeight(CeilScaled(25));
    return size;
}

QWidget* OutLineTreeItemDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                               const QModelIndex& index) const
{
    if (index.column() != OutlineColumn::Title)
        return nullptr;
    auto* editor = new EnterMonitorTextEdit(parent, tree);
    editor->setFont(RowFont());
    editor->setAccessibleName(tr("outline title"));
    return editor;
}

void OutLineTreeItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    auto* edit = qobject_cast<RowTextEdit*>(editor);
    const QTreeWidgetItem* item = tree->ItemAt(index);
    if (!edit || !item)
        return;
    const QString title = item->data(OutlineColumn::StoredTitle, Qt::UserRole).toString();
    const QFontMetrics metrics(RowFont());
    const WrapStyle style = WrapStyleFor(edit->width());
    // A text document counts the font's leading into its lines, a row does not.
    const qreal lineDistance = style.beforeLine + style.afterLine - metrics.leading();
    const int lineTop = (CeilScaled(25) - metrics.height()) / 2;
    if (IsWrapped())
        edit->Show(title, QMarginsF(qRound(style.left), style.top + style.beforeLine, 0, 0), lineDistance);
    else
        edit->Show(title, QMarginsF(CeilScaled(12), lineTop, 0, 0), lineDistance);
}

void OutLineTreeItemDelegate::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const
{
    const auto* edit = qobject_cast<QTextEdit*>(editor);
    QTreeWidgetItem* item = tree->ItemAt(index);
    if (!edit || !item)
        return;
    const QString text = edit->toPlainText().remove(QLatin1Char('\n'));
    const QString stored = item->data(OutlineColumn::StoredTitle, Qt::UserRole).toString();
    const bool isSilent = item->text(index.column()) == text && stored != text;
    item->setText(index.column(), text); // itemChanged: the rename goes on in its interceptor, and may end the item
    if (isSilent)
        emit tree->itemChanged(item, index.column()); // only the blanks around the shown title changed
}

void OutLineTreeItemDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                                   const QModelIndex&) const
{
    editor->setGeometry(option.rect);
}

bool OutLineTreeItemDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                                        const QModelIndex& index)
{
    const QTreeWidgetItem* item = event && event->type() == QEvent::ToolTip ? tree->ItemAt(index) : nullptr;
    if (!item)
        return RowDelegate::helpEvent(event, view, option, index);
    QString tip = item->toolTip(index.column());
    // Rich text that holds nothing but text: long ones are wrapped.
    if (!tip.isEmpty())
        tip = QStringLiteral("<span>%1</span>").arg(TipMarkup(tip));
    QToolTip::showText(event->globalPos(), tip, view);
    return true;
}
