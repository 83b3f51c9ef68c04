#include <ofd/ofd_document.h>
#include <ofd/package/limits.h>
#include <ofd/parse/seal_reader.h>
#include <samples/der.h>
#include <samples/picture_kinds.h>
#include <samples/pictures.h>
#include <tests/ofd/document/page_painting.h>
#include <tests/support/test_main.h>

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

using samples::SealLayout;

class TestOfdSeals : public QObject
{
    Q_OBJECT

private slots:
    void aSealIsPaintedStretchedToItsBoundaryAndCutToItsClip();
    void sealsOfEveryLayoutAreFound_data();
    void sealsOfEveryLayoutAreFound();
    void aSealThatHoldsAnotherDocumentShowsItsFirstPage();
    void theSealsOfADocumentInsideASealAreNotPainted();
    void aDocumentInsideASealCountsForWhatItTakesOnThePage();
    void pictureSealsCountForWhatTheyCoverOfThePage();
    void sealsLieAboveAnnotationsAndShowWithoutThem();
    void severalStampsOfOneSealArePaintedOnTheirPages();
    void aSignatureThatIsListedTwiceIsPaintedOnce();
    void sealsBeyondTheLimitOfAPageAreLeftOut();
    void aSealThatCannotBeReadLeavesThePageAsItIs();
    void problemsOfSealsNameTheirPartsButAreNotThoseOfTheDocumentInside();
    void brokenSealDataNeverLeadAstray();
    void deepSealDataAreNotFollowed();
    void sealsWhoseEndsAreMarkedAreRead();
    void manyMarkedEndsInEachOtherCostNoTime();
};

namespace {

const QString SealPart = QStringLiteral("Doc_0/Signs/Seal.esl");
const QString ValuePart = QStringLiteral("Doc_0/Signs/Value.dat");

// Gives the file a signature with these stamps; the signature names both parts, whether or not they are there.
OfdFile& Sign(OfdFile& file, const QByteArray& stamps)
{
    QByteArray entry = file.Part(QStringLiteral("OFD.xml"));
    entry.replace("</ofd:DocBody>", "<ofd:Signatures>Doc_0/Signs/Signatures.xml</ofd:Signatures></ofd:DocBody>");
    file.Set(QStringLiteral("OFD.xml"), entry);
    file.Set(QStringLiteral("Doc_0/Signs/Signatures.xml"),
             Element("Signatures", "<ofd:Signature ID=\"1\" Type=\"Seal\" BaseLoc=\"Signature.xml\"/>"));
    return file.Set(QStringLiteral("Doc_0/Signs/Signature.xml"),
                    Element("Signature", "<ofd:SignedInfo>" + stamps +
                                             "<ofd:Seal><ofd:BaseLoc>Seal.esl</ofd:BaseLoc></ofd:Seal></ofd:SignedInfo>"
                                             "<ofd:SignedValue>Value.dat</ofd:SignedValue>"));
}

QByteArray Stamp(const QByteArray& boundary, const QByteArray& more = {}, const QByteArray& page = "1")
{
    return "<ofd:StampAnnot ID=\"s\" PageRef=\"" + page + "\" Boundary=\"" + boundary + "\" " + more + "/>";
}

QByteArray PackedFile(const OfdFile& file)
{
    const QTemporaryDir folder;
    return BytesOf(file.Write(folder.filePath(QStringLiteral("inner.ofd"))));
}

bool IsQuadrantsAt(const QImage& page, double x, double y, double width, double height)
{
    return IsNear(ColourAt(page, x + width / 4, y + height / 4), QColor(220, 40, 40), 8) &&
           IsNear(ColourAt(page, x + width * 3 / 4, y + height / 4), QColor(40, 160, 60), 8) &&
           IsNear(ColourAt(page, x + width / 4, y + height * 3 / 4), QColor(40, 80, 220), 8) &&
           IsNear(ColourAt(page, x + width * 3 / 4, y + height * 3 / 4), QColor(240, 200, 40), 8);
}

// The elements of DER data with every end that can be marked in place of its length, and strings of octets in pieces.
QByteArray WithMarkedEnds(const QByteArray& der)
{
    constexpr int pieceBytes = 100;
    const QByteArray mark(2, '\0');
    QByteArray marked;
    for (int at = 0; at < der.size();) {
        const int begin = at;
        const char tag = der.at(at++);
        int length = quint8(der.at(at++));
        if (length & 0x80) {
            const int count = length & 0x7f;
            length = 0;
            for (int i = 0; i < count; ++i)
                length = length << 8 | quint8(der.at(at++));
        }
        const QByteArray content = der.mid(at, length);
        at += length;
        if (tag == '\x30') {
            marked += QByteArray("\x30\x80", 2) + WithMarkedEnds(content) + mark;
        } else if (tag == '\x04' && length > pieceBytes) {
            marked += QByteArray("\x24\x80", 2);
            for (int i = 0; i < length; i += pieceBytes)
                marked += samples::Der(tag, content.mid(i, pieceBytes));
            marked += mark;
        } else {
            marked += der.mid(begin, at - begin);
        }
    }
    return marked;
}

// Cut anywhere it holds no picture; with any byte changed none that is larger than it.
void VerifyDamageIsHarmless(const QByteArray& seal)
{
    for (int length = 0; length < seal.size(); ++length)
        QVERIFY(!ofd::FindSealPicture(seal.left(length)));
    for (int at = 0; at < seal.size(); ++at) {
        for (const char mask : {'\x01', '\x7f', '\x80', '\xff'}) {
            QByteArray changed = seal;
            changed[at] = char(changed[at] ^ mask);
            const auto found = ofd::FindSealPicture(changed);
            QVERIFY(!found || found->bytes.size() <= changed.size());
        }
    }
}

} // namespace

