#include "outline_pane.h"

#include "outline_commands.h"
#include "outline_events.h"
#include "outline_ids.h"
#include "outline_interceptors.h"
#include "outline_node.h"
#include "outline_rename.h"
#include "outline_tree.h"

#include <common/notify.h>
#include <common/public_method.h>
#include <common/rights.h>
#include <frame/base/converters.h>
#include <frame/document/ig_document.h>
#include <frame/operation/event.h>
#include <frame/operation/operation.h>
#include <frame/utils/no_content.h>
#include <frame/view/context_menu.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>
#include <plugin/shell/no_content.h>
#include <plugin/shell/style.h>
#include <plugin/shell/undo_stack.h>

#include <QDebug>
#include <QHash>
#include <QPushButton>
#include <QToolButton>
#include <QUndoStack>

#include <algorithm>

namespace {

constexpr int ClickEvent = 3; // how actions are told that a click runs them

ContextMenuItemState Greyed()
{
    ContextMenuItemState state;
    state.enabled = false;
    return state;
}

ContextMenuItemState Absent()
{
    ContextMenuItemState state;
    state.visible = false;
    return state;
}

} // namespace

NaviOutlineWidget::NaviOutlineWidget(QWidget* parent)
    : PaneWidget(parent)
    , rebuildOnShow(needsRefresh)
{
}

NaviOutlineWidget::~NaviOutlineWidget()
{
    if (tree)
        tree->DropEdit(); // nothing is renamed on the way out
    delete resetPosHandler;
    delete addHandler;
    delete addSubHandler;
    delete renameHandler;
    delete wordwrapHandler;
    delete expandSubHandler;
    delete delHandler;
    delete delAllHandler;
    delete batchAddHandler;
    delete expandOrCollapseHandler;
    delete noContent;
}

void NaviOutlineWidget::Init(IG_Document* newDocument)
{
    document = newDocument;
    if (!document)
        return;
    BuildLayout();
    outlineLocked = IsRestricted(document);
    FillTree();
    EnableButtons();
    UpdateNoContent();
    MakeInterceptors();
    ConnectControls();
    ConnectUndoStack(context->CurrentDocView(), this, SLOT(UpdateOutline(int)));
    // The pane opens fully expanded, whatever the document's records say.
    ExpandOrCollapseOutline();
}

void NaviOutlineWidget::MakeInterceptors()
{
    if (!resetPosHandler)
        resetPosHandler = new GPI_OutlineResetPos(this);
    if (!addHandler)
        addHandler = new GPI_OutlineAdd(this);
    if (!addSubHandler)
        addSubHandler = new GPI_OutlineAddSub(this);
    if (!renameHandler)
        renameHandler = new GPI_OutlineRename(this);
    if (!wordwrapHandler)
        wordwrapHandler = new GPI_OutlineWordwrap(this);
    if (!expandSubHandler)
        expandSubHandler = new GPI_OutlineExpandSub(this);
    if (!delHandler)
        delHandler = new GPI_OutlineDel(this);
    if (!delAllHandler)
        delAllHandler = new GPI_OutlineDelAll(this);
    if (!batchAddHandler)
        batchAddHandler = new GPI_OutlineBatchAdd(this);
    if (!expandOrCollapseHandler)
        expandOrCollapseHandler = new GPI_OutlineExpandOrCollapse(this);
}

void NaviOutlineWidget::EnableButtons()
{
    const bool isEditable = MayEdit(document);
    const G_DocView* view = context->CurrentDocView();
    addButton->setEnabled(isEditable);
    delButton->setEnabled(isEditable && HasEntries());
    expandButton->setEnabled(HasEntries() && !(view && view->IsEncrypt()));
}

G_TreeNode* NaviOutlineWidget::NodeOf(QTreeWidgetItem* item) const
{
    return itemToNode.value(item);
}

// Rows and nodes stand in step, so the way down is that of the rows.
QTreeWidgetItem* NaviOutlineWidget::ItemOf(G_TreeNode* node) const
{
    if (!node || !nodeOrder.contains(node))
        return nullptr;
    QList<int> rows;
    for (const G_TreeNode* above = node; above->parent; above = above->parent)
        rows.prepend(above->index);
    QTreeWidgetItem* item = tree->invisibleRootItem();
    for (const int row : rows) {
        item = item->child(row);
        if (!item)
            return nullptr;
    }
    return NodeOf(item) == node ? item : nullptr;
}

