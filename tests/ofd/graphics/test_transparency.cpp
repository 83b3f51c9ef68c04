#include "graphics_pages.h"

#include <tests/support/test_main.h>

#include <QtTest>

#include <algorithm>

namespace {

const QColor White = Qt::white;
const QColor Black = Qt::black;
const QColor Half(127, 127, 127);

// Two black squares of 20 by 20 mm that overlap by half, from (0, 0) to (30, 20).
const QByteArray Overlapping =
    FilledBox(QRectF(0, 0, 20, 20), Colour("0 0 0")) + FilledBox(QRectF(10, 0, 20, 20), Colour("0 0 0"));

QByteArray Unit(const QByteArray& objects, int id = 60)
{
    return "<ofd:CompositeGraphicUnits><ofd:CompositeGraphicUnit ID=\"" + QByteArray::number(id) +
           "\" Width=\"100\" Height=\"100\"><ofd:Content>" + objects +
           "</ofd:Content></ofd:CompositeGraphicUnit></ofd:CompositeGraphicUnits>";
}

QByteArray Composite(const QByteArray& attributes, int id = 60)
{
    return "<ofd:CompositeObject ID=\"2\" ResourceID=\"" + QByteArray::number(id) + "\" " + attributes + "/>";
}

} // namespace

class TestOfdTransparency : public QObject
{
    Q_OBJECT

private slots:
    void alphaOfObjectAndColourMultiply();
    void compositesAreTransparentAsAWhole();
    void compositesInCompositesMultiply();
    void blocksAreTransparentAsAWhole();
    void lineAndFillingAreTransparentAsAWhole();
    void whatIsInvisibleIsNotPainted();
    void colourAlphaGoesFromZeroTo255_data();
    void colourAlphaGoesFromZeroTo255();
    void blendModesMixAsTheyAreCalled_data();
    void blendModesMixAsTheyAreCalled();
    void aCompositeBlendsAsAWhole();
    void lettersOverEachOtherBlendOnce_data();
    void lettersOverEachOtherBlendOnce();
    void turnedAndClippedGroupsStayInPlace();
    void aGroupIsPaintedAsFarAsItsLinesReach();
    void aPartOfThePageIsPaintedAsTheWhole();
};

void TestOfdTransparency::alphaOfObjectAndColourMultiply()
{
    const QImage image =
        PaintPage(FilledBox(QRectF(10, 10, 20, 20), Colour("0 0 0", "Alpha=\"128\"")) +
                  FilledBox(QRectF(40, 10, 20, 20), Colour("0 0 0"), "Alpha=\"128\"") +
                  FilledBox(QRectF(70, 10, 20, 20), Colour("0 0 0", "Alpha=\"128\""), "Alpha=\"128\""));
    QVERIFY(Shows(image, 20, 20, Half));
    QVERIFY(Shows(image, 50, 20, Half));
    QVERIFY(Shows(image, 80, 20, QColor(191, 191, 191)));
}

void TestOfdTransparency::compositesAreTransparentAsAWhole()
{
    const QImage image = PaintPage(Composite("Boundary=\"10 10 30 20\" Alpha=\"128\""), Unit(Overlapping));
    QVERIFY(Shows(image, 15, 20, Half));
    QVERIFY(Shows(image, 25, 20, Half)); // where both lie
    QVERIFY(Shows(image, 35, 20, Half));
    QVERIFY(Shows(image, 42, 20, White));
    QVERIFY(Shows(PaintPage(Composite("Boundary=\"10 10 30 20\""), Unit(Overlapping)), 25, 20, Black));
}

void TestOfdTransparency::compositesInCompositesMultiply()
{
    const QByteArray units = Unit(Overlapping) + Unit(Composite("Boundary=\"5 5 30 20\" Alpha=\"128\""), 61);
    const QImage image = PaintPage(Composite("Boundary=\"10 10 60 60\" Alpha=\"128\"", 61), units);
    QVERIFY(Shows(image, 20, 20, QColor(191, 191, 191)));
    QVERIFY(Shows(image, 30, 20, QColor(191, 191, 191)));
}

void TestOfdTransparency::blocksAreTransparentAsAWhole()
{
    const QImage image = PaintPage("<ofd:PageBlock ID=\"3\" Alpha=\"128\">" + Overlapping +
                                   "</ofd:PageBlock>"
                                   "<ofd:PageBlock ID=\"4\" Visible=\"false\">" +
                                   FilledBox(QRectF(50, 50, 20, 20), Colour("0 0 0")) + "</ofd:PageBlock>");
    QVERIFY(Shows(image, 5, 10, Half));
    QVERIFY(Shows(image, 15, 10, Half));
    QVERIFY(Shows(image, 60, 60, White));
}

