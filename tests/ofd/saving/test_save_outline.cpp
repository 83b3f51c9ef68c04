#include "outline_entries.h"
#include "saving_desk.h"

#include <frame/document/payloads.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <tests/support/byte_streams.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>

#include <QtTest>

// An outline that was edited: the file changes where the edit was.
class TestSaveOutline : public QObject
{
    Q_OBJECT

private slots:
    void init() { desk = std::make_unique<SavingDesk>(); }

    void noEditSavesTheSameBytes();
    void aRenameChangesOnlyTheTitle();
    void expansionIsWritten();
    void aMovedEntryTakesItsBytesAlong();
    void entriesChangePlacesWithFewEdits();
    void aRemovedEntryGoesWithAllBelow();
    void theLastEntryTakesTheOutlineAlong();
    void theFirstEntryMakesTheOutlineInItsPlace();
    void newListsOfAllKindsStandInOrder();
    void anEmptyOutlineIsLeftAlone();
    void anEntryGetsItsFirstSubEntry();
    void editAndUndoSavesTheSameBytes();
    void aDeletedEntryComesBackWithItsBytesAfterASave();
    void savesFollowEachOther();
    void aCopyGetsAnElementOfItsOwn();
    void tooDeepAnOutlineIsRefusedAndTheFileKept();
    void aHundredThousandEntriesAreSaved();

private:
    std::unique_ptr<SavingDesk> desk;
};

void TestSaveOutline::noEditSavesTheSameBytes()
{
    const QString path = OutlineFile().Write(desk->Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = desk->Open(path);
    QCOMPARE(DumpTree(document->GetOutlineRoot()),
             QStringLiteral("One closed -> 1/0 (5,0,0,0) x0 mode 0\n  One.One\n  One.Two\n"
                            "Two -> http://a.b/?c&d -> action 5\nThree\n"));
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QVERIFY(document->SaveAs(desk->Path(QStringLiteral("b.ofd"))));
    QCOMPARE(BytesOf(path), before);
    QCOMPARE(BytesOf(desk->Path(QStringLiteral("b.ofd"))), before);
}

void TestSaveOutline::aRenameChangesOnlyTheTitle()
{
    const OfdFile file = OutlineFile();
    const QString original = file.Write(desk->Path(QStringLiteral("original.ofd")));
    const QString path = desk->Saved(file, [](IG_Document& document) {
        RenameEntry(document, "0", "Uno & co");
        RenameEntry(document, "0/1", "Dos");
    });
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("Title=\"One\"", "Title=\"Uno &amp; co\"").replace("Title = 'One.Two'", "Title = \"Dos\"");
    QCOMPARE(PartOf(path, DocumentPart), expected);
    QCOMPARE(DifferingParts(original, path), QStringList(DocumentPart));
}

void TestSaveOutline::expansionIsWritten()
{
    const OfdFile file = OutlineFile();
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("Expanded=\"false\"", "Expanded=\"true\"");
    expected.replace("<ofd:OutlineElem Title=\"Three\"/>", "<ofd:OutlineElem Title=\"Three\" Expanded=\"false\"/>");
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        ItemAt(document, "0")->expanded = true;
        ItemAt(document, "2")->expanded = false;
    });
    QCOMPARE(part, expected);
    QVERIFY(!ItemAt(*desk->Open(desk->Path(QStringLiteral("edited.ofd"))), "2")->expanded);
}

void TestSaveOutline::aMovedEntryTakesItsBytesAlong()
{
    const OfdFile file = OutlineFile();
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        G_TreeNode* root = document.GetOutlineRoot();
        Move(root, 0, NodeAt(document, "2"), 0);
    });
    QByteArray before = file.Part(DocumentPart);
    const int begin = before.indexOf("<ofd:OutlineElem Title=\"One\"");
    const int end = before.indexOf("    <ofd:OutlineElem Title=\"Two\"") - 1;
    const QByteArray moved = before.mid(begin, end - begin);
    QByteArray expected = before;
    expected.remove(begin - 5, end - begin + 5); // with its indentation
    expected.replace("<ofd:OutlineElem Title=\"Three\"/>",
                     "<ofd:OutlineElem Title=\"Three\">" + moved + "</ofd:OutlineElem>");
    QCOMPARE(part, expected);
}

