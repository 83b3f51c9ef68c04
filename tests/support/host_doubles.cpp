#include "host_doubles.h"

void DeskMenu::PopupMenu(const QString& toolName, const QMap<QString, ContextMenuItemState>& states,
                         const G_OperationParam*)
{
    shown.append(toolName);
    lastStates = states;
}

QStringList DeskNavigation::opened;
std::function<void()> DeskNavigation::whenOpened;

G_Operation* DeskNavigation::Clone() const
{
    auto* copy = new DeskNavigation;
    copy->CopyFrom(this);
    return copy;
}

bool DeskNavigation::DoAction()
{
    opened.append(Params->GetQString("navi_params"));
    if (whenOpened)
        whenOpened();
    return true;
}

void DeskNavigation::Forget()
{
    opened.clear();
    whenOpened = {};
}
