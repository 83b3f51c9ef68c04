#include <ofd/model/resources.h>
#include <ofd/package/package.h>
#include <ofd/text/font_face.h>
#include <ofd/text/font_names.h>
#include <ofd/text/font_store.h>
#include <ofd/text/installed_fonts.h>
#include <samples/block_font.h>
#include <samples/block_font_kinds.h>
#include <tests/ofd/document/page_painting.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cmath>

using ofd::FontFace;

class TestOfdFonts : public QObject
{
    Q_OBJECT

private slots:
    void everyKindOfFontDrawsItsGlyphs_data();
    void everyKindOfFontDrawsItsGlyphs();
    void ofACollectionTheNamedFaceIsTaken();
    void mapsOfOtherEncodingsFindTheirCharacters();
    void brokenFontsNeverLeadAstray_data();
    void brokenFontsNeverLeadAstray();
    void fontsAreKnownByTheirOtherNames();
    void wordsOfStyleAreNoPartOfAName_data();
    void wordsOfStyleAreNoPartOfAName();
    void charactersThatABoldFontLacksAreBoldToo();
    void theScriptOfAFontDecidesWhatStandsIn();
    void everyCharacterFindsAFaceThatHasIt_data();
    void everyCharacterFindsAFaceThatHasIt();
    void weightsPickTheFace();
    void aFaceThatTheSystemLeansOrThickensIsLeanedAndThickenedHere();
    void translucentLettersMadeBolderAreOneShape_data();
    void translucentLettersMadeBolderAreOneShape();
    void aBlankThatTheFontLacksIsNotTheBoxOfAMissingGlyph();
    void charactersOfMappingsInAMissingFontAreAllDrawn();
    void clipsOfManyLettersTakeInTheirLines_data();
    void clipsOfManyLettersTakeInTheirLines();
    void missingFontsAreReplacedByWhatLooksLikeThem_data();
    void missingFontsAreReplacedByWhatLooksLikeThem();
};

namespace {

const QStringList BlockName = {QStringLiteral("Block Sample")};

// A page with these objects, for which font 10 is embedded.
QImage PaintWith(const QByteArray& font, const QByteArray& objects)
{
    OfdFile file = OfdFile::WithPage(objects);
    file.Resources("<ofd:Fonts><ofd:Font ID=\"10\" FontName=\"Block Sample\"><ofd:FontFile>font.dat</ofd:FontFile>"
                   "</ofd:Font></ofd:Fonts>");
    file.Set(QStringLiteral("Doc_0/Res/font.dat"), font);
    return PaintFile(file);
}

// Fonts of both kinds of outlines, which run around letters in different directions.
void AddOutlineKinds()
{
    QTest::addColumn<QByteArray>("font");
    QTest::newRow("TrueType") << samples::BlockTrueType();
    QTest::newRow("CFF") << samples::BlockCff();
}

// The largest difference of two pictures, once the ink of the first is thinned.
int FarthestLevels(const QImage& ink, double share, const QImage& other)
{
    double farthest = 0;
    for (int y = 0; y < ink.height(); ++y) {
        for (int x = 0; x < ink.width(); ++x) {
            const double expected = 255 - (255 - qGray(ink.pixel(x, y))) * share;
            farthest = std::max(farthest, std::abs(expected - qGray(other.pixel(x, y))));
        }
    }
    return int(farthest);
}

quint32 Glyph(char letter)
{
    return quint32(samples::BlockGlyph(QLatin1Char(letter)));
}

} // namespace

