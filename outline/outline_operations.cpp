#include "outline_operations.h"

#include "outline_commands.h"
#include "outline_events.h"
#include "outline_ids.h"
#include "outline_json.h"
#include "outline_node.h"

#include <common/clone_of.h>
#include <common/param_keys.h>
#include <common/public_method.h>
#include <common/text_rules.h>
#include <common/view_place.h>
#include <frame/base/converters.h>
#include <frame/document/ig_document.h>
#include <frame/view/application.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>
#include <plugin/shell/undo_stack.h>

#include <QUndoStack>

#include <limits>
#include <memory>

namespace {

OVSharedPtr<OVJson> JsonOf(const G_Operation& operation)
{
    return OutlineJson::Parse(operation.Params->GetQString(ParamKey::JsonParam));
}

G_ActionGoto* GoTo(const G_Dest& dest)
{
    auto* action = new G_ActionGoto;
    *action->dest = dest;
    return action;
}

// Row -1 means the last one. The greatest number has none behind it and stands for itself: no tree has that row.
int RowBehind(int row, const G_TreeNode* parent)
{
    if (row == -1)
        return parent->SubNodeCount();
    return row < std::numeric_limits<int>::max() ? row + 1 : row;
}

// Takes the record over; null, and it is freed, when the tree refuses.
G_TreeNode* Insert(G_TreeNode* parent, int row, G_OutlineItem* item)
{
    G_TreeNode* node = parent->AddSubNode(RowBehind(row, parent), item);
    if (!node)
        delete item;
    return node;
}

} // namespace

G_TreeNode* OutlineOperation::Root() const
{
    return GDocument() ? GDocument()->GetOutlineRoot() : nullptr;
}

G_TreeNode* OutlineOperation::TargetNode() const
{
    const OVSharedPtr<OVJson> walk = JsonOf(*this);
    const G_TreeNode* parent = walk ? OutlineJson::NodeAt(Root(), *walk) : nullptr;
    return parent ? parent->SubNode(Params->GetInt32(ParamKey::NodeIdx, -1)) : nullptr;
}

int OutlineEditOperation::AuthorityType() const
{
    return Authority::EditDocument;
}

bool OutlineEditOperation::AddEntry(G_TreeNode* parent, int row, const QString& defaultTitle)
{
    if (!parent) {
        Params->Add(ParamKey::Result, false);
        return false;
    }
    QString title;
    CCA_GRect rect;
    int pageIndex = 0;
    PublicMethod::ParseTextPage(UIContext(), title, rect, pageIndex, MaxNameLength);
    if (title.isEmpty())
        title = defaultTitle;
    PublicMethod::MakeUniqueNodeName(Root(), title);
    auto* item = new G_OutlineItem;
    item->title = GQ_ToCAS(title);
    item->text = item->title;
    item->expanded = true;
    item->actions.Add(GoTo(DestOnPage(DocView(), pageIndex, rect)));
    G_TreeNode* node = Insert(parent, row, item);
    if (node) {
        TellChanged();
        EnsureUndoStack(DocView())->push(new AddOutlineCommand(node, UIContext()));
    }
    Params->Add(ParamKey::Result, node != nullptr);
    return true;
}

bool OutlineEditOperation::Delete(const QList<G_TreeNode*>& nodes)
{
    if (DocView() != UIContext()->CurrentDocView())
        return false;
    EnsureUndoStack(DocView())->push(new BatchDelOutlineCommand(nodes, UIContext()));
    return true;
}

void OutlineEditOperation::TellChanged()
{
    UIContext()->FireEvent(new G_DocumentChangedEvent(DocView(), EventType::DocumentChanged, 0));
}

G_Operation* GP_OutlineOperation::Clone() const
{
    return CloneOf(this);
}

const char* GP_OutlineOperation::Name() const
{
    return OutlineId::Open;
}

const char* GP_OutlineOperation::PaneId() const
{
    return OutlineId::Pane;
}

G_Operation* GP_AddOutline::Clone() const
{
    return CloneOf(this);
}

const char* GP_AddOutline::Name() const
{
    return OutlineId::AddFromOutside;
}

bool GP_AddOutline::DoAction()
{
    if (!DocView() || !GDocument() || !OpenNavigationPane(UIContext(), OutlineId::Pane))
        return false;
    UIContext()->FireEvent(new G_OutlineAddEvent(QString::fromLatin1(OutlineId::Add),
                                                 GQ_ToQStringFromUtf8(GDocument()->GetDocumentKey()),
                                                 EventType::NodeAdded));
    return true;
}

G_Operation* GP_OutlineAdd::Clone() const
{
    return CloneOf(this);
}

const char* GP_OutlineAdd::Name() const
{
    return OutlineId::Add;
}

bool GP_OutlineAdd::DoAction()
{
    const OVSharedPtr<OVJson> json = JsonOf(*this);
    if (!DocView() || !json)
        return false;
    // The first element is the row, the walk of the parent follows.
    return AddEntry(OutlineJson::NodeAt(Root(), *json, 1), json->At(0).ToInt(-1), tr("new outline"));
}

G_Operation* GP_OutlineAddSub::Clone() const
{
    return CloneOf(this);
}

const char* GP_OutlineAddSub::Name() const
{
    return OutlineId::AddSub;
}

