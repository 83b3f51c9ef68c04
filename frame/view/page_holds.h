#pragma once

#include "doc_view.h"

#include <QHash>

class IG_TextPage;

// Pages whose content is wanted for a while: each is asked for once and released once, by the destructor. Dies before
// its document.
class G_PageHolds
{
public:
    explicit G_PageHolds(IG_Document* document);
    ~G_PageHolds();
    // The parsed text of a page; null when it cannot be read. Good until control returns to the event loop: whoever
    // else releases the page takes its content away, and it is then read again.
    IG_TextPage* Text(int pageIndex);
    QList<G_TextRun> AllRuns(int pageIndex);
    // From the first place to the second; null is the page's beginning, or its end.
    QList<G_TextRun> RunsBetween(int pageIndex, const CCA_GPoint* from, const CCA_GPoint* to);
    // Text between two places, one item for each page that has some, in order; the first place stands before the
    // second in reading order.
    QList<G_HighLightItem> TextBetween(int fromPage, const CCA_GPoint& from, int toPage, const CCA_GPoint& to);

private:
    Q_DISABLE_COPY(G_PageHolds)
    IG_Document* document;     // not owned
    QHash<int, IG_Page*> held; // not owned
};
