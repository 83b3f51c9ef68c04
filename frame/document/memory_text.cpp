#include "memory_text.h"

#include "memory_page.h"

#include <algorithm>
#include <utility>

namespace {

CCA_GPoint Centre(const CCA_GRect& box)
{
    return {(box.left + box.right) / 2, (box.top + box.bottom) / 2};
}

// Does the glyph stand before the point in reading order? Points between two lines lie behind the upper one.
bool IsBefore(const CCA_GRect& glyph, const CCA_GPoint& point)
{
    return glyph.bottom <= point.y || (glyph.top <= point.y && Centre(glyph).x < point.x);
}

} // namespace

bool MemoryText::IsShown() const
{
    return !layer || layer->IsVisible();
}

CCA_GRect MemoryText::Box() const
{
    const int glyphCount = text.toUcs4().size();
    return CCA_GRect(x, y, x + memoryGlyphWidthMm * static_cast<float>(glyphCount), y + memoryGlyphHeightMm);
}

MemoryTextPage::MemoryTextPage(QVector<MemoryText> pageTexts)
    : texts(std::move(pageTexts))
{
    std::stable_sort(texts.begin(), texts.end(),
                     [](const MemoryText& a, const MemoryText& b) { return a.y != b.y ? a.y < b.y : a.x < b.x; });
}

QVector<bool> MemoryTextPage::ShownNow() const
{
    QVector<bool> shown;
    for (const MemoryText& text : texts)
        shown.append(text.IsShown());
    return shown;
}

bool MemoryTextPage::Parse(int)
{
    if (IsParsed())
        return true;
    isShown = ShownNow();
    glyphs.clear();
    for (int line = 0; line < texts.size(); ++line) {
        if (!isShown.at(line))
            continue;
        const MemoryText& text = texts.at(line);
        float left = text.x;
        const QVector<uint> codes = text.text.toUcs4();
        for (const uint code : codes) {
            Glyph glyph;
            glyph.box = CCA_GRect(left, text.y, left + memoryGlyphWidthMm, text.y + memoryGlyphHeightMm);
            glyph.text = QString::fromUcs4(&code, 1);
            glyph.line = line;
            glyphs.append(glyph);
            left += memoryGlyphWidthMm;
        }
    }
    isParsed = true;
    return true;
}

void MemoryTextPage::GetTextInRect(const CCA_GRect& rect, wchar_t** text) const
{
    if (!text)
        return;
    QString found;
    for (const Glyph& glyph : glyphs) {
        if (rect.Contains(Centre(glyph.box)))
            found += glyph.text;
    }
    *text = CCA_AllocWide(found);
}

template <typename Wanted>
QList<G_TextRun> MemoryTextPage::RunsOf(const Wanted& isWanted) const
{
    QList<G_TextRun> runs;
    int lastLine = -1;
    for (const Glyph& glyph : glyphs) {
        if (!isWanted(glyph.box))
            continue;
        if (glyph.line != lastLine) {
            G_TextRun run;
            run.rect = glyph.box;
            runs.append(run);
            lastLine = glyph.line;
        }
        runs.last().rect.right = glyph.box.right;
        runs.last().text += glyph.text;
    }
    return runs;
}

QList<G_TextRun> MemoryTextPage::RunsBetween(const CCA_GPoint& from, const CCA_GPoint& to) const
{
    // Lies between when it is before exactly one of the two, so the order of the points does not matter.
    return RunsOf([&](const CCA_GRect& box) { return IsBefore(box, from) != IsBefore(box, to); });
}

QList<G_TextRun> MemoryTextPage::AllRuns() const
{
    return RunsOf([](const CCA_GRect&) { return true; });
}

QList<G_TextGlyph> MemoryTextPage::AllGlyphs() const
{
    QList<G_TextGlyph> all;
    int run = -1;
    int lastLine = -1;
    for (const Glyph& glyph : glyphs) {
        run += glyph.line != lastLine ? 1 : 0;
        lastLine = glyph.line;
        G_TextGlyph one;
        one.rect = glyph.box;
        one.text = glyph.text;
        one.run = run;
        all.append(one);
    }
    return all;
}
