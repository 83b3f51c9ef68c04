#pragma once

#include <tests/ofd/document/page_painting.h>

#include <QSizeF>

// A path that fills a rectangle with the content of its FillColor element, without a line.
QByteArray FilledBox(const QRectF& boxMm, const QByteArray& fillColor, const QByteArray& attributes = {},
                     const QByteArray& clips = {});
// The data of a rectangle.
QByteArray RectData(const QRectF& rect);
// The element FillColor with a plain colour.
QByteArray Colour(const QByteArray& value, const QByteArray& more = {});

// Whether the picture has the colour there, with a message that names both.
bool Shows(const QImage& image, double xMm, double yMm, const QColor& expected, int tolerance = 4);
