#include "graphics_pages.h"

#include <ofd/model/paint.h>
#include <ofd/render/shading_raster.h>
#include <tests/support/test_main.h>

#include <QtTest>

#include <cmath>

namespace {

const QColor White = Qt::white;
const QColor Black = Qt::black;
const QColor Red = Qt::red;
const QColor Green = Qt::green;
const QColor Blue = Qt::blue;

QByteArray Segment(const QByteArray& value, const QByteArray& attributes = {})
{
    return "<ofd:Segment " + attributes + "><ofd:Color Value=\"" + value + "\"/></ofd:Segment>";
}

// A box of 60 by 60 mm at (20, 20) filled with a shading.
QImage PaintShading(const QByteArray& shading, const QByteArray& colour = {}, const QByteArray& attributes = {})
{
    return PaintPage(
        FilledBox(QRectF(20, 20, 60, 60), "<ofd:FillColor " + colour + ">" + shading + "</ofd:FillColor>", attributes));
}

QByteArray Radial(const QByteArray& attributes)
{
    return "<ofd:RadialShd " + attributes + ">" + Segment("255 0 0") + Segment("0 0 255") + "</ofd:RadialShd>";
}

QByteArray Axial(const QByteArray& attributes)
{
    return "<ofd:AxialShd StartPoint=\"20 0\" EndPoint=\"40 0\" " + attributes + ">" + Segment("0 0 0") +
           Segment("255 0 0") + "</ofd:AxialShd>";
}

QByteArray Point(const QByteArray& x, const QByteArray& y, const QByteArray& value, const QByteArray& flag = {})
{
    return "<ofd:Point X=\"" + x + "\" Y=\"" + y + "\"" + (flag.isEmpty() ? "" : " EdgeFlag=\"" + flag + "\"") +
           "><ofd:Color Value=\"" + value + "\"/></ofd:Point>";
}

} // namespace

class TestOfdShadings : public QObject
{
    Q_OBJECT

private slots:
    void anAxisEndsWhereItIsNotExtended_data();
    void anAxisEndsWhereItIsNotExtended();
    void coloursRepeatAlongTheAxis();
    void coloursThatRepeatMoreOftenThanNumbersCanTellAreLeftOut();
    void positionsThatAreMissingSpreadEvenly();
    void circlesGrowFromTheStartToTheEnd();
    void circlesThatDoNotExtendLeaveThePaperAlone();
    void circlesMayLieApart();
    void circlesRepeat();
    void ellipsesFollowEccentricityAndAngle();
    void shadingsIgnoreTheMatrixOfTheObject();
    void shadingsThatSayTooLittleFallBackToTheValue_data();
    void shadingsThatSayTooLittleFallBackToTheValue();
    void aTriangleMixesItsCorners();
    void trianglesGoOnAtTheEdgeThatTheirFlagNames();
    void aLatticeFillsItsFields_data();
    void aLatticeFillsItsFields();
    void trianglesAreSmoothAroundAndShowNoSeamsBetweenEachOther();
    void aroundTheTrianglesIsTheBackColour();
    void alphaHoldsForShadings();
    void linesAreShadedToo();
    void aPartOfThePageIsPaintedAsTheWhole();
    void aMeshThatIsNoLongerWantedIsNotPainted();
    void aShadingThatIsNoLongerWantedIsNotPainted_data();
    void aShadingThatIsNoLongerWantedIsNotPainted();
};

void TestOfdShadings::anAxisEndsWhereItIsNotExtended_data()
{
    QTest::addColumn<QByteArray>("extend");
    QTest::addColumn<QColor>("before");
    QTest::addColumn<QColor>("behind");
    QTest::newRow("missing") << QByteArray() << White << White;
    QTest::newRow("0") << QByteArray("Extend=\"0\"") << White << White;
    QTest::newRow("1") << QByteArray("Extend=\"1\"") << Black << White;
    QTest::newRow("2") << QByteArray("Extend=\"2\"") << White << Red;
    QTest::newRow("3") << QByteArray("Extend=\"3\"") << Black << Red;
}

