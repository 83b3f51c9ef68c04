#include "reading_order.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ofd {

namespace {

constexpr double SameLineShare = 0.5; // of the lower cell's height that must overlap
constexpr double WidestGap = 1.5;     // of the height; a wider one begins a new run
constexpr double LeastHeight = 0.1;   // mm; what is less high cannot be read
constexpr double SameWayCosine = 0.97;
constexpr double SimilarHeight = 0.5;    // of the higher line: watermarks stand on no line
constexpr double FarthestLabel = 15;     // of the height, between a label and what was filled in
constexpr qint64 MostPlaces = 4'000'000; // that are looked at; pages of more lines keep the painting order

double Dot(const QPointF& a, const QPointF& b)
{
    return QPointF::dotProduct(a, b);
}

// The cell as it lies on its line: x is the way the text runs, y across.
QRectF OnLine(const QPolygonF& cell, const QPointF& along)
{
    const QPointF across(-along.y(), along.x()); // down, for text that runs to the right
    double left = std::numeric_limits<double>::max();
    double top = left;
    double right = -left;
    double bottom = -left;
    for (const QPointF& corner : cell) {
        const double x = Dot(corner, along);
        const double y = Dot(corner, across);
        left = std::min(left, x);
        right = std::max(right, x);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
    }
    return left <= right ? QRectF(QPointF(left, top), QPointF(right, bottom)) : QRectF();
}

double Overlap(const QRectF& a, const QRectF& b)
{
    return std::min(a.bottom(), b.bottom()) - std::max(a.top(), b.top());
}

bool ContinuesRun(const QRectF& last, const QRectF& next)
{
    const double height = std::min(last.height(), next.height());
    if (Overlap(last, next) < SameLineShare * height)
        return false;
    const double gap = next.left() - last.right();
    return gap < WidestGap * height && gap > -last.width() - height;
}

// Text that is too small to be seen: distances say nothing there, what the file writes as one belongs together.
bool AreTooLow(const QRectF& last, const QRectF& next)
{
    return std::max(last.height(), next.height()) < LeastHeight;
}

double Distance(const QRectF& a, const QRectF& b)
{
    const double x = std::max({a.left() - b.right(), b.left() - a.right(), 0.0});
    const double y = std::max({a.top() - b.bottom(), b.top() - a.bottom(), 0.0});
    return std::hypot(x, y);
}

// Where a line of a template is read.
struct Place
{
    enum Side { BehindOwn, Between, BeforeOwn };
    int slot = 0; // before the own line of that number
    Side side = Between;
    double x = 0; // along the line, beside own text
    const QVector<PlacedText>* pieces = nullptr;
    int first = 0; // of the pieces
    int end = 0;

