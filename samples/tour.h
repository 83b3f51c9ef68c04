#pragma once

#include "package.h"

namespace samples {

// A document of nine pages that shows one feature after another: fonts, tables, paths, colours, images, templates,
// layers, annotations, tags, attachments, an outline of three levels and a bookmark of every destination type.
Package MakeTour();

} // namespace samples
