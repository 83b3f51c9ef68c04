#include "sheet_texts.h"

#include <frame/operation/event_manager.h>
#include <frame/utils/dpi.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <limits>

namespace {

// Jumps, zoom and the page change: where a view stands and how it tells.
class TestDocViewPlaces : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Utils::OVDpi::Instance()->OverrideScale(1); }
    void thePageChangeComesOnceAfterOpening();
    void aJumpTellsThePageOnceAndNotThePagesPassedOnTheWay();
    void theVisibleRectangleIsNewWhenThePageChangeArrives();
    void aJumpInsideThePageTellsNothing();
    void zoomingBeforeAJumpTellsThePageOnlyOnce();
    void scrollingByWheelAndKeysTellsThePage();
    void pageKeysSkipNothingOfATallPage();
    void pageKeysGoFromPageToPageWhereTheyFit();
    void aJumpToTheEndOfAPageKeepsThatPageCurrent();
    void aPageOutOfRangeIsIgnored();
    void anEmptyRectangleGoesToTheTopAndAPointToTheTopLeft();
    void fittingARectangleFillsTheViewWithIt();
    void destinationsFromHostileDocumentsGoSomewhereOnThePage();
};

void TestDocViewPlaces::thePageChangeComesOnceAfterOpening()
{
    ScriptedContext context;
    QSignalSpy spy(context.EventMgr(), &G_EventMgr::PageChange);
    const std::unique_ptr<MemoryDocument> document = MemoryDocument::FromText(threePages);
    G_DocView view(&context, document.get());
    view.Widget()->show();
    QCOMPARE(spy.count(), 0); // not from inside the constructor
    ViewFixture::Settle();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(view.CurrentPageIndex(), 0);
}

void TestDocViewPlaces::aJumpTellsThePageOnceAndNotThePagesPassedOnTheWay()
{
    ViewFixture fixture(ManyPages(50));
    QSignalSpy spy(fixture.Context()->EventMgr(), &G_EventMgr::PageChange);
    QSignalSpy own(fixture.View(), &G_DocView::CurrentPageChanged);
    fixture.View()->GoToPage(fixture.View(), 40, CCA_GRect(), false);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(own.count(), 1);
    QCOMPARE(own.first().first().toInt(), 40);
    ViewFixture::Settle();
    QCOMPARE(spy.count(), 1);
}

void TestDocViewPlaces::theVisibleRectangleIsNewWhenThePageChangeArrives()
{
    ViewFixture fixture(ManyPages(50));
    G_DocView* view = fixture.View();
    bool wasSeen = false;
    int page = -1;
    connect(fixture.Context()->EventMgr(), &G_EventMgr::PageChange, view, [&](G_DocView* sender) {
        page = sender->CurrentPageIndex();
        wasSeen = sender->VisibleSceneRect().intersects(sender->PageRect(30));
    });
    view->GoToPage(view, 30, CCA_GRect(), false);
    QCOMPARE(page, 30);
    QVERIFY(wasSeen);
}

void TestDocViewPlaces::aJumpInsideThePageTellsNothing()
{
    ViewFixture fixture(ManyPages(3));
    QSignalSpy spy(fixture.Context()->EventMgr(), &G_EventMgr::PageChange);
    fixture.View()->GoToPage(fixture.View(), 0, CCA_GRect(10, 100, 50, 150), false);
    QCOMPARE(spy.count(), 0);
    QVERIFY(fixture.View()->VisibleSceneRect().top() > 100);
}

void TestDocViewPlaces::zoomingBeforeAJumpTellsThePageOnlyOnce()
{
    ViewFixture fixture(ManyPages(20));
    G_DocView* view = fixture.View();
    view->GoToPage(view, 10, CCA_GRect(), false);
    QSignalSpy spy(fixture.Context()->EventMgr(), &G_EventMgr::PageChange);
    view->SetZoomMode(G_Preferences::FitPage);
    view->SetZoom(25, false);
    view->GoToPage(view, 10, CCA_GRect(0, 10, 50, 60), false);
    ViewFixture::Settle();
    QCOMPARE(spy.count(), 0); // the page is the same as before the click
    view->SetZoom(50, false);
    view->GoToPage(view, 4, CCA_GRect(), false);
    ViewFixture::Settle();
    QCOMPARE(spy.count(), 1);
}

