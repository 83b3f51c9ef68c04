#include "saving_desk.h"
#include "tag_file.h"

#include <frame/base/converters.h>
#include <frame/document/payloads.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>

#include <QtTest>

namespace {

// As the pane renames: a fresh record.
void Rename(IG_Document& document, const QByteArray& rows, const CCA_String& name)
{
    NodeAt(document, rows)->SetNodeData(NewTag(name));
}

} // namespace

// Custom tags that were edited: their parts change where the edit was, and the list only when a root comes or goes.
class TestSaveTags : public QObject
{
    Q_OBJECT

private slots:
    void init() { desk = std::make_unique<SavingDesk>(); }

    void noEditSavesTheSameBytes();
    void aRenameKeepsPrefixAndDeclarationsAlone();
    void aRenamedCopyKeepsItsContent();
    void aRenameThatIsUndoneWithoutContentChangesNothing();
    void newTagsTakeTheParentsPrefix();
    void anOddRootKeepsItsNameAndItsTagsHaveNoPrefix();
    void removedTagsGo();
    void aMovedTagTakesItsBytesAlong();
    void aTagThatMovesToAnotherPartTakesItsNamespacesAlong();
    void objectsAreTiedAndUntied();
    void aPartWithoutReferencesGetsThemDeclared();
    void attributesAndDataAreEdited();
    void namesOfAnyKindComeBack();
    void aNewRootMakesListAndElement();
    void aNewRootJoinsTheList();
    void aRootWhosePrefixIsTakenIsToldApart();
    void aRootWithoutTagsLeavesThePackage();
    void anUnreadablePartIsLeftAlone();
    void editAndUndoSavesTheSameBytes();
    void savesFollowEachOther();

private:
    QByteArray Saved(const SavingDesk::Edit& edit, const OfdFile& file = File())
    {
        const QString original = file.Write(desk->Path(QStringLiteral("original.ofd")));
        const QString path = desk->Saved(file, edit);
        differing = DifferingParts(original, path);
        return PartOf(path, TagPart);
    }

    std::unique_ptr<SavingDesk> desk;
    QStringList differing;
};

void TestSaveTags::noEditSavesTheSameBytes()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = desk->Open(path);
    QCOMPARE(DumpTree(document->CustomTagRoot(0)),
             QStringLiteral("invoice [version=1]\n  seller [kind=a=b] [ObjectData=literal] {1:11} {2:12}\n  items\n"
                            "    item\n    item [n=2]\n"));
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QVERIFY(document->SaveAs(desk->Path(QStringLiteral("b.ofd"))));
    QCOMPARE(BytesOf(path), before);
    QCOMPARE(BytesOf(desk->Path(QStringLiteral("b.ofd"))), before);
}

void TestSaveTags::aRenameKeepsPrefixAndDeclarationsAlone()
{
    const QByteArray part = Saved([](IG_Document& document) {
        Rename(document, "", "bill");
        Rename(document, "0", "vendor");
        Rename(document, "1", "rows");
        Rename(document, "1/1", "row");
    });
    QCOMPARE(part, QByteArray("<?xml version=\"1.0\"?>\n<!-- a vocabulary -->\n"
                              "<fp:bill xmlns:fp=\"urn:fp\" xmlns:ofd=\"http://www.ofdspec.org/2016\">\n"
                              "  <fp:vendor/>\n"
                              "  <fp:rows>\n"
                              "    <fp:item/>\n"
                              "    <fp:row/>\n"
                              "  </fp:rows>\n"
                              "</fp:bill>\n<!-- end -->\n"));
    QCOMPARE(differing, QStringList(TagPart));
}

void TestSaveTags::aRenamedCopyKeepsItsContent()
{
    const QByteArray part = Saved([](IG_Document& document) {
        TagAt(document, "0")->tagName = "vendor";
        TagAt(document, "1/0")->tagName = "row";
    });
    QCOMPARE(part, QByteArray(Tags).replace("fp:seller", "fp:vendor").replace("<fp:item/>", "<fp:row/>"));
}

void TestSaveTags::aRenameThatIsUndoneWithoutContentChangesNothing()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = desk->Open(path);
    Rename(*document, "1", "rows");
    Rename(*document, "1", "items"); // another fresh record
    QVERIFY(document->Save());
    QCOMPARE(BytesOf(path), before);
    QVERIFY(!document->IsModified());
}

