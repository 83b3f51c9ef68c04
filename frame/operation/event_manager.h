#pragma once

#include <frame/base/export.h>
#include <frame/operation/event.h>

#include <QObject>

#include <functional>
#include <memory>

class G_ToolHandler;

// The part of the event manager that knows nothing of views.
class FRAME_EXPORT CRF_EventMgr : public QObject
{
    Q_OBJECT
public:
    explicit CRF_EventMgr(QObject* parent = nullptr);

signals:
    // Pages were added, removed or moved.
    void PageStructChanged(IG_Document* document);
};

// The signals that panes connect to. Listeners connect EventFired directly: the event is deleted after delivery. Its
// constructor registers the metatypes of the signals' arguments that this room knows; views and tools register theirs.
class FRAME_EXPORT G_EventMgr : public CRF_EventMgr
{
    Q_OBJECT
public:
    explicit G_EventMgr(QObject* parent = nullptr);
    // Delivers the event through EventFired and deletes it: at once on the main thread, posted in order from another.
    // A null event is ignored. An event of type 111 is followed by AnnotModify when a source of the current view is
    // set.
    void Deliver(G_Event* event);
    // Events of this view that are still posted will be dropped.
    void ForgetView(G_DocView* view);
    // A view that lives: events of views that are not known are dropped.
    void KnowView(G_DocView* view);
    // Asked, on the main thread, for the view that AnnotModify names.
    void SetCurrentViewSource(std::function<G_DocView*()> source);

signals:
    // Emitted once, at the end of a jump, paging or scroll that changed the current page, with the visible rectangle
    // already new; once after a document opened; never for pages passed on the way.
    void PageChange(G_DocView* view);
    // Another screen of the same document became active.
    void ActivedScreenChanged(G_DocView* view);
    void EventFired(G_Event* event); // deleted when the last listener has returned
    // The current tab changed; null when none is left.
    void SwitchDocView(G_DocView* view);
    // Annotations of the document changed; `view` is the current one.
    void AnnotModify(G_DocView* view, IG_Document* document);
    void AnnotCreate(IG_Annot* annot, IG_Document* document); // by one of the host's tools
    void AnnotSelected(IG_Annot* annot, IG_Document* document, bool selected);
    void ToolHandlerChange(G_ToolHandler* handler); // another tool became the current one

private slots:
    void DeliverNext();

private:
    struct Private;
    void Emit(G_Event* event);
    std::shared_ptr<Private> d;
};
