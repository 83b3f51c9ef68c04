#pragma once

#include "package_error.h"
#include "zip_directory.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <mutex>
#include <vector>

class QIODevice;

namespace ofd {

class ByteSource;

// The bytes of a part, or why there are none.
struct PartData
{
    QByteArray bytes;
    PackageError error;
    bool hasWrongChecksum = false; // readable, but not what was once packed; reported too
};

// An open container: a map from part names to bytes. Nothing is inflated until it is asked for, and nothing is cached
// here. The file stays open, so reading goes on when it is renamed or replaced. Immutable once open: every function may
// be called from any thread at any time.
class Package
{
public:
    ~Package();

    // Opens the file read-only. Null on failure, with the reason in `error`.
    static std::unique_ptr<Package> Open(const QString& path, PackageError* error = nullptr);
    // Opens a package that lies in memory, as the picture of a seal does.
    static std::unique_ptr<Package> OpenBytes(const QByteArray& bytes, PackageError* error = nullptr);

    // The file it was opened from; empty for a package in memory.
    const QString& GetPath() const { return path; }
    // The part where reading begins: "OFD.xml", or the one root part of that name in another letter case.
    const QString& GetEntryPoint() const { return entryPoint; }
    // Names of all parts, in the order of the directory, without folders, each name once.
    QStringList GetPartNames() const;
    bool HasPart(const QString& name) const { return byName.contains(name); }
    // The one part whose name is equal when ASCII case is ignored; empty when there is none or more than one.
    QString FindIgnoringCase(const QString& name) const;
    // Whether any part has that name in any ASCII case; new parts must not.
    bool HasPartIgnoringCase(const QString& name) const;
    // The one part below the folder ("Doc_0/", "" for the root) with that file name; empty when not exactly one.
    QString FindByFileName(const QString& folder, const QString& fileName) const;
    // Inflated size as the directory tells it, -1 when there is no such part.
    qint64 GetPartSize(const QString& name) const;
    // Whether any entry uses zip encryption. Such parts cannot be read.
    bool HasEncryptedParts() const { return directory.hasEncryptedEntries; }

    // Inflates a part into memory.
    PartData Read(const QString& name) const;
    // Inflates a part into a device that is open for writing; its size is bound by the directory's word only.
    PackageError ReadTo(const QString& name, QIODevice& out) const;

    // For the writer.
    const ZipDirectory& GetDirectory() const { return directory; }
    const ByteSource& GetSource() const { return *source; }
    // Position in GetDirectory().entries, -1 when there is no such part.
    int FindEntry(const QString& name) const { return byName.value(name, -1); }
    // Follows a rename of the file.
    void SetPath(const QString& newPath) { path = newPath; }

private:
    Package();
    static std::unique_ptr<Package> OpenSource(std::unique_ptr<ByteSource> source, PackageError* error);
    void IndexNames();
    PackageError FindEntryPoint();
    PartData ReadQuietly(const QString& name) const;
    const std::vector<int>* FoldedMatches(const QString& name) const;

    std::unique_ptr<ByteSource> source;
    QString path;
    QString entryPoint;
    ZipDirectory directory;
    QHash<QString, int> byName; // part name to entry
    mutable std::once_flag foldedOnce;
    mutable QHash<QString, std::vector<int>> byFoldedName; // made at the first search that ignores case
    mutable std::once_flag fileNamesOnce;
    mutable QHash<QString, std::vector<int>> byFileName; // made at the first search by file name
};

} // namespace ofd
