#pragma once

#include "doc_view.h"
#include "page_cache.h"
#include "page_item.h"
#include "page_layout.h"
#include "page_widget.h"
#include "render_jobs.h"
#include "size_reader.h"
#include "text_reader.h"
#include "ui_context.h"

#include <QFutureWatcher>
#include <QGraphicsScene>
#include <QHash>
#include <QPointer>
#include <QSet>
#include <QTimer>

class QPainter;

// What a view is made of. The functions stand in the doc_view_*.cpp of their subject.
struct G_DocView::Private
{
    Private(G_DocView* view, G_UIContext* context, IG_Document* document, QWidget* parentWidget);

    // doc_view_sizes.cpp
    // Lays out all pages; of a long document most at the size that they are likely to have.
    void ReadPages();
    void BoundZoom();
    // Pixels of a millimetre at actual size on this screen.
    static double PixelsPerMmAt100();
    // True when the size was not known and is another than was thought.
    bool SetSize(int page, const QSizeF& sizeMm);
    bool Measure(int first, int last);
    void MeasureInView();
    void MeasurePage(int page);
    void SizesRead(int first, const QVector<QSizeF>& sizesMm);
    void ArrangeInPlace();

    // doc_view_layout.cpp
    // Pages were added, removed or moved: what is known of them goes by place, so it is all read anew.
    void PagesChanged();
    void Arrange();
    // Changes the zoom so that the scene point under this point of the viewport stays there.
    void ZoomAt(double percent, const QPoint& viewportPoint);
    void ApplyMode();
    void CenterCurrentPage();
    // To the top of a page, as a step and no jump.
    void StepTo(int page);
    double FittingZoom(G_Preferences::ZoomMode mode) const;
    // Brings a scene point under a point of the viewport, as far as the scene reaches.
    void ScrollTo(const QPointF& scenePoint, const QPoint& viewportPoint);
    void SyncItems();
    void Resized();
    void Scrolled();
    // Emits the page change when there is one.
    void Announce();
    void AnnounceLater();
    void UpdateCurrentAfterLayout();
    QRect VisibleRect() const;

    // doc_view_render.cpp
    void PaintPage(QPainter* painter, GR_PageGraphicItem* item);
    void PaintPicture(QPainter* painter, int page, const QSize& size);
    void PaintError(QPainter* painter, int page, const QString& error) const;
    void TellFirstPainted();
    void PaintSelection(QPainter* painter, int page) const;
    void PaintScene(QPainter* painter, bool isStart);
    // Overlays in order of installation, the current tool last.
    QList<G_DocViewRender*> Overlays() const;
    bool IsOverlay(G_DocViewRender* render) const;
    // Pointers into the cache, the lowest picture first.
    QVector<const PagePicture*> InPaintingOrder(int page, const PageLook& look) const;
    void DrawPicture(QPainter* painter, const PagePicture& picture) const;

    // doc_view_pictures.cpp
    void AskForPicturesLater();
    // Starts what is missing in view; then, when allowed, what will be seen next.
    void AskForPictures(bool isAhead);
    QVector<RenderWish> MissingInView();
    QVector<RenderWish> MissingAround();
    void Look(const RenderWish& wish, QVector<RenderWish>* missing);
    RenderWish UnderlayOf(int page, const PageLook& look) const;
    PageLook LookOf(int page);
    // All of the page that is in view has a picture that is right.
    bool IsSeenWell(int page, const PageLook& look) const;
    QRect VisiblePart(int page, const QSize& whole) const; // physical pixels of the shown page
    QSet<int> IgnoredTemplates(int page);
    void PictureMade(const RenderWish& wish, const RenderOutcome& outcome);

    // doc_view_text.cpp
    void StartSelecting();
    // How long pages that were not read yet are waited for.
    enum class TextWait { None, Short, AsLongAsItTakes };
    // Adds the text of the next pages to the selection, for about that long.
    void SelectMore(int milliseconds, TextWait wait = TextWait::None);
    void EndSelecting();
    // Whether a page's text can be asked for without a wait; it is read when it cannot. Waits that long at the most,
    // and not again for a page that did not come in time.
    bool IsTextReady(int page, int milliseconds);
    // Reads the text of pages that somebody waits for, then of those in view.
    void WantTexts();
    void TextRead(int page);
    void CopyText(const QString& text);

