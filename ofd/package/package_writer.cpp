#include "package_writer.h"

#include "byte_source.h"
#include "directory_writer.h"
#include "entry_names.h"
#include "package.h"
#include "part_inflater.h"
#include "splice_plan.h"
#include "target_file.h"
#include "xml_part.h"
#include "zip_records.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QIODevice>

#include <algorithm>
#include <cstring>

namespace ofd {

namespace {

constexpr qint64 LargeRangeBytes = qint64(8) << 20; // a page more is nothing to it
constexpr qint64 MovableBytes = qint64(4) << 20;    // moved in less time than the range takes

bool IsAscii(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

// Writes the steps of a plan and the directory behind them.
class SpliceWriter
{
public:
    SpliceWriter(const Package* source, const SplicePlan& plan, TargetFile& file, const SaveOptions& options)
        : source(source)
        , plan(plan)
        , file(file)
        , options(options)
    {
        total = plan.copiedBytes;
        for (const SpliceStep& step : plan.steps)
            total += step.change ? step.change->bytes.size() : 0;
    }

    PackageError Write()
    {
        if (source)
            oldRecords = source->GetSource().ReadAt(Old().directoryOffset, Old().directorySize);
        for (size_t i = 0; i < plan.steps.size(); ++i) {
            const SpliceStep& step = plan.steps[i];
            const SpliceStep* next = i + 1 < plan.steps.size() ? &plan.steps[i + 1] : nullptr; // not owned
            if (PackageError error = step.change ? WriteChange(step, next) : CopyRange(step))
                return error;
        }
        layout.directoryOffset = file.GetPosition();
        QByteArray oldEnd;
        if (source)
            oldEnd = source->GetSource().ReadAt(Old().endOffset, Old().endSize);
        if (PackageError error = file.Write(MakeDirectory(Old(), oldRecords, oldEnd, plan.fates, layout)))
            return error;
        if (!source)
            return {};
        // Foreign bytes behind the archive belong to the file too.
        return file.CopyRange(source->GetSource(), Old().endOffset + Old().endSize, source->GetSource().GetSize(), {});
    }

private:
    const ZipDirectory& Old() const { return source ? source->GetDirectory() : nothing; }

    bool Advance(qint64 count)
    {
        done += count;
        return !options.progress || options.progress(done, std::max(done, total));
    }

    PackageError CopyRange(const SpliceStep& step)
    {
        layout.ranges.push_back({step.begin, step.end, file.GetPosition()});
        return file.CopyRange(source->GetSource(), step.begin, step.end, [this](qint64 n) { return Advance(n); });
    }

    // A small entry in front of a large range is worth aligning.
    static bool IsWorthAligning(const SpliceStep* next, const WrittenEntry& written)
    {
        return next && !next->change && next->end - next->begin >= LargeRangeBytes &&
               written.compressedSize <= MovableBytes;
    }

    PackageError WriteChange(const SpliceStep& step, const SpliceStep* next)
    {
        PlacedEntry placed;
        placed.entry = step.entry;
        bool isUtf8 = false;
        if (step.entry >= 0) {
            // The old name byte for byte, in whatever encoding it was.
            const ZipEntry& entry = Old().entries[size_t(step.entry)];
            const QByteArray record = oldRecords.mid(int(entry.recordOffset), int(entry.recordSize));
            placed.rawName = record.mid(zip::CentralSize, zip::Get16(record.constData() + zip::CentralNameLength));
            isUtf8 = entry.flags & zip::FlagUtf8;
            if (entry.isNamedByOthers) {
                placed.rawName = entry.name.toUtf8();
                isUtf8 = true;
            }
        } else {
            placed.rawName = step.partName.toUtf8();
            isUtf8 = !IsAscii(step.partName);
        }
        if (placed.rawName.size() > zip::Saturated16)
            return {PackageErrorKind::WriteFailed,
                    QCoreApplication::translate("OfdPackage", "The name of a part is too long.")};
        PackageError error = WriteEntry(
            file, *step.change, placed.rawName, isUtf8, [this](qint64 n) { return Advance(n); }, placed.written);
        if (!error && IsWorthAligning(next, placed.written))
            error = AlignEnd(file, placed.rawName, next->begin, placed.written);
        layout.placed.push_back(placed);
        return error;
    }

    const Package* source; // not owned; null for a package made from nothing
    const SplicePlan& plan;
    TargetFile& file;
    const SaveOptions& options;
    const ZipDirectory nothing;
    QByteArray oldRecords;
    NewLayout layout;
    qint64 done = 0;
    qint64 total = 0;
};

PackageError SourceChanged(bool isGone)
{
    if (isGone)
        return {PackageErrorKind::SourceChanged,
                QCoreApplication::translate("OfdPackage", "The opened file was moved or deleted by another program.")};
    return {PackageErrorKind::SourceChanged,
            QCoreApplication::translate("OfdPackage", "The opened file was changed by another program.")};
}

// Whether the target is the file that the package was opened from.
bool IsOwnFile(const Package& source, const QString& targetPath)
{
    if (source.GetPath().isEmpty())
        return false;
    FileIdentity target;
    const FileIdentity& opened = source.GetSource().GetIdentityAtOpening();
    if (ByteSource::IdentityOfPath(targetPath, target) && target.device == opened.device && target.node == opened.node)
        return true;
    return QFileInfo(targetPath).absoluteFilePath() == QFileInfo(source.GetPath()).absoluteFilePath();
}

PackageError CheckSource(const Package& source, const QString& targetPath, const SaveOptions& options)
{
    const ByteSource& bytes = source.GetSource();
    // Changed in place: the offsets we know are worth nothing any more, so even a copy elsewhere would be rubbish.
    if (bytes.GetDescriptor() >= 0 && bytes.GetIdentityNow() != bytes.GetIdentityAtOpening())
        return SourceChanged(false);
    if (!IsOwnFile(source, targetPath) || options.overwritesForeignChange)
        return {};
    FileIdentity present;
    if (!ByteSource::IdentityOfPath(targetPath, present))
        return SourceChanged(true);
    return present == bytes.GetIdentityAtOpening() ? PackageError() : SourceChanged(false);
}

PackageError CheckFailed(const QString& name)
{
    return {PackageErrorKind::CheckFailed,
            QCoreApplication::translate("OfdPackage", "The part \"%1\" was not written correctly.").arg(name)};
}

PackageError CheckPart(const Package& saved, const QString& name, const PartChange& change)
{
    const int index = saved.FindEntry(name);
    if (change.isRemoval)
        return index < 0 ? PackageError() : CheckFailed(name);
    if (index < 0)
        return CheckFailed(name);
    const ZipEntry& entry = saved.GetDirectory().entries[size_t(index)];
    if (change.openData) {
        bool hasWrongChecksum = false;
        const auto ignore = [](const char*, qint64) { return true; };
        const PackageError error = InflateEntry(saved.GetSource(), entry, ignore, &hasWrongChecksum);
        return error || hasWrongChecksum ? CheckFailed(name) : PackageError();
    }
    qint64 at = 0;
    bool hasWrongChecksum = false;
    const auto compare = [&](const char* bytes, qint64 count) {
        const bool isSame =
            at + count <= change.bytes.size() && std::memcmp(change.bytes.constData() + at, bytes, size_t(count)) == 0;
        at += count;
        return isSame;
    };
    const PackageError error = InflateEntry(saved.GetSource(), entry, compare, &hasWrongChecksum);
    if (error || hasWrongChecksum || at != change.bytes.size())
        return CheckFailed(name);
    PackageError xmlError;
    if (change.isXml && !XmlPart::Parse(name, change.bytes, &xmlError))
        return xmlError;
    return {};
}

// Reads the finished file back as any reader would.
std::unique_ptr<Package> OpenAndCheck(const QString& path, const PackageChanges& changes, PackageError* error)
{
    std::unique_ptr<Package> saved = Package::Open(path, error);
    if (!saved) {
        error->kind = PackageErrorKind::CheckFailed;
        return nullptr;
    }
    for (auto it = changes.GetChanges().cbegin(); it != changes.GetChanges().cend(); ++it) {
        *error = CheckPart(*saved, it.key(), it.value());
        if (*error)
            return nullptr;
    }
    return saved;
}

// Flushes, checks and puts the file in its place.
SaveResult FinishSave(TargetFile& file, const PackageChanges& changes)
{
    SaveResult result;
    result.error = file.Finish();
    if (result.error)
        return result;
    std::unique_ptr<Package> saved = OpenAndCheck(file.GetTemporaryPath(), changes, &result.error);
    if (!saved)
        return result;
    result.error = file.Commit();
    if (result.error)
        return result;
    saved->SetPath(file.GetTargetPath());
    result.package = std::move(saved);
    return result;
}

// Names that are read as another one is would be read differently when that one goes. Such parts are written anew, with
// names that need no other.
PackageChanges KeepingNames(const Package& source, const PackageChanges& changes)
{
    const std::vector<ZipEntry>& entries = source.GetDirectory().entries;
    const auto goes = [&](const ZipEntry& entry) { return changes.GetChanges().value(entry.name).isRemoval; };
    const auto tells = [&](const ZipEntry& entry) { return entry.isGb18030 && !goes(entry); };
    const auto asks = [](const ZipEntry& entry) { return entry.isNamedByOthers; };
    if (std::none_of(entries.begin(), entries.end(), asks) || std::any_of(entries.begin(), entries.end(), tells))
        return changes;
    PackageChanges all = changes;
    for (const ZipEntry& entry : entries) {
        if (!asks(entry) || entry.isFolder || changes.GetChanges().contains(entry.name))
            continue;
        const PartData part = source.Read(entry.name);
        if (!part.error)
            all.SetPart(entry.name, part.bytes);
    }
    return all;
}

// The whole file as it is, prefix and all.
PackageError CopyWhole(const Package& source, TargetFile& file, const SaveOptions& options)
{
    qint64 done = 0;
    const qint64 size = source.GetSource().GetSize();
    if (file.CloneWhole(source.GetSource())) {
        const bool goesOn = !options.progress || options.progress(size, size);
        return goesOn ? PackageError()
                      : PackageError{PackageErrorKind::Cancelled,
                                     QCoreApplication::translate("OfdPackage", "Saving was cancelled.")};
    }
    return file.CopyRange(source.GetSource(), 0, size, [&](qint64 count) {
        done += count;
        return !options.progress || options.progress(done, size);
    });
}

} // namespace

SaveResult SavePackage(const Package& source, const PackageChanges& changes, const QString& targetPath,
                       const SaveOptions& options)
{
    SaveResult result;
    result.error = CheckSource(source, targetPath, options);
    if (result.error)
        return result;
    const std::unique_ptr<TargetFile> file = TargetFile::Create(targetPath, &result.error);
    if (!file)
        return result;
    if (!options.waitsForDisk)
        file->LeaveFlushToSystem();
    const PackageChanges all = KeepingNames(source, changes);
    const SplicePlan plan = MakeSplicePlan(source, all);
    if (plan.changesNothing)
        result.error = CopyWhole(source, *file, options);
    else
        result.error = SpliceWriter(&source, plan, *file, options).Write();
    // Somebody may have written into the file while it was being copied.
    if (!result.error)
        result.error = CheckSource(source, targetPath, options);
    if (result.error)
        return result;
    return FinishSave(*file, all);
}

SaveResult CreatePackage(const PackageChanges& parts, const QString& targetPath)
{
    SaveResult result;
    const std::unique_ptr<TargetFile> file = TargetFile::Create(targetPath, &result.error);
    if (!file)
        return result;
    const SaveOptions options;
    SplicePlan plan;
    for (auto it = parts.GetChanges().cbegin(); it != parts.GetChanges().cend(); ++it) {
        SpliceStep step;
        step.partName = it.key();
        step.change = &it.value();
        if (!it->isRemoval)
            plan.steps.push_back(step);
    }
    result.error = SpliceWriter(nullptr, plan, *file, options).Write();
    if (result.error)
        return result;
    return FinishSave(*file, parts);
}

} // namespace ofd
