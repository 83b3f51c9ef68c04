#include "doc_view_private.h"

#include <frame/base/log.h>
#include <frame/document/ig_document.h>
#include <frame/operation/event_manager.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <cmath>

namespace {

constexpr int kArrowStepPx = 40;
constexpr double kWheelZoomFactor = 1.1; // a notch of the wheel
constexpr double kWheelNotch = 120;

// Which tool function takes an event of this kind, by button.
using MouseHandler = int (G_ToolHandler::*)(unsigned, CCA_Point);

MouseHandler HandlerOf(QEvent::Type type, Qt::MouseButton button)
{
    struct Row
    {
        QEvent::Type type;
        Qt::MouseButton button;
        MouseHandler handler;
    };
    static const Row rows[] = {
        {QEvent::MouseButtonPress, Qt::LeftButton, &G_ToolHandler::OnLButtonDown},
        {QEvent::MouseButtonRelease, Qt::LeftButton, &G_ToolHandler::OnLButtonUp},
        {QEvent::MouseButtonDblClick, Qt::LeftButton, &G_ToolHandler::OnLButtonDblClk},
        {QEvent::MouseButtonPress, Qt::MiddleButton, &G_ToolHandler::OnMButtonDown},
        {QEvent::MouseButtonRelease, Qt::MiddleButton, &G_ToolHandler::OnMButtonUp},
        {QEvent::MouseButtonDblClick, Qt::MiddleButton, &G_ToolHandler::OnMButtonDblClk},
        {QEvent::MouseButtonPress, Qt::RightButton, &G_ToolHandler::OnRButtonDown},
        {QEvent::MouseButtonRelease, Qt::RightButton, &G_ToolHandler::OnRButtonUp},
        {QEvent::MouseButtonDblClick, Qt::RightButton, &G_ToolHandler::OnRButtonDblClk},
    };
    if (type == QEvent::MouseMove)
        return &G_ToolHandler::OnMouseMove;
    for (const Row& row : rows) {
        if (row.type == type && row.button == button)
            return row.handler;
    }
    return nullptr;
}

} // namespace

void G_DocView::SetCurrentToolHandler(G_ToolHandler* handler)
{
    if (d->tool == handler)
        return;
    if (handler && !d->MayUse(handler)) {
        FrameLog("frame error: tool " + handler->Name().Bytes() +
                 " is not of this view G_DocView SetCurrentToolHandler");
        return;
    }
    d->LeaveTool();
    d->tool = handler;
    if (handler) {
        handler->view = this;
        handler->OnActivate();
    }
    UpdateView();
    if (d->context)
        emit d->context->EventMgr()->ToolHandlerChange(handler);
}

G_ToolHandler* G_DocView::CurrentToolHandler()
{
    return d->tool;
}

G_ToolHandler* G_DocView::ToolHandlerByName(const char* name)
{
    const QByteArray key(name);
    if (G_ToolHandler* known = d->tools.value(key))
        return known;
    G_ToolHandler* prototype = G_ToolRegistry::Instance().Find(key);
    G_ToolHandler* clone = prototype ? prototype->Clone() : nullptr;
    if (!clone)
        return nullptr;
    clone->view = this;
    d->tools.insert(key, clone);
    return clone;
}

void G_DocView::ForgetTool(G_ToolHandler* handler)
{
    const QByteArray name = d->tools.key(handler);
    if (!name.isEmpty())
        d->tools.remove(name);
    if (d->tool != handler)
        return;
    d->tool = nullptr; // too late to be told that it is no longer current
    SetCurrentToolHandler(ToolHandlerByName("t_handtool"));
}

// Prototypes are never activated, and a tool serves one view at a time.
bool G_DocView::Private::MayUse(G_ToolHandler* handler) const
{
    const bool isPrototype = G_ToolRegistry::Instance().Find(handler->Name().Bytes()) == handler;
    return handler->DocView() ? handler->DocView() == q : !isPrototype;
}

void G_DocView::Private::LeaveTool()
{
    G_ToolHandler* left = tool;
    if (!left)
        return;
    left->OnDeactivate();
    tool = nullptr;
    if (tools.key(left).isEmpty()) // a caller's own is bound only while it is current
        left->view = nullptr;
}

void G_DocView::Private::DestroyTools()
{
    LeaveTool();
    const QHash<QByteArray, G_ToolHandler*> dying = tools;
    for (G_ToolHandler* clone : dying)
        clone->OnDestroy();
    tools.clear();
    for (G_ToolHandler* clone : dying) {
        clone->view = nullptr;
        delete clone;
    }
}

