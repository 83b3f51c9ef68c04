#include "reader_desk.h"

#include <tests/ofd/document/document_export.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>

#include <reader/document_search.h>
#include <reader/find_bar.h>

#include <frame/document/memory_document.h>
#include <frame/operation/event_manager.h>
#include <frame/view/doc_view.h>
#include <frame/view/status_note.h>

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QSignalSpy>
#include <QToolButton>
#include <QUndoStack>
#include <QtTest>

namespace {

const QString threePages = QString::fromUtf8("page 210 297\n  layer 1 Text\n"
                                             "  text 20 30 The contract begins\n"
                                             "  text 20 40 where the Contract ends\n"
                                             "page 210 297\n  layer 1 Text\n"
                                             "  text 20 30 nothing here\n"
                                             "page 210 297\n  layer 1 Text\n"
                                             "  text 20 30 a contractor\n"
                                             "  text 20 200 合同编\n"
                                             "  text 20 210 号\n");
constexpr int manyPages = 1000;

// The window with one document, and a user's hands on its find bar.
class FindDesk
{
public:
    explicit FindDesk(const QString& description = threePages)
        : desk(false)
    {
        Open(description);
        if (!QTest::qWaitForWindowActive(Window()))
            QTest::qFail("the window is not active", __FILE__, __LINE__);
    }
    void Open(const QString& description)
    {
        const auto document = MemoryDocument::FromText(description);
        const QString path = QStringLiteral("%1/%2.ofd").arg(desk.Folder()).arg(++files);
        if (!document) {
            QTest::qFail("bad description", __FILE__, __LINE__);
            return;
        }
        ExportDocument(*document, path);
        if (!Window()->OpenFile(path))
            QTest::qFail("the file does not open", __FILE__, __LINE__);
    }
    MainWindow* Window() const { return desk.Window(); }
    G_DocView* View() const { return desk.View(); }
    DocumentSearch* Search() const { return Window()->CurrentTab()->Search(); }
    FindBar* Bar() const { return Window()->findChild<FindBar*>(); }
    QLineEdit* Box() const { return Bar()->findChild<QLineEdit*>("findText"); }
    QString State() const { return Bar()->findChild<QLabel*>("findState")->text(); }
    QWidget* Viewport() const { return qobject_cast<QAbstractScrollArea*>(View()->Widget())->viewport(); }
    void PressFind() const { QTest::keyClick(Window(), Qt::Key_F, Qt::ControlModifier); }
    // Opens the bar, types, and waits for the end of the search.
    void Find(const QString& text) const
    {
        PressFind();
        if (text.at(0).unicode() < 0x80)
            QTest::keyClicks(Box(), text);
        else
            Box()->insert(text); // as an input method does
        Wait();
    }
    void Wait() const
    {
        if (!QTest::qWaitFor([this] { return !Search()->IsSearching(); }, 20000))
            QTest::qFail("the search does not end", __FILE__, __LINE__);
    }
    int CurrentPage() const
    {
        int page = -1;
        Search()->CurrentRects(&page);
        return page;
    }
    QRect CurrentPlace() const // in the viewport
    {
        int page = -1;
        const QList<CCA_GRect> rects = Search()->CurrentRects(&page);
        const CCA_Rect rect = View()->SceneRectFromDocRect(rects.value(0), page);
        const QPoint shift = View()->VisibleSceneRect().topLeft();
        return QRect(rect.left, rect.top, rect.Width(), rect.Height()).translated(-shift);
    }
    bool IsCurrentInView() const { return Viewport()->rect().contains(CurrentPlace()); }
    QCheckBox* Choice(const QString& name) const
    {
        const QList<QCheckBox*> choices = Bar()->findChildren<QCheckBox*>();
        for (QCheckBox* choice : choices) {
            if (choice->accessibleName() == name)
                return choice;
        }
        return nullptr;
    }

    ReaderDesk desk;

private:
    int files = 0;
};

QString LongDocument()
{
    QString text;
    for (int page = 0; page < manyPages; ++page)
        text += QStringLiteral("page 210 297\n  layer 1 Text\n  text 20 30 words of page %1 of many\n").arg(page);
    return text;
}

} // namespace

