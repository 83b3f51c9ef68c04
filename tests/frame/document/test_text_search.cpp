// Text found on pages, without a view.
#include <tests/support/test_main.h>

#include <frame/document/memory_document.h>
#include <frame/document/text_search.h>

#include <QtTest>

namespace {

G_TextQuery Query(const QString& text, bool matchesCase = false, bool isWholeWord = false)
{
    G_TextQuery query;
    query.text = text;
    query.matchesCase = matchesCase;
    query.isWholeWord = isWholeWord;
    return query;
}

// Glyphs of 2 x 4 mm, a line for each text, 10 mm apart.
QList<G_TextGlyph> Lines(const QStringList& lines)
{
    QList<G_TextGlyph> glyphs;
    for (int line = 0; line < lines.size(); ++line) {
        const QVector<uint> codes = lines.at(line).toUcs4();
        for (int i = 0; i < codes.size(); ++i) {
            G_TextGlyph glyph;
            glyph.rect = CCA_GRect(2.0F * float(i), 10.0F * float(line), 2.0F * float(i + 1), 10.0F * float(line) + 4);
            glyph.text = QString::fromUcs4(&codes.at(i), 1);
            glyph.run = line;
            glyphs.append(glyph);
        }
    }
    return glyphs;
}

int CountOf(const QStringList& lines, const G_TextQuery& query)
{
    return G_TextSearch(query).FindIn(Lines(lines), 0).size();
}

// A text page that tells runs only, as one of a reader of one's own may.
class RunsOnlyPage : public IG_TextPage
{
public:
    bool IsParsed() const override { return true; }
    bool Parse(int) override { return true; }
    void GetTextInRect(const CCA_GRect&, wchar_t** text) const override { *text = CCA_AllocWide(QString()); }
    QList<G_TextRun> RunsBetween(const CCA_GPoint&, const CCA_GPoint&) const override { return runs; }
    QList<G_TextRun> AllRuns() const override { return runs; }
    QList<G_TextRun> runs;
};

} // namespace

class TestTextSearch : public QObject
{
    Q_OBJECT
private slots:
    void aMatchHasTheBoxOfItsGlyphs();
    void nothingToLookForFindsNothing();
    void matchesDoNotOverlapAndKeepTheirOrder();
    void theNumberOfMatchesCanBeLimited();
    void caseIsFoldedByUnicodeUnlessItMatters_data();
    void caseIsFoldedByUnicodeUnlessItMatters();
    void composedAndDecomposedFormsAreTheSame();
    void partsOfACharacterAreNotFound();
    void compatibleFormsAreTheSameUnlessCaseMatters_data();
    void compatibleFormsAreTheSameUnlessCaseMatters();
    void halfOfAFormIsNotFound();
    void wholeWordsEndWhereWordsEnd_data();
    void wholeWordsEndWhereWordsEnd();
    void linesAreJoined_data();
    void linesAreJoined();
    void aMatchOverALineEndHasABoxForEachLine();
    void severalBlanksCountAsOne();
    void aGapWithoutABlankMayCountAsOne();
    void aClusterIsFoundAsAWhole();
    void charactersOfPrivateUseAndBeyondThePlaneAreFound();
    void theSnippetTellsWhereTheMatchStands();
    void runsWithoutGlyphsAreDividedEvenly();
    void aPageNeedNotBeLoadedAndIsNotKeptLoaded();
    void aPageThatIsLoadedStaysLoaded();
    void aPageThatCannotBeReadHasNoMatches();
    void aKnownPageIsReadOnlyWhereTheTextCanStand();
    void whatThePageCacheKnowsHidesNoMatch_data();
    void whatThePageCacheKnowsHidesNoMatch();
};

void TestTextSearch::aMatchHasTheBoxOfItsGlyphs()
{
    const QList<G_TextMatch> matches = G_TextSearch(Query("lo w")).FindIn(Lines({"say", "hello world"}), 7);
    QCOMPARE(matches.size(), 1);
    QCOMPARE(matches.first().pageIndex, 7);
    QCOMPARE(matches.first().text, QString("lo w"));
    QCOMPARE(matches.first().rects.size(), 1);
    QVERIFY(matches.first().rects.first() == CCA_GRect(6, 10, 14, 14));
}

void TestTextSearch::nothingToLookForFindsNothing()
{
    QVERIFY(G_TextSearch(Query(QString())).IsEmpty());
    QVERIFY(G_TextSearch(Query(QString(QChar(0x00ad)))).IsEmpty());
    QCOMPARE(CountOf({"text"}, Query(QString())), 0);
    QCOMPARE(CountOf({}, Query("text")), 0);
    QCOMPARE(CountOf({"te"}, Query("text")), 0);
    QCOMPARE(CountOf({"", "text", ""}, Query("text")), 1);
}

