#include "splice_plan.h"

#include "package.h"

#include <QHash>
#include <QIODevice>

#include <algorithm>

namespace ofd {

namespace {

// Decides for each entry. Of several entries with one name the one that readers use is written anew and the others go;
// an entry that lies over others cannot be written in its place.
void DecideFates(const Package& source, const PackageChanges& changes, SplicePlan& plan)
{
    const std::vector<ZipEntry>& entries = source.GetDirectory().entries;
    plan.fates.assign(entries.size(), SplicePlan::Keep);
    QHash<QString, const PartChange*> byName;
    for (auto it = changes.GetChanges().cbegin(); it != changes.GetChanges().cend(); ++it)
        byName.insert(it.key(), &it.value());
    for (size_t i = 0; i < entries.size() && !byName.isEmpty(); ++i) {
        const ZipEntry& entry = entries[i];
        const PartChange* change = entry.isFolder ? nullptr : byName.value(entry.name); // not owned
        if (!change)
            continue;
        const bool isUsed = source.FindEntry(entry.name) == int(i) && entry.isUsable;
        plan.fates[i] = isUsed && !change->isRemoval ? SplicePlan::Rewrite : SplicePlan::Drop;
        plan.changesNothing = false;
    }
}

void AddRange(SplicePlan& plan, qint64 begin, qint64 end)
{
    if (begin >= end)
        return;
    SpliceStep step;
    step.begin = begin;
    step.end = end;
    plan.steps.push_back(step);
    plan.copiedBytes += end - begin;
}

// Usable entries that do not stay, in the order in which they lie in the file.
std::vector<int> ChangedInFileOrder(const std::vector<ZipEntry>& entries, const SplicePlan& plan)
{
    std::vector<int> changed;
    for (size_t i = 0; i < entries.size(); ++i) {
        if (plan.fates[i] != SplicePlan::Keep && entries[i].isUsable)
            changed.push_back(int(i));
    }
    std::sort(changed.begin(), changed.end(),
              [&entries](int a, int b) { return entries[size_t(a)].headerOffset < entries[size_t(b)].headerOffset; });
    return changed;
}

} // namespace

SplicePlan MakeSplicePlan(const Package& source, const PackageChanges& changes)
{
    SplicePlan plan;
    DecideFates(source, changes, plan);
    const std::vector<ZipEntry>& entries = source.GetDirectory().entries;
    qint64 at = 0;
    for (const int index : ChangedInFileOrder(entries, plan)) {
        const ZipEntry& entry = entries[size_t(index)];
        AddRange(plan, at, entry.headerOffset);
        at = entry.regionEnd;
        if (plan.fates[size_t(index)] != SplicePlan::Rewrite)
            continue;
        SpliceStep step;
        step.partName = entry.name;
        step.change = &*changes.GetChanges().constFind(entry.name);
        step.entry = index;
        plan.steps.push_back(step);
    }
    AddRange(plan, at, source.GetDirectory().directoryOffset);
    for (auto it = changes.GetChanges().cbegin(); it != changes.GetChanges().cend(); ++it) {
        const int index = source.FindEntry(it.key());
        const bool isPlaced = index >= 0 && plan.fates[size_t(index)] == SplicePlan::Rewrite;
        if (it->isRemoval || isPlaced)
            continue;
        SpliceStep step;
        step.partName = it.key();
        step.change = &it.value();
        plan.steps.push_back(step);
        plan.changesNothing = false;
    }
    return plan;
}

} // namespace ofd
