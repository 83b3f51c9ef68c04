#include "operation_fakes.h"

#include <tests/support/test_main.h>

#include <QtTest>

class TestWorkingCopies : public QObject
{
    Q_OBJECT

    ScriptedHost host;
    std::unique_ptr<G_WorkingCopies> copies;
    std::unique_ptr<Prototype> prototype;

    G_Operation* Make(const QByteArray& name = "d_x") { return copies->Make(name, FakeView(1), FakeDocument(1)); }
    static std::unique_ptr<ScriptedInterceptor> Refuser(const char* name = "d_x")
    {
        auto interceptor = std::make_unique<ScriptedInterceptor>(name);
        interceptor->prepare = [](G_Operation*) { return false; };
        return interceptor;
    }
    // As every caller does: perform, then hand back.
    G_Operation* PerformAndHandBack(const QByteArray& name = "d_x")
    {
        G_Operation* const op = Make(name);
        op->PerformAction();
        op->DeleteLater();
        return op;
    }

private slots:
    void init()
    {
        copies = std::make_unique<G_WorkingCopies>(&host, FakeContext());
        prototype = std::make_unique<Prototype>("d_x");
    }

    void cleanup()
    {
        copies.reset();
        QCOMPARE(prototype->Copies(), 0);
        prototype.reset();
    }

    void aCopyDiesOneTurnAfterItWasHandedBackAndNotAtOnce()
    {
        RunInEventLoop([this] {
            PerformAndHandBack();
            QCOMPARE(prototype->Copies(), 1);
            QCOMPARE(copies->Count(), 1);
        });
        QCOMPARE(prototype->Copies(), 0);
        QCOMPARE(copies->Count(), 0);
    }

    void handingBackTwiceIsHarmless()
    {
        RunInEventLoop([this] {
            G_Operation* const op = PerformAndHandBack();
            op->DeleteLater();
        });
        QCOMPARE(prototype->Copies(), 0);
    }

    void aCopyThatIsNotHandedBackLivesUntilTheContextDies()
    {
        RunInEventLoop([this] { Make()->PerformAction(); });
        TurnEventLoop();
        QCOMPARE(prototype->Copies(), 1);
        copies.reset();
        QCOMPARE(prototype->Copies(), 0);
    }

    void aDialogsLoopInTheSameCallDoesNotFreeTheCopy()
    {
        RunInEventLoop([this] {
            PerformAndHandBack();
            TurnEventLoop(); // the caller opens a modal box after handing back
            QCOMPARE(prototype->Copies(), 1);
        });
        QCOMPARE(prototype->Copies(), 0);
    }

    void handingBackAPrototypeDoesNothing()
    {
        RunInEventLoop([this] { prototype->Object()->DeleteLater(); });
        QCOMPARE(G_OperationRegistry::Instance().Find("d_x"), prototype->Object());
    }

    void aCopyDeletedByHandIsForgotten()
    {
        RunInEventLoop([this] { delete PerformAndHandBack(); });
        QCOMPARE(copies->Count(), 0);
    }

    void aRefusedCopyStaysForTheInterceptorThatRefused()
    {
        const auto refuser = Refuser();
        G_Operation* kept = nullptr;
        RunInEventLoop([&] { kept = PerformAndHandBack(); });
        TurnEventLoop();
        QCOMPARE(prototype->Copies(), 1);
        kept->Params->Add("name", "typed");
        QCOMPARE(kept->ExecuteAction(), 1); // a rename that was committed much later
        TurnEventLoop();
        QCOMPARE(prototype->Copies(), 1); // and it may be executed again
        QCOMPARE(kept->ExecuteAction(), 1);
        QCOMPARE((*prototype)->runs, 2);
    }

    void aRefusedCopyDiesOneTurnAfterItsInterceptor()
    {
        auto refuser = Refuser();
        RunInEventLoop([&] { PerformAndHandBack(); });
        RunInEventLoop([&] {
            refuser.reset();
            QCOMPARE(prototype->Copies(), 1);
        });
        QCOMPARE(prototype->Copies(), 0);
    }

    void refusingAnotherCopyOfTheSameNameLetsTheEarlierGo()
    {
        const auto refuser = Refuser();
        G_Operation* second = nullptr;
        RunInEventLoop([&] { PerformAndHandBack(); });
        RunInEventLoop([&] {
            second = PerformAndHandBack();
            QCOMPARE(prototype->Copies(), 2);
        });
        QCOMPARE(prototype->Copies(), 1);
        QCOMPARE(second->ExecuteAction(), 1); // the later one is the one that lives
    }

    void refusingTheSameCopyAgainKeepsIt()
    {
        const auto refuser = Refuser();
        G_Operation* op = nullptr;
        RunInEventLoop([&] { op = PerformAndHandBack(); });
        RunInEventLoop([&] { QVERIFY(!op->PerformAction()); });
        QCOMPARE(prototype->Copies(), 1);
    }

    void refusingACopyOfAnotherNameLetsNothingGo()
    {
        const Prototype other("d_y");
        struct Both : ScriptedInterceptor
        {
            Both()
                : ScriptedInterceptor("d_x")
            {
            }
            bool OperationFilter(G_Operation* op) override
            {
                return OperationNameMatches(op, "d_x") || OperationNameMatches(op, "d_y");
            }
        } both;
        both.prepare = [](G_Operation*) { return false; };
        RunInEventLoop([&] { PerformAndHandBack("d_x"); });
        RunInEventLoop([&] { PerformAndHandBack("d_y"); });
        QCOMPARE(prototype->Copies(), 1);
        QCOMPARE(other.Copies(), 1);
        copies.reset();
        QCOMPARE(other.Copies(), 0);
    }

