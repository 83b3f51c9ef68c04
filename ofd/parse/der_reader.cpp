#include "der_reader.h"

namespace ofd {

namespace {

constexpr int ManyByteTag = 0x1f;
constexpr int MaxLengthBytes = 4;

} // namespace

bool DerReader::Next(DerElement& element)
{
    const auto byteAt = [this](qint64 place) { return int(quint8(bytes.at(int(place)))); };
    if (at < 0 || end > bytes.size() || end - at < 2)
        return false;
    qint64 place = at;
    element.tag = byteAt(place++);
    if ((element.tag & ManyByteTag) == ManyByteTag) // seals have none of these
        return false;
    qint64 length = byteAt(place++);
    if (length & 0x80) {
        const int count = int(length & 0x7f);
        if (count == 0 || count > MaxLengthBytes || end - place < count)
            return false;
        length = 0;
        for (int i = 0; i < count; ++i)
            length = length << 8 | byteAt(place++);
    }
    if (length > end - place)
        return false;
    element.begin = place;
    element.end = place + length;
    at = element.end;
    return true;
}

} // namespace ofd
