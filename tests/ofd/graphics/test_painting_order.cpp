#include "graphics_pages.h"

#include <ofd/ofd_document.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

// A square of the page's middle in a colour; what is painted last is seen.
QByteArray Square(const QByteArray& value)
{
    return FilledBox(QRectF(40, 40, 20, 20), Colour(value));
}

QByteArray Layer(const QByteArray& type, const QByteArray& objects)
{
    return "<ofd:Layer ID=\"500\"" + (type.isEmpty() ? QByteArray() : " Type=\"" + type + "\"") + ">" + objects +
           "</ofd:Layer>";
}

QByteArray Page(const QByteArray& templates, const QByteArray& layers)
{
    return Element("Page", templates + "<ofd:Content>" + layers + "</ofd:Content>");
}

const QByteArray RedValue = "255 0 0", GreenValue = "0 255 0", BlueValue = "0 0 255", BlackValue = "0 0 0";
const QString PagePart = QStringLiteral("Doc_0/Pages/Page_0/Content.xml");

OfdFile FileOf(const QByteArray& page)
{
    return OfdFile::WithPages(1).Set(PagePart, page);
}

// A file with two templates, 70 and 71, of which the page uses some.
OfdFile FileWithTemplates(const QByteArray& page, const QByteArray& first, const QByteArray& second,
                          const QByteArray& firstOrder = {})
{
    return FileOf(page)
        .Common("<ofd:TemplatePage ID=\"70\" BaseLoc=\"A.xml\" " + firstOrder +
                "/><ofd:TemplatePage ID=\"71\" BaseLoc=\"B.xml\"/>")
        .Set(QStringLiteral("Doc_0/A.xml"), first)
        .Set(QStringLiteral("Doc_0/B.xml"), second);
}

QByteArray Use(int id, const QByteArray& order = {})
{
    return "<ofd:Template TemplateID=\"" + QByteArray::number(id) + "\"" +
           (order.isEmpty() ? QByteArray() : " ZOrder=\"" + order + "\"") + "/>";
}

} // namespace

class TestOfdPaintingOrder : public QObject
{
    Q_OBJECT

private slots:
    void layersLieByTheirKindThenByTheirPlace_data();
    void layersLieByTheirKindThenByTheirPlace();
    void templatesLieByTheirOrder_data();
    void templatesLieByTheirOrder();
    void ofTwoTemplatesTheLaterLiesAbove();
    void layersOfATemplateStayTogether();
    void aLayerInsideOfAnotherIsPaintedWithIt();
    void annotationsLieAboveAll();
    void anAppearanceWithoutABoundaryStandsWhereItsObjectsAre();
    void compositeContentKnowsNothingOfTheLayer();
    void aPageThatFailsTellsWhyAndTheNextOneIsPainted();
};

void TestOfdPaintingOrder::layersLieByTheirKindThenByTheirPlace_data()
{
    QTest::addColumn<QByteArray>("lower");
    QTest::addColumn<QByteArray>("upper");
    QTest::addColumn<bool>("upperStandsFirst"); // in the file
    QTest::newRow("body over background") << QByteArray("Background") << QByteArray("Body") << true;
    QTest::newRow("foreground over body") << QByteArray("Body") << QByteArray("Foreground") << true;
    QTest::newRow("no type is body") << QByteArray() << QByteArray("Foreground") << true;
    QTest::newRow("custom is body, the later above") << QByteArray("Body") << QByteArray("Custom") << false;
    QTest::newRow("body is custom, the later above") << QByteArray("Custom") << QByteArray("Body") << false;
    QTest::newRow("unknown is body") << QByteArray("Background") << QByteArray("Middle") << true;
    QTest::newRow("letter case") << QByteArray("background") << QByteArray(" BODY ") << true;
}

void TestOfdPaintingOrder::layersLieByTheirKindThenByTheirPlace()
{
    QFETCH(QByteArray, lower);
    QFETCH(QByteArray, upper);
    QFETCH(bool, upperStandsFirst);
    const QByteArray red = Layer(upper, Square(RedValue)), blue = Layer(lower, Square(BlueValue));
    const QImage image = PaintFile(FileOf(Page({}, upperStandsFirst ? red + blue : blue + red)));
    QVERIFY(Shows(image, 50, 50, Qt::red));
}

void TestOfdPaintingOrder::templatesLieByTheirOrder_data()
{
    QTest::addColumn<QByteArray>("onPage");
    QTest::addColumn<QByteArray>("ofTemplate");
    QTest::addColumn<QByteArray>("layer");
    QTest::addColumn<bool>("isAbove");
    QTest::newRow("below body") << QByteArray() << QByteArray() << QByteArray("Body") << false;
    QTest::newRow("below its own kind") << QByteArray() << QByteArray() << QByteArray("Background") << false;
    QTest::newRow("above body") << QByteArray("Foreground") << QByteArray() << QByteArray("Body") << true;
    QTest::newRow("below foreground") << QByteArray("Foreground") << QByteArray() << QByteArray("Foreground") << false;
    QTest::newRow("its own order") << QByteArray() << QByteArray("Foreground") << QByteArray("Body") << true;
    QTest::newRow("the page's order wins")
        << QByteArray("Background") << QByteArray("Foreground") << QByteArray("Body") << false;
}

