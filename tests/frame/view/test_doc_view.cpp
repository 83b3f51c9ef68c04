// Places, zoom, paging and the page change of a view.
#include "sheet_texts.h"

#include <frame/operation/event_manager.h>
#include <frame/utils/dpi.h>
#include <frame/view/go_to_dest.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QSignalSpy>
#include <QUndoStack>
#include <QtTest>

#include <cmath>
#include <limits>

namespace {

class TestDocView : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Utils::OVDpi::Instance()->OverrideScale(1); }
    void pagesLieInAColumnWithGapsEachInTheMiddle();
    void documentPointsGoToTheSceneAndBackOnTheSecondPageAtAQuarterTurn();
    void everyRotationMapsThePagesCornersToItsRectangle_data();
    void everyRotationMapsThePagesCornersToItsRectangle();
    void thePageMatrixIsLocalToThePage();
    void theScenePointsPageIsAlwaysThePageHit();
    void thePageUnderAPointMayBeTheNearestAndMustBeVisibleWhenAsked();
    void logicalRectanglesAreThoseOfActualSizeAtAnyZoom();
    void zoomStaysWithinItsBoundsAndSetsTheModeToCustom();
    void zoomingKeepsTheMiddleOrTheTopLeft();
    void fittingModesFitAgainAfterAResize();
    void aFittedPageBesideAWiderOneIsWhollyInView();
    void aFittingModeFitsThePageOfTheJumpThatFollows();
    void changedPagesAreLaidOutAnew();
    void aDyingViewEmptiesItsStackWhileItIsWhole();
    void destinationModesMapToTheViewsModes_data();
    void destinationModesMapToTheViewsModes();
    void theVisibleRectangleOfTheCurrentPageIsInMillimetres();
    void tenThousandPagesOpenWithoutTouchingTheirContent();
    void aDocumentWithoutPagesIsAnEmptyView();
    void theUndoStackIsMadeOnceAndEachViewHasItsOwn();
    void pagesOfHostileSizeAreLaidOut();
    void aColumnTooLongForItsZoomOpensSmaller();
};

void TestDocView::pagesLieInAColumnWithGapsEachInTheMiddle()
{
    ViewFixture fixture(threePages);
    const G_DocView* view = fixture.View();
    const QRect first = view->PageRect(0);
    const QRect second = view->PageRect(1);
    const QRect third = view->PageRect(2);
    QCOMPARE(first.size(), QSize(794, 1123)); // A4 at 96 DPI
    QVERIFY(second.top() > first.bottom());
    QVERIFY(third.top() > second.bottom());
    QVERIFY(std::abs(second.center().x() - first.center().x()) <= 1);
    QVERIFY(view->BoundingRect().contains(third));
    QVERIFY(view->PageRect(3).isEmpty());
    QVERIFY(view->PageRect(-1).isEmpty());
}

void TestDocView::documentPointsGoToTheSceneAndBackOnTheSecondPageAtAQuarterTurn()
{
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    view->SetRotation(90);
    view->SetZoom(200, false);
    const QRect page = view->PageRect(1);
    QCOMPARE(page.size(), QSize(1512, 756)); // 100 x 200 mm turned, at twice 96 DPI
    // Clockwise: the page's left edge is shown on top, its top edge on the right.
    const CCA_Point topLeft = view->ScenePointFromDocPoint({0, 0}, 1);
    QVERIFY(std::abs(topLeft.x - (page.left() + page.width())) <= 1);
    QVERIFY(std::abs(topLeft.y - page.top()) <= 1);
    const CCA_Point inside = view->ScenePointFromDocPoint({30, 50}, 1);
    int hit = -1;
    const CCA_GPoint back = view->DocPointFromScenePoint(inside, &hit);
    QCOMPARE(hit, 1);
    QVERIFY(std::abs(back.x - 30) < 0.2);
    QVERIFY(std::abs(back.y - 50) < 0.2);
    const CCA_Rect rect = view->SceneRectFromDocRect(CCA_GRect(10, 20, 40, 80), 1);
    QVERIFY(std::abs(rect.Width() - 60 * 2 * 96 / 25.4) < 2); // width and height change places
    QVERIFY(std::abs(rect.Height() - 30 * 2 * 96 / 25.4) < 2);
}

void TestDocView::everyRotationMapsThePagesCornersToItsRectangle_data()
{
    QTest::addColumn<int>("degrees");
    for (const int degrees : {0, 90, 180, 270})
        QTest::newRow(qPrintable(QString::number(degrees))) << degrees;
}

