#pragma once

#include <common/reorder_tree.h>

#include <QList>

class G_DocView;
class G_TreeNode;
class NaviBookmarkWidget;
class QMimeData;

// The list of the bookmark pane: rows are reordered by dragging, with a drop indicator of its own, and by Alt+Up and
// Alt+Down. A direct child of its NaviBookmarkWidget. The flags and lines of a drag and the request for a new row's
// editor stand in the shared base. Main thread only.
class CBookmarkTreeWidget : public ReorderTree
{
    Q_OBJECT
public:
    CBookmarkTreeWidget(QWidget* parent, G_DocView* docView);

    // A new bookmark that waits for its editor: the list's root (null = none) with `pendingRow`.
    G_TreeNode*& pendingRoot;

    NaviBookmarkWidget* Pane() const;
};
