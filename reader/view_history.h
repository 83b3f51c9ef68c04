#pragma once

#include <frame/view/doc_view.h>

#include <QObject>
#include <QPointF>

#include <vector>

// A place in a document: where the view's top left corner lies on its current page.
struct ViewPlace
{
    int page = -1;
    QPointF cornerMm;
};

ViewPlace PlaceOf(const G_DocView& view);
// Does nothing for a page that the document does not have.
void GoToPlace(G_DocView& view, const ViewPlace& place);

// How large pages are shown.
struct ViewZoom
{
    G_Preferences::ZoomMode mode = G_Preferences::Custom;
    float percent = 100; // counts when the mode is none that fits the page
};

ViewZoom ZoomOf(const G_DocView& view);
void SetZoomOf(G_DocView& view, const ViewZoom& zoom);

// The places that the user of a view jumped away from, like those of a browser. Scrolling and stepping from page to
// page are no jumps. The zoom comes back where a jump changed it; what the user chose stays. Lives as long as the view;
// main thread only.
class ViewHistory : public QObject
{
    Q_OBJECT
public:
    explicit ViewHistory(G_DocView* view);
    bool CanGoBack() const { return !before.empty(); }
    bool CanGoForward() const { return !after.empty(); }
    void GoBack();
    void GoForward();
    // What led to the first place that the user sees is no jump of his.
    void Forget();

signals:
    void Changed();

private:
    struct Step
    {
        ViewPlace place;
        ViewZoom zoom;
        bool changesZoom = false; // the jump between this place and the next one changed it
    };
    Step Here() const;
    static bool IsSamePlace(const Step& a, const Step& b);
    static void Append(std::vector<Step>& steps, const Step& step);
    void OnJumping();
    void OnJumped();
    void Move(std::vector<Step>& from, std::vector<Step>& to);

    G_DocView* view; // not owned
    std::vector<Step> before;
    std::vector<Step> after;
    bool isMoving = false;
};