void TestSaveTags::newTagsTakeTheParentsPrefix()
{
    const QByteArray part = Saved([](IG_Document& document) {
        NodeAt(document, "")->AddSubNode(1, NewTag("buyer"))->AddSubNode(0, NewTag("name"));
        NodeAt(document, "2/0")->AddSubNode(0, NewTag("price"));
    });
    QByteArray expected = Tags;
    expected.replace("  <fp:items>", "  <fp:buyer><fp:name/></fp:buyer>\n  <fp:items>");
    expected.replace("<fp:item/>", "<fp:item><fp:price/></fp:item>");
    QCOMPARE(part, expected);
}

void TestSaveTags::anOddRootKeepsItsNameAndItsTagsHaveNoPrefix()
{
    const QByteArray odd = "<:eInvoice xmlns:=\"\" version=\"1\"><a><ofd:ObjectRef PageRef=\"1\">5</ofd:ObjectRef></a>"
                           "</:eInvoice>";
    const QByteArray part = Saved(
        [](IG_Document& document) {
            NodeAt(document, "")->AddSubNode(1, NewTag("b"));
            TagAt(document, "0")->objects.GetAt(0)->objectIds.append(6);
            auto* tag = NewTag("c"); // owned by its node
            tag->objects.Add(new G_PageObjRef{2, {7}});
            NodeAt(document, "")->AddSubNode(2, tag);
        },
        File(odd));
    QCOMPARE(part, QByteArray("<:eInvoice xmlns:=\"\" version=\"1\"><a><ofd:ObjectRef PageRef=\"1\">5</ofd:ObjectRef>"
                              "<ofd:ObjectRef PageRef=\"1\">6</ofd:ObjectRef></a><b/><c><ofd:ObjectRef PageRef=\"2\">7"
                              "</ofd:ObjectRef></c></:eInvoice>"));
    QCOMPARE(Saved([](IG_Document& document) { Rename(document, "", "other"); }, File(odd)).left(18),
             QByteArray("<:other xmlns:=\"\">"));
}

void TestSaveTags::removedTagsGo()
{
    const QByteArray part = Saved([](IG_Document& document) {
        NodeAt(document, "")->RemoveSubNode(0);
        NodeAt(document, "0")->RemoveSubNode(1);
    });
    QByteArray expected = Tags;
    const int begin = expected.indexOf("\n  <fp:seller");
    expected.remove(begin, expected.indexOf("\n  <fp:items>") - begin);
    QCOMPARE(part, expected.replace("\n    <fp:item n=\"2\"></fp:item>", ""));
}

void TestSaveTags::aMovedTagTakesItsBytesAlong()
{
    const QByteArray part = Saved([](IG_Document& document) {
        QVERIFY(G_TreeNode::MoveSubNode(NodeAt(document, ""), 0, NodeAt(document, "1"), 1));
    });
    const int begin = Tags.indexOf("<fp:seller");
    const int end = Tags.indexOf("\n  <fp:items>");
    const QByteArray moved = Tags.mid(begin, end - begin);
    QByteArray expected = Tags;
    expected.remove(begin - 3, end - begin + 3);
    expected.replace("<fp:item/>\n", "<fp:item/>\n    " + moved + "\n");
    QCOMPARE(part, expected);
}

void TestSaveTags::aTagThatMovesToAnotherPartTakesItsNamespacesAlong()
{
    const QString second = QStringLiteral("Doc_0/Tags/Tag_2.xml");
    OfdFile file = File();
    file.Set(second, "<x:other xmlns:x=\"urn:x\"><x:in/></x:other>");
    file.Set(ListPart, file.Part(ListPart).replace("</ofd:CustomTags>",
                                                   "<ofd:CustomTag NameSpace=\"urn:x\"><ofd:FileLoc>Tag_2.xml"
                                                   "</ofd:FileLoc></ofd:CustomTag></ofd:CustomTags>"));
    Saved(
        [](IG_Document& document) {
            QVERIFY(G_TreeNode::MoveSubNode(NodeAt(document, ""), 0, NodeAt(document, "0", 1), 0));
            QVERIFY(G_TreeNode::MoveSubNode(NodeAt(document, "0"), 0, NodeAt(document, "", 1), 1));
        },
        file);
    const QString path = desk->Path(QStringLiteral("edited.ofd"));
    const QByteArray part = PartOf(path, second);
    QVERIFY2(part.startsWith("<x:other xmlns:x=\"urn:x\"><x:in><fp:seller kind=\"a=b\""), part.constData());
    const QByteArray seller = part.mid(part.indexOf("<fp:seller"), part.indexOf('>', part.indexOf("<fp:seller")));
    QVERIFY(seller.contains(" xmlns:fp=\"urn:fp\""));
    QVERIFY(seller.contains(" xmlns:ofd=\"http://www.ofdspec.org/2016\""));
    QVERIFY(part.contains("<fp:item xmlns:fp=\"urn:fp\"/></x:other>"));
    QCOMPARE(differing, QStringList({TagPart, second}));
}