QList<G_TreeNode*> NaviOutlineWidget::SelectedNodes() const
{
    QList<G_TreeNode*> nodes;
    for (QTreeWidgetItem* item : tree->selectedItems()) {
        if (G_TreeNode* node = NodeOf(item))
            nodes.append(node);
    }
    PublicMethod::DropDescendants(nodes);
    std::sort(nodes.begin(), nodes.end(),
              [this](G_TreeNode* a, G_TreeNode* b) { return nodeOrder.value(a) < nodeOrder.value(b); });
    return nodes;
}

bool NaviOutlineWidget::HasEntries() const
{
    return tree && tree->topLevelItemCount() > 0;
}

void NaviOutlineWidget::FillTree()
{
    const int expectedCount = itemToNode.size();
    tree->DropEdit(); // a commit while the rows are being cleared would be one of a row that is gone
    tree->dragNodes.clear();
    tree->blockSignals(true);
    tree->clear();
    tree->blockSignals(false);
    // All of it, also without an outline: nothing may lead to nodes that are gone.
    itemToNode.Reset(tree, 0);
    nodeOrder.clear();
    nextOrder = 0;
    targets.clear();
    OutlineRows rows = MakeOutlineRows(document->GetOutlineRoot(), document, MayReorder(document), expectedCount);
    nodeOrder.swap(rows.nodeOrder);
    targets.swap(rows.targets);
    nextOrder = rows.nextOrder;
    tree->blockSignals(true);
    tree->insertTopLevelItems(0, rows.topItems);
    itemToNode.Reset(tree, qMax(0, nextOrder - 1)); // all but the root
    tree->RestoreExpansion();
    tree->blockSignals(false);
}

void NaviOutlineWidget::UpdateOutline(int)
{
    if (!document)
        return;
    const EntryPlace place = tree->CurrentPlace();
    FillTree();
    tree->GoBackTo(place);
    OpenPendingEditor();
    // On purpose without the right to edit and without the encryption: the operations refuse what is not allowed.
    delButton->setEnabled(HasEntries());
    expandButton->setEnabled(HasEntries());
    if (document->IsReadOnly()) {
        addButton->setEnabled(false);
        delButton->setEnabled(false);
    }
    UpdateNoContent();
}

// A new entry goes straight into its editor.
void NaviOutlineWidget::OpenPendingEditor()
{
    G_TreeNode* parent = tree->pendingParent;
    const int row = tree->pendingRow;
    tree->ClearPending();
    // Known after the refill, or it may have died since the request was made.
    if (!parent || row < 0 || !nodeOrder.contains(parent))
        return;
    QTreeWidgetItem* parentItem = parent->parent ? ItemOf(parent) : tree->invisibleRootItem();
    QTreeWidgetItem* item = parentItem ? parentItem->child(row) : nullptr;
    if (!item)
        return;
    tree->setCurrentItem(item);
    if (item->flags() & Qt::ItemIsEditable)
        tree->editItem(item, OutlineColumn::Title);
}

void NaviOutlineWidget::SyncExpandStates()
{
    PointerTable<G_TreeNode*, bool> states;
    states.swap(expandState);
    for (auto state = states.cbegin(); state != states.cend(); ++state) {
        if (!nodeOrder.contains(state.key()))
            continue;
        const G_OutlineItem* entry = OutlineItemOf(state.key());
        if (!entry || entry->expanded == state.value())
            continue;
        auto* changed = new G_OutlineItem(*entry);
        changed->expanded = state.value();
        state.key()->SetNodeData(changed);
    }
}

void NaviOutlineWidget::SetWordWrap(bool wraps)
{
    wordWrap = wraps;
    // Another width and back: rows are measured again.
    resize(width() + 1, height());
    resize(width() - 1, height());
    tree->RelayOutRows(); // a hidden pane, or one in a layout, gets no resize
    update();
}

