#include "bookmark_pane.h"

#include "bookmark_commands.h"
#include "bookmark_delegate.h"
#include "bookmark_events.h"
#include "bookmark_ids.h"
#include "bookmark_interceptors.h"
#include "bookmark_item.h"
#include "bookmark_jump.h"
#include "bookmark_tree.h"

#include <common/notify.h>
#include <common/param_keys.h>
#include <common/rights.h>
#include <frame/base/converters.h>
#include <frame/document/ig_document.h>
#include <frame/operation/event.h>
#include <frame/utils/no_content.h>
#include <frame/view/context_menu.h>
#include <frame/view/doc_view.h>
#include <frame/view/settings.h>
#include <frame/view/ui_context.h>
#include <plugin/shell/no_content.h>
#include <plugin/shell/style.h>
#include <plugin/shell/undo_stack.h>

#include <QDebug>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QUndoStack>
#include <QVBoxLayout>

namespace {

G_Dest* DestinationOf(const QTreeWidgetItem* item)
{
    return item->data(BookmarkItem::NameColumn, Qt::UserRole).value<G_Dest*>();
}

} // namespace

NaviBookmarkWidget::NaviBookmarkWidget(QWidget* parent)
    : PaneWidget(parent)
{
}

NaviBookmarkWidget::~NaviBookmarkWidget()
{
    if (tree)
        tree->DropEdit(); // nothing is renamed on the way out: the losing of the focus would commit to a dying pane
    delete resetPositionHandler;
    delete renameHandler;
    delete wrapHandler;
    delete deleteHandler;
    delete deleteAllHandler;
}

void NaviBookmarkWidget::Init(IG_Document* newDocument)
{
    document = newDocument;
    if (!document)
        return;
    BuildLayout();
    MakeInterceptors();
    restricted = IsRestricted(document);
    const bool enabled = MayEdit(document);
    addButton->setEnabled(enabled);
    FillRows(document->GetBookmarkRoot());
    deleteButton->setEnabled(enabled && HasRows());
    ConnectUndoStack(context->CurrentDocView(), this, SLOT(UpdateBookmark(int)));
    UpdateNoContent();
}

void NaviBookmarkWidget::BuildLayout()
{
    auto* column = new QVBoxLayout(this);
    column->setSpacing(PaneStyle::Scaled(8));
    column->setContentsMargins(PaneStyle::Scaled(6), 0, 0, 0);
    column->addLayout(BuildButtonRow());
    separator = new QLabel(this);
    separator->setFixedHeight(1);
    separator->setStyleSheet(PaneStyle::Separator());
    column->addWidget(separator);
    BuildTree();
    column->addWidget(tree);
}

QLayout* NaviBookmarkWidget::BuildButtonRow()
{
    auto* row = new QHBoxLayout;
    row->setSpacing(PaneStyle::Scaled(12));
    row->setContentsMargins(PaneStyle::Scaled(8), PaneStyle::Scaled(4), 0, 0);
    addButton = new QPushButton(this);
    PaneStyle::MakeToolButton(addButton, QStringLiteral("btn_add"), tr("add bookmark"));
    deleteButton = new QPushButton(this);
    PaneStyle::MakeToolButton(deleteButton, QStringLiteral("btn_del"), tr("delete bookmark"));
    row->addWidget(addButton);
    row->addWidget(deleteButton);
    row->addSpacerItem(new QSpacerItem(150, 16, QSizePolicy::Expanding, QSizePolicy::Minimum));
    connect(addButton, SIGNAL(clicked()), this, SLOT(AddBookmark()));
    connect(deleteButton, SIGNAL(clicked()), this, SLOT(DelBookmark()));
    return row;
}

void NaviBookmarkWidget::BuildTree()
{
    tree = new CBookmarkTreeWidget(this, context->CurrentDocView());
    tree->setAccessibleName(tr("bookmarks"));
    tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    // Rows are edited through "d_bookmarkrename" alone: an editor of the view's own would show a name that the
    // document does not have.
    tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tree->setColumnCount(1);
    tree->setHeaderHidden(true);
    tree->setFrameShape(QFrame::NoFrame);
    tree->setContextMenuPolicy(Qt::CustomContextMenu);
    tree->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tree->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    tree->setIndentation(0);
    // Not scaled here: the delegate scales the height that this gives.
    tree->setStyleSheet(QStringLiteral("QTreeView{color:#36425A; background:#F5F7F9; outline:0px;}"
                                       "QTreeView::item{padding-left:8px; padding-right:8px; height:25px;}"));
    tree->setItemDelegate(new BookMarkTreeItemDelegate(tree));
    connect(tree, SIGNAL(itemClicked(QTreeWidgetItem*, int)), this, SLOT(onClickItem(QTreeWidgetItem*, int)));
    connect(tree, SIGNAL(itemDoubleClicked(QTreeWidgetItem*, int)), this, SLOT(RenameBookmark(QTreeWidgetItem*)));
    connect(tree, SIGNAL(customContextMenuRequested(const QPoint&)), this, SLOT(popMenu(const QPoint&)));
}

