#include "document_export.h"

#include "ofd_file.h"

#include <frame/base/converters.h>
#include <ofd/package/xml_text.h>
#include <tests/support/byte_streams.h>

#include <QSet>

#include <algorithm>

namespace {

constexpr double BaselineMm = 3.4; // below the top of a text's box
constexpr double LetterMm = 2;

QString Text(const CCA_String& text)
{
    return GQ_ToQStringFromUtf8(text);
}

QString Word(bool isSo)
{
    return isSo ? QStringLiteral("true") : QStringLiteral("false");
}

// Turns one document into parts.
class Exporter
{
public:
    explicit Exporter(IG_Document& document)
        : document(document)
    {
    }

    OfdFile Export()
    {
        ofd::XmlFragment xml("ofd:");
        xml.Open("CommonData").Element("MaxUnitID", QStringLiteral("1000"));
        xml.Element("PublicRes", QStringLiteral("PublicRes.xml"));
        WriteTemplates(xml);
        xml.Close();
        WritePages(xml);
        WriteOutline(xml);
        WritePermissions(xml);
        if (const auto wanted = document.GetOpenActions())
            WriteActions(xml, *wanted, QStringLiteral("DO"));
        WriteBookmarks(xml);
        WriteLists(xml);
        file = OfdFile::WithPages(0);
        file.Set(QStringLiteral("Doc_0/Document.xml"), Element("Document", xml.GetBytes()));
        file.Set(QStringLiteral("Doc_0/PublicRes.xml"),
                 Element("Res", "<ofd:Fonts><ofd:Font ID=\"900\" FontName=\"Courier New\"/></ofd:Fonts>"));
        for (auto part = parts.cbegin(); part != parts.cend(); ++part)
            file.Set(part.key(), part.value());
        if (document.IsSignProtected())
            WriteSignature();
        return file;
    }

private:
    void WriteTemplates(ofd::XmlFragment& xml)
    {
        for (int i = 0; i < document.GetTemplateCount(); ++i) {
            const int id = document.GetTemplateIdAt(i);
            const QString part = QStringLiteral("Tpls/Tpl_%1.xml").arg(id);
            xml.Open("TemplatePage").Attribute("ID", QString::number(id)).Attribute("BaseLoc", part);
            xml.Attribute("Name", Text(document.GetTemplateName(id)));
            xml.Attribute("ZOrder", Text(document.GetTemplateZOrder(id))).Close();
            parts[QStringLiteral("Doc_0/") + part] = Element("Page", {});
        }
    }

    void WritePages(ofd::XmlFragment& xml)
    {
        xml.Open("Pages");
        for (int i = 0; i < document.GetPageCount(); ++i) {
            const QString part = QStringLiteral("Pages/Page_%1/Content.xml").arg(i);
            xml.Open("Page").Attribute("ID", QString::number(document.PageIdFromIndex(i)));
            xml.Attribute("BaseLoc", part).Close();
            parts[QStringLiteral("Doc_0/") + part] = PagePart(i);
        }
        xml.Close();
    }

    QByteArray PagePart(int index)
    {
        IG_Page* page = document.GetPage(index);
        page->Load();
        ofd::XmlFragment xml("ofd:");
        for (int i = 0; i < page->GetTemplateRefCount(); ++i) {
            xml.Open("Template").Attribute("TemplateID", QString::number(page->GetTemplateRefAt(i)));
            xml.Attribute("ZOrder", Text(page->GetTemplateRefZOrder(i))).Close();
        }
        const QSizeF size = document.PageSizeMm(index);
        xml.Open("Area").Element("PhysicalBox", QStringLiteral("0 0 %1 %2").arg(size.width()).arg(size.height()));
        xml.Close().Open("Content");
        for (int i = 0; i < page->GetLayerCount(); ++i)
            WriteLayer(xml, page, i);
        return Element("Page", xml.GetBytes());
    }

    void WriteLayer(ofd::XmlFragment& xml, IG_Page* page, int position)
    {
        static const char* const kinds[] = {"Background", "Body", "Foreground"};
        IG_PageLayer* layer = page->GetLayerAt(position);
        xml.Open("Layer").Attribute("ID", QString::number(500 + position));
        xml.Attribute("Type", QString::fromLatin1(kinds[layer->GetKind()]));
        xml.Attribute("Name", layer->GetName().ToQString());
        for (const int id : ObjectsOfLayer(page, position))
            WriteText(xml, page, id);
        for (const G_PageLink& link : LinksOfLayer(page, position))
            WriteLink(xml, link, QPointF());
        xml.Close();
    }

