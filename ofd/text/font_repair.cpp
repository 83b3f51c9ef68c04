#include "font_repair.h"

#include <ofd/package/limits.h>

#include <QMap>

#include <algorithm>

namespace ofd {

namespace {

constexpr int HeaderBytes = 12;
constexpr int EntryBytes = 16;
constexpr int HeadBytes = 54;
constexpr int MaxpBytes = 32;
constexpr int HheaBytes = 36;
constexpr int MaxGlyphs = 65535;
constexpr int UsualUnitsPerEm = 1000;

quint32 Read(const QByteArray& bytes, int at, int count)
{
    quint32 value = 0;
    for (int i = 0; i < count; ++i)
        value = value << 8 | (at + i < bytes.size() ? quint8(bytes.at(at + i)) : 0);
    return value;
}

void Write(QByteArray& bytes, int at, quint32 value, int count)
{
    for (int i = 0; i < count; ++i)
        bytes[at + i] = char(value >> (8 * (count - 1 - i)));
}

// The tables of one font, and whether they had to be changed.
class FontTables
{
public:
    explicit FontTables(const QByteArray& bytes)
        : bytes(bytes)
    {
        const int count = std::min(int(Read(bytes, 4, 2)), limits::MaxFontTables);
        for (int i = 0; i < count; ++i)
            AddTable(HeaderBytes + i * EntryBytes);
    }

    // Makes up what is missing. False when there are no outlines, which nothing replaces.
    bool Complete()
    {
        if (tables.contains("CFF "))
            return isChanged;
        if (tables.value("glyf").isEmpty() || tables.value("loca").size() < 4)
            return false;
        const bool hasCount = tables.value("maxp").size() >= 6;
        const bool hasFormat = tables.value("head").size() >= HeadBytes;
        bool isLong = hasFormat && Read(tables["head"], 50, 2) != 0;
        if (!hasFormat)
            isLong = hasCount ? tables["loca"].size() >= 4 * (int(Read(tables["maxp"], 4, 2)) + 1)
                              : tables["loca"].size() % 4 == 0 && Read(tables["loca"], 0, 4) == 0;
        const int places = tables["loca"].size() / (isLong ? 4 : 2);
        const int glyphs = hasCount ? int(Read(tables["maxp"], 4, 2)) : std::min(places - 1, MaxGlyphs);
        if (!hasFormat)
            MakeHead(isLong);
        if (!hasCount)
            MakeMaxp(glyphs);
        if (tables.value("hmtx").size() < 4)
            MakeHmtx();
        if (tables.value("hhea").size() < HheaBytes)
            MakeHhea(std::min(glyphs, tables["hmtx"].size() / 4));
        return isChanged;
    }

    QByteArray Join() const
    {
        QByteArray directory = bytes.left(4);
        directory.append(HeaderBytes - 4, '\0'); // the search hints are not used
        Write(directory, 4, quint32(tables.size()), 2);
        QByteArray body;
        const int start = HeaderBytes + EntryBytes * tables.size();
        for (auto table = tables.cbegin(); table != tables.cend(); ++table) {
            QByteArray entry = table.key() + QByteArray(EntryBytes - 4, '\0'); // nor are the checksums
            Write(entry, 8, quint32(start + body.size()), 4);
            Write(entry, 12, quint32(table.value().size()), 4);
            directory += entry;
            body += table.value();
            body.append((4 - body.size() % 4) % 4, '\0');
        }
        return directory + body;
    }

private:
    void AddTable(int entry)
    {
        if (entry + EntryBytes > bytes.size()) {
            isChanged = true;
            return;
        }
        const qint64 offset = Read(bytes, entry + 8, 4);
        const qint64 length = Read(bytes, entry + 12, 4);
        const qint64 there = std::min(length, bytes.size() - offset);
        const QByteArray tag = bytes.mid(entry, 4);
        if (there < length)
            isChanged = true;
        if (there > 0 && !tables.contains(tag))
            tables.insert(tag, QByteArray::fromRawData(bytes.constData() + offset, int(there)));
        if (tables.size() > 1 && SizeOfAll() > qint64(bytes.size()) * 2) { // overlapping tables must not add up
            tables.remove(tag);
            isChanged = true;
        }
    }

    qint64 SizeOfAll() const
    {
        qint64 sum = 0;
        for (const QByteArray& table : tables)
            sum += table.size();
        return sum;
    }

    void MakeHead(bool isLong)
    {
        QByteArray head(HeadBytes, '\0');
        Write(head, 0, 0x00010000, 4);
        Write(head, 12, 0x5f0f3cf5, 4);
        Write(head, 18, UsualUnitsPerEm, 2);
        Write(head, 50, isLong, 2);
        Put("head", head);
    }

    void MakeMaxp(int glyphs)
    {
        QByteArray maxp(MaxpBytes, '\0');
        Write(maxp, 0, 0x00010000, 4);
        Write(maxp, 4, quint32(glyphs), 2);
        for (int at = 6; at < MaxpBytes; at += 2) // what a glyph may need at most
            Write(maxp, at, at == 14 ? 2 : 1024, 2);
        Put("maxp", maxp);
    }

    void MakeHmtx()
    {
        QByteArray hmtx(4, '\0');
        Write(hmtx, 0, Read(tables["head"], 18, 2), 2);
        Put("hmtx", hmtx);
    }

    void MakeHhea(int metrics)
    {
        const int unitsPerEm = int(Read(tables["head"], 18, 2));
        QByteArray hhea(HheaBytes, '\0');
        Write(hhea, 0, 0x00010000, 4);
        Write(hhea, 4, quint32(unitsPerEm * 88 / 100), 2);
        Write(hhea, 6, quint32(-unitsPerEm * 12 / 100), 2);
        Write(hhea, 10, quint32(unitsPerEm), 2);
        Write(hhea, 34, quint32(std::max(1, metrics)), 2);
        Put("hhea", hhea);
    }

    void Put(const QByteArray& tag, const QByteArray& table)
    {
        tables.insert(tag, table);
        isChanged = true;
    }

    const QByteArray& bytes;
    QMap<QByteArray, QByteArray> tables; // most of them point into the bytes
    bool isChanged = false;
};

bool IsFont(const QByteArray& bytes)
{
    const quint32 magic = Read(bytes, 0, 4);
    return bytes.size() > HeaderBytes && (magic == 0x00010000 || magic == 0x74727565 || magic == 0x4f54544f);
}

} // namespace

QByteArray RepairedFont(const QByteArray& bytes)
{
    if (!IsFont(bytes))
        return QByteArray();
    FontTables tables(bytes);
    return tables.Complete() ? tables.Join() : QByteArray();
}

} // namespace ofd
