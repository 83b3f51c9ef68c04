#pragma once

#include "package_error.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace ofd {

// Tells one file, and one state of it, from another.
struct FileIdentity
{
    quint64 device = 0;
    quint64 node = 0;
    qint64 size = 0;
    qint64 modifiedNs = 0;

    bool operator==(const FileIdentity& other) const
    {
        return device == other.device && node == other.node && size == other.size && modifiedNs == other.modifiedNs;
    }
    bool operator!=(const FileIdentity& other) const { return !(*this == other); }
};

// Bytes that can be read at any place from any thread: a file that is kept open, or a block of memory.
class ByteSource
{
public:
    ~ByteSource();
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    static std::unique_ptr<ByteSource> OpenFile(const QString& path, PackageError* error);
    static std::unique_ptr<ByteSource> OpenBytes(const QByteArray& bytes);

    qint64 GetSize() const { return size; }
    // Reads at most `count` bytes; how many came (fewer only at the end), -1 when the medium fails.
    qint64 ReadAt(qint64 offset, char* buffer, qint64 count) const;
    // Exactly these bytes, or fewer when they are not there.
    QByteArray ReadAt(qint64 offset, qint64 count) const;
    // -1 for memory.
    int GetDescriptor() const { return descriptor; }
    // The file as it was when it was opened, and as the open descriptor sees it now.
    const FileIdentity& GetIdentityAtOpening() const { return identity; }
    FileIdentity GetIdentityNow() const;
    // The file that has the name now; false when there is none.
    static bool IdentityOfPath(const QString& path, FileIdentity& identity);

private:
    ByteSource() = default;

    int descriptor = -1;
    qint64 size = 0;
    QByteArray memory;
    FileIdentity identity;
};

} // namespace ofd
