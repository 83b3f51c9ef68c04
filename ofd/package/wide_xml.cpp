#include "wide_xml.h"

#include <QTextCodec>

namespace ofd {

namespace {

// Null for bytes.
const char* WideEncoding(const QByteArray& bytes)
{
    if (bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff"))
        return "UTF-16"; // the mark tells which
    if (bytes.startsWith(QByteArray::fromRawData("<\0", 2)))
        return "UTF-16LE";
    return bytes.startsWith(QByteArray::fromRawData("\0<", 2)) ? "UTF-16BE" : nullptr;
}

} // namespace

QByteArray NarrowXml(const QByteArray& bytes)
{
    const char* wide = WideEncoding(bytes);
    return wide ? QTextCodec::codecForName(wide)->toUnicode(bytes).toUtf8() : bytes;
}

} // namespace ofd
