#include "popup.h"

#include "dpi.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>

namespace Utils {
namespace Widgets {

OV_Popup::OV_Popup(QWidget* parent)
    : QWidget(parent, Qt::Popup | Qt::FramelessWindowHint)
{
}

OV_Popup::~OV_Popup()
{
    if (loop)
        loop->quit();
}

void OV_Popup::exec(const QPoint& globalPosition)
{
    if (loop)
        return;
    adjustSize();
    const QScreen* screen = QGuiApplication::screenAt(globalPosition);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    QPoint position = globalPosition;
    if (screen) {
        const QRect area = screen->availableGeometry();
        position.setX(qMax(area.left(), qMin(position.x(), area.right() - width() + 1)));
        position.setY(qMax(area.top(), qMin(position.y(), area.bottom() - height() + 1)));
    }
    move(position);
    show();

    QEventLoop waiting;
    const QPointer<OV_Popup> self(this);
    loop = &waiting;
    waiting.exec();
    if (self)
        self->loop = nullptr;
}

void OV_Popup::ScalePopup(const QString& styleSheet)
{
    setStyleSheet(OVDpi::Instance()->ScaleStyleSheet(styleSheet));
}

void OV_Popup::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (loop)
        loop->quit();
}

} // namespace Widgets
} // namespace Utils
