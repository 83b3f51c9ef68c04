#include <ofd/render/coverage.h>
#include <tests/support/test_main.h>

#include <QPainter>
#include <QRandomGenerator>
#include <QtTest>

#include <cmath>

using ofd::CoverageOf;

namespace {

constexpr int Side = 200;
const QRect Sheet(0, 0, Side, Side);

// Lines to and fro, curves among them, some of it outside the sheet.
QPainterPath Scribble(quint32 seed, int lines)
{
    QRandomGenerator random(seed);
    const auto point = [&random] { return QPointF(random.bounded(300.0) - 50, random.bounded(300.0) - 50); };
    QPainterPath path(point());
    for (int i = 0; i < lines; ++i) {
        if (i % 5 == 0)
            path.quadTo(point(), point());
        else if (i % 17 == 0)
            path.moveTo(point());
        else
            path.lineTo(point());
    }
    return path;
}

// As the painter has it.
QImage PaintedCoverage(const QPainterPath& outline)
{
    QImage image(Sheet.size(), QImage::Format_Alpha8);
    image.fill(0);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline, Qt::black);
    return image;
}

int At(const QImage& coverage, int x, int y)
{
    return coverage.constScanLine(y)[x];
}

// The share of pixels, in thousandths, that differ by more than a little: where edges nearly meet they may.
double PartsThatDiffer(const QImage& a, const QImage& b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            count += std::abs(At(a, x, y) - At(b, x, y)) > 24;
    }
    return count * 1000.0 / (a.width() * a.height());
}

} // namespace

// How much of each pixel an outline covers.
class TestCoverage : public QObject
{
    Q_OBJECT

private slots:
    void outlinesCoverWhatThePainterFills_data();
    void outlinesCoverWhatThePainterFills();
    void edgesCoverTheirShareOfAPixel();
    void aBoxShowsItsPartOfTheWhole();
    void veryManyEdgesAreDonePieceByPiece();
    void sumsOfVeryManyEdgesMayWrapAround();
    void placesFarAwayDoNotOverflow();
    void nothingCoversNothing();
    void itCanBeCancelled();
};

void TestCoverage::outlinesCoverWhatThePainterFills_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<Qt::FillRule>("rule");
    QTest::newRow("few, winding") << 6 << Qt::WindingFill;
    QTest::newRow("few, odd and even") << 6 << Qt::OddEvenFill;
    QTest::newRow("many, winding") << 60 << Qt::WindingFill;
    QTest::newRow("many, odd and even") << 60 << Qt::OddEvenFill;
}

void TestCoverage::outlinesCoverWhatThePainterFills()
{
    QFETCH(int, lines);
    QFETCH(Qt::FillRule, rule);
    for (quint32 seed = 1; seed < 20; ++seed) {
        QPainterPath outline = Scribble(seed, lines);
        outline.setFillRule(rule);
        const double differing = PartsThatDiffer(CoverageOf(outline, Sheet), PaintedCoverage(outline));
        QVERIFY2(differing < 2 + lines / 6.0, qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(differing)));
    }
}

void TestCoverage::edgesCoverTheirShareOfAPixel()
{
    QPainterPath box;
    box.addRect(10.5, 20.25, 5, 5);
    const QImage coverage = CoverageOf(box, Sheet);
    QCOMPARE(At(coverage, 12, 22), 255);
    QCOMPARE(At(coverage, 9, 22), 0);
    QVERIFY(std::abs(At(coverage, 10, 22) - 128) <= 1);
    QVERIFY(std::abs(At(coverage, 12, 20) - 191) <= 1);
    QVERIFY(std::abs(At(coverage, 15, 25) - 32) <= 1);
}

void TestCoverage::aBoxShowsItsPartOfTheWhole()
{
    const QPainterPath outline = Scribble(3, 80);
    const QImage whole = CoverageOf(outline, Sheet);
    const auto isSame = [&whole](const QImage& part, const QPoint& topLeft) {
        for (int y = 0; y < part.height(); ++y) {
            for (int x = 0; x < part.width(); ++x) {
                const QPoint at = topLeft + QPoint(x, y);
                // Edges that are cut at the sides of a box may round otherwise.
                if (Sheet.contains(at) && std::abs(At(part, x, y) - At(whole, at.x(), at.y())) > 2)
                    return false;
            }
        }
        return true;
    };
    for (const QRect& box : {QRect(0, 0, 50, 200), QRect(63, 71, 40, 1), QRect(199, 0, 1, 200), QRect(20, 150, 90, 50),
                             QRect(-30, -30, 230, 230)})
        QVERIFY(isSame(CoverageOf(outline, box), box.topLeft()));
}

// More pixels that edges cross than are kept at once.
void TestCoverage::veryManyEdgesAreDonePieceByPiece()
{
    QPainterPath boxes;
    boxes.setFillRule(Qt::WindingFill);
    for (int i = 0; i < 8'000; ++i)
        boxes.addRect(20.5, 10, 150, 150);
    const QImage coverage = CoverageOf(boxes, Sheet);
    for (int y = 0; y < Side; ++y) {
        const bool isWithin = y >= 10 && y < 160;
        for (int x = 0; x < Side; ++x) {
            const int expected = isWithin && x > 20 && x < 170 ? 255 : 0;
            if (!isWithin || (x != 20 && x != 170)) // those are covered by half, eight thousand times
                QCOMPARE(At(coverage, x, y), expected);
        }
    }
}

// Of files made for it: what they show does not matter, that nothing else happens does.
void TestCoverage::sumsOfVeryManyEdgesMayWrapAround()
{
    QPainterPath boxes;
    boxes.setFillRule(Qt::WindingFill);
    for (int i = 0; i < 40'000; ++i)
        boxes.addRect(20.945, 10, 20, 4);
    const QImage coverage = CoverageOf(boxes, Sheet);
    QCOMPARE(At(coverage, 100, 100), 0);
    QCOMPARE(At(coverage, 30, 30), 0);
}

void TestCoverage::placesFarAwayDoNotOverflow()
{
    QPainterPath band;
    band.addRect(-1e9, 50, 2e9, 10);
    band.addRect(30, -1e7, 5, 2e7);
    band.setFillRule(Qt::WindingFill);
    const QImage coverage = CoverageOf(band, Sheet);
    QCOMPARE(At(coverage, 0, 55), 255);
    QCOMPARE(At(coverage, 199, 55), 255);
    QCOMPARE(At(coverage, 32, 0), 255);
    QCOMPARE(At(coverage, 32, 199), 255);
    QCOMPARE(At(coverage, 100, 100), 0);
}

void TestCoverage::nothingCoversNothing()
{
    QImage empty(Sheet.size(), QImage::Format_Alpha8);
    empty.fill(0);
    QCOMPARE(CoverageOf(QPainterPath(), Sheet), empty);
    QPainterPath outside;
    outside.addRect(300, 300, 20, 20);
    QCOMPARE(CoverageOf(outside, Sheet), empty);
    QVERIFY(CoverageOf(outside, QRect()).isNull());
}

void TestCoverage::itCanBeCancelled()
{
    QVERIFY(CoverageOf(Scribble(1, 10), Sheet, [] { return true; }).isNull());
}

TETO_TEST_MAIN(TestCoverage)
#include "test_coverage.moc"