CCA_Point G_DocView::Private::Remember(const QPoint& viewportPoint)
{
    cursor = widget->mapToScene(viewportPoint).toPoint();
    return {cursor.x(), cursor.y()};
}

bool G_DocView::Private::MouseEvent(QMouseEvent* event)
{
    const CCA_Point point = Remember(event->pos());
    const MouseHandler handler = HandlerOf(event->type(), event->button());
    if (!tool || !handler)
        return false;
    // Buttons and modifiers are different bits, so both fit into the flags.
    const unsigned flags = static_cast<unsigned>(event->buttons()) | static_cast<unsigned>(event->modifiers());
    return (tool->*handler)(flags, point) != 0;
}

bool G_DocView::Private::WheelEvent(QWheelEvent* event)
{
    const QPoint place = event->position().toPoint();
    const CCA_Point point = Remember(place);
    const int delta = event->angleDelta().y();
    const auto flags = static_cast<unsigned>(event->buttons()) | static_cast<unsigned>(event->modifiers());
    if (tool && tool->OnWheel(flags, delta, point) != 0)
        return true;
    if ((event->modifiers() & Qt::ControlModifier) == 0)
        return false;
    mode = G_Preferences::Custom;
    ZoomAt(zoom * std::pow(kWheelZoomFactor, delta / kWheelNotch), place);
    return true;
}

bool G_DocView::Private::TabKey(bool isForward)
{
    return tool && tool->OnKeyDown(isForward ? Qt::Key_Tab : Qt::Key_Backtab, 0) != 0;
}

void G_DocView::Private::HoverAgain(const QWheelEvent& event)
{
    if (tool && event.buttons() == Qt::NoButton)
        tool->OnMouseMove(static_cast<unsigned>(event.modifiers()), Remember(event.position().toPoint()));
}

bool G_DocView::Private::KeyEvent(QKeyEvent* event)
{
    const auto flags = static_cast<unsigned>(event->modifiers());
    if (event->type() == QEvent::KeyRelease)
        return tool && tool->OnKeyUp(event->key(), flags) != 0;
    if (tool && tool->OnKeyDown(event->key(), flags) != 0)
        return true;
    return DefaultKey(event);
}

int G_DocView::Private::ScreenStep() const
{
    return qMax(kArrowStepPx, widget->viewport()->height() - kArrowStepPx); // a line or two are seen twice
}

// Nothing of a page is skipped: the next one comes to the top only when the end of this one has been in view.
void G_DocView::Private::ScreenDown()
{
    const QRect seen = VisibleRect();
    const QRect page = layout.RowRect(current);
    const bool isEndSeen = page.top() + page.height() <= seen.top() + seen.height();
    if (isEndSeen && layout.IsValid(layout.RowEnd(current) + 1))
        q->NextPage();
    else
        q->ScrollBy(0, ScreenStep());
}

void G_DocView::Private::ScreenUp()
{
    const QRect seen = VisibleRect();
    const bool isTopSeen = layout.PageRect(current).top() >= seen.top();
    const int above = layout.RowStart(current) - 1;
    const bool fitsAbove = layout.RowRect(above).height() + 2 * PageLayout::gapPx <= seen.height();
    if (isTopSeen && fitsAbove && layout.IsValid(above))
        q->PreviousPage();
    else
        q->ScrollBy(0, -ScreenStep());
}

bool G_DocView::Private::DefaultKey(QKeyEvent* event)
{
    if ((event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier | Qt::ControlModifier)) != 0)
        return false;
    if (event->key() == Qt::Key_Escape && q->IsSelecting()) {
        q->SetHighLightText({});
        return true;
    }
    switch (event->key()) {
    case Qt::Key_PageDown:
        ScreenDown();
        return true;
    case Qt::Key_PageUp:
        ScreenUp();
        return true;
    case Qt::Key_Home:
        q->GoToPage(q, 0, CCA_GRect(), false);
        return true;
    case Qt::Key_End:
        q->GoToPage(q, layout.Count() - 1, CCA_GRect(), false);
        return true;
    case Qt::Key_Down:
        q->ScrollBy(0, kArrowStepPx);
        return true;
    case Qt::Key_Up:
        q->ScrollBy(0, -kArrowStepPx);
        return true;
    case Qt::Key_Left:
        q->ScrollBy(-kArrowStepPx, 0);
        return true;
    case Qt::Key_Right:
        q->ScrollBy(kArrowStepPx, 0);
        return true;
    case Qt::Key_Space:
        if ((event->modifiers() & Qt::ShiftModifier) != 0)
            ScreenUp();
        else
            ScreenDown();
        return true;
    default:
        return false;
    }
}
