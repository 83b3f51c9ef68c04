#pragma once

#include <frame/operation/event.h>

#include <QString>

class IG_Document;

// The base of the type-1000 events, which panes send each other about new nodes: it names an operation and a document
// by its key, because the event may outlive the document. Each pane has a class of its own, which tells its events from
// those of the others.
class NodeEvent : public G_Event
{
public:
    NodeEvent(const QString& operationName, const QString& documentKey, unsigned short type)
        : G_Event(type)
        , operationName(operationName)
        , documentKey(documentKey)
    {
    }
    const QString& OperationName() const { return operationName; }
    const QString& DocumentKey() const { return documentKey; }
    // It is of the type, of this operation (compared exactly) and of this document. False for a null document.
    bool Concerns(const char* operation, IG_Document* document) const;

private:
    QString operationName;
    QString documentKey;
};
