#include "painting_costs.h"

#include "painting_tools.h"

#include <ofd/model/paint.h>

#include <algorithm>
#include <cmath>

namespace ofd {

namespace {

constexpr int FewElements = 8; // outlines of no more are taken for as long as their box lets them be
constexpr double ElementCost = 60;
constexpr double StrokeElementCost = 400;
constexpr double RowCost = 20;
constexpr double EdgeRowCost = 30;       // a row that an edge crosses
constexpr double CrossingCost = 25;      // the same for each other edge in that row
constexpr double LongCrossingCost = 140; // and so much more when edges are long, being far apart in memory then
constexpr double LongEdgeRows = 100;
constexpr double FreeCrossings = 4; // as small shapes have
constexpr double MostCrossings = 100;
constexpr double MostCrossingsPerPixel = 0.25; // edges in the same pixel are one thing to search
constexpr double SinglePixelCost = 40;         // along a line that the painter makes without an outline
constexpr double ClipEdgeCost = 2;
constexpr double DenseFrom = 5e6; // where edges that cross cost less, it does not matter
constexpr double DenseElementCost = 100;
constexpr double DenseCellCost = 100; // a pixel that an edge crosses
constexpr double DensePixelCost = 8;  // any pixel of the box
constexpr int MeshCornersAsked = 128;
constexpr double MeshLayers = 64;

// An outline in standard pixels.
struct Measure
{
    QRectF box;       // as far as it is within reach
    double rows = 0;  // that all edges cross, at the most; one is counted as often as there are edges
    double along = 0; // pixels along all edges, at the most
    double area = 0;  // at the most
    int elements = 0;
};

// Walks the edges of an outline.
class EdgeWalk
{
public:
    EdgeWalk(const QTransform& toStandard, const QRectF& box)
        : toStandard(toStandard)
        , box(box)
    {
    }

    void Walk(const QPainterPath& outline)
    {
        QPointF start;
        QPointF last;
        for (int i = 0; i < outline.elementCount(); ++i) {
            const QPainterPath::Element element = outline.elementAt(i);
            const QPointF point = toStandard.map(QPointF(element.x, element.y));
            if (element.isMoveTo()) {
                Add(last, start);
                start = point;
            } else {
                Add(last, point);
            }
            last = point;
        }
        Add(last, start);
    }

    double rows = 0;
    double along = 0;
    double twiceArea = 0; // of the triangles from the middle of the box, which cover whatever the outline encloses

private:
    void Add(const QPointF& from, const QPointF& to)
    {
        const QPointF step = to - from;
        const double down = std::min(std::abs(step.y()), box.height());
        rows += down + 1;
        along += down + std::min(std::abs(step.x()), box.width());
        const QPointF arm = from - box.center();
        twiceArea += std::abs(arm.x() * step.y() - arm.y() * step.x());
    }

