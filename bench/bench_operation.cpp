// What one action costs the operation road, against its budget, and what the node tree costs against a plain vector.

#include "measuring.h"

#include <frame/document/payloads.h>
#include <frame/operation/interceptor.h>
#include <frame/operation/operation.h>
#include <frame/operation/registry.h>

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

namespace {

constexpr double budgetUs = 5;
constexpr int nodeCount = 100000;

// The six panes' interceptors of one document.
const char* const interceptedNames[] = {
    "d_customtagadd",
    "d_customtagaddchild",
    "d_customtagaddroot",
    "d_customtagrename",
    "d_customtagdelete",
    "d_customtagexport",
    "d_customtagimport",
    "d_customtagexpand",
    "d_customtagcollapse",
    "d_customtagdeleteall",
    "d_customtagmove",
    "d_customtagassociate",
    "d_attachmentexport",
    "d_attachmentdelete",
    "d_attachmentopen",
    "d_attachmentdeleteall",
    "attachment_add",
    "d_annotationdelete",
    "d_annotationedit",
    "annotselect",
    "clearscreen",
    "penannotstatus",
    "d_bookmarkresetposition",
    "d_bookmarkrename",
    "d_bookmarkwrap",
    "d_bookmarkdelete",
    "d_bookmarkdeleteall",
    "d_outline_resetpos",
    "d_outline_add",
    "d_outline_addsub",
    "d_outline_rename",
    "d_outline_wordwrap",
    "d_outline_expandsub",
    "d_outline_del",
    "d_outline_delall",
    "d_outline_batchadd",
    "d_outline_expandorcollapse",
    "vn_layers",
    "vn_annotation",
    "vn_bookmark",
};

class NamedInterceptor : public G_OperationInterceptor
{
public:
    explicit NamedInterceptor(const char* name)
        : name(name)
    {
    }
    bool OperationFilter(G_Operation* op) override { return OperationNameMatches(op, name); }

private:
    const char* name;
};

class Nothing : public G_Operation
{
public:
    explicit Nothing(const char* name = "d_bookmarkwrap")
        : name(name)
    {
    }
    G_Operation* Clone() const override
    {
        auto* copy = new Nothing(name);
        copy->CopyFrom(this);
        return copy;
    }
    const char* Name() const override { return name; }
    bool DoAction() override { return true; }

private:
    const char* name;
};

class OpenHost : public G_OperationHost
{
public:
    bool MayRun(G_Operation*) override { return true; }
    void RefusedByRights(G_Operation*) override {}
    void BeforePerform(IG_Document*) override {}
};

IG_Document* Document(int number)
{
    static char places[64];
    return reinterpret_cast<IG_Document*>(&places[number]);
}

using Panes = std::vector<std::unique_ptr<NamedInterceptor>>;

Panes MakePanes(int documents)
{
    Panes panes;
    for (int document = 1; document <= documents; ++document) {
        const G_InterceptorScope scope(Document(document));
        for (const char* name : interceptedNames)
            panes.push_back(std::make_unique<NamedInterceptor>(name));
    }
    return panes;
}

void SetBudget(benchmark::State& state, double seconds)
{
    const double perActionUs = seconds / static_cast<double>(state.iterations()) * 1e6;
    state.counters["us_per_action"] = perActionUs;
    state.counters["ratio_to_5us"] = perActionUs / budgetUs;
}

// One action on a copy that exists.
void PerformNothing(benchmark::State& state)
{
    const Panes panes = MakePanes(static_cast<int>(state.range(0)));
    Nothing prototype;
    prototype.RegisterToGlobal();
    OpenHost host;
    G_WorkingCopies copies(&host, nullptr);
    G_Operation* const op = copies.Make("d_bookmarkwrap", nullptr, Document(1));
    const double seconds = CpuSecondsOf([&] {
        for (auto unused : state) {
            Q_UNUSED(unused)
            benchmark::DoNotOptimize(op->PerformAction());
        }
    });
    state.counters["interceptors"] = static_cast<double>(panes.size());
    SetBudget(state, seconds);
}
BENCHMARK(PerformNothing)->ArgName("documents")->Arg(1)->Arg(5);

// The whole life of a copy: made by name, performed, handed back, freed by the event loop.
void MakePerformAndFree(benchmark::State& state)
{
    const Panes panes = MakePanes(static_cast<int>(state.range(0)));
    Nothing prototype;
    prototype.RegisterToGlobal();
    OpenHost host;
    G_WorkingCopies copies(&host, nullptr);
    const double seconds = CpuSecondsOf([&] {
        for (auto unused : state) {
            Q_UNUSED(unused)
            G_Operation* const op = copies.Make("d_bookmarkwrap", nullptr, Document(1));
            op->PerformAction();
            op->DeleteLater();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::sendPostedEvents(); // the filtered call alone leaves its places in the queue behind
        }
    });
    if (copies.Count() != 0)
        state.SkipWithError("copies were not freed");
    SetBudget(state, seconds);
}
BENCHMARK(MakePerformAndFree)->ArgName("documents")->Arg(1)->Arg(5);

// A record that is cheap to make.
struct Record : G_NodeData
{
    explicit Record(const CCA_String& name)
        : name(name)
    {
    }
    CCA_String NodeText() const override { return name; }
    CCA_String name;
    int pageIndex = 0;
    float rectMm[4] = {};
    float zoom = 1;
};

std::unique_ptr<G_TreeNode> MakeTree(const std::vector<CCA_String>& names)
{
    std::unique_ptr<G_TreeNode> root(G_TreeNode::CreateRoot());
    for (const CCA_String& name : names)
        root->AddSubNode(root->SubNodeCount(), new Record(name));
    return root;
}

const std::vector<CCA_String>& Names()
{
    static const std::vector<CCA_String> names = [] {
        std::vector<CCA_String> made;
        for (int i = 0; i < nodeCount; ++i)
            made.push_back("entry " + QByteArray::number(i));
        return made;
    }();
    return names;
}

// Runs both works alternately and takes the best of each, so that a busy moment of the machine hits neither alone.
// `clear` runs ahead of each, outside the time.
template <typename Mine, typename Bare, typename Clear>
void Compare(benchmark::State& state, Mine mine, Bare bare, Clear clear)
{
    double bestMine = std::numeric_limits<double>::max();
    double bestBare = bestMine;
    for (auto unused : state) {
        Q_UNUSED(unused)
        clear();
        bestBare = std::min(bestBare, CpuSecondsOf(bare));
        bestMine = std::min(bestMine, CpuSecondsOf(mine));
    }
    state.counters["mine_ms"] = bestMine * 1e3;
    state.counters["bare_ms"] = bestBare * 1e3;
    state.counters["ratio"] = bestMine / bestBare;
}

// 100,000 nodes against a vector of the same records; the goal is at most 3.
void BuildBookmarks(benchmark::State& state)
{
    const std::vector<CCA_String>& names = Names();
    std::unique_ptr<G_TreeNode> root;
    std::vector<G_Bookmark> records;
    const auto buildTree = [&] {
        root.reset(G_TreeNode::CreateRoot());
        for (const CCA_String& name : names) {
            auto* bookmark = new G_Bookmark;
            bookmark->name = name;
            root->AddSubNode(root->SubNodeCount(), bookmark);
        }
    };
    const auto fillVector = [&] {
        records.reserve(names.size()); // growing would copy the destinations over and over
        for (const CCA_String& name : names) {
            records.emplace_back();
            records.back().name = name;
        }
    };
    Compare(state, buildTree, fillVector, [&] {
        root.reset();
        records = std::vector<G_Bookmark>();
    });
    if (root->SubNodeCount() != static_cast<int>(records.size()))
        state.SkipWithError("the tree and the vector differ");
}
BENCHMARK(BuildBookmarks)->Unit(benchmark::kMillisecond)->Iterations(20);

// The same with a record that costs next to nothing: what the nodes themselves cost.
void BuildLightNodes(benchmark::State& state)
{
    const std::vector<CCA_String>& names = Names();
    std::unique_ptr<G_TreeNode> root;
    std::vector<Record> records;
    const auto fillVector = [&] {
        for (const CCA_String& name : names)
            records.emplace_back(name);
    };
    Compare(
        state, [&] { root = MakeTree(names); }, fillVector,
        [&] {
            root.reset();
            records = std::vector<Record>();
        });
}
BENCHMARK(BuildLightNodes)->Unit(benchmark::kMillisecond)->Iterations(20);

// SubNode over all rows against indexing a vector: constant time each.
void WalkByRow(benchmark::State& state)
{
    const std::unique_ptr<G_TreeNode> root = MakeTree(Names());
    std::vector<std::unique_ptr<Record>> records;
    for (const CCA_String& name : Names())
        records.push_back(std::make_unique<Record>(name));
    Compare(
        state,
        [&] {
            int sum = 0;
            for (int i = 0; i < root->SubNodeCount(); ++i)
                sum += root->SubNode(i)->index;
            benchmark::DoNotOptimize(sum);
        },
        [&] {
            int sum = 0;
            for (int i = 0; i < static_cast<int>(records.size()); ++i)
                sum += records[static_cast<size_t>(i)]->pageIndex;
            benchmark::DoNotOptimize(sum);
        },
        [] {});
}
BENCHMARK(WalkByRow)->Unit(benchmark::kMillisecond)->Iterations(50);

// One SubNode in a tree of the given size: the time must not grow with it.
void SubNodeAt(benchmark::State& state)
{
    const std::unique_ptr<G_TreeNode> root(G_TreeNode::CreateRoot());
    for (int i = 0; i < state.range(0); ++i)
        root->AddSubNode(i, nullptr);
    int row = 0;
    const int count = root->SubNodeCount();
    for (auto unused : state) {
        Q_UNUSED(unused)
        row = (row + 7919) % count;
        benchmark::DoNotOptimize(root->SubNode(row));
    }
}
BENCHMARK(SubNodeAt)->Arg(100)->Arg(10000)->Arg(100000);

// Finding a text among all nodes against the same walk over the plain records.
void FindByText(benchmark::State& state)
{
    const std::unique_ptr<G_TreeNode> root = MakeTree(Names());
    std::vector<Record> records;
    for (const CCA_String& name : Names())
        records.emplace_back(name);
    const CCA_String last = Names().back();
    Compare(
        state,
        [&] {
            G_TreeNode* found = nullptr;
            for (int i = 0; !found && i < root->SubNodeCount(); ++i) {
                if (root->SubNode(i)->NodeText() == last)
                    found = root->SubNode(i);
            }
            benchmark::DoNotOptimize(found);
        },
        [&] {
            const Record* found = nullptr;
            for (const Record& record : records) {
                if (record.NodeText() == last) {
                    found = &record;
                    break;
                }
            }
            benchmark::DoNotOptimize(found);
        },
        [] {});
}
BENCHMARK(FindByText)->Unit(benchmark::kMillisecond)->Iterations(50);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
