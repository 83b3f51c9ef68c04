// Pictures of pages, overlays and what rendering in a pool must keep.
#include "painted_document.h"

#include <tests/support/screens.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <frame/view/host_tools.h>
#include <frame/view/page_item.h>

#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>

namespace {

// Writes down when it is asked to paint.
class Scribe : public G_DocViewRender
{
public:
    Scribe(const QString& name, QStringList* notes)
        : name(name)
        , notes(notes)
    {
    }
    void PaintSceneStart(QPainter* /*painter*/, G_DocView* /*view*/) override { notes->append(name + " start"); }
    void PaintSceneEnd(QPainter* /*painter*/, G_DocView* /*view*/) override { notes->append(name + " end"); }
    void PaintBeforePage(QPainter* /*painter*/, GR_PageGraphicItem* page) override
    {
        notes->append(QStringLiteral("%1 before %2").arg(name).arg(page->PageIndex()));
    }
    void PaintAfterPage(QPainter* painter, GR_PageGraphicItem* page) override
    {
        notes->append(QStringLiteral("%1 after %2").arg(name).arg(page->PageIndex()));
        // Overlays paint where the view says the page is.
        if (!mark.isEmpty())
            painter->fillRect(mark, Qt::red);
    }
    void ResetViewRender() override { ++resets; }
    QRect mark;
    int resets = 0;

private:
    QString name;
    QStringList* notes;
};

namespace {

// The reason why a page is not shown is written in the middle of what is seen, in red on a sheet that is neither paper
// nor picture: pixels of it.
int RedOf(const QImage& sheet)
{
    int red = 0;
    for (int y = 150; y < 250; ++y) {
        for (int x = 100; x < 500; ++x)
            red += sheet.pixelColor(x, y).red() > 150 && sheet.pixelColor(x, y).green() < 120 ? 1 : 0;
    }
    return red;
}

} // namespace

class TestDocViewPaint : public QObject
{
    Q_OBJECT
private slots:
    void paperIsThereAtOnceAndThePictureComesFromAnotherThread();
    void picturesHaveThePixelsOfTheScreen();
    void onlyPagesInViewAndTheNextAreAskedFor();
    void theFirstPaintedPageIsToldOnce();
    void anEmptyDocumentIsPaintedToo();
    void theOldPictureIsStretchedUntilTheNewOneComes();
    void hugeZoomsAreRenderedByRegion();
    void aPageThatLeavesTheScreenIsGivenUp();
    void theViewsDeathWaitsForItsJobs();
    void aFailedPageShowsWhy();
    void aPageForWhichMemoryRunsOutShowsWhyAndIsPaintedLater();
    void droppedPicturesAreMadeAnew();
    void theTemplateFilterReachesTheRenderer();
    void hiddenAnnotationsAreNotAskedFor();
    void rotationTurnsThePictures();
    void picturesLieWhereTheViewSaysAtAnyZoomAndRotation_data();
    void picturesLieWhereTheViewSaysAtAnyZoomAndRotation();
    void overlaysPaintInOrderOfInstallationAroundEachVisiblePage();
    void installingTwicePaintsOnce();
    void overlaysPaintInSceneCoordinates();
    void aDestroyedOverlayLeavesAllViews();
    void aDyingViewForgetsItsOverlays();
    void resettingReachesAllOverlays();
    void theCurrentToolPaintsLast();
    void oneOverlayMayBeOnTwoViews();
    void aPictureOfThePageViewLooksRight();
};

void TestDocViewPaint::paperIsThereAtOnceAndThePictureComesFromAnotherThread()
{
    Painted painted(3);
    painted.document.renderer.Block(true);
    ViewFixture::Settle();
    const QPoint onPage(300, 200);
    QCOMPARE(Screens::Grab(painted.view->Widget()).pixelColor(onPage), QColor(Qt::white));
    painted.document.renderer.Block(false);
    QCOMPARE(painted.Picture().pixelColor(onPage), painted.document.renderer.colour);
    QVERIFY(!painted.document.renderer.wasOnMainThread);
}

void TestDocViewPaint::picturesHaveThePixelsOfTheScreen()
{
    Painted painted(1);
    painted.view->SetZoom(50, false);
    painted.Picture();
    const double ratio = painted.view->Widget()->devicePixelRatioF();
    const double wanted = painted.view->PageRect(0).width() / 210.0 * ratio;
    QVERIFY(std::abs(painted.document.renderer.Requests().last().pixelsPerMm - wanted) < 0.01);
}

void TestDocViewPaint::onlyPagesInViewAndTheNextAreAskedFor()
{
    Painted painted(1000);
    painted.Picture();
    QTRY_VERIFY(painted.document.renderer.Pages().contains(1)); // what is made ahead comes last
    for (const int page : painted.document.renderer.Pages())
        QVERIFY(page <= 1);
    painted.document.renderer.Forget();
    painted.view->GoToPage(painted.view.get(), 700, CCA_GRect(), false);
    painted.Picture();
    QVERIFY(painted.document.renderer.Pages().contains(700));
    for (const int page : painted.document.renderer.Pages())
        QVERIFY(page >= 699 && page <= 701);
}

void TestDocViewPaint::theFirstPaintedPageIsToldOnce()
{
    Painted painted(5);
    QSignalSpy spy(painted.view.get(), &G_DocView::FirstPagePainted);
    painted.document.renderer.Block(true);
    ViewFixture::Settle();
    Screens::Grab(painted.view->Widget());
    ViewFixture::Settle();
    QCOMPARE(spy.count(), 0); // paper is no page
    painted.document.renderer.Block(false);
    painted.Picture();
    ViewFixture::Settle();
    QCOMPARE(spy.count(), 1);
    painted.view->NextPage();
    painted.Picture();
    ViewFixture::Settle();
    QCOMPARE(spy.count(), 1);
}

void TestDocViewPaint::anEmptyDocumentIsPaintedToo()
{
    Painted painted(0);
    QSignalSpy spy(painted.view.get(), &G_DocView::FirstPagePainted);
    painted.Picture();
    ViewFixture::Settle();
    QCOMPARE(spy.count(), 1);
}

void TestDocViewPaint::theOldPictureIsStretchedUntilTheNewOneComes()
{
    Painted painted(2);
    painted.Picture();
    painted.document.renderer.Block(true);
    painted.document.renderer.colour = QColor(200, 0, 0);
    painted.view->SetZoom(150, false);
    ViewFixture::Settle();
    QCOMPARE(Screens::Grab(painted.view->Widget()).pixelColor(300, 200), QColor(10, 120, 30));
    painted.document.renderer.Block(false);
    QCOMPARE(painted.Picture().pixelColor(300, 200), QColor(200, 0, 0));
}

void TestDocViewPaint::hugeZoomsAreRenderedByRegion()
{
    Painted painted(2);
    painted.view->SetZoom(6400, false);
    painted.view->GoToPage(painted.view.get(), 0, CCA_GRect(100, 150, 100, 150), false);
    QCOMPARE(painted.Picture().pixelColor(300, 200), painted.document.renderer.colour);
    const G_RenderRequest request = painted.document.renderer.Requests().last();
    QVERIFY(!request.region.isEmpty());
    QVERIFY(request.region.width() < 2000 && request.region.height() < 2000);
    QVERIFY(painted.document.renderer.largestBytes < 64LL * 1024 * 1024);
    painted.document.renderer.Forget();
    painted.view->ScrollBy(0, 3000);
    QCOMPARE(painted.Picture().pixelColor(300, 200), painted.document.renderer.colour);
    QVERIFY(!painted.document.renderer.Requests().isEmpty());
}

void TestDocViewPaint::aPageThatLeavesTheScreenIsGivenUp()
{
    Painted painted(200);
    painted.document.renderer.Block(true);
    ViewFixture::Settle();
    QTRY_VERIFY(painted.document.renderer.running > 0);
    const std::shared_ptr<std::atomic<bool>> cancelled = painted.document.renderer.Requests().first().cancelled;
    QVERIFY(cancelled);
    QVERIFY(!*cancelled);
    painted.view->GoToPage(painted.view.get(), 150, CCA_GRect(), false);
    QTRY_VERIFY(*cancelled);
    painted.document.renderer.Block(false);
}

void TestDocViewPaint::theViewsDeathWaitsForItsJobs()
{
    Painted painted(3);
    painted.document.renderer.Block(true);
    ViewFixture::Settle();
    QTRY_VERIFY(painted.document.renderer.running > 0);
    painted.view.reset();
    QCOMPARE(painted.document.renderer.running.load(), 0);
}

void TestDocViewPaint::aFailedPageShowsWhy()
{
    Painted painted(2);
    painted.document.renderer.error = QStringLiteral("the content is broken");
    QSignalSpy spy(painted.view.get(), &G_DocView::FirstPagePainted);
    const QImage sheet = painted.Picture();
    QVERIFY(RedOf(sheet) > 100);
    QVERIFY(sheet.pixelColor(300, 50) != painted.document.renderer.colour);
    QVERIFY(sheet.pixelColor(300, 50) != QColor(Qt::white));
    painted.view->SetZoom(20, false); // nor does a small sheet break
    painted.Picture();
    painted.view->SetZoom(100, false);
    painted.Picture();
    ViewFixture::Settle();
    QCOMPARE(spy.count(), 1); // panes do not wait for a page that cannot be shown
    Screens::SaveScreen(painted.view->Widget(), QStringLiteral("frame-broken-page"));
}

void TestDocViewPaint::aPageForWhichMemoryRunsOutShowsWhyAndIsPaintedLater()
{
    Painted painted(2);
    painted.document.renderer.isStarved = true;
    QVERIFY(RedOf(painted.Picture()) > 100);
    painted.document.renderer.isStarved = false;
    painted.view->SetZoom(80, false);
    QCOMPARE(painted.Picture().pixelColor(300, 200), painted.document.renderer.colour);
}

void TestDocViewPaint::droppedPicturesAreMadeAnew()
{
    Painted painted(3);
    painted.Picture();
    QTRY_VERIFY(painted.document.renderer.Pages().contains(1)); // what is made ahead comes last
    painted.document.renderer.Forget();
    painted.Picture();
    QVERIFY(painted.document.renderer.Requests().isEmpty()); // nothing changed: nothing to do
    painted.document.renderer.colour = QColor(0, 0, 200);
    painted.view->ClearViewCache(QStringLiteral("2"));
    QCOMPARE(painted.Picture().pixelColor(300, 200), QColor(10, 120, 30)); // another page's
    painted.view->ClearViewCache(QStringLiteral("0"));
    QCOMPARE(painted.Picture().pixelColor(300, 200), QColor(0, 0, 200));
    painted.document.renderer.colour = QColor(0, 99, 0);
    painted.view->ClearViewCache(QString());
    QCOMPARE(painted.Picture().pixelColor(300, 200), QColor(0, 99, 0));
}

void TestDocViewPaint::theTemplateFilterReachesTheRenderer()
{
    Painted painted(2);
    painted.Picture();
    QVERIFY(painted.document.renderer.LastOf(0).ignoredTemplates.isEmpty());
    const int pageId = painted.document.PageIdFromIndex(0);
    painted.view->pageFilter =
        QStringLiteral("{\"%1\":{\"IgnoreIDs\":[101,7]},\"999\":{\"IgnoreIDs\":[3]}}").arg(pageId);
    painted.view->UpdateView();
    painted.Picture();
    QCOMPARE(painted.document.renderer.LastOf(0).ignoredTemplates, (QSet<int>{101, 7}));
    for (const char* none : {"{}", "", "no json"}) {
        painted.view->pageFilter = QString::fromLatin1(none);
        painted.view->UpdateView();
        painted.Picture();
        QVERIFY(painted.document.renderer.LastOf(0).ignoredTemplates.isEmpty());
    }
}

void TestDocViewPaint::hiddenAnnotationsAreNotAskedFor()
{
    Painted painted(1);
    painted.Picture();
    QVERIFY(painted.view->AnnotStatus());
    QVERIFY(painted.document.renderer.Requests().last().withAnnotations);
    painted.view->SetAnnotStatus(false);
    painted.Picture();
    QVERIFY(!painted.document.renderer.Requests().last().withAnnotations);
}

void TestDocViewPaint::rotationTurnsThePictures()
{
    // A document with a text at its top left: turned clockwise it is at the top right.
    ViewFixture fixture(QStringLiteral("page 100 100\n  text 5 5 MMMMMMMMMMMM\n"), QSize(500, 450));
    G_DocView* view = fixture.View();
    view->SetZoomMode(G_Preferences::FitPage);
    view->SetRotation(90);
    view->FinishRendering();
    const QImage image = Screens::Grab(view->Widget());
    const QRect page = view->PageRect(0).translated(-view->VisibleSceneRect().topLeft());
    const auto darkPixels = [&](const QRect& area) {
        int dark = 0;
        for (int y = area.top(); y < area.bottom(); ++y) {
            for (int x = area.left(); x < area.right(); ++x)
                dark += qGray(image.pixel(x, y)) < 100 ? 1 : 0;
        }
        return dark;
    };
    const QSize quarter = page.size() / 2;
    const QRect topRight(page.left() + quarter.width(), page.top(), quarter.width(), quarter.height());
    const QRect bottomLeft(page.left(), page.top() + quarter.height(), quarter.width(), quarter.height());
    QVERIFY(darkPixels(topRight) > 20);
    QCOMPARE(darkPixels(bottomLeft.adjusted(2, 2, -2, -2)), 0);
}

void TestDocViewPaint::picturesLieWhereTheViewSaysAtAnyZoomAndRotation_data()
{
    QTest::addColumn<int>("degrees");
    QTest::addColumn<float>("zoom");
    for (const int degrees : {0, 90, 180, 270}) {
        for (const float zoom : {35.0F, 130.0F, 1000.0F, 5000.0F})
            QTest::addRow("%d degrees at %d percent", degrees, int(zoom)) << degrees << zoom;
    }
}

void TestDocViewPaint::picturesLieWhereTheViewSaysAtAnyZoomAndRotation()
{
    QFETCH(int, degrees);
    QFETCH(float, zoom);
    Painted painted(3);
    // A box larger than the view at the highest zoom, so that a corner of it is looked at.
    painted.document.renderer.markMm = QRectF(50, 90, 60, 70);
    const CCA_GRect mark(50, 90, 110, 160);
    G_DocView* view = painted.view.get();
    view->SetRotation(degrees);
    view->SetZoom(zoom, false);
    view->GoToPage(view, 1, CCA_GRect(40, 80, 120, 170), false);
    const CCA_Rect place = view->SceneRectFromDocRect(mark, 1);
    view->ScrollBy(place.left - view->VisibleSceneRect().left() - 100, place.top - view->VisibleSceneRect().top() - 50);
    const QImage image = painted.Picture();
    const QPoint corner = QPoint(place.left, place.top) - view->VisibleSceneRect().topLeft();
    QVERIFY(QRect(5, 5, 500, 300).contains(corner));
    QCOMPARE(image.pixelColor(corner + QPoint(4, 4)), QColor(Qt::magenta));
    QVERIFY(image.pixelColor(corner + QPoint(-4, 4)) != QColor(Qt::magenta));
    QVERIFY(image.pixelColor(corner + QPoint(4, -4)) != QColor(Qt::magenta));
}

void TestDocViewPaint::overlaysPaintInOrderOfInstallationAroundEachVisiblePage()
{
    Painted painted(100);
    painted.view->SetZoom(30, false); // more than one page in view
    painted.Picture();
    QStringList notes;
    Scribe first(QStringLiteral("A"), &notes);
    Scribe second(QStringLiteral("B"), &notes);
    painted.view->InstallViewRender(&first);
    painted.view->InstallViewRender(&second);
    Screens::Grab(painted.view->Widget());
    QCOMPARE(notes.mid(0, 2), (QStringList{"A start", "B start"}));
    QCOMPARE(notes.mid(notes.size() - 2), (QStringList{"A end", "B end"}));
    QStringList pages = notes.mid(2, notes.size() - 4);
    QVERIFY(pages.size() >= 8);
    QCOMPARE(pages.mid(0, 4), (QStringList{"A before 0", "B before 0", "A after 0", "B after 0"}));
    QCOMPARE(pages.mid(4, 4), (QStringList{"A before 1", "B before 1", "A after 1", "B after 1"}));
    QCOMPARE(pages.removeDuplicates(), 0); // once for each page
}

void TestDocViewPaint::installingTwicePaintsOnce()
{
    Painted painted(1);
    QStringList notes;
    Scribe overlay(QStringLiteral("A"), &notes);
    painted.view->InstallViewRender(&overlay);
    painted.view->InstallViewRender(&overlay);
    Screens::Grab(painted.view->Widget());
    QCOMPARE(notes.count(QStringLiteral("A after 0")), 1);
    painted.view->UnInstallViewRender(&overlay);
    notes.clear();
    Screens::Grab(painted.view->Widget());
    QVERIFY(notes.isEmpty());
}

void TestDocViewPaint::overlaysPaintInSceneCoordinates()
{
    Painted painted(3);
    painted.view->GoToPage(painted.view.get(), 1, CCA_GRect(50, 100, 50, 100), false);
    QStringList notes;
    Scribe overlay(QStringLiteral("A"), &notes);
    const CCA_Rect place = painted.view->SceneRectFromDocRect(CCA_GRect(60, 110, 80, 120), 1);
    overlay.mark = QRect(place.left, place.top, place.Width(), place.Height());
    painted.view->InstallViewRender(&overlay);
    const QImage image = painted.Picture();
    const QPoint middle = overlay.mark.center() - painted.view->VisibleSceneRect().topLeft();
    QCOMPARE(image.pixelColor(middle), QColor(Qt::red));
    QVERIFY(image.pixelColor(middle + QPoint(overlay.mark.width(), 0)) != QColor(Qt::red));
}

void TestDocViewPaint::aDestroyedOverlayLeavesAllViews()
{
    Painted painted(1);
    QStringList notes;
    {
        Scribe overlay(QStringLiteral("A"), &notes);
        painted.view->InstallViewRender(&overlay);
    }
    Screens::Grab(painted.view->Widget());
    QVERIFY(notes.isEmpty());
}

void TestDocViewPaint::aDyingViewForgetsItsOverlays()
{
    QStringList notes;
    Scribe overlay(QStringLiteral("A"), &notes);
    {
        Painted painted(1);
        painted.view->InstallViewRender(&overlay);
    }
    Painted next(1);
    next.view->InstallViewRender(&overlay);
    Screens::Grab(next.view->Widget());
    QCOMPARE(notes.count(QStringLiteral("A after 0")), 1);
}

void TestDocViewPaint::resettingReachesAllOverlays()
{
    Painted painted(1);
    QStringList notes;
    Scribe first(QStringLiteral("A"), &notes);
    Scribe second(QStringLiteral("B"), &notes);
    painted.view->InstallViewRender(&first);
    painted.view->InstallViewRender(&second);
    painted.view->ResetViewRender();
    QCOMPARE(first.resets, 1);
    QCOMPARE(second.resets, 1);
}

class MarkingTool : public GT_HandTool
{
public:
    void PaintAfterPage(QPainter* /*painter*/, GR_PageGraphicItem* page) override
    {
        notes->append(QStringLiteral("tool after %1").arg(page->PageIndex()));
    }
    void OnActivate() override {}
    void OnDeactivate() override {}
    QStringList* notes = nullptr;
};

void TestDocViewPaint::theCurrentToolPaintsLast()
{
    Painted painted(1);
    QStringList notes;
    MarkingTool tool;
    tool.notes = &notes;
    Scribe overlay(QStringLiteral("A"), &notes);
    painted.view->SetCurrentToolHandler(&tool);
    painted.view->InstallViewRender(&overlay);
    Screens::Grab(painted.view->Widget());
    QCOMPARE(notes.filter(QStringLiteral("after")), (QStringList{"A after 0", "tool after 0"}));
    notes.clear();
    painted.view->InstallViewRender(&tool); // also an overlay of its own: still once
    Screens::Grab(painted.view->Widget());
    QCOMPARE(notes.count(QStringLiteral("tool after 0")), 1);
    painted.view->SetCurrentToolHandler(nullptr);
}

void TestDocViewPaint::oneOverlayMayBeOnTwoViews()
{
    Painted first(1);
    Painted second(1);
    QStringList notes;
    Scribe overlay(QStringLiteral("A"), &notes);
    first.view->InstallViewRender(&overlay);
    second.view->InstallViewRender(&overlay);
    Screens::Grab(first.view->Widget());
    Screens::Grab(second.view->Widget());
    QCOMPARE(notes.count(QStringLiteral("A after 0")), 2);
}

void TestDocViewPaint::aPictureOfThePageViewLooksRight()
{
    ViewFixture fixture(QStringLiteral("page 210 297\n  text 20 30 The first line of the page\n"
                                       "  text 20 40 and a second one\npage 210 297\n  text 20 30 Page two\n"),
                        QSize(700, 800));
    fixture.View()->SetZoomMode(G_Preferences::FitWidth);
    fixture.View()->SelectAllText();
    fixture.View()->FinishRendering();
    ViewFixture::Settle();
    QVERIFY(Screens::ColourCount(Screens::Grab(fixture.View()->Widget())) > 10);
    Screens::SaveScreen(fixture.View()->Widget(), QStringLiteral("frame-page-view"));
}

} // namespace

TETO_TEST_MAIN(TestDocViewPaint)
#include "test_doc_view_paint.moc"
