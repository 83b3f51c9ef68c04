#pragma once

#include "registry.h"

#include <QHash>
#include <QMutex>
#include <QVector>

#include <functional>
#include <memory>

// Decides how long the working copies of one context live. Shared by the context's G_WorkingCopies and the copies
// themselves, because a copy that runs outlives its context. Records change on the main thread only; the calls that a
// worker may make are marked.
//
// A copy is freed in a later turn of the event loop once all three hold: it was handed back, no run of it is on any
// stack, and no interceptor holds it. An interceptor holds each copy that it refused to prepare until it refuses
// another one of the same name or is destroyed.
class CopyKeeper : public std::enable_shared_from_this<CopyKeeper>
{
public:
    // Posts go to `owner`, which lives on the main thread.
    explicit CopyKeeper(QObject* owner);

    void Add(G_Operation* copy, G_OperationHost* host, G_UIContext* context, G_DocView* view, IG_Document* document);
    int Count() const { return records.size(); }
    // The copy is being destroyed.
    void Remove(G_Operation* copy);
    void ForgetView(G_DocView* view);
    void ForgetInterceptor(G_OperationInterceptor* interceptor);
    // Notes who refused to prepare the copy; they let go of what they refused before.
    void Park(G_Operation* copy, const QVector<InterceptorEntry>& refusers);
    // Frees all copies; those that run are freed after their run.
    void ContextDies();

    void HandBack(G_Operation* copy); // any thread
    void RunEnded(G_Operation* copy); // any thread

private:
    class Reaper;
    struct Record
    {
        quint64 serial = 0;                       // tells it from a later copy at the same address
        QVector<G_OperationInterceptor*> holders; // not owned; the living interceptors that refused it
        bool isHandedBack = false;
        bool isReaperPosted = false;
    };
    static bool IsFree(const G_Operation* copy, const Record& record);
    void Consider(G_Operation* copy);
    void Reap(G_Operation* copy, quint64 serial);
    void LetGo(G_Operation* copy, G_OperationInterceptor* holder);
    // From a worker: has the call made on the main thread. False when there is no event loop left to post to.
    bool Post(std::function<void()> call);

    QHash<G_Operation*, Record> records;
    QVector<G_Operation*> heldCopies;
    quint64 lastSerial = 0;

    QThread* const mainThread; // not owned
    QMutex ownerMutex;         // a worker posts to the owner while the main thread may destroy it
    QObject* owner;            // not owned; null once the context has died
};
