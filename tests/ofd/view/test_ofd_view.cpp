// Files in a real view: it shows what the renderer paints for anyone else, in any pieces, within the budgets.
#include <tests/ofd/document/page_painting.h>
#include <tests/ofd/document/sample_files.h>
#include <tests/support/screens.h>
#include <tests/support/scripted_context.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <frame/view/doc_view.h>
#include <frame/view/picture_budget.h>
#include <ofd/model/document_store.h>
#include <ofd/ofd_document.h>
#include <ofd/render/image_decoder.h>
#include <ofd/render/page_renderer.h>

#include <QBuffer>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <new>

namespace {

// A file in a shown view.
struct OpenView
{
    explicit OpenView(const QString& path, const QSize& size = QSize(900, 700))
        : opened(ofd::OfdDocument::Open(path))
    {
        if (!opened)
            qFatal("%s", qPrintable(opened.error));
        view = std::make_unique<G_DocView>(&context, opened.document.get());
        view->Widget()->resize(size);
        view->Widget()->show();
        context.SetCurrentDocView(view.get());
        ViewFixture::Settle();
    }
    QImage Picture()
    {
        view->FinishRendering();
        ViewFixture::Settle();
        return Screens::Grab(view->Widget(), Ratio());
    }
    double Ratio() const { return view->Widget()->devicePixelRatioF(); }
    double PixelsPerMm() const { return view->PageDisplayMatrix(0).a * Ratio(); }
    ofd::DocumentStore& Store() const
    {
        return dynamic_cast<ofd::OfdPageRenderer*>(opened.document->Renderer())->GetStore();
    }

    ofd::OpenResult opened;
    ScriptedContext context;
    std::unique_ptr<G_DocView> view;
};

bool AreClose(QRgb a, QRgb b)
{
    constexpr int most = 3; // rounding of a picture's edge pixels differs with the tile that they are in
    return qAbs(qRed(a) - qRed(b)) <= most && qAbs(qGreen(a) - qGreen(b)) <= most && qAbs(qBlue(a) - qBlue(b)) <= most;
}

// A page that takes long: lines across all of it, one upon the other.
QByteArray HeavyPage()
{
    QByteArray objects;
    for (int i = 0; i < 30'000; ++i) {
        objects += "<ofd:PathObject ID=\"" + QByteArray::number(100 + i) +
                   "\" Boundary=\"0 0 100 100\" LineWidth=\"20\" Alpha=\"100\">"
                   "<ofd:StrokeColor Value=\"200 10 10\"/>"
                   "<ofd:AbbreviatedData>M 0 " +
                   QByteArray::number(i % 100) + " B 30 0 60 100 100 " + QByteArray::number(i * 7 % 100) +
                   "</ofd:AbbreviatedData></ofd:PathObject>";
    }
    return objects;
}

// A file of that page. A large file may ask for more painting than a small one: noise that nothing packs makes it
// large, so that all of the page is painted.
QString HeavyFile(const QTemporaryDir& folder)
{
    QVector<quint32> noise(2'000'000);
    QRandomGenerator random(20261121);
    random.fillRange(noise.data(), noise.size());
    const QByteArray bytes(reinterpret_cast<const char*>(noise.constData()), noise.size() * int(sizeof(quint32)));
    const QString path = folder.filePath(QStringLiteral("heavy.ofd"));
    return OfdFile::WithPage(HeavyPage()).Set(QStringLiteral("Doc_0/Noise.bin"), bytes).Write(path);
}

class TestOfdView : public QObject
{
    Q_OBJECT

private slots:
    void theViewShowsWhatTheRendererPaints_data();
    void theViewShowsWhatTheRendererPaints();
    void tilesOfAPageAreTheWholePageInPieces_data();
    void tilesOfAPageAreTheWholePageInPieces();
    void aLongPaintingTellsWhatIsThereAndCanBeGivenUp();
    void aPageForWhichMemoryRunsOutIsAnEmptySheetThatTells();
    void aHeavyPageShowsItsFirstObjectsInTheView();
    void scrollingAThousandPagesStaysWithinAllBudgets();
    void picturesThatArePaintedSmallAreDecodedSmall();
    void sizesOfALongFileComeByThemselves();
    void aPageThatFailsShowsWhyAndTheOthersGoOn();
};

void TestOfdView::theViewShowsWhatTheRendererPaints_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<float>("zoom");
    const ofd::OpenResult tour = ofd::OfdDocument::Open(SamplePath(QStringLiteral("tour")));
    QVERIFY(tour);
    for (int page = 0; page < tour.document->GetPageCount(); ++page) {
        for (const float zoom : {70.0F, 240.0F})
            QTest::addRow("page %d at %d percent", page + 1, int(zoom)) << page << zoom;
    }
}

