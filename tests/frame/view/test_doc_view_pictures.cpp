// Tiles, what lies under them, what is made ahead, and the budget that all pictures share.
#include "painted_document.h"

#include <tests/support/test_main.h>

#include <frame/view/picture_budget.h>

#include <QtTest>

namespace {

constexpr qint64 ordinaryLimit = 192LL * 1024 * 1024;

// Sets the limit for one test.
class LimitScope
{
public:
    explicit LimitScope(qint64 bytes)
    {
        PictureBudget::SetLimit(bytes);
        PictureBudget::ResetPeak();
    }
    ~LimitScope() { PictureBudget::SetLimit(ordinaryLimit); }
    LimitScope(const LimitScope&) = delete;
    LimitScope& operator=(const LimitScope&) = delete;
};

double Ratio(const Painted& painted)
{
    return painted.view->Widget()->devicePixelRatioF();
}

// Waits until nothing is asked for any more, what is made ahead included.
void Rest(Painted& painted)
{
    int before = -1;
    while (painted.document.renderer.Requests().size() != before || painted.document.renderer.running > 0) {
        before = painted.document.renderer.Requests().size();
        QTest::qWait(30);
    }
}

class TestDocViewPictures : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { PictureBudget::SetLimit(ordinaryLimit); }
    void tilesMeetWithoutSeamOrShift_data();
    void tilesMeetWithoutSeamOrShift();
    void noTileIsLargerThanAThousandAndTwentyFourPixels();
    void aLongThinPageIsCutIntoTilesToo();
    void aSmallScrollAtHighZoomPaintsNothingThatIsThere();
    void tilesAroundTheViewAreThereBeforeTheyAreSeen();
    void theNextPageIsThereBeforeItIsSeen();
    void scrollingBackMakesThePageBeforeReady();
    void whatComesIntoViewGoesBeforeWhatIsMadeAhead();
    void underTilesToComeLiesACoarsePicture();
    void zoomingOnKeepsTheOldTilesUntilTheNewOnesAreThere();
    void zoomingOnShowsTheOldTilesOverTheCoarsePicture();
    void whatIsPaintedSoFarIsShown();
    void aPartOfAPageHidesNoOlderPictureOfAllOfIt();
    void partsOfATurnedPageAreTurned();
    void scrollingAThousandPagesStaysWithinTheBudget();
    void scrollingThroughTilesStaysWithinTheBudget();
    void theBudgetHoldsOverAllViews();
    void aLimitBelowTheNeedsOfTheWindowIsRaised();
    void aPageThatFoundNoRoomComesWhenTheWorkThatWasGivenUpEnds();
    void aViewThatIsHiddenAsksForNothing();
    void aDyingViewGivesItsShareBack();
};

void TestDocViewPictures::tilesMeetWithoutSeamOrShift_data()
{
    QTest::addColumn<float>("zoom");
    for (const float zoom : {60.0F, 210.0F, 333.0F, 1200.0F})
        QTest::addRow("%d percent", int(zoom)) << zoom;
}

void TestDocViewPictures::tilesMeetWithoutSeamOrShift()
{
    QFETCH(float, zoom);
    Painted painted(3);
    painted.document.renderer.paintsPlaces = true;
    painted.view->Widget()->resize(1400, 1300); // more than one tile across
    G_DocView* view = painted.view.get();
    view->SetZoom(zoom, false);
    view->GoToPage(view, 0, CCA_GRect(60, 70, 60, 70), false);
    painted.Picture();
    const int ratio = int(Ratio(painted));
    const QImage image = Screens::Grab(view->Widget(), ratio);
    const QRect seen = view->VisibleSceneRect();
    const QRect onPage = (seen & view->PageRect(0)).adjusted(1, 1, -1, -1).translated(-view->PageRect(0).topLeft());
    const QPoint toWidget = view->PageRect(0).topLeft() - seen.topLeft();
    QVERIFY(onPage.width() > 300 && onPage.height() > 300);
    for (int y = onPage.top(); y <= onPage.bottom(); ++y) {
        for (int x = onPage.left(); x <= onPage.right(); ++x) {
            const QColor seenThere = image.pixelColor((QPoint(x, y) + toWidget) * ratio);
            if (seenThere != RecordingRenderer::ColourOf(x * ratio, y * ratio))
                QFAIL(qPrintable(QStringLiteral("wrong at %1, %2 of the page").arg(x).arg(y)));
        }
    }
}

