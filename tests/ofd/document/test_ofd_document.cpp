#include "ofd_file.h"

#include <frame/base/converters.h>
#include <ofd/ofd_document.h>
#include <ofd/package/package.h>
#include <tests/support/byte_streams.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

namespace {

const QString PagePart = QStringLiteral("Doc_0/Pages/Page_0/Content.xml");
const QString DocumentPart = QStringLiteral("Doc_0/Document.xml");

QString Utf8(const CCA_String& text)
{
    return GQ_ToQStringFromUtf8(text);
}

const G_OutlineItem* ItemAt(IG_Document& document, int row)
{
    return dynamic_cast<const G_OutlineItem*>(document.GetOutlineRoot()->SubNode(row)->data);
}

QByteArray Outline(const QByteArray& attributes, const QByteArray& action)
{
    return "<ofd:OutlineElem " + attributes + "><ofd:Actions><ofd:Action Event=\"CLICK\">" + action +
           "</ofd:Action></ofd:Actions></ofd:OutlineElem>";
}

QString TextIn(IG_Page* page, const CCA_GRect& rect)
{
    page->GetTextPage()->Parse(0);
    wchar_t* wide = nullptr;
    page->GetTextPage()->GetTextInRect(rect, &wide);
    const QString text = QString::fromWCharArray(wide);
    CCA_FreeWide(wide);
    return text;
}

} // namespace

class TestOfdDocument : public QObject
{
    Q_OBJECT

private slots:
    void anUnreadableFileIsTold_data();
    void anUnreadableFileIsTold();
    void theKeyIsTheFilesPath();
    void pageSizesComeFromTheNearestArea_data();
    void pageSizesComeFromTheNearestArea();
    void aPageInWideCharactersHasItsOwnSize_data();
    void aPageInWideCharactersHasItsOwnSize();
    void outlineActionsAreKept();
    void bookmarksInActionsAreResolved();
    void permissionsAndTheirPeriodAreKept_data();
    void permissionsAndTheirPeriodAreKept();
    void theCurrentVersionIsRead();
    void signedDocumentsSaySo();
    void textFollowsObjectsAndJoinsLines();
    void aGlyphForTwoCharactersIsOneCell();
    void textInsideCompositesIsFound();
    void objectsInGroupsCanBeTagged();
    void objectsInHiddenGroupsAreNotCollected();
    void duplicateObjectIdsMeanTheFirst();
    void pagesListedTwiceAreTwoPages();
    void unreadablePagesKeepTheirPlaces();

private:
    std::unique_ptr<ofd::OfdDocument> Open(const OfdFile& file);
    QString path;
    QTemporaryDir folder;
    int count = 0;
};

std::unique_ptr<ofd::OfdDocument> TestOfdDocument::Open(const OfdFile& file)
{
    path = file.Write(folder.filePath(QStringLiteral("%1.ofd").arg(++count)));
    ofd::OpenResult result = ofd::OfdDocument::Open(path);
    if (!result)
        qFatal("%s", qPrintable(result.error));
    return std::move(result.document);
}

void TestOfdDocument::anUnreadableFileIsTold_data()
{
    QTest::addColumn<QByteArray>("bytes"); // null: no file at all
    QTest::addColumn<QString>("word");
    QTest::newRow("no file") << QByteArray() << QString();
    QTest::newRow("empty") << QByteArray("") << QStringLiteral("empty");
    QTest::newRow("text") << QByteArray("Dear reader, this is no archive at all.") << QStringLiteral("no OFD");
    QTest::newRow("beginning of an archive") << QByteArray("PK\x03\x04 and nothing more of it") << QString();
}

void TestOfdDocument::anUnreadableFileIsTold()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, word);
    const QString name = folder.filePath(QStringLiteral("unreadable.ofd"));
    QFile::remove(name);
    if (!bytes.isNull()) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    const ofd::OpenResult result = ofd::OfdDocument::Open(name);
    QVERIFY(!result);
    QVERIFY(!result.error.isEmpty());
    QVERIFY2(result.error.contains(word), qPrintable(result.error));
    QVERIFY(!ofd::OfdDocument::Open(folder.path())); // a folder
}

