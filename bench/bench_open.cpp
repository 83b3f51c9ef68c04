// What it takes from a file's name to its first painted page, for files of 10 to 10,000 pages: it should hardly matter
// how many there are.

#include "measuring.h"

#include <frame/view/doc_view.h>
#include <ofd/ofd_document.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QWidget>

#include <cstdio>
#include <vector>

namespace {

constexpr double growthBudget = 2; // from 10 to 1,000 pages
constexpr int rounds = 15;

struct Times
{
    double openMs = 0;  // the document
    double viewMs = 0;  // the view over it
    double wholeMs = 0; // to the first painted page
};

Times OpenToFirstPage(const QString& path)
{
    Times times;
    QElapsedTimer clock;
    clock.start();
    const ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    if (!opened)
        qFatal("%s", qPrintable(opened.error));
    times.openMs = double(clock.nsecsElapsed()) / 1e6;
    G_DocView view(nullptr, opened.document.get());
    view.Widget()->resize(1000, 800);
    QEventLoop loop;
    QObject::connect(&view, &G_DocView::FirstPagePainted, &loop, &QEventLoop::quit);
    view.Widget()->show();
    times.viewMs = double(clock.nsecsElapsed()) / 1e6 - times.openMs;
    loop.exec();
    times.wholeMs = double(clock.nsecsElapsed()) / 1e6;
    return times;
}

} // namespace

int main(int argc, char** argv)
{
    PaintOffscreenByDefault();
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    std::vector<QString> paths;
    for (const int pages : {10, 100, 1000, 10000})
        paths.push_back(MakeReport(folder, pages, 10));
    std::vector<std::vector<double>> open(4), view(4), whole(4);
    OpenToFirstPage(paths.front()); // finds the fonts
    for (int round = 0; round < rounds; ++round) {
        for (size_t i = 0; i < paths.size(); ++i) {
            const Times times = OpenToFirstPage(paths[i]);
            open[i].push_back(times.openMs);
            view[i].push_back(times.viewMs);
            whole[i].push_back(times.wholeMs);
        }
    }
    const double base = Median(whole.front());
    int pages = 10;
    for (size_t i = 0; i < paths.size(); ++i, pages *= 10) {
        std::printf("%6d pages: document %7.2f ms, view %7.2f ms, first page after %7.2f ms, %5.2f times 10 pages%s\n",
                    pages, Median(open[i]), Median(view[i]), Median(whole[i]), Median(whole[i]) / base,
                    pages == 1000 ? qPrintable(QStringLiteral(" (budget %1)").arg(growthBudget)) : "");
    }
    return 0;
}
