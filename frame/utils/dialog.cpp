#include "dialog.h"

#include "dpi.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QMouseEvent>

namespace Utils {
namespace Widgets {

namespace {

// Multiplies what was fixed at 96 DPI; a size that the layout decides stays the layout's.
void ScaleFixedSize(QWidget* widget, float scale)
{
    const QSize least = widget->minimumSize();
    const QSize most = widget->maximumSize();
    const auto scaled = [scale](int size) { return size == QWIDGETSIZE_MAX ? size : qRound(size * scale); };
    widget->setMaximumSize(scaled(most.width()), scaled(most.height()));
    widget->setMinimumSize(scaled(least.width()), scaled(least.height()));
}

} // namespace

OV_Dialog::OV_Dialog(QWidget* parent, bool movable)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
    , movable(movable)
{
    setModal(true);
}

void OV_Dialog::ScaleDialog(bool withSizes, const QString& styleSheet)
{
    const OVDpi* dpi = OVDpi::Instance();
    if (!styleSheet.isEmpty())
        setStyleSheet(dpi->ScaleStyleSheet(styleSheet));
    if (isScaled)
        return;
    isScaled = true;
    if (styleSheet.isEmpty())
        setStyleSheet(dpi->ScaleStyleSheet(this->styleSheet()));
    const float scale = dpi->DpiScale();
    if (!withSizes || scale <= 1)
        return;
    const QSize present = size();
    ScaleFixedSize(this, scale);
    const QList<QWidget*> widgets = findChildren<QWidget*>();
    for (QWidget* widget : widgets)
        ScaleFixedSize(widget, scale);
    resize(present * scale);
}

void OV_Dialog::SetDefaultBtn(QAbstractButton* button)
{
    defaultButton = button;
}

void OV_Dialog::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QDialog::keyPressEvent(event);
        return;
    }
    // The dialog's own choice of a default button is left out: it would press a second one.
    event->accept();
    const QPointer<OV_Dialog> self(this);
    emit PressEnter(); // whoever hears of it may delete the dialog
    if (self && defaultButton && defaultButton->isEnabled())
        defaultButton->click();
}

void OV_Dialog::mousePressEvent(QMouseEvent* event)
{
    if (movable && event->button() == Qt::LeftButton) {
        isMoving = true;
        grip = event->globalPos() - frameGeometry().topLeft();
    }
    QDialog::mousePressEvent(event);
}

void OV_Dialog::mouseMoveEvent(QMouseEvent* event)
{
    if (isMoving)
        move(event->globalPos() - grip);
    QDialog::mouseMoveEvent(event);
}

void OV_Dialog::mouseReleaseEvent(QMouseEvent* event)
{
    isMoving = false;
    QDialog::mouseReleaseEvent(event);
}

} // namespace Widgets
} // namespace Utils
