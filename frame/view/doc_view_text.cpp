#include "doc_view_private.h"
#include "page_holds.h"

#include <frame/document/ig_document.h>

QList<G_HighLightItem> G_DocView::SelectHighLightText() const
{
    return d->selection;
}

void G_DocView::SetHighLightText(const QList<G_HighLightItem>& items)
{
    if (items.isEmpty() && d->selection.isEmpty())
        return;
    d->selection = items;
    UpdateView();
    emit SelectionChanged();
}

void G_DocView::SelectAllText()
{
    QList<G_HighLightItem> items;
    for (int page = 0; page < d->layout.Count(); ++page) {
        G_PageHolds hold(d->document); // one page at a time: a long document must not be in memory as a whole
        G_HighLightItem item;
        item.pageIndex = page;
        item.runs = hold.AllRuns(page);
        if (!item.runs.isEmpty())
            items.append(item);
    }
    SetHighLightText(items);
}

QString G_DocView::SelectedText() const
{
    QStringList lines;
    for (const G_HighLightItem& item : qAsConst(d->selection)) {
        for (const G_TextRun& run : item.runs)
            lines.append(run.text);
    }
    return lines.join(QLatin1Char('\n'));
}
