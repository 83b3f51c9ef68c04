// The text of pages: which way it runs, what stands on one line, what lies between two places.
#include "ofd_file.h"

#include <frame/document/text_search.h>
#include <ofd/ofd_document.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

// A text of 5 mm whose first letter stands at the boundary's corner, 4 mm below its upper edge.
QByteArray Text(const QByteArray& boundary, const QByteArray& deltas, const QByteArray& letters,
                const QByteArray& attributes = {})
{
    return "<ofd:TextObject ID=\"1\" Font=\"10\" Size=\"5\" Boundary=\"" + boundary + "\" " + attributes +
           "><ofd:TextCode X=\"0\" Y=\"4\" " + deltas + ">" + letters + "</ofd:TextCode></ofd:TextObject>";
}

QStringList Texts(const QList<G_TextRun>& runs)
{
    QStringList texts;
    for (const G_TextRun& run : runs)
        texts.append(run.text);
    return texts;
}

QList<G_TextMatch> Find(const IG_TextPage& page, const QString& text)
{
    G_TextQuery query;
    query.text = text;
    return G_TextSearch(query).FindIn(page, 0);
}

} // namespace

class TestOfdText : public QObject
{
    Q_OBJECT
private slots:
    void textThatRunsDownIsOneRun();
    void turnedTextIsOneRun_data();
    void turnedTextIsOneRun();
    void turnedCharactersRunTheWayTheyAreTurned();
    void withoutDistancesTextRunsTheWayItIsRead_data();
    void withoutDistancesTextRunsTheWayItIsRead();
    void singleCharactersBelowEachOtherJoinByTheirReadingDirection();
    void oneTextOfTwoLinesIsTwoRuns();
    void aGapBetweenWordsThatStandApartIsABlank();
    void aWordOfOneLetterStandsApartLikeAnyOther();
    void lettersThatAreWrittenOneByOneAndWideApartAreOneWord();
    void aHeadingStandsApartFromItsNumber_data();
    void aHeadingStandsApartFromItsNumber();
    void textInARectangleHasTheBlanksOfTheRuns();
    void aWaveringLineIsOneRun();
    void columnsAreNotMixed();
    void placesBesideAndBetweenLinesBelongToTheNearestLine();
    void theOrderOfThePointsDoesNotMatter();
    void blanksAndPrivateCharactersAreKept();
    void aCharacterOfTwoGlyphsHasOneBoxAroundBoth();
    void textOfALayerInsideOfALayerIsThere();
    void textWithoutSizeDoesNoHarm();
    void whatIsTooSmallToReadIsOneRun_data();
    void whatIsTooSmallToReadIsOneRun();
    void aMatchInTextThatRunsDownHasTheBoxOfItsCharacters();

private:
    const IG_TextPage* Open(const QByteArray& objects);
    std::unique_ptr<ofd::OfdDocument> document;
    QTemporaryDir folder;
    int count = 0;
};

const IG_TextPage* TestOfdText::Open(const QByteArray& objects)
{
    const QString path = folder.filePath(QStringLiteral("%1.ofd").arg(++count));
    OfdFile::WithPage(objects).Write(path);
    ofd::OpenResult result = ofd::OfdDocument::Open(path);
    if (!result) {
        qFatal("the file does not open");
    }
    document = std::move(result.document);
    IG_Page* page = document->GetPage(0);
    if (!page || !page->Load() || !page->GetTextPage()->Parse(0))
        qFatal("the page has no text");
    return page->GetTextPage();
}

void TestOfdText::textThatRunsDownIsOneRun()
{
    const IG_TextPage* page = Open(Text("10 10 6 30", "DeltaY=\"g 3 6\"", "合同编号"));
    QCOMPARE(Texts(page->AllRuns()), QStringList(QStringLiteral("合同编号")));
    const CCA_GRect rect = page->AllRuns().first().rect;
    QVERIFY(rect.Height() > 20 && rect.Width() < 8);
    QCOMPARE(Texts(page->RunsBetween({12, 19}, {12, 31})), QStringList(QStringLiteral("编号")));
    QCOMPARE(Texts(page->RunsBetween({0, 0}, {12, 19})), QStringList(QStringLiteral("合同")));
}

