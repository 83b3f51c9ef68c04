#include "document_search.h"

#include <frame/document/ig_document.h>
#include <frame/operation/event_manager.h>
#include <frame/view/doc_view.h>
#include <frame/view/page_item.h>
#include <frame/view/ui_context.h>

#include <QElapsedTimer>
#include <QPainter>

#include <cmath>

namespace {

constexpr int sliceMs = 10; // what searching takes of a turn of the event loop
constexpr int pagesLookedAhead = 200;
constexpr int marginPx = 24; // a match nearer to the edge of the view is not well in view
const QColor matchColour(0xFF, 0xE0, 0x66);
const QColor currentColour(0xFF, 0x9E, 0x2C);
const QColor currentEdge(0xC2, 0x5A, 0x00);

QRect ToQRect(const CCA_Rect& rect)
{
    return {rect.left, rect.top, rect.Width(), rect.Height()};
}

CCA_GRect United(const QList<CCA_GRect>& rects)
{
    CCA_GRect all = rects.value(0);
    for (const CCA_GRect& rect : rects)
        all.SetRect(qMin(all.left, rect.left), qMin(all.top, rect.top), qMax(all.right, rect.right),
                    qMax(all.bottom, rect.bottom));
    return all;
}

// Whether a box stands at the place or behind it, on lines that run to the right.
bool IsAtOrBehind(const CCA_GRect& rect, const CCA_GPoint& place)
{
    if (rect.bottom <= place.y)
        return false;
    return rect.top > place.y || rect.left >= place.x;
}

} // namespace

DocumentSearch::DocumentSearch(G_DocView* view, QObject* parent)
    : QObject(parent)
    , view(view)
    , document(view->GDocument())
    , search(G_TextQuery())
{
    if (IG_TextSource* source = document->TextSource()) {
        reader = std::make_unique<G_TextReader>(source, [this](int) {
            if (isSearching && !timer.isActive())
                timer.start();
        });
    }
    timer.setInterval(0);
    connect(&timer, &QTimer::timeout, this, &DocumentSearch::SearchSome);
    connect(view->UIContext()->EventMgr(), &CRF_EventMgr::PageStructChanged, this, [this](IG_Document* changed) {
        if (changed != document)
            return;
        texts.Clear(); // as matches do, they go by the place of their page
        Restart();
    });
    view->InstallViewRender(this);
}

void DocumentSearch::SetQuery(const G_TextQuery& query)
{
    if (query == Query())
        return;
    RememberWhereToBegin();
    search = G_TextSearch(query);
    Restart();
}

void DocumentSearch::SetShown(bool shown)
{
    if (isShown == shown)
        return;
    isShown = shown;
    waitingStep = 0;
    view->UpdateView();
}

// Where the user is: at the current match as long as it is in view, so that one more letter does not lead away from it;
// also when that match has not been found yet, or when a wrong letter has lost it, unless the view was moved since.
void DocumentSearch::RememberWhereToBegin()
{
    const QRect seen = view->VisibleSceneRect();
    const bool isUnmoved = currentPage < 0 && !search.IsEmpty() && seen == beginView;
    beginView = seen;
    if (IsCurrentInView()) {
        const CCA_GRect first = CurrentRects(&beginPage).first();
        beginPlace = {first.left, (first.top + first.bottom) / 2};
    } else if (!isUnmoved) {
        beginPage = view->CurrentPageIndex();
        beginPlace = {0, view->CurrentPageVisibleRectMM().top};
    }
}

void DocumentSearch::Restart()
{
    found.clear();
    count = searchedPages = unreadablePages = waitingStep = 0;
    currentPage = currentIndex = -1;
    isCut = false;
    pageCount = document->GetPageCount();
    beginPage = qBound(0, beginPage, qMax(0, pageCount - 1));
    isSearching = !search.IsEmpty() && pageCount > 0;
    if (reader)
        ReadAnew();
    if (isSearching)
        timer.start();
    else
        timer.stop();
    view->UpdateView();
    emit Changed();
}

// What was read ahead is dropped: it is of another query or of text that was shown then.
void DocumentSearch::ReadAnew()
{
    shownText = document->ShownTextRevision();
    reader->SetDigest([search = search](int page, const std::shared_ptr<const IG_ReadText>& text) {
        return SearchText(search, page, *text);
    });
}

