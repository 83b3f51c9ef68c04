#include "packed_bytes.h"

#include <new>

namespace ofd {

namespace {

constexpr int WorthPacking = 1 << 20;
constexpr int FastestLevel = 1;

} // namespace

const QByteArray& PackedBytes::Get() const
{
    if (bytes.isNull() && !packed.isNull()) {
        bytes = qUncompress(packed);
        if (bytes.isNull())
            throw std::bad_alloc(); // nothing else makes it fail, and going on with none would lose the part
    }
    return bytes;
}

void PackedBytes::Pack()
{
    if (bytes.size() < WorthPacking)
        return;
    if (packed.isNull()) {
        packed = qCompress(bytes, FastestLevel);
        packed.squeeze();
    }
    if (packed.isEmpty())
        return; // no memory for it: they stay as they are
    bytes = QByteArray();
}

} // namespace ofd
