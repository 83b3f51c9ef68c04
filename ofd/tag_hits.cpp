#include "tag_hits.h"

#include <frame/document/payloads.h>

namespace ofd {

TagHits::TagHits(int pageId, const QPointF& point, const QVector<ObjectPlace>& places, const QHash<int, int>& placeById)
    : pageId(pageId)
{
    for (int i = 0; i < places.size(); ++i) {
        const ObjectPlace& place = places.at(i);
        if (place.isVisible && place.box.contains(point) && placeById.value(place.id) == i)
            areas.insert(place.id, place.box.width() * place.box.height());
    }
}

void TagHits::Search(G_TreeNode* root)
{
    if (!root || areas.isEmpty())
        return;
    QVector<G_TreeNode*> pending{root}; // a stack of our own: trees can be deep
    while (!pending.isEmpty()) {
        G_TreeNode* node = pending.takeLast();
        Test(node);
        for (int i = node->SubNodeCount() - 1; i >= 0; --i)
            pending.append(node->SubNode(i));
    }
}

void TagHits::Test(G_TreeNode* node)
{
    const auto* tag = dynamic_cast<const G_CustomTagItem*>(node->data);
    if (!tag)
        return;
    for (const G_PageObjRef* reference : tag->objects.Values()) {
        if (!reference || reference->pageId != pageId)
            continue;
        for (const int id : reference->objectIds) {
            const auto area = areas.constFind(id);
            if (area == areas.constEnd())
                continue;
            const bool isBetter = !best || *area < bestArea || (*area == bestArea && node->level > best->level);
            if (!isBetter)
                continue;
            best = node;
            bestObject = id;
            bestArea = *area;
        }
    }
}

} // namespace ofd
