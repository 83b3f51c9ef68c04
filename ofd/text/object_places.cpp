#include "object_places.h"

#include "font_store.h"
#include "glyph_layout.h"

#include <ofd/model/document_store.h>
#include <ofd/package/limits.h>
#include <ofd/package/package.h>

#include <cmath>

namespace ofd {

namespace {

QPointF MappedDirection(const QTransform& toPage, const QPointF& along)
{
    const QPointF mapped = toPage.map(along) - toPage.map(QPointF(0, 0));
    const double length = std::hypot(mapped.x(), mapped.y());
    return length > 0 && std::isfinite(length) ? mapped / length : QPointF(1, 0);
}

// Walks the texts of objects, composites included.
class TextWalker
{
public:
    TextWalker(const Resources& resources, DocumentStore& store, const std::atomic<bool>* isGivenUp,
               QVector<PlacedText>& texts)
        : resources(resources)
        , store(store)
        , isGivenUp(isGivenUp)
        , package(store.GetPackage())
        , texts(texts)
    {
    }

    void Walk(const ObjectList& objects, const QTransform& toPage)
    {
        for (const std::unique_ptr<const GraphicObject>& object : objects) {
            if (!openUnits.isEmpty() && ++repeatedObjects > limits::MaxRepeatedObjects)
                return;
            if (isGivenUp && isGivenUp->load(std::memory_order_relaxed))
                return;
            if (object->isVisible)
                Visit(*object, toPage);
        }
    }

private:
    void Visit(const GraphicObject& object, const QTransform& toPage)
    {
        if (object.kind == GraphicObject::Kind::Group)
            Walk(static_cast<const GroupObject&>(object).objects, toPage);
        else if (object.kind == GraphicObject::Kind::Composite)
            VisitUnit(static_cast<const CompositeObject&>(object), toPage);
        else if (object.kind == GraphicObject::Kind::Text)
            VisitText(static_cast<const TextObject&>(object), object.toContainer * toPage);
    }

    void VisitUnit(const CompositeObject& object, const QTransform& toPage)
    {
        const CompositeUnit* unit = resources.FindUnit(object.unitId);
        if (!unit || openUnits.contains(unit) || openUnits.size() >= limits::MaxReferenceDepth)
            return;
        openUnits.append(unit);
        Walk(unit->objects, object.toContainer * toPage);
        openUnits.removeLast();
    }

    void VisitText(const TextObject& text, const QTransform& toPage)
    {
        const TextLayout layout = LayOutText(text, resources, *package, store.GetFonts());
        for (const TextCluster& cluster : layout.clusters) {
            const QPolygonF cell = toPage.map(cluster.box);
            texts.append(
                {cell.boundingRect(), cluster.text, cell, MappedDirection(toPage, cluster.along), cluster.isFirst});
        }
    }

    const Resources& resources;
    DocumentStore& store;
    const std::atomic<bool>* isGivenUp; // not owned; null when it cannot be
    const std::shared_ptr<const Package> package;
    QVector<PlacedText>& texts;
    QVector<const CompositeUnit*> openUnits; // not owned
    int repeatedObjects = 0;                 // visited so far as contents of composites
};

class ObjectWalker
{
public:
    ObjectWalker(const Resources& resources, DocumentStore& store, QVector<ObjectPlace>& places)
        : resources(resources)
        , store(store)
        , package(store.GetPackage())
        , places(places)
    {
    }

    // What a hidden block holds is hidden too.
    void Walk(const ObjectList& objects, int layer, bool isShown = true)
    {
        for (const std::unique_ptr<const GraphicObject>& object : objects) {
            if (object->kind == GraphicObject::Kind::Group) {
                Walk(static_cast<const GroupObject&>(*object).objects, layer, isShown && object->isVisible);
            } else if (object->id != 0) {
                ObjectPlace place = PlaceOf(*object);
                place.id = object->id;
                place.layer = layer;
                place.isVisible = isShown && object->isVisible;
                places.append(place);
            }
        }
    }

private:
    ObjectPlace PlaceOf(const GraphicObject& object) const
    {
        ObjectPlace place;
        place.box = object.boundary.normalized();
        if (object.kind == GraphicObject::Kind::Text) {
            const TextLayout layout =
                LayOutText(static_cast<const TextObject&>(object), resources, *package, store.GetFonts());
            QRectF cells;
            for (const TextCluster& cluster : layout.clusters)
                cells |= object.toContainer.map(cluster.box).boundingRect();
            if (!cells.isEmpty())
                place.box = cells;
        } else if (object.kind == GraphicObject::Kind::Path) {
            place.outline = object.toContainer.map(PrivateCopy(static_cast<const PathObject&>(object).path));
            if (place.box.isEmpty())
                place.box = place.outline.boundingRect();
        }
        return place;
    }

    const Resources& resources;
    DocumentStore& store;
    const std::shared_ptr<const Package> package;
    QVector<ObjectPlace>& places;
};

} // namespace

QVector<PlacedText> PlaceTexts(const PageContent& content, DocumentStore& store, const QSet<int>& hiddenLayers,
                               const std::atomic<bool>* isGivenUp)
{
    QVector<PlacedText> texts;
    TextWalker walker(*content.resources, store, isGivenUp, texts);
    for (int i = 0; i < int(content.layers.size()); ++i) {
        if (!hiddenLayers.contains(i))
            walker.Walk(content.layers[size_t(i)].objects, QTransform());
    }
    return texts;
}

QVector<ObjectPlace> PlaceObjects(const PageContent& content, DocumentStore& store)
{
    QVector<ObjectPlace> places;
    ObjectWalker walker(*content.resources, store, places);
    for (int i = 0; i < int(content.layers.size()); ++i)
        walker.Walk(content.layers[size_t(i)].objects, i);
    return places;
}

} // namespace ofd
