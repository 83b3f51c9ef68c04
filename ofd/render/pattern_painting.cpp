// How a page's painter fills with shadings and patterns.
#include "page_painter.h"
#include "painting_tools.h"
#include "painting_work.h"
#include "shading_raster.h"

#include <ofd/model/pattern.h>
#include <ofd/model/problem_log.h>
#include <ofd/package/limits.h>

#include <QCoreApplication>
#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ofd {

namespace {

constexpr double SmallestCellPx = 4;     // smaller cells are painted once and repeated as a picture
constexpr double SmallestPeriodPx = 2;   // cells that repeat faster are seen as one colour
constexpr double VanishingCellPx = 1e-6; // cells so small are as good as a transform that leaves nothing
constexpr double MostCells = 1e15;       // in one direction
constexpr double SlackPx = 0.01;         // ends so close to each other are one
constexpr int LargestPicturePx = 2048;
constexpr int SamplesOfPeriod = 16; // pixels in each direction that the one colour is the mean of

// Rows and columns of cells.
struct CellRange
{
    qint64 left, right, top, bottom; // the last ones included

    double GetCount() const { return double(right - left + 1) * double(bottom - top + 1); }
};

// The cells that touch the area, which is given in the pattern's space.
CellRange CellsIn(const QRectF& area, const Pattern& pattern)
{
    const auto whole = [](double value) { return qint64(std::clamp(value, -MostCells, MostCells)); };
    const auto first = [&](double from, double cell, double step) { return whole(std::ceil((from - cell) / step)); };
    const auto last = [&](double to, double step) { return whole(std::floor(to / step)); };
    return {first(area.left(), pattern.cell.width(), pattern.step.width()), last(area.right(), pattern.step.width()),
            first(area.top(), pattern.cell.height(), pattern.step.height()),
            last(area.bottom(), pattern.step.height())};
}

int CountObjects(const ObjectList& objects)
{
    int count = int(objects.size());
    for (const std::unique_ptr<const GraphicObject>& object : objects) {
        if (object->kind == GraphicObject::Kind::Group)
            count += CountObjects(static_cast<const GroupObject&>(*object).objects);
    }
    return count;
}

// From a cell's own space to that of the pattern: mirrored where the pattern says so, and moved to its place.
QTransform CellPlace(const Pattern& pattern, qint64 column, qint64 row)
{
    QTransform place;
    if (pattern.flipsColumns && column % 2 != 0)
        place *= QTransform(-1, 0, 0, 1, pattern.cell.width(), 0);
    if (pattern.flipsRows && row % 2 != 0)
        place *= QTransform(1, 0, 0, -1, 0, pattern.cell.height());
    return place *
           QTransform::fromTranslate(double(column) * pattern.step.width(), double(row) * pattern.step.height());
}

// The part of those cells that lies among others.
CellRange Common(const CellRange& a, const CellRange& b)
{
    return {std::max(a.left, b.left), std::min(a.right, b.right), std::max(a.top, b.top), std::min(a.bottom, b.bottom)};
}

// From both ends of a cell to whole pixels. A cell that reaches to the end of what is filled covers the last pixel
// there, though only a part of that is filled.
std::pair<double, double> WholePixels(double from, double to, double filledFrom, double filledTo)
{
    double first = std::round(from);
    double last = std::round(to);
    if (from <= filledFrom + SlackPx && first > filledFrom)
        first = std::floor(filledFrom);
    if (to >= filledTo - SlackPx && last < filledTo)
        last = std::ceil(filledTo);
    return {first, last};
}

// Cells whose edges lie between pixels would show seams where they touch: unless they are turned, each is stretched to
// whole pixels.
QTransform Snapped(const QTransform& cellToPixels, const QSizeF& cell, const QRectF& filled)
{
    if (cellToPixels.type() > QTransform::TxScale)
        return cellToPixels;
    const QRectF exact = cellToPixels.mapRect(QRectF(QPointF(), cell));
    const auto across = WholePixels(exact.left(), exact.right(), filled.left(), filled.right());
    const auto down = WholePixels(exact.top(), exact.bottom(), filled.top(), filled.bottom());
    const QRectF whole(QPointF(across.first, down.first), QPointF(across.second, down.second));
    QTransform stretch;
    stretch.translate(whole.left(), whole.top());
    stretch.scale(whole.width() / exact.width(), whole.height() / exact.height());
    stretch.translate(-exact.left(), -exact.top());
    return cellToPixels * stretch;
}

double ColumnScale(const QTransform& transform)
{
    return std::hypot(transform.m11(), transform.m12());
}

double RowScale(const QTransform& transform)
{
    return std::hypot(transform.m21(), transform.m22());
}

// From the space of the object's boundary, in which shadings and most patterns lie.
QTransform BoundaryToPixels(const GraphicObject& object, const QTransform& containerToPixels)
{
    return QTransform::fromTranslate(object.boundary.x(), object.boundary.y()) * containerToPixels;
}

} // namespace

