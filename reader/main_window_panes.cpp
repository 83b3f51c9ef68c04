#include "main_window.h"

#include "navigation_bar.h"
#include "pane_area.h"
#include "reader_context.h"
#include "recent_files.h"
#include "status_panel.h"

#include <frame/document/ig_document.h>
#include <frame/navigation/navigation_page.h>
#include <frame/navigation/pane_maker.h>
#include <frame/view/doc_view.h>

#include <QAction>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>

namespace {

QTabBar* MakeTabBar(QWidget* parent)
{
    auto* bar = new QTabBar(parent);
    bar->setTabsClosable(true);
    bar->setMovable(true);
    bar->setExpanding(false);
    bar->setDocumentMode(true);
    bar->setElideMode(Qt::ElideMiddle);
    bar->setAccessibleName(QObject::tr("Open documents"));
    return bar;
}

} // namespace

void MainWindow::MakeCentralArea()
{
    auto* central = new QWidget(this);
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    tabBar = MakeTabBar(central);
    column->addWidget(tabBar);

    auto* row = new QHBoxLayout;
    row->setSpacing(0);
    navigationBar = new NavigationBar(central);
    row->addWidget(navigationBar);
    splitter = new QSplitter(Qt::Horizontal, central);
    paneArea = new PaneArea(splitter);
    paneArea->hide();
    auto* viewSide = new QWidget(splitter);
    auto* viewColumn = new QVBoxLayout(viewSide);
    viewColumn->setContentsMargins(0, 0, 0, 0);
    viewColumn->setSpacing(0);
    fileBar = new QFrame(viewSide);
    fileBar->hide();
    viewStack = new QStackedWidget(viewSide);
    viewColumn->addWidget(fileBar);
    MakeFindBar(viewColumn);
    viewColumn->addWidget(viewStack, 1);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    row->addWidget(splitter, 1);
    column->addLayout(row, 1);
    setCentralWidget(central);

    auto* hint = new QLabel(tr("Open a document, or drop one here."), viewStack);
    hint->setAlignment(Qt::AlignCenter);
    hint->setStyleSheet(QStringLiteral("color:#7A8499;font-size:15px;"));
    welcome = hint;
    viewStack->addWidget(welcome);
    statusPanel = new StatusPanel(this);
    MakeJobBar();
    statusBar()->addPermanentWidget(statusPanel);
    connect(statusPanel, &StatusPanel::Typed, this, [this] { viewStack->currentWidget()->setFocus(); });

    connect(tabBar, &QTabBar::currentChanged, this, &MainWindow::OnTabChosen);
    connect(tabBar, &QTabBar::tabCloseRequested, this, &MainWindow::CloseTab);
    connect(tabBar, &QTabBar::tabMoved, this, &MainWindow::OnTabMoved);
    connect(navigationBar, &NavigationBar::PageToggled, this, &MainWindow::ShowPane);
    connect(paneArea, &PaneArea::CloseRequested, this, [this] { ShowPane(CurrentPaneId(), false); });
}

QString MainWindow::CurrentPaneId() const
{
    return currentPage ? currentPage->PaneId().ToString() : QString();
}

bool MainWindow::ShowPane(const QString& paneId, bool opens)
{
    Core::G_NavigationPage* page = navigationBar->PageOf(paneId);
    if (!page)
        return false;
    if (opens)
        currentPage = page;
    else if (currentPage == page)
        currentPage = nullptr;
    navigationBar->SetChecked(CurrentPaneId());
    if (currentPage && CurrentTab())
        paneMaker->PaneFor(currentPage, CurrentTab()->Document()); // now: the user waits for it
    ShowCurrentPane();
    return true;
}

void MainWindow::ShowCurrentPane()
{
    DocumentTab* tab = CurrentTab();
    QWidget* pane = nullptr;
    if (currentPage && tab && context->CurrentDocView() == tab->View())
        pane = currentPage->WidgetFor(tab->Document());
    paneArea->ShowPane(currentPage, pane);
    if (currentPage && paneArea->isHidden())
        splitter->setSizes({paneWidth, qMax(paneWidth, splitter->width() - paneWidth)});
    else if (!currentPage && paneArea->isVisible())
        paneWidth = paneArea->width(); // the user's own width comes back with the pane
    paneArea->setVisible(currentPage != nullptr);
}

void MainWindow::RefreshTab(DocumentTab* tab)
{
    const int position = PositionOf(tab);
    if (position < 0)
        return;
    tabBar->setTabText(position, tab->Label());
    RefreshWindow();
}

void MainWindow::RefreshWindow()
{
    DocumentTab* tab = CurrentTab();
    for (QAction* action : qAsConst(documentActions))
        action->setEnabled(tab != nullptr);
    saveAction->setEnabled(tab && tab->IsDirty());
    tabBar->setVisible(TabCount() > 0 && !isFullScreen());
    setWindowModified(tab && tab->IsDirty());
    setWindowTitle(tab ? QFileInfo(tab->Path()).fileName() + QStringLiteral("[*] - tetoreader")
                       : QStringLiteral("tetoreader"));
    fullScreenAction->setChecked(isFullScreen());
    RefreshHistory();
    UpdateToolActions();
}

int MainWindow::PaneWidth() const
{
    return currentPage && paneArea->isVisible() ? paneArea->width() : paneWidth;
}

void MainWindow::ShowNote(const QString& text)
{
    statusBar()->showMessage(text, 6000);
}

// A thin bar above the page, not a box: the file may change while the user is in the middle of something.
void MainWindow::ShowFileChanged(DocumentTab* tab)
{
    if (tab != CurrentTab()) {
        ShowNote(tr("%1 was changed by another program.").arg(QFileInfo(tab->Path()).fileName()));
        return;
    }
    qDeleteAll(fileBar->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
    delete fileBar->layout();
    auto* row = new QHBoxLayout(fileBar);
    fileBar->setStyleSheet(QStringLiteral("QFrame{background:#FFF6DF;}"));
    const bool isThere = QFileInfo::exists(tab->Path());
    fileBarText = new QLabel(isThere ? tr("The file was changed by another program.")
                                     : tr("The file was removed or renamed by another program."),
                             fileBar);
    row->addWidget(fileBarText, 1);
    if (isThere) {
        auto* reload = new QPushButton(tr("Reload"), fileBar);
        reload->setToolTip(tab->IsDirty() ? tr("Discards your changes") : QString());
        connect(
            reload, &QPushButton::clicked, tab, [this, tab] { ReloadTab(tab); }, Qt::QueuedConnection);
        row->addWidget(reload);
    }
    auto* ignore = new QPushButton(tr("Ignore"), fileBar);
    connect(ignore, &QPushButton::clicked, fileBar, &QWidget::hide);
    row->addWidget(ignore);
    fileBar->show();
}
