#pragma once

#include <frame/base/export.h>

#include <QAbstractButton>
#include <QDialog>
#include <QPoint>
#include <QPointer>

namespace Utils {
namespace Widgets {

// A frameless modal dialog, movable with the mouse, scaled to the screen.
class FRAME_EXPORT OV_Dialog : public QDialog
{
    Q_OBJECT
public:
    // `movable`: a drag on its empty ground moves it.
    explicit OV_Dialog(QWidget* parent, bool movable = true);
    // Scales fixed sizes and the style sheet by the screen's factor, once; `styleSheet` replaces the present one when
    // it is not empty.
    void ScaleDialog(bool withSizes, const QString& styleSheet);
    // The button that Enter presses; not owned.
    void SetDefaultBtn(QAbstractButton* button);

signals:
    // Enter was pressed; the default button is clicked afterwards. Whoever hears of it may delete the dialog.
    void PressEnter();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QPointer<QAbstractButton> defaultButton; // not owned
    QPoint grip;
    bool movable;
    bool isMoving = false;
    bool isScaled = false;
};

} // namespace Widgets
} // namespace Utils
