#include "graphics_pages.h"

#include <ofd/ofd_document.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

const QColor White = Qt::white;
const QColor Red = Qt::red;
const QColor Green = Qt::green;
const QColor Blue = Qt::blue;

// A FillColor with a pattern of these objects.
QByteArray PatternFill(const QByteArray& attributes, const QByteArray& objects, const QByteArray& colour = {})
{
    return "<ofd:FillColor " + colour + "><ofd:Pattern " + attributes + "><ofd:CellContent>" + objects +
           "</ofd:CellContent></ofd:Pattern></ofd:FillColor>";
}

// Of a cell of 10 by 10 mm the upper left quarter is red and the one right of it green.
const QByteArray Quarters =
    FilledBox(QRectF(0, 0, 5, 5), Colour("255 0 0")) + FilledBox(QRectF(5, 0, 5, 5), Colour("0 255 0"));

} // namespace

class TestOfdPatterns : public QObject
{
    Q_OBJECT

private slots:
    void cellsRepeatFromTheCornerOfTheBoundary();
    void stepsLeaveGapsAndAreNeverLessThanTheCell();
    void cellsAreMirroredAsTold_data();
    void cellsAreMirroredAsTold();
    void aPatternMayBeginAtThePage();
    void theMatrixOfAPatternTurnsIt();
    void theMatrixOfTheObjectLeavesThePatternAlone();
    void whatReachesBeyondTheCellIsCutOff();
    void patternsFillLinesAndLetters();
    void aPatternMayBeFilledWithAPattern();
    void tinyCellsAreSeenAsTheirMeanColour();
    void smallCellsCoverTheirShareWhereverTheyBegin();
    void touchingCellsShowNoSeams();
    void cellsThatOnlyTouchTheEdgeDoNotShow();
    void alphaOfObjectAndColourHoldsForPatterns();
    void aCellWithoutASizeFallsBackToTheValue();
    void drawParametersOfTheLayerDoNotReachTheCell();
    void edgesAreSharpAtEveryZoom();
    void sizesBeyondReasonDoNoHarm_data();
    void sizesBeyondReasonDoNoHarm();
};

void TestOfdPatterns::cellsRepeatFromTheCornerOfTheBoundary()
{
    const QImage image =
        PaintPage(FilledBox(QRectF(15, 20, 30, 25), PatternFill("Width=\"10\" Height=\"10\"", Quarters)));
    for (const int column : {0, 1, 2}) {
        for (const int row : {0, 1, 2}) {
            QVERIFY(Shows(image, 17.5 + 10 * column, 22.5 + 10 * row, Red));
            QVERIFY(Shows(image, 22.5 + 10 * column, 22.5 + 10 * row, Green));
        }
    }
    QVERIFY(Shows(image, 17.5, 27.5, White));
    QVERIFY(Shows(image, 46, 22.5, White)); // beyond what is filled
    QVERIFY(Shows(image, 14.5, 22.5, White));
}

void TestOfdPatterns::stepsLeaveGapsAndAreNeverLessThanTheCell()
{
    const QImage wide = PaintPage(FilledBox(
        QRectF(10, 10, 60, 60), PatternFill("Width=\"10\" Height=\"10\" XStep=\"20\" YStep=\"15\"", Quarters)));
    QVERIFY(Shows(wide, 12, 12, Red));
    QVERIFY(Shows(wide, 22, 12, White));
    QVERIFY(Shows(wide, 32, 12, Red));
    QVERIFY(Shows(wide, 12, 22, White));
    QVERIFY(Shows(wide, 12, 27, Red));
    const QImage narrow = PaintPage(
        FilledBox(QRectF(10, 10, 60, 60), PatternFill("Width=\"10\" Height=\"10\" XStep=\"3\" YStep=\"0\"", Quarters)));
    QVERIFY(Shows(narrow, 12, 12, Red));
    QVERIFY(Shows(narrow, 17, 12, Green));
    QVERIFY(Shows(narrow, 22, 22, Red));
}

void TestOfdPatterns::cellsAreMirroredAsTold_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<bool>("columns");
    QTest::addColumn<bool>("rows");
    QTest::newRow("none") << QByteArray("Normal") << false << false;
    QTest::newRow("columns") << QByteArray("Column") << true << false;
    QTest::newRow("rows") << QByteArray("Row") << false << true;
    QTest::newRow("both") << QByteArray("RowAndColumn") << true << true;
    QTest::newRow("unknown") << QByteArray("Sideways") << false << false;
}

