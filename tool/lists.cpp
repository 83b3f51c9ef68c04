#include "lists.h"

#include "output.h"

#include <frame/document/ig_annot.h>
#include <frame/document/ig_page.h>
#include <frame/document/payloads.h>
#include <frame/document/tree_node.h>
#include <ofd/ofd_document.h>

#include <functional>
#include <vector>

namespace {

QString Text(const CCA_String& text)
{
    return QString::fromUtf8(text.Bytes());
}

// Visits the nodes below the root in the order in which they are read; trees may be very deep.
void Walk(const G_TreeNode* root, const std::function<void(const G_TreeNode& node)>& visit)
{
    std::vector<const G_TreeNode*> open;
    const auto pushChildren = [&open](const G_TreeNode* node) {
        for (int i = node ? node->SubNodeCount() - 1 : -1; i >= 0; --i)
            open.push_back(node->SubNode(i));
    };
    pushChildren(root);
    while (!open.empty()) {
        const G_TreeNode* node = open.back();
        open.pop_back();
        visit(*node);
        pushChildren(node);
    }
}

// Identifiers are numbers of 32 bits without a sign, which the model keeps in an int.
void SetId(OVJson& item, const QByteArray& key, int id)
{
    item.SetDouble(key, double(quint32(id)));
}

void SetDestination(OVJson& item, const G_Dest& dest)
{
    static const char* const types[] = {"XYZ", "Fit", "FitH", "FitV", "FitR"};
    item.SetInt("page", dest.pageIndex + 1);
    SetId(item, "pageId", dest.pageId);
    item.SetString("type", QString::fromLatin1(dest.zoomMode >= 0 && dest.zoomMode < 5 ? types[dest.zoomMode] : ""));
    item.SetDouble("left", Rounded(double(dest.left)));
    item.SetDouble("top", Rounded(double(dest.top)));
    item.SetDouble("right", Rounded(double(dest.right)));
    item.SetDouble("bottom", Rounded(double(dest.bottom)));
    item.SetDouble("zoom", Rounded(double(dest.zoom)));
}

OVJson RectOf(const CCA_GRect& rect)
{
    OVJson box;
    box.SetDouble("left", Rounded(double(rect.left)));
    box.SetDouble("top", Rounded(double(rect.top)));
    box.SetDouble("right", Rounded(double(rect.right)));
    box.SetDouble("bottom", Rounded(double(rect.bottom)));
    return box;
}

// What an action does, where it goes; false when it does something else.
bool SetTarget(OVJson& item, const G_Action& action)
{
    if (const auto* jump = dynamic_cast<const G_ActionGoto*>(&action)) {
        SetDestination(item, *jump->dest);
        item.SetString("bookmark", Text(jump->bookmarkName));
        return true;
    }
    if (const auto* opens = dynamic_cast<const G_ActionUri*>(&action)) {
        item.SetString("uri", Text(opens->uri));
        return true;
    }
    return false;
}

OVJson ActionItem(const G_Action& action)
{
    OVJson item;
    const char* kind = "other";
    if (dynamic_cast<const G_ActionGoto*>(&action))
        kind = "goto";
    else if (dynamic_cast<const G_ActionUri*>(&action))
        kind = "uri";
    else if (dynamic_cast<const G_ActionAttachment*>(&action))
        kind = "attachment";
    else if (action.actionType == G_Action::Sound)
        kind = "sound";
    else if (action.actionType == G_Action::Movie)
        kind = "movie";
    item.SetString("kind", QString::fromLatin1(kind));
    if (const auto* shows = dynamic_cast<const G_ActionAttachment*>(&action))
        item.SetInt("attachment", shows->attachmentId);
    SetTarget(item, action);
    return item;
}

// The first action that leads somewhere stands in the item itself, for readers that want no more than that.
OVJson OutlineItem(const G_TreeNode& node)
{
    OVJson item;
    item.SetInt("level", node.level);
    const auto* entry = dynamic_cast<const G_OutlineItem*>(node.data);
    item.SetString("title", Text(node.NodeText()));
    item.SetBool("expanded", entry && entry->expanded);
    bool isSet = false;
    OVJson actions = item.AddArray("actions");
    for (int i = 0; entry && i < entry->actions.GetSize(); ++i) {
        isSet = isSet || SetTarget(item, *entry->actions[i]);
        actions.Append(ActionItem(*entry->actions[i]));
    }
    return item;
}

OVJson TagItem(const G_TreeNode& node, int tree)
{
    OVJson item;
    item.SetInt("tree", tree + 1);
    item.SetInt("level", node.level);
    item.SetString("name", Text(node.NodeText()));
    OVJson attributes = item.AddArray("attributes");
    OVJson objects = item.AddArray("objects");
    const auto* tag = dynamic_cast<const G_CustomTagItem*>(node.data);
    if (!tag)
        return item;
    for (const CCA_String& attribute : tag->attributes.Values())
        attributes.Append(Text(attribute));
    for (const G_PageObjRef* reference : tag->objects.Values()) {
        OVJson entry;
        SetId(entry, "pageId", reference->pageId);
        OVJson ids = entry.AddArray("objectIds");
        for (const int id : reference->objectIds)
            ids.InsertUInt(-1, unsigned(id));
        objects.Append(entry);
    }
    return item;
}

OVJson AnnotationItem(IG_Annot& annot, int pageIndex)
{
    OVJson item;
    item.SetInt("page", pageIndex + 1);
    SetId(item, "id", annot.GetId());
    item.SetString("type", Text(AnnotTypeToString(annot.GetType())));
    item.SetString("subtype", Text(annot.GetSubType()));
    item.SetString("creator", Text(annot.GetCreator()));
    item.SetString("date", Text(annot.GetDate()));
    item.SetString("remark", Text(annot.GetRemark()));
    item.SetBool("visible", annot.GetVisible(0));
    item.SetBool("locked", annot.IsLocked());
    item.SetObject("boundaryMm", RectOf(annot.GetBoundary()));
    return item;
}

const char* KindWord(int kind)
{
    return kind == 2 ? "Foreground" : kind == 1 ? "Body" : "Background";
}

} // namespace