void TestOfdSeals::aSealIsPaintedStretchedToItsBoundaryAndCutToItsClip()
{
    OfdFile file = OfdFile::WithPage(FilledSquare(10, 10, "Value=\"0 0 0\""));
    file.Set(SealPart, samples::SealData("png", samples::QuadrantsPng()));
    const QImage whole = PaintFile(Sign(file, Stamp("10 10 60 20")));
    QVERIFY(IsQuadrantsAt(whole, 10, 10, 60, 20));
    QCOMPARE(ColourAt(whole, 9.5, 20), QColor(Qt::white));
    QCOMPARE(ColourAt(whole, 70.5, 20), QColor(Qt::white));
    QCOMPARE(ColourAt(whole, 12, 29.8).red() < 100, true); // above the black square, which stays nowhere in sight
    const QImage slice = PaintFile(Sign(file, Stamp("40 50 40 40", "Clip=\"20 0 20 40\"")));
    QCOMPARE(ColourAt(slice, 50, 60), QColor(Qt::white)); // what the clip leaves out
    QVERIFY(IsNear(ColourAt(slice, 70, 60), QColor(40, 160, 60), 8));
    QVERIFY(IsNear(ColourAt(slice, 70, 80), QColor(240, 200, 40), 8));
}

void TestOfdSeals::sealsOfEveryLayoutAreFound_data()
{
    QTest::addColumn<QByteArray>("seal");
    QTest::addColumn<QByteArray>("value");
    const QByteArray present = samples::SealData("png", samples::QuadrantsPng());
    const QByteArray former = samples::SealData("PNG", samples::QuadrantsPng(), SealLayout::Former);
    const QByteArray digest(32, 'd');
    QTest::newRow("present layout") << present << QByteArray("no value");
    QTest::newRow("former layout") << former << QByteArray("no value");
    QTest::newRow("in the signed value") << QByteArray() << samples::SignedValueData(present, digest);
    QTest::newRow("former, in the signed value") << QByteArray() << samples::SignedValueData(former, digest);
    QTest::newRow("the seal is broken, the copy is not")
        << present.left(50) << samples::SignedValueData(present, digest);
    QTest::newRow("wrapped in octets") << samples::DerSequence(samples::Der(0x04, present)) << QByteArray();
    QTest::newRow("ends are marked") << WithMarkedEnds(present) << QByteArray();
    QTest::newRow("ends are marked, in the signed value")
        << QByteArray() << WithMarkedEnds(samples::SignedValueData(former, digest));
    QTest::newRow("BMP") << samples::SealData("bmp", samples::QuadrantsBmp()) << QByteArray();
    QTest::newRow("JPEG called PNG") << samples::SealData("png", samples::QuadrantsJpeg()) << QByteArray();
}

