#pragma once

#include <frame/base/arrays.h>
#include <frame/base/strings.h>
#include <frame/operation/operation.h>

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSize>
#include <QString>

#include <functional>
#include <memory>

class G_Action;
class G_ActionHandler;
class G_ContextMenu;
class G_DocView;
class G_Event;
class G_EventMgr;
class G_ToolHandler;
class IG_Annot;
class IG_Document;
class QWidget;

// One for each main frame: what panes, operations and tools reach the host through. Owned by the frame's window.
class FRAME_EXPORT G_UIContext : public QObject, public G_OperationHost
{
    Q_OBJECT
public:
    explicit G_UIContext(QObject* parent = nullptr);
    ~G_UIContext() override;

    // The frame's modal message boxes. Buttons are the numeric values of Qt's message box buttons; the pressed one's
    // value comes back, and closing the box by its frame gives 2097152 (Close). `defaultButton` -1 means none;
    // `captions` replaces buttons' texts by value; an empty size lets the box choose. An answer that comes when the
    // current view is no longer the one that was asked about counts as closing the box. Virtual: tests script the
    // answers.
    virtual int ShowInformationBox(const QString& title, const QString& text, int buttons, int defaultButton,
                                   const QMap<int, QString>& captions = {}, const QSize& size = {});
    virtual int ShowMessageBox(const QString& title, const QString& text, int buttons, int defaultButton,
                               const QMap<int, QString>& captions = {}, const QSize& size = {});
    virtual int ShowQuestionBox(const QString& title, const QString& text, int buttons, int defaultButton,
                                const QMap<int, QString>& captions = {}, const QSize& size = {});

    // A new working copy bound to the current view; null (logged) when the name is unknown. A text that is not empty
    // goes to ParseParamJson.
    G_Operation* CreateOperationByName(const QByteArray& name, const QString& text);
    // Creates, performs and deletes; what PerformAction returned, false for an unknown name.
    bool PerformOperation(const QByteArray& name, const QString& text);
    // Delivers the event to all listeners and takes it over. From another thread it is posted, in order.
    void FireEvent(G_Event* event);
    G_DocView* CurrentDocView() const; // null while no document is open
    G_EventMgr* EventMgr() const;
    G_ActionHandler* ActionHandler() const;
    G_ContextMenu* ContextMenu() const;
    void SetContextMenu(std::unique_ptr<G_ContextMenu> menu); // tests bring their own
    // The current view's clone of the tool, or the registered prototype without a view; null when unknown.
    G_ToolHandler* FindHandlerByName(const QByteArray& name) const;
    // Whether the reader runs inside a larger office suite.
    virtual bool IsLarkmerePlugin() const;

    // The frame's side. Makes a view the current one and tells the listeners (SwitchDocView); null when none is left.
    void SetCurrentDocView(G_DocView* view);
    QList<G_DocView*> DocViews() const; // all that live
    QWidget* DialogParent() const;
    void SetDialogParent(QWidget* widget);
    // Called ahead of an operation on a document, to make panes that are still missing.
    void SetPaneMaker(std::function<void(IG_Document*)> makePanes);
    // True while a box or a menu of this context or any other modal window is up: panes and interceptors may then stand
    // on the stack below it, so the frame closes and changes no tab.
    bool IsModalRunning() const;
    // One step on the current view's stack, never on another's: commands act on the current view. False without one.
    bool Undo();
    bool Redo();
    // Shows a transient note over the current view, or over the dialog parent without one.
    void ShowNote(const QString& text);

    // G_OperationHost
    bool MayRun(G_Operation* op) override;
    void RefusedByRights(G_Operation* op) override;
    void BeforePerform(IG_Document* document) override;

private:
    friend class G_DocView; // enrols and leaves
    friend class G_ModalScope;
    void ViewCreated(G_DocView* view);
    void ViewDestroyed(G_DocView* view);
    void UseEvent(G_Event* event);
    void RepaintAnnotation(IG_Document* document, IG_Annot* annot);
    struct BoxText;
    int RunBox(int icon, const BoxText& content);
    struct Private;
    std::unique_ptr<Private> d;
};

// Stands on the stack while something modal of a context is up. What it waits for may destroy the context or change its
// view, so the caller asks it before going on.
class FRAME_EXPORT G_ModalScope
{
public:
    explicit G_ModalScope(G_UIContext* context);
    ~G_ModalScope();
    // The context lives and its current view is still the one from before.
    bool IsSameView() const;

private:
    Q_DISABLE_COPY(G_ModalScope)
    QPointer<G_UIContext> context; // not owned
    QPointer<QObject> view;        // not owned
    bool hadView;
};

// Runs document actions on behalf of a click.
class FRAME_EXPORT G_ActionHandler : public QObject
{
    Q_OBJECT
public:
    explicit G_ActionHandler(G_UIContext* context);
    // All actions in order, on the current view if it shows the document; nothing otherwise. `kind` 3 means a click in
    // a pane, 1 one on a page. Go-to actions go, by way of a bookmark to where it is now; an address is opened when the
    // user agrees; an attachment is offered to be saved, and is never run. What could not be done is told in transient
    // notes.
    void DoActions(const CCA_ArrayTemplate<G_Action*>& actions, IG_Document* document, int kind);
    // Follows the first jump that leads somewhere of those that the view's document asks for on being opened; false
    // when there is none. Nothing else that it asks for is done, not even asked about: a file must not open addresses,
    // attachments or sounds by itself.
    bool FollowOpenActions(G_DocView* view);
    // What saves the attachment at that index where the user wants it, set by the host; it answers with a note about
    // what came of it, empty when there is nothing to tell.
    using AttachmentSaver = std::function<QString(IG_Document* document, int index)>;
    void SetAttachmentSaver(AttachmentSaver saver);

private:
    QString OfferAttachment(IG_Document* document, int attachmentId) const;
    G_UIContext* context; // not owned
    AttachmentSaver attachmentSaver;
};

// Switches the tool of the view to the one named by the parameter "name".
class FRAME_EXPORT GP_ChangeHandler : public G_Operation
{
public:
    // No view: false. An unknown tool: false. Otherwise the tool is current afterwards, and true.
    bool DoAction() override;
};