void TestDocViewPictures::noTileIsLargerThanAThousandAndTwentyFourPixels()
{
    Painted painted(1);
    painted.view->SetZoom(1500, false);
    painted.Picture();
    painted.document.renderer.Forget();
    painted.view->GoToPage(painted.view.get(), 0, CCA_GRect(100, 100, 100, 100), false);
    painted.Picture();
    QVERIFY(!painted.document.renderer.Requests().isEmpty());
    for (const G_RenderRequest& request : painted.document.renderer.Requests()) {
        QVERIFY(request.region.width() <= 1024);
        QVERIFY(request.region.height() <= 1024);
    }
}

void TestDocViewPictures::aLongThinPageIsCutIntoTilesToo()
{
    Painted painted(0);
    painted.document.AddPage(10000, 5);
    painted.view = std::make_unique<G_DocView>(&painted.context, &painted.document);
    painted.view->Widget()->resize(600, 400);
    painted.view->Widget()->show();
    for (const double zoom : {100, 400}) {
        painted.view->SetZoom(zoom, false);
        painted.view->GoToPage(painted.view.get(), 0, CCA_GRect(9000, 1, 9000, 1), false);
        painted.document.renderer.Forget();
        const QImage picture = painted.Picture();
        QVERIFY(!painted.document.renderer.Requests().isEmpty());
        for (const G_RenderRequest& request : painted.document.renderer.Requests())
            QVERIFY(request.region.width() <= 8192); // a painter reaches no more than 32767
        int painting = 0;
        for (int y = 0; y < picture.height(); ++y)
            painting += picture.pixelColor(picture.width() / 4, y) == painted.document.renderer.colour;
        QVERIFY(painting > 10);
    }
}

void TestDocViewPictures::aSmallScrollAtHighZoomPaintsNothingThatIsThere()
{
    Painted painted(1);
    painted.view->SetZoom(1500, false);
    painted.view->GoToPage(painted.view.get(), 0, CCA_GRect(100, 100, 100, 100), false);
    Rest(painted);
    QList<QRect> regions;
    for (int step = 0; step < 40; ++step) {
        painted.view->ScrollBy(7, 31);
        Rest(painted);
    }
    for (const G_RenderRequest& request : painted.document.renderer.Requests()) {
        QVERIFY(!regions.contains(request.region)); // each is painted once
        regions.append(request.region);
    }
    QVERIFY(regions.size() > 2);
}

void TestDocViewPictures::tilesAroundTheViewAreThereBeforeTheyAreSeen()
{
    Painted painted(1);
    painted.view->SetZoom(1500, false);
    painted.view->GoToPage(painted.view.get(), 0, CCA_GRect(100, 100, 100, 100), false);
    Rest(painted);
    painted.document.renderer.Block(true); // from here on nothing new comes
    painted.view->ScrollBy(0, int(400 / Ratio(painted)));
    ViewFixture::Settle();
    const QImage image = Screens::Grab(painted.view->Widget());
    QCOMPARE(image.pixelColor(300, 5), painted.document.renderer.colour);
    QCOMPARE(image.pixelColor(300, 370), painted.document.renderer.colour);
    painted.document.renderer.Block(false);
}

