#pragma once

#include <QByteArray>

namespace ofd {

// One element of data in the distinguished encoding of ASN.1, or in the basic one, where the end of an element may be
// marked instead of counted: a tag, and where its content stands.
struct DerElement
{
    int tag = 0; // the identifier byte: class, whether it is made of others, and number
    qint64 begin = 0;
    qint64 end = 0; // of the content; a mark of the end is no content

    bool IsConstructed() const { return tag & 0x20; }
};

// The identifier bytes that are looked for.
namespace der {
constexpr int Integer = 0x02;
constexpr int OctetString = 0x04;
constexpr int Utf8String = 0x0c;
constexpr int PrintableString = 0x13;
constexpr int Ia5String = 0x16;
constexpr int OctetPieces = 0x24; // a string of octets in several strings
constexpr int Sequence = 0x30;
} // namespace der

// Walks the elements that follow one another in a stretch of bytes. Every length is checked against the stretch, so
// that nothing outside it is ever read. The bytes must live as long as the reader, and so must the number of elements
// that may still be looked at: all readers of one seal share it, since a marked end is found by looking at all inside.
class DerReader
{
public:
    DerReader(const QByteArray& bytes, qint64 begin, qint64 end, int& elementsLeft)
        : bytes(bytes)
        , at(begin)
        , end(end)
        , elementsLeft(elementsLeft)
    {
    }

    // The next element; false at the end, at anything that is no such encoding, and when no more may be looked at.
    bool Next(DerElement& element);
    bool IsAtEnd() const { return at == end; }

private:
    struct Header
    {
        int tag = 0;
        qint64 begin = 0;  // of the content
        qint64 length = 0; // of the content; MarkedEnd when its end is marked
    };
    static constexpr qint64 MarkedEnd = -1;

    bool ReadHeader(qint64 place, Header& header);
    qint64 FindMarkedEnd(qint64 begin);
    int ByteAt(qint64 place) const { return int(quint8(bytes.at(int(place)))); }

    const QByteArray& bytes;
    qint64 at;
    const qint64 end;
    int& elementsLeft;
};

} // namespace ofd
