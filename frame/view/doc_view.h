#pragma once

#include <frame/base/geometry.h>
#include <frame/base/strings.h>
#include <frame/document/ig_page.h>
#include <frame/view/tool_handler.h>

#include <QList>
#include <QMetaType>
#include <QObject>
#include <QPoint>
#include <QRect>

#include <memory>

class G_UIContext;
class IG_Document;
class QUndoStack;
class QWidget;

// The view's settings that have names.
class G_Preferences
{
public:
    enum ZoomMode { Custom = 0, ActualSize = 1, FitWidth = 2, FitHeight = 3, FitPage = 4, FitRect = 5 };
};

// A piece of the text selection: one page's runs.
struct G_HighLightItem
{
    int pageIndex = 0;
    QList<G_TextRun> runs;
    QList<CCA_GRect> extraRects;   // reserved
    QList<G_HighLightItem> nested; // reserved
};

// A link of a page that is in view.
struct G_LinkInView
{
    int pageIndex = 0;
    G_PageLink link;
    QPainterPath outline; // its area in scene units
};

// The view of one open document: pages in a column of a graphics view, tools, overlays, one undo stack. Owned by the
// window that shows it; it dies before its document. Main thread only.
//
// Units: document units are millimetres on a page (CCA_G… types); scene units are device-independent pixels of the
// scene at the present zoom. Zoom is in percent, 100 = actual size.
class FRAME_EXPORT G_DocView : public QObject
{
    Q_OBJECT
public:
    G_DocView(G_UIContext* context, IG_Document* document, QWidget* parentWidget = nullptr);
    ~G_DocView() override;

    IG_Document* GDocument() const;
    G_UIContext* UIContext() const;
    IG_Page* Page(int pageIndex) const; // null when out of range; not to be released
    int CurrentPageIndex() const;       // from 0; -1 without pages
    // Brings the page and, if the rectangle (page mm) is not empty, that rectangle into view. A point (an empty
    // rectangle that is not all zero) goes to the view's top left; all zero means the top of the page. With `fitRect`
    // the zoom changes so that the rectangle fills the view. A page out of range does nothing. `sender` is the view
    // the call comes from; it may be null. Emits PageChange at most once, at the end.
    void GoToPage(G_DocView* sender, int pageIndex, const CCA_GRect& rect, bool fitRect);
    // A jump begins whose zoom changes first: Jumping tells it now, and not again when GoToPage ends it.
    void BeginJump();
    float GetZoom() const;
    // Keeps the zoom within 1 to 6400 (less for tens of thousands of pages, where the scroll bars' range ends) and sets
    // the mode to Custom. With `keepCenter` the middle stays, else the top left.
    void SetZoom(float percent, bool keepCenter);
    G_Preferences::ZoomMode ZoomMode() const;
    // A fitting mode fits the current page, and the page of a jump that follows in the same turn of the event loop.
    void SetZoomMode(G_Preferences::ZoomMode mode);
    int Rotation() const; // 0, 90, 180, 270 clockwise
    void SetRotation(int degrees);
    // Rows of two pages in place of a column of single ones; fitting modes fit the row.
    bool HasTwoPages() const;
    void SetTwoPages(bool isWanted);
    // Of a long document, pages that have not been in view are taken to be like the first one until their sizes are
    // read; the layout is then corrected without moving what is in view.
    QRect PageRect(int pageIndex) const;        // scene units
    QRect PageLogicalRect(int pageIndex) const; // at 100 percent, origin 0, 0
    QRectF BoundingRect() const;                // the scene's extent
    QRect VisibleSceneRect() const;
    CCA_GRect CurrentPageVisibleRectMM() const;
    // Page millimetres to pixels of that page at the present zoom and rotation, origin at the page's top left corner;
    // add PageRect().topLeft() for the scene.
    CCA_Matrix PageDisplayMatrix(int pageIndex) const;
    CCA_Point ScenePointFromDocPoint(const CCA_GPoint& point, int pageIndex) const;
    // `page` is only written: the page hit, -1 when none is; may be null. Without a page hit the point is (0, 0).
    CCA_GPoint DocPointFromScenePoint(const CCA_Point& point, int* page) const;
    // The point in millimetres of that page, wherever it lies; (0, 0) for a page out of range.
    CCA_GPoint DocPointOnPage(const CCA_Point& point, int pageIndex) const;
    CCA_Rect SceneRectFromDocRect(const CCA_GRect& rect, int pageIndex) const;
    // The page under a scene point; -1 when none and `nearest` is off.
    int PageIndexByPoint(const QPoint& scenePoint, bool nearest, bool visibleOnly) const;
    const QPoint& CursorPosition() const; // the last mouse position, scene units
    // Drops cached page images: of the page whose index the text tells in decimal, of all when it is empty.
    void ClearViewCache(const QString& pageIndexText);
    void ResetViewRender();
    void InstallViewRender(G_DocViewRender* render); // once, however often called; not owned
    void UnInstallViewRender(G_DocViewRender* render);
    bool IsReadOnly() const;
    bool IsSignProtected() const;
    bool IsEncrypt() const;
    bool AnnotStatus() const; // annotations are shown
    void SetAnnotStatus(bool shown);
    void CreateUndoStack();        // makes the stack when it is absent
    QUndoStack* UndoStack() const; // null until made; owned by the view
    QList<G_HighLightItem> SelectHighLightText() const;
    void SetHighLightText(const QList<G_HighLightItem>& items);
    // Selects the text between two places (page mm), the first of which stands before the second. What more than a few
    // pages hold comes in over the following turns of the event loop; any other change of the selection ends that.
    void SelectTextBetween(int fromPage, const CCA_GPoint& from, int toPage, const CCA_GPoint& to);
    // The text of all pages, in the same way.
    void SelectAllText();
    // Whether more is coming in.
    bool IsSelecting() const;
    // The selected text: a line for each run, with tabs between runs that stand side by side. Waits for what has still
    // to be read, however long that takes.
    QString SelectedText() const;
    // Puts the selected text on the clipboard, without a wait: what has still to be read is copied when it is there,
    // and a change of the selection ends that. Nothing without a selection.
    void CopySelectedText();
    // Whether the text of these pages can be asked for without a noticeable wait. If it cannot, it is being read from
    // now on, and TextRead tells of each page.
    bool IsTextAtHand(int firstPage, int lastPage) const;
    // While this is on, the text of what is in view is read before it is asked for.
    void SetReadsTextAhead(bool isOn);
    // Moves the visible part of the scene.
    void ScrollBy(int dx, int dy);
    // Renders what is in view now and waits for it: for pictures of the window and for programs without an event loop.
    void FinishRendering();

