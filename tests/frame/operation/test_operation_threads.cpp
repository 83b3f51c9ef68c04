#include "operation_fakes.h"

#include <frame/operation/event_manager.h>
#include <tests/support/test_main.h>

#include <QtTest>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

// Opens once, for all who wait.
class Gate
{
public:
    void Open()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        isOpen = true;
        opened.notify_all();
    }
    void Pass()
    {
        std::unique_lock<std::mutex> lock(mutex);
        opened.wait(lock, [this] { return isOpen; });
    }

private:
    std::mutex mutex;
    std::condition_variable opened;
    bool isOpen = false;
};

} // namespace

// One worker runs ExecuteAction while the main thread goes on turning its event loop, as it does under a modal label.
class TestOperationThreads : public QObject
{
    Q_OBJECT

    ScriptedHost host;

private slots:
    void aWorkerExecutesAKeptCopyFileByFileAndItsEventsArriveInOrder()
    {
        const Prototype prototype("attachment_add");
        G_WorkingCopies copies(&host, FakeContext());
        G_EventMgr manager;
        manager.KnowView(FakeView(1));
        int events = 0;
        connect(&manager, &G_EventMgr::EventFired, this, [&] { ++events; });
        QStringList added;
        prototype->doAction = [&](G_Operation* op) {
            added.append(op->Params->GetQString("file"));
            manager.Deliver(new G_DocumentChangedEvent(op->DocView(), EventType::DocumentChanged, 0));
            return true;
        };
        std::atomic<int> befores{0};
        std::atomic<int> afters{0};
        ScriptedInterceptor interceptor("attachment_add");
        G_Operation* kept = nullptr;
        interceptor.prepare = [&](G_Operation* op) {
            kept = op;
            return false;
        };
        interceptor.before = [&](G_Operation*) { return ++befores > 0; };
        interceptor.after = [&](G_Operation*) { ++afters; };
        RunInEventLoop([&] {
            G_Operation* const op = copies.Make("attachment_add", FakeView(1), FakeDocument(1));
            op->PerformAction();
            op->DeleteLater();
        });
        std::atomic<bool> isFinished{false};
        std::thread worker([&] {
            for (int i = 0; i < 200; ++i) {
                kept->Params->Add("file", QString::number(i));
                kept->ExecuteAction();
            }
            isFinished = true;
        });
        while (!isFinished)
            TurnEventLoop();
        worker.join();
        TurnEventLoop();
        QCOMPARE(added.size(), 200);
        QCOMPARE(added.last(), QStringLiteral("199"));
        QCOMPARE(events, 200);
        QCOMPARE(befores.load(), 200);
        QCOMPARE(afters.load(), 200);
        QCOMPARE(prototype.Copies(), 1);
    }

    void interceptorsComeAndGoWhileAWorkerExecutes()
    {
        const Prototype prototype("d_work");
        G_WorkingCopies copies(&host, FakeContext());
        std::atomic<int> afters{0};
        ScriptedInterceptor own("d_work");
        own.after = [&](G_Operation*) { ++afters; };
        G_Operation* const op = copies.Make("d_work", FakeView(1), FakeDocument(1));
        op->PerformAction();
        std::atomic<bool> isFinished{false};
        std::thread worker([&] {
            for (int i = 0; i < 500; ++i)
                op->ExecuteAction();
            isFinished = true;
        });
        int made = 0;
        while (!isFinished || made < 100) {
            const G_InterceptorScope scope(FakeDocument(2)); // another tab's pane comes up and goes
            const ScriptedInterceptor foreign("d_work");
            ++made;
        }
        worker.join();
        QCOMPARE(afters.load(), 501);
        QVERIFY(G_OperationRegistry::Instance().IsEnrolled(&own));
    }

    void theViewMayDieWhileAWorkerExecutes()
    {
        const Prototype prototype("d_work");
        G_WorkingCopies copies(&host, FakeContext());
        Gate started;
        Gate forgotten;
        prototype->doAction = [&](G_Operation* op) {
            const bool isBound = op->DocView() != nullptr;
            started.Open();
            forgotten.Pass();
            return isBound && !op->DocView() && !op->GDocument();
        };
        G_Operation* const op = copies.Make("d_work", FakeView(1), FakeDocument(1));
        int result = 0;
        std::thread worker([&] { result = op->ExecuteAction(); });
        started.Pass();
        copies.ForgetView(FakeView(1));
        forgotten.Open();
        worker.join();
        QCOMPARE(result, 1);
    }

    void aCopyHandedBackDuringAWorkersRunDiesAfterIt()
    {
        const Prototype prototype("d_work");
        G_WorkingCopies copies(&host, FakeContext());
        Gate started;
        Gate goOn;
        prototype->doAction = [&](G_Operation*) {
            started.Open();
            goOn.Pass();
            return true;
        };
        G_Operation* const op = copies.Make("d_work", FakeView(1), FakeDocument(1));
        std::thread worker([&] { op->ExecuteAction(); });
        started.Pass();
        RunInEventLoop([&] { op->DeleteLater(); });
        QCOMPARE(copies.Count(), 1);
        goOn.Open();
        worker.join();
        TurnEventLoop();
        TurnEventLoop();
        QCOMPARE(copies.Count(), 0);
        QCOMPARE(prototype.Copies(), 0);
    }

    void aContextThatDiesDuringAWorkersRunLeavesTheCopyUntilItsEnd()
    {
        const Prototype prototype("d_work");
        auto copies = std::make_unique<G_WorkingCopies>(&host, FakeContext());
        Gate started;
        Gate goOn;
        prototype->doAction = [&](G_Operation* op) {
            started.Open();
            goOn.Pass();
            return op->UIContext() == nullptr;
        };
        G_Operation* const op = copies->Make("d_work", FakeView(1), FakeDocument(1));
        int result = 0;
        std::thread worker([&] { result = op->ExecuteAction(); });
        started.Pass();
        copies.reset();
        QCOMPARE(prototype.Copies(), 1);
        goOn.Open();
        worker.join();
        QCOMPARE(result, 1);
        TurnEventLoop();
        TurnEventLoop();
        QCOMPARE(prototype.Copies(), 0);
    }

    void aWorkerMayHandACopyBack()
    {
        const Prototype prototype("d_work");
        G_WorkingCopies copies(&host, FakeContext());
        G_Operation* const op = copies.Make("d_work", FakeView(1), FakeDocument(1));
        std::thread worker([&] {
            op->ExecuteAction();
            op->DeleteLater();
        });
        worker.join();
        TurnEventLoop();
        TurnEventLoop();
        QCOMPARE(prototype.Copies(), 0);
    }
};

TETO_TEST_MAIN(TestOperationThreads)
#include "test_operation_threads.moc"
