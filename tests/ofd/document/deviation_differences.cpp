#include "deviation_differences.h"

namespace {

struct Difference
{
    const char* name;  // of the sample
    const char* lines; // UTF-8
};

const Difference table[] = {
    {"annotation_appearance_empty",
     "+  annot 900 type 8 \"SignatureInFile\" by \"x\" on \"2024-05-20\" says \"\" (150.0 100.0 "
     "180.0 130.0) unlisted locked\n"},
    {"annotation_creator_and_date_missing",
     "-  annot 15 type 8 \"Stamp\" by \"tetobaisfla\" on \"2024-05-20\" says \"A stamp\" (150.0 "
     "20.0 170.0 40.0)\n"
     "+  annot 15 type 8 \"Stamp\" by \"\" on \"\" says \"A stamp\" (150.0 20.0 170.0 40.0)\n"},
    {"annotation_date_forms", "+  annot 900 type 4 \"Highlight\" by \"tetobaisfla\" on \"2024-05-20 08:30:00\" says "
                              "\"Note 900\" (100.0 100.0 140.0 106.0) locked\n"
                              "+  annot 901 type 4 \"Highlight\" by \"tetobaisfla\" on \"2024-05-20-08-31-00\" says "
                              "\"Note 901\" (100.0 110.0 140.0 116.0) locked\n"
                              "+  annot 902 type 4 \"Highlight\" by \"tetobaisfla\" on \"20240520\" says \"Note 902\" "
                              "(100.0 120.0 140.0 126.0) locked\n"},
    {"annotation_ids_duplicate",
     "+  annot 900 type 4 \"Highlight\" by \"tetobaisfla\" on \"2024-05-20\" says \"Note 900\" "
     "(100.0 100.0 140.0 106.0) locked\n"
     "+  annot 951 type 4 \"Highlight\" by \"tetobaisfla\" on \"2024-05-20\" says \"Note 900\" "
     "(100.0 110.0 140.0 116.0) locked\n"
     "+  annot 952 type 4 \"Highlight\" by \"tetobaisfla\" on \"2024-05-20\" says \"Note 0\" "
     "(100.0 120.0 140.0 126.0) locked\n"},
    {"annotation_two_files_for_page",
     "+  annot 900 type 4 \"Highlight\" by \"tetobaisfla\" on \"2024-05-20\" says \"Note 900\" "
     "(100.0 100.0 140.0 106.0) locked\n"},
    {"attachment_date_forms", "-attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17\n"
                              "+attachment \"note\" \"txt\" \"2024/05/20 08:30:00\" 0.39 #17\n"},
    {"attachment_date_missing", "-attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17\n"
                                "-attachment \"machine\" \"xml\" \"2024-05-20T08:30:00\" 0.01 #18 hidden\n"
                                "+attachment \"note\" \"txt\" \"\" 0.39 #17\n"
                                "+attachment \"machine\" \"xml\" \"\" 0.01 #18 hidden\n"},
    {"attachment_hidden", "-attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17\n"
                          "+attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17 hidden\n"},
    {"attachment_id_missing", "-attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17\n"
                              "+attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #19\n"},
    {"attachment_name_differs", "-attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17\n"
                                "+attachment \"Letter of 20 May\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17\n"},
    {"blanks_only_text", "+  text     \n"
                         "+  text   ABC\n"
                         "+  object 900\n"
                         "+  object 901\n"},
    {"bookmarks_unprefixed", "-bookmark \"Second page\" -> m0 p11/1 (0.0 20.0 0.0 0.0) x0\n"
                             "+bookmark \"Corner\" -> m0 p11/1 (0.0 0.0 120.0 90.0) x0\n"},
    {"cff_named_ttf", "+  text BLOCKS 12\n"
                      "+  object 901\n"},
    {"character_references", "-bookmark \"Second page\" -> m0 p11/1 (0.0 20.0 0.0 0.0) x0\n"
                             "+bookmark \"Second & page\" -> m0 p11/1 (0.0 20.0 0.0 0.0) x0\n"},
    {"chinese_tag_names", "-tag \"Sample\" [version=1.0]\n"
                          "-  tag \"Name\" 6:8\n"
                          "-  tag \"Box\" 6:9\n"
                          "+tag \"样例\" [version=1.0]\n"
                          "+  tag \"名称\" 6:8\n"
                          "+  tag \"方框\" 6:9\n"},
    {"dangling_dest_page", "-outline \"Second page\" -> m0 p11/1 (0.0 10.0 0.0 0.0) x0\n"
                           "-bookmark \"Second page\" -> m0 p11/1 (0.0 20.0 0.0 0.0) x0\n"
                           "+outline \"Second page\" -> m0 p558/-1 (0.0 10.0 0.0 0.0) x0\n"
                           "+bookmark \"Second page\" -> m0 p558/-1 (0.0 20.0 0.0 0.0) x0\n"},
    {"deltas_with_commas", "+  text FOUR\n"
                           "+  text GLUE\n"
                           "+  object 900\n"
                           "+  object 901\n"},
    {"duplicate_unit_ids", "-  object 13\n"
                           "+  text duplicate_unit_ids\n"
                           "+  object 8\n"
                           "+  object 8\n"},
    {"escaped_tag_names", "+  tag \"Taxpayer No\"\n"
                          "+  tag \"1st\"\n"
                          "+  tag \"\"\n"},
    {"fonts_without_file", "+  text 宋体文字\n"
                           "+  text Unknown\n"
                           "+  object 902\n"
                           "+  object 903\n"},
    {"gb18030_called_utf8", "+  text 价税合计金额\n"
                            "+  object 900\n"},
    {"glyph_clusters", "+  text BLOCKS 12\n"
                       "+  text MXZ\n"
                       "+  object 901\n"
                       "+  object 902\n"},
    {"glyphs_without_font_file", "+  text TEXT\n"
                                 "+  object 900\n"},
    {"integrity_list", "-rights 0111\n"
                       "+rights 0111 signed\n"},
    {"layers_of_equal_names", "+  layer 1 \"Same\"\n"
                              "+  layer 1 \"Same\"\n"},
    {"line_feed_in_text", "+  text ABC\n"
                          "+  object 900\n"},
    {"missing_annotation_list",
     "-  annot 15 type 8 \"Stamp\" by \"tetobaisfla\" on \"2024-05-20\" says \"A stamp\" (150.0 "
     "20.0 170.0 40.0)\n"},
    {"object_invisible", "-  object 9\n"},
    {"object_ref_to_zero", "-  tag \"Name\" 6:8\n"
                           "+  tag \"Name\"\n"},
    {"objects_without_id", "-  object 9\n"
                           "-  object 10\n"
                           "-  object 13\n"},
    {"outlines_empty", "-outline \"First page\" -> m0 p6/0 (0.0 10.0 0.0 0.0) x0\n"
                       "-outline \"Second page\" -> m0 p11/1 (0.0 10.0 0.0 0.0) x0\n"},
    {"page_without_area", "-page 6 210x297\n"
                          "-page 11 210x297\n"
                          "+page 6 180x240\n"
                          "+page 11 180x240\n"},
    {"page_without_content", "-  layer 1 \"\"\n"
                             "-  text Second page\n"
                             "-  object 13\n"
                             "-  object 14\n"},
    {"permissions_unknown_children", "-rights 0111\n"
                                     "+rights 1111\n"},
    {"radial_shading", "+  object 900\n"},
    {"seal_in_slices", "-rights 0111\n"
                       "+rights 0111 signed\n"},
    {"seal_picture_is_package", "-rights 0111\n"
                                "+rights 0111 signed\n"},
    {"signature_order", "-rights 0111\n"
                        "+rights 0111 signed\n"},
    {"signature_provider_children", "-rights 0111\n"
                                    "+rights 0111 signed\n"},
    {"signature_without_stamp", "-rights 0111\n"
                                "+rights 0111 signed\n"},
    {"signed", "-rights 0111\n"
               "+rights 0111 signed\n"},
    {"signed_digest_mismatch", "-  text Second page\n"
                               "-rights 0111\n"
                               "+  text Altered one\n"
                               "+rights 0111 signed\n"},
    {"surplus_deltas", "+  text FOUR\n"
                       "+  text FOUR\n"
                       "+  object 900\n"
                       "+  object 901\n"},
    {"tag_file_empty_prefix", "-tag \"Sample\" [version=1.0]\n"
                              "+tag \"Sample\"\n"},
    {"tags_with_data", "+  tag \"Total\" [currency=CNY] [ObjectData=a=b]\n"},
    {"tags_without_objects", "-tag \"Sample\" [version=1.0]\n"
                             "-  tag \"Name\" 6:8\n"
                             "-  tag \"Box\" 6:9\n"
                             "+tag \"Sample\"\n"
                             "+  tag \"Name\"\n"
                             "+  tag \"Group\"\n"
                             "+    tag \"Part\"\n"
                             "+    tag \"Part\"\n"},
    {"template_twice", "+  template 3 Foreground\n"},
    {"template_without_name", "-template 3 \"Header\" Background\n"
                              "+template 3 \"\" Background\n"},
    {"text_boundary_empty", "+  text VISIBLE\n"
                            "+  text VISIBLE\n"
                            "+  text VISIBLE\n"
                            "+  object 900\n"
                            "+  object 901\n"
                            "+  object 902\n"
                            "+  object 903\n"},
    {"text_size_in_matrix", "+  text LARGE\n"
                            "+  object 900\n"},
    {"too_few_deltas", "+  text REPEATED\n"
                       "+  text REPEATED\n"
                       "+  object 900\n"
                       "+  object 901\n"},
    {"trans_flag_on_clips", "+  object 900\n"
                            "+  object 901\n"
                            "+  object 902\n"},
    {"truetype_named_cff", "+  text BLOCKS 12\n"
                           "+  object 901\n"},
    {"truetype_named_otf", "+  text BLOCKS 12\n"
                           "+  object 901\n"},
    {"truetype_without_cmap", "+  text BLOCKS 12\n"
                              "+  object 901\n"},
    {"truetype_without_tables", "+  text BLOCKS 12\n"
                                "+  object 901\n"},
    {"undeclared_prefix", "-tag \"Sample\" [version=1.0]\n"
                          "+tag \"Sample\"\n"},
};

QMap<QString, QString> MapOf()
{
    QMap<QString, QString> map;
    for (const Difference& difference : table)
        map.insert(QString::fromLatin1(difference.name), QString::fromUtf8(difference.lines));
    return map;
}

} // namespace

const QMap<QString, QString>& DeviationDifferences()
{
    static const QMap<QString, QString> differences = MapOf();
    return differences;
}
