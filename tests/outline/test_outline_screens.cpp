#include "outline_gestures.h"

#include <outline/batch_add_dialog.h>
#include <outline/outline_interceptors.h>
#include <outline/outline_pane.h>
#include <outline/outline_tree.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>
#include <tests/support/unscaled_test.h>

#include <frame/utils/dpi.h>

#include <QApplication>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTextEdit>
#include <QToolButton>
#include <QtTest>

namespace {

QString TourText(int extraEntries = 0)
{
    QString text = QStringLiteral("page 210 297\npage 210 297\npage 210 297\n"
                                  "outline \"Cover\" page=1\n"
                                  "outline \"1 Introduction\" page=1\n"
                                  "  outline \"1.1 Purpose\" page=1\n"
                                  "  outline \"1.2 A heading that is so long that it has to go on in a second line of "
                                  "the tree, or be cut\" page=2\n"
                                  "    outline \"1.2.1 Details\" page=2\n"
                                  "    outline \"1.2.2 More of them, in a line that is long as well\" page=2\n"
                                  "outline \"\u7b2c\u4e8c\u7ae0 \u6587\u6863\u7ed3\u6784\u4e0e\u5bfc\u822a\" page=2\n"
                                  "  outline \"\u76ee\u5f55\" page=3\n"
                                  "outline \"3 Appendix\"\n");
    for (int i = 0; i < extraEntries; ++i)
        text += QStringLiteral("outline \"Entry %1\" page=3\n").arg(i + 1);
    return text;
}

// A picture of a widget in this state, for the eye; a blank one fails.
void Shoot(QWidget* widget, const QString& state)
{
    Screens::Shoot(widget, QStringLiteral("outline-%1").arg(state));
}

void ShootDrag(const QString& state, QPoint (*place)(const OutlineTab*, const QString&))
{
    OutlineDesk desk(TourText());
    const OutlineTab* tab = desk.First();
    tab->Select({QStringLiteral("3 Appendix")});
    const std::unique_ptr<QMimeData> data(tab->Tree()->PrepareDrag());
    Gesture::HoverDrag(tab, data.get(), place(tab, QStringLiteral("1.1 Purpose")));
    QVERIFY(!tab->Tree()->line.isNull());
    Shoot(tab->pane, state);
}

void Enlarge(const OutlineDesk& desk)
{
    desk.First()->pane->resize(520, 840);
    ViewFixture::Settle();
}

BatchAddOutlineDlg* OpenDialog(OutlineDesk& desk)
{
    desk.Perform("d_outline_batchadd");
    BatchAddOutlineDlg* dialog = desk.First()->pane->batchAddHandler->Dialog();
    ViewFixture::Settle();
    dialog->findChild<QTextEdit*>()->setPlainText(
        QStringLiteral("1 Introduction\n2 Structure\n\u7b2c\u4e09\u7ae0\n3 Appendix"));
    return dialog;
}

} // namespace

// Pictures of the pane in each state, below the folder that TETO_SCREENS names, with what can be told of them by
// numbers.
class TestOutlineScreens : public UnscaledTest
{
    Q_OBJECT
private slots:
    void wrapped();
    void oneLineARow();
    void collapsed();
    void empty();
    void withAScrollBar();
    void hovered();
    void selected();
    void inEdit();
    void inEditOfAWrappedRow();
    void draggingAsASibling();
    void draggingAsAChild();
    void draggingToTheTop();
    void readOnly();
    void focusOnTheButtons();
    void focusOnARowThatIsNotSelected();
    void theMenuOfTheAddButton();
    void theDialog();
    void atTwiceTheScale();
    void oneLineAtTwiceTheScale();
    void emptyAtTwiceTheScale();
    void inEditAtTwiceTheScale();
    void theDialogAtTwiceTheScale();
};

void TestOutlineScreens::wrapped()
{
    OutlineDesk desk(TourText());
    Shoot(desk.First()->pane, QStringLiteral("wrapped"));
}

void TestOutlineScreens::oneLineARow()
{
    OutlineDesk desk(TourText());
    desk.Perform("d_outline_wordwrap");
    Shoot(desk.First()->pane, QStringLiteral("one-line"));
}

void TestOutlineScreens::collapsed()
{
    OutlineDesk desk(TourText());
    const QImage before = Screens::Grab(desk.First()->pane);
    desk.First()->pane->expandButton->click();
    QVERIFY(Screens::Grab(desk.First()->pane) != before);
    Shoot(desk.First()->pane, QStringLiteral("collapsed"));
}

void TestOutlineScreens::empty()
{
    OutlineDesk desk(QStringLiteral("page 210 297"));
    Shoot(desk.First()->pane, QStringLiteral("empty"));
}

void TestOutlineScreens::withAScrollBar()
{
    OutlineDesk desk(TourText(40));
    Shoot(desk.First()->pane, QStringLiteral("scroll-bar"));
}

void TestOutlineScreens::hovered()
{
    OutlineDesk desk(TourText());
    const QImage before = Screens::Grab(desk.First()->pane);
    Screens::Hover(desk.First()->Tree()->viewport(), Gesture::AsSibling(desk.First(), QStringLiteral("1.1 Purpose")));
    QVERIFY(Screens::Grab(desk.First()->pane) != before);
    Shoot(desk.First()->pane, QStringLiteral("hovered"));
}

void TestOutlineScreens::selected()
{
    OutlineDesk desk(TourText());
    desk.First()->Select({QStringLiteral("1.1 Purpose"), QStringLiteral("1.2.1 Details")});
    Screens::Hover(desk.First()->Tree()->viewport(), Gesture::AsSibling(desk.First(), QStringLiteral("1.2.1 Details")));
    Shoot(desk.First()->pane, QStringLiteral("selected"));
}

