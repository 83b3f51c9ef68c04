#include "bookmark_interceptors.h"

#include "bookmark_ids.h"
#include "bookmark_node.h"
#include "bookmark_pane.h"
#include "bookmark_tree.h"

#include <common/param_keys.h>
#include <common/public_method.h>
#include <common/text_rules.h>
#include <frame/base/log.h>
#include <frame/document/destination.h>
#include <frame/operation/operation.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>

#include <QMessageBox>
#include <QPointer>
#include <QVariant>

namespace {
constexpr int okButton = QMessageBox::Ok;
constexpr int okAndCancelButtons = QMessageBox::Ok | QMessageBox::Cancel;
} // namespace

BookmarkInterceptor::BookmarkInterceptor(NaviBookmarkWidget* pane)
    : pane(pane)
    , tree(pane ? pane->tree : nullptr)
{
}

bool BookmarkInterceptor::IsMine() const
{
    return pane && tree && pane->IsCurrentDocument();
}

void BookmarkInterceptor::RefreshDestination(int row)
{
    const G_Bookmark* bookmark = BookmarkOf(BookmarkNode(pane->document, row));
    QTreeWidgetItem* item = tree->topLevelItem(row);
    if (bookmark && item)
        item->setData(0, Qt::UserRole, QVariant::fromValue(bookmark->dest));
}

bool GPI_BookmarkDelete::OperationFilter(G_Operation* op)
{
    return OperationNameMatches(op, BookmarkId::Delete);
}

bool GPI_BookmarkDelete::PrepareDataHandle(G_Operation* op, int)
{
    if (!pane)
        return false;
    if (!IsMine())
        return true;
    const QModelIndexList selected = tree->selectionModel()->selectedRows();
    if (selected.isEmpty() && op->Params->Contains(ParamKey::Popup)) {
        pane->context->ShowMessageBox(tr("remark"), tr("Please select a bookmark first."), okButton, okButton);
        return false;
    }
    QList<int> rows;
    for (const QModelIndex& index : selected)
        rows.append(index.row());
    PublicMethod::SortRows(rows);
    for (int i = 0; i < rows.size(); ++i)
        op->Params->Add(ParamKey::Row + QByteArray::number(i), rows.at(i));
    return true;
}

bool GPI_BookmarkDeleteAll::OperationFilter(G_Operation* op)
{
    return OperationNameMatches(op, BookmarkId::DeleteAll);
}

bool GPI_BookmarkDeleteAll::PrepareDataHandle(G_Operation*, int)
{
    if (!IsMine())
        return false;
    const QPointer<NaviBookmarkWidget> alive(pane);
    const int answer = pane->context->ShowMessageBox(
        tr("remark"), tr("Are you sure to delete all bookmarks in the document?"), okAndCancelButtons, okButton);
    if (answer != okButton || !alive)
        return false; // not alive: the document was closed while the box was up, and this handler with it
    tree->blockSignals(true);
    tree->DropEdit();
    tree->clear();
    tree->blockSignals(false);
    return true;
}

GPI_BookmarkRename::GPI_BookmarkRename(NaviBookmarkWidget* pane)
    : BookmarkInterceptor(pane)
{
    if (tree)
        connect(tree, SIGNAL(itemChanged(QTreeWidgetItem*, int)), this, SLOT(ItemChanged(QTreeWidgetItem*, int)));
}

bool GPI_BookmarkRename::OperationFilter(G_Operation* op)
{
    return OperationNameMatches(op, BookmarkId::Rename);
}

bool GPI_BookmarkRename::PrepareDataHandle(G_Operation* op, int)
{
    if (!IsMine())
        return false;
    QTreeWidgetItem* item = tree->currentItem();
    if (!item) {
        // The copy kept for an edit that was cancelled is freed now that another one is refused.
        operation = nullptr;
        pane->isRenaming = false;
        return false;
    }
    pane->previousName = item->text(0);
    tree->editItem(item, 0);
    // An edit that is cancelled leaves both as they are until the next rename; the end of an edit relies on them.
    pane->isRenaming = true;
    operation = op;
    return false;
}

// The signals are blocked and unblocked by hand, not by a guard: a refill of the list within ExecuteAction unblocks
// them too, and must.
void GPI_BookmarkRename::ItemChanged(QTreeWidgetItem* item, int)
{
    FrameLog(QByteArray("isRenaming ") + (pane->isRenaming ? "true" : "false") + " GPI_BookmarkRename::ItemChanged");
    if (!pane->isRenaming)
        return;
    tree->blockSignals(true);
    const int row = tree->indexOfTopLevelItem(item);
    const QString text = item->text(0);
    if (text.isEmpty() || !operation) {
        pane->isRenaming = false;
        item->setText(0, pane->previousName);
        tree->blockSignals(false);
        return;
    }
    pane->previousName = CutText(text, MaxNameLength);
    item->setText(0, pane->previousName);
    item->setToolTip(0, pane->previousName);
    operation->Params->Add(ParamKey::Row, row);
    operation->Params->Add(ParamKey::Name, item->text(0));
    operation->ExecuteAction(); // rebuilds the list: `item` is gone from here on
    // Also when the operation failed or the view was switched: a mute list would never rename again.
    pane->isRenaming = false;
    tree->blockSignals(false);
}

void GPI_BookmarkRename::AfterDoActionHandle(G_Operation* op)
{
    if (!IsMine() || op->Result == 0 || !op->Params->Contains(ParamKey::Result) ||
        !op->Params->Get(ParamKey::Result).toBool())
        return;
    const int row = op->Params->GetInt32(ParamKey::Row, -1);
    pane->isRenaming = false; // ahead of setData, which is told as a change of the row
    RefreshDestination(row);
    tree->blockSignals(false);
    FrameLog("row " + QByteArray::number(row) + " GPI_BookmarkRename::AfterDoActionHandle");
}

bool GPI_BookmarkResetPosition::OperationFilter(G_Operation* op)
{
    return OperationNameMatches(op, BookmarkId::ResetPosition);
}

bool GPI_BookmarkResetPosition::PrepareDataHandle(G_Operation* op, int)
{
    if (!IsMine())
        return false;
    op->Params->Add(ParamKey::Row, tree->currentIndex().row());
    return true;
}

bool GPI_BookmarkResetPosition::BeforeDoActionHandle(G_Operation*)
{
    if (IsMine())
        tree->blockSignals(true);
    return true;
}

void GPI_BookmarkResetPosition::AfterDoActionHandle(G_Operation* op)
{
    if (!IsMine())
        return;
    // The refill within the operation unblocked the signals; a change of the row told now would run a rename that
    // was cancelled before.
    tree->blockSignals(true);
    if (op->Result != 0 && op->Params->Get(ParamKey::Result).toBool())
        RefreshDestination(op->Params->GetInt32(ParamKey::Row, -1));
    tree->blockSignals(false);
}

bool GPI_BookmarkWrap::OperationFilter(G_Operation* op)
{
    return OperationNameMatches(op, BookmarkId::Wrap);
}

bool GPI_BookmarkWrap::PrepareDataHandle(G_Operation*, int)
{
    if (!IsMine())
        return false;
    pane->wordWrap = !pane->wordWrap;
    pane->wrapEnabled = pane->wordWrap;
    tree->RemeasureRows();
    return true;
}