void TestOfdTransparency::lineAndFillingAreTransparentAsAWhole()
{
    const QImage image =
        PaintPage("<ofd:PathObject ID=\"1\" Boundary=\"20 20 40 40\" Fill=\"true\" LineWidth=\"8\" "
                  "Alpha=\"128\"><ofd:StrokeColor Value=\"0 0 0\"/><ofd:FillColor Value=\"255 0 0\"/>" +
                  RectData(QRectF(0, 0, 40, 40)) + "</ofd:PathObject>");
    QVERIFY(Shows(image, 40, 40, QColor(255, 127, 127)));
    QVERIFY(Shows(image, 22, 40, Half)); // the inner half of the line: no red shines through
    QVERIFY(Shows(image, 18, 40, Half));
}

void TestOfdTransparency::whatIsInvisibleIsNotPainted()
{
    const QImage image = PaintPage(FilledBox(QRectF(10, 10, 20, 20), Colour("0 0 0"), "Visible=\"false\"") +
                                   FilledBox(QRectF(40, 10, 20, 20), Colour("0 0 0"), "Alpha=\"0\"") +
                                   FilledBox(QRectF(70, 10, 20, 20), Colour("0 0 0", "Alpha=\"0\"")) +
                                   FilledBox(QRectF(10, 40, 20, 20), Colour("0 0 0"), "Visible=\" FALSE \"") +
                                   FilledBox(QRectF(40, 40, 20, 20), Colour("0 0 0"), "Visible=\"0\"") +
                                   FilledBox(QRectF(70, 40, 20, 20), Colour("0 0 0"), "Visible=\"perhaps\""));
    QCOMPARE(InkBox(image), QRectF(70, 40, 20, 20));
}

void TestOfdTransparency::colourAlphaGoesFromZeroTo255_data()
{
    QTest::addColumn<QByteArray>("alpha");
    QTest::addColumn<int>("gray");
    QTest::newRow("full") << QByteArray("255") << 0;
    QTest::newRow("a quarter") << QByteArray("64") << 191;
    QTest::newRow("a fraction") << QByteArray("127.5") << 127;
    QTest::newRow("beyond") << QByteArray("999") << 0;
    QTest::newRow("below") << QByteArray("-4") << 255;
    QTest::newRow("unreadable") << QByteArray("half") << 0;
}

void TestOfdTransparency::colourAlphaGoesFromZeroTo255()
{
    QFETCH(QByteArray, alpha);
    QFETCH(int, gray);
    const QImage image = PaintPage(FilledBox(QRectF(10, 10, 20, 20), Colour("0 0 0", "Alpha=\"" + alpha + "\"")) +
                                   FilledBox(QRectF(40, 10, 20, 20), Colour("0 0 0"), "Alpha=\"" + alpha + "\""));
    QVERIFY(Shows(image, 20, 20, QColor(gray, gray, gray)));
    QVERIFY(Shows(image, 50, 20, QColor(gray, gray, gray)));
}

void TestOfdTransparency::blendModesMixAsTheyAreCalled_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QColor>("expected");
    // (200, 100, 0) over (100, 200, 255)
    QTest::newRow("none") << QByteArray("Normal") << QColor(200, 100, 0);
    QTest::newRow("darken") << QByteArray("Darken") << QColor(100, 100, 0);
    QTest::newRow("letter case") << QByteArray("darken ") << QColor(100, 100, 0);
    QTest::newRow("lighten") << QByteArray("Lighten") << QColor(200, 200, 255);
    QTest::newRow("multiply") << QByteArray("Multiply") << QColor(78, 78, 0);
    QTest::newRow("screen") << QByteArray("Screen") << QColor(222, 222, 255);
    QTest::newRow("difference") << QByteArray("Difference") << QColor(100, 100, 255);
    QTest::newRow("exclusion") << QByteArray("Exclusion") << QColor(143, 143, 255);
    QTest::newRow("unknown") << QByteArray("Sparkle") << QColor(200, 100, 0);
}

void TestOfdTransparency::blendModesMixAsTheyAreCalled()
{
    QFETCH(QByteArray, mode);
    QFETCH(QColor, expected);
    const QImage image =
        PaintPage(FilledBox(QRectF(10, 10, 40, 40), Colour("100 200 255")) +
                  FilledBox(QRectF(20, 20, 40, 40), Colour("200 100 0"), "BlendMode=\"" + mode + "\"") +
                  FilledBox(QRectF(70, 70, 10, 10), Colour("200 100 0")));
    QVERIFY(Shows(image, 30, 30, expected, 3));
    QVERIFY(Shows(image, 15, 15, QColor(100, 200, 255)));
    QVERIFY(Shows(image, 75, 75, QColor(200, 100, 0))); // the next object is painted as ever
}

