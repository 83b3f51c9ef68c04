#pragma once

#include "background_job.h"
#include "document_tab.h"

#include <QMainWindow>
#include <QPointer>

#include <memory>
#include <vector>

class FindBar;
class G_DocView;
class JobBar;
class NavigationBar;
class PaneArea;
class QAction;
class QBoxLayout;
class QFrame;
class QMenu;
class QPrinter;
class QSplitter;
class QStackedWidget;
class QTabBar;
class QTemporaryDir;
class QUndoGroup;
class ReaderContext;
class RecentFiles;
class RememberedViews;
class StatusPanel;
class Welcome;
enum class PrintSize;

namespace Core {
class G_NavigationPage;
class G_PaneMaker;
} // namespace Core

// The reader's window: tabs of documents on top, the navigation bar and the chosen pane at the left, the page view in
// the middle, page box and zoom below. Owns the open documents. Main thread only.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    // Takes the context over; tests bring one whose message boxes are scripted.
    explicit MainWindow(ReaderContext* context = nullptr, QWidget* parent = nullptr);
    ~MainWindow() override; // closes all tabs without a question

    ReaderContext* Context() const { return context; }
    // Puts the pages that plugins enrolled on the navigation bar; called once the plugin is loaded.
    void SetUpNavigation();
    // Opens a file in a tab, or brings its tab to the front. False, after a message with the reason, when it cannot.
    bool OpenFile(const QString& path, bool readOnly = false);
    // Opens a file that was put into a folder of its own only to be looked at: read-only, and not among the recent
    // files. The folder goes with the tab.
    bool OpenTemporaryFile(std::unique_ptr<QTemporaryDir> folder, const QString& path);
    // Opens files that came from outside. Waits while something modal is up: whoever asked it still stands on the stack
    // and means the tab that is current.
    void OpenWhenFree(const QStringList& paths);
    // Opens (never toggles) or closes the pane of that id, without taking the focus. False for an unknown id.
    bool ShowPane(const QString& paneId, bool opens);
    QString CurrentPaneId() const;
    DocumentTab* CurrentTab() const; // null without a document
    int TabCount() const { return static_cast<int>(tabs.size()); }
    DocumentTab* TabAt(int position) const { return tabs.at(position).get(); }
    void ActivateTab(int position);
    // Asks when the tab is dirty; false when it stays open.
    bool CloseTab(int position);
    // False, after a message with the reason, when nothing was saved.
    bool SaveTab(DocumentTab* tab);
    bool SaveTabAs(DocumentTab* tab, const QString& path);
    // Writes the document as it is now to another file; its tab stays with its own file.
    bool SaveTabCopy(DocumentTab* tab, const QString& path);
    // Opens the tab's file anew, in its place, without a question about what is lost by that. False, after a message,
    // when that fails: the tab then stays as it is.
    bool ReloadTab(DocumentTab* tab);
    // Begins to print on a printer that is set up, in the background; false, after a message with the reason, when the
    // document's rights do not allow it or other work is under way. A message tells when it fails later.
    bool PrintTab(DocumentTab* tab, const std::shared_ptr<QPrinter>& printer, PrintSize size);
    // Begins to write a picture of a page; as PrintTab.
    bool SavePagePictureAs(DocumentTab* tab, int page, const QString& path, int dotsPerInch);
    // Whether something is being printed or written in the background.
    bool IsWorking() const;
    // Size, place and open pane as they were when the window was last closed.
    void RestoreWindow();
    Core::G_PaneMaker* PaneMaker() const { return paneMaker; }
    // What operations reach by name; each works on the current tab and does nothing without one.
    void CopyText();
    void SelectAllText();
    void Find();
    void ShowProperties();
    void Print();
    void SavePagePicture();
    // A line that is shown in the window's status line for a while.
    void ShowNote(const QString& text);

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private slots:
    void ChooseFiles();
    void SaveCurrent();
    void SaveCurrentAs();
    void SaveCurrentCopy();
    void ReloadCurrent();
    void CloseCurrent();
    void OnTabChosen(int position);
    void OnTabMoved(int from, int to);
    void GoToFirstPage();
    void GoToLastPage();
    void Rotate(int degrees);
    void About();
    void ShowPageMenu(const QPoint& place);

