#pragma once

#include <QPainterPath>
#include <QRectF>
#include <QTransform>

#include <pugixml.hpp>

namespace ofd {

// The transform of the attribute CTM. What is missing, or lacks a number, changes nothing, and `isGiven` tells so; the
// latter is reported.
QTransform MatrixAttribute(const pugi::xml_node& element, bool* isGiven = nullptr);

// From an object's space behind its matrix to that of its container.
QTransform MoveTo(const QRectF& boundary);

// The outline of a path element with its fill rule.
QPainterPath ReadPath(const pugi::xml_node& element);

} // namespace ofd
