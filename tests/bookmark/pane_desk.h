#pragma once

#include "bookmark_operations_set.h"

#include <bookmark/bookmark_page.h>
#include <tests/support/desk.h>
#include <tests/support/drag.h>

#include <QPointer>
#include <QStringList>

class CBookmarkTreeWidget;
class NaviBookmarkWidget;
class QTextEdit;

// An open document with its view and its bookmark pane.
struct DeskTab : DeskTabBase
{
    QPointer<NaviBookmarkWidget> pane; // owned by the desk

    void Take(QWidget* widget);
    QWidget* Widget() const;
    CBookmarkTreeWidget* Tree() const;
    QStringList Rows() const;       // texts as the list shows them
    QStringList Names() const;      // of the document's bookmarks, as stored
    QString Dump() const;           // the document's bookmarks with all they hold
    QTextEdit* Editor() const;      // the open row editor, or null
    QPoint RowPoint(int row) const; // the middle of a row, viewport coordinates
    QPoint LowPoint(int row) const; // below the middle: never in the zone at the top of the view
    void Click(int row) const;
    void DoubleClick(int row) const;
    // Presses a row and drags it along the path with real mouse and drag events; the pointer is let go at its end.
    Drag::Outcome DragRow(int row, const QList<QPoint>& path) const;
    void Select(const QList<int>& rows) const;
    QList<int> SelectedRows() const;
    // Lets the page change that follows the opening or a click be swallowed.
    void SwallowPageChange() const;
};

using PaneDesk = Desk<BookmarkOperations, NaviBookmark, DeskTab>;

// Three pages and `count` bookmarks "A", "B", ... on the first one, 10 mm apart.
QString DocumentWithBookmarks(int count);
