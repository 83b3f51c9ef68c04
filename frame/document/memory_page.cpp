#include "memory_page.h"

#include "memory_tags.h"

#include <algorithm>

MemoryPage::MemoryPage(IG_Document* document, std::atomic<bool>* isDocumentModified, std::atomic<int>* textRevision,
                       int id, float widthMm, float heightMm)
    : document(document)
    , isDocumentModified(isDocumentModified)
    , textRevision(textRevision)
    , id(id)
    , widthMm(widthMm)
    , heightMm(heightMm)
{
}

MemoryPage::~MemoryPage() = default;

bool MemoryPage::Load()
{
    isLoaded = isLoaded || !fails;
    return isLoaded;
}

void MemoryPage::Unload()
{
    isLoaded = false;
    textPage.reset();
}

int MemoryPage::GetTemplateRefAt(int position)
{
    return isLoaded ? templateRefs.value(position).id : 0;
}

CCA_String MemoryPage::GetTemplateRefZOrder(int position)
{
    const bool isKnown = isLoaded && position >= 0 && position < templateRefs.size();
    return isKnown ? templateRefs.at(position).zOrder : CCA_String("Background");
}

IG_PageLayer* MemoryPage::GetLayerAt(int position)
{
    if (position < 0 || position >= GetLayerCount())
        return nullptr;
    return layers[static_cast<size_t>(position)].get();
}

int MemoryPage::LoadAnnots()
{
    areAnnotsKnown = true;
    ListAnnots();
    return 0;
}

IG_Annot* MemoryPage::GetAnnotById(int annotId)
{
    const auto found = std::find_if(shownAnnots.cbegin(), shownAnnots.cend(),
                                    [annotId](IG_Annot* annot) { return annot->GetId() == annotId; });
    return found != shownAnnots.cend() ? *found : nullptr;
}

IG_TextPage* MemoryPage::GetTextPage()
{
    if (!isLoaded)
        return nullptr;
    if (!textPage)
        textPage = std::make_unique<MemoryTextPage>(texts);
    return textPage.get();
}

int MemoryPage::CollectObjectsInRect(const CCA_GRect& rect, G_PageObjRef* ref)
{
    if (!isLoaded || !ref)
        return 0;
    int added = 0;
    for (const MemoryText& text : texts) {
        const CCA_GRect box = text.Box();
        const bool isVisible = !box.IsEmpty() && text.IsShown();
        if (isVisible && rect.Contains({(box.left + box.right) / 2, (box.top + box.bottom) / 2})) {
            ref->objectIds.append(text.id);
            ++added;
        }
    }
    return added;
}

bool MemoryPage::CustomTagAtPoint(float x, float y, G_TreeNode** node, int* extra)
{
    return isLoaded && FindTagAtPoint(document, *this, {x, y}, node, extra);
}

void MemoryPage::AddText(float x, float y, const QString& text)
{
    MemoryText added;
    added.id = texts.size() + 1;
    added.x = x;
    added.y = y;
    added.text = text;
    added.layer = layers.empty() ? nullptr : layers.back().get();
    texts.append(added);
    textPage.reset();
}

void MemoryPage::AddLayer(int kind, const QString& name)
{
    layers.push_back(std::make_unique<MemoryLayer>(kind, name, textRevision));
}

IG_Annot* MemoryPage::AddAnnot(const MemoryDocument::AnnotRecord& record)
{
    annots.push_back(std::make_unique<MemoryAnnot>(this, record, isDocumentModified));
    ListAnnots();
    return annots.back().get();
}

bool MemoryPage::SetAnnotRemoved(IG_Annot* annot, bool removed)
{
    const auto found =
        std::find_if(annots.cbegin(), annots.cend(), [annot](const auto& owned) { return owned.get() == annot; });
    if (found == annots.cend())
        return false;
    (*found)->SetRemoved(removed);
    ListAnnots();
    return true;
}

bool MemoryPage::ObjectBox(int objectId, CCA_GRect* box) const
{
    if (objectId < 1 || objectId > texts.size())
        return false;
    *box = texts.at(objectId - 1).Box();
    return true;
}

QVector<CCA_GRect> MemoryPage::PaintedAnnotBoxes() const
{
    QVector<CCA_GRect> boxes;
    for (const auto& annot : annots) {
        if (annot->IsPainted())
            boxes.append(annot->GetBoundary());
    }
    return boxes;
}

void MemoryPage::ListAnnots()
{
    shownAnnots.clear();
    if (!areAnnotsKnown)
        return;
    for (const auto& annot : annots) {
        if (!annot->IsRemoved())
            shownAnnots.append(annot.get());
    }
}

void MemoryPage::AddLink(const G_PageLink& link, int annotId)
{
    Link added{link, layers.empty() || annotId != 0 ? nullptr : layers.back().get(), annotId};
    added.link.isOfAnnotation = annotId != 0;
    links.append(added);
}

bool MemoryPage::IsShown(const Link& link) const
{
    if (link.layer && !link.layer->IsVisible())
        return false;
    const int annotId = link.annotId;
    return annotId == 0 || std::any_of(annots.cbegin(), annots.cend(), [annotId](const auto& annot) {
               return annot->GetId() == annotId && !annot->IsRemoved() && annot->GetVisible(1);
           });
}

QVector<G_PageLink> MemoryPage::GetLinks()
{
    QVector<G_PageLink> shown;
    for (const Link& link : qAsConst(links)) {
        if (!fails && IsShown(link))
            shown.append(link.link);
    }
    return shown;
}