void TestOfdPaintingOrder::templatesLieByTheirOrder()
{
    QFETCH(QByteArray, onPage);
    QFETCH(QByteArray, ofTemplate);
    QFETCH(QByteArray, layer);
    QFETCH(bool, isAbove);
    const QByteArray page = Page(Use(70, onPage), Layer(layer, Square(BlueValue)));
    // The kind of the template's layer does not matter to the page.
    const QByteArray sheet = Page({}, Layer("Foreground", Square(RedValue)));
    const QByteArray order = ofTemplate.isEmpty() ? QByteArray() : "ZOrder=\"" + ofTemplate + "\"";
    const QImage image = PaintFile(FileWithTemplates(page, sheet, Page({}, {}), order));
    QVERIFY(Shows(image, 50, 50, isAbove ? Qt::red : Qt::blue));
}

void TestOfdPaintingOrder::ofTwoTemplatesTheLaterLiesAbove()
{
    const QByteArray first = Page({}, Layer("Body", Square(RedValue)));
    const QByteArray second = Page({}, Layer("Background", Square(GreenValue)));
    QVERIFY(Shows(PaintFile(FileWithTemplates(Page(Use(70) + Use(71), {}), first, second)), 50, 50, Qt::green));
    QVERIFY(Shows(PaintFile(FileWithTemplates(Page(Use(71) + Use(70), {}), first, second)), 50, 50, Qt::red));
}

void TestOfdPaintingOrder::layersOfATemplateStayTogether()
{
    const QByteArray sheet = Page({}, Layer("Foreground", Square(RedValue)) + Layer("Body", Square(GreenValue)));
    const QImage image = PaintFile(FileWithTemplates(Page(Use(70), {}), sheet, Page({}, {})));
    QVERIFY(Shows(image, 50, 50, Qt::red));
}

void TestOfdPaintingOrder::anAppearanceWithoutABoundaryStandsWhereItsObjectsAre()
{
    OfdFile file = OfdFile::WithPage("");
    file.Tail("<ofd:Annotations>Annotations.xml</ofd:Annotations>");
    file.Set(QStringLiteral("Doc_0/Annotations.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>Notes.xml</ofd:FileLoc></ofd:Page>"));
    file.Set(QStringLiteral("Doc_0/Notes.xml"),
             Element("PageAnnot", "<ofd:Annot ID=\"90\" Type=\"Watermark\"><ofd:Appearance>" +
                                      FilledBox(QRectF(30, 20, 10, 10), Colour(RedValue)) +
                                      FilledBox(QRectF(50, 40, 10, 10), Colour(RedValue)) +
                                      "</ofd:Appearance></ofd:Annot>"));
    const QImage image = PaintFile(file);
    QCOMPARE(InkBox(image), QRectF(30, 20, 30, 30));
}

void TestOfdPaintingOrder::aLayerInsideOfAnotherIsPaintedWithIt()
{
    const auto line = [](const QByteArray& y) {
        return "<ofd:PathObject ID=\"1\" Boundary=\"20 " + y +
               " 0 0\"><ofd:AbbreviatedData>M 0 0 L 60 0</ofd:AbbreviatedData></ofd:PathObject>";
    };
    const QByteArray inner =
        "<ofd:Layer ID=\"501\" Type=\"Foreground\" DrawParam=\"31\">" + line("40") + "</ofd:Layer>";
    const QByteArray plain = "<ofd:Layer ID=\"502\">" + line("60") + "</ofd:Layer>";
    const QByteArray outer = "<ofd:Layer ID=\"500\" DrawParam=\"30\">" + line("20") + inner + "<ofd:PageBlock>" +
                             plain + "</ofd:PageBlock>" + Square(BlueValue) + "</ofd:Layer>";
    const auto param = [](const QByteArray& id, const QByteArray& colour) {
        return "<ofd:DrawParam ID=\"" + id + "\" LineWidth=\"2\"><ofd:StrokeColor Value=\"" + colour +
               "\"/></ofd:DrawParam>";
    };
    OfdFile file = FileOf(Page({}, outer));
    file.Resources("<ofd:DrawParams>" + param("30", RedValue) + param("31", GreenValue) + "</ofd:DrawParams>");
    const QImage image = PaintFile(file);
    QVERIFY(Shows(image, 30, 20, Qt::red));
    QVERIFY(Shows(image, 30, 40, Qt::green));  // its own draw parameter
    QVERIFY(Shows(image, 30, 60, Qt::red));    // that of the layer around it
    QVERIFY(Shows(image, 50, 40.5, Qt::blue)); // what comes later lies above
}

