#pragma once

#include <frame/view/ui_context.h>

class MainWindow;

// The UI context of the reader's window; its operations reach the window through it.
class ReaderContext : public G_UIContext
{
    Q_OBJECT
public:
    using G_UIContext::G_UIContext;
    MainWindow* Window() const { return window; }
    void SetWindow(MainWindow* newWindow) { window = newWindow; }
    // The window behind an operation's context; null when it runs in another frame.
    static MainWindow* WindowOf(G_UIContext* context);

private:
    MainWindow* window = nullptr; // not owned
};
