// Links that files hold: where they are on the page and what they run, in sound files and in others.
#include "ofd_file.h"
#include "sample_files.h"

#include <frame/base/converters.h>
#include <frame/view/link_text.h>
#include <ofd/ofd_document.h>
#include <ofd/package/limits.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString PagePart = QStringLiteral("Doc_0/Pages/Page_0/Content.xml");

QByteArray Actions(const QByteArray& action, const QByteArray& event = "Event=\"CLICK\"")
{
    return "<ofd:Actions><ofd:Action " + event + ">" + action + "</ofd:Action></ofd:Actions>";
}

QByteArray ToPage(int page)
{
    return "<ofd:Goto><ofd:Dest Type=\"Fit\" PageID=\"" + QByteArray::number(page) + "\"/></ofd:Goto>";
}

QByteArray Path(const QByteArray& attributes, const QByteArray& inside)
{
    return "<ofd:PathObject ID=\"700\" " + attributes + ">" + inside +
           "<ofd:AbbreviatedData>M 0 0 L 10 0 L 10 10 C</ofd:AbbreviatedData></ofd:PathObject>";
}

QByteArray Unit(int id, const QByteArray& objects)
{
    return "<ofd:CompositeGraphicUnit ID=\"" + QByteArray::number(id) + "\" Width=\"10\" Height=\"10\"><ofd:Content>" +
           objects + "</ofd:Content></ofd:CompositeGraphicUnit>";
}

QByteArray Composite(int unit, const QByteArray& attributes)
{
    return "<ofd:CompositeObject ID=\"701\" ResourceID=\"" + QByteArray::number(unit) + "\" " + attributes + "/>";
}

// What the uppermost link at a place of the first page does; empty where there is none.
QString Described(IG_Document& document, float x, float y)
{
    const QVector<G_PageLink> links = document.GetPage(0)->GetLinks();
    for (auto link = links.crbegin(); link != links.crend(); ++link) {
        if (link->Contains({x, y}))
            return DescribeActions(*link->actions, &document);
    }
    return QString();
}

} // namespace

class TestOfdLinks : public QObject
{
    Q_OBJECT

private slots:
    void everySampleLeadsWhereItSays_data();
    void everySampleLeadsWhereItSays();
    void aLinkIsWhereItsObjectIs_data();
    void aLinkIsWhereItsObjectIs();
    void regionsAreDrawnOfAllTheirPieces_data();
    void regionsAreDrawnOfAllTheirPieces();
    void onlyClicksAreLinks_data();
    void onlyClicksAreLinks();
    void actionsOfOneAreaRunTogetherAndThoseOfOthersApart();
    void compositesInEachOtherEndAndThoseThatRepeatAreBound();
    void templatesBringTheirLinksAndTakeThemAlong();
    void annotationsBringTheirLinksAndTakeThemAlong();
    void linksBeyondTheLimitAreLeftOutAndTold();
    void manyActionsOfOneObjectAreCutOff();
    void longRegionsBecomeBoxes();
    void theRestOfARegionOfTooManyPiecesIsLeftOut();
    void aPlaceThatIsNoNumberIsNoLink();
    void aDestinationThatLeadsNowhereIsToldOnce();
    void outlineEntriesUnderstandTheSameActions();
    void attachmentsAreNamedByTheirWholeIdentifiers_data();
    void attachmentsAreNamedByTheirWholeIdentifiers();
    void theOpeningOfADocumentIsItsOwn();

private:
    std::unique_ptr<ofd::OfdDocument> Open(const OfdFile& file)
    {
        ofd::OpenResult result = ofd::OfdDocument::Open(file.Write(folder.filePath(QString::number(++count) + ".ofd")));
        if (!result)
            qFatal("%s", qPrintable(result.error));
        return std::move(result.document);
    }
    static int CountProblems(const ofd::OfdDocument& document, ofd::ProblemKind kind)
    {
        int found = 0;
        for (const ofd::Problem& problem : document.GetProblems())
            found += problem.kind == kind;
        return found;
    }
    QTemporaryDir folder;
    int count = 0;
};