void TestOfdDocument::theKeyIsTheFilesPath()
{
    const auto document = Open(OfdFile::WithPages(1));
    QCOMPARE(Utf8(document->GetDocumentKey()), QFileInfo(path).canonicalFilePath());
    const QString link = folder.filePath(QStringLiteral("link.ofd"));
    QVERIFY(QFile::link(path, link));
    const ofd::OpenResult other = ofd::OfdDocument::Open(link);
    QVERIFY(other);
    QVERIFY(other.document->GetDocumentKey() == document->GetDocumentKey()); // one file, one key
}

void TestOfdDocument::pageSizesComeFromTheNearestArea_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QSizeF>("size");
    const QByteArray area = "<ofd:Area><ofd:PhysicalBox>0 0 50.5 60</ofd:PhysicalBox></ofd:Area>";
    const QByteArray content = "<ofd:Content><ofd:Layer ID=\"9\"><ofd:TextObject ID=\"8\"><ofd:TextCode>Area"
                               "</ofd:TextCode></ofd:TextObject></ofd:Layer></ofd:Content>";
    const QByteArray reference = "<ofd:Template TemplateID=\"60\"/>";
    QTest::newRow("own, in front") << area + content << QSizeF(50.5, 60);
    QTest::newRow("own, behind the content") << content + area << QSizeF(50.5, 60);
    QTest::newRow("own, behind a template") << reference + area + content << QSizeF(50.5, 60);
    QTest::newRow("of the template") << reference + content << QSizeF(70, 80);
    QTest::newRow("of the template, named behind the content") << content + reference << QSizeF(70, 80);
    QTest::newRow("of the template, named behind an empty content") << "<ofd:Content/>" + reference << QSizeF(70, 80);
    QTest::newRow("own, far behind an empty content")
        << "<ofd:Content />" + QByteArray(5000, ' ') + area << QSizeF(50.5, 60);
    QTest::newRow("of the document") << content << QSizeF(100, 100);
    QTest::newRow("without namespace") << "<Area><PhysicalBox>0 0 50.5 60</PhysicalBox></Area>" + content
                                       << QSizeF(50.5, 60);
    QTest::newRow("a box of no size") << "<ofd:Area><ofd:PhysicalBox>0 0 0 60</ofd:PhysicalBox></ofd:Area>" + content
                                      << QSizeF(100, 100);
    QTest::newRow("a comment that looks like one") << "<!--" + area + "-->" + content << QSizeF(100, 100);
    QTest::newRow("a box off the origin")
        << "<ofd:Area><ofd:PhysicalBox> 5 5 50.5 60 </ofd:PhysicalBox></ofd:Area>" + content << QSizeF(50.5, 60);
    QTest::newRow("far behind") << QByteArray(200'000, ' ') + content + QByteArray(200'000, ' ') + area
                                << QSizeF(50.5, 60);
}

void TestOfdDocument::pageSizesComeFromTheNearestArea()
{
    QFETCH(QByteArray, page);
    QFETCH(QSizeF, size);
    OfdFile file = OfdFile::WithPages(1).Common("<ofd:TemplatePage ID=\"60\" BaseLoc=\"T.xml\"/>");
    file.Set(QStringLiteral("Doc_0/T.xml"),
             Element("Page", "<ofd:Area><ofd:PhysicalBox>0 0 70 80</ofd:PhysicalBox></ofd:Area>"));
    file.Set(PagePart, Element("Page", page));
    const auto document = Open(file);
    QCOMPARE(document->PageSizeMm(0), size);
    QCOMPARE(document->GetPage(0)->GetPageWidth(), float(size.width()));
    QCOMPARE(document->GetPage(0)->GetPageHeight(), float(size.height()));
}

