#include "byte_source.h"

#include <QCoreApplication>
#include <QFile>
#include <QThreadPool>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ofd {

namespace {

constexpr qint64 LargeFileBytes = qint64(16) << 20;

FileIdentity IdentityOf(const struct stat& facts)
{
    FileIdentity identity;
    identity.device = quint64(facts.st_dev);
    identity.node = quint64(facts.st_ino);
    identity.size = qint64(facts.st_size);
    identity.modifiedNs = qint64(facts.st_mtim.tv_sec) * 1'000'000'000 + facts.st_mtim.tv_nsec;
    return identity;
}

PackageError OpenError(int code)
{
    if (code == ENOENT || code == ENOTDIR)
        return {PackageErrorKind::NotFound, QCoreApplication::translate("OfdPackage", "The file does not exist.")};
    return {PackageErrorKind::NotReadable,
            QCoreApplication::translate("OfdPackage", "The file cannot be read: %1.").arg(qt_error_string(code))};
}

} // namespace

// The last one to close a file that was replaced waits until the file system has freed it, which for a large one takes
// as long as copying half of it. Nobody needs to wait for that.
ByteSource::~ByteSource()
{
    if (descriptor < 0)
        return;
    struct stat facts = {};
    const bool isReplaced = ::fstat(descriptor, &facts) == 0 && facts.st_nlink == 0 && facts.st_size >= LargeFileBytes;
    QThreadPool* const pool = isReplaced ? QThreadPool::globalInstance() : nullptr; // not owned
    if (!pool || !pool->tryStart([closing = descriptor] { ::close(closing); }))
        ::close(descriptor);
}

std::unique_ptr<ByteSource> ByteSource::OpenFile(const QString& path, PackageError* error)
{
    PackageError ignored;
    PackageError& result = error ? *error : ignored;
    result = {};
    std::unique_ptr<ByteSource> source(new ByteSource);
    // Not blocking, because a path may name a pipe that nobody writes to.
    source->descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (source->descriptor < 0) {
        result = OpenError(errno);
        return nullptr;
    }
    struct stat facts = {};
    if (::fstat(source->descriptor, &facts) != 0) {
        result = OpenError(errno);
        return nullptr;
    }
    if (!S_ISREG(facts.st_mode)) {
        result = {PackageErrorKind::NotReadable,
                  QCoreApplication::translate("OfdPackage", "This is no ordinary file.")};
        return nullptr;
    }
    source->identity = IdentityOf(facts);
    source->size = qint64(facts.st_size);
    return source;
}

std::unique_ptr<ByteSource> ByteSource::OpenBytes(const QByteArray& bytes)
{
    std::unique_ptr<ByteSource> source(new ByteSource);
    source->memory = bytes;
    source->size = bytes.size();
    return source;
}

qint64 ByteSource::ReadAt(qint64 offset, char* buffer, qint64 count) const
{
    if (offset < 0 || count < 0 || offset >= size)
        return 0;
    count = std::min(count, size - offset);
    if (descriptor < 0) {
        std::memcpy(buffer, memory.constData() + offset, size_t(count));
        return count;
    }
    qint64 done = 0;
    while (done < count) {
        const ssize_t got = ::pread(descriptor, buffer + done, size_t(count - done), off_t(offset + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return -1;
        if (got == 0)
            break; // somebody made the file shorter while we have it open
        done += got;
    }
    return done;
}

QByteArray ByteSource::ReadAt(qint64 offset, qint64 count) const
{
    if (offset < 0 || count <= 0 || offset >= size)
        return {};
    QByteArray bytes(int(std::min(count, size - offset)), Qt::Uninitialized);
    const qint64 got = ReadAt(offset, bytes.data(), bytes.size());
    bytes.truncate(int(std::max<qint64>(got, 0)));
    return bytes;
}

FileIdentity ByteSource::GetIdentityNow() const
{
    struct stat facts = {};
    if (descriptor < 0 || ::fstat(descriptor, &facts) != 0)
        return {};
    return IdentityOf(facts);
}

bool ByteSource::IdentityOfPath(const QString& path, FileIdentity& identity)
{
    struct stat facts = {};
    if (::stat(QFile::encodeName(path).constData(), &facts) != 0)
        return false;
    identity = IdentityOf(facts);
    return true;
}

} // namespace ofd
