// Clips. What is cut is a blue square of 60 x 60 mm at (20, 100).
#include "feature_shapes.h"
#include "features.h"

namespace samples {

namespace {

QByteArray PathArea(const QRectF& rect)
{
    return "<ofd:Area><ofd:Path Boundary=\"0 0 60 60\">" + RectangleData(rect) + "</ofd:Path></ofd:Area>";
}

QByteArray TextArea(const QByteArray& attributes = {})
{
    return "<ofd:Area " + attributes +
           "><ofd:Text Boundary=\"0 0 60 60\" Font=\"1\" Size=\"40\" Weight=\"700\">"
           "<ofd:TextCode X=\"2\" Y=\"44\" DeltaX=\"28\">OF</ofd:TextCode></ofd:Text></ofd:Area>";
}

void AddClipped(Package& package, const QByteArray& clips, const QByteArray& attributes = {},
                const QByteArray& flag = {})
{
    AddSquare(package, PlainColor("47 111 222"), attributes, "<ofd:Clips" + flag + ">" + clips + "</ofd:Clips>");
}

QByteArray Clip(const QByteArray& areas)
{
    return "<ofd:Clip>" + areas + "</ofd:Clip>";
}

void Common(Package& package)
{
    AddClipped(package, Clip(PathArea(QRectF(0, 0, 40, 60))) + Clip(PathArea(QRectF(0, 20, 60, 40))));
}

void Union(Package& package)
{
    AddClipped(package, Clip(PathArea(QRectF(0, 0, 20, 60)) + PathArea(QRectF(0, 0, 60, 20))));
}

void Letters(Package& package)
{
    AddClipped(package, Clip(TextArea()));
}

void LettersAndPath(Package& package)
{
    AddClipped(package, Clip(TextArea() + PathArea(QRectF(0, 50, 60, 10))));
}

void FlagFalse(Package& package)
{
    AddClipped(package, Clip(PathArea(QRectF(0, 0, 20, 20))), "CTM=\"2 0 0 2 0 0\"", " TransFlag=\"false\"");
}

void FlagMissing(Package& package)
{
    AddClipped(package, Clip(PathArea(QRectF(0, 0, 20, 20))), "CTM=\"2 0 0 2 -100 -100\"");
}

constexpr const char* kGroup = "Clips";

const Deviation kTable[] = {
    {"clips_in_common", kGroup, "two clips", "show what lies in both: 40 x 40 mm at (20, 120)", Common},
    {"clip_of_two_areas", kGroup, "a clip of two areas", "show what lies in either", Union},
    {"clip_of_letters", kGroup, "a clip that is a text", "show blue letters", Letters},
    {"clip_of_letters_and_path", kGroup, "a clip of a text and a bar below", "show both in blue", LettersAndPath},
    {"clip_without_matrix", kGroup, "a clip that the object's matrix does not move", "show 20 x 20 mm", FlagFalse},
    {"clip_that_would_miss", kGroup, "a clip that the matrix would move off the object", "show 20 x 20 mm",
     FlagMissing},
};

} // namespace

std::vector<Deviation> ClipFeatures()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