void TestOfdShadings::anAxisEndsWhereItIsNotExtended()
{
    QFETCH(QByteArray, extend);
    QFETCH(QColor, before);
    QFETCH(QColor, behind);
    const QImage image = PaintShading(Axial(extend));
    QVERIFY(Shows(image, 30, 50, before));
    QVERIFY(Shows(image, 39.6, 50, before));
    QVERIFY(Shows(image, 60.4, 50, behind));
    QVERIFY(Shows(image, 75, 50, behind));
    QVERIFY(Shows(image, 40.1, 50, Black));
    QVERIFY(Shows(image, 50, 50, QColor(128, 0, 0)));
    QVERIFY(Shows(image, 55, 22, QColor(191, 0, 0)));
    QVERIFY(Shows(image, 59.8, 50, Red, 6));
}

void TestOfdShadings::coloursRepeatAlongTheAxis()
{
    const QImage repeated = PaintShading(Axial("MapType=\"Repeat\" MapUnit=\"10\""));
    QVERIFY(Shows(repeated, 45, 50, QColor(128, 0, 0), 6));
    QVERIFY(Shows(repeated, 49.8, 50, Red, 10));
    QVERIFY(Shows(repeated, 50.3, 50, Black, 12));
    QVERIFY(Shows(repeated, 55, 50, QColor(128, 0, 0), 6));
    QVERIFY(Shows(repeated, 35, 50, White)); // not extended
    const QImage reflected = PaintShading(Axial("MapType=\"Reflect\" MapUnit=\"10\" Extend=\"3\""));
    QVERIFY(Shows(reflected, 50, 50, Red, 10));
    QVERIFY(Shows(reflected, 59.9, 50, Black, 10));
    QVERIFY(Shows(reflected, 70, 50, Red, 10));
    QVERIFY(Shows(reflected, 30, 50, Red, 10));
    const QImage whole = PaintShading(Axial("MapType=\"Repeat\" Extend=\"3\"")); // the unit is the axis
    QVERIFY(Shows(whole, 70, 50, QColor(128, 0, 0), 6));
    QVERIFY(Shows(whole, 30, 50, QColor(128, 0, 0), 6));
}

void TestOfdShadings::coloursThatRepeatMoreOftenThanNumbersCanTellAreLeftOut()
{
    for (const char* type : {"Repeat", "Reflect"}) {
        const QImage image =
            PaintShading(Axial("MapType=\"" + QByteArray(type) + "\" MapUnit=\"1e-307\" Extend=\"3\""));
        QVERIFY(Shows(image, 50, 50, White));
        QVERIFY(Shows(image, 75, 50, White));
    }
}

void TestOfdShadings::positionsThatAreMissingSpreadEvenly()
{
    const auto paint = [](const QByteArray& first, const QByteArray& second, const QByteArray& third) {
        return PaintShading("<ofd:AxialShd StartPoint=\"0 0\" EndPoint=\"60 0\">" + Segment("255 0 0", first) +
                            Segment("0 255 0", second) + Segment("0 0 255", third) + "</ofd:AxialShd>");
    };
    const QImage even = paint({}, {}, {});
    QVERIFY(Shows(even, 50, 50, Green, 6));
    QVERIFY(Shows(even, 35, 50, QColor(128, 128, 0), 6));
    const QImage early = paint("Position=\"0\"", "Position=\"0.25\"", {});
    QVERIFY(Shows(early, 35, 50, Green, 6));
    QVERIFY(Shows(early, 79.8, 50, Blue, 6));
    const QImage late = paint("Position=\"0.5\"", {}, "Position=\"1\"");
    QVERIFY(Shows(late, 30, 50, Red));
    QVERIFY(Shows(late, 65, 50, Green, 6));
}

void TestOfdShadings::circlesGrowFromTheStartToTheEnd()
{
    const QImage image = PaintShading(Radial("StartPoint=\"30 30\" EndPoint=\"30 30\" EndRadius=\"20\" Extend=\"3\""));
    QVERIFY(Shows(image, 50, 50, Red, 10));
    QVERIFY(Shows(image, 60, 50, QColor(128, 0, 128), 6));
    QVERIFY(Shows(image, 50, 40, QColor(128, 0, 128), 6));
    QVERIFY(Shows(image, 69.9, 50, Blue, 6));
    QVERIFY(Shows(image, 22, 22, Blue));
    const QImage ring = PaintShading(
        Radial("StartPoint=\"30 30\" StartRadius=\"10\" EndPoint=\"30 30\" EndRadius=\"20\" Extend=\"1\""));
    QVERIFY(Shows(ring, 50, 50, Red));
    QVERIFY(Shows(ring, 65, 50, QColor(128, 0, 128), 6));
    QVERIFY(Shows(ring, 72, 50, White));
    const QImage shrinking =
        PaintShading(Radial("StartPoint=\"30 30\" StartRadius=\"20\" EndPoint=\"30 30\" EndRadius=\"0\" Extend=\"3\""));
    QVERIFY(Shows(shrinking, 50, 50, Blue, 10));
    QVERIFY(Shows(shrinking, 69.8, 50, Red, 10));
    QVERIFY(Shows(shrinking, 22, 22, Red));
}

