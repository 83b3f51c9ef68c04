#pragma once

#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>

class CBookmarkTreeWidget;
class GPI_BookmarkDelete;
class GPI_BookmarkDeleteAll;
class GPI_BookmarkRename;
class GPI_BookmarkResetPosition;
class GPI_BookmarkWrap;
class G_DocView;
class G_Event;
class G_TreeNode;
class G_UIContext;
class IG_Document;
class OVPaintNoContent;
class QLabel;
class QPushButton;
class QTreeWidgetItem;
class QUndoStack;

// A name as the list shows it: all leading and trailing " " cut, other white space kept. Blanks only give the empty
// text.
QString RemoveBlanks(const QString& name);

// The bookmark pane of one document: a flat list of the document's bookmarks with an add and a delete button. Made for
// each document by NaviBookmark::CreateWidget, owned by the frame, dies with the document's tab. Main thread only.
class NaviBookmarkWidget : public QWidget
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
    // Whether the rows of this pane may be edited and moved: neither the view nor the document is read-only, and the
    // document's rights do not forbid it.
    bool MayEditRows() const;

    bool wrapEnabled = true;             // what the delegate reads; follows wordWrap
    G_UIContext* context = nullptr;      // not owned
    bool isRenaming = false;             // a rename waits for its editor
    IG_Document* document = nullptr;     // not owned
    CBookmarkTreeWidget* tree = nullptr; // owned, a direct child: the delegate finds this pane as the tree's parent
    // Set by a click, consumed by the next page change, so that the selection does not jump. On at the start, so that
    // the first page change after opening moves no selection.
    bool clickedByUser = true;
    bool needsRefresh = false; // consumed by the next show
    QString previousName;      // of the row in rename
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
    // Pages changed: the list is filled anew at the next show.
    void PageStructChanged(IG_Document* changed);
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
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void BuildLayout();
    QWidget* BuildButtonRow();
    void BuildTree();
    void MakeInterceptors();
    void ConnectUndoStack();
    void FillRows(G_TreeNode* root);
    void OpenPendingEditor();
    QUndoStack* CurrentStack() const;
};
