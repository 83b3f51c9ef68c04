#pragma once

#include <plugin/shell/navigation_open_operation.h>

#include <frame/operation/operation.h>

#include <QCoreApplication>
#include <QList>

class G_TreeNode;

// The base of the operations on the outline. They read their parameters only and know no pane, so that they can be
// replayed without one; the interceptors fill the parameters. A place that the tree no longer has changes nothing.
class OutlineOperation : public G_Operation
{
protected:
    // The document's outline; null without a document or an outline.
    G_TreeNode* Root() const;
    // The child "nodeIdx" of the node whose walk is in "jsonParam"; null when there is none.
    G_TreeNode* TargetNode() const;
};

// The base of those that change the document.
class OutlineEditOperation : public OutlineOperation
{
public:
    int AuthorityType() const override;

protected:
    // Adds an entry of the highlighted text's place, or the view's page, behind the row of the parent (-1: as the
    // last), and makes it undoable. Stores in "result" whether it was added. False without a parent.
    bool AddEntry(G_TreeNode* parent, int row, const QString& defaultTitle);
    // Removes the nodes in one undoable step. False, and nothing happens, while another view is the current one: the
    // command would look for them in that view's document.
    bool Delete(const QList<G_TreeNode*>& nodes);
    // Tells that this operation's document was changed, also when another one is the current by now.
    void TellChanged();
};

// Opens the outline pane.
class GP_OutlineOperation : public NavigationOpenOperation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;

protected:
    const char* PaneId() const override;
};

// Opens the pane, then asks it to add an entry: the pane may only now have been made.
class GP_AddOutline : public OutlineEditOperation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    bool DoAction() override;
};

// Adds an entry behind the current one.
class GP_OutlineAdd : public OutlineEditOperation
{
    Q_DECLARE_TR_FUNCTIONS(GP_OutlineAdd)
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    bool DoAction() override;
};

// Adds an entry as the last child of the current one.
class GP_OutlineAddSub : public OutlineEditOperation
{
    Q_DECLARE_TR_FUNCTIONS(GP_OutlineAddSub)
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    bool DoAction() override;
};

// Adds entries without destinations, in one undo step.
class GP_OutlineBatchAdd : public OutlineEditOperation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    bool DoAction() override;
};

// Deletes entries with all that is below them, in one undo step.
class GP_OutlineDel : public OutlineEditOperation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    bool DoAction() override;
};

// Deletes the whole outline in one undo step.
class GP_OutlineDelAll : public OutlineEditOperation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    bool DoAction() override;
};

// Gives an entry the title "title". True also when there is no such entry.
class GP_OutlineRename : public OutlineEditOperation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    bool DoAction() override;
};

// Gives an entry the view's present place as one more destination; "result" is true afterwards.
class GP_OutlineResetPos : public OutlineEditOperation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    bool DoAction() override;
};

// The three below do nothing themselves: their interceptors do the work, for only the pane knows its tree.
class GP_OutlineWordwrap : public OutlineOperation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    bool DoAction() override;
};

class GP_OutlineExpandSub : public OutlineOperation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    bool DoAction() override;
};

class GP_OutlineExpandOrCollapse : public OutlineOperation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    bool DoAction() override;
};
