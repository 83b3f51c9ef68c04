#include "row_delegate.h"

#include "text_rules.h"

#include <QKeyEvent>
#include <QPointer>
#include <QWidget>

namespace {

constexpr int mostTipCharacters = 1000; // more would cover the screen

} // namespace

QString RowDelegate::TipMarkup(const QString& text)
{
    const bool isLong = text.size() > mostTipCharacters;
    return (isLong ? CutText(text, mostTipCharacters) + QChar(0x2026) : text).toHtmlEscaped();
}

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