void TestDocView::everyRotationMapsThePagesCornersToItsRectangle()
{
    QFETCH(int, degrees);
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    view->SetRotation(degrees);
    QCOMPARE(view->Rotation(), degrees);
    const QRect page = view->PageRect(1);
    const CCA_Rect whole = view->SceneRectFromDocRect(CCA_GRect(0, 0, 100, 200), 1);
    QVERIFY(std::abs(whole.left - page.left()) <= 1);
    QVERIFY(std::abs(whole.top - page.top()) <= 1);
    QVERIFY(std::abs(whole.Width() - page.width()) <= 1);
    QVERIFY(std::abs(whole.Height() - page.height()) <= 1);
}

void TestDocView::thePageMatrixIsLocalToThePage()
{
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    view->SetRotation(90);
    CCA_Matrix matrix = view->PageDisplayMatrix(1);
    const CCA_GPoint local = matrix.TransformPoint({0, 0});
    QVERIFY(std::abs(local.x - view->PageRect(1).width()) <= 1);
    QVERIFY(std::abs(local.y) <= 1);
    matrix.Translate(view->PageRect(1).left(), view->PageRect(1).top());
    const CCA_GPoint scene = matrix.TransformPoint({30, 50});
    const CCA_Point expected = view->ScenePointFromDocPoint({30, 50}, 1);
    QVERIFY(std::abs(scene.x - expected.x) <= 1);
    QVERIFY(std::abs(scene.y - expected.y) <= 1);
}

void TestDocView::theScenePointsPageIsAlwaysThePageHit()
{
    ViewFixture fixture(threePages);
    const G_DocView* view = fixture.View();
    const QRect second = view->PageRect(1);
    const CCA_Point onSecond = {second.left() + 5, second.top() + 5};
    const double pixelsPerMm = 96 / 25.4;
    for (const int before : {-1, 0, 77}) { // what the variable held does not matter
        int page = before;
        const CCA_GPoint inside = view->DocPointFromScenePoint(onSecond, &page);
        QCOMPARE(page, 1);
        QVERIFY(std::abs(inside.y - 5 / pixelsPerMm) < 0.2);
        page = before;
        const CCA_GPoint outside = view->DocPointFromScenePoint({0, 0}, &page);
        QCOMPARE(page, -1);
        QCOMPARE(outside.x, 0.0F);
        QCOMPARE(outside.y, 0.0F);
    }
    QVERIFY(std::abs(view->DocPointFromScenePoint(onSecond, nullptr).x - 5 / pixelsPerMm) < 0.2);
    QVERIFY(view->DocPointOnPage(onSecond, 0).y > 297); // below the page it is related to
    QVERIFY(view->DocPointOnPage({0, 0}, 1).y < 0);
    QCOMPARE(view->DocPointOnPage(onSecond, 3).y, 0.0F);
}

void TestDocView::thePageUnderAPointMayBeTheNearestAndMustBeVisibleWhenAsked()
{
    ViewFixture fixture(threePages);
    const G_DocView* view = fixture.View();
    const QRect first = view->PageRect(0);
    const QRect second = view->PageRect(1);
    const QPoint justAboveSecond(second.center().x(), second.top() - 2);
    QCOMPARE(view->PageIndexByPoint(justAboveSecond, false, false), -1);
    QCOMPARE(view->PageIndexByPoint(justAboveSecond, true, false), 1);
    QCOMPARE(view->PageIndexByPoint(QPoint(first.center().x(), first.bottom() + 2), true, false), 0);
    QCOMPARE(view->PageIndexByPoint(QPoint(0, -500), true, false), 0);
    QCOMPARE(view->PageIndexByPoint(QPoint(0, 1000000), true, false), 2);
    QCOMPARE(view->PageIndexByPoint(view->PageRect(2).center(), false, true), -1); // far below what is in view
    QCOMPARE(view->PageIndexByPoint(first.topLeft() + QPoint(5, 5), false, true), 0);
}

void TestDocView::logicalRectanglesAreThoseOfActualSizeAtAnyZoom()
{
    ViewFixture fixture(threePages);
    fixture.View()->SetZoom(300, false);
    QCOMPARE(fixture.View()->PageLogicalRect(0), QRect(0, 0, 794, 1123));
    QVERIFY(fixture.View()->PageLogicalRect(9).isEmpty());
}

