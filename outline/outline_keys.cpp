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
    if (state() == EditingState) {
        event->ignore(); // what the editor left: another current entry would end the edit half way through
        return;
    }
    if (PerformKey(*event)) {
        event->accept();
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

// False when the key is none of ours.
bool CTreeWidget::PerformKey(const QKeyEvent& event)
{
    NaviOutlineWidget* pane = Pane();
    if (!pane)
        return false;
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (modifiers == Qt::AltModifier)
        return PerformArrow(event.key());
    if (modifiers == Qt::ShiftModifier && event.key() == Qt::Key_F10) {
        OpenMenuAtCurrent();
        return true;
    }
    if (modifiers != Qt::NoModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        pane->OnClickItem(currentItem(), OutlineColumn::Title);
        return true;
    case Qt::Key_F2:
        pane->RenameOutline();
        return true;
    case Qt::Key_Delete:
        DeleteSelection();
        return true;
    default:
        return false;
    }
}

// Moves the selection as a drag would; several entries gather as one run, as they do in a drag.
bool CTreeWidget::PerformArrow(int key)
{
    if (key != Qt::Key_Up && key != Qt::Key_Down && key != Qt::Key_Left && key != Qt::Key_Right)
        return false;
    const NaviOutlineWidget* pane = Pane();
    const QList<G_TreeNode*> nodes = pane->SelectedNodes();
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