void TestTextSearch::matchesDoNotOverlapAndKeepTheirOrder()
{
    const QList<G_TextMatch> matches = G_TextSearch(Query("aa")).FindIn(Lines({"aaaaa", "aa"}), 0);
    QCOMPARE(matches.size(), 3);
    QCOMPARE(matches.at(0).rects.first().left, 0.0F);
    QCOMPARE(matches.at(1).rects.first().left, 4.0F);
    QCOMPARE(matches.at(2).rects.first().top, 10.0F);
}

void TestTextSearch::theNumberOfMatchesCanBeLimited()
{
    QCOMPARE(G_TextSearch(Query("a")).FindIn(Lines({"aaaaa"}), 0, 3).size(), 3);
    QCOMPARE(G_TextSearch(Query("a")).FindIn(Lines({"aaaaa"}), 0, 0).size(), 0);
}

void TestTextSearch::caseIsFoldedByUnicodeUnlessItMatters_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("latin") << "Invoice"
                           << "iNVOICE";
    QTest::newRow("accents") << QString::fromUtf8("ÉCOLE") << QString::fromUtf8("école");
    QTest::newRow("greek with its final letter") << QString::fromUtf8("ΟΔΟΣ") << QString::fromUtf8("οδος");
    QTest::newRow("cyrillic") << QString::fromUtf8("ДОГОВОР") << QString::fromUtf8("договор");
    QTest::newRow("sharp s") << QString::fromUtf8("Straße") << "STRASSE";
    QTest::newRow("full width") << QString::fromUtf8("ＡＢＣ") << QString::fromUtf8("ａｂｃ");
}

void TestTextSearch::caseIsFoldedByUnicodeUnlessItMatters()
{
    QFETCH(QString, page);
    QFETCH(QString, wanted);
    QCOMPARE(CountOf({page}, Query(wanted)), 1);
    QCOMPARE(CountOf({page}, Query(wanted, true)), 0);
    QCOMPARE(CountOf({page}, Query(page, true)), 1);
}

void TestTextSearch::composedAndDecomposedFormsAreTheSame()
{
    const QString composed = QString::fromUtf8("caf\u00e9");
    const QString decomposed = QString::fromUtf8("cafe\u0301");
    for (const bool matchesCase : {false, true}) {
        QCOMPARE(CountOf({composed}, Query(decomposed, matchesCase)), 1);
        QCOMPARE(CountOf({decomposed}, Query(composed, matchesCase)), 1);
    }
}

void TestTextSearch::partsOfACharacterAreNotFound()
{
    QCOMPARE(CountOf({QString::fromUtf8("caf\u00e9")}, Query("cafe")), 0);
    QCOMPARE(CountOf({QString::fromUtf8("cafe\u0301")}, Query("cafe")), 0);
    QCOMPARE(CountOf({QString::fromUtf8("ß")}, Query("s")), 0);
    QCOMPARE(CountOf({QString::fromUtf8("각")}, Query(QString::fromUtf8("가"))), 0);
}

void TestTextSearch::compatibleFormsAreTheSameUnlessCaseMatters_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("full-width digits") << QString::fromUtf8("１２３元") << QString::fromUtf8("123元");
    QTest::newRow("full-width letters") << QString::fromUtf8("ＡＢＣ") << "abc";
    QTest::newRow("full-width signs") << QString::fromUtf8("（甲：乙）") << QString::fromUtf8("(甲:乙)");
    QTest::newRow("full-width hyphen") << QString::fromUtf8("A－B") << "a-b";
    QTest::newRow("ideographic space") << QString::fromUtf8("甲　乙") << QString::fromUtf8("甲 乙");
    QTest::newRow("half-width kana") << QString::fromUtf8("ｶﾞｲﾄﾞ") << QString::fromUtf8("ガイド");
    QTest::newRow("ligature") << QString::fromUtf8("ofﬁce") << "office";
    QTest::newRow("circled digit") << QString::fromUtf8("第①条") << QString::fromUtf8("第1条");
    QTest::newRow("radical") << QString::fromUtf8("⽂件") << QString::fromUtf8("文件");
    QTest::newRow("square metres") << QString::fromUtf8("12㎡") << "12m2";
}

