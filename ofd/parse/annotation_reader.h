#pragma once

#include <ofd/model/annotations.h>

namespace ofd {

class Package;

// Reads the list of annotation parts; empty when there is none or it cannot be read, which `isBroken` tells. Entries
// whose part is missing are left out.
AnnotationIndex ReadAnnotationIndex(const Package& package, const QString& listPart, const QString& documentFolder,
                                    bool* isBroken = nullptr);

// Reads the annotations of one page from its parts.
std::shared_ptr<PageAnnotations> ReadPageAnnotations(const Package& package, const QStringList& parts,
                                                     const std::shared_ptr<const Resources>& resources);

} // namespace ofd