void TestOfdLinks::everySampleLeadsWhereItSays_data()
{
    QTest::addColumn<QString>("sample");
    QTest::addColumn<QPointF>("place");
    QTest::addColumn<QString>("leads");
    const auto row = [](const char* sample, double x, double y, const char* leads) {
        QTest::addRow("%s %g %g", sample, x, y) << QString(sample) << QPointF(x, y) << QString(leads);
    };
    row("link_behind_children", 50, 110, "Page 2");
    row("link_behind_children", 50, 125, "");
    row("link_to_bookmark", 50, 110, "Page 2");
    row("link_to_missing_page", 50, 110, "This page does not exist.");
    row("link_uri_with_base", 50, 110, "https://example.org/guide/one.html");
    row("link_region", 25, 105, "Page 2");
    row("link_region", 75, 155, "");
    row("link_in_turned_composite", 30, 150, "Page 2");
    row("link_in_turned_composite", 70, 110, "");
    row("link_annotation_hidden", 50, 110, "https://example.org/");
    row("link_on_empty_boundary", 24, 106, "Page 2");
    row("link_on_empty_boundary", 100, 106, "");
    row("link_of_page", 50, 110, "Page 2");
    row("link_of_page", 50, 130, "");
    row("link_to_attachment", 50, 110, "Attachment: note.txt");
    row("link_to_missing_attachment", 50, 110, "This attachment does not exist.");
    row("link_sound_and_movie", 50, 110, "Sound\nMovie");
    row("opens_address", 50, 110, "");
}

void TestOfdLinks::everySampleLeadsWhereItSays()
{
    QFETCH(QString, sample);
    QFETCH(QPointF, place);
    QFETCH(QString, leads);
    const ofd::OpenResult opened = ofd::OfdDocument::Open(SamplePath("features/" + sample));
    QVERIFY2(opened, qPrintable(opened.error));
    QCOMPARE(Described(*opened.document, float(place.x()), float(place.y())), leads);
}

void TestOfdLinks::aLinkIsWhereItsObjectIs_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QRectF>("box");
    const QByteArray link = Actions(ToPage(1));
    QTest::newRow("path") << Path("Boundary=\"10 20 30 40\"", link) << QRectF(10, 20, 30, 40);
    QTest::newRow("its own matrix leaves the boundary alone")
        << Path("Boundary=\"10 20 30 40\" CTM=\"2 0 0 2 5 5\"", link) << QRectF(10, 20, 30, 40);
    QTest::newRow("negative size") << Path("Boundary=\"40 60 -30 -40\"", link) << QRectF(10, 20, 30, 40);
    QTest::newRow("invisible") << Path("Boundary=\"10 20 30 40\" Visible=\"false\"", link) << QRectF(10, 20, 30, 40);
    QTest::newRow("empty boundary: what is painted")
        << Path("Boundary=\"10 20 0 0\" CTM=\"2 0 0 1 0 0\"", link) << QRectF(10, 20, 20, 10);
    QTest::newRow("in blocks") << "<ofd:PageBlock ID=\"1\"><ofd:PageBlock ID=\"2\" Visible=\"false\">" +
                                      Path("Boundary=\"10 20 30 40\"", link) + "</ofd:PageBlock></ofd:PageBlock>"
                               << QRectF(10, 20, 30, 40);
    QTest::newRow("picture") << "<ofd:ImageObject ID=\"3\" Boundary=\"10 20 30 40\" ResourceID=\"9\">" + link +
                                    "</ofd:ImageObject>"
                             << QRectF(10, 20, 30, 40);
    QTest::newRow("composite")
        << QByteArray(Composite(800, "Boundary=\"10 20 30 40\"")).replace("/>", ">" + link + "</ofd:CompositeObject>")
        << QRectF(10, 20, 30, 40);
    QTest::newRow("inside a composite") << Composite(801, "Boundary=\"10 20 30 40\" CTM=\"2 0 0 2 1 1\"")
                                        << QRectF(21, 31, 20, 10);
    QTest::newRow("without prefix") << QByteArray(Path("Boundary=\"10 20 30 40\"", link)).replace("ofd:", "")
                                    << QRectF(10, 20, 30, 40);
}

void TestOfdLinks::aLinkIsWhereItsObjectIs()
{
    QFETCH(QByteArray, content);
    QFETCH(QRectF, box);
    OfdFile file = OfdFile::WithPage(content);
    file.Resources("<ofd:CompositeGraphicUnits>" + Unit(800, {}) +
                   Unit(801, Path("Boundary=\"5 5 10 5\"", Actions(ToPage(1)))) + "</ofd:CompositeGraphicUnits>");
    const auto document = Open(file);
    const QVector<G_PageLink> links = document->GetPage(0)->GetLinks();
    QCOMPARE(links.size(), 1);
    QCOMPARE(links.first().area.boundingRect(), box);
    QVERIFY(links.first().Contains({float(box.center().x()), float(box.center().y())}));
}