void TestTextSearch::compatibleFormsAreTheSameUnlessCaseMatters()
{
    QFETCH(QString, page);
    QFETCH(QString, wanted);
    QCOMPARE(CountOf({page}, Query(wanted)), 1);
    QCOMPARE(CountOf({wanted}, Query(page)), 1);
    QCOMPARE(CountOf({page}, Query(wanted, true)), 0);
    QCOMPARE(CountOf({page}, Query(page, true)), 1);
    const auto document = MemoryDocument::FromText("page 210 297\n  layer 1 Text\n  text 20 30 " + page + "\n");
    QVERIFY(document);
    G_PageTextCache cache; // hides none of them
    for (int round = 0; round < 2; ++round)
        QCOMPARE(G_TextSearch(Query(wanted)).FindOnPage(document.get(), 0, 10, nullptr, &cache).size(), 1);
}

void TestTextSearch::halfOfAFormIsNotFound()
{
    QCOMPARE(CountOf({QString::fromUtf8("㎡")}, Query("m")), 0);
    QCOMPARE(CountOf({QString::fromUtf8("ofﬁce")}, Query("of")), 1);
    QCOMPARE(CountOf({QString::fromUtf8("ofﬁce")}, Query("off")), 0);
}

void TestTextSearch::wholeWordsEndWhereWordsEnd_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<int>("count");
    QTest::newRow("alone") << "a cat, a cat"
                           << "cat" << 2;
    QTest::newRow("inside") << "concatenate cats"
                            << "cat" << 0;
    QTest::newRow("two words") << "the cat sat"
                               << "cat sat" << 1;
    QTest::newRow("underline") << "cat_sat"
                               << "cat" << 0;
    QTest::newRow("apostrophe") << "can't"
                                << "can" << 0;
    QTest::newRow("number") << "3.14 and 3"
                            << "3" << 1;
    QTest::newRow("ideographs need no blanks") << QString::fromUtf8("合同编号") << QString::fromUtf8("同编") << 1;
    QTest::newRow("a number among ideographs") << QString::fromUtf8("第12章") << "12" << 1;
    QTest::newRow("part of a number among ideographs") << QString::fromUtf8("第12章") << "1" << 0;
    QTest::newRow("accents") << QString::fromUtf8("naïve naïveté") << QString::fromUtf8("NAÏVE") << 1;
}

void TestTextSearch::wholeWordsEndWhereWordsEnd()
{
    QFETCH(QString, page);
    QFETCH(QString, wanted);
    QFETCH(int, count);
    QCOMPARE(CountOf({page}, Query(wanted, false, true)), count);
}

void TestTextSearch::linesAreJoined_data()
{
    QTest::addColumn<QStringList>("page");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QString>("found"); // null: nothing
    const auto han = [](const char* text) { return QString::fromUtf8(text); };
    QTest::newRow("words by a blank") << QStringList{"one", "two"} << "one two"
                                      << "one two";
    QTest::newRow("words by nothing") << QStringList{"one", "two"} << "onetwo" << QString();
    QTest::newRow("a blank at the end") << QStringList{"one ", "two"} << "one two"
                                        << "one two";
    QTest::newRow("a blank at both sides") << QStringList{"one ", " two"} << "one two"
                                           << "one  two";
    QTest::newRow("ideographs by nothing") << QStringList{han("合同"), han("编号")} << han("同编") << han("同编");
    QTest::newRow("ideographs by a blank") << QStringList{han("合同"), han("编号")} << han("同 编") << han("同编");
    QTest::newRow("ideograph and word") << QStringList{han("合同"), "ABC"} << han("同abc") << han("同ABC");
    QTest::newRow("ideographs with a blank at the end")
        << QStringList{han("合同 "), han("编号")} << han("同编") << han("同 编");
    QTest::newRow("a word divided by a hyphen") << QStringList{"exam-", "ple"} << "example"
                                                << "exam-ple";
    QTest::newRow("a hyphen that is meant") << QStringList{"exam-", "ple"} << "exam-ple"
                                            << "exam-ple";
    QTest::newRow("a soft hyphen") << QStringList{QString::fromUtf8("exam\u00ad"), "ple"} << "example"
                                   << "example";
    QTest::newRow("an empty line between") << QStringList{"one", "", "two"} << "one two"
                                           << "one two";
    QTest::newRow("three lines") << QStringList{"a", "b", "c"} << "a b c"
                                 << "a b c";
}

