#include "doc_view_private.h"
#include "page_holds.h"
#include "status_note.h"

#include <frame/document/ig_document.h>

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QtConcurrent>

#include <limits>
#include <new>

namespace {
constexpr int kPagesAtOnce = 20; // so many are taken in one go, however long they take, when they are at hand
constexpr int kFirstSliceMs = 50;
constexpr int kSliceMs = 10;
constexpr int kMostWaitMs = 30;          // for the text of a page that a tool asks for
constexpr int kPagesJoinedAtOnce = 200;  // the text of more is put together off the main thread
constexpr float kSideBySideSlack = 0.3F; // of the height, by which cells may overlap

// Whether a piece stands beside the one before it, as the cells of a table do.
bool IsSameLine(const CCA_GRect& last, const CCA_GRect& next)
{
    const float overlap = qMin(last.bottom, next.bottom) - qMax(last.top, next.top);
    const float height = qMin(last.Height(), next.Height());
    return next.left >= last.right - kSideBySideSlack * height && next.right > last.right && 2 * overlap > height;
}

QString TextOf(const QList<G_HighLightItem>& items)
{
    QString text = QLatin1String("");
    for (const G_HighLightItem& item : items) {
        for (int i = 0; i < item.runs.size(); ++i) {
            if (!text.isEmpty())
                text += i > 0 && IsSameLine(item.runs.at(i - 1).rect, item.runs.at(i).rect) ? QLatin1Char('\t')
                                                                                            : QLatin1Char('\n');
            text += item.runs.at(i).text;
        }
    }
    return text;
}

// Null, which no text is, when memory runs out.
QString TextWithinMemory(const QList<G_HighLightItem>& items)
{
    try {
        return TextOf(items);
    } catch (const std::bad_alloc&) {
        return {};
    }
}
} // namespace

QList<G_HighLightItem> G_DocView::SelectHighLightText() const
{
    return d->selection;
}

void G_DocView::SetHighLightText(const QList<G_HighLightItem>& items)
{
    d->nextToSelect = -1;
    d->copiesWhenSelected = false;
    d->askedText = {-1, -1};
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
    copiesWhenSelected = false;
    nextToSelect = selecting.fromPage;
    q->UpdateView(); // what was selected is no more
    SelectMore(kFirstSliceMs, TextWait::Short);
    if (hadSome && selection.isEmpty())
        emit q->SelectionChanged();
}

// Reading ten thousand pages takes many seconds, and one hostile page may: the window must not stand still for them.
void G_DocView::Private::SelectMore(int milliseconds, TextWait wait)
{
    if (nextToSelect < 0)
        return;
    const TextRange range = selecting; // a listener may begin another
    const int atOnce = range.fromPage + kPagesAtOnce;
    QElapsedTimer clock;
    clock.start();
    bool hasMore = false;
    bool isInView = false;
    bool isWaiting = false;
    for (; nextToSelect <= range.toPage; ++nextToSelect) {
        if (nextToSelect >= atOnce && clock.hasExpired(milliseconds))
            break;
        const int mostWait = wait == TextWait::Short ? milliseconds - int(clock.elapsed()) : 0;
        isWaiting = wait != TextWait::AsLongAsItTakes && !IsTextReady(nextToSelect, mostWait);
        if (isWaiting)
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
    const bool isDone = nextToSelect > range.toPage;
    if (!isDone && !isWaiting)
        selectTimer.start();
    if (isDone)
        EndSelecting();
    if (!hasMore)
        return;
    if (isInView)
        q->UpdateView();
    emit q->SelectionChanged();
}

void G_DocView::Private::EndSelecting()
{
    nextToSelect = -1;
    WantTexts(); // of what is in view, and no longer of what was selected
    if (copiesWhenSelected)
        q->CopySelectedText();
}

bool G_DocView::Private::IsTextReady(int page, int milliseconds)
{
    if (!textReader || textReader->IsReady(page))
        return true;
    WantTexts();
    if (milliseconds <= 0 || page == lateText)
        return false;
    const bool hasCome = textReader->WaitFor(page, milliseconds);
    lateText = hasCome ? -1 : page;
    return hasCome;
}

void G_DocView::Private::WantTexts()
{
    if (!textReader)
        return;
    QVector<int> pages;
    const auto want = [&pages, this](int first, int last) {
        for (int page = qMax(0, first); page <= qMin(last, layout.Count() - 1); ++page) {
            if (!pages.contains(page))
                pages.append(page);
        }
    };
    if (askedText.first >= 0)
        want(askedText.first, askedText.second);
    if (nextToSelect >= 0)
        want(nextToSelect, qMin(selecting.toPage, nextToSelect + G_TextReader::pagesAhead - 1));
    const QPair<int, int> inView = layout.PagesIn(VisibleRect());
    if (readsTextAhead && isTextAheadDue)
        want(inView.first, inView.second);
    textReader->Want(pages);
}

void G_DocView::Private::TextRead(int page)
{
    if (page == lateText)
        lateText = -1;
    emit q->TextRead(page);
    if (nextToSelect >= 0 && !selectTimer.isActive() && textReader->IsReady(nextToSelect))
        SelectMore(kSliceMs);
}

bool G_DocView::IsTextAtHand(int firstPage, int lastPage) const
{
    d->askedText = {firstPage, lastPage};
    QElapsedTimer clock;
    clock.start();
    bool isAtHand = true;
    for (int page = firstPage; page <= lastPage; ++page)
        isAtHand = d->IsTextReady(page, kMostWaitMs - int(clock.elapsed())) && isAtHand;
    return isAtHand;
}

void G_DocView::SetReadsTextAhead(bool isOn)
{
    d->readsTextAhead = isOn;
    if (isOn)
        d->AskForPicturesLater();
    else
        d->WantTexts();
}

bool G_DocView::IsSelecting() const
{
    return d->nextToSelect >= 0;
}

QString G_DocView::SelectedText() const
{
    if (d->nextToSelect >= 0) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        d->SelectMore(std::numeric_limits<int>::max(), Private::TextWait::AsLongAsItTakes);
        QGuiApplication::restoreOverrideCursor();
    }
    return TextOf(d->selection);
}

void G_DocView::CopySelectedText()
{
    d->copiesWhenSelected = IsSelecting();
    if (d->copiesWhenSelected) {
        if (G_StatusNote* note = G_StatusNote::For(d->widget))
            note->Show(tr("The text is copied as soon as all of it has been read. Esc stops that."));
    } else if (d->selection.size() > kPagesJoinedAtOnce) {
        d->copyWatcher.setFuture(QtConcurrent::run(TextWithinMemory, d->selection));
    } else {
        d->copyWatcher.cancel();
        d->CopyText(TextOf(d->selection));
    }
}

void G_DocView::Private::CopyText(const QString& text)
{
    if (text.isNull()) {
        if (G_StatusNote* note = G_StatusNote::For(widget))
            note->Show(tr("There is not enough memory to copy the text."));
    }
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}
