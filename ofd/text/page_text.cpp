#include "page_text.h"

#include <algorithm>
#include <limits>

namespace ofd {

namespace {

constexpr double BlankGap = 0.15;   // of the height, more than between letters
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

// Scripts that set no blanks between words, with their punctuation.
bool IsIdeographic(uint code)
{
    const QChar::Script script = QChar::script(code);
    return script == QChar::Script_Han || script == QChar::Script_Hiragana || script == QChar::Script_Katakana ||
           script == QChar::Script_Bopomofo || (code >= 0x3000 && code <= 0x303f) || (code >= 0xff00 && code <= 0xffef);
}

// The gaps on both sides of the one before a piece: letters that are set wide apart have gaps everywhere.
double SpacingAround(const QVector<PlaceOnLine>& places, int piece, const TextLine& line)
{
    const double before = piece - 1 > line.first ? places.at(piece - 1).gap : 0;
    const double behind = piece + 1 < line.end ? places.at(piece + 1).gap : 0;
    return std::max({before, behind, 0.0});
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
            const double spacing = SpacingAround(places, i, runs.at(run));
            const bool hasGap = pieces.at(i).isFirst && places.at(i).gap > spacing + BlankGap;
            cells.append({pieces.at(i).box, places.at(i).middle, run, letters.size(), hasGap});
            letters += pieces.at(i).text;
            bounds |= pieces.at(i).box;
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
    for (int i = 0; i < cells.size(); ++i) {
        const QPointF centre = cells.at(i).box.center();
        if (rect.Contains({float(centre.x()), float(centre.y())}))
            found += letters.midRef(cells.at(i).firstLetter, EndLetter(i) - cells.at(i).firstLetter);
    }
    return found;
}

bool PageText::IsGapABlank(int cell) const
{
    const int at = cells.at(cell).firstLetter;
    if (!cells.at(cell).hasGap || at == 0)
        return false;
    const auto takesNone = [](QChar letter) { return letter.isSpace() || IsIdeographic(letter.unicode()); };
    return !takesNone(letters.at(at - 1)) && !takesNone(letters.at(at));
}

QString PageText::TextOf(int from, int to) const
{
    QString text;
    int first = cells.at(from).firstLetter;
    for (int i = from + 1; i < to; ++i) {
        if (!IsGapABlank(i))
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
            box |= cells.at(i).box;
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
