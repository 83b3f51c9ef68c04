#include "doc_view_private.h"

#include <cmath>

namespace {

// To whole scene units. Places come from documents and may lie anywhere, or nowhere.
int Rounded(double value)
{
    constexpr double most = 1.0e9;
    return std::isfinite(value) ? qRound(qBound(-most, value, most)) : 0;
}

} // namespace

QRect G_DocView::PageRect(int pageIndex) const
{
    return d->layout.PageRect(pageIndex);
}

QRect G_DocView::PageLogicalRect(int pageIndex) const
{
    if (!d->layout.IsValid(pageIndex))
        return {};
    d->MeasurePage(pageIndex);
    return QRect(QPoint(0, 0), d->layout.PagePixels(pageIndex, d->layout.PixelsPerMm() * 100 / d->zoom));
}

QRectF G_DocView::BoundingRect() const
{
    return d->layout.SceneRect();
}

QRect G_DocView::VisibleSceneRect() const
{
    return d->VisibleRect();
}

CCA_GRect G_DocView::CurrentPageVisibleRectMM() const
{
    const QRect page = PageRect(d->current);
    const QRect seen = page & d->VisibleRect();
    if (seen.isEmpty())
        return {};
    const QTransform toPage = d->layout.PageMatrix(d->current).inverted();
    const QRectF rect = toPage.mapRect(QRectF(seen.translated(-page.topLeft())));
    return CCA_GRect(static_cast<float>(rect.left()), static_cast<float>(rect.top()), static_cast<float>(rect.right()),
                     static_cast<float>(rect.bottom()));
}

CCA_Matrix G_DocView::PageDisplayMatrix(int pageIndex) const
{
    return d->layout.IsValid(pageIndex) ? CCA_Matrix(d->layout.PageMatrix(pageIndex)) : CCA_Matrix();
}

CCA_Point G_DocView::ScenePointFromDocPoint(const CCA_GPoint& point, int pageIndex) const
{
    if (!d->layout.IsValid(pageIndex))
        return {};
    const QPointF scenePoint = d->layout.ToScene(QPointF(point.x, point.y), pageIndex);
    return {Rounded(scenePoint.x()), Rounded(scenePoint.y())};
}

CCA_GPoint G_DocView::DocPointFromScenePoint(const CCA_Point& point, int* page) const
{
    const int hit = d->layout.PageAt(QPoint(point.x, point.y));
    if (page)
        *page = hit;
    return DocPointOnPage(point, hit);
}

CCA_GPoint G_DocView::DocPointOnPage(const CCA_Point& point, int pageIndex) const
{
    if (!d->layout.IsValid(pageIndex))
        return {};
    const QPointF onPage = d->layout.ToPage(QPointF(point.x, point.y), pageIndex);
    return {static_cast<float>(onPage.x()), static_cast<float>(onPage.y())};
}

CCA_Rect G_DocView::SceneRectFromDocRect(const CCA_GRect& rect, int pageIndex) const
{
    if (!d->layout.IsValid(pageIndex))
        return {};
    const QRectF onPage(QPointF(rect.left, rect.top), QPointF(rect.right, rect.bottom));
    const QRectF inScene =
        d->layout.PageMatrix(pageIndex).mapRect(onPage.normalized()).translated(PageRect(pageIndex).topLeft());
    return {Rounded(inScene.left()), Rounded(inScene.top()), Rounded(inScene.right()), Rounded(inScene.bottom())};
}

int G_DocView::PageIndexByPoint(const QPoint& scenePoint, bool nearest, bool visibleOnly) const
{
    int page = d->layout.PageAt(scenePoint);
    if (page < 0 && nearest)
        page = d->layout.NearestPage(scenePoint);
    if (page >= 0 && visibleOnly && !PageRect(page).intersects(d->VisibleRect()))
        return -1;
    return page;
}

const QPoint& G_DocView::CursorPosition() const
{
    return d->cursor;
}
