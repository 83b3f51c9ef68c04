#pragma once

#include <frame/document/text_search.h>
#include <frame/view/text_reader.h>
#include <frame/view/view_render.h>

#include <QMap>
#include <QObject>
#include <QRect>
#include <QTimer>

#include <memory>

class G_DocView;
class IG_Document;

// The search in one open document: what is looked for, what was found so far, which match is the current one; paints
// the matches on the pages that are shown. Pages are searched from the page in view on and round to it, on a thread of
// their own where the document can be read there, else a few at a time between the events of the window. Belongs to a
// tab and dies before its view. Main thread only.
class DocumentSearch : public QObject, public G_DocViewRender
{
    Q_OBJECT
public:
    explicit DocumentSearch(G_DocView* view, QObject* parent = nullptr);

    // Drops what was found and looks for the new text; nothing when it is the same. The first match at or behind the
    // current one, or behind the upper edge of the view, becomes current.
    void SetQuery(const G_TextQuery& query);
    const G_TextQuery& Query() const { return search.Query(); }
    // Matches are painted, and the window shows its find bar, while this is on.
    void SetShown(bool shown);
    bool IsShown() const { return isShown; }
    // Makes another match current and brings it into view; waits for pages that were not searched yet.
    void GoToNext() { Step(1); }
    void GoToPrevious() { Step(-1); }

    bool IsSearching() const { return isSearching; }
    int MatchCount() const { return count; }
    // From 1, counted from the beginning of the document; 0 without a current match.
    int CurrentNumber() const;
    // The boxes of the current match, page mm; empty without one. The page's index goes to `pageIndex`.
    QList<CCA_GRect> CurrentRects(int* pageIndex) const;
    // There are more matches than are kept.
    bool IsCut() const { return isCut; }
    int UnreadablePageCount() const { return unreadablePages; }

    void PaintAfterPage(QPainter* painter, GR_PageGraphicItem* page) override;

    static constexpr int maxMatches = 20000;

signals:
    // What the functions above tell has changed.
    void Changed();
    // The search went past the document's end and on from its beginning, or the other way round.
    void WrappedRound(bool isForward);

private:
    // The boxes of each match of a page.
    using PageMatches = QVector<QList<CCA_GRect>>;

    void Restart();
    void ReadAnew();
    void RememberWhereToBegin();
    void SearchSome();
    // What a page has, as it comes from the thread that searches.
    struct PageResult
    {
        PageMatches matches;
        bool isReadable = false;
        QString squeezed;
    };
    // False, and it is on its way, when the page has still to be searched.
    bool ResultOf(int page, PageResult* result);
    void WantResults();
    static std::shared_ptr<const PageResult> SearchText(const G_TextSearch& search, int page, const IG_ReadText& text);
    // True when there are matches on the page.
    bool Add(int page, const PageResult& result);
    void Finish();
    bool WasSearched(int page) const;
    void ChooseFirst();
    bool ChooseFrom(int page, bool isBeginning);
    void Step(int direction);
    bool StepOnPage(int direction);
    void MakeCurrent(int page, int index);
    void ShowCurrent();
    bool IsInView(int page) const;
    bool IsCurrentInView() const;

    G_DocView* view;       // not owned
    IG_Document* document; // not owned
    G_TextSearch search;
    G_PageTextCache texts;                // so that one more letter reads few pages again
    std::unique_ptr<G_TextReader> reader; // null when the document is read on the main thread
    QTimer timer;                         // fires while pages are left to search, and one is at hand
    QMap<int, PageMatches> found;
    int shownText = 0; // the document's revision of what is read ahead
    int count = 0;
    int pageCount = 0;
    int beginPage = 0;
    CCA_GPoint beginPlace; // page mm
    QRect beginView;       // what was in view then, scene units
    int searchedPages = 0; // from beginPage on
    int currentPage = -1;  // -1: no match is current
    int currentIndex = -1;
    int waitingStep = 0; // a step that has to wait for pages
    int unreadablePages = 0;
    bool isSearching = false;
    bool isCut = false;
    bool isShown = false;
    bool isCurrentUnseen = false; // it became current while the bar was closed
};
