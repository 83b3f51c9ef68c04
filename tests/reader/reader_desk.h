#pragma once

#include <reader/host_operations.h>
#include <reader/main_window.h>
#include <reader/plugin_host.h>
#include <reader/reader_context.h>

#include <QList>
#include <QTemporaryDir>

#include <functional>

// A reader context whose boxes are answered from a list; an unannounced box fails the test.
class ScriptedReaderContext : public ReaderContext
{
    Q_OBJECT
public:
    int ShowMessageBox(const QString& title, const QString& text, int buttons, int defaultButton,
                       const QMap<int, QString>& captions = {}, const QSize& size = {}) override;
    int ShowQuestionBox(const QString& title, const QString& text, int buttons, int defaultButton,
                        const QMap<int, QString>& captions = {}, const QSize& size = {}) override;
    // Calls what the test set up; an unannounced question fails the test.
    bool AskHowToPrint(QPrinter* printer, int pageCount, PrintSize* size) override;
    QString AskSavePath(const QString& title, const QString& path, const QString& filter) override;
    int AskDotsPerInch(const QString& title) override;
    using PrintAnswer = std::function<bool(QPrinter*, int, PrintSize*)>;
    void AnswerPrint(const PrintAnswer& answer) { printAnswer = answer; }
    // One path, and a number of dots for an inch.
    void AnswerSavePath(const QString& path, int dotsPerInch = 0);
    // The real dialog asks for paths; the test answers that.
    void UseRealFileDialog() { hasRealFileDialog = true; }
    QString ProposedPath() const { return proposedPath; }
    QString ProposedFilter() const { return proposedFilter; }
    void Answer(int button) { answers << button; }
    QStringList Texts() const { return texts; }
    int PendingAnswers() const { return answers.size(); }

private:
    int Take(const QString& text);
    PrintAnswer printAnswer;
    bool hasRealFileDialog = false;
    QString savePath;
    QString proposedPath;
    QString proposedFilter;
    int dots = 0;
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
