// Opens a document of a thousand pages in a real view and scrolls it from end to end, fast and slowly, at common and at
// high zoom, and tells how long the main thread stood still at worst and how many bytes the pictures and what was read
// took at most, against their budgets. usage: bench_scroll [FILE.ofd]

#include "measuring.h"

#include <frame/view/doc_view.h>
#include <frame/view/picture_budget.h>
#include <ofd/model/document_store.h>
#include <ofd/ofd_document.h>
#include <ofd/render/page_renderer.h>
#include <tests/support/stall_recorder.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QWidget>

#include <cstdio>

namespace {

constexpr int frameMs = 16;
constexpr double MB = 1024 * 1024;

void Wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

// One way through the document.
class Journey
{
public:
    Journey(G_DocView& view, ofd::DocumentStore& store)
        : view(view)
        , store(store)
    {
    }

    void Scroll(const char* name, float zoom, int pages, int stepPx)
    {
        view.SetZoom(zoom, false);
        view.GoToPage(&view, 0, CCA_GRect(), false);
        Wait(500);
        PictureBudget::ResetPeak();
        mostRead = 0;
        QElapsedTimer clock;
        clock.start();
        StallRecorder stalls;
        stalls.Start();
        const int last = qMin(pages, view.GDocument()->GetPageCount()) - 1;
        int frames = 0;
        for (int before = -1; view.CurrentPageIndex() < last && before != view.VisibleSceneRect().top(); ++frames) {
            before = view.VisibleSceneRect().top();
            stalls.SetLabel(QStringLiteral("page %1").arg(view.CurrentPageIndex() + 1));
            view.ScrollBy(0, stepPx);
            Wait(frameMs);
            const ofd::KeptBytes kept = store.GetKeptBytes();
            mostRead = qMax(mostRead, kept.Sum());
        }
        stalls.Stop();
        std::printf("%-34s %6.1f s, %5d frames: %s\n", name, double(clock.elapsed()) / 1000, frames,
                    qPrintable(stalls.Report()));
        std::printf("%-34s pictures at most %.1f of %.0f MB, read at most %.1f of %.0f MB\n", "",
                    double(PictureBudget::PeakBytes()) / MB, double(PictureBudget::Limit()) / MB, double(mostRead) / MB,
                    double(store.GetKeptBytes().limit) / MB);
        std::fflush(stdout);
    }

private:
    G_DocView& view;
    ofd::DocumentStore& store;
    qint64 mostRead = 0;
};

} // namespace

int main(int argc, char** argv)
{
    PaintOffscreenByDefault();
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString path = argc > 1 ? QString::fromLocal8Bit(argv[1]) : MakeReport(folder, 1000, 3000);

    StallRecorder stalls;
    stalls.Start();
    stalls.SetLabel(QStringLiteral("opening"));
    Wait(50);
    const ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    if (!opened)
        qFatal("%s", qPrintable(opened.error));
    stalls.SetLabel(QStringLiteral("making the view"));
    Wait(0);
    G_DocView view(nullptr, opened.document.get());
    view.Widget()->resize(1200, 900);
    view.Widget()->show();
    Wait(0);
    stalls.SetLabel(QStringLiteral("first pictures and sizes"));
    Wait(1500);
    stalls.Stop();
    std::printf("%-34s %s\n", "opening", qPrintable(stalls.Report()));

    auto* renderer = dynamic_cast<ofd::OfdPageRenderer*>(opened.document->Renderer()); // not owned
    Journey journey(view, renderer->GetStore());
    journey.Scroll("all pages, 700 pixels a frame", 100, 1'000'000, 700);
    journey.Scroll("60 pages, 60 pixels a frame", 100, 60, 60);
    journey.Scroll("10 pages at 500 percent", 500, 10, 80);
    journey.Scroll("all pages at 15 percent", 15, 1'000'000, 200);
    return 0;
}