    // doc_view_links.cpp
    // The links of a page that are shown, once something of it has been painted.
    QVector<G_PageLink> ShownLinks(int page);

    // doc_view_tools.cpp
    // Tab, or Shift+Tab, before it goes to another widget. True when the tool took it.
    bool TabKey(bool isForward);
    CCA_Point Remember(const QPoint& viewportPoint);
    bool MouseEvent(QMouseEvent* event);
    bool WheelEvent(QWheelEvent* event);
    // Something else may lie under a mouse that rests.
    void HoverAgain(const QWheelEvent& event);
    bool KeyEvent(QKeyEvent* event);
    bool DefaultKey(QKeyEvent* event);
    // A screenful on or back, from page to page where whole pages fit.
    void ScreenDown();
    void ScreenUp();
    int ScreenStep() const;
    bool MayUse(G_ToolHandler* handler) const;
    void LeaveTool();
    void DestroyTools();

    G_DocView* q;                  // not owned; the view this belongs to
    QPointer<G_UIContext> context; // not owned
    IG_Document* document;         // not owned
    PageLayout layout;
    QVector<bool> isMeasured; // by page: its size in the layout is the true one
    int unmeasured = 0;
    bool isMeasuring = false;
    std::unique_ptr<SizeReader> sizeReader; // null when all sizes were known at once
    QTimer sizeTimer;                       // starts it when no page was painted before
    QGraphicsScene scene;
    QPointer<G_PageWidget> widget;         // owned by its parent widget, or by the view while it has none
    QHash<int, GR_PageGraphicItem*> items; // owned by the scene; only pages near the visible part have one
    mutable QSet<int> handedOut;           // pages that callers were given; released at the end

    double zoom = 100;      // percent
    double mostZoom = 6400; // percent
    G_Preferences::ZoomMode mode = G_Preferences::Custom;
    int rotation = 0;
    int current = -1;
    int announced = -2; // the page that listeners were last told of; -2: none yet
    int moving = 0;     // above 0 while a jump is under way: its scrolling steps are not announced
    bool isFitting = false;
    bool isStepping = false;
    bool isJumpTold = false; // ahead of GoToPage
    // A fitting mode was set and no page change has been told since: a jump fits its own page then.
    bool isModeFresh = false;
    QTimer announceTimer;

    PageCache cache;
    std::unique_ptr<RenderJobs> jobs; // null when the document paints nothing
    QTimer pictureTimer;
    QTimer roomTimer;             // asks again when work that was given up may have ended
    bool isScrollingBack = false; // towards the first page
    int lastTop = 0;              // of the visible part, scene units
    bool wasFirstPagePainted = false;
    QString parsedFilter;                   // the text that ignoredTemplates came from
    QHash<int, QSet<int>> ignoredTemplates; // by page id
    bool showsAnnotations = true;
    QList<G_DocViewRender*> renders; // not owned

    QHash<QByteArray, G_ToolHandler*> tools; // owned
    G_ToolHandler* tool = nullptr;           // not owned; one of `tools`, or a caller's
    QPoint cursor;                           // scene units
    QList<G_HighLightItem> selection;
    // What is being selected over several turns of the event loop.
    struct TextRange
    {
        int fromPage = 0;
        CCA_GPoint from;
        int toPage = -1;
        CCA_GPoint to;
        bool isWhole = false; // all text of the first and last page too
    };
    TextRange selecting;
    int nextToSelect = -1; // the page to go on with; -1: nothing is left to read
    QTimer selectTimer;
    bool copiesWhenSelected = false;
    QFutureWatcher<QString> copyWatcher; // a long text that is being put together
    std::unique_ptr<G_TextReader> textReader;
    QPair<int, int> askedText = {-1, -1}; // pages that a tool waits for
    int lateText = -1;                    // a page that was waited for in vain
    bool readsTextAhead = false;
    bool isTextAheadDue = false; // the pictures in view are there
    QUndoStack* stack = nullptr; // owned by the view as its child
};
