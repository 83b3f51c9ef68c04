#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

#include <pugixml.hpp>

namespace ofd {

class OfdAnnot;
class Package;
class PackageChanges;
class XmlEdit;
class XmlPart;
struct PackageError;

// Parts that lost their last annotation and left the package, as they were; they come back when an annotation does.
using EmptiedParts = QMap<QString, QByteArray>;

// Brings the parts of annotations up to date: remarks and dates that changed, annotations that were removed or came
// back. A part must not be empty, so it goes with its entry in the list when the last annotation does.
class AnnotationWriter
{
public:
    // Where an annotation is in the new file.
    struct Place
    {
        OfdAnnot* annot;   // not owned
        int ordinal;       // negative: nowhere
        QByteArray oldXml; // its element, when it leaves the file
    };

    AnnotationWriter(const Package& package, const QString& documentFolder, const QString& listPart,
                     const EmptiedParts& emptied);

    // `annots` are those of any pages, each page's complete and in file order. False, with the error, when a part
    // cannot be edited.
    bool Write(const std::vector<OfdAnnot*>& annots, PackageChanges& changes, PackageError& error);
    // After Write.
    const std::vector<Place>& GetPlaces() const { return places; }
    const EmptiedParts& GetEmptied() const { return emptied; }
    int GetHighestNewId() const { return highestNewId; }

private:
    bool WritePart(const QString& name, const std::vector<OfdAnnot*>& annots, PackageChanges& changes,
                   PackageError& error);
    void EditPart(XmlEdit& edit, const XmlPart& part, const std::vector<OfdAnnot*>& annots);
    void EditAnnotation(XmlEdit& edit, const pugi::xml_node& element, OfdAnnot& annot);
    QByteArray BytesOf(OfdAnnot& annot);
    bool WriteList(PackageChanges& changes, PackageError& error);

    const Package& package;
    const QString documentFolder;
    const QString listPart;
    EmptiedParts emptied;
    std::vector<Place> places;
    QStringList gone;            // parts
    QMap<QString, int> returned; // parts, with the id of their page
    int highestNewId = 0;
};

} // namespace ofd
