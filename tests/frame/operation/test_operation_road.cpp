#include "operation_fakes.h"

#include <tests/support/test_main.h>

#include <QtTest>

class TestOperationRoad : public QObject
{
    Q_OBJECT

    std::unique_ptr<ScriptedHost> host;
    std::unique_ptr<G_WorkingCopies> copies;
    std::unique_ptr<Prototype> prototype;
    QStringList journal;

    G_Operation* Make(int document = 1) { return copies->Make("d_x", FakeView(document), FakeDocument(document)); }
    std::unique_ptr<ScriptedInterceptor> Intercept(const QString& who = {})
    {
        return std::make_unique<ScriptedInterceptor>("d_x", &journal, who);
    }

private slots:
    void init()
    {
        journal.clear();
        host = std::make_unique<ScriptedHost>();
        copies = std::make_unique<G_WorkingCopies>(host.get(), FakeContext());
        prototype = std::make_unique<Prototype>("d_x");
        (*prototype)->doAction = [this](G_Operation*) {
            journal.append("do");
            return true;
        };
    }

    void cleanup()
    {
        copies.reset();
        prototype.reset();
        host.reset();
        QCOMPARE(G_OperationRegistry::Instance().InterceptorCount(), 0);
    }

    void anUnknownNameGivesNull() { QVERIFY(!copies->Make("d_unknown", FakeView(1), FakeDocument(1))); }

    void aCopyIsBoundToTheViewContextAndDocumentItWasMadeFor()
    {
        const G_Operation* const op = Make(1);
        QCOMPARE(op->DocView(), FakeView(1));
        QCOMPARE(op->UIContext(), FakeContext());
        QCOMPARE(op->GDocument(), FakeDocument(1));
        QVERIFY(!prototype->Object()->UIContext());
        QVERIFY(!prototype->Object()->DocView());
        QVERIFY(!prototype->Object()->GDocument());
    }

    void whenTheViewDiesItsCopiesReadNullAndOthersStay()
    {
        const G_Operation* const dead = Make(1);
        const G_Operation* const other = Make(2);
        copies->ForgetView(FakeView(1));
        QVERIFY(!dead->DocView());
        QVERIFY(!dead->GDocument());
        QCOMPARE(dead->UIContext(), FakeContext()); // the context lives on
        QCOMPARE(other->DocView(), FakeView(2));
        QCOMPARE(other->GDocument(), FakeDocument(2));
    }

    void aCopyHasThePrototypesParametersInABagOfItsOwn()
    {
        prototype->Object()->Params->Add("name", "tool");
        G_Operation* const op = Make();
        QCOMPARE(op->Params->GetQString("name"), QStringLiteral("tool"));
        op->Params->Add("name", "other");
        QCOMPARE(prototype->Object()->Params->GetQString("name"), QStringLiteral("tool"));
    }

    void copyFromCopiesParametersAndNeverTheResult()
    {
        G_Operation* const from = Make();
        from->Params->Add("a", 1);
        from->Result = 1;
        G_Operation* const to = Make();
        to->CopyFrom(from);
        to->CopyFrom(to);
        to->CopyFrom(nullptr);
        QCOMPARE(to->Params->GetInt32("a"), 1);
        QCOMPARE(to->Result, 0);
    }

    void resetParamsEmptiesTheBag()
    {
        G_Operation* const op = Make();
        op->Params->Add("a", 1);
        op->ResetParams();
        QCOMPARE(op->Params->Count(), 0);
    }

    void membersOfAJsonTextBecomeParameters()
    {
        G_Operation* const op = Make();
        op->Params->Add("kept", 1);
        op->ParseParamJson(R"({"text":"a b","int":-3,"float":0.5,"yes":true,"no":false,"none":null,"rows":[1,2]})");
        QCOMPARE(op->Params->Get("text"), QVariant(QStringLiteral("a b")));
        QCOMPARE(op->Params->Get("int"), QVariant(-3));
        QCOMPARE(op->Params->Get("float"), QVariant(0.5f));
        QCOMPARE(op->Params->Get("yes"), QVariant(true));
        QCOMPARE(op->Params->Get("no"), QVariant(false));
        QVERIFY(!op->Params->Contains("none"));
        QCOMPARE(op->Params->GetQString("rows"), QStringLiteral("[1,2]"));
        QCOMPARE(op->Params->GetInt32("kept"), 1);
    }

    void aMalformedJsonTextAddsNothing()
    {
        G_Operation* const op = Make();
        for (const char* text : {"", "{", "{\"a\":1", "[1]", "7", "\"a\"", "{\"a\":1} x"})
            op->ParseParamJson(QString::fromUtf8(text));
        QCOMPARE(op->Params->Count(), 0);
    }

