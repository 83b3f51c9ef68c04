#pragma once

#include <ofd/model/attachment_table.h>

#include <pugixml.hpp>

namespace ofd {

class Package;
struct AttachmentIds;
struct DocumentStructure;

// The attachments that the list part names, or that stand in the document element itself. Each gets an identifier of
// its own in memory and a harmless name.
QVector<AttachmentEntry> ReadAttachments(const Package& package, const DocumentStructure& structure,
                                         const pugi::xml_node& documentRoot);

// What those attachments can be named by.
AttachmentIds AttachmentIdsOf(const QVector<AttachmentEntry>& entries);
// The identifier in memory of the attachment that is called so: by the whole word, else by the number that it ends in.
// What leads to none stays that number, or 0 when it is none or was given to another.
int FindAttachmentId(const AttachmentIds& ids, const QString& identifier);

// A name to show, without what could lead somewhere else or mislead: separators, control and direction characters,
// leading dots.
QString HarmlessName(const QString& name);
// The same without what some file systems refuse, to make a file or a part of.
QString CleanedName(const QString& name);

} // namespace ofd
