#include "outline_interceptors.h"

#include "batch_add_dialog.h"
#include "outline_ids.h"
#include "outline_json.h"
#include "outline_pane.h"
#include "outline_tree.h"

#include <common/notify.h>
#include <common/param_keys.h>
#include <frame/base/log.h>
#include <frame/document/ig_document.h>
#include <frame/navigation/icore.h>
#include <frame/operation/operation.h>
#include <frame/view/ui_context.h>

#include <QMessageBox>
#include <QPointer>
#include <QVariant>

OutlineInterceptor::OutlineInterceptor(NaviOutlineWidget* pane, const char* operationName)
    : pane(pane)
    , tree(pane ? pane->tree : nullptr)
    , document(pane ? pane->document : nullptr)
    , operationName(operationName)
{
}

bool OutlineInterceptor::OperationFilter(G_Operation* op)
{
    return pane && tree && document && OperationNameMatches(op, operationName, Qt::SkipEmptyParts) &&
           op->GDocument() == document;
}

G_TreeNode* OutlineInterceptor::CurrentNode() const
{
    return pane->NodeOf(tree->currentItem());
}

void OutlineInterceptor::SettlePane()
{
    tree->CommitEdit();
    pane->SyncExpandStates();
}

void OutlineInterceptor::RequestEdit(G_TreeNode* parent, int row)
{
    tree->pendingParent = parent;
    tree->pendingRow = parent ? row : -1;
}

void OutlineInterceptor::DropEditRequest()
{
    tree->ClearPending();
}

void OutlineInterceptor::PackEntry(G_Operation* op, const G_TreeNode* node)
{
    if (!node)
        return;
    op->Params->Add(ParamKey::JsonParam, OutlineJson::WalkText(node->parent));
    op->Params->Add(ParamKey::NodeIdx, node->index);
}

bool OutlineInterceptor::Asks(const QString& title, const QString& text) const
{
    return pane->context->ShowMessageBox(title, text, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok) ==
           QMessageBox::Ok;
}

void OutlineInterceptor::Tells(const QString& title, const QString& text) const
{
    pane->context->ShowMessageBox(title, text, QMessageBox::Close, QMessageBox::Close);
}

GPI_OutlineAdd::GPI_OutlineAdd(NaviOutlineWidget* pane)
    : OutlineInterceptor(pane, OutlineId::Add)
{
}

bool GPI_OutlineAdd::PrepareDataHandle(G_Operation* op, int)
{
    SettlePane();
    document->CreateOutlineRoot(); // an existing one is kept
    const G_TreeNode* current = CurrentNode();
    G_TreeNode* parent = current && current->parent ? current->parent : document->GetOutlineRoot();
    const int row = current ? current->index : -1;
    if (parent)
        RequestEdit(parent, current ? row + 1 : parent->SubNodeCount());
    op->Params->Add(ParamKey::JsonParam, OutlineJson::AddText(row, parent));
    return true;
}

void GPI_OutlineAdd::AfterDoActionHandle(G_Operation*)
{
    DropEditRequest();
}

GPI_OutlineAddSub::GPI_OutlineAddSub(NaviOutlineWidget* pane)
    : OutlineInterceptor(pane, OutlineId::AddSub)
{
}

// Makes no root on purpose: there is nothing to be below of in a document without an outline.
bool GPI_OutlineAddSub::PrepareDataHandle(G_Operation* op, int)
{
    SettlePane();
    G_TreeNode* current = CurrentNode();
    G_TreeNode* parent = current ? current : document->GetOutlineRoot();
    if (parent)
        RequestEdit(parent, parent->SubNodeCount());
    const QString walk = OutlineJson::WalkText(parent);
    op->Params->Add(ParamKey::JsonParam, walk);
    // Copies that nothing here reads: whoever listens to the operation finds the target under these keys too.
    op->Params->Add(OutlineParam::Title, walk);
    op->Params->Add(OutlineParam::PageId, walk);
    return true;
}

void GPI_OutlineAddSub::AfterDoActionHandle(G_Operation*)
{
    DropEditRequest();
}

GPI_OutlineBatchAdd::GPI_OutlineBatchAdd(NaviOutlineWidget* pane)
    : OutlineInterceptor(pane, OutlineId::BatchAdd)
{
}

GPI_OutlineBatchAdd::~GPI_OutlineBatchAdd()
{
    delete dialog;
}