void TestOfdDocument::aPageInWideCharactersHasItsOwnSize_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<bool>("hasMark");
    QTest::newRow("with a mark") << QByteArray("UTF-16") << true;
    QTest::newRow("little-endian") << QByteArray("UTF-16LE") << false;
    QTest::newRow("big-endian") << QByteArray("UTF-16BE") << false;
}

void TestOfdDocument::aPageInWideCharactersHasItsOwnSize()
{
    QFETCH(QByteArray, encoding);
    QFETCH(bool, hasMark);
    OfdFile file = OfdFile::WithPages(1);
    QString page = QString::fromUtf8(
        Element("Page", "<ofd:Area><ofd:PhysicalBox>0 0 70 80</ofd:PhysicalBox></ofd:Area><ofd:Content/>"));
    page.replace(QStringLiteral("UTF-8"), QStringLiteral("UTF-16"));
    QTextCodec::ConverterState state(hasMark ? QTextCodec::DefaultConversion : QTextCodec::IgnoreHeader);
    file.Set(PagePart, QTextCodec::codecForName(encoding)->fromUnicode(page.constData(), page.size(), &state));
    QCOMPARE(Open(file)->PageSizeMm(0), QSizeF(70, 80));
}

void TestOfdDocument::outlineActionsAreKept()
{
    const auto document = Open(OfdFile::WithPages(2).Tail(
        "<ofd:Outlines>" +
        Outline("Title=\" Go \" Expanded=\"false\"", "<ofd:Goto><ofd:Dest Type=\"FitR\" PageID=\"2\" Left=\"1\" "
                                                     "Top=\"2\" Right=\"3\" Bottom=\"4\"/></ofd:Goto>") +
        Outline("Title=\"Web\"", "<ofd:URI URI=\"https://example.org/?a=1&amp;b=2\"/>") +
        Outline("Title=\"Sound\"", "<ofd:Sound ResourceID=\"5\"/>") +
        "<ofd:OutlineElem Title=\"Plain\"><ofd:OutlineElem Title=\"Inner\"/></ofd:OutlineElem></ofd:Outlines>"));
    const G_OutlineItem* jump = ItemAt(*document, 0);
    QVERIFY(jump->text == "Go" && jump->title == "Go");
    QVERIFY(!jump->expanded);
    const auto* action = dynamic_cast<const G_ActionGoto*>(jump->actions[0]);
    QVERIFY(action);
    QCOMPARE(action->actionType, 1);
    QCOMPARE(action->dest->zoomMode, 4);
    QCOMPARE(action->dest->pageIndex, 1);
    QVERIFY(action->dest->Rect() == CCA_GRect(1, 2, 3, 4));
    const auto* uri = dynamic_cast<const G_ActionUri*>(ItemAt(*document, 1)->actions[0]);
    QVERIFY(uri);
    QVERIFY(uri->uri == "https://example.org/?a=1&b=2");
    const G_Action* sound = ItemAt(*document, 2)->actions[0];
    QVERIFY(sound->actionType != 1);
    QVERIFY(sound->opaque.Bytes().contains("<ofd:Sound ResourceID=\"5\"/>"));
    QVERIFY(ItemAt(*document, 3)->actions.IsEmpty());
    QVERIFY(document->GetOutlineRoot()->SubNode(3)->SubNode(0)->NodeText() == "Inner");
    QVERIFY(!document->IsModified());
}

