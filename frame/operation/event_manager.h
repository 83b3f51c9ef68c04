#pragma once

#include <frame/base/export.h>
#include <frame/operation/event.h>

#include <QObject>

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

// The signals that panes connect to. Its constructor registers the metatypes that queued connections carry.
class FRAME_EXPORT G_EventMgr : public CRF_EventMgr
{
    Q_OBJECT
public:
    explicit G_EventMgr(QObject* parent = nullptr);
    // Delivers the event through EventFired and deletes it: at once on the main thread, posted in order from another.
    // A null event is ignored.
    void Deliver(G_Event* event);
    // Events of this view that are still posted will be dropped.
    void ForgetView(G_DocView* view);
    // A view that lives: events of views that are not known are dropped.
    void KnowView(G_DocView* view);

signals:
    // Emitted once, at the end of a jump, paging or scroll that changed the current page, with the visible rectangle
    // already new; once after a document opened; never for pages passed on the way.
    void PageChange(G_DocView* view);
    // Another screen of the same document became active.
    void ActivedScreenChanged(G_DocView* view);
    void EventFired(G_Event* event);
    // The current tab changed; null when none is left.
    void SwitchDocView(G_DocView* view);
    void AnnotModify(G_DocView* view, IG_Document* document);
    void AnnotCreate(IG_Annot* annot, IG_Document* document);
    void AnnotSelected(IG_Annot* annot, IG_Document* document, bool selected);
    void ToolHandlerChange(G_ToolHandler* handler);

private:
    struct Private;
    std::shared_ptr<Private> d;
};
