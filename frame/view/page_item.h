#pragma once

#include <frame/base/export.h>

#include <QGraphicsItem>

class G_DocView;

// One page in the view's scene: paper at once, its picture when rendered. Owned by the scene. Position and size are in
// scene units.
class FRAME_EXPORT GR_PageGraphicItem : public QGraphicsItem
{
public:
    GR_PageGraphicItem(G_DocView* view, int pageIndex);
    ~GR_PageGraphicItem() override;
    int PageIndex() const { return pageIndex; }
    G_DocView* DocView() const { return view; }
    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;
    void SetSize(const QSize& size); // scene units

private:
    friend class G_DocView;
    G_DocView* view; // not owned
    int pageIndex;
    QSize size;
};
