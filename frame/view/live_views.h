#pragma once

#include <QList>

class G_DocView;

// All views that live in the process, in order of creation. Main thread only.
const QList<G_DocView*>& LiveViews();
void EnrolLiveView(G_DocView* view);
void LeaveLiveViews(G_DocView* view);
