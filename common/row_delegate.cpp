#include "row_delegate.h"

#include <QKeyEvent>
#include <QPointer>
#include <QWidget>

bool RowDelegate::eventFilter(QObject* editor, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
            const QPointer<QWidget> edit(qobject_cast<QWidget*>(editor)); // a commit may fill the tree anew
            emit commitData(edit);
            if (edit)
                emit closeEditor(edit, NoHint);
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(editor, event);
}