void NaviBookmarkWidget::MakeInterceptors()
{
    if (!resetPositionHandler)
        resetPositionHandler = new GPI_BookmarkResetPosition(this);
    if (!renameHandler)
        renameHandler = new GPI_BookmarkRename(this);
    if (!wrapHandler)
        wrapHandler = new GPI_BookmarkWrap(this);
    if (!deleteHandler)
        deleteHandler = new GPI_BookmarkDelete(this);
    if (!deleteAllHandler)
        deleteAllHandler = new GPI_BookmarkDeleteAll(this);
}

bool NaviBookmarkWidget::HasRows() const
{
    return tree->topLevelItemCount() > 0;
}

bool NaviBookmarkWidget::MayEditRows() const
{
    return !restricted && ::MayEditRows(context->CurrentDocView(), document);
}

// All rows in one insertion: the view is told once, however many there are.
void NaviBookmarkWidget::FillRows(G_TreeNode* root)
{
    const int count = root ? root->SubNodeCount() : 0;
    const bool isEditable = MayEditRows();
    QList<QTreeWidgetItem*> items;
    items.reserve(count);
    for (int row = 0; row < count; ++row)
        items.append(BookmarkItem::FromNode(root->SubNode(row), isEditable));
    tree->insertTopLevelItems(0, items);
    if (items.isEmpty())
        deleteButton->setEnabled(false);
}

void NaviBookmarkWidget::UpdateBookmark(int)
{
    if (!tree)
        return;
    const RowPlace place = tree->CurrentPlace();
    tree->blockSignals(true);
    // An edit that is open belongs to a row that goes now. Clearing the list would commit it half way through, and its
    // text might bring up a box.
    if (tree->DropEdit())
        isRenaming = false;
    tree->dragNodes.clear(); // they may be gone
    tree->clear();
    G_TreeNode* root = document->GetBookmarkRoot();
    if (!root) {
        deleteButton->setEnabled(false);
        tree->blockSignals(false);
        UpdateNoContent();
        return;
    }
    FillRows(root);
    tree->GoBackTo(place);
    OpenPendingEditor();
    // Unconditionally, not back to what it was: this also heals signals that were left blocked elsewhere.
    tree->blockSignals(false);
    if (HasRows())
        deleteButton->setEnabled(true);
    UpdateNoContent();
}

// The row of a bookmark just added goes straight into its editor.
void NaviBookmarkWidget::OpenPendingEditor()
{
    if (!tree->pendingRoot || tree->pendingRow < 0)
        return;
    QTreeWidgetItem* item = tree->topLevelItem(tree->pendingRow);
    if (!item)
        return;
    tree->setCurrentItem(item);
    RenameBookmark(item);
    tree->pendingRoot = nullptr;
    tree->pendingRow = -1;
}

bool NaviBookmarkWidget::IsMyAddition(G_Event* event) const
{
    const auto* added = dynamic_cast<G_BookmarkAddEvent*>(event);
    return added && added->Concerns(BookmarkId::Add, document);
}

void NaviBookmarkWidget::UpdateBookmarkAll(G_Event* event)
{
    if (!IsMyAddition(event))
        return;
    tree->CommitEdit(); // what was typed in another row is kept
    tree->blockSignals(true);
    G_TreeNode* root = document->GetBookmarkRoot();
    if (!root)
        return; // on purpose with the signals blocked: the next refill unblocks them
    const int row = root->SubNodeCount() - 1;
    G_TreeNode* node = root->SubNode(row);
    BookmarkItem* item = node ? BookmarkItem::FromNode(node, MayEditRows(), BookmarkItem::Shown::Stored) : nullptr;
    if (item)
        tree->addTopLevelItem(item);
    tree->blockSignals(false);
    if (HasRows())
        deleteButton->setEnabled(true);
    UpdateNoContent();
    QUndoStack* stack = EnsureUndoStack(context->CurrentDocView());
    if (!item || !stack)
        return;
    tree->pendingRoot = root;
    tree->pendingRow = row;
    // The push changes the stack's index: the list is filled anew and the row's editor opens.
    stack->push(new AddBookmarkCommand(node, context));
}

