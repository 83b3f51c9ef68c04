#include "copy_keeper.h"

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

void CopyInbox::ReadNext()
{
    keeper->ReadNext();
}

CopyKeeper::CopyKeeper()
    : mainThread(QThread::currentThread())
{
}

std::shared_ptr<CopyKeeper> CopyKeeper::Create()
{
    std::shared_ptr<CopyKeeper> keeper(new CopyKeeper);
    keeper->inbox = new CopyInbox(keeper);
    return keeper;
}

void CopyKeeper::Add(G_Operation* copy, G_OperationHost* host, G_UIContext* context, G_DocView* view,
                     IG_Document* document)
{
    copy->host = host;
    copy->context = context;
    copy->view = view;
    copy->document = document;
    copy->keeper = shared_from_this();
    copy->serial = ++lastSerial;
    Record record;
    record.serial = copy->serial;
    records.insert(copy, record);
}

void CopyKeeper::Remove(G_Operation* copy)
{
    records.remove(copy);
    heldCopies.removeOne(copy);
    CloseInboxIfEmpty();
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
        Record* const record = Find(copy, copy->serial);
        if (!record || isContextDead)
            return;
        if (!record->holders.contains(refuser.interceptor))
            record->holders.append(refuser.interceptor);
        if (!heldCopies.contains(copy))
            heldCopies.append(copy);
    }
}

void CopyKeeper::LetGo(G_Operation* copy, G_OperationInterceptor* holder)
{
    Record* const record = Find(copy, copy->serial);
    if (!record || !record->holders.removeOne(holder) || !record->holders.isEmpty())
        return;
    heldCopies.removeOne(copy);
    Consider(copy, *record);
}

void CopyKeeper::ContextDies()
{
    isContextDead = true;
    heldCopies.clear();
    const QList<G_Operation*> copies = records.keys();
    for (G_Operation* copy : copies) {
        const auto it = records.find(copy);
        if (it == records.end()) // freed by the destructor of an earlier one
            continue;
        Unbind(copy);
        it->holders.clear();
        it->isHandedBack = true;
        if (IsFree(copy, *it))
            delete copy;
    }
    CloseInboxIfEmpty();
}

void CopyKeeper::Unbind(G_Operation* copy)
{
    copy->host = nullptr;
    copy->context = nullptr;
    copy->view = nullptr;
    copy->document = nullptr;
}

void CopyKeeper::HandBack(G_Operation* copy)
{
    Leave({copy, copy->serial, true});
}

void CopyKeeper::RunEnded(G_Operation* copy, quint64 serial)
{
    Leave({copy, serial, false});
}

void CopyKeeper::Note(const Word& word)
{
    Record* const record = Find(word.copy, word.serial);
    if (!record)
        return;
    record->isHandedBack |= word.isHandBack;
    Consider(word.copy, *record);
}

CopyKeeper::Record* CopyKeeper::Find(G_Operation* copy, quint64 serial)
{
    const auto it = records.find(copy);
    return it != records.end() && it->serial == serial ? &it.value() : nullptr;
}

bool CopyKeeper::IsFree(const G_Operation* copy, const Record& record)
{
    return record.isHandedBack && record.holders.isEmpty() && copy->running == 0;
}

void CopyKeeper::Consider(G_Operation* copy, Record& record)
{
    if (record.isReaperPosted || !IsFree(copy, record))
        return;
    record.isReaperPosted = true;
    (new Reaper(shared_from_this(), copy, record.serial))->deleteLater();
}

void CopyKeeper::Reap(G_Operation* copy, quint64 serial)
{
    Record* const record = Find(copy, serial);
    if (!record)
        return;
    record->isReaperPosted = false;
    if (IsFree(copy, *record)) // else what keeps it now speaks up when it ends
        delete copy;
}

// Words cross over in a list of our own, and only an empty wake-up is posted: a thread checker that does not see into
// Qt's event queue then still sees who handed what to whom.
void CopyKeeper::Leave(const Word& word)
{
    if (QThread::currentThread() == mainThread) {
        Note(word);
        return;
    }
    const std::lock_guard<std::mutex> lock(mutex);
    if (!inbox)
        return;
    words.append(word);
    QMetaObject::invokeMethod(inbox, "ReadNext", Qt::QueuedConnection);
}

void CopyKeeper::ReadNext()
{
    Word word;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (words.isEmpty())
            return;
        word = words.takeFirst();
    }
    Note(word);
}

void CopyKeeper::CloseInboxIfEmpty()
{
    if (!isContextDead || !records.isEmpty())
        return;
    const std::lock_guard<std::mutex> lock(mutex);
    if (inbox)
        inbox->deleteLater(); // it may be what called
    inbox = nullptr;
}