void TestOfdView::theViewShowsWhatTheRendererPaints()
{
    QFETCH(int, page);
    QFETCH(float, zoom);
    OpenView file(SamplePath(QStringLiteral("tour")));
    file.view->SetZoom(zoom, false);
    file.view->GoToPage(file.view.get(), page, CCA_GRect(10, 30, 10, 30), false);
    const QImage shown = file.Picture();
    G_RenderRequest request;
    request.pageIndex = page;
    request.pixelsPerMm = file.PixelsPerMm();
    const QImage painted = file.opened.document->Renderer()->RenderPage(request).image;
    const QRect seen = file.view->VisibleSceneRect();
    const QRect place = file.view->PageRect(page);
    const QRect part = (seen & place).adjusted(2, 2, -2, -2); // within the paper's edge
    const int ratio = int(file.Ratio());
    int wrong = 0;
    for (int y = part.top() * ratio; y < (part.bottom() + 1) * ratio; ++y) {
        for (int x = part.left() * ratio; x < (part.right() + 1) * ratio; ++x) {
            const QPoint onPage = QPoint(x, y) - place.topLeft() * ratio;
            const QPoint onScreen = QPoint(x, y) - seen.topLeft() * ratio;
            wrong += AreClose(painted.pixel(onPage), shown.pixel(onScreen)) ? 0 : 1;
        }
    }
    QVERIFY(part.width() > 100 && part.height() > 100);
    QCOMPARE(wrong, 0);
}

void TestOfdView::tilesOfAPageAreTheWholePageInPieces_data()
{
    QTest::addColumn<int>("page");
    const ofd::OpenResult tour = ofd::OfdDocument::Open(SamplePath(QStringLiteral("tour")));
    QVERIFY(tour);
    for (int page = 0; page < tour.document->GetPageCount(); ++page)
        QTest::addRow("page %d", page + 1) << page;
}

void TestOfdView::tilesOfAPageAreTheWholePageInPieces()
{
    QFETCH(int, page);
    const ofd::OpenResult tour = ofd::OfdDocument::Open(SamplePath(QStringLiteral("tour")));
    G_RenderRequest request;
    request.pageIndex = page;
    request.pixelsPerMm = 5;
    const QImage whole = tour.document->Renderer()->RenderPage(request).image;
    constexpr int tile = 317;
    int wrong = 0;
    for (int y = 0; y < whole.height(); y += tile) {
        for (int x = 0; x < whole.width(); x += tile) {
            request.region = QRect(x, y, tile, tile) & whole.rect();
            const QImage piece = tour.document->Renderer()->RenderPage(request).image;
            QCOMPARE(piece.size(), request.region.size());
            for (int dy = 0; dy < piece.height(); ++dy) {
                for (int dx = 0; dx < piece.width(); ++dx)
                    wrong += AreClose(piece.pixel(dx, dy), whole.pixel(x + dx, y + dy)) ? 0 : 1;
            }
        }
    }
    QCOMPARE(wrong, 0);
}

