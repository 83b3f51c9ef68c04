#include "outline_desk.h"

#include <frame/base/converters.h>
#include <frame/base/log.h>
#include <frame/navigation/icore.h>
#include <frame/operation/event_manager.h>
#include <frame/operation/operation.h>
#include <outline/batch_add_dialog.h>
#include <outline/outline_commands.h>
#include <outline/outline_interceptors.h>
#include <outline/outline_json.h>
#include <outline/outline_node.h>
#include <outline/outline_pane.h>
#include <outline/outline_rename.h>
#include <outline/outline_tree.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>

#include <QPushButton>
#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

#include <memory>

namespace {

constexpr int ok = 1024;
constexpr int cancel = 4194304;
constexpr int okAndCancel = 4195328;
constexpr int close = 2097152;

using Rows = QList<int>;

// Looks at an operation just ahead of its work, and can refuse it.
class Onlooker : public G_OperationInterceptor
{
public:
    explicit Onlooker(const char* name)
        : name(name)
    {
    }
    bool OperationFilter(G_Operation* op) override { return OperationNameMatches(op, name); }
    bool BeforeDoActionHandle(G_Operation* op) override
    {
        json = op->Params->GetQString("jsonParam");
        title = op->Params->GetQString("title");
        pageId = op->Params->GetQString("pageId");
        nodeIdx = op->Params->GetInt32("nodeIdx", -7);
        marks = 0;
        while (op->Params->GetBool("node" + QByteArray::number(marks)))
            ++marks;
        ++seen;
        return !refuses;
    }
    const char* name;
    QString json;
    QString title;
    QString pageId;
    int nodeIdx = -7;
    int marks = 0; // "node0", "node1", ... that are true
    int seen = 0;
    bool refuses = false;
};

// An operation whose name is told as the host may tell it, and that may fail.
class NamedOperation : public G_Operation
{
public:
    explicit NamedOperation(const char* name)
        : name(name)
    {
    }
    G_Operation* Clone() const override
    {
        auto* copy = new NamedOperation(name);
        copy->CopyFrom(this);
        return copy;
    }
    const char* Name() const override { return name; }
    bool DoAction() override { return false; }

private:
    const char* name;
};

} // namespace

// What the outline pane's interceptors ask, pack and mend.
class TestOutlineInterceptors : public QObject
{
    Q_OBJECT

private slots:
    void init() { Open(SmallOutline()); }

    void cleanup()
    {
        probe.reset();
        desk.reset();
        SetFrameLogListener({});
    }

    // The filter

