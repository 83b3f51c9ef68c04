#include "outline_gestures.h"

#include <outline/batch_add_dialog.h>
#include <outline/outline_interceptors.h>
#include <outline/outline_pane.h>
#include <outline/outline_tree.h>
#include <tests/support/test_main.h>
#include <tests/support/unscaled_test.h>

#include <frame/base/converters.h>
#include <frame/document/payloads.h>
#include <frame/utils/dpi.h>

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

namespace {

BatchAddOutlineDlg* OpenDialog(OutlineDesk& desk, const OutlineTab* tab)
{
    desk.Perform("d_outline_batchadd");
    ViewFixture::Settle();
    return tab->pane->batchAddHandler->Dialog();
}

template <typename Part>
Part* Find(QWidget* dialog, const char* name)
{
    return dialog->findChild<Part*>(QLatin1String(name));
}

// Types the lines into the dialog and presses Add.
void AddLines(OutlineDesk& desk, const OutlineTab* tab, const QString& lines)
{
    BatchAddOutlineDlg* dialog = OpenDialog(desk, tab);
    Find<QTextEdit>(dialog, "textEdit")->setPlainText(lines);
    QTest::mouseClick(Find<QPushButton>(dialog, "BtnOk"), Qt::LeftButton);
    ViewFixture::Settle();
}

} // namespace

class TestOutlineDialog : public UnscaledTest
{
    Q_OBJECT
private slots:
    void theFormHasItsPartsTextsAndSizes();
    void atTwiceTheScaleEverythingIsTwiceAsLarge();
    void theDialogIsModelessInTheMiddleAndTheSameOneAgain();
    void everyControlIsReachedByTheTabKeyAndHasANameToHear();
    void linesAreTypedWithEnterAndAddedBehindTheCurrentEntryAsSiblings();
    void aNestedCurrentEntryGetsSiblingsInItsParent();
    void withoutACurrentEntryTheLinesComeLast();
    void inADocumentWithoutAnOutlineTheRootIsMade();
    void emptyLinesVanishAndALineOfBlanksStays();
    void onlyLinesFromTheLetterDOnAreCut_data();
    void onlyLinesFromTheLetterDOnAreCut();
    void aBatchOfOnlyEmptyLinesClosesTheDialogAndChangesNothing();
    void theEntriesHaveNoDestinationAndAreOneUndoStep();
    void cancelCloseAndEscapeKeepTheTextAndChangeNothing();
    void whatWasExpandedWhileTheDialogWasOpenStaysSo();
    void withAnotherDocumentInFrontTheDialogOnlyHides();
    void aDocumentClosedWhileTheDialogIsOpenTakesTheDialogAlong();
    void inAReadOnlyDocumentNothingIsAdded();
};

void TestOutlineDialog::theFormHasItsPartsTextsAndSizes()
{
    OutlineDesk desk(SmallOutline());
    BatchAddOutlineDlg* dialog = OpenDialog(desk, desk.First());
    QCOMPARE(dialog->size(), QSize(472, 578));
    QCOMPARE(dialog->minimumSize(), dialog->maximumSize());
    struct Part
    {
        const char* name;
        QRect place;
        const char* text;
        const char* styleClass;
    };
    const Part parts[] = {
        {"LabTitle", QRect(30, 24, 300, 28), "Batch add", "normalTitle"},
        {"BtnClose", QRect(418, 26, 24, 24), "", "closeBtn"},
        {"LabTip", QRect(30, 76, 400, 22), "A catalog with a line, input name and use enter to new line", ""},
        {"textEdit", QRect(30, 102, 410, 392), "", ""},
        {"BtnOk", QRect(270, 518, 80, 30), "Add", "okBtn"},
        {"Btncancel", QRect(362, 518, 80, 30), "Cancel", "normalBtn"}};
    for (const Part& part : parts) {
        const auto* widget = Find<QWidget>(dialog, part.name);
        QVERIFY2(widget, part.name);
        QCOMPARE(widget->geometry(), part.place);
        QCOMPARE(widget->property("class").toString(), QLatin1String(part.styleClass));
        if (const auto* label = qobject_cast<const QLabel*>(widget))
            QCOMPARE(label->text(), QLatin1String(part.text));
        if (const auto* button = qobject_cast<const QPushButton*>(widget))
            QCOMPARE(button->text(), QLatin1String(part.text));
    }
    // The hint is shown whole, whatever font there is.
    const auto* tip = Find<QLabel>(dialog, "LabTip");
    QVERIFY(QFontMetrics(tip->font()).horizontalAdvance(tip->text()) <= tip->width());
}

