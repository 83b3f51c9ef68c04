#include "dpi.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>

namespace Utils {

OVDpi* OVDpi::Instance()
{
    static OVDpi instance;
    return &instance;
}

float OVDpi::DpiScale() const
{
    if (overridden > 0)
        return overridden;
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? qMax(1.0F, static_cast<float>(screen->logicalDotsPerInch() / 96)) : 1.0F;
}

QString OVDpi::ScaleStyleSheet(const QString& styleSheet) const
{
    static const QRegularExpression pixels(QStringLiteral("(?<![\\w.])(\\d*\\.?\\d+)px\\b"));
    QString scaled;
    int end = 0;
    QRegularExpressionMatchIterator matches = pixels.globalMatch(styleSheet);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        scaled += styleSheet.mid(end, match.capturedStart() - end);
        scaled += QString::number(qRound(match.captured(1).toDouble() * DpiScale())) + QLatin1String("px");
        end = match.capturedEnd();
    }
    return scaled + styleSheet.mid(end);
}

void OVDpi::OverrideScale(float scale)
{
    overridden = scale;
}

namespace DPI {

QString OV_Util::ScaleStyleSheet(const QString& styleSheet)
{
    return OVDpi::Instance()->ScaleStyleSheet(styleSheet);
}

} // namespace DPI

} // namespace Utils
