// Shadings. All fill 60 x 60 mm at (20, 100) and run from red over green to blue where there are three colours.
#include "feature_shapes.h"
#include "features.h"

namespace samples {

namespace {

QByteArray Colored(const QByteArray& element, const QByteArray& attributes, const QByteArray& value)
{
    return "<ofd:" + element + " " + attributes + "><ofd:Color Value=\"" + value + "\"/></ofd:" + element + ">";
}

const QByteArray kSegments = Colored("Segment", "Position=\"0\"", "255 0 0") +
                             Colored("Segment", "Position=\"0.5\"", "0 255 0") +
                             Colored("Segment", "Position=\"1\"", "0 0 255");

void AddShading(Package& package, const QByteArray& shading, const QByteArray& attributes = {})
{
    AddSquare(package, "<ofd:FillColor>" + shading + "</ofd:FillColor>", attributes);
}

void AddAxial(Package& package, const QByteArray& attributes)
{
    AddShading(package, "<ofd:AxialShd StartPoint=\"20 0\" EndPoint=\"40 0\" " + attributes + ">" + kSegments +
                            "</ofd:AxialShd>");
}

void AddRadial(Package& package, const QByteArray& attributes)
{
    AddShading(package, "<ofd:RadialShd " + attributes + ">" + kSegments + "</ofd:RadialShd>");
}

void Axial(Package& package)
{
    AddAxial(package, "Extend=\"3\"");
}

void AxialOneSide(Package& package)
{
    AddAxial(package, "Extend=\"1\"");
}

void AxialReflected(Package& package)
{
    AddAxial(package, "Extend=\"3\" MapType=\"Reflect\" MapUnit=\"10\"");
}

void AxialRepeated(Package& package)
{
    AddAxial(package, "MapType=\"Repeat\" MapUnit=\"10\"");
}

void Radial(Package& package)
{
    AddRadial(package, "StartPoint=\"30 30\" EndPoint=\"30 30\" EndRadius=\"25\"");
}

void RadialCone(Package& package)
{
    AddRadial(package, "StartPoint=\"15 30\" StartRadius=\"4\" EndPoint=\"42 30\" EndRadius=\"14\" Extend=\"2\"");
}

void RadialEllipse(Package& package)
{
    AddRadial(package,
              "StartPoint=\"30 30\" EndPoint=\"30 30\" EndRadius=\"28\" Eccentricity=\"0.8660254\" Angle=\"45\"");
}

void RadialRepeated(Package& package)
{
    AddRadial(package, "StartPoint=\"30 30\" EndPoint=\"30 30\" EndRadius=\"24\" MapType=\"Repeat\" MapUnit=\"8\"");
}

void OnAMatrix(Package& package)
{
    AddShading(package,
               "<ofd:AxialShd StartPoint=\"0 0\" EndPoint=\"30 0\" Extend=\"3\">" + kSegments + "</ofd:AxialShd>",
               "CTM=\"0.5 0 0 0.5 0 0\"");
}

QByteArray Point(const QByteArray& x, const QByteArray& y, const QByteArray& value, const QByteArray& flag = "0")
{
    return Colored("Point", "X=\"" + x + "\" Y=\"" + y + "\" EdgeFlag=\"" + flag + "\"", value);
}

void Triangles(Package& package)
{
    AddShading(package, "<ofd:GouraudShd>" + Point("0", "0", "255 0 0") + Point("60", "0", "0 255 0") +
                            Point("0", "30", "0 0 255") + Point("60", "30", "255 255 0", "1") +
                            Point("60", "60", "0 0 0", "1") + Point("0", "60", "255 255 255", "0") +
                            "<ofd:BackColor Value=\"220 220 220\"/></ofd:GouraudShd>");
}

void Lattice(Package& package)
{
    QByteArray points;
    const char* const values[] = {"255 0 0",   "0 255 0", "0 0 255",     "0 255 255", "255 255 255",
                                  "255 0 255", "0 0 0",   "128 128 128", "255 255 0"};
    for (int i = 0; i < 9; ++i)
        points += Colored("Point",
                          "X=\"" + QByteArray::number(i % 3 * 30) + "\" Y=\"" + QByteArray::number(i / 3 * 30) + "\"",
                          values[i]);
    AddShading(package, "<ofd:LaGourandShd VerticesPerRow=\"3\">" + points + "</ofd:LaGourandShd>");
}

void Unreadable(Package& package)
{
    AddSquare(package, "<ofd:FillColor Value=\"0 128 0\"><ofd:AxialShd StartPoint=\"nowhere\"/></ofd:FillColor>");
}

constexpr const char* kGroup = "Shadings";

const Deviation kTable[] = {
    {"shading_axial", kGroup, "an axis from 20 to 40 mm, extended on both sides", "go on with the outer colours",
     Axial},
    {"shading_axial_one_side", kGroup, "the same, extended at its start", "leave the paper behind its end",
     AxialOneSide},
    {"shading_axial_reflected", kGroup, "two runs there and back on the axis, and so on", "reflect them",
     AxialReflected},
    {"shading_axial_repeated", kGroup, "two runs on the axis and none outside", "repeat the colours", AxialRepeated},
    {"shading_radial", kGroup, "a circle of 25 mm", "leave the paper outside", Radial},
    {"shading_radial_cone", kGroup, "two circles apart, extended at the end", "show a cone", RadialCone},
    {"shading_radial_ellipse", kGroup, "ellipses twice as long as wide", "turn them by 45 degrees", RadialEllipse},
    {"shading_radial_repeated", kGroup, "three runs from the centre to the edge", "repeat the colours", RadialRepeated},
    {"shading_on_a_matrix", kGroup, "a shaded object with a transform", "leave the shading as it is", OnAMatrix},
    {"shading_triangles", kGroup, "triangles edge by edge before a gray ground", "mix their corners", Triangles},
    {"shading_lattice", kGroup, "three rows of three points", "mix the corners of each field", Lattice},
    {"shading_unreadable", kGroup, "a shading without an axis, and a value", "fill with the value", Unreadable},
};

} // namespace

std::vector<Deviation> ShadingFeatures()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
