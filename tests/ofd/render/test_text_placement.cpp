#include <samples/block_font.h>
#include <tests/ofd/document/page_painting.h>
#include <tests/support/test_main.h>

#include <QtTest>

// Where the glyphs of a text stand, shown by an embedded font.
class TestTextPlacement : public QObject
{
    Q_OBJECT

private slots:
    void distancesAreReadInEveryWriting_data();
    void distancesAreReadInEveryWriting();
    void theHorizontalScaleNarrowsGlyphsAndNotTheirDistances();
    void laterPiecesStandWhereTheEarlierBeganUnlessTheySay();
    void withoutDistancesOnAnAxisGlyphsStayOnIt();
    void withoutAnyDistancesTheFontTellsThem();
    void lineEndsAndTabsAreNoCharactersButBlanksAre();
    void distancesCountGlyphsAndNotCharacters();
    void mappingsHoldForTheNextPieceOnly();
};

namespace {

QImage PaintText(const QByteArray& codes, const QByteArray& attributes = {})
{
    OfdFile file = OfdFile::WithPage("<ofd:TextObject ID=\"1\" Font=\"10\" Size=\"10\" Boundary=\"10 10 80 80\" " +
                                     attributes + ">" + codes + "</ofd:TextObject>");
    file.Resources("<ofd:Fonts><ofd:Font ID=\"10\" FontName=\"Block Sample\"><ofd:FontFile>font.dat</ofd:FontFile>"
                   "</ofd:Font></ofd:Fonts>");
    file.Set(QStringLiteral("Doc_0/Res/font.dat"), samples::BlockTrueType());
    return PaintFile(file);
}

QByteArray Code(const QByteArray& place, const QByteArray& text)
{
    return "<ofd:TextCode " + place + ">" + text + "</ofd:TextCode>";
}

QByteArray Mapping(const QByteArray& counts, const QByteArray& letters)
{
    QByteArray glyphs;
    for (const char letter : letters)
        glyphs += QByteArray::number(samples::BlockGlyph(QLatin1Char(letter))) + ' ';
    return "<ofd:CGTransform " + counts + "><ofd:Glyphs>" + glyphs + "</ofd:Glyphs></ofd:CGTransform>";
}

} // namespace

void TestTextPlacement::distancesAreReadInEveryWriting_data()
{
    QTest::addColumn<QByteArray>("deltas");
    for (const char* deltas :
         {"12 12 12", "12 12 12 12 99", "12", "g 3 12", "  g  3   12 ", "g3 12", "G 3 12", "12 g 2 12", "g 2 12 12",
          "12,12,12", "g 99999999 12", "g 2000000000 12", "12.0 1.2e1 +12", "g 0 5 12", "12 g 1"})
        QTest::newRow(deltas) << QByteArray(deltas);
}

void TestTextPlacement::distancesAreReadInEveryWriting()
{
    QFETCH(QByteArray, deltas);
    const QImage apart = PaintText(Code("X=\"0\" Y=\"20\"", "L") + Code("X=\"12\" Y=\"20\"", "I") +
                                   Code("X=\"24\" Y=\"20\"", "H") + Code("X=\"36\" Y=\"20\"", "B"));
    QVERIFY(InkBox(apart).width() > 36);
    QCOMPARE(PaintText(Code("X=\"0\" Y=\"20\" DeltaX=\"" + deltas + "\"", "LIHB")), apart);
}

void TestTextPlacement::theHorizontalScaleNarrowsGlyphsAndNotTheirDistances()
{
    const QByteArray half = "HScale=\"0.5\"";
    const QRectF whole = InkBox(PaintText(Code("X=\"0\" Y=\"20\"", "H")));
    const QRectF narrow = InkBox(PaintText(Code("X=\"0\" Y=\"20\"", "H"), half));
    QCOMPARE(narrow.size(), QSizeF(whole.width() / 2, whole.height()));
    QCOMPARE(PaintText(Code("X=\"0\" Y=\"20\" DeltaX=\"12\"", "HL"), half),
             PaintText(Code("X=\"0\" Y=\"20\"", "H") + Code("X=\"12\" Y=\"20\"", "L"), half));
}

