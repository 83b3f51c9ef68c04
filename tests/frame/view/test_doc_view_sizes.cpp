// The pages of a long document are laid out before their sizes are known, and nothing jumps when they are read.
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QThread>
#include <QtTest>

#include <atomic>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <new>

namespace {

QSizeF SizeOf(int page)
{
    return page % 7 == 3 ? QSizeF(297, 420) : page % 5 == 4 ? QSizeF(100, 80) : QSizeF(210, 297);
}

// Tells sizes on any thread, when it may.
class MeasuringRenderer : public IG_PageRenderer
{
public:
    G_RenderResult RenderPage(const G_RenderRequest& request) override
    {
        G_RenderResult result;
        result.image = QImage(request.region.size(), QImage::Format_RGB32);
        result.image.fill(Qt::white);
        return result;
    }
    QSizeF PageSizeMm(int pageIndex) override
    {
        const bool isMain = QThread::currentThread() == qApp->thread();
        std::unique_lock<std::mutex> lock(mutex);
        while (!isMain && isBlocked && !isEnding)
            changed.wait(lock);
        ++(isMain ? onMain : elsewhere);
        if (!isMain && pageIndex >= starvedFrom)
            throw std::bad_alloc();
        return SizeOf(pageIndex);
    }
    void Block(bool blocked)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        isBlocked = blocked;
        changed.notify_all();
    }
    void End()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        isEnding = true;
        changed.notify_all();
    }
    int starvedFrom = std::numeric_limits<int>::max(); // memory runs out there, off the main thread
    std::atomic<int> onMain{0};
    std::atomic<int> elsewhere{0};

private:
    std::mutex mutex;
    std::condition_variable changed;
    bool isBlocked = true;
    bool isEnding = false;
};

class MeasuredDocument : public MemoryDocument
{
public:
    explicit MeasuredDocument(int pages)
    {
        for (int i = 0; i < pages; ++i)
            AddPage(SizeOf(i).width(), SizeOf(i).height());
    }
    IG_PageRenderer* Renderer() override { return &renderer; }
    QSizeF PageSizeMm(int index) override
    {
        ++asked;
        return SizeOf(index);
    }
    MeasuringRenderer renderer;
    int asked = 0;
};

struct Measured
{
    explicit Measured(int pages)
        : document(pages)
        , view(std::make_unique<G_DocView>(&context, &document))
    {
        view->Widget()->resize(600, 400);
        view->Widget()->show();
        context.SetCurrentDocView(view.get());
        ViewFixture::Settle();
    }
    ~Measured()
    {
        document.renderer.End();
        view.reset();
    }
    void ReadAll()
    {
        document.renderer.Block(false);
        const int last = document.GetPageCount() - 1;
        QTRY_VERIFY(document.renderer.elsewhere > last);
        ViewFixture::Settle();
    }
    // Where the top left corner of a page is seen.
    QPoint Place(int page) const { return view->PageRect(page).topLeft() - view->VisibleSceneRect().topLeft(); }

    MeasuredDocument document;
    ScriptedContext context;
    std::unique_ptr<G_DocView> view;
};

QSize ShownSize(const G_DocView& view, int page)
{
    const QSizeF size = SizeOf(page) * double(view.PageDisplayMatrix(0).a);
    return {qRound(size.width()), qRound(size.height())};
}

class TestDocViewSizes : public QObject
{
    Q_OBJECT
private slots:
    void openingALongDocumentAsksForTheSizesInViewAlone();
    void aShortDocumentIsMeasuredAtOnce();
    void pagesInViewHaveTheirTrueSize();
    void allSizesAreReadInTheEnd();
    void whatIsInViewStaysWhereItIsWhenSizesCome();
    void whenMemoryRunsOutSizesAreReadAsPagesComeIntoView();
    void aJumpGoesToTheTrueSizeOfItsPage();
    void fittingAFarPageFitsItsTrueSize();
    void scrollingBackIntoUnknownPagesDoesNotMoveTheOneInView();
    void closingWhileSizesAreReadWaitsForThem();
};

void TestDocViewSizes::openingALongDocumentAsksForTheSizesInViewAlone()
{
    Measured measured(2000);
    QVERIFY(measured.document.asked < 20);
    QVERIFY(measured.document.renderer.onMain < 5);
}

void TestDocViewSizes::aShortDocumentIsMeasuredAtOnce()
{
    Measured measured(30);
    for (int page = 0; page < 30; ++page)
        QCOMPARE(measured.view->PageRect(page).size(), ShownSize(*measured.view, page));
    QCOMPARE(measured.document.renderer.elsewhere.load(), 0);
}

void TestDocViewSizes::pagesInViewHaveTheirTrueSize()
{
    Measured measured(2000);
    measured.view->SetZoom(20, false);
    for (const int page : {0, 500, 1003, 1704}) {
        measured.view->GoToPage(measured.view.get(), page, CCA_GRect(), false);
        ViewFixture::Settle();
        const QRect seen = measured.view->VisibleSceneRect();
        int inView = 0;
        for (int i = page; i < page + 12; ++i) {
            if (!measured.view->PageRect(i).intersects(seen))
                continue;
            ++inView;
            QCOMPARE(measured.view->PageRect(i).size(), ShownSize(*measured.view, i));
        }
        QVERIFY(inView > 1);
    }
}