void TestOutlineDialog::atTwiceTheScaleEverythingIsTwiceAsLarge()
{
    Utils::OVDpi::Instance()->OverrideScale(2);
    OutlineDesk desk(SmallOutline());
    BatchAddOutlineDlg* dialog = OpenDialog(desk, desk.First());
    QCOMPARE(dialog->size(), QSize(944, 1156));
    QCOMPARE(Find<QWidget>(dialog, "textEdit")->geometry(), QRect(60, 204, 820, 784));
    QCOMPARE(Find<QWidget>(dialog, "BtnOk")->size(), QSize(160, 60));
}

void TestOutlineDialog::theDialogIsModelessInTheMiddleAndTheSameOneAgain()
{
    OutlineDesk desk(SmallOutline());
    BatchAddOutlineDlg* dialog = OpenDialog(desk, desk.First());
    QVERIFY(dialog->isVisible());
    QVERIFY(!dialog->isModal());
    const QWidget* parent = dialog->parentWidget();
    QVERIFY(parent);
    const QPoint middle = parent->mapToGlobal(parent->rect().center());
    QVERIFY((dialog->geometry().center() - middle).manhattanLength() <= 2);
    dialog->hide();
    QCOMPARE(OpenDialog(desk, desk.First()), dialog);
    QVERIFY(dialog->isVisible());
}

void TestOutlineDialog::everyControlIsReachedByTheTabKeyAndHasANameToHear()
{
    OutlineDesk desk(SmallOutline());
    BatchAddOutlineDlg* dialog = OpenDialog(desk, desk.First());
    QApplication::setActiveWindow(dialog);
    QWidget* start = Find<QWidget>(dialog, "textEdit");
    QCOMPARE(dialog->focusWidget(), start);
    QStringList visited;
    do {
        QWidget* focused = dialog->focusWidget();
        visited.append(focused->objectName());
        const auto* button = qobject_cast<QPushButton*>(focused);
        QVERIFY(!focused->accessibleName().isEmpty() || (button && !button->text().isEmpty()));
        QTest::keyClick(focused, Qt::Key_Tab);
    } while (dialog->focusWidget() != start && visited.size() < 10);
    QCOMPARE(visited, (QStringList{"textEdit", "BtnOk", "Btncancel", "BtnClose"}));
}

void TestOutlineDialog::linesAreTypedWithEnterAndAddedBehindTheCurrentEntryAsSiblings()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("B");
    BatchAddOutlineDlg* dialog = OpenDialog(desk, tab);
    auto* edit = Find<QTextEdit>(dialog, "textEdit");
    QTest::keyClicks(edit, QStringLiteral("One"));
    QTest::keyClick(edit, Qt::Key_Return);
    QTest::keyClicks(edit, QStringLiteral("  Two")); // no level: every line becomes a sibling
    QTest::keyClick(edit, Qt::Key_Return);
    QTest::keyClicks(edit, QStringLiteral("Three"));
    QVERIFY(dialog->isVisible());
    QTest::keyClick(Find<QPushButton>(dialog, "BtnOk"), Qt::Key_Return);
    ViewFixture::Settle();
    QVERIFY(!dialog->isVisible());
    QVERIFY(edit->toPlainText().isEmpty());
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nOne\n  Two\nThree\nC\n  C1\n"));
    QCOMPARE(GQ_ToQStringFromUtf8(tab->Node({3})->NodeText()), QStringLiteral("  Two"));
    QCOMPARE(tab->Tree()->topLevelItemCount(), 6);
}

