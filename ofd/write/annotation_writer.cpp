#include "annotation_writer.h"

#include <ofd/ofd_annot.h>
#include <ofd/package/package.h>
#include <ofd/package/package_changes.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_text.h>

#include <QMap>

namespace ofd {

namespace {

QString TextOf(const CCA_String& text)
{
    return QString::fromUtf8(text.Bytes());
}

void EditAnnotation(XmlEdit& edit, const pugi::xml_node& element, OfdAnnot& annot)
{
    if (annot.IsDateEdited()) {
        if (annot.GetDate().IsEmpty())
            edit.RemoveAttribute(element, "LastModDate");
        else
            edit.SetAttribute(element, "LastModDate", TextOf(annot.GetDate()));
    }
    if (!annot.IsRemarkEdited())
        return;
    const pugi::xml_node remark = ChildElement(element, "Remark");
    if (annot.GetRemark().IsEmpty())
        edit.Remove(remark);
    else if (remark)
        edit.SetText(remark, TextOf(annot.GetRemark()));
    else
        edit.PrependChild(element,
                          XmlFragment(PrefixOf(element)).Element("Remark", TextOf(annot.GetRemark())).GetBytes());
}

} // namespace

bool WriteAnnotations(const Package& package, const std::vector<OfdAnnot*>& edited, PackageChanges& changes,
                      PackageError& error)
{
    QMap<QString, std::vector<OfdAnnot*>> byPart;
    for (OfdAnnot* annot : edited)
        byPart[annot->Record().part].push_back(annot);
    for (auto part = byPart.cbegin(); part != byPart.cend(); ++part) {
        const std::unique_ptr<XmlPart> xml = XmlPart::Load(package, part.key(), &error);
        if (!xml)
            return false;
        const std::vector<pugi::xml_node> elements = ChildElements(xml->GetRoot(), "Annot");
        XmlEdit edit(*xml);
        for (OfdAnnot* annot : *part) {
            const size_t ordinal = size_t(annot->Record().ordinal);
            if (ordinal < elements.size())
                EditAnnotation(edit, elements[ordinal], *annot);
        }
        if (edit.IsEmpty())
            continue;
        const QByteArray bytes = edit.Apply(&error);
        if (bytes.isEmpty())
            return false;
        changes.SetPart(part.key(), bytes);
    }
    return true;
}

} // namespace ofd
