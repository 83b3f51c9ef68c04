// What the outline pane costs with 100,000 entries: filling, expanding and undoing against filling and expanding Qt's
// own tree with the same entries, and following the page.

#include "measuring.h"

#include <outline/outline_commands.h>
#include <outline/outline_operations.h>
#include <outline/outline_page.h>
#include <outline/outline_pane.h>
#include <outline/outline_tree.h>

#include <frame/base/converters.h>
#include <frame/document/memory_document.h>
#include <frame/operation/event_manager.h>
#include <frame/operation/interceptor.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPushButton>
#include <QTreeWidget>
#include <QUndoStack>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int rounds = 9;
constexpr int pageCount = 1000;
// Four levels: 10 chapters of 10 sections of 10 parts of 99 entries each, and the same shape with many more branches.
const std::vector<int> fewBranches{10, 10, 10, 99};
const std::vector<int> manyBranches{18, 17, 17, 18};

double PeakMegabytes()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        double kilobytes = 0;
        if (word == "VmHWM:" && status >> kilobytes)
            return kilobytes / 1024;
    }
    return 0;
}

void AddEntries(G_TreeNode* parent, const std::vector<int>& shape, size_t level, int* count)
{
    if (level >= shape.size())
        return;
    for (int i = 0; i < shape[level]; ++i) {
        auto* item = new G_OutlineItem;
        item->text = GQ_ToCAS(QStringLiteral("%1 An entry of the outline").arg(*count));
        item->title = item->text;
        auto* jump = new G_ActionGoto;
        jump->dest->pageId = 1 + *count % pageCount;
        jump->dest->top = 10;
        item->actions.Add(jump);
        ++*count;
        AddEntries(parent->AddSubNode(i, item), shape, level + 1, count);
    }
}

// Children lists first, then one insert: the cheapest way to fill Qt's tree.
QTreeWidgetItem* BareItem(const G_TreeNode* node)
{
    auto* item = new QTreeWidgetItem(QStringList(GQ_ToQStringFromUtf8(node->NodeText())));
    QList<QTreeWidgetItem*> children;
    children.reserve(node->SubNodeCount());
    for (int i = 0; i < node->SubNodeCount(); ++i)
        children.append(BareItem(node->SubNode(i)));
    if (!children.isEmpty())
        item->addChildren(children);
    return item;
}

// A pane over a document with so many entries.
class Desk
{
public:
    explicit Desk(const std::vector<int>& shape)
    {
        for (int page = 0; page < pageCount; ++page)
            document.AddPage(210, 297);
        document.CreateOutlineRoot();
        AddEntries(document.GetOutlineRoot(), shape, 0, &count);
        view = std::make_unique<G_DocView>(&context, &document);
        view->CreateUndoStack();
        context.SetCurrentDocView(view.get());
        page.SetContext(&context);
        const G_InterceptorScope scope(&document);
        pane.reset(static_cast<NaviOutlineWidget*>(page.CreateWidget(&document)));
        page.SetWidgetFor(&document, pane.get());
        pane->resize(260, 800);
        pane->show();
        QCoreApplication::processEvents();
    }
    G_TreeNode* Root() { return document.GetOutlineRoot(); }
    void Refill()
    {
        pane->UpdateOutline(0);
        pane->tree->doItemsLayout();
    }
    double RefillSeconds()
    {
        return CpuSecondsOf([this] { Refill(); });
    }

    int count = 0;
    MemoryDocument document;

private:
    G_UIContext context;

public:
    std::unique_ptr<G_DocView> view;

private:
    NaviPageOutline page;

public:
    std::unique_ptr<NaviOutlineWidget> pane;
};

class BareTree : public QTreeWidget
{
public:
    explicit BareTree(G_TreeNode* root)
        : root(root)
    {
        resize(260, 800);
        setHeaderHidden(true);
        show();
    }
    void Fill()
    {
        QList<QTreeWidgetItem*> items;
        for (int i = 0; i < root->SubNodeCount(); ++i)
            items.append(BareItem(root->SubNode(i)));
        insertTopLevelItems(0, items);
    }

private:
    G_TreeNode* root; // not owned
};