void TestSaveTags::objectsAreTiedAndUntied()
{
    const QByteArray part = Saved([](IG_Document& document) {
        auto* changed = new G_CustomTagItem(*TagAt(document, "0")); // owned by the node below
        changed->objects.GetAt(0)->objectIds = {13};
        changed->objects.GetAt(1)->objectIds = {14, 12};
        NodeAt(document, "0")->SetNodeData(changed);
        TagAt(document, "1/0")->objects.Add(new G_PageObjRef{2, {20, 21}});
    });
    QByteArray expected = Tags;
    expected.replace("<ofd:ObjectRef PageRef=\"1\">11</ofd:ObjectRef>", ""); // what is in front of it is text
    const QByteArray last = "\n    <ofd:ObjectRef PageRef=\"2\">12</ofd:ObjectRef>";
    expected.replace(last, "\n    <ofd:ObjectRef PageRef=\"1\">13</ofd:ObjectRef>"
                           "\n    <ofd:ObjectRef PageRef=\"2\">14</ofd:ObjectRef>" +
                               last);
    expected.replace("<fp:item/>", "<fp:item><ofd:ObjectRef PageRef=\"2\">20</ofd:ObjectRef><ofd:ObjectRef "
                                   "PageRef=\"2\">21</ofd:ObjectRef></fp:item>");
    QCOMPARE(part, expected);
}

void TestSaveTags::aPartWithoutReferencesGetsThemDeclared()
{
    const auto tie = [](IG_Document& document) { TagAt(document, "0")->objects.Add(new G_PageObjRef{1, {9}}); };
    QCOMPARE(Saved(tie, File("<fp:a xmlns:fp=\"urn:fp\"><fp:b/></fp:a>")),
             QByteArray("<fp:a xmlns:fp=\"urn:fp\" xmlns:ofd=\"http://www.ofdspec.org/2016\"><fp:b><ofd:ObjectRef "
                        "PageRef=\"1\">9</ofd:ObjectRef></fp:b></fp:a>"));
    QCOMPARE(Saved(tie, File("<a xmlns:o=\"http://www.ofdspec.org/2016\"><b/></a>")),
             QByteArray("<a xmlns:o=\"http://www.ofdspec.org/2016\"><b><o:ObjectRef PageRef=\"1\">9</o:ObjectRef></b>"
                        "</a>"));
    QCOMPARE(Saved(tie, File("<ofd:a xmlns:ofd=\"urn:mine\"><ofd:b/></ofd:a>")),
             QByteArray("<ofd:a xmlns:ofd=\"urn:mine\" xmlns:ofd2=\"http://www.ofdspec.org/2016\"><ofd:b>"
                        "<ofd2:ObjectRef PageRef=\"1\">9</ofd2:ObjectRef></ofd:b></ofd:a>"));
    // As elsewhere in the part, even where that is odd.
    QCOMPARE(Saved(tie, File("<a><b/><c><ObjectRef PageRef=\"1\">0</ObjectRef></c></a>")),
             QByteArray("<a><b><ObjectRef PageRef=\"1\">9</ObjectRef></b><c><ObjectRef PageRef=\"1\">0</ObjectRef>"
                        "</c></a>"));
}

