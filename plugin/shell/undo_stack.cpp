#include "undo_stack.h"

#include <frame/view/doc_view.h>

#include <QUndoStack>

QUndoStack* EnsureUndoStack(G_DocView* view)
{
    if (!view)
        return nullptr;
    if (!view->UndoStack())
        view->CreateUndoStack();
    return view->UndoStack();
}

bool ConnectUndoStack(G_DocView* view, QObject* receiver, const char* slot)
{
    QUndoStack* stack = EnsureUndoStack(view);
    return stack && QObject::connect(stack, SIGNAL(indexChanged(int)), receiver, slot);
}