void TestOfdFonts::everyKindOfFontDrawsItsGlyphs_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("hasMap");
    QTest::addColumn<bool>("hasWidths");
    QTest::addColumn<bool>("isBroken");
    samples::BlockFontTables bare;
    bare.hasCmap = bare.hasNames = false;
    QTest::newRow("TrueType") << samples::BlockTrueType() << true << true << false;
    QTest::newRow("TrueType without cmap, name, OS/2, post") << samples::BlockTrueType(bare) << false << true << false;
    QTest::newRow("OpenType with CFF") << samples::BlockOpenTypeCff() << true << true << false;
    QTest::newRow("bare CFF") << samples::BlockCff() << true << true << false;
    QTest::newRow("Type 1 in digits") << samples::BlockTypeOneText() << true << true << false;
    QTest::newRow("Type 1 in segments") << samples::BlockTypeOneBinary() << true << true << false;
    QTest::newRow("collection") << samples::BlockCollection() << true << true << false;
    for (const char* table : {"head", "maxp", "hhea"})
        QTest::newRow(qPrintable(QStringLiteral("without ") + QLatin1String(table)))
            << samples::BlockWithout(table) << true << true << true;
    QTest::newRow("without hmtx") << samples::BlockWithout("hmtx") << true << false << true;
    QTest::newRow("cut off") << samples::BlockCutOff() << true << true << true;
    for (const char* table : {"post", "name", "OS/2"})
        QTest::newRow(qPrintable(QLatin1String(table) + QStringLiteral(" outside")))
            << samples::BlockWithTableOutside(table) << true << true << true;
    QTest::newRow("cmap outside") << samples::BlockWithTableOutside("cmap") << false << true << true;
}

void TestOfdFonts::everyKindOfFontDrawsItsGlyphs()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, hasMap);
    QFETCH(bool, hasWidths);
    QFETCH(bool, isBroken);
    const std::shared_ptr<FontFace> face = FontFace::FromBytes(bytes, BlockName);
    QVERIFY(face);
    QCOMPARE(face->WasRepaired(), isBroken);
    for (const char letter : {'B', 'L', '8'}) {
        const QRectF box = face->OutlineOf(Glyph(letter)).boundingRect();
        QVERIFY2(qAbs(box.left()) < 0.001 && qAbs(box.right() - 0.5) < 0.001, qPrintable(QString::number(box.right())));
        QVERIFY(qAbs(box.top() + 0.7) < 0.001 && qAbs(box.bottom()) < 0.001);
        QCOMPARE(face->GlyphOf(uint(letter)), hasMap ? Glyph(letter) : 0);
        if (hasWidths)
            QVERIFY(qAbs(face->AdvanceOf(Glyph(letter)) - 0.6) < 0.001);
    }
    QVERIFY(face->OutlineOf(100'000).isEmpty());
}

void TestOfdFonts::ofACollectionTheNamedFaceIsTaken()
{
    const QByteArray bytes = samples::BlockCollection();
    const auto isDrawn = [&](const QStringList& names) {
        return !FontFace::FromBytes(bytes, names)->OutlineOf(Glyph('B')).isEmpty();
    };
    QVERIFY(isDrawn(BlockName));
    QVERIFY(isDrawn({QString(), QStringLiteral("block sample")}));
    QVERIFY(!isDrawn({QStringLiteral("Other Sample")})); // whose glyphs are empty
    QVERIFY(!isDrawn({QStringLiteral("No Such Face")})); // the first
    QVERIFY(!isDrawn({}));
}

void TestOfdFonts::mapsOfOtherEncodingsFindTheirCharacters()
{
    const std::shared_ptr<FontFace> face = FontFace::FromBytes(samples::BlockWithChineseMap());
    QVERIFY(face);
    QCOMPARE(face->GlyphOf(0x56fd), Glyph('A')); // 国
    QCOMPARE(face->GlyphOf(0x4e2d), 0U);
    QCOMPARE(face->GlyphOf(0xac00), 0U); // not in that encoding's two bytes
}

void TestOfdFonts::brokenFontsNeverLeadAstray_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("TrueType") << samples::BlockTrueType();
    QTest::newRow("OpenType with CFF") << samples::BlockOpenTypeCff();
    QTest::newRow("bare CFF") << samples::BlockCff();
    QTest::newRow("Type 1") << samples::BlockTypeOneBinary();
    QTest::newRow("collection") << samples::BlockCollection();
}

