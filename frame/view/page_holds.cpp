#include "page_holds.h"

#include <frame/document/ig_document.h>

#include <limits>

G_PageHolds::G_PageHolds(IG_Document* document)
    : document(document)
{
}

G_PageHolds::~G_PageHolds()
{
    for (auto it = held.cbegin(); it != held.cend(); ++it)
        document->ReleasePage(it.key(), 0);
}

IG_TextPage* G_PageHolds::Text(int pageIndex)
{
    auto known = held.constFind(pageIndex);
    if (known == held.constEnd()) {
        IG_Page* asked = document->GetPage(pageIndex);
        if (!asked)
            return nullptr;
        known = held.insert(pageIndex, asked);
    }
    IG_Page* page = known.value();
    IG_TextPage* text = page->IsLoaded() || page->Load() ? page->GetTextPage() : nullptr;
    if (text && !text->IsParsed())
        text->Parse(0);
    return text;
}

QList<G_TextRun> G_PageHolds::AllRuns(int pageIndex)
{
    const IG_TextPage* text = Text(pageIndex);
    return text ? text->AllRuns() : QList<G_TextRun>();
}

QList<G_TextRun> G_PageHolds::RunsBetween(int pageIndex, const CCA_GPoint* from, const CCA_GPoint* to)
{
    const IG_TextPage* text = Text(pageIndex);
    if (!text)
        return {};
    constexpr float beyond = std::numeric_limits<float>::max(); // text may stand outside the paper
    return text->RunsBetween(from ? *from : CCA_GPoint{-beyond, -beyond}, to ? *to : CCA_GPoint{beyond, beyond});
}

QList<G_HighLightItem> G_PageHolds::TextBetween(int fromPage, const CCA_GPoint& from, int toPage, const CCA_GPoint& to)
{
    QList<G_HighLightItem> items;
    for (int page = fromPage; page <= toPage; ++page) {
        const bool isWhole = page != fromPage && page != toPage;
        G_HighLightItem item;
        item.pageIndex = page;
        item.runs = isWhole ? AllRuns(page)
                            : RunsBetween(page, page == fromPage ? &from : nullptr, page == toPage ? &to : nullptr);
        if (!item.runs.isEmpty())
            items.append(item);
    }
    return items;
}
