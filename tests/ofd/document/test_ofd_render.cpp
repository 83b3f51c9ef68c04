#include "page_painting.h"
#include "sample_files.h"

#include <ofd/ofd_document.h>
#include <tests/support/test_main.h>

#include <QBuffer>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>

#include <atomic>
#include <thread>

class TestOfdRender : public QObject
{
    Q_OBJECT

private slots:
    void aRedSquareIsRedWhereItStands();
    void coloursMeanWhatTheySay_data();
    void coloursMeanWhatTheySay();
    void anObjectsMatrixComesBeforeItsBoundary();
    void boundariesCutPathsButNotTexts();
    void fillingNeedsAFlagAndAColour();
    void theRuleDecidesWhatIsInside();
    void linesHaveWidthDashesAndCaps();
    void aDashWithoutLengthIsADotOfItsCaps();
    void aLineWithoutLengthIsADotOfItsCaps();
    void clipsCutByTheirIntersection();
    void theClipsFlagDecidesWhetherTheMatrixApplies();
    void drawParametersAreInherited();
    void arcsGoTheWayTheyAreTold();
    void numbersWithoutALetterGoOnWithTheLastOne();
    void picturesFillTheirMatrix();
    void pictureKindsAreToldByTheirBytes_data();
    void pictureKindsAreToldByTheirBytes();
    void textDrawsInsideItsBox();
    void deltasRepeatAndSurplusIsIgnored();
    void charactersTurn_data();
    void charactersTurn();
    void embeddedFontsDrawTheirOwnGlyphs_data();
    void embeddedFontsDrawTheirOwnGlyphs();
    void axialShadingsRunAlongTheirAxis();
    void transparencyMixes();
    void aPageOfTenMetresIsPaintedToItsEnds();
};

void TestOfdRender::aRedSquareIsRedWhereItStands()
{
    const QImage image = PaintPage(FilledSquare(10, 30, "Value=\"255 0 0\""));
    QCOMPARE(image.size(), QSize(400, 400));
    QCOMPARE(ColourAt(image, 10.3, 30.3), QColor(Qt::red));
    QCOMPARE(ColourAt(image, 29.6, 49.6), QColor(Qt::red));
    QCOMPARE(ColourAt(image, 9.6, 40), QColor(Qt::white));
    QCOMPARE(ColourAt(image, 20, 50.3), QColor(Qt::white));
    QCOMPARE(InkBox(image), QRectF(10, 30, 20, 20));
}

void TestOfdRender::coloursMeanWhatTheySay_data()
{
    QTest::addColumn<QByteArray>("colour");
    QTest::addColumn<QColor>("expected");
    QTest::newRow("RGB") << QByteArray("Value=\"10 20 30\"") << QColor(10, 20, 30);
    QTest::newRow("commas") << QByteArray("Value=\"10,20,30\"") << QColor(10, 20, 30);
    QTest::newRow("hexadecimal") << QByteArray("Value=\"#ee #20 #25\"") << QColor(0xee, 0x20, 0x25);
    QTest::newRow("hexadecimal in one word") << QByteArray("Value=\"#ee2025\"") << QColor(0xee, 0x20, 0x25);
    QTest::newRow("beyond the range") << QByteArray("Value=\"999 -5 0\"") << QColor(255, 0, 0);
    QTest::newRow("gray space") << QByteArray("ColorSpace=\"20\" Value=\"100\"") << QColor(100, 100, 100);
    QTest::newRow("CMYK space") << QByteArray("ColorSpace=\"21\" Value=\"0 255 255 0\"") << QColor(255, 0, 0);
    QTest::newRow("CMYK without a value is white") << QByteArray("ColorSpace=\"21\"") << QColor(255, 255, 255);
    QTest::newRow("four bits") << QByteArray("ColorSpace=\"22\" Value=\"15 0 0\"") << QColor(255, 0, 0);
    QTest::newRow("palette") << QByteArray("ColorSpace=\"23\" Index=\"1\"") << QColor(0, 128, 0);
    QTest::newRow("unknown space, one value") << QByteArray("ColorSpace=\"99\" Value=\"50\"") << QColor(50, 50, 50);
    QTest::newRow("unknown space, four values")
        << QByteArray("ColorSpace=\"99\" Value=\"255 0 0 0\"") << QColor(0, 255, 255);
    QTest::newRow("an id of another kind") << QByteArray("ColorSpace=\"10\" Value=\"1 2 3\"") << QColor(1, 2, 3);
    QTest::newRow("nothing at all is black") << QByteArray() << QColor(0, 0, 0);
}

