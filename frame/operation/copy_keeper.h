#pragma once

#include "registry.h"

#include <QHash>
#include <QVector>

#include <memory>
#include <mutex>

class CopyKeeper;

// Wakes the main thread when a worker has left word for the keeper. Lives on the main thread as long as there may be
// copies, which can be longer than the context.
class CopyInbox : public QObject
{
    Q_OBJECT
public:
    explicit CopyInbox(std::shared_ptr<CopyKeeper> keeper)
        : keeper(std::move(keeper))
    {
    }

public slots:
    void ReadNext();

private:
    std::shared_ptr<CopyKeeper> keeper;
};

// Decides how long the working copies of one context live. Shared by the context's G_WorkingCopies and the copies
// themselves, because a copy that runs outlives its context. Records change on the main thread only.
//
// A copy is freed in a later turn of the event loop once all three hold: it was handed back, no run of it is on any
// stack, and no interceptor holds it. An interceptor holds each copy that it refused to prepare until it refuses
// another one of the same name or is destroyed.
class CopyKeeper : public std::enable_shared_from_this<CopyKeeper>
{
public:
    static std::shared_ptr<CopyKeeper> Create();

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

    // From any thread: the copy was handed back; a run of it has ended, and it may be freed by now.
    void HandBack(G_Operation* copy);
    void RunEnded(G_Operation* copy, quint64 serial);

private:
    friend class CopyInbox;
    class Reaper;
    struct Record
    {
        quint64 serial = 0;                       // tells the copy from a later one at the same address
        QVector<G_OperationInterceptor*> holders; // not owned; the living interceptors that refused it
        bool isHandedBack = false;
        bool isReaperPosted = false;
    };
    // What a worker says of a copy.
    struct Word
    {
        G_Operation* copy = nullptr; // not owned; may have been freed
        quint64 serial = 0;
        bool isHandBack = false;
    };
    CopyKeeper();
    static bool IsFree(const G_Operation* copy, const Record& record);
    Record* Find(G_Operation* copy, quint64 serial);
    void Note(const Word& word);
    void Consider(G_Operation* copy, Record& record);
    void Reap(G_Operation* copy, quint64 serial);
    void LetGo(G_Operation* copy, G_OperationInterceptor* holder);
    void Unbind(G_Operation* copy);
    void Leave(const Word& word);
    void ReadNext();
    void CloseInboxIfEmpty();

    QThread* const mainThread; // not owned
    QHash<G_Operation*, Record> records;
    QVector<G_Operation*> heldCopies;
    quint64 lastSerial = 0;
    bool isContextDead = false;

    std::mutex mutex;           // guards the two below
    QVector<Word> words;        // left by workers, not read yet
    CopyInbox* inbox = nullptr; // owned; null once there is nothing left to keep
};
