#pragma once

#include "entry_writer.h"
#include "splice_plan.h"

#include <QByteArray>

#include <vector>

namespace ofd {

struct ZipDirectory;

// A range of the old file and where it went.
struct MovedRange
{
    qint64 begin = 0;
    qint64 end = 0;
    qint64 newBegin = 0;
};

// An entry written anew: in the place of an old one, or (-1) a new one.
struct PlacedEntry
{
    int entry = -1;
    QByteArray rawName;
    WrittenEntry written;
};

// All that decides what the new directory looks like.
struct NewLayout
{
    std::vector<MovedRange> ranges;  // by `begin`
    std::vector<PlacedEntry> placed; // in the order in which they were written
    qint64 directoryOffset = 0;      // in the new file
};

// The central directory and the end records of the new file: the old records with nothing changed but offsets, those of
// rewritten entries made anew, new ones at the end, and the old end record with its comment. `oldRecords` and `oldEnd`
// are the bytes of the old file; empty for a file made from nothing.
QByteArray MakeDirectory(const ZipDirectory& old, const QByteArray& oldRecords, const QByteArray& oldEnd,
                         const std::vector<SplicePlan::Fate>& fates, const NewLayout& layout);

} // namespace ofd
