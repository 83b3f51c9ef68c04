#pragma once

#include <frame/operation/interceptor.h>

#include <QCoreApplication>
#include <QPointer>

class BatchAddOutlineDlg;
class CTreeWidget;
class G_TreeNode;
class IG_Document;
class NaviOutlineWidget;
class QTreeWidgetItem;

// What the outline interceptors share: the pane that made them, its tree and its document. One set for each pane. They
// ask the user and pack the target; the operations change the document.
class OutlineInterceptor : public G_OperationInterceptor
{
public:
    OutlineInterceptor(NaviOutlineWidget* pane, const char* operationName);
    // The operation has this interceptor's name, also with a "/" behind it or in another case, and is one on the pane's
    // document.
    bool OperationFilter(G_Operation* op) override;

protected:
    // The node of the tree's current entry; null without one.
    G_TreeNode* CurrentNode() const;
    // Ahead of packing a target: an edit that is open elsewhere in the tree is committed, and the expansion that the
    // pane has recorded is in the document before records are copied.
    void SettlePane();
    // Leaves the request to rename the child `row` of the parent once the tree has been filled anew; no parent, no
    // request.
    void RequestEdit(G_TreeNode* parent, int row);
    // Takes back a request that no refill has answered: the addition failed, and the next unrelated refill would open
    // an editor on some row.
    void DropEditRequest();
    // Packs the entry's parent and its row. A null node packs nothing.
    static void PackEntry(G_Operation* op, const G_TreeNode* node);

    // A box with Ok and Cancel: true for Ok alone.
    bool Asks(const QString& title, const QString& text) const;
    // A box with Close.
    void Tells(const QString& title, const QString& text) const;

    NaviOutlineWidget* pane; // not owned
    CTreeWidget* tree;       // not owned
    IG_Document* document;   // not owned

private:
    const char* operationName;
};

// Packs the place behind the current entry and asks for the new entry's editor.
class GPI_OutlineAdd : public OutlineInterceptor
{
public:
    explicit GPI_OutlineAdd(NaviOutlineWidget* pane);
    bool PrepareDataHandle(G_Operation* op, int flag) override;
    void AfterDoActionHandle(G_Operation* op) override;
};

// Packs the current entry as the parent and asks for the new entry's editor.
class GPI_OutlineAddSub : public OutlineInterceptor
{
public:
    explicit GPI_OutlineAddSub(NaviOutlineWidget* pane);
    bool PrepareDataHandle(G_Operation* op, int flag) override;
    void AfterDoActionHandle(G_Operation* op) override;
};

// Shows the dialog, which performs an operation of its own.
class GPI_OutlineBatchAdd : public OutlineInterceptor
{
public:
    explicit GPI_OutlineBatchAdd(NaviOutlineWidget* pane);
    ~GPI_OutlineBatchAdd() override;
    // False always.
    bool PrepareDataHandle(G_Operation* op, int flag) override;
    BatchAddOutlineDlg* Dialog() const; // null before the first time

private:
    QPointer<BatchAddOutlineDlg> dialog; // owned, and by its parent window too
};

// Packs the selected entries in the tree's order and asks first.
class GPI_OutlineDel : public OutlineInterceptor
{
    Q_DECLARE_TR_FUNCTIONS(GPI_OutlineDel)
public:
    explicit GPI_OutlineDel(NaviOutlineWidget* pane);
    bool PrepareDataHandle(G_Operation* op, int flag) override;
    bool BeforeDoActionHandle(G_Operation* op) override;
};

// Asks before the whole outline is deleted.
class GPI_OutlineDelAll : public OutlineInterceptor
{
    Q_DECLARE_TR_FUNCTIONS(GPI_OutlineDelAll)
public:
    explicit GPI_OutlineDelAll(NaviOutlineWidget* pane);
    bool PrepareDataHandle(G_Operation* op, int flag) override;
    bool BeforeDoActionHandle(G_Operation* op) override;
};

// Packs the current entry, asks before a second destination is given to it, and tells the success.
class GPI_OutlineResetPos : public OutlineInterceptor
{
    Q_DECLARE_TR_FUNCTIONS(GPI_OutlineResetPos)
public:
    explicit GPI_OutlineResetPos(NaviOutlineWidget* pane);
    bool PrepareDataHandle(G_Operation* op, int flag) override;
    bool BeforeDoActionHandle(G_Operation* op) override;
    void AfterDoActionHandle(G_Operation* op) override;
};

// Flips the word wrap of the tree.
class GPI_OutlineWordwrap : public OutlineInterceptor
{
public:
    explicit GPI_OutlineWordwrap(NaviOutlineWidget* pane);
    bool PrepareDataHandle(G_Operation* op, int flag) override;
};

// Expands the current entry and all below it.
class GPI_OutlineExpandSub : public OutlineInterceptor
{
public:
    explicit GPI_OutlineExpandSub(NaviOutlineWidget* pane);
    bool PrepareDataHandle(G_Operation* op, int flag) override;
};

// Applies the state of the pane's expand button to the whole tree.
class GPI_OutlineExpandOrCollapse : public OutlineInterceptor
{
public:
    explicit GPI_OutlineExpandOrCollapse(NaviOutlineWidget* pane);
    bool PrepareDataHandle(G_Operation* op, int flag) override;
};
