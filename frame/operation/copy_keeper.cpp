#include "copy_keeper.h"

#include <QCoreApplication>
#include <QThread>

// Qt's own rule of deferred deletion is what is wanted here: not before control is back in the event loop that the
// request was made from, nested loops of dialogs left aside.
class CopyKeeper::Reaper : public QObject
{
public:
    Reaper(std::shared_ptr<CopyKeeper> keeper, G_Operation* copy, quint64 serial)
        : keeper(std::move(keeper))
        , copy(copy)
        , serial(serial)
    {
    }
    ~Reaper() override { keeper->Reap(copy, serial); }

private:
    std::shared_ptr<CopyKeeper> keeper;
    G_Operation* copy; // not owned; may have been freed
    quint64 serial;
};

CopyKeeper::CopyKeeper(QObject* owner)
    : mainThread(owner->thread())
    , owner(owner)
{
}

void CopyKeeper::Add(G_Operation* copy, G_OperationHost* host, G_UIContext* context, G_DocView* view,
                     IG_Document* document)
{
    copy->host = host;
    copy->context = context;
    copy->view = view;
    copy->document = document;
    copy->keeper = shared_from_this();
    Record record;
    record.serial = ++lastSerial;
    records.insert(copy, record);
}

void CopyKeeper::Remove(G_Operation* copy)
{
    records.remove(copy);
    heldCopies.removeOne(copy);
}

void CopyKeeper::ForgetView(G_DocView* view)
{
    if (!view)
        return;
    for (auto it = records.keyBegin(); it != records.keyEnd(); ++it) {
        if ((*it)->view == view) {
            (*it)->view = nullptr;
            (*it)->document = nullptr;
        }
    }
}

void CopyKeeper::ForgetInterceptor(G_OperationInterceptor* interceptor)
{
    const QVector<G_Operation*> held = heldCopies;
    for (G_Operation* copy : held)
        LetGo(copy, interceptor);
}

void CopyKeeper::Park(G_Operation* copy, const QVector<InterceptorEntry>& refusers)
{
    const G_OperationRegistry& registry = G_OperationRegistry::Instance();
    for (const InterceptorEntry& refuser : refusers) {
        if (!registry.IsEnrolled(refuser)) // it was destroyed by what it set off; nobody holds the copy
            continue;
        const QVector<G_Operation*> held = heldCopies;
        for (G_Operation* other : held) {
            if (other != copy && qstrcmp(other->Name(), copy->Name()) == 0)
                LetGo(other, refuser.interceptor);
        }
        const auto it = records.find(copy);
        if (it == records.end())
            return;
        if (!it->holders.contains(refuser.interceptor))
            it->holders.append(refuser.interceptor);
        if (!heldCopies.contains(copy))
            heldCopies.append(copy);
    }
}

void CopyKeeper::LetGo(G_Operation* copy, G_OperationInterceptor* holder)
{
    const auto it = records.find(copy);
    if (it == records.end() || !it->holders.removeOne(holder) || !it->holders.isEmpty())
        return;
    heldCopies.removeOne(copy);
    Consider(copy);
}

void CopyKeeper::ContextDies()
{
    {
        const QMutexLocker lock(&ownerMutex);
        owner = nullptr;
    }
    const QList<G_Operation*> copies = records.keys();
    heldCopies.clear();
    for (G_Operation* copy : copies) {
        const auto it = records.find(copy);
        if (it == records.end()) // the destructor of an earlier one freed it
            continue;
        copy->host = nullptr;
        copy->context = nullptr;
        copy->view = nullptr;
        copy->document = nullptr;
        it->holders.clear();
        it->isHandedBack = true;
        if (IsFree(copy, *it))
            delete copy;
    }
}

void CopyKeeper::HandBack(G_Operation* copy)
{
    if (QThread::currentThread() != mainThread) {
        Post([self = shared_from_this(), copy] { self->HandBack(copy); });
        return;
    }
    const auto it = records.find(copy);
    if (it == records.end())
        return;
    it->isHandedBack = true;
    Consider(copy);
}

void CopyKeeper::RunEnded(G_Operation* copy)
{
    if (QThread::currentThread() == mainThread)
        Consider(copy);
    else
        Post([self = shared_from_this(), copy] { self->Consider(copy); });
}

bool CopyKeeper::IsFree(const G_Operation* copy, const Record& record)
{
    return record.isHandedBack && record.holders.isEmpty() && copy->running == 0;
}

void CopyKeeper::Consider(G_Operation* copy)
{
    const auto it = records.find(copy);
    if (it == records.end() || it->isReaperPosted || !IsFree(copy, *it))
        return;
    it->isReaperPosted = true;
    (new Reaper(shared_from_this(), copy, it->serial))->deleteLater();
}

void CopyKeeper::Reap(G_Operation* copy, quint64 serial)
{
    const auto it = records.find(copy);
    if (it == records.end() || it->serial != serial)
        return;
    it->isReaperPosted = false;
    if (IsFree(copy, *it)) // else what keeps it now asks again when it ends
        delete copy;
}

bool CopyKeeper::Post(std::function<void()> call)
{
    const QMutexLocker lock(&ownerMutex);
    QObject* const receiver = owner ? owner : QCoreApplication::instance();
    return receiver && QMetaObject::invokeMethod(receiver, std::move(call), Qt::QueuedConnection);
}
