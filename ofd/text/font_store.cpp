#include "font_store.h"

#include "font_names.h"
#include "glyph_budget.h"
#include "installed_fonts.h"

#include <ofd/model/problem_log.h>
#include <ofd/model/resources.h>
#include <ofd/package/limits.h>
#include <ofd/package/packed_size.h>

#include <QCoreApplication>

#include <algorithm>

namespace ofd {

namespace {

constexpr int RegularWeight = 400;
constexpr int BoldFrom = 600;
constexpr int BoldWeight = 700;
// A manner is style, script and weight in one number.
constexpr int ScriptStep = 1000;
constexpr int StyleStep = 10 * ScriptStep;

FontChoice ChoiceOf(const InstalledFont& font, int weight, bool wantsItalic)
{
    FontChoice choice;
    choice.face = font.face;
    choice.family = font.family;
    choice.needsEmboldening = weight >= BoldFrom && !font.isBold;
    choice.needsSlanting = wantsItalic && !font.isItalic;
    return choice;
}

// The weight that is wanted, in whole hundreds from 100 to 900.
int WeightOf(const FontResource* font, int weight)
{
    const int sensible =
        weight >= 1 && weight <= 1000 ? std::clamp((weight + 50) / 100 * 100, 100, 900) : RegularWeight;
    return font && font->isBold ? std::max(sensible, BoldWeight) : sensible;
}

// Names to look for, the best first: the face's own, those it has in another script, and what looks alike.
QStringList WantedFamilies(const FontResource& font, bool* saysBold, bool* saysItalic)
{
    QStringList families;
    for (const QString& name : {font.fontName, font.familyName}) {
        const QString bare = BareFamilyName(name, saysBold, saysItalic);
        if (!bare.isEmpty())
            families += QStringList(bare) + OtherNamesOf(bare);
    }
    return families + SubstituteFamilies(ClassifyFont(font), ScriptOf(font));
}

} // namespace

FontStore::FontStore()
    : glyphBudget(std::make_shared<GlyphBudget>())
{
}
FontStore::~FontStore() = default;

FontChoice FontStore::GetFont(const Package& package, const FontResource* font, int weight, bool isItalic)
{
    if (font && !font->part.isEmpty()) {
        if (std::shared_ptr<const FontFace> face = Embedded(package, *font)) {
            FontChoice choice;
            choice.needsSlanting = isItalic && !font->isItalic && !face->IsItalic();
            choice.needsEmboldening = weight >= BoldFrom && !font->isBold && !face->IsBold();
            choice.face = std::move(face);
            choice.isEmbedded = true;
            return choice;
        }
    }
    const FontResource unknown;
    const FontResource& wanted = font ? *font : unknown;
    const std::lock_guard<std::mutex> lock(mutex);
    return Substitute(wanted, WeightOf(font, weight), wanted.isItalic || isItalic);
}

std::shared_ptr<const FontFace> FontStore::Embedded(const Package& package, const FontResource& font)
{
    const QString& part = font.part;
    const QString key = part + QLatin1Char('\n') + font.fontName; // a collection has a face for each name
    const std::lock_guard<std::mutex> lock(mutex);
    for (const QString& name : {part, key}) {
        const auto known = embedded.constFind(name);
        if (known != embedded.constEnd())
            return *known;
    }
    bool isCollection = false;
    std::shared_ptr<const FontFace> face;
    const qint64 size = package.GetPartSize(part);
    if (size > 0 && size <= limits::MaxFontBytes && fontBytes + size <= limits::MaxFontBytesInAll) {
        fontBytes += size;
        const PartData data = package.Read(part);
        isCollection = data.bytes.startsWith("ttcf");
        glyphBudget->Grant(PackedSizeOf(package, part));
        if (!data.error)
            face = FontFace::FromBytes(data.bytes, {font.fontName, font.familyName}, glyphBudget);
    }
    if (!face)
        ReportProblem(ProblemKind::BadFont, part,
                      QCoreApplication::translate("OfdDocument", "The font cannot be used; another one stands in."));
    else if (face->WasRepaired())
        ReportProblem(ProblemKind::BadFont, part,
                      QCoreApplication::translate("OfdDocument", "Tables of the font are broken or missing; it is used "
                                                                 "without them."));
    embedded.insert(isCollection ? key : part, face);
    return face;
}

FontChoice FontStore::Substitute(const FontResource& font, int weight, bool wantsItalic)
{
    const int flags = wantsItalic + 2 * font.isSerif + 4 * font.isFixedWidth;
    const QString key =
        QStringList{font.fontName, font.familyName, font.charset, QString::number(weight), QString::number(flags)}.join(
            QLatin1Char('\n'));
    const auto known = substitutes.constFind(key);
    if (known != substitutes.constEnd())
        return *known;
    const bool isNamed = !font.fontName.isEmpty() || !font.familyName.isEmpty() || !font.charset.isEmpty();
    if (++searches > limits::MaxFontSearches && isNamed) {
        FontResource nameless = font; // one search for each style that is left; a file can make up charsets too
        nameless.fontName.clear();
        nameless.familyName.clear();
        nameless.charset.clear();
        return Substitute(nameless, weight, wantsItalic);
    }
    bool saysBold = false;
    const QStringList families = WantedFamilies(font, &saysBold, &wantsItalic);
    if (saysBold)
        weight = std::max(weight, BoldWeight);
    InstalledFont found;
    for (const QString& family : families) {
        if (!found.face)
            found = FindInstalledFont(family, weight, wantsItalic);
    }
    if (!found.face)
        found = FindInstalledFontFor('a', families, weight);
    const FontChoice choice = ChoiceOf(found, weight, wantsItalic);
    substitutes.insert(key, choice);
    const char* text =
        choice.face ? QT_TRANSLATE_NOOP("OfdDocument", "The file brings no font \"%1\"; \"%2\" stands in for it.")
                    : QT_TRANSLATE_NOOP("OfdDocument", "The file brings no font \"%1\", and none is installed.%2");
    ReportProblem(ProblemKind::FontSubstituted, QString(),
                  QCoreApplication::translate("OfdDocument", text).arg(font.fontName, found.family));
    return choice;
}

// Asked for every character that a font lacks, so what the names say is looked up once a font.
int FontStore::MannerOf(const FontResource& font, int weight)
{
    const QString key = font.fontName + QLatin1Char('\n') + font.familyName + QLatin1Char('\n') + font.charset +
                        QLatin1Char(font.isSerif ? '1' : '0') + QLatin1Char(font.isFixedWidth ? '1' : '0');
    auto known = manners.constFind(key);
    if (known == manners.constEnd()) {
        bool saysBold = false;
        bool saysItalic = false;
        BareFamilyName(font.fontName, &saysBold, &saysItalic);
        known = manners.insert(key, int(ClassifyFont(font)) * StyleStep + int(ScriptOf(font)) * ScriptStep +
                                        (saysBold ? BoldWeight : 0));
    }
    const int leastWeight = *known % ScriptStep;
    return *known - leastWeight + std::max(leastWeight, WeightOf(&font, weight));
}

std::shared_ptr<const FontFace> FontStore::GetFallback(uint code, const FontResource* font, int weight)
{
    const FontResource unknown;
    const std::lock_guard<std::mutex> lock(mutex);
    const int manner = MannerOf(font ? *font : unknown, weight);
    const quint64 key = quint64(manner) << 32 | code;
    const auto known = fallbacks.constFind(key);
    if (known != fallbacks.constEnd())
        return *known;
    if (++searches > limits::MaxFontSearches)
        return FoundBefore(code);
    const QStringList families =
        SubstituteFamilies(FontStyleClass(manner / StyleStep), FontScript(manner % StyleStep / ScriptStep));
    const std::shared_ptr<const FontFace> face = FindInstalledFontFor(code, families, manner % ScriptStep).face;
    fallbacks.insert(key, face);
    if (face && std::find(fallbackFaces.begin(), fallbackFaces.end(), face) == fallbackFaces.end())
        fallbackFaces.push_back(face);
    return face;
}

std::shared_ptr<const FontFace> FontStore::FoundBefore(uint code) const
{
    for (const std::shared_ptr<const FontFace>& face : fallbackFaces) {
        if (face->GlyphOf(code))
            return face;
    }
    return nullptr;
}

} // namespace ofd