void TestDocView::zoomStaysWithinItsBoundsAndSetsTheModeToCustom()
{
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    QSignalSpy spy(view, &G_DocView::ZoomChanged);
    view->SetZoomMode(G_Preferences::FitWidth);
    view->SetZoom(0.2F, false);
    QCOMPARE(view->GetZoom(), 1.0F);
    QCOMPARE(view->ZoomMode(), G_Preferences::Custom);
    view->SetZoom(100000, true);
    QCOMPARE(view->GetZoom(), 6400.0F);
    QVERIFY(spy.count() >= 2);
    view->SetZoomMode(G_Preferences::ActualSize);
    QCOMPARE(view->GetZoom(), 100.0F);
}

void TestDocView::zoomingKeepsTheMiddleOrTheTopLeft()
{
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    view->SetZoom(300, false);
    view->GoToPage(view, 0, CCA_GRect(40, 60, 40, 60), false);
    view->SetZoom(500, false);
    int page = 0;
    const QRect visible = view->VisibleSceneRect();
    CCA_GPoint corner = view->DocPointFromScenePoint({visible.left(), visible.top()}, &page);
    QVERIFY(std::abs(corner.x - 40) < 0.5);
    QVERIFY(std::abs(corner.y - 60) < 0.5);
    const QPoint middle = visible.center();
    const CCA_GPoint before = view->DocPointFromScenePoint({middle.x(), middle.y()}, &page);
    view->SetZoom(250, true);
    const QPoint now = view->VisibleSceneRect().center();
    const CCA_GPoint after = view->DocPointFromScenePoint({now.x(), now.y()}, &page);
    QVERIFY(std::abs(after.x - before.x) < 1);
    QVERIFY(std::abs(after.y - before.y) < 1);
}

void TestDocView::fittingModesFitAgainAfterAResize()
{
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    view->SetZoomMode(G_Preferences::FitWidth);
    const float narrow = view->GetZoom();
    QVERIFY(view->PageRect(0).width() <= view->VisibleSceneRect().width());
    QVERIFY(view->PageRect(0).width() > view->VisibleSceneRect().width() - 40);
    view->Widget()->resize(1200, 600);
    ViewFixture::Settle();
    QVERIFY(view->GetZoom() > narrow);
    QVERIFY(view->PageRect(0).width() > view->VisibleSceneRect().width() - 40);
    view->SetZoomMode(G_Preferences::FitPage);
    view->Widget()->resize(500, 900);
    ViewFixture::Settle();
    QVERIFY(view->PageRect(0).width() <= view->VisibleSceneRect().width());
    QVERIFY(view->PageRect(0).height() <= view->VisibleSceneRect().height());
    view->SetZoomMode(G_Preferences::FitHeight);
    view->Widget()->resize(500, 400);
    ViewFixture::Settle();
    QVERIFY(view->PageRect(0).height() <= view->VisibleSceneRect().height());
    view->SetZoom(80, false);
    view->Widget()->resize(700, 700);
    ViewFixture::Settle();
    QCOMPARE(view->GetZoom(), 80.0F);
}

void TestDocView::aFittedPageBesideAWiderOneIsWhollyInView()
{
    ViewFixture fixture(QStringLiteral("page 210 297\npage 420 297\n"));
    G_DocView* view = fixture.View();
    view->SetZoomMode(G_Preferences::FitWidth);
    QVERIFY(view->BoundingRect().width() > view->VisibleSceneRect().width());
    const QRect page = view->PageRect(0);
    const QRect visible = view->VisibleSceneRect();
    QVERIFY2(visible.left() <= page.left() && page.right() <= visible.right(), "after choosing the mode");
    view->Widget()->resize(500, 400);
    ViewFixture::Settle();
    QVERIFY2(view->VisibleSceneRect().left() <= view->PageRect(0).left(), "left, after a resize");
    QVERIFY2(view->PageRect(0).right() <= view->VisibleSceneRect().right(), "right, after a resize");
}

void TestDocView::aFittingModeFitsThePageOfTheJumpThatFollows()
{
    ViewFixture fixture(QStringLiteral("page 100 100\npage 400 150\npage 100 100\n"));
    G_DocView* view = fixture.View();
    QSignalSpy spy(fixture.Context()->EventMgr(), &G_EventMgr::PageChange);
    view->SetZoomMode(G_Preferences::FitPage);
    view->GoToPage(view, 1, CCA_GRect(), false);
    QVERIFY(view->VisibleSceneRect().contains(view->PageRect(1)));
    QVERIFY(view->PageRect(1).width() > view->VisibleSceneRect().width() - 40);
    QCOMPARE(spy.count(), 1);
    ViewFixture::Settle(); // a scroll bar goes, and the page is fitted to the room it leaves
    QCOMPARE(view->CurrentPageIndex(), 1);
    QVERIFY(view->VisibleSceneRect().contains(view->PageRect(1)));
    const float zoom = view->GetZoom();
    view->GoToPage(view, 2, CCA_GRect(), false); // a jump alone keeps the zoom
    QCOMPARE(view->GetZoom(), zoom);
    view->SetZoomMode(G_Preferences::FitPage);
    ViewFixture::Settle();
    const float small = view->GetZoom();
    view->GoToPage(view, 1, CCA_GRect(), false); // the mode was set for the page before
    QCOMPARE(view->GetZoom(), small);
}

