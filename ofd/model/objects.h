#pragma once

#include "object_actions.h"
#include "paint.h"

#include <QPainterPath>
#include <QRectF>
#include <QTransform>
#include <QVector>

#include <memory>
#include <optional>
#include <vector>

namespace ofd {

// All of this is made by one reader and immutable afterwards, so that any thread may walk it. Lengths are in
// millimetres of the object's own space unless told otherwise.

// A copy that shares nothing with the original. Qt's paths settle bounds and caches when they are used, so a shared one
// must be copied by this before a thread does more than map it or read its elements.
QPainterPath PrivateCopy(const QPainterPath& path);

struct TextObject;

// How an object's colours meet what is below it.
enum class BlendMode {
    Normal,
    Multiply,
    Screen,
    Overlay,
    Darken,
    Lighten,
    ColorDodge,
    ColorBurn,
    HardLight,
    SoftLight,
    Difference,
    Exclusion,
};

// The letters of a text as a part of a clip.
struct ClipText
{
    std::shared_ptr<const TextObject> text;
    QTransform toContainer; // from the text's local space
};

// An area, in the container's space, that an object is cut to.
struct Clip
{
    QPainterPath outline;        // of all its paths together
    std::vector<ClipText> texts; // which belong to the area too
};

// What all objects of a page have in common.
struct GraphicObject
{
    enum class Kind { Text, Path, Image, Composite, Group };

    explicit GraphicObject(Kind kind)
        : kind(kind)
    {
    }
    virtual ~GraphicObject();

    const Kind kind;
    int id = 0;
    bool isVisible = true;
    QRectF boundary;        // in the container's space; width and height may be zero or negative
    QTransform toContainer; // the object's own matrix, then the move to its boundary
    bool hasMatrix = false;
    double alpha = 1;
    StrokeStyle stroke;
    BlendMode blendMode = BlendMode::Normal;
    std::vector<Clip> clips;                      // the object is cut to what all of them have in common
    std::unique_ptr<const ObjectActions> actions; // that a click runs; null for none
};

using ObjectList = std::vector<std::unique_ptr<const GraphicObject>>;

struct PathObject : GraphicObject
{
    PathObject()
        : GraphicObject(Kind::Path)
    {
    }

    QPainterPath path; // with its fill rule
    bool isFilled = false;
    bool isStroked = true;
    Paint fillPaint;
    Paint strokePaint;
};

// A line around a picture. Lengths are in millimetres of the container and follow no matrix.
struct ImageBorder
{
    StrokeStyle line; // width and dashes only
    double cornerWidthMm = 0;
    double cornerHeightMm = 0;
    Paint paint;

    bool HasRoundCorners() const { return cornerWidthMm > 0 && cornerHeightMm > 0; }
};

struct ImageObject : GraphicObject
{
    ImageObject()
        : GraphicObject(Kind::Image)
    {
    }

    int mediaId = 0;        // 0 = none: nothing is drawn
    int substitutionId = 0; // drawn when the image cannot be
    int maskId = 0;         // a picture that hides this one where it is dark or transparent
    std::optional<ImageBorder> border;
};

struct CompositeObject : GraphicObject
{
    CompositeObject()
        : GraphicObject(Kind::Composite)
    {
    }

    int unitId = 0;
};

// Objects that belong together, without any transform of their own.
struct GroupObject : GraphicObject
{
    GroupObject()
        : GraphicObject(Kind::Group)
    {
    }

    ObjectList objects;
};

} // namespace ofd
