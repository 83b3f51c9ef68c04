#include "tag_names.h"

#include <QRegularExpression>
#include <QVector>

#include <algorithm>
#include <cctype>

namespace ofd {

namespace {

constexpr uint EmptyNameMark = 0xffff; // stands for a name without any characters
constexpr uint LastCodePoint = 0x10ffff;

struct Range
{
    uint first;
    uint last;
};

constexpr Range NameStartRanges[] = {{'A', 'Z'},       {'_', '_'},       {'a', 'z'},        {0xc0, 0xd6},
                                     {0xd8, 0xf6},     {0xf8, 0x2ff},    {0x370, 0x37d},    {0x37f, 0x1fff},
                                     {0x200c, 0x200d}, {0x2070, 0x218f}, {0x2c00, 0x2fef},  {0x3001, 0xd7ff},
                                     {0xf900, 0xfdcf}, {0xfdf0, 0xfffd}, {0x10000, 0xeffff}};
constexpr Range OtherNameRanges[] = {{'-', '.'}, {'0', '9'}, {0xb7, 0xb7}, {0x300, 0x36f}, {0x203f, 0x2040}};

template <size_t Count>
bool IsIn(uint code, const Range (&ranges)[Count])
{
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [code](const Range& range) { return range.first <= code && code <= range.last; });
}

bool MayStand(uint code, bool isFirst)
{
    return IsIn(code, NameStartRanges) || (!isFirst && IsIn(code, OtherNameRanges));
}

bool IsHexDigit(uint code)
{
    return code < 0x80 && std::isxdigit(int(code));
}

QString Escaped(uint code)
{
    const int width = code > 0xffff ? 6 : 4;
    return QStringLiteral("_x%1_").arg(QString::number(code, 16).toUpper().rightJustified(width, QLatin1Char('0')));
}

// Whether the underscore at the place would begin something that reads as an escape, once the rest is escaped.
bool LooksLikeEscape(const QVector<uint>& codes, int at)
{
    int digits = 0;
    while (digits < 8 && at + 2 + digits < codes.size() && IsHexDigit(codes.at(at + 2 + digits)))
        ++digits;
    if (at + 1 >= codes.size() || codes.at(at + 1) != 'x')
        return false;
    for (const int count : {4, 6, 8}) {
        const int next = at + 2 + count;
        if (digits >= count && next < codes.size() && (codes.at(next) == '_' || !MayStand(codes.at(next), false)))
            return true;
    }
    return false;
}

} // namespace

bool IsXmlName(const QString& text)
{
    const QVector<uint> codes = text.toUcs4();
    for (int i = 0; i < codes.size(); ++i) {
        if (!MayStand(codes.at(i), i == 0))
            return false;
    }
    return !codes.isEmpty();
}

QString EscapeTagName(const QString& name)
{
    if (name.isEmpty())
        return Escaped(EmptyNameMark);
    QVector<uint> codes = name.toUcs4();
    for (uint& code : codes) {
        if (QChar::isSurrogate(code))
            code = QChar::ReplacementCharacter;
    }
    // These elements stand for something else inside a tag.
    const bool isTaken = name == QLatin1String("ObjectRef") || name == QLatin1String("ObjectData");
    QString escaped;
    for (int i = 0; i < codes.size(); ++i) {
        const uint code = codes.at(i);
        const bool stays = MayStand(code, i == 0) && !(code == '_' && LooksLikeEscape(codes, i));
        if (stays && !(isTaken && i == 0))
            escaped += QString::fromUcs4(&code, 1);
        else
            escaped += Escaped(code);
    }
    return escaped;
}

QString UnescapeTagName(const QString& name)
{
    static const QRegularExpression escape(QStringLiteral("_x([0-9A-Fa-f]{4}|[0-9A-Fa-f]{6}|[0-9A-Fa-f]{8})_"));
    QString result;
    int from = 0;
    for (QRegularExpressionMatchIterator i = escape.globalMatch(name); i.hasNext();) {
        const QRegularExpressionMatch match = i.next();
        result += name.midRef(from, match.capturedStart() - from);
        const uint code = match.capturedRef(1).toUInt(nullptr, 16);
        if (code > LastCodePoint)
            result += match.capturedRef();
        else if (code != EmptyNameMark)
            result += QString::fromUcs4(&code, 1);
        from = match.capturedEnd();
    }
    return result + name.midRef(from);
}

} // namespace ofd
