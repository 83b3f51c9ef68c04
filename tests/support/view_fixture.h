#pragma once

#include "scripted_context.h"

#include <frame/document/memory_document.h>
#include <frame/operation/interceptor.h>
#include <frame/view/doc_view.h>

#include <QStringList>

#include <memory>

// One more open document with its view, as a tab of the reader would be.
struct OpenTab
{
    std::unique_ptr<MemoryDocument> document;
    std::unique_ptr<G_DocView> view; // dies before the document
};

// An open document in a shown view under a scripted context: what most tests of panes, tools and operations stand on.
// Settings are kept in memory, the undo stack exists, and the page change that follows the opening has been delivered.
class ViewFixture
{
public:
    // The text form of MemoryDocument; fails the test and gives an empty document when it is malformed.
    explicit ViewFixture(const QString& documentText, const QSize& viewSize = QSize(800, 600));
    ~ViewFixture();

    ScriptedContext* Context() const { return context.get(); }
    MemoryDocument* Document() const { return tabs.front()->document.get(); }
    G_DocView* View() const { return tabs.front()->view.get(); }
    // What the mouse events of a view are sent to.
    static QWidget* Viewport(const G_DocView* view);
    // Opens another document; its view is current afterwards. Owned by the fixture.
    OpenTab* Open(const QString& documentText, const QSize& viewSize = QSize(800, 600));
    void Close(OpenTab* tab);
    void SetCurrent(G_DocView* view);

    // Makes a pane as the frame would: interceptors made inside belong to the document.
    template <typename Make>
    auto MakePane(IG_Document* document, const Make& make)
    {
        const G_InterceptorScope scope(document);
        return make();
    }

    // Runs what is queued, deferred deletes included.
    static void Settle();
    // Numbers of the events fired since the last call, in order.
    QList<int> TakeFiredEvents();

private:
    std::unique_ptr<ScriptedContext> context;
    std::vector<std::unique_ptr<OpenTab>> tabs;
    QList<int> fired;
};
