#pragma once

#include <frame/base/export.h>
#include <frame/navigation/id.h>

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

class G_UIContext;
class IG_Document;
class QPushButton;
class QWidget;

namespace Core {

// One page of the navigation bar: what it is called and how to make its pane for a document. Enrols itself in
// allNaviPages when constructed and leaves when destroyed. Lives as long as its plugin; panes come and go with
// documents. Main thread only.
class FRAME_EXPORT G_NavigationPage : public QObject
{
    Q_OBJECT
public:
    explicit G_NavigationPage(QObject* parent = nullptr);
    ~G_NavigationPage() override;

    // Makes the pane for a document. The frame calls it once for each document, while that document's view is the
    // current one, and owns what comes back. A null document gives an empty pane.
    virtual QWidget* CreateWidget(IG_Document* document) = 0;
    // A bar of actions for the page; the base has none.
    virtual QWidget* CreateActionBar();

    // Places buttons in the pane's title bar; called from CreateWidget. Not owned.
    void AddTitleButtonList(QWidget* pane, const QList<QPushButton*>& buttons);
    QList<QPushButton*> TitleButtons(QWidget* pane) const;

    // All living pages in order of creation; the display order is that of the positions.
    static QList<G_NavigationPage*> allNaviPages();

    // The frame's record of the pane of each document; null when none was made or it is gone.
    QWidget* WidgetFor(IG_Document* document) const;
    void SetWidgetFor(IG_Document* document, QWidget* pane); // not owned
    void ForgetDocument(IG_Document* document);              // deletes nothing

    // What the bar shows, translated, and the path of the picture; pages stand in the order of their positions.
    QString Title() const { return title; }
    QString Tooltip() const { return tooltip; }
    QString IconPath() const { return iconPath; }
    Id PaneId() const { return id; }
    int Position() const { return position; }
    G_UIContext* Context() const { return context; }
    void SetContext(G_UIContext* newContext) { context = newContext; }

protected:
    QString title;
    QString tooltip;
    QString iconPath;
    Id id;
    int position = 0;
    G_UIContext* context = nullptr; // not owned; set by the frame before the first CreateWidget

private:
    QHash<IG_Document*, QPointer<QWidget>> panes;
    QHash<QWidget*, QList<QPushButton*>> titleButtons; // not owned
};

} // namespace Core
