#include "page_text.h"

#include <algorithm>
#include <limits>

namespace ofd {

namespace {

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

// How far a place lies outside from..to; 0 inside.
double Beyond(double place, double from, double to)
{
    return std::max({from - place, place - to, 0.0});
}

bool IsEmpty(const PlacedText& piece)
{
    return piece.text.isEmpty();
}

} // namespace

PageText::PageText(std::shared_ptr<const PageContent> content, HiddenText hidden, const PageTexts& texts)
    : content(std::move(content))
    , hidden(std::move(hidden))
{
    QVector<PlacedText> pieces = InReadingOrder(texts.before, texts.own, texts.after);
    pieces.erase(std::remove_if(pieces.begin(), pieces.end(), IsEmpty), pieces.end());
    QVector<double> middles;
    middles.reserve(pieces.size());
    runs = LinesOf(pieces, &middles);
    cells.reserve(pieces.size());
    for (int run = 0; run < runs.size(); ++run) {
        for (int i = runs.at(run).first; i < runs.at(run).end; ++i) {
            cells.append({pieces.at(i).box, middles.at(i), run, letters.size()});
            letters += pieces.at(i).text;
            bounds |= pieces.at(i).box;
        }
    }
    letters.squeeze();
}

qint64 PageText::Bytes() const
{
    return qint64(sizeof(PageText)) + qint64(sizeof(Cell)) * cells.size() + qint64(sizeof(TextLine)) * runs.size() +
           qint64(sizeof(QChar)) * letters.size();
}

QString PageText::TextInRect(const CCA_GRect& rect) const
{
    QString found;
    for (int i = 0; i < cells.size(); ++i) {
        const QPointF centre = cells.at(i).box.center();
        if (rect.Contains({float(centre.x()), float(centre.y())}))
            found += letters.midRef(cells.at(i).firstLetter, EndLetter(i) - cells.at(i).firstLetter);
    }
    return found;
}

QList<G_TextRun> PageText::RunsOf(int from, int to) const
{
    QList<G_TextRun> found;
    for (int first = from; first < to;) {
        const int end = std::min(to, runs.at(cells.at(first).run).end);
        QRectF box = cells.at(first).box;
        for (int i = first + 1; i < end; ++i)
            box |= cells.at(i).box;
        const int firstLetter = cells.at(first).firstLetter;
        found.append({ToRect(box), letters.mid(firstLetter, EndLetter(end - 1) - firstLetter)});
        first = end;
    }
    return found;
}

const TextLine* PageText::NearestRun(const QPointF& place) const
{
    const TextLine* nearest = nullptr;
    double least = std::numeric_limits<double>::infinity();
    for (const TextLine& run : runs) {
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

int PageText::CellsBefore(const CCA_GPoint& point) const
{
    const QPointF place(double(point.x), double(point.y));
    if (place.x() < bounds.left() && place.y() < bounds.top())
        return 0;
    if (place.x() > bounds.right() && place.y() > bounds.bottom())
        return cells.size();
    const TextLine* run = NearestRun(place);
    if (!run)
        return 0;
    const double y = Dot(place, Across(run->along));
    if (y < run->onLine.top())
        return run->first;
    if (y >= run->onLine.bottom())
        return run->end;
    const double x = Dot(place, run->along);
    int before = run->first;
    while (before < run->end && cells.at(before).middle < x)
        ++before;
    return before;
}

QList<G_TextRun> PageText::RunsBetween(const CCA_GPoint& from, const CCA_GPoint& to) const
{
    const int one = CellsBefore(from);
    const int other = CellsBefore(to);
    return RunsOf(std::min(one, other), std::max(one, other));
}

QList<G_TextGlyph> PageText::AllGlyphs() const
{
    QList<G_TextGlyph> glyphs;
    glyphs.reserve(cells.size());
    for (int i = 0; i < cells.size(); ++i) {
        const Cell& cell = cells.at(i);
        glyphs.append({ToRect(cell.box), letters.mid(cell.firstLetter, EndLetter(i) - cell.firstLetter), cell.run});
    }
    return glyphs;
}

} // namespace ofd