void TestOfdRender::coloursMeanWhatTheySay()
{
    QFETCH(QByteArray, colour);
    QFETCH(QColor, expected);
    const QByteArray spaces =
        "<ofd:ColorSpaces><ofd:ColorSpace ID=\"20\" Type=\"GRAY\"/><ofd:ColorSpace ID=\"21\" Type=\"CMYK\"/>"
        "<ofd:ColorSpace ID=\"22\" Type=\"RGB\" BitsPerComponent=\"4\"/><ofd:ColorSpace ID=\"23\" Type=\"RGB\">"
        "<ofd:Palette><ofd:CV>1 1 1</ofd:CV><ofd:CV>0 128 0</ofd:CV></ofd:Palette></ofd:ColorSpace></ofd:ColorSpaces>";
    const QImage image = PaintPage(FilledSquare(10, 10, colour), spaces + FontResource);
    const QColor found = ColourAt(image, 20, 20);
    QVERIFY2(IsNear(found, expected, 1), qPrintable(found.name()));
}

void TestOfdRender::anObjectsMatrixComesBeforeItsBoundary()
{
    // Twice as large and moved by five in its own space, then to the boundary's corner.
    const QImage image = PaintPage("<ofd:PathObject ID=\"1\" Boundary=\"10 20 60 60\" CTM=\"2 0 0 2 5 0\" "
                                   "Stroke=\"false\" Fill=\"true\"><ofd:FillColor Value=\"0 0 0\"/>" +
                                   SquareData + "</ofd:PathObject>");
    QCOMPARE(InkBox(image), QRectF(15, 20, 40, 40));
    // A quarter turn clockwise about the local origin.
    const QImage turned = PaintPage("<ofd:PathObject ID=\"1\" Boundary=\"50 20 0 0\" CTM=\"0 1 -1 0 0 0\" "
                                    "Stroke=\"false\" Fill=\"true\"><ofd:FillColor Value=\"0 0 0\"/>"
                                    "<ofd:AbbreviatedData>M 0 0 L 20 0 L 20 10 L 0 10 C</ofd:AbbreviatedData>"
                                    "</ofd:PathObject>");
    QCOMPARE(InkBox(turned), QRectF(40, 20, 10, 20));
}

void TestOfdRender::boundariesCutPathsButNotTexts()
{
    const QByteArray path = "<ofd:PathObject ID=\"1\" Boundary=\"10 10 5 5\" LineWidth=\"0\" Stroke=\"false\" "
                            "Fill=\"true\"><ofd:FillColor Value=\"0 0 0\"/>" +
                            SquareData + "</ofd:PathObject>";
    QCOMPARE(InkBox(PaintPage(path)), QRectF(10, 10, 5, 5));
    const QByteArray negative = QByteArray(path).replace("10 10 5 5", "10 10 5 -5");
    QCOMPARE(InkBox(PaintPage(negative)), QRectF(10, 10, 20, 20));
    const QImage text =
        PaintPage(TextObject("Size=\"10\" Boundary=\"10 10 1 1\"", "<ofd:TextCode X=\"0\" Y=\"10\">H</ofd:TextCode>"));
    QVERIFY(InkBox(text).width() > 4);
}

void TestOfdRender::fillingNeedsAFlagAndAColour()
{
    const QByteArray head = "<ofd:PathObject ID=\"1\" Boundary=\"10 10 20 20\" Stroke=\"false\" ";
    const QByteArray colour = "<ofd:FillColor Value=\"0 0 0\"/>";
    QVERIFY(InkBox(PaintPage(head + "Fill=\"true\">" + SquareData + "</ofd:PathObject>")).isEmpty());
    QVERIFY(InkBox(PaintPage(head + ">" + colour + SquareData + "</ofd:PathObject>")).isEmpty());
    QVERIFY(!InkBox(PaintPage(head + "Fill=\"true\">" + SquareData + colour + "</ofd:PathObject>")).isEmpty());
}

