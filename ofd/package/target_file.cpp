#include "target_file.h"

#include "byte_source.h"
#include "temporary_names.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <vector>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace ofd {

namespace {

constexpr qint64 KernelCopyBytes = qint64(16) << 20;
// Stays in the processor's cache between reading and writing, and lets the system keep what is written in large pieces.
constexpr qint64 BlockBytes = qint64(1) << 20;
constexpr qint64 WritebackBytes = qint64(16) << 20;
constexpr qint64 ReservedBytes = qint64(1) << 20; // ranges from this size on get their place on the disk at once
constexpr qint64 DirectBytes = qint64(8) << 20; // ranges from this size on go to the disk from where they are in memory
constexpr int NameAttempts = 100;
constexpr int MaxLinks = 40; // in a row, as many as the system follows

bool alwaysNamed = false;

PackageError WriteError(int code)
{
    switch (code) {
    case ENOSPC:
    case EDQUOT:
        return {PackageErrorKind::DiskFull, QCoreApplication::translate("OfdPackage", "The disk is full.")};
    case EACCES:
    case EPERM:
    case EROFS:
        return {PackageErrorKind::NotWritable,
                QCoreApplication::translate("OfdPackage", "The folder or the file is write-protected.")};
    case ENOENT:
    case ENOTDIR:
        return {PackageErrorKind::NotWritable, QCoreApplication::translate("OfdPackage", "The folder does not exist.")};
    default:
        return {
            PackageErrorKind::WriteFailed,
            QCoreApplication::translate("OfdPackage", "The file cannot be written: %1.").arg(qt_error_string(code))};
    }
}

PackageError SourceEnded()
{
    return {PackageErrorKind::SourceChanged,
            QCoreApplication::translate("OfdPackage", "The opened file was made shorter by another program.")};
}

PackageError Cancelled()
{
    return {PackageErrorKind::Cancelled, QCoreApplication::translate("OfdPackage", "Saving was cancelled.")};
}

bool MayCopyOtherwise(int code)
{
    return code == EXDEV || code == EINVAL || code == ENOSYS || code == EOPNOTSUPP || code == EPERM || code == EBADF;
}

// Access lists and the like; what the file system refuses is left out.
void CopyExtendedAttributes(const QByteArray& from, int to)
{
    const ssize_t listSize = ::listxattr(from.constData(), nullptr, 0);
    if (listSize <= 0)
        return;
    std::vector<char> names(static_cast<size_t>(listSize));
    const ssize_t got = ::listxattr(from.constData(), names.data(), names.size());
    for (const char* name = names.data(); got > 0 && name < names.data() + got; name += qstrlen(name) + 1) {
        const ssize_t size = ::getxattr(from.constData(), name, nullptr, 0);
        if (size < 0)
            continue;
        std::vector<char> value(static_cast<size_t>(size) + 1);
        if (::getxattr(from.constData(), name, value.data(), size_t(size)) == size)
            (void)!::fsetxattr(to, name, value.data(), size_t(size), 0);
    }
}

QByteArray PathOfDescriptor(int descriptor)
{
    return "/proc/self/fd/" + QByteArray::number(descriptor);
}

} // namespace

TargetFile::~TargetFile()
{
    if (descriptor >= 0)
        ::close(descriptor);
    if (!isCommitted && !temporaryPath.isEmpty())
        ::unlink(QFile::encodeName(temporaryPath).constData());
}

std::unique_ptr<TargetFile> TargetFile::Create(const QString& targetPath, PackageError* error)
{
    std::unique_ptr<TargetFile> file(new TargetFile);
    file->targetPath = FollowLinks(targetPath);
    if (QFileInfo(file->targetPath).isSymLink())
        *error = {PackageErrorKind::NotWritable,
                  QCoreApplication::translate("OfdPackage", "The file name is a link that leads nowhere.")};
    else
        *error = file->PrepareTemporary();
    return *error ? nullptr : std::move(file);
}

