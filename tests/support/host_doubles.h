#pragma once

#include <frame/operation/operation.h>
#include <frame/view/context_menu.h>
#include <frame/view/tool_handler.h>

#include <QMap>
#include <QStringList>

#include <functional>

// What a reader offers to the panes, as far as their tests meet it.

// A menu service that remembers what was asked for instead of showing it.
class DeskMenu : public G_ContextMenu
{
public:
    using G_ContextMenu::G_ContextMenu;
    void PopupMenu(const QString& toolName, const QMap<QString, ContextMenuItemState>& states,
                   const G_OperationParam* params) override;
    QStringList shown; // tool names
    QMap<QString, ContextMenuItemState> lastStates;
};

// The operation that opens a pane: remembers what it was asked to open.
class DeskNavigation : public G_Operation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override { return "e_navigation"; }
    bool DoAction() override;
    static void Forget(); // what was opened, and whenOpened
    static QStringList opened;
    static std::function<void()> whenOpened; // may be empty
};

// The signature tool, as far as a drag over a tree meets it.
class DeskSignatureTool : public GT_Base
{
public:
    G_ToolHandler* Clone() override { return new DeskSignatureTool; }
    CCA_String Name() override { return "d_electronicsignature"; }
};
