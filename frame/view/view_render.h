#pragma once

#include <frame/base/export.h>

class G_DocView;
class GR_PageGraphicItem;
class QPainter;

// An overlay on a view. Installed by G_DocView::InstallViewRender, painted in order of installation, in scene
// coordinates. Not a QObject, so that subclasses may be. The destructor takes it off every view; a view that dies
// forgets its overlays and deletes none.
class FRAME_EXPORT G_DocViewRender
{
public:
    virtual ~G_DocViewRender();
    // Below all pages, above all pages, and ahead of each visible page. The base paints nothing.
    virtual void PaintSceneStart(QPainter* painter, G_DocView* view);
    virtual void PaintSceneEnd(QPainter* painter, G_DocView* view);
    virtual void PaintBeforePage(QPainter* painter, GR_PageGraphicItem* page);
    // Called after a page has been painted, once for each visible page.
    virtual void PaintAfterPage(QPainter* painter, GR_PageGraphicItem* page);
    // Forgets all that is drawn.
    virtual void ResetViewRender();

protected:
    G_DocViewRender() = default;

private:
    Q_DISABLE_COPY(G_DocViewRender)
};
