#include "sheet_texts.h"

#include <frame/utils/dpi.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QtTest>

namespace {

// A3 pages lie on their sides, so that no row is like the one before.
const QString mixedPages = QStringLiteral("page 210 297\npage 210 297\npage 420 297\npage 210 297\npage 210 297\n");

// Rows of two pages.
class TestTwoPages : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Utils::OVDpi::Instance()->OverrideScale(1); }
    void pagesLieInRowsOfTwo();
    void noPagesOverlapAndAllLieInTheScene();
    void everyPointOfAPageBelongsToIt();
    void pointsBesidePagesBelongToTheNearest();
    void fittingFitsTheRow();
    void stepsGoFromRowToRow();
    void pageDownReachesTheLastRowAndPageUpTheFirst();
    void thePageStaysWhenTheLayoutChanges();
    void turningOffGivesTheColumnBack();
    void aSinglePageIsShown();
};

} // namespace

void TestTwoPages::pagesLieInRowsOfTwo()
{
    ViewFixture fixture(ManyPages(5));
    G_DocView* view = fixture.View();
    view->SetTwoPages(true);
    QVERIFY(view->HasTwoPages());
    for (int left = 0; left + 1 < 5; left += 2) {
        QCOMPARE(view->PageRect(left).top(), view->PageRect(left + 1).top());
        QVERIFY(view->PageRect(left).right() < view->PageRect(left + 1).left());
    }
    QVERIFY(view->PageRect(1).bottom() < view->PageRect(2).top());
    QCOMPARE(view->PageRect(4).left(), view->PageRect(0).left()); // the last one stands alone, at the left
}

void TestTwoPages::noPagesOverlapAndAllLieInTheScene()
{
    ViewFixture fixture(mixedPages);
    G_DocView* view = fixture.View();
    view->SetTwoPages(true);
    for (const int rotation : {0, 90}) {
        view->SetRotation(rotation);
        for (int a = 0; a < 5; ++a) {
            QVERIFY(view->BoundingRect().contains(view->PageRect(a)));
            for (int b = 0; b < a; ++b)
                QVERIFY(!view->PageRect(a).intersects(view->PageRect(b)));
        }
    }
}

void TestTwoPages::everyPointOfAPageBelongsToIt()
{
    ViewFixture fixture(mixedPages);
    G_DocView* view = fixture.View();
    view->SetTwoPages(true);
    for (int page = 0; page < 5; ++page) {
        const QRect rect = view->PageRect(page);
        for (const QPoint& point : {rect.topLeft(), rect.center(), rect.bottomRight()}) {
            QCOMPARE(view->PageIndexByPoint(point, false, false), page);
            int hit = -1;
            const CCA_GPoint onPage = view->DocPointFromScenePoint(CCA_Point{point.x(), point.y()}, &hit);
            QCOMPARE(hit, page);
            QVERIFY(onPage.x >= 0 && onPage.y >= 0);
        }
    }
}

void TestTwoPages::pointsBesidePagesBelongToTheNearest()
{
    ViewFixture fixture(ManyPages(3));
    G_DocView* view = fixture.View();
    view->SetTwoPages(true);
    const QRect second = view->PageRect(1);
    QCOMPARE(view->PageIndexByPoint(second.topRight() + QPoint(5, 5), false, false), -1);
    QCOMPARE(view->PageIndexByPoint(second.topRight() + QPoint(5, 5), true, false), 1);
    QCOMPARE(view->PageIndexByPoint(second.bottomLeft() + QPoint(20, 2), true, false), 1);
    QCOMPARE(view->PageIndexByPoint(view->PageRect(2).topLeft() + QPoint(20, -2), true, false), 2);
    // Where the third row has no right page, the left one is the nearest.
    QCOMPARE(view->PageIndexByPoint(QPoint(second.center().x(), view->PageRect(2).center().y()), true, false), 2);
}

