// Deviations of page content, fonts and images.
#include "block_font.h"
#include "deviations.h"
#include "pictures.h"

namespace samples {

namespace {

void ObjectsWithoutId(Package& package)
{
    package.Replace(kFirstPage, "<ofd:PathObject ID=\"9\"", "<ofd:PathObject");
    package.Replace(kFirstPage, "<ofd:ImageObject ID=\"10\"", "<ofd:ImageObject");
    package.Replace(kSecondPage, "<ofd:TextObject ID=\"13\"", "<ofd:TextObject");
}

void LayersWithoutId(Package& package)
{
    package.Replace(kFirstPage, "<ofd:Layer ID=\"7\">", "<ofd:Layer>");
    package.Replace(kSecondPage, "<ofd:Layer ID=\"12\">", "<ofd:Layer>");
}

// A text object of font 1 at size 6 on the first page, at the given top.
QByteArray TextObject(int id, double top, const QByteArray& code, const QByteArray& boundarySize = "100 8")
{
    return "<ofd:TextObject ID=\"" + QByteArray::number(id) + "\" Boundary=\"20 " + QByteArray::number(top) + " " +
           boundarySize + "\" Font=\"1\" Size=\"6\">" + code + "</ofd:TextObject>\n";
}

void SurplusDeltas(Package& package)
{
    AddToFirstPage(package,
                   TextObject(900, 100, "<ofd:TextCode X=\"0\" Y=\"6\" DeltaX=\"4 4 4 4\">FOUR</ofd:TextCode>"));
    AddToFirstPage(package, TextObject(901, 110, "<ofd:TextCode X=\"0\" Y=\"6\" DeltaX=\"g 9 4\">FOUR</ofd:TextCode>"));
}

void TooFewDeltas(Package& package)
{
    AddToFirstPage(package, TextObject(900, 100, "<ofd:TextCode X=\"0\" Y=\"6\" DeltaX=\"5\">REPEATED</ofd:TextCode>"));
    AddToFirstPage(package,
                   TextObject(901, 110, "<ofd:TextCode X=\"0\" Y=\"6\" DeltaX=\"4 6\">REPEATED</ofd:TextCode>"));
}

void BlanksOnly(Package& package)
{
    AddToFirstPage(package, TextObject(900, 100, "<ofd:TextCode X=\"0\" Y=\"6\" DeltaX=\"g 3 2\">    </ofd:TextCode>"));
    AddToFirstPage(package,
                   TextObject(901, 110, "<ofd:TextCode X=\"0\" Y=\"6\" DeltaX=\"2 2 4 4\">  ABC</ofd:TextCode>"));
}

void LineFeedInText(Package& package)
{
    AddToFirstPage(package, TextObject(900, 100, "<ofd:TextCode X=\"0\" Y=\"6\" DeltaX=\"4 4\">\nABC</ofd:TextCode>"));
}

void EmptyBoundary(Package& package)
{
    const QByteArray code = "<ofd:TextCode X=\"0\" Y=\"6\" DeltaX=\"g 6 4\">VISIBLE</ofd:TextCode>";
    AddToFirstPage(package, TextObject(900, 100, code, "0 0"));
    AddToFirstPage(package, TextObject(901, 110, code, "-30 -8"));
    AddToFirstPage(package, TextObject(902, 120, code, "30 0"));
    AddToFirstPage(package, "<ofd:PathObject ID=\"903\" Boundary=\"20 140 -40 -10\"><ofd:AbbreviatedData>M 0 0 L 40 10"
                            "</ofd:AbbreviatedData></ofd:PathObject>\n");
}

void TextInMatrix(Package& package)
{
    AddToFirstPage(package,
                   "<ofd:TextObject ID=\"900\" Boundary=\"20 100 60 12\" CTM=\"9 0 0 9 0 0\" Font=\"1\" Size=\"1\">"
                   "<ofd:TextCode X=\"0\" Y=\"1\" DeltaX=\"g 4 0.8\">LARGE</ofd:TextCode></ofd:TextObject>\n");
}

void ImageWithoutResource(Package& package)
{
    package.Replace(kFirstPage, " ResourceID=\"2\"", "");
}

QByteArray ClippedSquare(int id, int left, const QByteArray& transFlag)
{
    return "<ofd:PathObject ID=\"" + QByteArray::number(id) + "\" Boundary=\"" + QByteArray::number(left) +
           " 100 40 40\" CTM=\"2 0 0 2 0 0\" Stroke=\"false\" Fill=\"true\"><ofd:Clips" + transFlag +
           "><ofd:Clip><ofd:Area><ofd:Path Boundary=\"0 0 20 20\" Fill=\"true\"><ofd:AbbreviatedData>M 0 0 L 20 0 L 0 "
           "20 C"
           "</ofd:AbbreviatedData></ofd:Path></ofd:Area></ofd:Clip></ofd:Clips><ofd:FillColor Value=\"40 120 200\"/>"
           "<ofd:AbbreviatedData>M 0 0 L 20 0 L 20 20 L 0 20 C</ofd:AbbreviatedData></ofd:PathObject>\n";
}

void TransFlag(Package& package)
{
    AddToFirstPage(package, ClippedSquare(900, 20, " TransFlag=\"false\"") +
                                ClippedSquare(901, 70, " TransFlag=\"true\"") + ClippedSquare(902, 120, ""));
}

void HexColours(Package& package)
{
    package.Replace(kFirstPage, "Value=\"200 220 250\"", "Value=\"#ee #20 #25\"");
    package.Replace(kFirstPage, "Value=\"40 80 160\"", "Value=\"#00 #60 #A0\"");
}

void CmykAndGray(Package& package)
{
    AddResources(package,
                 "<ofd:ColorSpaces><ofd:ColorSpace ID=\"900\" Type=\"CMYK\"/><ofd:ColorSpace ID=\"901\" Type=\"GRAY\"/>"
                 "</ofd:ColorSpaces>\n");
    package.Replace(kFirstPage, "<ofd:FillColor Value=\"200 220 250\"/>",
                    "<ofd:FillColor Value=\"0 255 255 0\" ColorSpace=\"900\"/>");
    package.Replace(kFirstPage, "<ofd:StrokeColor Value=\"40 80 160\"/>",
                    "<ofd:StrokeColor Value=\"128\" ColorSpace=\"901\"/>");
}

void RadialShading(Package& package)
{
    AddToFirstPage(
        package,
        "<ofd:PathObject ID=\"900\" Boundary=\"20 100 40 40\" CTM=\"0.3528 0 0 0.3528 0 0\" Stroke=\"false\" "
        "Fill=\"true\">"
        "<ofd:FillColor><ofd:RadialShd StartPoint=\"20 20\" EndPoint=\"20 20\" EndRadius=\"20\" Extend=\"3\">"
        "<ofd:Segment Position=\"0\"><ofd:Color Value=\"255 255 255\"/></ofd:Segment>"
        "<ofd:Segment Position=\"1\"><ofd:Color Value=\"200 30 30\"/></ofd:Segment></ofd:RadialShd></ofd:FillColor>"
        "<ofd:AbbreviatedData>M 0 0 L 113 0 L 113 113 L 0 113 C</ofd:AbbreviatedData></ofd:PathObject>\n");
}

void ObjectInvisible(Package& package)
{
    package.Replace(kFirstPage, "<ofd:PathObject ID=\"9\"", "<ofd:PathObject ID=\"9\" Visible=\"false\"");
}

void FillWithoutColour(Package& package)
{
    package.Replace(kFirstPage, "<ofd:FillColor Value=\"200 220 250\"/>\n", "");
}

void ColourWithoutFill(Package& package)
{
    package.Replace(kFirstPage, " LineWidth=\"0.25\" Fill=\"true\"", " LineWidth=\"0.25\"");
}

void BlendMode(Package& package)
{
    package.Replace(kFirstPage, "<ofd:PathObject ID=\"9\"", "<ofd:PathObject ID=\"9\" BlendMode=\"Darken\"");
    package.Replace(kFirstPage, "<ofd:TextObject ID=\"8\"", "<ofd:TextObject ID=\"8\" Tag=\"title\"");
}

void UnembeddedFonts(Package& package)
{
    package.Replace(kPublicRes, "</ofd:Fonts>",
                    "<ofd:Font ID=\"900\" FontName=\"宋体\" FamilyName=\"SimSun\" CharSet=\"unicode\"/>\n"
                    "<ofd:Font ID=\"901\" FontName=\"No Such Face\" Serif=\"true\" Bold=\"true\"/>\n</ofd:Fonts>");
    AddToFirstPage(package, "<ofd:TextObject ID=\"902\" Boundary=\"20 100 60 8\" Font=\"900\" Size=\"6\">"
                            "<ofd:TextCode X=\"0\" Y=\"6\" DeltaX=\"6 6 6\">宋体文字</ofd:TextCode></ofd:TextObject>\n"
                            "<ofd:TextObject ID=\"903\" Boundary=\"20 110 60 8\" Font=\"901\" Size=\"6\">"
                            "<ofd:TextCode X=\"0\" Y=\"6\" DeltaX=\"g 6 4\">Unknown</ofd:TextCode></ofd:TextObject>\n");
}

// Embeds the font and shows "BLOCKS 12" with it; with `byGlyphs` through glyph numbers only.
void Embed(Package& package, const QByteArray& fileName, const QByteArray& font, bool byGlyphs)
{
    const QByteArray text = "BLOCKS 12";
    package.Replace(kPublicRes, "</ofd:Fonts>",
                    "<ofd:Font ID=\"900\" FontName=\"Block Sample\">\n<ofd:FontFile>" + fileName +
                        "</ofd:FontFile>\n</ofd:Font>\n</ofd:Fonts>");
    package.Add(QStringLiteral("Doc_0/Res/") + fileName, font);
    QByteArray glyphs;
    if (byGlyphs) {
        for (char letter : text)
            glyphs += QByteArray::number(BlockGlyph(QLatin1Char(letter))) + ' ';
        glyphs = "<ofd:CGTransform CodePosition=\"0\" CodeCount=\"9\" GlyphCount=\"9\"><ofd:Glyphs>" +
                 glyphs.trimmed() + "</ofd:Glyphs></ofd:CGTransform>";
    }
    AddToFirstPage(package, "<ofd:TextObject ID=\"901\" Boundary=\"20 100 60 10\" Font=\"900\" Size=\"10\">" + glyphs +
                                "<ofd:TextCode X=\"0\" Y=\"8\" DeltaX=\"g 8 6\">" + text +
                                "</ofd:TextCode></ofd:TextObject>\n");
}

void TrueTypeNamedOtherwise(Package& package)
{
    Embed(package, "blocks.otf", BlockTrueType(), false);
}

void TrueTypeNamedCff(Package& package)
{
    Embed(package, "blocks.cff", BlockTrueType(), false);
}

void CffNamedTrueType(Package& package)
{
    Embed(package, "blocks.ttf", BlockCff(), true);
}

void TrueTypeWithoutCmap(Package& package)
{
    BlockFontTables tables;
    tables.hasCmap = false;
    Embed(package, "blocks.ttf", BlockTrueType(tables), true);
}

void TrueTypeWithoutTables(Package& package)
{
    BlockFontTables tables;
    tables.hasCmap = tables.hasNames = false;
    Embed(package, "blocks.ttf", BlockTrueType(tables), true);
}

void GlyphsWithoutFont(Package& package)
{
    AddToFirstPage(
        package,
        TextObject(
            900, 100,
            "<ofd:CGTransform CodePosition=\"0\" CodeCount=\"4\" GlyphCount=\"4\"><ofd:Glyphs>900 901 902 903"
            "</ofd:Glyphs></ofd:CGTransform><ofd:TextCode X=\"0\" Y=\"6\" DeltaX=\"g 3 5\">TEXT</ofd:TextCode>"));
}

void LigatureGlyphs(Package& package)
{
    Embed(package, "blocks.ttf", BlockTrueType(), false);
    // Two characters drawn by one glyph, and one drawn by two: three glyphs and two deltas for three characters.
    AddToFirstPage(package, "<ofd:TextObject ID=\"902\" Boundary=\"20 115 60 10\" Font=\"900\" Size=\"10\">"
                            "<ofd:CGTransform CodePosition=\"0\" CodeCount=\"2\" "
                            "GlyphCount=\"1\"><ofd:Glyphs>24</ofd:Glyphs></ofd:CGTransform>"
                            "<ofd:CGTransform CodePosition=\"2\" CodeCount=\"1\" GlyphCount=\"2\"><ofd:Glyphs>12 "
                            "13</ofd:Glyphs></ofd:CGTransform>"
                            "<ofd:TextCode X=\"0\" Y=\"8\" DeltaX=\"6 6\">MXZ</ofd:TextCode></ofd:TextObject>\n");
}

void ReplacePicture(Package& package, const QByteArray& fileName, const QByteArray& format, const QByteArray& bytes)
{
    package.Rename(kPicture, QStringLiteral("Doc_0/Res/") + fileName);
    package.Data(QStringLiteral("Doc_0/Res/") + fileName) = bytes;
    package.Replace(kDocumentRes, "quadrants.png", fileName);
    package.Replace(kDocumentRes, " Format=\"PNG\"", format.isEmpty() ? "" : " Format=\"" + format + "\"");
}

void ImagePng(Package& package)
{
    ReplacePicture(package, "logo.png", "png", LogoPng());
}

void ImageJpeg(Package& package)
{
    ReplacePicture(package, "quadrants.jpg", "JPEG", QuadrantsJpeg());
}

void ImageJbig2(Package& package)
{
    ReplacePicture(package, "code.jb2", "GBIG2", CodeJbig2());
}

void ImageWithoutFormat(Package& package)
{
    ReplacePicture(package, "picture.bin", "", QuadrantsPng());
}

constexpr const char* kGroup = "Page content";
constexpr const char* kFonts = "Fonts, images";

const Deviation kTable[] = {
    {"objects_without_id", kGroup, "a path, an image and a text have no id", "show them; no tag can refer to them",
     ObjectsWithoutId},
    {"layers_without_id", kGroup, "layers have no id", "show them", LayersWithoutId},
    {"surplus_deltas", kGroup, "texts have as many steps as glyphs, or more", "ignore the surplus", SurplusDeltas},
    {"too_few_deltas", kGroup, "texts have fewer steps than glyphs need", "repeat the last step", TooFewDeltas},
    {"blanks_only_text", kGroup, "a text consists of blanks, another begins with them",
     "keep every blank as a character", BlanksOnly},
    {"line_feed_in_text", kGroup, "a text begins with a line feed that has no step", "drop the line feed",
     LineFeedInText},
    {"text_boundary_empty", kGroup, "boundaries of texts and of a path are empty or negative", "do not clip by them",
     EmptyBoundary},
    {"text_size_in_matrix", kGroup, "a text has size 1 and its true size in the matrix", "multiply: 9 millimetres",
     TextInMatrix},
    {"image_without_resource", kGroup, "an image names no resource", "draw nothing for it", ImageWithoutResource},
    {"trans_flag_on_clips", kGroup, "clips carry a flag whether the object's matrix applies",
     "false: not, true: yes, missing: yes", TransFlag},
    {"hexadecimal_colours", kGroup, "colour values are written as #ee #20 #25", "read them as hexadecimal", HexColours},
    {"cmyk_and_gray_spaces", kGroup, "colours in CMYK and GRAY", "convert: a red area with a gray border", CmykAndGray},
    {"radial_shading", kGroup, "a radial shading on an object with a matrix", "its points are not transformed",
     RadialShading},
    {"object_invisible", kGroup, "a path is not visible", "do not draw it; its tag highlights nothing else",
     ObjectInvisible},
    {"fill_without_colour", kGroup, "a path is to be filled and has no fill colour", "fill nothing", FillWithoutColour},
    {"colour_without_fill", kGroup, "a path has a fill colour and is not to be filled", "fill nothing",
     ColourWithoutFill},
    {"unknown_attributes", kGroup, "objects carry attributes that the format does not know",
     "ignore them, keep them on save", BlendMode},
    {"fonts_without_file", kFonts, "fonts by name only, one of them unknown", "substitute by name, family and flags",
     UnembeddedFonts},
    {"truetype_named_otf", kFonts, "a TrueType font in a part named .otf", "tell the kind by its bytes",
     TrueTypeNamedOtherwise},
    {"truetype_named_cff", kFonts, "a TrueType font in a part named .cff", "tell the kind by its bytes",
     TrueTypeNamedCff},
    {"cff_named_ttf", kFonts, "a bare CFF font in a part named .ttf", "tell the kind by its bytes", CffNamedTrueType},
    {"truetype_without_cmap", kFonts, "a TrueType font without a character map, used by glyph numbers",
     "draw the glyphs, extract the characters", TrueTypeWithoutCmap},
    {"truetype_without_tables", kFonts, "a TrueType font without cmap, name, OS/2 and post", "draw the glyphs",
     TrueTypeWithoutTables},
    {"glyphs_without_font_file", kFonts, "glyph numbers for a font that is not embedded",
     "ignore the numbers, use the characters", GlyphsWithoutFont},
    {"glyph_clusters", kFonts, "two characters drawn by one glyph, one by two", "steps count glyphs; one box a cluster",
     LigatureGlyphs},
    {"image_png_alpha", kFonts, "a PNG with transparency", "lay it over the page", ImagePng},
    {"image_jpeg", kFonts, "a baseline JPEG", "show it", ImageJpeg},
    {"image_jbig2", kFonts, "a JBIG2 file, its format written GBIG2", "show it: black on white", ImageJbig2},
    {"image_without_format", kFonts, "a picture without Format and with an odd name", "tell the kind by its bytes",
     ImageWithoutFormat},
};

} // namespace

std::vector<Deviation> ContentDeviations()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
