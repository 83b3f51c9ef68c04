#include "glyph_layout.h"

#include "font_store.h"

#include <ofd/model/problem_log.h>
#include <ofd/model/resources.h>

#include <QCoreApplication>
#include <QTransform>

#include <cmath>

namespace ofd {

namespace {

constexpr double SlantTangent = 0.2; // of a face that is leaned because there is no italic one
constexpr double BoldLine = 0.03;    // of the font size, around a face that is made heavier
constexpr double NarrowestSqueeze = 0.5;
constexpr double UnknownAdvance = 1; // of the font size, when the font tells none
constexpr double ClearShare = 0.5;   // of the steps between glyphs that must lead one way

class TextPlacer
{
public:
    TextPlacer(const TextObject& text, const Resources& resources, const Package& package, FontStore& fonts)
        : text(text)
        , font(resources.FindFont(text.fontId))
        , fonts(fonts)
        , choice(fonts.GetFont(package, font, text.weight, text.isItalic))
    {
        if (!font)
            ReportProblem(ProblemKind::DanglingReference,
                          QCoreApplication::translate("OfdDocument", "There is no font %1.").arg(quint32(text.fontId)));
        shape.rotate(text.characterDirection); // y down: positive turns clockwise
        shape.scale(text.size * text.horizontalScale, text.size);
    }

    TextLayout Place()
    {
        for (const TextCode& code : text.codes)
            PlaceCode(code);
        return std::move(layout);
    }

private:
    void PlaceCode(const TextCode& code)
    {
        pen = QPointF(code.x, code.y);
        deltaIndex = 0;
        const size_t first = layout.clusters.size();
        auto mapping = code.mappings.begin();
        for (int i = 0; i < code.codes.size();) {
            if (mapping != code.mappings.end() && mapping->firstCode == i) {
                PlaceMapping(code, *mapping);
                i += mapping->codeCount;
                ++mapping;
            } else {
                PlaceCharacter(code, code.codes.at(i));
                ++i;
            }
        }
        SetDirection(first);
        if (first < layout.clusters.size())
            layout.clusters[first].isFirst = true;
    }

    // The way from glyph to glyph where no distances tell it: that in which the text is read, else the way in which the
    // characters are turned.
    int ReadingDegrees() const { return text.readDirection != 0 ? text.readDirection : text.characterDirection; }

    // Glyphs run where most steps between them lead: a line may waver, and one piece may even hold several lines. A
    // single glyph tells nothing, so its directions do.
    void SetDirection(size_t first)
    {
        QPointF sum;
        int steps = 0;
        for (size_t i = first + 1; i < layout.clusters.size(); ++i) {
            const QPointF step = layout.clusters[i].baseline - layout.clusters[i - 1].baseline;
            const double length = std::hypot(step.x(), step.y());
            if (length <= 0 || !std::isfinite(length))
                continue;
            sum += step / length;
            ++steps;
        }
        const double length = std::hypot(sum.x(), sum.y());
        const bool isClear = steps > 0 && length > ClearShare * steps;
        const QPointF along = isClear ? sum / length : QTransform().rotate(ReadingDegrees()).map(QPointF(1, 0));
        for (size_t i = first; i < layout.clusters.size(); ++i)
            layout.clusters[i].along = along;
    }

    // The face that draws the character, and its glyph there; null when none does.
    std::shared_ptr<const FontFace> FaceFor(uint character, quint32* glyph)
    {
        *glyph = choice.face ? choice.face->GlyphOf(character) : 0;
        if (*glyph)
            return choice.face;
        // Rather nothing than the box of a missing glyph, which helps nobody. Subsets of fonts often lack the blank.
        std::shared_ptr<const FontFace> other = fonts.GetFallback(character, font, text.weight);
        *glyph = other ? other->GlyphOf(character) : 0;
        return other;
    }

    void PlaceCharacter(const TextCode& code, uint character)
    {
        quint32 glyph = 0;
        const std::shared_ptr<const FontFace> face = FaceFor(character, &glyph);
        BeginCluster(QString::fromUcs4(&character, 1));
        PlaceGlyph(code, face, glyph);
        EndCluster();
    }

    // Glyph indices mean something only in the font they were made for; without it the characters are drawn.
    void PlaceMapping(const TextCode& code, const GlyphMapping& mapping)
    {
        const QVector<uint> codes = code.codes.mid(mapping.firstCode, mapping.codeCount);
        if (!choice.isEmbedded && codes.size() == mapping.glyphs.size()) {
            for (const uint character : codes)
                PlaceCharacter(code, character);
            return;
        }
        BeginCluster(QString::fromUcs4(codes.constData(), codes.size()));
        if (choice.isEmbedded) {
            for (const quint32 glyph : mapping.glyphs)
                PlaceGlyph(code, choice.face, glyph);
        } else {
            PlaceInPlaces(code, codes, mapping.glyphs.size());
        }
        EndCluster();
    }

    // Each character in a place of its own; the last place has all that are left, or the last places stay empty.
    void PlaceInPlaces(const TextCode& code, const QVector<uint>& codes, int places)
    {
        const int single = std::min(places - 1, codes.size());
        quint32 glyph = 0;
        for (int i = 0; i < single; ++i) {
            const std::shared_ptr<const FontFace> face = FaceFor(codes.at(i), &glyph);
            PlaceGlyph(code, face, glyph);
        }
        if (single < codes.size())
            PlaceSideBySide(code, codes.mid(single));
        for (int i = codes.size(); i < places && code.hasDeltas; ++i)
            PlaceGlyph(code, nullptr, 0);
    }