void TestOfdDocument::bookmarksInActionsAreResolved()
{
    const auto document = Open(OfdFile::WithPages(2).Tail(
        "<ofd:Outlines>" + Outline("Title=\"a\"", "<ofd:Goto><ofd:Bookmark Name=\"Here\"/></ofd:Goto>") +
        Outline("Title=\"b\"", "<ofd:Goto><ofd:Bookmark Name=\"Nowhere\"/></ofd:Goto>") +
        "</ofd:Outlines><ofd:Bookmarks><ofd:Bookmark Name=\"Here\"><ofd:Dest Type=\"Fit\" PageID=\"2\"/></ofd:Bookmark>"
        "</ofd:Bookmarks>"));
    const auto* found = dynamic_cast<const G_ActionGoto*>(ItemAt(*document, 0)->actions[0]);
    QVERIFY(found);
    QCOMPARE(found->dest->pageIndex, 1);
    QCOMPARE(found->dest->zoomMode, 1);
    QVERIFY(found->bookmarkName == "Here");
    const auto* missing = dynamic_cast<const G_ActionGoto*>(ItemAt(*document, 1)->actions[0]);
    QVERIFY(missing);
    QVERIFY(missing->dest->pageIndex < 0);
}

void TestOfdDocument::permissionsAndTheirPeriodAreKept_data()
{
    QTest::addColumn<QByteArray>("permissions");
    QTest::addColumn<bool>("mayEdit");
    QTest::addColumn<bool>("isRight");
    const QByteArray today = QDate::currentDate().toString(Qt::ISODate).toUtf8();
    const auto period = [](const QByteArray& attributes) {
        return "<ofd:Permissions><ofd:ValidPeriod " + attributes + "/></ofd:Permissions>";
    };
    QTest::newRow("empty") << QByteArray("<ofd:Permissions/>") << true << true;
    QTest::newRow("denied") << QByteArray("<ofd:Permissions><ofd:Edit> FALSE </ofd:Edit></ofd:Permissions>") << false
                            << false;
    QTest::newRow("nonsense") << QByteArray("<ofd:Permissions><ofd:Edit>maybe</ofd:Edit></ofd:Permissions>") << true
                              << true;
    QTest::newRow("period today") << period("StartDate=\"" + today + "\" EndDate=\"" + today + "T00:00:00\"") << true
                                  << true;
    QTest::newRow("period over") << period("EndDate=\"2001-02-03T04:05:06\"") << true << false;
    QTest::newRow("period to come") << period("StartDate=\"2999-1-2\"") << true << false;
    QTest::newRow("period unreadable") << period("StartDate=\"soon\"") << true << true;
}

void TestOfdDocument::permissionsAndTheirPeriodAreKept()
{
    QFETCH(QByteArray, permissions);
    QFETCH(bool, mayEdit);
    QFETCH(bool, isRight);
    const auto document = Open(OfdFile::WithPages(1).Tail(permissions));
    QVERIFY(document->HasPermissions());
    QCOMPARE(document->MayEdit(), mayEdit);
    QCOMPARE(document->CheckRight(true), isRight);
    QVERIFY(document->CheckRight(false));
    QVERIFY(document->MayExport());
}

void TestOfdDocument::theCurrentVersionIsRead()
{
    OfdFile file = OfdFile::WithPages(1);
    QByteArray entry = file.Part(QStringLiteral("OFD.xml"));
    entry.replace("</ofd:DocRoot>", "</ofd:DocRoot><ofd:Versions><ofd:Version ID=\"1\" BaseLoc=\"V/1.xml\"/>"
                                    "<ofd:Version ID=\"2\" Current=\"true\" BaseLoc=\"V/2.xml\"/></ofd:Versions>");
    file.Set(QStringLiteral("OFD.xml"), entry);
    file.Set(QStringLiteral("V/1.xml"), Element("DocVersion", "<ofd:DocRoot>/Doc_0/Old.xml</ofd:DocRoot>"));
    file.Set(QStringLiteral("V/2.xml"), Element("DocVersion", "<ofd:DocRoot>/Doc_0/New.xml</ofd:DocRoot>"));
    QByteArray document = file.Part(DocumentPart);
    file.Set(QStringLiteral("Doc_0/New.xml"), document.replace("ID=\"1\"", "ID=\"77\""));
    QCOMPARE(Open(file)->PageIdFromIndex(0), 77);
}