void TestOfdText::turnedTextIsOneRun_data()
{
    QTest::addColumn<QByteArray>("matrix");
    QTest::addColumn<QPointF>("way"); // in which the letters follow each other
    QTest::newRow("a quarter") << QByteArray("0 1 -1 0 0 0") << QPointF(0, 1);
    QTest::newRow("half") << QByteArray("-1 0 0 -1 0 0") << QPointF(-1, 0);
    QTest::newRow("three quarters") << QByteArray("0 -1 1 0 0 0") << QPointF(0, -1);
    QTest::newRow("30 degrees") << QByteArray("0.866 0.5 -0.5 0.866 0 0") << QPointF(0.866, 0.5);
    QTest::newRow("45 degrees, small") << QByteArray("0.5 -0.5 0.5 0.5 0 0") << QPointF(0.5, -0.5);
    QTest::newRow("mirrored") << QByteArray("-1 0 0 1 0 0") << QPointF(-1, 0);
}

void TestOfdText::turnedTextIsOneRun()
{
    QFETCH(QByteArray, matrix);
    QFETCH(QPointF, way);
    const IG_TextPage* page = Open(Text("50 50 40 6", "DeltaX=\"g 5 5\"", "turned", "CTM=\"" + matrix + "\""));
    QCOMPARE(Texts(page->AllRuns()), QStringList("turned"));
    const QList<G_TextGlyph> glyphs = page->AllGlyphs();
    QCOMPARE(glyphs.size(), 6);
    const auto middle = [&glyphs](int i) {
        const CCA_GRect& box = glyphs.at(i).rect;
        return QPointF(double(box.left + box.right) / 2, double(box.top + box.bottom) / 2);
    };
    const auto point = [](const QPointF& place) { return CCA_GPoint{float(place.x()), float(place.y())}; };
    const QPointF cut = (middle(1) + middle(2)) / 2; // the widths of letters differ
    QCOMPARE(Texts(page->RunsBetween(point(middle(0) - 3 * way), point(cut))), QStringList("tu"));
    QCOMPARE(Texts(page->RunsBetween(point(cut), point(middle(5) + 3 * way))), QStringList("rned"));
}

void TestOfdText::turnedCharactersRunTheWayTheyAreTurned()
{
    const IG_TextPage* page = Open(Text("10 10 6 30", "", "合同编号", "CharDirection=\"90\""));
    QCOMPARE(Texts(page->AllRuns()), QStringList(QStringLiteral("合同编号")));
    QVERIFY(page->AllRuns().first().rect.Height() > 15);
}

void TestOfdText::withoutDistancesTextRunsTheWayItIsRead_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QPointF>("way"); // in which the characters follow each other
    QTest::addColumn<double>("step"); // mm; 0: the widths of the font
    QTest::newRow("down, upright") << QByteArray("ReadDirection=\"90\"") << QPointF(0, 1) << 5.0;
    QTest::newRow("up, upright") << QByteArray("ReadDirection=\"270\"") << QPointF(0, -1) << 5.0;
    QTest::newRow("down, turned with it")
        << QByteArray("ReadDirection=\"90\" CharDirection=\"90\"") << QPointF(0, 1) << 0.0;
    QTest::newRow("up, turned down") << QByteArray("ReadDirection=\"270\" CharDirection=\"90\"") << QPointF(0, -1)
                                     << 0.0;
    QTest::newRow("to the left, upright") << QByteArray("ReadDirection=\"180\"") << QPointF(-1, 0) << 0.0;
    QTest::newRow("to the left, turned") << QByteArray("ReadDirection=\"180\" CharDirection=\"90\"") << QPointF(-1, 0)
                                         << 5.0;
}

void TestOfdText::withoutDistancesTextRunsTheWayItIsRead()
{
    QFETCH(QByteArray, attributes);
    QFETCH(QPointF, way);
    QFETCH(double, step);
    const IG_TextPage* page = Open(Text("50 50 6 30", "", "iMw", attributes));
    QCOMPARE(Texts(page->AllRuns()), QStringList("iMw"));
    const QList<G_TextGlyph> glyphs = page->AllGlyphs();
    QCOMPARE(glyphs.size(), 3);
    for (int i = 1; i < glyphs.size(); ++i) {
        const CCA_GRect& last = glyphs.at(i - 1).rect;
        const CCA_GRect& next = glyphs.at(i).rect;
        const QPointF middles(double(next.left + next.right - last.left - last.right) / 2,
                              double(next.top + next.bottom - last.top - last.bottom) / 2);
        const double moved = QPointF::dotProduct(middles, way);
        if (step > 0) {
            const QPointF corners(double(next.left - last.left), double(next.top - last.top));
            QVERIFY(qAbs(QPointF::dotProduct(corners, way) - step) < 0.01);
        } else { // cell beside cell, however wide each is
            const double half =
                way.x() != 0 ? double(last.Width() + next.Width()) / 2 : double(last.Height() + next.Height()) / 2;
            QVERIFY(qAbs(moved - half) < 0.01);
        }
    }
}