void TestOfdView::aLongPaintingTellsWhatIsThereAndCanBeGivenUp()
{
    const QTemporaryDir folder;
    const QString path = HeavyFile(folder);
    const ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    QVERIFY(opened);
    G_RenderRequest request;
    request.pixelsPerMm = 20;
    request.cancelled = std::make_shared<std::atomic<bool>>(false);
    int told = 0;
    QImage soFar;
    request.partial = [&](const QImage& image) {
        ++told;
        soFar = image.copy();
        *request.cancelled = true;
    };
    const G_RenderResult result = opened.document->Renderer()->RenderPage(request);
    QVERIFY(result.image.isNull()); // it was given up between two objects
    QCOMPARE(told, 1);
    QCOMPARE(soFar.size(), QSize(2000, 2000));
    QVERIFY(qRed(soFar.pixel(1000, 1000)) > qGreen(soFar.pixel(1000, 1000)) + 50);
}

void TestOfdView::aPageForWhichMemoryRunsOutIsAnEmptySheetThatTells()
{
    const QTemporaryDir folder;
    const QString path = HeavyFile(folder);
    const ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    QVERIFY(opened);
    G_RenderRequest request;
    request.pixelsPerMm = 20;
    request.region = QRect(500, 500, 1000, 800);
    request.partial = [](const QImage&) { throw std::bad_alloc(); }; // in the middle of the painting
    const G_RenderResult result = opened.document->Renderer()->RenderPage(request);
    QVERIFY(!result.error.isEmpty());
    QImage empty(1000, 800, QImage::Format_RGB32);
    empty.fill(Qt::white);
    QCOMPARE(result.image, empty);
}

