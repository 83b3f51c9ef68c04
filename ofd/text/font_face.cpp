#include "font_face.h"

#include <ofd/package/limits.h>

#include "font_repair.h"
#include "glyph_budget.h"

#include <QFile>
#include <QTextCodec>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <mutex>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_SFNT_NAMES_H
#include FT_TRUETYPE_IDS_H
#include FT_TRUETYPE_TABLES_H
#include FT_TRUETYPE_TAGS_H

namespace ofd {

namespace {

constexpr uint SymbolArea = 0xf000; // where symbol maps put their characters

// Opening and closing faces goes through the one library and needs its lock; an open face has a lock of its own.
std::mutex libraryMutex;

FT_Library Library()
{
    static FT_Library library = [] {
        FT_Library made = nullptr;
        FT_Init_FreeType(&made);
        return made;
    }();
    return library;
}

// How long this thread has worked.
class ThreadClock
{
public:
    qint64 Microseconds() const { return Now() - start; }

private:
    static qint64 Now()
    {
        timespec now = {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        return qint64(now.tv_sec) * 1'000'000 + now.tv_nsec / 1000;
    }
    const qint64 start = Now();
};

// Collects an outline as a path, font units to em units, y turned downward.
struct OutlineSink
{
    QPainterPath path;
    double scale;

    QPointF Map(const FT_Vector* v) const { return QPointF(v->x * scale, -v->y * scale); }
};

OutlineSink& SinkOf(void* user)
{
    return *static_cast<OutlineSink*>(user);
}

int MoveTo(const FT_Vector* to, void* user)
{
    OutlineSink& sink = SinkOf(user);
    if (!sink.path.isEmpty())
        sink.path.closeSubpath();
    sink.path.moveTo(sink.Map(to));
    return 0;
}

int LineTo(const FT_Vector* to, void* user)
{
    SinkOf(user).path.lineTo(SinkOf(user).Map(to));
    return 0;
}

int ConicTo(const FT_Vector* control, const FT_Vector* to, void* user)
{
    SinkOf(user).path.quadTo(SinkOf(user).Map(control), SinkOf(user).Map(to));
    return 0;
}

int CubicTo(const FT_Vector* first, const FT_Vector* second, const FT_Vector* to, void* user)
{
    SinkOf(user).path.cubicTo(SinkOf(user).Map(first), SinkOf(user).Map(second), SinkOf(user).Map(to));
    return 0;
}

QPainterPath PathOf(FT_Outline& outline, double scale)
{
    static const FT_Outline_Funcs functions = {MoveTo, LineTo, ConicTo, CubicTo, 0, 0};
    OutlineSink sink{QPainterPath(), scale};
    sink.path.setFillRule(Qt::WindingFill);
    if (FT_Outline_Decompose(&outline, &functions, &sink))
        return QPainterPath();
    if (!sink.path.isEmpty())
        sink.path.closeSubpath();
    return sink.path;
}

// Null when there is no such face. The library is locked by the caller.
FT_Face OpenFace(const QByteArray& bytes, int index)
{
    FT_Face opened = nullptr;
    const auto* memory = reinterpret_cast<const FT_Byte*>(bytes.constData());
    return FT_New_Memory_Face(Library(), memory, FT_Long(bytes.size()), index, &opened) ? nullptr : opened;
}

bool IsOneOf(const QString& name, const QStringList& names)
{
    return !name.isEmpty() && names.contains(name, Qt::CaseInsensitive);
}

// Whether the face says that it has one of the names, in any language.
bool HasName(FT_Face face, const QStringList& names)
{
    if (IsOneOf(QString::fromLatin1(face->family_name), names) ||
        IsOneOf(QString::fromLatin1(FT_Get_Postscript_Name(face)), names))
        return true;
    for (FT_UInt i = 0; i < std::min(FT_Get_Sfnt_Name_Count(face), limits::MaxFontNames); ++i) {
        FT_SfntName name;
        const bool isThere = !FT_Get_Sfnt_Name(face, i, &name);
        if (!isThere || name.platform_id == TT_PLATFORM_MACINTOSH)
            continue;
        QString text;
        for (FT_UInt at = 0; at + 1 < name.string_len; at += 2)
            text.append(QChar(name.string[at] << 8 | name.string[at + 1]));
        if (IsOneOf(text, names))
            return true;
    }
    return false;
}

// The face of a collection that has one of the names, else the first.
FT_Face ChooseFace(const QByteArray& bytes, const QStringList& names)
{
    FT_Face first = OpenFace(bytes, 0);
    if (!first || first->num_faces < 2 || HasName(first, names))
        return first;
    const int count = int(std::min<FT_Long>(first->num_faces, limits::MaxFontFaces));
    for (int index = 1; index < count; ++index) {
        FT_Face other = OpenFace(bytes, index);
        if (other && HasName(other, names)) {
            FT_Done_Face(first);
            return other;
        }
        if (other)
            FT_Done_Face(other);
    }
    return first;
}

// What turns characters into the codes of a map that is not in Unicode; null when codes are taken as they are.
QTextCodec* CodecOf(FT_Encoding encoding)
{
    switch (encoding) {
    case FT_ENCODING_PRC:
        return QTextCodec::codecForName("GB18030");
    case FT_ENCODING_BIG5:
        return QTextCodec::codecForName("Big5");
    case FT_ENCODING_SJIS:
        return QTextCodec::codecForName("Shift_JIS");
    case FT_ENCODING_WANSUNG:
        return QTextCodec::codecForName("EUC-KR");
    case FT_ENCODING_APPLE_ROMAN:
        return QTextCodec::codecForName("Apple Roman");
    default:
        return nullptr;
    }
}

// The character's code of one or two bytes; 0 when the encoding lacks it.
uint EncodedBy(const QTextCodec& codec, uint character)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader | QTextCodec::ConvertInvalidToNull);
    const QString text = QString::fromUcs4(&character, 1);
    const QByteArray bytes = codec.fromUnicode(text.constData(), text.size(), &state);
    if (state.invalidChars > 0 || bytes.isEmpty() || bytes.size() > 2)
        return 0;
    return bytes.size() == 1 ? quint8(bytes[0]) : uint(quint8(bytes[0]) << 8 | quint8(bytes[1]));
}

} // namespace

