#pragma once

#include <QByteArray>

namespace ofd {

// Bytes that are needed again only when a file is saved: many of them can stand compressed in memory until then. What
// is compressed is the copy that we hold, so it comes back whatever becomes of the file. Belongs to one thread at a
// time.
class PackedBytes
{
public:
    explicit PackedBytes(const QByteArray& bytes)
        : bytes(bytes)
    {
    }

    // Valid until Pack. Throws std::bad_alloc where there is no memory to unpack them.
    const QByteArray& Get() const;
    // Compresses them, if they are many.
    void Pack();

private:
    mutable QByteArray bytes; // null while they are packed
    QByteArray packed;        // null until the first Pack
};

} // namespace ofd
