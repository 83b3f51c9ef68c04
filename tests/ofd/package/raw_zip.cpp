#include "raw_zip.h"

#include <QtEndian>

#include <zlib.h>

namespace {

template <typename Number>
void Append(QByteArray& to, Number value)
{
    char bytes[sizeof(Number)];
    qToLittleEndian(value, bytes);
    to.append(bytes, sizeof bytes);
}

struct Placed
{
    quint32 checksum;
    quint32 size;
    quint32 compressedSize;
    quint32 offset;
    quint16 method;
};

QByteArray Zip64Block(std::initializer_list<quint64> values)
{
    QByteArray block;
    Append(block, quint16(1));
    Append(block, quint16(values.size() * 8));
    for (const quint64 value : values)
        Append(block, value);
    return block;
}

QByteArray LocalPart(const RawEntry& entry, const Placed& placed, const QByteArray& packed)
{
    const bool hidesSizes = entry.hasDescriptor;
    QByteArray extra = entry.localExtra;
    if (entry.hasLocalZip64)
        extra += Zip64Block({placed.size, placed.compressedSize});
    const QByteArray name = entry.localName.value_or(entry.name);
    QByteArray bytes;
    Append(bytes, quint32(0x04034b50));
    Append(bytes, quint16(20));
    Append(bytes, quint16(entry.localFlags.value_or(quint16(entry.flags | (entry.hasDescriptor ? 8 : 0)))));
    Append(bytes, placed.method);
    Append(bytes, quint32(0x5a21abcd));
    Append(bytes, hidesSizes ? 0U : placed.checksum);
    Append(bytes, entry.hasLocalZip64 ? 0xffffffffU : hidesSizes ? 0U : placed.compressedSize);
    Append(bytes, entry.hasLocalZip64 ? 0xffffffffU : hidesSizes ? 0U : placed.size);
    Append(bytes, quint16(name.size()));
    Append(bytes, quint16(extra.size()));
    bytes += name + extra + packed;
    if (!entry.hasDescriptor)
        return bytes;
    if (entry.hasDescriptorSignature)
        Append(bytes, quint32(0x08074b50));
    Append(bytes, placed.checksum);
    Append(bytes, placed.compressedSize);
    Append(bytes, placed.size);
    return bytes;
}

QByteArray CentralRecord(const RawEntry& entry, const Placed& placed)
{
    QByteArray extra = entry.centralExtra;
    if (entry.hasCentralZip64)
        extra += Zip64Block({placed.size, placed.compressedSize, placed.offset});
    QByteArray bytes;
    Append(bytes, quint32(0x02014b50));
    Append(bytes, quint16(20));
    Append(bytes, quint16(20));
    Append(bytes, quint16(entry.flags | (entry.hasDescriptor ? 8 : 0)));
    Append(bytes, placed.method);
    Append(bytes, quint32(0x5a21abcd));
    Append(bytes, placed.checksum);
    Append(bytes, entry.hasCentralZip64 ? 0xffffffffU : placed.compressedSize);
    Append(bytes, entry.hasCentralZip64 ? 0xffffffffU : placed.size);
    Append(bytes, quint16(entry.name.size()));
    Append(bytes, quint16(extra.size()));
    Append(bytes, quint16(entry.comment.size()));
    Append(bytes, quint16(0));
    Append(bytes, quint16(0));
    Append(bytes, entry.externalAttributes);
    Append(bytes, entry.hasCentralZip64 ? 0xffffffffU : placed.offset);
    return bytes + entry.name + extra + entry.comment;
}

} // namespace

RawEntry& RawZip::Add(const QByteArray& name, const QByteArray& data)
{
    entries.emplace_back(name, data);
    return entries.back();
}

QByteArray RawZip::Deflate(const QByteArray& data)
{
    z_stream stream = {};
    deflateInit2(&stream, 9, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    QByteArray out(int(deflateBound(&stream, uLong(data.size()))) + 64, 0);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.constData()));
    stream.avail_in = uInt(data.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = uInt(out.size());
    deflate(&stream, Z_FINISH);
    out.truncate(int(stream.total_out));
    deflateEnd(&stream);
    return out;
}

QByteArray RawZip::Build() const
{
    QByteArray bytes = prefix;
    QByteArray central;
    const int shift = countsPrefix ? 0 : prefix.size();
    for (const RawEntry& entry : entries) {
        const QByteArray packed = entry.isStored ? entry.data : Deflate(entry.data);
        Placed placed;
        placed.method = entry.method.value_or(entry.isStored ? 0 : 8);
        placed.checksum = entry.checksum.value_or(
            quint32(crc32(0, reinterpret_cast<const Bytef*>(entry.data.constData()), uInt(entry.data.size()))));
        placed.size = entry.size.value_or(quint32(entry.data.size()));
        placed.compressedSize = entry.compressedSize.value_or(quint32(packed.size()));
        placed.offset = entry.headerOffset.value_or(quint32(bytes.size() - shift));
        bytes += LocalPart(entry, placed, packed);
        central += CentralRecord(entry, placed);
    }
    const quint32 directoryOffset = quint32(bytes.size() - shift);
    bytes += central;
    const quint16 count = entryCount.value_or(quint16(entries.size()));
    if (hasZip64End) {
        const quint64 endOffset = quint64(bytes.size() - shift);
        Append(bytes, quint32(0x06064b50));
        Append(bytes, quint64(44));
        Append(bytes, quint16(45));
        Append(bytes, quint16(45));
        Append(bytes, quint64(0)); // both disks
        Append(bytes, quint64(entries.size()));
        Append(bytes, quint64(entries.size()));
        Append(bytes, quint64(central.size()));
        Append(bytes, quint64(directoryOffset));
        Append(bytes, quint32(0x07064b50));
        Append(bytes, quint32(0));
        Append(bytes, endOffset);
        Append(bytes, quint32(1));
    }
    Append(bytes, quint32(0x06054b50));
    Append(bytes, quint32(0));
    Append(bytes, hasZip64End ? quint16(0xffff) : count);
    Append(bytes, hasZip64End ? quint16(0xffff) : count);
    Append(bytes, hasZip64End ? 0xffffffffU : quint32(central.size()));
    Append(bytes, hasZip64End ? 0xffffffffU : directoryOffset);
    Append(bytes, quint16(comment.size()));
    return bytes + comment + trailing;
}

RawZip SmallRawZip()
{
    RawZip zip;
    zip.Add("Doc_0/", {}).isStored = true;
    zip.Add("Doc_0/Document.xml",
            "<ofd:Document xmlns:ofd=\"http://www.ofdspec.org/2016\"><ofd:Pages/></ofd:Document>");
    zip.Add("OFD.xml",
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ofd:OFD xmlns:ofd=\"http://www.ofdspec.org/2016\" "
            "DocType=\"OFD\"><ofd:DocBody><ofd:DocRoot>Doc_0/Document.xml</ofd:DocRoot></ofd:DocBody></ofd:OFD>");
    zip.Add("Doc_0/Res/image.bin", QByteArray(5000, 'i') + QByteArray("the end"));
    return zip;
}