void NaviBookmarkWidget::MoveBookmarks(const QList<G_TreeNode*>& nodes, G_TreeNode* dstNode, bool toTop)
{
    QUndoStack* stack = EnsureUndoStack(context->CurrentDocView());
    if (nodes.isEmpty() || !stack)
        return;
    stack->push(new BatchMoveBookmarkCommand(nodes, dstNode, toTop, context));
    FireDocumentChanged(context);
}

void NaviBookmarkWidget::AddBookmark()
{
    // Not tested for null: the add-on registers the name itself.
    G_Operation* operation = context->CreateOperationByName(BookmarkId::Add, QString());
    operation->Params->Add(ParamKey::Add, true);
    operation->PerformAction();
    operation->DeleteLater();
}

void NaviBookmarkWidget::DelBookmark()
{
    G_Operation* operation = context->CreateOperationByName(BookmarkId::Delete, QString());
    if (!operation)
        return;
    operation->Params->Add(ParamKey::Popup, true);
    operation->PerformAction();
    operation->DeleteLater();
}

void NaviBookmarkWidget::RenameBookmark(QTreeWidgetItem*)
{
    G_Operation* operation = context->CreateOperationByName(BookmarkId::Rename, QString());
    if (!operation)
        return;
    operation->PerformAction();
    operation->DeleteLater();
}

void NaviBookmarkWidget::onClickItem(QTreeWidgetItem* item, int)
{
    G_DocView* view = context->CurrentDocView();
    if (!item || !view || view->GDocument() != document)
        return;
    const bool keepZoom = G_SettingMgr::Instance()->ConfigValue(QStringLiteral("read.keepcurrentzoom")).toBool();
    clickedByUser = true;
    const G_Dest* dest = DestinationOf(item);
    if (!dest)
        return; // the row of a node that carries no bookmark
    const BookmarkJump jump = JumpTo(*dest, *document);
    if (!keepZoom) {
        view->BeginJump();
        view->SetZoomMode(static_cast<G_Preferences::ZoomMode>(jump.viewZoomMode));
        if (jump.hasZoom)
            view->SetZoom(jump.zoomFactor * 100, false);
    }
    qDebug() << "page" << jump.pageIndex << "zoom mode" << jump.viewZoomMode << "NaviBookmarkWidget::onClickItem";
    qDebug() << "rect" << dest->left << dest->top << dest->right << dest->bottom << "NaviBookmarkWidget::onClickItem";
    view->GoToPage(view, jump.pageIndex, jump.rect, jump.fitRect);
    if (!keepZoom)
        context->FireEvent(new G_DocViewEvent(view, EventType::ViewZoomChanged));
}

void NaviBookmarkWidget::pageChangeSlot(G_DocView* sender)
{
    if (clickedByUser) {
        clickedByUser = false;
        return;
    }
    if (!sender || !document || sender->GDocument() != document)
        return;
    const QRect visible = sender->VisibleSceneRect();
    const int pageIndex = sender->CurrentPageIndex();
    const int pageId = document->PageIdFromIndex(pageIndex);
    for (int row = 0; row < tree->topLevelItemCount(); ++row) {
        QTreeWidgetItem* item = tree->topLevelItem(row);
        const G_Dest* dest = DestinationOf(item);
        if (!dest || (dest->pageId != pageId && dest->pageIndex != pageIndex))
            continue;
        const CCA_GPoint corner{dest->left, dest->top};
        if (visible.contains(GQ_ToQPoint(sender->ScenePointFromDocPoint(corner, pageIndex)))) {
            // An edit in another row ends with the change of the current row; it must not fill the list anew within it.
            if (tree->currentItem() != item)
                tree->CommitEdit();
            tree->setCurrentItem(tree->topLevelItem(row)); // the list may be another one by now
            return;
        }
    }
}

void NaviBookmarkWidget::popMenu(const QPoint& point)
{
    if (!tree || !document->CheckRight(true) || document->IsReadOnly() || !tree->itemAt(point))
        return;
    context->ContextMenu()->PopupMenu(QLatin1String(BookmarkId::Open),
                                      {{QLatin1String(BookmarkId::Wrap), PaneStyle::MenuSwitch(wordWrap)}});
}

void NaviBookmarkWidget::UpdateNoContent()
{
    if (tree)
        UpdateNoContentPicture(noContent, tree, !HasRows(), QStringLiteral("nocontent_bookmark.svg"));
}

void NaviBookmarkWidget::RefreshStale()
{
    if (document)
        UpdateBookmark(0);
}

void NaviBookmarkWidget::resizeEvent(QResizeEvent* event)
{
    PaneWidget::resizeEvent(event);
    UpdateNoContent();
}
