#pragma once

#include "package_error.h"

#include <QByteArray>
#include <QString>

#include <functional>

class QIODevice;

namespace ofd {

struct PartChange;
class TargetFile;

// What the directory has to say about an entry that was written anew.
struct WrittenEntry
{
    qint64 headerOffset = 0; // in the new file
    qint64 compressedSize = 0;
    qint64 size = 0;
    quint32 checksum = 0;
    quint32 dosTime = 0;
    quint16 flags = 0;
    int paddingBytes = 0;       // of the block that only takes room, in the local header
    bool isStored = false;      // as it is, not deflated
    bool hasZip64Sizes = false; // whether the local header has room for big sizes; the directory does the same then
};

// Writes the new bytes of a part into the file, behind a local header with that raw name: deflated, or as they are when
// the change wants that, when they do not shrink, or when they shrink so much that a reader would take them for a bomb.
// `progress` gets the number of bytes just read and may end it with false.
PackageError WriteEntry(TargetFile& file, const PartChange& change, const QByteArray& rawName, bool isNameUtf8,
                        const std::function<bool(qint64)>& progress, WrittenEntry& written);

// Moves the data of the entry that was written last, so that the file goes on at the same place of a memory page as
// `begin` is at: what follows can be copied by whole pages then. A block of the local header takes the room, as in
// archives whose data is aligned. Takes time with the size of the entry.
PackageError AlignEnd(TargetFile& file, const QByteArray& rawName, qint64 begin, WrittenEntry& written);

} // namespace ofd