void TestOfdFonts::brokenFontsNeverLeadAstray()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(FontFace::FromBytes(bytes));
    const auto isSane = [](const QByteArray& damaged) {
        const std::shared_ptr<FontFace> face = FontFace::FromBytes(damaged, BlockName);
        if (!face)
            return true;
        const QRectF box = face->OutlineOf(Glyph('B')).boundingRect();
        const double advance = face->AdvanceOf(Glyph('B'));
        return std::isfinite(box.width()) && std::isfinite(advance) && face->GetAscent() > 0 &&
               face->GlyphOf('B') < 0x110000;
    };
    for (int length = 0; length < bytes.size(); length += bytes.size() / 200 + 1)
        QVERIFY(isSane(bytes.left(length)));
    for (int at = 0; at < bytes.size(); at += at < 400 ? 1 : 37) {
        QByteArray changed = bytes;
        changed[at] = char(~changed[at]);
        QVERIFY(isSane(changed));
    }
}

void TestOfdFonts::fontsAreKnownByTheirOtherNames()
{
    QVERIFY(ofd::OtherNamesOf(QString::fromUtf8("宋体")).contains(QStringLiteral("SimSun")));
    QVERIFY(ofd::OtherNamesOf(QStringLiteral("simsun")).contains(QString::fromUtf8("宋体")));
    QVERIFY(ofd::OtherNamesOf(QStringLiteral("Times New Roman")).contains(QStringLiteral("Liberation Serif")));
    QVERIFY(ofd::OtherNamesOf(QStringLiteral("KaiTi_GB2312")).contains(QString::fromUtf8("楷体")));
    QVERIFY(ofd::OtherNamesOf(QStringLiteral("No Such Face")).isEmpty());
}

void TestOfdFonts::wordsOfStyleAreNoPartOfAName_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<bool>("bold");
    QTest::addColumn<bool>("italic");
    QTest::newRow("Arial") << QStringLiteral("Arial") << false << false;
    QTest::newRow("Times New Roman") << QStringLiteral("Times New Roman") << false << false;
    QTest::newRow("ABCDEF+Arial-BoldMT") << QStringLiteral("Arial") << true << false;
    QTest::newRow("SimSun,BoldItalic") << QStringLiteral("SimSun") << true << true;
    QTest::newRow("Times New Roman Bold Italic") << QStringLiteral("Times New Roman") << true << true;
    QTest::newRow("Microsoft YaHei Bold") << QStringLiteral("Microsoft YaHei") << true << false;
    QTest::newRow("Courier New Regular") << QStringLiteral("Courier New") << false << false;
    QTest::newRow("Times-Roman") << QStringLiteral("Times-Roman") << false << false;
    QTest::newRow("宋体-粗体") << QStringLiteral("宋体") << true << false;
    QTest::newRow("'SimHei'") << QStringLiteral("SimHei") << false << false;
    QTest::newRow("\"Arial Bold\"") << QStringLiteral("Arial") << true << false;
    QTest::newRow("@SimSun") << QStringLiteral("SimSun") << false << false;
    QTest::newRow("Bold") << QStringLiteral("Bold") << false << false;
    QTest::newRow("Boldly Written Hand") << QStringLiteral("Boldly Written Hand") << false << false;
    QTest::newRow("Some Boldface") << QStringLiteral("Some Boldface") << false << false;
    QTest::newRow("") << QString() << false << false;
}

void TestOfdFonts::wordsOfStyleAreNoPartOfAName()
{
    QFETCH(QString, family);
    QFETCH(bool, bold);
    QFETCH(bool, italic);
    bool isBold = false;
    bool isItalic = false;
    QCOMPARE(ofd::BareFamilyName(QString::fromUtf8(QTest::currentDataTag()), &isBold, &isItalic), family);
    QCOMPARE(isBold, bold);
    QCOMPARE(isItalic, italic);
}

void TestOfdFonts::charactersThatABoldFontLacksAreBoldToo()
{
    ofd::FontStore store;
    ofd::FontResource plain;
    plain.fontName = QStringLiteral("Arial");
    ofd::FontResource bold;
    bold.fontName = QStringLiteral("Arial Bold");
    const auto face = store.GetFallback(0x56fd, &bold, 400);
    QVERIFY(face && face != store.GetFallback(0x56fd, &plain, 400));
    QCOMPARE(face, store.GetFallback(0x56fd, &plain, 700));
}