    void anOperationWithoutAnInterceptorRunsDoActionDirectly()
    {
        G_Operation* const op = Make();
        QVERIFY(op->PerformAction());
        QCOMPARE(journal, QStringList({"do"}));
        QCOMPARE(op->Result, 1);
    }

    void theBaseInterceptorLetsEverythingPass()
    {
        struct Plain : G_OperationInterceptor
        {
            bool OperationFilter(G_Operation* op) override { return OperationNameMatches(op, "d_x"); }
        };
        const Plain plain;
        QVERIFY(Make()->PerformAction());
        QCOMPARE(journal, QStringList({"do"}));
    }

    void theStepsRunInOrderThroughAllInterceptors()
    {
        const auto a = Intercept("a");
        const auto b = Intercept("b");
        QVERIFY(Make()->PerformAction());
        QCOMPARE(journal, QStringList({"prepare a", "prepare b", "before a", "before b", "do", "after a", "after b"}));
        QCOMPARE(a->lastFlag, 0);
    }

    void anInterceptorOfAnotherNameIsNotAsked()
    {
        const ScriptedInterceptor other("d_y", &journal);
        QVERIFY(Make()->PerformAction());
        QCOMPARE(journal, QStringList({"do"}));
    }

    void doActionsFalseIsReturnedAndTheAfterHandlersStillRun()
    {
        (*prototype)->doAction = [](G_Operation*) { return false; };
        const auto interceptor = Intercept();
        int resultInAfter = -1;
        interceptor->after = [&](G_Operation* op) { resultInAfter = op->Result; };
        G_Operation* const op = Make();
        QVERIFY(!op->PerformAction());
        QCOMPARE(resultInAfter, 0);
        QCOMPARE(op->Result, 0);
        QCOMPARE(op->ExecuteAction(), 0);
    }

    void aFalseFromPrepareGivesNoDoActionAndNoAfterHandler()
    {
        const auto interceptor = Intercept();
        interceptor->prepare = [](G_Operation*) { return false; };
        G_Operation* const op = Make();
        QVERIFY(!op->PerformAction());
        QCOMPARE(op->Result, 0);
        QCOMPARE(journal, QStringList({"prepare"}));
        op->DeleteLater();
    }

    void allAreAskedToPrepareEvenAfterARefusal()
    {
        const auto a = Intercept("a");
        const auto b = Intercept("b");
        a->prepare = [](G_Operation*) { return false; };
        QVERIFY(!Make()->PerformAction());
        QCOMPARE(journal, QStringList({"prepare a", "prepare b"}));
    }

    void allAreAskedBeforeEvenAfterARefusalAndDoActionDoesNotRun()
    {
        const auto a = Intercept("a");
        const auto b = Intercept("b");
        a->before = [](G_Operation*) { return false; };
        G_Operation* const op = Make();
        QVERIFY(!op->PerformAction());
        QCOMPARE(journal, QStringList({"prepare a", "prepare b", "before a", "before b"}));
        QCOMPARE(op->Result, 0);
        QCOMPARE(op->ExecuteAction(), 0);
        QCOMPARE((*prototype)->runs, 0);
    }

    void resultIsOneWhileTheBeforeHandlersAreAsked()
    {
        const auto interceptor = Intercept();
        QList<int> seen;
        interceptor->prepare = [&](G_Operation* op) {
            seen.append(op->Result);
            return true;
        };
        interceptor->before = [&](G_Operation* op) {
            seen.append(op->Result);
            return op->Result != 0;
        };
        QVERIFY(Make()->PerformAction());
        QCOMPARE(seen, QList<int>({0, 1}));
    }

    void aRefusedPrepareLeavesTheResultOfAnInnerRun()
    {
        const auto interceptor = Intercept();
        interceptor->prepare = [](G_Operation* op) {
            op->ExecuteAction();
            return false;
        };
        G_Operation* const op = Make();
        QVERIFY(!op->PerformAction());
        QCOMPARE(op->Result, 1);
        QCOMPARE(journal, QStringList({"prepare", "before", "do", "after"}));
    }

    void anInterceptorMayExecuteSeveralTimesInsideItsPrepare()
    {
        const auto interceptor = Intercept();
        QList<int> rows;
        (*prototype)->doAction = [&](G_Operation* op) {
            rows.append(op->Params->GetInt32("row"));
            return true;
        };
        interceptor->prepare = [](G_Operation* op) {
            for (const int row : {3, 1}) {
                op->Params->Add("row", row);
                if (op->ExecuteAction() != 1)
                    return true;
            }
            return false;
        };
        QVERIFY(!Make()->PerformAction());
        QCOMPARE(rows, QList<int>({3, 1}));
        QCOMPARE(journal, QStringList({"prepare", "before", "after", "before", "after"}));
        QCOMPARE(interceptor->filterCalls, 1);
    }

