#pragma once

#include <QPainterPath>
#include <QVector>

namespace ofd {

// What the areas cover together, with the fill rule that it needs. Exact unless working that out would take long: then
// the areas are laid over each other, all filled by winding, which is exact too where each is drawn as outlines usually
// are, its holes running against what is around them. The areas must not be shared with other threads.
QPainterPath UnitedAreas(const QVector<QPainterPath>& areas);

// The outline with its contours the other way round when as a whole it runs anticlockwise on the screen. Where such
// outlines lie over each other, filled by winding, none takes away from another; nor does the line that Qt draws around
// one of them.
QPainterPath Clockwise(const QPainterPath& outline);

} // namespace ofd
