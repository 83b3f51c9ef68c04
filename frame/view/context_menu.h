#pragma once

#include <frame/base/export.h>

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <memory>

class G_OperationParam;
class G_UIContext;
class QMenu;

// The state of one operation in a menu.
struct ContextMenuItemState
{
    bool checked = false;
    bool reserved = false; // always clear
    bool enabled = true;   // off: greyed
    bool visible = true;   // off: absent
    bool hasIcon = false;
    QString iconPath;
    int reservedNumber = 0;
};

// One line of a menu: an operation with its untranslated text, or a separator (empty operation).
struct G_MenuEntry
{
    QByteArray operation;
    const char* text = nullptr; // source text in the context "ContextMenu"
};

// The host's menus by tool name. Menus are data: a table that the reader fills.
class FRAME_EXPORT G_ContextMenu
{
public:
    explicit G_ContextMenu(G_UIContext* context);
    virtual ~G_ContextMenu();
    // Replaces the entries of a tool's menu.
    void SetEntries(const QString& toolName, const QList<G_MenuEntry>& entries);
    QList<G_MenuEntry> Entries(const QString& toolName) const;
    // Shows the menu at the cursor and performs the chosen operation with `params` merged into its own. An operation
    // that is not in the map has the default state. Nothing is shown for an unknown name, and nothing is performed when
    // another view became the current one meanwhile. Virtual, so that tests choose an entry.
    virtual void PopupMenu(const QString& toolName, const QMap<QString, ContextMenuItemState>& states,
                           const G_OperationParam* params = nullptr);
    // The menu as PopupMenu would show it; each action's data is the operation's name. Owned by the caller.
    QMenu* BuildMenu(const QString& toolName, const QMap<QString, ContextMenuItemState>& states) const;
    // Performs one operation with the parameters merged in; false when it is unknown or did not run.
    bool Perform(const QByteArray& operation, const G_OperationParam* params);

private:
    G_UIContext* context; // not owned
    QMap<QString, QList<G_MenuEntry>> menus;
};
