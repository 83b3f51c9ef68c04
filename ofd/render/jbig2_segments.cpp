#include "jbig2_segments.h"

#include <ofd/package/limits.h>

#include <algorithm>

namespace ofd {

namespace {

constexpr int FileFlagsAt = 8;
constexpr quint32 UnknownLength = 0xffffffff;

enum SegmentType {
    SymbolDictionary = 0,
    TextFirst = 4,
    TextLast = 7,
    PatternDictionary = 16,
    HalftoneFirst = 20,
    HalftoneLast = 23,
    RegionLast = 43,
    EndOfFile = 51,
};

// Big-endian numbers; beyond the end everything is 0, and `isPastEnd` tells.
class Reader
{
public:
    Reader(const QByteArray& bytes, qint64 at)
        : at(at)
        , bytes(bytes)
    {
    }

    quint32 Take(int count)
    {
        quint32 value = 0;
        for (int i = 0; i < count; ++i, ++at) {
            isPastEnd = isPastEnd || at >= bytes.size();
            value = value << 8 | (isPastEnd ? 0 : quint8(bytes.at(int(at))));
        }
        return value;
    }

    qint64 at;
    bool isPastEnd = false;

private:
    const QByteArray& bytes;
};

// False when the header does not fit into the file.
bool ReadHeader(Reader& reader, Jbig2Segment& segment, quint32& length)
{
    const quint32 number = reader.Take(4);
    const quint32 flags = reader.Take(1);
    segment.type = int(flags & 63);
    quint32 referred = reader.Take(1) >> 5;
    if (referred == 7) {
        reader.at -= 1;
        referred = reader.Take(4) & 0x1fffffff;
        reader.at += (qint64(referred) + 8) / 8;
    }
    reader.at += qint64(referred) * (number <= 256 ? 1 : number <= 65536 ? 2 : 4);
    reader.Take(flags & 64 ? 4 : 1); // the page
    length = reader.Take(4);
    return !reader.isPastEnd;
}

std::vector<Jbig2Segment> ReadSegments(const QByteArray& bytes)
{
    std::vector<Jbig2Segment> segments;
    Reader reader(bytes, FileFlagsAt);
    const quint32 flags = reader.Take(1);
    const bool isSequential = flags & 1;
    if (!(flags & 2))
        reader.Take(4); // pages
    std::vector<qint64> lengths;
    bool isEnd = false;
    while (!isEnd && segments.size() < limits::MaxJbig2Segments) {
        Jbig2Segment segment;
        quint32 length = 0;
        if (!ReadHeader(reader, segment, length))
            break;
        isEnd = segment.type == EndOfFile;
        lengths.push_back(length == UnknownLength ? bytes.size() : length);
        segment.dataBegin = reader.at;
        if (isSequential)
            reader.at = std::min<qint64>(bytes.size(), reader.at + lengths.back());
        segments.push_back(segment);
    }
    // With all headers first, the data follow in their order.
    qint64 at = reader.at;
    for (size_t i = 0; i < segments.size(); ++i) {
        if (!isSequential)
            segments[i].dataBegin = at;
        segments[i].dataEnd = std::min<qint64>(bytes.size(), segments[i].dataBegin + lengths[i]);
        at = segments[i].dataEnd;
    }
    return segments;
}

// Adds up what the headers of the segments ask for.
class WorkCounter
{
public:
    explicit WorkCounter(const QByteArray& bytes)
        : bytes(bytes)
    {
    }

    // False when it is too much.
    bool Add(const Jbig2Segment& segment)
    {
        const qint64 bits = (segment.dataEnd - segment.dataBegin) * 8;
        Reader reader(bytes, segment.dataBegin);
        if (segment.type == SymbolDictionary)
            return AddSymbols(reader, bits);
        if (segment.type < TextFirst || segment.type > RegionLast || segment.type == PatternDictionary)
            return true;
        const qint64 width = reader.Take(4);
        const qint64 height = reader.Take(4);
        reader.at += 9; // its place and how it is combined
        if (width > limits::MaxImagePixels || height > limits::MaxImagePixels)
            return false;
        pixels += width * height;
        if (pixels > limits::MaxImagePixels)
            return false;
        if (segment.type <= TextLast)
            return AddInstances(reader, width * height, bits);
        if (segment.type >= HalftoneFirst && segment.type <= HalftoneLast)
            return AddGrid(reader);
        return true;
    }

private:
    bool AddSymbols(Reader& reader, qint64 bits)
    {
        const quint32 flags = reader.Take(2);
        const bool isHuffman = flags & 1;
        const bool refines = flags & 2;
        if (!isHuffman)
            reader.at += (flags >> 10 & 3) == 0 ? 8 : 2;
        if (refines && !(flags >> 12 & 1))
            reader.at += 4;
        reader.Take(4); // exported
        const qint64 added = reader.Take(4);
        symbols += added;
        return added <= bits && symbols <= limits::MaxJbig2Symbols;
    }

    // An instance copies a symbol, which is as large as the allocator lets it be, or the region.
    bool AddInstances(Reader& reader, qint64 regionPixels, qint64 bits)
    {
        const quint32 flags = reader.Take(2);
        const bool isHuffman = flags & 1;
        const bool refines = flags & 2;
        if (isHuffman)
            reader.Take(2);
        if (refines && !(flags >> 15 & 1))
            reader.at += 4;
        const qint64 instances = reader.Take(4);
        copied += instances * std::min<qint64>(regionPixels / 8 + 1, limits::MaxJbig2SymbolBytes);
        return instances <= bits && copied <= limits::MaxJbig2CopiedBytes;
    }

    bool AddGrid(Reader& reader)
    {
        reader.Take(1);
        const qint64 width = reader.Take(4);
        const qint64 height = reader.Take(4);
        if (width > limits::MaxJbig2Cells || height > limits::MaxJbig2Cells)
            return false;
        cells += width * height;
        return cells <= limits::MaxJbig2Cells;
    }

    const QByteArray& bytes;
    qint64 pixels = 0;  // of all regions
    qint64 symbols = 0; // of all dictionaries
    qint64 copied = 0;  // bytes of symbols, at the most
    qint64 cells = 0;   // of halftones
};

} // namespace

std::optional<std::vector<Jbig2Segment>> ReadJbig2Segments(const QByteArray& bytes)
{
    std::vector<Jbig2Segment> segments = ReadSegments(bytes);
    WorkCounter work(bytes);
    for (const Jbig2Segment& segment : segments) {
        if (!work.Add(segment))
            return std::nullopt;
    }
    return segments;
}

} // namespace ofd