void TestOfdLinks::regionsAreDrawnOfAllTheirPieces_data()
{
    QTest::addColumn<QByteArray>("areas");
    QTest::addColumn<QVector<QPointF>>("inside");
    QTest::addColumn<QVector<QPointF>>("outside");
    const auto points = [](std::initializer_list<QPointF> list) { return QVector<QPointF>(list); };
    // The object's space begins at (10, 20) and is twice as large as the page's.
    QTest::newRow("lines") << QByteArray(
                                  "<ofd:Area Start=\"0 0\"><ofd:Line Point1=\"20 0\"/><ofd:Line Point1=\"0 20\"/>"
                                  "</ofd:Area>")
                           << points({{12, 22}, {48, 21}}) << points({{40, 50}, {8, 22}});
    QTest::newRow("two areas") << QByteArray(
                                      "<ofd:Area Start=\"0 0\"><ofd:Line Point1=\"5 0\"/><ofd:Line Point1=\"5 5\"/>"
                                      "<ofd:Line Point1=\"0 5\"/><ofd:Close/></ofd:Area><ofd:Area Start=\"10 10\">"
                                      "<ofd:Line Point1=\"15 10\"/><ofd:Line Point1=\"15 15\"/></ofd:Area>")
                               << points({{15, 25}, {38, 44}}) << points({{25, 35}});
    QTest::newRow("moved within an area")
        << QByteArray("<ofd:Area Start=\"0 0\"><ofd:Move Point1=\"10 0\"/><ofd:Line Point1=\"20 0\"/><ofd:Line "
                      "Point1=\"20 10\"/></ofd:Area>")
        << points({{46, 24}}) << points({{20, 24}});
    QTest::newRow("curves") << QByteArray(
                                   "<ofd:Area Start=\"0 10\"><ofd:QuadraticBezier Point1=\"10 -10\" Point2=\"20 10\"/>"
                                   "<ofd:CubicBezier Point1=\"20 20\" Point2=\"0 20\" Point3=\"0 10\"/></ofd:Area>")
                            << points({{30, 40}, {30, 25}, {30, 50}}) << points({{12, 22}, {48, 22}});
    QTest::newRow("a curve without its first control points")
        << QByteArray(
               "<ofd:Area Start=\"0 0\"><ofd:CubicBezier Point3=\"20 0\"/><ofd:Line Point1=\"20 20\"/></ofd:Area>")
        << points({{46, 30}}) << points({{14, 50}});
    QTest::newRow("arc") << QByteArray("<ofd:Area Start=\"0 10\"><ofd:Arc SweepDirection=\"true\" LargeArc=\"false\" "
                                       "RotationAngle=\"0\" EllipseSize=\"10 10\" EndPoint=\"20 10\"/></ofd:Area>")
                         << points({{30, 25}}) << points({{30, 45}, {12, 23}});
    QTest::newRow("no piece that can be read: all of the object")
        << QByteArray("<ofd:Area Start=\"a b\"><ofd:Line Point1=\"\"/><ofd:Circle/></ofd:Area>") << points({{45, 55}})
        << points({{60, 55}});
}

void TestOfdLinks::regionsAreDrawnOfAllTheirPieces()
{
    QFETCH(QByteArray, areas);
    QFETCH(QVector<QPointF>, inside);
    QFETCH(QVector<QPointF>, outside);
    const auto document = Open(OfdFile::WithPage(Path("Boundary=\"10 20 40 40\" CTM=\"2 0 0 2 0 0\"",
                                                      Actions("<ofd:Region>" + areas + "</ofd:Region>" + ToPage(1)))));
    for (const QPointF& point : inside)
        QVERIFY2(!Described(*document, float(point.x()), float(point.y())).isEmpty(),
                 qPrintable(QString::number(point.x())));
    for (const QPointF& point : outside)
        QVERIFY2(Described(*document, float(point.x()), float(point.y())).isEmpty(),
                 qPrintable(QString::number(point.x())));
}