void NaviOutlineWidget::MoveOutlineNodes(QList<G_TreeNode*> nodes, G_TreeNode* dst, bool asChild)
{
    tree->CommitEdit(); // a rename keeps the nodes
    QUndoStack* stack = EnsureUndoStack(context->CurrentDocView());
    const auto isGone = [this](G_TreeNode* node) { return !nodeOrder.contains(node); };
    nodes.erase(std::remove_if(nodes.begin(), nodes.end(), isGone), nodes.end());
    if (nodes.isEmpty() || isGone(dst) || !stack || !IsCurrentDocument())
        return;
    // As ahead of every change: the records that move and the tree filled anew show what the user sees now.
    SyncExpandStates();
    stack->push(new BatchMoveOutlineCommand(nodes, dst, asChild, context, this));
    FireDocumentChanged(context);
}

bool NaviOutlineWidget::IsExpanded(QTreeWidgetItem* item, const QModelIndex& index) const
{
    // For a row without children the tree holds no state: a hundred thousand of them would cost as much as the rows.
    return item->childCount() > 0 ? tree->isExpanded(index) : static_cast<OutlineTreeItem*>(item)->IsRecordOpen();
}

void NaviOutlineWidget::ExpandOrCollapseOutline()
{
    if (!tree)
        return;
    const bool isExpanded = !expandButton->isChecked();
    const QString tip = isExpanded ? tr("Collapse all outline") : tr("Expand all outline");
    tree->blockSignals(true);
    expandButton->setToolTip(tip);
    expandButton->setAccessibleName(tip);
    if (isExpanded)
        tree->ExpandRows(QModelIndex(), true);
    else
        tree->collapseAll();
    tree->ForEachRow(QModelIndex(), [isExpanded](QTreeWidgetItem* item, const QModelIndex&) {
        static_cast<OutlineTreeItem*>(item)->SetRecordOpen(isExpanded);
    });
    tree->blockSignals(false);
    RecordExpandState();
}

void NaviOutlineWidget::ExpandSubOutline()
{
    SetSubOutlineExpanded(true);
}

void NaviOutlineWidget::CollapseSubOutline()
{
    SetSubOutlineExpanded(false);
}

void NaviOutlineWidget::SetSubOutlineExpanded(bool isExpanded)
{
    const QModelIndex current = tree ? tree->currentIndex().siblingAtColumn(OutlineColumn::Title) : QModelIndex();
    if (!current.isValid())
        return;
    tree->ExpandRows(current, isExpanded);
    tree->ForEachBranch(current, [this](QTreeWidgetItem* item, const QModelIndex& index) {
        expandState.insert(NodeOf(item), tree->isExpanded(index));
    });
}

void NaviOutlineWidget::RecordExpandState(QTreeWidgetItem* item)
{
    if (G_TreeNode* node = NodeOf(item))
        expandState.insert(node, IsExpanded(item, tree->IndexOf(item)));
}

void NaviOutlineWidget::RecordExpandState()
{
    expandState.clear();
    if (!tree)
        return;
    expandState.reserve(itemToNode.size());
    tree->ForEachRow(QModelIndex(), [this](QTreeWidgetItem* item, const QModelIndex& index) {
        if (G_TreeNode* node = NodeOf(item))
            expandState.insert(node, IsExpanded(item, index));
    });
}

void NaviOutlineWidget::OnClickItem(QTreeWidgetItem* item, int)
{
    skipNextPageSync = true; // whichever way the click ends
    // A copy: an action may ask the user first, and the entry may be gone by the answer.
    const std::unique_ptr<G_OutlineItem> entry(CopyOfItem(NodeOf(item)));
    if (entry && !entry->actions.IsEmpty())
        context->ActionHandler()->DoActions(entry->actions, document, ClickEvent);
}

