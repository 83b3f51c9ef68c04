#include <ofd/package/limits.h>
#include <ofd/text/font_face.h>
#include <ofd/text/glyph_budget.h>
#include <samples/hostile_fonts.h>
#include <tests/support/test_main.h>

#include <QtTest>

using ofd::FontFace;

namespace {

// How many of these glyphs have an outline.
int Drawn(const FontFace& face, int first, int end)
{
    int count = 0;
    for (int glyph = first; glyph < end; ++glyph)
        count += face.OutlineOf(quint32(glyph)).isEmpty() ? 0 : 1;
    return count;
}

} // namespace

// Fonts of a few kilobytes whose glyphs would take hours, or all memory.
class TestFontLimits : public QObject
{
    Q_OBJECT

private slots:
    void glyphsOfGlyphsAreDrawnUpToTheLimit_data();
    void glyphsOfGlyphsAreDrawnUpToTheLimit();
    void aGlyphThatContainsItselfIsEmpty();
    void glyphsOfVeryManyPointsAreDrawnUpToTheLimit();
    void theFontsOfADocumentShareTheLimit();
    void aLargeFontMayHaveMorePoints();
    void ordinaryGlyphsAreNotCounted();
    void glyphsThatCallSubroutinesWithoutEndSpendTheLimit();
};

void TestFontLimits::glyphsOfGlyphsAreDrawnUpToTheLimit_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<int>("times");
    QTest::addColumn<bool>("isDrawn");
    QTest::newRow("one in one") << 1 << 1 << true;
    QTest::newRow("two in two, eight deep") << 8 << 2 << true;
    QTest::newRow("two in two, thirty deep") << 30 << 2 << false;
    QTest::newRow("a thousand in a thousand, five deep") << 5 << 1000 << false;
    QTest::newRow("one in one, sixty deep") << 60 << 1 << false;
}

void TestFontLimits::glyphsOfGlyphsAreDrawnUpToTheLimit()
{
    QFETCH(int, depth);
    QFETCH(int, times);
    QFETCH(bool, isDrawn);
    const auto face = FontFace::FromBytes(samples::FontOfNestedGlyphs(depth, times, samples::GlyphOfPoints(20)));
    QVERIFY(face);
    QCOMPARE(!face->OutlineOf(1).isEmpty(), isDrawn);
    QVERIFY(!face->OutlineOf(quint32(depth) + 1).isEmpty()); // the rest of the font is as good as ever
    QCOMPARE(face->AdvanceOf(quint32(depth) + 1), 0.6);
    const auto blank = FontFace::FromBytes(
        samples::FontOfNestedGlyphs(depth, times, QByteArray())); // blanks are what is cheapest to repeat
    QVERIFY(blank && blank->OutlineOf(1).isEmpty());
}

void TestFontLimits::aGlyphThatContainsItselfIsEmpty()
{
    const QByteArray outline = samples::GlyphOfPoints(20);
    const auto face = FontFace::FromBytes(
        samples::FontOfGlyphs({QByteArray(), samples::GlyphOfGlyphs({1, 1}), samples::GlyphOfGlyphs({3, 3}),
                               samples::GlyphOfGlyphs({2, 4}), outline}));
    QVERIFY(face);
    QCOMPARE(Drawn(*face, 1, 4), 0);
    QCOMPARE(Drawn(*face, 4, 5), 1);
}

void TestFontLimits::glyphsOfVeryManyPointsAreDrawnUpToTheLimit()
{
    constexpr int points = 30'000;
    const auto face = FontFace::FromBytes(samples::FontOfOneGlyph(samples::GlyphOfPoints(points), 2000));
    QVERIFY(face);
    const int drawn = Drawn(*face, 0, 2000);
    QVERIFY(drawn > 0);
    QVERIFY(drawn <= ofd::limits::MaxHeavyGlyphPoints / (points - ofd::limits::FreeGlyphPoints) + 1);
    QVERIFY(!face->OutlineOf(0).isEmpty()); // what was drawn once stays
}

void TestFontLimits::theFontsOfADocumentShareTheLimit()
{
    const auto budget = std::make_shared<ofd::GlyphBudget>();
    const QByteArray heavy = samples::FontOfOneGlyph(samples::GlyphOfPoints(30'000), 2000);
    const auto first = FontFace::FromBytes(heavy, {}, budget);
    QVERIFY(Drawn(*first, 0, 2000) > 0);
    const auto second = FontFace::FromBytes(heavy, {}, budget);
    QCOMPARE(Drawn(*second, 0, 2000), 0);
    QVERIFY(!FontFace::FromBytes(heavy)->OutlineOf(0).isEmpty()); // of another document
}

void TestFontLimits::aLargeFontMayHaveMorePoints()
{
    constexpr int points = 2000;
    constexpr int count = 8000; // as of a brush; half of them are there
    const QByteArray font = samples::FontOfOneGlyph(samples::GlyphOfPoints(points), count);
    QVERIFY(Drawn(*FontFace::FromBytes(font), 0, count) < count / 2);
    const auto budget = std::make_shared<ofd::GlyphBudget>();
    budget->Grant(qint64(points) * count / 2); // each point takes more than a byte, if no two glyphs are alike
    QCOMPARE(Drawn(*FontFace::FromBytes(font, {}, budget), 0, count), count / 2);
}

void TestFontLimits::ordinaryGlyphsAreNotCounted()
{
    constexpr int count = 20'000;
    const auto budget = std::make_shared<ofd::GlyphBudget>();
    const QByteArray font = samples::FontOfOneGlyph(samples::GlyphOfPoints(ofd::limits::FreeGlyphPoints), count);
    const auto face = FontFace::FromBytes(font, {}, budget);
    QCOMPARE(Drawn(*face, 0, count), count / 2);
    QVERIFY(!budget->IsSpent());
}

void TestFontLimits::glyphsThatCallSubroutinesWithoutEndSpendTheLimit()
{
    const auto budget = std::make_shared<ofd::GlyphBudget>();
    const QByteArray font = samples::CffOfCalls(1000);
    const auto face = FontFace::FromBytes(font, {}, budget);
    QVERIFY(face);
    int glyph = 1;
    while (glyph <= 200 && !budget->IsSpent()) {
        QVERIFY(face->OutlineOf(quint32(glyph)).isEmpty());
        ++glyph;
    }
    QVERIFY2(glyph <= 200, "as if they took no time");
}

TETO_TEST_MAIN(TestFontLimits)

#include "test_font_limits.moc"
