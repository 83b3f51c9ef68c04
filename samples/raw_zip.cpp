#include "raw_zip.h"

#include <algorithm>

#include <zlib.h>

namespace samples {

namespace {

constexpr quint16 kTime = (8 << 11) | (30 << 5), kDate = ((2024 - 1980) << 9) | (5 << 5) | 20;

class Writer
{
public:
    Writer& U16(quint16 value)
    {
        bytes.append(char(value & 0xFF));
        bytes.append(char(value >> 8));
        return *this;
    }
    Writer& U32(quint32 value) { return U16(quint16(value & 0xFFFF)).U16(quint16(value >> 16)); }
    Writer& U64(quint64 value) { return U32(quint32(value & 0xFFFFFFFF)).U32(quint32(value >> 32)); }
    Writer& Raw(const QByteArray& more)
    {
        bytes.append(more);
        return *this;
    }
    QByteArray bytes;
};

// What is known of an entry once it is packed.
struct Packed
{
    QByteArray data;
    quint32 crc = 0;
    quint32 size = 0;
    quint32 offset = 0;
};

Packed Pack(const RawEntry& entry)
{
    Packed packed;
    packed.data = !entry.packed.isEmpty() ? entry.packed : entry.isStored ? entry.data : Deflated(entry.data);
    packed.crc = quint32(crc32(0, reinterpret_cast<const Bytef*>(entry.data.constData()), uInt(entry.data.size())));
    packed.size = entry.declaredSize >= 0 ? quint32(entry.declaredSize) : quint32(entry.data.size());
    return packed;
}

void WriteLocal(Writer& out, const RawEntry& entry, const Packed& packed)
{
    Writer extra;
    if (entry.hasLocalZip64)
        extra.U16(1).U16(16).U64(packed.size).U64(quint64(packed.data.size()));
    extra.Raw(entry.extra);
    const auto packedSize = quint32(packed.data.size());
    const quint16 flags = quint16(entry.localFlags | (entry.hasDescriptor ? 8 : 0));
    out.U32(0x04034B50).U16(entry.hasLocalZip64 ? 45 : 20).U16(flags).U16(entry.isStored ? 0 : 8).U16(kTime).U16(kDate);
    if (entry.hasDescriptor)
        out.U32(0).U32(0).U32(0);
    else if (entry.hasLocalZip64)
        out.U32(packed.crc).U32(0xFFFFFFFF).U32(0xFFFFFFFF);
    else
        out.U32(packed.crc).U32(packedSize).U32(packed.size);
    out.U16(quint16(entry.name.size()))
        .U16(quint16(extra.bytes.size()))
        .Raw(entry.name)
        .Raw(extra.bytes)
        .Raw(packed.data);
    if (entry.hasDescriptor)
        out.U32(0x08074B50).U32(packed.crc).U32(packedSize).U32(packed.size);
}

void WriteCentral(Writer& out, const RawEntry& entry, const Packed& packed)
{
    const quint16 flags = quint16(entry.centralFlags | (entry.hasDescriptor ? 8 : 0));
    const bool isFolder = entry.name.endsWith('/');
    out.U32(0x02014B50).U16(20).U16(20).U16(flags).U16(entry.isStored ? 0 : 8).U16(kTime).U16(kDate);
    out.U32(packed.crc).U32(quint32(packed.data.size())).U32(packed.size);
    out.U16(quint16(entry.name.size())).U16(quint16(entry.extra.size())).U16(0).U16(0).U16(0);
    out.U32(isFolder ? 0x10 : 0).U32(packed.offset).Raw(entry.name).Raw(entry.extra);
}

} // namespace

QByteArray WithChangedEntries(const Package& package, const std::function<void(RawEntry&)>& change)
{
    RawZip zip(package);
    std::for_each(zip.entries.begin(), zip.entries.end(), change);
    return zip.Bytes();
}

QByteArray Deflated(const QByteArray& data)
{
    // qCompress writes four bytes of size, the two of the zlib head, the data, and four of a check sum.
    return qCompress(data, 9).mid(6).chopped(4);
}

QByteArray PackedBytes(const Package& package)
{
    return RawZip(package).Bytes();
}

RawZip::RawZip(const Package& package)
{
    for (const Part& part : package.Parts()) {
        RawEntry entry;
        entry.name = part.name.toUtf8();
        entry.data = part.data;
        entry.isStored = part.isStored || part.data.isEmpty();
        entries.push_back(entry);
    }
}

QByteArray RawZip::Bytes() const
{
    Writer out, central;
    for (const RawEntry& entry : entries) {
        Packed packed = Pack(entry);
        packed.offset = quint32(out.bytes.size());
        WriteLocal(out, entry, packed);
        WriteCentral(central, entry, packed);
    }
    const auto start = quint32(out.bytes.size()), size = quint32(central.bytes.size());
    const auto count = quint16(entries.size());
    out.Raw(central.bytes).U32(0x06054B50).U16(0).U16(0).U16(count).U16(count).U32(size).U32(start);
    return out.U16(quint16(comment.size())).Raw(comment).bytes;
}

} // namespace samples
