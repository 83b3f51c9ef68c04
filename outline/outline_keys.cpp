// The keys of the outline's tree: what the mouse does, through the same operations and the same command.

#include "outline_pane.h"
#include "outline_tree.h"

#include <common/rights.h>
#include <frame/document/tree_node.h>

#include <QKeyEvent>

void CTreeWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Control) {
        ctrlHeld = true;
        return;
    }
    ReorderTree::keyPressEvent(event);
}

void CTreeWidget::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Control) {
        ctrlHeld = false;
        return;
    }
    ReorderTree::keyReleaseEvent(event);
}

void CTreeWidget::GoToCurrent()
{
    if (NaviOutlineWidget* pane = Pane())
        pane->OnClickItem(currentItem(), OutlineColumn::Title);
}

void CTreeWidget::RenameCurrent()
{
    if (NaviOutlineWidget* pane = Pane())
        pane->RenameOutline();
}

// Moves the selection as a drag would; several entries gather as one run, as they do in a drag.
bool CTreeWidget::MoveSelection(int key)
{
    const NaviOutlineWidget* pane = Pane();
    const QList<G_TreeNode*> nodes = pane ? pane->SelectedNodes() : QList<G_TreeNode*>();
    if (nodes.isEmpty() || !MayReorder(pane->document))
        return true;
    if (key == Qt::Key_Up)
        MoveSelectionUp(nodes);
    else if (key == Qt::Key_Down)
        MoveSelectionDown(nodes);
    else if (key == Qt::Key_Left)
        OutdentSelection(nodes);
    else
        IndentSelection(nodes);
    return true;
}

// Nothing selected stands ahead of the first node in its parent, so its neighbours there are good destinations.
void CTreeWidget::MoveSelectionUp(const QList<G_TreeNode*>& nodes)
{
    G_TreeNode* first = nodes.first();
    G_TreeNode* parent = first->parent;
    const bool isRun = nodes.last()->parent == parent && nodes.last()->index - first->index + 1 == nodes.size();
    if (first->index == 0 && isRun)
        return;
    if (first->index >= 2)
        MoveAndSelect(nodes, parent->SubNode(first->index - 2), false);
    else
        MoveAndSelect(nodes, parent, true);
}

void CTreeWidget::MoveSelectionDown(const QList<G_TreeNode*>& nodes)
{
    G_TreeNode* last = nodes.last();
    if (G_TreeNode* behind = last->parent->SubNode(last->index + 1))
        MoveAndSelect(nodes, behind, false);
}

void CTreeWidget::OutdentSelection(const QList<G_TreeNode*>& nodes)
{
    G_TreeNode* parent = nodes.first()->parent;
    if (parent->parent)
        MoveAndSelect(nodes, parent, false);
}

// To the end of the previous sibling's children: the entries stay in the order in which they are read.
void CTreeWidget::IndentSelection(const QList<G_TreeNode*>& nodes)
{
    const G_TreeNode* first = nodes.first();
    G_TreeNode* newParent = first->parent->SubNode(first->index - 1);
    if (!newParent)
        return;
    G_TreeNode* lastChild = newParent->SubNode(newParent->SubNodeCount() - 1);
    MoveAndSelect(nodes, lastChild ? lastChild : newParent, !lastChild);
}

void CTreeWidget::MoveAndSelect(const QList<G_TreeNode*>& nodes, G_TreeNode* dst, bool asChild)
{
    Pane()->MoveOutlineNodes(nodes, dst, asChild);
    SelectNodes(nodes); // moved nodes stay the same ones
}

// The key goes on with the entry that took the place of the deleted ones.
void CTreeWidget::DeleteSelection()
{
    NaviOutlineWidget* pane = Pane();
    if (!pane)
        return;
    const QList<G_TreeNode*> nodes = pane->SelectedNodes();
    EntryPlace place;
    for (const G_TreeNode* node = nodes.value(0); node && node->parent; node = node->parent)
        place.rows.prepend(node->index);
    const int count = pane->itemToNode.size();
    const QPointer<CTreeWidget> self(this); // the question's loop may close the document
    pane->DelOutline();
    if (!self || place.rows.isEmpty() || pane->itemToNode.size() >= count)
        return;
    place.scrollValue = CurrentPlace().scrollValue;
    GoBackTo(place);
    if (currentItem())
        setCurrentItem(currentItem());
}
