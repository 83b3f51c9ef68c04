#include "saving_desk.h"

#include <frame/base/converters.h>
#include <frame/document/payloads.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <tests/support/byte_streams.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>

#include <QtTest>

namespace {

const QByteArray Outline =
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

OfdFile File(const QByteArray& tail = Outline)
{
    return OfdFile::WithPages(3).Tail(tail).Set(QStringLiteral("Unknown/part.bin"), "\x01\x02");
}

// "0/1" is the second entry below the first.
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

void Rename(IG_Document& document, const QByteArray& rows, const CCA_String& name)
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

} // namespace

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
    void aNewEntryIsWritten_data();
    void aNewEntryIsWritten();
    void anEntryGetsItsFirstSubEntry();
    void anotherDestinationIsAppended();
    void aDestinationIsEditedInPlace();
    void actionsThatGoTakeTheirElementsAlong();
    void aBookmarkNameStaysWhileItsDestinationDoes();
    void countsAreKeptInTheirOwnWay_data();
    void countsAreKeptInTheirOwnWay();
    void otherPrefixesAndNoneStay();
    void editAndUndoSavesTheSameBytes();
    void aDeletedEntryComesBackWithItsBytesAfterASave();
    void savesFollowEachOther();
    void aCopyGetsAnElementOfItsOwn();
    void titlesMayHoldAnything();
    void namespacesOfTheOldPlaceComeAlong();
    void tooDeepAnOutlineIsRefusedAndTheFileKept();
    void aHundredThousandEntriesAreSaved();

private:
    std::unique_ptr<SavingDesk> desk;
};

void TestSaveOutline::noEditSavesTheSameBytes()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = desk->Open(path);
    QCOMPARE(DumpTree(document->GetOutlineRoot()),
             QStringLiteral("One closed -> 1/0 (5,0,0,0) x0 mode 0\n  One.One\n  One.Two\n"
                            "Two -> http://a.b/?c&d -> action 0\nThree\n"));
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QVERIFY(document->SaveAs(desk->Path(QStringLiteral("b.ofd"))));
    QCOMPARE(BytesOf(path), before);
    QCOMPARE(BytesOf(desk->Path(QStringLiteral("b.ofd"))), before);
}

void TestSaveOutline::aRenameChangesOnlyTheTitle()
{
    const OfdFile file = File();
    const QString original = file.Write(desk->Path(QStringLiteral("original.ofd")));
    const QString path = desk->Saved(file, [](IG_Document& document) {
        Rename(document, "0", "Uno & co");
        Rename(document, "0/1", "Dos");
    });
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("Title=\"One\"", "Title=\"Uno &amp; co\"").replace("Title = 'One.Two'", "Title = \"Dos\"");
    QCOMPARE(PartOf(path, DocumentPart), expected);
    QCOMPARE(DifferingParts(original, path), QStringList(DocumentPart));
}

void TestSaveOutline::expansionIsWritten()
{
    const OfdFile file = File();
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
    const OfdFile file = File();
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
    const OfdFile file = File();
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        G_TreeNode* root = document.GetOutlineRoot();
        Move(root, 2, root, 0);
        Move(NodeAt(document, "1"), 1, root, 3);
        Rename(document, "3", "Moved");
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
    const OfdFile file = File();
    const QByteArray part =
        desk->SavedPart(file, DocumentPart, [](IG_Document& document) { document.GetOutlineRoot()->RemoveSubNode(0); });
    QByteArray expected = file.Part(DocumentPart);
    const int begin = expected.indexOf("\n    <ofd:OutlineElem Title=\"One\"");
    expected.remove(begin, expected.indexOf("\n    <ofd:OutlineElem Title=\"Two\"") - begin);
    QCOMPARE(part, expected);
}

