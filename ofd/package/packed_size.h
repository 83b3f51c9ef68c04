#pragma once

#include "package.h"

namespace ofd {

// Bytes that the part takes in the file; 0 when it is not there.
inline qint64 PackedSizeOf(const Package& package, const QString& part)
{
    const int entry = package.FindEntry(part);
    return entry < 0 ? 0 : package.GetDirectory().entries[size_t(entry)].compressedSize;
}

} // namespace ofd
