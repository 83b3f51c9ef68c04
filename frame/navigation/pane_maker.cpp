#include "pane_maker.h"

#include "navigation_page.h"

#include <frame/base/log.h>
#include <frame/document/ig_document.h>
#include <frame/operation/event_manager.h>
#include <frame/operation/interceptor.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>

#include <QTimer>
#include <QWidget>

#include <algorithm>

namespace Core {

G_PaneMaker::G_PaneMaker(G_UIContext* context, QObject* parent)
    : QObject(parent)
    , context(context)
{
    // A tab whose panes were interrupted by a change of tabs goes on when it is current again.
    connect(context->EventMgr(), &G_EventMgr::SwitchDocView, this, [this] { Schedule(); });
}

void G_PaneMaker::ViewOpened(G_DocView* view)
{
    connect(view, &G_DocView::FirstPagePainted, this, [this, view] {
        due.append(QPointer<QObject>(view));
        Schedule();
    });
}

void G_PaneMaker::Schedule()
{
    if (isScheduled)
        return;
    isScheduled = true;
    QTimer::singleShot(0, this, [this] {
        isScheduled = false;
        MakeNext();
    });
}

void G_PaneMaker::MakeNext()
{
    due.removeAll(QPointer<QObject>());
    G_DocView* view = context->CurrentDocView();
    if (!view || !due.contains(QPointer<QObject>(view)))
        return;
    IG_Document* document = view->GDocument();
    const QList<G_NavigationPage*> missing = Missing(document);
    if (missing.isEmpty()) {
        due.removeAll(QPointer<QObject>(view));
        return;
    }
    Make(missing.first(), document);
    Schedule();
}

void G_PaneMaker::MakeAll(IG_Document* document)
{
    if (!IsCurrent(document))
        return;
    const QList<G_NavigationPage*> missing = Missing(document);
    for (G_NavigationPage* page : missing)
        Make(page, document);
}

QWidget* G_PaneMaker::PaneFor(G_NavigationPage* page, IG_Document* document)
{
    if (QWidget* pane = page->WidgetFor(document))
        return pane;
    return Make(page, document);
}

void G_PaneMaker::DocumentClosing(IG_Document* document)
{
    barren.remove(document);
    const QList<G_NavigationPage*> pages = G_NavigationPage::allNaviPages();
    for (G_NavigationPage* page : pages) {
        delete page->WidgetFor(document);
        page->ForgetDocument(document);
    }
}

QList<G_NavigationPage*> G_PaneMaker::PagesByPosition()
{
    QList<G_NavigationPage*> pages = G_NavigationPage::allNaviPages();
    std::stable_sort(pages.begin(), pages.end(), [](const G_NavigationPage* a, const G_NavigationPage* b) {
        return a->Position() < b->Position();
    });
    return pages;
}

bool G_PaneMaker::IsCurrent(IG_Document* document) const
{
    const G_DocView* view = context->CurrentDocView();
    return view && document && view->GDocument() == document;
}

QList<G_NavigationPage*> G_PaneMaker::Missing(IG_Document* document) const
{
    QList<G_NavigationPage*> missing;
    const QList<QPointer<QObject>> without = barren.value(document);
    const QList<G_NavigationPage*> pages = PagesByPosition();
    for (G_NavigationPage* page : pages) {
        if (!page->WidgetFor(document) && !making.contains(page) && !without.contains(QPointer<QObject>(page)))
            missing.append(page);
    }
    return missing;
}

QWidget* G_PaneMaker::Make(G_NavigationPage* page, IG_Document* document)
{
    // What an earlier pane set off may have made this one meanwhile.
    if (making.contains(page) || page->WidgetFor(document))
        return page->WidgetFor(document);
    if (!IsCurrent(document)) {
        // A pane connects itself for life to the stack of the view that is current while it is made.
        FrameLog("frame error: pane " + page->objectName().toUtf8() + " asked for while its view is not current");
        return nullptr;
    }
    if (!page->Context())
        page->SetContext(context);
    making.append(page);
    QWidget* pane = nullptr;
    {
        const G_InterceptorScope scope(document);
        pane = page->CreateWidget(document);
    }
    making.removeOne(page);
    if (!pane) {
        barren[document].append(QPointer<QObject>(page));
        return nullptr;
    }
    page->SetWidgetFor(document, pane);
    emit PaneMade(page, document, pane);
    return pane;
}

} // namespace Core
