// Where the window and its documents stand: full screen, what is remembered from one start to the next, tabs in turn,
// tabs that are opened anew in their place.
#include "main_window.h"

#include "job_bar.h"
#include "navigation_bar.h"
#include "reader_context.h"
#include "status_panel.h"
#include "view_history.h"

#include <frame/view/doc_view.h>
#include <frame/view/settings.h>

#include <QEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QTemporaryDir>
#include <QToolBar>

namespace {

constexpr double ShareOfScreen = 0.92; // that a window takes at most when it is new
constexpr char geometryKey[] = "window.geometry";
constexpr char paneKey[] = "window.pane";
constexpr char paneWidthKey[] = "window.paneWidth";

} // namespace

void MainWindow::RestoreWindow()
{
    G_SettingMgr* settings = G_SettingMgr::Instance();
    const QByteArray geometry = settings->ConfigValue(QLatin1String(geometryKey)).toByteArray();
    if (!geometry.isEmpty())
        restoreGeometry(geometry); // on a screen that is there
    else if (screen())
        resize(size().boundedTo(screen()->availableSize() * ShareOfScreen));
    paneWidth = qBound(100, settings->ConfigValue(QLatin1String(paneWidthKey), paneWidth).toInt(), 2000);
    const QString pane = settings->ConfigValue(QLatin1String(paneKey)).toString();
    if (!pane.isEmpty())
        ShowPane(pane, true);
}

void MainWindow::RememberWindow()
{
    SetFullScreen(false); // nobody wants to start in it
    G_SettingMgr* settings = G_SettingMgr::Instance();
    settings->SetConfigValue(QLatin1String(geometryKey), saveGeometry());
    settings->SetConfigValue(QLatin1String(paneKey), CurrentPaneId());
    settings->SetConfigValue(QLatin1String(paneWidthKey), PaneWidth());
}

void MainWindow::SetFullScreen(bool isWanted)
{
    if (isFullScreen() != isWanted)
        setWindowState(windowState() ^ Qt::WindowFullScreen);
}

// Also when the window manager does it.
void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && isFullScreen() == menuBar()->isVisibleTo(this))
        ShowBars(!isFullScreen());
}

void MainWindow::ShowBars(bool areShown)
{
    menuBar()->setVisible(areShown);
    toolBar->setVisible(areShown);
    navigationBar->setVisible(areShown);
    isPageAsked = false;
    RefreshWindow();
    if (!areShown)
        context->ShowNote(tr("F11 or Esc leaves full screen."));
}

// What no other widget has a use for.
void MainWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && isFullScreen())
        SetFullScreen(false);
    else
        QMainWindow::keyPressEvent(event);
}

void MainWindow::GoToTypedPage()
{
    isPageAsked = isFullScreen();
    ShowStatusBar();
    statusPanel->EditPage();
}

// Full screen hides it, but for a page number that is typed and for work under way, which can be given up there.
void MainWindow::ShowStatusBar()
{
    const bool isWanted = !isFullScreen() || isPageAsked || jobBar->IsBusy();
    if (!isWanted && focusWidget() && statusBar()->isAncestorOf(focusWidget()))
        viewStack->currentWidget()->setFocus();
    statusBar()->setVisible(isWanted);
}

// A list that drops down, or another window, leaves the number to be typed.
void MainWindow::OnFocusMoved(QWidget* now)
{
    if (!isPageAsked || !now || now->window() != this || statusBar()->isAncestorOf(now))
        return;
    isPageAsked = false;
    ShowStatusBar();
}

void MainWindow::GoInHistory(bool isBack)
{
    DocumentTab* tab = CurrentTab();
    if (tab && isBack)
        tab->History()->GoBack();
    else if (tab)
        tab->History()->GoForward();
}

void MainWindow::RefreshHistory()
{
    const DocumentTab* tab = CurrentTab();
    backAction->setEnabled(tab && tab->History()->CanGoBack());
    forwardAction->setEnabled(tab && tab->History()->CanGoForward());
}

void MainWindow::ActivateNextTab(int step)
{
    if (TabCount() > 1)
        ActivateTab((tabBar->currentIndex() + step + TabCount()) % TabCount());
}

// The file is opened before the tab goes: another program may not have written all of it yet.
bool MainWindow::ReloadTab(DocumentTab* tab)
{
    const QString path = tab->Path();
    const bool wasAskedReadOnly = tab->IsAskedReadOnly();
    OpenOutcome outcome = OpenDocumentFile(path, wasAskedReadOnly);
    if (!outcome.file) {
        ShowOpenError(path, outcome.error);
        return false;
    }
    const int position = PositionOf(tab);
    std::unique_ptr<QTemporaryDir> folder = tab->TakeTemporaryFolder();
    RemoveTab(position);
    DocumentTab* added = AddTab(std::move(outcome.file));
    added->SetAskedReadOnly(wasAskedReadOnly);
    added->SetTemporaryFolder(std::move(folder));
    tabBar->moveTab(TabCount() - 1, position);
    return true;
}

void MainWindow::ReloadCurrent()
{
    DocumentTab* tab = CurrentTab();
    if (!tab || context->IsModalRunning() || !MayStopJobOf(tab, tr("Reload")))
        return;
    const QString text = tr("Discard your changes in %1?").arg(QFileInfo(tab->Path()).fileName());
    if (tab->IsDirty() && context->ShowQuestionBox(tr("Reload"), text, QMessageBox::Discard | QMessageBox::Cancel,
                                                   QMessageBox::Cancel) != QMessageBox::Discard)
        return;
    ReloadTab(tab);
}
