#pragma once

#include <QPainter>
#include <QTransform>

namespace ofd {

// Pixels for one unit of the painter's space, the mean of both directions.
double ScaleOf(const QTransform& transform);
// Whether anything sensible can be painted under the transform: it is finite, not singular and not absurdly large.
bool IsUsable(const QTransform& transform);

// Restores the painter at the end of a scope.
class PainterScope
{
public:
    explicit PainterScope(QPainter& painter)
        : painter(painter)
    {
        painter.save();
    }
    ~PainterScope() { painter.restore(); }
    PainterScope(const PainterScope&) = delete;
    PainterScope& operator=(const PainterScope&) = delete;

private:
    QPainter& painter;
};

} // namespace ofd
