#pragma once

#include "ofd_file.h"

#include <frame/document/page_renderer.h>

#include <QColor>
#include <QImage>
#include <QRectF>

// What tests of painted pages share. All pictures have this resolution.
constexpr double PixelsPerMm = 4;

// The outline of a square of 20 by 20 mm.
extern const QByteArray SquareData;
// Resources with one font, id 10, that is not embedded.
extern const QByteArray FontResource;
// A filled square without a line whose corner is at (x, y) mm; `colour` are the attributes of its colour.
QByteArray FilledSquare(int x, int y, const QByteArray& colour, const QByteArray& more = {});
// A text in that font.
QByteArray TextObject(const QByteArray& attributes, const QByteArray& code);

// Writes and opens the file and paints its first page; any failure ends the test run.
QImage PaintFile(const OfdFile& file, const G_RenderRequest& request = G_RenderRequest());
// The same for a page of these objects.
QImage PaintPage(const QByteArray& objects, const QByteArray& resources = FontResource);

QColor ColourAt(const QImage& image, double xMm, double yMm);
bool IsNear(const QColor& a, const QColor& b, int tolerance = 4);
// The box of everything that is clearly darker than paper, in mm.
QRectF InkBox(const QImage& image);
