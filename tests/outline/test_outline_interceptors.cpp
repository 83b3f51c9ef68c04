#include "outline_interceptors_fixture.h"

#include <frame/base/log.h>
#include <frame/operation/operation.h>
#include <outline/outline_commands.h>
#include <outline/outline_interceptors.h>
#include <outline/outline_json.h>
#include <outline/outline_node.h>
#include <outline/outline_pane.h>
#include <outline/outline_rename.h>
#include <outline/outline_tree.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>

#include <QPushButton>
#include <QUndoStack>
#include <QtTest>

namespace {

constexpr int ok = 1024;
constexpr int cancel = 4194304;
constexpr int okAndCancel = 4195328;
constexpr int close = 2097152;

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
class TestOutlineInterceptors : public OutlineInterceptorsFixture
{
    Q_OBJECT
private slots:
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
};

TETO_TEST_MAIN(TestOutlineInterceptors)
#include "test_outline_interceptors.moc"
