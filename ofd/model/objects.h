#pragma once

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
    QVector<QPainterPath> clips; // in the container's space; the object is cut to all of them
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
