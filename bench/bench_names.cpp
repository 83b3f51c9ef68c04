// What a name for a new bookmark costs, against one walk over the names that are there.

#include "measuring.h"

#include <bookmark/bookmark_names.h>
#include <bookmark/bookmark_node.h>
#include <common/public_method.h>
#include <frame/base/converters.h>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

constexpr int nameCount = 100000;
constexpr int similarCount = 50000;

const QString& BaseName()
{
    static const QString name = QStringLiteral("new bookmark");
    return name;
}

// Half of the names are the base name with its numbers, in among the others.
std::unique_ptr<G_TreeNode> MakeList()
{
    std::unique_ptr<G_TreeNode> root(G_TreeNode::CreateRoot());
    for (int i = 0; i < nameCount; ++i) {
        const int number = i / 2;
        QString name = QStringLiteral("chapter %1").arg(number);
        if (i % 2 == 0 && number < similarCount)
            name = number == 0 ? BaseName() : BaseName() + QStringLiteral("(%1)").arg(number);
        auto* bookmark = new G_Bookmark;
        bookmark->name = GQ_ToCAS(name);
        root->AddSubNode(i, bookmark);
    }
    return root;
}

// Looks at each name once, as any rule must: does it contain the base name?
int WalkOnce(const G_TreeNode* root)
{
    int similar = 0;
    for (int row = 0; row < root->SubNodeCount(); ++row)
        similar += GQ_ToQStringFromUtf8(root->SubNode(row)->NodeText()).contains(BaseName()) ? 1 : 0;
    return similar;
}

void AddRule(benchmark::State& state)
{
    const std::unique_ptr<G_TreeNode> root = MakeList();
    if (WalkOnce(root.get()) != similarCount)
        state.SkipWithError("the list is not what is measured");
    QString name;
    double rule = 0;
    double walk = 0;
    for (auto unused : state) {
        Q_UNUSED(unused)
        rule = BestCpuSecondsOf([&] { name = FreeBookmarkName(BaseName(), root.get()); });
        walk = BestCpuSecondsOf([&] { benchmark::DoNotOptimize(WalkOnce(root.get())); });
    }
    if (name != QStringLiteral("new bookmark(50000)"))
        state.SkipWithError("a wrong name");
    state.counters["rule_ms"] = rule * 1e3;
    state.counters["walk_ms"] = walk * 1e3;
    state.counters["ratio_to_walk"] = rule / walk;
    state.counters["ratio_goal"] = 3;
}
BENCHMARK(AddRule)->Iterations(1)->Unit(benchmark::kMillisecond);

// The rule that outline and tag trees use.
void UniqueNodeName(benchmark::State& state)
{
    const std::unique_ptr<G_TreeNode> root = MakeList();
    double rule = 0;
    double walk = 0;
    for (auto unused : state) {
        Q_UNUSED(unused)
        rule = BestCpuSecondsOf([&] {
            QString name = BaseName();
            PublicMethod::MakeUniqueNodeName(root.get(), name);
            benchmark::DoNotOptimize(name);
        });
        walk = BestCpuSecondsOf([&] { benchmark::DoNotOptimize(WalkOnce(root.get())); });
    }
    state.counters["rule_ms"] = rule * 1e3;
    state.counters["ratio_to_walk"] = rule / walk;
}
BENCHMARK(UniqueNodeName)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
