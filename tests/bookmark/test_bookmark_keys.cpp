#include "pane_desk.h"

#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <tests/support/drag.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/undo_verbs.h>
#include <tests/support/unscaled_test.h>

#include <frame/operation/event_manager.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QScrollBar>
#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

class TestBookmarkKeys : public UnscaledTest
{
    Q_OBJECT
private slots:
    // Keys
    void enterGoesToTheBookmarkAsAClickDoes();
    void f2OpensTheEditorOfTheCurrentRow();
    void f2WithoutACurrentRowDoesNothing();
    void deleteRemovesTheSelectionAndGoesOnWithTheNextRow();
    void deleteWithoutASelectionTellsSo();
    void thePaneMayDieWhileDeleteTellsSo();
    void altUpAndDownMoveTheSelectionByOneRow();
    void altUpGathersScatteredRowsAsOneBlock();
    void altUpAtTheTopAndAltDownAtTheBottomDoNothing();
    void altArrowsDoNothingWhereEditingIsNotAllowed();
    void theMenuKeyOpensTheMenuAtTheCurrentRowAlsoWhenItIsScrolledAway();
    void theTabKeyEndsAnEditWithoutOpeningAnotherRow();
    // Geometry
    void wrappedRowsAreMeasuredAnewAtAnotherWidth();
    void switchingWordWrapChangesTheRowHeightAndBack();
    // The whole way
    void addingRenamingAndDraggingWithRealEventsUndoesAndRedoesCompletely();
};

void TestBookmarkKeys::enterGoesToTheBookmarkAsAClickDoes()
{
    PaneDesk desk(QStringLiteral("page 210 297\npage 210 297\npage 210 297\n"
                                 "bookmark \"A\" page=1 zoom=1\nbookmark \"B\" page=3 rect=0,0,9,9 zoom=2"));
    const DeskTab* tab = desk.First();
    tab->Tree()->setFocus();
    tab->Tree()->setCurrentItem(tab->Tree()->topLevelItem(0));
    QTest::keyClick(tab->Tree(), Qt::Key_Down);
    QCOMPARE(tab->view->CurrentPageIndex(), 0);
    const EventProbe probe(desk.Context()->EventMgr());
    QTest::keyClick(tab->Tree(), Qt::Key_Return);
    QCOMPARE(tab->view->CurrentPageIndex(), 2);
    QCOMPARE(tab->view->GetZoom(), 200.0F);
    QCOMPARE(probe.Count(152), 1);
    QCOMPARE(tab->SelectedRows(), QList<int>{1});
    QTest::keyClick(tab->Tree(), Qt::Key_Up);
    QTest::keyClick(tab->Tree(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(tab->view->CurrentPageIndex(), 0);
}

void TestBookmarkKeys::f2OpensTheEditorOfTheCurrentRow()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    tab->Select({1});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QVERIFY(tab->Editor());
    QTest::keyClicks(tab->Editor(), QStringLiteral("renamed"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"A", "renamed", "C"}));
    QCOMPARE(tab->Tree()->currentIndex().row(), 1); // the keyboard goes on from there
}

void TestBookmarkKeys::f2WithoutACurrentRowDoesNothing()
{
    PaneDesk desk(DocumentWithBookmarks(0));
    QTest::keyClick(desk.First()->Tree(), Qt::Key_F2);
    QTest::keyClick(desk.First()->Tree(), Qt::Key_Return);
    QVERIFY(!desk.First()->Editor());
    QVERIFY(!desk.First()->pane->isRenaming);
}

void TestBookmarkKeys::deleteRemovesTheSelectionAndGoesOnWithTheNextRow()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({1, 2});
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QCOMPARE(tab->Names(), (QStringList{"A", "D", "E"}));
    QCOMPARE(tab->SelectedRows(), QList<int>{1});
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QCOMPARE(tab->Names(), QStringList());
    QCOMPARE(tab->Stack()->count(), 4);
    QVERIFY(StepTo(tab->Stack(), 0));
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C", "D", "E"}));
}