void TestTextPlacement::laterPiecesStandWhereTheEarlierBeganUnlessTheySay()
{
    const QByteArray first = Code("X=\"8\" Y=\"20\" DeltaX=\"12\"", "HL");
    QCOMPARE(PaintText(first + Code("Y=\"40\"", "I")), PaintText(first + Code("X=\"8\" Y=\"40\"", "I")));
    QCOMPARE(PaintText(first + Code("X=\"40\"", "I")), PaintText(first + Code("X=\"40\" Y=\"20\"", "I")));
    QCOMPARE(PaintText(Code({}, "I"), "CTM=\"1 0 0 1 8 20\""), PaintText(Code("X=\"8\" Y=\"20\"", "I")));
}

void TestTextPlacement::withoutDistancesOnAnAxisGlyphsStayOnIt()
{
    QCOMPARE(PaintText(Code("X=\"8\" Y=\"20\" DeltaY=\"12 -5\"", "HLI")),
             PaintText(Code("X=\"8\" Y=\"20\"", "H") + Code("X=\"8\" Y=\"32\"", "L") + Code("X=\"8\" Y=\"27\"", "I")));
    QCOMPARE(PaintText(Code("X=\"8\" Y=\"20\" DeltaX=\"12\" DeltaY=\"3\"", "HL")),
             PaintText(Code("X=\"8\" Y=\"20\"", "H") + Code("X=\"20\" Y=\"23\"", "L")));
}

void TestTextPlacement::withoutAnyDistancesTheFontTellsThem()
{
    const double step = 10.0 * samples::kBlockAdvance / 1000;
    QCOMPARE(PaintText(Code("X=\"8\" Y=\"20\"", "HL")),
             PaintText(Code("X=\"8\" Y=\"20\" DeltaX=\"" + QByteArray::number(step) + "\"", "HL")));
    QCOMPARE(
        PaintText(Code("X=\"8\" Y=\"20\" DeltaX=\"\"", "HL"), "HScale=\"0.5\""),
        PaintText(Code("X=\"8\" Y=\"20\" DeltaX=\"" + QByteArray::number(step / 2) + "\"", "HL"), "HScale=\"0.5\""));
}

void TestTextPlacement::lineEndsAndTabsAreNoCharactersButBlanksAre()
{
    const QImage text = PaintText(Code("X=\"8\" Y=\"20\" DeltaX=\"12 12\"", "HLI"));
    QCOMPARE(PaintText(Code("X=\"8\" Y=\"20\" DeltaX=\"12 12\"", "\n\tH\r\nL&#10;&#9;I\n")), text);
    QCOMPARE(PaintText(Code("X=\"8\" Y=\"20\" DeltaX=\"12 12\"", "<![CDATA[HL]]>I")), text);
    QCOMPARE(PaintText(Code("X=\"2\" Y=\"20\" DeltaX=\"6 12 6 6\"", " HL I")),
             PaintText(Code("X=\"8\" Y=\"20\" DeltaX=\"12 12\"", "HLI")));
}

void TestTextPlacement::distancesCountGlyphsAndNotCharacters()
{
    const QImage three = PaintText(Code("X=\"8\" Y=\"20\" DeltaX=\"10 20\"", "LHI"));
    const QByteArray place = "X=\"8\" Y=\"20\" DeltaX=\"10 20\"";
    QCOMPARE(PaintText(Mapping("CodePosition=\"0\" CodeCount=\"1\" GlyphCount=\"2\"", "LH") + Code(place, "AI")),
             three);
    QCOMPARE(PaintText(Mapping("CodePosition=\"1\" CodeCount=\"3\" GlyphCount=\"1\"", "H") + Code(place, "LABCI")),
             three);
    QCOMPARE(PaintText(Mapping("CodePosition=\"0\" CodeCount=\"3\" GlyphCount=\"3\"", "LHI") + Code(place, "ABC")),
             three);
    // What lies outside of the text, or in another mapping, is left out.
    QCOMPARE(PaintText(Mapping("CodePosition=\"1\"", "H") + Mapping("CodePosition=\"1\"", "B") +
                       Mapping("CodePosition=\"7\"", "B") + Mapping("CodePosition=\"-3\"", "B") + Code(place, "LAI")),
             three);
}

void TestTextPlacement::mappingsHoldForTheNextPieceOnly()
{
    QCOMPARE(
        PaintText(Mapping("CodePosition=\"0\"", "H") + Code("X=\"8\" Y=\"20\"", "A") + Code("X=\"20\" Y=\"20\"", "L")),
        PaintText(Code("X=\"8\" Y=\"20\"", "H") + Code("X=\"20\" Y=\"20\"", "L")));
}

TETO_TEST_MAIN(TestTextPlacement)

#include "test_text_placement.moc"