void DocumentSearch::SearchSome()
{
    QElapsedTimer clock;
    clock.start();
    bool isNewInView = false;
    const int countBefore = count;
    do {
        const int page = (beginPage + searchedPages) % pageCount;
        PageResult result;
        if (!ResultOf(page, &result)) {
            timer.stop(); // until it comes
            break;
        }
        ++searchedPages;
        isNewInView |= Add(page, result) && IsInView(page);
        if (searchedPages == pageCount || isCut)
            Finish();
    } while (isSearching && !clock.hasExpired(sliceMs));
    if (isNewInView)
        view->UpdateView();
    const int currentBefore = currentPage;
    ChooseFirst();
    if (waitingStep != 0 && currentPage >= 0)
        Step(waitingStep);
    if (count != countBefore || currentPage != currentBefore || !isSearching)
        emit Changed();
}

std::shared_ptr<const DocumentSearch::PageResult> DocumentSearch::SearchText(const G_TextSearch& search, int page,
                                                                             const IG_ReadText& text)
{
    const auto result = std::make_shared<PageResult>();
    const QList<G_TextGlyph> glyphs = text.AllGlyphs();
    result->isReadable = text.IsReadable();
    result->squeezed = G_PageTextCache::Squeezed(glyphs);
    const QList<G_TextMatch> matches = search.FindIn(glyphs, page, maxMatches);
    for (const G_TextMatch& match : matches)
        result->matches.append(match.rects);
    return result;
}

bool DocumentSearch::ResultOf(int page, PageResult* result)
{
    if (!reader) {
        const QList<G_TextMatch> matches =
            search.FindOnPage(document, page, maxMatches - count, &result->isReadable, &texts);
        for (const G_TextMatch& match : matches)
            result->matches.append(match.rects);
        return true;
    }
    if (search.IsRuledOut(document, page, &texts)) {
        result->isReadable = true;
        return true;
    }
    if (shownText != document->ShownTextRevision())
        ReadAnew();
    const std::shared_ptr<const void> found = reader->Take(page);
    if (!found) {
        WantResults();
        return false;
    }
    *result = *static_cast<const PageResult*>(found.get());
    if (result->isReadable)
        texts.Keep(page, result->squeezed);
    return true;
}

// The next pages that may have the text, as far as that is soon known.
void DocumentSearch::WantResults()
{
    QVector<int> pages;
    const int end = qMin(pageCount, searchedPages + pagesLookedAhead);
    for (int i = searchedPages; i < end && pages.size() < G_TextReader::pagesAhead; ++i) {
        const int page = (beginPage + i) % pageCount;
        if (!search.IsRuledOut(document, page, &texts))
            pages.append(page);
    }
    reader->Want(pages);
}

bool DocumentSearch::Add(int page, const PageResult& result)
{
    unreadablePages += result.isReadable ? 0 : 1;
    if (result.matches.isEmpty())
        return false;
    PageMatches& boxes = found[page];
    boxes = result.matches.mid(0, maxMatches - count);
    count += boxes.size();
    isCut = count >= maxMatches;
    return true;
}

void DocumentSearch::Finish()
{
    isSearching = false;
    timer.stop();
    if (reader)
        reader->Want({});
}

bool DocumentSearch::WasSearched(int page) const
{
    return (page - beginPage + pageCount) % pageCount < searchedPages;
}

void DocumentSearch::ChooseFirst()
{
    if (currentPage >= 0 || found.isEmpty())
        return;
    const bool hasBeginning = found.contains(beginPage);
    if (hasBeginning && ChooseFrom(beginPage, true))
        return;
    auto next = found.upperBound(beginPage);
    if (next == found.end())
        next = found.begin();
    const bool isAnotherPage = next.key() != beginPage;
    if (isAnotherPage && WasSearched(next.key()))
        ChooseFrom(next.key(), false);
    else if (!isSearching && hasBeginning)
        ChooseFrom(beginPage, false); // the matches above the place are all there is
}

bool DocumentSearch::ChooseFrom(int page, bool isBeginning)
{
    const PageMatches& matches = *found.constFind(page);
    for (int i = 0; i < matches.size(); ++i) {
        if (isBeginning && !IsAtOrBehind(matches.at(i).first(), beginPlace))
            continue;
        MakeCurrent(page, i);
        return true;
    }
    return false;
}

