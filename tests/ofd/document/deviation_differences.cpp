#include "deviation_differences.h"

const QMap<QString, QString>& DeviationDifferences()
{
    static const QMap<QString, QString> differences = {
        {QStringLiteral("annotation_appearance_empty"),
         QString::fromUtf8("+  annot 900 type 8 \"SignatureInFile\" by \"x\" on \"2024-05-20\" says \"\" (150.0 100.0 "
                           "180.0 130.0) unlisted locked\n")},
        {QStringLiteral("annotation_creator_and_date_missing"),
         QString::fromUtf8("-  annot 15 type 8 \"Stamp\" by \"tetobaisfla\" on \"2024-05-20\" says \"A stamp\" (150.0 "
                           "20.0 170.0 40.0)\n"
                           "+  annot 15 type 8 \"Stamp\" by \"\" on \"\" says \"A stamp\" (150.0 20.0 170.0 40.0)\n")},
        {QStringLiteral("annotation_date_forms"),
         QString::fromUtf8("+  annot 900 type 4 \"Highlight\" by \"tetobaisfla\" on \"2024-05-20 08:30:00\" says "
                           "\"Note 900\" (100.0 100.0 140.0 106.0) locked\n"
                           "+  annot 901 type 4 \"Highlight\" by \"tetobaisfla\" on \"2024-05-20-08-31-00\" says "
                           "\"Note 901\" (100.0 110.0 140.0 116.0) locked\n"
                           "+  annot 902 type 4 \"Highlight\" by \"tetobaisfla\" on \"20240520\" says \"Note 902\" "
                           "(100.0 120.0 140.0 126.0) locked\n")},
        {QStringLiteral("annotation_ids_duplicate"),
         QString::fromUtf8("+  annot 900 type 4 \"Highlight\" by \"tetobaisfla\" on \"2024-05-20\" says \"Note 900\" "
                           "(100.0 100.0 140.0 106.0) locked\n"
                           "+  annot 901 type 4 \"Highlight\" by \"tetobaisfla\" on \"2024-05-20\" says \"Note 900\" "
                           "(100.0 110.0 140.0 116.0) locked\n"
                           "+  annot 902 type 4 \"Highlight\" by \"tetobaisfla\" on \"2024-05-20\" says \"Note 0\" "
                           "(100.0 120.0 140.0 126.0) locked\n")},
        {QStringLiteral("annotation_two_files_for_page"),
         QString::fromUtf8("+  annot 900 type 4 \"Highlight\" by \"tetobaisfla\" on \"2024-05-20\" says \"Note 900\" "
                           "(100.0 100.0 140.0 106.0) locked\n")},
        {QStringLiteral("attachment_date_forms"),
         QString::fromUtf8("-attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17\n"
                           "+attachment \"note\" \"txt\" \"2024/05/20 08:30:00\" 0.39 #17\n")},
        {QStringLiteral("attachment_date_missing"),
         QString::fromUtf8("-attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17\n"
                           "-attachment \"machine\" \"xml\" \"2024-05-20T08:30:00\" 0.01 #18 hidden\n"
                           "+attachment \"note\" \"txt\" \"\" 0.39 #17\n"
                           "+attachment \"machine\" \"xml\" \"\" 0.01 #18 hidden\n")},
        {QStringLiteral("attachment_hidden"),
         QString::fromUtf8("-attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17\n"
                           "+attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17 hidden\n")},
        {QStringLiteral("attachment_id_missing"),
         QString::fromUtf8("-attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17\n"
                           "+attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #19\n")},
        {QStringLiteral("attachment_name_differs"),
         QString::fromUtf8("-attachment \"note\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17\n"
                           "+attachment \"Letter of 20 May\" \"txt\" \"2024-05-20T08:30:00\" 0.39 #17\n")},
        {QStringLiteral("blanks_only_text"), QString::fromUtf8("+  text     \n"
                                                               "+  text   ABC\n"
                                                               "+  object 900\n"
                                                               "+  object 901\n")},
        {QStringLiteral("bookmarks_unprefixed"),
         QString::fromUtf8("-bookmark \"Second page\" -> m0 p11/1 (0.0 20.0 0.0 0.0) x0\n"
                           "+bookmark \"Corner\" -> m0 p11/1 (0.0 0.0 120.0 90.0) x0\n")},
        {QStringLiteral("cff_named_ttf"), QString::fromUtf8("+  text BLOCKS 12\n"
                                                            "+  object 901\n")},
        {QStringLiteral("character_references"),
         QString::fromUtf8("-bookmark \"Second page\" -> m0 p11/1 (0.0 20.0 0.0 0.0) x0\n"
                           "+bookmark \"Second & page\" -> m0 p11/1 (0.0 20.0 0.0 0.0) x0\n")},
        {QStringLiteral("chinese_tag_names"), QString::fromUtf8("-tag \"Sample\" [version=1.0]\n"
                                                                "-  tag \"Name\" 6:8\n"
                                                                "-  tag \"Box\" 6:9\n"
                                                                "+tag \"样例\" [version=1.0]\n"
                                                                "+  tag \"名称\" 6:8\n"
                                                                "+  tag \"方框\" 6:9\n")},
        {QStringLiteral("dangling_dest_page"),
         QString::fromUtf8("-outline \"Second page\" -> m0 p11/1 (0.0 10.0 0.0 0.0) x0\n"
                           "-bookmark \"Second page\" -> m0 p11/1 (0.0 20.0 0.0 0.0) x0\n"
                           "+outline \"Second page\" -> m0 p558/-1 (0.0 10.0 0.0 0.0) x0\n"
                           "+bookmark \"Second page\" -> m0 p558/-1 (0.0 20.0 0.0 0.0) x0\n")},
        {QStringLiteral("duplicate_unit_ids"), QString::fromUtf8("-  object 13\n"
                                                                 "+  text duplicate_unit_ids\n"
                                                                 "+  object 8\n"
                                                                 "+  object 8\n")},
        {QStringLiteral("escaped_tag_names"), QString::fromUtf8("+  tag \"Taxpayer No\"\n"
                                                                "+  tag \"1st\"\n"
                                                                "+  tag \"\"\n")},
        {QStringLiteral("fonts_without_file"), QString::fromUtf8("+  text 宋体文字\n"
                                                                 "+  text Unknown\n"
                                                                 "+  object 902\n"
                                                                 "+  object 903\n")},
        {QStringLiteral("glyph_clusters"), QString::fromUtf8("+  text BLOCKS 12\n"
                                                             "+  text MXZ\n"
                                                             "+  object 901\n"
                                                             "+  object 902\n")},
        {QStringLiteral("glyphs_without_font_file"), QString::fromUtf8("+  text TEXT\n"
                                                                       "+  object 900\n")},
        {QStringLiteral("integrity_list"), QString::fromUtf8("-rights 0111\n"
                                                             "+rights 0111 signed\n")},
        {QStringLiteral("layers_of_equal_names"), QString::fromUtf8("+  layer 1 \"Same\"\n"
                                                                    "+  layer 1 \"Same\"\n")},
        {QStringLiteral("line_feed_in_text"), QString::fromUtf8("+  text ABC\n"
                                                                "+  object 900\n")},
        {QStringLiteral("missing_annotation_list"),
         QString::fromUtf8("-  annot 15 type 8 \"Stamp\" by \"tetobaisfla\" on \"2024-05-20\" says \"A stamp\" (150.0 "
                           "20.0 170.0 40.0)\n")},
        {QStringLiteral("object_invisible"), QString::fromUtf8("-  object 9\n")},
        {QStringLiteral("object_ref_to_zero"), QString::fromUtf8("-  tag \"Name\" 6:8\n"
                                                                 "+  tag \"Name\"\n")},
        {QStringLiteral("objects_without_id"), QString::fromUtf8("-  object 9\n"
                                                                 "-  object 10\n"
                                                                 "-  object 13\n")},
        {QStringLiteral("outlines_empty"),
         QString::fromUtf8("-outline \"First page\" -> m0 p6/0 (0.0 10.0 0.0 0.0) x0\n"
                           "-outline \"Second page\" -> m0 p11/1 (0.0 10.0 0.0 0.0) x0\n")},
        {QStringLiteral("page_without_area"), QString::fromUtf8("-page 6 210x297\n"
                                                                "-page 11 210x297\n"
                                                                "+page 6 180x240\n"
                                                                "+page 11 180x240\n")},
        {QStringLiteral("page_without_content"), QString::fromUtf8("-  layer 1 \"\"\n"
                                                                   "-  text Second page\n"
                                                                   "-  object 13\n"
                                                                   "-  object 14\n")},
        {QStringLiteral("permissions_unknown_children"), QString::fromUtf8("-rights 0111\n"
                                                                           "+rights 1111\n")},
        {QStringLiteral("radial_shading"), QString::fromUtf8("+  object 900\n")},
        {QStringLiteral("seal_in_slices"), QString::fromUtf8("-rights 0111\n"
                                                             "+rights 0111 signed\n")},
        {QStringLiteral("seal_picture_is_package"), QString::fromUtf8("-rights 0111\n"
                                                                      "+rights 0111 signed\n")},
        {QStringLiteral("signature_order"), QString::fromUtf8("-rights 0111\n"
                                                              "+rights 0111 signed\n")},
        {QStringLiteral("signature_provider_children"), QString::fromUtf8("-rights 0111\n"
                                                                          "+rights 0111 signed\n")},
        {QStringLiteral("signature_without_stamp"), QString::fromUtf8("-rights 0111\n"
                                                                      "+rights 0111 signed\n")},
        {QStringLiteral("signed"), QString::fromUtf8("-rights 0111\n"
                                                     "+rights 0111 signed\n")},
        {QStringLiteral("signed_digest_mismatch"), QString::fromUtf8("-  text Second page\n"
                                                                     "-rights 0111\n"
                                                                     "+  text Altered one\n"
                                                                     "+rights 0111 signed\n")},
        {QStringLiteral("surplus_deltas"), QString::fromUtf8("+  text FOUR\n"
                                                             "+  text FOUR\n"
                                                             "+  object 900\n"
                                                             "+  object 901\n")},
        {QStringLiteral("tag_file_empty_prefix"), QString::fromUtf8("-tag \"Sample\" [version=1.0]\n"
                                                                    "+tag \"Sample\"\n")},
        {QStringLiteral("tags_with_data"), QString::fromUtf8("+  tag \"Total\" [currency=CNY] [ObjectData=a=b]\n")},
        {QStringLiteral("tags_without_objects"), QString::fromUtf8("-tag \"Sample\" [version=1.0]\n"
                                                                   "-  tag \"Name\" 6:8\n"
                                                                   "-  tag \"Box\" 6:9\n"
                                                                   "+tag \"Sample\"\n"
                                                                   "+  tag \"Name\"\n"
                                                                   "+  tag \"Group\"\n"
                                                                   "+    tag \"Part\"\n"
                                                                   "+    tag \"Part\"\n")},
        {QStringLiteral("template_twice"), QString::fromUtf8("+  template 3 Foreground\n")},
        {QStringLiteral("template_without_name"), QString::fromUtf8("-template 3 \"Header\" Background\n"
                                                                    "+template 3 \"\" Background\n")},
        {QStringLiteral("text_boundary_empty"), QString::fromUtf8("+  text VISIBLE\n"
                                                                  "+  text VISIBLE\n"
                                                                  "+  text VISIBLE\n"
                                                                  "+  object 900\n"
                                                                  "+  object 901\n"
                                                                  "+  object 902\n"
                                                                  "+  object 903\n")},
        {QStringLiteral("text_size_in_matrix"), QString::fromUtf8("+  text LARGE\n"
                                                                  "+  object 900\n")},
        {QStringLiteral("too_few_deltas"), QString::fromUtf8("+  text REPEATED\n"
                                                             "+  text REPEATED\n"
                                                             "+  object 900\n"
                                                             "+  object 901\n")},
        {QStringLiteral("trans_flag_on_clips"), QString::fromUtf8("+  object 900\n"
                                                                  "+  object 901\n"
                                                                  "+  object 902\n")},
        {QStringLiteral("truetype_named_cff"), QString::fromUtf8("+  text BLOCKS 12\n"
                                                                 "+  object 901\n")},
        {QStringLiteral("truetype_named_otf"), QString::fromUtf8("+  text BLOCKS 12\n"
                                                                 "+  object 901\n")},
        {QStringLiteral("truetype_without_cmap"), QString::fromUtf8("+  text BLOCKS 12\n"
                                                                    "+  object 901\n")},
        {QStringLiteral("truetype_without_tables"), QString::fromUtf8("+  text BLOCKS 12\n"
                                                                      "+  object 901\n")},
        {QStringLiteral("undeclared_prefix"), QString::fromUtf8("-tag \"Sample\" [version=1.0]\n"
                                                                "+tag \"Sample\"\n")},
    };
    return differences;
}
