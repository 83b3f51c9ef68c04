#include "shading_reader.h"

#include "color_reader.h"

#include <ofd/model/problem_log.h>
#include <ofd/package/limits.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <optional>

namespace ofd {

namespace {

// The first so many children of a name.
std::vector<pugi::xml_node> SomeChildren(const pugi::xml_node& element, const char* name, int limit)
{
    std::vector<pugi::xml_node> children = ChildElements(element, name);
    if (int(children.size()) > limit) {
        ReportProblem(ProblemKind::Limit,
                      QCoreApplication::translate("OfdDocument", "A shading has more colours than are used."));
        children.resize(size_t(limit));
    }
    return children;
}

// Positions that are not given lie evenly between those that are; the first is 0 and the last is 1.
void SpreadMissing(std::vector<std::optional<double>>& positions)
{
    if (positions.empty())
        return;
    if (!positions.front())
        positions.front() = 0;
    if (!positions.back())
        positions.back() = 1;
    size_t known = 0;
    for (size_t i = 1; i < positions.size(); ++i) {
        if (!positions[i])
            continue;
        for (size_t k = known + 1; k < i; ++k)
            positions[k] =
                *positions[known] + (*positions[i] - *positions[known]) * double(k - known) / double(i - known);
        known = i;
    }
}

void ReadStops(const pugi::xml_node& element, const Resources& resources, Shading& shading)
{
    const std::vector<pugi::xml_node> segments = SomeChildren(element, "Segment", limits::MaxShadingStops);
    std::vector<std::optional<double>> positions;
    for (const pugi::xml_node& segment : segments) {
        const double position = NumberAttribute(segment, "Position", -1);
        positions.push_back(position < 0 ? std::nullopt : std::optional(std::min(position, 1.0)));
    }
    SpreadMissing(positions);
    for (size_t i = 0; i < segments.size(); ++i)
        shading.stops.append({*positions[i], ReadColor(ChildElement(segments[i], "Color"), resources)});
    std::stable_sort(shading.stops.begin(), shading.stops.end(),
                     [](const Shading::Stop& a, const Shading::Stop& b) { return a.position < b.position; });
}

// Whether there is anything between start and end.
bool HasExtent(const Shading& shading)
{
    if (shading.kind == Shading::Kind::Radial)
        return shading.startRadius > 0 || shading.endRadius > 0;
    return shading.start != shading.end;
}

Mesh::Vertex ReadVertex(const pugi::xml_node& point, const Resources& resources)
{
    return {QPointF(NumberAttribute(point, "X"), NumberAttribute(point, "Y")),
            ReadColor(ChildElement(point, "Color"), resources)};
}

// Around the triangles nothing is painted unless the file gives a colour for it or asks for it.
void ReadSurroundings(const pugi::xml_node& element, const Resources& resources, Mesh& mesh)
{
    const int extend = IntegerAttribute(element, "Extend", -1);
    const pugi::xml_node back = ChildElement(element, "BackColor");
    if (back && extend != 0)
        mesh.backColor = ReadColor(back, resources);
    mesh.extends = extend > 0;
}

} // namespace

std::shared_ptr<const Shading> ReadShading(const pugi::xml_node& element, const Resources& resources)
{
    auto shading = std::make_shared<Shading>();
    shading->kind = IsElement(element, "RadialShd") ? Shading::Kind::Radial : Shading::Kind::Axial;
    const std::string mapType = Attribute(element, "MapType").as_string();
    if (EqualsWord(mapType, "Repeat"))
        shading->repeat = Shading::Repeat::Repeat;
    else if (EqualsWord(mapType, "Reflect"))
        shading->repeat = Shading::Repeat::Reflect;
    const std::optional<QPointF> start = ParsePosition(Attribute(element, "StartPoint").as_string());
    const std::optional<QPointF> end = ParsePosition(Attribute(element, "EndPoint").as_string());
    if (!start || !end)
        return nullptr;
    shading->start = *start;
    shading->end = *end;
    shading->startRadius = std::abs(NumberAttribute(element, "StartRadius"));
    shading->endRadius = std::abs(NumberAttribute(element, "EndRadius"));
    shading->eccentricity = std::clamp(NumberAttribute(element, "Eccentricity"), 0.0, 0.9999);
    shading->angle = NumberAttribute(element, "Angle");
    shading->mapUnit = std::max(0.0, NumberAttribute(element, "MapUnit"));
    const int extend = std::clamp(IntegerAttribute(element, "Extend"), 0, 3);
    shading->extendsStart = extend & 1;
    shading->extendsEnd = extend & 2;
    ReadStops(element, resources, *shading);
    return shading->stops.isEmpty() || !HasExtent(*shading) ? nullptr : shading;
}

std::shared_ptr<const Mesh> ReadTriangles(const pugi::xml_node& element, const Resources& resources)
{
    auto mesh = std::make_shared<Mesh>();
    int a = -1, b = -1, c = -1; // corners of the last triangle
    int begun = 0;              // points of a new triangle that has less than three
    for (const pugi::xml_node& point : SomeChildren(element, "Point", limits::MaxShadingPoints)) {
        const int flag = IntegerAttribute(point, "EdgeFlag");
        const int at = mesh->vertices.size();
        mesh->vertices.append(ReadVertex(point, resources));
        const bool goesOn = begun == 0 && c >= 0 && (flag == 1 || flag == 2);
        if (goesOn) { // at the edge from the second or from the first corner to the third
            a = flag == 1 ? b : a;
            b = c;
            c = at;
        } else if (++begun == 3) {
            a = at - 2;
            b = at - 1;
            c = at;
            begun = 0;
        } else {
            continue;
        }
        mesh->corners << a << b << c;
    }
    ReadSurroundings(element, resources, *mesh);
    return mesh->corners.isEmpty() ? nullptr : mesh;
}

std::shared_ptr<const Mesh> ReadLattice(const pugi::xml_node& element, const Resources& resources)
{
    auto mesh = std::make_shared<Mesh>();
    for (const pugi::xml_node& point : SomeChildren(element, "Point", limits::MaxShadingPoints))
        mesh->vertices.append(ReadVertex(point, resources));
    const int count = mesh->vertices.size();
    const int columns = IntegerAttribute(element, "VerticesPerRow");
    if (columns < 2 || columns > count / 2)
        return nullptr;
    for (int row = 0; row + 1 < count / columns; ++row) {
        for (int column = 0; column + 1 < columns; ++column) {
            const int at = row * columns + column;
            mesh->corners << at << at + 1 << at + columns;
            mesh->corners << at + 1 << at + columns << at + columns + 1;
        }
    }
    ReadSurroundings(element, resources, *mesh);
    return mesh;
}

} // namespace ofd
