#include "united_areas.h"

#include <ofd/package/limits.h>

#include <QRectF>

#include <algorithm>
#include <vector>

namespace ofd {

namespace {

// Uniting compares edges whose boxes meet; in outlines of things hardly any but neighbours do.
constexpr int MeetingsPerElement = 4;
constexpr int FreeMeetings = 64;
// How often each element may be gone over while areas are added one by one, and what few areas may take at the least.
constexpr int RoundsPerElement = 4;
constexpr int FreeElements = 64;

struct EdgeBox
{
    double left, top, right, bottom;

    bool Meets(const EdgeBox& other) const
    {
        return left <= other.right && other.left <= right && top <= other.bottom && other.top <= bottom;
    }
};

// Of a curve those of the lines between its control points.
void AppendEdges(const QPainterPath& outline, std::vector<EdgeBox>& edges)
{
    for (int i = 1; i < outline.elementCount(); ++i) {
        const QPainterPath::Element from = outline.elementAt(i - 1);
        const QPainterPath::Element to = outline.elementAt(i);
        if (!to.isMoveTo())
            edges.push_back(
                {std::min(from.x, to.x), std::min(from.y, to.y), std::max(from.x, to.x), std::max(from.y, to.y)});
    }
}

bool AreQuicklyUnited(const QPainterPath& one, const QPainterPath& other)
{
    const int elements = one.elementCount() + other.elementCount();
    if (elements > limits::MaxUnitedElements)
        return false;
    std::vector<EdgeBox> edges;
    edges.reserve(size_t(elements));
    AppendEdges(one, edges);
    AppendEdges(other, edges);
    int room = FreeMeetings + MeetingsPerElement * elements;
    for (size_t i = 0; i < edges.size() && room >= 0; ++i) {
        for (size_t k = 0; k < i; ++k)
            room -= edges[i].Meets(edges[k]) ? 1 : 0;
    }
    return room >= 0;
}

// Adds areas as long as that is quick.
class AreaUnion
{
public:
    explicit AreaUnion(const QPainterPath& first)
        : all(first)
        , bounds(first.boundingRect())
        , room(FreeElements + RoundsPerElement * first.elementCount())
    {
    }

    // False, and nothing done, when it is too much.
    bool Add(const QPainterPath& area)
    {
        room += RoundsPerElement * area.elementCount();
        // Areas of one rule that lie apart, such as the cells of a table, need no calculation.
        if (!bounds.intersects(area.boundingRect()) && area.fillRule() == all.fillRule()) {
            all.addPath(area);
        } else {
            room -= all.elementCount() + area.elementCount();
            if (room < 0 || !AreQuicklyUnited(all, area))
                return false;
            all = all.united(area);
        }
        bounds |= area.boundingRect();
        return true;
    }

    const QPainterPath& Get() const { return all; }

private:
    QPainterPath all;
    QRectF bounds;
    int room; // elements that may be gone over
};

QPainterPath LaidOver(const QVector<QPainterPath>& areas)
{
    QPainterPath all;
    all.setFillRule(Qt::WindingFill);
    for (const QPainterPath& area : areas)
        all.addPath(Clockwise(area));
    return all;
}

} // namespace

QPainterPath UnitedAreas(const QVector<QPainterPath>& areas)
{
    if (areas.isEmpty())
        return {};
    AreaUnion together(areas.first());
    for (int i = 1; i < areas.size(); ++i) {
        if (!together.Add(areas.at(i)))
            return LaidOver(areas);
    }
    return together.Get();
}

QPainterPath Clockwise(const QPainterPath& outline)
{
    double area = 0; // twice; positive for what runs clockwise on the screen
    QPointF start;
    QPointF last;
    const auto lineTo = [&](const QPointF& to) {
        area += last.x() * to.y() - to.x() * last.y();
        last = to;
    };
    for (int i = 0; i < outline.elementCount(); ++i) {
        const QPainterPath::Element element = outline.elementAt(i);
        if (element.isMoveTo()) {
            lineTo(start);
            start = last = element;
        } else {
            lineTo(element);
        }
    }
    lineTo(start);
    if (area >= 0)
        return outline;
    QPainterPath turned = outline.toReversed();
    turned.setFillRule(outline.fillRule());
    return turned;
}

} // namespace ofd
