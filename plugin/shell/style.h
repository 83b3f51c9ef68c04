#pragma once

#include <frame/view/context_menu.h>

#include <QSize>
#include <QString>

class QAbstractButton;

// Looks that the panes share. Sizes are in logical units and scaled inside.
namespace PaneStyle {
// A length in pixels of the screen.
int Scaled(int logical);
// The one-pixel line below the buttons.
QString Separator();
// A square tool button with an image for each state: images are ":/nodeQrc/image/<name>_normal.svg" and
// "<name>_disabled.svg".
void MakeToolButton(QAbstractButton* button, const QString& imageName, const QString& tooltip);
// A line of a context menu that switches something on and off, with the picture of a ticked or an empty box.
ContextMenuItemState MenuSwitch(bool isOn);
} // namespace PaneStyle
