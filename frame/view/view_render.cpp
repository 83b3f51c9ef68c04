#include "view_render.h"

#include "doc_view.h"
#include "live_views.h"

G_DocViewRender::~G_DocViewRender()
{
    for (G_DocView* view : LiveViews())
        view->UnInstallViewRender(this);
}

void G_DocViewRender::PaintSceneStart(QPainter* /*painter*/, G_DocView* /*view*/) {}

void G_DocViewRender::PaintSceneEnd(QPainter* /*painter*/, G_DocView* /*view*/) {}

void G_DocViewRender::PaintBeforePage(QPainter* /*painter*/, GR_PageGraphicItem* /*page*/) {}

void G_DocViewRender::PaintAfterPage(QPainter* /*painter*/, GR_PageGraphicItem* /*page*/) {}

void G_DocViewRender::ResetViewRender() {}