void TestOfdSeals::sealsOfEveryLayoutAreFound()
{
    QFETCH(QByteArray, seal);
    QFETCH(QByteArray, value);
    OfdFile file = OfdFile::WithPage({});
    if (!seal.isEmpty())
        file.Set(SealPart, seal);
    if (!value.isEmpty())
        file.Set(ValuePart, value);
    QVERIFY(IsQuadrantsAt(PaintFile(Sign(file, Stamp("20 20 40 40"))), 20, 20, 40, 40));
}

void TestOfdSeals::aSealThatHoldsAnotherDocumentShowsItsFirstPage()
{
    // The inner page has 100 by 100 mm with a red square in its upper left; transparent everywhere else.
    const QByteArray inner = PackedFile(
        OfdFile::WithPage(FilledSquare(0, 0, "Value=\"255 0 0\"") + FilledSquare(80, 80, "Value=\"0 0 255\"")));
    OfdFile file = OfdFile::WithPage(FilledSquare(40, 40, "Value=\"0 255 0\""));
    file.Set(SealPart, samples::SealData("ofd", inner));
    const QImage page = PaintFile(Sign(file, Stamp("20 20 50 50")));
    QCOMPARE(ColourAt(page, 25, 25), QColor(Qt::red)); // half as large
    QCOMPARE(ColourAt(page, 31, 25), QColor(Qt::white));
    QCOMPARE(ColourAt(page, 65, 65), QColor(Qt::blue));
    QCOMPARE(ColourAt(page, 50, 50), QColor(0, 255, 0)); // shows through
    QCOMPARE(ColourAt(page, 71, 71), QColor(Qt::white));
}

void TestOfdSeals::theSealsOfADocumentInsideASealAreNotPainted()
{
    OfdFile inner = OfdFile::WithPage(FilledSquare(0, 0, "Value=\"255 0 0\""));
    inner.Set(SealPart, samples::SealData("png", samples::QuadrantsPng()));
    const QByteArray packed = PackedFile(Sign(inner, Stamp("50 50 40 40")));
    OfdFile file = OfdFile::WithPage({});
    file.Set(SealPart, samples::SealData("ofd", packed));
    const QImage page = PaintFile(Sign(file, Stamp("0 0 100 100")));
    QCOMPARE(ColourAt(page, 10, 10), QColor(Qt::red));
    QCOMPARE(ColourAt(page, 60, 60), QColor(Qt::white));
}

void TestOfdSeals::aDocumentInsideASealCountsForWhatItTakesOnThePage()
{
    // A page of one millimetre, which would ask for next to nothing, stretched to all of the page again and again.
    const QByteArray square = "<ofd:PathObject ID=\"1\" Boundary=\"0 0 1 1\" Fill=\"true\" Stroke=\"false\" "
                              "BlendMode=\"Multiply\"><ofd:FillColor Value=\"255 255 255\"/><ofd:AbbreviatedData>"
                              "M 0 0 L 1 0 L 1 1 L 0 1 C</ofd:AbbreviatedData></ofd:PathObject>";
    QByteArray red = square;
    red.replace("255 255 255", "255 0 0");
    const auto sealed = [](const QByteArray& objects) {
        const QString part = QStringLiteral("Doc_0/Document.xml");
        OfdFile inner = OfdFile::WithPage(objects);
        inner.Set(part, inner.Part(part).replace("0 0 100 100", "0 0 1 1"));
        OfdFile file = OfdFile::WithPage({});
        file.Set(SealPart, samples::SealData("ofd", PackedFile(inner)));
        G_RenderRequest request;
        request.pixelsPerMm = 0.5;
        return PaintFile(Sign(file, Stamp("0 0 100 100")), request);
    };
    QCOMPARE(QColor(sealed(square.repeated(10) + red).pixel(25, 25)), QColor(Qt::red));
    QCOMPARE(QColor(sealed(square.repeated(6000) + red).pixel(25, 25)), QColor(Qt::white)); // behind too much
}

