#pragma once

#include <ofd/model/attachment_table.h>

#include <pugixml.hpp>

namespace ofd {

class Package;
struct DocumentStructure;

// The attachments that the list part names, or that stand in the document element itself. Each gets an identifier of
// its own in memory. Names are those of the file, which may hold anything.
QVector<AttachmentEntry> ReadAttachments(const Package& package, const DocumentStructure& structure,
                                         const pugi::xml_node& documentRoot);

// A name without what could lead somewhere else or mislead: separators, control and direction characters, leading dots.
QString CleanedName(const QString& name);

} // namespace ofd
