#pragma once

#include <ofd/model/attachment_table.h>

#include <pugixml.hpp>

namespace ofd {

class Package;
struct DocumentStructure;

// The attachments that the list part names, or that stand in the document element itself. Each gets an identifier of
// its own in memory and a harmless name.
QVector<AttachmentEntry> ReadAttachments(const Package& package, const DocumentStructure& structure,
                                         const pugi::xml_node& documentRoot);

// The number of an attachment's identifier, which is or ends in one; 0 when there is none.
int AttachmentIdOf(const QString& identifier);

// A name to show, without what could lead somewhere else or mislead: separators, control and direction characters,
// leading dots.
QString HarmlessName(const QString& name);
// The same without what some file systems refuse, to make a file or a part of.
QString CleanedName(const QString& name);

} // namespace ofd
