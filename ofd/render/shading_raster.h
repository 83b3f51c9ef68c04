#pragma once

#include <QImage>
#include <QTransform>

#include <functional>

namespace ofd {

struct Mesh;
struct Shading;

// Paint shadings into a transparent picture, pixel by pixel, so that they are as sharp as the picture. `toPixels` maps
// the shading's points to the picture. Where a shading does not reach, the picture stays transparent.
// They stop early when `isCancelled` (may be empty) says so.

void PaintShading(QImage& image, const Shading& shading, const QTransform& toPixels,
                  const std::function<bool()>& isCancelled);
// Stops early too when the triangles lie over each other more often than a picture could need.
void PaintMesh(QImage& image, const Mesh& mesh, const QTransform& toPixels, const std::function<bool()>& isCancelled);

} // namespace ofd
