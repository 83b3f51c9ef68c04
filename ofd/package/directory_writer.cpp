#include "directory_writer.h"

#include "zip_directory.h"
#include "zip_records.h"

#include <QHash>

#include <algorithm>

namespace ofd {

namespace {

constexpr quint16 Zip64Version = 45;
constexpr quint16 PlainVersion = 20;

bool Needs64(qint64 value)
{
    return value >= qint64(zip::Saturated32);
}

// Where a place of the old file is in the new one, -1 when it is gone.
qint64 NewPlace(const std::vector<MovedRange>& ranges, qint64 old)
{
    auto range = std::upper_bound(ranges.begin(), ranges.end(), old,
                                  [](qint64 place, const MovedRange& r) { return place < r.begin; });
    if (range == ranges.begin())
        return -1;
    --range;
    return old < range->end ? range->newBegin + (old - range->begin) : -1;
}

// Replaces the zip64 block by one that holds the offset as well, in front of the other blocks.
QByteArray WithZip64Offset(const QByteArray& record, qint64 offset)
{
    const int nameLength = zip::Get16(record.constData() + zip::CentralNameLength);
    const int extraLength = zip::Get16(record.constData() + zip::CentralExtraLength);
    const int extraBegin = zip::CentralSize + nameLength;
    QByteArray extra = record.mid(extraBegin, extraLength);
    QByteArray values;
    int length = 0;
    const int at = zip::FindExtra(extra.constData(), extra.size(), zip::Zip64ExtraId, &length);
    if (at >= 0) {
        // Only the sizes that the record leaves to the block count; a disk number behind them is 0 by now.
        int sizes = zip::Get32(record.constData() + 20) == zip::Saturated32 ? 8 : 0;
        sizes += zip::Get32(record.constData() + 24) == zip::Saturated32 ? 8 : 0;
        values = extra.mid(at, std::min(sizes, length));
        extra.remove(at - 4, length + 4);
    }
    zip::Append64(values, quint64(offset));
    QByteArray block;
    zip::Append16(block, zip::Zip64ExtraId);
    zip::Append16(block, quint16(values.size()));
    extra.prepend(block + values);
    QByteArray result = record;
    result.replace(extraBegin, extraLength, extra);
    zip::Put16(result.data() + zip::CentralExtraLength, quint16(extra.size()));
    zip::Put32(result.data() + zip::CentralHeaderOffset, zip::Saturated32);
    zip::Put16(result.data() + 6, std::max(Zip64Version, zip::Get16(result.constData() + 6)));
    return result;
}

// The place of the offset inside the zip64 block of the record, -1 when the offset is not kept there.
int Zip64OffsetPlace(const QByteArray& record)
{
    if (zip::Get32(record.constData() + zip::CentralHeaderOffset) != zip::Saturated32)
        return -1;
    const int extraBegin = zip::CentralSize + zip::Get16(record.constData() + zip::CentralNameLength);
    int length = 0;
    const int at = zip::FindExtra(record.constData() + extraBegin,
                                  zip::Get16(record.constData() + zip::CentralExtraLength), zip::Zip64ExtraId, &length);
    int skip = zip::Get32(record.constData() + 20) == zip::Saturated32 ? 8 : 0;
    skip += zip::Get32(record.constData() + 24) == zip::Saturated32 ? 8 : 0;
    return at >= 0 && skip + 8 <= length ? extraBegin + at + skip : -1;
}

QByteArray WithOffset(QByteArray record, qint64 offset)
{
    const int place = Zip64OffsetPlace(record);
    if (place >= 0)
        zip::Put64(record.data() + place, quint64(offset));
    else if (Needs64(offset))
        record = WithZip64Offset(record, offset);
    else
        zip::Put32(record.data() + zip::CentralHeaderOffset, quint32(offset));
    return record;
}

// A fresh record; what only people or the unpacking side care about comes from the old record, if there is one.
QByteArray FreshRecord(const PlacedEntry& placed, const QByteArray& oldRecord, qint64 offset)
{
    const WrittenEntry& written = placed.written;
    QByteArray comment;
    quint16 madeBy = PlainVersion;
    quint16 internalAttributes = 0;
    quint32 externalAttributes = 0;
    if (!oldRecord.isEmpty()) {
        comment = oldRecord.right(zip::Get16(oldRecord.constData() + zip::CentralCommentLength));
        madeBy = zip::Get16(oldRecord.constData() + 4);
        internalAttributes = zip::Get16(oldRecord.constData() + 36);
        externalAttributes = zip::Get32(oldRecord.constData() + 38);
    }
    QByteArray sizes;
    if (written.hasZip64Sizes) {
        zip::Append16(sizes, zip::Zip64ExtraId);
        zip::Append16(sizes, 16);
        zip::Append64(sizes, quint64(written.size));
        zip::Append64(sizes, quint64(written.compressedSize));
    }
    QByteArray record;
    zip::Append32(record, zip::CentralSignature);
    zip::Append16(record, madeBy);
    zip::Append16(record, written.hasZip64Sizes ? Zip64Version : PlainVersion);
    zip::Append16(record, written.flags);
    zip::Append16(record, written.isStored ? zip::MethodStored : zip::MethodDeflated);
    zip::Append32(record, written.dosTime);
    zip::Append32(record, written.checksum);
    zip::Append32(record, written.hasZip64Sizes ? zip::Saturated32 : quint32(written.compressedSize));
    zip::Append32(record, written.hasZip64Sizes ? zip::Saturated32 : quint32(written.size));
    zip::Append16(record, quint16(placed.rawName.size()));
    zip::Append16(record, quint16(sizes.size()));
    zip::Append16(record, quint16(comment.size()));
    zip::Append16(record, 0); // disk
    zip::Append16(record, internalAttributes);
    zip::Append32(record, externalAttributes);
    zip::Append32(record, 0); // offset
    record += placed.rawName + sizes + comment;
    return WithOffset(record, offset);
}

struct DirectoryFacts
{
    qint64 count = 0;
    qint64 size = 0;
    qint64 offset = 0; // as stored
};

QByteArray Zip64End(const DirectoryFacts& facts, qint64 storedEndOffset)
{
    QByteArray end;
    zip::Append32(end, zip::Zip64EndSignature);
    zip::Append64(end, zip::Zip64EndSize - 12);
    zip::Append16(end, Zip64Version);
    zip::Append16(end, Zip64Version);
    zip::Append32(end, 0);
    zip::Append32(end, 0);
    zip::Append64(end, quint64(facts.count));
    zip::Append64(end, quint64(facts.count));
    zip::Append64(end, quint64(facts.size));
    zip::Append64(end, quint64(facts.offset));
    zip::Append32(end, zip::Zip64LocatorSignature);
    zip::Append32(end, 0);
    zip::Append64(end, quint64(storedEndOffset));
    zip::Append32(end, 1);
    return end;
}

QByteArray EndRecords(const DirectoryFacts& facts, const QByteArray& oldEnd, bool hadZip64End)
{
    const bool isZip64 = hadZip64End || facts.count >= zip::Saturated16 || Needs64(facts.size) || Needs64(facts.offset);
    QByteArray end = oldEnd;
    if (end.isEmpty()) {
        end = QByteArray(zip::EndSize, 0);
        zip::Put32(end.data(), zip::EndSignature);
    }
    zip::Put16(end.data() + 8, isZip64 ? zip::Saturated16 : quint16(facts.count));
    zip::Put16(end.data() + 10, isZip64 ? zip::Saturated16 : quint16(facts.count));
    zip::Put32(end.data() + 12, isZip64 ? zip::Saturated32 : quint32(facts.size));
    zip::Put32(end.data() + 16, isZip64 ? zip::Saturated32 : quint32(facts.offset));
    return isZip64 ? Zip64End(facts, facts.offset + facts.size) + end : end;
}

} // namespace

QByteArray MakeDirectory(const ZipDirectory& old, const QByteArray& oldRecords, const QByteArray& oldEnd,
                         const std::vector<SplicePlan::Fate>& fates, const NewLayout& layout)
{
    const qint64 shift = old.offsetShift;
    QHash<int, const PlacedEntry*> replaced;
    for (const PlacedEntry& placed : layout.placed) {
        if (placed.entry >= 0)
            replaced.insert(placed.entry, &placed);
    }
    QByteArray bytes;
    bytes.reserve(oldRecords.size() + 1024);
    DirectoryFacts facts;
    for (size_t i = 0; i < old.entries.size(); ++i) {
        const ZipEntry& entry = old.entries[i];
        if (fates[i] == SplicePlan::Drop)
            continue;
        const QByteArray record = oldRecords.mid(int(entry.recordOffset), int(entry.recordSize));
        if (fates[i] == SplicePlan::Rewrite) {
            const PlacedEntry& placed = *replaced.value(int(i));
            bytes += FreshRecord(placed, record, placed.written.headerOffset - shift);
        } else {
            const qint64 place = NewPlace(layout.ranges, entry.headerOffset);
            if (place < 0 && entry.headerOffset < old.directoryOffset)
                continue; // pointed into data that has gone, and could not be read before either
            bytes += place < 0 ? record : WithOffset(record, place - shift);
        }
        ++facts.count;
    }
    for (const PlacedEntry& placed : layout.placed) {
        if (placed.entry >= 0)
            continue;
        bytes += FreshRecord(placed, {}, placed.written.headerOffset - shift);
        ++facts.count;
    }
    facts.size = bytes.size();
    facts.offset = layout.directoryOffset - shift;
    return bytes + EndRecords(facts, oldEnd, old.hasZip64End);
}

} // namespace ofd
