// The lists of a document that are parts of their own: resources, annotations, tags, attachments.
#include "document_builder.h"

namespace samples {

namespace {

void WriteGroup(XmlPart& xml, const QString& name, const QVector<std::function<void(XmlPart&)>>& writers)
{
    if (writers.isEmpty())
        return;
    xml.Open(name);
    for (const auto& write : writers)
        write(xml);
    xml.Close();
}

} // namespace

void DocumentBuilder::BuildResources(Package& package)
{
    XmlPart shared("Res", {{"BaseLoc", "Res"}});
    WriteGroup(shared, "ColorSpaces", colorSpaces);
    if (!fonts.empty()) {
        shared.Open("Fonts");
        for (const FontEntry& font : fonts) {
            shared.Open("Font", font.attributes);
            if (!font.fileName.isEmpty())
                shared.Leaf("FontFile", {}, font.fileName);
            shared.Close();
        }
        shared.Close();
    }
    package.Add("Doc_0/PublicRes.xml", shared.Finish());
    XmlPart own("Res", {{"BaseLoc", "Res"}});
    WriteGroup(own, "DrawParams", drawParams);
    if (!media.isEmpty()) {
        own.Open("MultiMedias");
        for (int index = 0; index < media.size(); ++index)
            own.Open("MultiMedia", media[index]).Leaf("MediaFile", {}, mediaFiles[index]).Close();
        own.Close();
    }
    WriteGroup(own, "CompositeGraphicUnits", composites);
    package.Add("Doc_0/DocumentRes.xml", own.Finish());
}

void DocumentBuilder::BuildAnnotations(Package& package)
{
    if (annotations.isEmpty())
        return;
    XmlPart list("Annotations");
    std::vector<Part> parts;
    for (auto entry = annotations.cbegin(); entry != annotations.cend(); ++entry) {
        const QString location = QStringLiteral("Page_%1/Annotation.xml").arg(pages.indexOf(entry.key()));
        list.Open("Page", {{"PageID", Num(entry.key())}}).Leaf("FileLoc", {}, location).Close();
        parts.push_back({QStringLiteral("Doc_0/Annots/") + location, BuildPageAnnotations(entry.value())});
    }
    package.Add("Doc_0/Annots/Annotations.xml", list.Finish());
    for (const Part& part : parts)
        package.Add(part.name, part.data);
}

QByteArray DocumentBuilder::BuildPageAnnotations(const std::vector<Annotation>& list)
{
    XmlPart xml("PageAnnot");
    for (const Annotation& annotation : list) {
        Attributes attributes{{"ID", Num(ids.Next())},
                              {"Type", annotation.type},
                              {"Creator", "tetobaisfla"},
                              {"LastModDate", "2024-05-20"}};
        if (!annotation.subtype.isEmpty())
            attributes.push_back({"Subtype", annotation.subtype});
        if (!annotation.isReadOnly)
            attributes.push_back({"ReadOnly", "false"});
        xml.Open("Annot", attributes);
        if (!annotation.remark.isEmpty())
            xml.Leaf("Remark", {}, annotation.remark);
        if (!annotation.parameters.isEmpty()) {
            xml.Open("Parameters");
            for (const auto& parameter : annotation.parameters)
                xml.Leaf("Parameter", {{"Name", parameter.first}}, parameter.second);
            xml.Close();
        }
        xml.Open("Appearance", {{"Boundary", Box(annotation.boundary)}});
        ObjectWriter objects(xml, ids);
        if (annotation.appearance)
            annotation.appearance(objects);
        xml.Close().Close();
    }
    return xml.Finish();
}

void DocumentBuilder::BuildAttachments(Package& package)
{
    if (attachments.empty())
        return;
    XmlPart list("Attachments");
    for (const Attachment& attachment : attachments) {
        Attributes attributes{{"ID", QStringLiteral("a%1").arg(ids.Next())},
                              {"Name", attachment.name},
                              {"Format", attachment.format},
                              {"CreationDate", "2024-05-20T08:30:00"},
                              {"Size", Num(attachment.data.size() / 1024.0)}};
        if (!attachment.isVisible)
            attributes.push_back({"Visible", "false"});
        list.Open("Attachment", attributes).Leaf("FileLoc", {}, attachment.fileName).Close();
    }
    package.Add("Doc_0/Attachs/Attachments.xml", list.Finish());
    for (const Attachment& attachment : attachments)
        package.Add(QStringLiteral("Doc_0/Attachs/") + attachment.fileName, attachment.data, attachment.isStored);
}

void DocumentBuilder::BuildTags(Package& package) const
{
    if (tagFiles.empty())
        return;
    XmlPart list("CustomTags");
    for (const TagFile& file : tagFiles)
        list.Open("CustomTag", {{"NameSpace", file.nameSpace}}).Leaf("FileLoc", {}, file.fileName).Close();
    package.Add("Doc_0/Tags/CustomTags.xml", list.Finish());
    for (const TagFile& file : tagFiles)
        package.Add(QStringLiteral("Doc_0/Tags/") + file.fileName, file.xml);
}

} // namespace samples
