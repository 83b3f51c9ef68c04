#pragma once

#include <QPainterPath>
#include <QRectF>
#include <QTransform>

namespace ofd {

struct Mesh;

// How much work painting is, in units of PaintingWork. Bounds that are quick to find, not measurements: never much too
// low, whatever the outline.

// Where things are painted, in standard pixels of the page.
struct WorkGround
{
    QTransform toStandard; // from pixels of the device at hand
    QRectF reach;          // what clips and boundaries leave of the page
    double clipEdges = 0;  // rows that the edges of the clips cross, which all that is painted in them meets
};

// What one pixel costs.
constexpr double OpaquePixel = 1;
constexpr double BlendedPixel = 2;
constexpr double ModePixel = 8;     // in another blend mode
constexpr double TexturePixel = 4;  // of a picture that is laid down
constexpr double LayerPixel = 5;    // made, filled and laid down
constexpr double DecodedPixel = 20; // of a picture in the file
constexpr double ShrunkPixel = 5;
constexpr double MaskedPixel = 30;
constexpr double PicturePixel = 12; // of a picture that is painted
constexpr double GradientPixel = 45;
// What one thing costs besides its pixels.
constexpr double ObjectCost = 800;
constexpr double GlyphCost = 600;

// The work of an outline, in the way that is quicker for it.
struct ShapeCost
{
    double units = 0;
    bool isDense = false; // it is quicker to find out what it covers first: its edges cross many others in their rows
};

// What the work of a line depends on besides its outline.
struct LineFacts
{
    double width = 0;        // in the outline's own space
    double dashes = 0;       // along it
    bool isOneByOne = false; // each straight piece is painted by itself
};

double AreaOf(const QRectF& rect);
// `toPixels` maps the outline to pixels of the device.
ShapeCost FillCost(const QPainterPath& outline, const QTransform& toPixels, const WorkGround& ground, double pixelCost);
ShapeCost StrokeCost(const QPainterPath& outline, const LineFacts& line, const QTransform& toPixels,
                     const WorkGround& ground, double pixelCost);
// Cutting to an outline; the ground becomes what is left.
double ClipCost(const QPainterPath& outline, const QTransform& toPixels, WorkGround& ground);
// Making the pixels of a mesh in a box of standard pixels.
double MeshCost(const Mesh& mesh, const QTransform& toStandard, const QRectF& box);

} // namespace ofd