void TestOfdPatterns::cellsAreMirroredAsTold()
{
    QFETCH(QByteArray, method);
    QFETCH(bool, columns);
    QFETCH(bool, rows);
    const QImage image = PaintPage(FilledBox(
        QRectF(0, 0, 40, 40), PatternFill("Width=\"10\" Height=\"10\" ReflectMethod=\"" + method + "\"", Quarters)));
    QVERIFY(Shows(image, 2.5, 2.5, Red));
    QVERIFY(Shows(image, 12.5, 2.5, columns ? Green : Red)); // the second column, its left half
    QVERIFY(Shows(image, 17.5, 2.5, columns ? Red : Green));
    QVERIFY(Shows(image, 22.5, 2.5, Red));
    QVERIFY(Shows(image, 2.5, 12.5, rows ? White : Red)); // the second row, its upper half
    QVERIFY(Shows(image, 2.5, 17.5, rows ? Red : White));
    QVERIFY(Shows(image, 12.5, rows ? 17.5 : 12.5, columns ? Green : Red));
}

void TestOfdPatterns::aPatternMayBeginAtThePage()
{
    const QImage image = PaintPage(
        FilledBox(QRectF(13, 13, 60, 60), PatternFill("Width=\"10\" Height=\"10\" RelativeTo=\"Page\"", Quarters)));
    QVERIFY(Shows(image, 22.5, 22.5, Red));
    QVERIFY(Shows(image, 27.5, 22.5, Green));
    QVERIFY(Shows(image, 14, 14, Red));
    QVERIFY(Shows(image, 16, 14, Green));
}

void TestOfdPatterns::theMatrixOfAPatternTurnsIt()
{
    // A quarter turn clockwise and twice the size.
    const QImage image = PaintPage(
        FilledBox(QRectF(20, 20, 60, 60), PatternFill("Width=\"10\" Height=\"10\" CTM=\"0 2 -2 0 20 0\"", Quarters)));
    QVERIFY(Shows(image, 35, 25, Red)); // the cell's upper left corner is now at the upper right
    QVERIFY(Shows(image, 35, 35, Green));
    QVERIFY(Shows(image, 25, 25, White));
}

void TestOfdPatterns::theMatrixOfTheObjectLeavesThePatternAlone()
{
    const QByteArray object =
        FilledBox(QRectF(20, 20, 40, 40), PatternFill("Width=\"10\" Height=\"10\"", Quarters), "CTM=\"2 0 0 2 0 0\"");
    const QImage image = PaintPage(object);
    QVERIFY(Shows(image, 22.5, 22.5, Red));
    QVERIFY(Shows(image, 27.5, 22.5, Green));
    QVERIFY(Shows(image, 52.5, 52.5, Red));
}

void TestOfdPatterns::whatReachesBeyondTheCellIsCutOff()
{
    const QByteArray large = FilledBox(QRectF(0, 0, 30, 30), Colour("0 0 255"));
    const QImage image = PaintPage(
        FilledBox(QRectF(10, 10, 60, 60), PatternFill("Width=\"10\" Height=\"10\" XStep=\"20\" YStep=\"20\"", large)));
    QVERIFY(Shows(image, 18, 18, Blue));
    QVERIFY(Shows(image, 25, 15, White));
    QVERIFY(Shows(image, 32, 12, Blue));
}

void TestOfdPatterns::patternsFillLinesAndLetters()
{
    const QByteArray pattern = PatternFill("Width=\"10\" Height=\"10\"", Quarters);
    const QByteArray forLine = "<ofd:StrokeColor><ofd:Pattern Width=\"10\" Height=\"10\"><ofd:CellContent>" + Quarters +
                               "</ofd:CellContent></ofd:Pattern></ofd:StrokeColor>";
    const QByteArray line = "<ofd:PathObject ID=\"1\" Boundary=\"20 20 0 0\" LineWidth=\"8\">" + forLine +
                            "<ofd:AbbreviatedData>M 0 4 L 40 4</ofd:AbbreviatedData></ofd:PathObject>";
    const QImage image = PaintPage(line);
    QVERIFY(Shows(image, 22, 22, Red));
    QVERIFY(Shows(image, 27, 22, Green));
    QVERIFY(Shows(image, 22, 26.5, White)); // inside the line, the lower half of the cell
    const QImage letters = PaintPage(TextObject("Size=\"60\" Boundary=\"20 20 60 60\"",
                                                pattern + "<ofd:TextCode X=\"0\" Y=\"50\">I</ofd:TextCode>"));
    int red = 0, other = 0;
    for (int y = 0; y < letters.height(); ++y) {
        for (int x = 0; x < letters.width(); ++x) {
            const QColor colour = letters.pixelColor(x, y);
            red += IsNear(colour, Red) || IsNear(colour, Green);
            other += qGray(colour.rgb()) < 20;
        }
    }
    QVERIFY2(red > 500, qPrintable(QString::number(red)));
    QCOMPARE(other, 0); // nothing is black
}