void TestTwoPages::fittingFitsTheRow()
{
    ViewFixture fixture(mixedPages);
    G_DocView* view = fixture.View();
    view->SetTwoPages(true);
    view->SetZoomMode(G_Preferences::FitPage);
    for (const int page : {0, 2}) {
        view->GoToPage(view, page, CCA_GRect(), false);
        view->SetZoomMode(G_Preferences::FitPage);
        const QRect row = view->PageRect(page) | view->PageRect(page + 1);
        QVERIFY(view->VisibleSceneRect().contains(row));
    }
    view->GoToPage(view, 0, CCA_GRect(), false);
    view->SetZoomMode(G_Preferences::FitWidth);
    const QRect row = view->PageRect(0) | view->PageRect(1);
    const QRect seen = view->VisibleSceneRect();
    QVERIFY(row.left() >= seen.left() && row.right() <= seen.right());
    QVERIFY(seen.width() - row.width() < 40);
}

void TestTwoPages::stepsGoFromRowToRow()
{
    ViewFixture fixture(ManyPages(5));
    G_DocView* view = fixture.View();
    view->SetTwoPages(true);
    view->NextPage();
    QCOMPARE(view->CurrentPageIndex(), 2);
    view->NextPage();
    QCOMPARE(view->CurrentPageIndex(), 4);
    view->NextPage();
    QCOMPARE(view->CurrentPageIndex(), 4);
    view->PreviousPage();
    QCOMPARE(view->CurrentPageIndex(), 2);
    view->PreviousPage();
    view->PreviousPage();
    QCOMPARE(view->CurrentPageIndex(), 0);
}

void TestTwoPages::pageDownReachesTheLastRowAndPageUpTheFirst()
{
    ViewFixture fixture(mixedPages);
    G_DocView* view = fixture.View();
    view->SetTwoPages(true);
    view->SetZoomMode(G_Preferences::FitPage);
    for (int i = 0; i < 12; ++i)
        QTest::keyClick(view->Widget(), Qt::Key_PageDown);
    QCOMPARE(view->CurrentPageIndex(), 4);
    for (int i = 0; i < 12; ++i)
        QTest::keyClick(view->Widget(), Qt::Key_PageUp);
    QCOMPARE(view->CurrentPageIndex(), 0);
}

void TestTwoPages::thePageStaysWhenTheLayoutChanges()
{
    ViewFixture fixture(ManyPages(40));
    G_DocView* view = fixture.View();
    view->GoToPage(view, 21, CCA_GRect(), false);
    for (const bool isWanted : {true, false}) {
        view->SetTwoPages(isWanted);
        ViewFixture::Settle();
        QCOMPARE(view->CurrentPageIndex() / 2, 10); // either of the row: both are in view
        QVERIFY(view->VisibleSceneRect().intersects(view->PageRect(view->CurrentPageIndex())));
    }
}

void TestTwoPages::turningOffGivesTheColumnBack()
{
    ViewFixture fixture(mixedPages);
    G_DocView* view = fixture.View();
    QVector<QRect> before;
    for (int page = 0; page < 5; ++page)
        before << view->PageRect(page);
    view->SetTwoPages(true);
    view->SetTwoPages(false);
    QVERIFY(!view->HasTwoPages());
    for (int page = 0; page < 5; ++page)
        QCOMPARE(view->PageRect(page), before.at(page));
}

void TestTwoPages::aSinglePageIsShown()
{
    ViewFixture fixture(ManyPages(1));
    G_DocView* view = fixture.View();
    view->SetTwoPages(true);
    view->SetZoomMode(G_Preferences::FitPage);
    QCOMPARE(view->CurrentPageIndex(), 0);
    QVERIFY(view->VisibleSceneRect().contains(view->PageRect(0)));
    view->NextPage();
    view->PreviousPage();
    QCOMPARE(view->CurrentPageIndex(), 0);
}

TETO_TEST_MAIN(TestTwoPages)
#include "test_two_pages.moc"
