#include "installed_fonts.h"

#include <QFile>
#include <QHash>

#include <mutex>

#include <fontconfig/fontconfig.h>

namespace ofd {

namespace {

using PatternPointer = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;

PatternPointer MakePattern(const QStringList& families, int weight, bool wantsItalic)
{
    PatternPointer pattern(FcPatternCreate(), &FcPatternDestroy);
    for (const QString& family : families)
        FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.toUtf8().constData()));
    FcPatternAddInteger(pattern.get(), FC_WEIGHT, FcWeightFromOpenType(weight));
    FcPatternAddInteger(pattern.get(), FC_SLANT, wantsItalic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
    return pattern;
}

PatternPointer BestMatch(const PatternPointer& pattern)
{
    FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultMatch;
    return PatternPointer(FcFontMatch(nullptr, pattern.get(), &result), &FcPatternDestroy);
}

bool HasFamily(FcPattern* font, const QString& family)
{
    FcChar8* name = nullptr; // not owned
    for (int i = 0; FcPatternGetString(font, FC_FAMILY, i, &name) == FcResultMatch; ++i) {
        if (QString::fromUtf8(reinterpret_cast<const char*>(name)).compare(family, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

// Faces by file and number, so that documents share them. They are few: what the substitution tables name.
std::shared_ptr<const FontFace> SharedFace(const QString& path, int faceIndex)
{
    static std::mutex mutex;
    static QHash<QString, std::shared_ptr<const FontFace>> faces;
    const QString key = path + QLatin1Char('#') + QString::number(faceIndex);
    const std::lock_guard<std::mutex> lock(mutex);
    auto found = faces.constFind(key);
    if (found == faces.constEnd())
        found = faces.insert(key, FontFace::FromFile(path, faceIndex));
    return *found;
}

InstalledFont FontOf(FcPattern* font)
{
    InstalledFont result;
    FcChar8* file = nullptr; // not owned
    if (FcPatternGetString(font, FC_FILE, 0, &file) != FcResultMatch)
        return result;
    int index = 0;
    FcPatternGetInteger(font, FC_INDEX, 0, &index);
    int weight = FC_WEIGHT_REGULAR;
    FcPatternGetInteger(font, FC_WEIGHT, 0, &weight);
    int slant = FC_SLANT_ROMAN;
    FcPatternGetInteger(font, FC_SLANT, 0, &slant);
    FcChar8* family = nullptr; // not owned
    if (FcPatternGetString(font, FC_FAMILY, 0, &family) == FcResultMatch)
        result.family = QString::fromUtf8(reinterpret_cast<const char*>(family));
    result.face = SharedFace(QFile::decodeName(reinterpret_cast<const char*>(file)), index);
    // The system's settings may call an upright face italic and tell a matrix that leans it, and a regular one bold
    // that is to be drawn thicker. The face itself is neither.
    FcMatrix* matrix = nullptr; // not owned
    const bool isLeaned = FcPatternGetMatrix(font, FC_MATRIX, 0, &matrix) == FcResultMatch && matrix->xy != 0;
    FcBool isThickened = FcFalse;
    FcPatternGetBool(font, FC_EMBOLDEN, 0, &isThickened);
    result.isBold = weight >= FC_WEIGHT_DEMIBOLD && !isThickened;
    result.isItalic = slant != FC_SLANT_ROMAN && !isLeaned;
    return result;
}

// What was found, or that nothing was, for all documents: the same names come again in each, and a search takes a
// millisecond. It holds as long as the program runs, as does what fontconfig itself has read; fonts that are installed
// meanwhile are seen after the next start. Files may make up names, so it is emptied when it gets long.
class SearchesMade
{
public:
    template <typename Search>
    InstalledFont Find(const QString& question, const Search& search)
    {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            const auto known = answers.constFind(question);
            if (known != answers.constEnd())
                return *known;
        }
        const InstalledFont found = search(); // not under the lock: others need not wait for it
        const std::lock_guard<std::mutex> lock(mutex);
        if (answers.size() >= MostAnswers)
            answers.clear();
        answers.insert(question, found);
        return found;
    }

private:
    static constexpr int MostAnswers = 4096;

    std::mutex mutex;
    QHash<QString, InstalledFont> answers;
};

SearchesMade& Searches()
{
    static SearchesMade searches;
    return searches;
}

InstalledFont SearchByName(const QString& family, int weight, bool wantsItalic)
{
    const PatternPointer match = BestMatch(MakePattern({family}, weight, wantsItalic));
    return match && HasFamily(match.get(), family) ? FontOf(match.get()) : InstalledFont();
}

InstalledFont SearchByCharacter(uint code, const QStringList& families, int weight)
{
    const PatternPointer pattern = MakePattern(families, weight, false);
    FcCharSet* characters = FcCharSetCreate();
    FcCharSetAddChar(characters, code);
    FcPatternAddCharSet(pattern.get(), FC_CHARSET, characters);
    FcCharSetDestroy(characters);
    const PatternPointer match = BestMatch(pattern);
    const InstalledFont font = match ? FontOf(match.get()) : InstalledFont();
    return font.face && font.face->GlyphOf(code) ? font : InstalledFont();
}

} // namespace

InstalledFont FindInstalledFont(const QString& family, int weight, bool wantsItalic)
{
    const QString question = QStringLiteral("%1\n%2\n%3").arg(weight).arg(int(wantsItalic)).arg(family);
    return Searches().Find(question, [&] { return SearchByName(family, weight, wantsItalic); });
}

InstalledFont FindInstalledFontFor(uint code, const QStringList& families, int weight)
{
    const QString question = QStringLiteral("%1\n\n%2\n%3").arg(weight).arg(code).arg(families.join(QLatin1Char('\n')));
    return Searches().Find(question, [&] { return SearchByCharacter(code, families, weight); });
}

} // namespace ofd