void TestOutlineScreens::inEdit()
{
    OutlineDesk desk(TourText());
    desk.Perform("d_outline_wordwrap");
    QTest::mouseClick(desk.First()->pane->addButton, Qt::LeftButton, {}, QPoint(8, 12));
    QVERIFY(desk.First()->Editor());
    Shoot(desk.First()->pane, QStringLiteral("edit"));
}

void TestOutlineScreens::inEditOfAWrappedRow()
{
    OutlineDesk desk(TourText());
    const OutlineTab* tab = desk.First();
    tab->Tree()->setCurrentItem(tab->Item(QList<int>{1, 1}));
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QVERIFY(tab->Editor());
    QTest::keyClick(tab->Editor(), Qt::Key_End);
    Shoot(tab->pane, QStringLiteral("edit-wrapped"));
}

void TestOutlineScreens::draggingAsASibling()
{
    ShootDrag(QStringLiteral("dragging-sibling"), Gesture::AsSibling);
}

void TestOutlineScreens::draggingAsAChild()
{
    ShootDrag(QStringLiteral("dragging-child"), Gesture::AsChild);
}

void TestOutlineScreens::draggingToTheTop()
{
    ShootDrag(QStringLiteral("dragging-top"), [](const OutlineTab*, const QString&) { return QPoint(40, 2); });
}

void TestOutlineScreens::readOnly()
{
    OutlineDesk desk(QStringLiteral("readonly\n") + TourText());
    Shoot(desk.First()->pane, QStringLiteral("read-only"));
}

void TestOutlineScreens::focusOnTheButtons()
{
    OutlineDesk desk(TourText());
    const NaviOutlineWidget* pane = desk.First()->pane;
    desk.First()->Tree()->setCurrentItem(desk.First()->Tree()->topLevelItem(0)); // selected, it shows no focus
    desk.First()->Tree()->setFocus();
    const QImage before = Screens::Grab(desk.First()->pane);
    int number = 0;
    for (QWidget* button : std::initializer_list<QWidget*>{pane->addButton, pane->delButton, pane->expandButton}) {
        button->setFocus();
        QVERIFY(Screens::Grab(desk.First()->pane) != before);
        Shoot(desk.First()->pane, QStringLiteral("button-focus-%1").arg(++number));
    }
}

void TestOutlineScreens::focusOnARowThatIsNotSelected()
{
    OutlineDesk desk(TourText());
    CTreeWidget* tree = desk.First()->Tree();
    tree->setCurrentItem(tree->topLevelItem(0));
    tree->setFocus();
    const QImage before = Screens::Grab(desk.First()->pane);
    QTest::keyClick(tree, Qt::Key_Down, Qt::ControlModifier);
    QVERIFY(!tree->currentItem()->isSelected());
    QVERIFY(Screens::Grab(desk.First()->pane) != before);
    Shoot(desk.First()->pane, QStringLiteral("row-focus"));
}

void TestOutlineScreens::theMenuOfTheAddButton()
{
    OutlineDesk desk(TourText());
    QMenu* menu = desk.First()->pane->addButton->menu();
    menu->popup(QPoint(0, 0));
    Shoot(menu, QStringLiteral("add-menu"));
    menu->close();
}

void TestOutlineScreens::theDialog()
{
    OutlineDesk desk(TourText());
    BatchAddOutlineDlg* dialog = OpenDialog(desk);
    QCOMPARE(dialog->size(), QSize(472, 578));
    Shoot(dialog, QStringLiteral("dialog"));
}

void TestOutlineScreens::atTwiceTheScale()
{
    Utils::OVDpi::Instance()->OverrideScale(2);
    OutlineDesk desk(TourText());
    Enlarge(desk);
    desk.First()->MakeCurrent(QStringLiteral("1.1 Purpose"));
    Shoot(desk.First()->pane, QStringLiteral("scaled"));
}

void TestOutlineScreens::oneLineAtTwiceTheScale()
{
    Utils::OVDpi::Instance()->OverrideScale(2);
    OutlineDesk desk(TourText());
    Enlarge(desk);
    desk.Perform("d_outline_wordwrap");
    Shoot(desk.First()->pane, QStringLiteral("scaled-one-line"));
}

void TestOutlineScreens::emptyAtTwiceTheScale()
{
    Utils::OVDpi::Instance()->OverrideScale(2);
    OutlineDesk desk(QStringLiteral("page 210 297"));
    Enlarge(desk);
    Shoot(desk.First()->pane, QStringLiteral("scaled-empty"));
}

void TestOutlineScreens::inEditAtTwiceTheScale()
{
    Utils::OVDpi::Instance()->OverrideScale(2);
    OutlineDesk desk(TourText());
    Enlarge(desk);
    desk.First()->MakeCurrent(QStringLiteral("1.1 Purpose"));
    QTest::keyClick(desk.First()->Tree(), Qt::Key_F2);
    QVERIFY(desk.First()->Editor());
    Shoot(desk.First()->pane, QStringLiteral("scaled-edit"));
}

void TestOutlineScreens::theDialogAtTwiceTheScale()
{
    Utils::OVDpi::Instance()->OverrideScale(2);
    OutlineDesk desk(TourText());
    BatchAddOutlineDlg* dialog = OpenDialog(desk);
    QCOMPARE(dialog->size(), QSize(944, 1156));
    Shoot(dialog, QStringLiteral("scaled-dialog"));
}

TETO_TEST_MAIN(TestOutlineScreens)
#include "test_outline_screens.moc"
