// Resources that objects share, and where they are looked for.
#include "feature_shapes.h"
#include "features.h"
#include "pictures.h"

namespace samples {

namespace {

QByteArray Resources(const QByteArray& groups)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ofd:Res xmlns:ofd=\"http://www.ofdspec.org/2016\" "
           "BaseLoc=\"Res\">\n" +
           groups + "</ofd:Res>\n";
}

QByteArray DrawParam(const QByteArray& id, const QByteArray& inside, const QByteArray& attributes = {})
{
    return "<ofd:DrawParam ID=\"" + id + "\" " + attributes + ">" + inside + "</ofd:DrawParam>\n";
}

// Cells of 10 mm whose left half is a box that is drawn with a draw parameter.
QByteArray CellsDrawnWith(const QByteArray& drawParam)
{
    return "<ofd:FillColor><ofd:Pattern Width=\"10\" Height=\"10\"><ofd:CellContent>" +
           FilledRectangle(912, QRectF(0, 0, 5, 10), {}, "DrawParam=\"" + drawParam + "\"") +
           "</ofd:CellContent></ofd:Pattern></ofd:FillColor>";
}

void AddDrawn(Package& package, const QByteArray& drawParams)
{
    AddResources(package, "<ofd:DrawParams>\n" + drawParams + "</ofd:DrawParams>\n");
    AddToFirstPage(package, FilledRectangle(900, QRectF(20, 100, 60, 60), {}, "DrawParam=\"950\""));
}

// The page alone has a draw parameter, a picture and a composite unit, and a stamp on it uses all three.
void AnnotationWithPageResources(Package& package)
{
    package.Add("Doc_0/Pages/Page_0/Res/own.png", QuadrantsPng());
    package.Add("Doc_0/Pages/Page_0/PageRes.xml",
                Resources("<ofd:DrawParams>\n" + DrawParam("950", PlainColor("0 0 255")) +
                          "</ofd:DrawParams>\n<ofd:MultiMedias>\n<ofd:MultiMedia ID=\"951\" Type=\"Image\">"
                          "<ofd:MediaFile>own.png</ofd:MediaFile></ofd:MultiMedia>\n</ofd:MultiMedias>\n"
                          "<ofd:CompositeGraphicUnits>\n<ofd:CompositeGraphicUnit ID=\"952\" Width=\"20\" "
                          "Height=\"20\"><ofd:Content>" +
                          FilledRectangle(953, QRectF(0, 0, 20, 20), PlainColor("0 255 0")) +
                          "</ofd:Content></ofd:CompositeGraphicUnit>\n</ofd:CompositeGraphicUnits>\n"));
    package.Replace(kFirstPage, "<ofd:Area>", "<ofd:PageRes>PageRes.xml</ofd:PageRes>\n<ofd:Area>");
    package.Replace(kAnnotations, "</ofd:PageAnnot>",
                    "<ofd:Annot ID=\"960\" Type=\"Stamp\" Creator=\"samples\" LastModDate=\"2026-01-01\">"
                    "<ofd:Appearance Boundary=\"20 100 60 20\">" +
                        FilledRectangle(961, QRectF(0, 0, 20, 20), {}, "DrawParam=\"950\"") +
                        "<ofd:ImageObject ID=\"962\" Boundary=\"20 0 20 20\" CTM=\"20 0 0 20 0 0\" "
                        "ResourceID=\"951\"/>\n"
                        "<ofd:CompositeObject ID=\"963\" Boundary=\"40 0 20 20\" ResourceID=\"952\"/>\n"
                        "</ofd:Appearance></ofd:Annot>\n</ofd:PageAnnot>");
}

void PatternWithLaterParameter(Package& package)
{
    AddDrawn(package, DrawParam("950", CellsDrawnWith("951")) + DrawParam("951", {}, "Relative=\"952\"") +
                          DrawParam("952", PlainColor("0 0 255")));
}

void PatternWithItself(Package& package)
{
    AddDrawn(package, DrawParam("950", CellsDrawnWith("951")) +
                          DrawParam("951", PlainColor("0 0 255"), "Relative=\"952\"") +
                          DrawParam("952", CellsDrawnWith("950")));
}

// Each of thirty patterns paints four boxes with the one before it: more than could ever be painted.
void PatternsThatMultiply(Package& package)
{
    QByteArray params = DrawParam("970", PlainColor("0 0 255"));
    for (int i = 1; i < 30; ++i) {
        QByteArray boxes;
        for (int box = 0; box < 4; ++box)
            boxes +=
                FilledRectangle(912, QRectF(0, 0, 10, 10), {}, "DrawParam=\"" + QByteArray::number(969 + i) + "\"");
        params += DrawParam(QByteArray::number(970 + i),
                            "<ofd:FillColor><ofd:Pattern Width=\"10\" Height=\"10\"><ofd:CellContent>" + boxes +
                                "</ofd:CellContent></ofd:Pattern></ofd:FillColor>");
    }
    AddDrawn(package, DrawParam("950", PlainColor("255 0 0")) + params);
    AddToFirstPage(package, FilledRectangle(901, QRectF(100, 100, 60, 60), {}, "DrawParam=\"999\""));
}

constexpr const char* kGroup = "Shared resources";

const Deviation kTable[] = {
    {"page_resources_for_annotation", kGroup, "an annotation that uses resources of its page",
     "find them there: a blue box, the picture, a green box", AnnotationWithPageResources},
    {"pattern_with_later_parameter", kGroup, "a pattern whose cell is drawn with draw parameters that come later",
     "paint the left half of its cells blue", PatternWithLaterParameter},
    {"pattern_with_itself", kGroup, "draw parameters whose patterns are painted with each other",
     "paint the left half of the cells blue, no more", PatternWithItself},
    {"patterns_that_multiply", kGroup, "thirty patterns of four boxes each, one painted with the other",
     "paint what can be painted, and the red box", PatternsThatMultiply},
};

} // namespace

std::vector<Deviation> SharingFeatures()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
