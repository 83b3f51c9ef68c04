#include "pane_desk.h"

#include <bookmark/bookmark_delegate.h>
#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>
#include <tests/support/unscaled_test.h>

#include <frame/utils/dpi.h>

#include <QApplication>
#include <QPainter>
#include <QPushButton>
#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

namespace {

constexpr int okButton = 1024;
constexpr int closeButton = 2097152;
constexpr int cancelButton = 4194304;
const char* const duplicateText = "Duplicate bookmark name,please modify the bookmark name.";

// Opens the editor of a row, types over its text and ends the edit by a key.
void Rename(const DeskTab* tab, int row, const QString& name, Qt::Key endKey = Qt::Key_Return,
            Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    tab->Select({row});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QTextEdit* editor = tab->Editor();
    QVERIFY(editor);
    if (name.isEmpty())
        QTest::keyClick(editor, Qt::Key_Backspace);
    else
        QTest::keyClicks(editor, name);
    QTest::keyClick(editor, endKey, modifiers);
    ViewFixture::Settle();
}

QString Row(const QString& name)
{
    return QStringLiteral("bookmark \"%1\" page=1 zoom=1\n").arg(name);
}

QImage PaintRow(const DeskTab* tab, QStyle::State state, const QSize& size = QSize(200, 25))
{
    return Screens::PaintCell(tab->Tree(), tab->Tree()->model()->index(0, 0), state, size);
}

} // namespace

class TestBookmarkDelegate : public UnscaledTest
{
    Q_OBJECT
private slots:
    // Names
    void aNameOf120CharactersIsStoredByItsFirst100();
    void first100CharactersThatEqualAnotherNameAreADuplicate();
    void aDuplicateIsRefusedByOkAndByClosingTheBoxAndTakenByAnyOtherAnswer_data();
    void aDuplicateIsRefusedByOkAndByClosingTheBoxAndTakenByAnyOtherAnswer();
    void anotherCaseIsAnotherName();
    void theSameNameIsNoChange();
    void anEmptiedNameBringsTheOldOneBack();
    void blanksAroundANameAreStoredAndNotShown();
    void lineFeedsAreTakenOut();
    void anEditThatOnlyAddsBlanksIsARenameToo();
    // The editor
    void theEditorShowsTheStoredNameSelectedWithoutScrollBars();
    void theEditorFillsItsRowLessTheGapAtTheRight();
    void openingTheEditorDoesNotStretchItsRow();
    void everyWayOfEndingAnEditRenamesOnce_data();
    void everyWayOfEndingAnEditRenamesOnce();
    void escapeLeavesTheNameAndTheNextRenameWorks();
    void theDuplicateBoxComesOnceThoughItTakesTheFocusFromTheEditor();
    void pressingEnterClearsAPendingRequestAlsoWithoutAChange();
    void losingTheFocusCancelsAPendingRequest();
    void aNodeThatIsGoneEndsTheRename();
    // Paint
    void hoverAndSelectionTintTheRowAndAddUp();
    void aRowWithoutAScrollBarLeavesAGapAtTheRight();
    void aLongNameIsElidedOnOneLineAndWholeWhenWrapped();
    void rowHeightsFollowTheScale();
    void whatIsMeasuredIsWhatIsPainted();
};

void TestBookmarkDelegate::aNameOf120CharactersIsStoredByItsFirst100()
{
    PaneDesk desk("page 210 297\n" + Row("A"));
    const QString name = QString(60, QLatin1Char('x')) + QString(60, QLatin1Char('y'));
    Rename(desk.First(), 0, name);
    QCOMPARE(desk.First()->Names(), QStringList{name.left(100)});
    QCOMPARE(desk.First()->Rows(), QStringList{name.left(100)});
    QCOMPARE(desk.First()->Tree()->topLevelItem(0)->toolTip(0), name.left(100));
}

