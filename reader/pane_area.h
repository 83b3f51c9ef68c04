#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QStackedWidget;

namespace Core {
class G_NavigationPage;
}

// Where the chosen pane of the current document stands: a title bar with the pane's own buttons, and the pane. Holds
// the panes of all documents; the pane maker deletes them.
class PaneArea : public QWidget
{
    Q_OBJECT
public:
    explicit PaneArea(QWidget* parent);
    // Takes a new pane in, hidden.
    void Adopt(QWidget* pane);
    // Shows the page's title and the pane; a null pane shows an empty area, until it is made.
    void ShowPane(Core::G_NavigationPage* page, QWidget* pane);
    QWidget* CurrentPane() const; // null when none is shown

signals:
    void CloseRequested();

private:
    void PlaceTitleButtons(const QList<QPushButton*>& buttons);

    QLabel* title;         // owned by this
    QHBoxLayout* titleRow; // owned by this
    QStackedWidget* stack; // owned by this
    QWidget* nothing;      // owned by the stack
};
