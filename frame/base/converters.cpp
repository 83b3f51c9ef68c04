#include "converters.h"

#include <QByteArray>

#include <cmath>
#include <cstring>

QString GQ_ToQStringFromUtf8(const CCA_String& text)
{
    return QString::fromUtf8(text.Bytes());
}

QString GQ_ToQString(const CCA_WString& text)
{
    return text.ToQString();
}

CCA_String GQ_ToCAS(const QString& text, bool utf8)
{
    return CCA_String(utf8 ? text.toUtf8() : text.toLocal8Bit());
}

QRectF GQ_ToQRectF(const CCA_GRect& rect)
{
    return QRectF(QPointF(rect.left, rect.top), QPointF(rect.right, rect.bottom));
}

CCA_GRect GQ_ToCAGRect(const QRectF& rect)
{
    return CCA_GRect(static_cast<float>(rect.left()), static_cast<float>(rect.top()), static_cast<float>(rect.right()),
                     static_cast<float>(rect.bottom()));
}

QPoint GQ_ToQPoint(const CCA_Point& point)
{
    return QPoint(point.x, point.y);
}

QPainterPath GQ_ToQPainterPath(const CCA_Path& path)
{
    QPainterPath result;
    const auto at = [&path](int position) {
        const CCA_GPoint point = path.GetPoint(position).point;
        return QPointF(point.x, point.y);
    };
    const int count = path.GetPointCount();
    for (int i = 0; i < count; ++i) {
        const CCA_Path::PointKind kind = path.GetPoint(i).kind;
        if (kind == CCA_Path::MoveTo) {
            result.moveTo(at(i));
        } else if (kind == CCA_Path::LineTo) {
            result.lineTo(at(i));
        } else if (i + 2 < count) {
            result.cubicTo(at(i), at(i + 1), at(i + 2));
            i += 2;
        } else {
            break; // a curve without its end point draws nothing
        }
        if (path.GetPoint(i).closesFigure)
            result.closeSubpath();
    }
    return result;
}

CCA_ArrayTemplate<float> OFD_StringToArray(const char* text, int length)
{
    CCA_ArrayTemplate<float> numbers;
    if (!text)
        return numbers;
    const int size =
        length > 0 ? static_cast<int>(qstrnlen(text, static_cast<uint>(length))) : static_cast<int>(std::strlen(text));
    const QList<QByteArray> pieces = QByteArray(text, size).simplified().split(' ');
    for (const QByteArray& piece : pieces) {
        bool isNumber = false;
        const float number = piece.toFloat(&isNumber);
        if (!isNumber || !std::isfinite(number))
            break;
        numbers.Add(number);
    }
    return numbers;
}
