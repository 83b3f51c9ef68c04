#include "painting_watch.h"

namespace ofd {

namespace {

constexpr qint64 PartialEveryMs = 300;

} // namespace

PaintingWatch::PaintingWatch(const G_RenderRequest& request, const QImage* picture, const QRect& wanted)
    : cancelled(request.cancelled)
    , partial(request.partial)
    , picture(picture)
    , wanted(wanted)
{
    sinceTold.start();
}

bool PaintingWatch::IsCancelled()
{
    if (cancelled && cancelled->load(std::memory_order_relaxed))
        return true;
    if (picture && partial && sinceTold.hasExpired(PartialEveryMs)) {
        partial(picture->copy(wanted));
        sinceTold.start();
    }
    return false;
}

} // namespace ofd