void TestDocViewPictures::theNextPageIsThereBeforeItIsSeen()
{
    Painted painted(5);
    Rest(painted);
    painted.document.renderer.Block(true);
    painted.view->GoToPage(painted.view.get(), 1, CCA_GRect(), false);
    ViewFixture::Settle();
    QCOMPARE(Screens::Grab(painted.view->Widget()).pixelColor(300, 200), painted.document.renderer.colour);
    painted.document.renderer.Block(false);
}

void TestDocViewPictures::scrollingBackMakesThePageBeforeReady()
{
    Painted painted(50);
    painted.view->GoToPage(painted.view.get(), 30, CCA_GRect(0, 100, 0, 100), false);
    painted.view->ScrollBy(0, -20);
    Rest(painted);
    QVERIFY(painted.document.renderer.Pages().contains(29));
}

void TestDocViewPictures::whatComesIntoViewGoesBeforeWhatIsMadeAhead()
{
    Painted painted(50);
    Rest(painted);
    painted.document.renderer.Block(true);
    painted.view->GoToPage(painted.view.get(), 10, CCA_GRect(0, 20, 0, 20), false);
    QTRY_VERIFY(painted.document.renderer.Pages().contains(10));
    QTest::qWait(50);
    QVERIFY(!painted.document.renderer.Pages().contains(11)); // while 10 is not done, it has all threads
    painted.document.renderer.Block(false);
    QTRY_VERIFY(painted.document.renderer.Pages().contains(11));
    Rest(painted);
}

void TestDocViewPictures::underTilesToComeLiesACoarsePicture()
{
    Painted painted(1);
    painted.view->SetZoom(1500, false);
    painted.view->GoToPage(painted.view.get(), 0, CCA_GRect(20, 20, 20, 20), false);
    painted.Picture();
    Rest(painted);
    painted.document.renderer.Block(true);
    painted.view->GoToPage(painted.view.get(), 0, CCA_GRect(150, 200, 150, 200), false); // far from any tile there is
    ViewFixture::Settle();
    QCOMPARE(Screens::Grab(painted.view->Widget()).pixelColor(300, 200), painted.document.renderer.colour);
    painted.document.renderer.Block(false);
}

void TestDocViewPictures::zoomingOnKeepsTheOldTilesUntilTheNewOnesAreThere()
{
    Painted painted(1);
    painted.view->SetZoom(1500, false);
    painted.view->GoToPage(painted.view.get(), 0, CCA_GRect(100, 100, 100, 100), false);
    painted.Picture();
    painted.document.renderer.Block(true);
    painted.document.renderer.colour = QColor(200, 0, 0);
    painted.view->SetZoom(1600, true);
    ViewFixture::Settle();
    QCOMPARE(Screens::Grab(painted.view->Widget()).pixelColor(300, 200), QColor(10, 120, 30));
    painted.document.renderer.Block(false);
    const QImage sharp = painted.Picture();
    QCOMPARE(sharp.pixelColor(300, 200), QColor(200, 0, 0));
    QCOMPARE(sharp.pixelColor(5, 370), QColor(200, 0, 0));
}

void TestDocViewPictures::zoomingOnShowsTheOldTilesOverTheCoarsePicture()
{
    Painted painted(1);
    painted.document.renderer.coarseColour = Qt::blue;
    painted.view->SetZoom(1500, false);
    painted.view->GoToPage(painted.view.get(), 0, CCA_GRect(100, 100, 100, 100), false);
    Rest(painted); // the coarse picture came last
    painted.document.renderer.Block(true);
    painted.view->SetZoom(1600, true);
    ViewFixture::Settle();
    QCOMPARE(Screens::Grab(painted.view->Widget()).pixelColor(300, 200), painted.document.renderer.colour);
    painted.view->GoToPage(painted.view.get(), 0, CCA_GRect(10, 250, 10, 250), false); // far from the old tiles
    ViewFixture::Settle();
    QCOMPARE(Screens::Grab(painted.view->Widget()).pixelColor(300, 200), QColor(Qt::blue));
    painted.document.renderer.Block(false);
}