void TestOfdFonts::theScriptOfAFontDecidesWhatStandsIn()
{
    ofd::FontResource font;
    QCOMPARE(ofd::ScriptOf(font), ofd::FontScript::Simplified);
    font.charset = QStringLiteral("shift-jis");
    QCOMPARE(ofd::ScriptOf(font), ofd::FontScript::Japanese);
    QCOMPARE(ofd::SubstituteFamilies(ofd::FontStyleClass::Song, ofd::FontScript::Japanese).first(),
             QStringLiteral("Noto Serif CJK JP"));
    font.charset = QStringLiteral("unicode");
    font.fontName = QString::fromUtf8("細明體");
    QCOMPARE(ofd::ScriptOf(font), ofd::FontScript::Traditional);
    font.fontName = QStringLiteral("Malgun Gothic");
    QCOMPARE(ofd::ScriptOf(font), ofd::FontScript::Korean);
    QCOMPARE(ofd::ClassifyFont(font), ofd::FontStyleClass::Hei);
}

void TestOfdFonts::everyCharacterFindsAFaceThatHasIt_data()
{
    QTest::addColumn<uint>("code");
    QTest::newRow("Latin") << uint('a');
    QTest::newRow("Chinese") << 0x56fdU;
    QTest::newRow("a rare character") << 0x20bb7U;
    QTest::newRow("Hangul") << 0xac00U;
    QTest::newRow("Kana") << 0x3042U;
    QTest::newRow("Greek") << 0x3b1U;
}

void TestOfdFonts::everyCharacterFindsAFaceThatHasIt()
{
    QFETCH(uint, code);
    for (const auto style : {ofd::FontStyleClass::Song, ofd::FontStyleClass::Hei, ofd::FontStyleClass::Sans}) {
        const ofd::InstalledFont font = ofd::FindInstalledFontFor(code, ofd::SubstituteFamilies(style), 400);
        QVERIFY(font.face);
        QVERIFY(font.face->GlyphOf(code) != 0);
    }
}

void TestOfdFonts::weightsPickTheFace()
{
    const ofd::InstalledFont regular = ofd::FindInstalledFont(QStringLiteral("Liberation Sans"), 400, false);
    const ofd::InstalledFont bold = ofd::FindInstalledFont(QStringLiteral("Liberation Sans"), 700, false);
    QVERIFY(regular.face && bold.face);
    QVERIFY(!regular.isBold && bold.isBold);
    QVERIFY(regular.face != bold.face);
    QVERIFY(ofd::FindInstalledFont(QStringLiteral("Liberation Sans"), 400, true).isItalic);
    QVERIFY(!ofd::FindInstalledFont(QStringLiteral("No Such Face"), 400, false).face);
}

void TestOfdFonts::aFaceThatTheSystemLeansOrThickensIsLeanedAndThickenedHere()
{
    const QString upright = QStringLiteral("Noto Sans CJK SC"); // has no italic face, and bold ones
    const ofd::InstalledFont leaned = ofd::FindInstalledFont(upright, 700, true);
    QVERIFY(leaned.face);
    QVERIFY(!leaned.isItalic && leaned.isBold);
    const ofd::InstalledFont thickened = ofd::FindInstalledFont(QStringLiteral("Droid Sans Fallback"), 700, false);
    QVERIFY(thickened.face);
    QVERIFY(!thickened.isBold); // it has one weight

    QTemporaryDir folder;
    const auto package = ofd::Package::Open(OfdFile::WithPages(1).Write(folder.filePath(QStringLiteral("page.ofd"))));
    QVERIFY(package);
    ofd::FontResource font;
    font.fontName = QStringLiteral("黑体");
    ofd::FontStore fonts;
    QVERIFY(fonts.GetFont(*package, &font, 400, true).needsSlanting);
    QVERIFY(!fonts.GetFont(*package, &font, 400, false).needsSlanting);
}

