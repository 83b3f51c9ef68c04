#include "entry_writer.h"

#include "limits.h"
#include "package_changes.h"
#include "target_file.h"
#include "zip_records.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDateTime>

#include <algorithm>
#include <memory>
#include <vector>

#include <zlib.h>

namespace ofd {

namespace {

constexpr int ChunkBytes = 256 * 1024;
constexpr int Zip64SizesExtra = 20; // id, length and two sizes
constexpr int AlignmentExtra = 6;   // id, length and the alignment; zeros follow
// Deflating may make data a little longer, so room for big sizes is taken well before four gigabytes.
constexpr qint64 SmallPartBytes = qint64(0xf0000000);

// Date and time of day as the format packs them: two seconds are the unit, 1980 the first year.
quint32 DosTime(const QDateTime& moment)
{
    const QDate date = moment.date();
    const QTime time = moment.time();
    const quint32 day = quint32(std::clamp(date.year() - 1980, 0, 127) << 9 | date.month() << 5 | date.day());
    return day << 16 | quint32(time.hour() << 11 | time.minute() << 5 | time.second() / 2);
}

QByteArray LocalHeader(const WrittenEntry& written, const QByteArray& rawName)
{
    QByteArray header;
    zip::Append32(header, zip::LocalSignature);
    zip::Append16(header, written.hasZip64Sizes ? 45 : 20);
    zip::Append16(header, written.flags);
    zip::Append16(header, written.isStored ? zip::MethodStored : zip::MethodDeflated);
    zip::Append32(header, written.dosTime);
    zip::Append32(header, written.checksum);
    zip::Append32(header, written.hasZip64Sizes ? zip::Saturated32 : quint32(written.compressedSize));
    zip::Append32(header, written.hasZip64Sizes ? zip::Saturated32 : quint32(written.size));
    zip::Append16(header, quint16(rawName.size()));
    zip::Append16(header, quint16((written.hasZip64Sizes ? Zip64SizesExtra : 0) + written.paddingBytes));
    header += rawName;
    if (written.hasZip64Sizes) {
        zip::Append16(header, zip::Zip64ExtraId);
        zip::Append16(header, Zip64SizesExtra - 4);
        zip::Append64(header, quint64(written.size));
        zip::Append64(header, quint64(written.compressedSize));
    }
    if (written.paddingBytes > 0) {
        zip::Append16(header, zip::AlignmentExtraId);
        zip::Append16(header, quint16(written.paddingBytes - 4));
        zip::Append16(header, quint16(PageBytes));
        header += QByteArray(written.paddingBytes - AlignmentExtra, 0);
    }
    return header;
}

// Puts the bytes of a device into the file, packed or as they are, and counts.
class EntryData
{
public:
    EntryData(TargetFile& file, WrittenEntry& written)
        : file(file)
        , written(written)
        , out(ChunkBytes)
    {
        isReady = deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) == Z_OK;
    }
    ~EntryData() { deflateEnd(&stream); }
    EntryData(const EntryData&) = delete;
    EntryData& operator=(const EntryData&) = delete;

    PackageError Put(const char* bytes, qint64 count, bool isLast)
    {
        if (!isReady)
            return {PackageErrorKind::WriteFailed,
                    QCoreApplication::translate("OfdPackage", "There is not enough memory to pack a part.")};
        written.size += count;
        written.checksum =
            quint32(crc32(written.checksum, reinterpret_cast<const Bytef*>(bytes), static_cast<uInt>(count)));
        if (written.isStored) {
            written.compressedSize += count;
            return file.Write(bytes, count);
        }
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes));
        stream.avail_in = uInt(count);
        do {
            stream.next_out = reinterpret_cast<Bytef*>(out.data());
            stream.avail_out = uInt(out.size());
            deflate(&stream, isLast ? Z_FINISH : Z_NO_FLUSH);
            const qint64 got = qint64(out.size()) - stream.avail_out;
            written.compressedSize += got;
            if (PackageError error = file.Write(out.data(), got))
                return error;
        } while (stream.avail_out == 0);
        return {};
    }

private:
    TargetFile& file;
    WrittenEntry& written;
    std::vector<char> out;
    z_stream stream = {};
    bool isReady = false;
};

