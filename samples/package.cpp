#include "package.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <zip.h>

namespace samples {

namespace {

// 20 May 2024, 08:30, in the form in which zip entries keep times.
constexpr quint16 kEntryDate = ((2024 - 1980) << 9) | (5 << 5) | 20;
constexpr quint16 kEntryTime = (8 << 11) | (30 << 5);

bool AddEntry(zip_t* archive, const Part& part)
{
    zip_source_t* source = zip_source_buffer(archive, part.data.constData(), zip_uint64_t(part.data.size()), 0);
    if (!source)
        return false;
    const zip_int64_t index = zip_file_add(archive, part.name.toUtf8().constData(), source, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
        zip_source_free(source);
        return false;
    }
    zip_file_set_dostime(archive, zip_uint64_t(index), kEntryTime, kEntryDate, 0);
    return zip_set_file_compression(archive, zip_uint64_t(index), part.isStored ? ZIP_CM_STORE : ZIP_CM_DEFLATE, 0) ==
           0;
}

} // namespace

void Package::Add(const QString& name, const QByteArray& data, bool isStored)
{
    if (Has(name))
        qFatal("part %s is there already", qPrintable(name));
    parts.push_back({name, data, isStored});
}

void Package::Remove(const QString& name)
{
    parts.erase(parts.begin() + std::ptrdiff_t(IndexOf(name)));
}

void Package::Rename(const QString& from, const QString& to)
{
    parts[IndexOf(from)].name = to;
}

void Package::MoveToEnd(const QString& name)
{
    const Part part = parts[IndexOf(name)];
    Remove(name);
    parts.push_back(part);
}

bool Package::Has(const QString& name) const
{
    for (const Part& part : parts)
        if (part.name == name)
            return true;
    return false;
}

QByteArray& Package::Data(const QString& name)
{
    return parts[IndexOf(name)].data;
}

void Package::Replace(const QString& name, const QByteArray& from, const QByteArray& to)
{
    QByteArray& data = Data(name);
    const int at = data.indexOf(from);
    if (at < 0)
        qFatal("part %s does not contain: %s", qPrintable(name), from.constData());
    data.replace(at, from.size(), to);
}

void Package::ReplaceAll(const QString& name, const QByteArray& from, const QByteArray& to)
{
    QByteArray& data = Data(name);
    if (!data.contains(from))
        qFatal("part %s does not contain: %s", qPrintable(name), from.constData());
    data.replace(from, to);
}

bool Package::Save(const QString& path) const
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    int error = 0;
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!archive)
        return false;
    for (const Part& part : parts) {
        if (!AddEntry(archive, part)) {
            zip_discard(archive);
            return false;
        }
    }
    if (zip_close(archive) == 0)
        return true;
    zip_discard(archive);
    return false;
}

size_t Package::IndexOf(const QString& name) const
{
    for (size_t index = 0; index < parts.size(); ++index)
        if (parts[index].name == name)
            return index;
    qFatal("no part %s", qPrintable(name));
}

bool WriteFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

} // namespace samples