void TestOfdShadings::circlesThatDoNotExtendLeaveThePaperAlone()
{
    const QImage image = PaintShading(
        Radial("StartPoint=\"30 30\" StartRadius=\"10\" EndPoint=\"30 30\" EndRadius=\"20\" Extend=\"0\""));
    QVERIFY(Shows(image, 50, 50, White));
    QVERIFY(Shows(image, 59.5, 50, White));
    QVERIFY(Shows(image, 60.5, 50, QColor(242, 0, 13), 8));
    QVERIFY(Shows(image, 69.5, 50, QColor(13, 0, 242), 8));
    QVERIFY(Shows(image, 70.6, 50, White));
}

void TestOfdShadings::circlesMayLieApart()
{
    // Two circles of one size make a band.
    const QImage image = PaintShading(
        Radial("StartPoint=\"15 30\" StartRadius=\"10\" EndPoint=\"45 30\" EndRadius=\"10\" Extend=\"0\""));
    QVERIFY(Shows(image, 65, 58, QColor(51, 0, 204), 10)); // on the edge of a circle whose centre is near
    QVERIFY(Shows(image, 50, 61, White));
    QVERIFY(Shows(image, 50, 38, White));
    QVERIFY(!IsNear(ColourAt(image, 50, 50), White, 20));
    QVERIFY(Shows(image, 24, 50, White));
}

void TestOfdShadings::circlesRepeat()
{
    const QImage image = PaintShading(
        Radial("StartPoint=\"30 30\" EndPoint=\"30 30\" EndRadius=\"20\" MapType=\"Repeat\" MapUnit=\"10\""));
    QVERIFY(Shows(image, 55, 50, QColor(128, 0, 128), 8));
    QVERIFY(Shows(image, 65, 50, QColor(128, 0, 128), 8));
    QVERIFY(Shows(image, 60.5, 50, QColor(242, 0, 13), 12));
    QVERIFY(Shows(image, 71, 50, White));
}

void TestOfdShadings::ellipsesFollowEccentricityAndAngle()
{
    // Half as high as wide.
    const QByteArray base = "StartPoint=\"30 30\" EndPoint=\"30 30\" EndRadius=\"20\" Eccentricity=\"0.8660254\" ";
    const QImage flat = PaintShading(Radial(base));
    QVERIFY(Shows(flat, 60, 50, QColor(128, 0, 128), 6));
    QVERIFY(Shows(flat, 50, 55, QColor(128, 0, 128), 6));
    QVERIFY(Shows(flat, 69.5, 50, QColor(6, 0, 249), 8));
    QVERIFY(Shows(flat, 50, 61, White));
    const QImage upright = PaintShading(Radial(base + "Angle=\"90\""));
    QVERIFY(Shows(upright, 50, 60, QColor(128, 0, 128), 6));
    QVERIFY(Shows(upright, 55, 50, QColor(128, 0, 128), 6));
    QVERIFY(Shows(upright, 61, 50, White));
    const QImage turned = PaintShading(Radial(base + "Angle=\"45\"")); // down to the right
    QVERIFY(Shows(turned, 50 + 12, 50 + 12, QColor(39, 0, 216), 10));
    QVERIFY(Shows(turned, 50 + 12, 50 - 12, White));
}

void TestOfdShadings::shadingsIgnoreTheMatrixOfTheObject()
{
    const QImage image = PaintShading(Axial("Extend=\"3\""), {}, "CTM=\"0.5 0 0 0.5 0 0\"");
    QVERIFY(Shows(image, 45, 45, QColor(64, 0, 0), 6));
    QVERIFY(Shows(image, 30, 30, Black));
    QVERIFY(Shows(image, 55, 45, White)); // the path is half as large
}

