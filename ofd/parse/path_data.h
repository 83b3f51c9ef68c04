#pragma once

#include <QPainterPath>

#include <string_view>

namespace ofd {

// Builds the outline that abbreviated path data describes: S and M begin a figure, L draws a line, Q and B curves, A an
// elliptical arc, C closes. Letters may be glued to numbers, numbers separated by blanks or commas. Reading stops at
// the first thing that is neither, and what was built until then is the result.
QPainterPath ParsePathData(std::string_view text);

} // namespace ofd