void TestOfdPatterns::aPatternMayBeFilledWithAPattern()
{
    const QByteArray inner =
        FilledBox(QRectF(0, 0, 10, 10),
                  PatternFill("Width=\"2\" Height=\"2\"", FilledBox(QRectF(0, 0, 1, 2), Colour("255 0 0"))));
    const QImage image = PaintPage(
        FilledBox(QRectF(10, 10, 60, 60), PatternFill("Width=\"10\" Height=\"10\" XStep=\"20\" YStep=\"20\"", inner)));
    QVERIFY(Shows(image, 10.5, 15, Red));
    QVERIFY(Shows(image, 11.5, 15, White));
    QVERIFY(Shows(image, 12.5, 15, Red));
    QVERIFY(Shows(image, 32.5, 35, Red));
    QVERIFY(Shows(image, 25, 15, White));
}

void TestOfdPatterns::tinyCellsAreSeenAsTheirMeanColour()
{
    const QByteArray dots = FilledBox(QRectF(0, 0, 0.05, 0.1), Colour("0 0 0"));
    const QImage image =
        PaintPage(FilledBox(QRectF(10, 10, 60, 60), PatternFill("Width=\"0.1\" Height=\"0.1\"", dots)));
    QVERIFY(Shows(image, 40, 40, QColor(127, 127, 127), 6));
    QVERIFY(Shows(image, 40.25, 61, QColor(127, 127, 127), 6));
}

void TestOfdPatterns::smallCellsCoverTheirShareWhereverTheyBegin()
{
    const QByteArray dots = FilledBox(QRectF(0, 0, 0.4, 0.8), Colour("0 0 0"));
    const QImage image =
        PaintPage(FilledBox(QRectF(10, 10, 60, 60), PatternFill("Width=\"0.8\" Height=\"0.8\"", dots)));
    double sum = 0;
    for (int y = 100; y < 200; ++y) {
        for (int x = 100; x < 200; ++x)
            sum += qGray(image.pixel(x, y));
    }
    QVERIFY2(qAbs(sum / 10'000 - 127.5) < 8, qPrintable(QString::number(sum / 10'000)));
}

void TestOfdPatterns::touchingCellsShowNoSeams()
{
    // Cells of 13.32 pixels, each filled to its edges.
    const QByteArray full = FilledBox(QRectF(0, 0, 3.33, 3.33), Colour("0 0 255"));
    const QImage image =
        PaintPage(FilledBox(QRectF(10, 10, 60, 60), PatternFill("Width=\"3.33\" Height=\"3.33\"", full)));
    for (int i = 45; i < 275; ++i)
        QCOMPARE(image.pixelColor(i, i), Blue);
}

void TestOfdPatterns::cellsThatOnlyTouchTheEdgeDoNotShow()
{
    // Red begins where the box ends, between two pixels; what ends there reaches to it all the same.
    const QByteArray halves =
        FilledBox(QRectF(0, 0, 5, 10), Colour("255 0 0")) + FilledBox(QRectF(5, 0, 5, 10), Colour("0 0 255"));
    const QImage image =
        PaintPage(FilledBox(QRectF(10.1, 10.1, 20, 20), PatternFill("Width=\"10\" Height=\"10\"", halves)));
    const double edgePx = 30.1 * PixelsPerMm; // 120.4
    const QColor last = image.pixelColor(int(edgePx), 60);
    QVERIFY2(IsNear(last, QColor(153, 153, 255), 8), qPrintable(last.name()));
    const QColor first = image.pixelColor(int(10.1 * PixelsPerMm), 60); // six tenths of 40
    QVERIFY2(IsNear(first, QColor(255, 102, 102), 8), qPrintable(first.name()));
}

void TestOfdPatterns::alphaOfObjectAndColourHoldsForPatterns()
{
    const QByteArray full = FilledBox(QRectF(0, 0, 10, 10), Colour("0 0 0"));
    const QImage image =
        PaintPage(FilledBox(QRectF(10, 10, 20, 20), PatternFill("Width=\"10\" Height=\"10\"", full), "Alpha=\"128\"") +
                  FilledBox(QRectF(40, 10, 20, 20), PatternFill("Width=\"10\" Height=\"10\"", full, "Alpha=\"128\""),
                            "Alpha=\"128\""));
    QVERIFY(Shows(image, 15, 15, QColor(127, 127, 127)));
    QVERIFY(Shows(image, 45, 15, QColor(191, 191, 191)));
}

