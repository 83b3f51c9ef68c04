#pragma once

#include "payloads.h"

#include <QVector>

#include <mutex>

class ICA_StreamReader;
class ICA_StreamWriter;

// The attachments of a document in memory. Every call may come from any thread; contents are copied outside the lock.
class MemoryAttachments
{
public:
    int Count() const;
    int IndexById(int id) const; // -1 when not found
    // A default record when the index is out of range.
    G_AttachmentInfo Info(int index) const;
    // False when the index is out of range or the writer fails.
    bool Write(int index, ICA_StreamWriter* writer) const;
    // Appends; an id that is unset or taken is replaced by a free one, and name and format are made harmless as parts
    // of a path.
    void Add(G_AttachmentInfo info, const QByteArray& data);
    // Reads the whole content, and appends; false when it cannot be read or passes 2 GiB.
    bool AddFrom(ICA_StreamReader* reader, const G_AttachmentInfo& info);
    bool Remove(int index);

private:
    struct Entry
    {
        G_AttachmentInfo info;
        QByteArray data;
    };

    mutable std::mutex mutex;
    QVector<Entry> entries;
};
