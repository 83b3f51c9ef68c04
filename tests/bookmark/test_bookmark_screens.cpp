#include "pane_desk.h"

#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>
#include <tests/support/unscaled_test.h>

#include <frame/utils/dpi.h>

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QPushButton>
#include <QTextEdit>
#include <QtTest>

namespace {

QString TourText(int extraRows = 0)
{
    QString text = QStringLiteral("page 210 297\npage 210 297\n"
                                  "bookmark \"Cover\" page=1 zoom=1\n"
                                  "bookmark \"1 Introduction\" page=1 zoom=1\n"
                                  "bookmark \"2 A heading that is so long that it has to go on in a second line of the "
                                  "list, or be cut\" page=1 zoom=1\n"
                                  "bookmark \"\u7b2c\u4e09\u7ae0 \u6587\u6863\u7ed3\u6784\u4e0e\u5bfc\u822a\" page=2 "
                                  "zoom=1\n"
                                  "bookmark \"4 Appendix\" page=2 zoom=1\n");
    for (int row = 0; row < extraRows; ++row)
        text += QStringLiteral("bookmark \"Entry %1\" page=2 zoom=1\n").arg(row + 1);
    return text;
}

// A picture of the pane in this state, for the eye; a blank one fails.
void Shoot(const DeskTab* tab, const QString& state)
{
    Screens::Shoot(tab->pane, QStringLiteral("bookmark-%1").arg(state));
}

// Leaves the drag hovering over the place: what is painted then is what the user sees.
void DragOver(const DeskTab* tab, const QMimeData* data, const QPoint& place)
{
    QDragEnterEvent enter(place, Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(tab->Tree()->viewport(), &enter);
    QDragMoveEvent move(place, Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(tab->Tree()->viewport(), &move);
    QVERIFY(!tab->Tree()->line.isNull());
}

} // namespace

// Pictures of the pane in each state, below the folder that TETO_SCREENS names, with what can be told of them by
// numbers.
class TestBookmarkScreens : public UnscaledTest
{
    Q_OBJECT
private slots:
    void filled();
    void oneLineARow();
    void empty();
    void withAScrollBar();
    void hovered();
    void selected();
    void inEdit();
    void inEditOfAWrappedRow();
    void dragging();
    void draggingToTheTop();
    void readOnly();
    void atTwiceTheScale();
    void emptyAtTwiceTheScale();
    void inEditAtTwiceTheScale();
    void focusOnAButton();
    void focusOnARowThatIsNotSelected();
};

void TestBookmarkScreens::filled()
{
    PaneDesk desk(TourText());
    Shoot(desk.First(), QStringLiteral("filled"));
}

void TestBookmarkScreens::oneLineARow()
{
    PaneDesk desk(TourText());
    desk.Perform("d_bookmarkwrap");
    Shoot(desk.First(), QStringLiteral("one-line"));
}

void TestBookmarkScreens::empty()
{
    PaneDesk desk(QStringLiteral("page 210 297"));
    Shoot(desk.First(), QStringLiteral("empty"));
}

void TestBookmarkScreens::withAScrollBar()
{
    PaneDesk desk(TourText(40));
    Shoot(desk.First(), QStringLiteral("scroll-bar"));
}

void TestBookmarkScreens::hovered()
{
    PaneDesk desk(TourText());
    const QImage before = Screens::Grab(desk.First()->pane);
    Screens::Hover(desk.First()->Tree()->viewport(), desk.First()->RowPoint(1));
    QVERIFY(Screens::Grab(desk.First()->pane) != before);
    Shoot(desk.First(), QStringLiteral("hovered"));
}

void TestBookmarkScreens::selected()
{
    PaneDesk desk(TourText());
    desk.First()->Select({1, 2});
    Screens::Hover(desk.First()->Tree()->viewport(), desk.First()->RowPoint(2));
    Shoot(desk.First(), QStringLiteral("selected"));
}

void TestBookmarkScreens::inEdit()
{
    PaneDesk desk(TourText());
    QTest::mouseClick(desk.First()->pane->addButton, Qt::LeftButton);
    QVERIFY(desk.First()->Editor());
    Shoot(desk.First(), QStringLiteral("edit"));
}

void TestBookmarkScreens::inEditOfAWrappedRow()
{
    PaneDesk desk(TourText());
    desk.First()->Select({2});
    QTest::keyClick(desk.First()->Tree(), Qt::Key_F2);
    QVERIFY(desk.First()->Editor());
    QTest::keyClick(desk.First()->Editor(), Qt::Key_End);
    Shoot(desk.First(), QStringLiteral("edit-wrapped"));
}

void TestBookmarkScreens::dragging()
{
    PaneDesk desk(TourText());
    const DeskTab* tab = desk.First();
    tab->Select({4});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    DragOver(tab, data.get(), tab->RowPoint(1));
    Shoot(tab, QStringLiteral("dragging"));
}

void TestBookmarkScreens::draggingToTheTop()
{
    PaneDesk desk(TourText());
    const DeskTab* tab = desk.First();
    tab->Select({4});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    DragOver(tab, data.get(), QPoint(30, 2));
    Shoot(tab, QStringLiteral("dragging-top"));
}

void TestBookmarkScreens::readOnly()
{
    PaneDesk desk(QStringLiteral("readonly\n") + TourText());
    Shoot(desk.First(), QStringLiteral("read-only"));
}

void TestBookmarkScreens::atTwiceTheScale()
{
    Utils::OVDpi::Instance()->OverrideScale(2);
    PaneDesk desk(TourText());
    desk.First()->pane->resize(520, 840);
    ViewFixture::Settle();
    desk.First()->Select({1});
    Shoot(desk.First(), QStringLiteral("scaled"));
}

void TestBookmarkScreens::emptyAtTwiceTheScale()
{
    Utils::OVDpi::Instance()->OverrideScale(2);
    PaneDesk desk(QStringLiteral("page 210 297"));
    desk.First()->pane->resize(520, 840);
    ViewFixture::Settle();
    Shoot(desk.First(), QStringLiteral("scaled-empty"));
}

void TestBookmarkScreens::inEditAtTwiceTheScale()
{
    Utils::OVDpi::Instance()->OverrideScale(2);
    PaneDesk desk(TourText());
    desk.First()->pane->resize(520, 840);
    ViewFixture::Settle();
    QTest::mouseClick(desk.First()->pane->addButton, Qt::LeftButton);
    QVERIFY(desk.First()->Editor());
    Shoot(desk.First(), QStringLiteral("scaled-edit"));
}

void TestBookmarkScreens::focusOnAButton()
{
    PaneDesk desk(TourText());
    desk.First()->Tree()->setCurrentItem(desk.First()->Tree()->topLevelItem(0)); // selected, it shows no focus
    const QImage before = Screens::Grab(desk.First()->pane);
    desk.First()->pane->deleteButton->setFocus();
    QVERIFY(Screens::Grab(desk.First()->pane) != before);
    Shoot(desk.First(), QStringLiteral("button-focus"));
}

void TestBookmarkScreens::focusOnARowThatIsNotSelected()
{
    PaneDesk desk(TourText());
    CBookmarkTreeWidget* tree = desk.First()->Tree();
    tree->setCurrentItem(tree->topLevelItem(0));
    tree->setFocus();
    const QImage before = Screens::Grab(desk.First()->pane);
    QTest::keyClick(tree, Qt::Key_Down, Qt::ControlModifier);
    QVERIFY(!tree->topLevelItem(1)->isSelected());
    QVERIFY(Screens::Grab(desk.First()->pane) != before);
    Shoot(desk.First(), QStringLiteral("row-focus"));
}

TETO_TEST_MAIN(TestBookmarkScreens)
#include "test_bookmark_screens.moc"
