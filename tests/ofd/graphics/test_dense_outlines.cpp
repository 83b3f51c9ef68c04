#include "graphics_pages.h"

#include <tests/support/test_main.h>

#include <QtTest>

#include <cmath>

namespace {

QByteArray Number(double value)
{
    return QByteArray::number(value, 'f', 3);
}

QByteArray Path(const QByteArray& data, const QByteArray& attributes, const QByteArray& colours)
{
    return "<ofd:PathObject ID=\"3\" Boundary=\"0 0 100 100\" " + attributes + ">" + colours + "<ofd:AbbreviatedData>" +
           data + "</ofd:AbbreviatedData></ofd:PathObject>";
}

// Slanted bars half a millimetre apart, each its own subpath.
QVector<QByteArray> Bars()
{
    QVector<QByteArray> bars;
    for (int i = 0; i < 150; ++i) {
        const double x = i * 0.5;
        bars.append("M " + Number(x) + " 2 L " + Number(x + 0.25) + " 2 L " + Number(x + 20.25) + " 98 L " +
                    Number(x + 20) + " 98 C ");
    }
    return bars;
}

QByteArray Joined(const QVector<QByteArray>& pieces)
{
    QByteArray all;
    for (const QByteArray& piece : pieces)
        all += piece;
    return all;
}

// The largest difference of a channel.
int LargestDifference(const QImage& a, const QImage& b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor first = a.pixelColor(x, y);
            const QColor second = b.pixelColor(x, y);
            largest = std::max({largest, std::abs(first.red() - second.red()), std::abs(first.green() - second.green()),
                                std::abs(first.blue() - second.blue())});
        }
    }
    return largest;
}

// Lines up and down, then across, over the whole sheet.
QByteArray Grid(double spacing)
{
    QByteArray data;
    for (double at = 1; at < 100; at += spacing)
        data += "M " + Number(at) + " 0 L " + Number(at) + " 100 M 0 " + Number(at) + " L 100 " + Number(at) + ' ';
    return data;
}

// Circles around each other.
QByteArray Rings()
{
    QByteArray data;
    for (double radius = 1; radius < 45; radius += 0.5) {
        const QByteArray r = Number(radius) + ' ' + Number(radius);
        data += "M " + Number(50 - radius) + " 50 A " + r + " 0 1 1 " + Number(50 + radius) + " 50 A " + r + " 0 1 1 " +
                Number(50 - radius) + " 50 ";
    }
    return data;
}

} // namespace

// Outlines of very many edges, as in hatchings, grids and the fine patterns of certificates.
class TestDenseOutlines : public QObject
{
    Q_OBJECT

private slots:
    void barsInOneOutlineLookAsTheyDoOneByOne_data();
    void barsInOneOutlineLookAsTheyDoOneByOne();
    void hundredsOfLinesInOneOutlineAreAllThere();
    void translucentLinesThatCrossShowOnce_data();
    void translucentLinesThatCrossShowOnce();
    void thinTranslucentLinesThatCrossShowOnce_data();
    void thinTranslucentLinesThatCrossShowOnce();
    void thousandsOfLinesUnderAStretchingTransformAreLinesOneByOne();
    void clipsCutDenseOutlines();
    void aPartOfThePageIsPaintedAsTheWhole();
};

void TestDenseOutlines::barsInOneOutlineLookAsTheyDoOneByOne_data()
{
    QTest::addColumn<QByteArray>("colour");
    QTest::newRow("a colour") << Colour("200 0 0");
    QTest::newRow("a translucent one") << Colour("200 0 0", "Alpha=\"100\"");
    QTest::newRow("a shading") << QByteArray(
        "<ofd:FillColor><ofd:AxialShd StartPoint=\"0 0\" EndPoint=\"100 0\">"
        "<ofd:Segment Position=\"0\"><ofd:Color Value=\"255 0 0\"/></ofd:Segment>"
        "<ofd:Segment Position=\"1\"><ofd:Color Value=\"0 0 255\"/></ofd:Segment></ofd:AxialShd></ofd:FillColor>");
}

void TestDenseOutlines::barsInOneOutlineLookAsTheyDoOneByOne()
{
    QFETCH(QByteArray, colour);
    const QByteArray attributes = "Fill=\"true\" Stroke=\"false\"";
    QByteArray oneByOne;
    for (const QByteArray& bar : Bars())
        oneByOne += Path(bar, attributes, colour);
    const QImage together = PaintPage(Path(Joined(Bars()), attributes, colour));
    const int difference = LargestDifference(together, PaintPage(oneByOne));
    QVERIFY2(difference <= 8, qPrintable(QString::number(difference)));
    QVERIFY(ColourAt(together, 20, 50) != QColor(Qt::white)); // something is there
}

