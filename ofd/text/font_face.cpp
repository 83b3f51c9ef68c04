#include "font_face.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <mutex>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace ofd {

namespace {

constexpr int MaxCachedGlyphs = 20'000;
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

} // namespace

std::shared_ptr<FontFace> FontFace::FromBytes(const QByteArray& bytes)
{
    std::shared_ptr<FontFace> font(new FontFace);
    font->data = bytes;
    FT_Face opened = nullptr;
    {
        const std::lock_guard<std::mutex> lock(libraryMutex);
        const auto* memory = reinterpret_cast<const FT_Byte*>(font->data.constData());
        if (FT_New_Memory_Face(Library(), memory, FT_Long(bytes.size()), 0, &opened))
            return nullptr;
    }
    return font->Adopt(opened) ? font : nullptr;
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
    ChooseCharacterMap();
    ReadHeights();
    return true;
}

// FreeType selects a Unicode map by itself; others serve when there is none.
void FontFace::ChooseCharacterMap()
{
    if (face->charmap && face->charmap->encoding == FT_ENCODING_UNICODE)
        return;
    for (int i = 0; i < face->num_charmaps; ++i) {
        if (face->charmaps[i]->encoding == FT_ENCODING_MS_SYMBOL) {
            symbolOffset = SymbolArea;
            FT_Set_Charmap(face, face->charmaps[i]);
            return;
        }
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
    quint32 glyph = FT_Get_Char_Index(face, code);
    if (!glyph && symbolOffset && code < 256)
        glyph = FT_Get_Char_Index(face, code + symbolOffset);
    if (glyphByCode.size() < MaxCachedGlyphs)
        glyphByCode.insert(code, glyph);
    return glyph;
}

FontFace::Glyph FontFace::GlyphData(quint32 glyph) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    const auto known = glyphs.constFind(glyph);
    if (known != glyphs.constEnd())
        return *known;
    Glyph result;
    const bool isThere = glyph < quint32(face->num_glyphs);
    if (isThere && !FT_Load_Glyph(face, glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP)) {
        result.advance = face->glyph->metrics.horiAdvance / unitsPerEm;
        if (face->glyph->format == FT_GLYPH_FORMAT_OUTLINE)
            result.outline = PathOf(face->glyph->outline, 1 / unitsPerEm);
    }
    if (glyphs.size() < MaxCachedGlyphs)
        glyphs.insert(glyph, result);
    return result;
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
