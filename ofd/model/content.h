#pragma once

#include <QColor>
#include <QPainterPath>
#include <QRectF>
#include <QSet>
#include <QString>
#include <QTransform>
#include <QVector>

#include <memory>
#include <optional>
#include <vector>

namespace ofd {

struct Resources;

// Everything below is made by one reader and immutable afterwards, so that any thread may walk it. Lengths are in
// millimetres of the object's own space unless told otherwise.

// A copy that shares nothing with the original. Qt's paths settle bounds and caches when they are used, so a shared one
// must be copied by this before a thread does more than map it or read its elements.
QPainterPath PrivateCopy(const QPainterPath& path);

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

// Maps some characters of a text to glyphs of an embedded font.
struct GlyphMapping
{
    int firstCode = 0;
    int codeCount = 1;
    QVector<quint32> glyphs;
};

struct TextCode
{
    double x = 0;
    double y = 0;
    QVector<uint> codes;     // Unicode code points
    QVector<double> deltasX; // expanded; at most one more than there are glyphs
    QVector<double> deltasY;
    bool hasDeltas = false;             // either list was given
    std::vector<GlyphMapping> mappings; // by rising firstCode, not overlapping
};

struct TextObject : GraphicObject
{
    TextObject()
        : GraphicObject(Kind::Text)
    {
    }

    int fontId = 0;
    double size = 0;
    double horizontalScale = 1;
    int characterDirection = 0; // degrees clockwise: 0, 90, 180 or 270
    int readDirection = 0;
    int weight = 400;
    bool isItalic = false;
    bool isFilled = true;
    bool isStroked = false;
    Paint fillPaint;
    Paint strokePaint;
    std::vector<TextCode> codes;
};

struct ImageObject : GraphicObject
{
    ImageObject()
        : GraphicObject(Kind::Image)
    {
    }

    int mediaId = 0;        // 0 = none: nothing is drawn
    int substitutionId = 0; // drawn when the image cannot be
    int maskId = 0;
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

enum class LayerKind { Background = 0, Body = 1, Foreground = 2 };

struct Layer
{
    int id = 0;
    LayerKind kind = LayerKind::Body;
    QString name;
    ObjectList objects;
};

struct TemplateRef
{
    int id = 0;
    QString zOrder; // as written; empty when not given
};

// The content of a page or of a template.
struct PageContent
{
    std::vector<Layer> layers; // in document order
    QVector<TemplateRef> templates;
    std::shared_ptr<const Resources> resources; // never null
    qint64 bytes = 0;                           // of the source, as a measure of weight
};

} // namespace ofd
