#include "operation_fakes.h"

#include <frame/base/log.h>
#include <tests/support/test_main.h>

#include <QtTest>

class TestOperationRegistry : public QObject
{
    Q_OBJECT

    static G_OperationRegistry& Registry() { return G_OperationRegistry::Instance(); }

private slots:
    void init() { Registry().TakeDeregistrationLog(); }

    void aNameIsFoundOnlyExactly()
    {
        const Prototype prototype("d_x");
        QCOMPARE(Registry().Find("d_x"), prototype.Object());
        QVERIFY(!Registry().Find("D_X"));
        QVERIFY(!Registry().Find("host/d_x"));
        QVERIFY(!Registry().Find(""));
    }

    void namesStandInOrderOfRegistration()
    {
        const Prototype second("d_b");
        const Prototype first("d_a");
        QCOMPARE(Registry().Names(), QStringList({"d_b", "d_a"}));
    }

    void destroyingThePrototypeTakesItOutAndLogsItsName()
    {
        auto first = std::make_unique<Prototype>("d_a");
        auto second = std::make_unique<Prototype>("d_b");
        second.reset();
        QVERIFY(!Registry().Find("d_b"));
        first.reset();
        QVERIFY(Registry().Names().isEmpty());
        QCOMPARE(Registry().TakeDeregistrationLog(), QStringList({"d_b", "d_a"}));
        QVERIFY(Registry().TakeDeregistrationLog().isEmpty());
    }

    void registeringAKnownNameReplacesItWithAWarning()
    {
        auto earlier = std::make_unique<Prototype>("d_x");
        QList<QByteArray> lines;
        SetFrameLogListener([&](const QByteArray& line) { lines.append(line); });
        const Prototype later("d_x");
        SetFrameLogListener({});
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines.first().contains("d_x"));
        QCOMPARE(Registry().Find("d_x"), later.Object());
        QCOMPARE(Registry().Names(), QStringList({"d_x"}));
        earlier.reset(); // no longer the prototype of its name: it takes nothing out
        QCOMPARE(Registry().Find("d_x"), later.Object());
        QVERIFY(Registry().TakeDeregistrationLog().isEmpty());
    }

    void registeringTheSameObjectAgainIsSilent()
    {
        const Prototype prototype("d_x");
        QList<QByteArray> lines;
        SetFrameLogListener([&](const QByteArray& line) { lines.append(line); });
        prototype.Object()->RegisterToGlobal();
        SetFrameLogListener({});
        QVERIFY(lines.isEmpty());
        QCOMPARE(Registry().Names(), QStringList({"d_x"}));
    }

    void anOperationWithoutANameIsNotRegistered()
    {
        const Prototype nameless("");
        QVERIFY(Registry().Names().isEmpty());
    }

    void destroyingAWorkingCopyLeavesThePrototypeRegistered()
    {
        const Prototype prototype("d_x");
        {
            ScriptedHost host;
            G_WorkingCopies copies(&host, FakeContext());
            QVERIFY(copies.Make("d_x", nullptr, nullptr));
        }
        QCOMPARE(Registry().Find("d_x"), prototype.Object());
        QVERIFY(Registry().TakeDeregistrationLog().isEmpty());
    }

    void aPluginThatIsDestroyedAndMadeAgainRegistersAgain()
    {
        {
            const Prototype first("d_x");
        }
        const Prototype second("d_x");
        QCOMPARE(Registry().Find("d_x"), second.Object());
    }

    void otherKindsOfPrototypesShareTheLog()
    {
        Registry().LogDeregistration("tp_tool");
        QCOMPARE(Registry().TakeDeregistrationLog(), QStringList({"tp_tool"}));
    }

    void interceptorsEnrolWhenMadeAndLeaveWhenDestroyed()
    {
        QCOMPARE(Registry().InterceptorCount(), 0);
        auto interceptor = std::make_unique<ScriptedInterceptor>("d_x");
        QCOMPARE(Registry().InterceptorCount(), 1);
        QVERIFY(Registry().IsEnrolled(interceptor.get()));
        Registry().Enrol(interceptor.get()); // again: no second place
        QCOMPARE(Registry().InterceptorCount(), 1);
        G_OperationInterceptor* const address = interceptor.get();
        interceptor.reset();
        QCOMPARE(Registry().InterceptorCount(), 0);
        QVERIFY(!Registry().IsEnrolled(address));
    }

    void matchingGivesTheDocumentsOwnAndTheUntaggedInOrderOfEnrolment()
    {
        const Prototype prototype("d_x");
        std::vector<std::unique_ptr<ScriptedInterceptor>> made;
        for (const int document : {1, 0, 2, 1}) {
            const G_InterceptorScope scope(document ? FakeDocument(document) : nullptr);
            made.push_back(std::make_unique<ScriptedInterceptor>("d_x"));
        }
        const ScriptedInterceptor other("d_other");
        const auto matching = Registry().Matching(prototype.Object(), FakeDocument(1));
        QCOMPARE(matching.size(), 3);
        QCOMPARE(matching[0].interceptor, made[0].get());
        QCOMPARE(matching[1].interceptor, made[1].get());
        QCOMPARE(matching[2].interceptor, made[3].get());
        QCOMPARE(Registry().Matching(prototype.Object(), nullptr).size(), 1);
    }

    void anEntryDoesNotStandForALaterInterceptorAtTheSameAddress()
    {
        const Prototype prototype("d_x");
        alignas(ScriptedInterceptor) char place[sizeof(ScriptedInterceptor)];
        auto* interceptor = new (place) ScriptedInterceptor("d_x");
        const auto entry = Registry().Matching(prototype.Object(), nullptr).value(0);
        QVERIFY(Registry().IsEnrolled(entry));
        interceptor->~ScriptedInterceptor();
        interceptor = new (place) ScriptedInterceptor("d_x");
        QVERIFY(Registry().IsEnrolled(interceptor));
        QVERIFY(!Registry().IsEnrolled(entry));
        interceptor->~ScriptedInterceptor();
    }
};

TETO_TEST_MAIN(TestOperationRegistry)
#include "test_operation_registry.moc"