void TestOfdRender::theRuleDecidesWhatIsInside()
{
    const QByteArray rings = "M 0 0 L 20 0 L 20 20 L 0 20 C M 5 5 L 15 5 L 15 15 L 5 15 C";
    const auto paint = [&](const QByteArray& rule) {
        return PaintPage("<ofd:PathObject ID=\"1\" Boundary=\"10 10 20 20\" Stroke=\"false\" Fill=\"true\" " + rule +
                         "><ofd:FillColor Value=\"0 0 0\"/><ofd:AbbreviatedData>" + rings +
                         "</ofd:AbbreviatedData></ofd:PathObject>");
    };
    QCOMPARE(ColourAt(paint("Rule=\"Even-Odd\""), 20, 20), QColor(Qt::white));
    QCOMPARE(ColourAt(paint("Rule=\"NonZero\""), 20, 20), QColor(Qt::black));
    QCOMPARE(ColourAt(paint(""), 20, 20), QColor(Qt::black));
}

void TestOfdRender::linesHaveWidthDashesAndCaps()
{
    const auto line = [&](const QByteArray& attributes) {
        return PaintPage("<ofd:PathObject ID=\"1\" Boundary=\"10 20 0 0\" " + attributes +
                         "><ofd:AbbreviatedData>M 0 0 L 40 0</ofd:AbbreviatedData></ofd:PathObject>");
    };
    QCOMPARE(InkBox(line("LineWidth=\"4\"")), QRectF(10, 18, 40, 4));
    QCOMPARE(InkBox(line("LineWidth=\"-4\"")), QRectF(10, 18, 40, 4));
    QCOMPARE(InkBox(line("LineWidth=\"4\" Cap=\"Square\"")), QRectF(8, 18, 44, 4));
    QVERIFY(!InkBox(line("LineWidth=\"0\"")).isEmpty()); // the thinnest line there is
    QCOMPARE(InkBox(line("LineWidth=\"2\" CTM=\"0.5 0 0 2 0 0\"")), QRectF(10, 18, 20, 4));
    const QImage dashed = line("LineWidth=\"4\" DashPattern=\"5 5\"");
    QCOMPARE(ColourAt(dashed, 12, 20), QColor(Qt::black));
    QCOMPARE(ColourAt(dashed, 17, 20), QColor(Qt::white));
    QCOMPARE(ColourAt(line("LineWidth=\"4\" DashPattern=\"5 5\" DashOffset=\"5\""), 12, 20), QColor(Qt::white));
    QCOMPARE(ColourAt(line("LineWidth=\"4\" DashPattern=\"0 0\""), 17, 20), QColor(Qt::black)); // cannot be drawn
}

void TestOfdRender::aDashWithoutLengthIsADotOfItsCaps()
{
    const auto line = [&](const QByteArray& attributes) {
        return PaintPage("<ofd:PathObject ID=\"1\" Boundary=\"10 20 0 0\" LineWidth=\"4\" " + attributes +
                         "><ofd:AbbreviatedData>M 0 0 L 40 0</ofd:AbbreviatedData></ofd:PathObject>");
    };
    const QImage dots = line("Cap=\"Round\" DashPattern=\"0 10\"");
    QCOMPARE(ColourAt(dots, 11, 20), QColor(Qt::black));
    QCOMPARE(ColourAt(dots, 15, 20), QColor(Qt::white));
    QCOMPARE(ColourAt(dots, 20, 20), QColor(Qt::black));
    QCOMPARE(ColourAt(line("Cap=\"Square\" DashPattern=\"0 10\""), 21.5, 21.5), QColor(Qt::black));
    QVERIFY(InkBox(line("DashPattern=\"0 10\"")).isEmpty()); // without caps there is nothing
    const QImage solid = line("DashPattern=\"5 0\"");
    for (double x = 10.125; x < 50; x += 0.25)
        QCOMPARE(ColourAt(solid, x, 20), QColor(Qt::black)); // without gaps there are no seams
}