void TestOfdShadings::shadingsThatSayTooLittleFallBackToTheValue_data()
{
    QTest::addColumn<QByteArray>("shading");
    QTest::newRow("no colours") << QByteArray("<ofd:AxialShd StartPoint=\"0 0\" EndPoint=\"60 0\"/>");
    QTest::newRow("no axis") << QByteArray("<ofd:AxialShd StartPoint=\"5 5\" EndPoint=\"5 5\">") + Segment("0 0 0") +
                                    "</ofd:AxialShd>";
    QTest::newRow("no end") << QByteArray("<ofd:AxialShd StartPoint=\"5 5\">") + Segment("0 0 0") + "</ofd:AxialShd>";
    QTest::newRow("no radius") << Radial("StartPoint=\"30 30\" EndPoint=\"30 30\" EndRadius=\"0\"");
    QTest::newRow("two points") << "<ofd:GouraudShd>" + Point("0", "0", "0 0 0") + Point("9", "9", "0 0 0") +
                                       "</ofd:GouraudShd>";
    QTest::newRow("one column") << "<ofd:LaGouraudShd VerticesPerRow=\"1\">" + Point("0", "0", "0 0 0") +
                                       Point("9", "9", "0 0 0") + "</ofd:LaGouraudShd>";
    QTest::newRow("one row") << "<ofd:LaGouraudShd VerticesPerRow=\"2000000000\">" + Point("0", "0", "0 0 0") +
                                    Point("9", "9", "0 0 0") + "</ofd:LaGouraudShd>";
    QTest::newRow("unknown") << QByteArray("<ofd:RainbowShd/>");
}

void TestOfdShadings::shadingsThatSayTooLittleFallBackToTheValue()
{
    QFETCH(QByteArray, shading);
    QVERIFY(Shows(PaintShading(shading, "Value=\"0 128 0\""), 50, 50, QColor(0, 128, 0)));
    QVERIFY(Shows(PaintShading(shading), 50, 50, White)); // never black
}

void TestOfdShadings::aTriangleMixesItsCorners()
{
    const QImage image = PaintShading("<ofd:GouraudShd>" + Point("0", "0", "255 0 0") + Point("60", "0", "0 255 0") +
                                      Point("0", "60", "0 0 255") + "</ofd:GouraudShd>");
    QVERIFY(Shows(image, 20.3, 20.3, Red, 8));
    QVERIFY(Shows(image, 50, 20.2, QColor(128, 128, 0), 6));
    QVERIFY(Shows(image, 40, 40, QColor(85, 85, 85), 6));
    QVERIFY(Shows(image, 20.2, 65, QColor(64, 0, 191), 6));
    QVERIFY(Shows(image, 60, 62, White));
}

void TestOfdShadings::trianglesGoOnAtTheEdgeThatTheirFlagNames()
{
    const QByteArray first =
        Point("10", "10", "255 0 0", "0") + Point("30", "10", "255 0 0", "0") + Point("30", "30", "255 0 0", "0");
    const auto paint = [&](const QByteArray& more) {
        return PaintShading("<ofd:GouraudShd>" + first + more + "</ofd:GouraudShd>");
    };
    const QImage second = paint(Point("50", "10", "255 0 0", "1")); // right of the edge from the second to the third
    QVERIFY(Shows(second, 55, 35, Red));
    QVERIFY(Shows(second, 35, 45, White));
    const QImage third = paint(Point("10", "30", "255 0 0", "2")); // below the edge from the first to the third
    QVERIFY(Shows(third, 35, 45, Red));
    QVERIFY(Shows(third, 55, 35, White));
    const QImage alone = paint(Point("50", "10", "255 0 0", "0")); // begins one that is never finished
    QVERIFY(Shows(alone, 55, 35, White));
    QVERIFY(Shows(alone, 45, 35, Red));
    const QImage apart =
        paint(Point("50", "50", "0 0 255", "0") + Point("58", "50", "0 0 255", "1") +
              Point("50", "58", "0 0 255", "2")); // a new one: the flags of its last points mean nothing
    QVERIFY(Shows(apart, 72, 72, Blue));
    QVERIFY(Shows(apart, 55, 55, White));
}