void TestSaveOutline::theLastEntryTakesTheOutlineAlong()
{
    const OfdFile file = File();
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
    const OfdFile file = File("\n  <ofd:Permissions/>\n  <ofd:Bookmarks/>");
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
    const QString path = desk->Saved(File("<ofd:Extensions>e.xml</ofd:Extensions>"), [](IG_Document& document) {
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
    const QString path = File("<ofd:Outlines> </ofd:Outlines>").Write(desk->Path(QStringLiteral("a.ofd")));
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

void TestSaveOutline::aNewEntryIsWritten_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("point") << 0
                           << QByteArray("<ofd:Dest Type=\"XYZ\" PageID=\"2\" Left=\"1.5\" Top=\"2\" Right=\"30\" "
                                         "Bottom=\"40\" Zoom=\"1.25\"/>");
    QTest::newRow("page") << 1 << QByteArray("<ofd:Dest Type=\"Fit\" PageID=\"2\"/>");
    QTest::newRow("width") << 2 << QByteArray("<ofd:Dest Type=\"FitH\" PageID=\"2\" Top=\"2\"/>");
    QTest::newRow("height") << 3 << QByteArray("<ofd:Dest Type=\"FitV\" PageID=\"2\" Left=\"1.5\"/>");
    QTest::newRow("rectangle")
        << 4 << QByteArray("<ofd:Dest Type=\"FitR\" PageID=\"2\" Left=\"1.5\" Top=\"2\" Right=\"30\" Bottom=\"40\"/>");
}

void TestSaveOutline::aNewEntryIsWritten()
{
    QFETCH(const int, mode);
    QFETCH(const QByteArray, xml);
    const OfdFile file = File();
    const QByteArray part = desk->SavedPart(file, DocumentPart, [mode](IG_Document& document) {
        G_OutlineItem* item = NewItem("New"); // owned by its node
        item->expanded = false;
        auto* action = new G_ActionGoto; // owned by the item
        action->dest->zoomMode = mode;
        action->dest->pageIndex = 1; // the identifier is found by it
        action->dest->left = 1.5F;
        action->dest->top = 2;
        action->dest->right = 30;
        action->dest->bottom = 40;
        action->dest->zoom = 1.25F;
        item->actions.Add(action);
        document.GetOutlineRoot()->AddSubNode(1, item);
    });
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("\n    <ofd:OutlineElem Title=\"Two\">",
                     "\n    <ofd:OutlineElem Title=\"New\" Expanded=\"false\"><ofd:Actions><ofd:Action "
                     "Event=\"CLICK\"><ofd:Goto>" +
                         xml +
                         "</ofd:Goto></ofd:Action></ofd:Actions></ofd:OutlineElem>\n    <ofd:OutlineElem "
                         "Title=\"Two\">");
    QCOMPARE(part, expected);
}

void TestSaveOutline::anEntryGetsItsFirstSubEntry()
{
    const OfdFile file = File();
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

void TestSaveOutline::anotherDestinationIsAppended()
{
    const OfdFile file = File();
    const auto reset = [](IG_Document& document, const QByteArray& rows) {
        // A record's copy with one action more takes the place of the record, as the pane does it.
        auto* changed = new G_OutlineItem(*ItemAt(document, rows)); // owned by the node below
        auto* action = new G_ActionGoto;
        action->dest->zoomMode = 1;
        action->dest->pageId = 3;
        action->dest->pageIndex = 2;
        changed->actions.Add(action);
        NodeAt(document, rows)->SetNodeData(changed);
    };
    const QByteArray part = desk->SavedPart(file, DocumentPart, [&reset](IG_Document& document) {
        for (const char* rows : {"0", "1", "0/0"})
            reset(document, rows);
    });
    const QByteArray added =
        "<ofd:Action Event=\"CLICK\"><ofd:Goto><ofd:Dest Type=\"Fit\" PageID=\"3\"/></ofd:Goto></ofd:Action>";
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("</ofd:Action>\n      </ofd:Actions>",
                     "</ofd:Action>\n        " + added + "\n      </ofd:Actions>");
    expected.replace("<ofd:Sound ResourceID=\"7\"/></ofd:Action>",
                     "<ofd:Sound ResourceID=\"7\"/></ofd:Action>" + added);
    expected.replace("<ofd:OutlineElem Title=\"One.One\"/>",
                     "<ofd:OutlineElem Title=\"One.One\"><ofd:Actions>" + added + "</ofd:Actions></ofd:OutlineElem>");
    QCOMPARE(part, expected);
}

void TestSaveOutline::aDestinationIsEditedInPlace()
{
    const OfdFile file = File();
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        dynamic_cast<G_ActionGoto*>(ItemAt(document, "0")->actions[0])->dest->zoomMode = 1;
        dynamic_cast<G_ActionUri*>(ItemAt(document, "1")->actions[0])->uri = "http://e.f/";
    });
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("Type=\"XYZ\" PageID=\"1\" Left=\"5\" Own=\"1\"", "Type=\"Fit\" PageID=\"1\" Own=\"1\"");
    expected.replace("http://a.b/?c&amp;d", "http://e.f/");
    QCOMPARE(part, expected);
}

void TestSaveOutline::actionsThatGoTakeTheirElementsAlong()
{
    const OfdFile file = File();
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        for (const char* rows : {"0", "1"}) {
            delete ItemAt(document, rows)->actions[0];
            ItemAt(document, rows)->actions.RemoveAt(0);
        }
    });
    QByteArray expected = file.Part(DocumentPart);
    const QByteArray first = "<ofd:Action Event=\"CLICK\"><ofd:Region>";
    int begin = expected.indexOf(first);
    expected.remove(begin, expected.indexOf("<ofd:Action ", begin + 1) - begin);
    const QByteArray endTag = "</ofd:Actions>";
    begin = expected.indexOf("\n      <ofd:Actions>"); // none is left: the list may not be empty
    expected.remove(begin, expected.indexOf(endTag) + endTag.size() - begin);
    QCOMPARE(part, expected);
}