void TestDocView::changedPagesAreLaidOutAnew()
{
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    view->GoToPage(view, 2, CCA_GRect(), false);
    view->SelectAllText();
    QVERIFY(fixture.Document()->RemovePage(2));
    MemoryDocument other;
    emit fixture.Context()->EventMgr()->PageStructChanged(&other); // none of this view's affairs
    QVERIFY(!view->PageRect(2).isEmpty());
    QSignalSpy spy(fixture.Context()->EventMgr(), &G_EventMgr::PageChange);
    emit fixture.Context()->EventMgr()->PageStructChanged(fixture.Document());
    QVERIFY(view->PageRect(2).isEmpty());
    QCOMPARE(view->CurrentPageIndex(), 1);
    QVERIFY(view->VisibleSceneRect().intersects(view->PageRect(1)));
    ViewFixture::Settle();
    QCOMPARE(spy.count(), 1);
    fixture.Document()->AddPage(50, 60);
    fixture.Document()->AddPage(70, 80);
    emit fixture.Context()->EventMgr()->PageStructChanged(fixture.Document());
    QCOMPARE(view->PageLogicalRect(3).size(), QSize(265, 302));
    while (fixture.Document()->RemovePage(0)) {
    }
    emit fixture.Context()->EventMgr()->PageStructChanged(fixture.Document());
    QCOMPARE(view->CurrentPageIndex(), -1);
    ViewFixture::Settle();
}

void TestDocView::aDyingViewEmptiesItsStackWhileItIsWhole()
{
    ScriptedContext context;
    const std::unique_ptr<MemoryDocument> document = MemoryDocument::FromText(threePages);
    auto view = std::make_unique<G_DocView>(&context, document.get());
    context.SetCurrentDocView(view.get());
    view->CreateUndoStack();
    view->UndoStack()->push(new QUndoCommand);
    int indexTold = -1;
    int pageThen = -1;
    connect(view->UndoStack(), &QUndoStack::indexChanged, this, [&](int index) {
        indexTold = index;
        pageThen = context.CurrentDocView() ? context.CurrentDocView()->CurrentPageIndex() : -2;
    });
    view.reset();
    QCOMPARE(indexTold, 0);
    QCOMPARE(pageThen, 0); // a listener may still ask the view
}

void TestDocView::destinationModesMapToTheViewsModes_data()
{
    QTest::addColumn<int>("destinationMode");
    QTest::addColumn<int>("viewMode");
    QTest::newRow("plain zoom") << 0 << int(G_Preferences::Custom);
    QTest::newRow("page") << 1 << int(G_Preferences::FitPage);
    QTest::newRow("width") << 2 << int(G_Preferences::FitWidth);
    QTest::newRow("height") << 3 << int(G_Preferences::FitHeight);
    QTest::newRow("rectangle") << 4 << int(G_Preferences::FitRect);
    QTest::newRow("unknown") << 9 << int(G_Preferences::Custom);
}

void TestDocView::destinationModesMapToTheViewsModes()
{
    QFETCH(int, destinationMode);
    QFETCH(int, viewMode);
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    G_Dest dest;
    dest.zoomMode = destinationMode;
    dest.pageIndex = 2;
    dest.right = 50;
    dest.bottom = 50;
    dest.zoom = 2;
    GoToDest(view, dest, false);
    QCOMPARE(int(view->ZoomMode()), viewMode);
    QCOMPARE(view->CurrentPageIndex(), 2);
    QCOMPARE(qFuzzyCompare(view->GetZoom(), 200.0F), destinationMode == 0); // the zoom counts in mode 0 only
    QCOMPARE(fixture.TakeFiredEvents(), QList<int>{152});
    view->SetZoom(70, false);
    dest.pageIndex = 0;
    GoToDest(view, dest, true);
    QCOMPARE(view->GetZoom(), 70.0F);
    QCOMPARE(view->CurrentPageIndex(), 0);
    QVERIFY(fixture.TakeFiredEvents().isEmpty());
}

