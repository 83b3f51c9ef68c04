#include "show_panes.h"

#include "main_window.h"

#include <frame/navigation/navigation_page.h>
#include <frame/navigation/pane_maker.h>
#include <frame/view/doc_view.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QHeaderView>
#include <QTextStream>
#include <QTimer>

namespace {

constexpr int MostListedRows = 40;
constexpr int SettleMs = 400;       // pages render in the background
constexpr int FirstPaintMs = 20000; // at most

void Spin(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void WaitForFirstPage(G_DocView* view)
{
    QEventLoop loop;
    QObject::connect(view, &G_DocView::FirstPagePainted, &loop, &QEventLoop::quit);
    QTimer::singleShot(FirstPaintMs, &loop, &QEventLoop::quit);
    loop.exec();
}

void PrintRows(QTextStream& out, const QAbstractItemModel* model, const QModelIndex& parent, int depth, int& left)
{
    for (int row = 0; row < model->rowCount(parent); ++row) {
        if (left-- <= 0)
            return;
        const QModelIndex index = model->index(row, 0, parent);
        out << QString(4 + 2 * depth, QLatin1Char(' ')) << index.data().toString().simplified() << '\n';
        PrintRows(out, model, index, depth + 1, left);
    }
}

void PrintPane(QTextStream& out, Core::G_NavigationPage* page, const QWidget* pane)
{
    out << page->Title() << '\n';
    const QList<QAbstractItemView*> lists = pane->findChildren<QAbstractItemView*>();
    for (const QAbstractItemView* list : lists) {
        const QAbstractItemModel* model = list->model();
        if (!model || qobject_cast<const QHeaderView*>(list)) // a tree's header is a view of the same rows
            continue;
        int left = MostListedRows;
        out << "  " << model->rowCount() << (model->rowCount() == 1 ? " entry" : " entries") << '\n';
        PrintRows(out, model, QModelIndex(), 0, left);
        if (left < 0)
            out << "    ...\n";
    }
}

} // namespace

bool ShowPanes(MainWindow* window, const QString& folder)
{
    QTextStream out(stdout);
    DocumentTab* tab = window->CurrentTab();
    if (!tab)
        return false;
    WaitForFirstPage(tab->View());
    bool isDone = QDir().mkpath(folder);
    const QList<Core::G_NavigationPage*> pages = Core::G_PaneMaker::PagesByPosition();
    for (Core::G_NavigationPage* page : pages) {
        const QWidget* pane = window->PaneMaker()->PaneFor(page, tab->Document());
        if (!pane || !window->ShowPane(page->PaneId().ToString(), true))
            continue;
        Spin(SettleMs);
        const QString path = QDir(folder).filePath(QStringLiteral("window-%1.png").arg(page->objectName()));
        isDone = window->grab().save(path) && isDone;
        PrintPane(out, page, pane);
        out << "  picture: " << QDir::toNativeSeparators(path) << "\n";
    }
    if (pages.isEmpty())
        out << "No panes: the navigation add-on is not loaded.\n";
    return isDone;
}