void TestOfdText::singleCharactersBelowEachOtherJoinByTheirReadingDirection()
{
    QByteArray column;
    const QList<QByteArray> letters{"上", "海", "市"};
    for (int i = 0; i < letters.size(); ++i)
        column += Text("10 " + QByteArray::number(10 + 6 * i) + " 6 6", "", letters.at(i), "ReadDirection=\"90\"");
    QCOMPARE(Texts(Open(column)->AllRuns()), QStringList(QStringLiteral("上海市")));
    QCOMPARE(Texts(Open(column.replace("ReadDirection=\"90\"", ""))->AllRuns()).size(), 3);
}

void TestOfdText::oneTextOfTwoLinesIsTwoRuns()
{
    const IG_TextPage* page =
        Open(Text("10 10 40 20", "DeltaX=\"5 5 5 -15 5 5 5\" DeltaY=\"0 0 0 8 0 0 0\"", "frstscnd"));
    QCOMPARE(Texts(page->AllRuns()), (QStringList{"frst", "scnd"}));
}

void TestOfdText::aGapBetweenWordsThatStandApartIsABlank()
{
    const QByteArray deltas = "DeltaX=\"g 9 3\"";
    const IG_TextPage* page = Open(Text("10 10 40 6", deltas, "Total") + Text("27 10 40 6", deltas, "12"));
    QCOMPARE(Texts(page->AllRuns()), QStringList("Total 12"));
    QCOMPARE(page->AllGlyphs().size(), 7);
    QCOMPARE(Find(*page, "total 12").size(), 1);
    QCOMPARE(Texts(page->RunsBetween({28, 12}, {60, 12})), QStringList("12"));
    const QByteArray close = Text("10 10 40 6", deltas, "To") + Text("16 10 40 6", deltas, "tal");
    QCOMPARE(Texts(Open(close)->AllRuns()), QStringList("Total"));
    const QByteArray ideographs = Text("10 10 40 6", "DeltaX=\"5\"", "合同") + Text("22 10 40 6", deltas, "12");
    QCOMPARE(Texts(Open(ideographs)->AllRuns()), QStringList(QStringLiteral("合同12")));
    const QByteArray spaced = Text("10 10 60 6", "DeltaX=\"g 9 5\"", "Total");
    QCOMPARE(Texts(Open(spaced)->AllRuns()), QStringList("Total"));
}

void TestOfdText::aWordOfOneLetterStandsApartLikeAnyOther()
{
    const QByteArray deltas = "DeltaX=\"g 9 3\"";
    const QByteArray words =
        Text("10 10 40 6", deltas, "nun") + Text("21 10 40 6", deltas, "a") + Text("26 10 40 6", deltas, "den");
    QCOMPARE(Texts(Open(words)->AllRuns()), QStringList("nun a den"));
    QByteArray letters; // each written by itself
    const QList<QPair<int, QByteArray>> places{{10, "n"}, {13, "u"}, {18, "a"}, {23, "n"}, {26, "u"}, {29, "n"}};
    for (const QPair<int, QByteArray>& place : places)
        letters += Text(QByteArray::number(place.first) + " 10 40 6", "", place.second);
    QCOMPARE(Texts(Open(letters)->AllRuns()), QStringList("nu a nun"));
}

void TestOfdText::lettersThatAreWrittenOneByOneAndWideApartAreOneWord()
{
    QByteArray letters;
    for (int i = 0; i < 6; ++i)
        letters += Text(QByteArray::number(10 + 6 * i) + " 10 40 6", "", "n");
    QCOMPARE(Texts(Open(letters)->AllRuns()), QStringList("nnnnnn"));
}

void TestOfdText::aHeadingStandsApartFromItsNumber_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::newRow("digits before") << QByteArray("12") << QByteArray("合同");
    QTest::newRow("digits behind") << QByteArray("合同") << QByteArray("12");
    QTest::newRow("ideographs alone") << QByteArray("第一") << QByteArray("合同");
    QTest::newRow("rare ideographs") << QByteArray("\xf0\xa0\x80\x80\xf0\xa0\x80\x80") << QByteArray("12");
}