void TestBookmarkDelegate::first100CharactersThatEqualAnotherNameAreADuplicate()
{
    const QString hundred(100, QLatin1Char('x'));
    PaneDesk desk("page 210 297\n" + Row(hundred) + Row("B"));
    desk.Context()->Answer(okButton);
    Rename(desk.First(), 1, hundred + QString(20, QLatin1Char('z')));
    QCOMPARE(desk.Context()->Asked().size(), 1);
    QCOMPARE(desk.Context()->LastAsked().text, QLatin1String(duplicateText));
    QCOMPARE(desk.First()->Names(), (QStringList{hundred, "B"}));
}

void TestBookmarkDelegate::aDuplicateIsRefusedByOkAndByClosingTheBoxAndTakenByAnyOtherAnswer_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("ok") << okButton << QStringList{"A", "B", "C"};
    QTest::newRow("closed") << closeButton << QStringList{"A", "B", "C"};
    QTest::newRow("another button") << cancelButton << QStringList{"A", "A", "C"};
}

void TestBookmarkDelegate::aDuplicateIsRefusedByOkAndByClosingTheBoxAndTakenByAnyOtherAnswer()
{
    QFETCH(int, answer);
    QFETCH(QStringList, names);
    PaneDesk desk("page 210 297\n" + Row("A") + Row("B") + Row("C"));
    const DeskTab* tab = desk.First();
    desk.Context()->Answer(answer);
    Rename(tab, 1, QStringLiteral("A"));
    const AskedBox box = desk.Context()->LastAsked();
    QCOMPARE(box.title, QStringLiteral("remark"));
    QCOMPARE(box.text, QLatin1String(duplicateText));
    QCOMPARE(box.buttons, okButton);
    QCOMPARE(box.defaultButton, okButton);
    QCOMPARE(tab->Names(), names);
    QCOMPARE(tab->Rows(), names);
    QVERIFY(!tab->pane->isRenaming);
    QVERIFY(!tab->Tree()->signalsBlocked());
    Rename(tab, 2, QStringLiteral("D")); // nothing is left over
    QCOMPARE(tab->Names().last(), QStringLiteral("D"));
}

void TestBookmarkDelegate::anotherCaseIsAnotherName()
{
    PaneDesk desk("page 210 297\n" + Row("Alpha") + Row("beta"));
    Rename(desk.First(), 0, QStringLiteral("ALPHA"));
    Rename(desk.First(), 1, QStringLiteral("Alpha"));
    QCOMPARE(desk.First()->Names(), (QStringList{"ALPHA", "Alpha"}));
    QCOMPARE(desk.First()->Stack()->count(), 2);
}

void TestBookmarkDelegate::theSameNameIsNoChange()
{
    PaneDesk desk("page 210 297\n" + Row(" A ") + Row("B"));
    Rename(desk.First(), 0, QStringLiteral(" A "));
    QCOMPARE(desk.First()->Names().first(), QStringLiteral(" A "));
    QCOMPARE(desk.First()->Rows().first(), QStringLiteral("A"));
    QCOMPARE(desk.First()->Stack()->count(), 0);
    QVERIFY(!desk.First()->pane->isRenaming);
}

void TestBookmarkDelegate::anEmptiedNameBringsTheOldOneBack()
{
    PaneDesk desk("page 210 297\n" + Row("A") + Row("B"));
    Rename(desk.First(), 1, QString());
    QCOMPARE(desk.First()->Names(), (QStringList{"A", "B"}));
    QCOMPARE(desk.First()->Rows(), (QStringList{"A", "B"}));
    QCOMPARE(desk.First()->Stack()->count(), 0);
    QVERIFY(!desk.First()->pane->isRenaming);
}

void TestBookmarkDelegate::blanksAroundANameAreStoredAndNotShown()
{
    PaneDesk desk("page 210 297\n" + Row("A"));
    Rename(desk.First(), 0, QStringLiteral("  B "));
    QCOMPARE(desk.First()->Names(), QStringList{"  B "});
    QCOMPARE(desk.First()->Rows(), QStringList{"B"});
}

