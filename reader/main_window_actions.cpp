#include "main_window.h"

#include "reader_context.h"
#include "recent_files.h"

#include <frame/document/ig_document.h>
#include <frame/view/doc_view.h>

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QToolBar>
#include <QUndoGroup>

namespace {

QIcon ReaderIcon(const char* name)
{
    return QIcon(QStringLiteral(":/reader/image/%1.svg").arg(QLatin1String(name)));
}

} // namespace

void MainWindow::MakeActions()
{
    toolBar = addToolBar(tr("Tools"));
    toolBar->setObjectName(QStringLiteral("ToolBar"));
    toolBar->setMovable(false);
    toolBar->setIconSize(QSize(20, 20));
    MakeFileActions();
    MakeEditActions();
    MakeViewActions();
    MakeToolActions();
    QMenu* help = menuBar()->addMenu(tr("&Help"));
    AddAction(help, tr("&About"), "", QKeySequence(), MenuOnly, [this] { About(); });
}

QAction* MainWindow::AddAction(QMenu* menu, const QString& text, const char* icon, const QKeySequence& shortcut,
                               Place place, const std::function<void()>& run)
{
    auto* action = new QAction(text, this);
    if (*icon)
        action->setIcon(ReaderIcon(icon));
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, run);
    menu->addAction(action);
    addAction(action); // its keys work while the menu bar is hidden
    if (place == MenuAndBar)
        toolBar->addAction(action);
    return action;
}

void MainWindow::WithView(const std::function<void(G_DocView*)>& run)
{
    if (G_DocView* view = context->CurrentDocView())
        run(view);
}

void MainWindow::MakeFileActions()
{
    QMenu* menu = menuBar()->addMenu(tr("&File"));
    AddAction(menu, tr("&Open..."), "open", QKeySequence::Open, MenuAndBar, [this] { ChooseFiles(); });
    recentMenu = menu->addMenu(tr("Open &Recent"));
    connect(recentMenu, &QMenu::aboutToShow, this, &MainWindow::FillRecentMenu);
    saveAction = AddAction(menu, tr("&Save"), "save", QKeySequence::Save, MenuAndBar, [this] { SaveCurrent(); });
    documentActions << AddAction(menu, tr("Save &As..."), "save_as", QKeySequence::SaveAs, MenuOnly,
                                 [this] { SaveCurrentAs(); });
    documentActions << AddAction(menu, tr("Save a &Copy..."), "", QKeySequence(), MenuOnly,
                                 [this] { SaveCurrentCopy(); });
    documentActions << AddAction(menu, tr("Re&load"), "", QKeySequence::Refresh, MenuOnly, [this] { ReloadCurrent(); });
    menu->addSeparator();
    documentActions << AddAction(menu, tr("&Print..."), "print", QKeySequence::Print, MenuAndBar, [this] { Print(); });
    documentActions << AddAction(menu, tr("Save Page as P&icture..."), "", QKeySequence(), MenuOnly,
                                 [this] { SavePagePicture(); });
    menu->addSeparator();
    documentActions << AddAction(menu, tr("P&roperties..."), "", QKeySequence(Qt::ALT | Qt::Key_Return), MenuOnly,
                                 [this] { ShowProperties(); });
    menu->addSeparator();
    documentActions << AddAction(menu, tr("&Close"), "close", QKeySequence::Close, MenuOnly,
                                 [this] { CloseCurrent(); });
    AddAction(menu, tr("&Quit"), "", QKeySequence::Quit, MenuOnly, [this] { close(); });
    toolBar->addSeparator();
}

void MainWindow::MakeEditActions()
{
    QMenu* menu = menuBar()->addMenu(tr("&Edit"));
    QAction* undo = undoGroup->createUndoAction(this, tr("Undo"));
    undo->setIcon(ReaderIcon("undo"));
    undo->setShortcut(QKeySequence::Undo);
    QAction* redo = undoGroup->createRedoAction(this, tr("Redo"));
    redo->setIcon(ReaderIcon("redo"));
    redo->setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    for (QAction* action : {undo, redo}) {
        menu->addAction(action);
        toolBar->addAction(action);
    }
    menu->addSeparator();
    documentActions << AddAction(menu, tr("&Copy"), "", QKeySequence::Copy, MenuOnly, [this] { CopyText(); });
    documentActions << AddAction(menu, tr("Select &All"), "", QKeySequence::SelectAll, MenuOnly,
                                 [this] { SelectAllText(); });
    menu->addSeparator();
    documentActions << AddAction(menu, tr("&Find..."), "find", QKeySequence(Qt::CTRL | Qt::Key_F), MenuAndBar,
                                 [this] { Find(); });
    documentActions << AddAction(menu, tr("Find &Next"), "", QKeySequence(Qt::Key_F3), MenuOnly,
                                 [this] { FindNext(true); });
    documentActions << AddAction(menu, tr("Find &Previous"), "", QKeySequence(Qt::SHIFT | Qt::Key_F3), MenuOnly,
                                 [this] { FindNext(false); });
    toolBar->addSeparator();
}