void TestDocView::theVisibleRectangleOfTheCurrentPageIsInMillimetres()
{
    ViewFixture fixture(threePages);
    G_DocView* view = fixture.View();
    view->SetZoom(400, false);
    view->GoToPage(view, 0, CCA_GRect(30, 40, 30, 40), false);
    const CCA_GRect rect = view->CurrentPageVisibleRectMM();
    QVERIFY(std::abs(rect.left - 30) < 0.3);
    QVERIFY(std::abs(rect.top - 40) < 0.3);
    const double pixelsPerMm = 4 * 96 / 25.4;
    QVERIFY(std::abs(rect.Width() - view->VisibleSceneRect().width() / pixelsPerMm) < 0.5);
    QVERIFY(std::abs(rect.Height() - view->VisibleSceneRect().height() / pixelsPerMm) < 0.5);
}

void TestDocView::tenThousandPagesOpenWithoutTouchingTheirContent()
{
    ViewFixture fixture(ManyPages(10000));
    G_DocView* view = fixture.View();
    QCOMPARE(fixture.Document()->LoadedPageCount(), 0);
    view->GoToPage(view, 9999, CCA_GRect(), false);
    QCOMPARE(view->CurrentPageIndex(), 9999);
    QVERIFY(view->VisibleSceneRect().intersects(view->PageRect(9999)));
    view->SetZoom(6400, false);
    QVERIFY(view->BoundingRect().height() < std::numeric_limits<int>::max());
    view->GoToPage(view, 9998, CCA_GRect(0, 296, 0, 296), false);
    QVERIFY(view->VisibleSceneRect().intersects(view->PageRect(9998)));
    QVERIFY(view->Widget()->findChildren<QWidget*>().size() < 20);
    QCOMPARE(fixture.Document()->LoadedPageCount(), 0);
}

void TestDocView::aDocumentWithoutPagesIsAnEmptyView()
{
    ViewFixture fixture(QString{});
    G_DocView* view = fixture.View();
    QCOMPARE(view->CurrentPageIndex(), -1);
    view->NextPage();
    view->SetZoomMode(G_Preferences::FitWidth);
    view->SetRotation(90);
    view->SelectAllText();
    QVERIFY(view->CurrentPageVisibleRectMM().IsEmpty());
    QCOMPARE(view->PageIndexByPoint(QPoint(0, 0), true, false), -1);
    QCOMPARE(view->CurrentPageIndex(), -1);
}

void TestDocView::theUndoStackIsMadeOnceAndEachViewHasItsOwn()
{
    ScriptedContext context;
    const std::unique_ptr<MemoryDocument> document = MemoryDocument::FromText(threePages);
    G_DocView first(&context, document.get());
    G_DocView second(&context, document.get());
    QCOMPARE(first.UndoStack(), nullptr);
    first.CreateUndoStack();
    QUndoStack* stack = first.UndoStack();
    QVERIFY(stack);
    first.CreateUndoStack();
    QCOMPARE(first.UndoStack(), stack);
    second.CreateUndoStack();
    QVERIFY(second.UndoStack() != stack);
}

void TestDocView::pagesOfHostileSizeAreLaidOut()
{
    MemoryDocument document;
    document.AddPage(0, 0);
    document.AddPage(1e30F, 1e30F);
    document.AddPage(std::numeric_limits<float>::quiet_NaN(), 100);
    document.AddPage(-5, 100);
    ScriptedContext context;
    G_DocView view(&context, &document);
    view.Widget()->show();
    for (const float percent : {1.0F, 100.0F, 6400.0F}) {
        view.SetZoom(percent, true);
        for (int page = 0; page < 4; ++page) {
            QVERIFY(!view.PageRect(page).isEmpty());
            view.GoToPage(&view, page, CCA_GRect(), false);
            QCOMPARE(view.CurrentPageIndex(), page);
        }
    }
}

void TestDocView::aColumnTooLongForItsZoomOpensSmaller()
{
    MemoryDocument document;
    for (int page = 0; page < 40000; ++page)
        document.AddPage(20000, 20000);
    ScriptedContext context;
    G_DocView view(&context, &document);
    QVERIFY(view.GetZoom() < 100); // 40,000 x 20 m do not fit into the scene's numbers at actual size
    int top = -1;
    for (int page = 0; page < 40000; page += 1000) {
        QVERIFY(view.PageRect(page).top() > top);
        top = view.PageRect(page).top();
    }
    QVERIFY(view.BoundingRect().height() > top);
}

} // namespace

TETO_TEST_MAIN(TestDocView)
#include "test_doc_view.moc"
