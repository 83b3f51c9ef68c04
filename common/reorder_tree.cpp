#include "reorder_tree.h"

#include "text_edits.h"

#include <frame/operation/event.h>
#include <frame/view/ui_context.h>

#include <QContextMenuEvent>
#include <QDrag>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QPixmap>
#include <QScrollBar>
#include <QShowEvent>

namespace {

constexpr int topZone = 5;     // px below the view's top edge that mean "to the top of the list"
constexpr int lineEndGap = 4;  // px between the indicator and the row's right end
constexpr int topLineDrop = 4; // px below the row's top where the indicator of the top zone stands

constexpr QRgb focusFrame = 0xFF2F6FDE;

std::function<Qt::DropAction(QDrag*)>& DragRunner()
{
    static std::function<Qt::DropAction(QDrag*)> runner;
    return runner;
}

G_Event* ToolButtonEvent(const QString& toolName, bool value)
{
    CommandBarSettingData data;
    data.names = QStringList{toolName};
    data.value = value;
    return new G_CommandBarOpChangedEvent(data);
}

} // namespace

ReorderTree::ReorderTree(QWidget* parent, G_DocView* docView)
    : QTreeWidget(parent)
    , docView(docView)
{
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(QAbstractItemView::InternalMove);
}

void ReorderTree::SetDragRunner(std::function<Qt::DropAction(QDrag*)> runner)
{
    DragRunner() = std::move(runner);
}

void ReorderTree::ClearPending()
{
    pendingNode = nullptr;
    pendingRow = -1;
}

