#pragma once

#include "ig_page.h"

#include <QString>
#include <QVector>

class MemoryLayer;

// The size of every glyph box, in mm.
constexpr float memoryGlyphWidthMm = 2;
constexpr float memoryGlyphHeightMm = 4;

// One text object of a page in memory: a line of glyphs from (x, y), its top left corner, to the right.
struct MemoryText
{
    CCA_GRect Box() const; // page mm; without width when there are no glyphs
    bool IsShown() const;  // its layer is

    int id = 0;
    float x = 0;
    float y = 0;
    QString text;
    MemoryLayer* layer = nullptr; // not owned; null when it belongs to no layer
};

// The text of one page, in reading order: from top to bottom, and from left to right at equal height. Text of layers
// that are hidden when it is parsed is left out; it counts as parsed until one is hidden or shown.
class MemoryTextPage : public IG_TextPage
{
public:
    explicit MemoryTextPage(QVector<MemoryText> texts);
    bool IsParsed() const override { return isParsed && isShown == ShownNow(); }
    bool Parse(int flags) override;
    void GetTextInRect(const CCA_GRect& rect, wchar_t** text) const override;
    QList<G_TextRun> RunsBetween(const CCA_GPoint& from, const CCA_GPoint& to) const override;
    QList<G_TextRun> AllRuns() const override;
    QList<G_TextGlyph> AllGlyphs() const override;

private:
    struct Glyph
    {
        CCA_GRect box;
        QString text;
        int line = 0; // the text object it stems from
    };
    template <typename Wanted>
    QList<G_TextRun> RunsOf(const Wanted& isWanted) const;
    QVector<bool> ShownNow() const; // of each text

    QVector<MemoryText> texts;
    QVector<bool> isShown; // of each text, when it was parsed
    QVector<Glyph> glyphs;
    bool isParsed = false;
};
