#include "screens.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QHoverEvent>
#include <QPainter>
#include <QPixmap>
#include <QSet>
#include <QtTest>

namespace Screens {

QImage Grab(QWidget* widget, qreal scale)
{
    QPixmap pixmap(widget->size() * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    widget->render(&pixmap);
    return pixmap.toImage();
}

QString SaveScreen(QWidget* widget, const QString& name)
{
    const QString folder = qEnvironmentVariable("TETO_SCREENS");
    if (folder.isEmpty() || !QDir().mkpath(folder))
        return {};
    const QString path = folder + QLatin1Char('/') + name + QLatin1String(".png");
    const QString doubled = folder + QLatin1Char('/') + name + QLatin1String("@2x.png");
    return Grab(widget).save(path) && Grab(widget, 2).save(doubled) ? path : QString();
}

int ColourCount(const QImage& image)
{
    constexpr int most = 1000;
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            colours.insert(image.pixel(x, y));
            if (colours.size() >= most)
                return most;
        }
    }
    return colours.size();
}

void Shoot(QWidget* widget, const QString& name)
{
    if (qEnvironmentVariableIsSet("TETO_SCREENS"))
        QVERIFY(!SaveScreen(widget, name).isEmpty());
    QVERIFY2(ColourCount(Grab(widget)) > 8, qPrintable(name));
}

QImage PaintCell(const QAbstractItemView* view, const QModelIndex& index, QStyle::State state, const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    QPainter painter(&image);
    painter.setBackground(QColor(0xF5, 0xF7, 0xF9));
    QStyleOptionViewItem option;
    option.rect = QRect(QPoint(), size);
    option.state = state;
    view->itemDelegate()->paint(&painter, option, index);
    return image;
}

QColor TintedGround(double alpha)
{
    const auto mix = [alpha](int ground, int colour) { return qRound(ground * (1 - alpha) + colour * alpha); };
    return QColor(mix(0xF5, 198), mix(0xF7, 206), mix(0xF9, 214));
}

bool Near(const QColor& a, const QColor& b)
{
    return qAbs(a.red() - b.red()) <= 1 && qAbs(a.green() - b.green()) <= 1 && qAbs(a.blue() - b.blue()) <= 1;
}

void Hover(QWidget* viewport, const QPoint& place)
{
    QHoverEvent enter(QEvent::HoverEnter, place, QPoint(-1, -1));
    QApplication::sendEvent(viewport, &enter);
    QHoverEvent move(QEvent::HoverMove, place, QPoint(0, 0));
    QApplication::sendEvent(viewport, &move);
}

bool ShowsIndicator(const QImage& viewport, const QLine& line)
{
    int dashes = 0;
    for (int x = line.x1(); x <= line.x2(); ++x)
        dashes += viewport.pixelColor(x, line.y1()) == QColor(100, 101, 106) ? 1 : 0;
    return line.dx() > 0 && dashes > line.dx() / 4;
}

} // namespace Screens
