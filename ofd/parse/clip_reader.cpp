#include "clip_reader.h"

#include "geometry_reader.h"
#include "object_style.h"
#include "text_reader.h"

#include <ofd/model/problem_log.h>
#include <ofd/model/text_object.h>
#include <ofd/model/united_areas.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>

namespace ofd {

namespace {

// How a clip's shapes get from the space before the object's matrix into the container.
struct ClipPlaces
{
    QTransform usual;
    QTransform withoutMatrix;
    bool mayFallBack = false; // the file does not say which, so one that misses the boundary is taken for the other
};

std::shared_ptr<const TextObject> ReadClipText(const pugi::xml_node& element, int areaDrawParam,
                                               const Resources& resources)
{
    auto text = std::make_shared<TextObject>();
    StyleChain chain(resources);
    chain.Append(int(IdAttribute(element, "DrawParam")));
    chain.Append(areaDrawParam);
    text->stroke = chain.ReadStroke(element);
    text->isFilled = BooleanAttribute(element, "Fill", true);
    text->isStroked = BooleanAttribute(element, "Stroke", false);
    text->boundary = BoxAttribute(element, "Boundary").value_or(QRectF());
    text->toContainer = MatrixAttribute(element) * MoveTo(text->boundary);
    ReadTextObject(element, *text);
    return text;
}

QPainterPath ReadClipPath(const pugi::xml_node& element, const QTransform& fromArea)
{
    const QRectF boundary = BoxAttribute(element, "Boundary").value_or(QRectF());
    const QPainterPath outline = ReadPath(element);
    QPainterPath placed = (MatrixAttribute(element) * MoveTo(boundary) * fromArea).map(outline);
    placed.setFillRule(outline.fillRule());
    return placed;
}

std::optional<Clip> ReadClip(const pugi::xml_node& element, const ClipPlaces& places, const GraphicObject& object,
                             const Resources& resources)
{
    Clip clip;
    QVector<QPainterPath> areas;
    for (const pugi::xml_node& area : ChildElements(element, "Area")) {
        const QTransform fromArea = MatrixAttribute(area);
        for (const pugi::xml_node& path : ChildElements(area, "Path"))
            areas.append(ReadClipPath(path, fromArea));
        for (const pugi::xml_node& text : ChildElements(area, "Text")) {
            const auto read = ReadClipText(text, int(IdAttribute(area, "DrawParam")), resources);
            clip.texts.push_back({read, read->toContainer * fromArea});
        }
    }
    if (areas.isEmpty() && clip.texts.empty())
        return std::nullopt;
    const QPainterPath local = UnitedAreas(areas);
    const bool misses = places.mayFallBack && !areas.isEmpty() && !object.boundary.isEmpty() &&
                        !places.usual.mapRect(local.boundingRect()).intersects(object.boundary);
    const QTransform& place = misses ? places.withoutMatrix : places.usual;
    clip.outline = place.map(local);
    clip.outline.setFillRule(local.fillRule());
    for (ClipText& text : clip.texts) {
        text.toContainer *= place;
        text.toContainer.type(); // settles its lazy kind before threads share it
    }
    return clip;
}

} // namespace

std::vector<Clip> ReadClips(const pugi::xml_node& element, const GraphicObject& object, const Resources& resources)
{
    std::vector<Clip> clips;
    const pugi::xml_node list = ChildElement(element, "Clips");
    if (!list)
        return clips;
    ClipPlaces places;
    places.withoutMatrix = MoveTo(object.boundary);
    places.usual = BooleanAttribute(list, "TransFlag", true) ? object.toContainer : places.withoutMatrix;
    places.mayFallBack = !HasAttribute(list, "TransFlag");
    for (const pugi::xml_node& child : ChildElements(list, "Clip")) {
        if (std::optional<Clip> clip = ReadClip(child, places, object, resources))
            clips.push_back(std::move(*clip));
        else
            ReportProblem(ProblemKind::BadValue,
                          QCoreApplication::translate("OfdDocument", "A clip has no area; nothing is cut off."));
    }
    return clips;
}

} // namespace ofd
