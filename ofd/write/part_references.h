#pragma once

#include <QString>
#include <QStringList>

namespace ofd {

class Package;
class PackageChanges;

// Whether anything in the package as it will be after the changes refers to the part: other lists, resources, another
// document, an older version. Signatures do not count: they are asked about before a save. Nor do the parts `pages`,
// whose content names nothing that a save removes. Looking takes a walk through all other XML parts.
bool IsReferredTo(const Package& package, const PackageChanges& changes, const QString& part, const QStringList& pages,
                  const QString& documentFolder);

} // namespace ofd
