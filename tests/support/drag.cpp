#include "drag.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QWidget>
#include <QtTest>

namespace Drag {

namespace {

// Enter and moves; true when the last place takes a drop.
bool Approach(QWidget* viewport, const QMimeData* data, const QList<QPoint>& path, Qt::DropActions actions,
              Qt::DropAction preferred, Outcome* outcome)
{
    QDragEnterEvent enter(path.first(), actions, data, Qt::LeftButton, Qt::NoModifier);
    enter.setDropAction(preferred);
    enter.ignore();
    QApplication::sendEvent(viewport, &enter);
    outcome->wasEntered = enter.isAccepted();
    if (!outcome->wasEntered)
        return false;
    for (const QPoint& place : path) {
        QDragMoveEvent move(place, actions, data, Qt::LeftButton, Qt::NoModifier);
        move.setDropAction(preferred);
        move.ignore();
        QApplication::sendEvent(viewport, &move);
        outcome->wasMoved = move.isAccepted();
        outcome->action = move.isAccepted() ? move.dropAction() : Qt::IgnoreAction;
    }
    return outcome->wasMoved;
}

void Leave(QWidget* viewport)
{
    QDragLeaveEvent leave;
    QApplication::sendEvent(viewport, &leave);
}

} // namespace

Outcome DropAt(QWidget* viewport, const QMimeData* data, const QList<QPoint>& path, Qt::DropActions actions,
               Qt::DropAction preferred)
{
    Outcome outcome;
    if (path.isEmpty())
        return outcome;
    if (!Approach(viewport, data, path, actions, preferred, &outcome)) {
        if (outcome.wasEntered)
            Leave(viewport);
        return outcome;
    }
    QDropEvent drop(path.last(), actions, data, Qt::LeftButton, Qt::NoModifier);
    drop.setDropAction(outcome.action);
    drop.ignore();
    QApplication::sendEvent(viewport, &drop);
    outcome.wasDropped = drop.isAccepted();
    outcome.action = drop.isAccepted() ? drop.dropAction() : Qt::IgnoreAction;
    return outcome;
}

Outcome HoverAt(QWidget* viewport, const QMimeData* data, const QList<QPoint>& path, Qt::DropActions actions,
                Qt::DropAction preferred)
{
    Outcome outcome;
    if (path.isEmpty())
        return outcome;
    Approach(viewport, data, path, actions, preferred, &outcome);
    if (outcome.wasEntered)
        Leave(viewport);
    return outcome;
}

void MouseDrag(QWidget* viewport, const QPoint& from, const QPoint& to, Qt::KeyboardModifiers modifiers)
{
    QTest::mousePress(viewport, Qt::LeftButton, modifiers, from);
    // QTest's own move carries no buttons, and a drag is a move with the button held.
    const QPoint middle = (from + to) / 2;
    for (const QPoint& place : {middle, to}) {
        QMouseEvent move(QEvent::MouseMove, place, viewport->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                         modifiers);
        QApplication::sendEvent(viewport, &move);
    }
    QTest::mouseRelease(viewport, Qt::LeftButton, modifiers, to);
}

} // namespace Drag