    void anotherInterceptorsRefusalOfTheSameNameLetsNothingGo()
    {
        std::unique_ptr<ScriptedInterceptor> refusers[2];
        for (const int i : {0, 1}) {
            const G_InterceptorScope scope(FakeDocument(i + 1));
            refusers[i] = Refuser();
        }
        for (const int document : {1, 2}) {
            RunInEventLoop([&] {
                G_Operation* const op = copies->Make("d_x", FakeView(document), FakeDocument(document));
                op->PerformAction();
                op->DeleteLater();
            });
        }
        QCOMPARE(prototype->Copies(), 2);
    }

    void aCopyThatTwoRefusedStaysUntilBothLetGo()
    {
        auto first = Refuser();
        auto second = Refuser();
        RunInEventLoop([&] { PerformAndHandBack(); });
        RunInEventLoop([&] { first.reset(); });
        QCOMPARE(prototype->Copies(), 1);
        RunInEventLoop([&] { second.reset(); });
        QCOMPARE(prototype->Copies(), 0);
    }

    void theCopyRefusedLastIsKeptWhenRefusalsNest()
    {
        const auto refuser = Refuser();
        G_Operation* outer = nullptr;
        refuser->prepare = [&](G_Operation* op) {
            if (op == outer)
                PerformAndHandBack();
            return false;
        };
        RunInEventLoop([&] {
            outer = Make();
            outer->PerformAction();
            outer->DeleteLater();
            QCOMPARE(prototype->Copies(), 2);
        });
        QCOMPARE(prototype->Copies(), 1);
        QCOMPARE(outer->ExecuteAction(), 1);
    }

    void aRefusedCopyThatWasNeverHandedBackOutlivesItsInterceptor()
    {
        auto refuser = Refuser();
        G_Operation* op = nullptr;
        RunInEventLoop([&] {
            op = Make();
            op->PerformAction();
        });
        RunInEventLoop([&] { refuser.reset(); });
        QCOMPARE(prototype->Copies(), 1);
        RunInEventLoop([&] { op->DeleteLater(); });
        QCOMPARE(prototype->Copies(), 0);
    }

    void aCopyRefusedByRightsIsNotKept()
    {
        const auto refuser = Refuser();
        host.mayRun = [](G_Operation*) { return false; };
        RunInEventLoop([&] { PerformAndHandBack(); });
        host.mayRun = [](G_Operation*) { return true; };
        QCOMPARE(prototype->Copies(), 0);
    }

    void aCopyRefusedBeforeDoActionIsNotKept()
    {
        const ScriptedInterceptor refuser("d_x");
        const_cast<ScriptedInterceptor&>(refuser).before = [](G_Operation*) { return false; };
        RunInEventLoop([&] { PerformAndHandBack(); });
        QCOMPARE(prototype->Copies(), 0);
    }

    void aCopyIsNotFreedWhileItRuns()
    {
        (*prototype)->doAction = [this](G_Operation* op) {
            op->DeleteLater();
            TurnEventLoop();
            TurnEventLoop();
            return prototype->Copies() == 1;
        };
        RunInEventLoop([&] { QCOMPARE(Make()->ExecuteAction(), 1); });
        QCOMPARE(prototype->Copies(), 0);
    }

    void aCopyHandedBackInItsPrepareLivesThroughTheBox()
    {
        ScriptedInterceptor interceptor("d_x");
        interceptor.prepare = [this](G_Operation* op) {
            op->DeleteLater();
            TurnEventLoop();
            return prototype->Copies() == 1;
        };
        RunInEventLoop([&] { QVERIFY(Make()->PerformAction()); });
        QCOMPARE(prototype->Copies(), 0);
    }

    void anInterceptorDestroyedDuringTheRunFreesTheCopyOnlyAfterIt()
    {
        auto refuser = Refuser();
        G_Operation* op = nullptr;
        RunInEventLoop([&] { op = PerformAndHandBack(); });
        (*prototype)->doAction = [&](G_Operation*) {
            refuser.reset();
            TurnEventLoop();
            return prototype->Copies() == 1;
        };
        RunInEventLoop([&] {
            QCOMPARE(op->ExecuteAction(), 1);
            QCOMPARE(prototype->Copies(), 1);
        });
        QCOMPARE(prototype->Copies(), 0);
    }

    void theDyingContextFreesRefusedCopiesToo()
    {
        const auto refuser = Refuser();
        RunInEventLoop([&] { PerformAndHandBack(); });
        QCOMPARE(copies->Count(), 1);
        copies.reset();
        QCOMPARE(prototype->Copies(), 0);
    }

    void aCopyThatRunsOutlivesItsContextAndReadsNull()
    {
        (*prototype)->doAction = [this](G_Operation* op) {
            copies.reset();
            return !op->UIContext() && !op->DocView() && !op->GDocument() && prototype->Copies() == 1;
        };
        RunInEventLoop([&] {
            G_Operation* const op = Make();
            QVERIFY(op->PerformAction());
            op->DeleteLater(); // the caller does not know
            QCOMPARE(prototype->Copies(), 1);
        });
        QCOMPARE(prototype->Copies(), 0);
    }

    void aContextThatDiesBeforeTheDeferredDeletionLeavesNothingToDelete()
    {
        RunInEventLoop([&] {
            PerformAndHandBack();
            copies.reset();
            QCOMPARE(prototype->Copies(), 0);
        });
        QCOMPARE(prototype->Copies(), 0);
    }

    void aBusyContextFreesAThousandCopies()
    {
        const auto refuser = Refuser();
        RunInEventLoop([&] {
            for (int i = 0; i < 1000; ++i)
                PerformAndHandBack();
        });
        QCOMPARE(prototype->Copies(), 1);
    }
};

TETO_TEST_MAIN(TestWorkingCopies)
#include "test_working_copies.moc"
