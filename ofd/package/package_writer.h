#pragma once

#include "package_changes.h"
#include "package_error.h"

#include <QString>

#include <functional>
#include <memory>

namespace ofd {

class Package;

struct SaveOptions
{
    // Saving over the opened file is refused when somebody else changed, replaced or removed it, unless this is set
    // after asking the user.
    bool overwritesForeignChange = false;
    // False leaves it to the system when a new file reaches the disk, as a plain copy does. A file that replaces
    // another is always waited for.
    bool waitsForDisk = true;
    // Called now and then with bytes done and bytes in all; the save is given up when it answers false. May be empty.
    std::function<bool(qint64 done, qint64 total)> progress;
};

struct SaveResult
{
    PackageError error;
    // The new file, open and checked; null on an error. Takes the place of the package that was saved.
    std::unique_ptr<Package> package;

    explicit operator bool() const { return !error; }
};

// Writes the package with the changes to the path, which may be the file it was opened from or another.
//
// A new file is made beside the target, flushed, read back, and renamed over it, so that the target is at every moment
// either the old file or the new one, whole. On a failure the target stays as it was and the new file goes. Entries
// that do not change are copied byte for byte; without any change the file is. An existing target keeps its
// permissions. The source package stays open on the old bytes. Blocks; callable from any thread.
SaveResult SavePackage(const Package& source, const PackageChanges& changes, const QString& targetPath,
                       const SaveOptions& options = {});

// Writes a package of nothing but these parts, which must hold an OFD.xml.
SaveResult CreatePackage(const PackageChanges& parts, const QString& targetPath);

} // namespace ofd
