#include "ofd_page.h"

#include "tag_hits.h"

#include <frame/document/ig_document.h>
#include <frame/document/payloads.h>
#include <ofd/model/document_store.h>
#include <ofd/text/text_page.h>
#include <ofd/text/text_store.h>

#include <algorithm>

namespace ofd {

OfdPageLayer::OfdPageLayer(DocumentStore& store, int pageIndex, int position, const QString& name, LayerKind kind)
    : store(store)
    , pageIndex(pageIndex)
    , position(position)
    , name(name)
    , kind(kind)
{
}

void OfdPageLayer::SetVisible(bool visible)
{
    store.GetSession().SetLayerHidden(pageIndex, position, !visible);
}

bool OfdPageLayer::IsVisible()
{
    return !store.GetSession().IsLayerHidden(pageIndex, position);
}

OfdPage::OfdPage(IG_Document* document, std::shared_ptr<DocumentStore> store, int index)
    : document(document)
    , store(std::move(store))
    , index(index)
{
}

OfdPage::~OfdPage() = default;

float OfdPage::GetPageWidth()
{
    return float(store->GetPageSize(index).width());
}

float OfdPage::GetPageHeight()
{
    return float(store->GetPageSize(index).height());
}

int OfdPage::PageId()
{
    return store->GetStructure().pages.at(index).id;
}

bool OfdPage::Load()
{
    if (content)
        return true;
    if (const std::shared_ptr<const PageText> text = store->GetTexts().FindText(index); text && text->IsReadable()) {
        content = text->Content(); // no longer cached, perhaps
        MakeLayers();
        return true;
    }
    const ContentResult result = store->GetPageContent(index);
    if (!result.error.isEmpty() && IsEditable()) // the page that a missing part leaves is empty, not broken
        return false;
    content = result.content;
    MakeLayers();
    return true;
}

bool OfdPage::IsEditable() const
{
    return !store->GetStructure().pages.at(index).part.isEmpty();
}

void OfdPage::Unload()
{
    content.reset();
    textPage.reset();
    places.reset();
    placeById.clear();
}

void OfdPage::MakeLayers()
{
    for (size_t i = layers.size(); i < content->layers.size(); ++i) {
        const Layer& layer = content->layers[i];
        layers.push_back(std::make_unique<OfdPageLayer>(*store, index, int(i), layer.name, layer.kind));
    }
}

int OfdPage::GetTemplateRefCount()
{
    return content ? content->templates.size() : 0;
}

int OfdPage::GetTemplateRefAt(int position)
{
    return content ? content->templates.value(position).id : 0;
}

CCA_String OfdPage::GetTemplateRefZOrder(int position)
{
    if (position < 0 || position >= GetTemplateRefCount())
        return "Background";
    const TemplateRef& reference = content->templates.at(position);
    const LayerKind kind = store->GetTemplateKind(reference.id, reference.zOrder);
    return kind == LayerKind::Foreground ? "Foreground" : kind == LayerKind::Body ? "Body" : "Background";
}

IG_PageLayer* OfdPage::GetLayerAt(int position)
{
    return position >= 0 && position < GetLayerCount() ? layers[size_t(position)].get() : nullptr;
}

int OfdPage::LoadAnnots()
{
    if (areAnnotsRead)
        return areAnnotsBroken ? 1 : 0;
    const std::shared_ptr<const PageAnnotations> list = store->GetPageAnnotations(index);
    annots.clear(); // memory may have run out half-way through
    GiveAnnotIds(*list);
    for (int i = 0; i < annotIds.size(); ++i)
        annots.push_back(std::make_unique<OfdAnnot>(this, IsEditable(), *store, list, i, annotIds.at(i)));
    areAnnotsRead = true;
    areAnnotsBroken = list->isBroken;
    ListAnnots();
    return areAnnotsBroken ? 1 : 0;
}

// Those that the file does not give are written when the annotation is edited.
void OfdPage::GiveAnnotIds(const PageAnnotations& list)
{
    if (!annotIds.isEmpty())
        return;
    QVector<int> inFile;
    for (const AnnotationRecord& record : list.annotations)
        inFile.append(record.id);
    annotIds = store->GetUnitIds().ForAnnotations(*store->GetPackage(), inFile);
}

void OfdPage::ListAnnots()
{
    shownAnnots.clear();
    for (const std::unique_ptr<OfdAnnot>& annot : annots) {
        if (!annot->IsRemoved())
            shownAnnots.append(annot.get());
    }
}

IG_Annot* OfdPage::GetAnnotById(int id)
{
    const auto found =
        std::find_if(shownAnnots.cbegin(), shownAnnots.cend(), [id](IG_Annot* annot) { return annot->GetId() == id; });
    return found != shownAnnots.cend() ? *found : nullptr;
}

bool OfdPage::SetAnnotRemoved(IG_Annot* annot, bool isRemoved)
{
    for (const std::unique_ptr<OfdAnnot>& own : annots) {
        if (own.get() != annot || own->IsRemoved() == isRemoved)
            continue;
        own->SetRemoved(isRemoved);
        ListAnnots();
        return true;
    }
    return false;
}

QVector<G_PageLink> OfdPage::GetLinks()
{
    const SessionState::PageView view = store->GetSession().GetPageView(index);
    const std::shared_ptr<const PlacedLinks> placed = store->GetPageLinks(index);
    QVector<G_PageLink> shown;
    shown.reserve(int(placed->links.size()));
    for (const PlacedLink& link : placed->links) {
        const bool isHidden = view.hiddenLayers.contains(link.layer) ||
                              view.hiddenAnnotations.contains(link.annotation) ||
                              std::any_of(link.templates.cbegin(), link.templates.cend(),
                                          [&view](int id) { return view.hiddenTemplates.contains(id); });
        if (!isHidden)
            shown.append(link.link);
    }
    return shown;
}

IG_TextPage* OfdPage::GetTextPage()
{
    if (!content)
        return nullptr;
    if (!textPage)
        textPage = std::make_unique<OfdTextPage>(store, index);
    return textPage.get();
}

const QVector<ObjectPlace>& OfdPage::Places()
{
    if (places)
        return *places;
    places = std::make_unique<QVector<ObjectPlace>>(PlaceObjects(*store->GetPageContent(index).content, *store));
    placeById.clear();
    for (int i = places->size() - 1; i >= 0; --i) // from the last on, so that the first holds
        placeById.insert(places->at(i).id, i);
    return *places;
}

const ObjectPlace* OfdPage::FindObject(int id)
{
    const QVector<ObjectPlace>& all = Places();
    const auto found = placeById.constFind(id);
    return found == placeById.constEnd() ? nullptr : &all.at(*found);
}

int OfdPage::CollectObjectsInRect(const CCA_GRect& rect, G_PageObjRef* ref)
{
    if (!content || !ref)
        return 0;
    const SessionState::PageView view = store->GetSession().GetPageView(index);
    int added = 0;
    for (const ObjectPlace& place : Places()) {
        const QPointF centre = place.box.center();
        const bool isShown = place.isVisible && !view.hiddenLayers.contains(place.layer);
        if (isShown && rect.Contains({float(centre.x()), float(centre.y())})) {
            ref->objectIds.append(place.id);
            ++added;
        }
    }
    return added;
}

bool OfdPage::CustomTagAtPoint(float x, float y, G_TreeNode** node, int* extra)
{
    if (!content)
        return false;
    const QVector<ObjectPlace>& all = Places(); // which makes `placeById` too
    TagHits hits(PageId(), QPointF(x, y), all, placeById);
    for (int i = 0; i < document->CustomTagRootCount(); ++i)
        hits.Search(document->CustomTagRoot(i));
    if (!hits.GetNode())
        return false;
    if (node)
        *node = hits.GetNode();
    if (extra)
        *extra = hits.GetObjectId();
    return true;
}

} // namespace ofd