void TestSaveOutline::entriesChangePlacesWithFewEdits()
{
    const OfdFile file = OutlineFile();
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        G_TreeNode* root = document.GetOutlineRoot();
        Move(root, 2, root, 0);
        Move(NodeAt(document, "1"), 1, root, 3);
        RenameEntry(document, "3", "Moved");
    });
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("\n    <ofd:OutlineElem Title=\"Three\"/>", "");
    expected.replace("    <!-- the first -->\n", "    <!-- the first -->\n    <ofd:OutlineElem Title=\"Three\"/>\n");
    expected.replace("\n      <ofd:OutlineElem   Title = 'One.Two'></ofd:OutlineElem>", "");
    expected.replace("\n  </ofd:Outlines>",
                     "\n    <ofd:OutlineElem   Title = \"Moved\"></ofd:OutlineElem>\n  </ofd:Outlines>");
    QCOMPARE(part, expected);
}

void TestSaveOutline::aRemovedEntryGoesWithAllBelow()
{
    const OfdFile file = OutlineFile();
    const QByteArray part =
        desk->SavedPart(file, DocumentPart, [](IG_Document& document) { document.GetOutlineRoot()->RemoveSubNode(0); });
    QByteArray expected = file.Part(DocumentPart);
    const int begin = expected.indexOf("\n    <ofd:OutlineElem Title=\"One\"");
    expected.remove(begin, expected.indexOf("\n    <ofd:OutlineElem Title=\"Two\"") - begin);
    QCOMPARE(part, expected);
}

void TestSaveOutline::theLastEntryTakesTheOutlineAlong()
{
    const OfdFile file = OutlineFile();
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        while (document.GetOutlineRoot()->RemoveSubNode(0))
            continue;
    });
    QByteArray expected = file.Part(DocumentPart);
    const int begin = expected.indexOf("\n  <ofd:Outlines>");
    const QByteArray endTag = "</ofd:Outlines>";
    expected.remove(begin, expected.indexOf(endTag) + endTag.size() - begin);
    QCOMPARE(part, expected);
}

void TestSaveOutline::theFirstEntryMakesTheOutlineInItsPlace()
{
    const OfdFile file = OutlineFile("\n  <ofd:Permissions/>\n  <ofd:Bookmarks/>");
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        QVERIFY(!document.GetOutlineRoot());
        QVERIFY(document.CreateOutlineRoot());
        document.GetOutlineRoot()->AddSubNode(0, NewItem("New"));
    });
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("\n  <ofd:Permissions/>",
                     "\n  <ofd:Outlines><ofd:OutlineElem Title=\"New\"/></ofd:Outlines>\n  <ofd:Permissions/>");
    QCOMPARE(part, expected);
}

void TestSaveOutline::newListsOfAllKindsStandInOrder()
{
    const QString path = desk->Saved(OutlineFile("<ofd:Extensions>e.xml</ofd:Extensions>"), [](IG_Document& document) {
        QVERIFY(document.AddAttachment(new BytesReader("x"), false, "a", "txt", "a", "txt", 0));
        QVERIFY(document.AddCustomTagRoot("a", "p", "urn:p", 0));
        QVERIFY(document.CreateBookmarkRoot());
        document.GetBookmarkRoot()->AddSubNode(0, new G_Bookmark);
        QVERIFY(document.CreateOutlineRoot());
        document.GetOutlineRoot()->AddSubNode(0, NewItem("a"));
    });
    const auto part = ofd::XmlPart::Parse(DocumentPart, PartOf(path, DocumentPart));
    QStringList names;
    for (const pugi::xml_node& child : ofd::ChildElements(part->GetRoot()))
        names.append(QString::fromLatin1(child.name()));
    QCOMPARE(names.join(QLatin1Char(' ')),
             QStringLiteral("ofd:CommonData ofd:Pages ofd:Outlines ofd:Bookmarks ofd:CustomTags ofd:Attachments "
                            "ofd:Extensions"));
}

