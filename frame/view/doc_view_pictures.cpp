// Which pictures of pages are wanted, in which order, and what becomes of them.
#include "doc_view_private.h"
#include "page_tiles.h"

#include <frame/document/ig_document.h>
#include <frame/json/ovjson.h>

#include <algorithm>
#include <cmath>

namespace {
constexpr int kAheadPx = PageTiles::tilePx / 2; // tiles so close to the screen are made before they are seen
} // namespace

void G_DocView::Private::AskForPicturesLater()
{
    if (jobs && !pictureTimer.isActive())
        pictureTimer.start();
}

void G_DocView::Private::AskForPictures(bool isAhead)
{
    if (!jobs || !widget)
        return;
    roomTimer.stop();
    const double ratio = widget->devicePixelRatioF();
    const QSize window = widget->viewport()->size();
    PictureBudget::MakeFitFor(qint64(window.width() * ratio * window.height() * ratio));
    QVector<RenderWish> missing = MissingInView();
    isTextAheadDue = missing.isEmpty() && isAhead;
    if (isTextAheadDue) {
        missing = MissingAround();
        WantTexts();
    }
    jobs->KeepOnly(missing);
    const bool mayRoomComeFree = RenderJobs::IsAnyUnderWay(); // asked first: it may end while the next is tried
    for (const RenderWish& wish : qAsConst(missing)) {
        if (jobs->Start(wish))
            continue;
        // What was given up, here or in another view, keeps its room until it ends, and nobody is told of that.
        if (jobs->IsIdle() && mayRoomComeFree)
            roomTimer.start();
        break;
    }
}

// What is there is kept, what is not there is listed, the most urgent first.
void G_DocView::Private::Look(const RenderWish& wish, QVector<RenderWish>* missing)
{
    if (cache.FindGood(wish.page, wish.look, wish.region))
        cache.Want(wish.page, wish.look, wish.region);
    else
        missing->append(wish);
}

QVector<RenderWish> G_DocView::Private::MissingInView()
{
    QVector<RenderWish> missing;
    cache.WantNothing();
    const QPair<int, int> pages = layout.PagesIn(VisibleRect());
    for (int page = pages.first; page <= pages.second; ++page) {
        const PageLook look = LookOf(page);
        const int before = missing.size();
        const QVector<QRect> pieces = PageTiles::Covering(VisiblePart(page, look.whole), look.whole);
        cache.Touch(page);
        for (const QRect& piece : pieces)
            Look({page, look, piece}, &missing);
        if (missing.size() == before && !pieces.isEmpty())
            cache.DropOthers(page, look);
    }
    return missing;
}

// What will be seen next: what lies under tiles that are still to come, tiles around those in view, and the page that
// scrolling on brings.
QVector<RenderWish> G_DocView::Private::MissingAround()
{
    QVector<RenderWish> missing;
    const QPair<int, int> pages = layout.PagesIn(VisibleRect());
    for (int page = pages.first; page <= pages.second; ++page) {
        const PageLook look = LookOf(page);
        if (!PageTiles::IsTiled(look.whole))
            continue;
        if (!cache.HasUnderlay(page, look))
            missing.append(UnderlayOf(page, look));
        const QRect around = VisiblePart(page, look.whole).adjusted(-kAheadPx, -kAheadPx, kAheadPx, kAheadPx);
        const QVector<QRect> pieces = PageTiles::Covering(around, look.whole);
        for (const QRect& piece : pieces)
            Look({page, look, piece}, &missing);
    }
    const int next = isScrollingBack ? pages.first - 1 : pages.second + 1;
    if (pages.first <= pages.second && layout.IsValid(next)) {
        const PageLook look = LookOf(next);
        if (!PageTiles::IsTiled(look.whole))
            Look({next, look, QRect(QPoint(0, 0), look.whole)}, &missing);
        else if (!cache.HasUnderlay(next, look))
            missing.append(UnderlayOf(next, look));
    }
    return missing;
}

RenderWish G_DocView::Private::UnderlayOf(int page, const PageLook& look) const
{
    RenderWish wish{page, look, QRect()};
    const double pixels = double(look.whole.width()) * look.whole.height();
    const double longest = std::max(look.whole.width(), look.whole.height());
    wish.look.pixelsPerMm *= std::min(
        {1.0, std::sqrt(double(PageTiles::previewPixels) / pixels), double(PageTiles::longestSidePx) / longest});
    wish.look.whole = layout.PagePixels(page, wish.look.pixelsPerMm);
    wish.region = QRect(QPoint(0, 0), wish.look.whole);
    return wish;
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

PageLook G_DocView::Private::LookOf(int page)
{
    PageLook look;
    look.pixelsPerMm = layout.PixelsPerMm() * (widget ? widget->devicePixelRatioF() : 1);
    look.rotation = rotation;
    look.whole = layout.PagePixels(page, look.pixelsPerMm);
    look.ignoredTemplates = IgnoredTemplates(page);
    look.withAnnotations = showsAnnotations;
    return look;
}

bool G_DocView::Private::IsSeenWell(int page, const PageLook& look) const
{
    const QVector<QRect> pieces = PageTiles::Covering(VisiblePart(page, look.whole), look.whole);
    return !pieces.isEmpty() && std::all_of(pieces.cbegin(), pieces.cend(),
                                            [&](const QRect& piece) { return cache.FindGood(page, look, piece); });
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

void G_DocView::Private::PictureMade(const RenderWish& wish, const RenderOutcome& outcome)
{
    // Some objects of a page are no better than all of them in an older or coarser picture.
    if (outcome.isPartial && cache.HasAnything(wish.page, wish.look, wish.region))
        return;
    PagePicture picture;
    picture.image = outcome.result.image;
    picture.region = wish.region;
    picture.look = wish.look;
    picture.error = outcome.result.error;
    picture.isPartial = outcome.isPartial;
    picture.hold = outcome.hold;
    if (picture.image.isNull() && picture.error.isEmpty())
        picture.error = tr("no picture came");
    cache.Put(wish.page, picture);
    if (items.contains(wish.page))
        q->UpdateView(); // whose painting asks for more
    AskForPicturesLater();
}

void G_DocView::FinishRendering()
{
    if (!d->jobs || !d->widget)
        return;
    d->AskForPictures(false);
    if (d->jobs->IsIdle()) {
        d->jobs->Finish(); // what was given up keeps its room until it ends
        d->AskForPictures(false);
    }
    for (; !d->jobs->IsIdle(); d->AskForPictures(false))
        d->jobs->Finish();
}