void MainWindow::MakeViewActions()
{
    struct ModeRow
    {
        const char* text;
        const char* icon;
        Qt::Key key;
        G_Preferences::ZoomMode mode;
        Place place;
    };
    static const ModeRow modes[] = {
        {QT_TR_NOOP("Actual Size"), "", Qt::Key_1, G_Preferences::ActualSize, MenuOnly},
        {QT_TR_NOOP("Fit Width"), "fit_width", Qt::Key_2, G_Preferences::FitWidth, MenuAndBar},
        {QT_TR_NOOP("Fit Height"), "", Qt::Key_3, G_Preferences::FitHeight, MenuOnly},
        {QT_TR_NOOP("Fit Page"), "fit_page", Qt::Key_0, G_Preferences::FitPage, MenuAndBar},
    };
    QMenu* menu = menuBar()->addMenu(tr("&View"));
    documentActions << AddAction(menu, tr("Zoom In"), "zoom_in", QKeySequence::ZoomIn, MenuAndBar, [this] {
        WithView([](G_DocView* view) { view->SetZoom(view->GetZoom() * 1.25F, true); });
    });
    documentActions << AddAction(menu, tr("Zoom Out"), "zoom_out", QKeySequence::ZoomOut, MenuAndBar, [this] {
        WithView([](G_DocView* view) { view->SetZoom(view->GetZoom() / 1.25F, true); });
    });
    for (const ModeRow& row : modes) {
        const G_Preferences::ZoomMode mode = row.mode;
        documentActions << AddAction(menu, tr(row.text), row.icon, QKeySequence(int(Qt::CTRL) | row.key), row.place,
                                     [this, mode] { WithView([mode](G_DocView* view) { view->SetZoomMode(mode); }); });
    }
    menu->addSeparator();
    twoPagesAction = AddAction(menu, tr("&Two Pages"), "", QKeySequence(Qt::CTRL | Qt::Key_4), MenuOnly, [this] {
        WithView([](G_DocView* view) { view->SetTwoPages(!view->HasTwoPages()); });
        RefreshWindow();
    });
    twoPagesAction->setCheckable(true);
    documentActions << twoPagesAction;
    documentActions << AddAction(menu, tr("Rotate Right"), "", QKeySequence(Qt::CTRL | Qt::Key_R), MenuOnly,
                                 [this] { Rotate(90); });
    documentActions << AddAction(menu, tr("Rotate Left"), "", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R), MenuOnly,
                                 [this] { Rotate(270); });
    menu->addSeparator();
    fullScreenAction = AddAction(menu, tr("&Full Screen"), "", QKeySequence(Qt::Key_F11), MenuOnly,
                                 [this] { SetFullScreen(!isFullScreen()); });
    fullScreenAction->setCheckable(true);
    toolBar->addSeparator();
    MakeGoActions();
}