void TestOfdTransparency::aCompositeBlendsAsAWhole()
{
    const QByteArray unit = Unit(FilledBox(QRectF(0, 0, 40, 40), Colour("200 100 0")) +
                                 FilledBox(QRectF(10, 10, 20, 20), Colour("255 255 255")));
    const QImage image = PaintPage(FilledBox(QRectF(10, 10, 40, 40), Colour("100 200 255")) +
                                       Composite("Boundary=\"10 10 40 40\" BlendMode=\"Darken\""),
                                   unit);
    QVERIFY(Shows(image, 15, 15, QColor(100, 100, 0), 3));
    QVERIFY(Shows(image, 30, 30, QColor(100, 200, 255), 3)); // white hides the orange below it, then changes nothing
}

void TestOfdTransparency::lettersOverEachOtherBlendOnce_data()
{
    QTest::addColumn<QByteArray>("size");
    QTest::newRow("small letters") << QByteArray("5");
    QTest::newRow("large letters") << QByteArray("60");
}

void TestOfdTransparency::lettersOverEachOtherBlendOnce()
{
    QFETCH(QByteArray, size);
    const auto darkest = [&size](const QByteArray& code) {
        const QImage image = PaintPage(TextObject(
            "Boundary=\"10 10 80 80\" BlendMode=\"Multiply\" Size=\"" + size + "\"",
            Colour("128 128 128") + "<ofd:TextCode X=\"0\" Y=\"60\" DeltaX=\"0\">" + code + "</ofd:TextCode>"));
        int level = 255;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                level = std::min(level, qGray(image.pixel(x, y)));
        }
        return level;
    };
    QCOMPARE(darkest("H"), 128);
    QCOMPARE(darkest("HH"), 128);
}

void TestOfdTransparency::turnedAndClippedGroupsStayInPlace()
{
    const QByteArray clip = "<ofd:Clips TransFlag=\"false\"><ofd:Clip><ofd:Area><ofd:Path Boundary=\"0 0 0 0\">" +
                            RectData(QRectF(0, 0, 15, 40)) + "</ofd:Path></ofd:Area></ofd:Clip></ofd:Clips>";
    // A quarter turn clockwise about the corner (40, 20).
    const QImage image = PaintPage("<ofd:CompositeObject ID=\"2\" ResourceID=\"60\" Boundary=\"20 20 20 40\" "
                                   "CTM=\"0 1 -1 0 20 0\" Alpha=\"128\">" +
                                       clip + "</ofd:CompositeObject>",
                                   Unit(Overlapping));
    QVERIFY(Shows(image, 30, 25, Half));
    QVERIFY(Shows(image, 30, 35, Half));
    QVERIFY(Shows(image, 30, 45, Half));
    QVERIFY(Shows(image, 37, 30, White)); // cut off
    QVERIFY(Shows(image, 30, 52, White));
    QVERIFY(Shows(image, 19, 30, White));
}

void TestOfdTransparency::aGroupIsPaintedAsFarAsItsLinesReach()
{
    // A corner whose line ends in a point far outside of the boundary.
    const QByteArray corner = "<ofd:PathObject ID=\"1\" Boundary=\"30 30 20 30\" LineWidth=\"6\" Fill=\"true\" "
                              "MiterLimit=\"10\" ALPHA><ofd:StrokeColor Value=\"0 0 0\"/><ofd:FillColor Value=\"0 0 "
                              "0\"/><ofd:AbbreviatedData>M 2 30 L 10 0 L 18 30</ofd:AbbreviatedData></ofd:PathObject>";
    const QImage opaque = PaintPage(QByteArray(corner).replace("ALPHA", ""));
    const QImage faint = PaintPage(QByteArray(corner).replace("ALPHA", "Alpha=\"200\""));
    const QImage unit =
        PaintPage(Composite("Boundary=\"0 0 100 100\" Alpha=\"200\""), Unit(QByteArray(corner).replace("ALPHA", "")));
    QVERIFY(InkBox(opaque).top() < 22);
    QCOMPARE(InkBox(faint), InkBox(opaque));
    QCOMPARE(InkBox(unit), InkBox(opaque));
}

void TestOfdTransparency::aPartOfThePageIsPaintedAsTheWhole()
{
    const OfdFile file =
        OfdFile::WithPage(
            Composite("Boundary=\"10 10 30 20\" Alpha=\"100\"") +
            TextObject("Size=\"20\" Boundary=\"10 40 60 30\" Alpha=\"100\" Stroke=\"true\"",
                       "<ofd:StrokeColor Value=\"255 0 0\"/><ofd:TextCode X=\"0\" Y=\"20\">R</ofd:TextCode>"))
            .Resources(FontResource + Unit(Overlapping));
    const QImage whole = PaintFile(file);
    G_RenderRequest request;
    request.region = QRect(61, 53, 97, 191);
    QCOMPARE(PaintFile(file, request), whole.copy(request.region));
}

TETO_TEST_MAIN(TestOfdTransparency)

#include "test_transparency.moc"