    void executeActionCallsTheAfterHandlersOfTheInterceptorsThatPerformFound()
    {
        const auto interceptor = Intercept();
        interceptor->prepare = [](G_Operation*) { return false; };
        G_Operation* const op = Make();
        op->PerformAction();
        const auto late = Intercept("late"); // not there when the road was taken
        journal.clear();
        QCOMPARE(op->ExecuteAction(), 1);
        QCOMPARE(journal, QStringList({"before", "do", "after"}));
        QCOMPARE(interceptor->filterCalls, 1);
        QCOMPARE(op->Result, 1);
    }

    void executeActionOnAFreshCopyFindsItsInterceptorsOnceAndPreparesNothing()
    {
        const auto interceptor = Intercept();
        G_Operation* const op = Make();
        QCOMPARE(op->ExecuteAction(), 1);
        QCOMPARE(op->ExecuteAction(), 1);
        QCOMPARE(journal, QStringList({"before", "do", "after", "before", "do", "after"}));
        QCOMPARE(interceptor->filterCalls, 1);
    }

    void executeActionOnAFreshCopyAsksTheDocumentsInterceptorsOnly()
    {
        std::unique_ptr<ScriptedInterceptor> first;
        std::unique_ptr<ScriptedInterceptor> second;
        {
            const G_InterceptorScope scope(FakeDocument(1));
            first = Intercept("first");
        }
        {
            const G_InterceptorScope scope(FakeDocument(2));
            second = Intercept("second");
        }
        QCOMPARE(Make(2)->ExecuteAction(), 1);
        QCOMPARE(journal, QStringList({"before second", "do", "after second"}));
    }

    void aForeignDocumentsRefusalDoesNotStopTheOperation()
    {
        std::vector<std::unique_ptr<ScriptedInterceptor>> made;
        for (const int document : {1, 2}) {
            const G_InterceptorScope scope(FakeDocument(document));
            made.push_back(Intercept(QString::number(document)));
        }
        const auto untagged = Intercept("any");
        made[0]->prepare = [](G_Operation*) { return false; };
        made[0]->before = [](G_Operation*) { return false; };
        QVERIFY(Make(2)->PerformAction());
        QCOMPARE(journal,
                 QStringList({"prepare 2", "prepare any", "before 2", "before any", "do", "after 2", "after any"}));
    }

    void anOperationWithoutADocumentMeetsUntaggedInterceptorsOnly()
    {
        const G_InterceptorScope scope(FakeDocument(1));
        const auto tagged = Intercept("tagged");
        const G_InterceptorScope none(nullptr);
        const auto untagged = Intercept("any");
        QVERIFY(copies->Make("d_x", nullptr, nullptr)->PerformAction());
        QCOMPARE(journal, QStringList({"prepare any", "before any", "do", "after any"}));
    }

    void rightsAreAskedBeforeAnyInterceptorAndShowOneNote()
    {
        const auto interceptor = Intercept();
        (*prototype)->authority = Authority::EditDocument;
        host->mayRun = [](G_Operation* op) { return op->AuthorityType() != Authority::EditDocument; };
        bool panesMade = false;
        host->beforePerform = [&](IG_Document*) { panesMade = true; };
        G_Operation* const op = Make();
        QVERIFY(!op->PerformAction());
        QCOMPARE(host->notes, 1);
        QCOMPARE(interceptor->filterCalls, 0);
        QVERIFY(journal.isEmpty());
        QVERIFY(!panesMade);
        QCOMPARE(op->Result, 0);
    }

    void executeActionDoesNotAskForRights()
    {
        host->mayRun = [](G_Operation*) { return false; };
        QCOMPARE(Make()->ExecuteAction(), 1);
        QCOMPARE(host->notes, 0);
    }

    void theBaseAnswerOfAuthorityLetsAnOperationRunAnywhere()
    {
        struct Plain : G_Operation
        {
            G_Operation* Clone() const override { return new Plain; }
            const char* Name() const override { return "plain"; }
            bool DoAction() override { return true; }
        };
        const Plain plain;
        QCOMPARE(plain.AuthorityType(), int(Authority::Any));
        QVERIFY(plain.Params);
        QCOMPARE(plain.Result, 0);
    }

    void panesThatAreStillMissingAreMadeBeforeTheInterceptorsAreFound()
    {
        std::unique_ptr<ScriptedInterceptor> ofNewPane;
        host->beforePerform = [&](IG_Document* document) {
            const G_InterceptorScope scope(document);
            ofNewPane = Intercept();
        };
        QVERIFY(Make()->PerformAction());
        QCOMPARE(journal, QStringList({"prepare", "before", "do", "after"}));
    }