void TestSaveTags::attributesAndDataAreEdited()
{
    const QByteArray part = Saved([](IG_Document& document) {
        G_CustomTagItem* seller = TagAt(document, "0");
        seller->attributes.RemoveAll();
        for (const char* attribute : {"kind=<c>", "new=1", "not a name=2", "ObjectData=other"})
            seller->attributes.Add(attribute);
        TagAt(document, "1/1")->attributes.RemoveAll();
    });
    QByteArray expected = Tags;
    expected.replace("kind=\"a=b\"", "kind=\"&lt;c&gt;\" new=\"1\"").replace("literal", "other");
    QCOMPARE(part, expected.replace("<fp:item n=\"2\">", "<fp:item>"));
    const auto change = [](IG_Document& document) {
        TagAt(document, "0")->attributes.RemoveAll();
        TagAt(document, "0")->attributes.Add("y:id=new");
    };
    QCOMPARE(Saved(change, File("<a><b id=\"1\" y:id=\"3\"/></a>")), QByteArray("<a><b y:id=\"new\"/></a>"));
}

void TestSaveTags::namesOfAnyKindComeBack()
{
    const QStringList names = {
        QStringLiteral("Taxpayer No"), QStringLiteral("1st"),       QString(),
        QStringLiteral("a:b"),         QStringLiteral("ObjectRef"), QString::fromUtf8("_x0041_ 税号")};
    Saved([&names](IG_Document& document) {
        for (int i = 0; i < names.size(); ++i)
            NodeAt(document, "")->AddSubNode(i, NewTag(GQ_ToCAS(names.at(i))));
    });
    const auto document = desk->Open(desk->Path(QStringLiteral("edited.ofd")));
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(GQ_ToQStringFromUtf8(TagAt(*document, QByteArray::number(i))->tagName), names.at(i));
    QCOMPARE(NodeAt(*document, "")->SubNodeCount(), names.size() + 2);
}

void TestSaveTags::aNewRootMakesListAndElement()
{
    const OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Attachments/><ofd:Extensions>x.xml</ofd:Extensions>");
    const QString path = desk->Saved(file, [](IG_Document& document) {
        QVERIFY(document.AddCustomTagRoot("Invoice 1", "fp", "urn:fp", 0));
        NodeAt(document, "")->AddSubNode(0, NewTag("in"));
        TagAt(document, "0")->objects.Add(new G_PageObjRef{1, {3}});
    });
    QVERIFY(PartOf(path, DocumentPart).contains("<ofd:CustomTags>CustomTags.xml</ofd:CustomTags><ofd:Attachments/>"));
    QCOMPARE(PartOf(path, QStringLiteral("Doc_0/CustomTags.xml")),
             Element("CustomTags", "<ofd:CustomTag NameSpace=\"urn:fp\"><ofd:FileLoc>Tags/Tag_1.xml</ofd:FileLoc>"
                                   "</ofd:CustomTag>"));
    QCOMPARE(PartOf(path, TagPart),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<fp:Invoice_x0020_1 xmlns:fp=\"urn:fp\" "
                        "xmlns:ofd=\"http://www.ofdspec.org/2016\"><fp:in><ofd:ObjectRef PageRef=\"1\">3"
                        "</ofd:ObjectRef></fp:in></fp:Invoice_x0020_1>"));
    QCOMPARE(DumpTree(desk->Open(path)->CustomTagRoot(0)), QStringLiteral("Invoice 1\n  in {1:3}\n"));
}

void TestSaveTags::aNewRootJoinsTheList()
{
    OfdFile file = File();
    file.Set(ListPart, file.Part(ListPart).replace(">Tag_1.xml", ">/Doc_0/Tags/Tag_1.xml"));
    const QString path =
        desk->Saved(file, [](IG_Document& document) { QVERIFY(document.AddCustomTagRoot("second", "s", "urn:s", 0)); });
    QByteArray expected = file.Part(ListPart);
    expected.replace("</ofd:CustomTags>", "<ofd:CustomTag NameSpace=\"urn:s\" TypeID=\"s\"><ofd:FileLoc>"
                                          "/Doc_0/Tags/Tag_2.xml</ofd:FileLoc></ofd:CustomTag></ofd:CustomTags>");
    QCOMPARE(PartOf(path, ListPart), expected);
    QCOMPARE(PartOf(path, TagPart), Tags);
    QCOMPARE(desk->Open(path)->CustomTagRootCount(), 2);
}

