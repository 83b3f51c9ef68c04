#include "page_link.h"

#include <algorithm>

G_ActionList::~G_ActionList()
{
    std::for_each(actions.begin(), actions.end(), [](G_Action* action) { delete action; });
}

void G_ActionList::Add(std::unique_ptr<G_Action> action)
{
    actions.Add(action.release());
}

bool G_PageLink::Contains(const CCA_GPoint& point) const
{
    const QPointF place(double(point.x), double(point.y));
    const QRectF box = area.controlPointRect();
    return box.contains(place) && area.contains(place);
}
