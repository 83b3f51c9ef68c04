#include "reader_desk.h"

#include <tests/ofd/document/ofd_file.h>
#include <tests/support/test_main.h>

#include <reader/view_history.h>

#include <frame/document/destination.h>
#include <frame/document/ig_document.h>
#include <frame/document/memory_document.h>
#include <frame/operation/event_manager.h>
#include <frame/view/doc_view.h>
#include <frame/view/go_to_dest.h>

#include <QtTest>

namespace {

// A document of 40 pages in the window, and ways to jump about in it.
class HistoryDesk
{
public:
    HistoryDesk()
        : desk(false)
    {
        desk.Window()->OpenFile(OfdFile::WithPages(40).Write(desk.Folder() + "/long.ofd"));
    }
    G_DocView* View() const { return desk.View(); }
    ViewHistory* History() const { return desk.Window()->CurrentTab()->History(); }
    int Top() const { return View()->VisibleSceneRect().top(); }
    void Jump(int page) const { View()->GoToPage(nullptr, page, CCA_GRect(), false); }
    // As links, bookmarks and outline entries jump. Mode 0 and zoom 0 leave the zoom as it is.
    bool Follow(int page, int zoomMode, float zoom = 0) const
    {
        G_Dest dest;
        dest.pageIndex = page;
        dest.zoomMode = zoomMode;
        dest.zoom = zoom;
        return GoToDest(View(), dest, false);
    }

    ReaderDesk desk;
};

constexpr int fitPage = 1;

} // namespace

// What back and forward bring back: page, place, and a zoom that a jump changed.
class TestReaderHistory : public QObject
{
    Q_OBJECT
private slots:
    void backBringsTheZoomThatADestinationChanged();
    void backBringsAFittingModeThatADestinationChanged();
    void backKeepsAZoomThatTheUserChose();
    void aDestinationThatZoomsCountsAsOneJump();
    void aDestinationThatOnlyZoomsIsAJump();
    void placesOnPagesThatWentArePassedOver();
    void aDocumentThatWasJustOpenedHasNowhereToGoBack();
};

void TestReaderHistory::backBringsTheZoomThatADestinationChanged()
{
    HistoryDesk desk;
    desk.View()->SetZoom(80, false);
    desk.Jump(3);
    desk.View()->ScrollBy(0, 37);
    const int top = desk.Top();
    const int page = desk.View()->CurrentPageIndex();
    QVERIFY(desk.Follow(20, 0, 2));
    QCOMPARE(desk.View()->GetZoom(), 200.0F);
    desk.History()->GoBack();
    QCOMPARE(desk.View()->GetZoom(), 80.0F);
    QCOMPARE(desk.View()->CurrentPageIndex(), page);
    QVERIFY(qAbs(desk.Top() - top) <= 1);
    desk.History()->GoForward();
    QCOMPARE(desk.View()->GetZoom(), 200.0F);
    QCOMPARE(desk.View()->CurrentPageIndex(), 20);
}

void TestReaderHistory::backBringsAFittingModeThatADestinationChanged()
{
    HistoryDesk desk;
    desk.View()->SetZoomMode(G_Preferences::FitWidth);
    desk.Jump(5);
    const float percent = desk.View()->GetZoom();
    QVERIFY(desk.Follow(20, fitPage));
    QCOMPARE(desk.View()->ZoomMode(), G_Preferences::FitPage);
    QVERIFY(desk.View()->GetZoom() < percent);
    desk.History()->GoBack();
    QCOMPARE(desk.View()->ZoomMode(), G_Preferences::FitWidth);
    QCOMPARE(desk.View()->GetZoom(), percent);
    QCOMPARE(desk.View()->CurrentPageIndex(), 5);
    desk.History()->GoForward();
    QCOMPARE(desk.View()->ZoomMode(), G_Preferences::FitPage);
    QCOMPARE(desk.View()->CurrentPageIndex(), 20);
}

void TestReaderHistory::backKeepsAZoomThatTheUserChose()
{
    HistoryDesk desk;
    desk.View()->SetZoom(80, false);
    desk.Jump(10);
    desk.View()->SetZoom(120, false);
    desk.History()->GoBack();
    QCOMPARE(desk.View()->CurrentPageIndex(), 0);
    QCOMPARE(desk.View()->GetZoom(), 120.0F);
}

void TestReaderHistory::aDestinationThatZoomsCountsAsOneJump()
{
    HistoryDesk desk;
    desk.View()->SetZoom(80, false);
    QSignalSpy jumps(desk.View(), &G_DocView::Jumping);
    QVERIFY(desk.Follow(20, 0, 2));
    QCOMPARE(jumps.size(), 1);
    desk.History()->GoBack();
    QVERIFY(!desk.History()->CanGoBack());
    jumps.clear();
    desk.Jump(7);
    QCOMPARE(jumps.size(), 1);
}

void TestReaderHistory::aDestinationThatOnlyZoomsIsAJump()
{
    HistoryDesk desk;
    desk.View()->SetZoom(80, false);
    desk.Jump(10);
    QVERIFY(desk.Follow(10, 0, 2));
    QCOMPARE(desk.View()->GetZoom(), 200.0F);
    desk.History()->GoBack();
    QCOMPARE(desk.View()->GetZoom(), 80.0F);
    QCOMPARE(desk.View()->CurrentPageIndex(), 10);
    desk.History()->GoBack();
    QCOMPARE(desk.View()->CurrentPageIndex(), 0);
}

void TestReaderHistory::placesOnPagesThatWentArePassedOver()
{
    G_UIContext context;
    const auto document = MemoryDocument::FromText("page 210 297\npage 210 297\npage 210 297\npage 210 297\n");
    G_DocView view(&context, document.get());
    ViewHistory history(&view);
    for (const int page : {1, 3, 0})
        view.GoToPage(nullptr, page, CCA_GRect(), false);
    QVERIFY(document->RemovePage(3));
    emit context.EventMgr()->PageStructChanged(document.get());
    history.GoBack();
    QCOMPARE(view.CurrentPageIndex(), 1);
}

void TestReaderHistory::aDocumentThatWasJustOpenedHasNowhereToGoBack()
{
    HistoryDesk desk;
    QVERIFY(!desk.History()->CanGoBack());
    desk.Jump(17);
    const QString path = desk.desk.Window()->CurrentTab()->Path();
    QVERIFY(desk.desk.Window()->CloseTab(0));
    QVERIFY(desk.desk.Window()->OpenFile(path));
    QCOMPARE(desk.View()->CurrentPageIndex(), 17); // brought there, and no jump of the user
    QVERIFY(!desk.History()->CanGoBack());
}

TETO_TEST_MAIN(TestReaderHistory)
#include "test_reader_history.moc"
