#pragma once

#include <QByteArray>
#include <QPair>
#include <QRectF>
#include <QString>
#include <QVector>
#include <QXmlStreamWriter>

namespace samples {

using Attributes = QVector<QPair<QString, QString>>;

constexpr const char* kOfdUri = "http://www.ofdspec.org/2016";

// A number as documents carry it: at most four decimals, no exponent, no trailing zeros.
QString Num(double value);
QString Num(int value);
QString Nums(const QVector<double>& values);
QString Box(const QRectF& rectMm);

// Writes one XML part whose elements all have the prefix "ofd".
class XmlPart
{
public:
    explicit XmlPart(const QString& root, const Attributes& attributes = {});
    XmlPart(const XmlPart&) = delete;
    XmlPart& operator=(const XmlPart&) = delete;

    XmlPart& Open(const QString& name, const Attributes& attributes = {});
    XmlPart& Close();
    XmlPart& Leaf(const QString& name, const Attributes& attributes = {}, const QString& text = QString());

    // Closes what is open; the bytes of the part. Nothing may be written afterwards.
    QByteArray Finish();

private:
    void WriteAttributes(const Attributes& attributes);

    QByteArray bytes;
    QXmlStreamWriter writer;
};

} // namespace samples
