#include "deviations.h"

namespace samples {

namespace {

void Version11(Package& package)
{
    package.Replace(kEntryPart, "Version=\"1.0\"", "Version=\"1.1\"");
}

void Version12(Package& package)
{
    package.Replace(kEntryPart, "Version=\"1.0\"", "Version=\"1.2\"");
}

void OrderInDocument(Package& package)
{
    MoveLast(package, kDocument, "Annotations", "Document");
    MoveLast(package, kDocument, "CommonData", "Document");
}

void OrderInCommonData(Package& package)
{
    MoveLast(package, kDocument, "PageArea", "CommonData");
    MoveLast(package, kDocument, "MaxUnitID", "CommonData");
}

void OrderInDocInfo(Package& package)
{
    MoveLast(package, kEntryPart, "Title", "DocInfo");
    MoveLast(package, kEntryPart, "DocID", "DocInfo");
}

void OrderInPage(Package& package)
{
    MoveLast(package, kFirstPage, "Template", "Page");
    MoveLast(package, kSecondPage, "Area", "Page");
}

void OrderInPath(Package& package)
{
    const QByteArray stroke = "<ofd:StrokeColor Value=\"40 80 160\"/>";
    package.Replace(kFirstPage, stroke, "");
    package.Replace(kFirstPage, "</ofd:PathObject>", stroke + "</ofd:PathObject>");
}

void OrderInText(Package& package)
{
    package.Replace(kFirstPage, "<ofd:FillColor Value=\"0 0 0\"/>", "<ofd:FillColor Value=\"0 0 0\"/><ofd:Clips/>");
}

void MaxUnitIdMissing(Package& package)
{
    package.Replace(kDocument, ElementText(package, kDocument, "MaxUnitID"), "");
}

void MaxUnitIdTooLow(Package& package)
{
    package.Replace(kDocument, ElementText(package, kDocument, "MaxUnitID"), "<ofd:MaxUnitID>5</ofd:MaxUnitID>");
}

void PageAreaMissing(Package& package)
{
    package.Replace(kDocument, ElementText(package, kDocument, "PageArea"), "");
}

void PageWithoutArea(Package& package)
{
    package.Replace(kFirstPage, ElementText(package, kFirstPage, "Area"), "");
    package.Replace(kSecondPage, ElementText(package, kSecondPage, "Area"), "");
    package.Replace(kTemplate, ElementText(package, kTemplate, "Area"), "");
    package.Replace(kDocument, "0 0 210 297", "0 0 180 240");
}

void DuplicateIds(Package& package)
{
    const QByteArray text = ElementText(package, kFirstPage, "TextObject");
    AddToFirstPage(package, QByteArray(text).replace("Boundary=\"20 ", "Boundary=\"100 "));
    package.Replace(kSecondPage, "<ofd:TextObject ID=\"13\"", "<ofd:TextObject ID=\"8\"");
}

void CropBox(Package& package)
{
    for (const QString& part : {kFirstPage, kSecondPage})
        package.Replace(part, "</ofd:Area>", "<ofd:CropBox>5 5 200 287</ofd:CropBox>\n</ofd:Area>");
}

void ApplicationBox(Package& package)
{
    package.Replace(kFirstPage, "</ofd:Area>", "<ofd:ApplicationBox>10 12 190 270</ofd:ApplicationBox>\n</ofd:Area>");
}

void TemplateWithoutName(Package& package)
{
    package.Replace(kDocument, " Name=\"Header\"", "");
    package.Replace(kDocument, " ZOrder=\"Background\"", "");
}

void OutlinesEmpty(Package& package)
{
    package.Replace(kDocument, ElementText(package, kDocument, "Outlines"), "<ofd:Outlines/>");
}

void OutlineTitlesEndInLineFeed(Package& package)
{
    package.Replace(kDocument, "Title=\"First page\"", "Title=\"First page\n\"");
}

void BookmarksUnprefixed(Package& package)
{
    package.Replace(
        kDocument, ElementText(package, kDocument, "Bookmarks"),
        "<ofd:Bookmarks><Bookmark Name=\"Corner\"><Dest Type=\"XYZ\" PageID=\"11\" Right=\"120\" Bottom=\"90\"/>"
        "</Bookmark></ofd:Bookmarks>");
}

void UnknownPermissions(Package& package)
{
    package.Replace(kDocument, "<ofd:Bookmarks>",
                    "<ofd:Permissions><ofd:Edit>true</ofd:Edit><ofd:CopyText>true</ofd:CopyText>"
                    "<ofd:ContentRegist>false</ofd:ContentRegist></ofd:Permissions>\n<ofd:Bookmarks>");
}

void PageWithoutContent(Package& package)
{
    package.Replace(kSecondPage, ElementText(package, kSecondPage, "Content"), "");
}

void TemplateTwice(Package& package)
{
    package.Replace(kFirstPage, "<ofd:Area>", "<ofd:Template TemplateID=\"3\" ZOrder=\"Foreground\"/>\n<ofd:Area>");
}

void LayersOfEqualNames(Package& package)
{
    package.Replace(kFirstPage, "<ofd:Layer ID=\"7\">",
                    "<ofd:Layer ID=\"900\" Name=\"Same\"/>\n<ofd:Layer ID=\"7\" Name=\"Same\">");
    package.Replace(kFirstPage, "</ofd:Content>", "<ofd:Layer ID=\"901\" Type=\"Custom\"/>\n</ofd:Content>");
}

constexpr const char* kGroup = "Document";

const Deviation kTable[] = {
    {"version_1_1", kGroup, "OFD.xml says version 1.1", "do not test the version", Version11},
    {"version_1_2", kGroup, "OFD.xml says version 1.2", "do not test the version", Version12},
    {"order_in_document", kGroup, "CommonData and the lists stand at the end of Document",
     "read children in any order; never reorder them", OrderInDocument},
    {"order_in_common_data", kGroup, "PageArea and MaxUnitID come last in CommonData",
     "read children in any order; never reorder them", OrderInCommonData},
    {"order_in_doc_info", kGroup, "Title and DocID come last in DocInfo",
     "read children in any order; never reorder them", OrderInDocInfo},
    {"order_in_page", kGroup, "Template and Area stand after Content", "read children in any order; never reorder them",
     OrderInPage},
    {"order_in_path_object", kGroup, "a path's colour stands after its data", "read children in any order",
     OrderInPath},
    {"order_in_text_object", kGroup, "a text's clips stand after its colour", "read children in any order",
     OrderInText},
    {"max_unit_id_missing", kGroup, "there is no MaxUnitID", "compute it; insert it when ids are given out",
     MaxUnitIdMissing},
    {"max_unit_id_too_low", kGroup, "MaxUnitID is lower than ids in use", "compute it", MaxUnitIdTooLow},
    {"page_area_missing", kGroup, "CommonData has no PageArea", "use the page's own area", PageAreaMissing},
    {"page_without_area", kGroup, "neither pages nor template have an area", "use that of the document: 180 by 240",
     PageWithoutArea},
    {"duplicate_unit_ids", kGroup, "two objects of a page and one of the other share an id",
     "show all; look up by page, the first wins", DuplicateIds},
    {"crop_box", kGroup, "page areas have a CropBox", "ignore it, keep it on save", CropBox},
    {"application_box_off_origin", kGroup, "the application box does not start at 0 0",
     "the physical box stays the page's origin", ApplicationBox},
    {"template_without_name", kGroup, "the template has neither name nor z-order", "treat it as a nameless background",
     TemplateWithoutName},
    {"outlines_flat", kGroup, "a flat outline of two entries with one action each", "list both"},
    {"outlines_empty", kGroup, "an empty Outlines element", "an empty outline, no error", OutlinesEmpty},
    {"outline_title_line_feed", kGroup, "an outline title ends in a line feed", "trim it for show, keep it on save",
     OutlineTitlesEndInLineFeed},
    {"bookmarks_unprefixed", kGroup, "a bookmark without prefix whose destination has Right and Bottom only",
     "list it; a point at 0 0; edit in place", BookmarksUnprefixed},
    {"permissions_unknown_children", kGroup, "Permissions has children that the format does not know",
     "ignore them, keep them on save", UnknownPermissions},
    {"page_without_content", kGroup, "the second page has no content", "an empty page", PageWithoutContent},
    {"template_twice", kGroup, "a page uses one template as background and as foreground", "draw it in both places",
     TemplateTwice},
    {"layers_of_equal_names", kGroup, "two layers share a name; a custom layer; two layers are empty", "list them all",
     LayersOfEqualNames},
};

} // namespace

std::vector<Deviation> DocumentDeviations()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
