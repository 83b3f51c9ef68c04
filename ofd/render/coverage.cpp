#include "coverage.h"

#include <agg_rasterizer_scanline_aa.h>
#include <agg_scanline_u.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace ofd {

namespace {

// Of a piece that is done at once, at 16 bytes each and 8 more to sort them. The rasterizer leaves out what is beyond
// four millions.
constexpr double MaxCells = 2e6;
constexpr int SmallestSide = 8;     // of a piece
constexpr double CurveFineness = 8; // Qt makes edges that differ by a quarter of a pixel

using Rasterizer = agg::rasterizer_scanline_aa<agg::rasterizer_sl_clip_dbl>; // whose coordinates do not overflow

// The pixels that an edge crosses within the box, at the most; beside it those of its rows, at its side.
double CellsOf(QPointF from, QPointF to, const QRectF& box)
{
    if (from.y() > to.y())
        std::swap(from, to);
    const double top = std::max(from.y(), box.top());
    const double bottom = std::min(to.y(), box.bottom());
    if (top > bottom)
        return 0;
    const double down = to.y() - from.y();
    const double across = std::abs(to.x() - from.x()) * (down > 0 ? (bottom - top) / down : 1);
    return bottom - top + std::min(across, box.width()) + 2;
}

// Curves become straight edges, fine enough that it does not show where rounding, which differs from tile to tile,
// makes one more or less of them.
QList<QPolygonF> Straightened(const QPainterPath& outline, const QPoint& origin)
{
    QList<QPolygonF> polygons = outline.toSubpathPolygons(QTransform::fromScale(CurveFineness, CurveFineness));
    const QTransform back = QTransform::fromScale(1 / CurveFineness, 1 / CurveFineness) *
                            QTransform::fromTranslate(-origin.x(), -origin.y());
    for (QPolygonF& polygon : polygons)
        polygon = back.map(polygon);
    return polygons;
}

// Rasterizes outlines of straight edges into a picture, piece by piece.
class CoveragePainter
{
public:
    CoveragePainter(const QList<QPolygonF>& polygons, Qt::FillRule rule, const std::function<bool()>& isCancelled,
                    QImage& image)
        : polygons(polygons)
        , rule(rule)
        , isCancelled(isCancelled)
        , image(image)
    {
    }

    // False when it was cancelled.
    bool Paint()
    {
        std::vector<QRect> open{image.rect()};
        while (!open.empty()) {
            const QRect piece = open.back();
            open.pop_back();
            if (isCancelled && isCancelled())
                return false;
            const bool isSmall = std::max(piece.width(), piece.height()) <= SmallestSide;
            if (isSmall || CellsIn(piece) <= MaxCells)
                PaintPiece(piece);
            else
                Split(piece, open);
        }
        return true;
    }

private:
    static void Split(const QRect& piece, std::vector<QRect>& open)
    {
        QRect first = piece;
        QRect second = piece;
        // Edges beside a piece count in each of its rows: fewer rows help more than fewer columns.
        if (piece.height() > SmallestSide || piece.height() >= piece.width()) {
            first.setHeight(piece.height() / 2);
            second.setTop(first.bottom() + 1);
        } else {
            first.setWidth(piece.width() / 2);
            second.setLeft(first.right() + 1);
        }
        open.push_back(first);
        open.push_back(second);
    }

    double CellsIn(const QRect& piece) const
    {
        const QRectF box(piece);
        double cells = 0;
        for (const QPolygonF& polygon : polygons) {
            for (int i = 0; i < polygon.size() && cells <= MaxCells; ++i)
                cells += CellsOf(polygon[i], polygon[i + 1 < polygon.size() ? i + 1 : 0], box);
        }
        return cells;
    }

    void PaintPiece(const QRect& piece)
    {
        Rasterizer rasterizer;
        rasterizer.clip_box(piece.left(), piece.top(), piece.right() + 1, piece.bottom() + 1);
        rasterizer.filling_rule(rule == Qt::WindingFill ? agg::fill_non_zero : agg::fill_even_odd);
        for (const QPolygonF& polygon : polygons) {
            for (int i = 0; i < polygon.size(); ++i) {
                if (i == 0)
                    rasterizer.move_to_d(polygon[i].x(), polygon[i].y());
                else
                    rasterizer.line_to_d(polygon[i].x(), polygon[i].y());
            }
            rasterizer.close_polygon();
        }
        if (!rasterizer.rewind_scanlines())
            return;
        agg::scanline_u8 row;
        row.reset(rasterizer.min_x(), rasterizer.max_x());
        while (rasterizer.sweep_scanline(row))
            CopyRow(row, piece);
    }

    void CopyRow(const agg::scanline_u8& row, const QRect& piece)
    {
        if (row.y() < piece.top() || row.y() > piece.bottom())
            return;
        uchar* const to = image.scanLine(row.y());
        auto span = row.begin();
        for (unsigned i = 0; i < row.num_spans(); ++i, ++span) {
            // What runs along the piece's right side is in the pixel behind it.
            const int begin = std::max(int(span->x), piece.left());
            const int end = std::min(int(span->x) + int(span->len), piece.right() + 1);
            if (begin < end)
                std::memcpy(to + begin, span->covers + (begin - span->x), size_t(end - begin));
        }
    }

    const QList<QPolygonF>& polygons;
    const Qt::FillRule rule;
    const std::function<bool()>& isCancelled;
    QImage& image;
};

} // namespace

QImage CoverageOf(const QPainterPath& outline, const QRect& box, const std::function<bool()>& isCancelled)
{
    QImage image(box.size(), QImage::Format_Alpha8);
    if (image.isNull())
        return image;
    image.fill(0);
    const QList<QPolygonF> polygons = Straightened(outline, box.topLeft());
    return CoveragePainter(polygons, outline.fillRule(), isCancelled, image).Paint() ? image : QImage();
}

} // namespace ofd