void TestDocViewPictures::whatIsPaintedSoFarIsShown()
{
    Painted painted(1);
    painted.document.renderer.partial = QImage(3000, 3000, QImage::Format_RGB32);
    painted.document.renderer.partial.fill(Qt::blue);
    painted.document.renderer.Block(true);
    QSignalSpy firstPainted(painted.view.get(), &G_DocView::FirstPagePainted);
    QTRY_COMPARE(Screens::Grab(painted.view->Widget()).pixelColor(300, 200), QColor(Qt::blue));
    ViewFixture::Settle();
    QCOMPARE(firstPainted.count(), 0); // some objects are no painted page
    painted.document.renderer.Block(false);
    QCOMPARE(painted.Picture().pixelColor(300, 200), painted.document.renderer.colour);
    ViewFixture::Settle();
    QCOMPARE(firstPainted.count(), 1);
}

void TestDocViewPictures::aPartOfAPageHidesNoOlderPictureOfAllOfIt()
{
    Painted painted(1);
    painted.Picture();
    painted.document.renderer.partial = QImage(3000, 3000, QImage::Format_RGB32);
    painted.document.renderer.partial.fill(Qt::blue);
    painted.document.renderer.Block(true);
    painted.view->ClearViewCache(QString());
    QTRY_VERIFY(painted.document.renderer.running > 0);
    QTest::qWait(50);
    QCOMPARE(Screens::Grab(painted.view->Widget()).pixelColor(300, 200), painted.document.renderer.colour);
    painted.document.renderer.Block(false);
}

void TestDocViewPictures::partsOfATurnedPageAreTurned()
{
    Painted painted(1);
    painted.view->SetZoom(40, false);
    painted.view->SetRotation(90);
    QImage half(3000, 3000, QImage::Format_RGB32);
    half.fill(Qt::white);
    QPainter(&half).fillRect(0, 0, 3000, int(50 * 40 / 100.0 * 96 / 25.4 * Ratio(painted)), Qt::blue);
    painted.document.renderer.partial = half;
    painted.document.renderer.Block(true);
    painted.view->ClearViewCache(QString());
    // What is at the top of the page is at the right of the turned one.
    const QRect page = painted.view->PageRect(0);
    const QPoint atRight = QPoint(page.right() - 5, page.center().y()) - painted.view->VisibleSceneRect().topLeft();
    const QPoint atLeft = QPoint(page.left() + 5, page.center().y()) - painted.view->VisibleSceneRect().topLeft();
    QTRY_COMPARE(Screens::Grab(painted.view->Widget()).pixelColor(atRight), QColor(Qt::blue));
    QCOMPARE(Screens::Grab(painted.view->Widget()).pixelColor(atLeft), QColor(Qt::white));
    painted.document.renderer.Block(false);
}

void TestDocViewPictures::scrollingAThousandPagesStaysWithinTheBudget()
{
    const LimitScope limit(0); // it is raised to what the window needs, and no further
    Painted painted(1000);
    const int step = painted.view->PageRect(0).height() * 9 / 10;
    int painted0 = 0;
    while (painted.view->CurrentPageIndex() < 999) {
        painted.view->ScrollBy(0, step);
        QCoreApplication::processEvents();
        if (++painted0 % 10 == 0)
            painted.view->FinishRendering();
        QVERIFY(PictureBudget::PeakBytes() <= PictureBudget::Limit());
    }
    QCOMPARE(painted.Picture().pixelColor(300, 200), painted.document.renderer.colour);
    QVERIFY(PictureBudget::PeakBytes() <= PictureBudget::Limit());
    QVERIFY(PictureBudget::PeakBytes() > PictureBudget::Limit() / 2); // it was used, too
}

