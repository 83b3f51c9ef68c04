#include "package.h"

#include "byte_source.h"
#include "entry_names.h"
#include "part_inflater.h"
#include "whole_inflater.h"

#include <ofd/model/problem_log.h>

#include <QCoreApplication>
#include <QIODevice>

#include <cstring>

namespace ofd {

namespace {

PackageError NoSuchPart(const QString& name)
{
    return {PackageErrorKind::NoSuchPart,
            QCoreApplication::translate("OfdPackage", "The file has no part \"%1\".").arg(name)};
}

void TellOfPart(const QString& name, const PackageError& error, bool hasWrongChecksum)
{
    if (error && !name.isEmpty())
        ReportProblem(error.kind == PackageErrorKind::NoSuchPart ? ProblemKind::MissingPart
                      : error.kind == PackageErrorKind::TooBig   ? ProblemKind::Limit
                                                                 : ProblemKind::UnreadablePart,
                      name, error.text);
    if (hasWrongChecksum)
        ReportProblem(ProblemKind::WrongChecksum, name,
                      QCoreApplication::translate("OfdPackage", "The checksum of the part is wrong."));
}

} // namespace

Package::Package() = default;
Package::~Package() = default;

std::unique_ptr<Package> Package::Open(const QString& path, PackageError* error)
{
    std::unique_ptr<ByteSource> source = ByteSource::OpenFile(path, error);
    if (!source)
        return nullptr;
    std::unique_ptr<Package> package = OpenSource(std::move(source), error);
    if (package)
        package->path = path;
    return package;
}

std::unique_ptr<Package> Package::OpenBytes(const QByteArray& bytes, PackageError* error)
{
    return OpenSource(ByteSource::OpenBytes(bytes), error);
}

std::unique_ptr<Package> Package::OpenSource(std::unique_ptr<ByteSource> source, PackageError* error)
{
    std::unique_ptr<Package> package(new Package);
    package->source = std::move(source);
    PackageError result = ReadZipDirectory(*package->source, package->directory);
    if (!result) {
        package->IndexNames();
        result = package->FindEntryPoint();
    }
    if (error)
        *error = result;
    return result ? nullptr : std::move(package);
}

void Package::IndexNames()
{
    const std::vector<ZipEntry>& entries = directory.entries;
    byName.reserve(int(entries.size()));
    for (int i = 0; i < int(entries.size()); ++i) {
        if (entries[size_t(i)].isFolder)
            continue;
        auto found = byName.find(entries[size_t(i)].name);
        // Of several entries with one name the last that can be read holds, as other zip readers have it.
        if (found == byName.end())
            byName.insert(entries[size_t(i)].name, i);
        else if (entries[size_t(i)].isUsable || !entries[size_t(*found)].isUsable)
            *found = i;
    }
}

PackageError Package::FindEntryPoint()
{
    const QString usual = QStringLiteral("OFD.xml");
    if (HasPart(usual)) {
        entryPoint = usual;
    } else {
        for (auto it = byName.cbegin(); it != byName.cend(); ++it) {
            if (it.key().compare(usual, Qt::CaseInsensitive) != 0)
                continue;
            if (!entryPoint.isEmpty()) {
                entryPoint.clear(); // two candidates are none
                break;
            }
            entryPoint = it.key();
        }
    }
    if (entryPoint.isEmpty())
        return {PackageErrorKind::NoEntryPoint,
                QCoreApplication::translate("OfdPackage", "This is no OFD file: it has no OFD.xml.")};
    if (directory.entries[size_t(FindEntry(entryPoint))].IsEncrypted())
        return {PackageErrorKind::Encrypted, QCoreApplication::translate("OfdPackage", "The file is encrypted.")};
    return {};
}

QStringList Package::GetPartNames() const
{
    QStringList names;
    names.reserve(byName.size());
    for (int i = 0; i < int(directory.entries.size()); ++i) {
        const ZipEntry& entry = directory.entries[size_t(i)];
        if (!entry.isFolder && FindEntry(entry.name) == i)
            names.append(entry.name);
    }
    return names;
}

const std::vector<int>* Package::FoldedMatches(const QString& name) const
{
    std::call_once(foldedOnce, [this] {
        byFoldedName.reserve(byName.size());
        for (auto it = byName.cbegin(); it != byName.cend(); ++it)
            byFoldedName[FoldAsciiCase(it.key())].push_back(it.value());
    });
    const auto found = byFoldedName.constFind(FoldAsciiCase(name));
    return found == byFoldedName.cend() ? nullptr : &*found;
}

QString Package::FindIgnoringCase(const QString& name) const
{
    const std::vector<int>* matches = FoldedMatches(name);
    return matches && matches->size() == 1 ? directory.entries[size_t(matches->front())].name : QString();
}

bool Package::HasPartIgnoringCase(const QString& name) const
{
    return FoldedMatches(name) != nullptr;
}

QString Package::FindByFileName(const QString& folder, const QString& fileName) const
{
    std::call_once(fileNamesOnce, [this] {
        for (auto it = byName.cbegin(); it != byName.cend(); ++it)
            byFileName[FileNameOf(it.key())].push_back(it.value());
    });
    QString found;
    const auto candidates = byFileName.constFind(fileName);
    if (fileName.isEmpty() || candidates == byFileName.cend())
        return found;
    for (const int index : *candidates) {
        const QString& name = directory.entries[size_t(index)].name;
        if (!name.startsWith(folder))
            continue;
        if (!found.isEmpty())
            return {};
        found = name;
    }
    return found;
}

qint64 Package::GetPartSize(const QString& name) const
{
    const int index = FindEntry(name);
    return index < 0 ? -1 : directory.entries[size_t(index)].size;
}

PartData Package::Read(const QString& name) const
{
    PartData data = ReadQuietly(name);
    TellOfPart(name, data.error, data.hasWrongChecksum);
    return data;
}

PartData Package::ReadQuietly(const QString& name) const
{
    PartData data;
    const int index = FindEntry(name);
    if (index < 0) {
        data.error = NoSuchPart(name);
        return data;
    }
    const ZipEntry& entry = directory.entries[size_t(index)];
    data.error = CheckEntry(entry, true);
    if (data.error)
        return data;
    data.bytes = QByteArray(int(entry.size), Qt::Uninitialized);
    char* to = data.bytes.data();
    if (InflateAtOnce(*source, entry, to))
        return data;
    qint64 done = 0;
    // The inflater never hands out more than the promised size.
    auto put = [&](const char* bytes, qint64 count) {
        std::memcpy(to + done, bytes, size_t(count));
        done += count;
        return true;
    };
    data.error = InflateEntry(*source, entry, put, &data.hasWrongChecksum);
    data.bytes.truncate(data.error ? 0 : int(done));
    return data;
}

PackageError Package::ReadTo(const QString& name, QIODevice& out) const
{
    bool hasWrongChecksum = false;
    const int index = FindEntry(name);
    PackageError error = index < 0 ? NoSuchPart(name) : CheckEntry(directory.entries[size_t(index)], false);
    if (!error) {
        auto put = [&](const char* bytes, qint64 count) { return out.write(bytes, count) == count; };
        error = InflateEntry(*source, directory.entries[size_t(index)], put, &hasWrongChecksum);
    }
    TellOfPart(name, error, hasWrongChecksum);
    return error;
}

} // namespace ofd