void TestOfdLinks::onlyClicksAreLinks_data()
{
    QTest::addColumn<QByteArray>("event");
    QTest::addColumn<int>("links");
    QTest::newRow("click") << QByteArray("Event=\"CLICK\"") << 1;
    QTest::newRow("in small letters") << QByteArray("Event=\" click\"") << 1;
    QTest::newRow("none") << QByteArray() << 1;
    QTest::newRow("unknown") << QByteArray("Event=\"HOVER\"") << 1;
    QTest::newRow("page") << QByteArray("Event=\"PO\"") << 0;
    QTest::newRow("document") << QByteArray("Event=\"DO\"") << 0;
}

void TestOfdLinks::onlyClicksAreLinks()
{
    QFETCH(QByteArray, event);
    QFETCH(int, links);
    OfdFile file = OfdFile::WithPage(Path("Boundary=\"0 0 9 9\"", Actions(ToPage(1), event)));
    QCOMPARE(Open(file)->GetPage(0)->GetLinks().size(), links);
    file.Set(PagePart, Element("Page", "<ofd:Content/>" + Actions(ToPage(1), event)));
    const auto document = Open(file);
    QCOMPARE(document->GetPage(0)->GetLinks().size(), links); // of the page itself: all of it
    QCOMPARE(Described(*document, 99, 99).isEmpty(), links == 0);
}

void TestOfdLinks::actionsOfOneAreaRunTogetherAndThoseOfOthersApart()
{
    const QByteArray region = "<ofd:Region><ofd:Area Start=\"0 0\"><ofd:Line Point1=\"9 0\"/><ofd:Line Point1=\"9 9\"/>"
                              "</ofd:Area></ofd:Region>";
    const QByteArray uri = "<ofd:URI URI=\"https://example.org\"/>";
    const auto document = Open(
        OfdFile::WithPage(Path("Boundary=\"0 0 50 50\"", Actions(ToPage(1)) + Actions(uri) + Actions(region + uri) +
                                                             Actions(region + ToPage(1)) + Actions(uri))));
    const QVector<G_PageLink> links = document->GetPage(0)->GetLinks();
    QCOMPARE(links.size(), 3);
    QCOMPARE(links.at(0).actions->Actions().GetSize(), 2);
    QCOMPARE(DescribeActions(*links.at(0).actions, document.get()), QString("Page 1\nhttps://example.org"));
    QCOMPARE(DescribeActions(*links.at(1).actions, document.get()), QString("https://example.org\nPage 1"));
    QCOMPARE(links.at(2).actions->Actions().GetSize(), 1);
}

void TestOfdLinks::compositesInEachOtherEndAndThoseThatRepeatAreBound()
{
    OfdFile file =
        OfdFile::WithPage(Composite(800, "Boundary=\"0 0 50 50\"") + Composite(810, "Boundary=\"0 0 50 50\""));
    QByteArray units =
        Unit(800, Composite(801, "Boundary=\"0 0 9 9\"") + Path("Boundary=\"1 1 9 9\"", Actions(ToPage(1)))) +
        Unit(801, Composite(800, "Boundary=\"0 0 9 9\""));
    for (int i = 810; i < 819; ++i) // ten to the ninth
        units += Unit(i, Composite(i + 1, "Boundary=\"0 0 9 9\"").repeated(10));
    units += Unit(819, Path("Boundary=\"1 1 9 9\"", Actions(ToPage(1))));
    file.Resources("<ofd:CompositeGraphicUnits>" + units + "</ofd:CompositeGraphicUnits>");
    const auto document = Open(file);
    const int links = document->GetPage(0)->GetLinks().size();
    QVERIFY(links > 1 && links <= ofd::limits::MaxLinksOnPage);
}

