#include "part_inflater.h"

#include "byte_source.h"
#include "limits.h"
#include "zip_directory.h"
#include "zip_records.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include <zlib.h>

namespace ofd {

namespace {

constexpr qint64 ChunkBytes = 256 * 1024;
constexpr qint64 FirstPieceBytes = 4 * 1024; // who looks at the beginning of a part alone need not inflate all of it

PackageError DamagedPart(const ZipEntry& entry)
{
    return {PackageErrorKind::Damaged,
            QCoreApplication::translate("OfdPackage", "The part \"%1\" is damaged.").arg(entry.name)};
}

PackageError TooBigPart(const ZipEntry& entry)
{
    return {PackageErrorKind::TooBig,
            QCoreApplication::translate("OfdPackage", "The part \"%1\" is too big when unpacked.").arg(entry.name)};
}

// Reads the compressed bytes of one entry from front to back.
class EntryData
{
public:
    EntryData(const ByteSource& source, const ZipEntry& entry)
        : source(source)
        , entry(entry)
        , buffer(size_t(std::min(ChunkBytes, entry.regionEnd - entry.headerOffset)))
    {
    }

    // Finds the data; the first chunk mostly holds the whole of a small part, so that takes one read.
    PackageError Begin()
    {
        held = source.ReadAt(entry.headerOffset, buffer.data(), qint64(buffer.size()));
        if (held < 0)
            return {PackageErrorKind::NotReadable,
                    QCoreApplication::translate("OfdPackage", "The file cannot be read.")};
        if (held < zip::LocalSize || zip::Get32(buffer.data()) != zip::LocalSignature)
            return DamagedPart(entry);
        const int skip = zip::LocalSize + zip::Get16(buffer.data() + 26) + zip::Get16(buffer.data() + 28);
        next = entry.headerOffset + skip;
        left = entry.compressedSize;
        if (left > entry.regionEnd - next)
            return DamagedPart(entry);
        used = std::min<qint64>(skip, held);
        return {};
    }

    // The next piece; empty at the end, -1 in `count` when the medium fails.
    const char* Next(qint64& count)
    {
        if (used >= held && left > 0) {
            held = source.ReadAt(next, buffer.data(), std::min<qint64>(qint64(buffer.size()), left));
            used = 0;
            if (held <= 0) {
                count = -1;
                return nullptr;
            }
        }
        count = std::min(held - used, left);
        const char* piece = buffer.data() + used;
        used += count;
        next += count;
        left -= count;
        return piece;
    }

    qint64 Left() const { return left; }

private:
    const ByteSource& source;
    const ZipEntry& entry;
    std::vector<char> buffer;
    qint64 held = 0; // bytes in the buffer
    qint64 used = 0; // of them, handed out
    qint64 next = 0; // offset in the file of what comes after them
    qint64 left = 0; // compressed bytes not handed out
};

// Counts and checks what comes out.
class CheckedSink
{
public:
    CheckedSink(const ZipEntry& entry, const ByteSink& sink)
        : entry(entry)
        , sink(sink)
    {
    }

    PackageError Put(const char* bytes, qint64 count)
    {
        total += count;
        if (total > entry.size)
            return TooBigPart(entry);
        checksum = crc32(checksum, reinterpret_cast<const Bytef*>(bytes), uInt(count));
        if (!sink(bytes, count))
            return {
                PackageErrorKind::WriteFailed,
                QCoreApplication::translate("OfdPackage", "The part \"%1\" cannot be written out.").arg(entry.name)};
        return {};
    }

    bool IsAsPacked() const { return total == entry.size && quint32(checksum) == entry.checksum; }

private:
    const ZipEntry& entry;
    const ByteSink& sink;
    qint64 total = 0;
    uLong checksum = crc32(0, nullptr, 0);
};

PackageError CopyStored(EntryData& data, CheckedSink& sink, const ZipEntry& entry)
{
    while (data.Left() > 0) {
        qint64 count = 0;
        const char* piece = data.Next(count);
        if (count < 0)
            return DamagedPart(entry);
        if (PackageError error = sink.Put(piece, count))
            return error;
    }
    return {};
}

// A stream without a header, for as long as its scope.
struct RawInflation
{
    RawInflation()
    {
        if (inflateInit2(&stream, -MAX_WBITS) != Z_OK)
            throw std::bad_alloc(); // nothing else makes it fail
    }
    ~RawInflation() { inflateEnd(&stream); }
    RawInflation(const RawInflation&) = delete;
    RawInflation& operator=(const RawInflation&) = delete;

