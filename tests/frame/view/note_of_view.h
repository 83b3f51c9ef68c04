#pragma once

#include <frame/view/doc_view.h>
#include <frame/view/status_note.h>

#include <QString>
#include <QWidget>

// Five sheets.
inline const QString pages = QStringLiteral("page 210 297\n").repeated(5);

// The note that the view shows or has shown; null before the first one.
inline G_StatusNote* NoteOf(const G_DocView* view)
{
    return view->Widget()->findChild<G_StatusNote*>();
}
