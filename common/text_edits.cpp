#include "text_edits.h"

#include "reorder_tree.h"

#include <QKeyEvent>
#include <QPersistentModelIndex>
#include <QTextBlockFormat>
#include <QTextFrame>

RowTextEdit::RowTextEdit(QWidget* parent, QTreeWidget* tree, bool cancelsPendingOnFocusOut)
    : QTextEdit(parent)
    , treeWidget(tree)
    , cancelsPendingOnFocusOut(cancelsPendingOnFocusOut)
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrapMode(QTextOption::WrapAnywhere);
    setAcceptRichText(false); // a name has no looks, whatever is pasted
    document()->setDocumentMargin(0);
}

void RowTextEdit::Show(const QString& text, const QMarginsF& around, qreal lineDistance)
{
    setPlainText(text);
    QTextFrameFormat frame = document()->rootFrame()->frameFormat();
    frame.setLeftMargin(around.left() - frameWidth());
    frame.setTopMargin(qMax<qreal>(0, around.top() - frameWidth()));
    frame.setRightMargin(qMax<qreal>(0, around.right() - frameWidth()));
    document()->rootFrame()->setFrameFormat(frame);
    selectAll();
    QTextBlockFormat lines;
    lines.setLineHeight(lineDistance, QTextBlockFormat::LineDistanceHeight);
    textCursor().mergeBlockFormat(lines);
    document()->clearUndoRedoStacks(); // Ctrl+Z takes back what was typed, not the looks
}

bool RowTextEdit::event(QEvent* event)
{
    // What ending an edit sets off may show a box and delete this editor in the box's event loop.
    const QPointer<RowTextEdit> self(this);
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter)
            EndEdit();
    } else if (event->type() == QEvent::FocusOut && cancelsPendingOnFocusOut) {
        ClearPending();
    }
    return self ? QTextEdit::event(event) : true;
}

void RowTextEdit::EndEdit()
{
    const QPointer<QTreeWidget> tree(treeWidget);
    if (!tree)
        return;
    QTreeWidgetItem* item = tree->currentItem();
    const QPersistentModelIndex row(tree->currentIndex()); // tells whether the item still lives
    if (item) {
        // A change of the current item commits and closes the editor. The tree is mute meanwhile, so that what listens
        // to the selection stays quiet; the end of the edit is told below, also when the text is the same.
        tree->blockSignals(true);
        tree->setCurrentItem(item->parent());
        if (tree && row.isValid())
            tree->setCurrentItem(item);
        if (tree)
            tree->blockSignals(false);
    }
    if (auto* reorderTree = qobject_cast<ReorderTree*>(tree.data()))
        reorderTree->ClearPending();
    // Whoever listens may rebuild the tree: the item is not touched after this.
    if (tree && item && row.isValid())
        emit tree->itemChanged(item, 0);
}

void RowTextEdit::ClearPending()
{
    if (auto* reorderTree = qobject_cast<ReorderTree*>(treeWidget.data()))
        reorderTree->ClearPending();
}

EnterMonitorTextEdit::EnterMonitorTextEdit(QWidget* parent, QTreeWidget* treeWidget)
    : RowTextEdit(parent, treeWidget, false)
{
}

BookmarkEnterMonitorTextEdit::BookmarkEnterMonitorTextEdit(QWidget* parent, QTreeWidget* treeWidget)
    : RowTextEdit(parent, treeWidget, true)
{
}
