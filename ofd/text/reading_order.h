#pragma once

#include "object_places.h"

#include <QPointF>
#include <QRectF>
#include <QVector>

namespace ofd {

// Pieces that follow each other on one line without a wide gap.
struct TextLine
{
    QPointF along; // the way it runs on the page; 1 long
    QRectF onLine; // x along, y across
    QRectF box;    // page mm
    int first = 0; // of the pieces
    int end = 0;
};

// Where a piece stands on its line.
struct PlaceOnLine
{
    double middle = 0;
    double gap = 0; // behind the piece before it, in heights; 0 for the first one
};

// The smallest box with both in it. Unlike their union it has boxes without a size, too.
QRectF Around(const QRectF& a, const QRectF& b);
// The lines that pieces form in their order. `places` gets one for each piece; may be null.
QVector<TextLine> LinesOf(const QVector<PlacedText>& pieces, QVector<PlaceOnLine>* places = nullptr);

// One list of a page's own text and that of its templates. The own text keeps its order, whatever comes between. A line
// of a template stands beside the own text on its line (a form's label before what was filled in), else between the own
// lines above and below it. Text of templates alone, and that of pages of thousands of lines, stays in painting order.
QVector<PlacedText> InReadingOrder(const QVector<PlacedText>& before, const QVector<PlacedText>& own,
                                   const QVector<PlacedText>& after);

} // namespace ofd
