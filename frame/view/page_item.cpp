#include "page_item.h"

#include "doc_view_private.h"

GR_PageGraphicItem::GR_PageGraphicItem(G_DocView* view, int pageIndex)
    : view(view)
    , pageIndex(pageIndex)
{
}

GR_PageGraphicItem::~GR_PageGraphicItem() = default;

QRectF GR_PageGraphicItem::boundingRect() const
{
    return QRectF(QPointF(0, 0), QSizeF(size));
}

void GR_PageGraphicItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* /*option*/, QWidget* /*widget*/)
{
    view->d->PaintPage(painter, this);
}

void GR_PageGraphicItem::SetSize(const QSize& newSize)
{
    if (size == newSize)
        return;
    prepareGeometryChange();
    size = newSize;
}
