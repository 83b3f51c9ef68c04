#include "memory_attachments.h"

#include <frame/base/converters.h>
#include <frame/base/streams.h>

#include <algorithm>
#include <limits>

namespace {

// The whole content; false when the reader fails or the content is more than an array can hold.
bool ReadAll(ICA_StreamReader* reader, QByteArray* data)
{
    constexpr int chunkBytes = 64 * 1024;
    QByteArray chunk(chunkBytes, Qt::Uninitialized);
    for (;;) {
        const qint64 count = reader->Read(chunk.data(), chunkBytes);
        if (count < 0 || count > std::numeric_limits<int>::max() - chunkBytes - data->size())
            return false;
        if (count == 0)
            return true;
        data->append(chunk.constData(), static_cast<int>(count));
    }
}

// A text that may become part of a path: no separators or control characters, no dots in front, not endless.
CCA_String Harmless(const CCA_String& text)
{
    constexpr int longestName = 200;
    QString cleaned = GQ_ToQStringFromUtf8(text).left(longestName);
    for (QChar& letter : cleaned) {
        const bool isSeparator = letter == QLatin1Char('/') || letter == QLatin1Char('\\');
        if (isSeparator || letter.category() == QChar::Other_Control || letter.category() == QChar::Other_Format)
            letter = QLatin1Char('_');
    }
    while (cleaned.startsWith(QLatin1Char('.')))
        cleaned.remove(0, 1);
    return GQ_ToCAS(cleaned);
}

} // namespace

int MemoryAttachments::Count() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return entries.size();
}

int MemoryAttachments::IndexById(int id) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    for (int i = 0; i < entries.size(); ++i) {
        if (entries.at(i).info.id == id)
            return i;
    }
    return -1;
}

G_AttachmentInfo MemoryAttachments::Info(int index) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return entries.value(index).info;
}

bool MemoryAttachments::Write(int index, ICA_StreamWriter* writer) const
{
    QByteArray data;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (index < 0 || index >= entries.size())
            return false;
        data = entries.at(index).data;
    }
    return writer && writer->Write(data.constData(), data.size());
}

void MemoryAttachments::Add(G_AttachmentInfo info, const QByteArray& data)
{
    info.name = Harmless(info.name);
    info.format = Harmless(info.format);
    const std::lock_guard<std::mutex> lock(mutex);
    int highestId = 0;
    bool isTaken = false;
    for (const Entry& entry : qAsConst(entries)) {
        highestId = std::max(highestId, entry.info.id);
        isTaken = isTaken || entry.info.id == info.id;
    }
    if (info.id <= 0 || isTaken)
        info.id = highestId + 1;
    Entry added;
    added.info = info;
    added.data = data;
    entries.append(added);
}

bool MemoryAttachments::AddFrom(ICA_StreamReader* reader, const G_AttachmentInfo& info)
{
    QByteArray data;
    if (!reader || !ReadAll(reader, &data))
        return false;
    G_AttachmentInfo sized = info;
    sized.size = static_cast<float>(data.size()) / 1024;
    Add(sized, data);
    return true;
}

bool MemoryAttachments::Remove(int index)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (index < 0 || index >= entries.size())
        return false;
    entries.remove(index);
    return true;
}