void TestOutlineDialog::aNestedCurrentEntryGetsSiblingsInItsParent()
{
    OutlineDesk desk(SmallOutline());
    desk.First()->MakeCurrent("A1");
    AddLines(desk, desk.First(), "1\n2");
    QCOMPARE(desk.First()->Names(), QStringLiteral("A\n  A1\n    A1a\n  1\n  2\n  A2\nB\nC\n  C1\n"));
    QCOMPARE(desk.First()->Rows(), desk.First()->Names());
}

void TestOutlineDialog::withoutACurrentEntryTheLinesComeLast()
{
    OutlineDesk desk(SmallOutline());
    desk.First()->Tree()->setCurrentItem(nullptr);
    AddLines(desk, desk.First(), "1\n2");
    QCOMPARE(desk.First()->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\n1\n2\n"));
}

void TestOutlineDialog::inADocumentWithoutAnOutlineTheRootIsMade()
{
    OutlineDesk desk(QStringLiteral("page 210 297"));
    const OutlineTab* tab = desk.First();
    QVERIFY(!tab->document->GetOutlineRoot());
    AddLines(desk, tab, "1\n2\n3");
    QCOMPARE(tab->Names(), QStringLiteral("1\n2\n3\n"));
    QCOMPARE(tab->Rows(), tab->Names());
    tab->Stack()->undo();
    QCOMPARE(tab->Rows(), QString());
    tab->Stack()->redo();
    QCOMPARE(tab->Names(), QStringLiteral("1\n2\n3\n"));
}

void TestOutlineDialog::emptyLinesVanishAndALineOfBlanksStays()
{
    OutlineDesk desk(QStringLiteral("page 210 297"));
    AddLines(desk, desk.First(), "\n\n1\n\n   \n2\n\n");
    QCOMPARE(desk.First()->Names(), QStringLiteral("1\n   \n2\n"));
    QCOMPARE(desk.First()->Rows(), QStringLiteral("1\n\n2\n"));
}

void TestOutlineDialog::onlyLinesFromTheLetterDOnAreCut_data()
{
    QTest::addColumn<QChar>("first");
    QTest::addColumn<bool>("isCut");
    QTest::newRow("digit") << QChar('7') << false;
    QTest::newRow("capital") << QChar('Z') << false;
    QTest::newRow("a") << QChar('a') << false;
    QTest::newRow("c") << QChar('c') << false;
    QTest::newRow("d") << QChar('d') << true;
    QTest::newRow("e") << QChar('e') << true;
    QTest::newRow("Chinese") << QChar(0x6587) << true;
}

void TestOutlineDialog::onlyLinesFromTheLetterDOnAreCut()
{
    QFETCH(QChar, first);
    QFETCH(bool, isCut);
    OutlineDesk desk(QStringLiteral("page 210 297"));
    const QString line = first + QString(149, QLatin1Char('x'));
    AddLines(desk, desk.First(), line);
    const QString title = GQ_ToQStringFromUtf8(desk.First()->Node({0})->NodeText());
    QCOMPARE(title, isCut ? line.left(100) : line);
}

void TestOutlineDialog::aBatchOfOnlyEmptyLinesClosesTheDialogAndChangesNothing()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    for (const char* lines : {"", "\n", "\n\n\n"}) {
        AddLines(desk, tab, lines);
        QVERIFY(!tab->pane->batchAddHandler->Dialog()->isVisible());
        QVERIFY(Find<QTextEdit>(tab->pane->batchAddHandler->Dialog(), "textEdit")->toPlainText().isEmpty());
    }
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\n"));
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestOutlineDialog::theEntriesHaveNoDestinationAndAreOneUndoStep()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("C");
    const QString before = tab->Names();
    AddLines(desk, tab, "1\n2");
    QCOMPARE(tab->Stack()->count(), 1);
    QCOMPARE(tab->Item("1")->text(1), QStringLiteral("..."));
    const auto* record = static_cast<G_OutlineItem*>(tab->Node({3})->data);
    QVERIFY(record->title.IsEmpty() && record->expanded && record->actions.IsEmpty());
    QVERIFY(!tab->Editor());
    tab->Stack()->undo();
    QCOMPARE(tab->Rows(), before);
    tab->Stack()->redo();
    QCOMPARE(tab->Rows(), before + "1\n2\n");
}

