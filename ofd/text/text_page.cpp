#include "text_page.h"

#include "object_places.h"

#include <ofd/model/document_store.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ofd {

namespace {

constexpr double SameLineShare = 0.5; // of the lower cell's height that must overlap
constexpr double WidestGap = 1.5;     // of the height; a wider one begins a new run
constexpr double SameWayCosine = 0.97;
constexpr double AcrossWeight = 20; // beside a short line the pointer means it, not the longer one below

double Dot(const QPointF& a, const QPointF& b)
{
    return QPointF::dotProduct(a, b);
}

QPointF Across(const QPointF& along)
{
    return {-along.y(), along.x()}; // down, for text that runs to the right
}

CCA_GRect ToRect(const QRectF& rect)
{
    return CCA_GRect(float(rect.left()), float(rect.top()), float(rect.right()), float(rect.bottom()));
}

// The cell as it lies on its line: x is the way the text runs, y across.
QRectF OnLine(const QPolygonF& cell, const QPointF& along)
{
    double left = std::numeric_limits<double>::max();
    double top = left;
    double right = -left;
    double bottom = -left;
    for (const QPointF& corner : cell) {
        const double x = Dot(corner, along);
        const double y = Dot(corner, Across(along));
        left = std::min(left, x);
        right = std::max(right, x);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
    }
    return left <= right ? QRectF(QPointF(left, top), QPointF(right, bottom)) : QRectF();
}

bool ContinuesRun(const QRectF& last, const QRectF& next)
{
    const double overlap = std::min(last.bottom(), next.bottom()) - std::max(last.top(), next.top());
    const double height = std::min(last.height(), next.height());
    if (overlap < SameLineShare * height)
        return false;
    const double gap = next.left() - last.right();
    return gap < WidestGap * height && gap > -last.width() - height;
}

// How far a place lies outside from..to; 0 inside.
double Beyond(double place, double from, double to)
{
    return std::max({from - place, place - to, 0.0});
}

} // namespace

OfdTextPage::OfdTextPage(std::shared_ptr<DocumentStore> store, std::shared_ptr<const PageContent> content,
                         bool isReadable)
    : store(std::move(store))
    , content(std::move(content))
    , isReadable(isReadable)
{
}

OfdTextPage::~OfdTextPage() = default;

bool OfdTextPage::Parse(int)
{
    if (isParsed || !isReadable)
        return isReadable;
    const QVector<PlacedText> pieces = PlaceTexts(*content, *store);
    cells.reserve(pieces.size());
    for (const PlacedText& piece : pieces) {
        if (!piece.text.isEmpty())
            AddCell(piece);
    }
    isParsed = true;
    return true;
}

void OfdTextPage::AddCell(const PlacedText& piece)
{
    Cell cell;
    cell.box = piece.box;
    cell.text = piece.text;
    bool isSameRun = false;
    if (!runs.isEmpty() && Dot(runs.last().along, piece.along) > SameWayCosine) {
        const QRectF onLine = OnLine(piece.cell, runs.last().along);
        isSameRun = ContinuesRun(lastOnLine, onLine);
        lastOnLine = onLine;
    }
    if (!isSameRun) {
        lastOnLine = OnLine(piece.cell, piece.along);
        Run run;
        run.along = piece.along;
        run.firstCell = cells.size();
        run.onLine = lastOnLine;
        runs.append(run);
    }
    Run& run = runs.last();
    run.onLine |= lastOnLine;
    cell.middle = lastOnLine.center().x();
    cell.run = runs.size() - 1;
    bounds |= piece.box;
    cells.append(cell);
    run.endCell = cells.size();
}

void OfdTextPage::GetTextInRect(const CCA_GRect& rect, wchar_t** text) const
{
    if (!text)
        return;
    QString found;
    for (const Cell& cell : cells) {
        const QPointF centre = cell.box.center();
        if (rect.Contains({float(centre.x()), float(centre.y())}))
            found += cell.text;
    }
    *text = CCA_AllocWide(found);
}

QList<G_TextRun> OfdTextPage::RunsOf(int from, int to) const
{
    QList<G_TextRun> found;
    int lastRun = -1;
    QRectF box;
    for (int i = from; i < to; ++i) {
        const Cell& cell = cells.at(i);
        if (cell.run != lastRun) {
            found.append(G_TextRun());
            box = QRectF();
            lastRun = cell.run;
        }
        box |= cell.box;
        found.last().rect = ToRect(box);
        found.last().text += cell.text;
    }
    return found;
}

const OfdTextPage::Run* OfdTextPage::NearestRun(const QPointF& place) const
{
    const Run* nearest = nullptr;
    double least = std::numeric_limits<double>::infinity();
    for (const Run& run : runs) {
        const double x = Beyond(Dot(place, run.along), run.onLine.left(), run.onLine.right());
        const double y = Beyond(Dot(place, Across(run.along)), run.onLine.top(), run.onLine.bottom());
        const double distance = x + AcrossWeight * y;
        if (distance < least) {
            least = distance;
            nearest = &run;
        }
    }
    return nearest;
}

int OfdTextPage::CellsBefore(const CCA_GPoint& point) const
{
    const QPointF place(double(point.x), double(point.y));
    if (place.x() < bounds.left() && place.y() < bounds.top())
        return 0;
    if (place.x() > bounds.right() && place.y() > bounds.bottom())
        return cells.size();
    const Run* run = NearestRun(place);
    if (!run)
        return 0;
    const double y = Dot(place, Across(run->along));
    if (y < run->onLine.top())
        return run->firstCell;
    if (y >= run->onLine.bottom())
        return run->endCell;
    const double x = Dot(place, run->along);
    int before = run->firstCell;
    while (before < run->endCell && cells.at(before).middle < x)
        ++before;
    return before;
}

QList<G_TextRun> OfdTextPage::RunsBetween(const CCA_GPoint& from, const CCA_GPoint& to) const
{
    const int one = CellsBefore(from);
    const int other = CellsBefore(to);
    return RunsOf(std::min(one, other), std::max(one, other));
}

QList<G_TextRun> OfdTextPage::AllRuns() const
{
    return RunsOf(0, cells.size());
}

QList<G_TextGlyph> OfdTextPage::AllGlyphs() const
{
    QList<G_TextGlyph> glyphs;
    glyphs.reserve(cells.size());
    for (const Cell& cell : cells) {
        G_TextGlyph glyph;
        glyph.rect = ToRect(cell.box);
        glyph.text = cell.text;
        glyph.run = cell.run;
        glyphs.append(glyph);
    }
    return glyphs;
}

} // namespace ofd