void TestSaveOutline::aBookmarkNameStaysWhileItsDestinationDoes()
{
    const OfdFile file = File(
        "<ofd:Outlines><ofd:OutlineElem Title=\"A\"><ofd:Actions><ofd:Action Event=\"CLICK\"><ofd:Goto><ofd:Bookmark "
        "Name=\"b\"/></ofd:Goto></ofd:Action></ofd:Actions></ofd:OutlineElem></ofd:Outlines><ofd:Bookmarks>"
        "<ofd:Bookmark Name=\"b\"><ofd:Dest Type=\"Fit\" PageID=\"2\"/></ofd:Bookmark></ofd:Bookmarks>");
    QByteArray part =
        desk->SavedPart(file, DocumentPart, [](IG_Document& document) { Rename(document, "0", "Renamed"); });
    QCOMPARE(part, file.Part(DocumentPart).replace("\"A\"", "\"Renamed\""));
    part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        auto* action = dynamic_cast<G_ActionGoto*>(ItemAt(document, "0")->actions[0]);
        QCOMPARE(action->dest->pageIndex, 1);
        action->dest->pageIndex = 2;
        action->dest->pageId = 3;
    });
    QCOMPARE(part,
             file.Part(DocumentPart)
                 .replace("<ofd:Goto><ofd:Bookmark Name=\"b\"/>", "<ofd:Goto><ofd:Dest Type=\"Fit\" PageID=\"3\"/>"));
}

void TestSaveOutline::countsAreKeptInTheirOwnWay_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    // Two sub-entries, one of them with two: three leaves, two children, four in all. A leaf is added to the deep one.
    QTest::newRow("leaves") << QByteArray("3") << QByteArray("4");
    QTest::newRow("children") << QByteArray("2") << QByteArray("2");
    QTest::newRow("all") << QByteArray("4") << QByteArray("5");
    QTest::newRow("negative") << QByteArray("-4") << QByteArray("-5");
    QTest::newRow("wrong") << QByteArray("17") << QByteArray("4");
}

void TestSaveOutline::countsAreKeptInTheirOwnWay()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    const OfdFile file = File("<ofd:Outlines><ofd:OutlineElem Title=\"Top\" Count=\"" + before +
                              "\"><ofd:OutlineElem Title=\"A\"><ofd:OutlineElem Title=\"A1\"/><ofd:OutlineElem "
                              "Title=\"A2\"/></ofd:OutlineElem><ofd:OutlineElem Title=\"B\" Count=\"0\"/>"
                              "</ofd:OutlineElem></ofd:Outlines>");
    QByteArray expected = file.Part(DocumentPart);
    QByteArray part =
        desk->SavedPart(file, DocumentPart, [](IG_Document& document) { Rename(document, "0", "Other"); });
    QCOMPARE(part, expected.replace("\"Top\"", "\"Other\"")); // a number that no edit made wrong stays
    part = desk->SavedPart(file, DocumentPart,
                           [](IG_Document& document) { NodeAt(document, "0/0")->AddSubNode(0, NewItem("A0")); });
    expected.replace("\"Other\"", "\"Top\"").replace("Count=\"" + before, "Count=\"" + after);
    expected.replace("Title=\"A\">", "Title=\"A\"><ofd:OutlineElem Title=\"A0\"/>");
    QCOMPARE(part, expected);
}

