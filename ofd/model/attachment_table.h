#pragma once

#include <frame/document/payloads.h>

#include <QString>
#include <QTemporaryFile>
#include <QVector>

#include <functional>
#include <memory>
#include <mutex>

class ICA_StreamReader;
class ICA_StreamWriter;

namespace ofd {

class Package;

// One attachment: what is shown, and where its bytes are.
struct AttachmentEntry
{
    G_AttachmentInfo info;
    QString identifier;                   // as the file spells it; empty when it has none, or was added
    QString part;                         // in the package; empty when it was added, or its part is missing
    int ordinal = -1;                     // of its element in the list it was read from; -1 when it was added
    bool isBig = false;                   // stored without packing
    std::shared_ptr<QTemporaryFile> file; // of an added one, until it is saved
};

// The attachments of a document as plain values behind a lock, which is never held while bytes are copied. Any thread.
class AttachmentTable
{
public:
    // Gives an identifier above the one it is called with that nothing else in the document has. Any thread.
    using NewId = std::function<int(int above)>;
    using PackageNow = std::function<std::shared_ptr<const Package>()>;

    // `listPart` names them; empty when none does.
    AttachmentTable(QVector<AttachmentEntry> entries, const QString& listPart, NewId newId);

    // The part with the list; empty when the document has no list in a part of its own.
    QString GetListPart() const;

    int GetCount() const;
    int GetIndexById(int id) const;
    // A default value when out of range.
    G_AttachmentInfo GetInfo(int index) const;
    // `packageNow` is asked behind the lock: a save gives a new package first, and then the entries their parts in it.
    bool Write(int index, const PackageNow& packageNow, ICA_StreamWriter* writer) const;
    // Copies the bytes to a private file first; false, and nothing added, when they cannot be read.
    bool AddFrom(ICA_StreamReader* reader, G_AttachmentInfo info, bool isBig);
    bool Remove(int index);
    // Differs from what the file holds.
    bool IsChanged() const;
    QVector<AttachmentEntry> GetEntries() const;
    // The file now holds these entries, each with its part and place, in that list.
    void AdoptSaved(const QVector<AttachmentEntry>& savedEntries, const QString& newListPart);

private:
    int HighestId() const;

    mutable std::mutex mutex;
    QVector<AttachmentEntry> entries;
    QString listPart;
    int savedCount;
    const NewId newId;
    bool hasRemoved = false;
};

} // namespace ofd