void TestOfdShadings::aLatticeFillsItsFields_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("one spelling") << QByteArray("LaGouraudShd");
    QTest::newRow("the other") << QByteArray("LaGourandShd");
}

void TestOfdShadings::aLatticeFillsItsFields()
{
    QFETCH(QByteArray, name);
    QByteArray points;
    for (const char* y : {"10", "30", "50"}) {
        points += Point("10", y, "255 0 0");
        points += Point("30", y, "0 255 0");
        points += Point("50", y, "0 0 255");
    }
    points += Point("10", "60", "0 0 0"); // a row that is not full
    const QImage image = PaintShading("<ofd:" + name + " VerticesPerRow=\"3\">" + points + "</ofd:" + name + ">");
    QVERIFY(Shows(image, 30.2, 40, Red, 8));
    QVERIFY(Shows(image, 40, 35, QColor(128, 128, 0), 6));
    QVERIFY(Shows(image, 40, 65, QColor(128, 128, 0), 6));
    QVERIFY(Shows(image, 50, 50, Green, 6));
    QVERIFY(Shows(image, 60, 60, QColor(0, 128, 128), 6));
    QVERIFY(Shows(image, 25, 50, White));
    QVERIFY(Shows(image, 50, 72, White));
}

void TestOfdShadings::trianglesAreSmoothAroundAndShowNoSeamsBetweenEachOther()
{
    // A fan of one colour around a point that lies between pixels; the outline is a square that stands on a corner.
    QByteArray points;
    const QByteArray corners[][2] = {{"30", "5"}, {"55", "30"}, {"30", "55"}, {"5", "30"}};
    for (int i = 0; i < 4; ++i) {
        const QByteArray* next = corners[(i + 1) % 4];
        points += Point("27.13", "31.77", "0 0 0", "0") + Point(corners[i][0], corners[i][1], "0 0 0", "0") +
                  Point(next[0], next[1], "0 0 0", "0");
    }
    const QImage image = PaintShading("<ofd:GouraudShd>" + points + "</ofd:GouraudShd>");
    int between = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const double middleMm = 50;
            const double awayMm =
                std::abs((x + 0.5) / PixelsPerMm - middleMm) + std::abs((y + 0.5) / PixelsPerMm - middleMm);
            const int gray = qGray(image.pixel(x, y));
            if (awayMm < 25 - 1 / PixelsPerMm)
                QCOMPARE(gray, 0);
            else if (awayMm > 25 + 1 / PixelsPerMm)
                QCOMPARE(gray, 255);
            else
                between += gray > 40 && gray < 215;
        }
    }
    QVERIFY(between > 300); // two a row; on a jagged edge there are none
}

void TestOfdShadings::aroundTheTrianglesIsTheBackColour()
{
    const QByteArray points =
        Point("10", "10", "255 0 0") + Point("30", "10", "255 0 0") + Point("10", "30", "0 255 0");
    const QByteArray back = "<ofd:BackColor Value=\"0 0 255\"/>";
    const auto paint = [&](const QByteArray& attributes, const QByteArray& more) {
        return PaintShading("<ofd:GouraudShd " + attributes + ">" + points + more + "</ofd:GouraudShd>");
    };
    QVERIFY(Shows(paint({}, back), 70, 70, Blue));
    QVERIFY(Shows(paint({}, back), 31, 31, Red, 30));
    QVERIFY(Shows(paint("Extend=\"1\"", back), 70, 70, Blue));
    QVERIFY(Shows(paint("Extend=\"0\"", back), 70, 70, White));
    QVERIFY(Shows(paint({}, {}), 70, 70, White));
    const QImage extended = paint("Extend=\"1\"", {});
    QVERIFY(Shows(extended, 78, 32, Red));
    QVERIFY(Shows(extended, 32, 78, Green));
}

void TestOfdShadings::alphaHoldsForShadings()
{
    const QByteArray black =
        "<ofd:AxialShd StartPoint=\"0 0\" EndPoint=\"60 0\">" + Segment("0 0 0") + Segment("0 0 0") + "</ofd:AxialShd>";
    QVERIFY(Shows(PaintShading(black, {}, "Alpha=\"128\""), 50, 50, QColor(127, 127, 127)));
    QVERIFY(Shows(PaintShading(black, "Alpha=\"128\""), 50, 50, QColor(127, 127, 127)));
    const QByteArray fading = "<ofd:AxialShd StartPoint=\"0 0\" EndPoint=\"60 0\">" + Segment("0 0 0") +
                              "<ofd:Segment><ofd:Color Value=\"0 0 0\" Alpha=\"0\"/></ofd:Segment></ofd:AxialShd>";
    QVERIFY(Shows(PaintShading(fading), 50, 50, QColor(127, 127, 127)));
    QVERIFY(Shows(PaintShading(fading), 65, 50, QColor(191, 191, 191)));
}

