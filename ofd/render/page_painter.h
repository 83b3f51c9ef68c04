#pragma once

#include "painting_costs.h"

#include <ofd/model/content.h>

#include <QPainter>

#include <functional>
#include <memory>
#include <optional>

namespace ofd {

class DocumentStore;
class Package;
class PaintingWork;
struct CompositeUnit;
struct Pattern;
struct Resources;
struct TextLayout;

// Paints objects with a painter whose transform maps millimetres of the objects' container to pixels. Lives for one
// page on one thread.
class ContentPainter
{
public:
    // The painter's transform at this time is taken for that of the page. `work` outlives this; what is too much for it
    // is not painted. `isCancelled` is asked between objects; painting stops when it is true. May be empty.
    ContentPainter(QPainter& painter, DocumentStore& store, std::shared_ptr<const Package> package, PaintingWork& work,
                   std::function<bool()> isCancelled);

    // Counts what is painted as work on the other painter's page, on whose device this paints.
    void CountOnPageOf(const ContentPainter& other) { ground = other.ground; }

    // False when it was cancelled.
    bool PaintObjects(const ObjectList& objects, const Resources& resources);

private:
    // An object being painted.
    struct Around
    {
        const GraphicObject& object;
        const Resources& resources;
        double alpha;                 // of the object, with that of the groups around it
        QTransform containerToPixels; // of the device at hand
    };
    // Paints on another device until the end of its scope.
    class DeviceScope;

    void PaintObject(const GraphicObject& object, const Resources& resources);
    void PaintKind(const Around& around);
    bool CountRepeated(int cost = 1);
    void PaintPath(const PathObject& object, const Around& around);
    void PaintText(const TextObject& object, const Around& around);
    bool StampGlyphs(const TextLayout& layout, const QColor& color);
    void FillGlyphs(const TextLayout& layout, const TextObject& object, const Around& around);
    void PaintImage(const ImageObject& object, const Around& around);
    void PaintBorder(const ImageObject& object, const Around& around);
    void PaintComposite(const CompositeObject& object, const Around& around);

    bool ClipTo(const std::vector<Clip>& clips, const Resources& resources);
    QPainterPath OutlineOf(const Clip& clip, const Resources& resources);
    QPainterPath LettersOf(const TextObject& text, const Resources& resources);
    void ClipToBoundary(const GraphicObject& object, const QRectF& painted, double lineMm);

    // In the painter's own space; the outline must not be shared with other threads.
    void FillShape(const QPainterPath& outline, const Paint& paint, const Around& around);
    void FillCounted(const QPainterPath& outline, const Paint& paint, const Around& around, bool isDense);
    void FillDensely(const QPainterPath& outline, const Paint& paint, const Around& around);
    void FillWithTexture(const QPainterPath& outline, const Paint& paint, const Around& around);
    QImage TextureWithin(const Paint& paint, const Around& around, const QRect& box, const QRectF& filled);
    void StrokeShape(const QPainterPath& outline, const StrokeStyle& style, const Paint& paint, const Around& around);
    QPen PenOf(const StrokeStyle& style, const QPainterPath& outline) const;
    // The line counts as work with its own width, which the pen's may be above on the screen.
    void StrokeWith(const QPen& pen, double width, const QPainterPath& outline, const Paint& paint,
                    const Around& around);

    // What the pixels of the box get from a shading or a pattern; null when that cannot be painted. `filled` is around
    // all that is filled, seen or not, in pixels of the device at hand.
    QImage TextureOf(const Paint& paint, const Around& around, const QRect& box, const QRectF& filled);
    void PaintPattern(QImage& image, const Pattern& pattern, const Around& around, const QRect& box,
                      const QRectF& filled);
    void PaintCells(QImage& image, const QRect& box, const QRectF& filled, const Pattern& pattern,
                    const Resources& resources, const QTransform& toPixels);
    void PaintCellPictures(QImage& image, const QRect& box, const Pattern& pattern, const Resources& resources,
                           const QTransform& toPixels);
    void PaintCell(const Pattern& pattern, const Resources& resources, const QTransform& toPixels);

    static bool NeedsLayer(const GraphicObject& object);
    static QColor SeenColor(const Paint& paint, const Around& around);
    static bool Covers(const Paint& paint, const Around& around);
    void PaintApart(const Around& around);
    static std::optional<QRectF> BoundsPx(const Around& around);
    static double PixelCostOf(const Paint& paint, const Around& around);
    double TextureCostOf(const Paint& paint, const Around& around, const QRectF& boxPx) const;
    bool TakePixels(const QSize& size);
    void GiveBackPixels(const QSize& size);

    QPainter* painter; // not owned; of the page, or of what is painted apart
    DocumentStore& store;
    const std::shared_ptr<const Package> package;
    PaintingWork& work;
    WorkGround ground; // of the device at hand
    const std::function<bool()> isCancelled;
    const QTransform pageToPixels;           // of the page's device
    QPoint origin;                           // of the device at hand, in pixels of the page's device
    QVector<const CompositeUnit*> openUnits; // not owned; units being painted, against cycles
    int openPatterns = 0;
    double groupAlpha = 1;   // of the groups around that are not painted apart
    int repeatedObjects = 0; // painted so far as contents of composites and patterns
    qint64 livePixels = 0;   // of what is being painted apart
    qint64 usedPixels = 0;   // of all that has been
};

// Switches the painter, and back at the end; what is painted apart knows nothing of the groups around it.
class ContentPainter::DeviceScope
{
public:
    // `topLeft` is the place of the other device on the one at hand, and `toThis` maps its pixels to pixels from there.
    DeviceScope(ContentPainter& owner, QPainter& other, const QPoint& topLeft, const QTransform& toThis = QTransform());
    ~DeviceScope();
    DeviceScope(const DeviceScope&) = delete;
    DeviceScope& operator=(const DeviceScope&) = delete;

private:
    ContentPainter& owner;
    QPainter* outerPainter; // not owned
    QPoint outerOrigin;
    double outerAlpha;
    WorkGround outerGround;
};

} // namespace ofd
