#include "outline_operations_fixture.h"

#include <frame/base/converters.h>
#include <frame/operation/event_manager.h>
#include <outline/outline_json.h>
#include <outline/outline_node.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>
#include <tests/support/undo_verbs.h>
#include <tests/support/view_fixture.h>

#include <QUndoStack>
#include <QtTest>

// The operations that change entries by name, on a document without a pane: batches, deletions, renames, resets.
class TestOutlineChanges : public OutlineOperationsFixture
{
    Q_OBJECT
private slots:
    // Batch add

    void aBatchIsAddedInOneRunWithoutDestinationsOrTitleFields()
    {
        Open(sample);
        VERIFY_UNDO_REDO(Stack(), Root(), [this] {
            Perform("d_outline_batchadd", OutlineJson::BatchAddText({"x", "y", "z"}, 0, Node({0})));
        });
        QVERIFY(lastResult.toBool());
        QCOMPARE(Names(), QStringLiteral("A\n  A1\n  x\n  y\n  z\n  A2\nB\n"));
        for (int row = 1; row < 4; ++row) {
            const G_OutlineItem* item = OutlineItemOf(Node({0, row}));
            QVERIFY(item->title.IsEmpty());
            QVERIFY(item->expanded);
            QVERIFY(item->actions.IsEmpty());
        }
    }

    void aBatchMayStandAtTheEnd()
    {
        Open(sample);
        QVERIFY(Perform("d_outline_batchadd", "[[\"x\",-1],[\"y\",-1]]"));
        QCOMPARE(Names(), QStringLiteral("A\n  A1\n  A2\nB\nx\ny\n"));
    }

    void aBatchFiresAfterItIsPushed()
    {
        Open(sample);
        QList<int> countsAtFiring;
        connect(Context()->EventMgr(), &G_EventMgr::EventFired, this, [&] { countsAtFiring.append(Stack()->count()); });
        QVERIFY(Perform("d_outline_batchadd", "[[\"x\",-1]]"));
        QCOMPARE(countsAtFiring, QList<int>{1});
    }

    void anEmptyBatchPushesACommandWithoutEffectAndFiresNothing()
    {
        Open(sample);
        const QString before = Dump();
        QVERIFY(Perform("d_outline_batchadd", "[]"));
        QVERIFY(lastResult.isValid());
        QVERIFY(!lastResult.toBool());
        QCOMPARE(Stack()->count(), 1);
        QCOMPARE(probe->Total(), 0);
        Stack()->undo();
        Stack()->redo();
        QCOMPARE(Dump(), before);
    }

    void linesOfABatchWhosePlaceIsGoneAreLeftOut()
    {
        Open(sample);
        QVERIFY(Perform("d_outline_batchadd", "[[\"x\",0,{\"index\":7,\"level\":1}],[\"y\",99],[\"z\",-1]]"));
        QCOMPARE(Names(), QStringLiteral("A\n  A1\n  A2\nB\nz\n"));
        Stack()->undo();
        QCOMPARE(Names(), QStringLiteral("A\n  A1\n  A2\nB\n"));
    }

    // Delete

    void entriesAreDeletedWithAllBelowThemInOneStepAndOneEvent()
    {
        Open(sample);
        VERIFY_UNDO_REDO(Stack(), Root(), [this] {
            Perform("d_outline_del", OutlineJson::DeleteText({Node({0, 0}), Node({1})}));
        });
        QCOMPARE(Names(), QStringLiteral("A\n  A2\n"));
        QCOMPARE(probe->Count(110), 1 + 2 * 2);
    }

    void deletingAllIsOneStep()
    {
        Open(sample);
        VERIFY_UNDO_REDO(Stack(), Root(), [this] { Perform("d_outline_delall"); });
        QCOMPARE(Names(), QString());
        QVERIFY(lines.contains("GP_OutlineDelAll::DoAction"));
    }

    void deletingAllOfAnEmptyOutlineStillPushesOneCommand()
    {
        for (const bool hasRoot : {true, false}) {
            Open(twoPages);
            if (hasRoot)
                fixture->Document()->CreateOutlineRoot();
            QVERIFY(Perform("d_outline_delall"));
            QCOMPARE(Stack()->count(), 1);
            Stack()->undo();
            Stack()->redo();
            QCOMPARE(probe->Total(), 0);
        }
    }

    // Rename and reset

    void aRenameSetsBothTextsAndKeepsTheRest()
    {
        Open(sample);
        VERIFY_UNDO_REDO(Stack(), Root(), [this] { PerformOn("d_outline_rename", {0, 0}, "目录"); });
        const G_OutlineItem* item = OutlineItemOf(Node({0, 0}));
        QCOMPARE(GQ_ToQStringFromUtf8(item->text), QStringLiteral("目录"));
        QVERIFY(item->title == item->text);
        QCOMPARE(item->actions.GetSize(), 2);
        QCOMPARE(probe->Count(110), 1 + 2 * 2);
    }

