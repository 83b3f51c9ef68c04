#pragma once

#include <plugin/shell/pane_widget.h>

#include <QList>
#include <QString>

class CBookmarkTreeWidget;
class GPI_BookmarkDelete;
class GPI_BookmarkDeleteAll;
class GPI_BookmarkRename;
class GPI_BookmarkResetPosition;
class GPI_BookmarkWrap;
class G_DocView;
class G_Event;
class G_TreeNode;
class OVPaintNoContent;
class QLabel;
class QLayout;
class QPushButton;
class QTreeWidgetItem;

// The bookmark pane of one document: a flat list of the document's bookmarks with an add and a delete button. Made for
// each document by NaviBookmark::CreateWidget, owned by the frame, dies with the document's tab. Main thread only.
class NaviBookmarkWidget : public PaneWidget
{
    Q_OBJECT
public:
    explicit NaviBookmarkWidget(QWidget* parent = nullptr);
    ~NaviBookmarkWidget() override;

    // Builds the pane for the document, makes its interceptors and listens to the current view's undo stack. `context`
    // must be set. A null document leaves the widget empty.
    void Init(IG_Document* newDocument);
    // Moves the nodes (rows ascending) behind `dstNode`, or to the top of the list, as one undoable step.
    void MoveBookmarks(const QList<G_TreeNode*>& nodes, G_TreeNode* dstNode, bool toTop);

    bool wrapEnabled = true;             // what the delegate reads; follows wordWrap
    bool isRenaming = false;             // a rename waits for its editor
    CBookmarkTreeWidget* tree = nullptr; // owned, a direct child: the delegate finds this pane as the tree's parent
    // Set by a click, consumed by the next page change, so that the selection does not jump. On at the start, so that
    // the first page change after opening moves no selection.
    bool clickedByUser = true;
    QString previousName; // of the row in rename
    bool wordWrap = true;
    QPushButton* addButton = nullptr;                          // owned
    QPushButton* deleteButton = nullptr;                       // owned
    QLabel* separator = nullptr;                               // owned
    GPI_BookmarkResetPosition* resetPositionHandler = nullptr; // owned
    GPI_BookmarkRename* renameHandler = nullptr;               // owned
    GPI_BookmarkWrap* wrapHandler = nullptr;                   // owned
    GPI_BookmarkDelete* deleteHandler = nullptr;               // owned
    GPI_BookmarkDeleteAll* deleteAllHandler = nullptr;         // owned
    OVPaintNoContent* noContent = nullptr;                     // owned; null while the list has rows
    bool restricted = false;                                   // the document may not be edited under its rights

public slots:
    // Goes to the row's destination.
    void onClickItem(QTreeWidgetItem* item, int column);
    // The context menu of the row at the point (viewport coordinates).
    void popMenu(const QPoint& point);
    // Makes the first row current whose place is visible in the view.
    void pageChangeSlot(G_DocView* sender);
    void AddBookmark();
    void DelBookmark();
    // Opens the editor of the current row through "d_bookmarkrename".
    void RenameBookmark(QTreeWidgetItem* curItem);
    // A bookmark was added to this pane's document: shows its row and makes the addition undoable.
    void UpdateBookmarkAll(G_Event* event);
    // Fills the list anew; `index` is the undo stack's and is not read.
    void UpdateBookmark(int index);
    // Shows, moves or takes away the picture of the empty list.
    void UpdateNoContent();

protected:
    void RefreshStale() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void BuildLayout();
    QLayout* BuildButtonRow();
    void BuildTree();
    void MakeInterceptors();
    bool HasRows() const;
    bool MayEditRows() const;
    bool IsMyAddition(G_Event* event) const;
    void FillRows(G_TreeNode* root);
    void OpenPendingEditor();
};