void TestOfdView::aHeavyPageShowsItsFirstObjectsInTheView()
{
    const QTemporaryDir folder;
    const QString path = HeavyFile(folder);
    OpenView file(path);
    file.view->SetZoom(300, false);
    QSignalSpy painted(file.view.get(), &G_DocView::FirstPagePainted);
    const QPoint middle(400, 300);
    const auto colour = [&] { return Screens::Grab(file.view->Widget()).pixelColor(middle); };
    QCOMPARE(colour(), QColor(Qt::white));
    QTRY_VERIFY_WITH_TIMEOUT(colour().red() > colour().green() + 50, 60'000);
    QCOMPARE(painted.count(), 0);
    file.view.reset(); // gives the painting up, and waits for no more than the object under way
}

void TestOfdView::scrollingAThousandPagesStaysWithinAllBudgets()
{
    PictureBudget::SetLimit(0); // it is raised to what the window needs
    PictureBudget::ResetPeak();
    OpenView file(SamplePath(QStringLiteral("report")), QSize(600, 500));
    G_DocView* view = file.view.get();
    view->SetZoom(60, false);
    const int last = file.opened.document->GetPageCount() - 1;
    QCOMPARE(last, 999);
    qint64 mostRead = 0;
    int visited = 0;
    while (view->CurrentPageIndex() < last) {
        const int before = view->VisibleSceneRect().top();
        view->ScrollBy(0, 600);
        QVERIFY(view->VisibleSceneRect().top() > before);
        QCoreApplication::processEvents();
        if (++visited % 8 == 0)
            view->FinishRendering();
        const ofd::KeptBytes kept = file.Store().GetKeptBytes();
        mostRead = std::max(mostRead, kept.Sum());
        QVERIFY(kept.Sum() <= kept.limit);
        QVERIFY(PictureBudget::PeakBytes() <= PictureBudget::Limit());
    }
    const QImage end = file.Picture();
    QVERIFY(Screens::ColourCount(end) > 10); // the last page has its text
    QVERIFY(PictureBudget::PeakBytes() <= PictureBudget::Limit());
    QVERIFY(mostRead > 1024 * 1024);
    PictureBudget::SetLimit(192LL * 1024 * 1024);
}

void TestOfdView::picturesThatArePaintedSmallAreDecodedSmall()
{
    QImage large(801, 603, QImage::Format_RGB32);
    large.fill(QColor(200, 40, 40));
    QPainter(&large).fillRect(0, 0, 400, 603, QColor(30, 60, 190));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(large.save(&buffer, "jpg", 95));
    QCOMPARE(ofd::ShrinkableSize(bytes), QSize(801, 603));
    QCOMPARE(ofd::EighthsFor(QSize(801, 603), QSizeF(500, 300)), 8); // half of it would not do
    QCOMPARE(ofd::EighthsFor(QSize(801, 603), QSizeF(400, 300)), 4);
    QCOMPARE(ofd::EighthsFor(QSize(801, 603), QSizeF(3, 3)), 1);
    QCOMPARE(ofd::EighthsFor(QSize(), QSizeF(3, 3)), 8);
    for (const int eighths : {1, 2, 4}) {
        const QImage small = ofd::DecodeImage(bytes, {eighths, bytes.size(), {}});
        QCOMPARE(small.size(), QSize((801 * eighths + 7) / 8, (603 * eighths + 7) / 8));
        QVERIFY(AreClose(small.pixel(small.width() / 4, 20), qRgb(30, 60, 190)));
        QVERIFY(AreClose(small.pixel(small.width() * 3 / 4, small.height() - 3), qRgb(200, 40, 40)));
    }
    QVERIFY(
        !ofd::DecodeImage(bytes.left(bytes.size() * 2 / 3), {4, bytes.size(), {}}).isNull()); // what is there is shown
    QVERIFY(ofd::DecodeImage(bytes.left(20), {4, 20, {}}).isNull());
    QVERIFY(!ofd::ShrinkableSize("no picture").isValid());
}

void TestOfdView::sizesOfALongFileComeByThemselves()
{
    const QTemporaryDir folder;
    OfdFile file = OfdFile::WithPages(300);
    const QByteArray area = "<ofd:Area><ofd:PhysicalBox>0 0 50 150</ofd:PhysicalBox></ofd:Area>";
    for (int page = 10; page < 300; page += 3)
        file.Set(QStringLiteral("Doc_0/Pages/Page_%1/Content.xml").arg(page), Element("Page", area));
    OpenView open(file.Write(folder.filePath(QStringLiteral("long.ofd"))));
    const auto isAllTrue = [&] {
        for (int page = 0; page < 300; ++page) {
            const QSizeF size = open.opened.document->PageSizeMm(page) * double(open.view->PageDisplayMatrix(0).a);
            if (open.view->PageRect(page).size() != QSize(qRound(size.width()), qRound(size.height())))
                return false;
        }
        return true;
    };
    QTRY_VERIFY(isAllTrue());
    QCOMPARE(open.opened.document->PageSizeMm(9), QSizeF(100, 100));
    QCOMPARE(open.opened.document->PageSizeMm(10), QSizeF(50, 150));
}

void TestOfdView::aPageThatFailsShowsWhyAndTheOthersGoOn()
{
    const QTemporaryDir folder;
    OfdFile file = OfdFile::WithPages(3);
    file.Set(QStringLiteral("Doc_0/Pages/Page_1/Content.xml"), "this is no XML");
    file.Set(QStringLiteral("Doc_0/Pages/Page_2/Content.xml"), PageXml(FilledSquare(20, 20, "Value=\"255 0 0\"")));
    OpenView open(file.Write(folder.filePath(QStringLiteral("broken.ofd"))));
    // A sheet that is not paper, with a mark around it; the page below is painted.
    const auto colourOn = [&](int page, double xMm, double yMm) {
        open.view->GoToPage(open.view.get(), page, CCA_GRect(), false);
        const QImage image = open.Picture();
        const CCA_Point at = open.view->ScenePointFromDocPoint({float(xMm), float(yMm)}, page);
        const QPoint inView = QPoint(at.x, at.y) - open.view->VisibleSceneRect().topLeft();
        return image.pixelColor(inView * int(open.Ratio()));
    };
    const QColor failed = colourOn(1, 5, 20);
    QVERIFY(failed.red() > failed.green() + 5);
    QVERIFY(failed.green() > 200);
    QCOMPARE(colourOn(2, 30, 30), QColor(Qt::red));
}

} // namespace

TETO_TEST_MAIN(TestOfdView)
#include "test_ofd_view.moc"
