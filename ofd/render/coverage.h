#pragma once

#include <QImage>
#include <QPainterPath>

#include <functional>

namespace ofd {

// How much of each pixel an outline covers, smooth at its edges, as an Alpha8 picture of the box; null without memory
// or when it was cancelled. Outline and box are in pixels. Takes time with the edges and the pixels that they cross,
// where the painter's own rasterizer looks each of them up among all others of its row: an outline of a thousand lines
// from edge to edge of a sheet takes it seconds. `isCancelled` may be empty. Any thread.
QImage CoverageOf(const QPainterPath& outline, const QRect& box, const std::function<bool()>& isCancelled = {});

} // namespace ofd
