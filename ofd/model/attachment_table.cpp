#include "attachment_table.h"

#include <frame/base/streams.h>
#include <ofd/package/package.h>

#include <QDir>
#include <QHash>
#include <QIODevice>

#include <algorithm>

namespace ofd {

namespace {

constexpr int ChunkBytes = 256 * 1024;
constexpr qint64 BigBytes = qint64(64) << 20;

// Lets a part be inflated straight into a stream writer.
class WriterDevice : public QIODevice
{
public:
    explicit WriterDevice(ICA_StreamWriter* writer)
        : writer(writer)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override { return writer->Write(data, size) ? size : -1; }

private:
    ICA_StreamWriter* writer; // not owned
};

bool CopyFile(const QString& path, ICA_StreamWriter* writer)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QByteArray chunk(ChunkBytes, Qt::Uninitialized);
    for (;;) {
        const qint64 count = file.read(chunk.data(), chunk.size());
        if (count <= 0)
            return count == 0;
        if (!writer->Write(chunk.constData(), count))
            return false;
    }
}

// The bytes of the reader in a file that goes with the last holder; null when reading or writing fails.
std::shared_ptr<QTemporaryFile> Spool(ICA_StreamReader* reader)
{
    auto file = std::make_shared<QTemporaryFile>(QDir::tempPath() + QStringLiteral("/attachment-XXXXXX"));
    if (!file->open())
        return nullptr;
    QByteArray chunk(ChunkBytes, Qt::Uninitialized);
    for (;;) {
        const qint64 count = reader->Read(chunk.data(), chunk.size());
        if (count < 0)
            return nullptr;
        if (count == 0)
            break;
        if (file->write(chunk.constData(), count) != count)
            return nullptr;
    }
    return file->flush() ? file : nullptr;
}

} // namespace

AttachmentTable::AttachmentTable(QVector<AttachmentEntry> entriesIn, const QString& listPart, NewId newIdIn)
    : entries(std::move(entriesIn))
    , listPart(listPart)
    , savedCount(entries.size())
    , newId(std::move(newIdIn))
{
}

QString AttachmentTable::GetListPart() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return listPart;
}

int AttachmentTable::HighestId() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    int highest = 0;
    for (const AttachmentEntry& entry : entries)
        highest = std::max(highest, entry.info.id);
    return highest;
}

int AttachmentTable::GetCount() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return entries.size();
}

int AttachmentTable::GetIndexById(int id) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    for (int i = 0; i < entries.size(); ++i) {
        if (entries.at(i).info.id == id)
            return i;
    }
    return -1;
}

G_AttachmentInfo AttachmentTable::GetInfo(int index) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return entries.value(index).info;
}

bool AttachmentTable::Write(int index, const PackageNow& packageNow, ICA_StreamWriter* writer) const
{
    AttachmentEntry entry;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (index < 0 || index >= entries.size())
            return false;
        entry = entries.at(index);
    }
    if (!writer)
        return false;
    bool isWritten = false;
    if (entry.file) {
        isWritten = CopyFile(entry.file->fileName(), writer);
    } else if (!entry.part.isEmpty()) {
        WriterDevice device(writer);
        isWritten = !packageNow()->ReadTo(entry.part, device);
    }
    if (!isWritten)
        writer->Abandon();
    return isWritten;
}

bool AttachmentTable::AddFrom(ICA_StreamReader* reader, G_AttachmentInfo info, bool isBig)
{
    const std::shared_ptr<QTemporaryFile> file = reader ? Spool(reader) : nullptr;
    if (!file)
        return false;
    info.size = float(file->size() / 1024.0);
    AttachmentEntry entry;
    entry.file = file;
    entry.isBig = isBig || file->size() >= BigBytes;
    info.id = newId(HighestId()); // not under the lock: it may read the whole document
    entry.info = info;
    const std::lock_guard<std::mutex> lock(mutex);
    entries.append(entry);
    return true;
}

bool AttachmentTable::Remove(int index)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (index < 0 || index >= entries.size())
        return false;
    hasRemoved |= entries.at(index).ordinal >= 0;
    entries.remove(index);
    return true;
}

bool AttachmentTable::IsChanged() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return hasRemoved || entries.size() != savedCount;
}

QVector<AttachmentEntry> AttachmentTable::GetEntries() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return entries;
}

void AttachmentTable::AdoptSaved(const QVector<AttachmentEntry>& savedEntries, const QString& newListPart)
{
    const std::lock_guard<std::mutex> lock(mutex);
    QHash<int, int> places; // of the saved ones, by id
    for (int i = 0; i < savedEntries.size(); ++i)
        places.insert(savedEntries.at(i).info.id, i);
    for (AttachmentEntry& entry : entries) {
        const auto place = places.constFind(entry.info.id);
        if (place == places.constEnd())
            continue;
        entry = savedEntries.at(*place);
        places.erase(place);
    }
    listPart = newListPart;
    savedCount = savedEntries.size();
    hasRemoved = !places.isEmpty(); // by another thread, while the file was written
}

} // namespace ofd