void TestOfdLinks::templatesBringTheirLinksAndTakeThemAlong()
{
    OfdFile file = OfdFile::WithPages(1);
    file.Common("<ofd:TemplatePage ID=\"50\" BaseLoc=\"T.xml\"/><ofd:TemplatePage ID=\"51\" BaseLoc=\"U.xml\"/>");
    const QByteArray holder = "<ofd:Template TemplateID=\"51\"/>";
    file.Set("Doc_0/T.xml",
             Element("Page", holder + "<ofd:Content><ofd:Layer>" + Path("Boundary=\"0 0 9 9\"", Actions(ToPage(1))) +
                                 "</ofd:Layer></ofd:Content>"));
    file.Set("Doc_0/U.xml",
             Element("Page", "<ofd:Template TemplateID=\"50\"/><ofd:Content><ofd:Layer>" +
                                 Path("Boundary=\"20 20 9 9\"", Actions(ToPage(1))) + "</ofd:Layer></ofd:Content>"));
    file.Set(PagePart, Element("Page", "<ofd:Template TemplateID=\"50\"/><ofd:Content/>"));
    const auto document = Open(file);
    const QVector<G_PageLink> links = document->GetPage(0)->GetLinks();
    QCOMPARE(links.size(), 2);
    QCOMPARE(links.at(0).area.boundingRect(), QRectF(20, 20, 9, 9)); // the inner one lies below
    QCOMPARE(links.at(0).templateId, 50);
    document->SetTemplateVisible(51, false);
    QCOMPARE(document->GetPage(0)->GetLinks().size(), 1);
    document->SetTemplateVisible(50, false);
    QVERIFY(document->GetPage(0)->GetLinks().isEmpty());
}

