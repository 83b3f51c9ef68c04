#include "doc_view.h"
#include "go_to_dest.h"
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

constexpr int shownAddressLength = 300; // characters of an address in the question

const G_Bookmark* FindBookmark(IG_Document* document, const CCA_String& name)
{
    const G_TreeNode* root = document->GetBookmarkRoot();
    for (int row = 0; root && row < root->SubNodeCount(); ++row) {
        const auto* bookmark = dynamic_cast<const G_Bookmark*>(root->SubNode(row)->data);
        if (bookmark && bookmark->name == name)
            return bookmark;
    }
    return nullptr;
}

QString Shortened(QString address)
{
    if (address.size() > shownAddressLength)
        address = address.left(shownAddressLength) + QStringLiteral("…");
    return address;
}

// One list of actions on its way. What an action answers is the text of a note about it; empty when it was run or when
// the user declined.
class ActionRun
{
public:
    ActionRun(G_UIContext* context, G_DocView* view)
        : context(context)
        , view(view)
        , keepsZoom(G_SettingMgr::Instance()->ConfigValue(QStringLiteral("read.keepcurrentzoom")).toBool())
    {
    }

    QString Run(const G_Action& action) const
    {
        if (const auto* jump = dynamic_cast<const G_ActionGoto*>(&action))
            return Jump(*jump);
        if (const auto* address = dynamic_cast<const G_ActionUri*>(&action))
            return Open(GQ_ToQStringFromUtf8(address->uri));
        return G_ActionHandler::tr("This kind of action is not supported.");
    }

private:
    // A bookmark's place is looked up now: it may have been moved, renamed or deleted since the document was read.
    QString Jump(const G_ActionGoto& jump) const
    {
        const G_Dest* dest = jump.dest;
        if (!jump.bookmarkName.IsEmpty()) {
            const G_Bookmark* bookmark = FindBookmark(view->GDocument(), jump.bookmarkName);
            if (!bookmark)
                return G_ActionHandler::tr("The bookmark “%1” does not exist.")
                    .arg(GQ_ToQStringFromUtf8(jump.bookmarkName));
            dest = bookmark->dest;
        }
        return GoToDest(view, *dest, keepsZoom) ? QString() : G_ActionHandler::tr("This page does not exist.");
    }

    // Documents come from anywhere, so an address is opened only when the user has seen it and agreed.
    QString Open(const QString& address) const
    {
        if (address.isEmpty())
            return G_ActionHandler::tr("This kind of action is not supported.");
        const int answer = context->ShowQuestionBox(G_ActionHandler::tr("Open address"),
                                                    G_ActionHandler::tr("Do you want to open this address?") +
                                                        QStringLiteral("\n\n") + Shortened(address),
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
        const QString note = ActionRun(host, view).Run(*action);
        if (!note.isEmpty() && !notes.contains(note))
            notes.append(note);
    }
    for (const QString& note : host ? notes : QStringList())
        host->FireEvent(new G_StringEvent(note, EventType::StatusText));
}
