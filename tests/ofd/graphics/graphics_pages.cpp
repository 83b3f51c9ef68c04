#include "graphics_pages.h"

namespace {

QByteArray Numbers(const QRectF& rect)
{
    return QByteArray::number(rect.x()) + ' ' + QByteArray::number(rect.y()) + ' ' + QByteArray::number(rect.width()) +
           ' ' + QByteArray::number(rect.height());
}

QByteArray Point(const QPointF& point)
{
    return QByteArray::number(point.x()) + ' ' + QByteArray::number(point.y());
}

} // namespace

QByteArray RectData(const QRectF& rect)
{
    return "<ofd:AbbreviatedData>M " + Point(rect.topLeft()) + " L " + Point(rect.topRight()) + " L " +
           Point(rect.bottomRight()) + " L " + Point(rect.bottomLeft()) + " C</ofd:AbbreviatedData>";
}

QByteArray FilledBox(const QRectF& boxMm, const QByteArray& fillColor, const QByteArray& attributes,
                     const QByteArray& clips)
{
    return "<ofd:PathObject ID=\"1\" Boundary=\"" + Numbers(boxMm) + "\" Stroke=\"false\" Fill=\"true\" " + attributes +
           ">" + clips + fillColor + RectData(QRectF(QPointF(), boxMm.size())) + "</ofd:PathObject>";
}

QByteArray Colour(const QByteArray& value, const QByteArray& more)
{
    return "<ofd:FillColor Value=\"" + value + "\" " + more + "/>";
}

bool Shows(const QImage& image, double xMm, double yMm, const QColor& expected, int tolerance)
{
    const QColor found = ColourAt(image, xMm, yMm);
    if (IsNear(found, expected, tolerance))
        return true;
    qInfo("at %g %g: %s in place of %s", xMm, yMm, qPrintable(found.name()), qPrintable(expected.name()));
    return false;
}
