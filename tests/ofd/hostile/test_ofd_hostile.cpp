#include <ofd/ofd_document.h>
#include <ofd/render/jbig2_decoder.h>
#include <ofd/render/jbig2_segments.h>
#include <tests/ofd/document/description.h>
#include <tests/ofd/document/ofd_file.h>
#include <tests/ofd/document/page_painting.h>
#include <tests/ofd/document/sample_files.h>
#include <tests/ofd/package/raw_zip.h>
#include <tests/support/test_main.h>

#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

namespace {

constexpr int Megabytes = 1024; // that a reader of a hostile file may take
constexpr int FlipsTried = 240;

// How the reader ended; -1 when it crashed or did not end at all.
int ReadLimited(const QString& path)
{
    QTemporaryDir folder;
    QProcess reader;
    reader.setProcessChannelMode(QProcess::ForwardedChannels);
    reader.start(QCoreApplication::applicationDirPath() + QStringLiteral("/ofd_limited_reader"),
                 {QString::number(Megabytes), path, folder.filePath(QStringLiteral("copy.ofd"))});
    constexpr int HangMs = 120'000; // an end to a test that would not have one
    if (!reader.waitForFinished(HangMs) || reader.exitStatus() != QProcess::NormalExit)
        return -1;
    return reader.exitCode();
}

void WriteBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

QByteArray DocumentXml(const QByteArray& pages)
{
    return Element("Document", "<ofd:CommonData><ofd:MaxUnitID>9</ofd:MaxUnitID><ofd:PageArea><ofd:PhysicalBox>0 0 "
                               "100 100</ofd:PhysicalBox></ofd:PageArea></ofd:CommonData><ofd:Pages>" +
                                   pages + "</ofd:Pages>");
}

// A package whose parts are packed as tightly as they can be.
QByteArray Packed(const std::vector<std::pair<QByteArray, QByteArray>>& parts)
{
    RawZip zip;
    zip.Add("OFD.xml", Element("OFD", "<ofd:DocBody><ofd:DocRoot>Doc_0/Document.xml</ofd:DocRoot></ofd:DocBody>"));
    for (const auto& [name, bytes] : parts)
        zip.Add(name, bytes);
    return zip.Build();
}

void ReadEverything(ofd::OfdDocument& document)
{
    DescribeDocument(document);
    for (int page = 0; page < std::min(2, document.GetPageCount()); ++page) {
        G_RenderRequest request;
        request.pageIndex = page;
        request.pixelsPerMm = 1;
        document.Renderer()->RenderPage(request);
    }
}

} // namespace

Q_DECLARE_METATYPE(SampleFile)

// Files made to hurt who opens them, as whole documents.
class TestOfdHostile : public QObject
{
    Q_OBJECT

private slots:
    void damagedFilesNeedLittleMemory_data();
    void damagedFilesNeedLittleMemory();
    void aSmallFileThatUnpacksToALargeDocumentIsRefused_data();
    void aSmallFileThatUnpacksToALargeDocumentIsRefused();
    void aSmallFileWithALargePageOpensWithoutIt();
    void aTruncatedFileIsRefusedAtEveryKibibyte();
    void flippedBitsNeverCrash();
    void oneHundredThousandPagesOpen();
    void whatLiesInTooManyBlocksIsDrawn();
    void unitsInUnitsAreDrawnUpToTheLimit();
    void attachmentsWithTheHighestIdGetFreeOnes();
    void bilevelPicturesThatAskForTooMuchAreNotDrawn_data();
    void bilevelPicturesThatAskForTooMuchAreNotDrawn();
    void anOrdinaryBilevelPictureIsDrawn();
};

void TestOfdHostile::damagedFilesNeedLittleMemory_data()
{
    QTest::addColumn<SampleFile>("sample");
    for (const SampleFile& sample : SamplesOf(QStringLiteral("damaged")))
        QTest::newRow(qPrintable(sample.name)) << sample;
}

void TestOfdHostile::damagedFilesNeedLittleMemory()
{
    QFETCH(SampleFile, sample);
    QCOMPARE(ReadLimited(sample.path), sample.mustDo.startsWith(QLatin1String("refuse")) ? 1 : 0);
}

void TestOfdHostile::aSmallFileThatUnpacksToALargeDocumentIsRefused_data()
{
    QTest::addColumn<QByteArray>("filling");
    QTest::addColumn<int>("times");
    QTest::newRow("blanks") << QByteArray(1024, ' ') << 300 * 1024;
    QTest::newRow("elements") << QByteArray("<a/>") << 40'000'000;
    QTest::newRow("attributes") << QByteArray("<a b='' c='' d='' e='' f='' g='' h=''/>") << 4'000'000;
    QTest::newRow("elements and texts") << QByteArray("x<a/>") << 30'000'000;
}

