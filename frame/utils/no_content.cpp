#include "no_content.h"

#include <QPainter>

OVPaintNoContent* OVPaintNoContent::ShowPixmap(QWidget* widget, const QRect& rect, QPixmap* pixmap)
{
    auto* picture = new OVPaintNoContent(widget, pixmap ? *pixmap : QPixmap());
    picture->setGeometry(rect);
    picture->show();
    return picture;
}

OVPaintNoContent::OVPaintNoContent(QWidget* parent, const QPixmap& pixmap)
    : QWidget(parent)
    , pixmap(pixmap)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
}

void OVPaintNoContent::SetPixRect(const QRect& rect)
{
    setGeometry(rect);
}

void OVPaintNoContent::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(rect(), pixmap);
}