void DocumentSearch::Step(int direction)
{
    if (direction > 0 && (currentPage < 0 || isCurrentUnseen)) {
        waitingStep = 0; // the first match is the next one, when it comes or when it came unseen
        if (currentPage >= 0)
            MakeCurrent(currentPage, currentIndex);
        return;
    }
    waitingStep = isSearching ? direction : 0;
    if (currentPage < 0)
        return; // the first match is yet to come
    const int fromPage = currentPage;
    if (StepOnPage(direction)) {
        waitingStep = 0;
        emit Changed();
        return;
    }
    for (int distance = 1; distance <= pageCount; ++distance) {
        const int page = (fromPage + (direction > 0 ? distance : pageCount - distance)) % pageCount;
        if (!WasSearched(page) && isSearching)
            return;
        const auto matches = found.constFind(page);
        if (matches == found.constEnd())
            continue;
        waitingStep = 0;
        MakeCurrent(page, direction > 0 ? 0 : matches->size() - 1);
        const bool isRound = direction > 0 ? page <= fromPage : page >= fromPage;
        emit Changed();
        if (isRound)
            emit WrappedRound(direction > 0);
        return;
    }
}

bool DocumentSearch::StepOnPage(int direction)
{
    const int index = currentIndex + direction;
    if (index < 0 || index >= found.constFind(currentPage)->size())
        return false;
    MakeCurrent(currentPage, index);
    return true;
}

void DocumentSearch::MakeCurrent(int page, int index)
{
    currentPage = page;
    currentIndex = index;
    isCurrentUnseen = !isShown;
    if (isShown) // who has closed the bar reads on, and is not led away when a match comes late
        ShowCurrent();
    view->UpdateView();
}

// A match that is well in view already moves nothing; another one comes to the upper third, and across only as far as
// it must.
void DocumentSearch::ShowCurrent()
{
    const QList<CCA_GRect> rects = CurrentRects(nullptr);
    const QSize room = view->VisibleSceneRect().size();
    const auto place = [&] {
        const QRect whole = ToQRect(view->SceneRectFromDocRect(United(rects), currentPage));
        const bool fits = whole.width() < room.width() - 2 * marginPx && whole.height() < room.height() - 2 * marginPx;
        return fits ? whole : ToQRect(view->SceneRectFromDocRect(rects.first(), currentPage));
    };
    const QRect before = view->VisibleSceneRect();
    if (before.adjusted(0, marginPx, 0, -marginPx).contains(place()))
        return;
    view->GoToPage(view, currentPage, rects.first(), false);
    const QRect wanted = place();
    const QRect now = view->VisibleSceneRect();
    const bool fitsAcross = wanted.left() >= before.left() && wanted.right() <= before.right();
    const int left = fitsAcross ? before.left() : wanted.center().x() - room.width() / 2;
    view->ScrollBy(left - now.left(), wanted.center().y() - room.height() / 3 - now.top());
}

bool DocumentSearch::IsInView(int page) const
{
    return view->PageRect(page).intersects(view->VisibleSceneRect());
}

bool DocumentSearch::IsCurrentInView() const
{
    if (currentPage < 0)
        return false;
    const CCA_GRect rect = CurrentRects(nullptr).first();
    return view->VisibleSceneRect().intersects(ToQRect(view->SceneRectFromDocRect(rect, currentPage)));
}

int DocumentSearch::CurrentNumber() const
{
    if (currentPage < 0)
        return 0;
    int number = currentIndex + 1;
    for (auto it = found.cbegin(); it != found.cend() && it.key() < currentPage; ++it)
        number += it->size();
    return number;
}

QList<CCA_GRect> DocumentSearch::CurrentRects(int* pageIndex) const
{
    if (pageIndex)
        *pageIndex = currentPage;
    return currentPage >= 0 ? found.constFind(currentPage)->at(currentIndex) : QList<CCA_GRect>();
}

void DocumentSearch::PaintAfterPage(QPainter* painter, GR_PageGraphicItem* page)
{
    const auto matches = found.constFind(page->PageIndex());
    if (!isShown || matches == found.constEnd())
        return;
    const QRect seen = view->VisibleSceneRect();
    for (int i = 0; i < matches->size(); ++i) {
        const bool isCurrent = page->PageIndex() == currentPage && i == currentIndex;
        for (const CCA_GRect& box : matches->at(i)) {
            const QRect rect = ToQRect(view->SceneRectFromDocRect(box, page->PageIndex())).adjusted(-1, -1, 1, 1);
            if (!rect.intersects(seen))
                continue;
            painter->setCompositionMode(QPainter::CompositionMode_Multiply); // the letters stay as dark as they are
            painter->fillRect(rect, isCurrent ? currentColour : matchColour);
            if (!isCurrent)
                continue;
            painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
            painter->setPen(QPen(currentEdge, 1)); // told apart without the colour, too
            painter->drawRect(rect.adjusted(0, 0, -1, -1));
        }
    }
}
