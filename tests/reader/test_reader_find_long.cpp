#include "find_desk.h"

#include <tests/support/test_main.h>

#include <frame/document/ig_document.h>
#include <frame/operation/event_manager.h>

#include <QClipboard>
#include <QUndoStack>
#include <QtTest>

namespace {

constexpr int manyPages = 1000;

QString LongDocument()
{
    QString text;
    for (int page = 0; page < manyPages; ++page)
        text += QStringLiteral("page 210 297\n  layer 1 Text\n  text 20 30 words of page %1 of many\n").arg(page);
    return text;
}

} // namespace

// Searches that last: long documents, and what happens to the document meanwhile.
class TestReaderFindLong : public QObject
{
    Q_OBJECT
private slots:
    void aLongDocumentIsSearchedBetweenEvents();
    void newTypingCancelsTheSearchThatRuns();
    void goingBackWaitsForPagesThatWereNotSearchedYet();
    void aMatchThatComesAfterTheBarWasClosedMovesNothing();
    void theFirstMatchIsNotPassedOverWhenTheBarWasClosedBeforeItCame();
    void closingATabDuringASearchIsSafe();
    void closingTheWindowDuringASearchIsSafe();
    void editsAndUndoDoNotDisturb();
    void changedPagesAreSearchedAnew();
    void whatIsShownDuringASearchIsFoundByTheNextOne();
    void aTextThatIsFoundTooOftenIsCut();
    void copyGivesAllOfASelectionThatIsStillBeingRead();
};

void TestReaderFindLong::aLongDocumentIsSearchedBetweenEvents()
{
    FindDesk desk(LongDocument());
    desk.PressFind();
    desk.Box()->setText("words of page");
    while (desk.Search()->CurrentNumber() != 1 && desk.Search()->IsSearching())
        QCoreApplication::processEvents(); // no waiting between: a fast machine is done within a few turns
    QCOMPARE(desk.Search()->CurrentNumber(), 1);
    QVERIFY(desk.Search()->IsSearching()); // the first match is shown long before the last is known
    QVERIFY(desk.State().endsWith(QChar(0x2026)));
    int turns = 0;
    while (desk.Search()->IsSearching()) {
        QCoreApplication::processEvents();
        ++turns;
    }
    QVERIFY2(turns > 1, qPrintable(QString::number(turns)));
    QCOMPARE(desk.State(), QString("1 of %1").arg(manyPages));
}

void TestReaderFindLong::newTypingCancelsTheSearchThatRuns()
{
    FindDesk desk(LongDocument());
    desk.PressFind();
    desk.Box()->setText("words");
    QTRY_VERIFY(desk.Search()->MatchCount() > 0);
    QVERIFY(desk.Search()->IsSearching());
    desk.Box()->setText("page 998 of");
    QCOMPARE(desk.Search()->MatchCount(), 0);
    QCOMPARE(desk.State(), QString::fromUtf8("Searching…"));
    desk.Wait();
    QCOMPARE(desk.State(), QString("1 of 1"));
    QCOMPARE(desk.CurrentPage(), 998);
    QVERIFY(desk.IsCurrentInView());
}

void TestReaderFindLong::goingBackWaitsForPagesThatWereNotSearchedYet()
{
    FindDesk desk(LongDocument());
    desk.PressFind();
    desk.Box()->setText("words");
    QTRY_VERIFY(desk.Search()->CurrentNumber() == 1);
    QVERIFY(desk.Search()->IsSearching());
    QTest::keyClick(desk.Box(), Qt::Key_Return, Qt::ShiftModifier);
    QVERIFY(desk.Search()->IsSearching());
    QCOMPARE(desk.CurrentPage(), 0);
    desk.Wait();
    QCOMPARE(desk.CurrentPage(), manyPages - 1);
    QCOMPARE(desk.State(), QString("%1 of %1").arg(manyPages));
}

void TestReaderFindLong::aMatchThatComesAfterTheBarWasClosedMovesNothing()
{
    FindDesk desk(LongDocument());
    desk.PressFind();
    desk.Box()->setText("page 998 of");
    QVERIFY(desk.Search()->IsSearching());
    QTest::keyClick(desk.Box(), Qt::Key_Escape);
    QVERIFY(!desk.Bar()->isVisible());
    const QPoint before = desk.View()->VisibleSceneRect().topLeft();
    desk.Wait();
    QCOMPARE(desk.Search()->MatchCount(), 1);
    QCOMPARE(desk.View()->VisibleSceneRect().topLeft(), before);
    QTest::keyClick(desk.Window(), Qt::Key_F3); // asked for again, it is shown
    QCOMPARE(desk.CurrentPage(), 998);
    QVERIFY(desk.IsCurrentInView());
}

void TestReaderFindLong::theFirstMatchIsNotPassedOverWhenTheBarWasClosedBeforeItCame()
{
    FindDesk desk(LongDocument());
    desk.PressFind();
    desk.Box()->setText("page 99"); // 99, 990 and those behind it
    QTest::keyClick(desk.Box(), Qt::Key_Escape);
    QTest::keyClick(desk.Window(), Qt::Key_F3); // in the middle of the search
    desk.Wait();
    QVERIFY(desk.Search()->MatchCount() > 2);
    QCOMPARE(desk.Search()->CurrentNumber(), 1);
    QVERIFY(desk.IsCurrentInView());
    desk.Box()->setText("page 98");
    QTest::keyClick(desk.Box(), Qt::Key_Escape);
    desk.Wait();
    QTest::keyClick(desk.Window(), Qt::Key_F3); // after it
    QCOMPARE(desk.CurrentPage(), 980);          // the next one from page 99 on
    QVERIFY(desk.IsCurrentInView());
    const int number = desk.Search()->CurrentNumber();
    QTest::keyClick(desk.Window(), Qt::Key_F3);
    QCOMPARE(desk.Search()->CurrentNumber(), number + 1);
}

