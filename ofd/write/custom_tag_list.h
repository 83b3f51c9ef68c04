#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

#include <pugixml.hpp>

namespace ofd {

class Package;
class PackageChanges;
class XmlEdit;
class XmlPart;
struct PackageError;
struct TagTree;

// Brings the parts with custom tags up to date, and the list that names them: trees that were made in memory get a part
// and an entry, a part whose tags are all gone leaves the package, and the list is made when there is none.
class CustomTagListWriter
{
public:
    // `listPart` is empty when the document has no list that exists. `edit` is for the document part.
    CustomTagListWriter(const Package& package, const XmlPart& document, XmlEdit& edit, const QString& documentFolder,
                        const QString& listPart);

    bool Write(const std::vector<TagTree>& trees, PackageChanges& changes, PackageError& error);
    // After Write: the part of each tree (empty for one without tags), and that of the list.
    const QStringList& GetParts() const { return parts; }
    const QString& GetListPart() const { return listPart; }

private:
    QString WriteTree(const TagTree& tree, PackageChanges& changes, PackageError& error);
    bool WriteList(const std::vector<TagTree>& trees, PackageChanges& changes, PackageError& error);
    void MakeList(const std::vector<TagTree>& trees, PackageChanges& changes);
    void EditList(XmlEdit& list, const pugi::xml_node& root, const std::vector<TagTree>& trees) const;
    QByteArray EntryFor(const TagTree& tree, const QString& part, const pugi::xml_node& list) const;

    const Package& package;
    const XmlPart& document;
    XmlEdit& edit;
    const QString documentFolder;
    QString listPart;
    QStringList parts;
};

} // namespace ofd
