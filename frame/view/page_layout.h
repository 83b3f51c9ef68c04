#pragma once

#include <frame/base/geometry.h>

#include <QPointF>
#include <QRect>
#include <QSizeF>
#include <QVector>

// Where the pages of a document lie in the scene: a column with gaps, each page in the middle of the widest, or rows of
// two pages that meet in the middle. A row is one page where pages are not paired. Pure geometry: scene units are
// device-independent pixels at the zoom that was set.
class PageLayout
{
public:
    void SetPages(const QVector<QSizeF>& sizesMm);
    // Arrange places the page anew.
    void SetSize(int page, const QSizeF& sizeMm) { sizes[page] = sizeMm; }
    // `pixelsPerMm` at 100 percent. Places all pages anew.
    void Arrange(double zoomPercent, int rotationDegrees, double pixelsPerMmAt100);

    // Arrange places the pages anew.
    void SetPaired(bool isWanted) { isPaired = isWanted; }
    bool IsPaired() const { return isPaired; }
    int RowStart(int page) const { return isPaired && page > 0 ? page - page % 2 : page; }
    int RowEnd(int page) const; // the last page of its row
    // The room of a page and those beside it, as wide on either side of the middle; empty when out of range.
    QRect RowRect(int page) const;

    int Count() const { return sizes.size(); }
    bool IsValid(int page) const { return page >= 0 && page < sizes.size(); }
    QRect SceneRect() const { return QRect(0, 0, width, height); }
    double PixelsPerMm() const { return scale; }
    int Rotation() const { return rotation; }
    QSizeF SizeMm(int page) const { return sizes.value(page); } // as stored, not turned
    // Size as shown, in mm.
    QSizeF TurnedSizeMm(int page) const;
    QRect PageRect(int page) const; // empty when out of range
    // The size in pixels of a page at another scale, as shown.
    QSize PagePixels(int page, double pixelsPerMm) const;
    // Page mm to pixels with the origin at the shown page's top left corner.
    QTransform PageMatrix(int page) const;
    QPointF ToScene(const QPointF& pointMm, int page) const;
    QPointF ToPage(const QPointF& scenePoint, int page) const;

    int PageTop(int page) const { return tops.value(page); }
    // The last page that begins above or at this height, the first of all when none does.
    int PageStartingAbove(int sceneY) const;

    // The page under a point, -1 for none.
    int PageAt(const QPoint& scenePoint) const;
    // The page whose rectangle is closest to the point; -1 without pages.
    int NearestPage(const QPoint& scenePoint) const;
    // First and last page that reach into the rectangle; (0, -1) when none does.
    QPair<int, int> PagesIn(const QRect& sceneRect) const;
    // The page that fills most of the rectangle, the first of equal ones; -1 when none reaches into it.
    int FillingPage(const QRect& sceneRect) const;

    static constexpr int gapPx = 12; // around and between pages

private:
    int BesideAt(int page, int sceneX) const; // the page of its row that lies at this side

    QVector<QSizeF> sizes; // mm
    QVector<int> tops;
    int width = 0;
    int height = 0;
    double scale = 1;
    int rotation = 0;
    bool isPaired = false;
};
