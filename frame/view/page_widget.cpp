#include "page_widget.h"

#include "doc_view_private.h"

#include <QKeyEvent>
#include <QScrollBar>

namespace {
const QColor ground(0xE2, 0xE5, 0xEA);
} // namespace

G_PageWidget::G_PageWidget(QGraphicsScene* scene, QWidget* parent)
    : QGraphicsView(scene, parent)
{
    setObjectName(QStringLiteral("pageView"));
    setAccessibleName(tr("Document pages"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setInteractive(false); // page items take no events: tools do
    setAcceptDrops(false); // files dropped here are the window's affair
    viewport()->setAcceptDrops(false);
    // Overlays paint across pages in scene coordinates, so a repaint is always whole.
    setViewportUpdateMode(QGraphicsView::FullViewportUpdate);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // else fitting to the width would chase the bar
    setBackgroundBrush(ground);
}

void G_PageWidget::Attach(G_DocView* docView)
{
    view = docView;
}

void G_PageWidget::Detach()
{
    view = nullptr;
    setScene(nullptr);
}

void G_PageWidget::ScrollStep(int dx, int dy)
{
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + dx);
    verticalScrollBar()->setValue(verticalScrollBar()->value() + dy);
}

bool G_PageWidget::viewportEvent(QEvent* event)
{
    G_ToolHandler* tool = view ? view->CurrentToolHandler() : nullptr;
    if (tool && event->type() == QEvent::Enter)
        tool->OnEnter();
    if (tool && event->type() == QEvent::Leave)
        tool->OnLeave();
    return QGraphicsView::viewportEvent(event);
}

void G_PageWidget::Mouse(QMouseEvent* event)
{
    // Nothing in the scene takes the mouse, so there is no default to fall back to but the parent's.
    if (view && view->d->MouseEvent(event))
        event->accept();
    else
        event->ignore();
}

void G_PageWidget::mousePressEvent(QMouseEvent* event)
{
    Mouse(event);
}

void G_PageWidget::mouseReleaseEvent(QMouseEvent* event)
{
    Mouse(event);
}

void G_PageWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    Mouse(event);
}

void G_PageWidget::mouseMoveEvent(QMouseEvent* event)
{
    Mouse(event);
}

void G_PageWidget::wheelEvent(QWheelEvent* event)
{
    if (view && view->d->WheelEvent(event))
        event->accept();
    else
        QAbstractScrollArea::wheelEvent(event); // NOLINT(bugprone-parent-virtual-call): the scene takes no wheel
    if (view)
        view->d->HoverAgain(*event);
}

bool G_PageWidget::focusNextPrevChild(bool isNext)
{
    return (view && view->d->TabKey(isNext)) || QGraphicsView::focusNextPrevChild(isNext);
}

// A plain Tab was offered to the view when the focus was to move.
void G_PageWidget::Key(QKeyEvent* event)
{
    const bool isTab = event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
    const bool isPlain = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
    if (view && !(isTab && isPlain) && view->d->KeyEvent(event))
        event->accept();
    else
        event->ignore();
}

void G_PageWidget::keyPressEvent(QKeyEvent* event)
{
    Key(event);
}

void G_PageWidget::keyReleaseEvent(QKeyEvent* event)
{
    Key(event);
}

void G_PageWidget::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (view)
        view->d->Resized();
}

void G_PageWidget::hideEvent(QHideEvent* event)
{
    QGraphicsView::hideEvent(event);
    if (!view || !view->d->jobs)
        return;
    view->d->pictureTimer.stop(); // else it would all be wanted again at once
    view->d->roomTimer.stop();
    view->d->jobs->KeepOnly({}); // what is shown again is asked for again
    view->d->cache.WantNothing();
}

void G_PageWidget::changeEvent(QEvent* event)
{
    QGraphicsView::changeEvent(event);
    if (view && event->type() == QEvent::ActivationChange) {
        if (G_ToolHandler* tool = view->CurrentToolHandler())
            tool->OnWinActiveEvent(isActiveWindow());
    }
}

void G_PageWidget::scrollContentsBy(int dx, int dy)
{
    QGraphicsView::scrollContentsBy(dx, dy);
    if (view)
        view->d->Scrolled();
}

void G_PageWidget::drawBackground(QPainter* painter, const QRectF& rect)
{
    QGraphicsView::drawBackground(painter, rect);
    if (view)
        view->d->PaintScene(painter, true);
}

void G_PageWidget::drawForeground(QPainter* painter, const QRectF& rect)
{
    QGraphicsView::drawForeground(painter, rect);
    if (view)
        view->d->PaintScene(painter, false);
}