void TestOfdDocument::signedDocumentsSaySo()
{
    OfdFile file = OfdFile::WithPages(1);
    QByteArray entry = file.Part(QStringLiteral("OFD.xml"));
    entry.replace("</ofd:DocRoot>", "</ofd:DocRoot><ofd:Signatures>S/Signatures.xml</ofd:Signatures>");
    file.Set(QStringLiteral("OFD.xml"), entry);
    QVERIFY(!Open(file)->IsSignProtected()); // the list is not there
    file.Set(QStringLiteral("S/Signatures.xml"), Element("Signatures", {}));
    QVERIFY(!Open(file)->IsSignProtected());
    file.Set(QStringLiteral("S/Signatures.xml"),
             Element("Signatures", "<ofd:Signature ID=\"1\" BaseLoc=\"gone.xml\"/>"));
    QVERIFY(Open(file)->IsSignProtected()); // also when the signature itself is gone
    QVERIFY(Open(OfdFile::WithPages(1).Set(QStringLiteral("OFDEntries.xml"), "<x/>"))->IsSignProtected());
    QVERIFY(Open(OfdFile::WithPages(1).Set(QStringLiteral("Encryptions.xml"), "<x/>"))->IsEncrypted());
}

void TestOfdDocument::textFollowsObjectsAndJoinsLines()
{
    const auto text = [](const QByteArray& place, const QByteArray& deltas, const QByteArray& letters) {
        return "<ofd:TextObject ID=\"1\" Font=\"10\" Size=\"5\" Boundary=\"" + place +
               "\"><ofd:TextCode X=\"0\" Y=\"5\" " + deltas + ">" + letters + "</ofd:TextCode></ofd:TextObject>";
    };
    const auto document = Open(
        OfdFile::WithPage(text("10 50 30 6", "DeltaX=\"g 4 5\"", "lower") + text("10 10 30 6", "DeltaX=\"5\"", "up") +
                          text("20 10 30 6", "DeltaX=\"5 5\"", "per") + text("70 10 30 6", "DeltaX=\"5\"", "far") +
                          text("10 90 30 6", "DeltaX=\"3 3 3 3\"", " \n&#x20;\tx ")));
    IG_Page* page = document->GetPage(0);
    QVERIFY(!page->GetTextPage());
    QVERIFY(page->Load());
    QVERIFY(page->GetTextPage()->Parse(0));
    QStringList runs;
    for (const G_TextRun& run : page->GetTextPage()->AllRuns())
        runs.append(run.text);
    QCOMPARE(runs, (QStringList{"lower", "upper", "far", "  x "}));
    QCOMPARE(TextIn(page, CCA_GRect(0, 0, 60, 30)), QStringLiteral("upper"));
    QCOMPARE(TextIn(page, CCA_GRect(15, 0, 25, 30)), QStringLiteral("pp"));
    QCOMPARE(TextIn(page, CCA_GRect(0, 60, 5, 70)), QString());
}

void TestOfdDocument::aGlyphForTwoCharactersIsOneCell()
{
    const QByteArray object =
        "<ofd:TextObject ID=\"1\" Font=\"10\" Size=\"5\" Boundary=\"10 10 50 10\"><ofd:CGTransform CodePosition=\"1\" "
        "CodeCount=\"2\" GlyphCount=\"1\"><ofd:Glyphs>3</ofd:Glyphs></ofd:CGTransform><ofd:TextCode X=\"0\" Y=\"5\" "
        "DeltaX=\"10 10\">AfiB</ofd:TextCode></ofd:TextObject>";
    const auto document = Open(OfdFile::WithPage(object));
    IG_Page* page = document->GetPage(0);
    QVERIFY(page->Load());
    // Three glyphs at 10, 20 and 30 mm; the middle one stands for two characters.
    QCOMPARE(TextIn(page, CCA_GRect(18, 0, 28, 30)), QStringLiteral("fi"));
    QCOMPARE(TextIn(page, CCA_GRect(28, 0, 48, 30)), QStringLiteral("B"));
    QCOMPARE(TextIn(page, CCA_GRect(0, 0, 100, 100)), QStringLiteral("AfiB"));
}