    z_stream stream = {};
};

// Inflates what one piece of input gives. `isDone` tells that the stream has ended.
PackageError InflatePiece(z_stream& stream, std::vector<char>& out, CheckedSink& sink, const ZipEntry& entry,
                          bool& isDone)
{
    do {
        stream.next_out = reinterpret_cast<Bytef*>(out.data());
        stream.avail_out = uInt(out.size());
        const int code = inflate(&stream, Z_NO_FLUSH);
        if (code == Z_MEM_ERROR)
            throw std::bad_alloc(); // which is not the part's fault
        if (code != Z_OK && code != Z_STREAM_END && code != Z_BUF_ERROR)
            return DamagedPart(entry);
        const qint64 got = qint64(out.size()) - stream.avail_out;
        if (got > 0) {
            if (PackageError error = sink.Put(out.data(), got))
                return error;
            if (qint64(out.size()) == FirstPieceBytes)
                out.resize(size_t(std::min(ChunkBytes, entry.size + 1)));
        }
        isDone = code == Z_STREAM_END;
    } while (!isDone && (stream.avail_in > 0 || stream.avail_out == 0));
    return {};
}

PackageError InflateDeflated(EntryData& data, CheckedSink& sink, const ZipEntry& entry)
{
    if (entry.compressedSize == 0 && entry.size == 0)
        return {}; // not even an empty stream, but there is no doubt what is meant
    RawInflation inflation;
    z_stream& stream = inflation.stream;
    // One byte more than promised is enough to notice that a stream goes on beyond its promise.
    std::vector<char> out(size_t(std::min(FirstPieceBytes, entry.size + 1)));
    PackageError error;
    bool isDone = false;
    while (!isDone && !error) {
        qint64 count = 0;
        const char* piece = data.Next(count);
        if (count <= 0) {
            error = DamagedPart(entry); // the data ends before the stream does
            break;
        }
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece));
        stream.avail_in = uInt(count);
        error = InflatePiece(stream, out, sink, entry, isDone);
    }
    return error;
}

} // namespace

PackageError CheckEntry(const ZipEntry& entry, bool isHeldInMemory)
{
    if (!entry.isUsable)
        return DamagedPart(entry);
    if (entry.IsEncrypted())
        return {PackageErrorKind::Encrypted,
                QCoreApplication::translate("OfdPackage", "The part \"%1\" is encrypted.").arg(entry.name)};
    if (entry.method != zip::MethodStored && entry.method != zip::MethodDeflated)
        return {PackageErrorKind::Unsupported,
                QCoreApplication::translate("OfdPackage", "The part \"%1\" is packed in an unknown way (%2).")
                    .arg(entry.name)
                    .arg(entry.method)};
    if (entry.method == zip::MethodStored && entry.size != entry.compressedSize)
        return DamagedPart(entry);
    if (isHeldInMemory && entry.size > limits::MaxPartBytes)
        return TooBigPart(entry);
    if (entry.size > limits::RatioFreeBytes && entry.size / limits::MaxRatio > entry.compressedSize)
        return TooBigPart(entry);
    return {};
}

PackageError InflateEntry(const ByteSource& source, const ZipEntry& entry, const ByteSink& sink, bool* hasWrongChecksum)
{
    EntryData data(source, entry);
    if (PackageError error = data.Begin())
        return error;
    CheckedSink checked(entry, sink);
    const PackageError error =
        entry.method == zip::MethodStored ? CopyStored(data, checked, entry) : InflateDeflated(data, checked, entry);
    *hasWrongChecksum = !error && !checked.IsAsPacked();
    return error;
}

} // namespace ofd
