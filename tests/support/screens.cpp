#include "screens.h"

#include <QDir>
#include <QPixmap>
#include <QSet>
#include <QWidget>

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

} // namespace Screens
