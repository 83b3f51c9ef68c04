#pragma once

#include <frame/base/export.h>

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>

class G_DocView;
class G_UIContext;
class IG_Document;
class QWidget;

namespace Core {
class G_NavigationPage;

// Makes the panes of documents in time: one pane a turn of the event loop once the document's first page is painted
// and while its view is the current one; all that are missing at once before an operation runs on the document; none
// for a view that is not current. Each is made under the document's interceptor scope and recorded at its page.
// Owned by the window. Main thread only.
class FRAME_EXPORT G_PaneMaker : public QObject
{
    Q_OBJECT
public:
    explicit G_PaneMaker(G_UIContext* context, QObject* parent = nullptr);
    // Watches a view that was opened; its panes are due once it has painted its first page.
    void ViewOpened(G_DocView* view);
    // Makes all panes of the document that are still missing, if its view is the current one.
    void MakeAll(IG_Document* document);
    // The pane of a page for a document, made now when missing; null when its view is not the current one.
    QWidget* PaneFor(G_NavigationPage* page, IG_Document* document);
    // Deletes all panes of a document; to be called before its view and the document go.
    void DocumentClosing(IG_Document* document);
    // Pages in order of position.
    static QList<G_NavigationPage*> PagesByPosition();

signals:
    // A pane was made; the window puts it in its place. It is hidden and has no parent yet.
    void PaneMade(Core::G_NavigationPage* page, IG_Document* document, QWidget* pane);

private:
    void MakeNext();
    QWidget* Make(G_NavigationPage* page, IG_Document* document);
    void Schedule();
    bool IsCurrent(IG_Document* document) const;
    QList<G_NavigationPage*> Missing(IG_Document* document) const;

    G_UIContext* context;         // not owned
    QList<QPointer<QObject>> due; // views whose panes may be made
    // Pages whose pane is being made: what CreateWidget sets off may ask for panes again.
    QList<G_NavigationPage*> making;
    // Documents and the pages that gave no pane for them, so that they are not asked for ever.
    QHash<IG_Document*, QList<QPointer<QObject>>> barren;
    bool isScheduled = false;
};

} // namespace Core
