#pragma once

#include <reader/host_operations.h>
#include <reader/main_window.h>
#include <reader/plugin_host.h>
#include <reader/reader_context.h>

#include <QList>
#include <QTemporaryDir>

// A reader context whose boxes are answered from a list; an unannounced box fails the test.
class ScriptedReaderContext : public ReaderContext
{
    Q_OBJECT
public:
    int ShowMessageBox(const QString& title, const QString& text, int buttons, int defaultButton,
                       const QMap<int, QString>& captions = {}, const QSize& size = {}) override;
    int ShowQuestionBox(const QString& title, const QString& text, int buttons, int defaultButton,
                        const QMap<int, QString>& captions = {}, const QSize& size = {}) override;
    void Answer(int button) { answers << button; }
    QStringList Texts() const { return texts; }
    int PendingAnswers() const { return answers.size(); }

private:
    int Take(const QString& text);
    QList<int> answers;
    QStringList texts;
};

// The reader as main() puts it together, with the module loaded, in a folder of its own that holds generated samples.
class ReaderDesk
{
public:
    explicit ReaderDesk(bool withPlugin = true);
    ~ReaderDesk();
    // A fresh copy of a generated sample, e.g. "tour.ofd"; empty, and a failed test, when it cannot be made.
    QString Sample(const QString& name);
    QString Folder() const { return folder.path(); }
    MainWindow* Window() const { return window.get(); }
    ScriptedReaderContext* Context() const { return context; }
    G_DocView* View() const { return context->CurrentDocView(); }
    PluginHost& Plugin() { return plugin; }
    // Waits until the current view has painted its first page and its panes are made.
    bool WaitForPanes();
    void CloseWindow() { window.reset(); }

private:
    PluginHost plugin;
    QTemporaryDir folder;
    std::vector<std::unique_ptr<G_Operation>> operations;
    ScriptedReaderContext* context; // owned by the window
    std::unique_ptr<MainWindow> window;
};
