#pragma once

#include <frame/base/export.h>
#include <frame/operation/operation_param.h>

#include <QVector>

#include <atomic>
#include <memory>

class CopyKeeper;
class G_DocView;
class G_OperationHost;
class G_OperationInterceptor;
class G_UIContext;
class IG_Document;
struct InterceptorEntry;

// What AuthorityType answers.
namespace Authority {
constexpr int Any = 0;                // runs on any document
constexpr int EditDocument = 1;       // needs the document's edit right
constexpr int EditAnnotation = 2;     // needs the annotation right
constexpr int ExportContent = 4;      // needs the export right
constexpr int ShowAnnotation = 16384; // display only; runs on any document
} // namespace Authority

// A user action that is made by name. Prototypes are registered and never performed; the frame clones one for each
// performance. A working copy is bound to the view, context and document that were current when it was made. View and
// document read null once that view has died, the context once it has died itself.
class FRAME_EXPORT G_Operation
{
public:
    // A new object of the same class: made with the default constructor, then CopyFrom(this).
    virtual G_Operation* Clone() const = 0;
    virtual ~G_Operation();
    // The registered name, lower case.
    virtual const char* Name() const = 0;
    virtual int AuthorityType() const;
    virtual QString ListenerParamsJson() const; // empty in the base
    // The base adds each member of a JSON object to Params; a malformed text adds nothing.
    virtual void ParseParamJson(const QString& json);
    virtual void ResetParams(); // takes all out
    // Does the work; true means done.
    virtual bool DoAction() = 0;

    G_OperationParam* Params; // owned, never null
    int Result = 0;           // of the last DoAction; 1 while the before-handlers are asked

    // What the copy is bound to; null for a prototype, and once it has died. Callable from any thread.
    G_DocView* DocView() const;
    G_UIContext* UIContext() const;
    IG_Document* GDocument() const;

    // The whole road: rights, filter, prepare of all, before-handlers of all, DoAction, after-handlers. Main thread.
    // Returns DoAction's result; false when anything refused (no after-handler runs then).
    bool PerformAction();
    // The road from the before-handlers on, with the interceptors that the first run found. May be called several
    // times, and from one worker thread at a time. Returns DoAction's result as 0 or 1.
    int ExecuteAction();
    // Hands a working copy back; it is deleted in a later turn of the event loop, a copy that an interceptor refused
    // when that interceptor no longer needs it.
    void DeleteLater();
    // Copies Params, never Result.
    void CopyFrom(const G_Operation* other);
    // Makes this object the prototype of its name; the caller keeps owning it. A known name is replaced with a
    // warning. The destructor takes the prototype out again.
    void RegisterToGlobal();

protected:
    G_Operation();

private:
    friend class CopyKeeper;
    Q_DISABLE_COPY(G_Operation)
    class RunMark;
    bool RunFromBefore();
    void FindInterceptors();
    bool IsPrepared();

    // Atomic, because a worker's ExecuteAction may read them while the main thread closes the view.
    std::atomic<G_OperationHost*> host{nullptr}; // not owned
    std::atomic<G_UIContext*> context{nullptr};  // not owned
    std::atomic<G_DocView*> view{nullptr};       // not owned
    std::atomic<IG_Document*> document{nullptr}; // not owned
    std::shared_ptr<CopyKeeper> keeper;          // null for what is no working copy
    quint64 serial = 0;                          // the keeper's number of this copy
    QVector<InterceptorEntry> interceptors;      // those found; some may have been destroyed since
    quint64 leavesWhenFound = 0;                 // the registry's count of leavings at that time
    bool areInterceptorsFound = false;
    std::atomic<int> running{0}; // runs of this object that are on some stack now
};

// What the machinery needs of the frame around it; the UI context is one.
class FRAME_EXPORT G_OperationHost
{
public:
    virtual ~G_OperationHost();
    // May an operation of this authority run on the document? Asked before any interceptor.
    virtual bool MayRun(G_Operation* op) = 0;
    // Told when it may not; shows one transient note.
    virtual void RefusedByRights(G_Operation* op) = 0;
    // Makes what listens to operations on this document exist (panes that are still missing).
    virtual void BeforePerform(IG_Document* document) = 0;
};
