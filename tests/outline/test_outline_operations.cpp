#include "outline_operations_fixture.h"

#include <frame/base/converters.h>
#include <frame/operation/event_manager.h>
#include <outline/outline_events.h>
#include <outline/outline_json.h>
#include <outline/outline_node.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/undo_verbs.h>
#include <tests/support/view_fixture.h>

#include <QUndoStack>
#include <QtTest>

#include <memory>

namespace {

G_HighLightItem Highlight(int pageIndex, float left, float width)
{
    G_TextRun run;
    run.rect = CCA_GRect(left, 30, left + width, 34);
    G_HighLightItem item;
    item.pageIndex = pageIndex;
    item.runs = {run};
    return item;
}

} // namespace

// The outline operations by name, on a document without a pane.
class TestOutlineOperations : public OutlineOperationsFixture
{
    Q_OBJECT
private slots:
    // What they are

    void namesAndAuthorities()
    {
        const QList<QPair<const char*, int>> expected{
            {"vn_outline", 0},         {"d_addoutline", 1},        {"d_outline_add", 1},
            {"d_outline_addsub", 1},   {"d_outline_batchadd", 1},  {"d_outline_del", 1},
            {"d_outline_delall", 1},   {"d_outline_rename", 1},    {"d_outline_resetpos", 1},
            {"d_outline_wordwrap", 0}, {"d_outline_expandsub", 0}, {"d_outline_expandorcollapse", 0},
        };
        const QList<G_Operation*> all = operations->All();
        QCOMPARE(all.size(), expected.size());
        for (int i = 0; i < all.size(); ++i) {
            QCOMPARE(all.at(i)->Name(), expected.at(i).first);
            QCOMPARE(all.at(i)->AuthorityType(), expected.at(i).second);
        }
    }

    void aCopyTakesTheParametersAndNeverTheResult()
    {
        for (G_Operation* operation : operations->All()) {
            operation->Params->Add("key", 7);
            operation->Result = 1;
            const std::unique_ptr<G_Operation> copy(operation->Clone());
            QCOMPARE(copy->Name(), operation->Name());
            QCOMPARE(copy->Params->GetInt32("key"), 7);
            QCOMPARE(copy->Result, 0);
        }
    }

    void theDisplayOperationsAreDoneWithoutDoingAnything()
    {
        Open(sample);
        const QString before = Dump();
        for (const char* name : {"d_outline_wordwrap", "d_outline_expandsub", "d_outline_expandorcollapse"})
            QVERIFY(Perform(name));
        QCOMPARE(Dump(), before);
        QCOMPARE(Stack()->count(), 0);
        QCOMPARE(probe->Total(), 0);
    }

