#include "view_history.h"

#include <cmath>

namespace {

constexpr size_t MostPlaces = 100;
constexpr double SameMm = 1; // closer together are the same place
constexpr float SamePercent = 0.01F;

bool IsFitting(G_Preferences::ZoomMode mode)
{
    return mode >= G_Preferences::ActualSize && mode <= G_Preferences::FitPage;
}

bool IsSameZoom(const ViewZoom& a, const ViewZoom& b)
{
    return IsFitting(a.mode) == IsFitting(b.mode) &&
           (IsFitting(a.mode) ? a.mode == b.mode : std::abs(a.percent - b.percent) < SamePercent);
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

ViewZoom ZoomOf(const G_DocView& view)
{
    return {view.ZoomMode(), view.GetZoom()};
}

void SetZoomOf(G_DocView& view, const ViewZoom& zoom)
{
    if (IsFitting(zoom.mode))
        view.SetZoomMode(zoom.mode);
    else
        view.SetZoom(zoom.percent, false);
}

ViewHistory::ViewHistory(G_DocView* docView)
    : view(docView)
{
    connect(view, &G_DocView::Jumping, this, &ViewHistory::OnJumping);
    connect(view, &G_DocView::Jumped, this, &ViewHistory::OnJumped);
}

ViewHistory::Step ViewHistory::Here() const
{
    return {PlaceOf(*view), ZoomOf(*view), false};
}

bool ViewHistory::IsSamePlace(const Step& a, const Step& b)
{
    return a.place.page == b.place.page && (a.place.cornerMm - b.place.cornerMm).manhattanLength() < SameMm;
}

void ViewHistory::Append(std::vector<Step>& steps, const Step& step)
{
    if (!steps.empty() && IsSamePlace(steps.back(), step))
        steps.pop_back();
    steps.push_back(step);
    if (steps.size() > MostPlaces)
        steps.erase(steps.begin());
}

void ViewHistory::OnJumping()
{
    if (isMoving)
        return;
    Append(before, Here());
    after.clear();
    emit Changed();
}

void ViewHistory::OnJumped()
{
    if (!isMoving && !before.empty())
        before.back().changesZoom = !IsSameZoom(before.back().zoom, ZoomOf(*view));
}

void ViewHistory::GoBack()
{
    Move(before, after);
}

void ViewHistory::GoForward()
{
    Move(after, before);
}

void ViewHistory::Forget()
{
    before.clear();
    after.clear();
    emit Changed();
}

// A jump may have led to where the view was, and pages may be gone: such places are passed over.
void ViewHistory::Move(std::vector<Step>& from, std::vector<Step>& to)
{
    Step here = Here();
    const auto leadsNowhere = [&here, this](const Step& step) {
        const bool isZoomed = step.changesZoom && !IsSameZoom(step.zoom, here.zoom);
        return (IsSamePlace(step, here) && !isZoomed) || !view->Page(step.place.page);
    };
    while (!from.empty() && leadsNowhere(from.back()))
        from.pop_back();
    if (!from.empty()) {
        const Step target = from.back();
        from.pop_back();
        here.changesZoom = target.changesZoom;
        Append(to, here);
        isMoving = true;
        if (target.changesZoom)
            SetZoomOf(*view, target.zoom);
        GoToPlace(*view, target.place);
        isMoving = false;
    }
    emit Changed();
}