void TestOfdRender::aLineWithoutLengthIsADotOfItsCaps()
{
    const auto dots = [&](const QByteArray& cap) {
        return PaintPage("<ofd:PathObject ID=\"1\" Boundary=\"10 20 0 0\" LineWidth=\"4\" Cap=\"" + cap +
                         "\"><ofd:AbbreviatedData>M 0 0 L 0 0 M 40 10 L 40 10</ofd:AbbreviatedData></ofd:PathObject>");
    };
    QCOMPARE(InkBox(dots("Round")), QRectF(8, 18, 44, 14));
    QCOMPARE(ColourAt(dots("Round"), 30, 25), QColor(Qt::white));
    QCOMPARE(ColourAt(dots("Square"), 8.5, 18.5), QColor(Qt::black));
    QVERIFY(InkBox(dots("Butt")).isEmpty());
}

void TestOfdRender::clipsCutByTheirIntersection()
{
    const auto clip = [](const QByteArray& data) {
        return "<ofd:Clip><ofd:Area><ofd:Path Boundary=\"0 0 20 20\"><ofd:AbbreviatedData>" + data +
               "</ofd:AbbreviatedData></ofd:Path></ofd:Area></ofd:Clip>";
    };
    const QByteArray left = clip("M 0 0 L 10 0 L 10 20 L 0 20 C");
    const QByteArray top = clip("M 0 0 L 20 0 L 20 10 L 0 10 C");
    const auto paint = [&](const QByteArray& clips) {
        return PaintPage(FilledSquare(10, 10, "Value=\"0 0 0\"").replace("<ofd:FillColor", clips + "<ofd:FillColor"));
    };
    QCOMPARE(InkBox(paint("<ofd:Clips>" + left + top + "</ofd:Clips>")), QRectF(10, 10, 10, 10));
    QCOMPARE(InkBox(paint("<ofd:Clips/>")), QRectF(10, 10, 20, 20));
    // Two areas of one clip are taken together.
    const QByteArray both = QByteArray(left + top).replace("</ofd:Clip><ofd:Clip>", "");
    const QImage joined = paint("<ofd:Clips>" + both + "</ofd:Clips>");
    QCOMPARE(ColourAt(joined, 12, 28), QColor(Qt::black));
    QCOMPARE(ColourAt(joined, 28, 12), QColor(Qt::black));
    QCOMPARE(ColourAt(joined, 28, 28), QColor(Qt::white));
}

void TestOfdRender::theClipsFlagDecidesWhetherTheMatrixApplies()
{
    const auto paint = [&](const QByteArray& flag) {
        return PaintPage("<ofd:PathObject ID=\"1\" Boundary=\"10 10 40 40\" CTM=\"2 0 0 2 0 0\" Stroke=\"false\" "
                         "Fill=\"true\"><ofd:Clips" +
                         flag +
                         "><ofd:Clip><ofd:Area><ofd:Path Boundary=\"0 0 10 10\"><ofd:AbbreviatedData>M 0 0 L 10 0 L 10 "
                         "10 L 0 10 C</ofd:AbbreviatedData></ofd:Path></ofd:Area></ofd:Clip></ofd:Clips>"
                         "<ofd:FillColor Value=\"0 0 0\"/>" +
                         SquareData + "</ofd:PathObject>");
    };
    QCOMPARE(InkBox(paint(" TransFlag=\"false\"")), QRectF(10, 10, 10, 10));
    QCOMPARE(InkBox(paint(" TransFlag=\"true\"")), QRectF(10, 10, 20, 20));
    QCOMPARE(InkBox(paint("")), QRectF(10, 10, 20, 20));
}

