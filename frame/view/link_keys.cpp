#include "link_keys.h"

#include "doc_view.h"
#include "link_text.h"
#include "tool_handler.h"

#include <QPainter>
#include <QWidget>

namespace {

const QColor frameColour(0x2F, 0x6F, 0xDE);
constexpr int frameWidthPx = 2;

} // namespace

G_LinkKeys::G_LinkKeys(G_ToolHandler* tool)
    : tool(tool)
{
}

bool G_LinkKeys::KeyDown(int key, unsigned flags)
{
    if ((flags & ~unsigned(Qt::KeypadModifier | Qt::ShiftModifier)) != 0)
        return false;
    switch (key) {
    case Qt::Key_Tab:
        return Go(true);
    case Qt::Key_Backtab:
        return Go(false);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return Run();
    case Qt::Key_Escape:
        if (!chosen)
            return false;
        Forget();
        return true;
    default:
        return false;
    }
}

int G_LinkKeys::Position() const
{
    if (!chosen) // nothing is looked for at each repaint
        return -1;
    const QVector<G_LinkInView> links = tool->DocView()->LinksInView();
    for (int i = 0; i < links.size(); ++i) {
        if (links.at(i).pageIndex == page && links.at(i).link.actions == chosen)
            return i;
    }
    return -1;
}

bool G_LinkKeys::Go(bool isForward)
{
    G_DocView* view = tool->DocView();
    const QVector<G_LinkInView> links = view->LinksInView();
    const int from = Position();
    const int to = from < 0 ? (isForward ? 0 : links.size() - 1) : from + (isForward ? 1 : -1);
    if (to < 0 || to >= links.size()) {
        Forget();
        return false;
    }
    page = links.at(to).pageIndex;
    chosen = links.at(to).link.actions;
    view->Widget()->setAccessibleDescription(DescribeActions(*chosen, view->GDocument())); // is read out
    view->UpdateView();
    return true;
}

bool G_LinkKeys::Run()
{
    if (Position() < 0)
        return false;
    tool->DocView()->RunLink(chosen);
    return true;
}

void G_LinkKeys::Forget()
{
    if (!chosen)
        return;
    chosen.reset();
    tool->DocView()->Widget()->setAccessibleDescription(QString());
    tool->DocView()->UpdateView();
}

void G_LinkKeys::Paint(QPainter* painter) const
{
    const int position = Position();
    if (position < 0)
        return;
    const G_LinkInView link = tool->DocView()->LinksInView().at(position);
    painter->setPen(QPen(frameColour, frameWidthPx));
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(link.outline);
}
