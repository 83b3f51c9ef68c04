#pragma once

#include <bookmark/bookmark_operations.h>
#include <bookmark/bookmark_page.h>
#include <tests/support/drag.h>
#include <tests/support/view_fixture.h>

#include <frame/view/context_menu.h>
#include <frame/view/tool_handler.h>

#include <QPointer>
#include <QStringList>

#include <memory>
#include <vector>

class CBookmarkTreeWidget;
class NaviBookmarkWidget;
class QTextEdit;
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

// The host's signature tool, as far as a drag over the list meets it.
class DeskSignatureTool : public GT_Base
{
public:
    G_ToolHandler* Clone() override { return new DeskSignatureTool; }
    CCA_String Name() override { return "d_electronicsignature"; }
};

// An open document with its view and its bookmark pane.
struct DeskTab
{
    MemoryDocument* document = nullptr;
    G_DocView* view = nullptr;
    QPointer<NaviBookmarkWidget> pane; // owned by the desk

    CBookmarkTreeWidget* Tree() const;
    QStringList Rows() const;  // texts as the list shows them
    QStringList Names() const; // of the document's bookmarks, as stored
    QString Dump() const;      // the document's bookmarks with all they hold
    QUndoStack* Stack() const;
    QTextEdit* Editor() const;      // the open row editor, or null
    QPoint RowPoint(int row) const; // the middle of a row, viewport coordinates
    QPoint LowPoint(int row) const; // below the middle: never in the zone at the top of the view
    void Click(int row) const;
    void DoubleClick(int row) const;
    // Presses a row and drags it along the path with real mouse and drag events; the pointer is let go at its end.
    Drag::Outcome DragRow(int row, const QList<QPoint>& path) const;
    void Select(const QList<int>& rows) const;
    QList<int> SelectedRows() const;
    // Lets the page change that follows the opening or a click be swallowed.
    void SwallowPageChange() const;
};

// What stands around the bookmark pane in a reader: the operations, the page, a context and open documents. Takes all
// of it down in the order a reader does.
class PaneDesk
{
public:
    explicit PaneDesk(const QString& documentText);
    ~PaneDesk();
    // Opens another document; it is the current one afterwards. Null text form errors fail the test.
    DeskTab* Open(const QString& documentText);
    DeskTab* First() const { return tabs.front().get(); }
    void MakeCurrent(DeskTab* tab);
    bool Perform(const char* operation);
    ScriptedContext* Context() const { return fixture.Context(); }

private:
    GP_BookmarkOperation open;
    GP_AddBookmark add;
    GP_BookmarkResetPosition reset;
    GP_BookmarkRename rename;
    GP_BookmarkWrap wrap;
    GP_BookmarkDelete remove;
    GP_BookmarkDeleteAll removeAll;
    DeskNavigation navigation;
    DeskSignatureTool signature;

public:
    NaviBookmark page;
    ViewFixture fixture;
    DeskMenu* menu; // owned by the context

private:
    DeskTab* AddTab(MemoryDocument* document, G_DocView* view);
    std::vector<std::unique_ptr<DeskTab>> tabs;
};

// Three pages and `count` bookmarks "A", "B", ... on the first one, 10 mm apart.
QString DocumentWithBookmarks(int count);
