#include "find_desk.h"

#include <tests/support/screens.h>
#include <tests/support/test_main.h>

#include <frame/view/status_note.h>

#include <QAbstractButton>
#include <QAction>
#include <QSignalSpy>
#include <QtTest>

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
    void theSelectedTextIsTakenOver();
    void eachTabKeepsItsOwnSearch();
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