void TestOfdSeals::pictureSealsCountForWhatTheyCoverOfThePage()
{
    const auto sealed = [](int times) {
        const QString part = QStringLiteral("Doc_0/Document.xml");
        OfdFile file = OfdFile::WithPage({});
        file.Set(part, file.Part(part).replace("0 0 100 100", "0 0 2000 2000"));
        file.Set(SealPart, samples::SealData("png", samples::QuadrantsPng()));
        G_RenderRequest request;
        request.pixelsPerMm = 0.05;
        QByteArray stamps;
        for (int i = 0; i < times; ++i)
            stamps += Stamp("0 0 2000 " + QByteArray::number(2000 + i));
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("large.ofd"));
        Sign(file, stamps + Stamp("1000 1000 1000 1000")).Write(path);
        return ofd::OfdDocument::Open(path).document->Renderer()->RenderPage(request).image.pixelColor(60, 60);
    };
    const QColor upperLeft(220, 40, 40), lowerRight(240, 200, 40);
    QVERIFY(IsNear(sealed(5), upperLeft, 8));
    QVERIFY(IsNear(sealed(20), lowerRight, 8)); // the last one would be too much
}

void TestOfdSeals::sealsLieAboveAnnotationsAndShowWithoutThem()
{
    OfdFile file = OfdFile::WithPage({});
    file.Tail("<ofd:Annotations>Annotations.xml</ofd:Annotations>");
    file.Set(QStringLiteral("Doc_0/Annotations.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>Annot.xml</ofd:FileLoc></ofd:Page>"));
    file.Set(QStringLiteral("Doc_0/Annot.xml"),
             Element("PageAnnot", "<ofd:Annot ID=\"7\" Type=\"Stamp\"><ofd:Appearance Boundary=\"20 20 60 60\">" +
                                      FilledSquare(0, 0, "Value=\"0 0 0\"") + FilledSquare(40, 0, "Value=\"0 0 0\"") +
                                      "</ofd:Appearance></ofd:Annot>"));
    file.Set(SealPart, samples::SealData("png", samples::QuadrantsPng()));
    Sign(file, Stamp("20 20 20 20"));
    const QImage with = PaintFile(file);
    QVERIFY(IsQuadrantsAt(with, 20, 20, 20, 20));
    QCOMPARE(ColourAt(with, 70, 30), QColor(Qt::black)); // the rest of the annotation
    G_RenderRequest request;
    request.withAnnotations = false;
    const QImage without = PaintFile(file, request);
    QVERIFY(IsQuadrantsAt(without, 20, 20, 20, 20));
    QCOMPARE(ColourAt(without, 70, 30), QColor(Qt::white));
}

void TestOfdSeals::severalStampsOfOneSealArePaintedOnTheirPages()
{
    OfdFile file = OfdFile::WithPages(2);
    file.Set(SealPart, samples::SealData("png", samples::QuadrantsPng()));
    Sign(file, Stamp("0 0 20 20") + Stamp("60 60 20 20") + Stamp("40 40 20 20", {}, "2") +
                   Stamp("10 10 20 20", {}, "99") + Stamp("10 10 0 20"));
    const QImage first = PaintFile(file);
    QVERIFY(IsQuadrantsAt(first, 0, 0, 20, 20));
    QVERIFY(IsQuadrantsAt(first, 60, 60, 20, 20));
    QCOMPARE(ColourAt(first, 45, 45), QColor(Qt::white));
    G_RenderRequest request;
    request.pageIndex = 1;
    const QImage second = PaintFile(file, request);
    QVERIFY(IsQuadrantsAt(second, 40, 40, 20, 20));
    QCOMPARE(ColourAt(second, 5, 5), QColor(Qt::white));
}