// The find bar on the real window.
class TestReaderFind : public QObject
{
    Q_OBJECT
private slots:
    void ctrlFOpensTheBarAndTypingFindsTheFirstMatch();
    void enterAndF3GoOnAndShiftGoesBack();
    void pastTheEndTheSearchGoesOnFromTheBeginningAndSaysSo();
    void aTextThatIsNotThereColoursTheBox();
    void escapeClosesTheBarAndGivesTheFocusBack();
    void f3OpensTheBarAgainWithItsText();
    void f3WithoutATextOpensTheBar();
    void theSearchBeginsWhereTheUserIs();
    void theCurrentMatchComesIntoView();
    void theCurrentMatchComesIntoViewOnATurnedAndEnlargedPage();
    void oneMoreLetterStaysAtTheMatch();
    void caseAndWholeWordsNarrowTheSearch();
    void aMatchOverALineEndIsShownOnBothLines();
    void matchesAreHighlightedAndTheCurrentOneStronger();
    void theSelectedTextIsTakenOver();
    void eachTabKeepsItsOwnSearch();
    void aLongDocumentIsSearchedBetweenEvents();
    void newTypingCancelsTheSearchThatRuns();
    void goingBackWaitsForPagesThatWereNotSearchedYet();
    void closingATabDuringASearchIsSafe();
    void closingTheWindowDuringASearchIsSafe();
    void editsAndUndoDoNotDisturb();
    void changedPagesAreSearchedAnew();
    void aTextThatIsFoundTooOftenIsCut();
    void copyGivesAllOfASelectionThatIsStillBeingRead();
    void everyControlHasANameAndATooltip();
    void theMenuFollowsTheDocument();
    void theBarLooksAsItShould();
};

void TestReaderFind::ctrlFOpensTheBarAndTypingFindsTheFirstMatch()
{
    FindDesk desk;
    QVERIFY(!desk.Bar()->isVisible());
    desk.PressFind();
    QVERIFY(desk.Bar()->isVisible());
    QCOMPARE(QApplication::focusWidget(), desk.Box());
    QTest::keyClicks(desk.Box(), "contract");
    desk.Wait();
    QCOMPARE(desk.State(), QString("1 of 3"));
    QCOMPARE(desk.CurrentPage(), 0);
    QCOMPARE(desk.Search()->MatchCount(), 3);
    QCOMPARE(QApplication::focusWidget(), desk.Box());
}

