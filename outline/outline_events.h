#pragma once

#include <frame/operation/event.h>

#include <QString>

// Type 1000: asks the outline pane of the document with this key to perform the operation of this name, which is
// "d_outline_add". Told apart from other panes' events of the type by its class.
class G_OutlineAddEvent : public G_Event
{
public:
    G_OutlineAddEvent(const QString& operationName, const QString& documentKey, unsigned short type)
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
