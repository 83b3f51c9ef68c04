#include "saving_desk.h"

#include <frame/document/ig_annot.h>
#include <frame/document/ig_page.h>
#include <frame/document/payloads.h>
#include <ofd/model/unit_ids.h>
#include <tests/support/byte_streams.h>
#include <tests/support/test_main.h>

#include <QRegularExpression>
#include <QSet>
#include <QTextCodec>
#include <QtTest>

#include <thread>

namespace {

void Attach(IG_Document& document)
{
    if (!document.AddAttachment(new BytesReader("x"), false, "a", "txt", "a", "txt", 0))
        qFatal("nothing was attached");
}

int LastAttachmentId(IG_Document& document)
{
    return document.GetAttachment(document.GetAttachmentCount() - 1).id;
}

// A document that states a highest identifier of 3.
OfdFile File(const QByteArray& stated = "3")
{
    OfdFile file = OfdFile::WithPages(2);
    file.Set(DocumentPart, file.Part(DocumentPart).replace(">1000<", ">" + stated + "<"));
    return file;
}

// Two pages with an annotation each, and the attributes of those.
OfdFile FileWithAnnotations(const QByteArray& first, const QByteArray& second)
{
    const auto annots = [](const QByteArray& id) {
        return Element("PageAnnot", "<ofd:Annot " + id +
                                        " Type=\"Path\" Creator=\"c\" LastModDate=\"2020-01-02\"><ofd:Appearance "
                                        "Boundary=\"0 0 1 1\"/></ofd:Annot>");
    };
    OfdFile file = File();
    const QByteArray documentBytes = file.Part(DocumentPart);
    file.Set(
        DocumentPart,
        QByteArray(documentBytes).replace("</ofd:Pages>", "</ofd:Pages><ofd:Annotations>Annots.xml</ofd:Annotations>"));
    file.Set(QStringLiteral("Doc_0/Annots.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>A1.xml</ofd:FileLoc></ofd:Page>"
                                    "<ofd:Page PageID=\"2\"><ofd:FileLoc>A2.xml</ofd:FileLoc></ofd:Page>"));
    file.Set(QStringLiteral("Doc_0/A1.xml"), annots(first));
    return file.Set(QStringLiteral("Doc_0/A2.xml"), annots(second));
}

void EditBoth(IG_Document& document)
{
    for (int page = 0; page < 2; ++page) {
        document.GetPage(page)->LoadAnnots();
        document.GetPage(page)->GetAnnotAt(0)->SetRemark("edited");
    }
}

} // namespace

// Identifiers that are given out when something new is saved.
class TestSaveIds : public QObject
{
    Q_OBJECT

private slots:
    void init() { desk = std::make_unique<SavingDesk>(); }

    void theHighestIdentifierOfAPartIsFound_data();
    void theHighestIdentifierOfAPartIsFound();
    void newOnesAreAboveThoseOfEveryPart_data();
    void newOnesAreAboveThoseOfEveryPart();
    void partsThatTheDocumentDoesNotNameDoNotCount();
    void aStatedHighestThatLeavesNoRoomStays();
    void onesThatWereFreedAreNotGivenOutAgain();
    void threadsNeverGetTheSame();
    void annotationsOfAllPagesGetDifferentOnes();
    void annotationsOfTwoPagesWithOneIdAreToldApart();
    void onesAboveTheRangeOfIntAreWrittenAsTheyAre();

private:
    std::unique_ptr<SavingDesk> desk;
};

void TestSaveIds::theHighestIdentifierOfAPartIsFound_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<int>("highest");
    QTest::newRow("none") << QByteArray("<a/>") << 0;
    QTest::newRow("empty") << QByteArray() << 0;
    QTest::newRow("several") << QByteArray("<a ID=\"7\"><b ID=\"12\"/><c ID=\"9\"/></a>") << 12;
    QTest::newRow("quotes, blanks, lines") << QByteArray("<a\nID = '7'/><a ID\t=\n\" 8 \"/>") << 8;
    QTest::newRow("prefix") << QByteArray("<a x:ID=\"5\"/>") << 5;
    QTest::newRow("other names") << QByteArray("<a PageID=\"50\" RefID=\"60\" ID2=\"70\" Id=\"80\"/>") << 0;
    QTest::newRow("no numbers") << QByteArray("<a ID=\"s001\"/><a ID=\"\"/><a ID=") << 0;
    QTest::newRow("without room above") << QByteArray("<a ID=\"2147483647\"/><a ID=\"99999999999999999999\"/>") << 0;
    QTest::newRow("at the end") << QByteArray("<a ID=\"4") << 4;
}

