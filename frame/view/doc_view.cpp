#include "doc_view.h"

#include "doc_view_private.h"
#include "live_views.h"

#include <frame/document/ig_document.h>
#include <frame/operation/event_manager.h>

#include <QUndoStack>

namespace {
constexpr int kSelectSliceMs = 10; // what reading text takes of a turn while everything is being selected
constexpr int kRoomLaterMs = 20;   // between looks whether the budget has room
constexpr int kSizesLaterMs = 300; // sizes wait so long for the first page to be painted
} // namespace

G_DocView::Private::Private(G_DocView* view, G_UIContext* context, IG_Document* document, QWidget* parentWidget)
    : q(view)
    , context(context)
    , document(document)
{
    scene.setItemIndexMethod(QGraphicsScene::NoIndex); // there are only a handful of items at a time
    widget = new G_PageWidget(&scene, parentWidget);
    announceTimer.setSingleShot(true);
    announceTimer.setInterval(0);
    pictureTimer.setSingleShot(true);
    pictureTimer.setInterval(0);
    roomTimer.setSingleShot(true);
    roomTimer.setInterval(kRoomLaterMs);
    selectTimer.setSingleShot(true);
    selectTimer.setInterval(0);
    sizeTimer.setSingleShot(true);
    sizeTimer.setInterval(kSizesLaterMs);
    if (IG_PageRenderer* renderer = document->Renderer()) {
        jobs = std::make_unique<RenderJobs>(
            renderer, [this](const RenderWish& wish, const RenderOutcome& outcome) { PictureMade(wish, outcome); });
    }
    if (IG_TextSource* source = document->TextSource())
        textReader = std::make_unique<G_TextReader>(source, [this](int page) { TextRead(page); });
}

G_DocView::G_DocView(G_UIContext* context, IG_Document* document, QWidget* parentWidget)
    : d(new Private(this, context, document, parentWidget))
{
    EnrolLiveView(this);
    d->widget->Attach(this);
    connect(&d->announceTimer, &QTimer::timeout, this, [this] { d->Announce(); });
    connect(&d->pictureTimer, &QTimer::timeout, this,
            [this] { d->AskForPictures(d->widget && d->widget->isVisible()); });
    connect(&d->roomTimer, &QTimer::timeout, this, [this] { d->AskForPicturesLater(); });
    connect(&d->selectTimer, &QTimer::timeout, this, [this] { d->SelectMore(kSelectSliceMs); });
    connect(&d->copyWatcher, &QFutureWatcherBase::finished, this, [this] {
        if (!d->copyWatcher.isCanceled()) // something else was copied meanwhile
            d->CopyText(d->copyWatcher.result());
    });
    connect(&d->sizeTimer, &QTimer::timeout, this, [this] {
        if (d->sizeReader)
            d->sizeReader->Start();
    });
    d->ReadPages();
    d->Arrange();
    d->ScrollTo(QPointF(0, 0), QPoint(0, 0));
    d->current = d->layout.Count() > 0 ? 0 : -1;
    if (context) {
        context->ViewCreated(this);
        // Ahead of the panes, which ask the view about its pages.
        connect(context->EventMgr(), &CRF_EventMgr::PageStructChanged, this, [this](IG_Document* changed) {
            if (changed == d->document)
                d->PagesChanged();
        });
    }
    d->tool = ToolHandlerByName("t_handtool");
    if (d->tool)
        d->tool->OnActivate();
    d->AnnounceLater(); // listeners hear of the page once after opening
}

G_DocView::~G_DocView()
{
    // A stack tells its listeners that it empties, so it goes while the view is still whole.
    delete d->stack;
    d->stack = nullptr;
    if (d->context)
        d->context->ViewDestroyed(this);
    d->announceTimer.stop();
    d->pictureTimer.stop();
    d->roomTimer.stop();
    d->selectTimer.stop();
    d->sizeTimer.stop();
    d->jobs.reset(); // waits: the document may die after this
    d->sizeReader.reset();
    d->textReader.reset();
    d->DestroyTools();
    LeaveLiveViews(this);
    d->renders.clear();
    for (const int page : qAsConst(d->handedOut))
        d->document->ReleasePage(page, 0);
    if (d->widget) {
        d->widget->Detach();
        if (!d->widget->parentWidget())
            delete d->widget.data();
    }
    qDeleteAll(d->items);
}

IG_Document* G_DocView::GDocument() const
{
    return d->document;
}

G_UIContext* G_DocView::UIContext() const
{
    return d->context;
}

IG_Page* G_DocView::Page(int pageIndex) const
{
    IG_Page* page = d->layout.IsValid(pageIndex) ? d->document->GetPage(pageIndex) : nullptr;
    if (page)
        d->handedOut.insert(pageIndex);
    return page;
}

int G_DocView::CurrentPageIndex() const
{
    return d->current;
}

bool G_DocView::IsReadOnly() const
{
    return d->document->IsReadOnly();
}

bool G_DocView::IsSignProtected() const
{
    return d->document->IsSignProtected();
}

bool G_DocView::IsEncrypt() const
{
    return d->document->IsEncrypted();
}

bool G_DocView::AnnotStatus() const
{
    return d->showsAnnotations;
}

void G_DocView::SetAnnotStatus(bool shown)
{
    if (d->showsAnnotations == shown)
        return;
    d->showsAnnotations = shown;
    UpdateView();
}

void G_DocView::CreateUndoStack()
{
    if (!d->stack)
        d->stack = new QUndoStack(this);
}

QUndoStack* G_DocView::UndoStack() const
{
    return d->stack;
}

QWidget* G_DocView::Widget() const
{
    return d->widget;
}

void G_DocView::UpdateView()
{
    if (d->widget)
        d->widget->viewport()->update();
}

void G_DocView::SetViewCursor(int shape)
{
    const auto wanted = static_cast<Qt::CursorShape>(shape);
    if (d->widget && d->widget->viewport()->cursor().shape() != wanted)
        d->widget->viewport()->setCursor(wanted);
}
