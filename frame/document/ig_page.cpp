#include "ig_page.h"

IG_TextPage::~IG_TextPage() = default;

QList<G_TextGlyph> IG_TextPage::AllGlyphs() const
{
    QList<G_TextGlyph> glyphs;
    const QList<G_TextRun> runs = AllRuns();
    for (int run = 0; run < runs.size(); ++run) {
        const CCA_GRect& rect = runs.at(run).rect;
        const QVector<uint> codes = runs.at(run).text.toUcs4();
        const bool isUpright = rect.Height() > rect.Width() && codes.size() > 1;
        const float step = (isUpright ? rect.Height() : rect.Width()) / float(codes.size());
        for (int i = 0; i < codes.size(); ++i) {
            const float from = step * float(i);
            G_TextGlyph glyph;
            glyph.rect = isUpright ? CCA_GRect(rect.left, rect.top + from, rect.right, rect.top + from + step)
                                   : CCA_GRect(rect.left + from, rect.top, rect.left + from + step, rect.bottom);
            glyph.text = QString::fromUcs4(&codes.at(i), 1);
            glyph.run = run;
            glyphs.append(glyph);
        }
    }
    return glyphs;
}

IG_PageLayer::~IG_PageLayer() = default;

IG_Page::~IG_Page() = default;

QVector<G_PageLink> IG_Page::GetLinks()
{
    return {};
}
