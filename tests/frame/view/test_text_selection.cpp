// Text selected by the mouse and by calls.
#include <tests/support/drag.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QClipboard>
#include <QSignalSpy>
#include <QtTest>

namespace {

const QString twoPages = QStringLiteral("page 210 297\n"
                                        "  text 20 30 First line here\n"
                                        "  text 20 40 second line\n"
                                        "  text 20 280 last of one\n"
                                        "page 210 297\n"
                                        "  text 20 20 top of two\n"
                                        "  text 20 30 more of two\n"
                                        "page 210 297\n");

constexpr int longCount = 3000;
const QString longText = QStringLiteral("page 210 297\n  text 20 30 words of a page\n").repeated(longCount);

class Selecting
{
public:
    Selecting()
        : fixture(twoPages, QSize(900, 700))
        , view(fixture.View())
    {
        view->SetZoom(50, false);
        view->SetCurrentToolHandler(view->ToolHandlerByName("t_textselect"));
        ViewFixture::Settle();
    }
    // Viewport position of a page's point in mm.
    QPoint At(int page, float x, float y) const
    {
        const CCA_Point scene = view->ScenePointFromDocPoint({x, y}, page);
        return QPoint(scene.x, scene.y) - view->VisibleSceneRect().topLeft();
    }
    QWidget* Viewport() const { return ViewFixture::Viewport(view); }
    ViewFixture fixture;
    G_DocView* view;
};

QStringList Texts(const QList<G_HighLightItem>& items)
{
    QStringList texts;
    for (const G_HighLightItem& item : items) {
        for (const G_TextRun& run : item.runs)
            texts.append(QStringLiteral("%1:%2").arg(item.pageIndex).arg(run.text));
    }
    return texts;
}

class TestTextSelection : public QObject
{
    Q_OBJECT
private slots:
    void aDragSelectsPartOfALine();
    void aDragAcrossTwoPagesSelectsOneItemAPage();
    void draggingUpwardsSelectsTheSame();
    void aDoubleClickSelectsTheWord();
    void aClickClearsTheSelection();
    void copyingGivesTheTextInOrder();
    void piecesSideBySideAreCopiedWithTabsBetween();
    void aDoubleClickSelectsNothingBesideTheText();
    void allTextIsSelectedPageByPageWithoutKeepingPagesLoaded();
    void theSelectionIsPainted();
    void pagesAreReleasedWhenTheButtonIsLetGo();
    void aPageThatFailsIsPassedOver();
    void aLongDocumentIsSelectedInSlices();
    void anotherSelectionEndsTheSelectingOfAll();
    void aDragHeldBeyondTheEdgeGoesOn();
    void aClickWithShiftMovesTheEnd();
    void aClickWithShiftFarAwaySelectsInSlices();
    void escapeClearsTheSelection();
    void changingTheToolInTheMiddleEndsTheSelecting();
};

void TestTextSelection::aDragSelectsPartOfALine()
{
    Selecting selecting;
    QSignalSpy spy(selecting.view, &G_DocView::SelectionChanged);
    Drag::MouseDrag(selecting.Viewport(), selecting.At(0, 20, 32), selecting.At(0, 30, 32)); // 2 mm a character
    const QList<G_HighLightItem> items = selecting.view->SelectHighLightText();
    QCOMPARE(Texts(items), QStringList{"0:First"});
    QVERIFY(items.first().runs.first().rect.left >= 19);
    QVERIFY(spy.count() >= 1);
}

void TestTextSelection::aDragAcrossTwoPagesSelectsOneItemAPage()
{
    Selecting selecting;
    selecting.view->ScrollBy(0, 200);
    Drag::MouseDrag(selecting.Viewport(), selecting.At(0, 20, 282), selecting.At(1, 150, 22));
    const QList<G_HighLightItem> items = selecting.view->SelectHighLightText();
    QCOMPARE(items.size(), 2);
    QCOMPARE(Texts(items), (QStringList{"0:last of one", "1:top of two"}));
}

void TestTextSelection::draggingUpwardsSelectsTheSame()
{
    Selecting selecting;
    selecting.view->ScrollBy(0, 200);
    Drag::MouseDrag(selecting.Viewport(), selecting.At(1, 150, 22), selecting.At(0, 20, 282));
    QCOMPARE(Texts(selecting.view->SelectHighLightText()), (QStringList{"0:last of one", "1:top of two"}));
}

void TestTextSelection::aDoubleClickSelectsTheWord()
{
    Selecting selecting;
    QTest::mouseDClick(selecting.Viewport(), Qt::LeftButton, Qt::NoModifier, selecting.At(0, 35, 32));
    QCOMPARE(Texts(selecting.view->SelectHighLightText()), QStringList{"0:line"});
    const CCA_GRect rect = selecting.view->SelectHighLightText().first().runs.first().rect;
    QVERIFY(qAbs(rect.left - 32) < 0.1); // behind "First "
    QVERIFY(qAbs(rect.right - 40) < 0.1);
}

void TestTextSelection::aClickClearsTheSelection()
{
    Selecting selecting;
    selecting.view->SelectAllText();
    QVERIFY(!selecting.view->SelectHighLightText().isEmpty());
    QTest::mouseClick(selecting.Viewport(), Qt::LeftButton, Qt::NoModifier, selecting.At(0, 100, 200));
    QVERIFY(selecting.view->SelectHighLightText().isEmpty());
}

void TestTextSelection::copyingGivesTheTextInOrder()
{
    Selecting selecting;
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(selecting.view->Widget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(selecting.view->Widget(), Qt::Key_C, Qt::ControlModifier);
    const QString expected = QStringLiteral("First line here\nsecond line\nlast of one\ntop of two\nmore of two");
    QCOMPARE(selecting.view->SelectedText(), expected);
    QCOMPARE(QGuiApplication::clipboard()->text(), expected);
}

void TestTextSelection::piecesSideBySideAreCopiedWithTabsBetween()
{
    ViewFixture fixture("page 210 297\n  text 20 30 Name\n  text 80 30 Count\n  text 20 40 Paper\n  text 80 40 12\n");
    fixture.View()->SelectAllText();
    QCOMPARE(fixture.View()->SelectedText(), QStringLiteral("Name\tCount\nPaper\t12"));
}

void TestTextSelection::aDoubleClickSelectsNothingBesideTheText()
{
    Selecting selecting;
    QTest::mouseDClick(selecting.Viewport(), Qt::LeftButton, Qt::NoModifier, selecting.At(0, 150, 100));
    QVERIFY(selecting.view->SelectHighLightText().isEmpty());
}

void TestTextSelection::allTextIsSelectedPageByPageWithoutKeepingPagesLoaded()
{
    Selecting selecting;
    selecting.view->SelectAllText();
    QCOMPARE(selecting.view->SelectHighLightText().size(), 2); // the third page has no text
    QCOMPARE(selecting.fixture.Document()->LoadedPageCount(), 0);
    selecting.view->SetHighLightText({});
    QVERIFY(selecting.view->SelectHighLightText().isEmpty());
}

void TestTextSelection::theSelectionIsPainted()
{
    Selecting selecting;
    selecting.view->FinishRendering();
    const QPoint place = selecting.At(0, 21, 33);
    const QImage before = Screens::Grab(selecting.Viewport());
    selecting.view->SelectAllText();
    const QImage after = Screens::Grab(selecting.Viewport());
    QVERIFY(before.pixelColor(place) != after.pixelColor(place));
    const QPoint elsewhere = selecting.At(0, 150, 150);
    QCOMPARE(before.pixelColor(elsewhere), after.pixelColor(elsewhere));
}

void TestTextSelection::pagesAreReleasedWhenTheButtonIsLetGo()
{
    Selecting selecting;
    QTest::mousePress(selecting.Viewport(), Qt::LeftButton, Qt::NoModifier, selecting.At(0, 20, 32));
    QMouseEvent move(QEvent::MouseMove, selecting.At(0, 40, 32), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(selecting.Viewport(), &move);
    QCOMPARE(selecting.fixture.Document()->LoadedPageCount(), 1);
    selecting.fixture.Document()->ReleasePage(0, 0); // somebody else lets it go in between
    QApplication::sendEvent(selecting.Viewport(), &move);
    QVERIFY(!selecting.view->SelectHighLightText().isEmpty());
    QTest::mouseRelease(selecting.Viewport(), Qt::LeftButton, Qt::NoModifier, selecting.At(0, 40, 32));
    QCOMPARE(selecting.fixture.Document()->LoadedPageCount(), 0);
}

void TestTextSelection::aPageThatFailsIsPassedOver()
{
    Selecting selecting;
    selecting.fixture.Document()->SetPageFailure(0, true);
    selecting.view->SelectAllText();
    QCOMPARE(Texts(selecting.view->SelectHighLightText()), (QStringList{"1:top of two", "1:more of two"}));
    Drag::MouseDrag(selecting.Viewport(), selecting.At(0, 20, 32), selecting.At(0, 30, 32));
    QVERIFY(selecting.view->SelectHighLightText().isEmpty());
}

void TestTextSelection::aLongDocumentIsSelectedInSlices()
{
    ViewFixture fixture(longText);
    G_DocView* view = fixture.View();
    QSignalSpy spy(view, &G_DocView::SelectionChanged);
    view->SelectAllText();
    const int atOnce = view->SelectHighLightText().size();
    QVERIFY(atOnce >= 20);
    QTRY_COMPARE(view->SelectHighLightText().size(), longCount);
    QCOMPARE(view->SelectHighLightText().last().pageIndex, longCount - 1);
    QCOMPARE(fixture.Document()->LoadedPageCount(), 0);
    view->SelectAllText();
    QCOMPARE(view->SelectedText().count(QLatin1Char('\n')), longCount - 1); // a copy is never half of it
    QCOMPARE(view->SelectHighLightText().size(), longCount);
}

void TestTextSelection::anotherSelectionEndsTheSelectingOfAll()
{
    ViewFixture fixture(longText);
    G_DocView* view = fixture.View();
    view->SelectAllText();
    view->SetHighLightText({});
    for (int turn = 0; turn < 20; ++turn)
        ViewFixture::Settle();
    QVERIFY(view->SelectHighLightText().isEmpty());
}

void TestTextSelection::aDragHeldBeyondTheEdgeGoesOn()
{
    ViewFixture fixture(longText, QSize(900, 400));
    G_DocView* view = fixture.View();
    view->SetCurrentToolHandler(view->ToolHandlerByName("t_textselect"));
    QWidget* viewport = ViewFixture::Viewport(view);
    const CCA_Point from = view->ScenePointFromDocPoint({20, 32}, 0);
    const QPoint origin = view->VisibleSceneRect().topLeft();
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, QPoint(from.x, from.y) - origin);
    QMouseEvent move(QEvent::MouseMove, QPointF(300, 430), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &move); // and then the mouse rests
    QTRY_VERIFY(view->SelectHighLightText().size() >= 2);
    QVERIFY(view->VisibleSceneRect().top() > origin.y());
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, QPoint(300, 430));
    const QRect resting = view->VisibleSceneRect();
    QTest::qWait(150);
    QCOMPARE(view->VisibleSceneRect(), resting);
    QCOMPARE(fixture.Document()->LoadedPageCount(), 0);
}

void TestTextSelection::aClickWithShiftMovesTheEnd()
{
    Selecting selecting;
    Drag::MouseDrag(selecting.Viewport(), selecting.At(0, 20, 32), selecting.At(0, 30, 32));
    QTest::mouseClick(selecting.Viewport(), Qt::LeftButton, Qt::ShiftModifier, selecting.At(0, 40, 32));
    QCOMPARE(Texts(selecting.view->SelectHighLightText()), QStringList{"0:First line"});
    QTest::mouseClick(selecting.Viewport(), Qt::LeftButton, Qt::ShiftModifier, selecting.At(0, 32, 42));
    QCOMPARE(Texts(selecting.view->SelectHighLightText()), (QStringList{"0:First line here", "0:second"}));
    QCOMPARE(selecting.fixture.Document()->LoadedPageCount(), 0);
}

void TestTextSelection::aClickWithShiftFarAwaySelectsInSlices()
{
    ViewFixture fixture(longText, QSize(900, 700));
    G_DocView* view = fixture.View();
    view->SetCurrentToolHandler(view->ToolHandlerByName("t_textselect"));
    const auto at = [view](int page, float x, float y) {
        const CCA_Point scene = view->ScenePointFromDocPoint({x, y}, page);
        return QPoint(scene.x, scene.y) - view->VisibleSceneRect().topLeft();
    };
    view->GoToPage(view, 1, CCA_GRect(), false);
    Drag::MouseDrag(ViewFixture::Viewport(view), at(1, 32, 32), at(1, 40, 32)); // behind "words "
    const int last = longCount - 2;
    view->GoToPage(view, last, CCA_GRect(), false);
    QTest::mouseClick(ViewFixture::Viewport(view), Qt::LeftButton, Qt::ShiftModifier, at(last, 30, 32));
    QCOMPARE(fixture.Document()->LoadedPageCount(), 0);
    QTRY_COMPARE(view->SelectHighLightText().size(), last);
    const QStringList texts = Texts(view->SelectHighLightText());
    QCOMPARE(texts.first(), QStringLiteral("1:of a page"));
    QCOMPARE(texts.at(1), QStringLiteral("2:words of a page"));
    QCOMPARE(texts.last(), QStringLiteral("%1:words").arg(last));
}

void TestTextSelection::escapeClearsTheSelection()
{
    Selecting selecting;
    selecting.view->SelectAllText();
    QTest::keyClick(selecting.view->Widget(), Qt::Key_Escape);
    QVERIFY(selecting.view->SelectHighLightText().isEmpty());
}

void TestTextSelection::changingTheToolInTheMiddleEndsTheSelecting()
{
    Selecting selecting;
    QTest::mousePress(selecting.Viewport(), Qt::LeftButton, Qt::NoModifier, selecting.At(0, 20, 32));
    QMouseEvent move(QEvent::MouseMove, selecting.At(0, 40, 32), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(selecting.Viewport(), &move);
    const QStringList selected = Texts(selecting.view->SelectHighLightText());
    selecting.view->SetCurrentToolHandler(selecting.view->ToolHandlerByName("t_handtool"));
    QCOMPARE(selecting.fixture.Document()->LoadedPageCount(), 0);
    selecting.view->SetCurrentToolHandler(selecting.view->ToolHandlerByName("t_textselect"));
    QApplication::sendEvent(selecting.Viewport(), &move);
    QCOMPARE(Texts(selecting.view->SelectHighLightText()), selected);
}

} // namespace

TETO_TEST_MAIN(TestTextSelection)
#include "test_text_selection.moc"
