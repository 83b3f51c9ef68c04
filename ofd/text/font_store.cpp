#include "font_store.h"

#include "font_names.h"
#include "installed_fonts.h"

#include <ofd/model/problem_log.h>
#include <ofd/model/resources.h>
#include <ofd/package/limits.h>
#include <ofd/package/package.h>

#include <QCoreApplication>

#include <algorithm>

namespace ofd {

namespace {

constexpr int BoldFrom = 600;

FontChoice ChoiceOf(const InstalledFont& font, bool wantsBold, bool wantsItalic)
{
    FontChoice choice;
    choice.face = font.face;
    choice.needsEmboldening = wantsBold && !font.isBold;
    choice.needsSlanting = wantsItalic && !font.isItalic;
    return choice;
}

} // namespace

FontStore::FontStore() = default;
FontStore::~FontStore() = default;

FontChoice FontStore::GetFont(const Package& package, const FontResource* font, int weight, bool isItalic)
{
    if (font && !font->part.isEmpty()) {
        if (std::shared_ptr<const FontFace> face = Embedded(package, font->part)) {
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
    return Substitute(wanted, wanted.isBold || weight >= BoldFrom, wanted.isItalic || isItalic);
}

std::shared_ptr<const FontFace> FontStore::Embedded(const Package& package, const QString& part)
{
    const std::lock_guard<std::mutex> lock(mutex);
    const auto known = embedded.constFind(part);
    if (known != embedded.constEnd())
        return *known;
    std::shared_ptr<const FontFace> face;
    const qint64 size = package.GetPartSize(part);
    if (size > 0 && size <= limits::MaxFontBytes && fontBytes + size <= limits::MaxFontBytesInAll) {
        fontBytes += size;
        const PartData data = package.Read(part);
        if (!data.error)
            face = FontFace::FromBytes(data.bytes);
    }
    if (!face)
        ReportProblem(ProblemKind::BadFont, part,
                      QCoreApplication::translate("OfdDocument", "The font cannot be used; another one stands in."));
    embedded.insert(part, face);
    return face;
}

FontChoice FontStore::Substitute(const FontResource& font, bool wantsBold, bool wantsItalic)
{
    const QString key = font.fontName + QLatin1Char('\n') + font.familyName + QLatin1Char('\n') +
                        QString::number(wantsBold + 2 * wantsItalic + 4 * font.isSerif + 8 * font.isFixedWidth);
    const auto known = substitutes.constFind(key);
    if (known != substitutes.constEnd())
        return *known;
    if (++searches > limits::MaxFontSearches && !(font.fontName.isEmpty() && font.familyName.isEmpty())) {
        FontResource nameless = font; // one search for each style that is left
        nameless.fontName.clear();
        nameless.familyName.clear();
        return Substitute(nameless, wantsBold, wantsItalic);
    }
    const QString byName = BareFamilyName(font.fontName, &wantsBold, &wantsItalic);
    const QStringList families = QStringList{byName, font.familyName} + SubstituteFamilies(ClassifyFont(font));
    InstalledFont found;
    for (const QString& family : families) {
        if (!found.face && !family.isEmpty())
            found = FindInstalledFont(family, wantsBold, wantsItalic);
    }
    if (!found.face)
        found = FindInstalledFontFor('a', families, wantsBold);
    const FontChoice choice = ChoiceOf(found, wantsBold, wantsItalic);
    substitutes.insert(key, choice);
    const char* text =
        choice.face ? QT_TRANSLATE_NOOP("OfdDocument", "The file brings no font \"%1\"; \"%2\" stands in for it.")
                    : QT_TRANSLATE_NOOP("OfdDocument", "The file brings no font \"%1\", and none is installed.%2");
    ReportProblem(ProblemKind::FontSubstituted, QString(),
                  QCoreApplication::translate("OfdDocument", text).arg(font.fontName, found.family));
    return choice;
}

std::shared_ptr<const FontFace> FontStore::GetFallback(uint code, const FontResource* font, int weight)
{
    const FontStyleClass style = font ? ClassifyFont(*font) : FontStyleClass::Song;
    const bool wantsBold = weight >= BoldFrom || (font && font->isBold);
    const QString key = QStringLiteral("%1 %2 %3").arg(code).arg(int(style)).arg(wantsBold);
    const std::lock_guard<std::mutex> lock(mutex);
    const auto known = fallbacks.constFind(key);
    if (known != fallbacks.constEnd())
        return *known;
    if (++searches > limits::MaxFontSearches)
        return FoundBefore(code);
    const std::shared_ptr<const FontFace> face = FindInstalledFontFor(code, SubstituteFamilies(style), wantsBold).face;
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