void TestOfdSeals::aSignatureThatIsListedTwiceIsPaintedOnce()
{
    QImage half(16, 16, QImage::Format_ARGB32);
    half.fill(QColor(0, 0, 0, 128));
    QBuffer png;
    QVERIFY(half.save(&png, "PNG"));
    OfdFile file = OfdFile::WithPage({});
    file.Set(SealPart, samples::SealData("png", png.data()));
    Sign(file, Stamp("20 20 40 40"));
    const QByteArray once = "<ofd:Signature ID=\"1\" Type=\"Seal\" BaseLoc=\"Signature.xml\"/>";
    file.Set(QStringLiteral("Doc_0/Signs/Signatures.xml"), Element("Signatures", once + once));
    QVERIFY(IsNear(ColourAt(PaintFile(file), 40, 40), QColor(127, 127, 127)));
}

void TestOfdSeals::sealsBeyondTheLimitOfAPageAreLeftOut()
{
    OfdFile file = OfdFile::WithPages(2);
    file.Set(SealPart, samples::SealData("png", samples::QuadrantsPng()));
    QByteArray stamps;
    for (int i = 0; i < ofd::limits::MaxStampsOnPage; ++i)
        stamps += Stamp("0 0 20 20");
    Sign(file, stamps + Stamp("40 40 20 20") + Stamp("40 40 20 20", {}, "2"));
    const QImage first = PaintFile(file);
    QVERIFY(IsQuadrantsAt(first, 0, 0, 20, 20));
    QCOMPARE(ColourAt(first, 45, 45), QColor(Qt::white));
    G_RenderRequest request;
    request.pageIndex = 1;
    QVERIFY(IsQuadrantsAt(PaintFile(file, request), 40, 40, 20, 20));
}

void TestOfdSeals::aSealThatCannotBeReadLeavesThePageAsItIs()
{
    const QByteArray seal = samples::SealData("png", samples::QuadrantsPng());
    for (const QByteArray& bytes : {QByteArray("no seal"), seal.left(seal.size() / 2), samples::SealData("png", "none"),
                                    samples::SealData("ofd", "PK no archive")}) {
        OfdFile file = OfdFile::WithPage(FilledSquare(10, 10, "Value=\"255 0 0\""));
        file.Set(SealPart, bytes);
        const QImage page = PaintFile(Sign(file, Stamp("10 10 60 60")));
        QCOMPARE(ColourAt(page, 20, 20), QColor(Qt::red));
        QCOMPARE(ColourAt(page, 60, 60), QColor(Qt::white));
    }
}

void TestOfdSeals::problemsOfSealsNameTheirPartsButAreNotThoseOfTheDocumentInside()
{
    const QTemporaryDir folder;
    OfdFile inner = OfdFile::WithPage(FilledSquare(0, 0, "Value=\"255 0 0\""));
    inner.Common("<ofd:PublicRes>no.xml</ofd:PublicRes>");
    OfdFile file = OfdFile::WithPage("");
    Sign(file, Stamp("10 10 40 40"));
    file.Set(ValuePart, samples::SealData("ofd", PackedFile(inner)));
    const ofd::OpenResult opened = ofd::OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("seal.ofd"))));
    QVERIFY(opened);
    opened.document->Renderer()->RenderPage({});
    const std::vector<ofd::Problem> problems = opened.document->GetProblems();
    QCOMPARE(int(problems.size()), 1);
    QCOMPARE(problems[0].kind, ofd::ProblemKind::MissingPart); // the seal's own part, not the inner resources
    QCOMPARE(problems[0].part, QStringLiteral("Doc_0/Signs/Signature.xml"));
    QVERIFY(problems[0].text.contains(QStringLiteral("Seal.esl")));
}

