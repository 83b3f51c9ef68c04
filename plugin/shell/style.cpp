#include "style.h"

#include <frame/utils/dpi.h>

#include <QAbstractButton>

namespace PaneStyle {

int Scaled(int logical)
{
    return qRound(Utils::OVDpi::Instance()->ScaleSize(logical));
}

QString Separator()
{
    return Utils::OVDpi::Instance()->ScaleStyleSheet(
        QStringLiteral("background:#E4E6EB;border-radius: 2px;margin-right:10px;"));
}

void MakeToolButton(QAbstractButton* button, const QString& imageName, const QString& tooltip)
{
    const QString image = QStringLiteral("url(:/nodeQrc/image/%1_%2.svg)");
    // "image" and not "border-image": an SVG is then drawn at the button's size instead of being stretched. The grounds
    // show what the mouse is over and where the keyboard is.
    const QString sheet =
        QStringLiteral("QPushButton{border:none;border-radius:2px;background:transparent;image:%1;}"
                       "QPushButton:hover{background:#E4E6EB;}"
                       "QPushButton:focus{background:#DCE8FC;}"
                       "QPushButton:disabled{background:transparent;image:%2;}")
            .arg(image.arg(imageName, QStringLiteral("normal")), image.arg(imageName, QStringLiteral("disabled")));
    button->setFixedSize(Scaled(24), Scaled(24));
    button->setStyleSheet(Utils::OVDpi::Instance()->ScaleStyleSheet(sheet));
    button->setToolTip(tooltip);
    button->setAccessibleName(tooltip);
}

ContextMenuItemState MenuSwitch(bool isOn)
{
    ContextMenuItemState state;
    state.checked = isOn;
    state.hasIcon = true;
    state.iconPath =
        isOn ? QStringLiteral(":/nodeQrc/image/select.svg") : QStringLiteral(":/nodeQrc/image/unselect.svg");
    return state;
}

} // namespace PaneStyle
