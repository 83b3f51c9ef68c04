#include "main_window.h"

#include "document_search.h"
#include "find_bar.h"

#include <frame/view/doc_view.h>
#include <frame/view/status_note.h>

#include <QBoxLayout>

void MainWindow::MakeFindBar(QBoxLayout* column)
{
    findBar = new FindBar(column->parentWidget());
    column->addWidget(findBar);
    connect(findBar, &FindBar::Closed, this, [this] {
        if (CurrentTab())
            CurrentTab()->View()->Widget()->setFocus();
    });
}

// What is selected is mostly what is looked for; only a piece of one line can be.
void MainWindow::Find()
{
    if (!CurrentTab())
        return;
    const QList<G_HighLightItem> items = CurrentTab()->View()->SelectHighLightText();
    const bool isOneLine = items.size() == 1 && items.first().runs.size() == 1;
    findBar->Open(isOneLine ? items.first().runs.first().text : QString());
}

void MainWindow::FindNext(bool isForward)
{
    if (CurrentTab())
        findBar->GoOn(isForward);
}

void MainWindow::WatchSearch(DocumentTab* tab)
{
    QWidget* page = tab->View()->Widget();
    connect(tab->Search(), &DocumentSearch::WrappedRound, page, [page](bool isForward) {
        G_StatusNote::For(page)->Show(isForward ? tr("Past the end, on from the beginning")
                                                : tr("Past the beginning, on from the end"));
    });
}
