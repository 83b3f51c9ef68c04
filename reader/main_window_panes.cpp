#include "main_window.h"

#include "navigation_bar.h"
#include "pane_area.h"
#include "reader_context.h"
#include "recent_files.h"
#include "status_panel.h"
#include "welcome.h"

#include <frame/document/ig_document.h>
#include <frame/navigation/navigation_page.h>
#include <frame/navigation/pane_maker.h>
#include <frame/view/doc_view.h>

#include <QAction>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QToolButton>

namespace {

constexpr int LeastTabWidth = 110; // that still tells documents apart; with more tabs the bar scrolls
constexpr int MostTabWidth = 260;

class TabBar : public QTabBar
{
public:
    using QTabBar::QTabBar;

protected:
    QSize tabSizeHint(int position) const override
    {
        return QTabBar::tabSizeHint(position).boundedTo(QSize(MostTabWidth, QWIDGETSIZE_MAX));
    }
    QSize minimumTabSizeHint(int position) const override
    {
        return tabSizeHint(position).boundedTo(QSize(LeastTabWidth, QWIDGETSIZE_MAX));
    }
    // The middle button closes a tab, as everywhere.
    void mouseReleaseEvent(QMouseEvent* event) override
    {
        const int position = tabAt(event->pos());
        if (event->button() == Qt::MiddleButton && position >= 0)
            emit tabCloseRequested(position);
        else
            QTabBar::mouseReleaseEvent(event);
    }
};

QTabBar* MakeTabBar(QWidget* parent)
{
    auto* bar = new TabBar(parent);
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

    welcome = new Welcome(viewStack);
    viewStack->addWidget(welcome);
    connect(welcome, &Welcome::OpenRequested, this, &MainWindow::ChooseFiles);
    connect(
        welcome, &Welcome::FileRequested, this, [this](const QString& path) { OpenFile(path); }, Qt::QueuedConnection);
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

// In place of Qt's own, which has no name and follows the desktop's icons.
void MainWindow::MakeCloseButton(DocumentTab* tab, int position)
{
    auto* close = new QToolButton(tabBar);
    close->setIcon(QIcon(QStringLiteral(":/reader/image/close.svg")));
    close->setIconSize(QSize(12, 12));
    close->setAutoRaise(true);
    close->setFixedSize(18, 18);
    close->setFocusPolicy(Qt::NoFocus);
    close->setToolTip(tr("Close"));
    close->setAccessibleName(tr("Close %1").arg(QFileInfo(tab->Path()).fileName()));
    connect(
        close, &QToolButton::clicked, tab, [this, tab] { CloseTab(PositionOf(tab)); }, Qt::QueuedConnection);
    tabBar->setTabButton(position, QTabBar::RightSide, close);
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
    ShowStatusBar();
    setWindowModified(tab && tab->IsDirty());
    const QString name = tab ? QFileInfo(tab->Path()).fileName() : QString();
    const QString title = tab && tab->Document()->IsReadOnly() ? tr("%1[*] (read-only)").arg(name) : name + "[*]";
    setWindowTitle(tab ? title + QStringLiteral(" - tetoreader") : QStringLiteral("tetoreader"));
    fullScreenAction->setChecked(isFullScreen());
    twoPagesAction->setChecked(tab && tab->View()->HasTwoPages());
    if (!tab)
        welcome->ShowRecent(recentFiles->Paths());
    RefreshHistory();
    UpdateToolActions();
}

int MainWindow::PaneWidth() const
{
    return currentPage && paneArea->isVisible() ? paneArea->width() : paneWidth;
}

void MainWindow::ShowNote(const QString& text)
{
    if (statusBar()->isVisibleTo(this))
        statusBar()->showMessage(text, 6000);
    else
        context->ShowNote(text);
}

// A thin bar above the page, not a box: the file may change while the user is in the middle of something.
void MainWindow::ShowFileChanged(DocumentTab* tab)
{
    tab->SetFileChange(true);
    if (tab != CurrentTab()) {
        ShowNote(tr("%1 was changed by another program.").arg(QFileInfo(tab->Path()).fileName()));
        return;
    }
    qDeleteAll(fileBar->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
    delete fileBar->layout();
    auto* row = new QHBoxLayout(fileBar);
    fileBar->setStyleSheet(QStringLiteral("QFrame{background:#FFF6DF;}"));
    const bool isThere = QFileInfo::exists(tab->Path());
    auto* text = new QLabel(isThere ? tr("The file was changed by another program.")
                                    : tr("The file was removed or renamed by another program."),
                            fileBar);
    row->addWidget(text, 1);
    if (isThere) {
        auto* reload = new QPushButton(tr("Reload"), fileBar);
        connect(reload, &QPushButton::clicked, this, &MainWindow::ReloadCurrent, Qt::QueuedConnection);
        row->addWidget(reload);
    }
    auto* ignore = new QPushButton(tr("Ignore"), fileBar);
    connect(ignore, &QPushButton::clicked, tab, [this, tab] {
        tab->SetFileChange(false);
        fileBar->hide();
    });
    row->addWidget(ignore);
    fileBar->show();
}
