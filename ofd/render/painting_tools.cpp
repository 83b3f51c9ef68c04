#include "painting_tools.h"

#include <cmath>

namespace ofd {

namespace {

constexpr double MaxScale = 1e6; // pixels a unit

} // namespace

double ScaleOf(const QTransform& transform)
{
    return std::sqrt(std::abs(transform.determinant()));
}

bool IsUsable(const QTransform& transform)
{
    const double scale = ScaleOf(transform);
    return std::isfinite(scale) && scale > 0 && scale < MaxScale && std::isfinite(transform.dx()) &&
           std::isfinite(transform.dy());
}

} // namespace ofd