void TestOfdDocument::textInsideCompositesIsFound()
{
    const QByteArray unit =
        "<ofd:CompositeGraphicUnits><ofd:CompositeGraphicUnit ID=\"50\" Width=\"9\" Height=\"9\">"
        "<ofd:Content><ofd:TextObject ID=\"2\" Font=\"10\" Size=\"5\" Boundary=\"0 0 20 6\">"
        "<ofd:TextCode X=\"0\" Y=\"5\" DeltaX=\"5 5\">abc</ofd:TextCode></ofd:TextObject></ofd:Content>"
        "</ofd:CompositeGraphicUnit></ofd:CompositeGraphicUnits>";
    const auto document =
        Open(OfdFile::WithPage("<ofd:CompositeObject ID=\"1\" ResourceID=\"50\" Boundary=\"40 40 40 40\" "
                               "CTM=\"2 0 0 2 0 0\"/>")
                 .Resources(unit));
    IG_Page* page = document->GetPage(0);
    QVERIFY(page->Load());
    QCOMPARE(TextIn(page, CCA_GRect(40, 40, 50, 52)), QStringLiteral("a"));
    QCOMPARE(TextIn(page, CCA_GRect(50, 40, 75, 52)), QStringLiteral("bc"));
}

void TestOfdDocument::objectsInGroupsCanBeTagged()
{
    OfdFile file =
        OfdFile::WithPage("<ofd:PageBlock ID=\"5\"><ofd:PageBlock ID=\"6\"><ofd:PathObject ID=\"7\" Boundary=\"10 10 "
                          "10 10\"><ofd:AbbreviatedData>M 0 0 L 10 0 L 10 10 C</ofd:AbbreviatedData>"
                          "</ofd:PathObject></ofd:PageBlock></ofd:PageBlock>");
    file.Tail("<ofd:CustomTags>T.xml</ofd:CustomTags>");
    file.Set(QStringLiteral("Doc_0/T.xml"),
             Element("CustomTags", "<ofd:CustomTag NameSpace=\"u\"><ofd:FileLoc>F.xml</ofd:FileLoc></ofd:CustomTag>"));
    file.Set(QStringLiteral("Doc_0/F.xml"), "<a><b><ObjectRef PageRef=\"1\">7</ObjectRef></b></a>");
    const auto document = Open(file);
    QCOMPARE(document->CustomTagRootCount(), 1);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page->Load());
    G_PageObjRef ref;
    QCOMPARE(page->CollectObjectsInRect(CCA_GRect(0, 0, 100, 100), &ref), 1);
    QCOMPARE(ref.objectIds, QList<int>{7});
    G_TreeNode* node = nullptr;
    int objectId = 0;
    QVERIFY(page->CustomTagAtPoint(15, 15, &node, &objectId));
    QVERIFY(node->NodeText() == "b");
    QCOMPARE(objectId, 7);
    CCA_LockedArray<G_PageObjectPath> paths;
    document->CustomTagObjects(paths, dynamic_cast<G_CustomTagItem*>(node->data));
    QCOMPARE(paths.GetSize(), 1);
    QCOMPARE(paths.GetAt(0).kind, 2); // its own outline, a triangle
    const QPainterPath outline = GQ_ToQPainterPath(paths.GetAt(0).path);
    QVERIFY(outline.contains(QPointF(18, 12)));
    QVERIFY(!outline.contains(QPointF(12, 18)));
}

void TestOfdDocument::objectsInHiddenGroupsAreNotCollected()
{
    const auto document = Open(OfdFile::WithPage(
        "<ofd:PageBlock ID=\"5\" Visible=\"false\"><ofd:PageBlock ID=\"6\"><ofd:PathObject ID=\"7\" Boundary=\"10 10 "
        "10 10\"/></ofd:PageBlock></ofd:PageBlock><ofd:PathObject ID=\"8\" Boundary=\"10 10 10 10\"/>"));
    IG_Page* page = document->GetPage(0);
    QVERIFY(page->Load());
    G_PageObjRef ref;
    QCOMPARE(page->CollectObjectsInRect(CCA_GRect(0, 0, 100, 100), &ref), 1);
    QCOMPARE(ref.objectIds, QList<int>{8});
}

