#include "outline_rows.h"

#include "outline_item.h"
#include "outline_node.h"

#include <frame/document/ig_document.h>

#include <QHash>

#include <vector>

namespace {

class RowMaker
{
public:
    RowMaker(IG_Document* document, bool isEditable, int expectedCount)
        : document(document)
        , isEditable(isEditable)
    {
        rows.nodeOrder.reserve(expectedCount + 1);
        rows.targets.reserve(expectedCount);
    }
    OutlineRows Make(G_TreeNode* root);

private:
    // A node whose children are being made.
    struct Branch
    {
        G_TreeNode* node;      // not owned
        QTreeWidgetItem* item; // null for the root
        int next;              // the child to make next
        QList<QTreeWidgetItem*> children;
    };
    static Branch Begin(G_TreeNode* node, QTreeWidgetItem* item);
    OutlineTreeItem* MakeRow(G_TreeNode* node);
    int ShownPageIndex(const G_OutlineItem& entry, bool isTopLevel);
    int PageIndexOf(int pageId);

    IG_Document* document; // not owned
    bool isEditable;
    OutlineRows rows;
    QHash<int, int> pageIndexById; // asked once for each page, however slow the document answers
};

RowMaker::Branch RowMaker::Begin(G_TreeNode* node, QTreeWidgetItem* item)
{
    Branch branch{node, item, 0, {}};
    branch.children.reserve(node->SubNodeCount());
    return branch;
}

// Children are handed over in one list each, before their parent goes anywhere: no view is told of single rows.
OutlineRows RowMaker::Make(G_TreeNode* root)
{
    rows.nodeOrder.insert(root, 0);
    rows.nextOrder = 1;
    std::vector<Branch> open;
    open.push_back(Begin(root, nullptr));
    while (!open.empty()) {
        Branch& branch = open.back();
        if (branch.next < branch.node->SubNodeCount()) {
            G_TreeNode* node = branch.node->SubNode(branch.next++);
            OutlineTreeItem* item = MakeRow(node);
            branch.children.append(item);
            if (node->SubNodeCount() > 0)
                open.push_back(Begin(node, item));
            continue;
        }
        if (branch.item)
            branch.item->addChildren(branch.children);
        else
            rows.topItems = branch.children;
        open.pop_back();
    }
    return std::move(rows);
}

OutlineTreeItem* RowMaker::MakeRow(G_TreeNode* node)
{
    OutlineTreeItem::Entry row;
    row.node = node;
    row.depth = node->level;
    row.isEditable = isEditable;
    const G_OutlineItem* entry = OutlineItemOf(node);
    if (entry) {
        row.title = entry->text;
        row.isOpen = entry->expanded;
        row.pageIndex = ShownPageIndex(*entry, node->level == 1);
    }
    auto* item = new OutlineTreeItem(row);
    rows.nodeOrder.insert(node, rows.nextOrder++);
    // Of several actions the first alone is followed, also when it leads nowhere.
    const auto* first =
        entry && !entry->actions.IsEmpty() ? dynamic_cast<const G_ActionGoto*>(entry->actions[0]) : nullptr;
    if (first)
        rows.targets.append({item, first->dest->pageId, first->dest->left, first->dest->top});
    return item;
}

// The page of the last go-to action that leads to one.
int RowMaker::ShownPageIndex(const G_OutlineItem& entry, bool isTopLevel)
{
    int shown = -1;
    for (const G_Action* action : entry.actions) {
        const auto* jump =
            action && action->actionType == G_Action::Goto ? dynamic_cast<const G_ActionGoto*>(action) : nullptr;
        if (!jump)
            continue;
        // On purpose, only a top-level entry falls back on the stored page index.
        const bool hasId = !isTopLevel || jump->dest->pageId != 0;
        const int pageIndex = hasId ? PageIndexOf(jump->dest->pageId) : jump->dest->pageIndex;
        if (pageIndex >= 0)
            shown = pageIndex;
    }
    return shown;
}

int RowMaker::PageIndexOf(int pageId)
{
    const auto known = pageIndexById.constFind(pageId);
    if (known != pageIndexById.constEnd())
        return *known;
    return *pageIndexById.insert(pageId, document->PageIndexFromId(pageId));
}

} // namespace

OutlineRows MakeOutlineRows(G_TreeNode* root, IG_Document* document, bool isEditable, int expectedCount)
{
    if (!root)
        return {};
    return RowMaker(document, isEditable, expectedCount).Make(root);
}