    void withoutADocumentThereAreNoPanesToMake()
    {
        int calls = 0;
        host->beforePerform = [&](IG_Document*) { ++calls; };
        QVERIFY(copies->Make("d_x", nullptr, nullptr)->PerformAction());
        QCOMPARE(calls, 0);
    }

    void interceptorsDestroyedInAPrepareDropOut()
    {
        auto a = Intercept("a");
        auto b = Intercept("b");
        const auto c = Intercept("c");
        a->prepare = [&](G_Operation*) {
            b.reset();
            return true;
        };
        QVERIFY(Make()->PerformAction());
        QCOMPARE(journal, QStringList({"prepare a", "prepare c", "before a", "before c", "do", "after a", "after c"}));
    }

    void anInterceptorDestroyedInItsOwnModalBoxDropsOutWithItsRefusal()
    {
        ScriptedInterceptor* const interceptor = new ScriptedInterceptor("d_x", &journal);
        interceptor->prepare = [interceptor](G_Operation*) {
            QEventLoop box;
            QTimer::singleShot(0, &box, [&] {
                delete interceptor; // the tab was closed behind the box
                box.quit();
            });
            box.exec();
            return false;
        };
        G_Operation* const op = Make();
        QVERIFY(!op->PerformAction());
        op->DeleteLater();
        TurnEventLoop();
        QCOMPARE(prototype->Copies(), 0); // nobody is left to hold it
    }

    void interceptorsDestroyedInDoActionAndInTheAfterHandlersDropOut()
    {
        auto a = Intercept("a");
        auto b = Intercept("b");
        auto c = Intercept("c");
        (*prototype)->doAction = [&](G_Operation*) {
            a.reset();
            return true;
        };
        b->after = [&](G_Operation*) { c.reset(); };
        QVERIFY(Make()->PerformAction());
        QCOMPARE(journal,
                 QStringList({"prepare a", "prepare b", "prepare c", "before a", "before b", "before c", "after b"}));
    }

    void anInterceptorMadeInTheMiddleOfARunTakesNoPart()
    {
        const auto a = Intercept("a");
        std::unique_ptr<ScriptedInterceptor> b;
        a->prepare = [&](G_Operation*) {
            b = Intercept("b");
            return true;
        };
        QVERIFY(Make()->PerformAction());
        QCOMPARE(journal, QStringList({"prepare a", "before a", "do", "after a"}));
    }

    void handlersMayPerformOtherOperationsAndMakeInterceptors()
    {
        const Prototype inner("d_inner");
        const auto interceptor = Intercept();
        interceptor->before = [this](G_Operation*) {
            const ScriptedInterceptor passing("d_inner", &journal, "inner");
            G_Operation* const op = copies->Make("d_inner", FakeView(1), FakeDocument(1));
            op->PerformAction();
            op->DeleteLater();
            return true;
        };
        QVERIFY(Make()->PerformAction());
        QCOMPARE(inner->runs, 1);
        QCOMPARE(journal,
                 QStringList({"prepare", "before", "prepare inner", "before inner", "after inner", "do", "after"}));
    }

    void performingAgainFindsTheInterceptorsAnew()
    {
        G_Operation* const op = Make();
        QVERIFY(op->PerformAction());
        const auto interceptor = Intercept();
        QVERIFY(op->PerformAction());
        QCOMPARE(journal, QStringList({"do", "prepare", "before", "do", "after"}));
    }

    void anOperationNeverHandedToAContextRunsTheRoadWithoutRights()
    {
        host->mayRun = [](G_Operation*) { return false; };
        const auto interceptor = Intercept();
        QVERIFY(prototype->Object()->PerformAction());
        QCOMPARE(journal, QStringList({"prepare", "before", "do", "after"}));
        prototype->Object()->DeleteLater();
        TurnEventLoop();
        QVERIFY(G_OperationRegistry::Instance().Find("d_x"));
    }

    void theViewMayDieWhileABoxIsUp()
    {
        const auto interceptor = Intercept();
        interceptor->prepare = [this](G_Operation*) {
            copies->ForgetView(FakeView(1));
            return true;
        };
        G_DocView* seen = FakeView(1);
        (*prototype)->doAction = [&](G_Operation* op) {
            seen = op->DocView();
            return seen != nullptr;
        };
        QVERIFY(!Make()->PerformAction());
        QVERIFY(!seen);
    }
};

TETO_TEST_MAIN(TestOperationRoad)
#include "test_operation_road.moc"
