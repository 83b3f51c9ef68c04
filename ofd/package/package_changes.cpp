#include "package_changes.h"

#include "entry_names.h"
#include "package.h"

#include <QIODevice>
#include <QSet>

#include <algorithm>

namespace ofd {

void PackageChanges::SetPart(const QString& name, const QByteArray& bytes)
{
    PartChange change;
    change.bytes = bytes;
    changes.insert(name, change);
}

void PackageChanges::SetXmlPart(const QString& name, const QByteArray& bytes)
{
    PartChange change;
    change.isXml = true;
    change.bytes = bytes;
    changes.insert(name, change);
}

void PackageChanges::SetPartFromDevice(const QString& name, std::function<std::unique_ptr<QIODevice>()> openData,
                                       bool isStored)
{
    PartChange change;
    change.isStored = isStored;
    change.openData = std::move(openData);
    changes.insert(name, change);
}

void PackageChanges::RemovePart(const QString& name)
{
    PartChange change;
    change.isRemoval = true;
    changes.insert(name, change);
}

bool PackageChanges::IsFreeName(const Package& package, const QString& name) const
{
    const QString folded = FoldAsciiCase(name);
    const bool isChanged = std::any_of(changes.keyBegin(), changes.keyEnd(),
                                       [&folded](const QString& other) { return FoldAsciiCase(other) == folded; });
    return !isChanged && !package.HasPartIgnoringCase(name);
}

QString PackageChanges::FreePartName(const Package& package, const QString& folder, const QString& stem,
                                     const QString& ending) const
{
    QSet<QString> taken;
    for (auto it = changes.cbegin(); it != changes.cend(); ++it)
        taken.insert(FoldAsciiCase(it.key()));
    for (int number = 1;; ++number) {
        const QString name = folder + stem + QString::number(number) + ending;
        if (!package.HasPartIgnoringCase(name) && !taken.contains(FoldAsciiCase(name)))
            return name;
    }
}

} // namespace ofd
