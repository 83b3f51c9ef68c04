#pragma once

#include <QList>
#include <QPoint>
#include <Qt>

class QMimeData;
class QWidget;

// Drags by hand: the real event classes, sent to a viewport in the order in which a drag sends them. No QDrag runs, so
// QDropEvent::source() is null: what decides by its source needs a seam of its own.
namespace Drag {

// What the receiver answered.
struct Outcome
{
    bool wasEntered = false; // the enter event was accepted
    bool wasMoved = false;   // the last move event was accepted
    bool wasDropped = false; // the drop event was accepted
    Qt::DropAction action = Qt::IgnoreAction;
};

// Enter at the first position, a move to each, a drop at the last. Positions are the viewport's. As a real drag does,
// nothing follows a refused enter, and a drop over a refused place becomes a leave.
Outcome DropAt(QWidget* viewport, const QMimeData* data, const QList<QPoint>& path,
               Qt::DropActions actions = Qt::MoveAction | Qt::CopyAction, Qt::DropAction preferred = Qt::MoveAction);
// The same without a drop: ends by a leave.
Outcome HoverAt(QWidget* viewport, const QMimeData* data, const QList<QPoint>& path,
                Qt::DropActions actions = Qt::MoveAction | Qt::CopyAction, Qt::DropAction preferred = Qt::MoveAction);
// Presses, moves beyond the drag distance and releases the left mouse button.
void MouseDrag(QWidget* viewport, const QPoint& from, const QPoint& to, Qt::KeyboardModifiers modifiers = {});

} // namespace Drag