void TestOfdFonts::translucentLettersMadeBolderAreOneShape_data()
{
    AddOutlineKinds();
}

void TestOfdFonts::translucentLettersMadeBolderAreOneShape()
{
    QFETCH(QByteArray, font);
    const auto letters = [&font](const QByteArray& alpha) {
        return PaintWith(font, TextObject("Size=\"40\" Weight=\"700\" Boundary=\"10 10 80 80\"",
                                          "<ofd:FillColor Value=\"0 0 0\" Alpha=\"" + alpha +
                                              "\"/><ofd:TextCode X=\"5\" Y=\"50\" DeltaX=\"30\">LI</ofd:TextCode>"));
    };
    const QImage opaque = letters("255");
    QVERIFY(InkBox(opaque).height() > 28); // seven tenths of the size and the line around it
    QVERIFY(FarthestLevels(opaque, 128 / 255.0, letters("128")) <= 30);
}

void TestOfdFonts::aBlankThatTheFontLacksIsNotTheBoxOfAMissingGlyph()
{
    samples::BlockFontTables tables;
    tables.hasCmap = false;
    const QByteArray font = samples::BlockTrueType(tables);
    const auto letter = [](int place, char letter) {
        return "<ofd:CGTransform CodePosition=\"" + QByteArray::number(place) + "\"><ofd:Glyphs>" +
               QByteArray::number(Glyph(letter)) + "</ofd:Glyphs></ofd:CGTransform>";
    };
    const auto text = [&](const QByteArray& codes) {
        return PaintWith(font, TextObject("Size=\"20\" Boundary=\"10 10 80 40\"", codes));
    };
    const QImage blank =
        text(letter(0, 'L') + letter(2, 'I') + "<ofd:TextCode X=\"5\" Y=\"25\" DeltaX=\"20 20\">L I</ofd:TextCode>");
    QVERIFY(InkBox(blank).width() > 40);
    QCOMPARE(blank, text(letter(0, 'L') + "<ofd:TextCode X=\"5\" Y=\"25\">L</ofd:TextCode>" + letter(0, 'I') +
                         "<ofd:TextCode X=\"45\" Y=\"25\">I</ofd:TextCode>"));
}

void TestOfdFonts::charactersOfMappingsInAMissingFontAreAllDrawn()
{
    const auto mapping = [](const QByteArray& counts, const QByteArray& glyphs) {
        return "<ofd:CGTransform CodePosition=\"0\" " + counts + "><ofd:Glyphs>" + glyphs +
               "</ofd:Glyphs></ofd:CGTransform>";
    };
    const auto code = [](const QByteArray& x, const QByteArray& deltas, const QByteArray& text) {
        return "<ofd:TextCode X=\"" + x + "\" Y=\"25\" " + deltas + ">" + text + "</ofd:TextCode>";
    };
    const auto paint = [](const QByteArray& codes) {
        return PaintPage(TextObject("Size=\"10\" Boundary=\"10 10 80 40\"", codes));
    };
    const QByteArray twoInOne = mapping("CodeCount=\"2\" GlyphCount=\"1\"", "5");
    const QImage two = paint(code("5", {}, "HI"));
    QVERIFY(InkBox(two).width() > 8);
    QCOMPARE(paint(twoInOne + code("5", {}, "HI")), two);
    QCOMPARE(paint(twoInOne + code("5", "DeltaX=\"30\"", "HIM")), paint(code("5", {}, "HI") + code("35", {}, "M")));
    // They fit the room that was left for their glyph.
    QVERIFY(InkBox(paint(twoInOne + code("5", "DeltaX=\"6\"", "HI"))).width() < 0.8 * InkBox(two).width());
    // And the other way round, which leaves places empty.
    QCOMPARE(paint(mapping("CodeCount=\"1\" GlyphCount=\"3\"", "5 6 7") + code("5", "DeltaX=\"10 9 8\"", "HI")),
             paint(code("5", {}, "H") + code("32", {}, "I")));
}

