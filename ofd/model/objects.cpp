#include "objects.h"

namespace ofd {

GraphicObject::~GraphicObject() = default;

QPainterPath PrivateCopy(const QPainterPath& path)
{
    QPainterPath copy;
    copy.setFillRule(path.fillRule());
    copy.addPath(path);
    return copy;
}

} // namespace ofd
