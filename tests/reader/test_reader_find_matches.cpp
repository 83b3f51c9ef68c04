#include "find_desk.h"

#include <tests/support/screens.h>
#include <tests/support/test_main.h>

#include <QtTest>

// Which matches are found, and how they are shown.
class TestReaderFindMatches : public QObject
{
    Q_OBJECT
private slots:
    void theSearchBeginsWhereTheUserIs();
    void theCurrentMatchComesIntoView();
    void theCurrentMatchComesIntoViewOnATurnedAndEnlargedPage();
    void oneMoreLetterStaysAtTheMatch();
    void caseAndWholeWordsNarrowTheSearch();
    void aMatchOverALineEndIsShownOnBothLines();
    void matchesAreHighlightedAndTheCurrentOneStronger();
};

void TestReaderFindMatches::theSearchBeginsWhereTheUserIs()
{
    FindDesk desk;
    desk.View()->GoToPage(desk.View(), 1, CCA_GRect(), false);
    desk.Find("contract");
    QCOMPARE(desk.State(), QString("3 of 3"));
    QCOMPARE(desk.CurrentPage(), 2);
}

void TestReaderFindMatches::theCurrentMatchComesIntoView()
{
    FindDesk desk;
    desk.View()->SetZoom(150, false);
    desk.View()->GoToPage(desk.View(), 0, CCA_GRect(), false);
    desk.Find(QString::fromUtf8("合同"));
    QCOMPARE(desk.CurrentPage(), 2);
    QVERIFY(desk.IsCurrentInView());
    const QRect before = desk.View()->VisibleSceneRect();
    QTest::keyClick(desk.Box(), Qt::Key_Return); // the only one: nothing moves
    QCOMPARE(desk.View()->VisibleSceneRect(), before);
}

void TestReaderFindMatches::theCurrentMatchComesIntoViewOnATurnedAndEnlargedPage()
{
    FindDesk desk;
    for (const int degrees : {90, 180, 270}) {
        desk.View()->SetRotation(degrees);
        desk.View()->SetZoom(400, false);
        desk.View()->GoToPage(desk.View(), 1, CCA_GRect(), false);
        desk.PressFind();
        desk.Box()->clear();
        desk.Find("contractor");
        QCOMPARE(desk.CurrentPage(), 2);
        QVERIFY(desk.IsCurrentInView());
    }
}

void TestReaderFindMatches::oneMoreLetterStaysAtTheMatch()
{
    FindDesk desk;
    desk.Find("cont");
    QTest::keyClick(desk.Box(), Qt::Key_Return);
    QCOMPARE(desk.State(), QString("2 of 3"));
    QTest::keyClick(desk.Box(), Qt::Key_End);
    QTest::keyClicks(desk.Box(), "ract");
    desk.Wait();
    QCOMPARE(desk.State(), QString("2 of 3"));
    QTest::keyClicks(desk.Box(), "o");
    desk.Wait();
    QCOMPARE(desk.State(), QString("1 of 1"));
    QCOMPARE(desk.CurrentPage(), 2);
}

void TestReaderFindMatches::caseAndWholeWordsNarrowTheSearch()
{
    FindDesk desk;
    desk.Find("Contract");
    QCheckBox* matchCase = desk.Choice("Match case");
    QCheckBox* wholeWords = desk.Choice("Whole words");
    QVERIFY(matchCase && wholeWords);
    QTest::keyClick(matchCase, Qt::Key_Space);
    desk.Wait();
    QCOMPARE(desk.State(), QString("1 of 1"));
    QTest::keyClick(matchCase, Qt::Key_Space);
    QTest::keyClick(wholeWords, Qt::Key_Space);
    desk.Wait();
    QCOMPARE(desk.Search()->MatchCount(), 2);
    QTest::keyClick(wholeWords, Qt::Key_Space);
    desk.Wait();
    QCOMPARE(desk.Search()->MatchCount(), 3);
}

void TestReaderFindMatches::aMatchOverALineEndIsShownOnBothLines()
{
    FindDesk desk;
    desk.Find(QString::fromUtf8("同编号"));
    QCOMPARE(desk.State(), QString("1 of 1"));
    QCOMPARE(desk.Search()->CurrentRects(nullptr).size(), 2);
    QVERIFY(desk.IsCurrentInView());
}

void TestReaderFindMatches::matchesAreHighlightedAndTheCurrentOneStronger()
{
    FindDesk desk;
    desk.View()->SetZoom(100, false);
    desk.View()->GoToPage(desk.View(), 0, CCA_GRect(), false);
    desk.Find("contract");
    desk.View()->FinishRendering();
    const auto cornerOf = [&desk] { return desk.CurrentPlace().topLeft() + QPoint(1, 1); };
    const QPoint first = cornerOf();
    const QImage atFirst = Screens::Grab(desk.Viewport());
    QTest::keyClick(desk.Box(), Qt::Key_Return);
    const QPoint second = cornerOf();
    const QImage atSecond = Screens::Grab(desk.Viewport());
    QVERIFY(first != second);
    QTest::keyClick(desk.Box(), Qt::Key_Escape);
    const QImage closed = Screens::Grab(desk.Viewport());
    QVERIFY(atFirst.pixelColor(first) != atFirst.pixelColor(second));
    QCOMPARE(atFirst.pixelColor(first), atSecond.pixelColor(second));
    QCOMPARE(atFirst.pixelColor(second), atSecond.pixelColor(first));
    QVERIFY(closed.pixelColor(first) != atSecond.pixelColor(first));
    QVERIFY(closed.pixelColor(second) != atFirst.pixelColor(second));
}

TETO_TEST_MAIN(TestReaderFindMatches)
#include "test_reader_find_matches.moc"