    const QTransform& toStandard;
    const QRectF& box;
};

Measure MeasureOf(const QPainterPath& outline, const QTransform& toStandard, const QRectF& reach, double grow)
{
    Measure measure;
    measure.elements = outline.elementCount();
    if (measure.elements == 0)
        return measure;
    const QRectF all = toStandard.mapRect(outline.controlPointRect()).adjusted(-grow, -grow, grow, grow);
    measure.box = all & reach;
    const double boxArea = AreaOf(measure.box);
    if (measure.elements <= FewElements) {
        measure.rows = measure.elements * (measure.box.height() + 1);
        measure.along = measure.rows + measure.elements * measure.box.width();
        measure.area = boxArea;
        return measure;
    }
    EdgeWalk walk(toStandard, measure.box);
    walk.Walk(outline);
    measure.rows = walk.rows;
    measure.along = walk.along;
    measure.area = std::min(boxArea, walk.twiceArea / 2);
    return measure;
}

// Edges are sorted into the rows that they cross, among those that are there.
double EdgesCost(double rows, int elements, const QRectF& box)
{
    const double most = std::min(MostCrossings, box.width() * MostCrossingsPerPixel);
    const double inRow = std::clamp(rows / std::max(1.0, box.height()) - FreeCrossings, 0.0, most);
    const double longShare = std::min(rows / std::max(1, elements) / LongEdgeRows, 1.0);
    return rows * (EdgeRowCost + (CrossingCost + LongCrossingCost * longShare) * inRow);
}

double CostOf(const Measure& measure, const WorkGround& ground, double pixelCost)
{
    if (measure.box.isEmpty())
        return measure.elements * ElementCost;
    return measure.elements * ElementCost + measure.box.height() * RowCost +
           EdgesCost(measure.rows, measure.elements, measure.box) + measure.area * pixelCost +
           ground.clipEdges * ClipEdgeCost;
}

// Of finding out first what the outline covers.
double DenseCostOf(const Measure& measure, const WorkGround& ground, double pixelCost)
{
    return measure.elements * DenseElementCost + measure.along * DenseCellCost +
           AreaOf(measure.box) * (DensePixelCost + pixelCost) + ground.clipEdges * ClipEdgeCost;
}

ShapeCost QuickerCostOf(const Measure& measure, const WorkGround& ground, double pixelCost)
{
    ShapeCost cost;
    cost.units = CostOf(measure, ground, pixelCost);
    if (measure.box.isEmpty() || EdgesCost(measure.rows, measure.elements, measure.box) < DenseFrom)
        return cost;
    const double denseUnits = DenseCostOf(measure, ground, pixelCost);
    cost.isDense = denseUnits < cost.units;
    cost.units = std::min(cost.units, denseUnits);
    return cost;
}

} // namespace

double AreaOf(const QRectF& rect)
{
    return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

ShapeCost FillCost(const QPainterPath& outline, const QTransform& toPixels, const WorkGround& ground, double pixelCost)
{
    return QuickerCostOf(MeasureOf(outline, toPixels * ground.toStandard, ground.reach, 0), ground, pixelCost);
}

ShapeCost StrokeCost(const QPainterPath& outline, const LineFacts& line, const QTransform& toPixels,
                     const WorkGround& ground, double pixelCost)
{
    const QTransform toStandard = toPixels * ground.toStandard;
    const double widthPx = std::max(1.0, line.width * ScaleOf(toStandard));
    Measure measure = MeasureOf(outline, toStandard, ground.reach, widthPx);
    const double around = measure.box.width() + measure.box.height();
    const double pieces = measure.elements + 2 * line.dashes;
    // At each corner and end of a dash as much again as the line is wide.
    const double ends = pieces * std::min(2 * widthPx, around);
    if (line.isOneByOne)
        return {measure.along * SinglePixelCost + (measure.along + ends) * widthPx * pixelCost +
                    pieces * StrokeElementCost,
                false};
    measure.area = std::min(AreaOf(measure.box), (measure.along + ends) * widthPx);
    measure.rows = 2 * measure.rows + ends; // two sides
    measure.elements = int(pieces);
    measure.along = 2 * measure.along + ends;
    ShapeCost cost = QuickerCostOf(measure, ground, pixelCost);
    cost.units += pieces * StrokeElementCost;
    return cost;
}

double ClipCost(const QPainterPath& outline, const QTransform& toPixels, WorkGround& ground)
{
    const Measure measure = MeasureOf(outline, toPixels * ground.toStandard, ground.reach, 0);
    const double cost = CostOf(measure, ground, 0) + ground.reach.height() * RowCost;
    ground.clipEdges += measure.elements <= FewElements ? measure.box.height() : measure.rows;
    ground.reach = measure.box;
    return cost;
}

double MeshCost(const Mesh& mesh, const QTransform& toStandard, const QRectF& box)
{
    const double area = AreaOf(box);
    double triangles = 0;
    for (int i = 0; i + 2 < mesh.corners.size() && triangles < MeshLayers * area; i += 3) {
        QPolygonF triangle;
        for (int k = 0; k < 3; ++k)
            triangle.append(toStandard.map(mesh.vertices.at(mesh.corners.at(i + k)).at));
        triangles += AreaOf(triangle.boundingRect() & box);
    }
    const int asked = mesh.extends ? std::min(MeshCornersAsked, mesh.vertices.size()) : 1;
    return area * asked * 3 + triangles * 14 + double(mesh.corners.size()) * 100;
}

} // namespace ofd
