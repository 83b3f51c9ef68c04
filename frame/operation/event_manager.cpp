#include "event_manager.h"

#include <frame/base/log.h>
#include <frame/document/ig_document.h>

#include <QHash>
#include <QMutex>
#include <QPointer>
#include <QThread>

CRF_EventMgr::CRF_EventMgr(QObject* parent)
    : QObject(parent)
{
}

struct G_EventMgr::Private
{
    mutable QMutex mutex;                   // guards what stands below: a worker reads it when it posts
    QHash<G_DocView*, quint64> viewSerials; // the number tells a view from a later one at the same address
    quint64 lastSerial = 0;

    std::function<G_DocView*()> currentView; // main thread only

    // 0 for a view that is not known.
    quint64 SerialOf(G_DocView* view) const
    {
        const QMutexLocker lock(&mutex);
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
    const QMutexLocker lock(&d->mutex);
    if (view && !d->viewSerials.contains(view))
        d->viewSerials.insert(view, ++d->lastSerial);
}

void G_EventMgr::ForgetView(G_DocView* view)
{
    const QMutexLocker lock(&d->mutex);
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
    std::shared_ptr<G_Event> owned(event); // a posted event that is never delivered is freed with its post
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
    // Moved all the way, so that the event is deleted on the thread that delivers it.
    auto deliver = [this, owned = std::move(owned), view, serial] {
        if (!view || d->SerialOf(view) == serial)
            Emit(owned.get());
    };
    QMetaObject::invokeMethod(this, std::move(deliver), Qt::QueuedConnection);
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
