#include "doc_view_private.h"

#include <frame/document/ig_document.h>
#include <frame/json/ovjson.h>

#include <QPainter>

namespace {

// Pages with more pixels than this are rendered only where they are in view.
constexpr qint64 kMostWholePixels = 8LL * 1000 * 1000;
// Regions grow to multiples of this, so that a small scroll needs no new picture.
constexpr int kRegionGridPx = 256;

const QColor paperEdge(0xC4, 0xC9, 0xD2);
const QColor errorColour(0xC6, 0x28, 0x28);
const QColor errorPaper(0xFD, 0xF3, 0xF2);
const QColor selectionColour(0x1E, 0x88, 0xE5, 0x50);

QRect GrownToGrid(const QRect& rect)
{
    const int left = (rect.left() / kRegionGridPx) * kRegionGridPx;
    const int top = (rect.top() / kRegionGridPx) * kRegionGridPx;
    const int right = ((rect.left() + rect.width()) / kRegionGridPx + 1) * kRegionGridPx;
    const int bottom = ((rect.top() + rect.height()) / kRegionGridPx + 1) * kRegionGridPx;
    return {left, top, right - left, bottom - top};
}

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
        d->jobs->CancelAllBut({});
    else if (d->jobs && isNumber)
        d->jobs->Cancel(one);
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
    const PagePicture* picture = cache.Find(page);
    if (picture && picture->rotation == rotation && !picture->pixmap.isNull()) {
        const double scale = layout.PixelsPerMm() / picture->pixelsPerMm;
        const QRectF place(picture->region.x() * scale, picture->region.y() * scale, picture->pixmap.width() * scale,
                           picture->pixmap.height() * scale);
        painter->setClipRect(paper, Qt::IntersectClip);
        // At its own scale the picture lies pixel on pixel; smoothing would only blur it.
        const double onDevice = painter->device()->devicePixelRatioF() * scale;
        painter->setRenderHint(QPainter::SmoothPixmapTransform, std::abs(onDevice - 1) > 1e-6);
        painter->drawPixmap(place, picture->pixmap, QRectF(picture->pixmap.rect()));
    }
    if (picture && !picture->error.isEmpty())
        PaintError(painter, page, picture->error);
    painter->setPen(paperEdge);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(paper.adjusted(0, 0, -1, -1));
    if (!jobs || (picture && !picture->isStale))
        TellFirstPainted();
}

void G_DocView::Private::TellFirstPainted()
{
    if (wasFirstPagePainted)
        return;
    wasFirstPagePainted = true;
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

void G_DocView::Private::AskForPicturesLater()
{
    if (jobs && !pictureTimer.isActive())
        pictureTimer.start();
}

void G_DocView::Private::AskForPictures()
{
    if (!jobs || !widget)
        return;
    const QPair<int, int> pages = layout.PagesIn(VisibleRect());
    QSet<int> onScreen;
    for (int page = pages.first; page <= pages.second; ++page)
        onScreen.insert(page);
    jobs->CancelAllBut(onScreen);
    for (int page = pages.first; page <= pages.second; ++page) {
        const RenderWish wish = WishFor(page);
        if (IsGood(cache.Find(page), wish)) {
            jobs->Cancel(page);
            cache.Touch(page);
        } else {
            jobs->Start(wish);
        }
    }
    cache.Trim(onScreen);
}

QRect G_DocView::Private::VisiblePart(int page, const QSize& whole) const
{
    const QRect rect = layout.PageRect(page);
    const QRect seen = (rect & VisibleRect()).translated(-rect.topLeft());
    const double x = double(whole.width()) / rect.width();
    const double y = double(whole.height()) / rect.height();
    const QRectF physical(seen.x() * x, seen.y() * y, seen.width() * x, seen.height() * y);
    return physical.toAlignedRect() & QRect(QPoint(0, 0), whole);
}

RenderWish G_DocView::Private::WishFor(int page)
{
    RenderWish wish;
    wish.page = page;
    wish.pixelsPerMm = layout.PixelsPerMm() * widget->devicePixelRatioF();
    wish.rotation = rotation;
    wish.whole = layout.PagePixels(page, wish.pixelsPerMm);
    const QRect whole(QPoint(0, 0), wish.whole);
    const bool isHuge = qint64(wish.whole.width()) * wish.whole.height() > kMostWholePixels;
    wish.region = isHuge ? GrownToGrid(VisiblePart(page, wish.whole)) & whole : whole;
    wish.ignoredTemplates = IgnoredTemplates(page);
    wish.withAnnotations = showsAnnotations;
    return wish;
}

bool G_DocView::Private::IsGood(const PagePicture* picture, const RenderWish& wish) const
{
    return picture && !picture->isStale && picture->rotation == wish.rotation &&
           picture->pixelsPerMm == wish.pixelsPerMm && picture->ignoredTemplates == wish.ignoredTemplates &&
           picture->withAnnotations == wish.withAnnotations &&
           picture->region.contains(VisiblePart(wish.page, wish.whole));
}

QSet<int> G_DocView::Private::IgnoredTemplates(int page)
{
    if (q->pageFilter != parsedFilter) {
        parsedFilter = q->pageFilter;
        ignoredTemplates.clear();
        const QByteArray text = parsedFilter.toUtf8();
        const OVSharedPtr<OVJson> filter = OVJsonFactory::ParseJsonString(text.constData(), text.size());
        for (int i = 0; filter && filter->IsObject() && i < filter->MemberCount(); ++i) {
            const QByteArray pageId = filter->KeyAt(i);
            const OVJson ids = filter->Member(pageId).Member("IgnoreIDs");
            QSet<int>& ignored = ignoredTemplates[pageId.toInt()];
            for (int position = 0; position < ids.Size(); ++position)
                ignored.insert(ids.At(position).ToInt());
        }
    }
    return ignoredTemplates.isEmpty() ? QSet<int>() : ignoredTemplates.value(document->PageIdFromIndex(page));
}

void G_DocView::Private::PictureMade(const RenderWish& wish, const G_RenderResult& result)
{
    PagePicture picture;
    picture.pixmap = QPixmap::fromImage(result.image);
    picture.pixmap.setDevicePixelRatio(1);
    picture.region = wish.region;
    picture.whole = wish.whole;
    picture.pixelsPerMm = wish.pixelsPerMm;
    picture.rotation = wish.rotation;
    picture.ignoredTemplates = wish.ignoredTemplates;
    picture.withAnnotations = wish.withAnnotations;
    picture.error = result.error;
    if (result.image.isNull() && result.error.isEmpty())
        picture.error = tr("no picture came");
    cache.Put(wish.page, picture);
    q->UpdateView();
}

void G_DocView::FinishRendering()
{
    if (!d->jobs || !d->widget)
        return;
    d->AskForPictures();
    d->jobs->Finish();
}