void TestDocViewSizes::allSizesAreReadInTheEnd()
{
    Measured measured(2000);
    measured.ReadAll();
    int bottom = 0;
    for (int page = 0; page < 2000; ++page) {
        const QRect rect = measured.view->PageRect(page);
        QCOMPARE(rect.size(), ShownSize(*measured.view, page));
        QCOMPARE(rect.top(), bottom + 12);
        bottom = rect.top() + rect.height();
    }
    QVERIFY(measured.document.asked < 20); // on the main thread
}

void TestDocViewSizes::whatIsInViewStaysWhereItIsWhenSizesCome()
{
    Measured measured(2000);
    measured.view->GoToPage(measured.view.get(), 1500, CCA_GRect(0, 60, 0, 60), false);
    ViewFixture::Settle();
    const int page = measured.view->CurrentPageIndex();
    const QPoint before = measured.Place(page);
    const int top = measured.view->PageRect(page).top();
    measured.ReadAll();
    QVERIFY(measured.view->PageRect(page).top() != top); // the pages above it are others than was thought
    QCOMPARE(measured.Place(page), before);
    QCOMPARE(measured.view->CurrentPageIndex(), page);
}

void TestDocViewSizes::whenMemoryRunsOutSizesAreReadAsPagesComeIntoView()
{
    Measured measured(2000);
    measured.document.renderer.starvedFrom = 700;
    measured.document.renderer.Block(false);
    QTRY_COMPARE(measured.document.renderer.elsewhere.load(), 701);
    ViewFixture::Settle();
    QCOMPARE(measured.view->PageRect(493).size(), ShownSize(*measured.view, 493));    // 493 % 7 == 3
    QVERIFY(measured.view->PageRect(1704).size() != ShownSize(*measured.view, 1704)); // 1704 % 7 == 3
    measured.view->GoToPage(measured.view.get(), 1704, CCA_GRect(), false);
    ViewFixture::Settle();
    QCOMPARE(measured.view->PageRect(1704).size(), ShownSize(*measured.view, 1704));
    QCOMPARE(measured.document.renderer.elsewhere.load(), 701); // nobody tries again and again
}

void TestDocViewSizes::aJumpGoesToTheTrueSizeOfItsPage()
{
    Measured measured(2000);
    measured.view->GoToPage(measured.view.get(), 1400, CCA_GRect(0, 200, 0, 200), false); // 1400 % 7 == 0
    QCOMPARE(measured.view->CurrentPageIndex(), 1400);
    measured.view->GoToPage(measured.view.get(), 1403, CCA_GRect(10, 400, 20, 410),
                            false); // below a common sheet's end
    const CCA_Rect place = measured.view->SceneRectFromDocRect(CCA_GRect(10, 400, 20, 410), 1403);
    QVERIFY(measured.view->VisibleSceneRect().contains(place.left, place.top));
    QCOMPARE(measured.view->PageLogicalRect(1704).size(), ShownSize(*measured.view, 1704));
}

void TestDocViewSizes::fittingAFarPageFitsItsTrueSize()
{
    Measured measured(2000);
    measured.view->SetZoomMode(G_Preferences::FitWidth);
    measured.view->GoToPage(measured.view.get(), 1403, CCA_GRect(), false);
    ViewFixture::Settle();
    QCOMPARE(measured.view->CurrentPageIndex(), 1403);
    const int room = measured.view->VisibleSceneRect().width();
    QVERIFY(qAbs(measured.view->PageRect(1403).width() + 24 - room) <= 2);
}

void TestDocViewSizes::scrollingBackIntoUnknownPagesDoesNotMoveTheOneInView()
{
    Measured measured(2000);
    measured.view->GoToPage(measured.view.get(), 1004, CCA_GRect(), false); // 1003 is larger, 1004 small
    ViewFixture::Settle();
    const int before = measured.Place(1004).y();
    measured.view->ScrollBy(0, -40);
    ViewFixture::Settle();
    QCOMPARE(measured.view->PageRect(1003).size(), ShownSize(*measured.view, 1003));
    QCOMPARE(measured.Place(1004).y(), before + 40);
}

void TestDocViewSizes::closingWhileSizesAreReadWaitsForThem()
{
    Measured measured(5000);
    measured.document.renderer.Block(false);
    QTRY_VERIFY(measured.document.renderer.elsewhere > 0);
    measured.view.reset();
    const int read = measured.document.renderer.elsewhere;
    QTest::qWait(20);
    QCOMPARE(measured.document.renderer.elsewhere.load(), read);
}

} // namespace

TETO_TEST_MAIN(TestDocViewSizes)
#include "test_doc_view_sizes.moc"
