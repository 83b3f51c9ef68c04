#include "deviations.h"

namespace samples {

namespace {

void AbsolutePaths(Package& package)
{
    package.Replace(kEntryPart, ">Doc_0/Document.xml<", ">/Doc_0/Document.xml<");
    package.Replace(kDocument, "\"Pages/Page_0/Content.xml\"", "\"/Doc_0/Pages/Page_0/Content.xml\"");
    package.Replace(kDocument, ">DocumentRes.xml<", ">/Doc_0/DocumentRes.xml<");
    package.Replace(kDocumentRes, ">quadrants.png<", ">/Doc_0/Res/quadrants.png<");
    package.Replace(kDocument, ">Annots/Annotations.xml<", ">/Doc_0/Annots/Annotations.xml<");
    package.Replace(kAttachmentList, ">note.txt<", ">/Doc_0/Attachs/note.txt<");
    package.Replace(kTagList, ">Sample.xml<", ">/Doc_0/Tags/Sample.xml<");
}

void MissingPublicRes(Package& package)
{
    package.Remove(kPublicRes);
}

void MissingAnnotationList(Package& package)
{
    package.Remove(kAnnotationList);
    package.Remove(kAnnotations);
}

void MissingPageAnnotations(Package& package)
{
    package.Replace(
        kAnnotationList, "</ofd:Annotations>",
        "<ofd:Page "
        "PageID=\"777\">\n<ofd:FileLoc>Page_777/Annotation.xml</ofd:FileLoc>\n</ofd:Page>\n</ofd:Annotations>");
}

void MissingSignatureList(Package& package)
{
    package.Replace(kEntryPart, "</ofd:DocBody>",
                    "<ofd:Signatures>Doc_0/Signs/Signatures.xml</ofd:Signatures>\n</ofd:DocBody>");
}

void MediaElsewhere(Package& package)
{
    package.Rename(kPicture, "Doc_0/Pictures/quadrants.png");
}

void PathCaseDiffers(Package& package)
{
    package.Rename(kFirstPage, "Doc_0/Pages/Page_0/content.xml");
    package.Rename(kDocumentRes, "Doc_0/DocumentRES.xml");
    package.Rename("Doc_0/Attachs/note.txt", "Doc_0/attachs/Note.txt");
}

void UnreachableParts(Package& package)
{
    package.Add("Doc_0/Pages/Page_9/Content.xml", package.Data(kSecondPage));
    package.Add("Doc_0/Tags/Old.xml", "<old xmlns=\"http://example.org/old\"/>");
    package.Add("Doc_0/Res/unused.bin", QByteArray("nobody refers to this").repeated(9));
}

void StaleDocument(Package& package)
{
    QByteArray stale = package.Data(kDocument);
    package.Add("Doc_0/Document_0.xml", stale);
    stale.replace("Title=\"First page\"", "Title=\"Stale entry\"");
    stale.replace("<ofd:Page ID=\"11\" BaseLoc=\"Pages/Page_1/Content.xml\"/>", "");
    package.Data(kDocument) = stale;
    package.Replace(kEntryPart, "Doc_0/Document.xml", "Doc_0/Document_0.xml");
}

void ResWithoutBase(Package& package)
{
    package.Replace(kDocumentRes, " BaseLoc=\"Res\"", "");
    package.Replace(kDocumentRes, ">quadrants.png<", ">Res/quadrants.png<");
    package.Replace(kPublicRes, " BaseLoc=\"Res\"", "");
}

void DanglingColorSpace(Package& package)
{
    package.Replace(kFirstPage, "<ofd:StrokeColor Value=\"40 80 160\"/>",
                    "<ofd:StrokeColor Value=\"40 80 160\" ColorSpace=\"555\"/>");
    package.Replace(kFirstPage, "<ofd:FillColor Value=\"200 220 250\"/>",
                    "<ofd:FillColor Value=\"200 220 250\" ColorSpace=\"555\"/>");
}

void DanglingDrawParam(Package& package)
{
    package.Replace(kFirstPage, "<ofd:Layer ID=\"7\">", "<ofd:Layer ID=\"7\" DrawParam=\"556\">");
    package.Replace(kFirstPage, "<ofd:PathObject ID=\"9\"", "<ofd:PathObject ID=\"9\" DrawParam=\"557\"");
}

void DanglingPage(Package& package)
{
    package.ReplaceAll(kDocument, "PageID=\"11\"", "PageID=\"558\"");
}

void DrawParamIsFont(Package& package)
{
    package.Replace(kFirstPage, "<ofd:Layer ID=\"7\">", "<ofd:Layer ID=\"7\" DrawParam=\"1\">");
}

constexpr const char* kGroup = "References";

const Deviation kTable[] = {
    {"absolute_paths", kGroup, "pages, lists and files are referred to from the package root", "resolve from the root",
     AbsolutePaths},
    {"missing_public_res", kGroup, "the public resource part is not there", "open with substitute fonts",
     MissingPublicRes},
    {"missing_annotation_list", kGroup, "the list of annotations is not there", "open without annotations",
     MissingAnnotationList},
    {"missing_page_annotations", kGroup, "an entry of the annotation list names an unknown page and a missing file",
     "skip the entry, keep the others", MissingPageAnnotations},
    {"missing_signature_list", kGroup, "the list of signatures is not there", "open as if it had none",
     MissingSignatureList},
    {"media_in_other_folder", kGroup, "the picture is not in the folder that the resources name",
     "find it by its base name", MediaElsewhere},
    {"path_case_differs", kGroup, "three references differ from part names in letter case",
     "find the parts ignoring case", PathCaseDiffers},
    {"unreachable_parts", kGroup, "the package has parts that nothing refers to", "ignore them, keep them on save",
     UnreachableParts},
    {"stale_document_part", kGroup, "an older Document.xml stands beside the live Document_0.xml",
     "follow DocRoot: two pages, no stale entry", StaleDocument},
    {"res_without_base_loc", kGroup, "resource parts without BaseLoc", "resolve from the folder of the part",
     ResWithoutBase},
    {"dangling_color_space", kGroup, "colours name a colour space that does not exist",
     "guess it by the number of values", DanglingColorSpace},
    {"dangling_draw_param", kGroup, "a layer and a path name draw parameters that do not exist", "use the defaults",
     DanglingDrawParam},
    {"dangling_dest_page", kGroup, "an outline entry and a bookmark lead to a page that does not exist",
     "list them; going there does nothing", DanglingPage},
    {"draw_param_is_font", kGroup, "a layer's draw parameter is the id of a font", "use the defaults", DrawParamIsFont},
};

} // namespace

std::vector<Deviation> ReferenceDeviations()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