    bool operator<(const Place& other) const
    {
        if (slot != other.slot)
            return slot < other.slot;
        return side != other.side ? side < other.side : x < other.x;
    }
};

// False when no own text is near on the same line.
bool FindOnLine(const TextLine& line, const QVector<TextLine>& own, Place* place)
{
    double least = std::numeric_limits<double>::max();
    for (int i = 0; i < own.size(); ++i) {
        const QRectF& a = line.onLine;
        const QRectF& b = own.at(i).onLine;
        const double height = std::min(a.height(), b.height());
        const bool isSameLine = Dot(line.along, own.at(i).along) > SameWayCosine &&
                                height >= SimilarHeight * std::max(a.height(), b.height()) &&
                                Overlap(a, b) >= SameLineShare * height;
        const double gap = std::max({b.left() - a.right(), a.left() - b.right(), 0.0});
        if (!isSameLine || gap > FarthestLabel * height || gap >= least)
            continue;
        least = gap;
        const bool isBefore = a.left() <= b.left();
        place->slot = isBefore ? i : i + 1;
        place->side = isBefore ? Place::BeforeOwn : Place::BehindOwn;
        place->x = a.left();
    }
    return least < std::numeric_limits<double>::max();
}

// A line that is as high as several own ones comes before the first of them.
void FindBetween(const TextLine& line, const QVector<TextLine>& own, Place* place)
{
    double least = std::numeric_limits<double>::max();
    const double top = line.box.top();
    for (int slot = 0; slot <= own.size(); ++slot) {
        const QRectF* above = slot > 0 ? &own.at(slot - 1).box : nullptr;
        const QRectF* below = slot < own.size() ? &own.at(slot).box : nullptr;
        if ((above && above->center().y() >= top) || (below && below->center().y() < top))
            continue;
        const double distance = std::min(above ? Distance(line.box, *above) : std::numeric_limits<double>::max(),
                                         below ? Distance(line.box, *below) : std::numeric_limits<double>::max());
        if (distance < least) {
            least = distance;
            place->slot = slot;
        }
    }
}

void AddPlaces(const QVector<PlacedText>& pieces, const QVector<TextLine>& own, bool isBefore, QVector<Place>* places)
{
    const QVector<TextLine> lines = LinesOf(pieces);
    const bool isTooMuch = qint64(lines.size()) * own.size() > MostPlaces;
    for (const TextLine& line : lines) {
        Place place;
        place.slot = isBefore ? 0 : own.size();
        place.pieces = &pieces;
        place.first = line.first;
        place.end = line.end;
        if (!isTooMuch && !FindOnLine(line, own, &place))
            FindBetween(line, own, &place);
        places->append(place);
    }
}

} // namespace

QRectF Around(const QRectF& a, const QRectF& b)
{
    return QRectF(QPointF(std::min(a.left(), b.left()), std::min(a.top(), b.top())),
                  QPointF(std::max(a.right(), b.right()), std::max(a.bottom(), b.bottom())));
}

QVector<TextLine> LinesOf(const QVector<PlacedText>& pieces, QVector<PlaceOnLine>* places)
{
    QVector<TextLine> lines;
    QRectF last; // as it lies on its line
    for (int i = 0; i < pieces.size(); ++i) {
        const PlacedText& piece = pieces.at(i);
        bool isSameLine = false;
        double gap = 0;
        if (!lines.isEmpty() && Dot(lines.last().along, piece.along) > SameWayCosine) {
            const QRectF next = OnLine(piece.cell, lines.last().along);
            isSameLine = ContinuesRun(last, next) || (!piece.isFirst && AreTooLow(last, next));
            gap = next.left() - last.right();
            last = next;
        }
        if (!isSameLine) {
            last = OnLine(piece.cell, piece.along);
            lines.append({piece.along, last, piece.box, i, i});
        }
        TextLine& line = lines.last();
        line.onLine = Around(line.onLine, last);
        line.box = Around(line.box, piece.box);
        line.end = i + 1;
        if (places)
            places->append({last.center().x(), isSameLine && last.height() > 0 ? gap / last.height() : 0});
    }
    return lines;
}

QVector<PlacedText> InReadingOrder(const QVector<PlacedText>& before, const QVector<PlacedText>& own,
                                   const QVector<PlacedText>& after)
{
    if (before.isEmpty() && after.isEmpty())
        return own;
    const QVector<TextLine> lines = LinesOf(own);
    QVector<Place> places;
    AddPlaces(before, lines, true, &places);
    AddPlaces(after, lines, false, &places);
    std::stable_sort(places.begin(), places.end());
    QVector<PlacedText> ordered;
    ordered.reserve(before.size() + own.size() + after.size());
    int slot = 0;
    for (const Place& place : qAsConst(places)) {
        for (; slot < place.slot; ++slot)
            ordered += own.mid(lines.at(slot).first, lines.at(slot).end - lines.at(slot).first);
        ordered += place.pieces->mid(place.first, place.end - place.first);
    }
    for (; slot < lines.size(); ++slot)
        ordered += own.mid(lines.at(slot).first, lines.at(slot).end - lines.at(slot).first);
    return ordered;
}

} // namespace ofd
