#pragma once

class G_DocView;
class IG_Document;

// The document carries permissions, and they do not allow editing. False for null.
bool IsRestricted(IG_Document* document);
// Buttons and menus that change the document are on: editing is allowed today and the file can be written.
bool MayEdit(IG_Document* document);
// Rows may be dragged: neither restricted nor read-only.
bool MayReorder(IG_Document* document);
// Rows may be edited in place: as MayReorder, and the view is not read-only. A null view does not count.
bool MayEditRows(G_DocView* view, IG_Document* document);