private:
    // Where an action stands in menus and on the tool bar.
    enum Place { MenuOnly, MenuAndBar };
    void MakeCentralArea();
    void MakeActions();
    void MakeFileActions();
    void MakeEditActions();
    void MakeViewActions();
    void MakeGoActions();
    void MakeToolActions();
    QAction* AddAction(QMenu* menu, const QString& text, const char* icon, const QKeySequence& shortcut, Place place,
                       const std::function<void()>& run);
    void MakeFindBar(QBoxLayout* column);
    void FindNext(bool isForward);
    void WatchSearch(DocumentTab* tab);
    void WatchPageMenu(DocumentTab* tab);
    void WithView(const std::function<void(G_DocView*)>& run);
    void ShowTool(const char* name);
    void UpdateToolActions();
    void FillRecentMenu();
    DocumentTab* OpenTab(const QString& path, bool readOnly);
    DocumentTab* AddTab(std::unique_ptr<DocumentFile> file);
    void WatchTab(DocumentTab* tab);
    void MakeCloseButton(DocumentTab* tab, int position);
    int PositionOf(const DocumentTab* tab) const;
    int PositionOfPath(const QString& path) const;
    void RefreshTab(DocumentTab* tab);
    void RefreshWindow();
    void ShowCurrentPane();
    bool MayClose(DocumentTab* tab);
    void RemoveTab(int position);
    void ShowOpenError(const QString& path, const QString& error);
    bool ReportSave(DocumentTab* tab, const SaveOutcome& outcome);
    enum class SignatureWish { Break, Keep, SaveCopy };
    SignatureWish AskAboutSignatures(DocumentTab* tab, bool offersCopy);
    bool IsOpenElsewhere(const DocumentTab* tab, const QString& path);
    bool WriteTabAs(DocumentTab* tab, const QString& path);
    bool SaveCopyOf(DocumentTab* tab);
    QString ChooseSavePath(const DocumentTab* tab);
    void ShowFileChanged(DocumentTab* tab);
    // main_window_output.cpp
    void MakeJobBar();
    bool MayStartJob();
    bool StartJob(DocumentTab* tab, const QString& title, const QString& text, const BackgroundJob::Work& work);
    bool MayStopJobOf(const DocumentTab* tab, const QString& title);
    bool IsRefused(const QString& title, const QString& reason);
    // main_window_place.cpp
    void RememberWindow();
    void SetFullScreen(bool isWanted);
    void ShowBars(bool areShown);
    void ShowStatusBar();
    void OnFocusMoved(QWidget* now);
    void GoToTypedPage();
    void GoInHistory(bool isBack);
    void RefreshHistory();
    void ActivateNextTab(int step);
    int PaneWidth() const;

    ReaderContext* context; // owned by this
    std::unique_ptr<RecentFiles> recentFiles;
    std::unique_ptr<RememberedViews> rememberedViews;
    Core::G_PaneMaker* paneMaker;                   // owned by this
    std::vector<std::unique_ptr<DocumentTab>> tabs; // in the tab bar's order
    Core::G_NavigationPage* currentPage = nullptr;  // not owned; null while no pane is open
    int paneWidth = 280;                            // logical pixels
    QUndoGroup* undoGroup;                          // owned by this
    // Widgets, all owned by their parents.
    QTabBar* tabBar = nullptr;
    QSplitter* splitter = nullptr;
    NavigationBar* navigationBar = nullptr;
    PaneArea* paneArea = nullptr;
    QStackedWidget* viewStack = nullptr;
    Welcome* welcome = nullptr;
    QFrame* fileBar = nullptr;
    FindBar* findBar = nullptr;
    StatusPanel* statusPanel = nullptr;
    QToolBar* toolBar = nullptr;
    QMenu* recentMenu = nullptr;
    QList<QAction*> documentActions; // enabled while a document is open
    JobBar* jobBar = nullptr;
    QString jobTitle;         // of the work in the job bar
    bool isPageAsked = false; // the status bar is up in full screen for a page number
    QAction* saveAction = nullptr;
    QAction* backAction = nullptr;
    QAction* forwardAction = nullptr;
    QAction* fullScreenAction = nullptr;
    QAction* twoPagesAction = nullptr;
    QAction* handAction = nullptr;
    QAction* textAction = nullptr;
};
