#include "hostile_fonts.h"

#include <QMap>
#include <QtEndian>

#include <initializer_list>

namespace samples {

namespace {

QByteArray U16(std::initializer_list<int> values)
{
    QByteArray bytes;
    for (const int value : values)
        bytes.append(char(value >> 8)).append(char(value));
    return bytes;
}

QByteArray U32(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray Filled(QByteArray bytes)
{
    bytes.append((4 - bytes.size() % 4) % 4, '\0');
    return bytes;
}

QByteArray Font(const QByteArray& glyf, const QVector<int>& places)
{
    const int count = places.size() - 1;
    QByteArray loca;
    for (const int place : places)
        loca += U32(quint32(place));
    const QMap<QByteArray, QByteArray> tables = {
        {"glyf", glyf},
        {"head", U32(0x00010000) + QByteArray(8, '\0') + U32(0x5f0f3cf5) + U16({3, 1000}) + QByteArray(16, '\0') +
                     U16({0, 0, 500, 700, 0, 8, 2, 1, 0})},
        {"hhea", U32(0x00010000) + U16({800, -200, 0, 600, 0, 0, 500, 1}) + QByteArray(14, '\0') + U16({1})},
        {"hmtx", U16({600, 0}) + QByteArray(2 * (count - 1), '\0')},
        {"loca", loca},
        {"maxp", U32(0x00010000) + U16({count}) + QByteArray(26, '\xff')}};
    QByteArray head = U32(0x00010000) + U16({tables.size(), 64, 2, 32});
    QByteArray body;
    const int start = head.size() + 16 * tables.size();
    for (auto table = tables.cbegin(); table != tables.cend(); ++table) {
        head += table.key() + U32(0) + U32(quint32(start + body.size())) + U32(quint32(table->size()));
        body += Filled(*table);
    }
    return head + body;
}

// A list of byte strings as CFF has it.
QByteArray Index(const QVector<QByteArray>& items)
{
    if (items.isEmpty())
        return U16({0});
    QByteArray places = U32(1);
    QByteArray data;
    for (const QByteArray& item : items) {
        data += item;
        places += U32(quint32(data.size()) + 1);
    }
    return U16({items.size()}) + '\4' + places + data;
}

QByteArray TopDict(int charStrings, int privateDict)
{
    const auto number = [](int value) { return '\x1d' + U32(quint32(value)); };
    return Index({number(charStrings) + '\x11' + number(0) + number(privateDict) + '\x12'});
}

} // namespace

QByteArray GlyphOfGlyphs(const QVector<int>& parts)
{
    constexpr int offsetsArePlaces = 0x2;
    constexpr int moreFollow = 0x20;
    QByteArray glyph = U16({-1, 0, 0, 100, 100});
    for (int i = 0; i < parts.size(); ++i)
        glyph += U16({offsetsArePlaces | (i + 1 < parts.size() ? moreFollow : 0), parts.at(i), 0});
    return Filled(glyph);
}

QByteArray GlyphOfPoints(int points)
{
    QByteArray flags; // on the outline; a short step to the right, or to the left; none upward
    for (int i = 0; i < points; ++i)
        flags.append(i % 2 ? '\x23' : '\x33');
    return Filled(U16({1, 0, 0, 100, 100, points - 1, 0}) + flags + QByteArray(points, '\x32'));
}

QByteArray FontOfGlyphs(const QVector<QByteArray>& glyphs)
{
    QByteArray glyf;
    QVector<int> places{0};
    for (const QByteArray& glyph : glyphs) {
        glyf += glyph;
        places.append(glyf.size());
    }
    return Font(glyf, places);
}

QByteArray FontOfNestedGlyphs(int depth, int times, const QByteArray& last)
{
    QVector<QByteArray> glyphs{QByteArray()};
    for (int i = 1; i <= depth; ++i)
        glyphs.append(GlyphOfGlyphs(QVector<int>(times, i + 1)));
    glyphs.append(last);
    return FontOfGlyphs(glyphs);
}

QByteArray FontOfOneGlyph(const QByteArray& glyph, int count)
{
    QVector<int> places;
    for (int i = 0; i <= count; ++i)
        places.append(i % 2 ? glyph.size() : 0);
    return Font(glyph, places);
}

QByteArray CffOfCalls(int calls)
{
    constexpr int depth = 9;
    constexpr int callers = 200;
    constexpr char callSubroutine = 29;
    constexpr char firstNumber = 32; // of subroutine 0
    QVector<QByteArray> subroutines;
    for (int i = 0; i < depth; ++i)
        subroutines.append(QByteArray().append(char(firstNumber + i + 1)).append(callSubroutine).repeated(calls) +
                           '\x0b');
    subroutines.append("\x0b");
    const QByteArray before = QByteArray("\1\0\4\4", 4) + Index({"A"});
    const QByteArray behind = Index({}) + Index(subroutines);
    const QByteArray caller = QByteArray().append(firstNumber).append(callSubroutine).append('\x0e');
    const QByteArray charStrings = Index(QVector<QByteArray>{"\x0e"} + QVector<QByteArray>(callers, caller));
    const int start = before.size() + TopDict(0, 0).size() + behind.size();
    return before + TopDict(start, start + charStrings.size()) + behind + charStrings;
}

} // namespace samples
