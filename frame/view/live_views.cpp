#include "live_views.h"

namespace {
QList<G_DocView*>& Views()
{
    static auto* views = new QList<G_DocView*>; // never freed: overlays with static life still ask for it at the end
    return *views;
}
} // namespace

const QList<G_DocView*>& LiveViews()
{
    return Views();
}

void EnrolLiveView(G_DocView* view)
{
    Views().append(view);
}

void LeaveLiveViews(G_DocView* view)
{
    Views().removeOne(view);
}
