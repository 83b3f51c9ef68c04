#include "outline_cells.h"
#include "outline_gestures.h"

#include <outline/outline_pane.h>
#include <outline/outline_tree.h>
#include <tests/support/test_main.h>

#include <QPushButton>
#include <QScrollBar>
#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

class TestOutlineEditor : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    // The editor
    void onlyTheTitleHasAnEditor();
    void theEditorShowsTheStoredTitleSelectedWithoutScrollBars();
    void theEditorStandsWhereTheTitleStands_data();
    void theEditorStandsWhereTheTitleStands();
    void openingTheEditorDoesNotStretchItsRow();
    void lineFeedsAreTakenOut();
    void everyWayOfEndingAnEditRenamesOnce_data();
    void everyWayOfEndingAnEditRenamesOnce();
    void escapeLeavesTheTitle();
    void anEditThatOnlyChangesTheBlanksAroundIsARenameToo();
    void enterClearsAPendingRequestAlsoWithoutAChangeAndLosingTheFocusDoesNot();
};

void TestOutlineEditor::init()
{
    SetScale(1); // whatever screen this runs on
}

void TestOutlineEditor::cleanup()
{
    SetScale(0);
}

void TestOutlineEditor::onlyTheTitleHasAnEditor()
{
    OutlineDesk desk(Page() + Entry("A"));
    const OutlineTab* tab = desk.First();
    const auto make = [&](int column) {
        return std::unique_ptr<QWidget>(
            tab->Tree()->itemDelegate()->createEditor(nullptr, QStyleOptionViewItem(), Index(tab, "A", column)));
    };
    QVERIFY(qobject_cast<QTextEdit*>(make(0).get()));
    QVERIFY(!make(1));
}