std::shared_ptr<FontFace> FontFace::FromBytes(const QByteArray& bytes, const QStringList& names,
                                              const std::shared_ptr<GlyphBudget>& budget)
{
    std::shared_ptr<FontFace> font(new FontFace);
    font->budget = budget ? budget : std::make_shared<GlyphBudget>();
    const QByteArray repaired = RepairedFont(bytes);
    font->wasRepaired = !repaired.isEmpty();
    font->data = font->wasRepaired ? repaired : bytes;
    FT_Face opened = nullptr;
    {
        const std::lock_guard<std::mutex> lock(libraryMutex);
        opened = ChooseFace(font->data, names);
    }
    return opened && font->Adopt(opened) ? font : nullptr;
}

std::shared_ptr<FontFace> FontFace::FromFile(const QString& path, int faceIndex)
{
    std::shared_ptr<FontFace> font(new FontFace);
    FT_Face opened = nullptr;
    {
        const std::lock_guard<std::mutex> lock(libraryMutex);
        if (FT_New_Face(Library(), QFile::encodeName(path).constData(), faceIndex, &opened))
            return nullptr;
    }
    return font->Adopt(opened) ? font : nullptr;
}

FontFace::~FontFace()
{
    if (!face)
        return;
    const std::lock_guard<std::mutex> lock(libraryMutex);
    FT_Done_Face(face);
}

bool FontFace::Adopt(FT_FaceRec_* openedFace)
{
    face = openedFace;
    if (!FT_IS_SCALABLE(face))
        return false;
    unitsPerEm = face->units_per_EM > 0 ? face->units_per_EM : 1000;
    isBold = face->style_flags & FT_STYLE_FLAG_BOLD;
    isItalic = face->style_flags & FT_STYLE_FLAG_ITALIC;
    FT_ULong size = 0;
    hasParts = !FT_Load_Sfnt_Table(face, TTAG_glyf, 0, nullptr, &size);
    ChooseCharacterMap();
    ReadHeights();
    return true;
}

// FreeType selects a Unicode map by itself; others serve when there is none.
void FontFace::ChooseCharacterMap()
{
    if (face->charmap && face->charmap->encoding == FT_ENCODING_UNICODE)
        return;
    for (const FT_Encoding wanted : {FT_ENCODING_MS_SYMBOL, FT_ENCODING_PRC, FT_ENCODING_BIG5, FT_ENCODING_SJIS,
                                     FT_ENCODING_WANSUNG, FT_ENCODING_APPLE_ROMAN}) {
        if (FT_Select_Charmap(face, wanted))
            continue;
        symbolOffset = wanted == FT_ENCODING_MS_SYMBOL ? SymbolArea : 0;
        mapCodec = CodecOf(wanted);
        return;
    }
    if (!face->charmap && face->num_charmaps > 0)
        FT_Set_Charmap(face, face->charmaps[0]);
}

void FontFace::ReadHeights()
{
    const double up = face->ascender / unitsPerEm;
    const double down = -face->descender / unitsPerEm;
    if (up > 0.3 && up < 2)
        ascent = up;
    if (down > 0 && down < 1)
        descent = down;
}

