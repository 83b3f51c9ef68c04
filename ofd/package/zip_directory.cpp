#include "zip_directory.h"

#include "byte_source.h"
#include "entry_names.h"
#include "limits.h"
#include "zip_records.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>

namespace ofd {

namespace {

PackageError Damaged()
{
    return {PackageErrorKind::Damaged,
            QCoreApplication::translate("OfdPackage", "The file is damaged: its directory contradicts itself.")};
}

// Numbers of the end records before anything is checked.
struct EndRecord
{
    qint64 offset = 0;
    qint64 size = 0;
    quint64 directoryOffset = 0;
    quint64 directorySize = 0;
    quint64 entryCount = 0;
    qint64 directoryLimit = 0; // where the end records begin, which the directory must not reach
    bool hasZip64End = false;
    bool isSplit = false;
};

bool HasSignature(const ByteSource& source, qint64 offset, quint32 signature)
{
    char bytes[4];
    return source.ReadAt(offset, bytes, 4) == 4 && zip::Get32(bytes) == signature;
}

// Reads the zip64 end record that a locator right in front of the end record points to.
bool ReadZip64End(const ByteSource& source, EndRecord& end)
{
    const qint64 locatorOffset = end.offset - zip::Zip64LocatorSize;
    const QByteArray locator = source.ReadAt(locatorOffset, zip::Zip64LocatorSize);
    if (locator.size() < zip::Zip64LocatorSize || zip::Get32(locator.constData()) != zip::Zip64LocatorSignature)
        return false;
    const quint64 told = zip::Get64(locator.constData() + 8);
    // The told place is wrong when a foreign prefix was put in front; then it is right in front of the locator.
    for (const quint64 candidate : {told, quint64(locatorOffset - zip::Zip64EndSize)}) {
        if (candidate > quint64(locatorOffset))
            continue;
        const QByteArray record = source.ReadAt(qint64(candidate), zip::Zip64EndSize);
        if (record.size() < zip::Zip64EndSize || zip::Get32(record.constData()) != zip::Zip64EndSignature)
            continue;
        const char* data = record.constData();
        end.isSplit = zip::Get32(data + 16) != 0 || zip::Get32(data + 20) != 0;
        end.entryCount = zip::Get64(data + 32);
        end.directorySize = zip::Get64(data + 40);
        end.directoryOffset = zip::Get64(data + 48);
        end.directoryLimit = qint64(candidate);
        end.hasZip64End = true;
        return true;
    }
    return false;
}

EndRecord ParseEnd(const ByteSource& source, const char* data, qint64 offset)
{
    EndRecord end;
    end.offset = offset;
    end.size = zip::EndSize + zip::Get16(data + 20);
    end.isSplit = zip::Get16(data + 4) != 0 || zip::Get16(data + 6) != 0;
    end.entryCount = zip::Get16(data + 10);
    end.directorySize = zip::Get32(data + 12);
    end.directoryOffset = zip::Get32(data + 16);
    end.directoryLimit = offset;
    const bool isSaturated = end.entryCount == zip::Saturated16 || end.directorySize == zip::Saturated32 ||
                             end.directoryOffset == zip::Saturated32;
    if (isSaturated)
        ReadZip64End(source, end); // without one the numbers are meant as they stand
    return end;
}

// Where the directory begins, when the end record can be believed.
std::optional<qint64> LocateDirectory(const ByteSource& source, const EndRecord& end)
{
    if (end.directorySize > quint64(end.directoryLimit))
        return std::nullopt;
    const qint64 behindTheSize = end.directoryLimit - qint64(end.directorySize);
    if (end.entryCount == 0 && end.directorySize == 0)
        return behindTheSize;
    // The told place first; a foreign prefix shifts all, and then the directory ends where the end record begins.
    if (end.directoryOffset <= quint64(behindTheSize) &&
        HasSignature(source, qint64(end.directoryOffset), zip::CentralSignature))
        return qint64(end.directoryOffset);
    if (HasSignature(source, behindTheSize, zip::CentralSignature))
        return behindTheSize;
    return std::nullopt;
}

// Looks for the end record from the back. One whose comment ends with the file is preferred to one with foreign bytes
// behind it, since a comment or such bytes may hold what looks like a record.
std::optional<EndRecord> FindEnd(const ByteSource& source)
{
    const qint64 window = std::min(source.GetSize(), limits::MaxTrailingBytes + zip::EndSize + zip::Saturated16);
    const qint64 windowBegin = source.GetSize() - window;
    const QByteArray tail = source.ReadAt(windowBegin, window);
    std::optional<EndRecord> second;
    for (int at = tail.size() - zip::EndSize; at >= 0; --at) {
        if (tail.at(at) != 'P' || zip::Get32(tail.constData() + at) != zip::EndSignature)
            continue;
        const EndRecord end = ParseEnd(source, tail.constData() + at, windowBegin + at);
        const qint64 endsAt = end.offset + end.size;
        if (endsAt > source.GetSize() || !LocateDirectory(source, end))
            continue;
        if (endsAt == source.GetSize())
            return end;
        if (!second)
            second = end;
    }
    return second;
}

// Takes sizes and offset from the zip64 extra block where the record's own fields are full.
bool ReadZip64Extra(const char* record, const char* extra, int extraLength, ZipEntry& entry)
{
    const bool needsSize = zip::Get32(record + 24) == zip::Saturated32;
    const bool needsCompressed = zip::Get32(record + 20) == zip::Saturated32;
    const bool needsOffset = zip::Get32(record + zip::CentralHeaderOffset) == zip::Saturated32;
    if (!needsSize && !needsCompressed && !needsOffset)
        return true;
    int length = 0;
    int at = zip::FindExtra(extra, extraLength, zip::Zip64ExtraId, &length);
    if (at < 0)
        return true; // a value that happens to be the largest of 32 bits
    const int end = at + length;
    auto take = [&](bool isNeeded, qint64& value) {
        if (!isNeeded)
            return true;
        if (at + 8 > end)
            return false;
        value = qint64(zip::Get64(extra + at));
        at += 8;
        return value >= 0;
    };
    return take(needsSize, entry.size) && take(needsCompressed, entry.compressedSize) &&
           take(needsOffset, entry.headerOffset);
}

// Parses the record at `at`; the bytes it takes, 0 when it does not fit.
quint32 ParseRecord(const QByteArray& bytes, qint64 at, qint64 shift, ZipEntry& entry)
{
    const char* record = bytes.constData() + at;
    const int nameLength = zip::Get16(record + zip::CentralNameLength);
    const int extraLength = zip::Get16(record + zip::CentralExtraLength);
    const int commentLength = zip::Get16(record + zip::CentralCommentLength);
    const qint64 recordSize = qint64(zip::CentralSize) + nameLength + extraLength + commentLength;
    if (at + recordSize > bytes.size())
        return 0;
    entry.flags = zip::Get16(record + 8);
    entry.method = zip::Get16(record + 10);
    entry.checksum = zip::Get32(record + 16);
    entry.compressedSize = zip::Get32(record + 20);
    entry.size = zip::Get32(record + 24);
    entry.headerOffset = zip::Get32(record + zip::CentralHeaderOffset);
    entry.recordOffset = at;
    entry.recordSize = quint32(recordSize);
    const char* name = record + zip::CentralSize;
    entry.isUsable = ReadZip64Extra(record, name + nameLength, extraLength, entry);
    if (entry.headerOffset <= std::numeric_limits<qint64>::max() - shift)
        entry.headerOffset += shift;
    entry.name =
        NormaliseEntryName(DecodeEntryName(QByteArray::fromRawData(name, nameLength), entry.flags & zip::FlagUtf8));
    entry.isFolder = entry.name.isEmpty() || entry.name.endsWith(QLatin1Char('/'));
    return quint32(recordSize);
}

// The name in the record as it stands there; it lives as long as the directory's bytes.
QByteArray RawName(const QByteArray& bytes, const ZipEntry& entry)
{
    const char* record = bytes.constData() + entry.recordOffset;
    return QByteArray::fromRawData(record + zip::CentralSize, zip::Get16(record + zip::CentralNameLength));
}

// One program writes all names of an archive in one encoding: where some of them are GB18030 beyond doubt, those that
// read as UTF-8 by chance are GB18030 too.
void ReadDoubtfulNames(const QByteArray& bytes, const std::vector<quint32>& doubtful, ZipDirectory& directory)
{
    for (const quint32 index : doubtful) {
        ZipEntry& entry = directory.entries[index];
        entry.name = NormaliseEntryName(DecodeGb18030Name(RawName(bytes, entry)));
        entry.isNamedByOthers = true;
    }
}

// Finds where each entry's region ends, and rejects what lies outside the file or over an earlier entry.
void CheckRegions(ZipDirectory& directory)
{
    std::vector<ZipEntry>& entries = directory.entries;
    std::vector<quint32> order(entries.size());
    std::iota(order.begin(), order.end(), 0U);
    auto isEarlier = [&](quint32 a, quint32 b) { return entries[a].headerOffset < entries[b].headerOffset; };
    if (!std::is_sorted(order.begin(), order.end(), isEarlier))
        std::stable_sort(order.begin(), order.end(), isEarlier);
    qint64 usedUpTo = 0;
    ZipEntry* before = nullptr; // the last usable one
    for (const quint32 index : order) {
        ZipEntry& entry = entries[index];
        entry.regionEnd = directory.directoryOffset;
        const qint64 room = directory.directoryOffset - zip::LocalSize - entry.headerOffset;
        if (entry.headerOffset < usedUpTo || room < 0 || entry.compressedSize > room)
            entry.isUsable = false;
        if (!entry.isUsable)
            continue;
        // The name in the local header may differ in length; reading the part checks that.
        usedUpTo = entry.headerOffset + zip::LocalSize + entry.compressedSize;
        if (before)
            before->regionEnd = entry.headerOffset;
        before = &entry;
    }
}

PackageError ParseRecords(const ByteSource& source, const EndRecord& end, ZipDirectory& directory)
{
    const QByteArray bytes = source.ReadAt(directory.directoryOffset, directory.directorySize);
    if (bytes.size() != directory.directorySize)
        return {PackageErrorKind::NotReadable,
                QCoreApplication::translate("OfdPackage", "The file cannot be read to its end.")};
    directory.entries.reserve(size_t(std::min<quint64>(end.entryCount, quint64(bytes.size() / zip::CentralSize))));
    std::vector<quint32> doubtful; // names that may be UTF-8 or GB18030
    bool hasGb18030 = false;
    qint64 at = 0;
    while (at + zip::CentralSize <= bytes.size() && zip::Get32(bytes.constData() + at) == zip::CentralSignature) {
        if (directory.entries.size() == size_t(limits::MaxEntries))
            return {PackageErrorKind::TooBig,
                    QCoreApplication::translate("OfdPackage", "The file has too many entries.")};
        ZipEntry entry;
        const quint32 taken = ParseRecord(bytes, at, directory.offsetShift, entry);
        if (taken == 0)
            break;
        at += taken;
        if (!(entry.flags & zip::FlagUtf8)) {
            const NameEncoding encoding = EncodingOfName(RawName(bytes, entry));
            entry.isGb18030 = encoding == NameEncoding::Gb18030;
            hasGb18030 = hasGb18030 || entry.isGb18030;
            if (encoding == NameEncoding::Utf8OrGb18030)
                doubtful.push_back(quint32(directory.entries.size()));
        }
        directory.hasEncryptedEntries = directory.hasEncryptedEntries || entry.IsEncrypted();
        directory.entries.push_back(std::move(entry));
    }
    // More records than counted is fine: old writers let the 16-bit count run over.
    if (quint64(directory.entries.size()) < end.entryCount)
        return Damaged();
    if (hasGb18030)
        ReadDoubtfulNames(bytes, doubtful, directory);
    CheckRegions(directory);
    return {};
}

PackageError NoEndError(const ByteSource& source)
{
    const bool beginsAsZip = HasSignature(source, 0, zip::LocalSignature);
    if (beginsAsZip)
        return {PackageErrorKind::Truncated,
                QCoreApplication::translate("OfdPackage", "The file is incomplete: its end is missing.")};
    return {PackageErrorKind::NotAPackage, QCoreApplication::translate("OfdPackage", "This is no OFD file.")};
}

} // namespace

PackageError ReadZipDirectory(const ByteSource& source, ZipDirectory& directory)
{
    directory = {};
    if (source.GetSize() == 0)
        return {PackageErrorKind::Empty, QCoreApplication::translate("OfdPackage", "The file is empty.")};
    const std::optional<EndRecord> end = FindEnd(source);
    if (!end)
        return NoEndError(source);
    if (end->isSplit)
        return {PackageErrorKind::Unsupported,
                QCoreApplication::translate("OfdPackage", "The file is one piece of a split archive.")};
    if (end->entryCount > quint64(limits::MaxEntries) || end->directorySize > quint64(limits::MaxDirectoryBytes))
        return {PackageErrorKind::TooBig, QCoreApplication::translate("OfdPackage", "The file has too many entries.")};
    if (end->entryCount > end->directorySize / zip::CentralSize)
        return Damaged();
    directory.directoryOffset = *LocateDirectory(source, *end);
    directory.directorySize = qint64(end->directorySize);
    if (end->directoryOffset < quint64(directory.directoryOffset))
        directory.offsetShift = directory.directoryOffset - qint64(end->directoryOffset);
    directory.endOffset = end->offset;
    directory.endSize = end->size;
    directory.hasZip64End = end->hasZip64End;
    return ParseRecords(source, *end, directory);
}

} // namespace ofd
