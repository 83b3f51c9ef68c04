// Transparency and blending.
#include "feature_shapes.h"
#include "features.h"

namespace samples {

namespace {

// Two black squares that overlap by half, 30 x 20 mm, as composite object 905.
void AddUnit(Package& package)
{
    AddResources(package, "<ofd:CompositeGraphicUnits>\n<ofd:CompositeGraphicUnit ID=\"905\" Width=\"30\" "
                          "Height=\"20\"><ofd:Content>" +
                              FilledRectangle(906, QRectF(0, 0, 20, 20), PlainColor("0 0 0")) +
                              FilledRectangle(907, QRectF(10, 0, 20, 20), PlainColor("0 0 0")) +
                              "</ofd:Content></ofd:CompositeGraphicUnit>\n</ofd:CompositeGraphicUnits>\n");
}

void CompositeAlpha(Package& package)
{
    AddUnit(package);
    AddToFirstPage(package, "<ofd:CompositeObject ID=\"900\" ResourceID=\"905\" Boundary=\"20 100 30 20\" "
                            "Alpha=\"128\"/>\n");
}

void ObjectAndColourAlpha(Package& package)
{
    AddToFirstPage(package, FilledRectangle(900, QRectF(20, 100, 20, 20), PlainColor("0 0 0", "Alpha=\"128\"")) +
                                FilledRectangle(901, QRectF(50, 100, 20, 20), PlainColor("0 0 0"), "Alpha=\"128\"") +
                                FilledRectangle(902, QRectF(80, 100, 20, 20), PlainColor("0 0 0", "Alpha=\"128\""),
                                                "Alpha=\"128\""));
}

void LineAndFill(Package& package)
{
    AddToFirstPage(package, "<ofd:PathObject ID=\"900\" Boundary=\"20 100 40 40\" Fill=\"true\" LineWidth=\"8\" "
                            "Alpha=\"128\"><ofd:StrokeColor Value=\"0 0 0\"/><ofd:FillColor Value=\"255 0 0\"/>" +
                                RectangleData(QRectF(0, 0, 40, 40)) + "</ofd:PathObject>\n");
}

void Darken(Package& package)
{
    AddToFirstPage(package,
                   FilledRectangle(900, QRectF(20, 100, 40, 40), PlainColor("100 200 255")) +
                       FilledRectangle(901, QRectF(30, 110, 40, 40), PlainColor("200 100 0"), "BlendMode=\"Darken\""));
}

constexpr const char* kGroup = "Transparency";

const Deviation kTable[] = {
    {"alpha_of_composite", kGroup, "a half transparent composite of two squares", "show one even gray", CompositeAlpha},
    {"alpha_of_object_and_colour", kGroup, "alpha of the colour, of the object, of both", "multiply them",
     ObjectAndColourAlpha},
    {"alpha_of_line_and_filling", kGroup, "a half transparent square with a line", "show no red below the line",
     LineAndFill},
    {"blend_mode_darken", kGroup, "a blend mode that the format does not have", "show the darker colours", Darken},
};

} // namespace

std::vector<Deviation> TransparencyFeatures()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