void TestOfdText::aHeadingStandsApartFromItsNumber()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    const auto textAt = [&](float left) {
        const auto piece = [](const QByteArray& boundary, const QByteArray& letters) {
            return Text(boundary, letters == "12" ? "DeltaX=\"3\"" : "DeltaX=\"5\"", letters);
        };
        return piece("10 10 40 6", first) + piece(QByteArray::number(double(left)) + " 10 40 6", second);
    };
    const float end = Open(textAt(80))->AllRuns().first().rect.right;
    const QStringList apart(QString::fromUtf8(first + ' ' + second));
    const QStringList together(QString::fromUtf8(first + second));
    QCOMPARE(Texts(Open(textAt(end + 5))->AllRuns()), apart);
    QCOMPARE(Texts(Open(textAt(end + 1.5F))->AllRuns()), together); // a usual space beside ideographs
    QCOMPARE(Find(*document->GetPage(0)->GetTextPage(), together.first()).size(), 1);
}

void TestOfdText::textInARectangleHasTheBlanksOfTheRuns()
{
    const QByteArray deltas = "DeltaX=\"g 9 3\"";
    const IG_TextPage* page = Open(Text("10 10 40 6", deltas, "Total") + Text("27 10 40 6", deltas, "12"));
    const auto textIn = [page](const CCA_GRect& rect) {
        wchar_t* wide = nullptr;
        page->GetTextInRect(rect, &wide);
        const QString text = QString::fromWCharArray(wide);
        CCA_FreeWide(wide);
        return text;
    };
    QCOMPARE(textIn(page->AllRuns().first().rect), QString("Total 12"));
    QCOMPARE(textIn({26, 5, 60, 20}), QString("12"));
}

void TestOfdText::aWaveringLineIsOneRun()
{
    const IG_TextPage* page = Open(Text("10 10 40 20", "DeltaX=\"g 5 5\" DeltaY=\"0.6 -0.6 0.6 -0.6 0.6\"", "wavers"));
    QCOMPARE(Texts(page->AllRuns()), QStringList("wavers"));
}

void TestOfdText::columnsAreNotMixed()
{
    const QByteArray deltas = "DeltaX=\"g 9 3\"";
    const IG_TextPage* page = Open(Text("5 10 30 6", deltas, "left one") + Text("5 20 30 6", deltas, "left two") +
                                   Text("55 10 30 6", deltas, "right one") + Text("55 20 30 6", deltas, "right two"));
    QCOMPARE(Texts(page->RunsBetween({4, 12}, {40, 22})), (QStringList{"left one", "left two"}));
    QCOMPARE(Texts(page->RunsBetween({54, 12}, {90, 22})), (QStringList{"right one", "right two"}));
    QCOMPARE(Texts(page->RunsBetween({4, 22}, {90, 12})), (QStringList{"left two", "right one"}));
}

void TestOfdText::placesBesideAndBetweenLinesBelongToTheNearestLine()
{
    const QByteArray deltas = "DeltaX=\"g 9 3\"";
    const IG_TextPage* page = Open(Text("20 10 30 6", deltas, "one") + Text("20 30 60 6", deltas, "a longer") +
                                   Text("20 50 30 6", deltas, "three"));
    QCOMPARE(Texts(page->RunsBetween({90, 12}, {90, 32})), QStringList("a longer"));
    QCOMPARE(Texts(page->RunsBetween({2, 12}, {2, 32})), QStringList("one"));
    QCOMPARE(Texts(page->RunsBetween({60, 18}, {2, 48})), QStringList("a longer"));
    QVERIFY(page->RunsBetween({60, 20}, {70, 22}).isEmpty());
    QCOMPARE(Texts(page->RunsBetween({0, 0}, {100, 100})).size(), 3);
}

void TestOfdText::theOrderOfThePointsDoesNotMatter()
{
    const IG_TextPage* page = Open(Text("10 10 40 6", "DeltaX=\"g 5 5\"", "letters"));
    QCOMPARE(Texts(page->RunsBetween({30, 12}, {14, 12})), Texts(page->RunsBetween({14, 12}, {30, 12})));
    QVERIFY(!page->RunsBetween({30, 12}, {14, 12}).isEmpty());
}

void TestOfdText::blanksAndPrivateCharactersAreKept()
{
    const IG_TextPage* page = Open(Text("10 10 60 6", "DeltaX=\"g 9 3\"", "&#x20;a&#xE123;&#x20; b&#x20;"));
    const QString expected = QStringLiteral(" a\uE123  b ");
    QCOMPARE(Texts(page->AllRuns()), QStringList(expected));
    QCOMPARE(page->AllGlyphs().size(), expected.size());
    QCOMPARE(Find(*page, QString(QChar(0xE123))).size(), 1);
}

