#include "content_weight.h"

#include "content.h"
#include "pattern.h"
#include "resources.h"

namespace ofd {

namespace {

constexpr qint64 Block = 32; // what the heap adds to each piece of memory

qint64 WeightOf(const QPainterPath& path)
{
    return path.isEmpty() ? 0 : Block + 64 + qint64(path.elementCount()) * qint64(sizeof(QPainterPath::Element));
}

template <typename T>
qint64 WeightOf(const QVector<T>& list)
{
    return list.isEmpty() ? 0 : Block + qint64(list.size()) * qint64(sizeof(T));
}

qint64 WeightOf(const Paint& paint)
{
    qint64 weight = paint.shading ? Block + qint64(sizeof(Shading)) + WeightOf(paint.shading->stops) : 0;
    if (paint.mesh)
        weight += Block + qint64(sizeof(Mesh)) + WeightOf(paint.mesh->vertices) + WeightOf(paint.mesh->corners);
    if (paint.pattern)
        weight += Block + qint64(sizeof(Pattern)) + paint.pattern->bytes;
    return weight;
}

qint64 WeightOf(const TextObject& object)
{
    qint64 weight = qint64(sizeof(TextObject)) + WeightOf(object.fillPaint) + WeightOf(object.strokePaint);
    for (const TextCode& code : object.codes) {
        weight +=
            Block + qint64(sizeof(TextCode)) + WeightOf(code.codes) + WeightOf(code.deltasX) + WeightOf(code.deltasY);
        for (const GlyphMapping& mapping : code.mappings)
            weight += qint64(sizeof(GlyphMapping)) + WeightOf(mapping.glyphs);
    }
    return weight;
}

qint64 WeightOf(const ObjectActions* actions)
{
    qint64 weight = actions ? Block + qint64(sizeof(ObjectActions)) : 0;
    for (size_t i = 0; actions && i < actions->size(); ++i)
        weight +=
            Block + qint64(sizeof(ObjectAction)) + 2 * qint64(sizeof(G_ActionGoto)) + WeightOf((*actions)[i].region);
    return weight;
}

qint64 WeightOf(const GraphicObject& object)
{
    qint64 weight = Block + WeightOf(object.actions.get());
    for (const Clip& clip : object.clips) {
        weight += qint64(sizeof(Clip)) + WeightOf(clip.outline);
        for (const ClipText& text : clip.texts)
            weight += Block + WeightOf(*text.text);
    }
    switch (object.kind) {
    case GraphicObject::Kind::Text:
        return weight + WeightOf(static_cast<const TextObject&>(object));
    case GraphicObject::Kind::Path: {
        const auto& path = static_cast<const PathObject&>(object);
        return weight + qint64(sizeof(PathObject)) + WeightOf(path.path) + WeightOf(path.fillPaint) +
               WeightOf(path.strokePaint);
    }
    case GraphicObject::Kind::Group:
        return weight + qint64(sizeof(GroupObject)) + WeightOf(static_cast<const GroupObject&>(object).objects);
    default:
        return weight + qint64(sizeof(ImageObject));
    }
}

} // namespace

qint64 WeightOf(const ObjectList& objects)
{
    qint64 weight = qint64(objects.capacity()) * qint64(sizeof(objects[0]));
    for (const std::unique_ptr<const GraphicObject>& object : objects)
        weight += WeightOf(*object);
    return weight;
}

qint64 WeightOf(const PageContent& page)
{
    qint64 weight = Block + qint64(sizeof(PageContent)) + WeightOf(page.actions.get());
    for (const Layer& layer : page.layers)
        weight += qint64(sizeof(Layer)) + WeightOf(layer.objects);
    if (!page.resources || !page.resources->outer)
        return weight;
    for (const std::shared_ptr<const CompositeUnit>& unit : page.resources->units)
        weight += Block + qint64(sizeof(CompositeUnit)) + WeightOf(unit->objects);
    return weight;
}

} // namespace ofd