void TestOfdRender::drawParametersAreInherited()
{
    const QByteArray params =
        "<ofd:DrawParams><ofd:DrawParam ID=\"30\" LineWidth=\"6\"><ofd:StrokeColor Value=\"255 0 0\"/>"
        "</ofd:DrawParam><ofd:DrawParam ID=\"31\" Relative=\"30\"><ofd:StrokeColor Value=\"0 0 255\"/>"
        "</ofd:DrawParam></ofd:DrawParams>";
    const auto paint = [&](const QByteArray& layer, const QByteArray& attributes, const QByteArray& colour) {
        const QByteArray object = "<ofd:PathObject ID=\"1\" Boundary=\"10 20 0 0\" " + attributes + ">" + colour +
                                  "<ofd:AbbreviatedData>M 0 0 L 40 0</ofd:AbbreviatedData></ofd:PathObject>";
        OfdFile file = OfdFile::WithPage(object).Resources(params + FontResource);
        QByteArray page = file.Part(QStringLiteral("Doc_0/Pages/Page_0/Content.xml"));
        page.replace("<ofd:Layer ID=\"500\"", "<ofd:Layer ID=\"500\" " + layer);
        return PaintFile(file.Set(QStringLiteral("Doc_0/Pages/Page_0/Content.xml"), page));
    };
    const QImage own = paint({}, "DrawParam=\"31\"", {});
    QCOMPARE(ColourAt(own, 20, 20), QColor(Qt::blue)); // its own colour, the width of the other
    QCOMPARE(ColourAt(own, 20, 22.5), QColor(Qt::blue));
    QCOMPARE(ColourAt(paint("DrawParam=\"30\"", {}, {}), 20, 22.5), QColor(Qt::red));
    QCOMPARE(ColourAt(paint("DrawParam=\"30\"", {}, "<ofd:StrokeColor Value=\"0 255 0\"/>"), 20, 20),
             QColor(Qt::green));
    QCOMPARE(ColourAt(paint("DrawParam=\"10\"", {}, {}), 20, 22.5), QColor(Qt::white)); // the id of a font
    QVERIFY(qGray(ColourAt(paint("DrawParam=\"99\"", {}, {}), 20, 20.1).rgb()) < 128);
}

void TestOfdRender::arcsGoTheWayTheyAreTold()
{
    const auto paint = [&](const QByteArray& arc) {
        return InkBox(PaintPage("<ofd:PathObject ID=\"1\" Boundary=\"30 50 0 0\" Stroke=\"false\" Fill=\"true\">"
                                "<ofd:FillColor Value=\"0 0 0\"/><ofd:AbbreviatedData>M 0 0 " +
                                arc + "</ofd:AbbreviatedData></ofd:PathObject>"));
    };
    QCOMPARE(paint("A 20 20 0 0 1 40 0 C"), QRectF(30, 30, 40, 20)); // clockwise: over the top
    QCOMPARE(paint("A 20 20 0 0 0 40 0 C"), QRectF(30, 50, 40, 20));
    QCOMPARE(paint("A 1 1 0 0 1 40 0 C"), QRectF(30, 30, 40, 20)); // too small: scaled up
    const QRectF large = paint("A 25 25 0 1 1 40 0 C");
    QVERIFY(large.height() > 38 && large.width() > 49);
    QVERIFY(paint("A 0 20 0 0 1 40 0 L 40 10 L 0 10 C").contains(QRectF(31, 51, 38, 8))); // a line
}

void TestOfdRender::numbersWithoutALetterGoOnWithTheLastOne()
{
    const auto paint = [](const QByteArray& data) {
        return PaintPage("<ofd:PathObject ID=\"1\" Boundary=\"10 10 0 0\" Stroke=\"false\" Fill=\"true\">"
                         "<ofd:FillColor Value=\"0 0 0\"/><ofd:AbbreviatedData>" +
                         data + "</ofd:AbbreviatedData></ofd:PathObject>");
    };
    const QImage square = paint("M 0 0 L 20 0 L 20 20 L 0 20 C");
    QCOMPARE(InkBox(square), QRectF(10, 10, 20, 20));
    QCOMPARE(paint("M 0 0 L 20 0 20 20 0 20 C"), square);
    QCOMPARE(paint("M0,0,20,0,20,20-0,+20C"), square); // behind a start point they are lines
    QCOMPARE(paint("M 0 0 B 0 9 9 20 20 20 29 9 9 0 .5 0 C"), paint("M 0 0 B 0 9 9 20 20 20 B 29 9 9 0 .5 0 C"));
    // What belongs to nothing, or not all of it is there, ends the path.
    QCOMPARE(paint("M 0 0 L 20 0 20 20 0 20 C 50 50 L 60 60 50 60 C"), square);
    QCOMPARE(paint("M 0 0 L 20 0 20 20 0 20 7"), square);
    QVERIFY(InkBox(paint("50 50 60 60 50 60")).isEmpty());
}

