#pragma once

#include <QString>

namespace ofd {

enum class PackageErrorKind {
    None,
    // Opening.
    NotFound,     // no such file, or it went away
    NotReadable,  // no permission, a folder, or the medium fails
    Empty,        // the file has no bytes
    TooBig,       // beyond one of the limits
    NotAPackage,  // no zip archive at all
    NoEntryPoint, // a zip archive without OFD.xml
    Truncated,    // begins as an archive, its end is missing
    Damaged,      // contradicts itself
    Encrypted,    // zip encryption
    Unsupported,  // a compression method or a split archive that we do not read
    // Reading a part.
    NoSuchPart,
    // Reading XML.
    BadXml,
    // Saving.
    DiskFull,
    NotWritable,   // the folder or the file may not be written
    WriteFailed,   // any other failure of the medium
    SourceChanged, // the opened file was changed, replaced or removed by somebody else
    CheckFailed,   // what was written did not read back
    Cancelled,
};

// What went wrong: a kind for code, a sentence for people. Converts to true when there is an error.
struct PackageError
{
    PackageErrorKind kind = PackageErrorKind::None;
    QString text;

    explicit operator bool() const { return kind != PackageErrorKind::None; }
};

} // namespace ofd