    // Those that are there while all other layers are hidden.
    QVector<G_PageLink> LinksOfLayer(IG_Page* page, int position)
    {
        for (int i = 0; i < page->GetLayerCount(); ++i)
            page->GetLayerAt(i)->SetVisible(i == position);
        QVector<G_PageLink> links = page->GetLinks();
        links.erase(
            std::remove_if(links.begin(), links.end(), [](const G_PageLink& link) { return link.isOfAnnotation; }),
            links.end());
        for (int i = 0; i < page->GetLayerCount(); ++i)
            page->GetLayerAt(i)->SetVisible(true);
        return links;
    }

    // Those that go with the annotation.
    static QVector<G_PageLink> LinksOfAnnotation(IG_Page* page, IG_Annot* annot)
    {
        annot->SetVisible(false, false);
        const QVector<G_PageLink> others = page->GetLinks();
        annot->SetVisible(true, false);
        QVector<G_PageLink> links;
        for (const G_PageLink& link : page->GetLinks()) {
            const bool isOther = std::any_of(others.cbegin(), others.cend(), [&link](const G_PageLink& other) {
                return other.actions == link.actions;
            });
            if (!isOther)
                links.append(link);
        }
        return links;
    }

    // An invisible rectangle, whose place is seen from the origin.
    void WriteLink(ofd::XmlFragment& xml, const G_PageLink& link, const QPointF& origin)
    {
        const QRectF box = link.area.boundingRect().translated(-origin);
        xml.Open("PathObject").Attribute("Visible", QStringLiteral("false"));
        xml.Attribute("Boundary",
                      QString::fromLatin1(ofd::FormatNumbers({box.x(), box.y(), box.width(), box.height()})));
        WriteActions(xml, *link.actions, QStringLiteral("CLICK"));
        xml.Element("AbbreviatedData", QStringLiteral("M 0 0 L 1 1")).Close();
    }

    void WriteActions(ofd::XmlFragment& xml, const G_ActionList& list, const QString& event)
    {
        xml.Open("Actions");
        for (const G_Action* action : list.Actions()) {
            xml.Open("Action").Attribute("Event", event);
            WriteAction(xml, action);
            xml.Close();
        }
        xml.Close();
    }

    void WriteAction(ofd::XmlFragment& xml, const G_Action* action)
    {
        if (const auto* jump = dynamic_cast<const G_ActionGoto*>(action)) {
            xml.Open("Goto");
            if (jump->bookmarkName.IsEmpty())
                WriteDest(xml, *jump->dest);
            else
                xml.Open("Bookmark").Attribute("Name", Text(jump->bookmarkName)).Close();
        } else if (const auto* opens = dynamic_cast<const G_ActionUri*>(action)) {
            xml.Open("URI").Attribute("URI", Text(opens->uri)).Attribute("Base", Text(opens->base));
        } else if (const auto* shows = dynamic_cast<const G_ActionAttachment*>(action)) {
            xml.Open("GotoA").Attribute("AttachID", QString::number(shows->attachmentId));
        } else {
            xml.Open(action->actionType == G_Action::Sound ? "Sound" : "Movie");
        }
        xml.Close();
    }

    // The objects that are there while all other layers are hidden.
    QList<int> ObjectsOfLayer(IG_Page* page, int position)
    {
        for (int i = 0; i < page->GetLayerCount(); ++i)
            page->GetLayerAt(i)->SetVisible(i == position);
        G_PageObjRef ref;
        page->CollectObjectsInRect(CCA_GRect(-1, -1, 10000, 10000), &ref);
        for (int i = 0; i < page->GetLayerCount(); ++i)
            page->GetLayerAt(i)->SetVisible(true);
        return ref.objectIds;
    }

    void WriteText(ofd::XmlFragment& xml, IG_Page* page, int id)
    {
        G_CustomTagItem tag;
        tag.objects.Add(new G_PageObjRef{page->PageId(), {id}});
        CCA_LockedArray<G_PageObjectPath> paths;
        document.CustomTagObjects(paths, &tag);
        const QRectF box = GQ_ToQPainterPath(paths.GetAt(0).path).boundingRect();
        page->GetTextPage()->Parse(0);
        wchar_t* wide = nullptr;
        page->GetTextPage()->GetTextInRect(GQ_ToCAGRect(box), &wide);
        const QString text = QString::fromWCharArray(wide);
        CCA_FreeWide(wide);
        xml.Open("TextObject").Attribute("ID", QString::number(id)).Attribute("Font", QStringLiteral("900"));
        xml.Attribute("Size", QStringLiteral("4"));
        xml.Attribute("Boundary", QString::fromLatin1(ofd::FormatNumbers({box.x(), box.y(), box.width(), 4})));
        xml.Open("TextCode").Attribute("X", 0.0).Attribute("Y", BaselineMm);
        xml.Attribute("DeltaX", QStringLiteral("g %1 %2").arg(text.size()).arg(LetterMm)).Text(text).Close().Close();
    }