void TestOutlineDialog::cancelCloseAndEscapeKeepTheTextAndChangeNothing()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    for (const char* button : {"Btncancel", "BtnClose", ""}) {
        BatchAddOutlineDlg* dialog = OpenDialog(desk, tab);
        auto* edit = Find<QTextEdit>(dialog, "textEdit");
        edit->setPlainText(QStringLiteral("kept"));
        if (qstrlen(button) > 0)
            QTest::mouseClick(Find<QPushButton>(dialog, button), Qt::LeftButton);
        else
            QTest::keyClick(dialog, Qt::Key_Escape);
        QVERIFY(!dialog->isVisible());
        QCOMPARE(edit->toPlainText(), QStringLiteral("kept"));
    }
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestOutlineDialog::whatWasExpandedWhileTheDialogWasOpenStaysSo()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    BatchAddOutlineDlg* dialog = OpenDialog(desk, tab);
    tab->Item("A")->setExpanded(false);
    Find<QTextEdit>(dialog, "textEdit")->setPlainText(QStringLiteral("1"));
    QTest::mouseClick(Find<QPushButton>(dialog, "BtnOk"), Qt::LeftButton);
    QVERIFY(!tab->Item("A")->isExpanded());
    QVERIFY(tab->Item("C")->isExpanded());
}

void TestOutlineDialog::withAnotherDocumentInFrontTheDialogOnlyHides()
{
    OutlineDesk desk(SmallOutline());
    OutlineTab* first = desk.First();
    BatchAddOutlineDlg* dialog = OpenDialog(desk, first);
    Find<QTextEdit>(dialog, "textEdit")->setPlainText(QStringLiteral("1\n2"));
    OutlineTab* other = desk.Open(SmallOutline());
    const QString before = other->Dump();
    QTest::mouseClick(Find<QPushButton>(dialog, "BtnOk"), Qt::LeftButton);
    QVERIFY(!dialog->isVisible());
    QCOMPARE(other->Dump(), before);
    QCOMPARE(first->Stack()->count(), 0);
    QCOMPARE(other->Stack()->count(), 0);
    // What was typed is there when the user comes back.
    desk.MakeCurrent(first);
    QCOMPARE(OpenDialog(desk, first), dialog);
    QTest::mouseClick(Find<QPushButton>(dialog, "BtnOk"), Qt::LeftButton);
    QCOMPARE(first->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\n1\n2\n"));
    QCOMPARE(other->Dump(), before);
}

void TestOutlineDialog::aDocumentClosedWhileTheDialogIsOpenTakesTheDialogAlong()
{
    OutlineDesk desk(SmallOutline());
    OutlineTab* other = desk.Open(SmallOutline());
    const QPointer<BatchAddOutlineDlg> dialog(OpenDialog(desk, other));
    QVERIFY(dialog);
    Find<QTextEdit>(dialog, "textEdit")->setPlainText(QStringLiteral("1"));
    delete other->pane;
    ViewFixture::Settle();
    QVERIFY(!dialog);
    desk.MakeCurrent(desk.First());
    AddLines(desk, desk.First(), "1");
    QCOMPARE(desk.First()->Stack()->count(), 1);
}

void TestOutlineDialog::inAReadOnlyDocumentNothingIsAdded()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    const QString before = tab->Names();
    BatchAddOutlineDlg* dialog = OpenDialog(desk, tab);
    Find<QTextEdit>(dialog, "textEdit")->setPlainText(QStringLiteral("1"));
    tab->document->SetReadOnly(true); // its folder became one while the dialog was open
    QTest::mouseClick(Find<QPushButton>(dialog, "BtnOk"), Qt::LeftButton);
    QCOMPARE(tab->Names(), before);
    QCOMPARE(tab->Stack()->count(), 0);
}

TETO_TEST_MAIN(TestOutlineDialog)
#include "test_outline_dialog.moc"
