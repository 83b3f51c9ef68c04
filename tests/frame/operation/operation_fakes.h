#pragma once

#include <frame/operation/interceptor.h>
#include <frame/operation/operation.h>
#include <frame/operation/registry.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <functional>
#include <memory>

// What an operation of the tests does, shared by the prototype and its copies.
struct OperationScript
{
    QByteArray name;
    std::function<bool(G_Operation*)> doAction = [](G_Operation*) { return true; };
    int authority = Authority::Any;
    int runs = 0;   // of DoAction
    int living = 0; // objects of this script, the prototype included
};

class ScriptedOperation : public G_Operation
{
public:
    explicit ScriptedOperation(std::shared_ptr<OperationScript> script)
        : script(std::move(script))
    {
        ++this->script->living;
    }
    ~ScriptedOperation() override { --script->living; }
    G_Operation* Clone() const override
    {
        auto* const copy = new ScriptedOperation(script);
        copy->CopyFrom(this);
        return copy;
    }
    const char* Name() const override { return script->name.isNull() ? nullptr : script->name.constData(); }
    int AuthorityType() const override { return script->authority; }
    bool DoAction() override
    {
        ++script->runs;
        return script->doAction(this);
    }

private:
    std::shared_ptr<OperationScript> script;
};

// A registered prototype that leaves the registry with the test.
class Prototype
{
public:
    explicit Prototype(const QByteArray& name)
        : script(std::make_shared<OperationScript>())
    {
        script->name = name;
        operation = std::make_unique<ScriptedOperation>(script);
        operation->RegisterToGlobal();
    }
    OperationScript* operator->() const { return script.get(); }
    G_Operation* Object() const { return operation.get(); }
    int Copies() const { return script->living - 1; }

private:
    std::shared_ptr<OperationScript> script;
    std::unique_ptr<ScriptedOperation> operation;
};

// An interceptor that notes what it is asked and answers as told.
class ScriptedInterceptor : public G_OperationInterceptor
{
public:
    explicit ScriptedInterceptor(const char* operationName, QStringList* journal = nullptr, const QString& who = {})
        : operationName(operationName)
        , journal(journal)
        , who(who)
    {
    }
    bool OperationFilter(G_Operation* op) override
    {
        ++filterCalls;
        return OperationNameMatches(op, operationName.constData());
    }
    bool PrepareDataHandle(G_Operation* op, int flag) override
    {
        lastFlag = flag;
        Note("prepare");
        return prepare(op);
    }
    bool BeforeDoActionHandle(G_Operation* op) override
    {
        Note("before");
        return before(op);
    }
    void AfterDoActionHandle(G_Operation* op) override
    {
        Note("after");
        after(op);
    }

    std::function<bool(G_Operation*)> prepare = [](G_Operation*) { return true; };
    std::function<bool(G_Operation*)> before = [](G_Operation*) { return true; };
    std::function<void(G_Operation*)> after = [](G_Operation*) {};
    int filterCalls = 0;
    int lastFlag = -1;

private:
    void Note(const char* step)
    {
        if (journal)
            journal->append(QLatin1String(step) + (who.isEmpty() ? QString() : QLatin1Char(' ') + who));
    }

    QByteArray operationName;
    QStringList* journal; // not owned
    QString who;
};

// The frame around the road, as far as the road asks it.
class ScriptedHost : public G_OperationHost
{
public:
    bool MayRun(G_Operation* op) override { return mayRun(op); }
    void RefusedByRights(G_Operation*) override { ++notes; }
    void BeforePerform(IG_Document* document) override { beforePerform(document); }

    std::function<bool(G_Operation*)> mayRun = [](G_Operation*) { return true; };
    std::function<void(IG_Document*)> beforePerform = [](IG_Document*) {};
    int notes = 0;
};

// Views, documents and contexts are only addresses to the road: it compares them and never follows them.
inline IG_Document* FakeDocument(int number)
{
    static char places[16];
    return reinterpret_cast<IG_Document*>(&places[number]);
}

inline G_DocView* FakeView(int number)
{
    static char places[16];
    return reinterpret_cast<G_DocView*>(&places[number]);
}

inline G_UIContext* FakeContext()
{
    static char place;
    return reinterpret_cast<G_UIContext*>(&place);
}

// Runs the call from an event loop, as everything in a program is, and gives that loop a few turns more.
inline void RunInEventLoop(const std::function<void()>& call)
{
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
        call();
        QTimer::singleShot(0, &loop, [&] { QTimer::singleShot(0, &loop, &QEventLoop::quit); });
    });
    loop.exec();
}

inline void TurnEventLoop()
{
    RunInEventLoop([] {});
}
