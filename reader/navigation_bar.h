#pragma once

#include <QList>
#include <QWidget>

class QToolButton;
class QVBoxLayout;

namespace Core {
class G_NavigationPage;
}

// The column of buttons beside the pane, one a navigation page in order of position. Its buttons never take the focus:
// an editor that is open in a pane would commit.
class NavigationBar : public QWidget
{
    Q_OBJECT
public:
    explicit NavigationBar(QWidget* parent);
    // The shortcut of each page is the one that its tooltip tells.
    void SetPages(const QList<Core::G_NavigationPage*>& pages);
    Core::G_NavigationPage* PageOf(const QString& paneId) const; // null when unknown
    QList<QString> PaneIds() const;                              // from top to bottom
    void SetChecked(const QString& paneId);                      // empty: none

signals:
    void PageToggled(const QString& paneId, bool opens);

private:
    struct Row
    {
        Core::G_NavigationPage* page; // not owned
        QToolButton* button;          // owned by this
    };
    QVBoxLayout* column; // owned by this
    QList<Row> rows;
};
