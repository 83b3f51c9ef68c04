#include "features.h"
#include "picture_kinds.h"
#include "pictures.h"
#include "profiled_pictures.h"
#include "profiles.h"

namespace samples {

namespace {

// A picture object of 40 x 40 mm at (20, 100) with resource 900; `more` are further attributes, `inside` its children.
void AddPicture(Package& package, const QByteArray& fileName, const QByteArray& bytes, const QByteArray& more = {},
                const QByteArray& inside = {})
{
    package.Add(QStringLiteral("Doc_0/Res/") + fileName, bytes);
    AddResources(package, "<ofd:MultiMedias>\n<ofd:MultiMedia ID=\"900\" Type=\"Image\">\n<ofd:MediaFile>" + fileName +
                              "</ofd:MediaFile>\n</ofd:MultiMedia>\n</ofd:MultiMedias>\n");
    AddToFirstPage(package, "<ofd:ImageObject ID=\"902\" Boundary=\"20 100 40 40\" CTM=\"40 0 0 40 0 0\" "
                            "ResourceID=\"900\"" +
                                more + ">" + inside + "</ofd:ImageObject>\n");
}

void AddMask(Package& package, const QByteArray& mask)
{
    AddPicture(package, "masked.png", QuadrantsPng(), " ImageMask=\"901\"");
    package.Add("Doc_0/Res/mask.png", mask);
    AddResources(package, "<ofd:MultiMedias>\n<ofd:MultiMedia ID=\"901\" Type=\"Image\">\n<ofd:MediaFile>mask.png"
                          "</ofd:MediaFile>\n</ofd:MultiMedia>\n</ofd:MultiMedias>\n");
}

void Masked(Package& package)
{
    AddMask(package, MaskPng());
}

void MaskedByTransparency(Package& package)
{
    AddMask(package, TransparentMaskPng());
}

void Bordered(Package& package)
{
    AddPicture(package, "framed.png", QuadrantsPng(), {},
               "<ofd:Border LineWidth=\"2\" HorizonalCornerRadius=\"8\" VerticalCornerRadius=\"8\" DashPattern=\"6 2\">"
               "<ofd:BorderColor Value=\"0 0 160\"/></ofd:Border>");
}

void Substituted(Package& package)
{
    AddPicture(package, "broken.png", QuadrantsPng().left(40), " Substitution=\"2\"");
}

void Bmp(Package& package)
{
    AddPicture(package, "picture.bmp", QuadrantsBmp());
}

void Gif(Package& package)
{
    AddPicture(package, "picture.gif", QuadrantsGif());
}

void Tiff(Package& package)
{
    AddPicture(package, "picture.tif", QuadrantsTiff());
}

void InkJpeg(Package& package)
{
    AddPicture(package, "inks.jpg", QuadrantsInkJpeg(false));
}

void MarkedInkJpeg(Package& package)
{
    AddPicture(package, "inks.jpg", QuadrantsInkJpeg(true));
}

void ProfileInPng(Package& package)
{
    AddPicture(package, "linear.png", ProfiledPng(QColor(128, 0, 255), LinearRgbProfile()));
}

void ProfileInGrayPng(Package& package)
{
    AddPicture(package, "linear.png", ProfiledGrayPng(128, LinearGrayProfile()));
}

void ProfileInJpeg(Package& package)
{
    AddPicture(package, "linear.jpg", ProfiledJpeg(QColor(128, 0, 255), LinearRgbProfile()));
}

void ProfileInTiff(Package& package)
{
    AddPicture(package, "linear.tif", ProfiledTiff(QColor(128, 0, 255), LinearRgbProfile()));
}

void ProfileInInkJpeg(Package& package)
{
    AddPicture(package, "inks.jpg", ProfiledInkJpeg(true, InkProfile()));
}

void BrokenProfileInPng(Package& package)
{
    AddPicture(package, "linear.png", ProfiledPng(QColor(128, 0, 255), LinearRgbProfile().left(200)));
}

constexpr const char* kGroup = "Pictures";

const Deviation kTable[] = {
    {"image_mask", kGroup, "a picture seen through another one", "hide it where the mask is dark", Masked},
    {"image_mask_transparent", kGroup, "a mask that is white, its lower half transparent",
     "hide the picture where the mask is transparent", MaskedByTransparency},
    {"image_border", kGroup, "a dashed border with round corners", "draw the line around the picture", Bordered},
    {"image_substitution", kGroup, "a picture that cannot be read, with one to stand in for it", "show the other one",
     Substituted},
    {"image_bmp", kGroup, "a BMP file", "show it", Bmp},
    {"image_gif", kGroup, "a GIF file", "show it", Gif},
    {"image_tiff", kGroup, "a TIFF file", "show it", Tiff},
    {"image_jpeg_inks", kGroup, "a JPEG of four inks", "show it in its colours", InkJpeg},
    {"image_jpeg_inks_marked", kGroup, "a JPEG whose four inks are stored the other way round, and marked so",
     "show it in its colours", MarkedInkJpeg},
    {"image_profile_png", kGroup, "a PNG file with a linear profile", "follow the profile", ProfileInPng},
    {"image_profile_gray_png", kGroup, "a gray PNG file with a linear profile", "follow the profile", ProfileInGrayPng},
    {"image_profile_jpeg", kGroup, "a JPEG with a linear profile in many pieces", "follow the profile", ProfileInJpeg},
    {"image_profile_tiff", kGroup, "a TIFF file with a linear profile", "follow the profile", ProfileInTiff},
    {"image_profile_inks", kGroup, "a JPEG of four inks with their profile", "follow the profile", ProfileInInkJpeg},
    {"image_profile_broken", kGroup, "a PNG file with a profile that cannot be read", "show the numbers as they are",
     BrokenProfileInPng},
};

} // namespace

std::vector<Deviation> ImageFeatures()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
