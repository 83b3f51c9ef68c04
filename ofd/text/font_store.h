#pragma once

#include "font_face.h"

#include <QHash>

#include <QString>

#include <memory>
#include <mutex>
#include <vector>

namespace ofd {

class Package;
struct FontResource;

// The face that stands for a font of the document.
struct FontChoice
{
    std::shared_ptr<const FontFace> face; // null when nothing at all is installed
    bool isEmbedded = false;              // its glyph indices mean what the document means
    bool needsEmboldening = false;        // a heavier face was wanted than there is
    bool needsSlanting = false;
    QString family; // of an installed face; empty for an embedded one
};

// Finds and keeps faces: the embedded ones of a document and the installed ones that stand in for others. Any thread.
class FontStore
{
public:
    FontStore();
    ~FontStore();

    // `font` may be null: a font that the document does not have.
    FontChoice GetFont(const Package& package, const FontResource* font, int weight, bool isItalic);
    // A face that has the character, for those that the wanted face lacks; null when none is installed.
    std::shared_ptr<const FontFace> GetFallback(uint code, const FontResource* font, int weight);

private:
    std::shared_ptr<const FontFace> Embedded(const Package& package, const FontResource& font);
    // The caller holds the lock.
    FontChoice Substitute(const FontResource& font, int weight, bool wantsItalic);
    // Style, script and weight of what stands in for the font, as one number. The caller holds the lock.
    int MannerOf(const FontResource& font, int weight);
    // A face that was found for another character and has this one too.
    std::shared_ptr<const FontFace> FoundBefore(uint code) const;

    std::mutex mutex;
    QHash<QString, std::shared_ptr<const FontFace>>
        embedded;                           // by part, of collections by name too; null when unreadable
    QHash<QString, FontChoice> substitutes; // by name and style
    QHash<QString, int> manners;            // of fonts, by what they say of themselves
    QHash<quint64, std::shared_ptr<const FontFace>> fallbacks;  // by character and manner
    std::vector<std::shared_ptr<const FontFace>> fallbackFaces; // each face of them once
    int searches = 0;                                           // among the installed fonts
    const std::shared_ptr<GlyphBudget> glyphBudget;             // of the embedded ones
    qint64 fontBytes = 0;                                       // of the embedded fonts that were read
};

} // namespace ofd
