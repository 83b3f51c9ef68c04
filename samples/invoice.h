#pragma once

#include "package.h"

namespace samples {

// An electronic invoice on one small page: table, fields tied to tags, a hidden data attachment, a seal as a stamp.
Package MakeInvoice();

// A notice of two pages in the manner of an office: red head, numbered paragraphs, page numbers, seal, tags.
Package MakeLetter();

} // namespace samples