// Half a millimetre wide, two apart: too much work they were once.
void TestDenseOutlines::hundredsOfLinesInOneOutlineAreAllThere()
{
    const QImage polyline = PaintPage(Path("M 0 1 " + QByteArray(Grid(2)).replace("M", "L"), "LineWidth=\"0.5\"",
                                           "<ofd:StrokeColor Value=\"0 0 255\"/>"));
    for (double at = 1; at < 60; at += 2) {
        QVERIFY(Shows(polyline, at, 50, Qt::blue));
        QVERIFY(Shows(polyline, 50, at, Qt::blue));
    }
}

void TestDenseOutlines::translucentLinesThatCrossShowOnce_data()
{
    QTest::addColumn<double>("spacing");
    QTest::newRow("many") << 2.0;
    QTest::newRow("few") << 30.0;
}

void TestDenseOutlines::translucentLinesThatCrossShowOnce()
{
    QFETCH(double, spacing);
    const QImage image =
        PaintPage(Path(Grid(spacing), "LineWidth=\"1\"", "<ofd:StrokeColor Value=\"0 0 0\" Alpha=\"128\"/>"));
    const QColor half(127, 127, 127);
    QVERIFY(Shows(image, 1, 1, half)); // where two cross
    QVERIFY(Shows(image, 1 + spacing, 1 + spacing / 2, half));
    QVERIFY(Shows(image, 1 + spacing / 2, 1 + spacing / 2, Qt::white));
}

void TestDenseOutlines::thinTranslucentLinesThatCrossShowOnce_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("one that hangs together") << QByteArray("M 10 10 L 90 90 L 90 10 L 10 90");
    QTest::newRow("two, and a place without a line") << QByteArray("M 10 10 L 90 90 M 90 10 L 10 90 M 0 0");
}

void TestDenseOutlines::thinTranslucentLinesThatCrossShowOnce()
{
    QFETCH(QByteArray, data);
    const QImage image = PaintPage(Path(data, "LineWidth=\"0.2\"", "<ofd:StrokeColor Value=\"0 0 0\" Alpha=\"128\"/>"));
    int darkest = 255;
    for (int x = -4; x <= 4; ++x)
        darkest = std::min(darkest, ColourAt(image, 50 + x / 4.0, 50 + x / 4.0).red());
    QVERIFY2(darkest >= 120 && darkest < 200, qPrintable(QString::number(darkest)));
}

void TestDenseOutlines::thousandsOfLinesUnderAStretchingTransformAreLinesOneByOne()
{
    QByteArray together;
    QByteArray oneByOne;
    const QByteArray attributes = "LineWidth=\"0.3\" CTM=\"1 0 0 1.001 0 0\"";
    const QByteArray black = "<ofd:StrokeColor Value=\"0 0 0\"/>";
    for (int i = 0; i < 3000; ++i) {
        const QByteArray line = "M " + Number(i % 100) + " 2 L " + Number(i % 97) + " 90 ";
        together += line;
        oneByOne += Path(line, attributes, black);
    }
    QCOMPARE(PaintPage(Path(together, attributes, black)), PaintPage(oneByOne));
}

void TestDenseOutlines::clipsCutDenseOutlines()
{
    const QByteArray clips = "<ofd:Clips><ofd:Clip><ofd:Area><ofd:Path Boundary=\"0 0 100 100\">"
                             "<ofd:AbbreviatedData>M 20 20 L 60 20 L 20 60 C</ofd:AbbreviatedData></ofd:Path>"
                             "</ofd:Area></ofd:Clip></ofd:Clips>";
    const QImage image = PaintPage(Path(Joined(Bars()) + "M 0 0 L 100 0 L 100 100 L 0 100 C",
                                        "Fill=\"true\" Stroke=\"false\"", Colour("0 160 0") + clips));
    QVERIFY(ColourAt(image, 30, 30) != QColor(Qt::white));
    QVERIFY(Shows(image, 55, 55, Qt::white));
    QVERIFY(Shows(image, 10, 10, Qt::white));
}

void TestDenseOutlines::aPartOfThePageIsPaintedAsTheWhole()
{
    OfdFile file = OfdFile::WithPages(1);
    file.Set(QStringLiteral("Doc_0/Pages/Page_0/Content.xml"),
             PageXml(Path(Joined(Bars()), "Fill=\"true\" Stroke=\"false\"", Colour("0 0 0")) +
                     Path(Rings(), "LineWidth=\"0.3\"", "<ofd:StrokeColor Value=\"200 0 0\"/>") +
                     Path(Grid(7), "LineWidth=\"0.4\" DashPattern=\"0.4 1.6\" Cap=\"Round\"",
                          "<ofd:StrokeColor Value=\"0 0 200\"/>")));
    const QImage whole = PaintFile(file);
    QVERIFY(ColourAt(whole, 40, 50) != QColor(Qt::white));
    G_RenderRequest part;
    part.region = QRect(60, 70, 100, 90);
    QVERIFY(LargestDifference(PaintFile(file, part), whole.copy(part.region)) <= 2); // edges are cut at its sides
}

TETO_TEST_MAIN(TestDenseOutlines)
#include "test_dense_outlines.moc"
