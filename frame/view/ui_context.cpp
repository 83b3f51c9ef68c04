#include "ui_context.h"

#include "context_menu.h"
#include "doc_view.h"
#include "host_tools.h"
#include "message_box.h"
#include "status_note.h"

#include <frame/document/ig_document.h>
#include <frame/operation/event_manager.h>
#include <frame/operation/registry.h>

#include <QApplication>
#include <QUndoStack>
#include <QWidget>

struct G_UIContext::Private
{
    G_EventMgr* events = nullptr;       // owned by the context as its child
    G_ActionHandler* actions = nullptr; // owned by the context as its child
    std::unique_ptr<G_ContextMenu> menu;
    std::unique_ptr<G_WorkingCopies> copies;
    QList<G_DocView*> views;      // not owned
    G_DocView* current = nullptr; // not owned
    QPointer<QWidget> dialogParent;
    std::function<void(IG_Document*)> makePanes;
    int modalDepth = 0;
};

G_UIContext::G_UIContext(QObject* parent)
    : QObject(parent)
    , d(new Private)
{
    RegisterHostTools();
    // What the event manager's signals carry and what only this room knows the classes of.
    qRegisterMetaType<G_DocView*>("G_DocView*");
    qRegisterMetaType<G_ToolHandler*>("G_ToolHandler*");
    qRegisterMetaType<IG_Annot*>("IG_Annot*");
    d->events = new G_EventMgr(this);
    d->events->SetCurrentViewSource([this] { return d->current; });
    d->actions = new G_ActionHandler(this);
    d->menu = std::make_unique<G_ContextMenu>(this);
    d->copies = std::make_unique<G_WorkingCopies>(this, this);
    connect(d->events, &G_EventMgr::EventFired, this, [this](G_Event* event) { UseEvent(event); });
}

G_UIContext::~G_UIContext()
{
    d->copies.reset();
}

struct G_UIContext::BoxText
{
    const QString& title;
    const QString& text;
    int buttons;
    int defaultButton;
    const QMap<int, QString>& captions;
    const QSize& size;
};

int G_UIContext::ShowInformationBox(const QString& title, const QString& text, int buttons, int defaultButton,
                                    const QMap<int, QString>& captions, const QSize& size)
{
    return RunBox(QMessageBox::Information, {title, text, buttons, defaultButton, captions, size});
}

int G_UIContext::ShowMessageBox(const QString& title, const QString& text, int buttons, int defaultButton,
                                const QMap<int, QString>& captions, const QSize& size)
{
    return RunBox(QMessageBox::Warning, {title, text, buttons, defaultButton, captions, size});
}

int G_UIContext::ShowQuestionBox(const QString& title, const QString& text, int buttons, int defaultButton,
                                 const QMap<int, QString>& captions, const QSize& size)
{
    return RunBox(QMessageBox::Question, {title, text, buttons, defaultButton, captions, size});
}

int G_UIContext::RunBox(int icon, const BoxText& content)
{
    const G_ModalScope scope(this);
    // Its parent deletes it if the window dies while the box waits, so it must not lie on the stack.
    const QPointer<G_MessageBox> box = new G_MessageBox(static_cast<QMessageBox::Icon>(icon), content.title,
                                                        content.text, content.buttons, DialogParent());
    box->SetDefault(content.defaultButton);
    box->SetCaptions(content.captions);
    box->SetSize(content.size);
    const int pressed = box->Run();
    delete box;
    return scope.IsSameView() ? pressed : static_cast<int>(QMessageBox::Close);
}

bool G_UIContext::IsModalRunning() const
{
    return d->modalDepth > 0 || QApplication::activeModalWidget();
}

G_ModalScope::G_ModalScope(G_UIContext* context)
    : context(context)
    , view(context ? context->CurrentDocView() : nullptr)
    , hadView(view)
{
    if (context)
        ++context->d->modalDepth;
}

G_ModalScope::~G_ModalScope()
{
    if (context)
        --context->d->modalDepth;
}

bool G_ModalScope::IsSameView() const
{
    return context && hadView == !view.isNull() && context->CurrentDocView() == view;
}

G_Operation* G_UIContext::CreateOperationByName(const QByteArray& name, const QString& text)
{
    G_Operation* op = d->copies->Make(name, d->current, d->current ? d->current->GDocument() : nullptr);
    if (op && !text.isEmpty())
        op->ParseParamJson(text);
    return op;
}

bool G_UIContext::PerformOperation(const QByteArray& name, const QString& text)
{
    G_Operation* op = CreateOperationByName(name, text);
    if (!op)
        return false;
    const bool isDone = op->PerformAction();
    op->DeleteLater();
    return isDone;
}

void G_UIContext::FireEvent(G_Event* event)
{
    d->events->Deliver(event);
}

