#include "graphics_pages.h"

#include <ofd/model/united_areas.h>
#include <tests/support/test_main.h>

#include <QtTest>

namespace {

const QColor White = Qt::white;
const QColor Black = Qt::black;

QByteArray PathArea(const QByteArray& data, const QByteArray& pathAttributes = {},
                    const QByteArray& areaAttributes = {})
{
    return "<ofd:Area " + areaAttributes + "><ofd:Path Boundary=\"0 0 0 0\" " + pathAttributes +
           "><ofd:AbbreviatedData>" + data + "</ofd:AbbreviatedData></ofd:Path></ofd:Area>";
}

QByteArray TextArea(const QByteArray& text, const QByteArray& textAttributes = {},
                    const QByteArray& areaAttributes = {})
{
    return "<ofd:Area " + areaAttributes + "><ofd:Text Boundary=\"0 0 0 0\" Font=\"10\" Size=\"60\" " + textAttributes +
           "><ofd:TextCode X=\"0\" Y=\"50\">" + text + "</ofd:TextCode></ofd:Text></ofd:Area>";
}

QByteArray Clip(const QByteArray& areas)
{
    return "<ofd:Clip>" + areas + "</ofd:Clip>";
}

// A black square of 60 by 60 mm at (20, 20) behind these clips.
QImage PaintClipped(const QByteArray& clips, const QByteArray& flag = {}, const QByteArray& resources = FontResource)
{
    return PaintPage(
        FilledBox(QRectF(20, 20, 60, 60), Colour("0 0 0"), {}, "<ofd:Clips " + flag + ">" + clips + "</ofd:Clips>"),
        resources);
}

double InkOf(const QImage& image)
{
    double ink = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ink += 255 - qGray(image.pixel(x, y));
    }
    return ink / 255;
}

const QByteArray Left = "M 0 0 L 30 0 L 30 60 L 0 60 C";
const QByteArray Top = "M 0 0 L 60 0 L 60 30 L 0 30 C";
const QByteArray LowerRight = "M 40 40 L 60 40 L 60 60 L 40 60 C";

} // namespace

class TestOfdClips : public QObject
{
    Q_OBJECT

private slots:
    void clipsCutToWhatTheyHaveInCommon();
    void areasOfAClipAreTakenTogether();
    void anAreaOfSeveralShapesIsAllOfThem();
    void anAreaKeepsTheRuleOfItsPath();
    void matricesOfPathAndAreaApply();
    void theFlagDecidesAndWithoutItTheBoundaryDoes();
    void lettersCutLikePaths();
    void lettersAndPathsOfOneClipAreTakenTogether();
    void theLineOfLettersCountsWithTheAreasDrawParameter();
    void aClipThatCannotBeReadCutsNothing();
    void aClipOfNothingCutsAll();
    void clipsCutTextsPicturesAndComposites();
    void manyAreasAreOneClip();
    void areasThatOverlapTakeNothingFromEachOther();
    void lettersTakeNothingFromThePathAroundThem_data();
    void lettersTakeNothingFromThePathAroundThem();
    void areasThatCrossVeryOftenAreLaidOverEachOther();
};

void TestOfdClips::clipsCutToWhatTheyHaveInCommon()
{
    const QImage image = PaintClipped(Clip(PathArea(Left)) + Clip(PathArea(Top)));
    QCOMPARE(InkBox(image), QRectF(20, 20, 30, 30));
    QCOMPARE(InkBox(PaintClipped(Clip(PathArea(Left)) + Clip(PathArea(LowerRight)))), QRectF());
}

void TestOfdClips::areasOfAClipAreTakenTogether()
{
    const QImage image = PaintClipped(Clip(PathArea(Left) + PathArea(Top) + PathArea(LowerRight)));
    QVERIFY(Shows(image, 22, 78, Black));
    QVERIFY(Shows(image, 78, 22, Black));
    QVERIFY(Shows(image, 30, 30, Black)); // in both
    QVERIFY(Shows(image, 70, 70, Black));
    QVERIFY(Shows(image, 70, 55, White));
}

