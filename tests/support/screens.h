#pragma once

#include <QImage>
#include <QString>

class QWidget;

// Pictures of widgets for the eye, below the folder that TETO_SCREENS names; nowhere when it is not set.
namespace Screens {

// The widget at a scale, as an image of scale times its size.
QImage Grab(QWidget* widget, qreal scale = 1);
// Writes NAME.png and NAME@2x.png and gives the first one's path; empty when the folder is not set or a file could not
// be written.
QString SaveScreen(QWidget* widget, const QString& name);
// How many different colours the picture has, up to 1,000: a blank one has 1.
int ColourCount(const QImage& image);

} // namespace Screens
