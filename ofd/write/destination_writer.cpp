#include "destination_writer.h"

#include <frame/document/destination.h>
#include <ofd/model/structure.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_text.h>

namespace ofd {

namespace {

constexpr const char* DestinationTypes[] = {"XYZ", "Fit", "FitH", "FitV", "FitR"};

struct DestinationAttribute
{
    const char* name;
    QString value; // null: the mode does not use it
};

QString Number(double value)
{
    return QString::fromLatin1(FormatNumber(value));
}

// What a destination is written as; attributes that its mode does not use are left out.
QVector<DestinationAttribute> AttributesOf(const G_Dest& dest, const DocumentStructure& structure)
{
    const int mode = dest.zoomMode >= 0 && dest.zoomMode <= 4 ? dest.zoomMode : 0;
    const int pageId = dest.pageId ? dest.pageId : structure.pages.value(dest.pageIndex).id;
    const bool hasAll = mode == 0 || mode == 4;
    return {{"Type", QString::fromLatin1(DestinationTypes[mode])},
            {"PageID", FormatId(pageId)},
            {"Left", hasAll || mode == 3 ? Number(double(dest.left)) : QString()},
            {"Top", hasAll || mode == 2 ? Number(double(dest.top)) : QString()},
            {"Right", hasAll ? Number(double(dest.right)) : QString()},
            {"Bottom", hasAll ? Number(double(dest.bottom)) : QString()},
            {"Zoom", mode == 0 && dest.zoom > 0 ? Number(double(dest.zoom)) : QString()}};
}

} // namespace

void AppendDestination(XmlFragment& xml, const G_Dest& dest, const DocumentStructure& structure)
{
    xml.Open("Dest");
    for (const DestinationAttribute& attribute : AttributesOf(dest, structure)) {
        if (!attribute.value.isNull())
            xml.Attribute(attribute.name, attribute.value);
    }
    xml.Close();
}

void EditDestination(XmlEdit& edit, const pugi::xml_node& element, const G_Dest& dest,
                     const DocumentStructure& structure)
{
    for (const DestinationAttribute& attribute : AttributesOf(dest, structure)) {
        if (!attribute.value.isNull())
            edit.SetAttribute(element, attribute.name, attribute.value);
        else
            edit.RemoveAttribute(element, attribute.name);
    }
}

} // namespace ofd