bool GP_OutlineAddSub::DoAction()
{
    const OVSharedPtr<OVJson> json = JsonOf(*this);
    if (!DocView() || !json)
        return false;
    return AddEntry(OutlineJson::NodeAt(Root(), *json), -1, tr("new outline"));
}

G_Operation* GP_OutlineBatchAdd::Clone() const
{
    return CloneOf(this);
}

const char* GP_OutlineBatchAdd::Name() const
{
    return OutlineId::BatchAdd;
}

bool GP_OutlineBatchAdd::DoAction()
{
    const OVSharedPtr<OVJson> lines = JsonOf(*this);
    if (!DocView() || !lines)
        return false;
    QList<G_TreeNode*> added;
    for (int i = 0; i < lines->Size(); ++i) {
        const OVJson line = lines->At(i);
        G_TreeNode* parent = OutlineJson::NodeAt(Root(), line, 2); // behind the title and the row
        if (!parent)
            continue;
        auto* item = new G_OutlineItem;
        item->text = GQ_ToCAS(line.At(0).ToQString()); // the title field stays empty on purpose, and so do the actions
        item->expanded = true;
        if (G_TreeNode* node = Insert(parent, line.At(1).ToInt(-1), item))
            added.append(node);
    }
    // Pushed also when nothing was added, and told only afterwards, unlike a single addition.
    EnsureUndoStack(DocView())->push(new BatchAddOutlineCommand(added, UIContext()));
    Params->Add(ParamKey::Result, !added.isEmpty());
    if (!added.isEmpty())
        TellChanged();
    return true;
}

G_Operation* GP_OutlineDel::Clone() const
{
    return CloneOf(this);
}

const char* GP_OutlineDel::Name() const
{
    return OutlineId::Del;
}

bool GP_OutlineDel::DoAction()
{
    const OVSharedPtr<OVJson> json = JsonOf(*this);
    if (!DocView() || !json)
        return false;
    return Delete(OutlineJson::NodesOfDeleteText(Root(), *json));
}

G_Operation* GP_OutlineDelAll::Clone() const
{
    return CloneOf(this);
}

const char* GP_OutlineDelAll::Name() const
{
    return OutlineId::DelAll;
}

// An empty outline goes the same way on purpose: a command without effect is pushed.
bool GP_OutlineDelAll::DoAction()
{
    if (!DocView())
        return false;
    G_Application::Instance().Log("GP_OutlineDelAll::DoAction");
    QList<G_TreeNode*> nodes;
    const G_TreeNode* root = Root();
    for (int row = 0; root && row < root->SubNodeCount(); ++row)
        nodes.append(root->SubNode(row));
    return Delete(nodes);
}

G_Operation* GP_OutlineRename::Clone() const
{
    return CloneOf(this);
}

const char* GP_OutlineRename::Name() const
{
    return OutlineId::Rename;
}

bool GP_OutlineRename::DoAction()
{
    if (!DocView() || !JsonOf(*this))
        return false;
    G_TreeNode* node = TargetNode();
    std::unique_ptr<G_OutlineItem> oldItem(CopyOfItem(node));
    if (!oldItem)
        return true;
    auto* newItem = new G_OutlineItem(*oldItem);
    newItem->text = GQ_ToCAS(Params->GetQString(OutlineParam::Title));
    newItem->title = newItem->text;
    node->SetNodeData(newItem); // the tree's
    TellChanged();
    EnsureUndoStack(DocView())->push(new ModifyOutlineCommand(oldItem.release(), newItem, node, UIContext()));
    return true;
}

G_Operation* GP_OutlineResetPos::Clone() const
{
    return CloneOf(this);
}

const char* GP_OutlineResetPos::Name() const
{
    return OutlineId::ResetPos;
}

bool GP_OutlineResetPos::DoAction()
{
    if (!DocView() || !JsonOf(*this))
        return false;
    G_TreeNode* node = TargetNode();
    std::unique_ptr<G_OutlineItem> oldItem(CopyOfItem(node));
    if (!oldItem)
        return false;
    auto* newItem = new G_OutlineItem(*oldItem);
    newItem->actions.Add(GoTo(DestOfView(DocView()))); // behind the others on purpose: the last one names the page
    node->SetNodeData(newItem);                        // the tree's
    TellChanged();
    EnsureUndoStack(DocView())->push(new ModifyOutlineCommand(oldItem.release(), newItem, node, UIContext()));
    Params->Add(ParamKey::Result, true);
    return true;
}

G_Operation* GP_OutlineWordwrap::Clone() const
{
    return CloneOf(this);
}

const char* GP_OutlineWordwrap::Name() const
{
    return OutlineId::Wordwrap;
}

bool GP_OutlineWordwrap::DoAction()
{
    return true;
}

G_Operation* GP_OutlineExpandSub::Clone() const
{
    return CloneOf(this);
}

const char* GP_OutlineExpandSub::Name() const
{
    return OutlineId::ExpandSub;
}

bool GP_OutlineExpandSub::DoAction()
{
    return true;
}

G_Operation* GP_OutlineExpandOrCollapse::Clone() const
{
    return CloneOf(this);
}

const char* GP_OutlineExpandOrCollapse::Name() const
{
    return OutlineId::ExpandOrCollapse;
}

bool GP_OutlineExpandOrCollapse::DoAction()
{
    return true;
}
