#include "document_builder.h"

namespace samples {

namespace {

QByteArray PagePart(const PageSetup& setup, const std::function<void(PageBuilder&)>& content, Ids& ids)
{
    XmlPart xml("Page");
    for (int id : setup.templates)
        xml.Leaf("Template", {{"TemplateID", Num(id)}, {"ZOrder", "Background"}});
    for (const QString& id : setup.foregroundTemplates.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        xml.Leaf("Template", {{"TemplateID", id}, {"ZOrder", "Foreground"}});
    if (setup.hasArea) {
        xml.Open("Area").Leaf("PhysicalBox", {}, Box(QRectF(QPointF(0, 0), setup.sizeMm)));
        xml.Close();
    }
    if (content) {
        xml.Open("Content");
        PageBuilder page(xml, ids);
        content(page);
        page.EndLayer();
        xml.Close();
    }
    return xml.Finish();
}

void WriteOutline(XmlPart& xml, const Outline& outline)
{
    Attributes attributes{{"Title", outline.title}};
    if (!outline.isExpanded)
        attributes.push_back({"Expanded", "false"});
    if (!outline.children.empty())
        attributes.push_back({"Count", Num(int(outline.children.size()))});
    xml.Open("OutlineElem", attributes);
    if (outline.action) {
        xml.Open("Actions").Open("Action", {{"Event", "CLICK"}});
        outline.action(xml);
        xml.Close().Close();
    } else if (outline.dest.pageId > 0) {
        GotoAction(outline.dest)(xml);
    }
    for (const Outline& child : outline.children)
        WriteOutline(xml, child);
    xml.Close();
}

} // namespace

void WriteDest(XmlPart& xml, const Dest& dest)
{
    Attributes attributes{{"Type", dest.type}, {"PageID", Num(dest.pageId)}};
    const bool isRect = dest.type == QLatin1String("FitR"), isPoint = dest.type == QLatin1String("XYZ");
    if (isRect || isPoint || dest.type == QLatin1String("FitV"))
        attributes.push_back({"Left", Num(dest.left)});
    if (isRect || isPoint || dest.type == QLatin1String("FitH"))
        attributes.push_back({"Top", Num(dest.top)});
    if (isRect)
        attributes += Attributes{{"Right", Num(dest.right)}, {"Bottom", Num(dest.bottom)}};
    if (isPoint && dest.zoom > 0)
        attributes.push_back({"Zoom", Num(dest.zoom)});
    xml.Leaf("Dest", attributes);
}

XmlHook GotoAction(const Dest& dest)
{
    return [dest](XmlPart& xml) {
        xml.Open("Actions").Open("Action", {{"Event", "CLICK"}}).Open("Goto");
        WriteDest(xml, dest);
        xml.Close().Close().Close();
    };
}

XmlHook UriAction(const QString& uri)
{
    return [uri](XmlPart& xml) {
        xml.Open("Actions").Open("Action", {{"Event", "CLICK"}}).Leaf("URI", {{"URI", uri}});
        xml.Close().Close();
    };
}

PageBuilder::PageBuilder(XmlPart& xml, Ids& ids)
    : xml(xml)
    , ids(ids)
    , objects(xml, ids)
{
}

void PageBuilder::BeginLayer(const QString& type, int drawParam)
{
    EndLayer();
    Attributes attributes{{"ID", Num(ids.Next())}};
    if (type != QLatin1String("Body"))
        attributes.push_back({"Type", type});
    if (drawParam > 0)
        attributes.push_back({"DrawParam", Num(drawParam)});
    xml.Open("Layer", attributes);
    isLayerOpen = true;
}

void PageBuilder::EndLayer()
{
    if (isLayerOpen)
        xml.Close();
    isLayerOpen = false;
}

DocumentBuilder::DocumentBuilder(const QString& title)
    : title(title)
{
}

Font DocumentBuilder::AddFont(const QString& fontName, Face face, const Attributes& more)
{
    Font font;
    font.id = ids.Next();
    font.face = face;
    fonts.push_back({Attributes{{"ID", Num(font.id)}, {"FontName", fontName}} + more, QString()});
    return font;
}

Font DocumentBuilder::AddEmbeddedFont(const QString& fontName, const QString& fileName, const QByteArray& bytes)
{
    Font font = AddFont(fontName, Face::Embedded);
    font.file = std::make_shared<QRawFont>(bytes, 1000.0, QFont::PreferNoHinting);
    fonts.back().fileName = fileName;
    files.push_back({QStringLiteral("Doc_0/Res/") + fileName, bytes});
    return font;
}

int DocumentBuilder::AddImage(const QString& fileName, const QByteArray& bytes, const QString& format)
{
    const int id = ids.Next();
    media.append({{"ID", Num(id)}, {"Type", "Image"}, {"Format", format}});
    mediaFiles.append(fileName);
    files.push_back({QStringLiteral("Doc_0/Res/") + fileName, bytes});
    return id;
}

int DocumentBuilder::AddDrawParam(const Attributes& attributes, const QColor& fill, const QColor& stroke)
{
    const int id = ids.Next();
    drawParams.append([=](XmlPart& xml) {
        xml.Open("DrawParam", Attributes{{"ID", Num(id)}} + attributes);
        if (fill.isValid())
            xml.Leaf("FillColor", ColourAttributes(fill));
        if (stroke.isValid())
            xml.Leaf("StrokeColor", ColourAttributes(stroke));
        xml.Close();
    });
    return id;
}

int DocumentBuilder::AddColorSpace(const QString& type)
{
    const int id = ids.Next();
    colorSpaces.append([=](XmlPart& xml) { xml.Leaf("ColorSpace", {{"ID", Num(id)}, {"Type", type}}); });
    return id;
}

int DocumentBuilder::AddComposite(const QSizeF& size, const std::function<void(ObjectWriter&)>& content)
{
    const int id = ids.Next();
    composites.append([=](XmlPart& xml) {
        const Attributes attributes{{"ID", Num(id)}, {"Width", Num(size.width())}, {"Height", Num(size.height())}};
        xml.Open("CompositeGraphicUnit", attributes).Open("Content");
        ObjectWriter objects(xml, ids);
        content(objects);
        xml.Close().Close();
    });
    return id;
}

int DocumentBuilder::AddTemplate(const QString& name, const QString& zOrder, const QSizeF& sizeMm,
                                 const std::function<void(PageBuilder&)>& content)
{
    const int id = ids.Next();
    const QString location = QStringLiteral("Tpls/Tpl_%1/Content.xml").arg(templates.size());
    PageSetup setup;
    setup.sizeMm = sizeMm;
    files.push_back({QStringLiteral("Doc_0/") + location, PagePart(setup, content, ids)});
    templates.push_back({id, name, zOrder, location});
    return id;
}

int DocumentBuilder::AddPage(const PageSetup& setup, const std::function<void(PageBuilder&)>& content)
{
    const int id = ids.Next();
    files.push_back(
        {QStringLiteral("Doc_0/Pages/Page_%1/Content.xml").arg(pages.size()), PagePart(setup, content, ids)});
    pages.append(id);
    return id;
}

void DocumentBuilder::AddTagFile(const QString& fileName, const QString& nameSpace, const QByteArray& xml)
{
    tagFiles.push_back({fileName, nameSpace, xml});
}

Package DocumentBuilder::Build()
{
    Package package, lists;
    BuildResources(lists);
    BuildAnnotations(lists);
    BuildTags(lists);
    BuildAttachments(lists);
    package.Add("OFD.xml", BuildEntry());
    package.Add(kDocumentPart, BuildDocument()); // last to be built: it holds the highest id
    for (const Part& part : lists.Parts())
        package.Add(part.name, part.data, part.isStored);
    for (const Part& part : files)
        package.Add(part.name, part.data, part.isStored);
    return package;
}

QByteArray DocumentBuilder::BuildEntry() const
{
    XmlPart xml("OFD", {{"Version", "1.0"}, {"DocType", "OFD"}});
    xml.Open("DocBody").Open("DocInfo");
    const QString id = QString::number(qChecksum(title.toUtf8().constData(), uint(title.toUtf8().size())), 16);
    xml.Leaf("DocID", {}, id.rightJustified(32, QLatin1Char('0')));
    xml.Leaf("Title", {}, title);
    xml.Leaf("Author", {}, "tetobaisfla");
    xml.Leaf("CreationDate", {}, "2024-05-20");
    xml.Leaf("ModDate", {}, "2024-05-20");
    xml.Leaf("Creator", {}, "make_samples");
    xml.Leaf("CreatorVersion", {}, "1.0");
    xml.Close().Leaf("DocRoot", {}, kDocumentPart);
    return xml.Finish();
}

QByteArray DocumentBuilder::BuildDocument() const
{
    XmlPart xml("Document");
    xml.Open("CommonData").Leaf("MaxUnitID", {}, Num(ids.Max()));
    xml.Open("PageArea").Leaf("PhysicalBox", {}, "0 0 210 297").Close();
    xml.Leaf("PublicRes", {}, "PublicRes.xml").Leaf("DocumentRes", {}, "DocumentRes.xml");
    for (const TemplateEntry& entry : templates) {
        Attributes attributes{{"ID", Num(entry.id)}, {"BaseLoc", entry.location}};
        if (!entry.name.isEmpty())
            attributes.push_back({"Name", entry.name});
        if (!entry.zOrder.isEmpty())
            attributes.push_back({"ZOrder", entry.zOrder});
        xml.Leaf("TemplatePage", attributes);
    }
    xml.Close().Open("Pages");
    for (int index = 0; index < pages.size(); ++index)
        xml.Leaf("Page",
                 {{"ID", Num(pages[index])}, {"BaseLoc", QStringLiteral("Pages/Page_%1/Content.xml").arg(index)}});
    xml.Close();
    if (!outlines.empty()) {
        xml.Open("Outlines");
        for (const Outline& outline : outlines)
            WriteOutline(xml, outline);
        xml.Close();
    }
    WritePermissions(xml);
    if (!pageMode.isEmpty())
        xml.Open("VPreferences").Leaf("PageMode", {}, pageMode).Close();
    if (!bookmarks.isEmpty()) {
        xml.Open("Bookmarks");
        for (const auto& bookmark : bookmarks) {
            xml.Open("Bookmark", {{"Name", bookmark.first}});
            WriteDest(xml, bookmark.second);
            xml.Close();
        }
        xml.Close();
    }
    if (!annotations.isEmpty())
        xml.Leaf("Annotations", {}, "Annots/Annotations.xml");
    if (!tagFiles.empty())
        xml.Leaf("CustomTags", {}, "Tags/CustomTags.xml");
    if (!attachments.empty())
        xml.Leaf("Attachments", {}, "Attachs/Attachments.xml");
    return xml.Finish();
}

void DocumentBuilder::WritePermissions(XmlPart& xml) const
{
    if (permissions.isEmpty())
        return;
    xml.Open("Permissions");
    for (const auto& right : permissions)
        xml.Leaf(right.first, {}, right.second ? "true" : "false");
    xml.Close();
}

} // namespace samples
