#include "outline_interceptors_fixture.h"

#include <frame/operation/operation.h>
#include <outline/outline_interceptors.h>
#include <outline/outline_node.h>
#include <outline/outline_pane.h>
#include <outline/outline_rename.h>
#include <outline/outline_tree.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>

#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

// How an edit of a row becomes a rename.
class TestOutlineRenames : public OutlineInterceptorsFixture
{
    Q_OBJECT
private slots:
    // Rename

    void aDoubleClickInEitherColumnOpensTheTitlesEditor()
    {
        for (const int column : {0, 1}) {
            tab->MakeCurrent("A2");
            emit tab->Tree()->itemDoubleClicked(tab->Item("A2"), column);
            QVERIFY(tab->Editor());
            QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("A2"));
            Press(Qt::Key_Escape);
            QVERIFY(!tab->Editor());
        }
        QCOMPARE(tab->Stack()->count(), 0);
    }

    void enterRenamesTheEntryInOneStep()
    {
        const Onlooker onlooker("d_outline_rename");
        Type("A1a", "renamed");
        QCOMPARE(OutlineTitle(tab->Node({0, 0, 0})), QStringLiteral("renamed"));
        QVERIFY(OutlineItemOf(tab->Node({0, 0, 0}))->title == "renamed");
        QCOMPARE(onlooker.seen, 1);
        QCOMPARE(onlooker.json, QStringLiteral("[{\"index\":0,\"level\":2},{\"index\":0,\"level\":1}]"));
        QCOMPARE(onlooker.nodeIdx, 0);
        QCOMPARE(onlooker.title, QStringLiteral("renamed"));
        QCOMPARE(tab->Stack()->count(), 1);
        QCOMPARE(probe->Types(), QList<int>{110});
        QCOMPARE(tab->Rows(), tab->Names());
        tab->Stack()->undo();
        QCOMPARE(OutlineTitle(tab->Node({0, 0, 0})), QStringLiteral("A1a"));
        QCOMPARE(tab->Rows(), tab->Names());
    }

    void losingTheFocusRenamesToo()
    {
        BeginEdit("B");
        tab->Editor()->setPlainText("left");
        EndEditByFocus();
        QTRY_COMPARE(OutlineTitle(tab->Node({1})), QStringLiteral("left"));
        QCOMPARE(tab->Stack()->count(), 1);
    }

    void renamingToTheSameTextIsNoStep()
    {
        Type("B", "B");
        QCOMPARE(tab->Stack()->count(), 0);
        QCOMPARE(probe->Total(), 0);
        QCOMPARE(tab->Item(Rows{1})->text(0), QStringLiteral("B"));
    }

    void emptyingTheTextBringsTheOldTitleBack()
    {
        Type("B", "");
        QCOMPARE(tab->Stack()->count(), 0);
        QCOMPARE(tab->Item(Rows{1})->text(0), QStringLiteral("B"));
        // Also when the edit of another entry came before, and by the menu instead of the double click.
        Type("A2", "A2");
        tab->MakeCurrent("B");
        desk->Perform("d_outline_rename");
        tab->Editor()->clear();
        Press(Qt::Key_Return);
        QCOMPARE(tab->Item(Rows{1})->text(0), QStringLiteral("B"));
        QCOMPARE(tab->Stack()->count(), 0);
    }

    void anOverLongTextIsCutToAHundredCharactersAndSaved()
    {
        const QString title(100, 'x');
        Type("B", title + "yz");
        QCOMPARE(OutlineTitle(tab->Node({1})), title);
        QCOMPARE(tab->Item(Rows{1})->text(0), title);
        QCOMPARE(tab->Stack()->count(), 1);
        Type(title, title + "z"); // cut to what it is: a step all the same
        QCOMPARE(tab->Stack()->count(), 2);
        Type(title, title);
        QCOMPARE(tab->Stack()->count(), 2);
    }

    void anOverLongTitleFromAFileIsCutAtItsNextEdit()
    {
        Open("page 210 297\noutline \"" + QString(10000, 'x') + "\"\n");
        tab->Tree()->setCurrentItem(tab->Item(Rows{0}));
        desk->Perform("d_outline_rename");
        QCOMPARE(tab->Editor()->toPlainText().size(), 10000);
        Press(Qt::Key_Return); // unchanged, yet too long
        QCOMPARE(OutlineTitle(tab->Node({0})), QString(100, 'x'));
        QCOMPARE(tab->Stack()->count(), 1);
        tab->Stack()->undo();
        QCOMPARE(OutlineTitle(tab->Node({0})).size(), 10000);
    }

    void whatWasFoldedIsInTheDocumentBeforeARename()
    {
        tab->Item("A")->setExpanded(false);
        Type("B", "new");
        QVERIFY(!OutlineItemOf(tab->Node({0}))->expanded);
        QVERIFY(!tab->Item(Rows{0})->isExpanded());
    }

    void aHundredCharactersAreNotTooLong()
    {
        const QString title = QString(99, 'x') + "z";
        Type("B", title);
        QCOMPARE(OutlineTitle(tab->Node({1})), title);
    }

    void blanksAroundATitleAreKeptInTheDocumentAndNotShown()
    {
        Type("B", "  spaced ");
        QCOMPARE(OutlineTitle(tab->Node({1})), QStringLiteral("  spaced "));
        QCOMPARE(tab->Item(Rows{1})->text(0), QStringLiteral("spaced"));
        BeginEdit("spaced");
        QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("  spaced "));
        Press(Qt::Key_Return);
        QCOMPARE(tab->Stack()->count(), 1);
        QCOMPARE(tab->Item(Rows{1})->text(0), QStringLiteral("spaced"));
    }

    void aRenameByTheMenuAndOneByADoubleClickFollowEachOther()
    {
        for (const QString title : {"one", "two", "three"}) {
            tab->Tree()->setCurrentItem(tab->Item(Rows{1}));
            desk->Perform("d_outline_rename");
            ViewFixture::Settle(); // what nobody holds is freed
            tab->Editor()->setPlainText(title + " by the menu");
            Press(Qt::Key_Return);
            ViewFixture::Settle();
            Type(title + " by the menu", title);
            ViewFixture::Settle();
            QCOMPARE(OutlineTitle(tab->Node({1})), title);
        }
        QCOMPARE(tab->Stack()->count(), 6);
    }

    void theEditorOfANewEntryRenamesIt()
    {
        tab->MakeCurrent("B");
        tab->pane->AddOutline();
        tab->Editor()->setPlainText("mine");
        Press(Qt::Key_Return);
        QCOMPARE(OutlineTitle(tab->Node({2})), QStringLiteral("mine"));
        QCOMPARE(tab->Stack()->count(), 2);
        tab->Stack()->undo();
        tab->Stack()->undo();
        QCOMPARE(tab->document->GetOutlineRoot()->SubNodeCount(), 3);
    }

    void withoutACurrentEntryThereIsNoEditor()
    {
        tab->Tree()->setCurrentItem(nullptr);
        QVERIFY(!desk->Perform("d_outline_rename"));
        QVERIFY(!tab->Editor());
    }

    void inADocumentThatMayNotBeEditedThereIsNoEditor_data()
    {
        QTest::addColumn<QString>("state");
        QTest::newRow("read-only") << QStringLiteral("readonly\n");
        QTest::newRow("locked") << QStringLiteral("rights edit=no annot=no export=no\n");
    }

    void inADocumentThatMayNotBeEditedThereIsNoEditor()
    {
        QFETCH(QString, state);
        Open(SmallOutline() + state);
        tab->MakeCurrent("B");
        QVERIFY(!desk->Perform("d_outline_rename"));
        emit tab->Tree()->itemDoubleClicked(tab->Item("B"), 0);
        QVERIFY(!tab->Editor());
    }

    void aFailedRenameTakesTheDoubleClicksToggleBack()
    {
        tab->MakeCurrent("A");
        G_Operation* operation = desk->Context()->CreateOperationByName("d_outline_rename", QString());
        const bool wasExpanded = tab->Item("A")->isExpanded();
        operation->Result = 1;
        tab->pane->renameHandler->AfterDoActionHandle(operation);
        QCOMPARE(tab->Item("A")->isExpanded(), wasExpanded);
        operation->Result = 0;
        tab->pane->renameHandler->AfterDoActionHandle(operation);
        QCOMPARE(tab->Item("A")->isExpanded(), !wasExpanded);
        tab->pane->renameHandler->AfterDoActionHandle(operation);
        QCOMPARE(tab->Item("A")->isExpanded(), wasExpanded);
        tab->Tree()->setCurrentItem(nullptr);
        tab->pane->renameHandler->AfterDoActionHandle(operation);
        operation->DeleteLater();
    }

    void anEditThatEndsByASwitchOfDocumentsStaysWithItsDocument()
    {
        BeginEdit("B");
        tab->Editor()->setPlainText("late");
        OutlineTab* other = desk->Open(SmallOutline());
        EndEditByFocus();
        QCOMPARE(OutlineTitle(tab->Node({1})), QStringLiteral("late"));
        QCOMPARE(tab->Stack()->count(), 1);
        QCOMPARE(OutlineTitle(other->Node({1})), QStringLiteral("B"));
        QCOMPARE(other->Stack()->count(), 0);
    }

private:
    // A double click, the text, Enter.
    void Type(const QString& title, const QString& text)
    {
        BeginEdit(title);
        tab->Editor()->setPlainText(text);
        Press(Qt::Key_Return);
    }
};

TETO_TEST_MAIN(TestOutlineRenames)
#include "test_outline_renames.moc"