void TestOutlineEditor::theEditorShowsTheStoredTitleSelectedWithoutScrollBars()
{
    OutlineDesk desk(Page() + Entry("  A title "));
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("A title");
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    const QTextEdit* editor = tab->Editor();
    QVERIFY(editor);
    QCOMPARE(editor->toPlainText(), QStringLiteral("  A title "));
    QCOMPARE(editor->textCursor().selectedText(), QStringLiteral("  A title "));
    QCOMPARE(editor->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(editor->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(editor->geometry(), Gesture::TitleRect(tab, "A title"));
    QVERIFY(editor->hasFocus());
    QVERIFY(!editor->accessibleName().isEmpty());
}

void TestOutlineEditor::theEditorStandsWhereTheTitleStands_data()
{
    QTest::addColumn<bool>("wraps");
    QTest::addColumn<float>("scale");
    QTest::newRow("wrapped") << true << 1.0F;
    QTest::newRow("one line") << false << 1.0F;
    QTest::newRow("wrapped at twice the scale") << true << 2.0F;
    QTest::newRow("one line at twice the scale") << false << 2.0F;
}

void TestOutlineEditor::theEditorStandsWhereTheTitleStands()
{
    QFETCH(bool, wraps);
    QFETCH(float, scale);
    SetScale(scale);
    OutlineDesk desk(Page() + Entry("Hg"));
    const OutlineTab* tab = desk.First();
    tab->pane->SetWordWrap(wraps);
    ViewFixture::Settle();
    const QRect cell = Gesture::TitleRect(tab, "Hg");
    const QRect shown = Ink(tab->Tree()->viewport()->grab(cell).toImage());
    tab->MakeCurrent("Hg");
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QTextEdit* editor = tab->Editor();
    QVERIFY(editor);
    QTextCursor cursor = editor->textCursor();
    cursor.clearSelection();
    editor->setTextCursor(cursor);
    editor->setCursorWidth(0); // no caret
    const QRect edited = Ink(editor->viewport()->grab().toImage()).translated(editor->viewport()->pos());
    QVERIFY(!shown.isEmpty() && !edited.isEmpty());
    QVERIFY2(
        qAbs(shown.left() - edited.left()) <= 1 && qAbs(shown.top() - edited.top()) <= 1,
        qPrintable(
            QStringLiteral("%1,%2 and %3,%4").arg(shown.left()).arg(shown.top()).arg(edited.left()).arg(edited.top())));
}

void TestOutlineEditor::openingTheEditorDoesNotStretchItsRow()
{
    OutlineDesk desk(Page() + Entry("A") + Entry("B"));
    const OutlineTab* tab = desk.First();
    const int before = Height(tab, "A");
    tab->MakeCurrent("A");
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QVERIFY(tab->Editor());
    tab->Tree()->doItemsLayout();
    QCOMPARE(Height(tab, "A"), before);
}

void TestOutlineEditor::lineFeedsAreTakenOut()
{
    OutlineDesk desk(Page() + Entry("A"));
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("A");
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    tab->Editor()->setPlainText(QStringLiteral("one\ntwo\n\nthree"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QStringLiteral("onetwothree\n"));
}

void TestOutlineEditor::everyWayOfEndingAnEditRenamesOnce_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::newRow("Return") << int(Qt::Key_Return) << 0;
    QTest::newRow("Enter") << int(Qt::Key_Enter) << int(Qt::KeypadModifier);
    QTest::newRow("Shift+Return") << int(Qt::Key_Return) << int(Qt::ShiftModifier);
    QTest::newRow("Tab") << int(Qt::Key_Tab) << 0;
    QTest::newRow("another control") << 0 << 0;
    QTest::newRow("a click on another entry") << -1 << 0;
}

void TestOutlineEditor::everyWayOfEndingAnEditRenamesOnce()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    OutlineDesk desk(Page() + Entry("A") + "  " + Entry("A1") + Entry("B"));
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("A1");
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QTest::keyClicks(tab->Editor(), QStringLiteral("Z"));
    if (key > 0)
        QTest::keyClick(tab->Editor(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    else if (key == 0)
        tab->pane->delButton->setFocus();
    else
        Gesture::Click(tab, "B");
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QStringLiteral("A\n  Z\nB\n"));
    QCOMPARE(tab->Rows(), tab->Names());
    QCOMPARE(tab->Stack()->count(), 1);
    QVERIFY(!tab->Editor());
    QVERIFY(!tab->Tree()->signalsBlocked());
}

void TestOutlineEditor::escapeLeavesTheTitle()
{
    OutlineDesk desk(Page() + Entry("A") + Entry("B"));
    const OutlineTab* tab = desk.First();
    Gesture::Rename(tab, "A", "Z", Qt::Key_Escape);
    QCOMPARE(tab->Names(), QStringLiteral("A\nB\n"));
    QCOMPARE(tab->Rows(), tab->Names());
    QCOMPARE(tab->Stack()->count(), 0);
    Gesture::Rename(tab, "B", "Y");
    QCOMPARE(tab->Names(), QStringLiteral("A\nY\n"));
}

void TestOutlineEditor::anEditThatOnlyChangesTheBlanksAroundIsARenameToo()
{
    for (const Qt::Key endKey : {Qt::Key_Return, Qt::Key_Tab}) {
        OutlineDesk desk(Page() + Entry(" A"));
        Gesture::Rename(desk.First(), "A", "A", endKey); // the row shows "A" before and after
        QCOMPARE(desk.First()->Names(), QStringLiteral("A\n"));
        QCOMPARE(desk.First()->Stack()->count(), 1);
    }
}

void TestOutlineEditor::enterClearsAPendingRequestAlsoWithoutAChangeAndLosingTheFocusDoesNot()
{
    OutlineDesk desk(Page() + Entry("A") + Entry("B"));
    const OutlineTab* tab = desk.First();
    const auto request = [tab] {
        tab->MakeCurrent("A");
        QTest::keyClick(tab->Tree(), Qt::Key_F2);
        tab->Tree()->pendingParent = tab->document->GetOutlineRoot();
        tab->Tree()->pendingRow = 1;
    };
    request();
    tab->pane->delButton->setFocus();
    QCOMPARE(tab->Tree()->pendingRow, 1);
    request();
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    QVERIFY(!tab->Tree()->pendingParent);
    QCOMPARE(tab->Tree()->pendingRow, -1);
    QCOMPARE(tab->Stack()->count(), 0);
}

TETO_TEST_MAIN(TestOutlineEditor)
#include "test_outline_editor.moc"
