#include "hostile.h"

#include "deviations.h"
#include "hostile_fonts.h"
#include "raw_zip.h"

#include <functional>

namespace samples {

namespace {

Package Plain()
{
    return PlainDocument("hostile", "A document that asks for too much.");
}

QByteArray Unit(int id, const QByteArray& content)
{
    return "<ofd:CompositeGraphicUnit ID=\"" + QByteArray::number(id) + "\" Width=\"40\" Height=\"40\"><ofd:Content>" +
           content + "</ofd:Content></ofd:CompositeGraphicUnit>\n";
}

QByteArray UseOf(int unit)
{
    return "<ofd:CompositeObject ID=\"899\" Boundary=\"0 0 40 40\" ResourceID=\"" + QByteArray::number(unit) + "\"/>";
}

QByteArray SquareOfUnit()
{
    return "<ofd:PathObject ID=\"898\" Boundary=\"0 0 4 4\" Fill=\"true\"><ofd:FillColor Value=\"0 0 "
           "0\"/><ofd:AbbreviatedData>M 0 0 L 4 0 L 4 4 C</ofd:AbbreviatedData></ofd:PathObject>";
}

// A chain of units, each of which uses the next in the way that is told; the first page uses the first.
QByteArray ChainOfUnits(int length, const std::function<QByteArray(int next)>& uses)
{
    Package package = Plain();
    QByteArray units;
    for (int i = 0; i < length; ++i)
        units += Unit(1000 + i, i + 1 < length ? uses(1001 + i) : SquareOfUnit());
    AddResources(package, "<ofd:CompositeGraphicUnits>" + units + "</ofd:CompositeGraphicUnits>\n");
    AddToFirstPage(package, UseOf(1000));
    return PackedBytes(package);
}

QByteArray CompositeBomb()
{
    return ChainOfUnits(30, [](int next) { return UseOf(next).repeated(10); });
}

QByteArray InBlocks(const QByteArray& content, int depth)
{
    return QByteArray("<ofd:PageBlock ID=\"897\">").repeated(depth) + content +
           QByteArray("</ofd:PageBlock>").repeated(depth);
}

QByteArray DeepComposites()
{
    return ChainOfUnits(60, [](int next) { return InBlocks(UseOf(next), 200); });
}

QByteArray DeepBlocks()
{
    Package package = Plain();
    AddToFirstPage(package, InBlocks(SquareOfUnit(), 200));
    return PackedBytes(package);
}

QByteArray CompositeCycleOfTwo()
{
    Package package = Plain();
    AddResources(package, "<ofd:CompositeGraphicUnits>" + Unit(1000, UseOf(1001).repeated(2)) +
                              Unit(1001, UseOf(1000).repeated(2)) + "</ofd:CompositeGraphicUnits>\n");
    AddToFirstPage(package, UseOf(1000));
    return PackedBytes(package);
}

QByteArray PatternFill(const QByteArray& cell)
{
    return "<ofd:PathObject ID=\"896\" Boundary=\"20 100 40 40\" Fill=\"true\"><ofd:FillColor><ofd:Pattern "
           "Width=\"4\" Height=\"4\" XStep=\"4\" YStep=\"4\"><ofd:CellContent>" +
           cell +
           "</ofd:CellContent></ofd:Pattern></ofd:FillColor><ofd:AbbreviatedData>M 0 0 L 40 0 L 40 40 C"
           "</ofd:AbbreviatedData></ofd:PathObject>";
}

QByteArray PatternCycle()
{
    Package package = Plain();
    AddResources(package, "<ofd:CompositeGraphicUnits>" + Unit(1000, PatternFill(UseOf(1000))) +
                              "</ofd:CompositeGraphicUnits>\n");
    AddToFirstPage(package, UseOf(1000));
    return PackedBytes(package);
}

QByteArray PatternTinySteps()
{
    Package package = Plain();
    AddToFirstPage(package,
                   PatternFill(SquareOfUnit()).replace("XStep=\"4\" YStep=\"4\"", "XStep=\"1e-7\" YStep=\"0\""));
    return PackedBytes(package);
}

QByteArray PatternOfNothing()
{
    Package package = Plain();
    AddToFirstPage(package, PatternFill({}).replace("XStep=\"4\" YStep=\"4\"", "XStep=\"1e-6\" YStep=\"1e-6\""));
    return PackedBytes(package);
}

QByteArray TemplateUse(int id)
{
    return "<ofd:Template TemplateID=\"" + QByteArray::number(id) + "\" ZOrder=\"Background\"/>";
}

QByteArray TemplatePart(const Package& plain, const QByteArray& uses)
{
    Package copy = plain;
    copy.Replace(kTemplate, "<ofd:Area>", uses + "<ofd:Area>");
    return copy.Data(kTemplate);
}

// Templates that use the next one so many times; the last uses the first when it is a cycle.
QByteArray Templates(int count, int uses, bool isCycle)
{
    const Package plain = Plain();
    Package package = plain;
    QByteArray list;
    for (int i = 0; i < count; ++i) {
        const QString part = QStringLiteral("Doc_0/Tpls/Tpl_%1/Content.xml").arg(100 + i);
        const int next = i + 1 < count ? 1001 + i : 1000;
        const bool isUsed = i + 1 < count || isCycle;
        package.Add(part, TemplatePart(plain, isUsed ? TemplateUse(next).repeated(uses) : QByteArray()));
        list += "<ofd:TemplatePage ID=\"" + QByteArray::number(1000 + i) + "\" BaseLoc=\"/" + part.toUtf8() + "\"/>";
    }
    package.Replace(kDocument, "</ofd:CommonData>", list + "</ofd:CommonData>");
    package.Replace(kFirstPage, "<ofd:Area>", TemplateUse(1000) + "<ofd:Area>");
    return PackedBytes(package);
}

QByteArray TemplateBomb()
{
    return Templates(30, 10, false);
}

QByteArray TemplateCycleOfTwo()
{
    return Templates(2, 2, true);
}

QByteArray LongDrawParamChain()
{
    Package package = Plain();
    QByteArray params;
    for (int i = 0; i < 2000; ++i)
        params += "<ofd:DrawParam ID=\"" + QByteArray::number(1000 + i) + "\" Relative=\"" +
                  QByteArray::number(1001 + i) + "\"/>";
    AddResources(package, "<ofd:DrawParams>" + params + "</ofd:DrawParams>\n");
    package.Replace(kFirstPage, "<ofd:PathObject ID=\"9\"", "<ofd:PathObject ID=\"9\" DrawParam=\"1000\"");
    return PackedBytes(package);
}

QByteArray DashBomb()
{
    Package package = Plain();
    AddToFirstPage(package, "<ofd:PathObject ID=\"900\" Boundary=\"0 0 210 297\" LineWidth=\"0.1\" DashPattern=\"1e-6 "
                            "1e-6\"><ofd:AbbreviatedData>M 0 0 L 9999999 9999999 L 0 9999999 L 9999999 0"
                            "</ofd:AbbreviatedData></ofd:PathObject>");
    return PackedBytes(package);
}

QByteArray ClipBomb()
{
    Package package = Plain();
    QByteArray areas;
    for (int i = 0; i < 3000; ++i)
        areas += "<ofd:Area><ofd:Path Boundary=\"0 0 200 200\" Fill=\"true\"><ofd:AbbreviatedData>M " +
                 QByteArray::number(i % 97) + " 0 B 90 " + QByteArray::number(i % 53) + " " +
                 QByteArray::number(i % 31) + " 90 100 100 L 0 " + QByteArray::number(i % 71) +
                 " C</ofd:AbbreviatedData></ofd:Path></ofd:Area>";
    AddToFirstPage(package, "<ofd:PathObject ID=\"900\" Boundary=\"0 0 200 200\" Fill=\"true\"><ofd:Clips><ofd:Clip>" +
                                areas +
                                "</ofd:Clip></ofd:Clips><ofd:FillColor Value=\"255 0 0\"/><ofd:AbbreviatedData>M 0 0 L "
                                "200 0 L 200 200 C</ofd:AbbreviatedData></ofd:PathObject>");
    return PackedBytes(package);
}

// Characters that no font has, or each another one: every one is searched for among the installed fonts.
QByteArray ManyRareCharacters()
{
    Package package = Plain();
    QString text;
    for (uint code = 0x12000; code < 0x12000 + 20'000; ++code)
        text += QString::fromUcs4(&code, 1);
    AddToFirstPage(package, "<ofd:TextObject ID=\"900\" Boundary=\"20 100 60 8\" Font=\"1\" Size=\"3\"><ofd:TextCode "
                            "X=\"0\" Y=\"6\" DeltaX=\"g 20000 0.001\">" +
                                text.toUtf8() + "</ofd:TextCode></ofd:TextObject>\n");
    return PackedBytes(package);
}

QByteArray ManyFonts()
{
    Package package = Plain();
    QByteArray fonts;
    QByteArray texts;
    for (int i = 0; i < 5000; ++i) {
        const QByteArray id = QByteArray::number(1000 + i);
        fonts += "<ofd:Font ID=\"" + id + "\" FontName=\"Font " + id + "\" FamilyName=\"Family " + id + "\"/>";
        texts += "<ofd:TextObject ID=\"900\" Boundary=\"20 100 60 8\" Font=\"" + id +
                 "\" Size=\"3\"><ofd:TextCode X=\"0\" Y=\"6\">x</ofd:TextCode></ofd:TextObject>";
    }
    AddResources(package, "<ofd:Fonts>" + fonts + "</ofd:Fonts>\n");
    AddToFirstPage(package, texts);
    return PackedBytes(package);
}

QByteArray ManyElements()
{
    Package package = Plain();
    package.Replace(kSecondPage, "</ofd:Page>", QByteArray("<a/>").repeated(7'000'000) + "</ofd:Page>");
    return PackedBytes(package);
}

// A page whose size stands nowhere, behind a long beginning, listed many times.
QByteArray OnePageManyTimes()
{
    Package package = Plain();
    const QByteArray begin = "<ofd:Content>";
    package.Replace(kSecondPage, begin, "<!--" + QByteArray(900'000, 'x') + "-->" + begin);
    package.Replace(kSecondPage, ElementText(package, kSecondPage, "Area"), "");
    QByteArray pages;
    for (int i = 0; i < 300; ++i)
        pages += "<ofd:Page ID=\"" + QByteArray::number(2000 + i) + "\" BaseLoc=\"/" + kSecondPage.toUtf8() + "\"/>";
    package.Replace(kDocument, "</ofd:Pages>", pages + "</ofd:Pages>");
    return PackedBytes(package);
}

QByteArray HighestIds()
{
    Package package = Plain();
    package.Replace(kDocument, ElementText(package, kDocument, "MaxUnitID"),
                    "<ofd:MaxUnitID>4294967295</ofd:MaxUnitID>");
    for (int i = 0; i < 2; ++i)
        package.Replace(kAttachmentList, " ID=\"a", " ID=\"2147483647\" Was=\"");
    package.Replace(kFirstPage, "<ofd:PathObject ID=\"9\"", "<ofd:PathObject ID=\"2147483648\"");
    return PackedBytes(package);
}

QByteArray HugeCounts()
{
    Package package = Plain();
    AddToFirstPage(package,
                   "<ofd:TextObject ID=\"900\" Boundary=\"20 100 60 8\" Font=\"1\" Size=\"6\"><ofd:CGTransform "
                   "CodePosition=\"2147483647\" CodeCount=\"2147483647\" GlyphCount=\"2147483647\"><ofd:Glyphs>1 2 "
                   "4294967295</ofd:Glyphs></ofd:CGTransform><ofd:TextCode X=\"0\" Y=\"6\">TEXT</ofd:TextCode>"
                   "</ofd:TextObject><ofd:PathObject ID=\"901\" Boundary=\"20 100 60 60\" Fill=\"true\"><ofd:FillColor>"
                   "<ofd:LaGourandShd VerticesPerRow=\"2147483647\" Extend=\"1\"><ofd:Point X=\"0\" Y=\"0\">"
                   "<ofd:Color Value=\"1 2 3\"/></ofd:Point></ofd:LaGourandShd></ofd:FillColor>"
                   "<ofd:AbbreviatedData>M 0 0 L 40 0 L 40 40 C</ofd:AbbreviatedData></ofd:PathObject>");
    return PackedBytes(package);
}

// Lines that cross each other on all of the page.
QByteArray CrossingEdges()
{
    Package package = Plain();
    QByteArray star = "M 0 0";
    for (int i = 0; i < 500; ++i)
        star += " L " + QByteArray::number(i * 37 % 210) + (i % 2 ? " 297" : " 0");
    const QByteArray path = "<ofd:PathObject ID=\"900\" Boundary=\"0 0 210 297\" Fill=\"true\" Stroke=\"false\">"
                            "<ofd:FillColor Value=\"255 0 0\"/><ofd:AbbreviatedData>" +
                            star + "</ofd:AbbreviatedData></ofd:PathObject>";
    AddToFirstPage(package, path.repeated(200));
    return PackedBytes(package);
}

QByteArray ClipsAndShadings()
{
    Package package = Plain();
    const QByteArray path =
        "<ofd:PathObject ID=\"900\" Boundary=\"0 0 210 297\" Fill=\"true\" Stroke=\"false\" Alpha=\"128\"><ofd:Clips>"
        "<ofd:Clip><ofd:Area><ofd:Path Boundary=\"0 0 210 297\" Fill=\"true\"><ofd:AbbreviatedData>M 0 0 B 300 90 -90 "
        "200 210 297 L 0 297 C</ofd:AbbreviatedData></ofd:Path></ofd:Area></ofd:Clip></ofd:Clips><ofd:FillColor>"
        "<ofd:RadialShd StartPoint=\"9 9\" StartRadius=\"1\" EndPoint=\"99 99\" EndRadius=\"50\" Extend=\"3\">"
        "<ofd:Segment Position=\"0\"><ofd:Color Value=\"255 0 0\"/></ofd:Segment><ofd:Segment Position=\"1\">"
        "<ofd:Color Value=\"0 0 255\"/></ofd:Segment></ofd:RadialShd></ofd:FillColor><ofd:AbbreviatedData>M 0 0 L 210 "
        "0 "
        "L 210 297 L 0 297 C</ofd:AbbreviatedData></ofd:PathObject>";
    AddToFirstPage(package, path.repeated(3000));
    return PackedBytes(package);
}

QByteArray BrokenFont()
{
    Package package = Plain();
    QByteArray font = QByteArray::fromHex("000100000004004000020000") + "cmap" + QByteArray::fromHex("00000000") +
                      QByteArray::fromHex("0000004cffffffff") + "glyf" + QByteArray(64, '\xff');
    package.Add("Doc_0/Res/broken.ttf", font);
    AddResources(package, "<ofd:Fonts><ofd:Font ID=\"1000\" FontName=\"Broken\"><ofd:FontFile>/Doc_0/Res/broken.ttf"
                          "</ofd:FontFile></ofd:Font></ofd:Fonts>\n");
    AddToFirstPage(package,
                   "<ofd:TextObject ID=\"900\" Boundary=\"20 100 60 8\" Font=\"1000\" Size=\"6\"><ofd:TextCode "
                   "X=\"0\" Y=\"6\">TEXT</ofd:TextCode></ofd:TextObject>");
    return PackedBytes(package);
}

// The first page has this many letters, each of a glyph of its own, in such steps.
QByteArray WithFont(const QByteArray& font, int letters, int step)
{
    Package package = Plain();
    package.Add("Doc_0/Res/hostile.ttf", font);
    AddResources(package, "<ofd:Fonts><ofd:Font ID=\"1000\" FontName=\"Hostile\"><ofd:FontFile>/Doc_0/Res/hostile.ttf"
                          "</ofd:FontFile></ofd:Font></ofd:Fonts>\n");
    QByteArray glyphs;
    for (int i = 0; i < letters; ++i)
        glyphs += QByteArray::number((i + 1) * step) + ' ';
    const QByteArray count = QByteArray::number(letters);
    AddToFirstPage(package, "<ofd:TextObject ID=\"900\" Boundary=\"20 100 60 8\" Font=\"1000\" Size=\"6\">"
                            "<ofd:CGTransform CodePosition=\"0\" CodeCount=\"" +
                                count + "\" GlyphCount=\"" + count + "\"><ofd:Glyphs>" + glyphs.trimmed() +
                                "</ofd:Glyphs></ofd:CGTransform><ofd:TextCode X=\"0\" Y=\"6\">" +
                                QByteArray(letters, 'A') + "</ofd:TextCode></ofd:TextObject>");
    return PackedBytes(package);
}

QByteArray GlyphBomb()
{
    return WithFont(FontOfNestedGlyphs(30, 2, QByteArray()), 30, 1);
}

QByteArray HeavyGlyphs()
{
    return WithFont(FontOfOneGlyph(GlyphOfPoints(32'000), 20'000), 9'000, 2);
}

QByteArray CallingGlyphs()
{
    return WithFont(CffOfCalls(1000), 200, 1);
}

// A bilevel picture whose header promises 4,294,967,295 pixels in both directions.
QByteArray HugeJbig2()
{
    Package package = Plain();
    package.Data(kPicture) = QByteArray::fromHex("974a42320d0a1a0a0100000001"
                                                 "00000000300001"
                                                 "00000013"
                                                 "ffffffffffffffff0000000000000000000000");
    return PackedBytes(package);
}

const Damage kTable[] = {
    {"composite_bomb", "thirty composite units, each of which uses the next ten times", "open", CompositeBomb},
    {"deep_composites", "sixty composite units, each in 200 blocks of the one before", "open", DeepComposites},
    {"deep_blocks", "a square in 200 blocks", "open; draw the square", DeepBlocks},
    {"composite_cycle_of_two", "two composite units that contain each other", "open", CompositeCycleOfTwo},
    {"pattern_cycle", "a composite unit filled with a pattern of itself", "open", PatternCycle},
    {"pattern_tiny_steps", "a pattern whose cells are a tenth of a nanometre apart", "open", PatternTinySteps},
    {"pattern_of_nothing", "a pattern of empty cells a nanometre apart", "open", PatternOfNothing},
    {"template_bomb", "thirty templates, each of which uses the next ten times", "open", TemplateBomb},
    {"template_cycle_of_two", "two templates that use each other", "open", TemplateCycleOfTwo},
    {"long_draw_param_chain", "two thousand draw parameters, each built on the next", "open", LongDrawParamChain},
    {"dash_bomb", "lines of ten kilometres in dashes of a nanometre", "open", DashBomb},
    {"clip_bomb", "a clip of three thousand curved areas that overlap", "open", ClipBomb},
    {"many_rare_characters", "twenty thousand characters that hardly a font has", "open", ManyRareCharacters},
    {"many_fonts", "five thousand fonts of unknown names, each used once", "open", ManyFonts},
    {"many_elements", "a page of seven million empty elements, packed very small", "open; the second page is empty",
     ManyElements},
    {"one_page_many_times", "a page of a megabyte without a size, listed three hundred times", "open",
     OnePageManyTimes},
    {"highest_ids", "identifiers that are the highest number there is, or above it", "open", HighestIds},
    {"huge_counts", "a text and a shading that count two thousand million of everything", "open", HugeCounts},
    {"crossing_edges", "two hundred outlines of five hundred lines across the page",
     "open; paint what is within the limit", CrossingEdges},
    {"clips_and_shadings", "three thousand shadings of the whole page, each cut to a clip",
     "open; paint what is within the limit", ClipsAndShadings},
    {"broken_font", "an embedded font whose tables lie outside of it", "open; draw with another font", BrokenFont},
    {"glyph_bomb", "a font of thirty glyphs, each of which is the next one twice", "open", GlyphBomb},
    {"heavy_glyphs", "a font of twenty thousand glyphs of 32,000 points, half of them shown", "open", HeavyGlyphs},
    {"calling_glyphs", "a font whose glyphs call subroutines that call each other a thousand times", "open",
     CallingGlyphs},
    {"huge_jbig2", "a bilevel picture of 4,294,967,295 by 4,294,967,295", "open; draw nothing for it", HugeJbig2},
};

} // namespace

std::vector<Damage> HostileFiles()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