void NaviOutlineWidget::PageChangeSlot(G_DocView* sender)
{
    if (skipNextPageSync) {
        skipNextPageSync = false;
        return;
    }
    if (!sender || !document || sender->GDocument() != document)
        return;
    const QRect visible = sender->VisibleSceneRect();
    const int page = sender->CurrentPageIndex();
    const int pageId = document->PageIdFromIndex(page);
    QHash<int, bool> isOtherIdHere; // asked once for each page
    const auto liesHere = [&](int id) {
        const auto known = isOtherIdHere.constFind(id);
        return known != isOtherIdHere.constEnd() ? *known
                                                 : *isOtherIdHere.insert(id, document->PageIndexFromId(id) == page);
    };
    for (const OutlineTarget& target : qAsConst(targets)) {
        if (target.pageId != pageId && !liesHere(target.pageId))
            continue;
        const CCA_Point place = sender->ScenePointFromDocPoint({target.left, target.top}, page);
        if (!visible.contains(GQ_ToQPoint(place)))
            continue;
        MakeCurrentForPage(target.item);
        return;
    }
}

void NaviOutlineWidget::MakeCurrentForPage(QTreeWidgetItem* item)
{
    if (tree->currentItem() != item) {
        // An edit in another row ends with the change of the current row; it must not fill the tree anew within it.
        G_TreeNode* node = NodeOf(item);
        tree->CommitEdit();
        item = ItemOf(node);
    }
    if (!item)
        return;
    tree->setCurrentItem(item);
    qDebug() << item->text(OutlineColumn::Title) << "NaviOutlineWidget::PageChangeSlot";
}

void NaviOutlineWidget::Perform(const char* operation)
{
    G_Operation* copy = context->CreateOperationByName(operation, QString());
    if (!copy)
        return;
    copy->PerformAction();
    copy->DeleteLater();
}

void NaviOutlineWidget::AddOutline()
{
    Perform(OutlineId::Add);
}

void NaviOutlineWidget::DelOutline()
{
    Perform(OutlineId::Del);
}

void NaviOutlineWidget::DelAllOutline()
{
    Perform(OutlineId::DelAll);
}

void NaviOutlineWidget::BatchAddOutline()
{
    Perform(OutlineId::BatchAdd);
}

void NaviOutlineWidget::RenameOutline()
{
    Perform(OutlineId::Rename);
}

void NaviOutlineWidget::UpdateOutline(G_Event* event)
{
    const auto* request = dynamic_cast<G_OutlineAddEvent*>(event);
    // Named as the operation that the pane performs, and not as the one that asks for it.
    if (request && request->Concerns(OutlineId::Add, document))
        Perform(OutlineId::Add);
}

void NaviOutlineWidget::PopRequestMenu(const QPoint&)
{
    const int count = tree->selectedItems().size();
    const QTreeWidgetItem* current = tree->currentItem();
    if (count == 0 || !current)
        return;
    // Rights are not asked for here: wrapping and expanding work on every document.
    const bool isReadOnly = document->IsReadOnly();
    const bool isSingle = count == 1;
    const ContextMenuItemState single = !isSingle ? Absent() : isReadOnly ? Greyed() : ContextMenuItemState();
    QMap<QString, ContextMenuItemState> states;
    for (const char* operation : {OutlineId::ResetPos, OutlineId::Add, OutlineId::AddSub, OutlineId::Rename})
        states.insert(QLatin1String(operation), single);
    if (isSingle && isReadOnly) {
        for (const char* operation : {OutlineId::Del, OutlineId::DelAll})
            states.insert(QLatin1String(operation), Greyed());
    }
    ContextMenuItemState expandSub = isSingle ? ContextMenuItemState() : Absent();
    if (isSingle)
        expandSub.enabled = current->childCount() > 0;
    states.insert(QLatin1String(OutlineId::ExpandSub), expandSub);
    states.insert(QLatin1String(OutlineId::Wordwrap), PaneStyle::MenuSwitch(wordWrap));
    context->ContextMenu()->PopupMenu(QLatin1String(OutlineId::Open), states);
}

void NaviOutlineWidget::UpdateNoContent()
{
    if (!tree)
        return;
    UpdateNoContentPicture(noContent, tree, !HasEntries(), QStringLiteral("nocontent_outline.svg"));
    if (noContent)
        tree->update();
}

void NaviOutlineWidget::RefreshStale()
{
    UpdateOutline(0);
}

void NaviOutlineWidget::resizeEvent(QResizeEvent* event)
{
    UpdateNoContent();
    PaneWidget::resizeEvent(event);
}
