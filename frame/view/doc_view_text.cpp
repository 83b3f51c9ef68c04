#include "doc_view_private.h"
#include "page_holds.h"

#include <frame/document/ig_document.h>

#include <QElapsedTimer>
#include <QGuiApplication>

#include <limits>

namespace {
constexpr int kPagesAtOnce = 20; // so many are read in one go, however long they take
constexpr int kFirstSliceMs = 50;

// Whether a piece stands beside the one before it, as the cells of a table do.
bool IsSameLine(const CCA_GRect& last, const CCA_GRect& next)
{
    const float overlap = qMin(last.bottom, next.bottom) - qMax(last.top, next.top);
    return next.left >= last.right && 2 * overlap > qMin(last.Height(), next.Height());
}
} // namespace

QList<G_HighLightItem> G_DocView::SelectHighLightText() const
{
    return d->selection;
}

void G_DocView::SetHighLightText(const QList<G_HighLightItem>& items)
{
    d->nextToSelect = -1;
    if (items.isEmpty() && d->selection.isEmpty())
        return;
    d->selection = items;
    UpdateView();
    emit SelectionChanged();
}

void G_DocView::SelectTextBetween(int fromPage, const CCA_GPoint& from, int toPage, const CCA_GPoint& to)
{
    d->selecting = {qMax(0, fromPage), from, qMin(toPage, d->layout.Count() - 1), to, false};
    d->StartSelecting();
}

void G_DocView::SelectAllText()
{
    d->selecting = {0, {}, d->layout.Count() - 1, {}, true};
    d->StartSelecting();
}

void G_DocView::Private::StartSelecting()
{
    const bool hadSome = !selection.isEmpty();
    selection.clear();
    nextToSelect = selecting.fromPage;
    q->UpdateView(); // what was selected is no more
    SelectMore(kFirstSliceMs);
    if (hadSome && selection.isEmpty())
        emit q->SelectionChanged();
}

// Reading ten thousand pages takes many seconds: the window must not stand still for them.
void G_DocView::Private::SelectMore(int milliseconds)
{
    if (nextToSelect < 0)
        return;
    const TextRange range = selecting; // a listener may begin another
    const int atOnce = range.fromPage + kPagesAtOnce;
    QElapsedTimer clock;
    clock.start();
    bool hasMore = false;
    bool isInView = false;
    for (; nextToSelect <= range.toPage; ++nextToSelect) {
        if (nextToSelect >= atOnce && clock.hasExpired(milliseconds))
            break;
        G_PageHolds hold(document); // one page at a time: a long document must not be in memory as a whole
        const int page = nextToSelect;
        const bool isWhole = range.isWhole || (page != range.fromPage && page != range.toPage);
        G_HighLightItem item;
        item.pageIndex = page;
        item.runs = isWhole ? hold.AllRuns(page)
                            : hold.RunsBetween(page, page == range.fromPage ? &range.from : nullptr,
                                               page == range.toPage ? &range.to : nullptr);
        if (item.runs.isEmpty())
            continue;
        selection.append(item);
        hasMore = true;
        isInView |= items.contains(page);
    }
    if (nextToSelect <= range.toPage)
        selectTimer.start();
    else
        nextToSelect = -1;
    if (!hasMore)
        return;
    if (isInView)
        q->UpdateView();
    emit q->SelectionChanged();
}

QString G_DocView::SelectedText() const
{
    if (d->nextToSelect >= 0) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        d->SelectMore(std::numeric_limits<int>::max());
        QGuiApplication::restoreOverrideCursor();
    }
    QString text;
    for (const G_HighLightItem& item : qAsConst(d->selection)) {
        for (int i = 0; i < item.runs.size(); ++i) {
            if (!text.isEmpty())
                text += i > 0 && IsSameLine(item.runs.at(i - 1).rect, item.runs.at(i).rect) ? QLatin1Char('\t')
                                                                                            : QLatin1Char('\n');
            text += item.runs.at(i).text;
        }
    }
    return text;
}
