#include "doc_view_private.h"

#include <frame/document/ig_document.h>
#include <frame/operation/event_manager.h>

#include <QScrollBar>

#include <cmath>

namespace {

constexpr double kLeastZoomPercent = 1;

// The rectangle with each edge brought on to the page: destinations come from documents and may name any place.
CCA_GRect OnPage(const CCA_GRect& rect, const QSizeF& page)
{
    const auto within = [](float value, double most) {
        return std::isfinite(value) ? qBound(0.0F, value, static_cast<float>(most)) : 0.0F;
    };
    return CCA_GRect(within(rect.left, page.width()), within(rect.top, page.height()), within(rect.right, page.width()),
                     within(rect.bottom, page.height()));
}

bool IsAllZero(const CCA_GRect& rect)
{
    return rect == CCA_GRect();
}

} // namespace

void G_DocView::Private::PagesChanged()
{
    ++moving;
    ReadPages();
    const QList<int> shown = items.keys();
    for (const int page : shown) {
        if (!layout.IsValid(page))
            delete items.take(page);
    }
    cache.Clear();
    if (jobs)
        jobs->KeepOnly({});
    if (textReader)
        textReader->Want({});
    askedText = {-1, -1};
    current = qMin(current, layout.Count() - 1);
    if (current < 0 && layout.Count() > 0)
        current = 0;
    Arrange();
    ApplyMode();
    --moving;
    q->SetHighLightText({});
    UpdateCurrentAfterLayout();
}

void G_DocView::Private::Arrange()
{
    layout.Arrange(zoom, rotation, PixelsPerMmAt100());
    scene.setSceneRect(layout.SceneRect());
    if (widget)
        widget->setSceneRect(layout.SceneRect());
    SyncItems();
}

QRect G_DocView::Private::VisibleRect() const
{
    if (!widget)
        return {};
    return widget->mapToScene(widget->viewport()->rect()).boundingRect().toAlignedRect();
}

void G_DocView::Private::SyncItems()
{
    MeasureInView();
    const QRect visible = VisibleRect();
    const QPair<int, int> pages = layout.PagesIn(visible);
    const QList<int> present = items.keys();
    for (const int page : present) {
        if (page < pages.first || page > pages.second)
            delete items.take(page);
    }
    for (int page = pages.first; page <= pages.second; ++page) {
        GR_PageGraphicItem*& item = items[page];
        if (!item) {
            item = new GR_PageGraphicItem(q, page);
            scene.addItem(item);
        }
        const QRect rect = layout.PageRect(page);
        item->setPos(rect.topLeft());
        item->SetSize(rect.size());
    }
}

void G_DocView::Private::ScrollTo(const QPointF& scenePoint, const QPoint& viewportPoint)
{
    if (!widget)
        return;
    widget->horizontalScrollBar()->setValue(qRound(scenePoint.x()) - viewportPoint.x());
    widget->verticalScrollBar()->setValue(qRound(scenePoint.y()) - viewportPoint.y());
    SyncItems();
}

void G_DocView::Private::ZoomAt(double percent, const QPoint& viewportPoint)
{
    percent = qBound(kLeastZoomPercent, std::isfinite(percent) ? percent : zoom, mostZoom);
    if (percent == zoom || !widget)
        return;
    const QPointF scenePoint = widget->mapToScene(viewportPoint);
    const int page = layout.NearestPage(scenePoint.toPoint());
    const QPointF onPage = page < 0 ? QPointF() : layout.ToPage(scenePoint, page);
    ++moving;
    zoom = percent;
    Arrange();
    if (page >= 0)
        ScrollTo(layout.ToScene(onPage, page), viewportPoint);
    --moving;
    UpdateCurrentAfterLayout();
    emit q->ZoomChanged(static_cast<float>(zoom));
}

// A change of layout keeps the current page as long as any of it is in view: zooming is no turning of pages.
void G_DocView::Private::UpdateCurrentAfterLayout()
{
    SyncItems();
    const QRect visible = VisibleRect();
    if (current < 0 || !layout.PageRect(current).intersects(visible)) {
        const int filling = layout.FillingPage(visible);
        if (filling >= 0)
            current = filling;
    }
    AnnounceLater();
    q->UpdateView();
}

