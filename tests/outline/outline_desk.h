#pragma once

#include <outline/outline_operations.h>
#include <outline/outline_page.h>
#include <tests/support/view_fixture.h>

#include <frame/view/context_menu.h>
#include <frame/view/tool_handler.h>

#include <QPointer>
#include <QStringList>

#include <memory>
#include <vector>

class CTreeWidget;
class NaviOutlineWidget;
class QTextEdit;
class QTreeWidgetItem;
class QUndoStack;

// A menu service that remembers what was asked for instead of showing it.
class DeskMenu : public G_ContextMenu
{
public:
    using G_ContextMenu::G_ContextMenu;
    void PopupMenu(const QString& toolName, const QMap<QString, ContextMenuItemState>& states,
                   const G_OperationParam* params) override;
    QStringList shown; // tool names
    QMap<QString, ContextMenuItemState> lastStates;
};

// The host's operation that opens a pane: remembers what it was asked to open.
class DeskNavigation : public G_Operation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override { return "e_navigation"; }
    bool DoAction() override;
    static QStringList opened;
};

// The host's signature tool, as far as a drag over the tree meets it.
class DeskSignatureTool : public GT_Base
{
public:
    G_ToolHandler* Clone() override { return new DeskSignatureTool; }
    CCA_String Name() override { return "d_electronicsignature"; }
};

// The twelve operations of the outline, registered as long as it lives.
struct OutlineOperations
{
    OutlineOperations();
    GP_OutlineOperation open;
    GP_AddOutline addFromOutside;
    GP_OutlineAdd add;
    GP_OutlineAddSub addSub;
    GP_OutlineBatchAdd batchAdd;
    GP_OutlineDel del;
    GP_OutlineDelAll delAll;
    GP_OutlineRename rename;
    GP_OutlineResetPos resetPos;
    GP_OutlineWordwrap wordwrap;
    GP_OutlineExpandSub expandSub;
    GP_OutlineExpandOrCollapse expandOrCollapse;
};

// An open document with its view and its outline pane.
struct OutlineTab
{
    MemoryDocument* document = nullptr;
    G_DocView* view = nullptr;
    QPointer<NaviOutlineWidget> pane; // owned by the desk

    CTreeWidget* Tree() const;
    QString Dump() const;  // the document's outline with all it holds
    QString Names() const; // its titles alone, one a line, indented by two blanks a level
    QString Rows() const;  // the same of what the tree shows
    QUndoStack* Stack() const;
    QTextEdit* Editor() const; // the open row editor, or null
    // Rows from the top level down; null when there is no such node or item.
    G_TreeNode* Node(const QList<int>& rows) const;
    QTreeWidgetItem* Item(const QList<int>& rows) const;
    // The item whose text in the first column this is; null when there is none.
    QTreeWidgetItem* Item(const QString& title) const;
    void MakeCurrent(const QString& title) const; // and the only selected one
    // In this order; the first is the current one.
    void Select(const QStringList& titles) const;
};

// What stands around the outline pane in a reader: the operations, the page, a context and open documents. Takes all of
// it down in the order a reader does.
class OutlineDesk
{
public:
    explicit OutlineDesk(const QString& documentText);
    ~OutlineDesk();
    // Opens another document; it is the current one afterwards.
    OutlineTab* Open(const QString& documentText);
    OutlineTab* First() const { return tabs.front().get(); }
    void MakeCurrent(OutlineTab* tab);
    bool Perform(const char* operation);
    ScriptedContext* Context() const { return fixture.Context(); }

private:
    OutlineOperations operations;
    DeskNavigation navigation;
    DeskSignatureTool signature;

public:
    NaviPageOutline page;
    ViewFixture fixture;
    DeskMenu* menu; // owned by the context

private:
    OutlineTab* AddTab(MemoryDocument* document, G_DocView* view);
    std::vector<std::unique_ptr<OutlineTab>> tabs;
};

// Three pages and this outline, with a destination on the first page where no other is said:
//     A
//       A1
//         A1a
//       A2 closed
//     B without a destination
//     C on page 2
//       C1
QString SmallOutline();
