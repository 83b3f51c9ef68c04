#pragma once

#include <QByteArray>

namespace ofd {

// One element of data in the distinguished encoding of ASN.1: a tag, and where its content stands.
struct DerElement
{
    int tag = 0; // the identifier byte: class, whether it is made of others, and number
    qint64 begin = 0;
    qint64 end = 0;

    bool IsConstructed() const { return tag & 0x20; }
};

// The identifier bytes that are looked for.
namespace der {
constexpr int Integer = 0x02;
constexpr int OctetString = 0x04;
constexpr int Utf8String = 0x0c;
constexpr int PrintableString = 0x13;
constexpr int Ia5String = 0x16;
constexpr int Sequence = 0x30;
} // namespace der

// Walks the elements that follow one another in a stretch of bytes. Every length is checked against the stretch, so
// that nothing outside it is ever read. The bytes must live as long as the reader.
class DerReader
{
public:
    DerReader(const QByteArray& bytes, qint64 begin, qint64 end)
        : bytes(bytes)
        , at(begin)
        , end(end)
    {
    }

    // The next element; false at the end, and at anything that is no such encoding.
    bool Next(DerElement& element);
    bool IsAtEnd() const { return at == end; }

private:
    const QByteArray& bytes;
    qint64 at;
    const qint64 end;
};

} // namespace ofd
