#include <ofd/ofd_document.h>
#include <ofd/package/limits.h>
#include <ofd/render/painting_costs.h>
#include <ofd/render/painting_work.h>
#include <tests/ofd/document/page_painting.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cmath>

namespace {

constexpr char LimitText[] = "The page asks for more painting than is done; not all of it is shown.";

QByteArray SmallShapes(int count)
{
    QByteArray shapes;
    for (int i = 0; i < count; ++i)
        shapes += "<ofd:PathObject ID=\"1\" Boundary=\"" + QByteArray::number(i % 50) + ' ' +
                  QByteArray::number(i / 50 % 90) +
                  " 2 2\" Fill=\"true\"><ofd:FillColor Value=\"0 0 255\"/><ofd:AbbreviatedData>M 0 0 L 2 0 L 2 2 L 0 2 "
                  "C</ofd:AbbreviatedData></ofd:PathObject>";
    return shapes;
}

// Lines that cross the page again and again.
QByteArray Star(int lines)
{
    QByteArray data = "M 0 0";
    for (int i = 0; i < lines; ++i)
        data += " L " + QByteArray::number(i * 37 % 50) + (i % 2 ? " 100" : " 0");
    return "<ofd:PathObject ID=\"1\" Boundary=\"0 0 50 100\" Fill=\"true\" Stroke=\"false\"><ofd:FillColor Value=\"0 "
           "255 "
           "0\"/><ofd:AbbreviatedData>" +
           data + "</ofd:AbbreviatedData></ofd:PathObject>";
}

// A document of one page, which is painted as often as a test asks.
class OpenPage
{
public:
    explicit OpenPage(const QByteArray& objects)
    {
        OfdFile file = OfdFile::WithPages(1);
        file.Set(QStringLiteral("Doc_0/Pages/Page_0/Content.xml"), PageXml(objects));
        document = ofd::OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("work.ofd")))).document;
        if (!document)
            qFatal("the document does not open");
    }

    QImage Paint(double pixelsPerMm, const QRect& region = QRect())
    {
        G_RenderRequest request;
        request.pixelsPerMm = pixelsPerMm;
        request.region = region;
        return document->Renderer()->RenderPage(request).image;
    }

    bool IsCut() const
    {
        const std::vector<ofd::Problem> problems = document->GetProblems();
        return std::any_of(problems.begin(), problems.end(), [](const ofd::Problem& problem) {
            return problem.kind == ofd::ProblemKind::Limit && problem.text == QLatin1String(LimitText);
        });
    }

private:
    QTemporaryDir folder;
    std::shared_ptr<ofd::OfdDocument> document;
};

constexpr QSizeF Sheet(210, 297);

// Where a whole sheet is painted, in standard pixels; outlines for it are in millimetres.
ofd::WorkGround SheetGround(const ofd::PaintingWork& work)
{
    ofd::WorkGround ground;
    ground.toStandard = QTransform::fromScale(work.GetPixelsPerMm(), work.GetPixelsPerMm());
    ground.reach = work.GetPageRect();
    return ground;
}

// Lines from edge to edge, in an order that goes to and fro across the sheet or a narrow part of it.
QPainterPath StarOutline(int lines, double width)
{
    QPainterPath star(QPointF(0, 0));
    for (int i = 0; i < lines; ++i)
        star.lineTo(std::fmod(i * 37, width), i % 2 ? Sheet.height() : 0);
    return star;
}

QPainterPath ThinWedges(int count)
{
    QPainterPath wedges;
    for (int i = 0; i < count; ++i) {
        const double x = i * (Sheet.width() - 1) / count;
        wedges.moveTo(x, 0);
        wedges.lineTo(x + 0.1, Sheet.height());
        wedges.lineTo(x + 0.2, Sheet.height());
        wedges.closeSubpath();
    }
    return wedges;
}

// How often a page of a small file may ask for so much.
int TimesTaken(ofd::PaintingWork& work, double cost)
{
    int times = 0;
    while (times < 10'000 && work.Take(cost))
        ++times;
    return times;
}

} // namespace

// How much one page may ask of the painter.
class TestPaintingWork : public QObject
{
    Q_OBJECT

private slots:
    void aPageOfVeryManySmallShapesIsPaintedWhole();
    void crossingLinesWithoutEndAreCutAndTold();
    void everyZoomAndEveryTileStopAtTheSameObject();
    void oneEnormousObjectIsLeftOutAloneAndTheRestIsPainted();
    void wedgesFromEdgeToEdgeCountForWhatTheyTake();
    void clipsOfCrossingLinesCountForWhatTheyTake();
    void outlinesOfManyLongEdgesAreDenseAndThoseOfFewOrShortOnesAreNot();
    void aDenseGridOfThinLinesIsFarBelowWhatAPageMayAsk();
};

