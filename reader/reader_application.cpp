#include "reader_application.h"

#include "main_window.h"

#include <frame/view/status_note.h>

#include <new>

bool ReaderApplication::notify(QObject* receiver, QEvent* event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::bad_alloc&) {
        TellOfShortage();
        return false;
    }
}

void ReaderApplication::TellOfShortage()
{
    const QWidgetList widgets = topLevelWidgets();
    for (QWidget* widget : widgets) {
        if (auto* window = qobject_cast<MainWindow*>(widget))
            G_StatusNote::For(window)->Show(tr("There is not enough memory for this. Save what you have edited."));
    }
}