void TestOfdDocument::duplicateObjectIdsMeanTheFirst()
{
    const auto square = [](int x) {
        return "<ofd:PathObject ID=\"7\" Boundary=\"" + QByteArray::number(x) +
               " 10 10 10\"><ofd:AbbreviatedData>M 0 0 L 10 0 L 10 10 C</ofd:AbbreviatedData></ofd:PathObject>";
    };
    const auto document = Open(OfdFile::WithPage(square(10) + square(60)));
    G_CustomTagItem tag;
    tag.objects.Add(new G_PageObjRef{1, {7}});
    CCA_LockedArray<G_PageObjectPath> paths;
    document->CustomTagObjects(paths, &tag);
    QCOMPARE(paths.GetSize(), 1);
    QCOMPARE(GQ_ToQPainterPath(paths.GetAt(0).path).boundingRect(), QRectF(10, 10, 10, 10));
    QVERIFY(document->AddCustomTagRoot("t", "p", "u", 0));
    G_TreeNode* top = document->CustomTagRoot(0)->SubNode(0);
    top->SetNodeData(new G_CustomTagItem(tag));
    IG_Page* page = document->GetPage(0);
    QVERIFY(page->Load());
    G_TreeNode* node = nullptr;
    QVERIFY(page->CustomTagAtPoint(15, 15, &node, nullptr));
    QCOMPARE(node, top);
    QVERIFY(!page->CustomTagAtPoint(65, 15, nullptr, nullptr)); // nor does the second one stand for the tag
}

void TestOfdDocument::pagesListedTwiceAreTwoPages()
{
    OfdFile file = OfdFile::WithPages(2);
    QByteArray document = file.Part(DocumentPart);
    file.Set(DocumentPart, document.replace("ID=\"2\" BaseLoc=\"Pages/Page_1", "ID=\"2\" BaseLoc=\"Pages/Page_0"));
    const auto opened = Open(file);
    QCOMPARE(opened->GetPageCount(), 2);
    QVERIFY(opened->GetPage(0) != opened->GetPage(1));
    QVERIFY(opened->GetPage(0)->Load() && opened->GetPage(1)->Load());
    opened->GetPage(0)->GetLayerAt(0)->SetVisible(false);
    QVERIFY(opened->GetPage(1)->GetLayerAt(0)->IsVisible());
}

void TestOfdDocument::unreadablePagesKeepTheirPlaces()
{
    OfdFile file = OfdFile::WithPages(3);
    file.Remove(PagePart);
    file.Set(QStringLiteral("Doc_0/Pages/Page_1/Content.xml"), "<ofd:Page><broken>");
    const auto document = Open(file);
    QCOMPARE(document->GetPageCount(), 3);
    QCOMPARE(document->PageSizeMm(0), QSizeF(100, 100));
    QCOMPARE(document->PageSizeMm(1), QSizeF(100, 100));
    QVERIFY(document->GetPage(0)->Load()); // missing: an empty sheet
    QCOMPARE(document->GetPage(0)->GetLayerCount(), 0);
    QVERIFY(!document->GetPage(1)->Load());
    QVERIFY(!document->GetPage(1)->GetTextPage());
    QVERIFY(document->GetPage(2)->Load());
    for (int page = 0; page < 3; ++page) {
        G_RenderRequest request;
        request.pageIndex = page;
        const G_RenderResult result = document->Renderer()->RenderPage(request);
        QVERIFY(!result.image.isNull());
        QCOMPARE(result.error.isEmpty(), page == 2);
    }
}

TETO_TEST_MAIN(TestOfdDocument)

#include "test_ofd_document.moc"