    void theLastPieceOfTheNameDecidesInAnyCase_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("matches");
        QTest::newRow("plain") << QByteArray("d_outline_add") << true;
        QTest::newRow("path") << QByteArray("host/menu/d_outline_add") << true;
        QTest::newRow("mixed case") << QByteArray("host/D_Outline_Add") << true;
        QTest::newRow("empty piece behind") << QByteArray("d_outline_add/") << true;
        QTest::newRow("piece behind") << QByteArray("d_outline_add/x") << false;
        QTest::newRow("longer") << QByteArray("d_outline_addsub") << false;
        QTest::newRow("from outside") << QByteArray("d_addoutline") << false;
    }

    void theLastPieceOfTheNameDecidesInAnyCase()
    {
        QFETCH(QByteArray, name);
        QFETCH(bool, matches);
        NamedOperation prototype(name.constData());
        prototype.RegisterToGlobal();
        G_Operation* operation = desk->Context()->CreateOperationByName(name, QString());
        QCOMPARE(tab->pane->addHandler->OperationFilter(operation), matches);
        operation->DeleteLater();
    }

    void eachInterceptorAnswersToItsOwnOperationOnItsOwnDocument()
    {
        const QList<QPair<const char*, G_OperationInterceptor*>> handlers{
            {"d_outline_add", tab->pane->addHandler},
            {"d_outline_addsub", tab->pane->addSubHandler},
            {"d_outline_batchadd", tab->pane->batchAddHandler},
            {"d_outline_del", tab->pane->delHandler},
            {"d_outline_delall", tab->pane->delAllHandler},
            {"d_outline_rename", tab->pane->renameHandler},
            {"d_outline_resetpos", tab->pane->resetPosHandler},
            {"d_outline_wordwrap", tab->pane->wordwrapHandler},
            {"d_outline_expandsub", tab->pane->expandSubHandler},
            {"d_outline_expandorcollapse", tab->pane->expandOrCollapseHandler},
        };
        QList<G_Operation*> operations;
        for (const auto& own : handlers) {
            operations.append(desk->Context()->CreateOperationByName(own.first, QString()));
            for (const auto& other : handlers)
                QCOMPARE(other.second->OperationFilter(operations.last()), own.second == other.second);
        }
        desk->Open(SmallOutline());
        for (const auto& own : handlers) {
            operations.append(desk->Context()->CreateOperationByName(own.first, QString()));
            QVERIFY(!own.second->OperationFilter(operations.last())); // the other document's
        }
        for (G_Operation* operation : operations)
            operation->DeleteLater();
    }

    void withoutADocumentTheyAnswerToNothing()
    {
        NaviOutlineWidget empty;
        GPI_OutlineAdd add(&empty);
        GPI_OutlineDel none(nullptr);
        G_Operation* operation = desk->Context()->CreateOperationByName("d_outline_add", QString());
        QVERIFY(!add.OperationFilter(operation));
        QVERIFY(!none.OperationFilter(operation));
        operation->DeleteLater();
    }

    // Add and add-sub

    void addWithoutACurrentEntryPutsTheNewOneLastInTheRoot()
    {
        tab->Tree()->setCurrentItem(nullptr);
        const Onlooker onlooker("d_outline_add");
        tab->pane->AddOutline();
        QCOMPARE(onlooker.json, QStringLiteral("[-1]"));
        QCOMPARE(OutlineTitle(tab->Node({3})), QStringLiteral("new outline"));
        QVERIFY(tab->Editor());
        QCOMPARE(tab->Tree()->currentItem(), tab->Item(Rows{3}));
    }

    void addWithACurrentEntryPutsTheNewOneStraightBehindItAndOpensItsEditor()
    {
        tab->MakeCurrent("A1");
        const Onlooker onlooker("d_outline_add");
        tab->pane->AddOutline();
        QCOMPARE(onlooker.json, QStringLiteral("[0,{\"index\":0,\"level\":1}]"));
        QCOMPARE(OutlineTitle(tab->Node({0, 1})), QStringLiteral("new outline"));
        QCOMPARE(OutlineTitle(tab->Node({0, 2})), QStringLiteral("A2"));
        QVERIFY(tab->Editor());
        QCOMPARE(tab->Tree()->currentItem(), tab->Item(Rows{0, 1}));
        QCOMPARE(tab->Tree()->pendingParent, nullptr);
        QCOMPARE(tab->Tree()->pendingRow, -1);
    }

    void addSubPutsTheNewOneLastBelowTheCurrentEntryAndOpensItsEditor()
    {
        tab->MakeCurrent("A");
        const Onlooker onlooker("d_outline_addsub");
        QVERIFY(desk->Perform("d_outline_addsub"));
        QCOMPARE(onlooker.json, QStringLiteral("[{\"index\":0,\"level\":1}]"));
        QCOMPARE(onlooker.title, onlooker.json);
        QCOMPARE(onlooker.pageId, onlooker.json);
        QCOMPARE(OutlineTitle(tab->Node({0, 2})), QStringLiteral("new outline"));
        QVERIFY(tab->Editor());
        QCOMPARE(tab->Tree()->currentItem(), tab->Item(Rows{0, 2}));
    }

    void addSubWithoutACurrentEntryPutsTheNewOneLastInTheRoot()
    {
        tab->Tree()->setCurrentItem(nullptr);
        QVERIFY(desk->Perform("d_outline_addsub"));
        QCOMPARE(OutlineTitle(tab->Node({3})), QStringLiteral("new outline"));
    }

    void inADocumentWithoutAnOutlineAddMakesTheRootAndAddSubDoesNot()
    {
        Open("page 210 297\n");
        QVERIFY(!desk->Perform("d_outline_addsub"));
        QCOMPARE(tab->document->GetOutlineRoot(), nullptr);
        QCOMPARE(tab->Tree()->pendingRow, -1);
        QVERIFY(desk->Perform("d_outline_add"));
        QCOMPARE(tab->Names(), QStringLiteral("new outline\n"));
        const G_TreeNode* root = tab->document->GetOutlineRoot();
        QVERIFY(desk->Perform("d_outline_add"));
        QCOMPARE(static_cast<const G_TreeNode*>(tab->document->GetOutlineRoot()), root);
    }

    void aDocumentThatTakesNoOutlineIsLeftAlone()
    {
        Open("page 210 297\n");
        tab->document->SetCreateRootFailure(true);
        QVERIFY(!desk->Perform("d_outline_add"));
        QCOMPARE(tab->Stack()->count(), 0);
        QVERIFY(!tab->Editor());
    }

    void aFailedAdditionLeavesNoRequestForAnEditorBehind_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("add") << QByteArray("d_outline_add");
        QTest::newRow("add-sub") << QByteArray("d_outline_addsub");
    }

    void aFailedAdditionLeavesNoRequestForAnEditorBehind()
    {
        QFETCH(QByteArray, name);
        tab->MakeCurrent("A");
        tab->document->GetOutlineRoot()->SetChangeGuard([](auto...) { return false; });
        desk->Perform(name);
        tab->document->GetOutlineRoot()->SetChangeGuard({});
        tab->Stack()->push(new QUndoCommand); // any other change refills the tree
        QVERIFY(!tab->Editor());
    }

    void addingFromOutsideMakesThePaneAdd()
    {
        tab->MakeCurrent("B");
        QVERIFY(desk->Perform("d_addoutline"));
        QCOMPARE(DeskNavigation::opened.size(), 1);
        QCOMPARE(OutlineTitle(tab->Node({2})), QStringLiteral("new outline"));
        QCOMPARE(tab->Stack()->count(), 1);
        QVERIFY(tab->Editor());
        QCOMPARE(probe->Types(), (QList<int>{110, 1000})); // told when its delivery ends
    }

    void whatWasFoldedInThePaneIsInTheDocumentBeforeRecordsAreCopied_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char* name :
             {"d_outline_add", "d_outline_addsub", "d_outline_del", "d_outline_delall", "d_outline_resetpos"})
            QTest::newRow(name) << QByteArray(name);
    }

    void whatWasFoldedInThePaneIsInTheDocumentBeforeRecordsAreCopied()
    {
        QFETCH(QByteArray, name);
        tab->Item("A")->setExpanded(false);
        QVERIFY(OutlineItemOf(tab->Node({0}))->expanded);
        tab->Select({"B"});
        desk->Context()->AnswerAllWith(cancel);
        Onlooker onlooker(name.constData());
        onlooker.refuses = true;
        desk->Perform(name);
        QVERIFY(!OutlineItemOf(tab->Node({0}))->expanded);
        QCOMPARE(probe->Total(), 0);
        QCOMPARE(tab->Stack()->count(), 0);
    }

    // Delete

    void aSelectionInAnyOrderIsPackedInTheTreesOrder()
    {
        desk->Context()->AnswerAllWith(ok);
        Onlooker onlooker("d_outline_del");
        onlooker.refuses = true;
        tab->Select({"A2", "A1a", "C1", "B"});
        tab->pane->DelOutline();
        const QString packed = onlooker.json;
        QCOMPARE(packed,
                 OutlineJson::DeleteText({tab->Node({0, 0, 0}), tab->Node({0, 1}), tab->Node({1}), tab->Node({2, 0})}));
        QCOMPARE(onlooker.marks, 4);
        tab->Select({"A1a", "A2", "B", "C1"});
        tab->pane->DelOutline();
        QCOMPARE(onlooker.json, packed);
    }

    void aParentAndItsGrandchildAreDeletedByTheParentAlone()
    {
        desk->Context()->AnswerAllWith(ok);
        const Onlooker onlooker("d_outline_del");
        tab->Select({"A1a", "A"});
        tab->pane->DelOutline();
        QCOMPARE(onlooker.marks, 1);
        QCOMPARE(tab->Names(), QStringLiteral("B\nC\n  C1\n"));
        QCOMPARE(tab->Rows(), tab->Names());
        tab->Stack()->undo();
        QCOMPARE(tab->Rows(), tab->Names());
        QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\n"));
        QCOMPARE(probe->Types(), (QList<int>{110, 110}));
    }

    void deletingAnEntryWithADestinationAsksFirst()
    {
        for (const int answer : {cancel, close}) {
            tab->Select({"A"});
            desk->Context()->Answer(answer);
            tab->pane->DelOutline();
        }
        const AskedBox box = desk->Context()->LastAsked();
        QCOMPARE(box.kind, QStringLiteral("message"));
        QCOMPARE(box.title, QStringLiteral("Warning"));
        QCOMPARE(box.text, QStringLiteral("Already exist associate pageIndex,dou you want to del?"));
        QCOMPARE(box.buttons, okAndCancel);
        QCOMPARE(box.defaultButton, ok);
        QCOMPARE(tab->Stack()->count(), 0);
        desk->Context()->Answer(ok);
        tab->pane->DelOutline();
        QCOMPARE(tab->Node({0})->SubNodeCount(), 0); // B moved up
    }

    void onlyTheFirstSelectedEntryIsAskedAbout()
    {
        tab->Select({"B", "C"});
        tab->pane->DelOutline(); // B has no destination: no question, though C has one
        QVERIFY(desk->Context()->Asked().isEmpty());
        QCOMPARE(tab->document->GetOutlineRoot()->SubNodeCount(), 1);
        tab->Stack()->undo();
        tab->Select({"C", "B"});
        desk->Context()->Answer(cancel);
        tab->pane->DelOutline();
        QCOMPARE(tab->document->GetOutlineRoot()->SubNodeCount(), 3);
    }

    void deletingWithNothingSelectedSaysSo()
    {
        tab->Tree()->clearSelection();
        desk->Context()->Answer(close);
        tab->pane->DelOutline();
        const AskedBox box = desk->Context()->LastAsked();
        QCOMPARE(box.title, QStringLiteral("Warning"));
        QCOMPARE(box.text, QStringLiteral("No select item"));
        QCOMPARE(box.buttons, close);
        QCOMPARE(tab->Stack()->count(), 0);
    }

    void deletingAllAsksFirst()
    {
        desk->Context()->Answer(cancel);
        tab->pane->DelAllOutline();
        const AskedBox box = desk->Context()->LastAsked();
        QCOMPARE(box.kind, QStringLiteral("message"));
        QCOMPARE(box.title, QStringLiteral("Warning"));
        QCOMPARE(box.text, QStringLiteral("Do you want to del all outlines?"));
        QCOMPARE(box.buttons, okAndCancel);
        QCOMPARE(box.defaultButton, ok);
        QCOMPARE(tab->Stack()->count(), 0);
        desk->Context()->Answer(ok);
        tab->pane->DelAllOutline();
        QCOMPARE(tab->Names(), QString());
        QCOMPARE(tab->Rows(), QString());
        desk->Context()->Answer(ok);
        tab->pane->DelAllOutline(); // none left: one more command all the same
        QCOMPARE(tab->Stack()->count(), 2);
        tab->Stack()->undo();
        tab->Stack()->undo();
        QCOMPARE(tab->Rows(), tab->Names());
        QCOMPARE(tab->Names().count('\n'), 7);
    }

    void aTreeThatChangesWhileTheBoxIsUpLosesNothingElse()
    {
        tab->Select({"C1"});
        desk->Context()->SetWhileOpen([this](const AskedBox&) {
            tab->document->GetOutlineRoot()->RemoveSubNode(2);
            tab->pane->UpdateOutline(0);
        });
        desk->Context()->Answer(ok);
        tab->pane->DelOutline();
        QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\n"));
        QCOMPARE(tab->Rows(), tab->Names());
    }

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

    // Reset

    void anEntryWithoutADestinationGetsOneWithoutAQuestion()
    {
        tab->MakeCurrent("B");
        const Onlooker onlooker("d_outline_resetpos");
        QVERIFY(desk->Perform("d_outline_resetpos"));
        QCOMPARE(onlooker.json, QStringLiteral("[]"));
        QCOMPARE(onlooker.nodeIdx, 1);
        QVERIFY(desk->Context()->Asked().isEmpty());
        QCOMPARE(OutlineItemOf(tab->Node({1}))->actions.GetSize(), 1);
        QCOMPARE(tab->Item(Rows{1})->text(1), QStringLiteral("1"));
        QCOMPARE(probe->StatusTexts(), QStringList{"Associate success!"});
    }

    void anEntryWithADestinationAsksAndThenHoldsOneMore()
    {
        tab->MakeCurrent("A");
        desk->Context()->Answer(cancel);
        QVERIFY(!desk->Perform("d_outline_resetpos"));
        const AskedBox box = desk->Context()->LastAsked();
        QCOMPARE(box.title, QStringLiteral("Warning"));
        QCOMPARE(box.text, QStringLiteral("Do you want to change associate position?"));
        QCOMPARE(box.buttons, okAndCancel);
        QCOMPARE(box.defaultButton, ok);
        QCOMPARE(tab->Stack()->count(), 0);
        tab->view->GoToPage(tab->view, 2, CCA_GRect(), false);
        tab->MakeCurrent("A");
        desk->Context()->Answer(ok);
        QVERIFY(desk->Perform("d_outline_resetpos"));
        QCOMPARE(OutlineItemOf(tab->Node({0}))->actions.GetSize(), 2);
        QCOMPARE(tab->Item(Rows{0})->text(1), QStringLiteral("3")); // the last one's page
        QCOMPARE(probe->StatusTexts(), QStringList{"Associate success!"});
        tab->Stack()->undo();
        QCOMPARE(OutlineItemOf(tab->Node({0}))->actions.GetSize(), 1);
        QCOMPARE(tab->Item(Rows{0})->text(1), QStringLiteral("1"));
    }

    void withoutACurrentEntryTheResetSaysThatItFailed()
    {
        tab->Tree()->setCurrentItem(nullptr);
        desk->Context()->Answer(close);
        QVERIFY(!desk->Perform("d_outline_resetpos"));
        const AskedBox box = desk->Context()->LastAsked();
        QCOMPARE(box.title, QStringLiteral("Warning"));
        QCOMPARE(box.text, QStringLiteral("Associate failed!"));
        QCOMPARE(box.buttons, close);
        QVERIFY(probe->StatusTexts().isEmpty());
    }

    void anEntryThatVanishesWhileTheBoxIsUpIsNotReset()
    {
        tab->MakeCurrent("C1");
        desk->Context()->SetWhileOpen([this](const AskedBox& box) {
            if (!box.text.contains("change"))
                return;
            tab->document->GetOutlineRoot()->RemoveSubNode(2);
            tab->pane->UpdateOutline(0);
            tab->Tree()->setCurrentItem(nullptr);
        });
        desk->Context()->Answer(ok);
        desk->Context()->Answer(close);
        QVERIFY(!desk->Perform("d_outline_resetpos"));
        QCOMPARE(desk->Context()->LastAsked().text, QStringLiteral("Associate failed!"));
        QCOMPARE(tab->Stack()->count(), 0);
    }

    // Display

    void theWrapIsFlippedAndTheOldStateLogged()
    {
        QList<QByteArray> lines;
        SetFrameLogListener([&lines](const QByteArray& line) { lines.append(line); });
        QVERIFY(tab->pane->wordWrap);
        QVERIFY(desk->Perform("d_outline_wordwrap"));
        QVERIFY(!tab->pane->wordWrap);
        QVERIFY(lines.contains("true GPI_OutlineWordwrap::PrepareDataHandle"));
        QVERIFY(desk->Perform("d_outline_wordwrap"));
        QVERIFY(tab->pane->wordWrap);
        QVERIFY(lines.contains("false GPI_OutlineWordwrap::PrepareDataHandle"));
    }

    void expandingBelowExpandsTheCurrentEntryAlone()
    {
        tab->Tree()->collapseAll();
        tab->MakeCurrent("A");
        QVERIFY(desk->Perform("d_outline_expandsub"));
        QVERIFY(tab->Item(Rows{0})->isExpanded());
        QVERIFY(tab->Item(Rows{0, 0})->isExpanded());
        QVERIFY(!tab->Item(Rows{2})->isExpanded());
    }

    void expandOrCollapseAppliesTheButtonsStateWithoutFlippingIt()
    {
        tab->Tree()->collapseAll();
        QVERIFY(desk->Perform("d_outline_expandorcollapse"));
        QVERIFY(tab->Item(Rows{0})->isExpanded());
        QVERIFY(!tab->pane->expandButton->isChecked());
        tab->pane->expandButton->setChecked(true);
        QVERIFY(desk->Perform("d_outline_expandorcollapse"));
        QVERIFY(!tab->Item(Rows{0})->isExpanded());
        QVERIFY(tab->pane->expandButton->isChecked());
    }

    // Batch add

    void batchAddShowsOneDialogAndStopsTheOperation()
    {
        const Onlooker onlooker("d_outline_batchadd");
        QVERIFY(!desk->Perform("d_outline_batchadd"));
        const QPointer<BatchAddOutlineDlg> dialog = tab->pane->batchAddHandler->Dialog();
        QVERIFY(dialog && dialog->isVisible());
        QVERIFY(!dialog->isModal());
        QCOMPARE(onlooker.seen, 0);
        dialog->hide();
        tab->pane->BatchAddOutline();
        QCOMPARE(tab->pane->batchAddHandler->Dialog(), dialog.data());
        QVERIFY(dialog->isVisible());
        ViewFixture::Settle();
        QVERIFY(dialog);
        delete tab->pane;
        QVERIFY(!dialog);
    }

    void theDialogDiesWithThePaneAlsoWhenTheMainWindowOwnsIt()
    {
        QWidget mainWindow;
        desk->Context()->SetDialogParent(&mainWindow);
        Core::ICore::SetContext(desk->Context());
        tab->pane->BatchAddOutline();
        Core::ICore::SetContext(nullptr);
        const QPointer<BatchAddOutlineDlg> dialog = tab->pane->batchAddHandler->Dialog();
        QCOMPARE(dialog->parentWidget(), &mainWindow);
        delete tab->pane;
        QVERIFY(!dialog);
        desk->Context()->SetDialogParent(nullptr);
    }

    void aDialogThatDiedWithTheMainWindowIsMadeAnew()
    {
        auto mainWindow = std::make_unique<QWidget>();
        desk->Context()->SetDialogParent(mainWindow.get());
        Core::ICore::SetContext(desk->Context());
        tab->pane->BatchAddOutline();
        Core::ICore::SetContext(nullptr);
        desk->Context()->SetDialogParent(nullptr);
        mainWindow.reset();
        QVERIFY(!tab->pane->batchAddHandler->Dialog());
        tab->pane->BatchAddOutline();
        QVERIFY(tab->pane->batchAddHandler->Dialog()->isVisible());
    }

    void theDialogStandsInTheMiddleOfTheWindow()
    {
        desk->Perform("d_outline_batchadd");
        const QRect dialog = tab->pane->batchAddHandler->Dialog()->frameGeometry();
        const QPoint middle = tab->pane->window()->mapToGlobal(tab->pane->window()->rect().center());
        QVERIFY((dialog.center() - middle).manhattanLength() <= 2);
    }

    // Commands and the pane

    void stepsRefillThePaneOfTheCurrentDocumentOnly()
    {
        OutlineTab* other = desk->Open(SmallOutline());
        desk->MakeCurrent(tab);
        desk->Context()->AnswerAllWith(ok);
        tab->Select({"A"});
        const QTreeWidgetItem* otherItem = other->Item(Rows{0});
        tab->pane->DelOutline();
        QCOMPARE(tab->Rows(), tab->Names());
        tab->Stack()->undo();
        QCOMPARE(tab->Rows(), tab->Names());
        QCOMPARE(static_cast<const QTreeWidgetItem*>(other->Item(Rows{0})), otherItem);
        QCOMPARE(other->Names(), tab->Names());
        QCOMPARE(other->Stack()->count(), 0);
    }

    void aStepWithoutAPaneChangesTheDocumentAllTheSame()
    {
        delete tab->pane;
        tab->Stack()->push(new BatchDelOutlineCommand({tab->Node({0})}, desk->Context()));
        QCOMPARE(tab->Names(), QStringLiteral("B\nC\n  C1\n"));
        tab->Stack()->undo();
        QCOMPARE(tab->Names().count('\n'), 7);
    }

    void eachStepOfAnAdditionADeletionOrAMoveRecordsWhatIsExpanded()
    {
        desk->Context()->AnswerAllWith(ok);
        tab->pane->AddOutline();
        tab->Select({"A1"});
        tab->pane->DelOutline();
        tab->pane->MoveOutlineNodes({tab->Node({0})}, tab->Node({1}), true);
        desk->Perform("d_outline_batchadd");
        G_Operation* batch = desk->Context()->CreateOperationByName("d_outline_batchadd", QString());
        batch->Params->Add("jsonParam", "[[\"x\",-1],[\"y\",-1]]");
        batch->ExecuteAction();
        batch->DeleteLater();
        const int count = tab->Stack()->count();
        QCOMPARE(count, 4);
        for (int round = 0; round < 2 * count; ++round) {
            tab->pane->expandState.clear();
            if (round < count)
                tab->Stack()->undo();
            else
                tab->Stack()->redo();
            QCOMPARE(tab->pane->expandState.size(), tab->pane->itemToNode.size());
            QCOMPARE(tab->Rows(), tab->Names());
        }
    }

    void afterAStepNoExpansionIsRememberedForNodesThatDied()
    {
        desk->Context()->AnswerAllWith(ok);
        tab->Select({"A"});
        tab->pane->DelOutline();
        tab->Stack()->undo();
        for (auto state = tab->pane->expandState.cbegin(); state != tab->pane->expandState.cend(); ++state)
            QVERIFY(tab->pane->nodeOrder.contains(state.key()));
        tab->pane->SyncExpandStates();
        QCOMPARE(tab->Rows(), tab->Names());
    }

private:
    void Open(const QString& text)
    {
        probe.reset();
        desk.reset();
        desk = std::make_unique<OutlineDesk>(text);
        tab = desk->First();
        probe = std::make_unique<EventProbe>(desk->Context()->EventMgr());
    }

    void Press(Qt::Key key)
    {
        if (QTextEdit* editor = tab->Editor())
            QTest::keyClick(editor, key);
    }

    // As a click elsewhere does; the switch of documents may have done it before.
    void EndEditByFocus()
    {
        if (tab->Editor())
            tab->Tree()->setFocus();
    }

    void BeginEdit(const QString& title)
    {
        tab->MakeCurrent(title);
        emit tab->Tree()->itemDoubleClicked(tab->Item(title), 0);
        QVERIFY(tab->Editor());
    }

    // A double click, the text, Enter.
    void Type(const QString& title, const QString& text)
    {
        BeginEdit(title);
        tab->Editor()->setPlainText(text);
        Press(Qt::Key_Return);
    }

    std::unique_ptr<OutlineDesk> desk;
    std::unique_ptr<EventProbe> probe;
    OutlineTab* tab = nullptr;
};

TETO_TEST_MAIN(TestOutlineInterceptors)
#include "test_outline_interceptors.moc"