void TestOfdClips::anAreaOfSeveralShapesIsAllOfThem()
{
    QByteArray areas = PathArea(Left) + PathArea(LowerRight) + TextArea("I", {}, {});
    areas.replace("</ofd:Area><ofd:Area >", "");
    QCOMPARE(areas.count("<ofd:Area"), 1);
    const QImage image = PaintClipped(Clip(areas));
    QVERIFY(Shows(image, 22, 78, Black));
    QVERIFY(Shows(image, 70, 70, Black));
    QVERIFY(Shows(image, 70, 55, White));
}

void TestOfdClips::anAreaKeepsTheRuleOfItsPath()
{
    const QByteArray frame = "M 0 0 L 60 0 L 60 60 L 0 60 C M 20 20 L 40 20 L 40 40 L 20 40 C";
    const QImage hollow = PaintClipped(Clip(PathArea(frame, "Rule=\"Even-Odd\"")));
    QVERIFY(Shows(hollow, 50, 50, White));
    QVERIFY(Shows(hollow, 30, 50, Black));
    QVERIFY(Shows(PaintClipped(Clip(PathArea(frame))), 50, 50, Black));
    // Beside an area of the other rule.
    const QImage both =
        PaintClipped(Clip(PathArea(frame, "Rule=\"Even-Odd\"") + PathArea("M 25 25 L 35 25 L 35 35 L 25 35 C")));
    QVERIFY(Shows(both, 50, 50, Black));
    QVERIFY(Shows(both, 42, 42, White));
}

void TestOfdClips::matricesOfPathAndAreaApply()
{
    const QByteArray small = "M 0 0 L 10 0 L 10 10 L 0 10 C";
    // Twice as large, moved by five, then by ten more.
    const QByteArray path = "<ofd:Area CTM=\"1 0 0 1 10 0\"><ofd:Path Boundary=\"5 5 20 20\" CTM=\"2 0 0 2 0 0\">"
                            "<ofd:AbbreviatedData>" +
                            small + "</ofd:AbbreviatedData></ofd:Path></ofd:Area>";
    QCOMPARE(InkBox(PaintClipped(Clip(path))), QRectF(35, 25, 20, 20));
}

void TestOfdClips::theFlagDecidesAndWithoutItTheBoundaryDoes()
{
    const QByteArray small = Clip(PathArea("M 0 0 L 10 0 L 10 10 L 0 10 C"));
    const auto paint = [&](const QByteArray& flag, const QByteArray& matrix) {
        return InkBox(PaintPage(FilledBox(QRectF(20, 20, 60, 60), Colour("0 0 0"), "CTM=\"" + matrix + "\"",
                                          "<ofd:Clips " + flag + ">" + small + "</ofd:Clips>")));
    };
    QCOMPARE(paint("TransFlag=\"true\"", "2 0 0 2 0 0"), QRectF(20, 20, 20, 20));
    QCOMPARE(paint("TransFlag=\"false\"", "2 0 0 2 0 0"), QRectF(20, 20, 10, 10));
    QCOMPARE(paint({}, "2 0 0 2 0 0"), QRectF(20, 20, 20, 20));
    // With the matrix it would miss the boundary altogether.
    QCOMPARE(paint({}, "2 0 0 2 -90 -90"), QRectF(20, 20, 10, 10));
    QCOMPARE(paint("TransFlag=\"true\"", "2 0 0 2 -90 -90"), QRectF());
}

void TestOfdClips::lettersCutLikePaths()
{
    const QImage image = PaintClipped(Clip(TextArea("HI")));
    const QByteArray same =
        TextObject("Size=\"60\" Boundary=\"20 20 60 60\"", "<ofd:TextCode X=\"0\" Y=\"50\">HI</ofd:TextCode>");
    const QImage letters = PaintPage(same);
    QVERIFY(InkOf(image) > 1000);
    QVERIFY2(qAbs(InkOf(image) / InkOf(letters) - 1) < 0.03, qPrintable(QString::number(InkOf(image))));
    const QRectF box = InkBox(image), expected = InkBox(letters);
    QVERIFY(qAbs(box.left() - expected.left()) < 0.6 && qAbs(box.right() - expected.right()) < 0.6);
    // The area's matrix moves them.
    const QRectF moved = InkBox(PaintClipped(Clip(TextArea("I", {}, "CTM=\"1 0 0 1 20 0\""))));
    const QRectF unmoved = InkBox(PaintClipped(Clip(TextArea("I"))));
    QVERIFY(qAbs(moved.left() - unmoved.left() - 20) < 0.3);
}

