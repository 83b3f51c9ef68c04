#include "embedded_profile.h"

#include <ofd/package/limits.h>

#include <QMap>
#include <QtEndian>

#include <algorithm>

#include <zlib.h>

namespace ofd {

namespace {

constexpr qint64 Most = limits::MaxProfileBytes;

template <typename T>
T BigAt(const QByteArray& bytes, qint64 place)
{
    return qFromBigEndian<T>(bytes.constData() + place);
}

template <typename T>
T LittleAt(const QByteArray& bytes, qint64 place)
{
    return qFromLittleEndian<T>(bytes.constData() + place);
}

// Bytes of a file, empty when they reach beyond its end.
QByteArray Cut(const QByteArray& bytes, qint64 place, qint64 size)
{
    return place >= 0 && size > 0 && size <= Most && place + size <= bytes.size() ? bytes.mid(int(place), int(size))
                                                                                  : QByteArray();
}

// Empty when it is broken or gets too large.
QByteArray Inflated(const QByteArray& packed)
{
    constexpr int step = 64 << 10;
    QByteArray plain;
    z_stream stream = {};
    if (inflateInit(&stream) != Z_OK)
        return plain;
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.constData()));
    stream.avail_in = uInt(packed.size());
    int code = Z_OK;
    while (code == Z_OK && plain.size() + step <= Most) {
        const int before = plain.size();
        plain.resize(before + step);
        stream.next_out = reinterpret_cast<Bytef*>(plain.data() + before);
        stream.avail_out = step;
        code = inflate(&stream, Z_NO_FLUSH);
        plain.truncate(before + step - int(stream.avail_out));
    }
    inflateEnd(&stream);
    return code == Z_STREAM_END ? plain : QByteArray();
}

QByteArray FromPng(const QByteArray& bytes)
{
    constexpr int signature = 8, head = 8, checksum = 4, longestName = 80;
    for (qint64 place = signature; place + head <= bytes.size();) {
        const qint64 size = BigAt<quint32>(bytes, place);
        const char* kind = bytes.constData() + place + 4; // not owned
        if (qstrncmp(kind, "IDAT", 4) == 0)
            break;
        if (qstrncmp(kind, "iCCP", 4) == 0) {
            const QByteArray chunk = Cut(bytes, place + head, size);
            const int nameEnd = chunk.left(longestName).indexOf('\0');
            const bool isPacked = nameEnd >= 0 && nameEnd + 2 < chunk.size() && chunk.at(nameEnd + 1) == 0;
            return isPacked ? Inflated(chunk.mid(nameEnd + 2)) : QByteArray();
        }
        place += head + size + checksum;
    }
    return {};
}

// Long profiles are cut into numbered pieces.
QByteArray FromJpeg(const QByteArray& bytes)
{
    const QByteArray mark("ICC_PROFILE", 12); // with its end
    QMap<int, QByteArray> pieces;
    int count = 0;
    const auto at = [&bytes](qint64 i) { return int(quint8(bytes.at(int(i)))); };
    for (qint64 place = 2; place + 4 <= bytes.size() && at(place) == 0xff;) {
        const int marker = at(place + 1);
        if (marker == 0xff) { // filling
            ++place;
            continue;
        }
        if (marker == 0xda || marker == 0xd9)
            break;
        const qint64 size = BigAt<quint16>(bytes, place + 2);
        const QByteArray segment = Cut(bytes, place + 4, size - 2);
        if (marker == 0xe2 && segment.startsWith(mark) && segment.size() > mark.size() + 2) {
            count = quint8(segment.at(mark.size() + 1));
            pieces.insert(quint8(segment.at(mark.size())), segment.mid(mark.size() + 2));
        }
        place += 2 + size;
    }
    QByteArray profile;
    for (int i = 1; i <= count; ++i) {
        if (!pieces.contains(i) || profile.size() + pieces.value(i).size() > Most)
            return {};
        profile += pieces.value(i);
    }
    return profile;
}

QByteArray FromTiff(const QByteArray& bytes)
{
    constexpr int head = 8, entrySize = 12, profileTag = 34675;
    const bool isBig = bytes.startsWith("MM");
    const auto wordAt = [&](qint64 i) { return isBig ? BigAt<quint16>(bytes, i) : LittleAt<quint16>(bytes, i); };
    const auto numberAt = [&](qint64 i) { return isBig ? BigAt<quint32>(bytes, i) : LittleAt<quint32>(bytes, i); };
    if (bytes.size() < head)
        return {};
    const qint64 list = numberAt(4);
    if (list + 2 > bytes.size())
        return {};
    const int count = wordAt(list);
    for (int i = 0; i < count; ++i) {
        const qint64 entry = list + 2 + qint64(i) * entrySize;
        if (entry + entrySize > bytes.size())
            break;
        if (wordAt(entry) == profileTag)
            return Cut(bytes, numberAt(entry + 8), numberAt(entry + 4));
    }
    return {};
}

QByteArray FromWebp(const QByteArray& bytes)
{
    constexpr int signature = 12, head = 8;
    for (qint64 place = signature; place + head <= bytes.size();) {
        const qint64 size = LittleAt<quint32>(bytes, place + 4);
        if (qstrncmp(bytes.constData() + place, "ICCP", 4) == 0)
            return Cut(bytes, place + head, size);
        place += head + size + size % 2;
    }
    return {};
}

} // namespace

QByteArray EmbeddedProfile(const QByteArray& picture)
{
    if (picture.startsWith("\x89PNG\r\n\x1a\n"))
        return FromPng(picture);
    if (picture.startsWith("\xff\xd8"))
        return FromJpeg(picture);
    if (picture.startsWith(QByteArray("II*\0", 4)) || picture.startsWith(QByteArray("MM\0*", 4)))
        return FromTiff(picture);
    if (picture.startsWith("RIFF") && picture.mid(8, 4) == "WEBP")
        return FromWebp(picture);
    return {};
}

} // namespace ofd
