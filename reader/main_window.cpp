#include "main_window.h"

#include "find_bar.h"
#include "job_bar.h"
#include "link_operations.h"
#include "menus.h"
#include "navigation_bar.h"
#include "pane_area.h"
#include "reader_context.h"
#include "recent_files.h"
#include "remembered_views.h"
#include "status_panel.h"
#include "view_history.h"
#include "welcome.h"

#include <frame/document/ig_document.h>
#include <frame/navigation/icore.h>
#include <frame/navigation/navigation_page.h>
#include <frame/navigation/pane_maker.h>
#include <frame/operation/event_manager.h>
#include <frame/view/application.h>
#include <frame/view/doc_view.h>

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLayout>
#include <QMessageBox>
#include <QMimeData>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QUndoGroup>

namespace {
constexpr int kModalRetryMs = 200;
} // namespace

MainWindow::MainWindow(ReaderContext* givenContext, QWidget* parent)
    : QMainWindow(parent)
    , context(givenContext ? givenContext : new ReaderContext)
    , recentFiles(std::make_unique<RecentFiles>())
    , rememberedViews(std::make_unique<RememberedViews>())
    , paneMaker(new Core::G_PaneMaker(context, this))
    , undoGroup(new QUndoGroup(this))
{
    setObjectName(QStringLiteral("MainWindow"));
    context->setParent(this);
    context->SetWindow(this);
    resize(1180, 800);
    setAcceptDrops(true);
    context->SetDialogParent(this);
    Core::ICore::SetContext(context);
    context->SetPaneMaker([this](IG_Document* document) { paneMaker->MakeAll(document); });
    FillContextMenus(context->ContextMenu());
    OfferAttachments(context);
    MakeCentralArea();
    MakeActions();
    connect(paneMaker, &Core::G_PaneMaker::PaneMade, this,
            [this](Core::G_NavigationPage*, IG_Document*, QWidget* pane) { paneArea->Adopt(pane); });
    connect(paneMaker, &Core::G_PaneMaker::PaneMade, this, &MainWindow::ShowCurrentPane);
    connect(context->EventMgr(), &G_EventMgr::ToolHandlerChange, this, &MainWindow::UpdateToolActions);
    G_Application::Instance().SetSaveService([this](IG_Document* document) {
        for (const auto& tab : tabs) {
            if (tab->Document() == document)
                return SaveTab(tab.get());
        }
        return false;
    });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { OnFocusMoved(now); });
    RefreshWindow();
}

MainWindow::~MainWindow()
{
    disconnect(qApp, nullptr, this, nullptr); // the focus moves while the widgets go
    G_Application::Instance().SetSaveService({});
    while (!tabs.empty())
        RemoveTab(TabCount() - 1);
    Core::ICore::SetContext(nullptr);
}

void MainWindow::SetUpNavigation()
{
    const QList<Core::G_NavigationPage*> pages = Core::G_PaneMaker::PagesByPosition();
    for (Core::G_NavigationPage* page : pages)
        page->SetContext(context);
    navigationBar->SetPages(pages);
    for (const auto& tab : tabs)
        paneMaker->ViewOpened(tab->View());
}

bool MainWindow::OpenFile(const QString& path, bool readOnly)
{
    const int open = PositionOfPath(path);
    if (open >= 0) {
        ActivateTab(open);
        return true;
    }
    DocumentTab* tab = OpenTab(path, readOnly);
    if (tab)
        recentFiles->Add(QFileInfo(path).absoluteFilePath());
    return tab != nullptr;
}

DocumentTab* MainWindow::OpenTab(const QString& path, bool readOnly)
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    OpenOutcome outcome = OpenDocumentFile(path, readOnly);
    QGuiApplication::restoreOverrideCursor();
    if (!outcome.file) {
        ShowOpenError(path, outcome.error);
        return nullptr;
    }
    DocumentTab* tab = AddTab(std::move(outcome.file));
    tab->SetAskedReadOnly(readOnly);
    return tab;
}

bool MainWindow::OpenTemporaryFile(std::unique_ptr<QTemporaryDir> folder, const QString& path)
{
    DocumentTab* tab = OpenTab(path, true);
    if (tab)
        tab->SetTemporaryFolder(std::move(folder));
    return tab != nullptr;
}

