#include "outline_drops.h"
#include "outline_gestures.h"

#include <outline/outline_tree.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>
#include <tests/support/unscaled_test.h>

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QUndoStack>
#include <QtTest>

using Gesture::AsChild;
using Gesture::AsSibling;

// Where a drag may be dropped, and what the user sees of it.
class TestOutlineDragPlaces : public UnscaledTest
{
    Q_OBJECT
private slots:
    void theBorderBetweenSiblingAndChildIsTwentyTwoPixels_data();
    void theBorderBetweenSiblingAndChildIsTwentyTwoPixels();
    void aParentIsRefusedOnItsOwnChildAndOnAnotherSelectedEntryWithoutALine();
    void inAScrolledTreeTheTopPixelsMeanTheParentOfTheRowThere();
    void theTopZoneIsFivePixelsHigh_data();
    void theTopZoneIsFivePixelsHigh();
    void aDropBesideTheRowsDoesNothing();
    void theIndicatorStandsBelowTheRowOrIndentedOrAboveAtTheTop();
    void theIndicatorIsPaintedWhileDraggingAndGoneOnceTheViewIsLeft();
    void besideTheRowsNoIndicatorIsLeft();
};

void TestOutlineDragPlaces::theBorderBetweenSiblingAndChildIsTwentyTwoPixels_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<QString>("names");
    QTest::newRow("at it") << 22 << "A\n  A1\n    A1a\n  A2\n  B\nC\n  C1\n";
    QTest::newRow("beyond it") << 23 << "A\n  A1\n    A1a\n  A2\n    B\nC\n  C1\n";
}

void TestOutlineDragPlaces::theBorderBetweenSiblingAndChildIsTwentyTwoPixels()
{
    QFETCH(int, x);
    QFETCH(QString, names);
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    const QRect row = tab->Tree()->visualItemRect(tab->Item("A2"));
    Gesture::DragEntry(tab, "B", {QPoint(row.left() + x, row.center().y())});
    QCOMPARE(tab->Names(), names);
}

void TestOutlineDragPlaces::aParentIsRefusedOnItsOwnChildAndOnAnotherSelectedEntryWithoutALine()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    const QString before = tab->Dump();
    tab->Select({"A", "C"});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    QVERIFY(data);
    QWidget* viewport = tab->Tree()->viewport();
    QVERIFY(Drag::HoverAt(viewport, data.get(), {AsSibling(tab, "B")}).wasMoved);
    QVERIFY(!tab->Tree()->line.isNull());
    for (const char* title : {"A1", "A1a", "C", "C1"}) {
        for (const QPoint& place : {AsSibling(tab, title), AsChild(tab, title)}) {
            const Drag::Outcome outcome = Drag::DropAt(viewport, data.get(), {AsSibling(tab, "B"), place});
            QVERIFY2(!outcome.wasMoved && !outcome.wasDropped, title);
            QVERIFY(!tab->Tree()->canDrop);
            QVERIFY(tab->Tree()->line.isNull());
        }
    }
    QCOMPARE(tab->Dump(), before);
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestOutlineDragPlaces::inAScrolledTreeTheTopPixelsMeanTheParentOfTheRowThere()
{
    QString text = QStringLiteral("page 210 297\noutline \"P\"\n");
    for (int i = 0; i < 40; ++i)
        text += QStringLiteral("  outline \"P%1\"\n").arg(i);
    OutlineDesk desk(text);
    const OutlineTab* tab = desk.First();
    tab->Tree()->verticalScrollBar()->setValue(3); // P2 lies at the top of the view
    QCOMPARE(tab->Tree()->itemAt(QPoint(60, 2)), tab->Item("P2"));
    Gesture::DragEntry(tab, "P7", {QPoint(60, 2)});
    QVERIFY(tab->Names().startsWith(QStringLiteral("P\n  P7\n  P0\n  P1\n")));
}

void TestOutlineDragPlaces::theTopZoneIsFivePixelsHigh_data()
{
    QTest::addColumn<int>("y");
    QTest::addColumn<QString>("names");
    QTest::newRow("inside") << 4 << "C\nA\nB\nD\n";
    QTest::newRow("below") << 5 << "A\nC\nB\nD\n";
}

