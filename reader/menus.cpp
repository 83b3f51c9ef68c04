#include "menus.h"

#include <frame/view/context_menu.h>

#include <QtGlobal>

namespace {

struct MenuRow
{
    const char* tool;
    const char* operation; // empty: a separator
    const char* text;
};

const MenuRow menuRows[] = {
    {"t_handtool", "e_openlink", QT_TRANSLATE_NOOP("ContextMenu", "Open Link")},
    {"t_handtool", "e_copylinkaddress", QT_TRANSLATE_NOOP("ContextMenu", "Copy Link Address")},
    {"t_handtool", "", ""},
    {"t_handtool", "e_copytext", QT_TRANSLATE_NOOP("ContextMenu", "Copy")},
    {"t_handtool", "e_selectalltext", QT_TRANSLATE_NOOP("ContextMenu", "Select All")},
    {"t_handtool", "", ""},
    {"t_handtool", "e_find", QT_TRANSLATE_NOOP("ContextMenu", "Find…")},
    {"t_handtool", "", ""},
    {"t_handtool", "f_properties", QT_TRANSLATE_NOOP("ContextMenu", "Properties…")},

    {"t_textselect", "e_openlink", QT_TRANSLATE_NOOP("ContextMenu", "Open Link")},
    {"t_textselect", "e_copylinkaddress", QT_TRANSLATE_NOOP("ContextMenu", "Copy Link Address")},
    {"t_textselect", "", ""},
    {"t_textselect", "e_copytext", QT_TRANSLATE_NOOP("ContextMenu", "Copy")},
    {"t_textselect", "e_selectalltext", QT_TRANSLATE_NOOP("ContextMenu", "Select All")},
    {"t_textselect", "", ""},
    {"t_textselect", "e_find", QT_TRANSLATE_NOOP("ContextMenu", "Find…")},
    {"t_textselect", "", ""},
    {"t_textselect", "f_properties", QT_TRANSLATE_NOOP("ContextMenu", "Properties…")},

    {"vn_bookmark", "d_addbookmark", QT_TRANSLATE_NOOP("ContextMenu", "Add Bookmark")},
    {"vn_bookmark", "d_bookmarkrename", QT_TRANSLATE_NOOP("ContextMenu", "Rename")},
    {"vn_bookmark", "d_bookmarkresetposition", QT_TRANSLATE_NOOP("ContextMenu", "Set to Current Position")},
    {"vn_bookmark", "", ""},
    {"vn_bookmark", "d_bookmarkdelete", QT_TRANSLATE_NOOP("ContextMenu", "Delete")},
    {"vn_bookmark", "d_bookmarkdeleteall", QT_TRANSLATE_NOOP("ContextMenu", "Delete All")},
    {"vn_bookmark", "", ""},
    {"vn_bookmark", "d_bookmarkwrap", QT_TRANSLATE_NOOP("ContextMenu", "Wrap Lines")},

    {"vn_outline", "d_outline_add", QT_TRANSLATE_NOOP("ContextMenu", "Add Entry")},
    {"vn_outline", "d_outline_addsub", QT_TRANSLATE_NOOP("ContextMenu", "Add Entry Below")},
    {"vn_outline", "d_outline_batchadd", QT_TRANSLATE_NOOP("ContextMenu", "Add Several Entries…")},
    {"vn_outline", "d_outline_rename", QT_TRANSLATE_NOOP("ContextMenu", "Rename")},
    {"vn_outline", "d_outline_resetpos", QT_TRANSLATE_NOOP("ContextMenu", "Set to Current Position")},
    {"vn_outline", "", ""},
    {"vn_outline", "d_outline_del", QT_TRANSLATE_NOOP("ContextMenu", "Delete")},
    {"vn_outline", "d_outline_delall", QT_TRANSLATE_NOOP("ContextMenu", "Delete All")},
    {"vn_outline", "", ""},
    {"vn_outline", "d_outline_expandsub", QT_TRANSLATE_NOOP("ContextMenu", "Expand All Below")},
    {"vn_outline", "d_outline_expandorcollapse", QT_TRANSLATE_NOOP("ContextMenu", "Expand or Collapse All")},
    {"vn_outline", "d_outline_wordwrap", QT_TRANSLATE_NOOP("ContextMenu", "Wrap Lines")},
};

} // namespace

void FillContextMenus(G_ContextMenu* menu)
{
    QMap<QString, QList<G_MenuEntry>> entries;
    for (const MenuRow& row : menuRows)
        entries[QString::fromLatin1(row.tool)].append(G_MenuEntry{row.operation, row.text});
    for (auto it = entries.cbegin(); it != entries.cend(); ++it)
        menu->SetEntries(it.key(), it.value());
}
