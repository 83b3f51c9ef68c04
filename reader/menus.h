#pragma once

class G_ContextMenu;

// Fills the context menus of the panes: one table maps a tool name to its operations, separators and texts.
void FillContextMenus(G_ContextMenu* menu);
