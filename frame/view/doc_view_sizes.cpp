// How large the pages are. Of a long document nobody waits for all sizes: the pages that come into view are asked for,
// the others are taken to be like the first until a thread has read them, and what lies in view stays where it is.
#include "doc_view_private.h"

#include <frame/document/ig_document.h>
#include <frame/utils/dpi.h>

#include <QScopedValueRollback>

#include <cmath>

namespace {

constexpr int kReadAtOnce = 64; // pages of documents that are short enough to ask at once
constexpr int kMeasureRounds = 8;
constexpr double kLeastZoomPercent = 1;
constexpr double kMostZoomPercent = 6400;

// A page size that can be laid out, whatever the document claims.
QSizeF Sane(const QSizeF& sizeMm)
{
    constexpr double least = 1;
    constexpr double most = 20000;
    if (!std::isfinite(sizeMm.width()) || !std::isfinite(sizeMm.height()))
        return {210, 297};
    return {qBound(least, sizeMm.width(), most), qBound(least, sizeMm.height(), most)};
}

} // namespace

void G_DocView::Private::ReadPages()
{
    sizeReader.reset();
    const int count = document->GetPageCount();
    IG_PageRenderer* renderer = document->Renderer();
    const bool isLong = count > kReadAtOnce && renderer && renderer->PageSizeMm(0).isValid();
    const QSizeF likely = isLong ? Sane(document->PageSizeMm(0)) : QSizeF();
    QVector<QSizeF> sizes(count, likely);
    for (int page = 0; !isLong && page < count; ++page)
        sizes[page] = Sane(document->PageSizeMm(page));
    isMeasured.fill(!isLong, count);
    unmeasured = isLong ? count : 0;
    layout.SetPages(sizes);
    BoundZoom();
    if (isLong) {
        sizeReader = std::make_unique<SizeReader>(
            renderer, count, [this](int first, const QVector<QSizeF>& read) { SizesRead(first, read); });
        sizeTimer.start();
    }
}

// Scroll bars count in int: a document of tens of thousands of pages cannot be enlarged to the very end.
void G_DocView::Private::BoundZoom()
{
    double columnMm = 1;
    for (int page = 0; page < layout.Count(); ++page)
        columnMm += qMax(layout.SizeMm(page).width(), layout.SizeMm(page).height());
    const double room = 2.0e9 - double(layout.Count()) * PageLayout::gapPx;
    mostZoom = qBound(kLeastZoomPercent, room / (columnMm * PixelsPerMmAt100()) * 100, kMostZoomPercent);
    zoom = qMin(zoom, mostZoom);
}

double G_DocView::Private::PixelsPerMmAt100()
{
    return 96 * Utils::OVDpi::Instance()->DpiScale() / 25.4;
}

bool G_DocView::Private::SetSize(int page, const QSizeF& sizeMm)
{
    if (isMeasured.at(page))
        return false;
    isMeasured[page] = true;
    --unmeasured;
    const QSizeF size = Sane(sizeMm);
    if (size == layout.SizeMm(page))
        return false;
    layout.SetSize(page, size);
    return true;
}

bool G_DocView::Private::Measure(int first, int last)
{
    bool hasChanged = false;
    for (int page = first; unmeasured > 0 && page <= last && layout.IsValid(page); ++page) {
        if (!isMeasured.at(page))
            hasChanged |= SetSize(page, document->PageSizeMm(page));
    }
    return hasChanged;
}

void G_DocView::Private::MeasureInView()
{
    if (unmeasured == 0 || isMeasuring)
        return;
    for (int round = 0; round < kMeasureRounds; ++round) {
        const QPair<int, int> pages = layout.PagesIn(VisibleRect());
        if (!Measure(pages.first, pages.second))
            return;
        ArrangeInPlace();
    }
}

void G_DocView::Private::MeasurePage(int page)
{
    if (Measure(page, page))
        ArrangeInPlace();
}

void G_DocView::Private::SizesRead(int first, const QVector<QSizeF>& sizesMm)
{
    bool hasChanged = false;
    for (int i = 0; i < sizesMm.size() && layout.IsValid(first + i); ++i)
        hasChanged |= SetSize(first + i, sizesMm.at(i));
    if (!hasChanged)
        return;
    BoundZoom();
    ArrangeInPlace();
    UpdateCurrentAfterLayout();
}

// The current page, or the one at the top of the view, stays where it is on the screen.
void G_DocView::Private::ArrangeInPlace()
{
    const QScopedValueRollback<bool> measuring(isMeasuring, true);
    const QRect seen = VisibleRect();
    const QPair<int, int> pages = layout.PagesIn(seen);
    const bool isCurrentSeen = current >= pages.first && current <= pages.second;
    const int page = isCurrentSeen ? current : layout.PageStartingAbove(seen.top() + PageLayout::gapPx);
    const int down = seen.top() - layout.PageTop(page);
    const double across = seen.left() - layout.SceneRect().width() / 2.0; // all pages stand in the column's middle
    ++moving;
    Arrange();
    ScrollTo(QPointF(across + layout.SceneRect().width() / 2.0, down + layout.PageTop(page)), QPoint(0, 0));
    --moving;
}