    void aRenameOfAClosedEntryLeavesItClosed()
    {
        Open(sample);
        QVERIFY(PerformOn("d_outline_rename", {0, 1}, "closed one"));
        QVERIFY(!OutlineItemOf(Node({0, 1}))->expanded);
    }

    void aResetAppendsTheViewsPlaceBehindTheActionsThatAreThere()
    {
        Open(sample);
        View()->GoToPage(View(), 1, CCA_GRect(), false);
        const CCA_GRect visible = View()->CurrentPageVisibleRectMM();
        VERIFY_UNDO_REDO(Stack(), Root(), [this] { PerformOn("d_outline_resetpos", {0, 0}); });
        QVERIFY(lastResult.toBool());
        const G_OutlineItem* item = OutlineItemOf(Node({0, 0}));
        QCOMPARE(item->actions.GetSize(), 3);
        QCOMPARE(item->actions[1]->actionType, int(G_Action::Uri));
        const G_Dest& dest = LastDest({0, 0});
        QCOMPARE(dest.pageIndex, 1);
        QCOMPARE(dest.pageId, 9);
        QCOMPARE(dest.left, visible.left);
        QCOMPARE(dest.top, visible.top);
        QCOMPARE(dest.right, visible.right);
        QCOMPARE(dest.bottom, visible.bottom);
        QCOMPARE(dest.zoom, View()->GetZoom() / 100);
    }

    void aResetGivesAnEntryWithoutADestinationOne()
    {
        Open(sample);
        QVERIFY(PerformOn("d_outline_resetpos", {1}));
        QCOMPARE(OutlineItemOf(Node({1}))->actions.GetSize(), 1);
        Stack()->undo();
        QCOMPARE(OutlineItemOf(Node({1}))->actions.GetSize(), 0);
    }

    void anEntryWithoutARecordIsLeftAlone()
    {
        Open(sample);
        Root()->AddSubNode(2, nullptr);
        QVERIFY(PerformOn("d_outline_rename", {2}, "x"));
        QVERIFY(!PerformOn("d_outline_resetpos", {2}));
        QCOMPARE(Stack()->count(), 0);
    }

    // Two documents

    void aDeletionIsRefusedWhileAnotherDocumentIsTheCurrentOne()
    {
        Open(sample);
        const QString before = Dump();
        G_Operation* all = Context()->CreateOperationByName("d_outline_delall", QString());
        G_Operation* some = Context()->CreateOperationByName("d_outline_del", QString());
        some->Params->Add("jsonParam", OutlineJson::DeleteText({Node({0})}));
        OpenTab* other = fixture->Open(sample);
        QVERIFY(!all->PerformAction());
        QVERIFY(!some->PerformAction());
        all->DeleteLater();
        some->DeleteLater();
        QCOMPARE(Dump(), before);
        QCOMPARE(DumpTree(other->document->GetOutlineRoot()), before);
        QCOMPARE(Stack()->count() + other->view->UndoStack()->count(), 0);
    }

    void aRenameThatEndsAfterASwitchStaysWithItsDocument()
    {
        Open(sample);
        G_Operation* operation = Context()->CreateOperationByName("d_outline_rename", QString());
        operation->Params->Add("jsonParam", "[]");
        operation->Params->Add("nodeIdx", 1);
        operation->Params->Add("title", "renamed");
        OpenTab* other = fixture->Open(sample);
        G_DocView* toldView = nullptr;
        connect(Context()->EventMgr(), &G_EventMgr::EventFired, this,
                [&toldView](G_Event* event) { toldView = event->View(); });
        QVERIFY(operation->ExecuteAction());
        operation->DeleteLater();
        QCOMPARE(OutlineTitle(Node({1})), QStringLiteral("renamed"));
        QCOMPARE(toldView, View());
        QCOMPARE(DumpNames(other->document->GetOutlineRoot()), QStringLiteral("A\n  A1\n  A2\nB\n"));
        fixture->SetCurrent(View());
        Stack()->undo();
        QCOMPARE(OutlineTitle(Node({1})), QStringLiteral("B"));
    }

private:
    bool PerformOn(const QByteArray& name, const Rows& rows, const QString& title = QString())
    {
        return Perform(name, OutlineJson::WalkText(Node(rows.mid(0, rows.size() - 1))), [&](G_Operation* operation) {
            operation->Params->Add("nodeIdx", rows.last());
            operation->Params->Add("title", title);
        });
    }
};

TETO_TEST_MAIN(TestOutlineChanges)
#include "test_outline_changes.moc"
