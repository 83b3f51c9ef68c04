#pragma once

#include <ofd/model/attachment_table.h>

#include <QString>

#include <pugixml.hpp>

namespace ofd {

class Package;
class PackageChanges;
class XmlEdit;
class XmlPart;
struct PackageError;

// Brings the list of attachments in the file up to date: takes out the elements and parts of removed ones, adds those
// that were added, and makes the list when there is none.
class AttachmentWriter
{
public:
    // `listPart` is empty when the document has no list of its own part. `edit` is for the document part.
    AttachmentWriter(const Package& package, const XmlPart& document, XmlEdit& edit, const QString& documentFolder,
                     const QString& listPart);

    bool Write(const QVector<AttachmentEntry>& current, PackageChanges& changes, PackageError& error);
    // After Write: the entries with their parts and places in the new file, and the part of the list.
    const QVector<AttachmentEntry>& GetWritten() const { return written; }
    const QString& GetListPart() const { return listPart; }
    // The highest identifier that was given out since the document was read or saved; 0 without any.
    int GetHighestNewId() const { return highestNewId; }

private:
    void EditList(XmlEdit& list, const pugi::xml_node& holder, PackageChanges& changes);
    void RemoveGone(XmlEdit& list, const pugi::xml_node& holder, PackageChanges& changes);
    QByteArray ElementOf(const AttachmentEntry& entry, const QByteArray& prefix, bool isFromRoot) const;
    void AddPart(AttachmentEntry& entry, PackageChanges& changes) const;
    bool MakeList(PackageChanges& changes);

    const Package& package;
    const XmlPart& document;
    XmlEdit& edit;
    const QString documentFolder;
    QString listPart;
    QVector<AttachmentEntry> written;
    int highestNewId = 0;
};

} // namespace ofd