bool GPI_OutlineBatchAdd::PrepareDataHandle(G_Operation*, int)
{
    SettlePane();
    QWidget* parent = Core::ICore::dialogParent();
    if (!parent)
        parent = pane->window();
    if (!dialog)
        dialog = new BatchAddOutlineDlg(parent, pane);
    dialog->move(parent->mapToGlobal(parent->rect().center()) - dialog->rect().center());
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    return false;
}

BatchAddOutlineDlg* GPI_OutlineBatchAdd::Dialog() const
{
    return dialog;
}

GPI_OutlineDel::GPI_OutlineDel(NaviOutlineWidget* pane)
    : OutlineInterceptor(pane, OutlineId::Del)
{
}

bool GPI_OutlineDel::PrepareDataHandle(G_Operation* op, int)
{
    SettlePane();
    const QList<G_TreeNode*> nodes = pane->SelectedNodes();
    op->Params->Add(ParamKey::JsonParam, OutlineJson::DeleteText(nodes));
    for (int i = 0; i < nodes.size(); ++i)
        op->Params->Add(OutlineParam::Node + QByteArray::number(i), true);
    return true;
}

// Only the first of the selected entries is tested, on purpose: the question is about the destination that the user
// clicked first, not about each of many.
bool GPI_OutlineDel::BeforeDoActionHandle(G_Operation*)
{
    const QList<QTreeWidgetItem*> selected = tree->selectedItems();
    if (selected.isEmpty()) {
        Tells(tr("Warning"), tr("No select item"));
        return false;
    }
    if (selected.first()->text(OutlineColumn::Page) == QLatin1String(NoDestinationText))
        return true;
    return Asks(tr("Warning"), tr("Already exist associate pageIndex,dou you want to del?"));
}

GPI_OutlineDelAll::GPI_OutlineDelAll(NaviOutlineWidget* pane)
    : OutlineInterceptor(pane, OutlineId::DelAll)
{
}

bool GPI_OutlineDelAll::PrepareDataHandle(G_Operation*, int)
{
    SettlePane();
    return true;
}

bool GPI_OutlineDelAll::BeforeDoActionHandle(G_Operation*)
{
    return Asks(tr("Warning"), tr("Do you want to del all outlines?"));
}

GPI_OutlineResetPos::GPI_OutlineResetPos(NaviOutlineWidget* pane)
    : OutlineInterceptor(pane, OutlineId::ResetPos)
{
}

bool GPI_OutlineResetPos::PrepareDataHandle(G_Operation* op, int)
{
    SettlePane();
    PackEntry(op, CurrentNode());
    return true;
}

bool GPI_OutlineResetPos::BeforeDoActionHandle(G_Operation*)
{
    const QPointer<NaviOutlineWidget> alive(pane);
    const QTreeWidgetItem* current = tree->currentItem();
    if (current && current->text(OutlineColumn::Page) != QLatin1String(NoDestinationText) &&
        !Asks(tr("Warning"), tr("Do you want to change associate position?")))
        return false;
    if (!alive)
        return false; // the document was closed while the box was up, and this handler with it
    // Asked for again: the tree may have been filled anew while the box was up.
    if (CurrentNode())
        return true;
    Tells(tr("Warning"), tr("Associate failed!"));
    return false;
}

void GPI_OutlineResetPos::AfterDoActionHandle(G_Operation* op)
{
    if (op->Params->Get(ParamKey::Result).toBool())
        FireStatusText(pane->context, tr("Associate success!"));
}

GPI_OutlineWordwrap::GPI_OutlineWordwrap(NaviOutlineWidget* pane)
    : OutlineInterceptor(pane, OutlineId::Wordwrap)
{
}

bool GPI_OutlineWordwrap::PrepareDataHandle(G_Operation*, int)
{
    FrameLog(QByteArray(pane->wordWrap ? "true" : "false") + " GPI_OutlineWordwrap::PrepareDataHandle");
    pane->SetWordWrap(!pane->wordWrap);
    return true;
}

GPI_OutlineExpandSub::GPI_OutlineExpandSub(NaviOutlineWidget* pane)
    : OutlineInterceptor(pane, OutlineId::ExpandSub)
{
}

bool GPI_OutlineExpandSub::PrepareDataHandle(G_Operation*, int)
{
    pane->ExpandSubOutline();
    return true;
}

GPI_OutlineExpandOrCollapse::GPI_OutlineExpandOrCollapse(NaviOutlineWidget* pane)
    : OutlineInterceptor(pane, OutlineId::ExpandOrCollapse)
{
}

bool GPI_OutlineExpandOrCollapse::PrepareDataHandle(G_Operation*, int)
{
    pane->ExpandOrCollapseOutline();
    return true;
}
