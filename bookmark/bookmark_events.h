#pragma once

#include <frame/operation/event.h>

#include <QString>

// Type 1000: a bookmark was added to the document with this key, and the pane shows it. Told apart from other panes'
// events of the type by its class and its operation name.
class G_BookmarkAddEvent : public G_Event
{
public:
    G_BookmarkAddEvent(const QString& operationName, const QString& documentKey, unsigned short type)
        : G_Event(type)
        , operationName(operationName)
        , documentKey(documentKey)
    {
    }
    const QString& OperationName() const { return operationName; }
    const QString& DocumentKey() const { return documentKey; }

private:
    QString operationName;
    QString documentKey;
};
