#include "text_reader.h"

#include <ofd/model/problem_log.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>

#include <algorithm>

namespace ofd {

namespace {

// Line ends and tabs are how a writer laid out its XML, not characters; blanks are characters.
QVector<uint> CodesOf(QString text)
{
    text.remove(QLatin1Char('\r')).remove(QLatin1Char('\n')).remove(QLatin1Char('\t'));
    return text.toUcs4();
}

double NumberOf(std::string_view word, double missing)
{
    constexpr int shownLength = 40;
    const std::optional<double> number = ParseNumber(word);
    if (!number)
        ReportProblem(ProblemKind::BadValue,
                      QCoreApplication::translate("OfdDocument", "\"%1\" is no distance between glyphs.")
                          .arg(QString::fromUtf8(word.data(), int(word.size())).left(shownLength)));
    return number.value_or(missing);
}

GlyphMapping ReadMapping(const pugi::xml_node& element, int codeCount)
{
    GlyphMapping mapping;
    mapping.firstCode = IntegerAttribute(element, "CodePosition", -1);
    mapping.codeCount = std::clamp(IntegerAttribute(element, "CodeCount", 1), 0, codeCount);
    for (const std::string_view word : SplitWords(ChildElement(element, "Glyphs").text().get()))
        mapping.glyphs.append(ParseId(word).value_or(0));
    const int glyphCount = IntegerAttribute(element, "GlyphCount", mapping.glyphs.size());
    if (glyphCount > 0 && glyphCount < mapping.glyphs.size())
        mapping.glyphs.resize(glyphCount);
    return mapping;
}

// Keeps the mappings that lie within the text and do not overlap an earlier one.
std::vector<GlyphMapping> UsableMappings(std::vector<GlyphMapping> mappings, int codeCount)
{
    std::stable_sort(mappings.begin(), mappings.end(),
                     [](const GlyphMapping& a, const GlyphMapping& b) { return a.firstCode < b.firstCode; });
    std::vector<GlyphMapping> usable;
    int free = 0;
    for (GlyphMapping& mapping : mappings) {
        const bool fits = mapping.firstCode >= free && mapping.codeCount > 0 && !mapping.glyphs.isEmpty() &&
                          mapping.firstCode <= codeCount - mapping.codeCount;
        if (!fits)
            continue;
        free = mapping.firstCode + mapping.codeCount;
        usable.push_back(std::move(mapping));
    }
    return usable;
}

int GlyphCount(const TextCode& code)
{
    int count = code.codes.size();
    for (const GlyphMapping& mapping : code.mappings)
        count += mapping.glyphs.size() - mapping.codeCount;
    return count;
}

TextCode ReadTextCode(const pugi::xml_node& element, const std::vector<pugi::xml_node>& transforms,
                      const TextCode* previous)
{
    TextCode code;
    code.x = NumberAttribute(element, "X", previous ? previous->x : 0);
    code.y = NumberAttribute(element, "Y", previous ? previous->y : 0);
    code.codes = CodesOf(ElementText(element));
    std::vector<GlyphMapping> mappings;
    mappings.reserve(transforms.size());
    for (const pugi::xml_node& transform : transforms)
        mappings.push_back(ReadMapping(transform, code.codes.size()));
    code.mappings = UsableMappings(std::move(mappings), code.codes.size());
    const int limit = GlyphCount(code);
    code.deltasX = ExpandDeltas(Attribute(element, "DeltaX").as_string(), limit);
    code.deltasY = ExpandDeltas(Attribute(element, "DeltaY").as_string(), limit);
    code.hasDeltas = !code.deltasX.isEmpty() || !code.deltasY.isEmpty();
    return code;
}

int QuarterTurns(const pugi::xml_node& element, const char* name)
{
    const int degrees = IntegerAttribute(element, name) % 360;
    return degrees % 90 ? 0 : (degrees + 360) % 360;
}

} // namespace

QVector<double> ExpandDeltas(std::string_view list, int limit)
{
    QVector<double> deltas;
    std::string separated(list);
    std::replace(separated.begin(), separated.end(), ',', ' ');
    const std::vector<std::string_view> words = SplitWords(separated);
    size_t next = 0;
    while (next < words.size() && deltas.size() < limit) {
        std::string_view word = words[next++];
        if (word.front() != 'g' && word.front() != 'G') {
            deltas.append(NumberOf(word, 0));
            continue;
        }
        word.remove_prefix(1); // the count may stick to the letter
        if (word.empty() && next < words.size())
            word = words[next++];
        if (next == words.size())
            break;
        const double count = NumberOf(word, limit); // beyond any number: as many as there are
        const double value = NumberOf(words[next++], 0);
        const int room = limit - deltas.size();
        for (int n = int(std::clamp(count, 0.0, double(room))); n > 0; --n)
            deltas.append(value);
    }
    return deltas;
}

void ReadTextObject(const pugi::xml_node& element, TextObject& text)
{
    text.fontId = int(IdAttribute(element, "Font"));
    text.size = NumberAttribute(element, "Size");
    text.horizontalScale = NumberAttribute(element, "HScale", 1);
    text.characterDirection = QuarterTurns(element, "CharDirection");
    text.readDirection = QuarterTurns(element, "ReadDirection");
    text.weight = IntegerAttribute(element, "Weight", 400);
    text.isItalic = BooleanAttribute(element, "Italic", false);
    std::vector<pugi::xml_node> transforms;
    for (pugi::xml_node child = FirstElement(element); child; child = NextElement(child)) {
        if (IsElement(child, "CGTransform")) {
            transforms.push_back(child);
        } else if (IsElement(child, "TextCode")) {
            text.codes.push_back(ReadTextCode(child, transforms, text.codes.empty() ? nullptr : &text.codes.back()));
            transforms.clear();
        }
    }
}

} // namespace ofd