void TestOfdClips::lettersAndPathsOfOneClipAreTakenTogether()
{
    const QImage together = PaintClipped(Clip(TextArea("I") + PathArea(LowerRight)));
    QVERIFY(Shows(together, 70, 70, Black));
    QVERIFY(InkOf(together) > InkOf(PaintClipped(Clip(PathArea(LowerRight)))) + 1000);
    const double common = InkOf(PaintClipped(Clip(TextArea("I")) + Clip(PathArea(Left))));
    const double letter = InkOf(PaintClipped(Clip(TextArea("I"))));
    QVERIFY2(qAbs(common - letter) < 0.02 * letter, "the letter lies inside the left half");
    QCOMPARE(InkOf(PaintClipped(Clip(TextArea("I")) + Clip(PathArea(LowerRight)))), 0.0);
}

void TestOfdClips::theLineOfLettersCountsWithTheAreasDrawParameter()
{
    const QByteArray params =
        FontResource + "<ofd:DrawParams><ofd:DrawParam ID=\"30\" LineWidth=\"4\"/></ofd:DrawParams>";
    const QRectF plain = InkBox(PaintClipped(Clip(TextArea("I")), {}, params));
    const QRectF lined = InkBox(PaintClipped(Clip(TextArea("I", "Stroke=\"true\"", "DrawParam=\"30\"")), {}, params));
    QVERIFY2(qAbs(lined.width() - plain.width() - 4) < 0.6, qPrintable(QString::number(lined.width())));
    const QRectF own =
        InkBox(PaintClipped(Clip(TextArea("I", "Stroke=\"true\" LineWidth=\"2\"", "DrawParam=\"30\"")), {}, params));
    QVERIFY(qAbs(own.width() - plain.width() - 2) < 0.6);
}

void TestOfdClips::aClipThatCannotBeReadCutsNothing()
{
    QCOMPARE(InkBox(PaintClipped({})), QRectF(20, 20, 60, 60));
    QCOMPARE(InkBox(PaintClipped(Clip({}))), QRectF(20, 20, 60, 60));
    QCOMPARE(InkBox(PaintClipped(Clip("<ofd:Area/>"))), QRectF(20, 20, 60, 60));
    QCOMPARE(InkBox(PaintClipped(Clip("<ofd:Area/>") + Clip(PathArea(Left)))), QRectF(20, 20, 30, 60));
}

void TestOfdClips::aClipOfNothingCutsAll()
{
    QCOMPARE(InkBox(PaintClipped(Clip(PathArea("M 5 5 L 5 5 C")))), QRectF());
}

void TestOfdClips::clipsCutTextsPicturesAndComposites()
{
    const QByteArray clips = "<ofd:Clips>" + Clip(PathArea(Left)) + "</ofd:Clips>";
    const QByteArray text = TextObject("Size=\"30\" Boundary=\"20 20 60 60\"",
                                       clips + "<ofd:TextCode X=\"0\" Y=\"40\" DeltaX=\"g 3 18\">HHHH</ofd:TextCode>");
    const QRectF ink = InkBox(PaintPage(text));
    QVERIFY(!ink.isEmpty() && ink.right() <= 50.01);
    const QByteArray unit = FontResource +
                            "<ofd:CompositeGraphicUnits><ofd:CompositeGraphicUnit ID=\"60\" Width=\"60\" "
                            "Height=\"60\"><ofd:Content>" +
                            FilledBox(QRectF(0, 0, 60, 60), Colour("0 0 0")) +
                            "</ofd:Content></ofd:CompositeGraphicUnit></ofd:CompositeGraphicUnits>";
    const QImage composite = PaintPage("<ofd:CompositeObject ID=\"1\" ResourceID=\"60\" Boundary=\"20 20 60 60\">" +
                                           clips + "</ofd:CompositeObject>",
                                       unit);
    QCOMPARE(InkBox(composite), QRectF(20, 20, 30, 60));
}