void TestPaintingWork::aPageOfVeryManySmallShapesIsPaintedWhole()
{
    OpenPage page(SmallShapes(60'000) + FilledSquare(70, 70, "Value=\"255 0 0\""));
    QCOMPARE(ColourAt(page.Paint(PixelsPerMm), 80, 80), QColor(Qt::red));
    QVERIFY(!page.IsCut());
}

void TestPaintingWork::crossingLinesWithoutEndAreCutAndTold()
{
    const QByteArray square = FilledSquare(70, 70, "Value=\"255 0 0\"");
    OpenPage page(square + Star(20'000).repeated(20) + FilledSquare(70, 40, "Value=\"255 0 0\""));
    const QImage image = page.Paint(PixelsPerMm);
    QCOMPARE(ColourAt(image, 80, 80), QColor(Qt::red));
    QCOMPARE(ColourAt(image, 80, 50), QColor(Qt::white)); // it comes behind too much
    QVERIFY(page.IsCut());
}

void TestPaintingWork::everyZoomAndEveryTileStopAtTheSameObject()
{
    // Each group of lines is followed by a mark in its own place.
    QByteArray objects;
    for (int i = 0; i < 100; ++i)
        objects +=
            Star(1500) +
            FilledSquare(0, 0, "Value=\"255 0 0\"").replace("0 0 20 20", "60 " + QByteArray::number(i) + " 10 1");
    OpenPage page(objects);
    const auto marksIn = [](const QImage& image, double pixelsPerMm, int left) {
        int marks = 0;
        while (marks < 100 &&
               QColor(image.pixel(int(65 * pixelsPerMm) - left, int((marks + 0.5) * pixelsPerMm))) == QColor(Qt::red))
            ++marks;
        return marks;
    };
    const int marks = marksIn(page.Paint(2), 2, 0);
    QVERIFY2(marks > 2 && marks < 100, qPrintable(QString::number(marks)));
    QCOMPARE(marksIn(page.Paint(4), 4, 0), marks);
    QCOMPARE(marksIn(page.Paint(4, QRect(220, 0, 80, 400)), 4, 220), marks);
}

void TestPaintingWork::oneEnormousObjectIsLeftOutAloneAndTheRestIsPainted()
{
    OpenPage page(Star(400'000) + FilledSquare(70, 70, "Value=\"255 0 0\""));
    const QImage image = page.Paint(PixelsPerMm);
    QCOMPARE(ColourAt(image, 80, 80), QColor(Qt::red));
    QCOMPARE(ColourAt(image, 25, 50), QColor(Qt::white));
    QVERIFY(page.IsCut());
}

// Two hundred wedges take a twentieth of a second.
void TestPaintingWork::wedgesFromEdgeToEdgeCountForWhatTheyTake()
{
    ofd::PaintingWork work(Sheet, 8000);
    const ofd::ShapeCost cost = ofd::FillCost(ThinWedges(200), QTransform(), SheetGround(work), ofd::OpaquePixel);
    QVERIFY(cost.isDense);
    const int times = TimesTaken(work, cost.units);
    QVERIFY2(times >= 20 && times <= 100, qPrintable(QString::number(times)));
}

// A clip of a hundred lines across the sheet takes most of a second, one of ten a hundredth.
void TestPaintingWork::clipsOfCrossingLinesCountForWhatTheyTake()
{
    const auto clipped = [](int lines) {
        ofd::PaintingWork work(Sheet, 20'000);
        const ofd::WorkGround ground = SheetGround(work);
        return TimesTaken(work, [&] {
            ofd::WorkGround inside = ground;
            return ofd::ClipCost(StarOutline(lines, Sheet.width()), QTransform(), inside);
        }());
    };
    QCOMPARE(clipped(200), 0);
    QCOMPARE(clipped(100), 1);
    const int often = clipped(10);
    QVERIFY2(often >= 50 && often <= 250, qPrintable(QString::number(often)));
}

void TestPaintingWork::outlinesOfManyLongEdgesAreDenseAndThoseOfFewOrShortOnesAreNot()
{
    const ofd::PaintingWork work(Sheet, 8000);
    const auto isDense = [ground = SheetGround(work)](const QPainterPath& outline) {
        return ofd::FillCost(outline, QTransform(), ground, ofd::OpaquePixel).isDense;
    };
    QVERIFY(isDense(StarOutline(200, Sheet.width())));
    QVERIFY(!isDense(StarOutline(5, Sheet.width())));
    QPainterPath letters;
    for (int i = 0; i < 50; ++i)
        letters.addRect(i * 4, 10 + i % 3, 2, 3);
    QVERIFY(!isDense(letters));
}

void TestPaintingWork::aDenseGridOfThinLinesIsFarBelowWhatAPageMayAsk()
{
    const ofd::PaintingWork work(Sheet, 8000);
    QPainterPath grid;
    for (int mm = 0; mm < 297; ++mm) {
        grid.moveTo(0, mm);
        grid.lineTo(Sheet.width(), mm);
        grid.moveTo(std::min(mm, 210), 0);
        grid.lineTo(std::min(mm, 210), Sheet.height());
    }
    QVERIFY(ofd::StrokeCost(grid, {0.1, 0, true}, QTransform(), SheetGround(work), ofd::OpaquePixel).units <
            ofd::limits::PageWork / 50);
}

TETO_TEST_MAIN(TestPaintingWork)

#include "test_painting_work.moc"