void TestSaveOutline::anEmptyOutlineIsLeftAlone()
{
    const QString path = OutlineFile("<ofd:Outlines> </ofd:Outlines>").Write(desk->Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = desk->Open(path);
    QCOMPARE(document->GetOutlineRoot()->SubNodeCount(), 0);
    document->GetOutlineRoot()->AddSubNode(0, NewItem("for a moment"));
    QVERIFY(document->IsModified());
    document->GetOutlineRoot()->RemoveSubNode(0);
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(BytesOf(path), before);
}

void TestSaveOutline::anEntryGetsItsFirstSubEntry()
{
    const OfdFile file = OutlineFile();
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        NodeAt(document, "2")->AddSubNode(0, NewItem("Sub"))->AddSubNode(0, NewItem("Sub.Sub"));
        NodeAt(document, "1")->AddSubNode(0, NewItem("After the actions"));
    });
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("<ofd:OutlineElem Title=\"Three\"/>",
                     "<ofd:OutlineElem Title=\"Three\"><ofd:OutlineElem Title=\"Sub\"><ofd:OutlineElem "
                     "Title=\"Sub.Sub\"/></ofd:OutlineElem></ofd:OutlineElem>");
    expected.replace("</ofd:Action></ofd:Actions></ofd:OutlineElem>\n    <ofd:OutlineElem Title=\"Three\">",
                     "</ofd:Action></ofd:Actions><ofd:OutlineElem Title=\"After the actions\"/></ofd:OutlineElem>\n"
                     "    <ofd:OutlineElem Title=\"Three\">");
    QCOMPARE(part, expected);
}

void TestSaveOutline::editAndUndoSavesTheSameBytes()
{
    const QString path = OutlineFile().Write(desk->Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = desk->Open(path);
    G_TreeNode* root = document->GetOutlineRoot();
    // Undo steps hold copies of records and put them back.
    const G_OutlineItem one(*ItemAt(*document, "0"));
    const G_OutlineItem oneOne(*ItemAt(*document, "0/0"));
    const G_OutlineItem oneTwo(*ItemAt(*document, "0/1"));
    const G_OutlineItem two(*ItemAt(*document, "1"));
    RenameEntry(*document, "1", "other");
    Move(root, 0, NodeAt(*document, "2"), 0);
    NodeAt(*document, "1")->RemoveSubNode(0);
    QVERIFY(document->IsModified());
    G_TreeNode* back = root->AddSubNode(0, new G_OutlineItem(one));
    back->AddSubNode(0, new G_OutlineItem(oneOne));
    back->AddSubNode(1, new G_OutlineItem(oneTwo));
    NodeAt(*document, "1")->SetNodeData(new G_OutlineItem(two));
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(BytesOf(path), before);
}

void TestSaveOutline::aDeletedEntryComesBackWithItsBytesAfterASave()
{
    const OfdFile file = OutlineFile();
    const QString path = file.Write(desk->Path(QStringLiteral("a.ofd")));
    const auto document = desk->Open(path);
    const G_OutlineItem two(*ItemAt(*document, "1"));
    QVERIFY(document->GetOutlineRoot()->RemoveSubNode(1));
    QVERIFY(document->Save());
    QVERIFY(!PartOf(path, DocumentPart).contains("Title=\"Two\""));
    QVERIFY(!document->IsModified());
    QVERIFY(document->GetOutlineRoot()->AddSubNode(1, new G_OutlineItem(two)));
    QVERIFY(document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(PartOf(path, DocumentPart), file.Part(DocumentPart));
}

void TestSaveOutline::savesFollowEachOther()
{
    const QString path = OutlineFile().Write(desk->Path(QStringLiteral("a.ofd")));
    const auto document = desk->Open(path);
    G_TreeNode* root = document->GetOutlineRoot();
    for (int round = 0; round < 4; ++round) {
        RenameEntry(*document, "0", CCA_String("Round" + QByteArray::number(round)));
        dynamic_cast<G_ActionGoto*>(ItemAt(*document, "0")->actions[0])->dest->left = 10.12345F + float(round);
        NodeAt(*document, "0")->AddSubNode(round, NewItem("new"));
        if (round == 2)
            Move(root, 1, NodeAt(*document, "0/0"), 0);
        QVERIFY(document->IsModified());
        QVERIFY(document->Save());
        QVERIFY(!document->IsModified());
        QCOMPARE(document->GetOutlineRoot(), root);
        QCOMPARE(DumpNames(desk->Open(path)->GetOutlineRoot()), DumpNames(root));
    }
    QVERIFY(document->GetUnsavableChanges().isEmpty());
}

void TestSaveOutline::aCopyGetsAnElementOfItsOwn()
{
    const OfdFile file = OutlineFile();
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        auto* copy = new G_OutlineItem(*ItemAt(document, "0/0")); // owned by its node
        document.GetOutlineRoot()->AddSubNode(3, copy);
        RenameEntry(document, "3", "Copy");
    });
    QVERIFY2(part.contains("\n    <ofd:OutlineElem Title=\"Copy\"/>\n  </ofd:Outlines>"), part.constData());
    QVERIFY(part.contains("\n      <ofd:OutlineElem Title=\"One.One\"/>"));
}

