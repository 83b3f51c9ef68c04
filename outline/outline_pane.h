#pragma once

#include "outline_item.h"
#include "outline_rows.h"
#include "pointer_table.h"

#include <plugin/shell/pane_widget.h>

#include <QList>

class CTreeWidget;
class GPI_OutlineAdd;
class GPI_OutlineAddSub;
class GPI_OutlineBatchAdd;
class GPI_OutlineDel;
class GPI_OutlineDelAll;
class GPI_OutlineExpandOrCollapse;
class GPI_OutlineExpandSub;
class GPI_OutlineRename;
class GPI_OutlineResetPos;
class GPI_OutlineWordwrap;
class G_DocView;
class G_Event;
class G_TreeNode;
class OVPaintNoContent;
class QLabel;
class QLayout;
class QPoint;
class QPushButton;
class QToolButton;
class QTreeWidgetItem;

// The columns of the outline's tree. The two shown ones hold an item's depth under Qt::UserRole, 1 for a top-level one.
namespace OutlineColumn {
constexpr int Title = 0;
constexpr int Page = 1;
constexpr int StoredTitle =
    2; // exists only as data: under Qt::UserRole the title as stored, which the editor opens with
} // namespace OutlineColumn

// What the page column shows for an entry without a destination.
constexpr char NoDestinationText[] = "...";

// The outline pane of one document: the tree of the document's outline with three buttons above it. Made for each
// document by NaviPageOutline::CreateWidget, owned by the frame, dies with the document's tab. Main thread only.
class NaviOutlineWidget : public PaneWidget
{
    Q_OBJECT
public:
    explicit NaviOutlineWidget(QWidget* parent = nullptr);
    ~NaviOutlineWidget() override;

    // Builds the pane for the document, makes its interceptors and listens to the current view's undo stack. `context`
    // must be set. A null document leaves the widget empty.
    void Init(IG_Document* newDocument);

    // The node an item shows, good until the next refill; null for null and for what is no item of this tree.
    G_TreeNode* NodeOf(QTreeWidgetItem* item) const;
    // The item that shows a node; null for null, for the root and for what is not shown.
    QTreeWidgetItem* ItemOf(G_TreeNode* node) const;
    // The selected entries without those of which an ancestor is selected too, in the tree's order, whatever the order
    // of selection was.
    QList<G_TreeNode*> SelectedNodes() const;
    bool HasEntries() const;

    // Writes the expansion states that were recorded since the last time into the document's records: no command, no
    // event. Nodes that are gone and nodes without a record are passed over.
    void SyncExpandStates();
    void SetWordWrap(bool wraps);
    // Opens the editor of the current entry through "d_outline_rename".
    void RenameOutline();
    // Moves the nodes (in the tree's order, none below another) as one undoable step: behind `dst`, or to be its first
    // children.
    void MoveOutlineNodes(QList<G_TreeNode*> nodes, G_TreeNode* dst, bool asChild);
    // Shows, moves or takes away the picture of the empty tree.
    void UpdateNoContent();

    CTreeWidget* tree = nullptr; // owned, a direct child: the delegate finds this pane as the tree's parent
    // Set by a click, consumed by the next page change, so that the current entry does not jump. On at the start, so
    // that the first page change after opening moves nothing.
    bool skipNextPageSync = true;
    bool wordWrap = true;
    bool outlineLocked = false;  // the document may not be edited under its rights
    bool& rebuildOnShow;         // pages changed; the tree is filled anew when it is shown
    OutlineItemNodes itemToNode; // the node that each item shows
    int nextOrder = 0;
    PointerTable<G_TreeNode*, int> nodeOrder;         // each node's number in pre-order; the root has 0
    PointerTable<G_TreeNode*, bool> expandState;      // expansions recorded since the last SyncExpandStates
    QToolButton* addButton = nullptr;                 // owned; its menu holds the batch add
    QPushButton* delButton = nullptr;                 // owned
    QPushButton* expandButton = nullptr;              // owned; checked = collapsed
    GPI_OutlineResetPos* resetPosHandler = nullptr;   // owned
    GPI_OutlineAdd* addHandler = nullptr;             // owned
    GPI_OutlineAddSub* addSubHandler = nullptr;       // owned
    GPI_OutlineRename* renameHandler = nullptr;       // owned
    GPI_OutlineWordwrap* wordwrapHandler = nullptr;   // owned
    GPI_OutlineExpandSub* expandSubHandler = nullptr; // owned
    GPI_OutlineDel* delHandler = nullptr;             // owned
    GPI_OutlineDelAll* delAllHandler = nullptr;       // owned
    GPI_OutlineBatchAdd* batchAddHandler = nullptr;   // owned
    GPI_OutlineExpandOrCollapse* expandOrCollapseHandler = nullptr; // owned
    OVPaintNoContent* noContent = nullptr;                          // owned; null while the tree has entries

public slots:
    // Expands the whole tree, or collapses it when the button is checked. Does not flip the button.
    void ExpandOrCollapseOutline();
    // From the current entry down.
    void ExpandSubOutline();
    void CollapseSubOutline();
    // Fills the tree anew and opens the editor that an addition asked for; `index` is the undo stack's and is not read.
    void UpdateOutline(int index);
    // Runs the actions of the entry.
    void OnClickItem(QTreeWidgetItem* item, int column);
    // Makes the first entry current whose place is visible in the view.
    void PageChangeSlot(G_DocView* sender);
    void AddOutline();
    void DelOutline();
    void DelAllOutline();
    void BatchAddOutline();
    // The context menu of the selected entries.
    void PopRequestMenu(const QPoint& point);
    // Remembers whether an entry is expanded; without an argument forgets all and remembers that of every entry.
    void RecordExpandState(QTreeWidgetItem* item);
    void RecordExpandState();
    // Somebody asked for a new entry in this pane's document: performs "d_outline_add".
    void UpdateOutline(G_Event* event);

protected:
    void RefreshStale() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void BuildLayout();
    QLayout* BuildButtonRow();
    void BuildTree();
    void ConnectControls();
    void MakeInterceptors();
    void EnableButtons();
    void FillTree();
    void OpenPendingEditor();
    void MakeCurrentForPage(QTreeWidgetItem* item);
    void Perform(const char* operation);
    void SetSubOutlineExpanded(bool isExpanded);
    bool IsExpanded(QTreeWidgetItem* item, const QModelIndex& index) const;

    QVector<OutlineTarget> targets; // where the entries lead, in pre-order; good until the next refill
};
