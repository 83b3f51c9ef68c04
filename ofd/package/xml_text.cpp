#include "xml_text.h"

#include <charconv>
#include <cmath>

namespace ofd {

namespace {

// Text with what XML forbids taken out and broken surrogate pairs made good.
QString Allowed(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            result += c;
            result += text.at(++i);
        } else if (c.isSurrogate()) {
            result += QChar(QChar::ReplacementCharacter);
        } else if (c.unicode() >= 0xfffe ||
                   (c.unicode() < 0x20 && c != QLatin1Char('\t') && c != QLatin1Char('\n') && c != QLatin1Char('\r'))) {
            continue;
        } else {
            result += c;
        }
    }
    return result;
}

QByteArray Escape(const QString& text, bool isAttribute)
{
    const QByteArray utf8 = Allowed(text).toUtf8();
    QByteArray result;
    result.reserve(utf8.size());
    for (const char c : utf8) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '>')
            result += "&gt;";
        else if (c == '"')
            result += "&quot;";
        else if (c == '\r') // else a reader takes it for half a line end
            result += "&#13;";
        else if (isAttribute && c == '\n')
            result += "&#10;";
        else if (isAttribute && c == '\t')
            result += "&#9;";
        else
            result += c;
    }
    return result;
}

} // namespace

QByteArray EscapeText(const QString& text)
{
    return Escape(text, false);
}
QByteArray EscapeAttribute(const QString& text)
{
    return Escape(text, true);
}

QString FormatId(int id)
{
    return QString::number(quint32(id));
}

QByteArray FormatNumber(double value, int decimals)
{
    if (!std::isfinite(value))
        return QByteArrayLiteral("0");
    char buffer[400]; // the largest double has 309 digits in front of the point
    const std::to_chars_result end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    QByteArray text(buffer, int(end.ptr - buffer));
    if (text.contains('.')) {
        while (text.endsWith('0'))
            text.chop(1);
        if (text.endsWith('.'))
            text.chop(1);
    }
    return text == "-0" ? QByteArrayLiteral("0") : text;
}

QByteArray FormatNumbers(const std::vector<double>& values, int decimals)
{
    QByteArray text;
    for (const double value : values) {
        if (!text.isEmpty())
            text += ' ';
        text += FormatNumber(value, decimals);
    }
    return text;
}

XmlFragment::XmlFragment(const QByteArray& prefix)
    : prefix(prefix)
{
}

XmlFragment& XmlFragment::Open(const QByteArray& localName)
{
    FinishStartTag();
    openNames.push_back(prefix + localName);
    bytes += '<' + openNames.back();
    isInStartTag = true;
    return *this;
}

XmlFragment& XmlFragment::Attribute(const QByteArray& name, const QString& value)
{
    Q_ASSERT(isInStartTag);
    bytes += ' ' + name + "=\"" + EscapeAttribute(value) + '"';
    return *this;
}

XmlFragment& XmlFragment::Attribute(const QByteArray& name, double value, int decimals)
{
    return Attribute(name, QString::fromLatin1(FormatNumber(value, decimals)));
}

XmlFragment& XmlFragment::Text(const QString& text)
{
    if (text.isEmpty())
        return *this;
    FinishStartTag();
    bytes += EscapeText(text);
    return *this;
}

XmlFragment& XmlFragment::Raw(const QByteArray& xml)
{
    if (xml.isEmpty())
        return *this;
    FinishStartTag();
    bytes += xml;
    return *this;
}

XmlFragment& XmlFragment::Close()
{
    Q_ASSERT(!openNames.empty());
    if (isInStartTag)
        bytes += "/>";
    else
        bytes += "</" + openNames.back() + '>';
    isInStartTag = false;
    openNames.pop_back();
    return *this;
}

XmlFragment& XmlFragment::Element(const QByteArray& localName, const QString& text)
{
    return Open(localName).Text(text).Close();
}

QByteArray XmlFragment::GetBytes()
{
    while (!openNames.empty())
        Close();
    return bytes;
}

void XmlFragment::FinishStartTag()
{
    if (isInStartTag)
        bytes += '>';
    isInStartTag = false;
}

} // namespace ofd
