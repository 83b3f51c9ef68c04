#include "registry.h"

#include "interceptor.h"

#include <frame/base/log.h>

#include <QHash>

#include <algorithm>
#include <atomic>
#include <mutex>

struct G_OperationRegistry::Private
{
    // Main thread only.
    QHash<QByteArray, G_Operation*> prototypes; // not owned
    QHash<G_Operation*, QByteArray> names;      // a prototype cannot be asked for its name while it is destroyed
    QVector<QByteArray> order;
    QStringList deregistrationLog;
    QVector<G_WorkingCopies*> copies; // not owned

    mutable std::mutex mutex; // guards the two below
    QVector<InterceptorEntry> entries;
    QHash<G_OperationInterceptor*, quint64> serials;
    quint64 lastSerial = 0;
    std::atomic<quint64> leaves{0};
};

G_OperationRegistry::G_OperationRegistry()
    : d(std::make_unique<Private>())
{
}

G_OperationRegistry& G_OperationRegistry::Instance()
{
    // Never destroyed: prototypes and interceptors with static lifetime still leave it at the end of the process.
    static G_OperationRegistry* const instance = new G_OperationRegistry;
    return *instance;
}

void G_OperationRegistry::Register(G_Operation* prototype)
{
    const QByteArray name(prototype ? prototype->Name() : nullptr);
    if (name.isEmpty()) {
        FrameLog("operation without a name is not registered G_OperationRegistry Register");
        return;
    }
    G_Operation* const earlier = d->prototypes.value(name);
    if (earlier == prototype)
        return;
    if (earlier) {
        FrameLog("warning: operation " + name + " is registered again and replaced G_OperationRegistry Register");
        d->names.remove(earlier);
        d->order.removeOne(name);
    }
    d->prototypes.insert(name, prototype);
    d->names.insert(prototype, name);
    d->order.append(name);
}

void G_OperationRegistry::Unregister(G_Operation* prototype)
{
    const QByteArray name = d->names.take(prototype);
    if (name.isEmpty())
        return;
    d->prototypes.remove(name);
    d->order.removeOne(name);
    LogDeregistration(name);
}

G_Operation* G_OperationRegistry::Find(const QByteArray& name) const
{
    return d->prototypes.value(name);
}

QStringList G_OperationRegistry::Names() const
{
    QStringList names;
    for (const QByteArray& name : d->order)
        names.append(QString::fromUtf8(name));
    return names;
}

QStringList G_OperationRegistry::TakeDeregistrationLog()
{
    return std::exchange(d->deregistrationLog, {});
}

void G_OperationRegistry::LogDeregistration(const QByteArray& name)
{
    d->deregistrationLog.append(QString::fromUtf8(name));
}

void G_OperationRegistry::Enrol(G_OperationInterceptor* interceptor)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    if (!interceptor || d->serials.contains(interceptor))
        return;
    const quint64 serial = ++d->lastSerial;
    d->serials.insert(interceptor, serial);
    d->entries.append({interceptor, interceptor->Tag(), serial});
}

void G_OperationRegistry::Leave(G_OperationInterceptor* interceptor)
{
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        if (d->serials.remove(interceptor) == 0)
            return;
        ++d->leaves;
        const auto isIt = [=](const InterceptorEntry& entry) { return entry.interceptor == interceptor; };
        d->entries.erase(std::remove_if(d->entries.begin(), d->entries.end(), isIt), d->entries.end());
    }
    for (G_WorkingCopies* copies : qAsConst(d->copies))
        copies->ForgetInterceptor(interceptor);
}

bool G_OperationRegistry::IsEnrolled(G_OperationInterceptor* interceptor) const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return d->serials.contains(interceptor);
}

bool G_OperationRegistry::IsEnrolled(const InterceptorEntry& entry) const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return d->serials.value(entry.interceptor) == entry.serial;
}

int G_OperationRegistry::InterceptorCount() const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return d->entries.size();
}

quint64 G_OperationRegistry::LeaveCount() const
{
    return d->leaves.load(std::memory_order_acquire);
}

QVector<InterceptorEntry> G_OperationRegistry::Matching(G_Operation* op, IG_Document* document) const
{
    QVector<InterceptorEntry> candidates;
    quint64 leavesBefore = 0;
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        candidates = d->entries; // shares the list
        leavesBefore = d->leaves;
    }
    QVector<InterceptorEntry> matching;
    for (const InterceptorEntry& entry : qAsConst(candidates)) {
        if (entry.tag && entry.tag != document)
            continue;
        if (LeaveCount() != leavesBefore && !IsEnrolled(entry)) // a filter destroyed it
            continue;
        if (entry.interceptor->OperationFilter(op))
            matching.append(entry);
    }
    return matching;
}

void G_OperationRegistry::AddCopies(G_WorkingCopies* copies)
{
    d->copies.append(copies);
}

void G_OperationRegistry::RemoveCopies(G_WorkingCopies* copies)
{
    d->copies.removeOne(copies);
}