void TestDocViewPictures::scrollingThroughTilesStaysWithinTheBudget()
{
    const LimitScope limit(0);
    Painted painted(3);
    painted.view->SetZoom(800, false);
    painted.view->GoToPage(painted.view.get(), 0, CCA_GRect(50, 0, 50, 1), false);
    for (int i = 0; i < 60; ++i) {
        painted.view->ScrollBy(i % 3 * 100, 200);
        QCOMPARE(painted.Picture().pixelColor(300, 200), painted.document.renderer.colour);
        QVERIFY(PictureBudget::PeakBytes() <= PictureBudget::Limit());
    }
}

void TestDocViewPictures::theBudgetHoldsOverAllViews()
{
    const LimitScope limit(0); // it is raised to what the window needs, and no further
    std::vector<std::unique_ptr<Painted>> views;
    for (int i = 0; i < 6; ++i) {
        views.push_back(std::make_unique<Painted>(20));
        for (int page = 0; page < 20; page += 2) {
            views.back()->view->GoToPage(views.back()->view.get(), page, CCA_GRect(), false);
            views.back()->Picture();
        }
        QVERIFY(PictureBudget::PeakBytes() <= PictureBudget::Limit());
        views.back()->view->Widget()->hide();
    }
    views.front()->view->Widget()->show(); // what it had to give up is made anew
    QCOMPARE(views.front()->Picture().pixelColor(300, 200), views.front()->document.renderer.colour);
    QVERIFY(PictureBudget::PeakBytes() <= PictureBudget::Limit());
}

void TestDocViewPictures::aLimitBelowTheNeedsOfTheWindowIsRaised()
{
    Painted painted(3);
    const LimitScope limit(0);
    painted.view->GoToPage(painted.view.get(), 2, CCA_GRect(), false);
    QCOMPARE(painted.Picture().pixelColor(300, 200), painted.document.renderer.colour);
    QVERIFY(PictureBudget::Limit() > 0);
    QVERIFY(PictureBudget::Bytes() <= PictureBudget::Limit());
}

void TestDocViewPictures::aPageThatFoundNoRoomComesWhenTheWorkThatWasGivenUpEnds()
{
    const LimitScope limit(0);
    Painted painted(1);
    RecordingRenderer& renderer = painted.document.renderer;
    Rest(painted);
    renderer.heedsGivingUp = false;
    renderer.Block(true);
    float zoom = float(205 / Ratio(painted)); // nearly as large as a picture in one piece gets
    for (int i = 0; i < 6; ++i) {             // more than there is room for at a time
        painted.view->SetZoom(--zoom, true);
        ViewFixture::Settle();
    }
    renderer.heedsGivingUp = true;
    renderer.Block(false);
    const double width = painted.view->PageRect(0).width() * Ratio(painted);
    QTRY_VERIFY(qAbs(renderer.LastOf(0).region.width() - width) <= Ratio(painted)); // each zoom differs by more
    Rest(painted);
    QVERIFY(PictureBudget::PeakBytes() <= PictureBudget::Limit());
}

void TestDocViewPictures::aViewThatIsHiddenAsksForNothing()
{
    Painted painted(20);
    Rest(painted);
    painted.document.renderer.Forget();
    painted.view->ClearViewCache(QString()); // which has it ask in a later turn
    painted.view->Widget()->hide();
    ViewFixture::Settle();
    Rest(painted);
    QVERIFY(painted.document.renderer.Requests().isEmpty());
    painted.view->Widget()->show();
    QTRY_VERIFY(painted.document.renderer.Pages().contains(0));
    Rest(painted);
}

void TestDocViewPictures::aDyingViewGivesItsShareBack()
{
    const qint64 before = PictureBudget::Bytes();
    {
        Painted painted(10);
        Rest(painted);
        QVERIFY(PictureBudget::Bytes() > before);
    }
    ViewFixture::Settle();
    QCOMPARE(PictureBudget::Bytes(), before);
}

} // namespace

TETO_TEST_MAIN(TestDocViewPictures)
#include "test_doc_view_pictures.moc"
