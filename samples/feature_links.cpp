// Links. What is clicked is 60 x 20 mm at (20, 100), unless told otherwise.
#include "feature_shapes.h"
#include "features.h"

namespace samples {

namespace {

const QRectF kArea(20, 100, 60, 20);
const QByteArray kToSecondPage = "<ofd:Goto><ofd:Dest Type=\"XYZ\" PageID=\"11\" Left=\"0\" Top=\"20\"/></ofd:Goto>";

QByteArray Actions(const QByteArray& action, const QByteArray& event = "CLICK")
{
    return "<ofd:Actions><ofd:Action Event=\"" + event + "\">" + action + "</ofd:Action></ofd:Actions>";
}

QByteArray Uri(const QByteArray& attributes)
{
    return "<ofd:URI " + attributes + "/>";
}

void AddLink(Package& package, const QByteArray& action, const QRectF& area = kArea)
{
    AddToFirstPage(package, FilledRectangle(900, area, PlainColor("214 228 255"), {}, Actions(action)));
}

void AddToDocument(Package& package, const QByteArray& action)
{
    package.Replace(kDocument, "</ofd:Pages>", "</ofd:Pages>" + Actions(action, "DO"));
}

void ActionsLast(Package& package)
{
    QByteArray object = FilledRectangle(900, kArea, PlainColor("214 228 255"));
    AddToFirstPage(package, object.replace("</ofd:PathObject>", Actions(kToSecondPage) + "</ofd:PathObject>"));
}

void ToBookmark(Package& package)
{
    AddLink(package, "<ofd:Goto><ofd:Bookmark Name=\"Second page\"/></ofd:Goto>");
}

void ToMissingPage(Package& package)
{
    AddLink(package, "<ofd:Goto><ofd:Dest Type=\"Fit\" PageID=\"558\"/></ofd:Goto>");
}

void UriWithBase(Package& package)
{
    AddLink(package, Uri("URI=\"guide/one.html\" Base=\"https://example.org/\""));
}

void Region(Package& package)
{
    AddLink(package,
            "<ofd:Region><ofd:Area Start=\"0 0\"><ofd:Line Point1=\"60 0\"/><ofd:Line Point1=\"0 60\"/><ofd:Close/>"
            "</ofd:Area></ofd:Region>" +
                kToSecondPage,
            QRectF(20, 100, 60, 60));
}

void TurnedComposite(Package& package)
{
    AddResources(package,
                 "<ofd:CompositeGraphicUnits><ofd:CompositeGraphicUnit ID=\"950\" Width=\"60\" Height=\"20\">"
                 "<ofd:Content>" +
                     FilledRectangle(951, QRectF(0, 0, 60, 20), PlainColor("214 228 255"), {}, Actions(kToSecondPage)) +
                     "</ofd:Content></ofd:CompositeGraphicUnit></ofd:CompositeGraphicUnits>");
    AddToFirstPage(package, "<ofd:CompositeObject ID=\"900\" Boundary=\"20 100 20 60\" CTM=\"0 1 -1 0 20 0\" "
                            "ResourceID=\"950\"/>");
}

void HiddenAnnotation(Package& package)
{
    package.Replace(kAnnotations, "</ofd:PageAnnot>",
                    "<ofd:Annot ID=\"960\" Type=\"Link\" Creator=\"samples\" LastModDate=\"2024-01-02\" "
                    "Visible=\"false\"><ofd:Appearance Boundary=\"20 100 60 20\">" +
                        FilledRectangle(961, QRectF(0, 0, 60, 20), {}, "Visible=\"false\"",
                                        Actions(Uri("URI=\"https://example.org/\""))) +
                        "</ofd:Appearance></ofd:Annot></ofd:PageAnnot>");
}

void TextWithoutBoundary(Package& package)
{
    AddToFirstPage(
        package, "<ofd:TextObject ID=\"900\" Boundary=\"20 100 0 0\" Font=\"1\" Size=\"10\">" + Actions(kToSecondPage) +
                     "<ofd:TextCode X=\"0\" Y=\"10\" DeltaX=\"g 3 10\">LINK</ofd:TextCode></ofd:TextObject>");
}

void OfThePage(Package& package)
{
    package.Replace(kFirstPage, "</ofd:Page>",
                    Actions("<ofd:Region><ofd:Area Start=\"20 100\"><ofd:Line Point1=\"80 100\"/><ofd:Line "
                            "Point1=\"80 120\"/><ofd:Line Point1=\"20 120\"/></ofd:Area></ofd:Region>" +
                            kToSecondPage) +
                        "</ofd:Page>");
}

void ToAttachment(Package& package)
{
    const QByteArray list = ElementText(package, kAttachmentList, "Attachment");
    const int start = list.indexOf(" ID=\"") + 5;
    AddLink(package, "<ofd:GotoA AttachID=\"" + list.mid(start, list.indexOf('"', start) - start) + "\"/>");
}

void ToMissingAttachment(Package& package)
{
    AddLink(package, "<ofd:GotoA AttachID=\"777\"/>");
}

void SoundAndMovie(Package& package)
{
    AddLink(package, "<ofd:Sound ResourceID=\"2\"/></ofd:Action><ofd:Action Event=\"CLICK\"><ofd:Movie "
                     "ResourceID=\"2\"/>");
}

void OpensOnSecondPage(Package& package)
{
    AddToDocument(package, kToSecondPage);
}

void OpensAddress(Package& package)
{
    AddToDocument(package, Uri("URI=\"https://example.org/\""));
}

constexpr const char* kGroup = "Links";

const Deviation kTable[] = {
    {"link_behind_children", kGroup, "the actions stand behind the object's other children", "go to page 2",
     ActionsLast},
    {"link_to_bookmark", kGroup, "a link by way of a bookmark", "go to page 2", ToBookmark},
    {"link_to_missing_page", kGroup, "a link to a page that is not there", "say so and stay", ToMissingPage},
    {"link_uri_with_base", kGroup, "a relative address with a base", "ask for https://example.org/guide/one.html",
     UriWithBase},
    {"link_region", kGroup, "a region: a triangle with legs of 60 mm at (20, 100)", "go to page 2 in the triangle",
     Region},
    {"link_in_turned_composite", kGroup, "a link inside a composite that is turned: 20 x 60 mm at (20, 100)",
     "go to page 2", TurnedComposite},
    {"link_annotation_hidden", kGroup, "a link annotation that is not visible, nor what it holds",
     "ask for https://example.org/", HiddenAnnotation},
    {"link_on_empty_boundary", kGroup, "a link on a text whose boundary is empty", "go to page 2 on the letters",
     TextWithoutBoundary},
    {"link_of_page", kGroup, "an action of the page itself, with a region", "go to page 2", OfThePage},
    {"link_to_attachment", kGroup, "a link to the text attachment", "offer to save it", ToAttachment},
    {"link_to_missing_attachment", kGroup, "a link to an attachment that is not there", "say so", ToMissingAttachment},
    {"link_sound_and_movie", kGroup, "a link that plays a sound, then a movie", "say once that it cannot",
     SoundAndMovie},
    {"opens_on_second_page", kGroup, "the document wants to be opened on page 2", "open there", OpensOnSecondPage},
    {"opens_address", kGroup, "the document wants an address to be opened with it", "open page 1 and ask nothing",
     OpensAddress},
};

} // namespace

std::vector<Deviation> LinkFeatures()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