void TestOfdHostile::aSmallFileThatUnpacksToALargeDocumentIsRefused()
{
    QFETCH(QByteArray, filling);
    QFETCH(int, times);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("bomb.ofd"));
    {
        const QByteArray document = DocumentXml("<ofd:Page ID=\"1\" BaseLoc=\"P.xml\"/>" + filling.repeated(times));
        WriteBytes(path, Packed({{"Doc_0/Document.xml", document}, {"Doc_0/P.xml", PageXml({})}}));
    }
    QVERIFY(QFileInfo(path).size() < 1'100'000);
    QCOMPARE(ReadLimited(path), 1);
}

void TestOfdHostile::aSmallFileWithALargePageOpensWithoutIt()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("page.ofd"));
    const QByteArray pages = "<ofd:Page ID=\"1\" BaseLoc=\"P.xml\"/><ofd:Page ID=\"2\" BaseLoc=\"Q.xml\"/>";
    WriteBytes(path, Packed({{"Doc_0/Document.xml", DocumentXml(pages)},
                             {"Doc_0/P.xml", PageXml(FilledSquare(10, 10, "Value=\"255 0 0\""))},
                             {"Doc_0/Q.xml", PageXml(QByteArray("<a/>").repeated(20'000'000))}}));
    QCOMPARE(ReadLimited(path), 0);
    const ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    QVERIFY2(opened, qPrintable(opened.error));
    G_RenderRequest request;
    request.pixelsPerMm = PixelsPerMm;
    QCOMPARE(ColourAt(opened.document->Renderer()->RenderPage(request).image, 20, 20), QColor(Qt::red));
    request.pageIndex = 1;
    QVERIFY(!opened.document->Renderer()->RenderPage(request).error.isEmpty());
}

void TestOfdHostile::aTruncatedFileIsRefusedAtEveryKibibyte()
{
    const QByteArray whole = BytesOf(SamplePath(QStringLiteral("tour")));
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("cut.ofd"));
    int count = 0;
    for (int size = 1024; size < whole.size(); size += 1024, ++count) {
        WriteBytes(path, whole.left(size));
        const ofd::OpenResult result = ofd::OfdDocument::Open(path);
        QVERIFY2(!result && !result.error.isEmpty(), qPrintable(QString::number(size)));
    }
    QVERIFY(count > 50);
}

// TETO_SEED repeats the run of that seed.
void TestOfdHostile::flippedBitsNeverCrash()
{
    bool isGiven = false;
    const quint32 given = qEnvironmentVariable("TETO_SEED").toUInt(&isGiven);
    const quint32 seed = isGiven ? given : QRandomGenerator::global()->generate();
    qInfo("TETO_SEED=%u", seed);
    QRandomGenerator random(seed);
    const QByteArray wholes[] = {BytesOf(SamplePath(QStringLiteral("letter"))),
                                 BytesOf(SamplePath(QStringLiteral("invoice")))};
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("flipped.ofd"));
    const QString copy = folder.filePath(QStringLiteral("copy.ofd"));
    int openedCount = 0;
    for (int i = 0; i < FlipsTried; ++i) {
        QByteArray bytes = wholes[i % 2];
        for (int flips = random.bounded(1, 5); flips > 0; --flips) {
            const int at = random.bounded(bytes.size());
            bytes[at] = char(bytes.at(at) ^ (1 << random.bounded(8)));
        }
        WriteBytes(path, bytes);
        const ofd::OpenResult result = ofd::OfdDocument::Open(path);
        QCOMPARE(bool(result), result.error.isEmpty());
        if (!result)
            continue;
        ++openedCount;
        ReadEverything(*result.document);
        const ofd::DocumentSaveResult saved = result.document->SaveAs(copy);
        QCOMPARE(bool(saved), saved.error.isEmpty());
        if (saved)
            QVERIFY(ofd::OfdDocument::Open(copy));
    }
    QVERIFY(openedCount > FlipsTried / 4); // most bits belong to one part, and the document opens without it
}

