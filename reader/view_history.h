#pragma once

#include <QObject>
#include <QPointF>
#include <QVector>

class G_DocView;

// A place in a document: where the view's top left corner lies on its current page.
struct ViewPlace
{
    int page = -1;
    QPointF cornerMm;
};

ViewPlace PlaceOf(const G_DocView& view);
// Does nothing for a page that the document does not have.
void GoToPlace(G_DocView& view, const ViewPlace& place);

// The places that the user of a view jumped away from, like those of a browser. Scrolling and stepping from page to
// page are no jumps. Lives as long as the view; main thread only.
class ViewHistory : public QObject
{
    Q_OBJECT
public:
    explicit ViewHistory(G_DocView* view);
    bool CanGoBack() const { return !before.isEmpty(); }
    bool CanGoForward() const { return !after.isEmpty(); }
    void GoBack();
    void GoForward();

signals:
    void Changed();

private:
    void OnJumping();
    void Move(QVector<ViewPlace>& from, QVector<ViewPlace>& to);

    G_DocView* view; // not owned
    QVector<ViewPlace> before;
    QVector<ViewPlace> after;
    bool isMoving = false;
};
