#pragma once

#include <QMarginsF>
#include <QPointer>
#include <QTextEdit>
#include <QTreeWidget>

// The editor that a tree's delegate opens on a row: Enter, with any modifiers, ends the edit, and the tree tells so by
// itemChanged even when the text is the same. Its plain text, without bars and wrapped anywhere, can be made to stand
// where the row's own stands. Use one of the two classes below.
class RowTextEdit : public QTextEdit
{
    Q_OBJECT
public:
    // Shows the text, selected. `around` is the room that the row leaves about it, in pixels, the frame included; the
    // distance is added between its lines.
    void Show(const QString& text, const QMarginsF& around, qreal lineDistance);
    // As high as its row: a text edit's own size would stretch the row to a page.
    QSize sizeHint() const override { return QSize(0, 0); }
    QSize minimumSizeHint() const override { return QSize(0, 0); }

protected:
    RowTextEdit(QWidget* parent, QTreeWidget* tree, bool cancelsPendingOnFocusOut);
    bool event(QEvent* event) override;

private:
    void EndEdit();
    void ClearPending();

public:
    QPointer<QTreeWidget> treeWidget; // not owned; the tree of the rows

private:
    bool cancelsPendingOnFocusOut;
};

// A plain row editor: losing the focus changes nothing about a pending request.
class EnterMonitorTextEdit : public RowTextEdit
{
    Q_OBJECT
public:
    EnterMonitorTextEdit(QWidget* parent, QTreeWidget* treeWidget);
};

// The bookmark list's editor: losing the focus cancels the pending rename of a new bookmark.
class BookmarkEnterMonitorTextEdit : public RowTextEdit
{
    Q_OBJECT
public:
    BookmarkEnterMonitorTextEdit(QWidget* parent, QTreeWidget* treeWidget);
};