void TestDocViewPlaces::scrollingByWheelAndKeysTellsThePage()
{
    ViewFixture fixture(ManyPages(10));
    G_DocView* view = fixture.View();
    QWidget* viewport = ViewFixture::Viewport(view);
    QSignalSpy spy(fixture.Context()->EventMgr(), &G_EventMgr::PageChange);
    QTest::keyClick(view->Widget(), Qt::Key_PageDown); // the page is taller than the view
    QTest::keyClick(view->Widget(), Qt::Key_PageDown);
    QCOMPARE(view->CurrentPageIndex(), 1);
    QCOMPARE(spy.count(), 1);
    QTest::keyClick(view->Widget(), Qt::Key_PageUp);
    QTest::keyClick(view->Widget(), Qt::Key_PageUp);
    QCOMPARE(view->CurrentPageIndex(), 0);
    QTest::keyClick(view->Widget(), Qt::Key_End);
    QCOMPARE(view->CurrentPageIndex(), 9);
    QTest::keyClick(view->Widget(), Qt::Key_Home);
    QCOMPARE(view->CurrentPageIndex(), 0);
    spy.clear();
    for (int i = 0; i < 40 && view->CurrentPageIndex() == 0; ++i) {
        QWheelEvent wheel(QPointF(100, 100), viewport->mapToGlobal(QPoint(100, 100)), QPoint(), QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport, &wheel);
    }
    QCOMPARE(view->CurrentPageIndex(), 1);
    QCOMPARE(spy.count(), 1);
    const int before = view->VisibleSceneRect().top();
    QTest::keyClick(view->Widget(), Qt::Key_Down);
    QVERIFY(view->VisibleSceneRect().top() > before);
}

void TestDocViewPlaces::pageKeysSkipNothingOfATallPage()
{
    ViewFixture fixture(ManyPages(3));
    G_DocView* view = fixture.View();
    view->SetZoom(150, false);
    for (const int key : {int(Qt::Key_PageDown), int(Qt::Key_Space)}) {
        QTest::keyClick(view->Widget(), Qt::Key_Home);
        int seenTo = view->VisibleSceneRect().bottom();
        const int end = int(view->BoundingRect().bottom());
        for (int i = 0; i < 40 && seenTo < end - 1; ++i) {
            QTest::keyClick(view->Widget(), Qt::Key(key));
            const QRect seen = view->VisibleSceneRect();
            QVERIFY(seen.bottom() > seenTo);
            QVERIFY(seen.top() <= seenTo); // no gap, or one between two pages
            seenTo = seen.bottom();
        }
        QVERIFY(seenTo >= end - 1); // the last page to its very end
    }
    int seenFrom = view->VisibleSceneRect().top();
    for (int i = 0; i < 40 && seenFrom > 0; ++i) {
        QTest::keyClick(view->Widget(), Qt::Key_PageUp);
        const QRect seen = view->VisibleSceneRect();
        QVERIFY(seen.top() < seenFrom);
        QVERIFY(seen.bottom() >= seenFrom);
        seenFrom = seen.top();
    }
    QCOMPARE(seenFrom, 0);
}

void TestDocViewPlaces::pageKeysGoFromPageToPageWhereTheyFit()
{
    ViewFixture fixture(ManyPages(5));
    G_DocView* view = fixture.View();
    view->SetZoomMode(G_Preferences::FitPage);
    ViewFixture::Settle(); // a scroll bar goes
    const int margin = view->PageRect(0).top();
    for (int page = 1; page < 5; ++page) {
        QTest::keyClick(view->Widget(), Qt::Key_PageDown);
        QCOMPARE(view->CurrentPageIndex(), page);
        QVERIFY(view->VisibleSceneRect().contains(view->PageRect(page)));
        if (page < 4) // the column ends below the last
            QCOMPARE(view->VisibleSceneRect().top(), view->PageRect(page).top() - margin);
    }
    QTest::keyClick(view->Widget(), Qt::Key_PageDown);
    QCOMPARE(view->CurrentPageIndex(), 4);
    QTest::keyClick(view->Widget(), Qt::Key_PageUp);
    QCOMPARE(view->CurrentPageIndex(), 3);
    QCOMPARE(view->VisibleSceneRect().top(), view->PageRect(3).top() - margin);
}

