#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

namespace ofd {

// A piece of a JBIG2 file.
struct Jbig2Segment
{
    int type = 0;
    qint64 dataBegin = 0; // offsets in the file
    qint64 dataEnd = 0;

    // Whether it holds bitmaps that other segments put into regions again and again.
    bool IsDictionary() const { return type == 0 || type == 16; }
};

// The segments of a JBIG2 file in the order in which their data come, as far as they can be told. Nothing when its
// headers ask for more work than its bytes can be worth: the decoder cannot be interrupted, and fifty bytes can ask it
// for hours.
std::optional<std::vector<Jbig2Segment>> ReadJbig2Segments(const QByteArray& bytes);

} // namespace ofd