void G_UIContext::UseEvent(G_Event* event)
{
    switch (event->TypeEnum()) {
    case EventType::StatusText:
        if (const auto* status = dynamic_cast<G_StringEvent*>(event))
            ShowNote(status->Text());
        break;
    case EventType::AnnotChanged:
        if (const auto* annotation = dynamic_cast<G_AnnotationEvent*>(event))
            RepaintAnnotation(annotation->Document(), annotation->Annot());
        break;
    case EventType::ViewZoomChanged:
        if (G_DocView* view = event->View())
            emit view->ZoomChanged(view->GetZoom());
        break;
    case EventType::SubScreensChanged:
        for (G_DocView* view : qAsConst(d->views))
            view->UpdateView();
        break;
    default:
        break;
    }
}

void G_UIContext::RepaintAnnotation(IG_Document* document, IG_Annot* annot)
{
    IG_Page* page = annot ? annot->GetOwnerPage() : nullptr;
    if (!page || page->GetIndex() < 0)
        return;
    for (G_DocView* view : qAsConst(d->views)) {
        if (view->GDocument() != document)
            continue;
        view->ClearViewCache(QString::number(page->GetIndex()));
        view->UpdateView();
    }
}

void G_UIContext::ShowNote(const QString& text)
{
    QWidget* host = d->current ? d->current->Widget() : d->dialogParent.data();
    if (G_StatusNote* note = G_StatusNote::For(host))
        note->Show(text);
}

G_DocView* G_UIContext::CurrentDocView() const
{
    return d->current;
}

G_EventMgr* G_UIContext::EventMgr() const
{
    return d->events;
}

G_ActionHandler* G_UIContext::ActionHandler() const
{
    return d->actions;
}

G_ContextMenu* G_UIContext::ContextMenu() const
{
    return d->menu.get();
}

void G_UIContext::SetContextMenu(std::unique_ptr<G_ContextMenu> menu)
{
    d->menu = std::move(menu);
}

G_ToolHandler* G_UIContext::FindHandlerByName(const QByteArray& name) const
{
    return d->current ? d->current->ToolHandlerByName(name.constData()) : G_ToolRegistry::Instance().Find(name);
}

bool G_UIContext::IsLarkmerePlugin() const
{
    return false;
}

void G_UIContext::SetCurrentDocView(G_DocView* view)
{
    if (d->current == view)
        return;
    d->current = view;
    emit d->events->SwitchDocView(view);
}

QList<G_DocView*> G_UIContext::DocViews() const
{
    return d->views;
}

QWidget* G_UIContext::DialogParent() const
{
    return d->dialogParent;
}

void G_UIContext::SetDialogParent(QWidget* widget)
{
    d->dialogParent = widget;
}

void G_UIContext::SetPaneMaker(std::function<void(IG_Document*)> makePanes)
{
    d->makePanes = std::move(makePanes);
}

bool G_UIContext::Undo()
{
    QUndoStack* stack = d->current ? d->current->UndoStack() : nullptr;
    if (!stack || !stack->canUndo())
        return false;
    stack->undo();
    return true;
}

bool G_UIContext::Redo()
{
    QUndoStack* stack = d->current ? d->current->UndoStack() : nullptr;
    if (!stack || !stack->canRedo())
        return false;
    stack->redo();
    return true;
}

bool G_UIContext::MayRun(G_Operation* op)
{
    IG_Document* document = op->GDocument();
    if (!document)
        return true; // the operation itself tests for a view
    switch (op->AuthorityType()) {
    case Authority::EditDocument:
        return !document->IsReadOnly() && document->MayEdit() && document->CheckRight(true);
    case Authority::EditAnnotation:
        return !document->IsReadOnly() && document->MayAnnotate();
    case Authority::ExportContent:
        return document->MayExport();
    default:
        return true;
    }
}

void G_UIContext::RefusedByRights(G_Operation* op)
{
    const bool isReadOnly = op->GDocument() && op->GDocument()->IsReadOnly();
    const bool isEdit = op->AuthorityType() != Authority::ExportContent;
    ShowNote(isReadOnly && isEdit ? tr("This document is read-only.")
                                  : tr("The permissions of this document do not allow that."));
}

void G_UIContext::BeforePerform(IG_Document* document)
{
    if (d->makePanes && document)
        d->makePanes(document);
}

void G_UIContext::ViewCreated(G_DocView* view)
{
    d->views.append(view);
    d->events->KnowView(view);
}

void G_UIContext::ViewDestroyed(G_DocView* view)
{
    d->copies->ForgetView(view);
    d->events->ForgetView(view);
    d->views.removeOne(view);
    if (d->current != view)
        return;
    d->current = nullptr;
    emit d->events->SwitchDocView(nullptr);
}

bool GP_ChangeHandler::DoAction()
{
    G_DocView* view = DocView();
    if (!view)
        return false;
    G_ToolHandler* tool = view->ToolHandlerByName(Params->GetQString("name").toUtf8().constData());
    if (!tool)
        return false;
    if (view->CurrentToolHandler() != tool)
        view->SetCurrentToolHandler(tool);
    return true;
}
