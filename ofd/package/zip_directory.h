#pragma once

#include "package_error.h"

#include <QString>

#include <vector>

namespace ofd {

class ByteSource;

// What the central directory says about one entry.
struct ZipEntry
{
    QString name;            // '/' between folders, nothing in front of the first
    qint64 headerOffset = 0; // of the local header, from the start of the file
    qint64 regionEnd = 0;    // where the next entry or the directory begins
    qint64 compressedSize = 0;
    qint64 size = 0;
    qint64 recordOffset = 0; // of its record, from the start of the directory
    quint32 recordSize = 0;
    quint32 checksum = 0;
    quint16 method = 0;
    quint16 flags = 0;
    bool isFolder = false;
    bool isGb18030 = false;       // the name, beyond doubt
    bool isNamedByOthers = false; // the name reads as UTF-8 too, and is GB18030 because another one is
    bool isUsable = true;         // false: lies outside the file or over another entry

    bool IsEncrypted() const { return flags & 1; }
};

// Everything the central directory and the end records say. The local headers are not trusted for anything but the
// place where the data begins, because writers in the wild leave wrong sizes and flags in them.
struct ZipDirectory
{
    std::vector<ZipEntry> entries; // in the order of the directory
    qint64 directoryOffset = 0;    // from the start of the file
    qint64 directorySize = 0;
    qint64 offsetShift = 0; // what to add to stored offsets: the length of a foreign prefix, mostly 0
    qint64 endOffset = 0;   // of the end record
    qint64 endSize = 0;     // with its comment
    bool hasZip64End = false;
    bool hasEncryptedEntries = false;
};

// Reads the directory of an archive; on an error `directory` is of no use.
PackageError ReadZipDirectory(const ByteSource& source, ZipDirectory& directory);

} // namespace ofd
