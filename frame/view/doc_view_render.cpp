#include "doc_view_private.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace {

const QColor paperEdge(0xC4, 0xC9, 0xD2);
const QColor errorColour(0xC6, 0x28, 0x28);
const QColor errorPaper(0xFD, 0xF3, 0xF2);
const QColor selectionColour(0x1E, 0x88, 0xE5, 0x50);

} // namespace

void G_DocView::ClearViewCache(const QString& pageIndexText)
{
    bool isNumber = false;
    const int one = pageIndexText.toInt(&isNumber);
    const QList<int> pages = d->cache.Pages();
    for (const int page : pages) {
        if (!pageIndexText.isEmpty() && !(isNumber && page == one))
            continue;
        // A page in view keeps its old picture until the new one comes, so that it does not blink.
        if (d->items.contains(page))
            d->cache.MarkStale(page);
        else
            d->cache.Remove(page);
    }
    if (d->jobs && pageIndexText.isEmpty())
        d->jobs->KeepOnly({});
    else if (d->jobs && isNumber)
        d->jobs->CancelPage(one);
    d->AskForPicturesLater();
}

void G_DocView::ResetViewRender()
{
    const QList<G_DocViewRender*> installed = d->renders;
    for (G_DocViewRender* render : installed) {
        if (d->renders.contains(render))
            render->ResetViewRender();
    }
    UpdateView();
}

void G_DocView::InstallViewRender(G_DocViewRender* render)
{
    if (!render || d->renders.contains(render))
        return;
    d->renders.append(render);
    UpdateView();
}

void G_DocView::UnInstallViewRender(G_DocViewRender* render)
{
    if (d->renders.removeOne(render))
        UpdateView();
}

QList<G_DocViewRender*> G_DocView::Private::Overlays() const
{
    QList<G_DocViewRender*> overlays = renders;
    if (tool && !overlays.contains(tool))
        overlays.append(tool);
    return overlays;
}

bool G_DocView::Private::IsOverlay(G_DocViewRender* render) const
{
    return renders.contains(render) || render == tool;
}

void G_DocView::Private::PaintScene(QPainter* painter, bool isStart)
{
    const QList<G_DocViewRender*> overlays = Overlays();
    for (G_DocViewRender* render : overlays) {
        if (!IsOverlay(render)) // an earlier one may have taken it off
            continue;
        painter->save();
        if (isStart)
            render->PaintSceneStart(painter, q);
        else
            render->PaintSceneEnd(painter, q);
        painter->restore();
    }
    if (isStart)
        return;
    AskForPicturesLater();
    if (layout.Count() == 0)
        TellFirstPainted(); // there is nothing to wait for
}

void G_DocView::Private::PaintPage(QPainter* painter, GR_PageGraphicItem* item)
{
    // Overlays paint in scene coordinates, the item in its own.
    const auto overlay = [&](void (G_DocViewRender::*paint)(QPainter*, GR_PageGraphicItem*)) {
        const QList<G_DocViewRender*> overlays = Overlays();
        for (G_DocViewRender* render : overlays) {
            if (!IsOverlay(render))
                continue;
            painter->save();
            painter->translate(-item->pos());
            (render->*paint)(painter, item);
            painter->restore();
        }
    };
    overlay(&G_DocViewRender::PaintBeforePage);
    painter->save();
    PaintPicture(painter, item->PageIndex(), item->size);
    PaintSelection(painter, item->PageIndex());
    painter->restore();
    overlay(&G_DocViewRender::PaintAfterPage);
}

void G_DocView::Private::PaintPicture(QPainter* painter, int page, const QSize& size)
{
    const QRect paper(QPoint(0, 0), size);
    painter->fillRect(paper, Qt::white);
    painter->save();
    painter->setClipRect(paper, Qt::IntersectClip);
    const PageLook look = LookOf(page);
    QString error;
    const QVector<const PagePicture*> pictures = InPaintingOrder(page, look);
    for (const PagePicture* picture : pictures) {
        DrawPicture(painter, *picture);
        error = picture->error;
    }
    painter->restore();
    if (!error.isEmpty())
        PaintError(painter, page, error);
    painter->setPen(paperEdge);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(paper.adjusted(0, 0, -1, -1));
    if (!jobs || IsSeenWell(page, look))
        TellFirstPainted();
}

// What another zoom left lies under what is right; of that, the coarse under the sharp, whichever came later.
QVector<const PagePicture*> G_DocView::Private::InPaintingOrder(int page, const PageLook& look) const
{
    QVector<const PagePicture*> order;
    for (const PagePicture& picture : cache.Pictures(page)) {
        if (picture.look.rotation == rotation)
            order.append(&picture);
    }
    const auto rank = [&look](const PagePicture* picture) {
        return std::make_tuple(picture->look == look, picture->IsGood(), picture->look.pixelsPerMm);
    };
    std::stable_sort(order.begin(), order.end(),
                     [&rank](const PagePicture* a, const PagePicture* b) { return rank(a) < rank(b); });
    return order;
}

void G_DocView::Private::DrawPicture(QPainter* painter, const PagePicture& picture) const
{
    if (picture.image.isNull())
        return;
    const double scale = layout.PixelsPerMm() / picture.look.pixelsPerMm;
    const QRectF place(picture.region.x() * scale, picture.region.y() * scale, picture.image.width() * scale,
                       picture.image.height() * scale);
    // At its own scale the picture lies pixel on pixel; smoothing would only blur it.
    const double onDevice = painter->device()->devicePixelRatioF() * scale;
    painter->setRenderHint(QPainter::SmoothPixmapTransform, std::abs(onDevice - 1) > 1e-6);
    painter->drawImage(place, picture.image, QRectF(picture.image.rect()));
}

void G_DocView::Private::TellFirstPainted()
{
    if (wasFirstPagePainted)
        return;
    wasFirstPagePainted = true;
    if (sizeReader)
        sizeTimer.start(0);
    // In a later turn: whoever hears of it may change what is being painted here.
    QMetaObject::invokeMethod(
        q, [this] { emit q->FirstPagePainted(); }, Qt::QueuedConnection);
}

void G_DocView::Private::PaintError(QPainter* painter, int page, const QString& error) const
{
    const QRect rect = layout.PageRect(page);
    const QRect paper(QPoint(0, 0), rect.size());
    painter->fillRect(paper, errorPaper);
    painter->setPen(QPen(errorColour, 2));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(paper.adjusted(4, 4, -5, -5));
    // The reason stands where it is seen, however large the page is.
    const QRect seen = (rect & VisibleRect()).translated(-rect.topLeft());
    const QRect room = seen.adjusted(seen.width() / 10, 8, -seen.width() / 10, -8);
    const QString text = tr("This page cannot be shown: %1").arg(error);
    painter->drawText(room, Qt::AlignCenter | Qt::TextWordWrap, text);
}

void G_DocView::Private::PaintSelection(QPainter* painter, int page) const
{
    const QTransform toPage = layout.PageMatrix(page);
    for (const G_HighLightItem& item : selection) {
        if (item.pageIndex != page)
            continue;
        for (const G_TextRun& run : item.runs) {
            const QRectF box(QPointF(run.rect.left, run.rect.top), QPointF(run.rect.right, run.rect.bottom));
            painter->fillRect(toPage.mapRect(box), selectionColour);
        }
    }
}