void TestBookmarkDelegate::lineFeedsAreTakenOut()
{
    PaneDesk desk("page 210 297\n" + Row("A"));
    const DeskTab* tab = desk.First();
    tab->Select({0});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    tab->Editor()->setPlainText(QStringLiteral("one\ntwo\n\nthree"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QStringList{"onetwothree"});
}

void TestBookmarkDelegate::anEditThatOnlyAddsBlanksIsARenameToo()
{
    for (const Qt::Key endKey : {Qt::Key_Return, Qt::Key_Tab}) {
        PaneDesk desk("page 210 297\n" + Row(" A"));
        Rename(desk.First(), 0, QStringLiteral("A"), endKey); // the row shows "A" before and after
        QCOMPARE(desk.First()->Names(), QStringList{"A"});
        QCOMPARE(desk.First()->Stack()->count(), 1);
        QVERIFY(!desk.First()->pane->isRenaming);
    }
}

void TestBookmarkDelegate::theEditorShowsTheStoredNameSelectedWithoutScrollBars()
{
    PaneDesk desk("page 210 297\n" + Row("  A name "));
    const DeskTab* tab = desk.First();
    tab->Select({0});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    const QTextEdit* editor = tab->Editor();
    QVERIFY(editor);
    QCOMPARE(editor->toPlainText(), QStringLiteral("  A name "));
    QCOMPARE(editor->textCursor().selectedText(), QStringLiteral("  A name "));
    QCOMPARE(editor->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(editor->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QVERIFY(editor->hasFocus());
}

void TestBookmarkDelegate::theEditorFillsItsRowLessTheGapAtTheRight()
{
    PaneDesk desk("page 210 297\n" + Row("A"));
    const DeskTab* tab = desk.First();
    tab->Select({0});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    const QRect row = tab->Tree()->visualItemRect(tab->Tree()->topLevelItem(0));
    QCOMPARE(tab->Editor()->geometry().topLeft(), row.topLeft());
    QCOMPARE(tab->Editor()->height(), row.height());
    QCOMPARE(tab->Editor()->width(), row.width() - 4);
}

void TestBookmarkDelegate::openingTheEditorDoesNotStretchItsRow()
{
    PaneDesk desk("page 210 297\n" + Row("A") + Row("B"));
    const DeskTab* tab = desk.First();
    const auto height = [tab] { return tab->Tree()->visualItemRect(tab->Tree()->topLevelItem(0)).height(); };
    const int before = height();
    tab->Select({0});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QVERIFY(tab->Editor());
    tab->Tree()->doItemsLayout();
    QCOMPARE(height(), before);
}

void TestBookmarkDelegate::everyWayOfEndingAnEditRenamesOnce_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::newRow("Return") << int(Qt::Key_Return) << 0;
    QTest::newRow("Enter") << int(Qt::Key_Enter) << int(Qt::KeypadModifier);
    QTest::newRow("Shift+Return") << int(Qt::Key_Return) << int(Qt::ShiftModifier);
    QTest::newRow("Tab") << int(Qt::Key_Tab) << 0;
    QTest::newRow("a click elsewhere") << 0 << 0;
}

void TestBookmarkDelegate::everyWayOfEndingAnEditRenamesOnce()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    PaneDesk desk("page 210 297\n" + Row("A") + Row("B"));
    const DeskTab* tab = desk.First();
    if (key != 0) {
        Rename(tab, 0, QStringLiteral("Z"), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    } else {
        tab->Select({0});
        QTest::keyClick(tab->Tree(), Qt::Key_F2);
        QTest::keyClicks(tab->Editor(), QStringLiteral("Z"));
        tab->pane->addButton->setFocus();
        ViewFixture::Settle();
    }
    QCOMPARE(tab->Names(), (QStringList{"Z", "B"}));
    QCOMPARE(tab->Rows(), tab->Names());
    QCOMPARE(tab->Stack()->count(), 1);
    QVERIFY(!tab->Editor());
    QVERIFY(!tab->pane->isRenaming);
    QVERIFY(!tab->Tree()->signalsBlocked());
}

void TestBookmarkDelegate::escapeLeavesTheNameAndTheNextRenameWorks()
{
    PaneDesk desk("page 210 297\n" + Row("A") + Row("B"));
    const DeskTab* tab = desk.First();
    Rename(tab, 0, QStringLiteral("Z"), Qt::Key_Escape);
    QCOMPARE(tab->Names(), (QStringList{"A", "B"}));
    QCOMPARE(tab->Rows(), (QStringList{"A", "B"}));
    QVERIFY(tab->pane->isRenaming); // on purpose, until the next rename
    Rename(tab, 1, QStringLiteral("Y"));
    QCOMPARE(tab->Names(), (QStringList{"A", "Y"}));
    QVERIFY(!tab->pane->isRenaming);
}

void TestBookmarkDelegate::theDuplicateBoxComesOnceThoughItTakesTheFocusFromTheEditor()
{
    PaneDesk desk("page 210 297\n" + Row("A") + Row("B"));
    const DeskTab* tab = desk.First();
    desk.Context()->Answer(okButton);
    desk.Context()->SetWhileOpen([tab](const AskedBox&) {
        tab->pane->addButton->setFocus(); // as a box would
        ViewFixture::Settle();            // its event loop deletes what is due
    });
    Rename(tab, 1, QStringLiteral("A"));
    QCOMPARE(desk.Context()->Asked().size(), 1);
    QCOMPARE(tab->Names(), (QStringList{"A", "B"}));
    QCOMPARE(tab->Rows(), (QStringList{"A", "B"}));
    QVERIFY(!tab->pane->isRenaming);
}

void TestBookmarkDelegate::pressingEnterClearsAPendingRequestAlsoWithoutAChange()
{
    PaneDesk desk("page 210 297\n" + Row("A"));
    const DeskTab* tab = desk.First();
    tab->Select({0});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    tab->Tree()->pendingRoot = tab->document->GetBookmarkRoot();
    tab->Tree()->pendingRow = 0;
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    QVERIFY(!tab->Tree()->pendingRoot);
    QCOMPARE(tab->Tree()->pendingRow, -1);
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestBookmarkDelegate::losingTheFocusCancelsAPendingRequest()
{
    PaneDesk desk("page 210 297\n" + Row("A"));
    const DeskTab* tab = desk.First();
    tab->Select({0});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    tab->Tree()->pendingRoot = tab->document->GetBookmarkRoot();
    tab->Tree()->pendingRow = 0;
    tab->pane->addButton->setFocus();
    QVERIFY(!tab->Tree()->pendingRoot);
    QCOMPARE(tab->Tree()->pendingRow, -1);
}

void TestBookmarkDelegate::aNodeThatIsGoneEndsTheRename()
{
    PaneDesk desk("page 210 297\n" + Row("A"));
    const DeskTab* tab = desk.First();
    tab->Select({0});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QVERIFY(tab->document->GetBookmarkRoot()->RemoveSubNode(0));
    QTest::keyClicks(tab->Editor(), QStringLiteral("Z"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QVERIFY(!tab->pane->isRenaming);
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestBookmarkDelegate::hoverAndSelectionTintTheRowAndAddUp()
{
    PaneDesk desk("page 210 297\n" + Row("A"));
    const QPoint ground(150, 3);
    QCOMPARE(PaintRow(desk.First(), QStyle::State_Enabled).pixelColor(ground), QColor(0xF5, 0xF7, 0xF9));
    QVERIFY(
        Screens::Near(PaintRow(desk.First(), QStyle::State_MouseOver).pixelColor(ground), Screens::TintedGround(0.2)));
    QVERIFY(
        Screens::Near(PaintRow(desk.First(), QStyle::State_Selected).pixelColor(ground), Screens::TintedGround(0.4)));
    const QColor both = PaintRow(desk.First(), QStyle::State_MouseOver | QStyle::State_Selected).pixelColor(ground);
    QVERIFY(both.red() < Screens::TintedGround(0.4).red());
}

void TestBookmarkDelegate::aRowWithoutAScrollBarLeavesAGapAtTheRight()
{
    PaneDesk desk("page 210 297\n" + Row("A"));
    const QImage image = PaintRow(desk.First(), QStyle::State_Selected);
    QVERIFY(Screens::Near(image.pixelColor(195, 12), Screens::TintedGround(0.4)));
    QCOMPARE(image.pixelColor(196, 12), QColor(Qt::red)); // not touched
    QString text = QStringLiteral("page 210 297\n");
    for (int row = 0; row < 60; ++row)
        text += Row(QString::number(row));
    PaneDesk full(text);
    QVERIFY(
        Screens::Near(PaintRow(full.First(), QStyle::State_Selected).pixelColor(199, 12), Screens::TintedGround(0.4)));
}

void TestBookmarkDelegate::aLongNameIsElidedOnOneLineAndWholeWhenWrapped()
{
    PaneDesk desk("page 210 297\n" + Row(QString(90, QLatin1Char('W'))));
    const DeskTab* tab = desk.First();
    const auto inkBelow = [tab](int y) {
        const QImage image = PaintRow(tab, QStyle::State_Enabled, QSize(254, 120));
        for (int x = 0; x < image.width() - 5; ++x) {
            for (int line = y; line < image.height(); ++line) {
                if (image.pixelColor(x, line) != QColor(0xF5, 0xF7, 0xF9))
                    return true;
            }
        }
        return false;
    };
    QVERIFY(inkBelow(30)); // several lines
    tab->pane->wrapEnabled = false;
    QVERIFY(inkBelow(40)); // one line, in the middle of this tall row
    QVERIFY(!inkBelow(80));
}

void TestBookmarkDelegate::rowHeightsFollowTheScale()
{
    int heights[2];
    int wrapped[2];
    for (const int scale : {1, 2}) {
        Utils::OVDpi::Instance()->OverrideScale(scale);
        PaneDesk desk("page 210 297\n" + Row("A"));
        const DeskTab* tab = desk.First();
        const auto height = [tab] {
            return tab->Tree()
                ->itemDelegate()
                ->sizeHint(QStyleOptionViewItem(), tab->Tree()->model()->index(0, 0))
                .height();
        };
        wrapped[scale - 1] = height();
        desk.Perform("d_bookmarkwrap");
        QStyleOptionViewItem option;
        heights[scale - 1] = tab->Tree()->visualItemRect(tab->Tree()->topLevelItem(0)).height();
        QCOMPARE(tab->pane->addButton->size(), QSize(24 * scale, 24 * scale));
    }
    QCOMPARE(heights[0], 25);
    QCOMPARE(heights[1], 50);
    QVERIFY(wrapped[1] > wrapped[0]);
}

void TestBookmarkDelegate::whatIsMeasuredIsWhatIsPainted()
{
    PaneDesk desk("page 210 297\n" + Row(QString(90, QLatin1Char('g'))));
    const DeskTab* tab = desk.First();
    const int height = tab->Tree()->visualItemRect(tab->Tree()->topLevelItem(0)).height();
    const QImage image = PaintRow(tab, QStyle::State_Enabled, QSize(254, height + 60));
    int lowest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width() - 5; ++x) {
            if (image.pixelColor(x, y) != QColor(0xF5, 0xF7, 0xF9))
                lowest = y;
        }
    }
    QVERIFY2(lowest < height && lowest > height - 20, qPrintable(QStringLiteral("%1 %2").arg(lowest).arg(height)));
}

TETO_TEST_MAIN(TestBookmarkDelegate)
#include "test_bookmark_delegate.moc"
