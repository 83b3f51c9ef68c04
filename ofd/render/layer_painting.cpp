// How a page's painter paints objects apart before it lays them on the page, so that they are transparent as a whole.
#include "page_painter.h"
#include "painting_tools.h"
#include "painting_work.h"

#include <ofd/model/problem_log.h>
#include <ofd/model/resources.h>
#include <ofd/package/limits.h>

#include <QCoreApplication>

#include <algorithm>
#include <optional>

namespace ofd {

namespace {

constexpr int BoldWeight = 500; // letters made bolder get a line around them

constexpr int MostChildrenAsked = 256; // of a composite, for its box

// What a path or a picture paints at most, in its container's space; nothing when that is not bounded.
std::optional<QRectF> BoundsOf(const GraphicObject& object)
{
    if (object.boundary.isEmpty())
        return std::nullopt;
    if (object.kind == GraphicObject::Kind::Path) {
        // The outline is cut to half a line's width around the boundary; corners of the line reach beyond.
        const double reach = 0.5 + std::max(1.5, object.stroke.miterLimit) / 2;
        const double grow = object.stroke.widthMm * ScaleOf(object.toContainer) * reach;
        return object.boundary.adjusted(-grow, -grow, grow, grow);
    }
    if (object.kind == GraphicObject::Kind::Image && !static_cast<const ImageObject&>(object).border)
        return object.boundary;
    return std::nullopt;
}

std::optional<QRectF> BoundsOf(const ObjectList& objects)
{
    if (objects.size() > MostChildrenAsked)
        return std::nullopt;
    QRectF all;
    for (const std::unique_ptr<const GraphicObject>& object : objects) {
        const std::optional<QRectF> bounds = BoundsOf(*object);
        if (!bounds)
            return std::nullopt;
        all |= *bounds;
    }
    return all;
}

bool HasBoth(bool isFilled, const Paint& fill, bool isStroked, const Paint& stroke)
{
    return isFilled && fill.IsVisible() && isStroked && stroke.IsVisible();
}

} // namespace

ContentPainter::DeviceScope::DeviceScope(ContentPainter& owner, QPainter& other, const QPoint& topLeft,
                                         const QTransform& toThis)
    : owner(owner)
    , outerPainter(owner.painter)
    , outerOrigin(owner.origin)
    , outerAlpha(owner.groupAlpha)
    , outerGround(owner.ground)
{
    owner.painter = &other;
    owner.origin += topLeft;
    owner.groupAlpha = 1;
    owner.ground.toStandard = toThis * QTransform::fromTranslate(topLeft.x(), topLeft.y()) * outerGround.toStandard;
    owner.ground.clipEdges = 0;
}

ContentPainter::DeviceScope::~DeviceScope()
{
    owner.painter = outerPainter;
    owner.origin = outerOrigin;
    owner.groupAlpha = outerAlpha;
    owner.ground = outerGround;
}

// Whether parts of the object that lie over each other would show through when each was painted by itself.
bool ContentPainter::NeedsLayer(const GraphicObject& object)
{
    if (object.alpha >= 1 && object.blendMode == BlendMode::Normal)
        return false;
    switch (object.kind) {
    case GraphicObject::Kind::Path: {
        const auto& path = static_cast<const PathObject&>(object);
        return HasBoth(path.isFilled, path.fillPaint, path.isStroked, path.strokePaint);
    }
    case GraphicObject::Kind::Text: {
        const auto& text = static_cast<const TextObject&>(object);
        return text.weight > BoldWeight || HasBoth(text.isFilled, text.fillPaint, text.isStroked, text.strokePaint);
    }
    case GraphicObject::Kind::Image:
        return static_cast<const ImageObject&>(object).border.has_value();
    case GraphicObject::Kind::Composite:
    case GraphicObject::Kind::Group:
        return true;
    }
    return false;
}

// What the object may paint, in pixels; nothing when that is not bounded. Texts and much of what composites hold paint
// beyond their boundaries.
std::optional<QRectF> ContentPainter::BoundsPx(const Around& around)
{
    const GraphicObject& object = around.object;
    std::optional<QRectF> bounds;
    if (object.kind == GraphicObject::Kind::Composite) {
        const CompositeUnit* unit = around.resources.FindUnit(static_cast<const CompositeObject&>(object).unitId);
        bounds = unit ? BoundsOf(unit->objects) : std::nullopt;
        if (bounds)
            bounds = object.toContainer.mapRect(*bounds);
    } else {
        bounds = BoundsOf(object);
    }
    if (bounds)
        bounds = around.containerToPixels.mapRect(*bounds);
    return bounds;
}

// The painter's clip and blend mode are those of the object; what is painted apart needs neither.
void ContentPainter::PaintApart(const Around& around)
{
    const std::optional<QRectF> bounds = BoundsPx(around);
    const double area = AreaOf(bounds ? ground.toStandard.mapRect(*bounds) & ground.reach : ground.reach);
    if (!work.Take(area * (LayerPixel + PixelCostOf({}, around)) + ground.clipEdges))
        return;
    const QRect visible = VisiblePixels(*painter);
    const QRect box = bounds ? PixelsWithin(*bounds, visible) : visible;
    if (box.isEmpty())
        return;
    const bool isWithin = TakePixels(box.size());
    QImage image = isWithin ? TransparentImage(box.size()) : QImage();
    if (image.isNull()) {
        if (isWithin)
            GiveBackPixels(box.size());
        PaintKind(around);
        return;
    }
    {
        QPainter inner(&image);
        SetPageHints(inner);
        const QTransform toPixels = around.containerToPixels * QTransform::fromTranslate(-box.x(), -box.y());
        inner.setWorldTransform(toPixels);
        const DeviceScope scope(*this, inner, box.topLeft());
        PaintKind({around.object, around.resources, 1, toPixels});
    }
    painter->setWorldTransform(QTransform());
    painter->setOpacity(around.alpha);
    painter->drawImage(box.topLeft(), image);
    GiveBackPixels(box.size());
}

// False, and reported, when the page has had its share.
bool ContentPainter::TakePixels(const QSize& size)
{
    const qint64 pixels = qint64(size.width()) * size.height();
    if (livePixels + pixels > limits::MaxLayerPixels || usedPixels + pixels > limits::MaxLayerPixelsOnPage) {
        ReportProblem(
            ProblemKind::Limit,
            QCoreApplication::translate("OfdDocument", "The page has more groups and patterns than can be painted."));
        return false;
    }
    livePixels += pixels;
    usedPixels += pixels;
    return true;
}

void ContentPainter::GiveBackPixels(const QSize& size)
{
    livePixels -= qint64(size.width()) * size.height();
}

} // namespace ofd