void MainWindow::MakeGoActions()
{
    QMenu* go = menuBar()->addMenu(tr("&Go"));
    documentActions << AddAction(go, tr("First Page"), "first_page", QKeySequence(Qt::CTRL | Qt::Key_Home), MenuOnly,
                                 [this] { GoToFirstPage(); });
    documentActions << AddAction(go, tr("Previous Page"), "prev_page", QKeySequence(Qt::CTRL | Qt::Key_PageUp),
                                 MenuAndBar, [this] { WithView([](G_DocView* view) { view->PreviousPage(); }); });
    documentActions << AddAction(go, tr("Next Page"), "next_page", QKeySequence(Qt::CTRL | Qt::Key_PageDown),
                                 MenuAndBar, [this] { WithView([](G_DocView* view) { view->NextPage(); }); });
    documentActions << AddAction(go, tr("Last Page"), "last_page", QKeySequence(Qt::CTRL | Qt::Key_End), MenuOnly,
                                 [this] { GoToLastPage(); });
    documentActions << AddAction(go, tr("&Go to Page..."), "", QKeySequence(Qt::CTRL | Qt::Key_G), MenuOnly,
                                 [this] { GoToTypedPage(); });
    go->addSeparator();
    backAction = AddAction(go, tr("&Back"), "back", QKeySequence(Qt::ALT | Qt::Key_Left), MenuOnly,
                           [this] { GoInHistory(true); });
    forwardAction = AddAction(go, tr("&Forward"), "forward", QKeySequence(Qt::ALT | Qt::Key_Right), MenuOnly,
                              [this] { GoInHistory(false); });
    go->addSeparator();
    documentActions << AddAction(go, tr("Next &Tab"), "", QKeySequence(Qt::CTRL | Qt::Key_Tab), MenuOnly,
                                 [this] { ActivateNextTab(1); });
    documentActions << AddAction(go, tr("Previous T&ab"), "", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab),
                                 MenuOnly, [this] { ActivateNextTab(-1); });
    toolBar->addSeparator();
}

void MainWindow::MakeToolActions()
{
    QMenu* menu = menuBar()->addMenu(tr("&Tools"));
    auto* group = new QActionGroup(this);
    handAction = AddAction(menu, tr("Hand"), "hand", QKeySequence(Qt::CTRL | Qt::Key_H), MenuAndBar,
                           [this] { ShowTool("t_handtool"); });
    textAction = AddAction(menu, tr("Select Text"), "text_select", QKeySequence(Qt::CTRL | Qt::Key_T), MenuAndBar,
                           [this] { ShowTool("t_textselect"); });
    for (QAction* action : {handAction, textAction}) {
        action->setCheckable(true);
        group->addAction(action);
        documentActions << action;
    }
    toolBar->addSeparator();
    documentActions << AddAction(menu, tr("Add Bookmark"), "bookmark_add", QKeySequence(Qt::CTRL | Qt::Key_B),
                                 MenuAndBar, [this] { context->PerformOperation("d_addbookmark", QString()); });
}

void MainWindow::ShowTool(const char* name)
{
    WithView([name](G_DocView* view) {
        if (G_ToolHandler* tool = view->ToolHandlerByName(name))
            view->SetCurrentToolHandler(tool);
    });
    UpdateToolActions();
}

void MainWindow::UpdateToolActions()
{
    G_DocView* view = context->CurrentDocView();
    G_ToolHandler* tool = view ? view->CurrentToolHandler() : nullptr;
    const CCA_String name = tool ? tool->Name() : CCA_String();
    handAction->setChecked(name == "t_handtool");
    textAction->setChecked(name == "t_textselect");
}

void MainWindow::FillRecentMenu()
{
    recentMenu->clear();
    const QStringList paths = recentFiles->Paths();
    for (const QString& path : paths) {
        QAction* action = recentMenu->addAction(QFileInfo(path).fileName());
        action->setToolTip(path);
        action->setStatusTip(path);
        connect(action, &QAction::triggered, this, [this, path] {
            if (!OpenFile(path) && !QFileInfo::exists(path))
                recentFiles->Remove(path);
        });
    }
    if (paths.isEmpty())
        recentMenu->addAction(tr("No Recent Files"))->setEnabled(false);
}

void MainWindow::CopyText()
{
    WithView([](G_DocView* view) { view->CopySelectedText(); });
}

void MainWindow::SelectAllText()
{
    WithView([](G_DocView* view) { view->SelectAllText(); });
}

void MainWindow::GoToFirstPage()
{
    WithView([](G_DocView* view) { view->GoToPage(view, 0, CCA_GRect(), false); });
}

void MainWindow::GoToLastPage()
{
    WithView([](G_DocView* view) { view->GoToPage(view, view->GDocument()->GetPageCount() - 1, CCA_GRect(), false); });
}

void MainWindow::Rotate(int degrees)
{
    WithView([degrees](G_DocView* view) { view->SetRotation((view->Rotation() + degrees) % 360); });
}

void MainWindow::About()
{
    QMessageBox::about(
        this, tr("About"),
        tr("tetoreader %1\nA reader of fixed-layout documents.").arg(QApplication::applicationVersion()));
}
