#include "node_event.h"

#include <frame/base/converters.h>
#include <frame/document/ig_document.h>

bool NodeEvent::Concerns(const char* operation, IG_Document* document) const
{
    return document && TypeEnum() == EventType::NodeAdded && operationName == QLatin1String(operation) &&
           documentKey == GQ_ToQStringFromUtf8(document->GetDocumentKey());
}
