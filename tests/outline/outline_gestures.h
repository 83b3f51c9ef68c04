#pragma once

#include "outline_desk.h"

#include <tests/support/drag.h>

#include <QList>
#include <QPoint>
#include <QRect>

class QMimeData;

// What a user's hand does on the outline's tree: real mouse, key and drag events. Entries are named by their titles;
// points are the viewport's.
namespace Gesture {

QRect TitleRect(const OutlineTab* tab, const QString& title); // of the title's cell
// In the title's cell, left of where a drop means "below this entry" and never in the zone at the top of the view.
QPoint AsSibling(const OutlineTab* tab, const QString& title);
// The same, right of it.
QPoint AsChild(const OutlineTab* tab, const QString& title);
QPoint PagePoint(const OutlineTab* tab, const QString& title); // the middle of the page's cell

void Click(const OutlineTab* tab, const QString& title, Qt::KeyboardModifiers modifiers = {});
void DoubleClick(const OutlineTab* tab, const QString& title);
// Opens the entry's editor by F2, types over its title and ends the edit by a key.
void Rename(const OutlineTab* tab, const QString& title, const QString& newTitle, Qt::Key endKey = Qt::Key_Return);
// Presses an entry and drags it along the path; the pointer is let go at its end. The entry is selected by the press,
// alone unless it is selected already.
Drag::Outcome DragEntry(const OutlineTab* tab, const QString& title, const QList<QPoint>& path);
// How many drags a press on an entry and a move begin.
int DragsBegun(const OutlineTab* tab, const QString& title);
// Leaves the drag hovering over the place: what is painted then is what the user sees.
void HoverDrag(const OutlineTab* tab, const QMimeData* data, const QPoint& place);
// The titles of the selected entries, from top to bottom.
QStringList Selected(const OutlineTab* tab);

} // namespace Gesture
