#include "link_pointer.h"

#include "doc_view.h"
#include "link_text.h"
#include "tool_handler.h"

#include <QGuiApplication>
#include <QStyleHints>

G_LinkPointer::G_LinkPointer(G_ToolHandler* tool, int cursor)
    : tool(tool)
    , cursor(cursor)
{
}

void G_LinkPointer::Hover(CCA_Point point)
{
    G_DocView* view = tool->DocView();
    G_PageLink link;
    const bool isOnLink = view->LinkAt(point, &link);
    view->SetViewCursor(isOnLink ? int(Qt::PointingHandCursor) : cursor);
    if (link.actions == shown)
        return;
    shown = link.actions;
    view->SetViewTip(shown ? DescribeActions(*shown, view->GDocument()) : QString());
}

bool G_LinkPointer::Press(CCA_Point point)
{
    pressed = G_PageLink();
    pressPlace = OnScreen(point);
    return tool->DocView()->LinkAt(point, &pressed);
}

bool G_LinkPointer::Hold(CCA_Point point)
{
    const bool isNear =
        (OnScreen(point) - pressPlace).manhattanLength() < QGuiApplication::styleHints()->startDragDistance();
    if (!isNear)
        pressed = G_PageLink();
    return pressed.IsValid();
}

bool G_LinkPointer::Release(CCA_Point point)
{
    const bool isHeld = Hold(point);
    const G_PageLink link = pressed;
    pressed = G_PageLink();
    G_PageLink below;
    if (!isHeld || !tool->DocView()->LinkAt(point, &below) || below.actions != link.actions)
        return false;
    tool->DocView()->RunLink(link.actions);
    return true;
}

void G_LinkPointer::Forget()
{
    pressed = G_PageLink();
    if (shown)
        tool->DocView()->SetViewTip(QString());
    shown.reset();
}

QPoint G_LinkPointer::OnScreen(CCA_Point point) const
{
    return QPoint(point.x, point.y) - tool->DocView()->VisibleSceneRect().topLeft();
}