void TestSaveIds::theHighestIdentifierOfAPartIsFound()
{
    QFETCH(const QByteArray, xml);
    QFETCH(const int, highest);
    QCOMPARE(ofd::HighestIdIn(xml), highest);
}

void TestSaveIds::newOnesAreAboveThoseOfEveryPart_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray object = "<ofd:PathObject ID=\"4711\" Boundary=\"0 0 1 1\"/>";
    QTest::newRow("page") << QStringLiteral("Doc_0/Pages/Page_1/Content.xml") << PageXml(object);
    const QString wide = QString::fromUtf8(PageXml(object)).replace(QStringLiteral("UTF-8"), QStringLiteral("UTF-16"));
    QTest::newRow("page in wide characters")
        << QStringLiteral("Doc_0/Pages/Page_1/Content.xml") << QTextCodec::codecForName("UTF-16")->fromUnicode(wide);
    QTest::newRow("template") << QStringLiteral("Doc_0/Template.xml") << PageXml(object);
    QTest::newRow("resources") << QStringLiteral("Doc_0/Res.xml")
                               << Element("Res", "<ofd:Fonts><ofd:Font ID=\"4711\"/></ofd:Fonts>");
    QTest::newRow("resources of a page") << QStringLiteral("Doc_0/Pages/Page_0/PageRes.xml")
                                         << Element("Res",
                                                    "<ofd:DrawParams><ofd:DrawParam ID=\"4711\"/></ofd:DrawParams>");
    QTest::newRow("annotations") << QStringLiteral("Doc_0/PageAnnots.xml")
                                 << Element("PageAnnot", "<ofd:Annot ID=\"4711\" Type=\"Path\"><ofd:Appearance/>"
                                                         "</ofd:Annot>");
    QTest::newRow("attachments") << QStringLiteral("Doc_0/Attachments.xml")
                                 << Element("Attachments", "<ofd:Attachment ID=\"4711\" Name=\"b\"><ofd:FileLoc>b.bin"
                                                           "</ofd:FileLoc></ofd:Attachment>");
}

void TestSaveIds::newOnesAreAboveThoseOfEveryPart()
{
    QFETCH(const QString, part);
    QFETCH(const QByteArray, bytes);
    OfdFile file = OfdFile::WithPages(2);
    file.Common("<ofd:DocumentRes>Res.xml</ofd:DocumentRes><ofd:TemplatePage ID=\"2\" BaseLoc=\"Template.xml\"/>");
    file.Tail("<ofd:Annotations>Annots.xml</ofd:Annotations><ofd:Attachments>Attachments.xml</ofd:Attachments>");
    file.Set(QStringLiteral("Doc_0/Annots.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>PageAnnots.xml</ofd:FileLoc></ofd:Page>"));
    file.Set(QStringLiteral("Doc_0/Pages/Page_0/Content.xml"),
             Element("Page", "<ofd:PageRes>PageRes.xml</ofd:PageRes><ofd:Content/>"));
    file.Set(DocumentPart, file.Part(DocumentPart).replace(">1000<", ">3<"));
    file.Set(part, bytes);
    const QString path = desk->Saved(file, Attach);
    QVERIFY(PartOf(path, DocumentPart).contains("<ofd:MaxUnitID>4712</ofd:MaxUnitID>"));
    QCOMPARE(LastAttachmentId(*desk->Open(path)), 4712);
}

void TestSaveIds::partsThatTheDocumentDoesNotNameDoNotCount()
{
    OfdFile file = File();
    file.Set(QStringLiteral("Doc_0/Unreachable.xml"), PageXml("<ofd:PathObject ID=\"4711\"/>"));
    QCOMPARE(LastAttachmentId(*desk->Open(desk->Saved(file, Attach))), 501); // the layer has 500
}

void TestSaveIds::aStatedHighestThatLeavesNoRoomStays()
{
    for (const QByteArray& stated : {QByteArray("2147483647"), QByteArray("4294967295")}) {
        const QString path = desk->Saved(File(stated), Attach);
        QVERIFY(PartOf(path, DocumentPart).contains("<ofd:MaxUnitID>" + stated + "</ofd:MaxUnitID>"));
        QCOMPARE(LastAttachmentId(*desk->Open(path)), 501);
    }
}