void TestReaderFindLong::closingATabDuringASearchIsSafe()
{
    FindDesk desk;
    desk.Open(LongDocument());
    desk.PressFind();
    desk.Box()->setText("words");
    QTRY_VERIFY(desk.Search()->MatchCount() > 0);
    QVERIFY(desk.Search()->IsSearching());
    QVERIFY(desk.Window()->CloseTab(1));
    QVERIFY(!desk.Bar()->isVisible());
    QTest::qWait(50);
    desk.Find("contract");
    QCOMPARE(desk.State(), QString("1 of 3"));
    QVERIFY(desk.Window()->CloseTab(0));
    QVERIFY(!desk.Bar()->isVisible());
    desk.PressFind(); // nothing is open
    QTest::keyClick(desk.Window(), Qt::Key_F3);
    QVERIFY(!desk.Bar()->isVisible());
}

void TestReaderFindLong::closingTheWindowDuringASearchIsSafe()
{
    FindDesk desk(LongDocument());
    desk.PressFind();
    desk.Box()->setText("words");
    QTRY_VERIFY(desk.Search()->MatchCount() > 0);
    desk.desk.CloseWindow();
    QVERIFY(!desk.Window());
    QTest::qWait(50);
}

void TestReaderFindLong::editsAndUndoDoNotDisturb()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    QVERIFY(desk.WaitForPanes());
    DocumentSearch* search = desk.Window()->CurrentTab()->Search();
    QTest::keyClick(desk.Window(), Qt::Key_F, Qt::ControlModifier);
    auto* box = desk.Window()->findChild<QLineEdit*>("findText");
    QTest::keyClicks(box, "e");
    QTRY_VERIFY(!search->IsSearching());
    const int count = search->MatchCount();
    QVERIFY(count > 1);
    search->GoToNext();
    const int number = search->CurrentNumber();
    QVERIFY(desk.Context()->PerformOperation("d_addbookmark", QString()));
    desk.View()->UndoStack()->undo();
    desk.View()->UndoStack()->redo();
    QCoreApplication::processEvents();
    QCOMPARE(search->MatchCount(), count);
    QCOMPARE(search->CurrentNumber(), number);
    QVERIFY(search->IsShown());
    search->GoToNext();
    QCOMPARE(search->CurrentNumber(), number + 1);
}

void TestReaderFindLong::changedPagesAreSearchedAnew()
{
    FindDesk desk;
    desk.Find("contract");
    emit desk.desk.Context()->EventMgr()->PageStructChanged(desk.View()->GDocument());
    QVERIFY(desk.Search()->IsSearching());
    desk.Wait();
    QCOMPARE(desk.Search()->MatchCount(), 3);
}

void TestReaderFindLong::whatIsShownDuringASearchIsFoundByTheNextOne()
{
    FindDesk desk(LongDocument());
    IG_Page* page = desk.View()->GDocument()->GetPage(10);
    QVERIFY(page && page->Load());
    page->GetLayerAt(0)->SetVisible(false);
    desk.PressFind();
    desk.Box()->setText("absent");
    QTRY_VERIFY(desk.Search()->IsSearching());
    QCoreApplication::processEvents();
    QThread::msleep(200); // the next pages are read ahead, this one without its text
    page->GetLayerAt(0)->SetVisible(true);
    desk.Wait();
    desk.Find("page 10 of");
    QCOMPARE(desk.State(), QString("1 of 1"));
}

void TestReaderFindLong::aTextThatIsFoundTooOftenIsCut()
{
    const QString line = QStringLiteral("  text 5 %1 ") + QString(100, 'a') + "\n";
    QString page = "page 210 297\n  layer 1 Text\n";
    for (int i = 0; i < 25; ++i)
        page += line.arg(10 * i + 5);
    FindDesk desk(page.repeated(9));
    desk.Find("a");
    QCOMPARE(desk.Search()->MatchCount(), int(DocumentSearch::maxMatches));
    QVERIFY(desk.State().endsWith('+'));
    QTest::keyClick(desk.Box(), Qt::Key_Return, Qt::ShiftModifier); // round the cut end
    QCOMPARE(desk.Search()->CurrentNumber(), int(DocumentSearch::maxMatches));
}

void TestReaderFindLong::copyGivesAllOfASelectionThatIsStillBeingRead()
{
    FindDesk desk(LongDocument());
    QGuiApplication::clipboard()->clear();
    desk.View()->Widget()->setFocus();
    QTest::keyClick(desk.Window(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(desk.Window(), Qt::Key_C, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(QGuiApplication::clipboard()->text().count('\n'), manyPages - 1, 20'000);
    const QString text = QGuiApplication::clipboard()->text();
    QVERIFY(text.startsWith("words of page 0 of many\n"));
    QVERIFY(text.endsWith("words of page 999 of many"));
}

TETO_TEST_MAIN(TestReaderFindLong)
#include "test_reader_find_long.moc"