void MainWindow::ShowOpenError(const QString& path, const QString& error)
{
    context->ShowMessageBox(tr("Open"), tr("%1 cannot be opened.\n%2").arg(QDir::toNativeSeparators(path), error),
                            QMessageBox::Ok, QMessageBox::Ok);
}

void MainWindow::OpenWhenFree(const QStringList& paths)
{
    if (context->IsModalRunning()) {
        QTimer::singleShot(kModalRetryMs, this, [this, paths] { OpenWhenFree(paths); });
        return;
    }
    for (const QString& path : paths)
        OpenFile(path);
}

DocumentTab* MainWindow::AddTab(std::unique_ptr<DocumentFile> file)
{
    auto tab = std::make_unique<DocumentTab>(std::move(file), context, nullptr);
    DocumentTab* added = tab.get();
    added->View()->SetZoomMode(G_Preferences::FitWidth);
    tabs.push_back(std::move(tab));
    viewStack->addWidget(added->View()->Widget());
    undoGroup->addStack(added->View()->UndoStack());
    WatchTab(added);
    const int position = tabBar->addTab(added->Label());
    MakeCloseButton(added, position);
    tabBar->setTabToolTip(position, QDir::toNativeSeparators(added->Path()));
    ActivateTab(position);
    viewStack->layout()->activate(); // a place may keep the zoom, which fits the view only once that has its size
    if (!rememberedViews->Restore(added->Path(), *added->View()))
        context->ActionHandler()->FollowOpenActions(added->View()); // where the document wants to be opened
    added->History()->Forget();
    RefreshWindow(); // two pages may have come back
    paneMaker->ViewOpened(added->View());
    return added;
}

void MainWindow::WatchTab(DocumentTab* tab)
{
    connect(tab, &DocumentTab::DirtyChanged, this, [this, tab] { RefreshTab(tab); });
    connect(tab, &DocumentTab::FileChangedOnDisk, this, [this, tab] { ShowFileChanged(tab); });
    connect(tab->History(), &ViewHistory::Changed, this, &MainWindow::RefreshHistory);
    WatchSearch(tab);
    WatchPageMenu(tab);
}

void MainWindow::ActivateTab(int position)
{
    if (tabBar->currentIndex() == position)
        OnTabChosen(position);
    else
        tabBar->setCurrentIndex(position);
}

void MainWindow::OnTabChosen(int position)
{
    G_DocView* view = position >= 0 && position < TabCount() ? tabs.at(position)->View() : nullptr;
    viewStack->setCurrentWidget(view ? view->Widget() : welcome);
    undoGroup->setActiveStack(view ? view->UndoStack() : nullptr);
    statusPanel->SetView(view);
    findBar->SetSearch(view ? tabs.at(position)->Search() : nullptr);
    fileBar->hide();
    if (context->CurrentDocView() != view)
        context->SetCurrentDocView(view);
    if (view)
        view->Widget()->setFocus();
    ShowCurrentPane();
    RefreshWindow();
    if (view && tabs.at(position)->HasFileChange())
        ShowFileChanged(tabs.at(position).get());
}

void MainWindow::OnTabMoved(int from, int to)
{
    auto moved = std::move(tabs.at(from));
    tabs.erase(tabs.begin() + from);
    tabs.insert(tabs.begin() + to, std::move(moved));
}

DocumentTab* MainWindow::CurrentTab() const
{
    const int position = tabBar->currentIndex();
    return position >= 0 && position < TabCount() ? tabs.at(position).get() : nullptr;
}

int MainWindow::PositionOf(const DocumentTab* tab) const
{
    for (int i = 0; i < TabCount(); ++i) {
        if (tabs.at(i).get() == tab)
            return i;
    }
    return -1;
}

int MainWindow::PositionOfPath(const QString& path) const
{
    const QFileInfo wanted(path);
    for (int i = 0; i < TabCount(); ++i) {
        if (QFileInfo(tabs.at(i)->Path()) == wanted)
            return i;
    }
    return -1;
}

