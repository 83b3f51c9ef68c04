#include "der_reader.h"

#include <ofd/package/limits.h>

namespace ofd {

namespace {

constexpr int ManyByteTag = 0x1f;
constexpr int MaxLengthBytes = 4;
constexpr int MarkBytes = 2; // two zeros mark an end
constexpr int Constructed = 0x20;

} // namespace

bool DerReader::Next(DerElement& element)
{
    Header header;
    if (at < 0 || end > bytes.size() || !ReadHeader(at, header))
        return false;
    element.tag = header.tag;
    element.begin = header.begin;
    if (header.length != MarkedEnd) {
        element.end = header.begin + header.length;
        at = element.end;
        return true;
    }
    element.end = FindMarkedEnd(header.begin);
    if (element.end < 0)
        return false;
    at = element.end + MarkBytes;
    return true;
}

bool DerReader::ReadHeader(qint64 place, Header& header)
{
    if (end - place < 2 || elementsLeft <= 0)
        return false;
    --elementsLeft;
    header.tag = ByteAt(place++);
    if ((header.tag & ManyByteTag) == ManyByteTag) // seals have none of these
        return false;
    header.length = ByteAt(place++);
    if (header.length == 0x80) {
        header.length = MarkedEnd;
        header.begin = place;
        return header.tag & Constructed; // the bytes of a plain one may hold what looks like the mark
    }
    if (header.length & 0x80) {
        const int count = int(header.length & 0x7f);
        if (count > MaxLengthBytes || end - place < count)
            return false;
        header.length = 0;
        for (int i = 0; i < count; ++i)
            header.length = header.length << 8 | ByteAt(place++);
    }
    header.begin = place;
    return header.length <= end - place;
}

// Where the mark stands that ends the content that begins there; -1 when there is none.
qint64 DerReader::FindMarkedEnd(qint64 begin)
{
    int depth = 1; // of marked ends that are still to come
    for (qint64 place = begin; end - place >= MarkBytes;) {
        if (ByteAt(place) == 0 && ByteAt(place + 1) == 0) {
            if (--depth == 0)
                return place;
            place += MarkBytes;
            continue;
        }
        Header header;
        if (!ReadHeader(place, header))
            return -1;
        if (header.length == MarkedEnd && ++depth > limits::MaxSealDepth)
            return -1;
        place = header.length == MarkedEnd ? header.begin : header.begin + header.length;
    }
    return -1;
}

} // namespace ofd