void TestReaderFind::enterAndF3GoOnAndShiftGoesBack()
{
    FindDesk desk;
    desk.Find("contract");
    QTest::keyClick(desk.Box(), Qt::Key_Return);
    QCOMPARE(desk.State(), QString("2 of 3"));
    QTest::keyClick(desk.Window(), Qt::Key_F3);
    QCOMPARE(desk.State(), QString("3 of 3"));
    QCOMPARE(desk.CurrentPage(), 2);
    QTest::keyClick(desk.Box(), Qt::Key_Enter, Qt::ShiftModifier);
    QCOMPARE(desk.State(), QString("2 of 3"));
    QTest::keyClick(desk.Window(), Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(desk.State(), QString("1 of 3"));
}

void TestReaderFind::pastTheEndTheSearchGoesOnFromTheBeginningAndSaysSo()
{
    FindDesk desk;
    desk.Find("contract");
    QSignalSpy wrapped(desk.Search(), &DocumentSearch::WrappedRound);
    QTest::keyClick(desk.Box(), Qt::Key_Return, Qt::ShiftModifier);
    QCOMPARE(desk.State(), QString("3 of 3"));
    QCOMPARE(wrapped.count(), 1);
    QCOMPARE(wrapped.takeFirst().value(0).toBool(), false);
    const auto* note = desk.View()->Widget()->findChild<G_StatusNote*>();
    QVERIFY(note && note->isVisible());
    QVERIFY(note->text().contains("end"));
    QTest::keyClick(desk.Box(), Qt::Key_Return);
    QCOMPARE(desk.State(), QString("1 of 3"));
    QCOMPARE(wrapped.count(), 1);
    QCOMPARE(wrapped.takeFirst().value(0).toBool(), true);
    QTest::keyClick(desk.Box(), Qt::Key_Return);
    QCOMPARE(wrapped.count(), 0);
}

void TestReaderFind::aTextThatIsNotThereColoursTheBox()
{
    FindDesk desk;
    desk.Find("contract");
    QTest::keyClick(desk.Box(), Qt::Key_Return);
    QTest::keyClick(desk.Box(), Qt::Key_End);
    const QColor usual = desk.Box()->palette().color(QPalette::Base);
    QTest::keyClicks(desk.Box(), "xyz");
    desk.Wait();
    QCOMPARE(desk.State(), QString("No matches"));
    QVERIFY(desk.Box()->palette().color(QPalette::Base) != usual);
    QVERIFY(desk.CurrentPage() < 0);
    QTest::keyClick(desk.Box(), Qt::Key_Return); // nowhere to go
    QCOMPARE(desk.State(), QString("No matches"));
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(desk.Box(), Qt::Key_Backspace);
    desk.Wait();
    QCOMPARE(desk.State(), QString("2 of 3")); // a slip does not lead away
    QCOMPARE(desk.Box()->palette().color(QPalette::Base), usual);
    desk.Box()->clear();
    QCOMPARE(desk.State(), QString());
    QCOMPARE(desk.Box()->palette().color(QPalette::Base), usual);
    QVERIFY(!desk.Search()->IsSearching());
}

void TestReaderFind::escapeClosesTheBarAndGivesTheFocusBack()
{
    FindDesk desk;
    desk.Find("contract");
    QTest::keyClick(desk.Box(), Qt::Key_Escape);
    QVERIFY(!desk.Bar()->isVisible());
    QVERIFY(!desk.Search()->IsShown());
    QCOMPARE(QApplication::focusWidget(), desk.View()->Widget());
}

void TestReaderFind::f3OpensTheBarAgainWithItsText()
{
    FindDesk desk;
    desk.Find("contract");
    QTest::keyClick(desk.Box(), Qt::Key_Escape);
    QTest::keyClick(desk.Window(), Qt::Key_F3);
    QVERIFY(desk.Bar()->isVisible());
    QCOMPARE(desk.State(), QString("2 of 3"));
    QCOMPARE(desk.Box()->text(), QString("contract"));
    QVERIFY(desk.Search()->IsShown());
}

void TestReaderFind::f3WithoutATextOpensTheBar()
{
    FindDesk desk;
    QTest::keyClick(desk.Window(), Qt::Key_F3);
    QVERIFY(desk.Bar()->isVisible());
    QCOMPARE(QApplication::focusWidget(), desk.Box());
}

void TestReaderFind::theSearchBeginsWhereTheUserIs()
{
    FindDesk desk;
    desk.View()->GoToPage(desk.View(), 1, CCA_GRect(), false);
    desk.Find("contract");
    QCOMPARE(desk.State(), QString("3 of 3"));
    QCOMPARE(desk.CurrentPage(), 2);
}

void TestReaderFind::theCurrentMatchComesIntoView()
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

void TestReaderFind::theCurrentMatchComesIntoViewOnATurnedAndEnlargedPage()
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

void TestReaderFind::oneMoreLetterStaysAtTheMatch()
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

void TestReaderFind::caseAndWholeWordsNarrowTheSearch()
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

void TestReaderFind::aMatchOverALineEndIsShownOnBothLines()
{
    FindDesk desk;
    desk.Find(QString::fromUtf8("同编号"));
    QCOMPARE(desk.State(), QString("1 of 1"));
    QCOMPARE(desk.Search()->CurrentRects(nullptr).size(), 2);
    QVERIFY(desk.IsCurrentInView());
}

void TestReaderFind::matchesAreHighlightedAndTheCurrentOneStronger()
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

void TestReaderFind::theSelectedTextIsTakenOver()
{
    FindDesk desk;
    G_HighLightItem item;
    item.runs.append({CCA_GRect(20, 30, 40, 34), QStringLiteral("where the")});
    desk.View()->SetHighLightText({item});
    desk.PressFind();
    QCOMPARE(desk.Box()->text(), QString("where the"));
    QCOMPARE(desk.Box()->selectedText(), QString("where the"));
    desk.Wait();
    QCOMPARE(desk.State(), QString("1 of 1"));
    desk.View()->SelectAllText();
    desk.PressFind();
    QCOMPARE(desk.Box()->text(), QString("where the")); // all of it is no text to look for
}

void TestReaderFind::eachTabKeepsItsOwnSearch()
{
    FindDesk desk;
    desk.Find("contract");
    QTest::keyClick(desk.Box(), Qt::Key_Return);
    desk.Open("page 210 297\n  layer 1 Text\n  text 20 30 another page\n");
    QVERIFY(!desk.Bar()->isVisible());
    QCOMPARE(desk.Box()->text(), QString());
    desk.Find("page");
    QCOMPARE(desk.State(), QString("1 of 1"));
    desk.Choice("Match case")->setChecked(true);
    desk.Wait();
    desk.Window()->ActivateTab(0);
    QVERIFY(desk.Bar()->isVisible());
    QCOMPARE(desk.Box()->text(), QString("contract"));
    QCOMPARE(desk.State(), QString("2 of 3"));
    QVERIFY(!desk.Choice("Match case")->isChecked());
    QTest::keyClick(desk.Box(), Qt::Key_Escape);
    desk.Window()->ActivateTab(1);
    QVERIFY(desk.Bar()->isVisible());
    QCOMPARE(desk.State(), QString("1 of 1"));
    QVERIFY(desk.Choice("Match case")->isChecked());
}

void TestReaderFind::aLongDocumentIsSearchedBetweenEvents()
{
    FindDesk desk(LongDocument());
    desk.PressFind();
    desk.Box()->setText("words of page");
    QTRY_VERIFY(desk.Search()->CurrentNumber() == 1);
    QVERIFY(desk.Search()->IsSearching()); // the first match is shown long before the last is known
    QVERIFY(desk.State().endsWith(QChar(0x2026)));
    int turns = 0;
    while (desk.Search()->IsSearching()) {
        QCoreApplication::processEvents();
        ++turns;
    }
    QVERIFY2(turns > 3, qPrintable(QString::number(turns)));
    QCOMPARE(desk.State(), QString("1 of %1").arg(manyPages));
}

void TestReaderFind::newTypingCancelsTheSearchThatRuns()
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

void TestReaderFind::goingBackWaitsForPagesThatWereNotSearchedYet()
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

void TestReaderFind::closingATabDuringASearchIsSafe()
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

void TestReaderFind::closingTheWindowDuringASearchIsSafe()
{
    FindDesk desk(LongDocument());
    desk.PressFind();
    desk.Box()->setText("words");
    QTRY_VERIFY(desk.Search()->MatchCount() > 0);
    desk.desk.CloseWindow();
    QVERIFY(!desk.Window());
    QTest::qWait(50);
}

void TestReaderFind::editsAndUndoDoNotDisturb()
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

void TestReaderFind::changedPagesAreSearchedAnew()
{
    FindDesk desk;
    desk.Find("contract");
    emit desk.desk.Context()->EventMgr()->PageStructChanged(desk.View()->GDocument());
    QVERIFY(desk.Search()->IsSearching());
    desk.Wait();
    QCOMPARE(desk.Search()->MatchCount(), 3);
}

void TestReaderFind::aTextThatIsFoundTooOftenIsCut()
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

void TestReaderFind::copyGivesAllOfASelectionThatIsStillBeingRead()
{
    FindDesk desk(LongDocument());
    QGuiApplication::clipboard()->clear();
    desk.View()->Widget()->setFocus();
    QTest::keyClick(desk.Window(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(desk.Window(), Qt::Key_C, Qt::ControlModifier);
    const QString text = QGuiApplication::clipboard()->text();
    QCOMPARE(text.count('\n'), manyPages - 1);
    QVERIFY(text.endsWith("words of page 999 of many"));
}

void TestReaderFind::everyControlHasANameAndATooltip()
{
    FindDesk desk;
    desk.PressFind();
    QVERIFY(!desk.Bar()->accessibleName().isEmpty());
    QList<QWidget*> controls{desk.Box()};
    const QList<QAbstractButton*> buttons =
        desk.Bar()->findChildren<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(buttons.size(), 5);
    for (QAbstractButton* button : buttons)
        controls << button;
    for (const QWidget* control : qAsConst(controls)) {
        QVERIFY(!control->accessibleName().isEmpty());
        QVERIFY(!control->toolTip().isEmpty());
        QVERIFY(control->focusPolicy() & Qt::TabFocus);
    }
}

void TestReaderFind::theMenuFollowsTheDocument()
{
    FindDesk desk;
    const auto enabled = [&desk](const QKeySequence& keys) {
        const QList<QAction*> actions = desk.Window()->findChildren<QAction*>();
        for (const QAction* action : actions) {
            if (action->shortcut() == keys)
                return action->isEnabled() ? 1 : 0;
        }
        return -1;
    };
    const QList<QKeySequence> keys{Qt::CTRL | Qt::Key_F, Qt::Key_F3, Qt::SHIFT | Qt::Key_F3};
    for (const QKeySequence& sequence : keys)
        QCOMPARE(enabled(sequence), 1);
    QVERIFY(desk.Window()->CloseTab(0));
    for (const QKeySequence& sequence : keys)
        QCOMPARE(enabled(sequence), 0);
}

void TestReaderFind::theBarLooksAsItShould()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    QVERIFY(QTest::qWaitForWindowExposed(desk.Window()));
    QVERIFY(desk.WaitForPanes());
    QTest::keyClick(desk.Window(), Qt::Key_F, Qt::ControlModifier);
    auto* box = desk.Window()->findChild<QLineEdit*>("findText");
    auto* bar = desk.Window()->findChild<FindBar*>();
    QTest::keyClicks(box, "the");
    DocumentSearch* search = desk.Window()->CurrentTab()->Search();
    QTRY_VERIFY(!search->IsSearching());
    QVERIFY(search->MatchCount() > 0);
    QTest::keyClick(box, Qt::Key_Return);
    desk.View()->FinishRendering();
    Screens::SaveScreen(desk.Window(), "reader-find");
    const QImage found = Screens::Grab(bar);
    QTest::keyClicks(box, "xyz");
    QTRY_VERIFY(!search->IsSearching());
    Screens::SaveScreen(desk.Window(), "reader-find-missing");
    QVERIFY(Screens::Grab(bar) != found);
}

TETO_TEST_MAIN(TestReaderFind)
#include "test_reader_find.moc"