void TestTextSearch::linesAreJoined()
{
    QFETCH(QStringList, page);
    QFETCH(QString, wanted);
    QFETCH(QString, found);
    const QList<G_TextMatch> matches = G_TextSearch(Query(wanted)).FindIn(Lines(page), 0);
    QCOMPARE(matches.size(), found.isNull() ? 0 : 1);
    if (!found.isNull())
        QCOMPARE(matches.first().text, found);
}

void TestTextSearch::aMatchOverALineEndHasABoxForEachLine()
{
    const QList<G_TextMatch> matches = G_TextSearch(Query("two three")).FindIn(Lines({"one two", "three"}), 0);
    QCOMPARE(matches.size(), 1);
    QCOMPARE(matches.first().rects.size(), 2);
    QVERIFY(matches.first().rects.first() == CCA_GRect(8, 0, 14, 4));
    QVERIFY(matches.first().rects.last() == CCA_GRect(0, 10, 10, 14));
}

void TestTextSearch::severalBlanksCountAsOne()
{
    QCOMPARE(CountOf({"one    two"}, Query("one two")), 1);
    QCOMPARE(CountOf({"one two"}, Query("one   two")), 1);
    QCOMPARE(CountOf({QString::fromUtf8("one\u00a0two")}, Query("one two")), 1);
    QCOMPARE(CountOf({QString::fromUtf8("甲 乙")}, Query(QString::fromUtf8("甲乙"))), 0);
}

void TestTextSearch::aGapWithoutABlankMayCountAsOne()
{
    QList<G_TextGlyph> glyphs = Lines({"onetwo"});
    for (int i = 3; i < 6; ++i)
        glyphs[i].rect = CCA_GRect(glyphs.at(i).rect.left + 2, 0, glyphs.at(i).rect.right + 2, 4);
    for (const char* wanted : {"one two", "onetwo"})
        QCOMPARE(G_TextSearch(Query(wanted)).FindIn(glyphs, 0).size(), 1);
    QCOMPARE(G_TextSearch(Query("one", false, true)).FindIn(glyphs, 0).size(), 1);
    QCOMPARE(CountOf({"onetwo"}, Query("one two")), 0);
}

void TestTextSearch::aClusterIsFoundAsAWhole()
{
    QList<G_TextGlyph> glyphs = Lines({"oXce"});
    glyphs[1].text = "ffi"; // one drawing of three letters
    for (const char* wanted : {"office", "ffi", "f", "i"}) {
        const QList<G_TextMatch> matches = G_TextSearch(Query(wanted)).FindIn(glyphs, 0);
        QVERIFY2(!matches.isEmpty(), wanted);
        const CCA_GRect& rect = matches.first().rects.first();
        QVERIFY(rect.left <= 2 && rect.right >= 4);
    }
    QCOMPARE(G_TextSearch(Query("ic")).FindIn(glyphs, 0).first().text, QString("ic"));
}

void TestTextSearch::charactersOfPrivateUseAndBeyondThePlaneAreFound()
{
    const QString page = QString::fromUtf8("a\uE000b𠀀c");
    QCOMPARE(CountOf({page}, Query(QString(QChar(0xE000)))), 1);
    const QList<G_TextMatch> matches = G_TextSearch(Query(QString::fromUtf8("𠀀"))).FindIn(Lines({page}), 0);
    QCOMPARE(matches.size(), 1);
    QVERIFY(matches.first().rects.first() == CCA_GRect(6, 0, 8, 4));
}

void TestTextSearch::theSnippetTellsWhereTheMatchStands()
{
    const QString filler = QString("word ").repeated(20);
    const QList<G_TextMatch> matches = G_TextSearch(Query("needle")).FindIn(Lines({filler + "Needle", filler}), 0);
    QCOMPARE(matches.size(), 1);
    const G_TextMatch& match = matches.first();
    QCOMPARE(match.snippet.mid(match.snippetStart, match.snippetLength), QString("Needle"));
    QVERIFY(match.snippet.startsWith(QChar(0x2026)) && match.snippet.endsWith(QChar(0x2026)));
    QVERIFY(match.snippet.contains("word Needle word"));
    const G_TextMatch alone = G_TextSearch(Query("b")).FindIn(Lines({"abc"}), 0).first();
    QCOMPARE(alone.snippet, QString("abc"));
    QCOMPARE(alone.snippetStart, 1);
}

