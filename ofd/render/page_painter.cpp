#include "page_painter.h"

#include "image_painter.h"
#include "painting_tools.h"
#include "painting_work.h"

#include <ofd/model/document_store.h>
#include <ofd/model/problem_log.h>
#include <ofd/model/resources.h>
#include <ofd/package/limits.h>
#include <ofd/package/package.h>

#include <QCoreApplication>
#include <QScopedValueRollback>

namespace ofd {

namespace {

QPainter::CompositionMode CompositionOf(BlendMode mode)
{
    switch (mode) {
    case BlendMode::Normal:
        break;
    case BlendMode::Multiply:
        return QPainter::CompositionMode_Multiply;
    case BlendMode::Screen:
        return QPainter::CompositionMode_Screen;
    case BlendMode::Overlay:
        return QPainter::CompositionMode_Overlay;
    case BlendMode::Darken:
        return QPainter::CompositionMode_Darken;
    case BlendMode::Lighten:
        return QPainter::CompositionMode_Lighten;
    case BlendMode::ColorDodge:
        return QPainter::CompositionMode_ColorDodge;
    case BlendMode::ColorBurn:
        return QPainter::CompositionMode_ColorBurn;
    case BlendMode::HardLight:
        return QPainter::CompositionMode_HardLight;
    case BlendMode::SoftLight:
        return QPainter::CompositionMode_SoftLight;
    case BlendMode::Difference:
        return QPainter::CompositionMode_Difference;
    case BlendMode::Exclusion:
        return QPainter::CompositionMode_Exclusion;
    }
    return QPainter::CompositionMode_SourceOver;
}

} // namespace

ContentPainter::ContentPainter(QPainter& painter, DocumentStore& store, std::shared_ptr<const Package> package,
                               PaintingWork& work, std::function<bool()> isCancelled)
    : painter(&painter)
    , store(store)
    , package(std::move(package))
    , work(work)
    , isCancelled(std::move(isCancelled))
    , pageToPixels(painter.worldTransform())
{
    ground.toStandard = pageToPixels.inverted() * QTransform::fromScale(work.GetPixelsPerMm(), work.GetPixelsPerMm());
    ground.reach = work.GetPageRect();
}

bool ContentPainter::PaintObjects(const ObjectList& objects, const Resources& resources)
{
    for (const std::unique_ptr<const GraphicObject>& object : objects) {
        if (isCancelled && isCancelled())
            return false;
        if (work.IsExhausted() || !work.Take(ObjectCost))
            return true;
        if ((!openUnits.isEmpty() || openPatterns > 0) && !CountRepeated())
            return true;
        if (object->isVisible && object->alpha > 0)
            PaintObject(*object, resources);
    }
    return true;
}

// False when composites and patterns have been used so often that no more of their objects are painted on this page.
bool ContentPainter::CountRepeated(int cost)
{
    const bool wasWithin = repeatedObjects <= limits::MaxRepeatedObjects;
    repeatedObjects = std::min(repeatedObjects + cost, limits::MaxRepeatedObjects + 1);
    const bool isWithin = repeatedObjects <= limits::MaxRepeatedObjects;
    if (wasWithin && !isWithin)
        ReportProblem(ProblemKind::Limit,
                      QCoreApplication::translate("OfdDocument", "The page repeats its composite objects too often."));
    return isWithin;
}

void ContentPainter::PaintObject(const GraphicObject& object, const Resources& resources)
{
    const ProblemPlace place(object.id);
    const bool isGroup = object.kind == GraphicObject::Kind::Group;
    if (isGroup && !NeedsLayer(object)) {
        PaintObjects(static_cast<const GroupObject&>(object).objects, resources);
        return;
    }
    if (!isGroup && !IsUsable(object.toContainer * painter->worldTransform())) {
        ReportProblem(
            ProblemKind::BadValue,
            QCoreApplication::translate("OfdDocument", "The object's transform leaves nothing that can be painted."));
        return;
    }
    const PainterScope scope(*painter);
    const QScopedValueRollback<WorkGround> groundAround(ground);
    if (object.blendMode != BlendMode::Normal)
        painter->setCompositionMode(CompositionOf(object.blendMode));
    if (!ClipTo(object.clips, resources))
        return;
    const Around around{object, resources, object.alpha * groupAlpha, painter->worldTransform()};
    if (NeedsLayer(object))
        PaintApart(around);
    else
        PaintKind(around);
}

void ContentPainter::PaintKind(const Around& around)
{
    switch (around.object.kind) {
    case GraphicObject::Kind::Path:
        PaintPath(static_cast<const PathObject&>(around.object), around);
        break;
    case GraphicObject::Kind::Text:
        PaintText(static_cast<const TextObject&>(around.object), around);
        break;
    case GraphicObject::Kind::Image:
        PaintImage(static_cast<const ImageObject&>(around.object), around);
        break;
    case GraphicObject::Kind::Composite:
        PaintComposite(static_cast<const CompositeObject&>(around.object), around);
        break;
    case GraphicObject::Kind::Group: {
        const double outerAlpha = groupAlpha;
        groupAlpha = around.alpha;
        PaintObjects(static_cast<const GroupObject&>(around.object).objects, around.resources);
        groupAlpha = outerAlpha;
        break;
    }
    }
}

// False when that is too much work, so that the object is not to be painted.
bool ContentPainter::ClipTo(const std::vector<Clip>& clips, const Resources& resources)
{
    for (const Clip& clip : clips) {
        const QPainterPath outline = OutlineOf(clip, resources);
        if (!work.Take(ClipCost(outline, painter->worldTransform(), ground)))
            return false;
        painter->setClipPath(outline, Qt::IntersectClip);
    }
    return true;
}

// Cuts to the object's boundary and half of its line, where that is a box and what is painted reaches beyond it.
void ContentPainter::ClipToBoundary(const GraphicObject& object, const QRectF& painted, double lineMm)
{
    if (object.boundary.width() <= 0 || object.boundary.height() <= 0)
        return;
    const double grow = lineMm / 2;
    const QRectF box = object.boundary.adjusted(-grow, -grow, grow, grow);
    if (box.contains(painted))
        return;
    ground.reach &= (painter->worldTransform() * ground.toStandard).mapRect(box);
    painter->setClipRect(box, Qt::IntersectClip);
}

void ContentPainter::PaintImage(const ImageObject& object, const Around& around)
{
    ClipToBoundary(object, ImagePainter::BoxOf(object), object.border ? object.border->line.widthMm : 0);
    const QRectF box = (painter->worldTransform() * ground.toStandard).mapRect(ImagePainter::BoxOf(object));
    if (!work.Take(AreaOf(box & ground.reach) * PicturePixel + ground.clipEdges))
        return;
    ImagePainter pictures(*painter, store.GetImages(), *package, work, isCancelled);
    if (pictures.Paint(object, around.resources, around.alpha) && object.border)
        PaintBorder(object, around);
}

void ContentPainter::PaintBorder(const ImageObject& object, const Around& around)
{
    const ImageBorder& border = *object.border;
    const PictureFrame frame = ImagePainter::FrameOf(object);
    if (!border.paint.IsVisible() || frame.outline.isEmpty())
        return;
    painter->setWorldTransform(frame.toContainer, true);
    StrokeShape(frame.outline, border.line, border.paint, around);
}

void ContentPainter::PaintComposite(const CompositeObject& object, const Around& around)
{
    const CompositeUnit* unit = around.resources.FindUnit(object.unitId);
    if (!unit) {
        ReportProblem(
            ProblemKind::DanglingReference,
            QCoreApplication::translate("OfdDocument", "There is no composite object %1.").arg(quint32(object.unitId)));
        return;
    }
    if (openUnits.contains(unit) || openUnits.size() >= limits::MaxReferenceDepth) {
        ReportProblem(ProblemKind::Cycle,
                      QCoreApplication::translate("OfdDocument", "The composite object %1 contains itself.")
                          .arg(quint32(object.unitId)));
        return;
    }
    painter->setWorldTransform(object.toContainer, true);
    openUnits.append(unit);
    const double outerAlpha = groupAlpha;
    groupAlpha = around.alpha;
    PaintObjects(unit->objects, around.resources);
    groupAlpha = outerAlpha;
    openUnits.removeLast();
}

} // namespace ofd