void TestOfdFonts::clipsOfManyLettersTakeInTheirLines_data()
{
    AddOutlineKinds();
}

void TestOfdFonts::clipsOfManyLettersTakeInTheirLines()
{
    QFETCH(QByteArray, font);
    const QByteArray how = "Size=\"12\" Stroke=\"true\" LineWidth=\"1.2\" ";
    const QByteArray code = "<ofd:TextCode X=\"5\" Y=\"50\" DeltaX=\"g 19 4\">BBBBBBBBBBBBBBBBBBBB</ofd:TextCode>";
    const QImage letters =
        PaintWith(font, TextObject(how + "Boundary=\"0 0 100 100\"", "<ofd:StrokeColor Value=\"0 0 0\"/>" + code));
    const QImage clipped = PaintWith(
        font, "<ofd:PathObject ID=\"1\" Boundary=\"0 0 100 100\" Fill=\"true\" Stroke=\"false\"><ofd:Clips><ofd:Clip>"
              "<ofd:Area><ofd:Text Font=\"10\" Boundary=\"0 0 100 100\" " +
                  how + ">" + code +
                  "</ofd:Text></ofd:Area></ofd:Clip></ofd:Clips><ofd:FillColor Value=\"0 0 0\"/><ofd:AbbreviatedData>"
                  "M 0 0 L 100 0 L 100 100 L 0 100 C</ofd:AbbreviatedData></ofd:PathObject>");
    QVERIFY(InkBox(letters).width() > 70);
    QVERIFY(FarthestLevels(letters, 1, clipped) <= 60);
}

void TestOfdFonts::missingFontsAreReplacedByWhatLooksLikeThem_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("weight");
    QTest::addColumn<QString>("expected");
    QTest::newRow("another name") << QStringLiteral("ArialMT") << 400 << QStringLiteral("Liberation Sans");
    QTest::newRow("bold by weight") << QStringLiteral("Arial") << 700 << QStringLiteral("Liberation Sans");
    QTest::newRow("bold by name") << QStringLiteral("ABCDEF+Arial-BoldMT") << 400 << QStringLiteral("Liberation Sans");
    QTest::newRow("black face") << QString::fromUtf8("黑体") << 400 << QStringLiteral("Noto Sans CJK SC");
    QTest::newRow("song face") << QStringLiteral("SimSun") << 400 << QStringLiteral("Noto Serif CJK SC");
    QTest::newRow("traditional") << QString::fromUtf8("細明體") << 400 << QStringLiteral("Noto Serif CJK TC");
    QTest::newRow("Japanese") << QStringLiteral("MS Gothic") << 400 << QStringLiteral("Noto Sans CJK JP");
    QTest::newRow("nobody knows it") << QStringLiteral("No Such Face") << 400 << QStringLiteral("Noto Serif CJK SC");
}

void TestOfdFonts::missingFontsAreReplacedByWhatLooksLikeThem()
{
    QFETCH(QString, name);
    QFETCH(int, weight);
    QFETCH(QString, expected);
    const QTemporaryDir folder;
    const auto package = ofd::Package::Open(OfdFile::WithPages(1).Write(folder.filePath(QStringLiteral("page.ofd"))));
    ofd::FontResource font;
    font.fontName = name;
    ofd::FontStore store;
    const ofd::FontChoice choice = store.GetFont(*package, &font, weight, false);
    QVERIFY(choice.face && !choice.isEmbedded);
    const bool isBold = weight == 700 || name.contains(QLatin1String("Bold"));
    QCOMPARE(choice.face, ofd::FindInstalledFont(expected, isBold ? 700 : 400, false).face);
    QVERIFY(!choice.needsEmboldening);
    const auto fallback = store.GetFallback(0x56fd, &font, weight);
    QVERIFY(fallback && fallback->GlyphOf(0x56fd));
    QCOMPARE(store.GetFallback(0x56fd, &font, weight), fallback);
}

TETO_TEST_MAIN(TestOfdFonts)

#include "test_ofd_fonts.moc"
