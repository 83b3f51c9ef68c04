#pragma once

#include "package_error.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

namespace ofd {

class ByteSource;

// A new file that takes the place of another only when it is complete. It lies in the folder of its target, under a
// name of its own, and is deleted with this object unless it was committed. Every function reports the first failure.
class TargetFile
{
public:
    // Called with the number of bytes just copied; false ends the copying.
    using CopyProgress = std::function<bool(qint64 count)>;

    ~TargetFile();
    // Links in the path are followed, so that the file is replaced and not the link.
    static std::unique_ptr<TargetFile> Create(const QString& targetPath, PackageError* error);

    const QString& GetTemporaryPath() const { return temporaryPath; }
    const QString& GetTargetPath() const { return targetPath; }
    qint64 GetPosition() const { return position; }

    PackageError Write(const char* bytes, qint64 count);
    PackageError Write(const QByteArray& bytes) { return Write(bytes.constData(), bytes.size()); }
    // Overwrites bytes that were written before.
    PackageError WriteAt(qint64 offset, const QByteArray& bytes);
    // Forgets all that was written from there on.
    PackageError Rewind(qint64 offset);
    // Appends a range of the source, inside the kernel where it can.
    PackageError CopyRange(const ByteSource& source, qint64 begin, qint64 end, const CopyProgress& progress);
    // Gives it the owner and permissions of the file that it replaces, and waits until all is on the disk.
    PackageError Finish();
    // Puts it in place of the target.
    PackageError Commit();

private:
    TargetFile() = default;
    PackageError PrepareTemporary();
    PackageError CopyByBlocks(const ByteSource& source, qint64 begin, qint64 end, const CopyProgress& progress);
    void BeginWriteback();

    QString targetPath;
    QString temporaryPath;
    int descriptor = -1;
    qint64 position = 0;
    qint64 writtenBack = 0;   // up to where the disk was told to begin
    bool isReplacing = false; // the target exists
    bool isCommitted = false;
};

} // namespace ofd