void TestSaveOutline::tooDeepAnOutlineIsRefusedAndTheFileKept()
{
    const QString path = OutlineFile().Write(desk->Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = desk->Open(path);
    G_TreeNode* node = document->GetOutlineRoot();
    for (int depth = 0; depth < 200; ++depth)
        node = node->AddSubNode(node->SubNodeCount(), NewItem("deep"));
    QVERIFY(document->Save());
    QCOMPARE(DumpNames(desk->Open(path)->GetOutlineRoot()), DumpNames(document->GetOutlineRoot()));
    const QByteArray good = BytesOf(path);
    QVERIFY(good != before);
    for (int depth = 0; depth < 50'000; ++depth)
        node = node->AddSubNode(0, NewItem("deeper"));
    const ofd::DocumentSaveResult result = document->Save();
    QVERIFY(!result);
    QVERIFY(!result.error.isEmpty());
    QCOMPARE(BytesOf(path), good);
}

void TestSaveOutline::aHundredThousandEntriesAreSaved()
{
    QByteArray xml = "<ofd:Outlines>";
    for (int i = 0; i < 50'000; ++i) {
        const QByteArray name = QByteArray::number(i);
        xml +=
            "\n<ofd:OutlineElem Title=\"" + name + "\"><ofd:OutlineElem Title=\"" + name + ".0\"/></ofd:OutlineElem>";
    }
    const QString path = desk->Saved(OutlineFile(xml + "</ofd:Outlines>"), [](IG_Document& document) {
        G_TreeNode* root = document.GetOutlineRoot();
        for (int i = 0; i < 50'000; i += 2)
            RenameEntry(document, QByteArray::number(i) + "/0", "renamed");
        Move(root, 0, root, 49'999);
        Move(root, 10, NodeAt(document, "5"), 0);
    });
    const auto document = desk->Open(path);
    G_TreeNode* root = document->GetOutlineRoot();
    QCOMPARE(root->SubNodeCount(), 49'999);
    QCOMPARE(root->SubNode(49'998)->NodeText(), CCA_String("0"));
    QCOMPARE(root->SubNode(49'998)->SubNode(0)->NodeText(), CCA_String("renamed"));
    QCOMPARE(root->SubNode(5)->SubNode(0)->NodeText(), CCA_String("11"));
    // All move at once, and in the other direction.
    G_TreeNode* top = root->AddSubNode(0, NewItem("top"));
    while (root->SubNodeCount() > 1)
        Move(root, root->SubNodeCount() - 1, top, top->SubNodeCount());
    QVERIFY(document->Save());
    const auto again = desk->Open(path);
    QCOMPARE(again->GetOutlineRoot()->SubNodeCount(), 1);
    QCOMPARE(NodeAt(*again, "0/0")->NodeText(), CCA_String("0"));
    QCOMPARE(NodeAt(*again, "0/49998")->NodeText(), CCA_String("1"));
    QCOMPARE(DumpNames(again->GetOutlineRoot()), DumpNames(root));
}

TETO_TEST_MAIN(TestSaveOutline)

#include "test_save_outline.moc"