bool MainWindow::MayClose(DocumentTab* tab)
{
    if (!MayStopJobOf(tab, tr("Close")))
        return false;
    if (!tab->IsDirty())
        return true;
    ActivateTab(PositionOf(tab));
    const QString text = tr("Save the changes in %1?").arg(QFileInfo(tab->Path()).fileName());
    const int answer = context->ShowQuestionBox(
        tr("Close"), text, QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save)
        return SaveTab(tab);
    return answer == QMessageBox::Discard;
}

bool MainWindow::CloseTab(int position)
{
    if (position < 0 || position >= TabCount() || context->IsModalRunning())
        return false; // interceptors of the tab may stand on the stack below the box
    DocumentTab* tab = tabs.at(position).get();
    if (!MayClose(tab))
        return false;
    RemoveTab(PositionOf(tab));
    return true;
}

// Panes first, then the view with its stack and tools, then the document: each uses what dies after it.
void MainWindow::RemoveTab(int position)
{
    const std::unique_ptr<DocumentTab> tab = std::move(tabs.at(position));
    tabs.erase(tabs.begin() + position);
    if (jobBar->IsBusyFor(tab.get()))
        jobBar->Stop();
    if (!tab->IsTemporary())
        rememberedViews->Remember(tab->Path(), *tab->View());
    paneArea->ShowPane(nullptr, nullptr);
    statusPanel->SetView(nullptr);
    findBar->SetSearch(nullptr);
    viewStack->setCurrentWidget(welcome);
    undoGroup->removeStack(tab->View()->UndoStack());
    paneMaker->DocumentClosing(tab->Document());
    {
        const QSignalBlocker quiet(tabBar);
        tabBar->removeTab(position);
    }
    viewStack->removeWidget(tab->View()->Widget());
    tab->View()->Widget()->deleteLater(); // the stack keeps it as its child; an event of its own may be under way
    if (context->CurrentDocView() == tab->View())
        context->SetCurrentDocView(nullptr);
    disconnect(tab.get(), nullptr, this, nullptr);
    OnTabChosen(tabBar->currentIndex());
}

// Asks once a document before a save that makes its signatures invalid. A copy leaves the signed file as it is.
MainWindow::SignatureWish MainWindow::AskAboutSignatures(DocumentTab* tab, bool offersCopy)
{
    if (!tab->MustAskAboutSignatures())
        return SignatureWish::Break;
    QMap<int, QString> captions;
    int buttons = QMessageBox::Ok | QMessageBox::Cancel;
    if (offersCopy) {
        buttons |= QMessageBox::Save;
        captions.insert(QMessageBox::Save, tr("Save a Copy..."));
    }
    const int answer =
        context->ShowQuestionBox(tr("Save"), tr("The document is signed. Saving will make its signatures invalid."),
                                 buttons, QMessageBox::Cancel, captions);
    if (answer == QMessageBox::Save)
        return SignatureWish::SaveCopy;
    if (answer != QMessageBox::Ok)
        return SignatureWish::Keep;
    tab->AllowBreakingSignatures();
    return SignatureWish::Break;
}