void TestOfdHostile::oneHundredThousandPagesOpen()
{
    constexpr int Count = 100'000;
    QByteArray pages;
    for (int i = 1; i <= Count; ++i)
        pages += "<ofd:Page ID=\"" + QByteArray::number(i) + "\" BaseLoc=\"P.xml\"/>";
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("pages.ofd"));
    // One page for all of them, whose size stands nowhere and whose beginning is long.
    const QByteArray page =
        Element("Page", "<!--" + QByteArray(500'000, 'x') + "--><ofd:Content><ofd:Layer ID=\"200000\"/></ofd:Content>");
    WriteBytes(path, Packed({{"Doc_0/Document.xml", DocumentXml(pages)}, {"Doc_0/P.xml", page}}));
    QCOMPARE(ReadLimited(path), 0);
    const ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    QVERIFY2(opened, qPrintable(opened.error));
    QCOMPARE(opened.document->GetPageCount(), Count);
    QCOMPARE(opened.document->PageSizeMm(Count - 1), QSizeF(100, 100));
    QCOMPARE(opened.document->PageIndexFromId(Count), Count - 1);
}

void TestOfdHostile::whatLiesInTooManyBlocksIsDrawn()
{
    const QByteArray square = FilledSquare(10, 30, "Value=\"255 0 0\"");
    const QImage image = PaintPage(QByteArray("<ofd:PageBlock ID=\"1\">").repeated(200) + square +
                                   QByteArray("</ofd:PageBlock>").repeated(200));
    QCOMPARE(ColourAt(image, 20, 40), QColor(Qt::red));
}

void TestOfdHostile::unitsInUnitsAreDrawnUpToTheLimit()
{
    QByteArray units;
    for (int i = 0; i < 30; ++i) {
        const QByteArray use = "<ofd:CompositeObject ID=\"1\" Boundary=\"0 0 100 100\" ResourceID=\"" +
                               QByteArray::number(101 + i) + "\"/>";
        const QByteArray content = i == 29 ? QByteArray() : use.repeated(10);
        units += "<ofd:CompositeGraphicUnit ID=\"" + QByteArray::number(100 + i) +
                 "\" Width=\"100\" Height=\"100\"><ofd:Content>" + content +
                 "</ofd:Content></ofd:CompositeGraphicUnit>";
    }
    const QByteArray page = "<ofd:CompositeObject ID=\"1\" Boundary=\"0 0 100 100\" ResourceID=\"100\"/>" +
                            FilledSquare(10, 30, "Value=\"255 0 0\"");
    const QImage image =
        PaintPage(page, "<ofd:CompositeGraphicUnits>" + units + "</ofd:CompositeGraphicUnits>" + FontResource);
    QCOMPARE(ColourAt(image, 20, 40), QColor(Qt::red)); // what follows the bomb is there
}

void TestOfdHostile::attachmentsWithTheHighestIdGetFreeOnes()
{
    OfdFile file = OfdFile::WithPages(1);
    file.Tail("<ofd:Attachments>Attachs.xml</ofd:Attachments>");
    file.Set(QStringLiteral("Doc_0/Attachs.xml"),
             Element("Attachments", QByteArray("<ofd:Attachment ID=\"2147483647\" Name=\"a\"><ofd:FileLoc>a.txt"
                                               "</ofd:FileLoc></ofd:Attachment>")
                                        .repeated(3)));
    QTemporaryDir folder;
    const ofd::OpenResult opened = ofd::OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("a.ofd"))));
    QVERIFY2(opened, qPrintable(opened.error));
    const QString description = DescribeDocument(*opened.document);
    QVERIFY(description.contains(QLatin1String("2147483647")));
    QVERIFY(!description.contains(QLatin1String("-2147483648")));
}

namespace {

// A sequential bilevel file of one page of 64 by 64 pixels, and one more segment.
QByteArray BilevelFile(char type, const QByteArray& data)
{
    QByteArray length(4, '\0');
    qToBigEndian(quint32(data.size()), length.data());
    return QByteArray::fromHex("974a42320d0a1a0a0100000001"
                               "00000000300001000000130000004000000040000000000000000000"
                               "0000") +
           QByteArray::fromHex("00000001") + type + QByteArray::fromHex("0001") + length + data;
}

const QByteArray Region = QByteArray::fromHex("0000004000000040000000000000000000"); // of 64 by 64 pixels

} // namespace

void TestOfdHostile::bilevelPicturesThatAskForTooMuchAreNotDrawn_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("instances of symbols") << BilevelFile(6, Region + QByteArray::fromHex("0000fffffff0") + "xxxx");
    QTest::newRow("a region without end")
        << BilevelFile(38, QByteArray::fromHex("7fffffff7fffffff000000000000000000") + "xxxx");
    QTest::newRow("cells of a halftone") << BilevelFile(22,
                                                        Region + QByteArray::fromHex("000fffffff0fffffff") + "xxxx");
    QTest::newRow("symbols") << BilevelFile(0, QByteArray::fromHex("0000") + QByteArray(8, '\1') +
                                                   QByteArray::fromHex("fffffff0fffffff0") + "xxxx");
}

void TestOfdHostile::bilevelPicturesThatAskForTooMuchAreNotDrawn()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(ofd::IsJbig2(bytes));
    QVERIFY(!ofd::ReadJbig2Segments(bytes));
    QVERIFY(ofd::DecodeJbig2(bytes).isNull());
}

void TestOfdHostile::anOrdinaryBilevelPictureIsDrawn()
{
    const QByteArray empty = BilevelFile(49, {});
    const auto segments = ofd::ReadJbig2Segments(empty);
    QVERIFY(segments);
    QCOMPARE(int(segments->size()), 2);
    QCOMPARE(segments->front().type, 48);
    QCOMPARE(segments->back().dataEnd, qint64(empty.size()));
    QCOMPARE(ofd::DecodeJbig2(empty).size(), QSize(64, 64));
}

TETO_TEST_MAIN(TestOfdHostile)

#include "test_ofd_hostile.moc"
