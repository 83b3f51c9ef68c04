#include "doc_view_private.h"
#include "page_holds.h"

#include <frame/document/ig_document.h>

#include <QElapsedTimer>
#include <QGuiApplication>

#include <limits>

namespace {
constexpr int kPagesAtOnce = 20; // so many are read in one go, however long they take
constexpr int kFirstSliceMs = 50;
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

void G_DocView::SelectAllText()
{
    SetHighLightText({});
    d->nextToSelect = 0;
    d->SelectMore(kFirstSliceMs);
}

// Reading ten thousand pages takes many seconds: the window must not stand still for them.
void G_DocView::Private::SelectMore(int milliseconds)
{
    if (nextToSelect < 0)
        return;
    QElapsedTimer clock;
    clock.start();
    bool hasMore = false;
    while (nextToSelect < layout.Count() && !(nextToSelect >= kPagesAtOnce && clock.hasExpired(milliseconds))) {
        G_PageHolds hold(document); // one page at a time: a long document must not be in memory as a whole
        G_HighLightItem item;
        item.pageIndex = nextToSelect++;
        item.runs = hold.AllRuns(item.pageIndex);
        hasMore |= !item.runs.isEmpty();
        if (!item.runs.isEmpty())
            selection.append(item);
    }
    if (nextToSelect < layout.Count())
        selectTimer.start();
    else
        nextToSelect = -1;
    if (!hasMore)
        return;
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
    QStringList lines;
    for (const G_HighLightItem& item : qAsConst(d->selection)) {
        for (const G_TextRun& run : item.runs)
            lines.append(run.text);
    }
    return lines.join(QLatin1Char('\n'));
}
