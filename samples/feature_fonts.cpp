#include "block_font.h"
#include "block_font_kinds.h"
#include "features.h"

namespace samples {

namespace {

// Embeds the font and shows "BLOCKS 12" with it at (20, 100), by its glyphs' numbers or by characters.
void Embed(Package& package, const QByteArray& font, bool byGlyphs)
{
    const QByteArray text = "BLOCKS 12";
    package.Add("Doc_0/Res/blocks.dat", font);
    package.Replace(kPublicRes, "</ofd:Fonts>",
                    "<ofd:Font ID=\"900\" FontName=\"Block Sample\">\n<ofd:FontFile>blocks.dat</ofd:FontFile>\n"
                    "</ofd:Font>\n</ofd:Fonts>");
    QByteArray glyphs;
    for (const char letter : text)
        glyphs += QByteArray::number(BlockGlyph(QLatin1Char(letter))) + ' ';
    if (byGlyphs)
        glyphs = "<ofd:CGTransform CodePosition=\"0\" CodeCount=\"9\" GlyphCount=\"9\"><ofd:Glyphs>" +
                 glyphs.trimmed() + "</ofd:Glyphs></ofd:CGTransform>";
    AddToFirstPage(package, "<ofd:TextObject ID=\"901\" Boundary=\"20 100 60 10\" Font=\"900\" Size=\"10\">" +
                                (byGlyphs ? glyphs : QByteArray()) + "<ofd:TextCode X=\"0\" Y=\"8\" DeltaX=\"g 8 6\">" +
                                text + "</ofd:TextCode></ofd:TextObject>\n");
}

void OpenTypeCff(Package& package)
{
    Embed(package, BlockOpenTypeCff(), false);
}

void BareCff(Package& package)
{
    Embed(package, BlockCff(), false);
}

void TypeOneText(Package& package)
{
    Embed(package, BlockTypeOneText(), false);
}

void TypeOneBinary(Package& package)
{
    Embed(package, BlockTypeOneBinary(), true);
}

void Collection(Package& package)
{
    Embed(package, BlockCollection(), false);
}

void NoHead(Package& package)
{
    Embed(package, BlockWithout("head"), false);
}

void NoMaxp(Package& package)
{
    Embed(package, BlockWithout("maxp"), false);
}

void NoHhea(Package& package)
{
    Embed(package, BlockWithout("hhea"), false);
}

void NoHmtx(Package& package)
{
    Embed(package, BlockWithout("hmtx"), false);
}

void CutOff(Package& package)
{
    Embed(package, BlockCutOff(), false);
}

void TableOutside(Package& package)
{
    Embed(package, BlockWithTableOutside("post"), false);
}

void MapOutside(Package& package)
{
    Embed(package, BlockWithTableOutside("cmap"), true);
}

constexpr const char* kGroup = "Fonts";
constexpr const char* kMustDo = "draw its glyphs";

const Deviation kTable[] = {
    {"font_opentype_cff", kGroup, "an OpenType font with outlines of the compact kind", kMustDo, OpenTypeCff},
    {"font_bare_cff", kGroup, "a compact font without a wrapping, used by characters", kMustDo, BareCff},
    {"font_type1_text", kGroup, "a Type 1 font in digits", kMustDo, TypeOneText},
    {"font_type1_binary", kGroup, "a Type 1 font in segments", kMustDo, TypeOneBinary},
    {"font_collection", kGroup, "a collection of which the second face is meant", "draw with the face of that name",
     Collection},
    {"font_without_head", kGroup, "a TrueType font without its head table", kMustDo, NoHead},
    {"font_without_maxp", kGroup, "a TrueType font without its maxp table", kMustDo, NoMaxp},
    {"font_without_hhea", kGroup, "a TrueType font without its hhea table", kMustDo, NoHhea},
    {"font_without_hmtx", kGroup, "a TrueType font without its hmtx table", kMustDo, NoHmtx},
    {"font_cut_off", kGroup, "a TrueType font that ends inside its last outlines", kMustDo, CutOff},
    {"font_table_outside", kGroup, "a TrueType font with a table outside the file", kMustDo, TableOutside},
    {"font_map_outside", kGroup, "a TrueType font whose character map lies outside the file, used by glyph numbers",
     kMustDo, MapOutside},
};

} // namespace

std::vector<Deviation> FontFeatures()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