// Step by step, since the system follows links to files that exist only; and not by the look of the path, in which ".."
// behind a link means another folder.
QString TargetFile::FollowLinks(const QString& path)
{
    QString at = QFileInfo(path).isAbsolute() ? path : QDir::currentPath() + QLatin1Char('/') + path;
    for (int step = 0; step < MaxLinks; ++step) {
        const int slash = at.lastIndexOf(QLatin1Char('/'));
        const QString folder = QFileInfo(at.left(slash + 1)).canonicalFilePath();
        if (folder.isEmpty()) // there is none
            return at;
        at = (folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/')) + at.mid(slash + 1);
        std::array<char, PATH_MAX> target;
        const ssize_t size = ::readlink(QFile::encodeName(at).constData(), target.data(), target.size());
        if (size <= 0)
            break;
        const QString next = QFile::decodeName(QByteArray(target.data(), int(size)));
        at = QFileInfo(next).isAbsolute() ? next : folder + QLatin1Char('/') + next;
    }
    return at;
}

PackageError TargetFile::PrepareTemporary()
{
    const QByteArray target = QFile::encodeName(targetPath);
    struct stat facts = {};
    isReplacing = ::stat(target.constData(), &facts) == 0;
    if (isReplacing && !S_ISREG(facts.st_mode))
        return {PackageErrorKind::NotWritable,
                QCoreApplication::translate("OfdPackage", "The target is no ordinary file.")};
    if (isReplacing && ::access(target.constData(), W_OK) != 0)
        return WriteError(errno);
    // Nobody else may look into the copy of a protected file; a fresh file gets what the user's mask says.
    mode = isReplacing ? 0600 : 0666;
    const QString folder = QFileInfo(targetPath).absolutePath();
    RemoveLeftovers(QFile::encodeName(folder));
    if (!OpenUnnamed(folder) && !OpenNamed(folder))
        return WriteError(errno);
    (void)::flock(descriptor, LOCK_EX | LOCK_NB); // tells others that its writer lives
    return {};
}

bool TargetFile::OpenUnnamed(const QString& folder)
{
    if (alwaysNamed)
        return false;
    descriptor = ::open(QFile::encodeName(folder).constData(), O_RDWR | O_TMPFILE | O_CLOEXEC, mode);
    // It is read back and named through the process's own folder of descriptors, which a sandbox may lack.
    if (descriptor >= 0 && ::access(PathOfDescriptor(descriptor).constData(), R_OK) != 0) {
        ::close(descriptor);
        descriptor = -1;
    }
    return descriptor >= 0;
}

bool TargetFile::OpenNamed(const QString& folder)
{
    for (int attempt = 0; attempt < NameAttempts; ++attempt) {
        const QString name = NewTemporaryName(folder);
        descriptor = ::open(QFile::encodeName(name).constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (descriptor >= 0) {
            temporaryPath = name;
            return true;
        }
        if (errno != EEXIST)
            break;
    }
    return false;
}

QString TargetFile::GetTemporaryPath() const
{
    return temporaryPath.isEmpty() ? QFile::decodeName(PathOfDescriptor(descriptor)) : temporaryPath;
}

void TargetFile::SetAlwaysNamed(bool isAlwaysNamed)
{
    alwaysNamed = isAlwaysNamed;
}

// A file without a name can take a free name, but not one that is in use, so it gets one of its own to be renamed from.
bool TargetFile::GiveName()
{
    const QByteArray self = PathOfDescriptor(descriptor);
    const QString folder = QFileInfo(targetPath).absolutePath();
    for (int attempt = 0; attempt < NameAttempts; ++attempt) {
        const QString name = NewTemporaryName(folder);
        if (::linkat(AT_FDCWD, self.constData(), AT_FDCWD, QFile::encodeName(name).constData(), AT_SYMLINK_FOLLOW) ==
            0) {
            temporaryPath = name;
            return true;
        }
        if (errno != EEXIST)
            break;
    }
    return false;
}

PackageError TargetFile::Write(const char* bytes, qint64 count)
{
    qint64 done = 0;
    while (done < count) {
        const ssize_t put = ::write(descriptor, bytes + done, size_t(count - done));
        if (put < 0 && errno == EINTR)
            continue;
        if (put < 0)
            return WriteError(errno);
        done += put;
    }
    position += count;
    BeginWriteback();
    return {};
}

PackageError TargetFile::WriteAt(qint64 offset, const QByteArray& bytes)
{
    qint64 done = 0;
    while (done < bytes.size()) {
        const ssize_t put =
            ::pwrite(descriptor, bytes.constData() + done, size_t(bytes.size() - done), off_t(offset + done));
        if (put < 0 && errno == EINTR)
            continue;
        if (put < 0)
            return WriteError(errno);
        done += put;
    }
    return {};
}

PackageError TargetFile::ReadBack(qint64 offset, qint64 count, QByteArray& bytes) const
{
    bytes.resize(int(count));
    qint64 done = 0;
    while (done < count) {
        const ssize_t got = ::pread(descriptor, bytes.data() + done, size_t(count - done), off_t(offset + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return WriteError(got < 0 ? errno : EIO);
        done += got;
    }
    return {};
}

PackageError TargetFile::Rewind(qint64 offset)
{
    if (::ftruncate(descriptor, off_t(offset)) != 0 || ::lseek(descriptor, off_t(offset), SEEK_SET) < 0)
        return WriteError(errno);
    position = offset;
    writtenBack = std::min(writtenBack, offset & ~(PageBytes - 1));
    return {};
}

bool TargetFile::CloneWhole(const ByteSource& source)
{
    if (position != 0 || source.GetDescriptor() < 0 || ::ioctl(descriptor, FICLONE, source.GetDescriptor()) != 0)
        return false;
    struct stat facts = {};
    if (::fstat(descriptor, &facts) != 0 || qint64(facts.st_size) != source.GetSize() ||
        ::lseek(descriptor, 0, SEEK_END) < 0) {
        (void)Rewind(0);
        return false;
    }
    position = writtenBack = source.GetSize();
    return true;
}

PackageError TargetFile::Reserve(qint64 count)
{
    if (count < ReservedBytes || ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, off_t(position), off_t(count)) == 0)
        return {};
    // Where the file system cannot do it, writing finds out whether there is room.
    return errno == ENOSPC || errno == EDQUOT ? WriteError(errno) : PackageError();
}

PackageError TargetFile::CopyRange(const ByteSource& source, qint64 begin, qint64 end, const CopyProgress& progress)
{
    qint64 toldAhead = 0; // of bytes that are copied once more, since the way that they took failed in the end
    const CopyProgress tell = [&](qint64 count) {
        const qint64 again = std::min(count, toldAhead);
        toldAhead -= again;
        return !progress || progress(count - again);
    };
    // Where both files have a byte at the same place of a page whole pages can be copied.
    const bool hasPages = source.GetDescriptor() >= 0 && (begin - position) % PageBytes == 0;
    if (hasPages) {
        const qint64 pages = std::min((begin + PageBytes - 1) & ~(PageBytes - 1), end);
        if (PackageError error = CopyByBlocks(source, begin, pages, tell))
            return error;
        begin = pages;
        if (PackageError error = SharePages(source, begin, end, tell))
            return error;
    }
    // Only now, since what is shared needs no place.
    if (PackageError error = Reserve(end - begin))
        return error;
    if (hasPages) {
        if (PackageError error = CopyPages(source, begin, end, tell, toldAhead))
            return error;
    }
    return CopyByBlocks(source, begin, end, tell);
}

PackageError TargetFile::SharePages(const ByteSource& source, qint64& begin, qint64 end, const CopyProgress& progress)
{
    const PageRange pages{source.GetDescriptor(), descriptor, begin, position, (end - begin) & ~(PageBytes - 1)};
    if (pages.count < DirectBytes || !ShareBlocks(pages))
        return {};
    begin += pages.count;
    if (PackageError error = SkipWritten(pages.count))
        return error;
    return progress(pages.count) ? PackageError() : Cancelled();
}

// Without a stop in memory, when the disk is waited for anyway; or within the kernel. What could not be copied is left:
// `begin` tells where.
PackageError TargetFile::CopyPages(const ByteSource& source, qint64& begin, qint64 end, const CopyProgress& progress,
                                   qint64& toldAhead)
{
    const PageRange pages{source.GetDescriptor(), descriptor, begin, position, (end - begin) & ~(PageBytes - 1)};
    if (pages.count < DirectBytes || !waitsForDisk)
        return CopyInKernel(source, begin, end, progress);
    qint64 told = 0;
    const DirectCopy result = CopyDirectly(pages, [&](qint64 count) {
        told += count;
        return progress(count);
    });
    if (result == DirectCopy::Cancelled)
        return Cancelled();
    if (result != DirectCopy::Done) {
        toldAhead = told;
        return CopyInKernel(source, begin, end, progress);
    }
    begin += pages.count;
    return SkipWritten(pages.count);
}

// What others have put behind the position counts as written.
PackageError TargetFile::SkipWritten(qint64 count)
{
    if (::lseek(descriptor, off_t(position + count), SEEK_SET) < 0)
        return WriteError(errno);
    position += count;
    writtenBack = position & ~(PageBytes - 1);
    return {};
}

PackageError TargetFile::CopyInKernel(const ByteSource& source, qint64& begin, qint64 end, const CopyProgress& progress)
{
    off_t from = off_t(begin);
    while (from < end) {
        const qint64 wanted = std::min<qint64>(KernelCopyBytes, end - from);
        const ssize_t got = ::copy_file_range(source.GetDescriptor(), &from, descriptor, nullptr, size_t(wanted), 0);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 && MayCopyOtherwise(errno))
            break;
        if (got < 0)
            return WriteError(errno);
        if (got == 0)
            break; // also what some file systems answer in place of an error; the block copy finds out
        begin += got;
        position += got;
        BeginWriteback();
        if (progress && !progress(got))
            return Cancelled();
    }
    return {};
}

PackageError TargetFile::CopyByBlocks(const ByteSource& source, qint64 begin, qint64 end, const CopyProgress& progress)
{
    const qint64 blockBytes = std::min(BlockBytes, std::max<qint64>(end - begin, 0));
    const std::unique_ptr<char[]> memory(new char[size_t(blockBytes + 2 * PageBytes)]); // no need to clear it
    char* const firstPage = memory.get() + PageBytes - quintptr(memory.get()) % PageBytes;
    for (qint64 at = begin; at < end;) {
        const qint64 toBoundary = BlockBytes - position % BlockBytes; // so that whole pages are written
        const qint64 wanted = std::min({blockBytes, toBoundary, end - at});
        // At the place in a page where it goes to: writing is far slower from elsewhere, reading is not.
        char* const block = firstPage + position % PageBytes;
        const qint64 got = source.ReadAt(at, block, wanted);
        if (got < 0)
            return {PackageErrorKind::NotReadable,
                    QCoreApplication::translate("OfdPackage", "The opened file cannot be read any more.")};
        if (got == 0)
            return SourceEnded();
        if (PackageError error = Write(block, got))
            return error;
        at += got;
        if (progress && !progress(got))
            return Cancelled();
    }
    return {};
}

// Lets the disk begin early, so that the flush at the end has less to wait for. Whole pages only: the next write would
// have to wait for one that is on its way.
void TargetFile::BeginWriteback()
{
    const qint64 wholePages = position & ~(PageBytes - 1);
    if (!waitsForDisk || wholePages - writtenBack < WritebackBytes)
        return;
    (void)::sync_file_range(descriptor, off_t(writtenBack), off_t(wholePages - writtenBack), SYNC_FILE_RANGE_WRITE);
    writtenBack = wholePages;
}

PackageError TargetFile::Finish()
{
    struct stat facts = {};
    const QByteArray target = QFile::encodeName(targetPath);
    if (isReplacing && ::stat(target.constData(), &facts) == 0) {
        CopyExtendedAttributes(target, descriptor);
        (void)!::fchown(descriptor, facts.st_uid, facts.st_gid); // a user may not give files away
        if (::fchmod(descriptor, facts.st_mode & 07777) != 0)
            return WriteError(errno);
    }
    if (waitsForDisk)
        return ::fsync(descriptor) == 0 ? PackageError() : WriteError(errno);
    // Some file systems, those of a network above all, tell only now what they could not write.
    const int twin = ::dup(descriptor);
    if (twin < 0 || ::close(twin) != 0)
        return WriteError(errno);
    return {};
}

PackageError TargetFile::Commit()
{
    if (temporaryPath.isEmpty() && !GiveName())
        return WriteError(errno);
    if (::rename(QFile::encodeName(temporaryPath).constData(), QFile::encodeName(targetPath).constData()) != 0)
        return WriteError(errno);
    isCommitted = true;
    // The name must survive a power failure as well. Not every file system can do it, and the file is whole anyway.
    const QByteArray folder = QFile::encodeName(QFileInfo(targetPath).absolutePath());
    const int folderDescriptor = !waitsForDisk ? -1 : ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folderDescriptor >= 0) {
        (void)::fsync(folderDescriptor);
        ::close(folderDescriptor);
    }
    return {};
}

} // namespace ofd
