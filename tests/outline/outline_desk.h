#pragma once

#include "outline_operations_set.h"

#include <outline/outline_page.h>
#include <tests/support/desk.h>

#include <QPointer>
#include <QStringList>

class CTreeWidget;
class NaviOutlineWidget;
class QTextEdit;
class QTreeWidgetItem;

// An open document with its view and its outline pane.
struct OutlineTab : DeskTabBase
{
    QPointer<NaviOutlineWidget> pane; // owned by the desk

    void Take(QWidget* widget);
    QWidget* Widget() const;
    CTreeWidget* Tree() const;
    QString Dump() const;      // the document's outline with all it holds
    QString Names() const;     // its titles alone, one a line, indented by two blanks a level
    QString Rows() const;      // the same of what the tree shows
    QTextEdit* Editor() const; // the open row editor, or null
    // Rows from the top level down; null when there is no such node or item.
    G_TreeNode* Node(const QList<int>& rows) const;
    QTreeWidgetItem* Item(const QList<int>& rows) const;
    // The item whose text in the first column this is; null when there is none.
    QTreeWidgetItem* Item(const QString& title) const;
    void MakeCurrent(const QString& title) const; // and the only selected one
    // In this order; the first is the current one.
    void Select(const QStringList& titles) const;
};

using OutlineDesk = Desk<OutlineOperations, NaviPageOutline, OutlineTab>;

// Three pages and this outline, with a destination on the first page where no other is said:
//     A
//       A1
//         A1a
//       A2 closed
//     B without a destination
//     C on page 2
//       C1
QString SmallOutline();