void TestDocViewPlaces::aJumpToTheEndOfAPageKeepsThatPageCurrent()
{
    ViewFixture fixture(ManyPages(5));
    G_DocView* view = fixture.View();
    view->GoToPage(view, 2, CCA_GRect(0, 290, 0, 290), false); // most of what is seen is the next page
    QCOMPARE(view->CurrentPageIndex(), 2);
    view->SetZoom(90, false);
    ViewFixture::Settle();
    QCOMPARE(view->CurrentPageIndex(), 2);
    view->ScrollBy(0, 100);
    QCOMPARE(view->CurrentPageIndex(), 3); // scrolling decides by what is seen
}

void TestDocViewPlaces::aPageOutOfRangeIsIgnored()
{
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    const QRect before = view->VisibleSceneRect();
    QSignalSpy spy(fixture.Context()->EventMgr(), &G_EventMgr::PageChange);
    view->GoToPage(view, 3, CCA_GRect(), false);
    view->GoToPage(view, -1, CCA_GRect(), false);
    view->PreviousPage();
    QCOMPARE(view->VisibleSceneRect(), before);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(view->Page(3), nullptr);
    QVERIFY(view->Page(0));
}

void TestDocViewPlaces::anEmptyRectangleGoesToTheTopAndAPointToTheTopLeft()
{
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    view->SetZoom(400, false);
    view->GoToPage(view, 1, CCA_GRect(), false);
    QVERIFY(view->VisibleSceneRect().contains(view->PageRect(1).topLeft() + QPoint(view->PageRect(1).width() / 2, 0)));
    QVERIFY(view->PageRect(1).top() - view->VisibleSceneRect().top() <= 20);
    view->GoToPage(view, 1, CCA_GRect(20, 50, 20, 50), false);
    const CCA_Point point = view->ScenePointFromDocPoint({20, 50}, 1);
    QCOMPARE(view->VisibleSceneRect().topLeft(), QPoint(point.x, point.y));
}

void TestDocViewPlaces::fittingARectangleFillsTheViewWithIt()
{
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    view->GoToPage(view, 1, CCA_GRect(20, 50, 60, 70), true);
    QCOMPARE(view->ZoomMode(), G_Preferences::FitRect);
    const CCA_Rect rect = view->SceneRectFromDocRect(CCA_GRect(20, 50, 60, 70), 1);
    const QRect visible = view->VisibleSceneRect();
    QVERIFY(visible.adjusted(-2, -2, 2, 2).contains(QRect(rect.left, rect.top, rect.Width(), rect.Height())));
    const bool fillsWidth = std::abs(rect.Width() - visible.width()) <= 20;
    const bool fillsHeight = std::abs(rect.Height() - visible.height()) <= 20;
    QVERIFY(fillsWidth || fillsHeight);
}

void TestDocViewPlaces::destinationsFromHostileDocumentsGoSomewhereOnThePage()
{
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    const float huge = 1e30F;
    const float none = std::numeric_limits<float>::quiet_NaN();
    for (const CCA_GRect& rect : {CCA_GRect(huge, huge, huge, huge), CCA_GRect(none, none, none, none),
                                  CCA_GRect(-huge, -huge, huge, huge), CCA_GRect(50, 50, 10, 10)}) {
        view->GoToPage(view, 1, rect, false);
        QCOMPARE(view->CurrentPageIndex(), 1);
        QVERIFY(view->VisibleSceneRect().intersects(view->PageRect(1).adjusted(-20, -20, 20, 20)));
        view->GoToPage(view, 1, rect, true);
        QCOMPARE(view->CurrentPageIndex(), 1);
    }
    view->ScenePointFromDocPoint({huge, none}, 1);
    view->SetZoom(none, false);
    QVERIFY(view->GetZoom() >= 1);
}

} // namespace

TETO_TEST_MAIN(TestDocViewPlaces)
#include "test_doc_view_places.moc"
