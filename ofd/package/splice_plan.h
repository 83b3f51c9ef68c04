#pragma once

#include "package_changes.h"
#include "zip_directory.h"

#include <QString>

#include <vector>

namespace ofd {

class Package;

// One step of writing the new archive: a range of the old file, or the new data of a part.
struct SpliceStep
{
    qint64 begin = 0; // of the range in the old file
    qint64 end = 0;
    QString partName;                   // set for new data
    const PartChange* change = nullptr; // not owned; null for a range
    int entry = -1;                     // the entry whose place the new data takes; -1 for a new part
};

// What becomes of the old archive: which ranges are copied as they are, which entries are written anew in their old
// place, which go, and what comes at the end. Neighbouring entries that stay form one range.
struct SplicePlan
{
    enum Fate : char { Keep, Drop, Rewrite };

    std::vector<SpliceStep> steps;
    std::vector<Fate> fates; // one an entry of the old directory
    bool changesNothing = true;
    qint64 copiedBytes = 0;
};

SplicePlan MakeSplicePlan(const Package& source, const PackageChanges& changes);

} // namespace ofd
