#pragma once

#include <QByteArray>

namespace ofd {

// Makes a TrueType or OpenType font whole enough to be drawn with: tables that reach beyond the data are cut off,
// those that lie outside are left out, and the ones without which no font is read (head, maxp, hhea, hmtx) are made up
// from what the others tell. Empty when there is nothing to repair, or nothing that could be. Any thread.
QByteArray RepairedFont(const QByteArray& bytes);

} // namespace ofd
