#pragma once

#include <QByteArray>
#include <QHash>

#include <QPainterPath>
#include <QString>
#include <QStringList>

#include <memory>
#include <mutex>

class QTextCodec;
struct FT_FaceRec_;

namespace ofd {

class GlyphBudget;

// One face of a font: outlines and widths by glyph index. Fonts come from hostile files and often lack tables, so
// nothing but outlines is demanded. Unhinted; everything in units of the font size, y downward. Any thread.
class FontFace
{
public:
    // Reads TrueType, OpenType, bare CFF, Type 1 and collections, told by their bytes. Of a collection the face that
    // has one of these names, else the first. Null when the bytes are no font whose outlines can be read. Glyphs that
    // ask for too much are empty: `budget` is that of the document, else the face has one of its own.
    static std::shared_ptr<FontFace> FromBytes(const QByteArray& bytes, const QStringList& names = {},
                                               const std::shared_ptr<GlyphBudget>& budget = nullptr);
    // A face of an installed font file, which is trusted.
    static std::shared_ptr<FontFace> FromFile(const QString& path, int faceIndex);
    ~FontFace();
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;

    // 0 when the font has no glyph for the character, or no character map at all.
    quint32 GlyphOf(uint code) const;
    // Empty for blanks and for glyphs that do not exist. Only to be mapped or copied, see PrivateCopy.
    QPainterPath OutlineOf(quint32 glyph) const;
    // How far the pen moves; 0 when the font does not tell.
    double AdvanceOf(quint32 glyph) const;
    // Heights above and below the baseline, both positive, sensible also when the font tells nonsense.
    double GetAscent() const { return ascent; }
    double GetDescent() const { return descent; }
    bool IsBold() const { return isBold; }
    // Whether tables were cut to what is there, or made up.
    bool WasRepaired() const { return wasRepaired; }
    bool IsItalic() const { return isItalic; }

private:
    struct Glyph
    {
        QPainterPath outline;
        double advance = 0;
    };

    FontFace() = default;
    bool Adopt(FT_FaceRec_* openedFace);
    void ChooseCharacterMap();
    quint32 LookUp(uint code) const;
    void ReadHeights();
    Glyph GlyphData(quint32 glyph) const;
    Glyph MakeGlyph(quint32 glyph) const;
    bool Load(quint32 glyph) const;
    int CountParts(quint32 glyph, int depth) const;

    FT_FaceRec_* face = nullptr;         // owned
    QByteArray data;                     // of a face in memory
    std::shared_ptr<GlyphBudget> budget; // null for installed fonts
    bool hasParts = false;               // its glyphs may be put together from others, to any depth
    double unitsPerEm = 1000;
    double ascent = 0.88;
    double descent = 0.12;
    bool wasRepaired = false;
    bool isBold = false;
    bool isItalic = false;
    uint symbolOffset = 0;          // added to codes below 256 in fonts with a symbol map
    QTextCodec* mapCodec = nullptr; // not owned; of a map that is not in Unicode

    mutable std::mutex mutex; // guards the face and the caches
    mutable QHash<quint32, Glyph> glyphs;
    mutable QHash<quint32, int> partCounts; // of glyphs that have been looked at
    mutable QHash<uint, quint32> glyphByCode;
};

} // namespace ofd