void TestOfdRender::picturesFillTheirMatrix()
{
    QImage quadrants(2, 2, QImage::Format_RGB32);
    quadrants.setPixelColor(0, 0, Qt::red);
    quadrants.setPixelColor(1, 0, Qt::green);
    quadrants.setPixelColor(0, 1, Qt::blue);
    quadrants.setPixelColor(1, 1, Qt::black);
    QByteArray png;
    QBuffer buffer(&png);
    QVERIFY(quadrants.scaled(64, 64).save(&buffer, "PNG"));
    const QByteArray media = "<ofd:MultiMedias><ofd:MultiMedia ID=\"40\" Type=\"Image\"><ofd:MediaFile>a.png"
                             "</ofd:MediaFile></ofd:MultiMedia></ofd:MultiMedias>";
    const auto paint = [&](const QByteArray& attributes) {
        const QByteArray image = "<ofd:ImageObject ID=\"1\" ResourceID=\"40\" " + attributes + "/>";
        return PaintFile(OfdFile::WithPage(image).Resources(media).Set(QStringLiteral("Doc_0/Res/a.png"), png));
    };
    const QImage placed = paint("Boundary=\"10 10 40 20\" CTM=\"40 0 0 20 0 0\"");
    QVERIFY(IsNear(ColourAt(placed, 15, 12), Qt::red));
    QVERIFY(IsNear(ColourAt(placed, 45, 12), Qt::green));
    QVERIFY(IsNear(ColourAt(placed, 15, 28), Qt::blue));
    QVERIFY(IsNear(ColourAt(placed, 45, 28), Qt::black));
    QCOMPARE(ColourAt(placed, 9, 20), QColor(Qt::white));
    QVERIFY(IsNear(ColourAt(paint("Boundary=\"10 10 40 20\""), 45, 12), Qt::green)); // fits its boundary
    QVERIFY(IsNear(ColourAt(paint("Boundary=\"10 10 40 40\" CTM=\"0 40 -40 0 40 0\""), 45, 15), Qt::red)); // turned
    const QImage faint = paint("Boundary=\"10 10 40 20\" CTM=\"40 0 0 20 0 0\" Alpha=\"128\"");
    QVERIFY(IsNear(ColourAt(faint, 45, 28), QColor(127, 127, 127)));
}

