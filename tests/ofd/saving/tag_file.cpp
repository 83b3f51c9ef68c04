#include "tag_file.h"

const QString ListPart = QStringLiteral("Doc_0/Tags/CustomTags.xml");
const QString TagPart = QStringLiteral("Doc_0/Tags/Tag_1.xml");

const QByteArray Tags = "<?xml version=\"1.0\"?>\n<!-- a vocabulary -->\n"
                        "<fp:invoice xmlns:fp=\"urn:fp\" xmlns:ofd=\"http://www.ofdspec.org/2016\" version='1'>\n"
                        "  <fp:seller kind=\"a=b\">\n"
                        "    free text\n"
                        "    <ofd:ObjectRef PageRef=\"1\">11</ofd:ObjectRef>\n"
                        "    <ofd:ObjectRef PageRef=\"1\">0</ofd:ObjectRef>\n"
                        "    <ofd:ObjectData>literal</ofd:ObjectData>\n"
                        "    <ofd:ObjectRef PageRef=\"2\">12</ofd:ObjectRef>\n"
                        "  </fp:seller>\n"
                        "  <fp:items>\n"
                        "    <fp:item/>\n"
                        "    <fp:item n=\"2\"></fp:item>\n"
                        "  </fp:items>\n"
                        "</fp:invoice>\n<!-- end -->\n";

OfdFile File(const QByteArray& tags)
{
    return OfdFile::WithPages(2)
        .Tail("<ofd:CustomTags>Tags/CustomTags.xml</ofd:CustomTags>")
        .Set(ListPart, Element("CustomTags", "<ofd:CustomTag TypeID=\"fp\" NameSpace=\"urn:fp\"><ofd:FileLoc>Tag_1.xml"
                                             "</ofd:FileLoc></ofd:CustomTag>"))
        .Set(TagPart, tags);
}

G_TreeNode* NodeAt(IG_Document& document, const QByteArray& rows, int root)
{
    G_TreeNode* node = document.CustomTagRoot(root)->SubNode(0);
    if (rows.isEmpty())
        return node;
    for (const QByteArray& row : rows.split('/'))
        node = node->SubNode(row.toInt());
    return node;
}

G_CustomTagItem* TagAt(IG_Document& document, const QByteArray& rows, int root)
{
    return dynamic_cast<G_CustomTagItem*>(NodeAt(document, rows, root)->data);
}

G_CustomTagItem* NewTag(const CCA_String& name)
{
    auto* tag = new G_CustomTagItem; // owned by the caller
    tag->tagName = name;
    return tag;
}
