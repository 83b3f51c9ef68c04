#include "page_painter.h"

#include "image_painter.h"
#include "painting_tools.h"

#include <ofd/model/document_store.h>
#include <ofd/model/problem_log.h>
#include <ofd/model/resources.h>
#include <ofd/package/limits.h>
#include <ofd/package/package.h>

#include <QCoreApplication>

namespace ofd {

ContentPainter::ContentPainter(QPainter& painter, DocumentStore& store, std::shared_ptr<const Package> package,
                               std::function<bool()> isCancelled)
    : painter(painter)
    , store(store)
    , package(std::move(package))
    , isCancelled(std::move(isCancelled))
{
}

bool ContentPainter::PaintObjects(const ObjectList& objects, const Resources& resources)
{
    for (const std::unique_ptr<const GraphicObject>& object : objects) {
        if (isCancelled && isCancelled())
            return false;
        if (!openUnits.isEmpty() && !CountRepeated())
            return true;
        if (object->isVisible && object->alpha > 0)
            PaintObject(*object, resources);
    }
    return true;
}

// False when composites have been used so often that no more of their objects are painted on this page.
bool ContentPainter::CountRepeated()
{
    if (repeatedObjects == limits::MaxRepeatedObjects)
        ReportProblem(ProblemKind::Limit,
                      QCoreApplication::translate("OfdDocument", "The page repeats its composite objects too often."));
    repeatedObjects = std::min(repeatedObjects + 1, limits::MaxRepeatedObjects + 1);
    return repeatedObjects <= limits::MaxRepeatedObjects;
}

void ContentPainter::PaintObject(const GraphicObject& object, const Resources& resources)
{
    if (object.kind == GraphicObject::Kind::Group) {
        PaintObjects(static_cast<const GroupObject&>(object).objects, resources);
        return;
    }
    const ProblemPlace place(object.id);
    if (!IsUsable(object.toContainer * painter.worldTransform())) {
        ReportProblem(
            ProblemKind::BadValue,
            QCoreApplication::translate("OfdDocument", "The object's transform leaves nothing that can be painted."));
        return;
    }
    const PainterScope scope(painter);
    switch (object.kind) {
    case GraphicObject::Kind::Path:
        PaintPath(static_cast<const PathObject&>(object));
        break;
    case GraphicObject::Kind::Text:
        PaintText(static_cast<const TextObject&>(object), resources);
        break;
    case GraphicObject::Kind::Image:
        PaintImage(static_cast<const ImageObject&>(object), resources);
        break;
    case GraphicObject::Kind::Composite:
        PaintComposite(static_cast<const CompositeObject&>(object), resources);
        break;
    case GraphicObject::Kind::Group:
        break;
    }
}

// Cuts to the object's clips, and to its boundary where that is a box and what is painted reaches beyond it.
void ContentPainter::ClipTo(const GraphicObject& object, const QRectF& painted)
{
    for (const QPainterPath& clip : object.clips)
        painter.setClipPath(PrivateCopy(clip), Qt::IntersectClip);
    if (object.boundary.width() <= 0 || object.boundary.height() <= 0)
        return;
    const double grow = object.stroke.widthMm * ScaleOf(object.toContainer) / 2;
    const QRectF box = object.boundary.adjusted(-grow, -grow, grow, grow);
    if (!box.contains(painted))
        painter.setClipRect(box, Qt::IntersectClip);
}

void ContentPainter::PaintImage(const ImageObject& object, const Resources& resources)
{
    ClipTo(object, ImagePainter::BoxOf(object));
    ImagePainter(painter, store.GetImages(), *package).Paint(object, resources, object.alpha * groupAlpha);
}

void ContentPainter::PaintComposite(const CompositeObject& object, const Resources& resources)
{
    const CompositeUnit* unit = resources.FindUnit(object.unitId);
    if (!unit) {
        ReportProblem(
            ProblemKind::DanglingReference,
            QCoreApplication::translate("OfdDocument", "There is no composite object %1.").arg(object.unitId));
        return;
    }
    if (openUnits.contains(unit) || openUnits.size() >= limits::MaxReferenceDepth) {
        ReportProblem(
            ProblemKind::Cycle,
            QCoreApplication::translate("OfdDocument", "The composite object %1 contains itself.").arg(object.unitId));
        return;
    }
    for (const QPainterPath& clip : object.clips)
        painter.setClipPath(PrivateCopy(clip), Qt::IntersectClip);
    painter.setWorldTransform(object.toContainer, true);
    openUnits.append(unit);
    const double outerAlpha = groupAlpha;
    groupAlpha *= object.alpha;
    PaintObjects(unit->objects, resources);
    groupAlpha = outerAlpha;
    openUnits.removeLast();
}

} // namespace ofd