void TestOfdShadings::linesAreShadedToo()
{
    const QByteArray shading = Axial("Extend=\"3\"");
    const QImage image =
        PaintPage("<ofd:PathObject ID=\"1\" Boundary=\"20 20 60 60\" LineWidth=\"10\"><ofd:StrokeColor>" + shading +
                  "</ofd:StrokeColor><ofd:AbbreviatedData>M 5 30 L 55 30</ofd:AbbreviatedData>"
                  "</ofd:PathObject>");
    QVERIFY(Shows(image, 50, 50, QColor(128, 0, 0), 6));
    QVERIFY(Shows(image, 70, 54, Red));
    QVERIFY(Shows(image, 50, 56, White));
}

void TestOfdShadings::aPartOfThePageIsPaintedAsTheWhole()
{
    const QByteArray radial = Radial("StartPoint=\"10 10\" EndPoint=\"40 30\" EndRadius=\"30\" Extend=\"3\"");
    const QByteArray mesh = "<ofd:GouraudShd Extend=\"1\">" + Point("10", "10", "255 0 0") +
                            Point("30", "10", "0 0 255") + Point("10", "30", "0 255 0") + "</ofd:GouraudShd>";
    for (const QByteArray& shading : {radial, mesh}) {
        const OfdFile file =
            OfdFile::WithPage(FilledBox(QRectF(20, 20, 60, 60), "<ofd:FillColor>" + shading + "</ofd:FillColor>"));
        const QImage whole = PaintFile(file);
        G_RenderRequest request;
        request.region = QRect(101, 133, 150, 91);
        QCOMPARE(PaintFile(file, request), whole.copy(request.region));
    }
}

void TestOfdShadings::aMeshThatIsNoLongerWantedIsNotPainted()
{
    ofd::Mesh mesh;
    mesh.extends = true;
    mesh.vertices = {{QPointF(0, 0), Red}, {QPointF(8, 0), Red}, {QPointF(0, 8), Red}};
    mesh.corners = {0, 1, 2};
    const auto isPaintedUntil = [&mesh](int rows) {
        QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        ofd::PaintMesh(image, mesh, QTransform(), [&rows] { return --rows < 0; });
        return image;
    };
    QCOMPARE(isPaintedUntil(100).pixelColor(12, 12), Red);
    const QImage begun = isPaintedUntil(4);
    QCOMPARE(begun.pixelColor(12, 3), Red);
    QCOMPARE(begun.pixelColor(12, 4).alpha(), 0);
}

void TestOfdShadings::aShadingThatIsNoLongerWantedIsNotPainted_data()
{
    QTest::addColumn<bool>("isRadial");
    QTest::newRow("axial") << false;
    QTest::newRow("radial") << true;
}

void TestOfdShadings::aShadingThatIsNoLongerWantedIsNotPainted()
{
    QFETCH(bool, isRadial);
    ofd::Shading shading;
    shading.kind = isRadial ? ofd::Shading::Kind::Radial : ofd::Shading::Kind::Axial;
    shading.end = QPointF(16, 0);
    shading.endRadius = 40;
    shading.extendsStart = shading.extendsEnd = true;
    shading.stops = {{0, Red}, {1, Red}};
    const auto isPaintedUntil = [&shading](int rows) {
        QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        ofd::PaintShading(image, shading, QTransform(), [&rows] { return --rows < 0; });
        return image;
    };
    QCOMPARE(isPaintedUntil(100).pixelColor(12, 15), Red);
    const QImage begun = isPaintedUntil(4);
    QCOMPARE(begun.pixelColor(12, 3), Red);
    QCOMPARE(begun.pixelColor(12, 4).alpha(), 0);
}

TETO_TEST_MAIN(TestOfdShadings)

#include "test_shadings.moc"