void TestOfdClips::manyAreasAreOneClip()
{
    QByteArray areas;
    for (int i = 0; i < 900; ++i) {
        const QByteArray x = QByteArray::number((i % 30) * 2), y = QByteArray::number((i / 30) * 2);
        const QByteArray right = QByteArray::number((i % 30) * 2 + 1), bottom = QByteArray::number((i / 30) * 2 + 1);
        areas += PathArea("M " + x + ' ' + y + " L " + right + ' ' + y + " L " + right + ' ' + bottom + " L " + x +
                          ' ' + bottom + " C");
    }
    const QImage image = PaintClipped(Clip(areas));
    QVERIFY(Shows(image, 20.5, 20.5, Black));
    QVERIFY(Shows(image, 21.5, 20.5, White));
    QVERIFY(Shows(image, 78.5, 78.5, Black));
    QVERIFY(Shows(image, 79.5, 78.5, White));
}

void TestOfdClips::areasThatOverlapTakeNothingFromEachOther()
{
    QByteArray areas;
    for (int i = 0; i < 100; ++i) { // every second one the other way round
        const QByteArray left = QByteArray::number(i * 0.5), right = QByteArray::number(i * 0.5 + 2);
        areas += PathArea("M " + left + " 0 L " + (i % 2 ? right + " 0 L " : left + " 60 L ") + right + " 60 L " +
                          (i % 2 ? left + " 60 C" : right + " 0 C"));
    }
    QCOMPARE(PaintClipped(Clip(areas)), PaintClipped(Clip(PathArea("M 0 0 L 51.5 0 L 51.5 60 L 0 60 C"))));
}

void TestOfdClips::lettersTakeNothingFromThePathAroundThem_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("letters");
    const QByteArray clockwise = "M 0 0 L 60 0 L 60 60 L 0 60 C", other = "M 0 0 L 0 60 L 60 60 L 60 0";
    const QByteArray few = "BI", many = QByteArray("B").repeated(40);
    QTest::newRow("few, clockwise") << clockwise << few;
    QTest::newRow("few, the other way round") << other << few;
    QTest::newRow("many, clockwise") << clockwise << many;
    QTest::newRow("many, the other way round") << other << many;
}

void TestOfdClips::lettersTakeNothingFromThePathAroundThem()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, letters);
    const QImage all = PaintClipped({});
    QCOMPARE(PaintClipped(Clip(PathArea(path) + TextArea(letters, "CTM=\"0.2 0 0 0.2 0 20\""))), all);
    QCOMPARE(PaintClipped(Clip(PathArea(path) + TextArea(letters, "CTM=\"-0.2 0 0 0.2 60 20\""))), all); // mirrored
    QVERIFY(InkOf(PaintClipped(Clip(TextArea(letters, "CTM=\"0.2 0 0 0.2 0 20\"")))) > 100);
}

void TestOfdClips::areasThatCrossVeryOftenAreLaidOverEachOther()
{
    const auto star = [](double left) {
        QPainterPath lines(QPointF(left, 0));
        for (int i = 0; i < 60; ++i)
            lines.lineTo(left + i * 37 % 50, i % 2 ? 100 : 0);
        return lines;
    };
    const QPainterPath all = ofd::UnitedAreas({star(0), star(70)});
    QVERIFY(all.elementCount() <= 2 * 61 + 2); // lying apart
    const QPainterPath crossing = ofd::UnitedAreas({star(0), star(0.37)});
    QVERIFY(crossing.elementCount() <= 2 * 61 + 2); // every piece between two crossings would be thousands
    QCOMPARE(crossing.fillRule(), Qt::WindingFill);
}

TETO_TEST_MAIN(TestOfdClips)

#include "test_clips.moc"
