#pragma once

#include "document_tab.h"

#include <QMainWindow>
#include <QPointer>

#include <memory>
#include <vector>

class FindBar;
class G_DocView;
class NavigationBar;
class PaneArea;
class QAction;
class QBoxLayout;
class QFrame;
class QLabel;
class QMenu;
class QSplitter;
class QStackedWidget;
class QTabBar;
class QUndoGroup;
class ReaderContext;
class RecentFiles;
class StatusPanel;

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
    Core::G_PaneMaker* PaneMaker() const { return paneMaker; }
    // What operations reach by name; each works on the current tab and does nothing without one.
    void CopyText();
    void SelectAllText();
    void Find();
    void ShowProperties();
    // A line that is shown in the window's status line for a while.
    void ShowNote(const QString& text);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private slots:
    void ChooseFiles();
    void SaveCurrent();
    void SaveCurrentAs();
    void CloseCurrent();
    void OnTabChosen(int position);
    void OnTabMoved(int from, int to);
    void GoToFirstPage();
    void GoToLastPage();
    void Rotate();
    void About();
    void ShowPageMenu();

private:
    // Where an action stands in menus and on the tool bar.
    enum Place { MenuOnly, MenuAndBar };
    void MakeCentralArea();
    void MakeActions();
    void MakeFileActions();
    void MakeEditActions();
    void MakeViewActions();
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
    void AddTab(std::unique_ptr<DocumentFile> file);
    void WatchTab(DocumentTab* tab);
    int PositionOf(const DocumentTab* tab) const;
    int PositionOfPath(const QString& path) const;
    void RefreshTab(DocumentTab* tab);
    void RefreshWindow();
    void ShowCurrentPane();
    bool MayClose(DocumentTab* tab);
    void RemoveTab(int position);
    bool ReportSave(DocumentTab* tab, const SaveOutcome& outcome);
    enum class SignatureWish { Break, Keep, SaveCopy };
    SignatureWish AskAboutSignatures(DocumentTab* tab, bool offersCopy);
    bool IsOpenElsewhere(const DocumentTab* tab, const QString& path);
    bool WriteTabAs(DocumentTab* tab, const QString& path);
    bool SaveCopyOf(DocumentTab* tab);
    QString ChooseSavePath(const DocumentTab* tab);
    void ShowFileChanged(DocumentTab* tab);
    void ReloadTab(DocumentTab* tab);

    ReaderContext* context; // owned by this
    std::unique_ptr<RecentFiles> recentFiles;
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
    QWidget* welcome = nullptr;
    QFrame* fileBar = nullptr;
    QLabel* fileBarText = nullptr;
    FindBar* findBar = nullptr;
    StatusPanel* statusPanel = nullptr;
    QToolBar* toolBar = nullptr;
    QMenu* recentMenu = nullptr;
    QList<QAction*> documentActions; // enabled while a document is open
    QAction* saveAction = nullptr;
    QAction* handAction = nullptr;
    QAction* textAction = nullptr;
};
