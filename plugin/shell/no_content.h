#pragma once

#include <QRect>
#include <QSize>
#include <QString>

class OVPaintNoContent;
class QWidget;

// Where the picture of an empty list stands in a widget of this size.
QRect NoContentRect(const QSize& area);
// Shows the picture over an empty list, moves it when it is there, deletes it when the list has rows. `picture` is the
// name of an image in the resources, like "nocontent_bookmark.svg"; `noContent` is null while there is none.
void UpdateNoContentPicture(OVPaintNoContent*& noContent, QWidget* list, bool isEmpty, const QString& picture);
