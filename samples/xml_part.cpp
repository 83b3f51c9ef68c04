#include "xml_part.h"

#include <cmath>

namespace samples {

QString Num(double value)
{
    QString text = QString::number(value, 'f', 4);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

QString Num(int value)
{
    return QString::number(value);
}

QString Nums(const QVector<double>& values)
{
    QStringList texts;
    for (double value : values)
        texts.append(Num(value));
    return texts.join(QLatin1Char(' '));
}

QString Box(const QRectF& rectMm)
{
    return Nums({rectMm.x(), rectMm.y(), rectMm.width(), rectMm.height()});
}

XmlPart::XmlPart(const QString& root, const Attributes& attributes)
    : writer(&bytes)
{
    // One element a line, so that a line of the part can be found and replaced when a deviation is made of it.
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(0);
    writer.writeStartDocument();
    writer.writeStartElement(QLatin1String("ofd:") + root);
    writer.writeAttribute(QStringLiteral("xmlns:ofd"), QLatin1String(kOfdUri));
    WriteAttributes(attributes);
}

XmlPart& XmlPart::Open(const QString& name, const Attributes& attributes)
{
    writer.writeStartElement(QLatin1String("ofd:") + name);
    WriteAttributes(attributes);
    return *this;
}

XmlPart& XmlPart::Close()
{
    writer.writeEndElement();
    return *this;
}

XmlPart& XmlPart::Leaf(const QString& name, const Attributes& attributes, const QString& text)
{
    if (text.isEmpty()) {
        writer.writeEmptyElement(QLatin1String("ofd:") + name);
        WriteAttributes(attributes);
        return *this;
    }
    Open(name, attributes);
    writer.writeCharacters(text);
    return Close();
}

QByteArray XmlPart::Finish()
{
    writer.writeEndDocument();
    return bytes;
}

void XmlPart::WriteAttributes(const Attributes& attributes)
{
    for (const auto& attribute : attributes)
        writer.writeAttribute(attribute.first, attribute.second);
}

} // namespace samples