    void withoutAViewNothingIsDone_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char* name :
             {"vn_outline", "d_addoutline", "d_outline_add", "d_outline_addsub", "d_outline_batchadd", "d_outline_del",
              "d_outline_delall", "d_outline_rename", "d_outline_resetpos"})
            QTest::newRow(name) << QByteArray(name);
    }

    void withoutAViewNothingIsDone()
    {
        QFETCH(QByteArray, name);
        ScriptedContext context;
        G_Operation* operation = context.CreateOperationByName(name, QString());
        operation->Params->Add("jsonParam", "[]");
        QVERIFY(!operation->PerformAction());
        operation->DeleteLater();
        QVERIFY(DeskNavigation::opened.isEmpty());
    }

    void withoutAnInputNothingIsDone_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char* name : {"d_outline_add", "d_outline_addsub", "d_outline_batchadd", "d_outline_del",
                                 "d_outline_rename", "d_outline_resetpos"})
            QTest::newRow(name) << QByteArray(name);
    }

    void withoutAnInputNothingIsDone()
    {
        QFETCH(QByteArray, name);
        Open(sample);
        const QString before = Dump();
        QVERIFY(!Perform(name));
        for (const char* text : {"", "[", "no json"})
            QVERIFY(!Perform(name, text));
        QCOMPARE(Dump(), before);
        QCOMPARE(Stack()->count(), 0);
        QCOMPARE(probe->Total(), 0);
    }

    void anOperationThatEditsIsRefusedWhereEditingIsNotAllowed()
    {
        Open(QString(sample) + "rights edit=no annot=yes export=yes\n");
        const QString before = Dump();
        QVERIFY(!Perform("d_outline_delall"));
        QVERIFY(!Perform("d_outline_add", "[-1]"));
        QVERIFY(Perform("d_outline_wordwrap"));
        QCOMPARE(Dump(), before);
    }

    // Opening and asking

    void openingThePaneNamesItsId()
    {
        Open(sample);
        QVERIFY(Perform("vn_outline"));
        QCOMPARE(DeskNavigation::opened,
                 QStringList{"{\"navi_open_status\":\"1\",\"navi_btn_checked\":\"ui.navis.outline\"}"});
    }

    void withoutTheHostsNavigationNothingIsOpenedOrAskedFor()
    {
        Open(sample);
        navigation.reset();
        QVERIFY(!Perform("vn_outline"));
        QVERIFY(!Perform("d_addoutline"));
        QCOMPARE(probe->Total(), 0);
    }

    void addingFromOutsideOpensThePaneThenAsksItByItsDocumentsKey()
    {
        Open(sample);
        QStringList asked;
        connect(Context()->EventMgr(), &G_EventMgr::EventFired, this, [&asked](G_Event* event) {
            if (const auto* request = dynamic_cast<G_OutlineAddEvent*>(event))
                asked = QStringList{QString::number(request->TypeEnum()), request->OperationName(),
                                    request->DocumentKey(), QString::number(DeskNavigation::opened.size())};
        });
        QVERIFY(Perform("d_addoutline"));
        QCOMPARE(asked, (QStringList{"1000", "d_outline_add",
                                     GQ_ToQStringFromUtf8(fixture->Document()->GetDocumentKey()), "1"}));
        QCOMPARE(probe->Types(), QList<int>{1000}); // nothing was added yet
        QCOMPARE(Stack()->count(), 0);
    }

    // Add

    void addingWithoutACurrentEntryPutsTheNewOneLastInTheRoot()
    {
        Open(sample);
        QVERIFY(Perform("d_outline_add", "[-1]"));
        QCOMPARE(Names(), QStringLiteral("A\n  A1\n  A2\nB\nnew outline\n"));
        QVERIFY(lastResult.toBool());
    }

    void addingWithACurrentEntryPutsTheNewOneStraightBehindIt()
    {
        Open(sample);
        QVERIFY(Perform("d_outline_add", OutlineJson::AddText(0, Root())));
        QVERIFY(Perform("d_outline_add", OutlineJson::AddText(0, Node({0}))));
        QCOMPARE(Names(), QStringLiteral("A\n  A1\n  new outline(1)\n  A2\nnew outline\nB\n"));
    }

    void addingBelowPutsTheNewOneLastThere()
    {
        Open(sample);
        QVERIFY(Perform("d_outline_addsub", OutlineJson::WalkText(Node({0}))));
        QVERIFY(Perform("d_outline_addsub", OutlineJson::WalkText(Node({0, 0}))));
        QVERIFY(Perform("d_outline_addsub", OutlineJson::WalkText(Root())));
        QCOMPARE(Names(), QStringLiteral("A\n  A1\n    new outline(1)\n  A2\n  new outline\nB\nnew outline(2)\n"));
    }

    void anAdditionFiresBeforeItIsPushedAndIsUndoable()
    {
        Open(sample);
        QList<int> countsAtFiring;
        connect(Context()->EventMgr(), &G_EventMgr::EventFired, this, [&] { countsAtFiring.append(Stack()->count()); });
        VERIFY_UNDO_REDO(Stack(), Root(), [this] { Perform("d_outline_add", "[-1]"); });
        QCOMPARE(countsAtFiring.first(), 0);
        QCOMPARE(probe->Count(110), 1 + 2 * 2);
    }

    void aNewEntryWithoutAHighlightGetsTheViewsPageAndZoom()
    {
        Open(twoPages);
        fixture->Document()->CreateOutlineRoot();
        View()->GoToPage(View(), 1, CCA_GRect(), false);
        View()->SetZoomMode(G_Preferences::FitPage);
        const float zoom = View()->GetZoom();
        QVERIFY(Perform("d_outline_add", "[-1]"));
        const G_OutlineItem* item = OutlineItemOf(Node({0}));
        QCOMPARE(GQ_ToQStringFromUtf8(item->title), QStringLiteral("new outline"));
        QVERIFY(item->title == item->text);
        QVERIFY(item->expanded);
        QCOMPARE(item->actions.GetSize(), 1);
        QCOMPARE(item->actions[0]->actionType, 1);
        const G_Dest& dest = LastDest({0});
        QCOMPARE(dest.pageIndex, 1);
        QCOMPARE(dest.pageId, 9);
        QCOMPARE(dest.left, 0.0F);
        QCOMPARE(dest.top, 0.0F);
        QCOMPARE(dest.right, 210.0F);
        QCOMPARE(dest.bottom, 297.0F);
        QCOMPARE(dest.zoom, zoom / 100);
        QCOMPARE(dest.zoomMode, 1);
    }

    void zoomModesOfTheViewAreMapped_data()
    {
        QTest::addColumn<int>("viewMode");
        QTest::addColumn<int>("destMode");
        QTest::newRow("custom") << 0 << 0;
        QTest::newRow("actual size") << 1 << 0;
        QTest::newRow("fit width") << 2 << 2;
        QTest::newRow("fit height") << 3 << 3;
        QTest::newRow("fit page") << 4 << 1;
        QTest::newRow("fit rectangle") << 5 << 4;
    }

    void zoomModesOfTheViewAreMapped()
    {
        QFETCH(int, viewMode);
        QFETCH(int, destMode);
        Open(sample);
        View()->SetZoomMode(static_cast<G_Preferences::ZoomMode>(viewMode));
        QVERIFY(Perform("d_outline_add", "[-1]"));
        QCOMPARE(LastDest({2}).zoomMode, destMode);
    }

    void theHighlightedTextNamesTheNewEntryAndItsFirstRunIsTheDestination()
    {
        Open("page 210 297\npage 600 297 id=7\n  text 20 30 Heading\noutline \"Heading\"\n");
        View()->SetHighLightText({Highlight(1, 20, 14)});
        QVERIFY(Perform("d_outline_add", "[-1]"));
        QCOMPARE(Names(), QStringLiteral("Heading\nHeading(1)\n"));
        const G_Dest& dest = LastDest({1});
        QCOMPARE(dest.pageIndex, 1);
        QCOMPARE(dest.pageId, 7);
        QCOMPARE(dest.left, 20.0F);
        QCOMPARE(dest.top, 30.0F);
        QCOMPARE(dest.right, 34.0F);
        QCOMPARE(dest.bottom, 34.0F);
    }

    void aLongHighlightIsCutToAHundredCharacters()
    {
        Open("page 600 297\n  text 20 30 " + QString(101, 'x') + "\n");
        fixture->Document()->CreateOutlineRoot();
        View()->SetHighLightText({Highlight(0, 20, 202)});
        QVERIFY(Perform("d_outline_add", "[-1]"));
        QCOMPARE(OutlineTitle(Node({0})), QString(100, 'x'));
        QVERIFY(Perform("d_outline_add", "[-1]"));
        QCOMPARE(OutlineTitle(Node({1})), QString(100, 'x') + "(1)"); // behind the cut
    }

    void aHighlightWithoutTextGetsTheDefaultTitleAtItsPlace()
    {
        Open("page 210 297\npage 210 297\n");
        fixture->Document()->CreateOutlineRoot();
        View()->SetHighLightText({Highlight(1, 20, 14)});
        QVERIFY(Perform("d_outline_add", "[-1]"));
        QCOMPARE(OutlineTitle(Node({0})), QStringLiteral("new outline"));
        QCOMPARE(LastDest({0}).pageIndex, 1);
        QCOMPARE(LastDest({0}).top, 30.0F);
    }

    void titlesAreUniqueAmongAllLevels()
    {
        Open("page 210 297\noutline \"A\"\n  outline \"new outline\"\n    outline \"new outline(1)\"\n");
        QVERIFY(Perform("d_outline_add", "[-1]"));
        QCOMPARE(OutlineTitle(Node({1})), QStringLiteral("new outline(2)"));
    }

    void withoutARootAnAdditionAddsNothing()
    {
        Open(twoPages);
        for (const char* name : {"d_outline_add", "d_outline_addsub"}) {
            QVERIFY(!Perform(name, "[]"));
            QVERIFY(lastResult.isValid());
            QVERIFY(!lastResult.toBool());
        }
        QCOMPARE(Root(), nullptr);
        QCOMPARE(Stack()->count(), 0);
    }

    void aRefusedAdditionIsToldInTheResultAndPushesNothing()
    {
        Open(sample);
        const QString before = Dump();
        Root()->SetChangeGuard([](G_TreeNode::Change, G_TreeNode*, int) { return false; });
        QVERIFY(Perform("d_outline_add", "[-1]"));
        QVERIFY(lastResult.isValid());
        QVERIFY(!lastResult.toBool());
        QCOMPARE(Dump(), before);
        QCOMPARE(Stack()->count(), 0);
        QCOMPARE(probe->Total(), 0);
    }

    void aPlaceThatIsGoneChangesNothing()
    {
        Open(sample);
        const QString gone = "[{\"index\":7,\"level\":1}]";
        const QString before = Dump();
        QVERIFY(!Perform("d_outline_add", "[0,{\"index\":7,\"level\":1}]"));
        QVERIFY(Perform("d_outline_add", "[50]")); // the parent is there, the row is not
        QVERIFY(!lastResult.toBool());
        QVERIFY(Perform("d_outline_add", "[2147483647]"));
        QVERIFY(!lastResult.toBool());
        QVERIFY(!Perform("d_outline_addsub", gone));
        QVERIFY(Perform("d_outline_rename", gone));
        QVERIFY(!Perform("d_outline_resetpos", gone));
        QCOMPARE(Dump(), before);
        QCOMPARE(Stack()->count(), 0);
    }
};

TETO_TEST_MAIN(TestOutlineOperations)
#include "test_outline_operations.moc"
