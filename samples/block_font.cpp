#include "block_font.h"

#include <QMap>
#include <QVector>

namespace samples {

namespace {

constexpr int kBlock = 100; // units of one block; 1000 units an em
constexpr int kAdvance = kBlockAdvance;
constexpr int kRows = 7, kColumns = 5;

struct Letter
{
    char code;
    quint8 rows[kRows]; // from the top; the lowest five bits, the highest of them leftmost
};

const Letter kLetters[] = {
    {' ', {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}}, {'0', {0x0E, 0x11, 0x13, 0x15, 0x19, 0x11, 0x0E}},
    {'1', {0x04, 0x0C, 0x04, 0x04, 0x04, 0x04, 0x0E}}, {'2', {0x0E, 0x11, 0x01, 0x06, 0x08, 0x10, 0x1F}},
    {'3', {0x1F, 0x02, 0x04, 0x02, 0x01, 0x11, 0x0E}}, {'4', {0x02, 0x06, 0x0A, 0x12, 0x1F, 0x02, 0x02}},
    {'5', {0x1F, 0x10, 0x1E, 0x01, 0x01, 0x11, 0x0E}}, {'6', {0x06, 0x08, 0x10, 0x1E, 0x11, 0x11, 0x0E}},
    {'7', {0x1F, 0x01, 0x02, 0x04, 0x08, 0x08, 0x08}}, {'8', {0x0E, 0x11, 0x11, 0x0E, 0x11, 0x11, 0x0E}},
    {'9', {0x0E, 0x11, 0x11, 0x0F, 0x01, 0x02, 0x0C}}, {'A', {0x0E, 0x11, 0x11, 0x1F, 0x11, 0x11, 0x11}},
    {'B', {0x1E, 0x11, 0x11, 0x1E, 0x11, 0x11, 0x1E}}, {'C', {0x0E, 0x11, 0x10, 0x10, 0x10, 0x11, 0x0E}},
    {'D', {0x1E, 0x11, 0x11, 0x11, 0x11, 0x11, 0x1E}}, {'E', {0x1F, 0x10, 0x10, 0x1E, 0x10, 0x10, 0x1F}},
    {'F', {0x1F, 0x10, 0x10, 0x1E, 0x10, 0x10, 0x10}}, {'G', {0x0E, 0x11, 0x10, 0x17, 0x11, 0x11, 0x0F}},
    {'H', {0x11, 0x11, 0x11, 0x1F, 0x11, 0x11, 0x11}}, {'I', {0x0E, 0x04, 0x04, 0x04, 0x04, 0x04, 0x0E}},
    {'J', {0x07, 0x02, 0x02, 0x02, 0x02, 0x12, 0x0C}}, {'K', {0x11, 0x12, 0x14, 0x18, 0x14, 0x12, 0x11}},
    {'L', {0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x1F}}, {'M', {0x11, 0x1B, 0x15, 0x15, 0x11, 0x11, 0x11}},
    {'N', {0x11, 0x19, 0x15, 0x13, 0x11, 0x11, 0x11}}, {'O', {0x0E, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0E}},
    {'P', {0x1E, 0x11, 0x11, 0x1E, 0x10, 0x10, 0x10}}, {'Q', {0x0E, 0x11, 0x11, 0x11, 0x15, 0x12, 0x0D}},
    {'R', {0x1E, 0x11, 0x11, 0x1E, 0x14, 0x12, 0x11}}, {'S', {0x0F, 0x10, 0x10, 0x0E, 0x01, 0x01, 0x1E}},
    {'T', {0x1F, 0x04, 0x04, 0x04, 0x04, 0x04, 0x04}}, {'U', {0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0E}},
    {'V', {0x11, 0x11, 0x11, 0x11, 0x11, 0x0A, 0x04}}, {'W', {0x11, 0x11, 0x11, 0x15, 0x15, 0x1B, 0x11}},
    {'X', {0x11, 0x11, 0x0A, 0x04, 0x0A, 0x11, 0x11}}, {'Y', {0x11, 0x11, 0x0A, 0x04, 0x04, 0x04, 0x04}},
    {'Z', {0x1F, 0x01, 0x02, 0x04, 0x08, 0x10, 0x1F}},
};
constexpr int kLetterCount = int(std::size(kLetters));
constexpr int kGlyphCount = kLetterCount + 1; // the missing glyph is the first

// A big-endian byte string.
class Bytes
{
public:
    Bytes& U8(int value)
    {
        data.append(char(value));
        return *this;
    }
    Bytes& U16(int value) { return U8(value >> 8).U8(value); }
    Bytes& U32(quint32 value) { return U16(int(value >> 16)).U16(int(value & 0xFFFF)); }
    Bytes& Zeros(int count)
    {
        data.append(count, '\0');
        return *this;
    }
    Bytes& Raw(const QByteArray& more)
    {
        data.append(more);
        return *this;
    }
    QByteArray data;
};

QByteArray GlyfEntry(int glyph)
{
    const QVector<Block> blocks = BlocksOf(glyph);
    if (blocks.isEmpty())
        return {};
    Bytes ends, flags, xs, ys;
    int x = 0, y = 0, points = 0;
    auto add = [&](int toX, int toY) {
        flags.U8(1); // on the curve; both steps as 16 bits
        xs.U16(toX - x);
        ys.U16(toY - y);
        x = toX;
        y = toY;
        ++points;
    };
    for (const Block& block : blocks) {
        add(block.left, block.bottom);
        add(block.left, block.top);
        add(block.right, block.top);
        add(block.right, block.bottom);
        ends.U16(points - 1);
    }
    Bytes entry;
    entry.U16(blocks.size()).U16(0).U16(0).U16(kColumns * kBlock).U16(kRows * kBlock);
    entry.Raw(ends.data).U16(0).Raw(flags.data).Raw(xs.data).Raw(ys.data);
    entry.Zeros((4 - entry.data.size() % 4) % 4);
    return entry.data;
}

QByteArray CmapTable()
{
    const int segments = kLetterCount + 1;
    int power = 1, log = 0;
    while (power * 2 <= segments) {
        power *= 2;
        ++log;
    }
    Bytes ends, starts, deltas, offsets;
    for (int index = 0; index < kLetterCount; ++index) {
        ends.U16(kLetters[index].code);
        starts.U16(kLetters[index].code);
        deltas.U16(index + 1 - kLetters[index].code);
        offsets.U16(0);
    }
    ends.U16(0xFFFF);
    starts.U16(0xFFFF);
    deltas.U16(1);
    offsets.U16(0);
    Bytes table;
    table.U16(0).U16(1).U16(3).U16(1).U32(12);
    table.U16(4).U16(16 + segments * 8).U16(0).U16(segments * 2).U16(power * 2).U16(log).U16((segments - power) * 2);
    return table.Raw(ends.data).U16(0).Raw(starts.data).Raw(deltas.data).Raw(offsets.data).data;
}

QByteArray NameTable()
{
    const QPair<int, const char*> names[] = {
        {1, "Block Sample"}, {2, "Regular"}, {4, "Block Sample"}, {6, "BlockSample"}};
    Bytes records, texts;
    for (const auto& name : names) {
        const QByteArray text(name.second);
        records.U16(3).U16(1).U16(0x409).U16(name.first).U16(text.size() * 2).U16(texts.data.size());
        for (char letter : text)
            texts.U16(letter);
    }
    Bytes table;
    return table.U16(0).U16(4).U16(6 + 4 * 12).Raw(records.data).Raw(texts.data).data;
}

QByteArray Os2Table()
{
    Bytes table;
    table.U16(3).U16(kAdvance).U16(400).U16(5).U16(0);
    table.Zeros(20); // positions of sub- and superscripts, strike-out
    table.U16(0).Zeros(10).Zeros(16).Raw("TETO");
    table.U16(0x40).U16(' ').U16('Z').U16(800).U16(-200).U16(0).U16(800).U16(200);
    return table.U32(1).U32(0).U16(500).U16(700).U16(0).U16(' ').U16(1).data;
}

QByteArray HeadTable()
{
    Bytes table;
    table.U32(0x00010000).U32(0x00010000).U32(0).U32(0x5F0F3CF5).U16(0x0003).U16(1000).Zeros(16);
    table.U16(0).U16(0).U16(kColumns * kBlock).U16(kRows * kBlock);
    return table.U16(0).U16(8).U16(2).U16(1).U16(0).data;
}

QByteArray HheaTable()
{
    Bytes table;
    table.U32(0x00010000).U16(800).U16(-200).U16(0).U16(kAdvance).U16(0).U16(100).U16(kColumns * kBlock);
    return table.U16(1).U16(0).U16(0).Zeros(8).U16(0).U16(kGlyphCount).data;
}

QByteArray MaxpTable()
{
    Bytes table;
    table.U32(0x00010000).U16(kGlyphCount).U16(80).U16(20).U16(0).U16(0).U16(2);
    return table.Zeros(16).data;
}

quint32 Checksum(QByteArray table)
{
    table.append((4 - table.size() % 4) % 4, '\0');
    quint32 sum = 0;
    for (int at = 0; at < table.size(); at += 4)
        sum += quint32(quint8(table[at])) << 24 | quint32(quint8(table[at + 1])) << 16 |
               quint32(quint8(table[at + 2])) << 8 | quint32(quint8(table[at + 3]));
    return sum;
}

QByteArray Assemble(QMap<QByteArray, QByteArray> tables)
{
    int power = 1, log = 0;
    while (power * 2 <= tables.size()) {
        power *= 2;
        ++log;
    }
    Bytes head, body;
    head.U32(0x00010000).U16(tables.size()).U16(power * 16).U16(log).U16((tables.size() - power) * 16);
    const int start = 12 + 16 * tables.size();
    int headAt = 0;
    for (auto table = tables.cbegin(); table != tables.cend(); ++table) {
        if (table.key() == "head")
            headAt = start + body.data.size();
        head.Raw(table.key())
            .U32(Checksum(table.value()))
            .U32(quint32(start + body.data.size()))
            .U32(quint32(table.value().size()));
        body.Raw(table.value()).Zeros((4 - table.value().size() % 4) % 4);
    }
    QByteArray font = head.data + body.data;
    Bytes adjustment;
    adjustment.U32(0xB1B0AFBA - Checksum(font));
    font.replace(headAt + 8, 4, adjustment.data);
    return font;
}

// Numbers and lists of the compact font format.
QByteArray CffNumber(int value)
{
    return Bytes().U8(28).U16(value).data;
}

QByteArray CffOffset(int value)
{
    return Bytes().U8(29).U32(quint32(value)).data;
}

QByteArray CffIndex(const QVector<QByteArray>& items)
{
    Bytes index;
    index.U16(items.size());
    if (items.isEmpty())
        return index.data;
    index.U8(2);
    int offset = 1;
    index.U16(offset);
    for (const QByteArray& item : items)
        index.U16(offset += item.size());
    for (const QByteArray& item : items)
        index.Raw(item);
    return index.data;
}

QByteArray CharString(int glyph)
{
    Bytes program;
    int x = 0, y = 0;
    for (const Block& block : BlocksOf(glyph)) {
        const int width = block.right - block.left, height = block.top - block.bottom;
        program.Raw(CffNumber(block.left - x)).Raw(CffNumber(block.bottom - y)).U8(21);
        program.Raw(CffNumber(width)).Raw(CffNumber(0)).Raw(CffNumber(0)).Raw(CffNumber(height));
        program.Raw(CffNumber(-width)).Raw(CffNumber(0)).U8(5);
        x = block.left;
        y = block.top;
    }
    return program.U8(14).data;
}

} // namespace

// Neighbours in a row are joined.
QVector<Block> BlocksOf(int glyph)
{
    if (glyph == 0)
        return {{0, 0, kColumns * kBlock, kRows * kBlock}};
    QVector<Block> blocks;
    for (int row = 0; row < kRows; ++row) {
        const int bottom = (kRows - 1 - row) * kBlock;
        for (int column = 0; column < kColumns; ++column) {
            const int first = column;
            while (column < kColumns && (kLetters[glyph - 1].rows[row] >> (kColumns - 1 - column) & 1))
                ++column;
            if (column > first)
                blocks.append({first * kBlock, bottom, column * kBlock, bottom + kBlock});
        }
    }
    return blocks;
}

int BlockGlyphCount()
{
    return kGlyphCount;
}

QChar BlockLetter(int glyph)
{
    return QLatin1Char(kLetters[glyph - 1].code);
}

QByteArray BlockTrueType(const BlockFontTables& tables)
{
    QMap<QByteArray, QByteArray> map;
    Bytes glyphs, places, widths;
    for (int glyph = 0; glyph < kGlyphCount; ++glyph) {
        places.U32(quint32(glyphs.data.size()));
        glyphs.Raw(GlyfEntry(glyph));
        widths.U16(kAdvance).U16(0);
    }
    places.U32(quint32(glyphs.data.size()));
    map["glyf"] = glyphs.data;
    map["head"] = HeadTable();
    map["hhea"] = HheaTable();
    map["hmtx"] = widths.data;
    map["loca"] = places.data;
    map["maxp"] = MaxpTable();
    if (tables.hasCmap)
        map["cmap"] = CmapTable();
    if (tables.hasNames) {
        map["name"] = NameTable();
        map["OS/2"] = Os2Table();
        map["post"] = Bytes().U32(0x00030000).Zeros(28).data;
    }
    return Assemble(map);
}

QByteArray BlockCff()
{
    QVector<QByteArray> programs;
    Bytes charset;
    charset.U8(0);
    for (int glyph = 0; glyph < kGlyphCount; ++glyph) {
        programs.append(CharString(glyph));
        if (glyph > 0)
            charset.U16(kLetters[glyph - 1].code -
                        31); // the standard strings begin with the printable ASCII characters
    }
    const QByteArray head = Bytes().U8(1).U8(0).U8(4).U8(2).data + CffIndex({"BlockSample"});
    const QByteArray tail = CffIndex({}) + CffIndex({}); // strings and shared routines: none
    const QByteArray charStrings = CffIndex(programs);
    const QByteArray privateDict = CffNumber(kAdvance) + Bytes().U8(20).data;
    auto topDict = [&](int charsetAt) {
        const int charStringsAt = charsetAt + charset.data.size(), privateAt = charStringsAt + charStrings.size();
        return CffOffset(charsetAt) + Bytes().U8(15).data + CffOffset(charStringsAt) + Bytes().U8(17).data +
               CffOffset(privateDict.size()) + CffOffset(privateAt) + Bytes().U8(18).data;
    };
    const int charsetAt = head.size() + CffIndex({topDict(0)}).size() + tail.size();
    return head + CffIndex({topDict(charsetAt)}) + tail + charset.data + charStrings + privateDict;
}

int BlockGlyph(QChar character)
{
    for (int index = 0; index < kLetterCount; ++index)
        if (QLatin1Char(kLetters[index].code) == character)
            return index + 1;
    return 0;
}

} // namespace samples
