#include "text_page.h"

#include "object_places.h"

#include <ofd/model/document_store.h>

#include <algorithm>

namespace ofd {

namespace {

constexpr double SameLineShare = 0.5; // of the lower box's height that must overlap
constexpr double WidestGap = 1.5;     // of the height; a wider one begins a new run

bool ContinuesRun(const QRectF& last, const QRectF& next)
{
    const double overlap = std::min(last.bottom(), next.bottom()) - std::max(last.top(), next.top());
    const double height = std::min(last.height(), next.height());
    if (overlap < SameLineShare * height)
        return false;
    const double gap = next.left() - last.right();
    return gap < WidestGap * height && gap > -last.width() - height;
}

// Whether a box stands before the point in reading order; points between two lines lie behind the upper one.
bool IsBefore(const QRectF& box, const CCA_GPoint& point)
{
    return box.bottom() <= point.y || (box.top() <= point.y && box.center().x() < point.x);
}

CCA_GRect ToRect(const QRectF& rect)
{
    return CCA_GRect(float(rect.left()), float(rect.top()), float(rect.right()), float(rect.bottom()));
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
    for (const PlacedText& piece : PlaceTexts(*content, *store))
        cells.append({piece.box, piece.text, 0});
    AssignRuns();
    isParsed = true;
    return true;
}

void OfdTextPage::AssignRuns()
{
    for (int i = 1; i < cells.size(); ++i)
        cells[i].run = cells.at(i - 1).run + (ContinuesRun(cells.at(i - 1).box, cells.at(i).box) ? 0 : 1);
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

template <typename Wanted>
QList<G_TextRun> OfdTextPage::RunsOf(const Wanted& isWanted) const
{
    QList<G_TextRun> runs;
    int lastRun = -1;
    QRectF box;
    for (const Cell& cell : cells) {
        if (!isWanted(cell.box))
            continue;
        if (cell.run != lastRun) {
            runs.append(G_TextRun());
            box = QRectF();
            lastRun = cell.run;
        }
        box |= cell.box;
        runs.last().rect = ToRect(box);
        runs.last().text += cell.text;
    }
    return runs;
}

QList<G_TextRun> OfdTextPage::RunsBetween(const CCA_GPoint& from, const CCA_GPoint& to) const
{
    // Lies between when it is before exactly one of the two, so the order of the points does not matter.
    return RunsOf([&](const QRectF& box) { return IsBefore(box, from) != IsBefore(box, to); });
}

QList<G_TextRun> OfdTextPage::AllRuns() const
{
    return RunsOf([](const QRectF&) { return true; });
}

} // namespace ofd
