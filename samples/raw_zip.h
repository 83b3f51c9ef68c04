#pragma once

#include "package.h"

#include <functional>

namespace samples {

// One entry as it is written, oddities included.
struct RawEntry
{
    QByteArray name;
    QByteArray data;
    bool isStored = false;
    quint16 localFlags = 0;
    quint16 centralFlags = 0;
    bool hasDescriptor = false; // zero sizes and check sum in the local header, the true ones after the data
    bool hasLocalZip64 = false; // the local header's sizes are all ones and stand in an extra block
    QByteArray extra;           // in both headers
    qint64 declaredSize = -1;   // uncompressed size to state, if another than the true one
    QByteArray packed;          // compressed bytes, where they are not made from data
};

// A zip written byte by byte, for containers that no library would write.
class RawZip
{
public:
    RawZip() = default;
    explicit RawZip(const Package& package);

    std::vector<RawEntry> entries;
    QByteArray comment;

    QByteArray Bytes() const;
};

// The package as a zip each of whose entries was changed.
QByteArray WithChangedEntries(const Package& package, const std::function<void(RawEntry&)>& change);

// Compressed with deflate, without wrapping.
QByteArray Deflated(const QByteArray& data);

} // namespace samples
