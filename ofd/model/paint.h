#pragma once

#include <QColor>
#include <QPointF>
#include <QVector>

#include <memory>

namespace ofd {

// All of this is made by one reader and immutable afterwards, so that any thread may walk it. Lengths are in
// millimetres of the object's own space unless told otherwise.

// A colour that changes along an axis or between two circles. Points lie in the space of the object's Boundary.
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
    double mapUnit = 0;      // length of one run of the stops; 0 = the whole axis
    bool extendsStart = false;
    bool extendsEnd = false;
    QVector<Stop> stops; // at least one
};

// What fills or strokes.
struct Paint
{
    QColor color = Qt::transparent; // with its own alpha
    std::shared_ptr<const Shading> shading;

    bool IsVisible() const { return shading || color.alpha() > 0; }
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
