#pragma once

#include "direct_copy.h"
#include "package_error.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace ofd {

class ByteSource;

// A new file that takes the place of another only when it is complete. It lies on the disk of its target and is gone
// with this object unless it was committed. Where the file system can, it has no name until then, so that a process
// that is killed leaves nothing behind; elsewhere it has one in the target's folder, and a later save clears up after a
// process that was killed. Every function reports the first failure.
class TargetFile
{
public:
    ~TargetFile();
    // Links in the path are followed, so that the file is replaced and not the link.
    static std::unique_ptr<TargetFile> Create(const QString& targetPath, PackageError* error);
    // Where a path leads when its links are followed, whether or not there is a file yet.
    static QString FollowLinks(const QString& path);

    // For tests: whether new files get a name at once, as on file systems without unnamed files.
    static void SetAlwaysNamed(bool isAlwaysNamed);

    // Where this process can read it before it is committed.
    QString GetTemporaryPath() const;
    const QString& GetTargetPath() const { return targetPath; }
    qint64 GetPosition() const { return position; }

    PackageError Write(const char* bytes, qint64 count);
    PackageError Write(const QByteArray& bytes) { return Write(bytes.constData(), bytes.size()); }
    // Overwrites bytes that were written before.
    PackageError WriteAt(qint64 offset, const QByteArray& bytes);
    // Bytes that were written before.
    PackageError ReadBack(qint64 offset, qint64 count, QByteArray& bytes) const;
    // Forgets all that was written from there on.
    PackageError Rewind(qint64 offset);
    // Makes the still empty file share the blocks of the whole source; false, and nothing done, where the file system
    // cannot.
    bool CloneWhole(const ByteSource& source);
    // Appends a range of the source. Large ranges that share no blocks get their place on the disk first, so that a
    // full disk is found out before it is full. Fastest by far where GetPosition() and `begin` are the same place of a
    // page.
    PackageError CopyRange(const ByteSource& source, qint64 begin, qint64 end, const CopyProgress& progress);
    // Leaves it to the system when the bytes reach the disk, as a plain copy does; a file that replaces another is
    // waited for all the same, since a power failure could leave neither of the two.
    void LeaveFlushToSystem() { waitsForDisk = isReplacing; }
    // Gives it the owner and permissions of the file that it replaces, and waits until all is on the disk, unless that
    // is left to the system.
    PackageError Finish();
    // Puts it in place of the target.
    PackageError Commit();

private:
    TargetFile() = default;
    PackageError PrepareTemporary();
    bool OpenUnnamed(const QString& folder);
    bool OpenNamed(const QString& folder);
    bool GiveName();
    PackageError SharePages(const ByteSource& source, qint64& begin, qint64 end, const CopyProgress& progress);
    PackageError CopyPages(const ByteSource& source, qint64& begin, qint64 end, const CopyProgress& progress,
                           qint64& toldAhead);
    PackageError CopyInKernel(const ByteSource& source, qint64& begin, qint64 end, const CopyProgress& progress);
    PackageError CopyByBlocks(const ByteSource& source, qint64 begin, qint64 end, const CopyProgress& progress);
    PackageError Reserve(qint64 count);
    PackageError SkipWritten(qint64 count);
    void BeginWriteback();

    QString targetPath;
    QString temporaryPath; // empty while it has no name
    int descriptor = -1;
    qint64 position = 0;
    qint64 writtenBack = 0;   // up to where the disk was told to begin
    unsigned mode = 0600;     // of a new file, before the user's mask
    bool isReplacing = false; // the target exists
    bool waitsForDisk = true;
    bool isCommitted = false;
};

} // namespace ofd
