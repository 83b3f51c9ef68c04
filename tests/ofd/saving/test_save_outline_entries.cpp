#include "outline_entries.h"
#include "saving_desk.h"

#include <frame/base/converters.h>
#include <frame/document/payloads.h>
#include <tests/support/test_main.h>

#include <QtTest>

// What an outline entry holds: title, actions, destinations, counts, spelling.
class TestSaveOutlineEntries : public QObject
{
    Q_OBJECT

private slots:
    void init() { desk = std::make_unique<SavingDesk>(); }

    void aNewEntryIsWritten_data();
    void aNewEntryIsWritten();
    void anotherDestinationIsAppended();
    void aDestinationIsEditedInPlace();
    void actionsThatGoTakeTheirElementsAlong();
    void aBookmarkNameStaysWhileItsDestinationDoes();
    void countsAreKeptInTheirOwnWay_data();
    void countsAreKeptInTheirOwnWay();
    void otherPrefixesAndNoneStay();
    void titlesMayHoldAnything();
    void namespacesOfTheOldPlaceComeAlong();

private:
    std::unique_ptr<SavingDesk> desk;
};

void TestSaveOutlineEntries::aNewEntryIsWritten_data()
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

void TestSaveOutlineEntries::aNewEntryIsWritten()
{
    QFETCH(const int, mode);
    QFETCH(const QByteArray, xml);
    const OfdFile file = OutlineFile();
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

void TestSaveOutlineEntries::anotherDestinationIsAppended()
{
    const OfdFile file = OutlineFile();
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

void TestSaveOutlineEntries::aDestinationIsEditedInPlace()
{
    const OfdFile file = OutlineFile();
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        dynamic_cast<G_ActionGoto*>(ItemAt(document, "0")->actions[0])->dest->zoomMode = 1;
        dynamic_cast<G_ActionUri*>(ItemAt(document, "1")->actions[0])->uri = "http://e.f/";
    });
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("Type=\"XYZ\" PageID=\"1\" Left=\"5\" Own=\"1\"", "Type=\"Fit\" PageID=\"1\" Own=\"1\"");
    expected.replace("http://a.b/?c&amp;d", "http://e.f/");
    QCOMPARE(part, expected);
}

void TestSaveOutlineEntries::actionsThatGoTakeTheirElementsAlong()
{
    const OfdFile file = OutlineFile();
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

void TestSaveOutlineEntries::aBookmarkNameStaysWhileItsDestinationDoes()
{
    const OfdFile file = OutlineFile(
        "<ofd:Outlines><ofd:OutlineElem Title=\"A\"><ofd:Actions><ofd:Action Event=\"CLICK\"><ofd:Goto><ofd:Bookmark "
        "Name=\"b\"/></ofd:Goto></ofd:Action></ofd:Actions></ofd:OutlineElem></ofd:Outlines><ofd:Bookmarks>"
        "<ofd:Bookmark Name=\"b\"><ofd:Dest Type=\"Fit\" PageID=\"2\"/></ofd:Bookmark></ofd:Bookmarks>");
    QByteArray part =
        desk->SavedPart(file, DocumentPart, [](IG_Document& document) { RenameEntry(document, "0", "Renamed"); });
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

void TestSaveOutlineEntries::countsAreKeptInTheirOwnWay_data()
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

void TestSaveOutlineEntries::countsAreKeptInTheirOwnWay()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    const OfdFile file = OutlineFile("<ofd:Outlines><ofd:OutlineElem Title=\"Top\" Count=\"" + before +
                                     "\"><ofd:OutlineElem Title=\"A\"><ofd:OutlineElem Title=\"A1\"/><ofd:OutlineElem "
                                     "Title=\"A2\"/></ofd:OutlineElem><ofd:OutlineElem Title=\"B\" Count=\"0\"/>"
                                     "</ofd:OutlineElem></ofd:Outlines>");
    QByteArray expected = file.Part(DocumentPart);
    QByteArray part =
        desk->SavedPart(file, DocumentPart, [](IG_Document& document) { RenameEntry(document, "0", "Other"); });
    QCOMPARE(part, expected.replace("\"Top\"", "\"Other\"")); // a number that no edit made wrong stays
    part = desk->SavedPart(file, DocumentPart,
                           [](IG_Document& document) { NodeAt(document, "0/0")->AddSubNode(0, NewItem("A0")); });
    expected.replace("\"Other\"", "\"Top\"").replace("Count=\"" + before, "Count=\"" + after);
    expected.replace("Title=\"A\">", "Title=\"A\"><ofd:OutlineElem Title=\"A0\"/>");
    QCOMPARE(part, expected);
}

void TestSaveOutlineEntries::otherPrefixesAndNoneStay()
{
    const OfdFile file = OutlineFile("<Outlines><OutlineElem Title=\"A\"/><x:OutlineElem xmlns:x=\"urn:x\" Title=\"B\" "
                                     "x:Title=\"not this\"/></Outlines>");
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        RenameEntry(document, "0", "AA");
        document.GetOutlineRoot()->AddSubNode(1, NewItem("New"));
        NodeAt(document, "2")->AddSubNode(0, NewItem("Below"));
    });
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("<OutlineElem Title=\"A\"/>", "<OutlineElem Title=\"AA\"/><OutlineElem Title=\"New\"/>");
    expected.replace("x:Title=\"not this\"/>", "x:Title=\"not this\"><x:OutlineElem Title=\"Below\"/></x:OutlineElem>");
    QCOMPARE(part, expected);
}

void TestSaveOutlineEntries::titlesMayHoldAnything()
{
    const QString name =
        QString::fromUtf8("<\"&'>\ttab\nline 目录 \xF0\x9F\x93\x96 ]]>") + QString(10'000, QLatin1Char('x'));
    const QString path = desk->Saved(OutlineFile(), [&](IG_Document& document) {
        RenameEntry(document, "0", GQ_ToCAS(name));
        RenameEntry(document, "1", CCA_String());
        document.GetOutlineRoot()->AddSubNode(0, NewItem(CCA_String()));
    });
    const auto document = desk->Open(path);
    QCOMPARE(GQ_ToQStringFromUtf8(ItemAt(*document, "1")->text), name);
    QVERIFY(ItemAt(*document, "0")->text.IsEmpty());
    QVERIFY(ItemAt(*document, "2")->text.IsEmpty());
}

void TestSaveOutlineEntries::namespacesOfTheOldPlaceComeAlong()
{
    const OfdFile file =
        OutlineFile("<ofd:Outlines><ofd:OutlineElem Title=\"A\" xmlns:x=\"urn:x\"><ofd:OutlineElem Title=\"B\" "
                    "x:own=\"1\"><ofd:OutlineElem Title=\"C\"><x:note/></ofd:OutlineElem></ofd:OutlineElem>"
                    "</ofd:OutlineElem></ofd:Outlines>");
    const QByteArray part = desk->SavedPart(file, DocumentPart, [](IG_Document& document) {
        Move(NodeAt(document, "0"), 0, document.GetOutlineRoot(), 1);
    });
    QVERIFY2(part.contains("<ofd:OutlineElem Title=\"A\" xmlns:x=\"urn:x\"></ofd:OutlineElem><ofd:OutlineElem "
                           "Title=\"B\" x:own=\"1\" xmlns:x=\"urn:x\"><ofd:OutlineElem Title=\"C\"><x:note/>"),
             part.constData());
}

TETO_TEST_MAIN(TestSaveOutlineEntries)

#include "test_save_outline_entries.moc"
