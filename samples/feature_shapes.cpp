#include "feature_shapes.h"

#include "deviations.h"

namespace samples {

namespace {

QByteArray Numbers(std::initializer_list<double> numbers)
{
    QByteArray text;
    for (const double number : numbers)
        text += (text.isEmpty() ? "" : " ") + QByteArray::number(number);
    return text;
}

} // namespace

QByteArray RectangleData(const QRectF& rect)
{
    return "<ofd:AbbreviatedData>M " + Numbers({rect.left(), rect.top()}) + " L " +
           Numbers({rect.right(), rect.top()}) + " L " + Numbers({rect.right(), rect.bottom()}) + " L " +
           Numbers({rect.left(), rect.bottom()}) + " C</ofd:AbbreviatedData>";
}

QByteArray FilledRectangle(int id, const QRectF& rect, const QByteArray& fillColor, const QByteArray& attributes,
                           const QByteArray& inside)
{
    return "<ofd:PathObject ID=\"" + QByteArray::number(id) + "\" Boundary=\"" +
           Numbers({rect.x(), rect.y(), rect.width(), rect.height()}) + "\" Stroke=\"false\" Fill=\"true\" " +
           attributes + ">" + inside + fillColor + RectangleData(QRectF(QPointF(), rect.size())) +
           "</ofd:PathObject>\n";
}

void AddSquare(Package& package, const QByteArray& fillColor, const QByteArray& attributes, const QByteArray& inside)
{
    AddToFirstPage(package, FilledRectangle(900, QRectF(20, 100, 60, 60), fillColor, attributes, inside));
}

QByteArray PlainColor(const QByteArray& value, const QByteArray& attributes)
{
    return "<ofd:FillColor Value=\"" + value + "\" " + attributes + "/>";
}

} // namespace samples