    // Emits ToolHandlerChange. Null leaves no tool. A tool that is none of the view's clones stays the caller's and
    // serves this view while it is current; prototypes and other views' tools are refused (logged).
    virtual void SetCurrentToolHandler(G_ToolHandler* handler);
    virtual G_ToolHandler* CurrentToolHandler();
    virtual G_ToolHandler* ToolHandlerByName(const char* name); // this view's clone; null when unknown
    virtual void SetViewCursor(int shape);                      // 0 normal
    virtual void UpdateView();                                  // repaints the pages

    // The link under a scene point; `link` may be null. False when there is none, or none is shown, and as long as
    // nothing of the page has been painted.
    bool LinkAt(const CCA_Point& point, G_PageLink* link) const;
    // The links of which something is in view, page by page from the top down.
    QVector<G_LinkInView> LinksInView() const;
    // Runs a link's actions on behalf of a click, in the next turn of the event loop, unless the view has gone by then.
    void RunLink(const std::shared_ptr<const G_ActionList>& actions);
    // A tool tip for all of the view, as plain text; empty for none.
    void SetViewTip(const QString& text);

    // The widget to show; owned by its parent widget once it has one, else by the view.
    QWidget* Widget() const;
    // Goes to the top of the page after or before.
    void NextPage();
    void PreviousPage();

    // JSON of template ids to ignore on each page: {"pageId": {"IgnoreIDs": [1, 2]}}. "" and "{}" ignore none.
    QString pageFilter;

signals:
    // GoToPage is about to move the view; not for steps from page to page. The place and the zoom are still the old
    // ones.
    void Jumping();
    // It has moved.
    void Jumped();
    // Emitted with the view's own CurrentPageIndex, for the window's page box.
    void CurrentPageChanged(int pageIndex);
    void ZoomChanged(float percent);
    void SelectionChanged();
    // The text of a page that had to be waited for is at hand.
    void TextRead(int pageIndex);
    // The first page that was visible after opening has been painted.
    void FirstPagePainted();

private:
    friend class GR_PageGraphicItem;
    friend class G_PageWidget;
    friend class G_ToolHandler;
    void ForgetTool(G_ToolHandler* handler); // it is being destroyed
    struct Private;
    std::unique_ptr<Private> d;
};
Q_DECLARE_METATYPE(G_DocView*)