void TestOfdText::aCharacterOfTwoGlyphsHasOneBoxAroundBoth()
{
    const IG_TextPage* page =
        Open("<ofd:TextObject ID=\"1\" Font=\"10\" Size=\"5\" Boundary=\"10 10 80 10\"><ofd:CGTransform "
             "CodePosition=\"0\" CodeCount=\"1\" GlyphCount=\"2\"><ofd:Glyphs>3 4</ofd:Glyphs></ofd:CGTransform>"
             "<ofd:TextCode X=\"0\" Y=\"5\" DeltaX=\"12 12\">AB</ofd:TextCode></ofd:TextObject>");
    const QList<G_TextGlyph> glyphs = page->AllGlyphs();
    QCOMPARE(glyphs.size(), 2);
    QCOMPARE(glyphs.first().text, QStringLiteral("A"));
    QCOMPARE(glyphs.first().rect.left, 10.0F);
    QVERIFY(glyphs.first().rect.right > 22); // the second glyph begins there
    QCOMPARE(glyphs.last().rect.left, 34.0F);
    QVERIFY(glyphs.first().rect.right < 34);
}

void TestOfdText::textOfALayerInsideOfALayerIsThere()
{
    const IG_TextPage* page = Open(Text("10 10 40 6", "DeltaX=\"g 4 5\"", "outer") + "<ofd:Layer ID=\"600\">" +
                                   Text("10 40 40 6", "DeltaX=\"g 4 5\"", "inner") + "</ofd:Layer>");
    QCOMPARE(Texts(page->AllRuns()), QStringList({"outer", "inner"}));
}

void TestOfdText::textWithoutSizeDoesNoHarm()
{
    for (const char* attributes : {"Size=\"0\"", "HScale=\"0\"", "CTM=\"0 0 0 0 0 0\"", "CTM=\"1e30 0 0 1e30 0 0\""}) {
        QByteArray object = Text("10 10 40 6", "DeltaX=\"g 5 5\"", "letter", attributes);
        if (QByteArray(attributes).startsWith("Size"))
            object.replace("Size=\"5\" ", "");
        const IG_TextPage* page = Open(object);
        QString text;
        for (const G_TextGlyph& glyph : page->AllGlyphs())
            text += glyph.text;
        QCOMPARE(text, QStringLiteral("letter"));
        QCOMPARE(Find(*page, "l").size(), 1); // what has no size stands on no line
        page->RunsBetween({0, 0}, {50, 50});
    }
}

void TestOfdText::whatIsTooSmallToReadIsOneRun_data()
{
    QTest::addColumn<QByteArray>("size");
    QTest::newRow("nothing") << QByteArray("0");
    QTest::newRow("no number") << QByteArray("big");
    QTest::newRow("a hundredth of a millimetre") << QByteArray("0.01");
}

void TestOfdText::whatIsTooSmallToReadIsOneRun()
{
    QFETCH(QByteArray, size);
    QByteArray objects = Text("10 10 40 6", "DeltaX=\"g 5 5\"", "letter") + Text("10 20 40 6", "DeltaX=\"5\"", "by");
    const IG_TextPage* page = Open(objects.replace("Size=\"5\"", "Size=\"" + size + "\""));
    QCOMPARE(Texts(page->AllRuns()), (QStringList{"letter", "by"}));
    const CCA_GRect rect = page->AllRuns().first().rect;
    QVERIFY(qAbs(rect.left - 10) < 0.1F && qAbs(rect.right - 35) < 0.1F);
    QCOMPARE(Find(*page, "letter").size(), 1);
    QCOMPARE(Texts(page->RunsBetween({0, 0}, {50, 17})), QStringList("letter"));
}

void TestOfdText::aMatchInTextThatRunsDownHasTheBoxOfItsCharacters()
{
    const IG_TextPage* page =
        Open(Text("40 10 6 30", "DeltaY=\"g 3 6\"", "合同编号") + Text("30 10 6 30", "DeltaY=\"g 3 6\"", "第一二三"));
    const QList<G_TextMatch> inside = Find(*page, QStringLiteral("同编"));
    QCOMPARE(inside.size(), 1);
    QCOMPARE(inside.first().rects.size(), 1);
    const CCA_GRect& rect = inside.first().rects.first();
    QVERIFY(rect.top > 14 && rect.bottom < 29 && rect.Height() > 9);
    const QList<G_TextMatch> across = Find(*page, QStringLiteral("号第"));
    QCOMPARE(across.size(), 1);
    QCOMPARE(across.first().rects.size(), 2);
    QVERIFY(across.first().rects.last().left < across.first().rects.first().left);
}

TETO_TEST_MAIN(TestOfdText)
#include "test_ofd_text.moc"
