#pragma once

#include <QColor>
#include <QPointF>
#include <QVector>

#include <memory>

namespace ofd {

// All of this is made by one reader and immutable afterwards, so that any thread may walk it. Lengths are in
// millimetres of the object's own space unless told otherwise.

// A colour that changes along an axis or between two circles. Points lie in the space of the object's Boundary, which
// its matrix does not change.
struct Shading
{
    enum class Kind { Axial, Radial };
    enum class Repeat { Direct, Repeat, Reflect };
    struct Stop
    {
        double position; // 0 to 1
        QColor color;
    };

    Kind kind = Kind::Axial;
    Repeat repeat = Repeat::Direct;
    QPointF start;
    QPointF end;
    double startRadius = 0;
    double endRadius = 0;
    double eccentricity = 0; // of the ellipse that a circle becomes, 0 to 1
    double angle = 0;        // degrees, of that ellipse's axis
    double mapUnit = 0;      // length of one run of repeated stops; 0 = the whole axis
    bool extendsStart = false;
    bool extendsEnd = false;
    QVector<Stop> stops; // at least one, by rising position
};

// Triangles whose colours run from corner to corner. Points lie in the space of the object's Boundary.
struct Mesh
{
    struct Vertex
    {
        QPointF at;
        QColor color;
    };

    QVector<Vertex> vertices;
    QVector<int> corners; // of the triangles: three positions in `vertices` each
    QColor backColor;     // around the triangles; invalid: none
    bool extends = false; // around the triangles without such a colour: that of the nearest corner
};

struct Pattern;

// What fills or strokes: one of the three where there is one, else the colour. The alpha of the colour holds for all.
struct Paint
{
    QColor color = Qt::transparent;
    std::shared_ptr<const Shading> shading = nullptr;
    std::shared_ptr<const Mesh> mesh = nullptr;
    std::shared_ptr<const Pattern> pattern = nullptr;

    bool IsColor() const { return !shading && !mesh && !pattern; }
    bool IsVisible() const { return color.alpha() > 0; }
};

struct StrokeStyle
{
    double widthMm = 0.353; // 0 = the thinnest line there is
    Qt::PenCapStyle cap = Qt::FlatCap;
    Qt::PenJoinStyle join = Qt::SvgMiterJoin;
    double miterLimit = 4.234;
    double dashOffset = 0;
    QVector<double> dashes;
};

} // namespace ofd
