#pragma once

#include <frame/document/page_renderer.h>

#include <QElapsedTimer>

namespace ofd {

// Looks, between objects, whether a painting is still wanted, and tells the asker now and then what is there so far.
// Lives for one painting on one thread.
class PaintingWatch
{
public:
    // `picture` is what is being painted, and outlives this; null when nobody is to be told of it. Told is the part of
    // it that was asked for.
    PaintingWatch(const G_RenderRequest& request, const QImage* picture, const QRect& wanted);
    bool IsCancelled();

private:
    const std::shared_ptr<std::atomic<bool>> cancelled; // may be null
    const std::function<void(const QImage&)> partial;   // may be empty
    const QImage* picture;                              // not owned
    const QRect wanted;
    QElapsedTimer sinceTold;
};

} // namespace ofd
