#pragma once

class G_DocView;
class QObject;
class QUndoStack;

// The view's undo stack, made when it is absent. Null for a null view.
QUndoStack* EnsureUndoStack(G_DocView* view);
// Makes the stack when absent and connects its indexChanged(int) to a slot (given by SLOT()). False for a null view.
bool ConnectUndoStack(G_DocView* view, QObject* receiver, const char* slot);
