// Patterns. All fill 60 x 60 mm at (20, 100); their cells are 10 mm, their upper left quarter red, the next one green.
#include "feature_shapes.h"
#include "features.h"

namespace samples {

namespace {

QByteArray Quarters()
{
    return FilledRectangle(910, QRectF(0, 0, 5, 5), PlainColor("255 0 0")) +
           FilledRectangle(911, QRectF(5, 0, 5, 5), PlainColor("0 255 0"));
}

QByteArray PatternColor(const QByteArray& attributes, const QByteArray& cell)
{
    return "<ofd:FillColor><ofd:Pattern Width=\"10\" Height=\"10\" " + attributes + "><ofd:CellContent>" + cell +
           "</ofd:CellContent></ofd:Pattern></ofd:FillColor>";
}

void AddPattern(Package& package, const QByteArray& attributes, const QByteArray& cell = Quarters())
{
    AddSquare(package, PatternColor(attributes, cell));
}

void Plain(Package& package)
{
    AddPattern(package, {});
}

void Steps(Package& package)
{
    AddPattern(package, "XStep=\"20\" YStep=\"15\"");
}

void StepsTooSmall(Package& package)
{
    AddPattern(package, "XStep=\"3\" YStep=\"0\"");
}

void Mirrored(Package& package)
{
    AddPattern(package, "ReflectMethod=\"RowAndColumn\"");
}

void AtThePage(Package& package)
{
    AddToFirstPage(package,
                   FilledRectangle(900, QRectF(23, 103, 57, 57), PatternColor("RelativeTo=\"Page\"", Quarters())));
}

void Turned(Package& package)
{
    AddPattern(package, "CTM=\"0.8660254 0.5 -0.5 0.8660254 0 0\"");
}

void Nested(Package& package)
{
    const QByteArray stripe = FilledRectangle(912, QRectF(0, 0, 5, 10), PlainColor("0 0 255"));
    const QByteArray inner =
        FilledRectangle(913, QRectF(0, 0, 10, 10), PatternColor("CTM=\"0.2 0 0 0.2 0 0\"", stripe));
    AddPattern(package, "XStep=\"20\" YStep=\"20\"", inner);
}

void Tiny(Package& package)
{
    const QByteArray dot = FilledRectangle(912, QRectF(0, 0, 5, 10), PlainColor("0 0 0"));
    AddPattern(package, "CTM=\"0.002 0 0 0.002 0 0\"", dot);
}

void Letters(Package& package)
{
    AddToFirstPage(package,
                   "<ofd:TextObject ID=\"900\" Boundary=\"20 100 150 60\" Font=\"1\" Size=\"60\" Weight=\"700\">" +
                       PatternColor({}, Quarters()) +
                       "<ofd:TextCode X=\"0\" Y=\"50\" DeltaX=\"g 2 45\">OFD</ofd:TextCode></ofd:TextObject>\n");
}

constexpr const char* kGroup = "Patterns";

const Deviation kTable[] = {
    {"pattern", kGroup, "a pattern of 10 mm cells", "repeat it from the corner of the boundary", Plain},
    {"pattern_steps", kGroup, "steps of 20 and 15 mm", "leave gaps between the cells", Steps},
    {"pattern_steps_too_small", kGroup, "steps less than the cell", "take the size of the cell", StepsTooSmall},
    {"pattern_mirrored", kGroup, "every other row and column mirrored", "mirror them", Mirrored},
    {"pattern_relative_to_page", kGroup, "a pattern that begins at the page's corner", "begin it there", AtThePage},
    {"pattern_turned", kGroup, "a pattern turned by 30 degrees", "turn it clockwise", Turned},
    {"pattern_in_pattern", kGroup, "a cell that is filled with a pattern", "show blue stripes of 1 mm", Nested},
    {"pattern_tiny_cells", kGroup, "half black cells of 0.02 mm", "show gray", Tiny},
    {"pattern_letters", kGroup, "letters filled with a pattern", "show it inside the letters only", Letters},
};

} // namespace

std::vector<Deviation> PatternFeatures()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