    // What one glyph of the missing font stood for.
    void PlaceSideBySide(const TextCode& code, const QVector<uint>& codes)
    {
        struct Letter
        {
            std::shared_ptr<const FontFace> face;
            quint32 glyph = 0;
            double advance = 0;
        };
        std::vector<Letter> letters(size_t(codes.size()));
        double sum = 0;
        for (size_t i = 0; i < letters.size(); ++i) {
            letters[i].face = FaceFor(codes.at(int(i)), &letters[i].glyph);
            letters[i].advance = AdvanceOf(letters[i].face, letters[i].glyph);
            sum += letters[i].advance;
        }
        QTransform place = BeginPlace(code, sum);
        for (const Letter& letter : letters) {
            AddGlyph(letter.face, letter.glyph, letter.advance, place);
            place.translate(letter.advance, 0);
        }
        MovePen(code, sum);
    }

    void PlaceGlyph(const TextCode& code, const std::shared_ptr<const FontFace>& face, quint32 glyph)
    {
        const double advance = AdvanceOf(face, glyph);
        AddGlyph(face, glyph, advance, BeginPlace(code, advance));
        MovePen(code, advance);
    }

    static double AdvanceOf(const std::shared_ptr<const FontFace>& face, quint32 glyph)
    {
        const double advance = face ? face->AdvanceOf(glyph) : 0;
        return advance > 0 ? advance : UnknownAdvance;
    }

    // From the em square of a glyph, or of several together, to where the pen is.
    QTransform BeginPlace(const TextCode& code, double advance)
    {
        if (!code.hasDeltas && RunsAgainstCharacters() && deltaIndex++ > 0)
            MoveAlong(advance * text.size * text.horizontalScale); // the glyph lies before the place it is read from
        const QTransform squeeze = QTransform::fromScale(SqueezeOf(code, advance), 1);
        return squeeze * shape * QTransform::fromTranslate(pen.x(), pen.y());
    }

    void AddGlyph(const std::shared_ptr<const FontFace>& face, quint32 glyph, double advance, const QTransform& place)
    {
        AddCell(face, place, advance);
        PlacedGlyph placed;
        placed.face = face;
        placed.glyph = glyph;
        placed.extraWeight = choice.needsEmboldening ? text.size * BoldLine : 0;
        placed.toObject = choice.needsSlanting ? QTransform(1, 0, -SlantTangent, 1, 0, 0) * place : place;
        layout.glyphs.push_back(std::move(placed));
    }

    // Letters of a face that stands in for another are often wider than the places that were left for them.
    double SqueezeOf(const TextCode& code, double advance) const
    {
        const double width = advance * text.size * text.horizontalScale;
        const bool isMeasured = !choice.isEmbedded && text.characterDirection == 0 && deltaIndex < code.deltasX.size();
        if (!isMeasured || width <= 0)
            return 1;
        const double room = code.deltasX.at(deltaIndex);
        return room > 0 && room < width ? std::max(NarrowestSqueeze, room / width) : 1;
    }

    // The cell that is selected: as wide as the pen moves, as high as the font says.
    void AddCell(const std::shared_ptr<const FontFace>& face, const QTransform& place, double advance)
    {
        const double up = face ? face->GetAscent() : 0.88;
        const double down = face ? face->GetDescent() : 0.12;
        const QRectF own(0, -up, advance, up + down);
        if (layout.clusters.back().glyphCount == 0) {
            cellPlace = place;
            cell = own;
        } else {
            cell |= (place * cellPlace.inverted()).mapRect(own); // where the glyph really stands
        }
        ++layout.clusters.back().glyphCount;
    }

    void BeginCluster(const QString& characters)
    {
        TextCluster cluster;
        cluster.text = characters;
        cluster.baseline = pen;
        cluster.firstGlyph = int(layout.glyphs.size());
        layout.clusters.push_back(cluster);
        cell = QRectF();
    }

    void EndCluster() { layout.clusters.back().box = cellPlace.map(QPolygonF(cell)); }

    bool RunsAgainstCharacters() const { return (ReadingDegrees() - text.characterDirection + 360) % 360 == 180; }

    void MoveAlong(double distance) { pen += QTransform().rotate(ReadingDegrees()).map(QPointF(distance, 0)); }

    // A glyph moves the pen by its distance; missing distances repeat the last one, on an axis without any the pen
    // stays. Without distances on either axis the font's widths serve; characters below each other, or beside each
    // other when they are turned, take the height of the font each.
    void MovePen(const TextCode& code, double advance)
    {
        if (!code.hasDeltas) {
            const bool isAcross = (ReadingDegrees() - text.characterDirection) % 180 != 0;
            if (!RunsAgainstCharacters())
                MoveAlong(isAcross ? text.size : advance * text.size * text.horizontalScale);
            return;
        }
        pen += QPointF(DeltaAt(code.deltasX), DeltaAt(code.deltasY));
        ++deltaIndex;
    }

    double DeltaAt(const QVector<double>& deltas) const
    {
        return deltas.isEmpty() ? 0 : deltas.at(std::min(deltaIndex, deltas.size() - 1));
    }

    const TextObject& text;
    const FontResource* font; // not owned; null when the document has no such font
    FontStore& fonts;
    const FontChoice choice;
    QTransform shape;
    TextLayout layout;
    QPointF pen;
    int deltaIndex = 0;
    QRectF cell;
    QTransform cellPlace;
};

} // namespace

TextLayout LayOutText(const TextObject& text, const Resources& resources, const Package& package, FontStore& fonts)
{
    return TextPlacer(text, resources, package, fonts).Place();
}

} // namespace ofd