void TestOfdPaintingOrder::annotationsLieAboveAll()
{
    const auto note = [](const QByteArray& id, const QByteArray& value) {
        return "<ofd:Annot ID=\"" + id + "\" Type=\"Stamp\"><ofd:Appearance Boundary=\"30 30 40 40\">" +
               FilledBox(QRectF(5, 5, 10, 10), Colour(value)) + "</ofd:Appearance></ofd:Annot>";
    };
    OfdFile file = FileOf(Page({}, Layer("Foreground", Square(BlueValue))));
    file.Tail("<ofd:Annotations>Annotations.xml</ofd:Annotations>");
    file.Set(QStringLiteral("Doc_0/Annotations.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>Notes.xml</ofd:FileLoc></ofd:Page>"));
    file.Set(QStringLiteral("Doc_0/Notes.xml"), Element("PageAnnot", note("90", RedValue) + note("91", GreenValue)));
    const QImage image = PaintFile(file);
    QVERIFY(Shows(image, 42, 42, Qt::green)); // moved by the corner of its boundary; the later one above
    QVERIFY(Shows(image, 50, 50, Qt::blue));
    G_RenderRequest without;
    without.withAnnotations = false;
    QVERIFY(Shows(PaintFile(file, without), 42, 42, Qt::blue));
}

void TestOfdPaintingOrder::compositeContentKnowsNothingOfTheLayer()
{
    const QByteArray line = "<ofd:PathObject ID=\"5\" Boundary=\"0 0 0 0\">"
                            "<ofd:AbbreviatedData>M 0 20 L 60 20</ofd:AbbreviatedData></ofd:PathObject>";
    const QByteArray resources =
        "<ofd:DrawParams><ofd:DrawParam ID=\"30\" LineWidth=\"6\"><ofd:StrokeColor Value=\"255 0 0\"/></ofd:DrawParam>"
        "</ofd:DrawParams><ofd:CompositeGraphicUnits><ofd:CompositeGraphicUnit ID=\"60\" Width=\"9\" Height=\"9\">"
        "<ofd:Content>" +
        line + "</ofd:Content></ofd:CompositeGraphicUnit></ofd:CompositeGraphicUnits>";
    OfdFile file = OfdFile::WithPages(1).Resources(resources);
    file.Set(PagePart, Page({}, "<ofd:Layer ID=\"500\" DrawParam=\"30\">"
                                "<ofd:CompositeObject ID=\"2\" ResourceID=\"60\" Boundary=\"20 30 60 40\"/>"
                                "<ofd:PageBlock ID=\"3\"><ofd:PathObject ID=\"6\" Boundary=\"20 70 0 0\">"
                                "<ofd:AbbreviatedData>M 0 0 L 60 0</ofd:AbbreviatedData></ofd:PathObject>"
                                "</ofd:PageBlock></ofd:Layer>"));
    const QImage image = PaintFile(file);
    QVERIFY(Shows(image, 50, 52, Qt::white)); // a thin black line, whatever the layer says; its size cuts nothing
    QVERIFY(qGray(ColourAt(image, 50, 50).rgb()) < 128);
    QVERIFY(Shows(image, 50, 72, Qt::red)); // blocks belong to the layer
}

void TestOfdPaintingOrder::aPageThatFailsTellsWhyAndTheNextOneIsPainted()
{
    const QTemporaryDir folder;
    OfdFile file = OfdFile::WithPages(3);
    file.Set(PagePart, "<ofd:Page><ofd:Content></ofd:Page>");
    file.Remove(QStringLiteral("Doc_0/Pages/Page_1/Content.xml"));
    file.Set(QStringLiteral("Doc_0/Pages/Page_2/Content.xml"), PageXml(Square(RedValue)));
    const ofd::OpenResult opened = ofd::OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("page.ofd"))));
    QVERIFY(opened);
    G_RenderRequest request;
    request.pixelsPerMm = PixelsPerMm;
    for (const int page : {0, 1}) {
        request.pageIndex = page;
        const G_RenderResult result = opened.document->Renderer()->RenderPage(request);
        QVERIFY(!result.error.isEmpty());
        QCOMPARE(result.image.size(), QSize(400, 400)); // a sheet of the page's size
        QVERIFY(InkBox(result.image).isEmpty());
    }
    request.pageIndex = 2;
    const G_RenderResult result = opened.document->Renderer()->RenderPage(request);
    QVERIFY(result.error.isEmpty());
    QVERIFY(Shows(result.image, 50, 50, Qt::red));
}

TETO_TEST_MAIN(TestOfdPaintingOrder)

#include "test_painting_order.moc"