void TestOutlineDragPlaces::theTopZoneIsFivePixelsHigh()
{
    QFETCH(int, y);
    QFETCH(QString, names);
    OutlineDesk desk(Flat("ABCD"));
    Gesture::DragEntry(desk.First(), "C", {QPoint(25, y)});
    QCOMPARE(desk.First()->Names(), names);
}

void TestOutlineDragPlaces::aDropBesideTheRowsDoesNothing()
{
    OutlineDesk desk(Flat("ABC"));
    const OutlineTab* tab = desk.First();
    const QPoint beside(20, tab->Tree()->viewport()->height() - 4);
    QVERIFY(!tab->Tree()->itemAt(beside));
    QVERIFY(!Gesture::DragEntry(tab, "A", {AsSibling(tab, "B"), beside}).wasMoved);
    QCOMPARE(tab->Names(), QStringLiteral("A\nB\nC\n"));
}

void TestOutlineDragPlaces::theIndicatorStandsBelowTheRowOrIndentedOrAboveAtTheTop()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Select({"C"});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    const auto lineAt = [&](const QPoint& place) {
        Drag::HoverAt(tab->Tree()->viewport(), data.get(), {place});
        return tab->Tree()->line;
    };
    const QRect row = tab->Tree()->visualItemRect(tab->Item("A1"));
    QCOMPARE(lineAt(AsSibling(tab, "A1")), QLine(row.left(), row.bottom(), row.right() - 4, row.bottom()));
    QVERIFY(!tab->Tree()->dropAsChild && !tab->Tree()->dropAtTop);
    const QLine before = tab->Tree()->line;
    QCOMPARE(lineAt(AsChild(tab, "A1")), QLine(row.left() + 22, row.bottom(), row.right() - 4, row.bottom()));
    QVERIFY(tab->Tree()->dropAsChild && !tab->Tree()->dropAtTop);
    QCOMPARE(tab->Tree()->oldLine, before);
    const QRect top = tab->Tree()->visualItemRect(tab->Item("A"));
    for (const int x : {25, 90}) { // wherever the pointer is
        QCOMPARE(lineAt(QPoint(x, 3)), QLine(top.left(), top.top() + 4, top.right() - 4, top.top() + 4));
        QVERIFY(tab->Tree()->dropAsChild && tab->Tree()->dropAtTop);
    }
}

void TestOutlineDragPlaces::theIndicatorIsPaintedWhileDraggingAndGoneOnceTheViewIsLeft()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    QWidget* viewport = tab->Tree()->viewport();
    tab->Select({"B"});
    const QImage before = viewport->grab().toImage();
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    Gesture::HoverDrag(tab, data.get(), AsSibling(tab, "A1"));
    const QImage during = viewport->grab().toImage();
    QVERIFY(Screens::ShowsIndicator(during, tab->Tree()->line));
    QDragLeaveEvent leave;
    QApplication::sendEvent(viewport, &leave);
    QVERIFY(tab->Tree()->leftView);
    QVERIFY(viewport->grab().toImage() == before);
}

void TestOutlineDragPlaces::besideTheRowsNoIndicatorIsLeft()
{
    OutlineDesk desk(Flat("ABC"));
    const OutlineTab* tab = desk.First();
    tab->Select({"A"});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    Drag::HoverAt(tab->Tree()->viewport(), data.get(), {AsSibling(tab, "B")});
    const QLine atRow = tab->Tree()->line;
    QVERIFY(!atRow.isNull());
    const QPoint beside(20, tab->Tree()->viewport()->height() - 4);
    QVERIFY(!Drag::HoverAt(tab->Tree()->viewport(), data.get(), {AsSibling(tab, "B"), beside}).wasMoved);
    QVERIFY(tab->Tree()->line.isNull());
    QCOMPARE(tab->Tree()->oldLine, atRow);
}

TETO_TEST_MAIN(TestOutlineDragPlaces)
#include "test_outline_drag_places.moc"
