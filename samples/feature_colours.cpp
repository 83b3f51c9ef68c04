#include "features.h"
#include "profiles.h"

namespace samples {

namespace {

// A square of 40 x 40 mm at (20, 100), filled with the colour in colour space 900.
void AddSquare(Package& package, const QByteArray& colour)
{
    AddToFirstPage(package, "<ofd:PathObject ID=\"901\" Boundary=\"20 100 40 40\" Stroke=\"false\" Fill=\"true\">"
                            "<ofd:FillColor ColorSpace=\"900\" " +
                                colour +
                                "/><ofd:AbbreviatedData>M 0 0 L 40 0 L 40 40 L 0 40 C</ofd:AbbreviatedData>"
                                "</ofd:PathObject>\n");
}

void AddSpace(Package& package, const QByteArray& attributes, const QByteArray& inside = {})
{
    AddResources(package, "<ofd:ColorSpaces>\n<ofd:ColorSpace ID=\"900\" " + attributes + ">" + inside +
                              "</ofd:ColorSpace>\n</ofd:ColorSpaces>\n");
}

void AddProfile(Package& package, const QByteArray& type, const QByteArray& profile)
{
    package.Add("Doc_0/Res/space.icc", profile);
    AddSpace(package, "Type=\"" + type + "\" Profile=\"space.icc\"");
}

void GrayProfile(Package& package)
{
    AddProfile(package, "GRAY", LinearGrayProfile());
    AddSquare(package, "Value=\"128\"");
}

void RgbProfile(Package& package)
{
    AddProfile(package, "RGB", LinearRgbProfile());
    AddSquare(package, "Value=\"128 0 255\"");
}

void CmykProfile(Package& package)
{
    AddProfile(package, "CMYK", InkProfile());
    AddSquare(package, "Value=\"255 0 0 0\"");
}

void BrokenProfile(Package& package)
{
    AddProfile(package, "RGB", LinearRgbProfile().left(200));
    AddSquare(package, "Value=\"128 0 255\"");
}

void PaletteInSixteenBits(Package& package)
{
    AddSpace(package, "Type=\"RGB\" BitsPerComponent=\"16\"",
             "<ofd:Palette><ofd:CV>0 0 0</ofd:CV><ofd:CV>65535 32768 0</ofd:CV></ofd:Palette>");
    AddSquare(package, "Index=\"1\"");
}

constexpr const char* kGroup = "Colours";

const Deviation kTable[] = {
    {"color_profile_gray", kGroup, "a gray space with a linear profile", "half the value is bright gray", GrayProfile},
    {"color_profile_rgb", kGroup, "a space of three lights with a linear profile", "follow the profile", RgbProfile},
    {"color_profile_cmyk", kGroup, "a space of four inks with a profile", "follow the profile", CmykProfile},
    {"color_profile_broken", kGroup, "a profile that cannot be read", "take the device's plain formula", BrokenProfile},
    {"color_palette_16_bits", kGroup, "a palette in a space of sixteen bits", "show its second colour",
     PaletteInSixteenBits},
};

} // namespace

std::vector<Deviation> ColourFeatures()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