void TestOfdPatterns::aCellWithoutASizeFallsBackToTheValue()
{
    const QImage image = PaintPage(
        FilledBox(QRectF(10, 10, 20, 20), PatternFill("Width=\"0\" Height=\"10\"", Quarters, "Value=\"0 0 255\"")) +
        FilledBox(QRectF(40, 10, 20, 20), PatternFill("Width=\"x\" Height=\"10\"", Quarters)));
    QVERIFY(Shows(image, 20, 20, Blue));
    QVERIFY(Shows(image, 50, 20, White)); // never black
}

void TestOfdPatterns::drawParametersOfTheLayerDoNotReachTheCell()
{
    const QByteArray line = "<ofd:PathObject ID=\"5\" Boundary=\"0 0 0 0\">"
                            "<ofd:AbbreviatedData>M 0 5 L 10 5</ofd:AbbreviatedData></ofd:PathObject>";
    const QByteArray params = "<ofd:DrawParams><ofd:DrawParam ID=\"30\" LineWidth=\"6\"><ofd:StrokeColor Value=\"255 0 "
                              "0\"/></ofd:DrawParam></ofd:DrawParams>";
    OfdFile file = OfdFile::WithPage(FilledBox(QRectF(10, 10, 40, 40), PatternFill("Width=\"10\" Height=\"10\"", line)))
                       .Resources(params + FontResource);
    const QString part = QStringLiteral("Doc_0/Pages/Page_0/Content.xml");
    QByteArray page = file.Part(part);
    page.replace("<ofd:Layer ID=\"500\"", "<ofd:Layer ID=\"500\" DrawParam=\"30\"");
    const QImage image = PaintFile(file.Set(part, page));
    QVERIFY(Shows(image, 20, 17, White));
    QVERIFY(qGray(ColourAt(image, 20, 15).rgb()) < 128);
}

void TestOfdPatterns::edgesAreSharpAtEveryZoom()
{
    const QTemporaryDir folder;
    const OfdFile file =
        OfdFile::WithPage(FilledBox(QRectF(10, 10, 40, 40), PatternFill("Width=\"10\" Height=\"10\"", Quarters)));
    const ofd::OpenResult opened = ofd::OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("page.ofd"))));
    QVERIFY(opened);
    for (const double zoom : {2.0, 16.0, 40.0}) {
        G_RenderRequest request;
        request.pixelsPerMm = zoom;
        request.region = QRect(int(20 * zoom), int(20 * zoom), int(10 * zoom), int(10 * zoom)); // the second cell
        const QImage cell = opened.document->Renderer()->RenderPage(request).image;
        const int half = int(5 * zoom);
        QCOMPARE(cell.pixelColor(half - 1, half / 2), Red);
        QCOMPARE(cell.pixelColor(half, half / 2), Green);
        QCOMPARE(cell.pixelColor(half / 2, half - 1), Red);
        QCOMPARE(cell.pixelColor(half / 2, half), White);
    }
}

void TestOfdPatterns::sizesBeyondReasonDoNoHarm_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::newRow("vanishing cell") << QByteArray("Width=\"1e-300\" Height=\"1e-300\"");
    QTest::newRow("thin cell") << QByteArray("Width=\"0.0000001\" Height=\"10\"");
    QTest::newRow("huge cell") << QByteArray("Width=\"9999999\" Height=\"9999999\"");
    QTest::newRow("huge step") << QByteArray("Width=\"1\" Height=\"1\" XStep=\"9999999\"");
    QTest::newRow("huge matrix") << QByteArray("Width=\"10\" Height=\"10\" CTM=\"9999999 0 0 9999999 0 0\"");
    QTest::newRow("tiny matrix") << QByteArray("Width=\"10\" Height=\"10\" CTM=\"0.0000001 0 0 0.0000001 0 0\"");
    QTest::newRow("flat matrix") << QByteArray("Width=\"10\" Height=\"10\" CTM=\"1 0 0 0.00000001 0 0\"");
    QTest::newRow("far away") << QByteArray("Width=\"10\" Height=\"10\" CTM=\"1 0 0 1 9999990 -9999990\"");
}

void TestOfdPatterns::sizesBeyondReasonDoNoHarm()
{
    QFETCH(QByteArray, attributes);
    const QImage image = PaintPage(FilledBox(QRectF(10, 10, 60, 60), PatternFill(attributes, Quarters)) +
                                   FilledBox(QRectF(80, 80, 10, 10), Colour("0 0 255")));
    QVERIFY(Shows(image, 85, 85, Blue)); // the rest of the page is painted
    QVERIFY(Shows(image, 75, 75, White));
}

TETO_TEST_MAIN(TestOfdPatterns)

#include "test_patterns.moc"
