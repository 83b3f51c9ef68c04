#include "pdf_file.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

namespace {

QSizeF MediaBox(const QString& object)
{
    static const QRegularExpression box("/MediaBox \\[[\\d.]+ [\\d.]+ ([\\d.]+) ([\\d.]+)\\]");
    const QRegularExpressionMatch match = box.match(object);
    return {match.captured(1).toDouble(), match.captured(2).toDouble()};
}

int NumberOf(const QString& object, const char* key)
{
    const QRegularExpression number(QStringLiteral("/%1 (\\d+)").arg(QLatin1String(key)));
    return number.match(object).captured(1).toInt();
}

QImage Picture(const QString& head, const QByteArray& stream)
{
    const int width = NumberOf(head, "Width");
    const int height = NumberOf(head, "Height");
    const bool isGray = head.contains("/DeviceGray");
    const int bytesPerPixel = isGray ? 1 : 3;
    const QByteArray bytes = qUncompress(QByteArray(4, '\0') + stream);
    if (bytes.size() < width * height * bytesPerPixel)
        return {};
    const QImage view(reinterpret_cast<const uchar*>(bytes.constData()), width, height, width * bytesPerPixel,
                      isGray ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
    return view.convertToFormat(QImage::Format_RGB32);
}

} // namespace

PdfFile PdfFile::Read(const QString& path)
{
    PdfFile pdf;
    QFile file(path);
    const bool isOpen = file.open(QIODevice::ReadOnly);
    const QByteArray bytes = file.readAll();
    if (!isOpen || !bytes.startsWith("%PDF-") || !bytes.trimmed().endsWith("%%EOF")) {
        QTest::qFail(qPrintable("no whole PDF file: " + path), __FILE__, __LINE__);
        return pdf;
    }
    int at = 0;
    while ((at = bytes.indexOf(" 0 obj\n", at)) >= 0) {
        const int end = bytes.indexOf("endobj", at);
        const QByteArray object = bytes.mid(at, end - at);
        const int stream = object.indexOf("stream\n");
        const QString head = QString::fromLatin1(stream < 0 ? object : object.left(stream));
        if (head.contains(QRegularExpression("/Type /Page\\s")))
            pdf.pageSizes << MediaBox(head);
        if (head.contains("/Subtype /Image") && head.contains("/FlateDecode"))
            pdf.pictures << Picture(head, object.mid(stream + 7));
        at += 7;
    }
    return pdf;
}