void ReorderTree::CommitEdit()
{
    for (RowTextEdit* child : viewport()->findChildren<RowTextEdit*>()) {
        const QPointer<RowTextEdit> editor(child);
        commitData(editor); // nothing for an editor that was closed before
        if (editor)
            closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

bool ReorderTree::DropEdit()
{
    const bool isOpen = state() == EditingState;
    for (RowTextEdit* editor : viewport()->findChildren<RowTextEdit*>())
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    return isOpen;
}

void ReorderTree::Resized() {}

void ReorderTree::GoToCurrent() {}

void ReorderTree::RenameCurrent() {}

void ReorderTree::DeleteSelection() {}

bool ReorderTree::MoveSelection(int)
{
    return false;
}

QMimeData* ReorderTree::PackSelection() const
{
    const QList<QTreeWidgetItem*> selected = selectedItems();
    auto* data = new QMimeData;
    data->setData(MimeType(), QByteArray::number(reinterpret_cast<quintptr>(selected.value(0))));
    return data;
}

QTreeWidgetItem* ReorderTree::SourceItem(const QMimeData* data) const
{
    const quintptr address = data->data(MimeType()).toULongLong();
    for (QTreeWidgetItem* item : selectedItems()) {
        if (reinterpret_cast<quintptr>(item) == address)
            return item;
    }
    return nullptr;
}

void ReorderTree::OpenMenuAtCurrent()
{
    const QModelIndex current = currentIndex();
    if (!current.isValid())
        return;
    scrollTo(current);
    emit customContextMenuRequested(visualRect(current).center());
}

bool ReorderTree::event(QEvent* event)
{
    if (event->type() == QEvent::ContextMenu) {
        auto* menuEvent = static_cast<QContextMenuEvent*>(event);
        if (menuEvent->reason() == QContextMenuEvent::Keyboard) {
            OpenMenuAtCurrent();
            menuEvent->accept();
            return true;
        }
    }
    return QTreeWidget::event(event);
}

void ReorderTree::keyPressEvent(QKeyEvent* event)
{
    if (state() == EditingState) {
        event->ignore(); // what the editor left: another current row would end the edit half way through
        return;
    }
    if (PerformKey(*event))
        event->accept();
    else
        QTreeWidget::keyPressEvent(event);
}

// False when the key is none of ours.
bool ReorderTree::PerformKey(const QKeyEvent& event)
{
    const int key = event.key();
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (modifiers == Qt::AltModifier) {
        const bool isArrow = key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Left || key == Qt::Key_Right;
        return isArrow && MoveSelection(key);
    }
    const bool isMenu = modifiers == Qt::ShiftModifier && key == Qt::Key_F10;
    if (isMenu)
        OpenMenuAtCurrent();
    if (isMenu || modifiers != Qt::NoModifier)
        return isMenu;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        GoToCurrent();
        return true;
    case Qt::Key_F2:
        RenameCurrent();
        return true;
    case Qt::Key_Delete:
        DeleteSelection();
        return true;
    default:
        return false;
    }
}

void ReorderTree::startDrag(Qt::DropActions)
{
    QMimeData* data = PrepareDrag();
    if (!data)
        return;
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    drag->setDragCursor(QPixmap(QStringLiteral(":/nodeQrc/image/ico.svg")), Qt::MoveAction);
    if (DragRunner()) {
        DragRunner()(drag);
        delete drag;
    } else {
        drag->exec(Qt::MoveAction); // deletes itself
    }
}

void ReorderTree::dragEnterEvent(QDragEnterEvent* event)
{
    leftView = false;
    event->setAccepted(event->mimeData()->hasFormat(MimeType()));
}

void ReorderTree::dragLeaveEvent(QDragLeaveEvent* event)
{
    leftView = true;
    stopAutoScroll();
    viewport()->update(); // takes the indicator away
    event->accept();
}

void ReorderTree::dragMoveEvent(QDragMoveEvent* event)
{
    if (!event->mimeData()->hasFormat(MimeType())) {
        event->ignore();
        return;
    }
    dropAtTop = event->pos().y() < topZone;
    if (!dropAtTop && !LeaveSignatureTool())
        return;
    event->setDropAction(Qt::MoveAction);
    QTreeWidgetItem* target = itemAt(event->pos());
    if (!target) {
        HideIndicator(); // where nothing can be dropped, nothing says that it can
        event->ignore();
        return;
    }
    PlaceIndicator(target, event->pos());
    QTreeWidgetItem* source = SourceItem(event->mimeData());
    canDrop = source && CanDropOn(source, target);
    if (!canDrop)
        HideIndicator();
    viewport()->update();
    event->setAccepted(canDrop);
    ScrollNearEdge(event->pos());
}

// Rows beyond the view are reached by holding the pointer near its edge; the base class stops by itself at the end.
void ReorderTree::ScrollNearEdge(const QPoint& position)
{
    const int margin = autoScrollMargin();
    if (hasAutoScroll() && !viewport()->rect().adjusted(0, margin, 0, -margin).contains(position))
        startAutoScroll();
}

// A drag over the list ends the electronic-signature tool, which would take the drop for a click of its own. False when
// the view has no tool or no hand tool to change to; the move is then not looked at further.
bool ReorderTree::LeaveSignatureTool()
{
    G_ToolHandler* tool = docView ? docView->CurrentToolHandler() : nullptr;
    if (!tool)
        return false;
    const CCA_String toolName = tool->Name();
    if (toolName != "d_electronicsignature")
        return true;
    G_UIContext* context = docView->UIContext();
    G_ToolHandler* hand = context->FindHandlerByName("t_handtool");
    if (!hand)
        return false;
    context->FireEvent(ToolButtonEvent(QStringLiteral("t_handtool"), true));
    context->FireEvent(ToolButtonEvent(QString::fromUtf8(toolName.Bytes()), false));
    docView->SetCurrentToolHandler(hand);
    return true;
}

void ReorderTree::PlaceIndicator(const QTreeWidgetItem* target, const QPoint& position)
{
    oldLine = line;
    const QRect row = visualItemRect(target);
    const int start = LineStart(row, position);
    const int y = dropAtTop ? row.top() + topLineDrop : row.bottom();
    line = QLine(start, y, row.right() - lineEndGap, y);
}

void ReorderTree::HideIndicator()
{
    oldLine = line;
    line = QLine();
    viewport()->update();
}

void ReorderTree::dropEvent(QDropEvent* event)
{
    isDragging = false;
    if (event->mimeData()->hasFormat(MimeType())) {
        Drop(event);
        return;
    }
    // Without an action the base class only ends its own state: it must not move items the document knows nothing of.
    event->setDropAction(Qt::IgnoreAction);
    event->ignore();
    QTreeWidget::dropEvent(event);
}

void ReorderTree::paintEvent(QPaintEvent* event)
{
    QTreeWidget::paintEvent(event);
    PaintFocus();
    if (isDragging && !line.isNull() && !leftView)
        PaintIndicator();
}

// The rows' delegates show what is selected; where the keys work on a row that is not, only this shows it.
void ReorderTree::PaintFocus()
{
    const QModelIndex current = currentIndex();
    if (!hasFocus() || !current.isValid() || selectionModel()->isSelected(current))
        return;
    QPainter painter(viewport());
    painter.setPen(QColor(focusFrame));
    painter.drawRect(visualRect(current).adjusted(0, 0, -1, -1));
}

void ReorderTree::PaintIndicator()
{
    QPainter painter(viewport());
    const QColor color = canDrop ? QColor(100, 101, 106) : QColor(Qt::red);
    const QPoint tip = line.p1();
    const QPoint arrow[] = {tip + QPoint(-6, -5), tip, tip + QPoint(-6, 5)};
    painter.setPen(palette().color(QPalette::Base));
    painter.setBrush(color);
    painter.drawPolygon(arrow, 3);
    QPen pen(color, 1);
    pen.setDashPattern({2, 3, 2, 3});
    painter.setPen(pen);
    painter.drawLine(line);
}

void ReorderTree::resizeEvent(QResizeEvent* event)
{
    QTreeWidget::resizeEvent(event);
    // Qt keeps row heights over a resize; wrapped rows have other heights at another width.
    if (event->size().width() != event->oldSize().width())
        scheduleDelayedItemsLayout();
    Resized();
}

void ReorderTree::showEvent(QShowEvent* event)
{
    QTreeWidget::showEvent(event);
    if (verticalScrollBar()->isVisible())
        RemeasureRows();
}

void ReorderTree::RemeasureRows()
{
    resize(width() - 1, height());
    resize(width() + 1, height());
    scheduleDelayedItemsLayout(); // hidden widgets get no resize events
}
