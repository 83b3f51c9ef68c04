#include "whole_inflater.h"

#include "byte_source.h"
#include "zip_directory.h"
#include "zip_records.h"

#include <QByteArray>

#include <algorithm>
#include <memory>

#include <libdeflate.h>

namespace ofd {

namespace {

constexpr qint64 MaxPackedBytes = qint64(16) << 20; // held in memory beside what they unpack to
constexpr qint64 HeaderBytes = 8 * 1024;            // room for a local header with its name and a block that aligns

struct FreeDecompressor
{
    void operator()(libdeflate_decompressor* decompressor) const { libdeflate_free_decompressor(decompressor); }
};

} // namespace

bool InflateAtOnce(const ByteSource& source, const ZipEntry& entry, char* to)
{
    if (entry.method != zip::MethodDeflated || entry.compressedSize <= 0 || entry.compressedSize > MaxPackedBytes)
        return false;
    const qint64 region = std::min(entry.regionEnd - entry.headerOffset, HeaderBytes + entry.compressedSize);
    const QByteArray bytes = source.ReadAt(entry.headerOffset, region);
    if (bytes.size() < zip::LocalSize || zip::Get32(bytes.constData()) != zip::LocalSignature)
        return false;
    const int skip = zip::LocalSize + zip::Get16(bytes.constData() + 26) + zip::Get16(bytes.constData() + 28);
    if (skip + entry.compressedSize > bytes.size())
        return false;
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor(libdeflate_alloc_decompressor());
    // Without a place for the length it must be the one that is promised.
    return decompressor &&
           libdeflate_deflate_decompress(decompressor.get(), bytes.constData() + skip, size_t(entry.compressedSize), to,
                                         size_t(entry.size), nullptr) == LIBDEFLATE_SUCCESS &&
           libdeflate_crc32(0, to, size_t(entry.size)) == entry.checksum;
}

} // namespace ofd
