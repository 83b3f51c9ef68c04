#pragma once

#include <frame/view/ui_context.h>

class MainWindow;
class QPrinter;
enum class PrintSize;

// The path with the first ending that a filter of file names tells, when its name has none. Unchanged when the filter
// lets all files pass.
QString WithEnding(const QString& path, const QString& filter);

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

    // What the window asks by way of dialogs; tests answer in their place. False, or empty, when the user does not want
    // to, or when the view changed meanwhile.
    virtual bool AskHowToPrint(QPrinter* printer, int pageCount, PrintSize* size);
    virtual QString AskSavePath(const QString& title, const QString& path, const QString& filter);
    virtual int AskDotsPerInch(const QString& title); // 0 when the user does not want to

private:
    bool MayReplace(const QString& title, const QString& path);
    MainWindow* window = nullptr; // not owned
};
