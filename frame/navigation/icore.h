#pragma once

#include <frame/base/export.h>

class G_UIContext;
class QWidget;

namespace Core {

// The main window's services for those who have no context at hand.
class FRAME_EXPORT ICore
{
public:
    static QWidget* dialogParent();               // null before a main window stands
    static G_UIContext* context();                // null before a main window stands and after it died
    static void SetContext(G_UIContext* context); // not owned; null when the window dies
};

} // namespace Core