double ContentPainter::TextureCostOf(const Paint& paint, const Around& around, const QRectF& boxPx) const
{
    const QRectF box = ground.toStandard.mapRect(boxPx) & ground.reach;
    if (!paint.mesh)
        return AreaOf(box) * (paint.shading ? GradientPixel : LayerPixel);
    return MeshCost(*paint.mesh, BoundaryToPixels(around.object, around.containerToPixels) * ground.toStandard, box);
}

QImage ContentPainter::TextureOf(const Paint& paint, const Around& around, const QRect& box, const QRectF& filled)
{
    if (!TakePixels(box.size()))
        return QImage();
    QImage image = TransparentImage(box.size());
    if (image.isNull()) {
        GiveBackPixels(box.size());
        return image;
    }
    const QTransform toPixels =
        BoundaryToPixels(around.object, around.containerToPixels) * QTransform::fromTranslate(-box.x(), -box.y());
    if (paint.shading && IsUsable(toPixels))
        PaintShading(image, *paint.shading, toPixels, isCancelled);
    else if (paint.mesh)
        PaintMesh(image, *paint.mesh, toPixels, isCancelled);
    else if (paint.pattern)
        PaintPattern(image, *paint.pattern, around, box, filled);
    GiveBackPixels(box.size());
    return image;
}

void ContentPainter::PaintPattern(QImage& image, const Pattern& pattern, const Around& around, const QRect& box,
                                  const QRectF& filled)
{
    if (openPatterns >= limits::MaxReferenceDepth) {
        ReportProblem(ProblemKind::Cycle,
                      QCoreApplication::translate("OfdDocument", "Patterns are painted with patterns too often."));
        return;
    }
    const QTransform base = pattern.isRelativeToPage
                                ? pageToPixels * QTransform::fromTranslate(-origin.x(), -origin.y())
                                : BoundaryToPixels(around.object, around.containerToPixels);
    const QTransform toPixels = pattern.matrix * base * QTransform::fromTranslate(-box.x(), -box.y());
    const QSizeF cellPx(pattern.cell.width() * ColumnScale(toPixels), pattern.cell.height() * RowScale(toPixels));
    if (!IsUsable(toPixels) || std::min(cellPx.width(), cellPx.height()) < VanishingCellPx) {
        ReportProblem(
            ProblemKind::BadValue,
            QCoreApplication::translate("OfdDocument", "The pattern's transform leaves nothing to be painted."));
        return;
    }
    if (openPatterns > 0 && !CountRepeated(limits::NestedPatternCost))
        return;
    ++openPatterns;
    const double cells = CellsIn(toPixels.inverted().mapRect(QRectF(image.rect())), pattern).GetCount();
    const bool areLarge = std::min(cellPx.width(), cellPx.height()) >= SmallestCellPx;
    if (areLarge && cells * std::max(1, CountObjects(pattern.objects)) <= limits::MaxPatternObjects)
        PaintCells(image, box, filled.translated(-box.topLeft()), pattern, around.resources, toPixels);
    else
        PaintCellPictures(image, box, pattern, around.resources, toPixels);
    --openPatterns;
}

