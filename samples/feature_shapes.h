#pragma once

#include "package.h"

#include <QByteArray>
#include <QRectF>

namespace samples {

// XML of shapes for pages that are put together by hand. Rectangles are in millimetres.

QByteArray RectangleData(const QRectF& rect);
// A rectangle without a line that is filled with the given FillColor element; `inside` stands before it.
QByteArray FilledRectangle(int id, const QRectF& rect, const QByteArray& fillColor, const QByteArray& attributes = {},
                           const QByteArray& inside = {});
// Puts the square that most features are shown on at the end of the first page: object 900, 60 mm wide, at (20, 100).
void AddSquare(Package& package, const QByteArray& fillColor, const QByteArray& attributes = {},
               const QByteArray& inside = {});
QByteArray PlainColor(const QByteArray& value, const QByteArray& attributes = {});

} // namespace samples
