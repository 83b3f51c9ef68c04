#include "payloads.h"

#include <frame/base/converters.h>

namespace {

OVJson DestToJson(const G_Dest& dest)
{
    OVJson json;
    json.SetInt("zoomMode", dest.zoomMode);
    json.SetInt("pageId", dest.pageId);
    json.SetInt("pageIndex", dest.pageIndex);
    json.SetDouble("left", dest.left);
    json.SetDouble("right", dest.right);
    json.SetDouble("top", dest.top);
    json.SetDouble("bottom", dest.bottom);
    json.SetDouble("zoom", dest.zoom);
    return json;
}

G_Dest DestFromJson(const OVJson& json)
{
    G_Dest dest;
    dest.zoomMode = json.Member("zoomMode").ToInt();
    dest.pageId = json.Member("pageId").ToInt();
    dest.pageIndex = json.Member("pageIndex").ToInt();
    dest.left = static_cast<float>(json.Member("left").ToDouble());
    dest.right = static_cast<float>(json.Member("right").ToDouble());
    dest.top = static_cast<float>(json.Member("top").ToDouble());
    dest.bottom = static_cast<float>(json.Member("bottom").ToDouble());
    dest.zoom = static_cast<float>(json.Member("zoom").ToDouble());
    return dest;
}

OVJson ActionToJson(const G_Action& action)
{
    OVJson json;
    json.SetInt("actionType", action.actionType);
    if (const auto* go = dynamic_cast<const G_ActionGoto*>(&action)) {
        json.SetObject("dest", DestToJson(*go->dest));
        json.SetString("bookmark", GQ_ToQStringFromUtf8(go->bookmarkName));
    } else if (const auto* address = dynamic_cast<const G_ActionUri*>(&action)) {
        json.SetString("uri", GQ_ToQStringFromUtf8(address->uri));
    }
    return json;
}

} // namespace

G_RecordSource::~G_RecordSource() = default;

G_Bookmark::G_Bookmark()
    : dest(new G_Dest)
{
}

G_Bookmark::G_Bookmark(const G_Bookmark& other)
    : G_Object(other)
    , G_NodeData(other)
    , name(other.name)
    , dest(new G_Dest(*other.dest))
    , source(other.source)
{
}

G_Bookmark::~G_Bookmark()
{
    delete dest;
}

OVJson G_Bookmark::ToJson() const
{
    OVJson json;
    json.SetString("name", GQ_ToQStringFromUtf8(name));
    json.SetObject("dest", DestToJson(*dest));
    return json;
}

bool G_Bookmark::FromJson(const OVJson& json)
{
    if (!json.Member("name").IsString() || !json.Member("dest").IsObject())
        return false;
    name = GQ_ToCAS(json.Member("name").ToQString());
    *dest = DestFromJson(json.Member("dest"));
    return true;
}

G_OutlineItem::G_OutlineItem() = default;

G_OutlineItem::G_OutlineItem(const G_OutlineItem& other)
    : G_Object(other)
    , G_NodeData(other)
    , title(other.title)
    , text(other.text)
    , expanded(other.expanded)
    , source(other.source)
{
    for (const G_Action* action : other.actions)
        actions.Add(action ? action->Clone() : nullptr);
}

G_OutlineItem::~G_OutlineItem()
{
    qDeleteAll(actions.begin(), actions.end());
}

OVJson G_OutlineItem::ToJson() const
{
    OVJson json;
    json.SetString("title", GQ_ToQStringFromUtf8(title));
    json.SetString("text", GQ_ToQStringFromUtf8(text));
    json.SetBool("expanded", expanded);
    OVJson list = json.AddArray("actions");
    for (const G_Action* action : actions) {
        if (action)
            list.Append(ActionToJson(*action));
    }
    return json;
}

G_CustomTagItem::G_CustomTagItem() = default;

G_CustomTagItem::G_CustomTagItem(const G_CustomTagItem& other)
    : G_Object(other)
    , G_NodeData(other)
    , tagName(other.tagName)
    , attributes(other.attributes)
    , source(other.source)
    , predecessor(other.predecessor)
{
    const QVector<G_PageObjRef*> refs = other.objects.Values();
    for (const G_PageObjRef* ref : refs)
        objects.Add(ref ? new G_PageObjRef(*ref) : nullptr);
}

void G_CustomTagItem::TakePlaceOf(const G_NodeData& previous)
{
    const auto* tag = dynamic_cast<const G_CustomTagItem*>(&previous);
    if (tag && !source)
        predecessor = tag->source ? tag->source : tag->predecessor;
}

G_CustomTagItem::~G_CustomTagItem()
{
    const QVector<G_PageObjRef*> refs = objects.Values();
    qDeleteAll(refs);
}

OVJson G_CustomTagItem::ToJson() const
{
    OVJson json;
    json.SetString("tagName", GQ_ToQStringFromUtf8(tagName));
    OVJson attributeList = json.AddArray("attributes");
    const QVector<CCA_String> texts = attributes.Values();
    for (const CCA_String& text : texts)
        attributeList.Append(GQ_ToQStringFromUtf8(text));
    OVJson objectList = json.AddArray("objects");
    const QVector<G_PageObjRef*> refs = objects.Values();
    for (const G_PageObjRef* ref : refs) {
        if (!ref)
            continue;
        OVJson entry;
        entry.SetInt("pageId", ref->pageId);
        OVJson ids = entry.AddArray("objectIds");
        for (const int id : ref->objectIds)
            ids.InsertInt(-1, id);
        objectList.Append(entry);
    }
    return json;
}