// Paints the objects again for each cell that is seen. Those that only touch the edge of what is filled are not: their
// colour would show in the pixels there. `filled` is in pixels of the picture.
void ContentPainter::PaintCells(QImage& image, const QRect& box, const QRectF& filled, const Pattern& pattern,
                                const Resources& resources, const QTransform& toPixels)
{
    QPainter inner(&image);
    SetPageHints(inner);
    const DeviceScope scope(*this, inner, box.topLeft());
    const QTransform fromPixels = toPixels.inverted();
    const QRectF within = filled.adjusted(SlackPx, SlackPx, -SlackPx, -SlackPx);
    CellRange cells = CellsIn(fromPixels.mapRect(QRectF(image.rect())), pattern);
    if (within.isValid())
        cells = Common(cells, CellsIn(fromPixels.mapRect(within), pattern));
    // The first cell counts for all that the object has on the page, of which only some may be seen now.
    const QTransform toPage = toPixels * ground.toStandard;
    const double most = double(limits::MaxPatternObjects) / std::max(1, CountObjects(pattern.objects));
    const double times =
        std::clamp(CellsIn(toPage.inverted().mapRect(ground.reach), pattern).GetCount(), 1.0, std::max(1.0, most));
    bool isFirst = true;
    for (qint64 row = cells.top; row <= cells.bottom; ++row) {
        for (qint64 column = cells.left; column <= cells.right; ++column) {
            if (isCancelled && isCancelled())
                return;
            const PaintingWork::TimesScope counted(work, isFirst ? times : 0);
            isFirst = false;
            PaintCell(pattern, resources, Snapped(CellPlace(pattern, column, row) * toPixels, pattern.cell, filled));
        }
    }
}

void ContentPainter::PaintCell(const Pattern& pattern, const Resources& resources, const QTransform& toPixels)
{
    const PainterScope scope(*painter);
    const QScopedValueRollback<WorkGround> groundAround(ground);
    const QRectF cell = (toPixels * ground.toStandard).mapRect(QRectF(QPointF(), pattern.cell));
    if (AreaOf(cell) < AreaOf(ground.reach)) // whole, wherever it is: one cell counts for others
        ground.reach = cell;
    painter->setWorldTransform(toPixels);
    painter->setClipRect(QRectF(QPointF(), pattern.cell), Qt::IntersectClip);
    PaintObjects(pattern.objects, resources);
}

// Paints the cells of one period into a picture and repeats that: for cells that are very small or very many.
void ContentPainter::PaintCellPictures(QImage& image, const QRect& box, const Pattern& pattern,
                                       const Resources& resources, const QTransform& toPixels)
{
    const int columns = pattern.flipsColumns ? 2 : 1;
    const int rows = pattern.flipsRows ? 2 : 1;
    const QSizeF period(pattern.step.width() * columns, pattern.step.height() * rows);
    const double widthPx = period.width() * ColumnScale(toPixels);
    const double heightPx = period.height() * RowScale(toPixels);
    const bool isOneColor = widthPx < SmallestPeriodPx || heightPx < SmallestPeriodPx;
    const auto pixels = [&](double sidePx) {
        return isOneColor ? SamplesOfPeriod : int(std::ceil(std::min(sidePx, double(LargestPicturePx))));
    };
    QImage picture = TransparentImage(QSize(pixels(widthPx), pixels(heightPx)));
    const QTransform toPicture =
        QTransform::fromScale(picture.width() / period.width(), picture.height() / period.height());
    {
        QPainter inner(&picture);
        SetPageHints(inner);
        const DeviceScope scope(*this, inner, box.topLeft(), toPicture.inverted() * toPixels);
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column)
                PaintCell(pattern, resources, CellPlace(pattern, column, row) * toPicture);
        }
    }
    if (isOneColor) {
        const QImage mean = picture.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        image.fill(mean.convertToFormat(QImage::Format_ARGB32).pixelColor(0, 0));
        return;
    }
    QPainter filler(&image);
    SetPageHints(filler);
    QBrush brush(picture);
    brush.setTransform(toPicture.inverted() * toPixels);
    filler.fillRect(image.rect(), brush);
}

} // namespace ofd