void TestSaveIds::onesThatWereFreedAreNotGivenOutAgain()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    {
        const auto document = desk->Open(path);
        Attach(*document);
        QVERIFY(document->Save());
        QVERIFY(document->RemoveAttachment(0));
        Attach(*document);
        QCOMPARE(LastAttachmentId(*document), 502);
        QVERIFY(document->RemoveAttachment(0));
        QVERIFY(document->Save());
    }
    const auto reopened = desk->Open(path);
    QCOMPARE(reopened->GetAttachmentCount(), 0);
    Attach(*reopened);
    QVERIFY(LastAttachmentId(*reopened) > 501);
}

void TestSaveIds::threadsNeverGetTheSame()
{
    const auto document = desk->Open(File().Write(desk->Path(QStringLiteral("a.ofd"))));
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&document] {
            for (int k = 0; k < 10; ++k)
                Attach(*document);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QSet<int> ids;
    for (int i = 0; i < document->GetAttachmentCount(); ++i)
        ids.insert(document->GetAttachment(i).id);
    QCOMPARE(ids.size(), 80);
}

void TestSaveIds::annotationsOfAllPagesGetDifferentOnes()
{
    const QString path = desk->Saved(FileWithAnnotations("", ""), EditBoth);
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/A1.xml")).contains(" ID=\"501\""));
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/A2.xml")).contains(" ID=\"502\""));
    QVERIFY(PartOf(path, DocumentPart).contains("<ofd:MaxUnitID>502<"));
}

// Whoever lists annotations compares their ids without a page.
void TestSaveIds::annotationsOfTwoPagesWithOneIdAreToldApart()
{
    const OfdFile file = FileWithAnnotations("ID=\"31\"", "ID=\"31\"");
    const auto document = desk->Open(file.Write(desk->Path(QStringLiteral("twice.ofd"))));
    QVector<int> ids;
    for (const int page : {1, 0}) { // the one that is asked for first keeps its own
        document->GetPage(page)->LoadAnnots();
        document->GetPage(page)->LoadAnnots();
        ids.append(document->GetPage(page)->GetAnnotAt(0)->GetId());
    }
    QCOMPARE(ids, (QVector<int>{31, 501}));
    QCOMPARE(document->GetPage(0)->GetAnnotById(501), document->GetPage(0)->GetAnnotAt(0));
    QVERIFY(!document->IsModified());
    const QString path = desk->Saved(file, EditBoth);
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/A1.xml")).contains(" ID=\"31\""));
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/A2.xml")).contains(" ID=\"501\""));
}

// They are legal, and negative in the program.
void TestSaveIds::onesAboveTheRangeOfIntAreWrittenAsTheyAre()
{
    OfdFile file = OfdFile::WithPages(1);
    file.Tail("<ofd:CustomTags>Tags.xml</ofd:CustomTags>");
    file.Set(
        QStringLiteral("Doc_0/Tags.xml"),
        Element("CustomTags", "<ofd:CustomTag NameSpace=\"n\"><ofd:FileLoc>Tag.xml</ofd:FileLoc></ofd:CustomTag>"));
    file.Set(QStringLiteral("Doc_0/Tag.xml"),
             Element("root", "<ofd:a><ofd:ObjectRef PageRef=\"4294967295\">4000000000</ofd:ObjectRef></ofd:a>"));
    file.Set(DocumentPart, file.Part(DocumentPart).replace("<ofd:Page ID=\"1\"", "<ofd:Page ID=\"4294967295\""));
    const QString path = desk->Saved(file, [](ofd::OfdDocument& document) {
        document.CreateBookmarkRoot();
        auto* bookmark = new G_Bookmark; // owned by its node
        bookmark->name = "b";
        bookmark->dest->pageId = document.PageIdFromIndex(0);
        document.GetBookmarkRoot()->AddSubNode(0, bookmark);
        G_TreeNode* top = document.CustomTagRoot(0)->SubNode(0);
        const auto* tag = dynamic_cast<G_CustomTagItem*>(top->SubNode(0)->data);
        auto* copy = new G_CustomTagItem; // owned by its node
        copy->tagName = "b";
        copy->objects.Add(new G_PageObjRef(*tag->objects.GetAt(0)));
        top->AddSubNode(1, copy);
    });
    QVERIFY(PartOf(path, DocumentPart).contains("PageID=\"4294967295\""));
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/Tag.xml"))
                .contains("<ofd:b><ofd:ObjectRef PageRef=\"4294967295\">4000000000</ofd:ObjectRef></ofd:b>"));
    const auto again = desk->Open(path);
    QCOMPARE(dynamic_cast<G_Bookmark*>(again->GetBookmarkRoot()->SubNode(0)->data)->dest->pageIndex, 0);
}

TETO_TEST_MAIN(TestSaveIds)

#include "test_save_ids.moc"