OVJson ListOutline(ofd::OfdDocument& document)
{
    OVJson items = OVJson::MakeArray();
    Walk(document.GetOutlineRoot(), [&](const G_TreeNode& node) { items.Append(OutlineItem(node)); });
    return items;
}

OVJson ListBookmarks(ofd::OfdDocument& document)
{
    OVJson items = OVJson::MakeArray();
    Walk(document.GetBookmarkRoot(), [&](const G_TreeNode& node) {
        OVJson item;
        item.SetString("name", Text(node.NodeText()));
        if (const auto* bookmark = dynamic_cast<const G_Bookmark*>(node.data))
            SetDestination(item, *bookmark->dest);
        items.Append(item);
    });
    return items;
}

OVJson ListTags(ofd::OfdDocument& document)
{
    OVJson items = OVJson::MakeArray();
    for (int i = 0; i < document.CustomTagRootCount(); ++i)
        Walk(document.CustomTagRoot(i), [&](const G_TreeNode& node) { items.Append(TagItem(node, i)); });
    return items;
}

OVJson ListAnnotations(ofd::OfdDocument& document)
{
    OVJson items = OVJson::MakeArray();
    for (int i = 0; i < document.GetPageCount(); ++i) {
        IG_Page* page = document.GetPage(i);
        if (!page)
            continue;
        page->LoadAnnots();
        for (int k = 0; k < page->GetAnnotCount(); ++k)
            items.Append(AnnotationItem(*page->GetAnnotAt(k), i));
        document.ReleasePage(i, 0);
    }
    return items;
}

OVJson ListAttachments(ofd::OfdDocument& document)
{
    OVJson items = OVJson::MakeArray();
    for (int i = 0; i < document.GetAttachmentCount(); ++i) {
        const G_AttachmentInfo info = document.GetAttachment(i);
        OVJson item;
        item.SetInt("id", info.id);
        item.SetString("name", Text(info.name));
        item.SetString("format", Text(info.format));
        item.SetDouble("sizeKb", Rounded(double(info.size)));
        item.SetString("date", Text(info.addDate));
        item.SetBool("visible", info.visible);
        items.Append(item);
    }
    return items;
}

OVJson ListLayers(ofd::OfdDocument& document)
{
    OVJson items = OVJson::MakeArray();
    for (int i = 0; i < document.GetPageCount(); ++i) {
        IG_Page* page = document.GetPage(i);
        if (!page || !page->Load())
            continue;
        for (int k = 0; k < page->GetTemplateRefCount(); ++k) {
            OVJson item;
            item.SetInt("page", i + 1);
            SetId(item, "template", page->GetTemplateRefAt(k));
            item.SetString("name", Text(document.GetTemplateName(page->GetTemplateRefAt(k))));
            item.SetString("kind", Text(page->GetTemplateRefZOrder(k)));
            items.Append(item);
        }
        for (int k = 0; k < page->GetLayerCount(); ++k) {
            OVJson item;
            item.SetInt("page", i + 1);
            item.SetInt("layer", k + 1);
            item.SetString("name", page->GetLayerAt(k)->GetName().ToQString());
            item.SetString("kind", QString::fromLatin1(KindWord(page->GetLayerAt(k)->GetKind())));
            items.Append(item);
        }
        document.ReleasePage(i, 0);
    }
    return items;
}