void TestTextSearch::runsWithoutGlyphsAreDividedEvenly()
{
    RunsOnlyPage page;
    page.runs.append({CCA_GRect(10, 10, 20, 14), QStringLiteral("abcde")});
    page.runs.append({CCA_GRect(50, 10, 54, 30), QStringLiteral("vwxyz")}); // stands upright
    const QList<G_TextMatch> across = G_TextSearch(Query("bc")).FindIn(page, 0);
    QCOMPARE(across.size(), 1);
    QVERIFY(across.first().rects.first() == CCA_GRect(12, 10, 16, 14));
    const QList<G_TextMatch> down = G_TextSearch(Query("wx")).FindIn(page, 0);
    QCOMPARE(down.size(), 1);
    QVERIFY(down.first().rects.first() == CCA_GRect(50, 14, 54, 22));
}

void TestTextSearch::aPageNeedNotBeLoadedAndIsNotKeptLoaded()
{
    const auto document = MemoryDocument::FromText("page 210 297\n  text 20 30 Hello\npage 210 297\n");
    QVERIFY(document);
    const G_TextSearch search(Query("hello"));
    bool isReadable = false;
    QCOMPARE(search.FindOnPage(document.get(), 0, 10, &isReadable).size(), 1);
    QVERIFY(isReadable);
    QVERIFY(search.FindOnPage(document.get(), 1).isEmpty());
    QCOMPARE(document->LoadedPageCount(), 0);
}

void TestTextSearch::aPageThatIsLoadedStaysLoaded()
{
    const auto document = MemoryDocument::FromText("page 210 297\n  text 20 30 Hello\n");
    QVERIFY(document && document->GetPage(0)->Load());
    QCOMPARE(G_TextSearch(Query("hello")).FindOnPage(document.get(), 0).size(), 1);
    QCOMPARE(document->LoadedPageCount(), 1);
}

void TestTextSearch::aPageThatCannotBeReadHasNoMatches()
{
    const auto document = MemoryDocument::FromText("page 210 297\n  text 20 30 Hello\n");
    QVERIFY(document);
    document->SetPageFailure(0, true);
    for (const int page : {0, 1, -1}) {
        bool isReadable = true;
        QVERIFY(G_TextSearch(Query("hello")).FindOnPage(document.get(), page, 10, &isReadable).isEmpty());
        QVERIFY(!isReadable);
    }
}

void TestTextSearch::aKnownPageIsReadOnlyWhereTheTextCanStand()
{
    const auto document = MemoryDocument::FromText("page 210 297\n  text 20 30 Hello\n");
    QVERIFY(document);
    G_PageTextCache cache;
    QCOMPARE(G_TextSearch(Query("hello")).FindOnPage(document.get(), 0, 10, nullptr, &cache).size(), 1);
    QVERIFY(cache.Knows(0));
    document->SetPageFailure(0, true); // tells whether it is read
    bool isReadable = false;
    QVERIFY(G_TextSearch(Query("absent")).FindOnPage(document.get(), 0, 10, &isReadable, &cache).isEmpty());
    QVERIFY(isReadable);
    G_TextSearch(Query("hell")).FindOnPage(document.get(), 0, 10, &isReadable, &cache);
    QVERIFY(!isReadable);
    cache.Clear();
    G_TextSearch(Query("absent")).FindOnPage(document.get(), 0, 10, &isReadable, &cache);
    QVERIFY(!isReadable);
    QVERIFY(!cache.Knows(0));
}

void TestTextSearch::whatThePageCacheKnowsHidesNoMatch_data()
{
    QTest::addColumn<QString>("wanted");
    for (const char* wanted : {"one two", "ONE", "one  two", "two three", "example", "exam-ple", "-", " ", "-ple then",
                               "straSSE", "同 编", "同编", "caf\u00e9", "cafe\u0301", "end exam"})
        QTest::newRow(wanted) << QString::fromUtf8(wanted);
}

void TestTextSearch::whatThePageCacheKnowsHidesNoMatch()
{
    QFETCH(QString, wanted);
    const auto document = MemoryDocument::FromText(
        QString::fromUtf8("page 210 297\n  text 20 30 one  two\n  text 20 40 three end\n  text 20 50 exam-\n"
                          "  text 20 60 ple then Straße caf\u00e9\n  text 20 70 合同\n  text 20 80 编号\n"));
    QVERIFY(document);
    G_PageTextCache cache;
    const G_TextSearch search(Query(wanted));
    const int count = search.FindOnPage(document.get(), 0, 100, nullptr, &cache).size();
    QVERIFY(count > 0);
    QVERIFY(cache.Knows(0));
    QCOMPARE(search.FindOnPage(document.get(), 0, 100, nullptr, &cache).size(), count);
}

TETO_TEST_MAIN(TestTextSearch)
#include "test_text_search.moc"
