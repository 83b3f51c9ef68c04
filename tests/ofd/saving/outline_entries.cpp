#include "outline_entries.h"

#include <frame/document/ig_document.h>
#include <frame/document/payloads.h>

const QByteArray SampleOutline =
    "\n  <ofd:Outlines>\n"
    "    <!-- the first -->\n"
    "    <ofd:OutlineElem Title=\"One\" own:mark='a' Expanded=\"false\">\n"
    "      <ofd:Actions>\n"
    "        <ofd:Action Event=\"CLICK\"><ofd:Goto><ofd:Dest Type=\"XYZ\" PageID=\"1\" Left=\"5\" "
    "Own=\"1\"/></ofd:Goto>"
    "</ofd:Action>\n"
    "      </ofd:Actions>\n"
    "      <own:Note>kept <![CDATA[<as it is>]]></own:Note>\n"
    "      <ofd:OutlineElem Title=\"One.One\"/>\n"
    "      <ofd:OutlineElem   Title = 'One.Two'></ofd:OutlineElem>\n"
    "    </ofd:OutlineElem>\n"
    "    <ofd:OutlineElem Title=\"Two\"><ofd:Actions><ofd:Action Event=\"CLICK\"><ofd:Region><own:area/></ofd:Region>"
    "<ofd:URI URI=\"http://a.b/?c&amp;d\" Base=\"x\"/></ofd:Action>"
    "<ofd:Action Event=\"CLICK\"><ofd:Sound ResourceID=\"7\"/></ofd:Action></ofd:Actions></ofd:OutlineElem>\n"
    "    <ofd:OutlineElem Title=\"Three\"/>\n"
    "  </ofd:Outlines>\n  <ofd:Extensions>Ext.xml</ofd:Extensions>";

OfdFile OutlineFile(const QByteArray& tail)
{
    return OfdFile::WithPages(3).Tail(tail).Set(QStringLiteral("Unknown/part.bin"), "\x01\x02");
}

G_TreeNode* NodeAt(IG_Document& document, const QByteArray& rows)
{
    G_TreeNode* node = document.GetOutlineRoot();
    for (const QByteArray& row : rows.split('/'))
        node = node->SubNode(row.toInt());
    return node;
}

G_OutlineItem* ItemAt(IG_Document& document, const QByteArray& rows)
{
    return dynamic_cast<G_OutlineItem*>(NodeAt(document, rows)->data);
}

void RenameEntry(IG_Document& document, const QByteArray& rows, const CCA_String& name)
{
    ItemAt(document, rows)->title = name;
    ItemAt(document, rows)->text = name;
}

G_OutlineItem* NewItem(const CCA_String& name)
{
    auto* item = new G_OutlineItem; // owned by the caller
    item->title = item->text = name;
    return item;
}

void Move(G_TreeNode* from, int row, G_TreeNode* to, int toRow)
{
    if (!G_TreeNode::MoveSubNode(from, row, to, toRow))
        qFatal("the move was refused");
}