void TestSaveOutline::otherPrefixesAndNoneStay()
{
    const OfdFile file = File("<Outlines><OutlineElem Title=\"A\"/><x:OutlineElem xmlns:x=\"urn:x\" Title=\"B\" "
                              "x:Title=\"not this\"/></Outlines>");
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        Rename(document, "0", "AA");
        document.GetOutlineRoot()->AddSubNode(1, NewItem("New"));
        NodeAt(document, "2")->AddSubNode(0, NewItem("Below"));
    });
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("<OutlineElem Title=\"A\"/>", "<OutlineElem Title=\"AA\"/><OutlineElem Title=\"New\"/>");
    expected.replace("x:Title=\"not this\"/>", "x:Title=\"not this\"><x:OutlineElem Title=\"Below\"/></x:OutlineElem>");
    QCOMPARE(part, expected);
}

void TestSaveOutline::editAndUndoSavesTheSameBytes()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = desk->Open(path);
    G_TreeNode* root = document->GetOutlineRoot();
    // Undo steps hold copies of records and put them back.
    const G_OutlineItem one(*ItemAt(*document, "0"));
    const G_OutlineItem oneOne(*ItemAt(*document, "0/0"));
    const G_OutlineItem oneTwo(*ItemAt(*document, "0/1"));
    const G_OutlineItem two(*ItemAt(*document, "1"));
    Rename(*document, "1", "other");
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
    const OfdFile file = File();
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
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const auto document = desk->Open(path);
    G_TreeNode* root = document->GetOutlineRoot();
    for (int round = 0; round < 4; ++round) {
        Rename(*document, "0", CCA_String("Round" + QByteArray::number(round)));
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
    const OfdFile file = File();
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        auto* copy = new G_OutlineItem(*ItemAt(document, "0/0")); // owned by its node
        document.GetOutlineRoot()->AddSubNode(3, copy);
        Rename(document, "3", "Copy");
    });
    QVERIFY2(part.contains("\n    <ofd:OutlineElem Title=\"Copy\"/>\n  </ofd:Outlines>"), part.constData());
    QVERIFY(part.contains("\n      <ofd:OutlineElem Title=\"One.One\"/>"));
}

void TestSaveOutline::titlesMayHoldAnything()
{
    const QString name =
        QString::fromUtf8("<\"&'>\ttab\nline 目录 \xF0\x9F\x93\x96 ]]>") + QString(10'000, QLatin1Char('x'));
    const QString path = desk->Saved(File(), [&](IG_Document& document) {
        Rename(document, "0", GQ_ToCAS(name));
        Rename(document, "1", CCA_String());
        document.GetOutlineRoot()->AddSubNode(0, NewItem(CCA_String()));
    });
    const auto document = desk->Open(path);
    QCOMPARE(GQ_ToQStringFromUtf8(ItemAt(*document, "1")->text), name);
    QVERIFY(ItemAt(*document, "0")->text.IsEmpty());
    QVERIFY(ItemAt(*document, "2")->text.IsEmpty());
}

void TestSaveOutline::namespacesOfTheOldPlaceComeAlong()
{
    const OfdFile file =
        File("<ofd:Outlines><ofd:OutlineElem Title=\"A\" xmlns:x=\"urn:x\"><ofd:OutlineElem Title=\"B\" "
             "x:own=\"1\"><ofd:OutlineElem Title=\"C\"><x:note/></ofd:OutlineElem></ofd:OutlineElem>"
             "</ofd:OutlineElem></ofd:Outlines>");
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        Move(NodeAt(document, "0"), 0, document.GetOutlineRoot(), 1);
    });
    QVERIFY2(part.contains("<ofd:OutlineElem Title=\"A\" xmlns:x=\"urn:x\"></ofd:OutlineElem><ofd:OutlineElem "
                           "Title=\"B\" x:own=\"1\" xmlns:x=\"urn:x\"><ofd:OutlineElem Title=\"C\"><x:note/>"),
             part.constData());
}

void TestSaveOutline::tooDeepAnOutlineIsRefusedAndTheFileKept()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
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
    const QString path = desk->Saved(File(xml + "</ofd:Outlines>"), [](IG_Document& document) {
        G_TreeNode* root = document.GetOutlineRoot();
        for (int i = 0; i < 50'000; i += 2)
            Rename(document, QByteArray::number(i) + "/0", "renamed");
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
