#pragma once

#include <frame/base/export.h>

#include <QWidget>

class QEventLoop;

namespace Utils {
namespace Widgets {

// A popup shown at a global position; exec returns when it closes.
class FRAME_EXPORT OV_Popup : public QWidget
{
    Q_OBJECT
public:
    explicit OV_Popup(QWidget* parent);
    ~OV_Popup() override;
    // Kept on the screen that holds the position. Does nothing while it is open.
    void exec(const QPoint& globalPosition);
    // Takes the style sheet, scaled to the screen.
    void ScalePopup(const QString& styleSheet);

protected:
    void hideEvent(QHideEvent* event) override;

private:
    QEventLoop* loop = nullptr; // not owned; on exec's stack
};

} // namespace Widgets
} // namespace Utils
