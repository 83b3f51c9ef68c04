#pragma once

#include <frame/base/export.h>

#include <QString>

class G_Operation;
class IG_Document;

// Takes part in operations on their way to DoAction. Enrols itself when constructed and leaves when destroyed. It is
// tagged with the document of the G_InterceptorScope it was made in (none = it takes part for every document): the
// road asks those whose filter matches and whose tag is the operation's document, asks all of them, and stops when any
// refused. Not a QObject, so that subclasses may be. Made and destroyed on the main thread.
class FRAME_EXPORT G_OperationInterceptor
{
public:
    G_OperationInterceptor();
    virtual ~G_OperationInterceptor();
    // Does this interceptor take part in this operation?
    virtual bool OperationFilter(G_Operation* op) = 0;
    // Asks the user and packs the target into the operation's parameters. False stops the operation without DoAction;
    // an interceptor that keeps `op` to run ExecuteAction later may then do so until it is destroyed or refuses
    // another copy of the same name. `flag` is always 0.
    virtual bool PrepareDataHandle(G_Operation* op, int flag);
    // False keeps DoAction from running.
    virtual bool BeforeDoActionHandle(G_Operation* op);
    // Told the outcome; read it in the operation's Result.
    virtual void AfterDoActionHandle(G_Operation* op);

    IG_Document* Tag() const { return tag; } // null: it takes part for every document

private:
    Q_DISABLE_COPY(G_OperationInterceptor)
    IG_Document* tag; // not owned; identity only, never dereferenced
};

// While one stands, interceptors made on the main thread are tagged with its document. The frame opens one around the
// making of a pane; scopes nest.
class FRAME_EXPORT G_InterceptorScope
{
public:
    explicit G_InterceptorScope(IG_Document* document);
    ~G_InterceptorScope();
    static IG_Document* Current(); // of the innermost scope; null without one

private:
    Q_DISABLE_COPY(G_InterceptorScope)
    IG_Document* outer; // not owned
};

// The usual test of an OperationFilter: the last "/" piece of the operation's name, lower-cased, is `name`. With
// Qt::SkipEmptyParts "d_x/" matches "d_x"; with Qt::KeepEmptyParts it does not. A null or empty name never matches.
FRAME_EXPORT bool OperationNameMatches(G_Operation* op, const char* name,
                                       Qt::SplitBehavior behavior = Qt::KeepEmptyParts);
