#include "outline_rename.h"

#include "outline_ids.h"
#include "outline_json.h"
#include "outline_node.h"
#include "outline_pane.h"
#include "outline_tree.h"

#include <common/param_keys.h>
#include <common/text_rules.h>
#include <frame/document/ig_document.h>
#include <frame/operation/operation.h>
#include <frame/view/ui_context.h>

GPI_OutlineRename::GPI_OutlineRename(NaviOutlineWidget* pane)
    : OutlineInterceptor(pane, OutlineId::Rename)
{
    if (!tree)
        return;
    connect(tree, SIGNAL(itemChanged(QTreeWidgetItem*, int)), this, SLOT(ItemChanged(QTreeWidgetItem*, int)));
    connect(tree, SIGNAL(itemDoubleClicked(QTreeWidgetItem*, int)), this,
            SLOT(ItemDoubleClicked(QTreeWidgetItem*, int)));
}

GPI_OutlineRename::~GPI_OutlineRename()
{
    if (ownOperation)
        ownOperation->DeleteLater();
}

// Made once and performed again and again: a working copy that its interceptor took over stays good. Null when the
// name is unknown, or when another document's view is the current one, which the copy would be bound to.
G_Operation* GPI_OutlineRename::OwnOperation()
{
    if (!ownOperation && pane->IsCurrentDocument())
        ownOperation = pane->context->CreateOperationByName(OutlineId::Rename, QString());
    return ownOperation;
}

// In either column: the page column has no editor of its own.
void GPI_OutlineRename::ItemDoubleClicked(QTreeWidgetItem*, int)
{
    if (G_Operation* rename = OwnOperation())
        rename->PerformAction();
}

bool GPI_OutlineRename::PrepareDataHandle(G_Operation* op, int)
{
    QTreeWidgetItem* current = tree->currentItem();
    if (!current || !(current->flags() & Qt::ItemIsEditable))
        return false;
    operation = op;
    tree->editItem(current, OutlineColumn::Title);
    return false;
}

void GPI_OutlineRename::ItemChanged(QTreeWidgetItem* item, int)
{
    pane->SyncExpandStates();
    const G_TreeNode* node = tree->currentItem() ? pane->NodeOf(item) : nullptr;
    if (!node || !OutlineItemOf(node))
        return;
    const QString title = OutlineTitle(node);
    const QString typed = item->text(OutlineColumn::Title);
    const bool isTooLong = typed.size() > MaxNameLength;
    if (typed.isEmpty() || (typed == title && !isTooLong)) {
        SetTitleSilently(item, RemoveBlanks(title)); // as the row showed it before the edit
        return;
    }
    // What is too long is cut and saved, also when what is left is the title that the entry has.
    const QString newTitle = CutText(typed, MaxNameLength);
    if (isTooLong)
        SetTitleSilently(item, newTitle);
    Rename(node, newTitle); // fills the tree anew: `item` is gone from here on
}

void GPI_OutlineRename::SetTitleSilently(QTreeWidgetItem* item, const QString& title)
{
    tree->blockSignals(true);
    item->setText(OutlineColumn::Title, title);
    tree->blockSignals(false);
}

void GPI_OutlineRename::Rename(const G_TreeNode* node, const QString& title)
{
    if (!operation)
        operation = OwnOperation();
    if (!operation)
        return;
    PackEntry(operation, node);
    operation->Params->Add(OutlineParam::Title, title);
    operation->ExecuteAction();
}

// Only when the rename failed: the double click that began the edit is then taken back. Otherwise the tree has been
// filled anew since.
void GPI_OutlineRename::AfterDoActionHandle(G_Operation* op)
{
    QTreeWidgetItem* current = tree->currentItem();
    if (op->Result == 0 && current)
        current->setExpanded(!current->isExpanded());
}
