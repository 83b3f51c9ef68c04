// What the bookmark pane costs against Qt's own tree: filling the list again with 100,000 bookmarks, and painting a
// screen of wrapped rows.

#include "measuring.h"

#include <bookmark/bookmark_page.h>
#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>

#include <frame/base/converters.h>
#include <frame/document/memory_document.h>
#include <frame/operation/interceptor.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QTreeWidget>

#include <functional>
#include <memory>
#include <vector>

namespace {

constexpr int bookmarkCount = 100000;
constexpr double refillBudget = 1.2;
constexpr double repaintBudget = 5;

// The median of pairs measured in turn, so that a slow moment of the machine meets both.
Ratio Compare(const std::function<void()>& ours, const std::function<void()>& bare, int rounds = 9)
{
    std::vector<Ratio> ratios;
    ours();
    bare();
    for (int round = 0; round < rounds; ++round)
        ratios.push_back({CpuSecondsOf(ours), CpuSecondsOf(bare)});
    return Median(ratios);
}

QString NameOf(int row)
{
    return QStringLiteral("%1 Bookmark with a name that goes on for long enough to be wrapped in a pane").arg(row);
}

// A pane over a document with so many bookmarks.
class Desk
{
public:
    explicit Desk(int count)
    {
        document.AddPage(210, 297);
        document.CreateBookmarkRoot();
        G_TreeNode* root = document.GetBookmarkRoot();
        for (int row = 0; row < count; ++row) {
            auto* bookmark = new G_Bookmark;
            bookmark->name = GQ_ToCAS(NameOf(row));
            root->AddSubNode(row, bookmark);
        }
        view = std::make_unique<G_DocView>(&context, &document);
        context.SetCurrentDocView(view.get());
        page.SetContext(&context);
        const G_InterceptorScope scope(&document);
        pane.reset(static_cast<NaviBookmarkWidget*>(page.CreateWidget(&document)));
        pane->resize(260, 800);
        pane->show();
        QCoreApplication::processEvents();
    }

private:
    G_UIContext context;
    MemoryDocument document;
    std::unique_ptr<G_DocView> view;
    NaviBookmark page;

public:
    std::unique_ptr<NaviBookmarkWidget> pane;
};

void MeasureRefill()
{
    Desk desk(bookmarkCount);
    QTreeWidget bare;
    bare.resize(260, 800);
    bare.setHeaderHidden(true);
    bare.show();
    // Ours empties the list, fills it and lays it out. The first ratio does not even count the emptying of the bare
    // one.
    std::vector<QString> names;
    names.reserve(bookmarkCount);
    for (int row = 0; row < bookmarkCount; ++row)
        names.push_back(NameOf(row));
    const auto fillBare = [&] {
        QList<QTreeWidgetItem*> items;
        items.reserve(bookmarkCount);
        for (const QString& name : names)
            items.append(new QTreeWidgetItem(QStringList(name)));
        bare.insertTopLevelItems(0, items);
        bare.doItemsLayout();
    };
    const auto refill = [&] {
        desk.pane->UpdateBookmark(0);
        desk.pane->tree->doItemsLayout();
    };
    std::vector<Ratio> fills;
    std::vector<Ratio> refills;
    for (int round = 0; round < 9; ++round) {
        const double ours = CpuSecondsOf(refill);
        const double clearing = CpuSecondsOf([&] { bare.clear(); });
        const double filling = CpuSecondsOf(fillBare);
        fills.push_back({ours, filling});
        refills.push_back({ours, filling + clearing});
    }
    Print("refill of 100,000 rows / filling a bare tree", Median(fills), refillBudget);
    Print("refill of 100,000 rows / emptying and filling a bare tree", Median(refills), refillBudget);
}

void MeasureRepaint()
{
    Desk desk(200);
    QTreeWidget bare;
    bare.resize(260, 800);
    bare.setHeaderHidden(true);
    bare.setIndentation(0);
    for (int row = 0; row < 200; ++row)
        bare.addTopLevelItem(new QTreeWidgetItem(QStringList(NameOf(row))));
    bare.show();
    QCoreApplication::processEvents();
    QImage canvas(260, 800, QImage::Format_ARGB32_Premultiplied);
    const auto paint = [&canvas](QWidget* viewport, int times) {
        for (int turn = 0; turn < times; ++turn)
            viewport->render(&canvas);
    };
    constexpr int times = 20;
    Print("repaint of a screen of wrapped rows / a bare delegate's",
          Compare([&] { paint(desk.pane->tree->viewport(), times); }, [&] { paint(bare.viewport(), times); }),
          repaintBudget);
    const auto layOut = [](QTreeWidget* tree) {
        for (int turn = 0; turn < times; ++turn)
            tree->doItemsLayout();
    };
    Print("layout of 200 rows, wrapped / bare", Compare([&] { layOut(desk.pane->tree); }, [&] { layOut(&bare); }),
          repaintBudget);
}

void BM_Refill(benchmark::State& state)
{
    Desk desk(static_cast<int>(state.range(0)));
    for (auto _ : state)
        desk.pane->UpdateBookmark(0);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Refill)->Arg(100)->Arg(10000)->Arg(bookmarkCount)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    PaintOffscreenByDefault();
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    MeasureRefill();
    MeasureRepaint();
    return 0;
}
