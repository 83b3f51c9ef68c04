#include "page_text.h"

#include <frame/document/text_script.h>

#include <algorithm>
#include <array>
#include <limits>

namespace ofd {

namespace {

constexpr double BlankGap = 0.15;    // of the height, more than between letters
constexpr double IdeographGap = 0.5; // the same beside ideographs
constexpr double AcrossWeight = 20;  // beside a short line the pointer means it, not the longer one below

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

// How far apart the letters around a piece stand, the gap before it left aside: in the middle of those near it. Letters
// that are set wide apart have gaps everywhere, a word of one letter has them on its two sides alone.
double SpacingAround(const QVector<PlaceOnLine>& places, int piece, const TextLine& line)
{
    constexpr int reach = 3;
    std::array<double, 2 * reach> gaps{};
    int count = 0;
    for (int step = 1; step <= reach; ++step) {
        if (piece - step > line.first)
            gaps[size_t(count++)] = places.at(piece - step).gap;
        if (piece + step < line.end)
            gaps[size_t(count++)] = places.at(piece + step).gap;
    }
    if (count == 0)
        return 0;
    const auto middle = gaps.begin() + count / 2;
    std::nth_element(gaps.begin(), middle, gaps.begin() + count);
    return std::max(*middle, 0.0);
}

// How wide a gap between two characters is that stands for a blank, of the height. Beside ideographs narrow ones are
// usual, also between them and letters or digits.
double BlankGapBetween(uint last, uint next)
{
    if (QChar::isSpace(last) || QChar::isSpace(next))
        return std::numeric_limits<double>::infinity();
    return G_IsIdeographic(last) || G_IsIdeographic(next) ? IdeographGap : BlankGap;
}

bool IsGapABlank(const QVector<PlacedText>& pieces, const QVector<PlaceOnLine>& places, int piece, const TextLine& line)
{
    if (piece == line.first || !pieces.at(piece).isFirst || places.at(piece).gap <= BlankGap)
        return false;
    const uint last = pieces.at(piece - 1).text.toUcs4().last();
    const uint next = pieces.at(piece).text.toUcs4().first();
    return places.at(piece).gap > SpacingAround(places, piece, line) + BlankGapBetween(last, next);
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
    QVector<PlaceOnLine> places;
    places.reserve(pieces.size());
    runs = LinesOf(pieces, &places);
    cells.reserve(pieces.size());
    for (int run = 0; run < runs.size(); ++run) {
        for (int i = runs.at(run).first; i < runs.at(run).end; ++i) {
            const QRectF& box = pieces.at(i).box;
            bounds = cells.isEmpty() ? box : Around(bounds, box);
            cells.append({box, places.at(i).middle, run, letters.size(), IsGapABlank(pieces, places, i, runs.at(run))});
            letters += pieces.at(i).text;
        }
    }
    letters.squeeze();
}

qint64 PageText::Bytes() const
{
    return qint64(sizeof(PageText)) + qint64(sizeof(Cell)) * cells.size() + qint64(sizeof(TextLine)) * runs.size() +
           qint64(sizeof(QChar)) * letters.size() + (content ? content->bytes : 0);
}

QString PageText::TextInRect(const CCA_GRect& rect) const
{
    QString found;
    int last = -1;
    for (int i = 0; i < cells.size(); ++i) {
        const QPointF centre = cells.at(i).box.center();
        if (!rect.Contains({float(centre.x()), float(centre.y())}))
            continue;
        if (cells.at(i).isBehindBlank && last == i - 1 && last >= 0)
            found += QLatin1Char(' ');
        found += letters.midRef(cells.at(i).firstLetter, EndLetter(i) - cells.at(i).firstLetter);
        last = i;
    }
    return found;
}

QString PageText::TextOf(int from, int to) const
{
    QString text;
    int first = cells.at(from).firstLetter;
    for (int i = from + 1; i < to; ++i) {
        if (!cells.at(i).isBehindBlank)
            continue;
        text += letters.midRef(first, cells.at(i).firstLetter - first) + QLatin1Char(' ');
        first = cells.at(i).firstLetter;
    }
    return text + letters.midRef(first, EndLetter(to - 1) - first);
}

QList<G_TextRun> PageText::RunsOf(int from, int to) const
{
    QList<G_TextRun> found;
    for (int first = from; first < to;) {
        const int end = std::min(to, runs.at(cells.at(first).run).end);
        QRectF box = cells.at(first).box;
        for (int i = first + 1; i < end; ++i)
            box = Around(box, cells.at(i).box);
        found.append({ToRect(box), TextOf(first, end)});
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
