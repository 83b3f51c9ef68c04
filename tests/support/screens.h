#pragma once

#include <QImage>
#include <QLine>
#include <QString>
#include <QStyle>

class QAbstractItemView;
class QModelIndex;
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
// SaveScreen where the folder is set; fails the test for a picture that is not written or that is blank.
void Shoot(QWidget* widget, const QString& name);

// One cell as the view's delegate paints it in this state, over red where it paints nothing.
QImage PaintCell(const QAbstractItemView* view, const QModelIndex& index, QStyle::State state, const QSize& size);
// The ground of a pane's row under the tint for the mouse or the selection.
QColor TintedGround(double alpha);
// The same up to one step of each channel.
bool Near(const QColor& a, const QColor& b);
// Moves the mouse over the place of a view's viewport, without a button.
void Hover(QWidget* viewport, const QPoint& place);
// Where a drop would go is shown by a dashed line: has the picture of the viewport one at this place?
bool ShowsIndicator(const QImage& viewport, const QLine& line);

} // namespace Screens