void G_DocView::Private::Announce()
{
    announceTimer.stop();
    isModeFresh = false;
    if (announced == current)
        return;
    announced = current;
    emit q->CurrentPageChanged(current);
    if (context)
        emit context->EventMgr()->PageChange(q);
}

// A jump often comes as zoom and then place: what the zoom alone did to the page is told only if it stays so.
void G_DocView::Private::AnnounceLater()
{
    announceTimer.start();
}

void G_DocView::Private::Scrolled()
{
    SyncItems();
    const int top = VisibleRect().top();
    if (top != lastTop)
        isScrollingBack = top < lastTop;
    lastTop = top;
    if (moving > 0)
        return;
    const int filling = layout.FillingPage(VisibleRect());
    if (filling >= 0)
        current = filling;
    Announce();
}

void G_DocView::Private::Resized()
{
    if (isFitting || moving > 0) // a scroll bar came or went half-way through a change
        return;
    ++moving;
    ApplyMode();
    --moving;
    UpdateCurrentAfterLayout();
}

double G_DocView::Private::FittingZoom(G_Preferences::ZoomMode wanted) const
{
    QSizeF page = layout.TurnedSizeMm(qMax(0, layout.RowStart(current))) * PixelsPerMmAt100();
    if (layout.Count() == 0 || page.isEmpty())
        return zoom;
    QSize room = widget->viewport()->size() - QSize(2 * PageLayout::gapPx, 2 * PageLayout::gapPx);
    if (layout.IsPaired()) {
        page = page.expandedTo(layout.TurnedSizeMm(layout.RowEnd(qMax(0, current))) * PixelsPerMmAt100());
        page.rwidth() *= 2;
        room.rwidth() -= PageLayout::gapPx;
    }
    const double byWidth = room.width() / page.width() * 100;
    const double byHeight = room.height() / page.height() * 100;
    if (wanted == G_Preferences::FitWidth)
        return byWidth;
    return wanted == G_Preferences::FitHeight ? byHeight : qMin(byWidth, byHeight);
}

void G_DocView::Private::ApplyMode()
{
    if (!widget || isFitting)
        return;
    MeasurePage(layout.RowStart(current));
    MeasurePage(layout.RowEnd(current));
    isFitting = true; // a scroll bar that comes or goes resizes the viewport again
    switch (mode) {
    case G_Preferences::ActualSize:
        ZoomAt(100, QPoint(0, 0));
        break;
    case G_Preferences::FitWidth:
    case G_Preferences::FitHeight:
    case G_Preferences::FitPage:
        ZoomAt(FittingZoom(mode), QPoint(0, 0));
        CenterCurrentPage();
        break;
    default:
        break;
    }
    isFitting = false;
}

// Across only: beside a wider page, the column is wider than the page that was fitted.
void G_DocView::Private::CenterCurrentPage()
{
    const QRect page = layout.IsValid(current) ? layout.RowRect(current) : QRect();
    const int room = widget->viewport()->width();
    if (page.isEmpty() || page.width() > room)
        return;
    ++moving;
    widget->horizontalScrollBar()->setValue(page.center().x() - room / 2);
    SyncItems();
    --moving;
}

void G_DocView::BeginJump()
{
    if (!std::exchange(d->isJumpTold, true))
        emit Jumping();
}

