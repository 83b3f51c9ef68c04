#pragma once

#include <frame/operation/operation.h>

#include <QCoreApplication>
#include <QMap>
#include <QPoint>

class G_OperationParam;
class ReaderContext;
struct ContextMenuItemState;
struct G_PageLink;

// What the page's menu does with a link: "e_openlink" runs it as a click does, "e_copylinkaddress" puts the address
// that it opens on the clipboard. "link_x" and "link_y" say where it is, in scene units of the current view; where no
// link is, nothing is done.
class GP_LinkCommand : public G_Operation
{
    Q_DECLARE_TR_FUNCTIONS(GP_LinkCommand)
public:
    enum Command { Open, CopyAddress };
    explicit GP_LinkCommand(Command command)
        : command(command)
    {
    }
    G_Operation* Clone() const override;
    const char* Name() const override { return command == Open ? "e_openlink" : "e_copylinkaddress"; }
    bool DoAction() override;

private:
    const Command command;
};

// Adds to a menu of the page what concerns a link at that point of the view: the states of the entries, which are shown
// only where there is something to do, and the parameters of their operations.
void AddLinkToMenu(G_DocView* view, const QPoint& scenePoint, QMap<QString, ContextMenuItemState>* states,
                   G_OperationParam* params);

// Lets links and outline entries that lead to attachments offer to save them, and to open those that are documents.
void OfferAttachments(ReaderContext* context);
