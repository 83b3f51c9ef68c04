#include "doc_view.h"
#include "go_to_dest.h"
#include "link_text.h"
#include "settings.h"
#include "ui_context.h"

#include <frame/base/converters.h>
#include <frame/document/ig_document.h>
#include <frame/operation/event.h>
#include <frame/utils/safe_process.h>

#include <QMessageBox>
#include <QPointer>
#include <QStringList>

#include <memory>
#include <vector>

namespace {

bool KeepsZoom()
{
    return G_SettingMgr::Instance()->ConfigValue(QStringLiteral("read.keepcurrentzoom")).toBool();
}

// One list of actions on its way. What an action answers is the text of a note about it; empty when it was run or when
// the user declined.
class ActionRun
{
public:
    ActionRun(G_UIContext* context, G_DocView* view)
        : context(context)
        , view(view)
        , keepsZoom(KeepsZoom())
    {
    }

    QString Run(const G_Action& action) const
    {
        if (const auto* jump = dynamic_cast<const G_ActionGoto*>(&action))
            return Jump(*jump);
        if (const auto* address = dynamic_cast<const G_ActionUri*>(&action))
            return Open(GQ_ToQStringFromUtf8(address->Address()));
        if (action.actionType == G_Action::Sound || action.actionType == G_Action::Movie)
            return G_ActionHandler::tr("Sounds and movies cannot be played.");
        return G_ActionHandler::tr("This kind of action is not supported.");
    }

private:
    QString Jump(const G_ActionGoto& jump) const
    {
        const G_Dest* dest = PlaceOf(jump, view->GDocument());
        if (!dest)
            return G_ActionHandler::tr("The bookmark “%1” does not exist.")
                .arg(ShownText(GQ_ToQStringFromUtf8(jump.bookmarkName)));
        return GoToDest(view, *dest, keepsZoom) ? QString() : G_ActionHandler::tr("This page does not exist.");
    }

    // Documents come from anywhere, so an address is opened only when the user has seen it and agreed.
    QString Open(const QString& address) const
    {
        if (address.isEmpty())
            return G_ActionHandler::tr("This kind of action is not supported.");
        const int answer = context->ShowQuestionBox(G_ActionHandler::tr("Open address"),
                                                    G_ActionHandler::tr("Do you want to open this address?") +
                                                        QStringLiteral("\n\n") + ShownAddress(address),
                                                    QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
        const bool isOpened = answer != QMessageBox::Ok || Utils::Safe::OV_SafeProcess::OpenUrl(address);
        return isOpened ? QString() : G_ActionHandler::tr("This address cannot be opened.");
    }

    G_UIContext* context; // not owned
    G_DocView* view;      // not owned
    bool keepsZoom;
};

} // namespace

G_ActionHandler::G_ActionHandler(G_UIContext* context)
    : QObject(context)
    , context(context)
{
}

void G_ActionHandler::DoActions(const CCA_ArrayTemplate<G_Action*>& actions, IG_Document* document, int /*kind*/)
{
    const QPointer<G_UIContext> host = context; // a question's event loop may end the whole window, this included
    const QPointer<G_DocView> view = host->CurrentDocView();
    if (!view || !document || view->GDocument() != document)
        return;
    // Copies: while a question is up, the records that own the actions may be replaced.
    std::vector<std::unique_ptr<G_Action>> copies;
    for (const G_Action* action : actions)
        copies.emplace_back(action ? action->Clone() : nullptr);
    QStringList notes;
    for (const auto& action : copies) {
        if (!action || !host || !view || host->CurrentDocView() != view)
            continue;
        const auto* attachment = dynamic_cast<const G_ActionAttachment*>(action.get());
        const QString note =
            attachment ? OfferAttachment(document, attachment->attachmentId) : ActionRun(host, view).Run(*action);
        if (!note.isEmpty() && !notes.contains(note))
            notes.append(note);
    }
    for (const QString& note : host ? notes : QStringList())
        host->FireEvent(new G_StringEvent(note, EventType::StatusText));
}

bool G_ActionHandler::FollowOpenActions(G_DocView* view)
{
    const std::shared_ptr<const G_ActionList> asked = view->GDocument()->GetOpenActions();
    const bool keepsZoom = KeepsZoom();
    for (int i = 0; asked && i < asked->Actions().GetSize(); ++i) {
        const auto* jump = dynamic_cast<const G_ActionGoto*>(asked->Actions()[i]);
        const G_Dest* dest = jump ? PlaceOf(*jump, view->GDocument()) : nullptr;
        if (dest && GoToDest(view, *dest, keepsZoom))
            return true;
    }
    return false;
}

void G_ActionHandler::SetAttachmentSaver(AttachmentSaver saver)
{
    attachmentSaver = std::move(saver);
}

// Answers with a note, empty when there is nothing to tell. This may be gone when it returns.
QString G_ActionHandler::OfferAttachment(IG_Document* document, int attachmentId) const
{
    const int index = document->GetAttachmentIndexById(attachmentId);
    if (index < 0)
        return tr("This attachment does not exist.");
    if (!document->MayExport())
        return tr("The document does not allow its attachments to be saved.");
    const AttachmentSaver saver = attachmentSaver; // a dialog's event loop may end the whole window
    return saver ? saver(document, index) : tr("This kind of action is not supported.");
}
