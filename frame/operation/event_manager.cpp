#include "event_manager.h"

#include <frame/base/log.h>
#include <frame/document/ig_document.h>

#include <QHash>
#include <QPointer>
#include <QThread>

#include <deque>
#include <memory>
#include <mutex>

CRF_EventMgr::CRF_EventMgr(QObject* parent)
    : QObject(parent)
{
}

struct G_EventMgr::Private
{
    mutable std::mutex mutex;               // guards what stands below: a worker reads it when it posts
    QHash<G_DocView*, quint64> viewSerials; // the number tells a view from a later one at the same address
    quint64 lastSerial = 0;
    struct Post
    {
        std::unique_ptr<G_Event> event;
        G_DocView* view = nullptr; // not owned; null when the event speaks of none
        quint64 serial = 0;
    };
    std::deque<Post> posts; // from workers, not delivered yet

    std::function<G_DocView*()> currentView; // main thread only

    // 0 for a view that is not known.
    quint64 SerialOf(G_DocView* view) const
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return viewSerials.value(view);
    }
};

G_EventMgr::G_EventMgr(QObject* parent)
    : CRF_EventMgr(parent)
    , d(std::make_shared<Private>())
{
    qRegisterMetaType<G_Event*>("G_Event*");
    qRegisterMetaType<IG_Document*>("IG_Document*");
}

void G_EventMgr::KnowView(G_DocView* view)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    if (view && !d->viewSerials.contains(view))
        d->viewSerials.insert(view, ++d->lastSerial);
}

void G_EventMgr::ForgetView(G_DocView* view)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->viewSerials.remove(view);
}

void G_EventMgr::SetCurrentViewSource(std::function<G_DocView*()> source)
{
    d->currentView = std::move(source);
}

void G_EventMgr::Deliver(G_Event* event)
{
    if (!event)
        return;
    std::unique_ptr<G_Event> owned(event);
    G_DocView* const view = event->View();
    const quint64 serial = view ? d->SerialOf(view) : 0;
    if (view && serial == 0) {
        FrameLog("event " + QByteArray::number(event->TypeEnum()) + " of an unknown view dropped G_EventMgr Deliver");
        return;
    }
    if (QThread::currentThread() == thread()) {
        Emit(event);
        return;
    }
    // One wake-up for each event keeps their place among whatever else the worker posts. The event itself crosses over
    // in a list of our own, so that it is freed with this object when no event loop turns any more.
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->posts.push_back({std::move(owned), view, serial});
    QMetaObject::invokeMethod(this, "DeliverNext", Qt::QueuedConnection);
}

void G_EventMgr::DeliverNext()
{
    Private::Post post;
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        if (d->posts.empty())
            return;
        post = std::move(d->posts.front());
        d->posts.pop_front();
    }
    if (!post.view || d->SerialOf(post.view) == post.serial)
        Emit(post.event.get());
}

void G_EventMgr::Emit(G_Event* event)
{
    const std::shared_ptr<Private> kept = d; // a listener may destroy this object
    const QPointer<G_EventMgr> self(this);
    emit EventFired(event);
    const auto* annotation = dynamic_cast<G_AnnotationEvent*>(event);
    if (self && annotation && event->TypeEnum() == EventType::AnnotChanged && kept->currentView)
        emit AnnotModify(kept->currentView(), annotation->Document());
}
