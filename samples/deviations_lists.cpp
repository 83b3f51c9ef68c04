// Deviations of annotations, attachments and custom tags.
#include "deviations.h"

namespace samples {

namespace {

void CreatorAndDateMissing(Package& package)
{
    package.Replace(kAnnotations, " Creator=\"tetobaisfla\" LastModDate=\"2024-05-20\"", "");
}

QByteArray Note(int id, const QByteArray& attributes, int top)
{
    return "<ofd:Annot ID=\"" + QByteArray::number(id) +
           "\" Type=\"Highlight\" Subtype=\"Highlight\" Creator=\"tetobaisfla\" " + attributes + "><ofd:Remark>Note " +
           QByteArray::number(id) + "</ofd:Remark><ofd:Appearance Boundary=\"100 " + QByteArray::number(top) +
           " 40 6\"><ofd:PathObject ID=\"" + QByteArray::number(id + 50) +
           "\" Boundary=\"0 0 40 6\" Stroke=\"false\" Fill=\"true\"><ofd:FillColor Value=\"255 230 90\"/>"
           "<ofd:AbbreviatedData>M 0 0 L 40 0 L 40 6 L 0 6 "
           "C</ofd:AbbreviatedData></ofd:PathObject></ofd:Appearance></ofd:Annot>\n";
}

void AddAnnotations(Package& package, const QByteArray& annotations)
{
    package.Replace(kAnnotations, "</ofd:PageAnnot>", annotations + "</ofd:PageAnnot>");
}

void DateForms(Package& package)
{
    AddAnnotations(package, Note(900, "LastModDate=\"2024-05-20 08:30:00\"", 100) +
                                Note(901, "LastModDate=\"2024-05-20-08-31-00\"", 110) +
                                Note(902, "LastModDate=\"20240520\"", 120));
}

void EmptyAppearance(Package& package)
{
    AddAnnotations(
        package,
        "<ofd:Annot ID=\"900\" Type=\"Stamp\" Subtype=\"SignatureInFile\" Creator=\"x\" LastModDate=\"2024-05-20\">"
        "<ofd:Appearance Boundary=\"150 100 30 30\"/></ofd:Annot>\n");
}

void SubtypeMissing(Package& package)
{
    package.Replace(kAnnotations, " Subtype=\"Stamp\"", "");
}

void DuplicateAnnotationIds(Package& package)
{
    AddAnnotations(package, Note(900, "LastModDate=\"2024-05-20\"", 100) +
                                Note(900, "LastModDate=\"2024-05-20\"", 110) +
                                Note(0, "LastModDate=\"2024-05-20\"", 120));
}

void OneEntryPerAnnotation(Package& package)
{
    package.Replace(kAnnotationList, "</ofd:Annotations>",
                    "<ofd:Page "
                    "PageID=\"6\">\n<ofd:FileLoc>/Doc_0/Pages/Page_0/Annotation.xml</ofd:FileLoc>\n</ofd:Page>\n</"
                    "ofd:Annotations>");
    package.Add(
        "Doc_0/Pages/Page_0/Annotation.xml",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ofd:PageAnnot xmlns:ofd=\"http://www.ofdspec.org/2016\">\n" +
            Note(900, "LastModDate=\"2024-05-20\"", 100) + "</ofd:PageAnnot>\n");
}

void AttachmentHidden(Package& package)
{
    package.Replace(kAttachmentList, " Name=\"note\"", " Name=\"note\" Visible=\"false\"");
}

void AttachmentIdMissing(Package& package)
{
    QByteArray& list = package.Data(kAttachmentList);
    const int at = list.indexOf(" ID=\"a");
    list.remove(at, list.indexOf(" Name", at) - at);
}

void AttachmentPlainIds(Package& package)
{
    package.ReplaceAll(kAttachmentList, " ID=\"a", " ID=\"");
}

void AttachmentFormatMissing(Package& package)
{
    package.Replace(kAttachmentList, " Format=\"txt\"", "");
}

void AttachmentSizeMissing(Package& package)
{
    package.Replace(kAttachmentList, " Size=\"0.3906\"", "");
}

void AttachmentDateMissing(Package& package)
{
    package.ReplaceAll(kAttachmentList, " CreationDate=\"2024-05-20T08:30:00\"", "");
}

void AttachmentDateForms(Package& package)
{
    package.Replace(kAttachmentList, "2024-05-20T08:30:00", "2024/05/20 08:30:00");
    package.Replace(kAttachmentList, "2024-05-20T08:30:00", "2024-05-20T08:30:00 ");
}

void AttachmentSizeWrong(Package& package)
{
    package.Replace(kAttachmentList, " Size=\"0.3906\"", " Size=\"30.9\"");
}

void AttachmentNameDiffers(Package& package)
{
    package.Replace(kAttachmentList, " Name=\"note\"", " Name=\"Letter of 20 May.txt\"");
}

void TypeId(Package& package)
{
    package.Replace(kTagList, " NameSpace=\"http://example.org/sample\"", " TypeID=\"sp\"");
}

void RefToZero(Package& package)
{
    package.Replace(kTagFile, ">8</ofd:ObjectRef>", ">0</ofd:ObjectRef>");
}

void ChineseTags(Package& package)
{
    package.Data(kTagFile) =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<sp:样例 xmlns:sp=\"http://example.org/sample\" "
        "xmlns:ofd=\"http://www.ofdspec.org/2016\" version=\"1.0\">\n"
        "<sp:名称><sp:ObjectRef PageRef=\"6\">8</sp:ObjectRef></sp:名称>\n"
        "<sp:方框><ObjectRef PageRef=\"6\">9</ObjectRef></sp:方框>\n</sp:样例>\n";
}

void TagsWithoutObjects(Package& package)
{
    package.Data(kTagFile) =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<sp:Sample xmlns:sp=\"http://example.org/sample\">\n"
        "<sp:Name/>\n<sp:Group><sp:Part/><sp:Part/></sp:Group>\n</sp:Sample>\n";
}

void TagsWithData(Package& package)
{
    package.Replace(kTagFile, "<sp:Box>",
                    "<sp:Total currency=\"CNY\"><ofd:ObjectData>a=b</ofd:ObjectData></sp:Total>\n<sp:Box>");
}

void EscapedTagNames(Package& package)
{
    package.Replace(kTagFile, "</sp:Sample>", "<sp:Taxpayer_x0020_No/>\n<sp:_x0031_st/>\n<sp:_xFFFF_/>\n</sp:Sample>");
}

constexpr const char* kAnnotations = "Annotations";
constexpr const char* kAttachments = "Attachments";
constexpr const char* kTags = "Custom tags";

const Deviation kTable[] = {
    {"annotation_readable", kAnnotations, "a stamp with creator, date and remark", "list it"},
    {"annotation_creator_and_date_missing", kAnnotations, "an annotation without creator and date",
     "list it with empty texts", CreatorAndDateMissing},
    {"annotation_date_forms", kAnnotations, "dates with time, with dashes, without dashes", "keep them as they are",
     DateForms},
    {"annotation_appearance_empty", kAnnotations, "a stamp with an empty appearance, the place holder of a signature",
     "do not list it, draw nothing", EmptyAppearance},
    {"annotation_subtype_missing", kAnnotations, "a stamp without subtype", "take its type", SubtypeMissing},
    {"annotation_ids_duplicate", kAnnotations, "two annotations share an id, another has the id 0",
     "list all under ids of their own", DuplicateAnnotationIds},
    {"annotation_two_files_for_page", kAnnotations, "two entries of the annotation list for one page",
     "list the annotations of both", OneEntryPerAnnotation},
    {"attachment_hidden", kAttachments, "all attachments are invisible",
     "count them, do not show them, never drop them", AttachmentHidden},
    {"attachment_id_missing", kAttachments, "an attachment without id", "give it a number in memory",
     AttachmentIdMissing},
    {"attachment_plain_ids", kAttachments, "attachment ids are plain numbers", "take them as they are",
     AttachmentPlainIds},
    {"attachment_format_missing", kAttachments, "an attachment without format", "take the extension of its file: txt",
     AttachmentFormatMissing},
    {"attachment_size_missing", kAttachments, "an attachment without size", "take the size of its part",
     AttachmentSizeMissing},
    {"attachment_date_missing", kAttachments, "attachments without date", "show an empty date", AttachmentDateMissing},
    {"attachment_date_forms", kAttachments, "a date with slashes, another with a trailing blank", "trim and keep them",
     AttachmentDateForms},
    {"attachment_size_wrong", kAttachments, "an attachment states a wrong size", "take the size of its part: 0.3906 kB",
     AttachmentSizeWrong},
    {"attachment_name_differs", kAttachments, "an attachment's name is not that of its part and ends in its format",
     "show the name without the format", AttachmentNameDiffers},
    {"type_id_for_name_space", kTags, "the tag list has TypeID in place of NameSpace", "load the tags", TypeId},
    {"object_ref_to_zero", kTags, "a tag refers to object 0", "show the tag without an object", RefToZero},
    {"chinese_tag_names", kTags, "tags have Chinese names; references have the tags' prefix or none",
     "show names and references", ChineseTags},
    {"tags_without_objects", kTags, "no tag refers to an object", "show the tree", TagsWithoutObjects},
    {"tags_with_data", kTags, "a tag has an attribute and literal data that contains an equals sign", "keep both",
     TagsWithData},
    {"escaped_tag_names", kTags, "tag names are escaped: a blank, a leading digit, the empty name",
     "show them unescaped", EscapedTagNames},
};

} // namespace

std::vector<Deviation> ListDeviations()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