void TestSaveTags::aRootWhosePrefixIsTakenIsToldApart()
{
    const OfdFile file = OfdFile::WithPages(1);
    const QString path = desk->Saved(file, [](IG_Document& document) {
        QVERIFY(document.AddCustomTagRoot("a", "ofd", "urn:mine", 0));
        QVERIFY(document.AddCustomTagRoot("b", "", "", 0));
        QVERIFY(document.AddCustomTagRoot("c", "1 2", "urn:c", 0));
    });
    QVERIFY(PartOf(path, TagPart)
                .endsWith("<ofd:a xmlns:ofd=\"urn:mine\" "
                          "xmlns:ofd2=\"http://www.ofdspec.org/2016\"/>"));
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/Tags/Tag_2.xml"))
                .endsWith("<b xmlns:ofd=\"http://www.ofdspec.org/2016\"/>"));
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/Tags/Tag_3.xml")).contains("<_x0031__x0020_2:c xmlns:_x0031__x0020_2="));
    QCOMPARE(desk->Open(path)->CustomTagRootCount(), 3);
}

void TestSaveTags::aRootWithoutTagsLeavesThePackage()
{
    Saved([](IG_Document& document) { document.CustomTagRoot(0)->RemoveSubNode(0); });
    const QString path = desk->Path(QStringLiteral("edited.ofd"));
    QCOMPARE(differing, QStringList({ListPart, TagPart}));
    QCOMPARE(PartOf(path, ListPart), Element("CustomTags", {}));
    QCOMPARE(desk->Open(path)->CustomTagRootCount(), 0);
}

void TestSaveTags::anUnreadablePartIsLeftAlone()
{
    OfdFile file = File();
    const QString broken = QStringLiteral("Doc_0/Tags/broken.xml");
    file.Set(broken, "<a><b></a>");
    file.Set(ListPart, file.Part(ListPart).replace("<ofd:CustomTag ", "<ofd:CustomTag NameSpace=\"b\"><ofd:FileLoc>"
                                                                      "broken.xml</ofd:FileLoc></ofd:CustomTag>"
                                                                      "<ofd:CustomTag "));
    Saved(
        [](IG_Document& document) {
            QCOMPARE(document.CustomTagRootCount(), 1);
            NodeAt(document, "")->AddSubNode(0, NewTag("new"));
        },
        file);
    QCOMPARE(differing, QStringList(TagPart));
}

void TestSaveTags::editAndUndoSavesTheSameBytes()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = desk->Open(path);
    // Undo steps hold copies of records and put them back.
    const G_CustomTagItem seller(*TagAt(*document, "0"));
    NodeAt(*document, "")->RemoveSubNode(0);
    G_TreeNode::MoveSubNode(NodeAt(*document, "0"), 0, NodeAt(*document, ""), 0);
    QVERIFY(document->IsModified());
    G_TreeNode::MoveSubNode(NodeAt(*document, ""), 0, NodeAt(*document, "1"), 0);
    NodeAt(*document, "")->AddSubNode(0, new G_CustomTagItem(seller));
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(BytesOf(path), before);
}

void TestSaveTags::savesFollowEachOther()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const auto document = desk->Open(path);
    const G_CustomTagItem seller(*TagAt(*document, "0"));
    NodeAt(*document, "")->RemoveSubNode(0);
    QVERIFY(document->AddCustomTagRoot("second", "s", "urn:s", 0));
    QVERIFY(document->IsModified());
    QVERIFY(document->Save());
    QVERIFY(!document->IsModified());
    NodeAt(*document, "")->AddSubNode(0, new G_CustomTagItem(seller)); // undone after the save
    NodeAt(*document, "", 1)->AddSubNode(0, NewTag("below"));
    QVERIFY(document->Save());
    QVERIFY(!document->IsModified());
    QCOMPARE(PartOf(path, TagPart), Tags);
    const auto reopened = desk->Open(path);
    QCOMPARE(reopened->CustomTagRootCount(), 2);
    QCOMPARE(DumpTree(reopened->CustomTagRoot(1)), QStringLiteral("second\n  below\n"));
    QVERIFY(document->GetUnsavableChanges().isEmpty());
}

TETO_TEST_MAIN(TestSaveTags)

#include "test_save_tags.moc"
