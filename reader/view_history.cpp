#include "view_history.h"

#include <frame/view/doc_view.h>

namespace {

constexpr int MostPlaces = 100;
constexpr double SameMm = 1; // closer together are the same place

bool IsSame(const ViewPlace& a, const ViewPlace& b)
{
    return a.page == b.page && (a.cornerMm - b.cornerMm).manhattanLength() < SameMm;
}

void Append(QVector<ViewPlace>& places, const ViewPlace& place)
{
    if (!places.isEmpty() && IsSame(places.last(), place))
        return;
    places.append(place);
    if (places.size() > MostPlaces)
        places.removeFirst();
}

} // namespace

ViewPlace PlaceOf(const G_DocView& view)
{
    const QPoint corner = view.VisibleSceneRect().topLeft();
    const CCA_GPoint onPage = view.DocPointOnPage(CCA_Point{corner.x(), corner.y()}, view.CurrentPageIndex());
    return {view.CurrentPageIndex(), QPointF(double(onPage.x), double(onPage.y))};
}

void GoToPlace(G_DocView& view, const ViewPlace& place)
{
    if (place.page < 0 || !view.Page(place.page))
        return;
    view.GoToPage(&view, place.page, CCA_GRect(), false);
    const CCA_GPoint corner{float(place.cornerMm.x()), float(place.cornerMm.y())};
    const CCA_Point wanted = view.ScenePointFromDocPoint(corner, place.page);
    const QPoint seen = view.VisibleSceneRect().topLeft();
    view.ScrollBy(wanted.x - seen.x(), wanted.y - seen.y());
}

ViewHistory::ViewHistory(G_DocView* docView)
    : view(docView)
{
    connect(view, &G_DocView::Jumping, this, &ViewHistory::OnJumping);
}

void ViewHistory::OnJumping()
{
    if (isMoving)
        return;
    Append(before, PlaceOf(*view));
    after.clear();
    emit Changed();
}

void ViewHistory::GoBack()
{
    Move(before, after);
}

void ViewHistory::GoForward()
{
    Move(after, before);
}

// A jump may have led to where the view was: such places are passed over.
void ViewHistory::Move(QVector<ViewPlace>& from, QVector<ViewPlace>& to)
{
    const ViewPlace here = PlaceOf(*view);
    while (!from.isEmpty() && IsSame(from.last(), here))
        from.removeLast();
    if (!from.isEmpty()) {
        const ViewPlace target = from.takeLast();
        Append(to, here);
        isMoving = true;
        GoToPlace(*view, target);
        isMoving = false;
    }
    emit Changed();
}