void G_DocView::GoToPage(G_DocView* /*sender*/, int pageIndex, const CCA_GRect& wanted, bool fitRect)
{
    const bool isTold = std::exchange(d->isJumpTold, false);
    if (!d->layout.IsValid(pageIndex) || !d->widget)
        return;
    const bool isJump = !d->isStepping;
    if (isJump && !isTold)
        emit Jumping();
    d->MeasurePage(pageIndex);
    const CCA_GRect rect = OnPage(wanted, d->layout.SizeMm(pageIndex));
    ++d->moving;
    if (d->isModeFresh) {
        d->current = pageIndex;
        d->ApplyMode();
    }
    const QSize room = d->widget->viewport()->size();
    if (fitRect && !rect.IsEmpty()) {
        const QRectF turned = d->layout.PageMatrix(pageIndex).mapRect(QRectF(0, 0, rect.Width(), rect.Height()));
        const double factor = qMin(room.width() / turned.width(), room.height() / turned.height());
        d->ZoomAt(d->zoom * factor, QPoint(0, 0));
        d->mode = G_Preferences::FitRect;
        const CCA_Rect place = SceneRectFromDocRect(rect, pageIndex);
        const QPointF middle((place.left + place.right) / 2.0, (place.top + place.bottom) / 2.0);
        d->ScrollTo(middle, QPoint(room.width() / 2, room.height() / 2));
    } else if (IsAllZero(rect)) {
        const int roomOfRow = d->layout.RowRect(pageIndex).width() + 2 * PageLayout::gapPx;
        const QRect page = roomOfRow <= room.width() ? d->layout.RowRect(pageIndex) : PageRect(pageIndex);
        // Across, the place stays as long as it shows the page.
        const int margin = PageLayout::gapPx;
        const int left = page.width() + 2 * margin <= room.width()
                             ? page.center().x() - room.width() / 2
                             : qBound(page.left() - margin, VisibleSceneRect().left(),
                                      page.left() + page.width() + margin - room.width());
        d->ScrollTo(QPointF(left, page.top() - PageLayout::gapPx), QPoint(0, 0));
    } else {
        // Most destinations name a corner alone: what they leave out is 0 and says nothing.
        const CCA_Rect place = SceneRectFromDocRect(rect, pageIndex);
        const CCA_Point corner = rect.IsEmpty() ? ScenePointFromDocPoint({rect.left, rect.top}, pageIndex)
                                                : CCA_Point{place.left, place.top};
        d->ScrollTo(QPointF(corner.x, corner.y), QPoint(0, 0));
    }
    --d->moving;
    d->current = pageIndex;
    d->Announce();
    UpdateView();
    if (isJump)
        emit Jumped();
}

float G_DocView::GetZoom() const
{
    return static_cast<float>(d->zoom);
}

void G_DocView::SetZoom(float percent, bool keepCenter)
{
    d->mode = G_Preferences::Custom;
    const QRect viewport = d->widget ? d->widget->viewport()->rect() : QRect();
    d->ZoomAt(static_cast<double>(percent), keepCenter ? viewport.center() : QPoint(0, 0));
}

G_Preferences::ZoomMode G_DocView::ZoomMode() const
{
    return d->mode;
}

void G_DocView::SetZoomMode(G_Preferences::ZoomMode mode)
{
    d->mode = mode;
    d->ApplyMode();
    d->isModeFresh = true;
    d->AnnounceLater();
}

int G_DocView::Rotation() const
{
    return d->rotation;
}

void G_DocView::SetRotation(int degrees)
{
    const int turned = ((degrees % 360) + 360) % 360 / 90 * 90;
    if (turned == d->rotation)
        return;
    const int page = d->current;
    ++d->moving;
    d->rotation = turned;
    d->Arrange();
    d->ApplyMode();
    if (page >= 0)
        d->ScrollTo(QPointF(VisibleSceneRect().left(), PageRect(page).top() - PageLayout::gapPx), QPoint(0, 0));
    --d->moving;
    d->UpdateCurrentAfterLayout();
}

bool G_DocView::HasTwoPages() const
{
    return d->layout.IsPaired();
}

void G_DocView::SetTwoPages(bool isWanted)
{
    if (d->layout.IsPaired() == isWanted)
        return;
    const int page = d->current;
    ++d->moving;
    d->layout.SetPaired(isWanted);
    d->Arrange();
    d->ApplyMode();
    if (page >= 0)
        d->ScrollTo(QPointF(VisibleSceneRect().left(), PageRect(page).top() - PageLayout::gapPx), QPoint(0, 0));
    d->CenterCurrentPage();
    --d->moving;
    d->UpdateCurrentAfterLayout();
}

void G_DocView::ScrollBy(int dx, int dy)
{
    if (!d->widget)
        return;
    ++d->moving;
    d->widget->ScrollStep(dx, dy);
    --d->moving;
    d->Scrolled();
}

void G_DocView::Private::StepTo(int page)
{
    isStepping = true;
    q->GoToPage(q, page, CCA_GRect(), false);
    isStepping = false;
}

void G_DocView::NextPage()
{
    d->StepTo(d->layout.RowEnd(d->current) + 1);
}

void G_DocView::PreviousPage()
{
    d->StepTo(d->layout.RowStart(d->layout.RowStart(d->current) - 1));
}
