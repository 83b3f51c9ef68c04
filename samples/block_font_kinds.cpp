#include "block_font_kinds.h"

#include "block_font.h"

#include <QMap>

namespace samples {

namespace {

constexpr int kHeader = 12, kEntry = 16;

using Tables = QMap<QByteArray, QByteArray>;

quint32 Get(const QByteArray& bytes, int at, int count)
{
    quint32 value = 0;
    for (int i = 0; i < count; ++i)
        value = value << 8 | quint8(bytes[at + i]);
    return value;
}

QByteArray Number(quint32 value, int count)
{
    QByteArray bytes;
    for (int i = count - 1; i >= 0; --i)
        bytes.append(char(value >> (8 * i)));
    return bytes;
}

Tables Split(const QByteArray& font)
{
    Tables tables;
    for (int i = 0; i < int(Get(font, 4, 2)); ++i) {
        const int entry = kHeader + kEntry * i;
        tables.insert(font.mid(entry, 4), font.mid(int(Get(font, entry + 8, 4)), int(Get(font, entry + 12, 4))));
    }
    return tables;
}

// `base` is where the font begins in its file, from where tables are counted.
QByteArray Join(const QByteArray& version, const Tables& tables, int base = 0)
{
    QByteArray directory = version + Number(quint32(tables.size()), 2) + QByteArray(6, '\0'), body;
    const int start = base + kHeader + kEntry * tables.size();
    for (auto table = tables.cbegin(); table != tables.cend(); ++table) {
        directory += table.key() + Number(0, 4) + Number(quint32(start + body.size()), 4) +
                     Number(quint32(table.value().size()), 4);
        body += table.value() + QByteArray((4 - table.value().size() % 4) % 4, '\0');
    }
    return directory + body;
}

const QByteArray kTrueType("\0\1\0\0", 4);

// Type 1.

QByteArray Encrypted(const QByteArray& plain, quint16 key)
{
    QByteArray result;
    for (const char byte : QByteArray(4, 'x') + plain) {
        const quint8 cipher = quint8(byte) ^ (key >> 8);
        key = quint16((quint32(cipher) + key) * 52845U + 22719U);
        result.append(char(cipher));
    }
    return result;
}

QByteArray TypeOneNumber(int value)
{
    return '\xff' + Number(quint32(value), 4);
}

QByteArray TypeOneProgram(int glyph)
{
    QByteArray program = TypeOneNumber(0) + TypeOneNumber(kBlockAdvance) + '\x0d';
    int x = 0, y = 0;
    const auto line = [&program](int dx, int dy) { program += TypeOneNumber(dx) + TypeOneNumber(dy) + '\x05'; };
    for (const Block& block : BlocksOf(glyph)) {
        program += TypeOneNumber(block.left - x) + TypeOneNumber(block.bottom - y) + '\x15';
        line(0, block.top - block.bottom);
        line(block.right - block.left, 0);
        line(0, block.bottom - block.top);
        program += '\x09';
        x = block.right;
        y = block.bottom;
    }
    return Encrypted(program + '\x0e', 4330);
}

QByteArray GlyphName(int glyph)
{
    static const char* const digits[] = {"zero", "one", "two",   "three", "four",
                                         "five", "six", "seven", "eight", "nine"};
    if (glyph == 0)
        return ".notdef";
    const QChar letter = BlockLetter(glyph);
    if (letter.isDigit())
        return digits[letter.digitValue()];
    return letter == QLatin1Char(' ') ? QByteArray("space") : QByteArray(1, letter.toLatin1());
}

QByteArray TypeOneHead()
{
    return "%!PS-AdobeFont-1.0: BlockSample 001.000\n11 dict begin\n/FontInfo 2 dict dup begin\n"
           "/FamilyName (Block Sample) readonly def\n/FullName (Block Sample) readonly def\nend readonly def\n"
           "/FontName /BlockSample def\n/PaintType 0 def\n/FontType 1 def\n"
           "/FontMatrix [0.001 0 0 0.001 0 0] readonly def\n/Encoding StandardEncoding def\n"
           "/FontBBox {0 0 500 700} readonly def\ncurrentdict end\ncurrentfile eexec\n";
}

QByteArray TypeOnePrivate()
{
    QByteArray text = "dup /Private 8 dict dup begin\n/RD {string currentfile exch readstring pop} executeonly def\n"
                      "/ND {noaccess def} executeonly def\n/NP {noaccess put} executeonly def\n/BlueValues [] def\n"
                      "/MinFeature {16 16} def\n/password 5839 def\n/lenIV 4 def\n2 index /CharStrings " +
                      QByteArray::number(BlockGlyphCount()) + " dict dup begin\n";
    for (int glyph = 0; glyph < BlockGlyphCount(); ++glyph) {
        const QByteArray program = TypeOneProgram(glyph);
        text += '/' + GlyphName(glyph) + ' ' + QByteArray::number(program.size()) + " RD " + program + " ND\n";
    }
    return text + "end\nend\nreadonly put\nnoaccess put\ndup /FontName get exch definefont pop\nmark currentfile "
                  "closefile\n";
}

QByteArray TypeOneTail()
{
    return QByteArray(512, '0') + "\ncleartomark\n";
}

QByteArray Segment(char kind, const QByteArray& bytes)
{
    QByteArray size = Number(quint32(bytes.size()), 4);
    std::reverse(size.begin(), size.end());
    return QByteArray("\x80") + kind + size + bytes;
}

} // namespace

QByteArray BlockOpenTypeCff()
{
    Tables tables = Split(BlockTrueType());
    tables.remove("glyf");
    tables.remove("loca");
    tables["CFF "] = BlockCff();
    tables["maxp"] = Number(0x00005000, 4) + Number(quint32(BlockGlyphCount()), 2);
    return Join("OTTO", tables);
}

QByteArray BlockCollection()
{
    const Tables wanted = Split(BlockTrueType());
    Tables other = wanted;
    other["loca"].fill('\0');
    QByteArray name = other["name"];
    const auto wide = [](const char* text) {
        QByteArray bytes;
        for (const char letter : QByteArray(text))
            bytes += Number(quint8(letter), 2);
        return bytes;
    };
    name.replace(wide("Block"), wide("Other"));
    other["name"] = name;
    const int start = 12 + 2 * 4;
    const QByteArray first = Join(kTrueType, other, start);
    const int second = start + first.size();
    return "ttcf" + Number(0x00010000, 4) + Number(2, 4) + Number(start, 4) + Number(quint32(second), 4) + first +
           Join(kTrueType, wanted, second);
}

QByteArray BlockTypeOneText()
{
    const QByteArray digits = Encrypted(TypeOnePrivate(), 55665).toHex();
    QByteArray lines;
    for (int at = 0; at < digits.size(); at += 64)
        lines += digits.mid(at, 64) + '\n';
    return TypeOneHead() + lines + TypeOneTail();
}

QByteArray BlockTypeOneBinary()
{
    return Segment(1, TypeOneHead()) + Segment(2, Encrypted(TypeOnePrivate(), 55665)) + Segment(1, TypeOneTail()) +
           QByteArray("\x80\x03");
}

QByteArray BlockWithout(const char* table)
{
    Tables tables = Split(BlockTrueType());
    if (tables.remove(table) != 1)
        qFatal("the font has no table %s", table);
    return Join(kTrueType, tables);
}

QByteArray BlockCutOff()
{
    Tables tables = Split(BlockTrueType());
    const QByteArray outlines = tables.take("glyf");
    const QByteArray whole = Join(kTrueType, tables);
    // The outlines come last, so that nothing but them is cut.
    QByteArray directory = whole.left(kHeader + kEntry * tables.size());
    QByteArray moved = directory.left(4) + Number(quint32(tables.size() + 1), 2) + QByteArray(6, '\0');
    for (int i = 0; i < tables.size(); ++i) {
        const int entry = kHeader + kEntry * i;
        moved +=
            directory.mid(entry, 8) + Number(Get(directory, entry + 8, 4) + kEntry, 4) + directory.mid(entry + 12, 4);
    }
    const QByteArray body = whole.mid(directory.size());
    moved += "glyf" + Number(0, 4) + Number(quint32(moved.size() + kEntry + body.size()), 4) +
             Number(quint32(outlines.size()), 4);
    return moved + body + outlines.left(outlines.size() - 8);
}

QByteArray BlockWithTableOutside(const char* table)
{
    QByteArray font = BlockTrueType();
    for (int i = 0; i < int(Get(font, 4, 2)); ++i) {
        const int entry = kHeader + kEntry * i;
        if (font.mid(entry, 4) == table)
            font.replace(entry + 8, 4, Number(0x7fffff00, 4));
    }
    return font;
}

QByteArray BlockWithChineseMap()
{
    Tables tables = Split(BlockTrueType());
    // One segment for the code of two bytes, one that ends the list.
    const int code = 0xb9fa, delta = BlockGlyph(QLatin1Char('A')) - code;
    QByteArray map =
        Number(4, 2) + Number(32, 2) + Number(0, 2) + Number(4, 2) + Number(4, 2) + Number(1, 2) + Number(0, 2);
    map += Number(code, 2) + Number(0xffff, 2) + Number(0, 2) + Number(code, 2) + Number(0xffff, 2);
    map += Number(quint32(delta), 2) + Number(1, 2) + Number(0, 2) + Number(0, 2);
    tables["cmap"] = Number(0, 2) + Number(1, 2) + Number(3, 2) + Number(3, 2) + Number(12, 4) + map;
    return Join(kTrueType, tables);
}

} // namespace samples
