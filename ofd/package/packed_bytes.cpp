#include "packed_bytes.h"

namespace ofd {

namespace {

constexpr int WorthPacking = 1 << 20;
constexpr int FastestLevel = 1;

} // namespace

const QByteArray& PackedBytes::Get() const
{
    if (bytes.isNull() && !packed.isNull())
        bytes = qUncompress(packed);
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
    bytes = QByteArray();
}

} // namespace ofd
