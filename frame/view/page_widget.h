#pragma once

#include <QGraphicsView>

class G_DocView;

// The graphics view of a document view: hands events to it and paints its overlays around the pages.
class G_PageWidget : public QGraphicsView
{
    Q_OBJECT
public:
    G_PageWidget(QGraphicsScene* scene, QWidget* parent);
    // From here on events go to the view, which must be complete.
    void Attach(G_DocView* docView);
    // The view is dying; the widget stays empty until its parent goes.
    void Detach();
    // The scroll bars' own step by keys and buttons, in scene units.
    void ScrollStep(int dx, int dy);

protected:
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void drawBackground(QPainter* painter, const QRectF& rect) override;
    void drawForeground(QPainter* painter, const QRectF& rect) override;

private:
    void Mouse(QMouseEvent* event);
    void Key(QKeyEvent* event);
    G_DocView* view = nullptr; // not owned; null once it died
};
