#pragma once

#include <QtGlobal>

#include <functional>

namespace ofd {

// Memory pages, and the unit in which files are copied without a stop in memory.
constexpr qint64 PageBytes = 4096;

// A range of one file and the place in another where it goes to: all three in whole pages.
struct PageRange
{
    int from = -1; // descriptors, not owned; `to` may be read and written
    int to = -1;
    qint64 fromOffset = 0;
    qint64 toOffset = 0;
    qint64 count = 0;
};

// Called in the calling thread with the number of bytes just copied; false ends the copying.
using CopyProgress = std::function<bool(qint64 count)>;

// Makes both files share the blocks of the range; false, and nothing done, where the file system cannot.
bool ShareBlocks(const PageRange& range);

enum class DirectCopy {
    Done,
    Impossible, // a part of the target's range may be written; whoever copies in another way finds out what is wrong
    Cancelled
};

// Lets the disk take the range from where the system keeps the source in memory, in several requests at a time: no byte
// is copied within memory, and none of the target has to be flushed there later. The target may have its new length
// afterwards, even when copying fails. Impossible, with nothing done, on file systems where it would not be faster.
DirectCopy CopyDirectly(const PageRange& range, const CopyProgress& progress);

} // namespace ofd