    void WriteDest(ofd::XmlFragment& xml, const G_Dest& dest)
    {
        static const char* const types[] = {"XYZ", "Fit", "FitH", "FitV", "FitR"};
        xml.Open("Dest").Attribute("Type", QString::fromLatin1(types[dest.zoomMode]));
        xml.Attribute("PageID", QString::number(dest.pageId));
        xml.Attribute("Left", double(dest.left)).Attribute("Top", double(dest.top));
        xml.Attribute("Right", double(dest.right)).Attribute("Bottom", double(dest.bottom));
        xml.Attribute("Zoom", double(dest.zoom)).Close();
    }

    void WriteOutline(ofd::XmlFragment& xml)
    {
        if (!document.GetOutlineRoot())
            return;
        xml.Open("Outlines");
        WriteOutlineBelow(xml, document.GetOutlineRoot());
        xml.Close();
    }

    void WriteOutlineBelow(ofd::XmlFragment& xml, G_TreeNode* parent)
    {
        for (int i = 0; i < parent->SubNodeCount(); ++i) {
            const auto* item = dynamic_cast<const G_OutlineItem*>(parent->SubNode(i)->data);
            xml.Open("OutlineElem").Attribute("Title", Text(item->text));
            xml.Attribute("Expanded", Word(item->expanded));
            for (const G_Action* action : item->actions) {
                const auto* jump = dynamic_cast<const G_ActionGoto*>(action);
                if (!jump)
                    continue;
                xml.Open("Actions").Open("Action").Attribute("Event", QStringLiteral("CLICK")).Open("Goto");
                WriteDest(xml, *jump->dest);
                xml.Close().Close().Close();
            }
            WriteOutlineBelow(xml, parent->SubNode(i));
            xml.Close();
        }
    }

    void WritePermissions(ofd::XmlFragment& xml)
    {
        if (!document.HasPermissions())
            return;
        xml.Open("Permissions")
            .Element("Edit", Word(document.MayEdit()))
            .Element("Annot", Word(document.MayAnnotate()));
        xml.Element("Export", Word(document.MayExport()));
        if (!document.MayPrint() || document.MostCopies() >= 0) {
            xml.Open("Print").Attribute("Printable", Word(document.MayPrint()));
            if (document.MostCopies() >= 0)
                xml.Attribute("Copies", QString::number(document.MostCopies()));
            xml.Close();
        }
        xml.Close();
    }

    // One that covers nothing.
    void WriteSignature()
    {
        const QString entry = QStringLiteral("OFD.xml");
        file.Set(entry, file.Part(entry).replace("</ofd:DocBody>",
                                                 "<ofd:Signatures>Signatures.xml</ofd:Signatures></ofd:DocBody>"));
        file.Set(QStringLiteral("Signatures.xml"),
                 Element("Signatures", "<ofd:Signature ID=\"1\" BaseLoc=\"Signature.xml\"/>"));
        file.Set(QStringLiteral("Signature.xml"), Element("Signature", "<ofd:SignedInfo/>"));
    }

    void WriteBookmarks(ofd::XmlFragment& xml)
    {
        G_TreeNode* root = document.GetBookmarkRoot();
        if (!root)
            return;
        xml.Open("Bookmarks");
        for (int i = 0; i < root->SubNodeCount(); ++i) {
            const auto* bookmark = dynamic_cast<const G_Bookmark*>(root->SubNode(i)->data);
            xml.Open("Bookmark").Attribute("Name", Text(bookmark->name));
            WriteDest(xml, *bookmark->dest);
            xml.Close();
        }
        xml.Close();
    }

    void WriteLists(ofd::XmlFragment& xml)
    {
        ofd::XmlFragment annotations("ofd:");
        for (int i = 0; i < document.GetPageCount(); ++i)
            WriteAnnotations(annotations, document.GetPage(i));
        xml.Element("Annotations", QStringLiteral("Annotations.xml"));
        parts[QStringLiteral("Doc_0/Annotations.xml")] = Element("Annotations", annotations.GetBytes());
        if (document.CustomTagRootCount() > 0)
            WriteTags(xml);
        if (document.GetAttachmentCount() > 0)
            WriteAttachments(xml);
    }

