#pragma once

#include <frame/operation/operation.h>

#include <QByteArray>
#include <QObject>
#include <QStringList>
#include <QVector>

#include <memory>

class CopyKeeper;
class G_OperationInterceptor;
class G_WorkingCopies;

// An interceptor as the registry knows it. The serial number tells it from a later one at the same address.
struct InterceptorEntry
{
    G_OperationInterceptor* interceptor = nullptr; // not owned; may be dead
    IG_Document* tag = nullptr;                    // not owned; identity only
    quint64 serial = 0;
};
Q_DECLARE_TYPEINFO(InterceptorEntry, Q_PRIMITIVE_TYPE);

// The prototypes by name and the enrolled interceptors, one set a process. Holds by reference, deletes nothing, and
// survives a plugin that is destroyed and made again. Prototypes change on the main thread only; the interceptor list
// is guarded, because a worker's ExecuteAction reads it.
class FRAME_EXPORT G_OperationRegistry
{
public:
    static G_OperationRegistry& Instance();

    // The caller keeps owning it. Replaces an earlier one of the name, with a warning in the log.
    void Register(G_Operation* prototype);
    // Takes the object out only if it is the registered prototype of its name.
    void Unregister(G_Operation* prototype);
    G_Operation* Find(const QByteArray& name) const; // exact match; null when unknown
    QStringList Names() const;                       // in order of registration
    // Names in the order in which prototypes were taken out since the last call; for tests of a teardown.
    QStringList TakeDeregistrationLog();
    // Appends to that log; tool handlers use it too.
    void LogDeregistration(const QByteArray& name);

    // Called by an interceptor for itself, when it is made and when it is destroyed.
    void Enrol(G_OperationInterceptor* interceptor);
    void Leave(G_OperationInterceptor* interceptor);
    bool IsEnrolled(G_OperationInterceptor* interceptor) const;
    // Is it still the interceptor that the entry was made of?
    bool IsEnrolled(const InterceptorEntry& entry) const;
    int InterceptorCount() const;
    // How many have left so far: an entry taken at the same count is still enrolled, which saves asking for each.
    quint64 LeaveCount() const;
    // Those whose filter matches and whose tag is the document or none, in order of enrolment. The filters are asked
    // outside the lock.
    QVector<InterceptorEntry> Matching(G_Operation* op, IG_Document* document) const;

private:
    friend class G_WorkingCopies;
    void AddCopies(G_WorkingCopies* copies);
    void RemoveCopies(G_WorkingCopies* copies);
    G_OperationRegistry();
    struct Private;
    std::unique_ptr<Private> d;
};

// The working copies of one context: makes, parks and frees them. Main thread, except that a running copy may be
// executing on a worker; such a copy outlives the context until its run has ended.
class FRAME_EXPORT G_WorkingCopies : public QObject
{
    Q_OBJECT
public:
    G_WorkingCopies(G_OperationHost* host, G_UIContext* context, QObject* parent = nullptr);
    ~G_WorkingCopies() override; // frees all that do not run
    // A copy bound to the view and document; null when the name is unknown (logged).
    G_Operation* Make(const QByteArray& name, G_DocView* view, IG_Document* document);
    // Nulls the bindings of all copies on that view.
    void ForgetView(G_DocView* view);
    int Count() const; // copies alive, parked ones included

private:
    friend class G_OperationRegistry;
    void ForgetInterceptor(G_OperationInterceptor* interceptor);

    G_OperationHost* host; // not owned
    G_UIContext* context;  // not owned
    std::shared_ptr<CopyKeeper> keeper;
};
