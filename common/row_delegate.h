#pragma once

#include <QStyledItemDelegate>

// The base of the delegates whose rows are renamed in place. Main thread only.
class RowDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    // A text for use within a rich tooltip: markup in it is shown and not followed, and a very long one is cut.
    static QString TipMarkup(const QString& text);
    // Tab and Shift+Tab end the edit where it is: going on to the next row would edit without a rename in progress.
    bool eventFilter(QObject* editor, QEvent* event) override;
};