void TestBookmarkKeys::deleteWithoutASelectionTellsSo()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    desk.First()->Tree()->clearSelection();
    desk.Context()->Answer(1024);
    QTest::keyClick(desk.First()->Tree(), Qt::Key_Delete);
    QCOMPARE(desk.Context()->LastAsked().text, QStringLiteral("Please select a bookmark first."));
    QCOMPARE(desk.First()->Names().size(), 2);
}

void TestBookmarkKeys::thePaneMayDieWhileDeleteTellsSo()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    tab->Select({});
    desk.Context()->Answer(1024);
    desk.Context()->SetWhileOpen([tab](const AskedBox&) { delete tab->pane; });
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
    QApplication::sendEvent(tab->Tree(), &press); // and no release: it would go to a tree that is gone
    QCOMPARE(desk.Context()->Asked().size(), 1);
    QVERIFY(!tab->pane);
    QCOMPARE(tab->Names().size(), 3);
}

void TestBookmarkKeys::altUpAndDownMoveTheSelectionByOneRow()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({1, 2});
    QTest::keyClick(tab->Tree(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(tab->Names(), (QStringList{"A", "D", "B", "C", "E"}));
    QCOMPARE(tab->SelectedRows(), (QList<int>{2, 3}));
    QTest::keyClick(tab->Tree(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(tab->Names(), (QStringList{"A", "D", "E", "B", "C"}));
    for (int press = 0; press < 3; ++press)
        QTest::keyClick(tab->Tree(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(tab->Names(), (QStringList{"B", "C", "A", "D", "E"}));
    QCOMPARE(tab->SelectedRows(), (QList<int>{0, 1}));
    QCOMPARE(tab->Stack()->count(), 5);
    QVERIFY(StepTo(tab->Stack(), 0));
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C", "D", "E"}));
}

void TestBookmarkKeys::altUpGathersScatteredRowsAsOneBlock()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({0, 2, 4});
    QTest::keyClick(tab->Tree(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(tab->Names(), (QStringList{"A", "C", "E", "B", "D"}));
    QCOMPARE(tab->SelectedRows(), (QList<int>{0, 1, 2}));
}

void TestBookmarkKeys::altUpAtTheTopAndAltDownAtTheBottomDoNothing()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    tab->Select({0, 1});
    QTest::keyClick(tab->Tree(), Qt::Key_Up, Qt::AltModifier);
    tab->Select({2});
    QTest::keyClick(tab->Tree(), Qt::Key_Down, Qt::AltModifier);
    tab->Tree()->clearSelection();
    QTest::keyClick(tab->Tree(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(tab->Names(), (QStringList{"A", "B", "C"}));
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestBookmarkKeys::altArrowsDoNothingWhereEditingIsNotAllowed()
{
    PaneDesk desk(QStringLiteral("readonly\n") + DocumentWithBookmarks(3));
    desk.First()->Select({1});
    QTest::keyClick(desk.First()->Tree(), Qt::Key_Up, Qt::AltModifier);
    QTest::keyClick(desk.First()->Tree(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(desk.First()->Names(), (QStringList{"A", "B", "C"}));
}

void TestBookmarkKeys::theMenuKeyOpensTheMenuAtTheCurrentRowAlsoWhenItIsScrolledAway()
{
    PaneDesk desk(DocumentWithBookmarks(60));
    const DeskTab* tab = desk.First();
    QSignalSpy requests(tab->Tree(), &QWidget::customContextMenuRequested);
    tab->Tree()->setCurrentItem(tab->Tree()->topLevelItem(1));
    tab->Tree()->verticalScrollBar()->setValue(tab->Tree()->verticalScrollBar()->maximum());
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(0, 0));
    QApplication::sendEvent(tab->Tree(), &menuKey);
    QCOMPARE(desk.menu->shown, QStringList{"vn_bookmark"});
    QCOMPARE(requests.count(), 1);
    QCOMPARE(tab->Tree()->itemAt(requests.first().first().toPoint()), tab->Tree()->topLevelItem(1));
    QTest::keyClick(tab->Tree(), Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(desk.menu->shown.size(), 2);
    tab->Tree()->setCurrentItem(nullptr);
    QApplication::sendEvent(tab->Tree(), &menuKey);
    QCOMPARE(desk.menu->shown.size(), 2);
}

void TestBookmarkKeys::theTabKeyEndsAnEditWithoutOpeningAnotherRow()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    tab->Select({0});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QTest::keyClicks(tab->Editor(), QStringLiteral("X"));
    QTest::keyClick(tab->Editor(), Qt::Key_Tab);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), (QStringList{"X", "B", "C"}));
    QVERIFY(!tab->Editor());
}

void TestBookmarkKeys::wrappedRowsAreMeasuredAnewAtAnotherWidth()
{
    PaneDesk desk(QStringLiteral("page 210 297\nbookmark \"%1\" page=1").arg(QString(90, QLatin1Char('w'))));
    const DeskTab* tab = desk.First();
    const auto height = [tab] { return tab->Tree()->visualItemRect(tab->Tree()->topLevelItem(0)).height(); };
    const int narrow = height();
    tab->pane->resize(500, 420);
    ViewFixture::Settle();
    const int wide = height();
    QVERIFY2(wide < narrow, qPrintable(QStringLiteral("%1 %2").arg(wide).arg(narrow)));
    tab->pane->resize(260, 420);
    ViewFixture::Settle();
    QCOMPARE(height(), narrow);
}

void TestBookmarkKeys::switchingWordWrapChangesTheRowHeightAndBack()
{
    PaneDesk desk(QStringLiteral("page 210 297\nbookmark \"%1\" page=1").arg(QString(90, QLatin1Char('w'))));
    const DeskTab* tab = desk.First();
    const auto height = [tab] { return tab->Tree()->visualItemRect(tab->Tree()->topLevelItem(0)).height(); };
    const int wrapped = height();
    QVERIFY(desk.Perform("d_bookmarkwrap"));
    QCOMPARE(height(), 25);
    QVERIFY(wrapped > 2 * height());
    QVERIFY(desk.Perform("d_bookmarkwrap"));
    QCOMPARE(height(), wrapped);
    QCOMPARE(tab->Stack()->count(), 0);
    QVERIFY(tab->pane->wordWrap && tab->pane->wrapEnabled);
}

void TestBookmarkKeys::addingRenamingAndDraggingWithRealEventsUndoesAndRedoesCompletely()
{
    PaneDesk desk(QStringLiteral("page 210 297\n  text 20 30 Chapter One\npage 210 297\n"
                                 "bookmark \"Start\" page=1 zoom=1\nbookmark \"End\" page=2 zoom=1"));
    const DeskTab* tab = desk.First();
    QStringList states{tab->Dump()};
    // Add from the selected text.
    tab->view->SelectAllText();
    QVERIFY(!tab->view->SelectHighLightText().isEmpty());
    QTest::mouseClick(tab->pane->addButton, Qt::LeftButton);
    states.append(tab->Dump());
    QCOMPARE(tab->Names(), (QStringList{"Start", "End", "Chapter One"}));
    // Rename it in the editor that opened.
    QVERIFY(tab->Editor());
    QTest::keyClick(tab->Editor(), Qt::Key_End);
    QTest::keyClicks(tab->Editor(), QStringLiteral(": the beginning"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    states.append(tab->Dump());
    QCOMPARE(tab->Names().last(), QStringLiteral("Chapter One: the beginning"));
    // Drag it between the other two.
    const Drag::Outcome outcome = tab->DragRow(2, {tab->LowPoint(1), tab->LowPoint(0)});
    QVERIFY(outcome.wasDropped);
    states.append(tab->Dump());
    QCOMPARE(tab->Names(), (QStringList{"Start", "Chapter One: the beginning", "End"}));
    QCOMPARE(tab->Stack()->count(), 3);
    for (int round = 0; round < 2; ++round) {
        for (int step = 2; step >= 0; --step) {
            tab->Stack()->undo();
            QCOMPARE(tab->Dump(), states.at(step));
            QCOMPARE(tab->Rows(), tab->Names());
        }
        QVERIFY(!tab->Stack()->canUndo());
        for (int step = 1; step <= 3; ++step) {
            tab->Stack()->redo();
            QCOMPARE(tab->Dump(), states.at(step));
            QCOMPARE(tab->Rows(), tab->Names());
        }
        QVERIFY(!tab->Stack()->canRedo());
    }
}

TETO_TEST_MAIN(TestBookmarkKeys)
#include "test_bookmark_keys.moc"
