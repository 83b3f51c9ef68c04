#include "object_writer.h"

#include <cmath>

namespace samples {

namespace {

QString StarData(const QPointF& centre, double radius)
{
    QStringList points;
    for (int corner = 0; corner < 10; ++corner) {
        const double r = corner % 2 == 0 ? radius : radius * 0.382;
        const double angle = -M_PI / 2 + corner * M_PI / 5;
        points.append(Nums({centre.x() + r * std::cos(angle), centre.y() + r * std::sin(angle)}));
    }
    return QStringLiteral("M ") + points.join(QStringLiteral(" L ")) + QStringLiteral(" C");
}

} // namespace

void DrawSeal(ObjectWriter& objects, const QSizeF& sizeMm, const QString& name, const QString& below, const Font& font)
{
    const QColor red(0xD8, 0x1E, 0x1E, 220);
    const double inset = 0.6;
    PathStyle ring;
    ring.stroke = red;
    ring.widthMm = 0.9;
    objects.Ellipse(QRectF(QPointF(inset, inset), sizeMm - QSizeF(2 * inset, 2 * inset)), ring);
    PathStyle solid;
    solid.stroke = QColor();
    solid.fill = red;
    const QPointF centre(sizeMm.width() / 2, sizeMm.height() / 2);
    const double starRadius = sizeMm.height() * 0.15;
    objects.Path(QRectF(QPointF(0, 0), sizeMm), StarData(centre, starRadius), solid);
    TextStyle style;
    style.font = font;
    style.colour = red;
    style.sizeMm = sizeMm.height() * 0.13;
    const QVector<uint> codes = name.toUcs4();
    const double spread = qMin(250.0, 26.0 * (codes.size() - 1)) * M_PI / 180;
    for (int at = 0; at < codes.size(); ++at) {
        const double angle = -M_PI / 2 - spread / 2 + spread * at / qMax(1, codes.size() - 1);
        const double rx = sizeMm.width() / 2 - style.sizeMm * 1.5, ry = sizeMm.height() / 2 - style.sizeMm * 1.5;
        const QPointF place(centre.x() + rx * std::cos(angle), centre.y() + ry * std::sin(angle));
        // Upright along the normal of the ellipse at that place.
        const double turn = std::atan2(std::sin(angle) / ry, std::cos(angle) / rx) * 180 / M_PI + 90;
        objects.TextTurned(place, turn, QString::fromUcs4(&codes[at], 1), style);
    }
    if (below.isEmpty())
        return;
    style.sizeMm = sizeMm.height() * 0.1;
    objects.TextCentred(QPointF(centre.x(), sizeMm.height() * 0.8), below, style);
}

} // namespace samples
