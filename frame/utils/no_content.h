#pragma once

#include <frame/base/export.h>

#include <QPixmap>
#include <QPointer>
#include <QRect>
#include <QWidget>

// Paints a picture in a widget over its content until deleted. The picture takes no mouse events. Deleted by whoever
// asked for it, or with the widget.
class FRAME_EXPORT OVPaintNoContent : public QWidget
{
    Q_OBJECT
public:
    // The rectangle is in the widget's coordinates; the pixmap is copied.
    static OVPaintNoContent* ShowPixmap(QWidget* widget, const QRect& rect, QPixmap* pixmap);
    void SetPixRect(const QRect& rect); // moves the picture
    QRect PixRect() const { return geometry(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    OVPaintNoContent(QWidget* parent, const QPixmap& pixmap);
    QPixmap pixmap;
};
