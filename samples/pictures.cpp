#include "pictures.h"

#include "jbig2_encoder.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

namespace samples {

namespace {

constexpr int kModules = 25;

QByteArray Encode(const QImage& image, const char* format, int quality = -1)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format, quality))
        qFatal("no %s encoder", format);
    return bytes;
}

QPainterPath Hill(double base, double height, double shift, int width, int bottom)
{
    QPainterPath path(QPointF(0, bottom));
    path.lineTo(0, base);
    path.cubicTo(width * (0.2 + shift), base - height, width * (0.4 + shift), base + height, width, base - height / 2);
    path.lineTo(width, bottom);
    path.closeSubpath();
    return path;
}

QImage Landscape()
{
    QImage image(480, 300, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, 300);
    sky.setColorAt(0, QColor(0x7F, 0xB2, 0xF0));
    sky.setColorAt(1, QColor(0xFD, 0xEC, 0xD2));
    painter.fillRect(image.rect(), sky);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xFF, 0xD9, 0x66));
    painter.drawEllipse(QPointF(360, 80), 34, 34);
    painter.setBrush(QColor(0x8D, 0xA9, 0xC4));
    painter.drawPath(Hill(170, 90, 0.1, 480, 300));
    painter.setBrush(QColor(0x5B, 0x8C, 0x6E));
    painter.drawPath(Hill(215, 60, 0.25, 480, 300));
    painter.setBrush(QColor(0x34, 0x66, 0x4E));
    painter.drawPath(Hill(260, 40, 0.05, 480, 300));
    return image;
}

QImage Quadrants()
{
    QImage image(64, 64, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.fillRect(0, 0, 32, 32, QColor(220, 40, 40));
    painter.fillRect(32, 0, 32, 32, QColor(40, 160, 60));
    painter.fillRect(0, 32, 32, 32, QColor(40, 80, 220));
    painter.fillRect(32, 32, 32, 32, QColor(240, 200, 40));
    return image;
}

bool IsFinder(int x, int y, int left, int top)
{
    const int dx = x - left, dy = y - top;
    if (dx < 0 || dy < 0 || dx > 6 || dy > 6)
        return false;
    const bool isRing = dx == 0 || dy == 0 || dx == 6 || dy == 6;
    return isRing || (dx >= 2 && dx <= 4 && dy >= 2 && dy <= 4);
}

// A pattern that looks like a square code and says nothing.
bool IsModuleBlack(int x, int y)
{
    const int far = kModules - 7;
    if ((x < 8 && y < 8) || (x >= far - 1 && y < 8) || (x < 8 && y >= far - 1))
        return IsFinder(x, y, 0, 0) || IsFinder(x, y, far, 0) || IsFinder(x, y, 0, far);
    return ((x * x * 7 + y * 13 + x * y * 5 + (x ^ y) * 3) % 11) < 5;
}

QImage Code(int scale)
{
    QImage image(kModules * scale, kModules * scale, QImage::Format_Mono);
    image.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    image.fill(0); // the bits that pad a row too: they go into the file
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, IsModuleBlack(x / scale, y / scale) ? 1 : 0);
    return image;
}

} // namespace

QByteArray LandscapePng()
{
    return Encode(Landscape(), "PNG");
}

QByteArray LandscapeJpeg()
{
    return Encode(Landscape(), "JPG", 88);
}

QByteArray LogoPng()
{
    QImage image(240, 240, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x2F, 0x6F, 0xDE, 190));
    painter.drawEllipse(QPointF(88, 92), 72, 72);
    painter.setBrush(QColor(0xF2, 0xA3, 0x3A, 190));
    painter.drawEllipse(QPointF(152, 92), 72, 72);
    painter.setBrush(QColor(0x2F, 0xA0, 0x8A, 190));
    painter.drawEllipse(QPointF(120, 150), 72, 72);
    painter.end();
    return Encode(image, "PNG");
}

QByteArray CodePng()
{
    return Encode(Code(4), "PNG");
}

QByteArray QuadrantsPng()
{
    return Encode(Quadrants(), "PNG");
}

QByteArray QuadrantsJpeg()
{
    return Encode(Quadrants(), "JPG", 95);
}

QByteArray CodeJbig2()
{
    return EncodeJbig2(Code(4));
}

} // namespace samples
