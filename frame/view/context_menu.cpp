#include "context_menu.h"

#include "ui_context.h"

#include <frame/operation/operation.h>

#include <QCoreApplication>
#include <QCursor>
#include <QMenu>
#include <QPointer>

G_ContextMenu::G_ContextMenu(G_UIContext* context)
    : context(context)
{
}

G_ContextMenu::~G_ContextMenu() = default;

void G_ContextMenu::SetEntries(const QString& toolName, const QList<G_MenuEntry>& entries)
{
    menus.insert(toolName, entries);
}

QList<G_MenuEntry> G_ContextMenu::Entries(const QString& toolName) const
{
    return menus.value(toolName);
}

void G_ContextMenu::PopupMenu(const QString& toolName, const QMap<QString, ContextMenuItemState>& states,
                              const G_OperationParam* params)
{
    const QPointer<QMenu> menu = BuildMenu(toolName, states); // its parent may die while it waits
    const G_ModalScope scope(context);
    const QAction* chosen = menu->isEmpty() ? nullptr : menu->exec(QCursor::pos());
    const QByteArray operation = chosen ? chosen->data().toByteArray() : QByteArray();
    delete menu;
    // The entry was chosen for what was in view when the menu came up. If that changed, this object may be gone too.
    if (!operation.isEmpty() && scope.IsSameView())
        Perform(operation, params);
}

QMenu* G_ContextMenu::BuildMenu(const QString& toolName, const QMap<QString, ContextMenuItemState>& states) const
{
    auto* menu = new QMenu(context ? context->DialogParent() : nullptr);
    menu->setObjectName(toolName);
    menu->setSeparatorsCollapsible(true); // invisible entries leave no separators side by side
    const QList<G_MenuEntry> entries = menus.value(toolName);
    for (const G_MenuEntry& entry : entries) {
        if (entry.operation.isEmpty()) {
            menu->addSeparator();
            continue;
        }
        const ContextMenuItemState state = states.value(QString::fromUtf8(entry.operation));
        if (!state.visible)
            continue;
        QAction* action = menu->addAction(QCoreApplication::translate("ContextMenu", entry.text));
        action->setData(entry.operation);
        action->setEnabled(state.enabled);
        if (state.hasIcon && !state.iconPath.isEmpty()) {
            // The icon shows the state; a check mark as well would say it twice.
            action->setIcon(QIcon(state.iconPath));
            action->setIconVisibleInMenu(true);
        } else if (state.checked) {
            action->setCheckable(true);
            action->setChecked(true);
        }
    }
    return menu;
}

bool G_ContextMenu::Perform(const QByteArray& operation, const G_OperationParam* params)
{
    G_Operation* op = context ? context->CreateOperationByName(operation, QString()) : nullptr;
    if (!op)
        return false;
    if (params)
        op->Params->Merge(*params);
    const bool isDone = op->PerformAction();
    op->DeleteLater();
    return isDone;
}
