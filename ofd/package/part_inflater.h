#pragma once

#include "package_error.h"

#include <functional>

namespace ofd {

class ByteSource;
struct ZipEntry;

// Takes inflated bytes as they come; false when it cannot, which ends the reading.
using ByteSink = std::function<bool(const char* bytes, qint64 count)>;

// Refuses an entry that cannot be read, or must not be, before any of it is inflated.
PackageError CheckEntry(const ZipEntry& entry, bool isHeldInMemory);
// Inflates the data of an entry into the sink. Sizes are the directory's; going beyond them, or beyond the limits, ends
// it. `hasWrongChecksum` tells whether the bytes differ from what was once packed.
PackageError InflateEntry(const ByteSource& source, const ZipEntry& entry, const ByteSink& sink,
                          bool* hasWrongChecksum);

} // namespace ofd