void TestOfdLinks::annotationsBringTheirLinksAndTakeThemAlong()
{
    OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Annotations>A.xml</ofd:Annotations>");
    file.Set("Doc_0/A.xml",
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>P.xml</ofd:FileLoc></ofd:Page>"));
    const auto annotation = [](const QByteArray& attributes) {
        return "<ofd:Annot " + attributes + "><ofd:Appearance Boundary=\"10 20 50 50\">" +
               Path("Boundary=\"1 2 9 9\" Visible=\"false\"", Actions(ToPage(1))) + "</ofd:Appearance></ofd:Annot>";
    };
    file.Set("Doc_0/P.xml", Element("PageAnnot", annotation("ID=\"7\" Type=\"Link\"") +
                                                     annotation("ID=\"8\" Type=\"link\" Visible=\"false\"") +
                                                     annotation("ID=\"9\" Type=\"Stamp\" Visible=\"false\"")));
    const auto document = Open(file);
    IG_Page* page = document->GetPage(0);
    QCOMPARE(page->GetLinks().size(), 2); // a stamp that is hidden can be seen nowhere, and clicked neither
    QCOMPARE(page->GetLinks().first().area.boundingRect(), QRectF(11, 22, 9, 9));
    QCOMPARE(page->LoadAnnots(), 0);
    QVERIFY(document->RemoveAnnot(page->GetAnnotById(7)));
    QCOMPARE(page->GetLinks().size(), 1);
    QVERIFY(document->Save());
    QCOMPARE(page->GetLinks().size(), 1);
}

void TestOfdLinks::linksBeyondTheLimitAreLeftOutAndTold()
{
    const auto document = Open(
        OfdFile::WithPage(Path("Boundary=\"0 0 9 9\"", Actions(ToPage(1))).repeated(ofd::limits::MaxLinksOnPage + 5)));
    QCOMPARE(document->GetPage(0)->GetLinks().size(), ofd::limits::MaxLinksOnPage);
    QCOMPARE(CountProblems(*document, ofd::ProblemKind::Limit), 1);
}

void TestOfdLinks::manyActionsOfOneObjectAreCutOff()
{
    const QByteArray asks = Actions("<ofd:URI URI=\"https://example.org\"/>");
    const auto document = Open(OfdFile::WithPage(Path("Boundary=\"0 0 9 9\"", asks.repeated(1000))));
    const QVector<G_PageLink> links = document->GetPage(0)->GetLinks();
    QCOMPARE(links.size(), 1);
    QCOMPARE(links.first().actions->Actions().GetSize(), ofd::limits::MaxActionsOfObject);
}

void TestOfdLinks::longRegionsBecomeBoxes()
{
    QByteArray lines;
    for (int i = 0; i < 9000; ++i)
        lines += "<ofd:Line Point1=\"" + QByteArray::number(i % 50) + " " + QByteArray::number(i * 7 % 50) + "\"/>";
    const QByteArray region = "<ofd:Region><ofd:Area Start=\"0 0\">" + lines + "</ofd:Area></ofd:Region>";
    QByteArray objects;
    for (int i = 0; i < 13; ++i)
        objects += Path("Boundary=\"0 0 9 9\"", Actions(region + ToPage(1)));
    const auto document = Open(OfdFile::WithPage(objects));
    const QVector<G_PageLink> links = document->GetPage(0)->GetLinks();
    QCOMPARE(links.size(), 13);
    QVERIFY(links.first().area.elementCount() > 1000);
    QVERIFY(links.last().area.elementCount() < 10);
    QCOMPARE(links.last().area.boundingRect(), links.first().area.boundingRect());
}

void TestOfdLinks::theRestOfARegionOfTooManyPiecesIsLeftOut()
{
    const QByteArray close = "<ofd:Close/>";
    const QByteArray region =
        "<ofd:Region><ofd:Area Start=\"0 0\"><ofd:Line Point1=\"9 0\"/><ofd:Line Point1=\"9 9\"/>" +
        close.repeated(ofd::limits::MaxRegionPieces) +
        "<ofd:Move Point1=\"20 20\"/><ofd:Line Point1=\"30 20\"/><ofd:Line Point1=\"30 30\"/></ofd:Area>"
        "<ofd:Area Start=\"40 40\"><ofd:Line Point1=\"50 40\"/><ofd:Line Point1=\"50 50\"/></ofd:Area></ofd:Region>";
    const auto document = Open(OfdFile::WithPage(Path("Boundary=\"0 0 60 60\"", Actions(region + ToPage(1)))));
    const QVector<G_PageLink> links = document->GetPage(0)->GetLinks();
    QCOMPARE(links.size(), 1);
    QCOMPARE(links.first().area.boundingRect(), QRectF(0, 0, 9, 9));
}

void TestOfdLinks::aPlaceThatIsNoNumberIsNoLink()
{
    const QByteArray link = Actions(ToPage(1));
    OfdFile file = OfdFile::WithPage(Path("", link) + Path("Boundary=\"nan inf 1e999 4\"", link) +
                                     Composite(700, "Boundary=\"0 0 9 9\""));
    const QByteArray unit =
        Unit(700, Path("Boundary=\"1 1 9 9\" CTM=\"0 0 0 0 0 0\"",
                       Actions("<ofd:Region><ofd:Area Start=\"0 0\"><ofd:Line Point1=\"9 0\"/><ofd:Line "
                               "Point1=\"9 9\"/></ofd:Area></ofd:Region>" +
                               ToPage(1))));
    file.Resources("<ofd:CompositeGraphicUnits>" + unit + "</ofd:CompositeGraphicUnits>");
    const QVector<G_PageLink> links = Open(file)->GetPage(0)->GetLinks();
    for (const G_PageLink& link : links) { // of the first two: what is painted
        QVERIFY(link.area.boundingRect().width() <= 10);
        QVERIFY(!link.area.boundingRect().isEmpty());
    }
    QVERIFY(links.size() <= 2);
}

void TestOfdLinks::aDestinationThatLeadsNowhereIsToldOnce()
{
    const auto document = Open(OfdFile::WithPage(Path("Boundary=\"0 0 9 9\"", Actions(ToPage(99)))));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(Described(*document, 5, 5), QString("This page does not exist."));
    QCOMPARE(CountProblems(*document, ofd::ProblemKind::DanglingReference), 1);
}

void TestOfdLinks::outlineEntriesUnderstandTheSameActions()
{
    const QByteArray actions =
        "<ofd:Actions><ofd:Action Event=\"CLICK\"><ofd:URI URI=\"a\" Base=\"https://example.org/\"/>"
        "</ofd:Action><ofd:Action Event=\"CLICK\"><ofd:GotoA AttachID=\"A31\" NewWindow=\"false\"/>"
        "</ofd:Action><ofd:Action Event=\"CLICK\"><ofd:Movie ResourceID=\"4\"/></ofd:Action>"
        "</ofd:Actions>";
    const auto document = Open(OfdFile::WithPages(1).Tail("<ofd:Outlines><ofd:OutlineElem Title=\"x\">" + actions +
                                                          "</ofd:OutlineElem></ofd:Outlines>"));
    const auto* item = dynamic_cast<const G_OutlineItem*>(document->GetOutlineRoot()->SubNode(0)->data);
    QVERIFY(item);
    QCOMPARE(item->actions.GetSize(), 3);
    const auto* opens = dynamic_cast<const G_ActionUri*>(item->actions[0]);
    QVERIFY(opens && opens->Address() == "https://example.org/a");
    const auto* shows = dynamic_cast<const G_ActionAttachment*>(item->actions[1]);
    QVERIFY(shows);
    QCOMPARE(shows->attachmentId, 31);
    QVERIFY(!shows->opensNewWindow);
    QCOMPARE(item->actions[2]->actionType, int(G_Action::Movie));
    QVERIFY(!document->IsModified());
}

void TestOfdLinks::attachmentsAreNamedByTheirWholeIdentifiers_data()
{
    QTest::addColumn<QByteArray>("identifier");
    QTest::addColumn<QByteArray>("name"); // of the attachment; empty: there is none
    QTest::newRow("the first of two that end in one number") << QByteArray("a1") << QByteArray("one");
    QTest::newRow("the second of them") << QByteArray("b1") << QByteArray("two");
    QTest::newRow("blanks around it") << QByteArray(" b1 ") << QByteArray("two");
    QTest::newRow("the number alone is the first") << QByteArray("1") << QByteArray("one");
    QTest::newRow("another spelling") << QByteArray("A1") << QByteArray("one");
    QTest::newRow("a number") << QByteArray("7") << QByteArray("three");
    QTest::newRow("no number") << QByteArray("note") << QByteArray("four");
    QTest::newRow("a number that nothing in the file has") << QByteArray("8") << QByteArray();
    QTest::newRow("a word that nothing has") << QByteArray("memo") << QByteArray();
    QTest::newRow("none") << QByteArray() << QByteArray();
}

void TestOfdLinks::attachmentsAreNamedByTheirWholeIdentifiers()
{
    QFETCH(const QByteArray, identifier);
    QFETCH(const QByteArray, name);
    const QByteArray actions = "<ofd:Actions><ofd:Action Event=\"CLICK\"><ofd:GotoA AttachID=\"" + identifier +
                               "\"/></ofd:Action></ofd:Actions>";
    OfdFile file = OfdFile::WithPages(1);
    file.Tail("<ofd:Outlines><ofd:OutlineElem Title=\"x\">" + actions + "</ofd:OutlineElem></ofd:Outlines>" +
              QByteArray(actions).replace("CLICK", "DO") + "<ofd:Attachments>Attachments.xml</ofd:Attachments>");
    QByteArray list;
    for (const auto& [id, title] : {std::pair("a1", "one"), {"b1", "two"}, {"7", "three"}, {"note", "four"}})
        list += "<ofd:Attachment ID=\"" + QByteArray(id) + "\" Name=\"" + title + "\"/>";
    file.Set(QStringLiteral("Doc_0/Attachments.xml"), Element("Attachments", list));
    file.Set(QStringLiteral("Doc_0/Pages/Page_0/Content.xml"), Element("Page", actions + "<ofd:Content/>"));
    const auto document = Open(file);
    const auto nameBy = [&](const G_Action* action) {
        const auto* shows = dynamic_cast<const G_ActionAttachment*>(action);
        const int index = shows ? document->GetAttachmentIndexById(shows->attachmentId) : -1;
        return index < 0 ? QByteArray() : document->GetAttachment(index).name.Bytes();
    };
    const auto* entry = dynamic_cast<const G_OutlineItem*>(document->GetOutlineRoot()->SubNode(0)->data);
    QCOMPARE(nameBy(entry->actions[0]), name);
    QCOMPARE(document->GetPage(0)->GetLinks().size(), 1);
    QCOMPARE(nameBy(document->GetPage(0)->GetLinks().at(0).actions->Actions()[0]), name);
    QCOMPARE(nameBy(document->GetOpenActions()->Actions()[0]), name);
}

void TestOfdLinks::theOpeningOfADocumentIsItsOwn()
{
    const ofd::OpenResult opened = ofd::OfdDocument::Open(SamplePath("features/opens_on_second_page"));
    QVERIFY2(opened, qPrintable(opened.error));
    const auto wanted = opened.document->GetOpenActions();
    QVERIFY(wanted);
    QCOMPARE(DescribeActions(*wanted, opened.document.get()), QString("Page 2"));
    QVERIFY(opened.document->GetPage(0)->GetLinks().isEmpty());
    const auto other = Open(OfdFile::WithPages(1).Tail(Actions(ToPage(1)))); // a click on a document is none
    QVERIFY(!other->GetOpenActions());
}

TETO_TEST_MAIN(TestOfdLinks)
#include "test_ofd_links.moc"