bool MainWindow::SaveTab(DocumentTab* tab)
{
    const SignatureWish wish = AskAboutSignatures(tab, true);
    if (wish != SignatureWish::Break)
        return wish == SignatureWish::SaveCopy && SaveCopyOf(tab);
    SaveOutcome outcome = tab->Save();
    if (outcome.isForeignChange) {
        const QString text = tr("%1 was changed by another program since it was opened. Overwrite it?")
                                 .arg(QFileInfo(tab->Path()).fileName());
        const int answer =
            context->ShowQuestionBox(tr("Save"), text, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
        if (answer != QMessageBox::Ok)
            return false;
        outcome = tab->Save(true);
    }
    return ReportSave(tab, outcome);
}

bool MainWindow::IsOpenElsewhere(const DocumentTab* tab, const QString& path)
{
    const int open = PositionOfPath(path);
    if (open < 0 || tabs.at(open).get() == tab)
        return false;
    context->ShowMessageBox(tr("Save As"), tr("%1 is open in another tab.").arg(QDir::toNativeSeparators(path)),
                            QMessageBox::Ok, QMessageBox::Ok);
    return true;
}

bool MainWindow::WriteTabAs(DocumentTab* tab, const QString& path)
{
    const bool done = ReportSave(tab, tab->SaveAs(path));
    if (done)
        recentFiles->Add(QFileInfo(path).absoluteFilePath());
    return done;
}

bool MainWindow::SaveTabAs(DocumentTab* tab, const QString& path)
{
    return !IsOpenElsewhere(tab, path) && AskAboutSignatures(tab, false) == SignatureWish::Break &&
           WriteTabAs(tab, path);
}

// Instead of a save that would break signatures. Choosing the signed file itself asks again.
bool MainWindow::SaveCopyOf(DocumentTab* tab)
{
    const QString path = ChooseSavePath(tab);
    if (path.isEmpty())
        return false;
    if (QFileInfo(path) == QFileInfo(tab->Path()))
        return SaveTabAs(tab, path);
    return !IsOpenElsewhere(tab, path) && WriteTabAs(tab, path);
}

bool MainWindow::ReportSave(DocumentTab* tab, const SaveOutcome& outcome)
{
    if (!outcome.done) {
        context->ShowMessageBox(tr("Save"), tr("The document was not saved.\n%1").arg(outcome.error), QMessageBox::Ok,
                                QMessageBox::Ok);
        return false;
    }
    RefreshTab(tab);
    if (tab == CurrentTab() && !tab->HasFileChange())
        fileBar->hide();
    ShowNote(outcome.warning.isEmpty() ? tr("Saved.") : outcome.warning);
    return true;
}

bool MainWindow::SaveTabCopy(DocumentTab* tab, const QString& path)
{
    if (QFileInfo(path) == QFileInfo(tab->Path())) {
        context->ShowMessageBox(tr("Save a Copy"), tr("A copy needs another name than the document itself."),
                                QMessageBox::Ok, QMessageBox::Ok);
        return false;
    }
    return !IsOpenElsewhere(tab, path) && ReportSave(tab, tab->SaveCopy(path));
}

void MainWindow::SaveCurrent()
{
    if (CurrentTab())
        SaveTab(CurrentTab());
}

// Empty when the user does not want to.
QString MainWindow::ChooseSavePath(const DocumentTab* tab)
{
    return context->AskSavePath(tr("Save As"), tab->PathToPropose(), tr("OFD documents (*.ofd)"));
}

void MainWindow::SaveCurrentCopy()
{
    DocumentTab* tab = CurrentTab();
    if (!tab)
        return;
    const QFileInfo info(tab->PathToPropose());
    const QString name = tr("%1 (copy).ofd").arg(info.completeBaseName());
    const QString path =
        context->AskSavePath(tr("Save a Copy"), info.dir().filePath(name), tr("OFD documents (*.ofd)"));
    if (!path.isEmpty())
        SaveTabCopy(tab, path);
}

void MainWindow::SaveCurrentAs()
{
    DocumentTab* tab = CurrentTab();
    if (!tab)
        return;
    const QString path = ChooseSavePath(tab);
    if (!path.isEmpty())
        SaveTabAs(tab, path);
}

void MainWindow::ChooseFiles()
{
    const QString latest = CurrentTab() ? CurrentTab()->PathToPropose() : recentFiles->Paths().value(0);
    const QString folder = latest.isEmpty() ? QDir::homePath() : QFileInfo(latest).path();
    const QStringList paths =
        QFileDialog::getOpenFileNames(this, tr("Open"), folder, tr("OFD documents (*.ofd);;All files (*)"));
    for (const QString& path : paths)
        OpenFile(path);
}

void MainWindow::CloseCurrent()
{
    CloseTab(tabBar->currentIndex());
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (context->IsModalRunning()) {
        event->ignore();
        return;
    }
    for (const auto& tab : tabs) {
        if (!MayClose(tab.get())) {
            event->ignore();
            return;
        }
    }
    RememberWindow();
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    event->acceptProposedAction();
    const QList<QUrl> urls = event->mimeData()->urls();
    for (const QUrl& url : urls) {
        if (url.isLocalFile())
            OpenFile(url.toLocalFile());
        else
            ShowNote(tr("Only files of this machine can be opened."));
    }
}
