#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <functional>
#include <memory>

class QIODevice;

namespace ofd {

class Package;

// What a save does to one part.
struct PartChange
{
    bool isRemoval = false;
    bool isStored = false; // without packing, which big data that is packed already would only wait for
    bool isXml = false;    // checked to parse before the save is done
    QByteArray bytes;
    // Set for big parts: gives a device, open for reading, with the new bytes; null when it cannot be opened. Called
    // at least once a save, on the saving thread.
    std::function<std::unique_ptr<QIODevice>()> openData;
};

// The parts that differ from those of the package, by name. Setting a part that the package has replaces it, setting
// another adds it at the end. A value type.
class PackageChanges
{
public:
    void SetPart(const QString& name, const QByteArray& bytes);
    // The same for XML that nobody has parsed yet, as XmlEdit does: the save fails when these bytes do not.
    void SetXmlPart(const QString& name, const QByteArray& bytes);
    void SetPartFromDevice(const QString& name, std::function<std::unique_ptr<QIODevice>()> openData,
                           bool isStored = false);
    void RemovePart(const QString& name);
    // Forgets the change of this part.
    void Revert(const QString& name) { changes.remove(name); }

    bool IsEmpty() const { return changes.isEmpty(); }
    const QMap<QString, PartChange>& GetChanges() const { return changes; }
    // Whether neither the package nor these changes use the name in any letter case.
    bool IsFreeName(const Package& package, const QString& name) const;
    // A name in the folder that neither the package nor these changes use in any letter case: "Doc_0/Tags/Tag_1.xml"
    // from folder "Doc_0/Tags/", stem "Tag_" and ending ".xml".
    QString FreePartName(const Package& package, const QString& folder, const QString& stem,
                         const QString& ending) const;

private:
    QMap<QString, PartChange> changes;
};

} // namespace ofd
