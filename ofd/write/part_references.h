#pragma once

#include <QString>
#include <QStringList>

namespace ofd {

class Package;
class PackageChanges;

// Of the parts `parts` those that anything in the package refers to as it will be after the changes: other lists,
// resources, another document, an older version. Signatures do not count: they are asked about before a save. Nor do
// the parts `pages`, whose content names nothing that a save removes. Looking takes a walk through all other XML parts.
QStringList PartsInUse(const Package& package, const PackageChanges& changes, const QStringList& parts,
                       const QStringList& pages, const QString& documentFolder);

} // namespace ofd
