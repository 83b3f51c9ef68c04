#pragma once

#include <QBrush>
#include <QTransform>

namespace ofd {

struct Shading;

// A brush that paints the shading. `toLocal` maps the shading's points to the space that is painted in.
QBrush ShadingBrush(const Shading& shading, double alpha, const QTransform& toLocal);

} // namespace ofd