void TestOfdSeals::brokenSealDataNeverLeadAstray()
{
    const QByteArray seal = samples::SealData("png", QByteArray(300, 'p'));
    const auto whole = ofd::FindSealPicture(seal);
    QVERIFY(whole);
    QCOMPARE(whole->type, QStringLiteral("png"));
    QCOMPARE(whole->bytes, QByteArray(300, 'p'));
    QCOMPARE(whole->widthMm, 30);
    QCOMPARE(whole->heightMm, 30);
    VerifyDamageIsHarmless(seal);
}

void TestOfdSeals::deepSealDataAreNotFollowed()
{
    QByteArray deep = samples::SealData("png", "picture");
    for (int i = 0; i < 20; ++i)
        deep = samples::DerSequence(deep);
    QVERIFY(ofd::FindSealPicture(deep));
    for (int i = 0; i < 2000; ++i)
        deep = samples::DerSequence(deep);
    QVERIFY(!ofd::FindSealPicture(deep));
    QByteArray many;
    for (int i = 0; i < 200'000; ++i)
        many += QByteArray("\x30\x00", 2);
    QVERIFY(!ofd::FindSealPicture(many + samples::SealData("png", "picture")));
    QVERIFY(!ofd::FindSealPicture(QByteArray("\x30\x84\xff\xff\xff\xff", 6)));
    QVERIFY(!ofd::FindSealPicture(QByteArray("\x30\x80\x02\x01\x01\x00\x00", 7))); // its end is marked
}

void TestOfdSeals::sealsWhoseEndsAreMarkedAreRead()
{
    const QByteArray picture = QByteArray(1000, '\0') + QByteArray(300, 'p'); // zeros inside are no marks
    const QByteArray seal = WithMarkedEnds(samples::SealData("png", picture));
    const auto whole = ofd::FindSealPicture(seal);
    QVERIFY(whole);
    QCOMPARE(whole->type, QStringLiteral("png"));
    QCOMPARE(whole->bytes, picture);
    QCOMPARE(whole->heightMm, 30);
    // A mark that is missing at the end ends the element around it too.
    VerifyDamageIsHarmless(seal);
    // A piece that is no string of octets, and a plain string whose end is marked, are no picture.
    const auto block = [](const QByteArray& octets) {
        return samples::DerSequence(samples::DerWord("png") + octets + samples::DerInteger(1) + samples::DerInteger(1));
    };
    QVERIFY(ofd::FindSealPicture(block(samples::Der(0x24, samples::Der(0x04, "a") + samples::Der(0x04, "b")))));
    QVERIFY(!ofd::FindSealPicture(block(samples::Der(0x24, samples::Der(0x04, "a") + samples::DerInteger(1)))));
    QVERIFY(!ofd::FindSealPicture(block(QByteArray("\x04\x80", 2) + "abc" + QByteArray(2, '\0'))));
}

// The end of each is found by looking at all inside, which is as often as they are deep: what one seal may ask for is
// bound all the same.
void TestOfdSeals::manyMarkedEndsInEachOtherCostNoTime()
{
    const auto deep = [](int depth, const QByteArray& inside) {
        return QByteArray("\x30\x80", 2).repeated(depth) + inside + QByteArray(2, '\0').repeated(depth);
    };
    const QByteArray picture = WithMarkedEnds(samples::SealData("png", "picture"));
    QVERIFY(ofd::FindSealPicture(deep(10, QByteArray("\x05\x00", 2).repeated(100) + picture)));
    QVERIFY(!ofd::FindSealPicture(deep(100, picture)));
    QVERIFY(!ofd::FindSealPicture(deep(20, QByteArray("\x05\x00", 2).repeated(4'000'000)) + picture));
    QVERIFY(!ofd::FindSealPicture(QByteArray("\x30\x80", 2).repeated(4'000'000)));
    // As many as the limit in all, not for each.
    const QByteArray many = deep(20, QByteArray("\x05\x00", 2).repeated(ofd::limits::MaxSealElements / 50));
    QVERIFY(!ofd::FindSealPicture(many.repeated(1000) + picture));
}

TETO_TEST_MAIN(TestOfdSeals)

#include "test_ofd_seals.moc"