void MeasureFilling(const char* shapeName, const std::vector<int>& shape)
{
    Desk desk(shape);
    BareTree bare(desk.Root());
    std::vector<Ratio> refills;
    std::vector<Ratio> shown;
    std::vector<Ratio> expansions;
    for (int round = 0; round < rounds; ++round) {
        bare.collapseAll();
        const double emptying = CpuSecondsOf([&] { bare.clear(); });
        // Ours empties the tree first and leaves it expanded; the bare one does neither. Both are laid out later.
        const double refill = CpuSecondsOf([&] { desk.pane->UpdateOutline(0); });
        const double filling = CpuSecondsOf([&] { bare.Fill(); });
        refills.push_back({refill, filling});
        const double layout = CpuSecondsOf([&] { desk.pane->tree->doItemsLayout(); });
        desk.pane->expandButton->setChecked(true);
        desk.pane->ExpandOrCollapseOutline();
        desk.pane->expandButton->setChecked(false);
        const double expanding = CpuSecondsOf([&] {
            desk.pane->ExpandOrCollapseOutline();
            desk.pane->tree->doItemsLayout();
        });
        const double bareExpanding = CpuSecondsOf([&] { bare.expandAll(); });
        expansions.push_back({expanding, bareExpanding});
        shown.push_back({refill + layout, emptying + filling + bareExpanding});
    }
    std::printf("%d entries, %s\n", desk.count, shapeName);
    Print("  refill / filling a bare tree", Median(refills), 1.5);
    Print("  refill and layout / emptying, filling, expanding a bare tree", Median(shown), 1.5);
    Print("  expanding all / a bare tree's", Median(expansions), 1.5);
}

void MeasureUndo(const std::vector<int>& shape)
{
    Desk desk(shape);
    QUndoStack* stack = desk.view->UndoStack();
    // A rename deep in the last branch.
    G_TreeNode* node = desk.Root();
    while (node->SubNodeCount() > 0)
        node = node->SubNode(node->SubNodeCount() - 1);
    const auto record = [&] { return static_cast<G_OutlineItem*>(node->data); };
    auto* older = new G_OutlineItem(*record());
    auto* newer = new G_OutlineItem(*older);
    newer->text = "renamed";
    node->SetNodeData(newer);
    stack->push(new ModifyOutlineCommand(older, newer, node, desk.view->UIContext()));
    std::vector<Ratio> renames;
    for (int round = 0; round < rounds; ++round) {
        const double undo = CpuSecondsOf([&] {
            stack->undo();
            desk.pane->tree->doItemsLayout();
        });
        renames.push_back({undo, desk.RefillSeconds()});
        stack->redo();
    }
    Print("  undo of a rename / the refill alone", Median(renames), 2.5);

    QList<G_TreeNode*> leaves; // ten in each of a hundred branches
    for (int i = 0; leaves.size() < 1000; ++i) {
        G_TreeNode* branch = desk.Root()->SubNode(i / 10 % 10)->SubNode(i % 10)->SubNode(i / 100);
        for (int row = 0; row < 10; ++row)
            leaves.append(branch->SubNode(row));
    }
    std::sort(leaves.begin(), leaves.end(), [&](G_TreeNode* a, G_TreeNode* b) {
        return desk.pane->nodeOrder.value(a) < desk.pane->nodeOrder.value(b);
    });
    stack->push(new BatchDelOutlineCommand(leaves, desk.view->UIContext()));
    std::vector<Ratio> deletions;
    for (int round = 0; round < rounds; ++round) {
        const double undo = CpuSecondsOf([&] {
            stack->undo();
            desk.pane->tree->doItemsLayout();
        });
        deletions.push_back({undo, desk.RefillSeconds()});
        stack->redo();
    }
    Print("  undo of a deletion of 1,000 entries / the refill alone", Median(deletions), 3);
}

void MeasureFollowing(const std::vector<int>& shape)
{
    Desk desk(shape);
    G_EventMgr* events = desk.view->UIContext()->EventMgr();
    emit events->PageChange(desk.view.get()); // swallowed
    double worst = 0;
    for (int page = 0; page < pageCount; page += 37) {
        desk.view->GoToPage(desk.view.get(), page, CCA_GRect(), false);
        const auto follow = [&] { emit events->PageChange(desk.view.get()); };
        worst = std::max(worst, CpuSecondsOf(follow));
    }
    desk.Refill();
    std::printf("%-66s %8.2f ms (at most 10)%s\n", "  following the page, the slowest of 28", worst * 1e3,
                worst > 0.01 ? "  TOO MUCH" : "");
}

void MeasureMemory(const std::vector<int>& shape)
{
    const double before = PeakMegabytes();
    Desk desk(shape);
    const double filled = PeakMegabytes();
    desk.Refill();
    std::printf("  peak memory: %.0f MB with the pane, of which %.0f MB document and pane; %.0f MB after a refill\n",
                filled, filled - before, PeakMegabytes());
}

void BM_Refill(benchmark::State& state)
{
    Desk desk(state.range(0) == 0 ? std::vector<int>{10, 10} : fewBranches);
    for (auto _ : state)
        desk.pane->UpdateOutline(0);
    state.SetItemsProcessed(state.iterations() * desk.count);
}
BENCHMARK(BM_Refill)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    PaintOffscreenByDefault();
    QApplication application(argc, argv);
    MeasureMemory(fewBranches); // first: a peak does not come down again
    MeasureFilling("few branches", fewBranches);
    MeasureFilling("many branches", manyBranches);
    MeasureUndo(fewBranches);
    MeasureFollowing(fewBranches);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
