#include "description.h"

#include <frame/base/converters.h>

#include <QRectF>

namespace {

QString Text(const CCA_String& text)
{
    return GQ_ToQStringFromUtf8(text);
}

QString Box(const CCA_GRect& rect)
{
    return QStringLiteral("(%1 %2 %3 %4)")
        .arg(double(rect.left), 0, 'f', 1)
        .arg(double(rect.top), 0, 'f', 1)
        .arg(double(rect.right), 0, 'f', 1)
        .arg(double(rect.bottom), 0, 'f', 1);
}

QString DescribeDest(const G_Dest& dest)
{
    return QStringLiteral("m%1 p%2/%3 %4 x%5")
        .arg(dest.zoomMode)
        .arg(dest.pageId)
        .arg(dest.pageIndex)
        .arg(Box(dest.Rect()))
        .arg(double(dest.zoom));
}

void DescribePage(IG_Document& document, int index, QString& out)
{
    IG_Page* page = document.GetPage(index);
    const QSizeF size = document.PageSizeMm(index);
    out += QStringLiteral("page %1 %2x%3%4\n")
               .arg(document.PageIdFromIndex(index))
               .arg(size.width())
               .arg(size.height())
               .arg(page->Load() ? QString() : QStringLiteral(" unreadable"));
    for (int i = 0; i < page->GetTemplateRefCount(); ++i)
        out += QStringLiteral("  template %1 %2\n")
                   .arg(page->GetTemplateRefAt(i))
                   .arg(Text(page->GetTemplateRefZOrder(i)));
    for (int i = 0; i < page->GetLayerCount(); ++i)
        out += QStringLiteral("  layer %1 \"%2\"\n")
                   .arg(page->GetLayerAt(i)->GetKind())
                   .arg(page->GetLayerAt(i)->GetName().ToQString());
    if (IG_TextPage* text = page->GetTextPage()) {
        text->Parse(0);
        for (const G_TextRun& run : text->AllRuns())
            out += QStringLiteral("  text %1 %2\n").arg(run.text, Box(run.rect));
    }
    G_PageObjRef objects;
    page->CollectObjectsInRect(CCA_GRect(-1000, -1000, 1000, 1000), &objects);
    for (const int id : objects.objectIds)
        out += QStringLiteral("  object %1\n").arg(id);
    if (page->LoadAnnots() != 0)
        out += QStringLiteral("  unreadable annotations\n");
    for (int i = 0; i < page->GetAnnotCount(); ++i) {
        IG_Annot* annot = page->GetAnnotAt(i);
        out += QStringLiteral("  annot %1 type %2 \"%3\" by \"%4\" on \"%5\" says \"%6\" %7%8%9\n")
                   .arg(annot->GetId())
                   .arg(annot->GetType())
                   .arg(Text(annot->GetSubType()), Text(annot->GetCreator()), Text(annot->GetDate()),
                        Text(annot->GetRemark()), Box(annot->GetBoundary()),
                        annot->IsHiddenFromList() ? QStringLiteral(" unlisted") : QString(),
                        annot->IsLocked() ? QStringLiteral(" locked") : QString());
    }
}

void DescribeOutline(G_TreeNode* parent, const QString& indent, QString& out)
{
    for (int i = 0; parent && i < parent->SubNodeCount(); ++i) {
        const auto* item = dynamic_cast<const G_OutlineItem*>(parent->SubNode(i)->data);
        out += indent + QStringLiteral("outline \"%1\"%2").arg(Text(item->text), item->expanded ? "" : " closed");
        for (const G_Action* action : item->actions) {
            const auto* jump = dynamic_cast<const G_ActionGoto*>(action);
            out += jump ? QStringLiteral(" -> ") + DescribeDest(*jump->dest)
                        : QStringLiteral(" -> action %1").arg(action->actionType);
        }
        out += QLatin1Char('\n');
        DescribeOutline(parent->SubNode(i), indent + QStringLiteral("  "), out);
    }
}

void DescribeTags(G_TreeNode* parent, const QString& indent, QString& out)
{
    for (int i = 0; parent && i < parent->SubNodeCount(); ++i) {
        const auto* tag = dynamic_cast<const G_CustomTagItem*>(parent->SubNode(i)->data);
        out += indent + QStringLiteral("tag \"%1\"").arg(Text(tag->tagName));
        for (const CCA_String& attribute : tag->attributes.Values())
            out += QStringLiteral(" [%1]").arg(Text(attribute));
        for (const G_PageObjRef* ref : tag->objects.Values()) {
            for (const int id : ref->objectIds)
                out += QStringLiteral(" %1:%2").arg(ref->pageId).arg(id);
        }
        out += QLatin1Char('\n');
        DescribeTags(parent->SubNode(i), indent + QStringLiteral("  "), out);
    }
}

} // namespace

QString DescribeDocument(IG_Document& document)
{
    QString out;
    for (int i = 0; i < document.GetPageCount(); ++i)
        DescribePage(document, i, out);
    for (int i = 0; i < document.GetTemplateCount(); ++i) {
        const int id = document.GetTemplateIdAt(i);
        out += QStringLiteral("template %1 \"%2\" %3\n")
                   .arg(id)
                   .arg(Text(document.GetTemplateName(id)), Text(document.GetTemplateZOrder(id)));
    }
    DescribeOutline(document.GetOutlineRoot(), QString(), out);
    G_TreeNode* bookmarks = document.GetBookmarkRoot();
    for (int i = 0; bookmarks && i < bookmarks->SubNodeCount(); ++i) {
        const auto* bookmark = dynamic_cast<const G_Bookmark*>(bookmarks->SubNode(i)->data);
        out += QStringLiteral("bookmark \"%1\" -> %2\n").arg(Text(bookmark->name), DescribeDest(*bookmark->dest));
    }
    for (int i = 0; i < document.CustomTagRootCount(); ++i)
        DescribeTags(document.CustomTagRoot(i), QString(), out);
    for (int i = 0; i < document.GetAttachmentCount(); ++i) {
        const G_AttachmentInfo info = document.GetAttachment(i);
        out += QStringLiteral("attachment \"%1\" \"%2\" \"%3\" %4 #%5%6\n")
                   .arg(Text(info.name), Text(info.format), Text(info.addDate))
                   .arg(double(info.size), 0, 'f', 2)
                   .arg(info.id)
                   .arg(info.visible ? "" : " hidden");
    }
    out += QStringLiteral("rights %1%2%3%4%5%6\n")
               .arg(document.HasPermissions())
               .arg(document.MayEdit())
               .arg(document.MayAnnotate())
               .arg(document.MayExport())
               .arg(document.IsSignProtected() ? " signed" : "", document.IsEncrypted() ? " encrypted" : "");
    return out;
}
