#pragma once

#include "objects.h"

#include <QSizeF>

namespace ofd {

// A cell of objects that is repeated in all directions as far as what it paints is seen.
struct Pattern
{
    QSizeF cell;                   // what reaches beyond is cut off
    QSizeF step;                   // from one cell to the next; at least the size of the cell
    bool flipsColumns = false;     // every other column is seen in a mirror, left and right swapped
    bool flipsRows = false;        // every other row, top and bottom swapped
    bool isRelativeToPage = false; // else the first cell begins at the corner of the object's Boundary
    QTransform matrix;             // from the cell's space to that of the page or the Boundary
    ObjectList objects;
    qint64 bytes = 0; // of memory that the objects take, about; known in advance, since patterns share patterns
};

} // namespace ofd