PackageError WriteDevice(TargetFile& file, QIODevice& data, const std::function<bool(qint64)>& progress,
                         WrittenEntry& written)
{
    EntryData entry(file, written);
    std::vector<char> chunk(ChunkBytes);
    for (;;) {
        const qint64 got = data.read(chunk.data(), qint64(chunk.size()));
        // A sequential device answers 0 when it has nothing yet.
        if (got == 0 && data.isSequential() && data.waitForReadyRead(30'000))
            continue;
        if (got < 0 && !data.isSequential())
            return {PackageErrorKind::NotReadable,
                    QCoreApplication::translate("OfdPackage", "The data of a new part cannot be read.")};
        if (PackageError error = entry.Put(chunk.data(), std::max<qint64>(got, 0), got <= 0))
            return error;
        if (got <= 0)
            return {};
        if (progress && !progress(got))
            return {PackageErrorKind::Cancelled, QCoreApplication::translate("OfdPackage", "Saving was cancelled.")};
    }
}

std::unique_ptr<QIODevice> OpenData(const PartChange& change)
{
    if (change.openData)
        return change.openData();
    auto buffer = std::make_unique<QBuffer>();
    buffer->setData(change.bytes);
    buffer->open(QIODevice::ReadOnly);
    return buffer;
}

PackageError WriteOnce(TargetFile& file, const PartChange& change, const QByteArray& rawName,
                       const std::function<bool(qint64)>& progress, WrittenEntry& written)
{
    const std::unique_ptr<QIODevice> data = OpenData(change);
    if (!data || !data->isReadable())
        return {PackageErrorKind::NotReadable,
                QCoreApplication::translate("OfdPackage", "The data of a new part cannot be read.")};
    written.headerOffset = file.GetPosition();
    written.hasZip64Sizes = data->isSequential() || data->size() > SmallPartBytes;
    // Sizes and checksum are known only behind the data; the header is put right then.
    if (PackageError error = file.Write(LocalHeader(written, rawName)))
        return error;
    if (PackageError error = WriteDevice(file, *data, progress, written))
        return error;
    if (!written.hasZip64Sizes && std::max(written.size, written.compressedSize) >= qint64(zip::Saturated32))
        return {PackageErrorKind::WriteFailed,
                QCoreApplication::translate("OfdPackage", "The data of a new part grew while it was being read.")};
    return file.WriteAt(written.headerOffset, LocalHeader(written, rawName));
}

} // namespace

PackageError WriteEntry(TargetFile& file, const PartChange& change, const QByteArray& rawName, bool isNameUtf8,
                        const std::function<bool(qint64)>& progress, WrittenEntry& written)
{
    WrittenEntry fresh;
    fresh.dosTime = DosTime(QDateTime::currentDateTime());
    fresh.flags = isNameUtf8 ? zip::FlagUtf8 : 0;
    fresh.isStored = change.isStored;
    written = fresh;
    if (PackageError error = WriteOnce(file, change, rawName, progress, written))
        return error;
    const bool looksLikeBomb =
        written.size > limits::RatioFreeBytes && written.size / limits::MaxRatio >= written.compressedSize;
    const bool isSmaller = written.compressedSize < written.size && !looksLikeBomb;
    if (written.isStored || isSmaller)
        return {};
    if (PackageError error = file.Rewind(written.headerOffset))
        return error;
    fresh.isStored = true;
    written = fresh;
    return WriteOnce(file, change, rawName, progress, written);
}

PackageError AlignEnd(TargetFile& file, const QByteArray& rawName, qint64 begin, WrittenEntry& written)
{
    int padding = int((begin - file.GetPosition()) & (PageBytes - 1));
    if (padding == 0)
        return {};
    if (padding < AlignmentExtra)
        padding += int(PageBytes);
    written.paddingBytes = padding;
    const QByteArray header = LocalHeader(written, rawName);
    QByteArray data;
    if (PackageError error = file.ReadBack(file.GetPosition() - written.compressedSize, written.compressedSize, data))
        return error;
    if (PackageError error = file.Rewind(written.headerOffset))
        return error;
    if (PackageError error = file.Write(header))
        return error;
    return file.Write(data);
}

} // namespace ofd