    void WriteAnnotations(ofd::XmlFragment& list, IG_Page* page)
    {
        page->LoadAnnots();
        if (page->GetAnnotCount() == 0)
            return;
        ofd::XmlFragment xml("ofd:");
        for (int i = 0; i < page->GetAnnotCount(); ++i) {
            IG_Annot* annot = page->GetAnnotAt(i);
            const CCA_GRect box = annot->GetBoundary();
            xml.Open("Annot").Attribute("ID", QString::number(annot->GetId()));
            xml.Attribute("Type", Text(AnnotTypeToString(annot->GetType())));
            xml.Attribute("Subtype", Text(annot->GetSubType())).Attribute("Creator", Text(annot->GetCreator()));
            xml.Attribute("LastModDate", Text(annot->GetDate()));
            xml.Attribute("Visible", Word(annot->GetVisible(0))).Attribute("ReadOnly", Word(annot->IsLocked()));
            if (!annot->GetRemark().IsEmpty())
                xml.Element("Remark", Text(annot->GetRemark()));
            if (!annot->GetPointsText().IsEmpty()) {
                xml.Open("Parameters").Open("Parameter").Attribute("Name", QStringLiteral("Points"));
                xml.Text(Text(annot->GetPointsText())).Close().Close();
            }
            xml.Open("Appearance");
            xml.Attribute("Boundary",
                          QString::fromLatin1(ofd::FormatNumbers(
                              {double(box.left), double(box.top), double(box.Width()), double(box.Height())})));
            for (const G_PageLink& link : LinksOfAnnotation(page, annot))
                WriteLink(xml, link, QPointF(double(box.left), double(box.top)));
            xml.Close().Close();
        }
        const QString part = QStringLiteral("Annots/Annot_%1.xml").arg(page->PageId());
        list.Open("Page").Attribute("PageID", QString::number(page->PageId())).Element("FileLoc", part).Close();
        parts[QStringLiteral("Doc_0/") + part] = Element("PageAnnot", xml.GetBytes());
    }

    void WriteTags(ofd::XmlFragment& xml)
    {
        ofd::XmlFragment list("ofd:");
        for (int i = 0; i < document.CustomTagRootCount(); ++i) {
            const QString part = QStringLiteral("Tags/Tag_%1.xml").arg(i);
            list.Open("CustomTag").Attribute("NameSpace", QStringLiteral("urn:test"));
            list.Element("FileLoc", part).Close();
            ofd::XmlFragment tags("ofd:");
            WriteTag(tags, document.CustomTagRoot(i)->SubNode(0));
            QByteArray bytes = tags.GetBytes();
            parts[QStringLiteral("Doc_0/") + part] =
                bytes.insert(bytes.indexOf('>'), " xmlns:ofd=\"http://www.ofdspec.org/2016\"");
        }
        xml.Element("CustomTags", QStringLiteral("CustomTags.xml"));
        parts[QStringLiteral("Doc_0/CustomTags.xml")] = Element("CustomTags", list.GetBytes());
    }

    void WriteTag(ofd::XmlFragment& xml, G_TreeNode* node)
    {
        const auto* tag = dynamic_cast<const G_CustomTagItem*>(node->data);
        xml.Open(tag->tagName.Bytes());
        for (const CCA_String& attribute : tag->attributes.Values()) {
            const int equals = attribute.Bytes().indexOf('=');
            xml.Attribute(attribute.Bytes().left(equals), QString::fromUtf8(attribute.Bytes().mid(equals + 1)));
        }
        for (const G_PageObjRef* ref : tag->objects.Values()) {
            for (const int id : ref->objectIds) {
                xml.Open("ObjectRef").Attribute("PageRef", QString::number(ref->pageId));
                xml.Text(QString::number(id)).Close();
            }
        }
        for (int i = 0; i < node->SubNodeCount(); ++i)
            WriteTag(xml, node->SubNode(i));
        xml.Close();
    }

    void WriteAttachments(ofd::XmlFragment& xml)
    {
        ofd::XmlFragment list("ofd:");
        for (int i = 0; i < document.GetAttachmentCount(); ++i) {
            const G_AttachmentInfo info = document.GetAttachment(i);
            const QString part = QStringLiteral("Attachs/file_%1").arg(i);
            list.Open("Attachment").Attribute("ID", QString::number(info.id)).Attribute("Name", Text(info.name));
            list.Attribute("Format", Text(info.format));
            list.Attribute("Visible", Word(info.visible));
            list.Element("FileLoc", part).Close();
            BytesWriter bytes;
            document.WriteAttachment(i, &bytes);
            parts[QStringLiteral("Doc_0/") + part] = bytes.bytes;
        }
        xml.Element("Attachments", QStringLiteral("Attachments.xml"));
        parts[QStringLiteral("Doc_0/Attachments.xml")] = Element("Attachments", list.GetBytes());
    }

    IG_Document& document;
    OfdFile file;
    QMap<QString, QByteArray> parts;
};

} // namespace

void ExportDocument(IG_Document& document, const QString& path)
{
    Exporter(document).Export().Write(path);
}
