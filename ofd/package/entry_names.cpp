#include "entry_names.h"

#include <QTextCodec>

#include <algorithm>

namespace ofd {

namespace {

// The upper half of code page 437; what DOS programs meant when they set no flag.
constexpr char16_t CodePage437[] = u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒáíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
                                   u"└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00a0";
static_assert(sizeof(CodePage437) / sizeof(char16_t) == 129, "128 characters and the end");

bool IsAscii(const QByteArray& bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return uchar(c) < 0x80; });
}

// The text, or a null string when the bytes are not of that encoding: then they do not come back from it. (The codecs'
// own count of bad characters leaves out half a character at the end.)
QString DecodeStrictly(const char* codecName, const QByteArray& bytes)
{
    QTextCodec* codec = QTextCodec::codecForName(codecName); // not owned
    if (!codec)
        return {};
    const QString text = codec->toUnicode(bytes);
    QTextCodec::ConverterState noMark(QTextCodec::IgnoreHeader);
    return codec->fromUnicode(text.constData(), text.size(), &noMark) == bytes ? text : QString();
}

QString DecodeCodePage437(const QByteArray& bytes)
{
    QString text;
    text.reserve(bytes.size());
    for (char c : bytes)
        text += uchar(c) < 0x80 ? QChar(uchar(c)) : QChar(CodePage437[uchar(c) - 0x80]);
    return text;
}

} // namespace

QString DecodeEntryName(const QByteArray& raw, bool isFlaggedUtf8)
{
    if (IsAscii(raw))
        return QString::fromLatin1(raw);
    QString text = DecodeStrictly("UTF-8", raw);
    if (text.isNull() && isFlaggedUtf8)
        return QString::fromUtf8(raw); // the flag lies; the damaged letters stay visible as such
    if (text.isNull())
        text = DecodeStrictly("GB18030", raw);
    return text.isNull() ? DecodeCodePage437(raw) : text;
}

NameEncoding EncodingOfName(const QByteArray& raw)
{
    constexpr ushort LastOfTwoBytes = 0x7ff;
    if (IsAscii(raw))
        return NameEncoding::Ascii;
    const QString text = DecodeStrictly("UTF-8", raw);
    const bool isGb18030 = !DecodeStrictly("GB18030", raw).isNull();
    if (text.isNull())
        return isGb18030 ? NameEncoding::Gb18030 : NameEncoding::CodePage437;
    // Longer sequences do not come about by chance.
    const bool isOfPairs = std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() <= LastOfTwoBytes; });
    return isOfPairs && isGb18030 ? NameEncoding::Utf8OrGb18030 : NameEncoding::Utf8;
}

QString DecodeGb18030Name(const QByteArray& raw)
{
    const QString text = DecodeStrictly("GB18030", raw);
    return text.isNull() ? DecodeEntryName(raw, false) : text;
}

QString NormaliseEntryName(const QString& name)
{
    QString result = name;
    result.replace(QLatin1Char('\\'), QLatin1Char('/'));
    while (result.contains(QLatin1String("//")))
        result.replace(QLatin1String("//"), QLatin1String("/"));
    int begin = 0;
    for (;;) {
        if (result.midRef(begin).startsWith(QLatin1Char('/')))
            begin += 1;
        else if (result.midRef(begin).startsWith(QLatin1String("./")))
            begin += 2;
        else
            return begin ? result.mid(begin) : result;
    }
}

QString FoldAsciiCase(const QString& name)
{
    QString folded = name;
    for (QChar& c : folded) {
        if (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))
            c = QChar(c.unicode() + ('a' - 'A'));
    }
    return folded;
}

QString FolderOf(const QString& partName)
{
    return partName.left(partName.lastIndexOf(QLatin1Char('/')) + 1);
}

QString FileNameOf(const QString& partName)
{
    return partName.mid(partName.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace ofd