quint32 FontFace::GlyphOf(uint code) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    const auto known = glyphByCode.constFind(code);
    if (known != glyphByCode.constEnd())
        return *known;
    if (!face->charmap)
        return 0;
    const quint32 glyph = LookUp(code);
    if (glyphByCode.size() < limits::MaxCachedGlyphs)
        glyphByCode.insert(code, glyph);
    return glyph;
}

quint32 FontFace::LookUp(uint code) const
{
    if (mapCodec) {
        const uint encoded = EncodedBy(*mapCodec, code);
        return encoded ? FT_Get_Char_Index(face, encoded) : 0;
    }
    const quint32 glyph = FT_Get_Char_Index(face, code);
    return !glyph && symbolOffset && code < 256 ? FT_Get_Char_Index(face, code + symbolOffset) : glyph;
}

FontFace::Glyph FontFace::GlyphData(quint32 glyph) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    const auto known = glyphs.constFind(glyph);
    if (known != glyphs.constEnd())
        return *known;
    const Glyph result = MakeGlyph(glyph);
    if (glyphs.size() < limits::MaxCachedGlyphs)
        glyphs.insert(glyph, result);
    return result;
}

FontFace::Glyph FontFace::MakeGlyph(quint32 glyph) const
{
    if (glyph >= quint32(face->num_glyphs) || (budget && budget->IsSpent()))
        return {};
    const ThreadClock clock;
    Glyph result;
    qint64 points = 0;
    const bool isLoaded = Load(glyph);
    if (isLoaded) {
        result.advance = face->glyph->metrics.horiAdvance / unitsPerEm;
        if (face->glyph->format == FT_GLYPH_FORMAT_OUTLINE) {
            result.outline = PathOf(face->glyph->outline, 1 / unitsPerEm);
            points = face->glyph->outline.n_points;
        }
    }
    if (!budget)
        return result;
    if (const qint64 taken = clock.Microseconds(); !isLoaded || taken >= limits::SlowGlyphMicroseconds)
        points = std::max(points, taken * limits::PointsOfMicrosecond);
    budget->Take(points);
    return result;
}

// Into the slot of the face. A glyph that is put together from others is looked through first, since the library does
// all that it asks for.
bool FontFace::Load(quint32 glyph) const
{
    constexpr FT_Int32 flags = FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP;
    if (!budget || !hasParts)
        return !FT_Load_Glyph(face, glyph, flags);
    if (FT_Load_Glyph(face, glyph, flags | FT_LOAD_NO_RECURSE))
        return false;
    if (face->glyph->format != FT_GLYPH_FORMAT_COMPOSITE)
        return true;
    return CountParts(glyph, 0) <= limits::MaxGlyphParts && !FT_Load_Glyph(face, glyph, flags);
}

// Beyond the limit it need not be right. Each glyph is counted once, however many use it.
int FontFace::CountParts(quint32 glyph, int depth) const
{
    constexpr int tooMany = limits::MaxGlyphParts + 1;
    const auto known = partCounts.constFind(glyph);
    if (known != partCounts.constEnd())
        return *known;
    if (depth > limits::MaxReferenceDepth || budget->IsSpent())
        return tooMany;
    if (FT_Load_Glyph(face, glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP | FT_LOAD_NO_RECURSE) ||
        face->glyph->format != FT_GLYPH_FORMAT_COMPOSITE) {
        partCounts.insert(glyph, 1);
        return 1;
    }
    std::vector<quint32> parts;
    budget->Take(qint64(face->glyph->num_subglyphs) * limits::PointsOfGlyphPart);
    for (FT_UInt i = 0; i < face->glyph->num_subglyphs; ++i) {
        FT_Int index = 0;
        FT_UInt partFlags = 0;
        FT_Int first = 0;
        FT_Int second = 0;
        FT_Matrix matrix;
        if (!FT_Get_SubGlyph_Info(face->glyph, i, &index, &partFlags, &first, &second, &matrix))
            parts.push_back(quint32(index));
    }
    partCounts.insert(glyph, tooMany); // what contains itself finds this
    int count = 1;
    for (size_t i = 0; i < parts.size() && count < tooMany; ++i)
        count = std::min(tooMany, count + CountParts(parts[i], depth + 1));
    partCounts.insert(glyph, count);
    return count;
}

QPainterPath FontFace::OutlineOf(quint32 glyph) const
{
    return GlyphData(glyph).outline;
}

double FontFace::AdvanceOf(quint32 glyph) const
{
    return GlyphData(glyph).advance;
}

} // namespace ofd
