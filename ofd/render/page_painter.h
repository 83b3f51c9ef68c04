#pragma once

#include <ofd/model/content.h>

#include <QPainter>

#include <functional>
#include <memory>

namespace ofd {

class DocumentStore;
class Package;
struct CompositeUnit;
struct Resources;
struct TextLayout;

// Paints objects with a painter whose transform maps millimetres of the objects' container to pixels. Lives for one
// page on one thread.
class ContentPainter
{
public:
    // `isCancelled` is asked between objects; painting stops when it is true. May be empty.
    ContentPainter(QPainter& painter, DocumentStore& store, std::shared_ptr<const Package> package,
                   std::function<bool()> isCancelled);

    // False when it was cancelled.
    bool PaintObjects(const ObjectList& objects, const Resources& resources);

private:
    void PaintObject(const GraphicObject& object, const Resources& resources);
    bool CountRepeated();
    void PaintPath(const PathObject& object);
    void PaintText(const TextObject& object, const Resources& resources);
    // How the glyphs of a text are painted.
    struct TextPaint
    {
        bool isFilled = false;
        bool isStroked = false;
        QBrush fill;
        QPen pen;

        // Overlapping glyphs look the same in one piece and one by one, and the colour is one.
        bool CanBeStamped() const
        {
            return isFilled && !isStroked && fill.style() == Qt::SolidPattern && fill.isOpaque();
        }
    };

    bool StampGlyphs(const TextLayout& layout, const TextPaint& paint);
    void FillGlyphs(const TextLayout& layout, const TextPaint& paint);
    void PaintImage(const ImageObject& object, const Resources& resources);
    void PaintComposite(const CompositeObject& object, const Resources& resources);
    void ClipTo(const GraphicObject& object, const QRectF& painted);
    QBrush BrushOf(const Paint& paint, double alpha, const GraphicObject& object) const;
    QPen PenOf(const StrokeStyle& style, const QBrush& brush) const;

    QPainter& painter;
    DocumentStore& store;
    const std::shared_ptr<const Package> package;
    const std::function<bool()> isCancelled;
    QVector<const CompositeUnit*> openUnits; // not owned; units being painted, against cycles
    double groupAlpha = 1;
    int repeatedObjects = 0; // painted so far as contents of composites
};

} // namespace ofd
