#include "conformance_checks.h"

#include <frame/document/text_search.h>

#include <QtTest>

namespace {

QString TextFixture()
{
    return QString::fromUtf8("page 210 297\n"
                             "  layer 1 Text\n"
                             "  text 20 30 The contract says\n"
                             "  text 20 40 what the Contract means\n"
                             "  text 20 60 合同编\n"
                             "  text 20 70 号\n"
                             "page 210 297\n"
                             "page 210 297\n"
                             "  layer 1 Text\n"
                             "  text 30 100 contractor\n");
}

QList<G_TextMatch> Find(IG_Document* document, int page, const char* text, bool matchesCase = false,
                        bool isWholeWord = false)
{
    G_TextQuery query;
    query.text = QString::fromUtf8(text);
    query.matchesCase = matchesCase;
    query.isWholeWord = isWholeWord;
    return G_TextSearch(query).FindOnPage(document, page);
}

void GlyphsAgreeWithTheRuns(ConformanceBackend& backend)
{
    const auto document = backend.Make(TextFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page && page->Load() && page->GetTextPage()->Parse(0));
    const QList<G_TextRun> runs = page->GetTextPage()->AllRuns();
    const QList<G_TextGlyph> glyphs = page->GetTextPage()->AllGlyphs();
    QCOMPARE(glyphs.size(), 17 + 23 + 3 + 1);
    QVector<QString> texts(runs.size());
    for (const G_TextGlyph& glyph : glyphs) {
        QVERIFY(glyph.run >= 0 && glyph.run < runs.size());
        texts[glyph.run] += glyph.text;
        const CCA_GRect& run = runs.at(glyph.run).rect;
        QVERIFY(!glyph.rect.IsEmpty());
        QVERIFY(run.Contains({(glyph.rect.left + glyph.rect.right) / 2, (glyph.rect.top + glyph.rect.bottom) / 2}));
    }
    for (int i = 0; i < runs.size(); ++i)
        QCOMPARE(texts.at(i), runs.at(i).text);
}

void TextIsFoundWithItsPlaces(ConformanceBackend& backend)
{
    const auto document = backend.Make(TextFixture());
    QVERIFY(document);
    const QList<G_TextMatch> matches = Find(document.get(), 0, "CONTRACT");
    QCOMPARE(matches.size(), 2);
    QCOMPARE(matches.first().text, QStringLiteral("contract"));
    QCOMPARE(matches.first().rects.size(), 1);
    const CCA_GRect& rect = matches.first().rects.first();
    QVERIFY(rect.Contains({36, 32})); // letters of 2 mm, the fifth to the twelfth
    QVERIFY(!rect.Contains({26, 32}) && !rect.Contains({50, 32}));
    QVERIFY(Find(document.get(), 1, "contract").isEmpty());
    QCOMPARE(Find(document.get(), 2, "contract").size(), 1);
    QCOMPARE(Find(document.get(), 2, "contract").first().pageIndex, 2);
}

void CaseAndWordsMatterWhenAsked(ConformanceBackend& backend)
{
    const auto document = backend.Make(TextFixture());
    QVERIFY(document);
    QCOMPARE(Find(document.get(), 0, "Contract", true).size(), 1);
    QCOMPARE(Find(document.get(), 0, "contract", false, true).size(), 2);
    QVERIFY(Find(document.get(), 2, "contract", false, true).isEmpty());
}

void TextIsFoundAcrossLines(ConformanceBackend& backend)
{
    const auto document = backend.Make(TextFixture());
    QVERIFY(document);
    const QList<G_TextMatch> words = Find(document.get(), 0, "says what");
    QCOMPARE(words.size(), 1);
    QCOMPARE(words.first().rects.size(), 2);
    const QList<G_TextMatch> ideographs = Find(document.get(), 0, "编号");
    QCOMPARE(ideographs.size(), 1);
    QCOMPARE(ideographs.first().rects.size(), 2);
}

void PointsBeyondTheTextMeanItsEnds(ConformanceBackend& backend)
{
    const auto document = backend.Make(TextFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page && page->Load() && page->GetTextPage()->Parse(0));
    const auto joined = [](const QList<G_TextRun>& runs) {
        QString text;
        for (const G_TextRun& run : runs)
            text += run.text;
        return text;
    };
    const IG_TextPage* text = page->GetTextPage();
    QCOMPARE(joined(text->RunsBetween({0, 0}, {210, 297})), joined(text->AllRuns()));
    QCOMPARE(joined(text->RunsBetween({210, 297}, {0, 0})), joined(text->AllRuns()));
    QVERIFY(text->RunsBetween({0, 0}, {0, 0}).isEmpty());
}

} // namespace

QVector<ConformanceCheck> TextConformanceChecks()
{
    return {
        {"glyphs agree with the runs", GlyphsAgreeWithTheRuns},
        {"text is found with its places", TextIsFoundWithItsPlaces},
        {"case and words matter when asked", CaseAndWordsMatterWhenAsked},
        {"text is found across lines", TextIsFoundAcrossLines},
        {"points beyond the text mean its ends", PointsBeyondTheTextMeanItsEnds},
    };
}
