#include "event_probe.h"

#include <frame/operation/event_manager.h>

EventProbe::EventProbe(G_EventMgr* manager)
{
    // Direct: the event is gone when delivery ends.
    connect(manager, SIGNAL(EventFired(G_Event*)), this, SLOT(Remember(G_Event*)), Qt::DirectConnection);
}

void EventProbe::Clear()
{
    types.clear();
    statusTexts.clear();
}

void EventProbe::Remember(G_Event* event)
{
    types.append(event->TypeEnum());
    const auto* text = dynamic_cast<G_StringEvent*>(event);
    if (text && event->TypeEnum() == EventType::StatusText)
        statusTexts.append(text->Text());
}