void TestOfdRender::pictureKindsAreToldByTheirBytes_data()
{
    QTest::addColumn<QString>("sample");
    for (const char* name : {"image_png_alpha", "image_jpeg", "image_jbig2", "image_without_format",
                             "media_in_other_folder", "non_ascii_part_names"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestOfdRender::pictureKindsAreToldByTheirBytes()
{
    QFETCH(QString, sample);
    const auto paint = [](const QString& name) {
        const ofd::OpenResult opened = ofd::OfdDocument::Open(SamplePath(QStringLiteral("deviations/") + name));
        G_RenderRequest request;
        request.pixelsPerMm = PixelsPerMm;
        return opened.document->Renderer()->RenderPage(request).image;
    };
    // The same page without its picture is white there.
    const QImage with = paint(sample);
    const QImage without = paint(QStringLiteral("image_without_resource"));
    int count = 0;
    for (int y = 200; y < 1100; ++y) {
        for (int x = 0; x < with.width(); ++x)
            count += with.pixel(x, y) != without.pixel(x, y);
    }
    QVERIFY2(count > 1000, qPrintable(QString::number(count)));
}

void TestOfdRender::textDrawsInsideItsBox()
{
    const QRectF ink = InkBox(PaintPage(TextObject("Size=\"20\" Boundary=\"10 10 60 30\"",
                                                   "<ofd:TextCode X=\"5\" Y=\"22\" DeltaX=\"20\">HH</ofd:TextCode>")));
    // Two letters of 0.72 em height on a baseline at 32 mm, the second 20 mm further.
    QVERIFY2(qAbs(ink.bottom() - 32) < 0.6, qPrintable(QString::number(ink.bottom())));
    QVERIFY(ink.height() > 12 && ink.height() < 16);
    QVERIFY(ink.left() > 15 && ink.left() < 18);
    QVERIFY(ink.right() > 45 && ink.right() < 51);
}

void TestOfdRender::deltasRepeatAndSurplusIsIgnored()
{
    const auto right = [&](const QByteArray& deltas) {
        return InkBox(PaintPage(TextObject("Size=\"6\" Boundary=\"10 10 60 30\"",
                                           "<ofd:TextCode X=\"0\" Y=\"10\" " + deltas + ">IIII</ofd:TextCode>")))
            .right();
    };
    const double full = right("DeltaX=\"6 6 6\"");
    QVERIFY(full > 28 && full < 34);
    QCOMPARE(right("DeltaX=\"6\""), full);
    QCOMPARE(right("DeltaX=\"g 3 6\""), full);
    QCOMPARE(right("DeltaX=\"  g  3  6  \""), full);
    QCOMPARE(right("DeltaX=\"6 6 6 6 6 6\""), full);
    QCOMPARE(right("DeltaX=\"g 2000000000 6\""), full);
    const double natural = right("");
    QVERIFY(natural > 15 && natural < 19);   // the font's own widths
    QVERIFY(right("DeltaY=\"6 6 6\"") < 12); // one below the other
}

void TestOfdRender::charactersTurn_data()
{
    QTest::addColumn<int>("direction");
    QTest::addColumn<QRectF>("box"); // where the letter must be
    QTest::newRow("0") << 0 << QRectF(50, 35, 15, 15);
    QTest::newRow("90") << 90 << QRectF(50, 50, 15, 15);
    QTest::newRow("180") << 180 << QRectF(35, 50, 15, 15);
    QTest::newRow("270") << 270 << QRectF(35, 35, 15, 15);
}

void TestOfdRender::charactersTurn()
{
    QFETCH(int, direction);
    QFETCH(QRectF, box);
    const QRectF ink = InkBox(
        PaintPage(TextObject("Size=\"20\" Boundary=\"0 0 0 0\" CharDirection=\"" + QByteArray::number(direction) + "\"",
                             "<ofd:TextCode X=\"50\" Y=\"50\">E</ofd:TextCode>")));
    QVERIFY(!ink.isEmpty());
    QVERIFY2(box.adjusted(-0.5, -0.5, 0.5, 0.5).contains(ink), qPrintable(QString::number(ink.x())));
}

void TestOfdRender::embeddedFontsDrawTheirOwnGlyphs_data()
{
    QTest::addColumn<QString>("sample");
    for (const char* name : {"truetype_named_otf", "truetype_named_cff", "cff_named_ttf", "truetype_without_cmap",
                             "truetype_without_tables"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestOfdRender::embeddedFontsDrawTheirOwnGlyphs()
{
    QFETCH(QString, sample);
    const ofd::OpenResult opened = ofd::OfdDocument::Open(SamplePath(QStringLiteral("deviations/") + sample));
    G_RenderRequest request;
    request.pixelsPerMm = PixelsPerMm;
    const QImage image = opened.document->Renderer()->RenderPage(request).image;
    // "BLOCKS 12" in letters of square blocks, ten millimetres high: every pixel deep inside is black or white.
    int black = 0, white = 0, between = 0;
    const QImage line = image.copy(80, 396, 220, 44);
    for (int y = 0; y < line.height(); ++y) {
        for (int x = 0; x < line.width(); ++x) {
            const int gray = qGray(line.pixel(x, y));
            (gray < 20 ? black : gray > 235 ? white : between)++;
        }
    }
    QVERIFY2(black > 1500 && white > 1500, qPrintable(QStringLiteral("%1 %2").arg(black).arg(white)));
    QVERIFY(between < (black + white) / 3);
}

void TestOfdRender::axialShadingsRunAlongTheirAxis()
{
    const auto paint = [&](const QByteArray& attributes) {
        return PaintPage(
            "<ofd:PathObject ID=\"1\" Boundary=\"10 10 60 20\" Stroke=\"false\" Fill=\"true\">"
            "<ofd:FillColor><ofd:AxialShd StartPoint=\"20 0\" EndPoint=\"40 0\" " +
            attributes +
            "><ofd:Segment><ofd:Color Value=\"0 0 0\"/></ofd:Segment><ofd:Segment><ofd:Color Value=\"255 0 "
            "0\"/></ofd:Segment></ofd:AxialShd></ofd:FillColor><ofd:AbbreviatedData>M 0 0 L 60 0 L 60 20 L "
            "0 20 C</ofd:AbbreviatedData></ofd:PathObject>");
    };
    const QImage plain = paint({});
    QCOMPARE(ColourAt(plain, 20, 20), QColor(Qt::white)); // before its start
    QVERIFY(IsNear(ColourAt(plain, 30.5, 20), Qt::black, 10));
    QVERIFY(IsNear(ColourAt(plain, 40, 20), QColor(128, 0, 0), 6));
    QVERIFY(IsNear(ColourAt(plain, 49.5, 20), Qt::red, 10));
    QCOMPARE(ColourAt(plain, 60, 20), QColor(Qt::white));
    const QImage extended = paint("Extend=\"3\"");
    QVERIFY(IsNear(ColourAt(extended, 12, 20), Qt::black));
    QVERIFY(IsNear(ColourAt(extended, 68, 20), Qt::red));
    QVERIFY(IsNear(ColourAt(paint("Extend=\"3\" MapType=\"Reflect\""), 69, 20), Qt::black, 20));
}

void TestOfdRender::transparencyMixes()
{
    const QImage image = PaintPage(FilledSquare(10, 10, "Value=\"0 0 0\" Alpha=\"128\"") +
                                   FilledSquare(40, 10, "Value=\"0 0 0\"", "Alpha=\"128\"") +
                                   FilledSquare(70, 10, "Value=\"0 0 0\" Alpha=\"128\"", "Alpha=\"128\""));
    QVERIFY(IsNear(ColourAt(image, 20, 20), QColor(127, 127, 127)));
    QVERIFY(IsNear(ColourAt(image, 50, 20), QColor(127, 127, 127)));
    QVERIFY(IsNear(ColourAt(image, 80, 20), QColor(191, 191, 191)));
}

void TestOfdRender::aPageOfTenMetresIsPaintedToItsEnds()
{
    const QString part = QStringLiteral("Doc_0/Pages/Page_0/Content.xml");
    OfdFile file = OfdFile::WithPage("<ofd:PathObject ID=\"1\" Boundary=\"0 1 10000 2\" Stroke=\"false\" Fill=\"true\">"
                                     "<ofd:FillColor Value=\"0 0 0\"/><ofd:AbbreviatedData>M 0 0 L 10000 0 L 10000 2 "
                                     "L 0 2 C</ofd:AbbreviatedData></ofd:PathObject>" +
                                     FilledSquare(9970, 3, "Value=\"255 0 0\""));
    QByteArray page = file.Part(part);
    const int content = page.indexOf("<ofd:Content");
    QVERIFY(content > 0);
    page.insert(content, "<ofd:Area><ofd:PhysicalBox>0 0 10000 5</ofd:PhysicalBox></ofd:Area>");
    file.Set(part, page);
    const QImage whole = PaintFile(file);
    QCOMPARE(whole.size(), QSize(40000, 20));
    for (int x = 0; x < whole.width(); ++x) {
        QCOMPARE(QColor(whole.pixel(x, 8)), QColor(Qt::black)); // without a seam
        QCOMPARE(QColor(whole.pixel(x, 1)), QColor(Qt::white));
    }
    QCOMPARE(ColourAt(whole, 9980, 4), QColor(Qt::red));
    QCOMPARE(ColourAt(whole, 9960, 4), QColor(Qt::white));
    QCOMPARE(ColourAt(whole, 9995, 4), QColor(Qt::white));
    G_RenderRequest request;
    request.region = QRect(39800, 0, 200, 20);
    QCOMPARE(PaintFile(file, request), whole.copy(request.region));
}

TETO_TEST_MAIN(TestOfdRender)

#include "test_ofd_render.moc"
