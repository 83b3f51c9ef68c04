#include <ofd/model/problem_log.h>
#include <ofd/package/entry_names.h>
#include <ofd/package/package.h>
#include <tests/ofd/package/raw_zip.h>
#include <tests/support/test_main.h>

#include <QBuffer>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <atomic>
#include <thread>

using namespace ofd;

namespace {

constexpr quint16 Utf8Flag = 1 << 11;

std::unique_ptr<Package> Open(const RawZip& zip, PackageError* error = nullptr)
{
    return Package::OpenBytes(zip.Build(), error);
}

RawEntry& Image(RawZip& zip)
{
    return zip.entries.at(3);
}

const QString ImageName = QStringLiteral("Doc_0/Res/image.bin");

} // namespace

// What real archives look like: every way in which they differ from the plain form must open and read the same.
class TestPackage : public QObject
{
    Q_OBJECT

private:
    static void CompareImage(const RawZip& zip)
    {
        PackageError error;
        const std::unique_ptr<Package> package = Open(zip, &error);
        QVERIFY2(package, qPrintable(error.text));
        const PartData data = package->Read(ImageName);
        QVERIFY2(!data.error, qPrintable(data.error.text));
        QCOMPARE(data.bytes, zip.entries.at(3).data);
        QVERIFY(!data.hasWrongChecksum);
        QCOMPARE(package->Read(QStringLiteral("Doc_0/Document.xml")).bytes, zip.entries.at(1).data);
    }

private slots:
    void partsAreListedInOrderWithoutFoldersAndReadBack();
    void aFileOpensByPathAndGoesOnAfterItIsRenamed();
    void whereTheEntryPointStandsInTheDirectoryDoesNotMatter();
    void anEntryPointInAnotherLetterCaseIsFoundWhenThereIsOne();
    void twoEntryPointsInOddLetterCasesAreNone();
    void storedAndDeflatedPartsReadTheSame();
    void emptyPartsReadAsEmpty();
    void dataDescriptorsWithAndWithoutSignatureAreSkipped();
    void localFlagsThatDifferAreNotLookedAt();
    void localZip64SizesWithPlainCentralOnesRead();
    void centralZip64ValuesAreTakenFromTheExtraBlock();
    void aZip64EndRecordIsRead();
    void anArchiveCommentIsNoHindrance();
    void aCommentThatLooksLikeAnEndRecordDoesNotMislead();
    void foreignBytesInFrontShiftTheOffsets();
    void foreignBytesBehindTheEndAreTolerated();
    void localNamesAndExtraBlocksOfOtherLengthAreSkipped();
    void utf8NamesReadWithAndWithoutTheirFlag();
    void namesInGb18030AreDecodedWhenTheyAreNoUtf8();
    void namesThatReadAsUtf8ByChanceAreGb18030WhereAnotherNameIs();
    void doubledSlashesInNamesAreOne();
    void namesInNeitherBecomeCodePage437();
    void backslashesAndLeadingSlashesAreNormalised();
    void ofDuplicateNamesTheLastHolds();
    void caseIsIgnoredOnlyWhenAskedAndOnlyWhenUnique();
    void aFileNameIsFoundOnlyWhenUniqueInItsFolder();
    void moreEntriesThanTheCountSaysAreReadAsTheCountRunsOver();
    void aPartStreamsIntoADevice();
    void aWrongChecksumIsToldButTheBytesCome();
    void partsReadFromManyThreadsAtOnce();
};

void TestPackage::partsAreListedInOrderWithoutFoldersAndReadBack()
{
    const RawZip zip = SmallRawZip();
    const auto package = Open(zip);
    QVERIFY(package);
    QCOMPARE(package->GetPartNames(), QStringList({QStringLiteral("Doc_0/Document.xml"), QStringLiteral("OFD.xml"),
                                                   QStringLiteral("Doc_0/Res/image.bin")}));
    QVERIFY(!package->HasPart(QStringLiteral("Doc_0/")));
    QCOMPARE(package->GetPartSize(ImageName), qint64(5007));
    QCOMPARE(package->GetPartSize(QStringLiteral("nothing")), qint64(-1));
    QCOMPARE(package->Read(QStringLiteral("nothing")).error.kind, PackageErrorKind::NoSuchPart);
    CompareImage(zip);
}

void TestPackage::aFileOpensByPathAndGoesOnAfterItIsRenamed()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("文档 a.ofd"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(SmallRawZip().Build());
    file.close();
    const auto package = Package::Open(path);
    QVERIFY(package);
    QCOMPARE(package->GetPath(), path);
    QVERIFY(QFile::rename(path, folder.filePath(QStringLiteral("b.ofd"))));
    QCOMPARE(package->Read(ImageName).bytes.size(), 5007);
}

void TestPackage::whereTheEntryPointStandsInTheDirectoryDoesNotMatter()
{
    RawZip zip = SmallRawZip();
    std::swap(zip.entries[0], zip.entries[2]);
    const auto package = Open(zip);
    QVERIFY(package);
    QCOMPARE(package->GetEntryPoint(), QStringLiteral("OFD.xml"));
}

void TestPackage::anEntryPointInAnotherLetterCaseIsFoundWhenThereIsOne()
{
    RawZip zip = SmallRawZip();
    zip.entries[2].name = "ofd.XML";
    const auto package = Open(zip);
    QVERIFY(package);
    QCOMPARE(package->GetEntryPoint(), QStringLiteral("ofd.XML"));
}

void TestPackage::twoEntryPointsInOddLetterCasesAreNone()
{
    RawZip zip = SmallRawZip();
    zip.entries[2].name = "ofd.XML";
    zip.Add("Ofd.xml", "<a/>");
    PackageError error;
    QVERIFY(!Open(zip, &error));
    QCOMPARE(error.kind, PackageErrorKind::NoEntryPoint);
    zip.Add("OFD.xml", "<a/>");
    const auto package = Open(zip);
    QVERIFY(package);
    QCOMPARE(package->GetEntryPoint(), QStringLiteral("OFD.xml"));
}

void TestPackage::storedAndDeflatedPartsReadTheSame()
{
    RawZip zip = SmallRawZip();
    CompareImage(zip);
    Image(zip).isStored = true;
    CompareImage(zip);
    // Longer than one chunk of the reader.
    Image(zip).data = QByteArray();
    for (int i = 0; i < 300'000; ++i)
        Image(zip).data += QByteArray::number(i * 7919LL % 100'003);
    CompareImage(zip);
    Image(zip).isStored = false;
    CompareImage(zip);
}

void TestPackage::emptyPartsReadAsEmpty()
{
    RawZip zip = SmallRawZip();
    zip.Add("stored", {}).isStored = true;
    zip.Add("deflated", {});
    RawEntry& bare = zip.Add("bare", {}); // says deflated and holds no stream at all
    bare.isStored = true;
    bare.method = 8;
    const auto package = Open(zip);
    QVERIFY(package);
    for (const char* name : {"stored", "deflated", "bare"}) {
        const PartData data = package->Read(QString::fromLatin1(name));
        QVERIFY2(!data.error, name);
        QVERIFY(data.bytes.isEmpty());
    }
}

void TestPackage::dataDescriptorsWithAndWithoutSignatureAreSkipped()
{
    RawZip zip = SmallRawZip();
    for (RawEntry& entry : zip.entries)
        entry.hasDescriptor = true;
    CompareImage(zip);
    Image(zip).hasDescriptorSignature = false;
    zip.entries[1].hasDescriptorSignature = false;
    CompareImage(zip);
}

void TestPackage::localFlagsThatDifferAreNotLookedAt()
{
    RawZip zip = SmallRawZip();
    Image(zip).localFlags = quint16(Utf8Flag | 8 | 1);
    CompareImage(zip);
}

void TestPackage::localZip64SizesWithPlainCentralOnesRead()
{
    RawZip zip = SmallRawZip();
    Image(zip).hasLocalZip64 = true;
    CompareImage(zip);
}

void TestPackage::centralZip64ValuesAreTakenFromTheExtraBlock()
{
    RawZip zip = SmallRawZip();
    for (RawEntry& entry : zip.entries)
        entry.hasCentralZip64 = true;
    CompareImage(zip);
    Image(zip).centralExtra = QByteArray::fromHex("0a00040011223344"); // another block in front
    CompareImage(zip);
}

void TestPackage::aZip64EndRecordIsRead()
{
    RawZip zip = SmallRawZip();
    zip.hasZip64End = true;
    CompareImage(zip);
    zip.prefix = QByteArray(777, 'p');
    CompareImage(zip);
    zip.countsPrefix = true;
    CompareImage(zip);
}

void TestPackage::anArchiveCommentIsNoHindrance()
{
    RawZip zip = SmallRawZip();
    zip.comment = "made by hand";
    CompareImage(zip);
    zip.comment = QByteArray(65535, 'c');
    CompareImage(zip);
}

void TestPackage::aCommentThatLooksLikeAnEndRecordDoesNotMislead()
{
    RawZip zip = SmallRawZip();
    QByteArray fake = QByteArray::fromHex("504b0506") + QByteArray(18, 0); // an empty archive
    zip.comment = fake + "x";
    CompareImage(zip);
}

void TestPackage::foreignBytesInFrontShiftTheOffsets()
{
    RawZip zip = SmallRawZip();
    zip.prefix = QByteArray(1234, '#');
    CompareImage(zip);
    zip.countsPrefix = true;
    CompareImage(zip);
}

void TestPackage::foreignBytesBehindTheEndAreTolerated()
{
    RawZip zip = SmallRawZip();
    zip.trailing = QByteArray(100, 0);
    CompareImage(zip);
    zip.comment = "comment";
    zip.trailing = QByteArray(900'000, '\n');
    CompareImage(zip);
}

void TestPackage::localNamesAndExtraBlocksOfOtherLengthAreSkipped()
{
    RawZip zip = SmallRawZip();
    Image(zip).localName = "quite/another/name/in/the/local/header";
    Image(zip).localExtra = QByteArray(9000, 'e');
    CompareImage(zip);
}

void TestPackage::utf8NamesReadWithAndWithoutTheirFlag()
{
    const QString name = QStringLiteral("Doc_0/附件/发票.xml");
    for (const quint16 flags : {quint16(0), Utf8Flag}) {
        RawZip zip = SmallRawZip();
        zip.Add(name.toUtf8(), "x").flags = flags;
        const auto package = Open(zip);
        QVERIFY(package);
        QCOMPARE(package->Read(name).bytes, QByteArray("x"));
    }
}

void TestPackage::namesInGb18030AreDecodedWhenTheyAreNoUtf8()
{
    const QString name = QStringLiteral("Doc_0/附件/发票.xml");
    RawZip zip = SmallRawZip();
    zip.Add(QTextCodec::codecForName("GB18030")->fromUnicode(name), "x");
    const auto package = Open(zip);
    QVERIFY(package);
    QCOMPARE(package->Read(name).bytes, QByteArray("x"));
}

void TestPackage::namesThatReadAsUtf8ByChanceAreGb18030WhereAnotherNameIs()
{
    const QTextCodec* codec = QTextCodec::codecForName("GB18030"); // not owned
    const QString doubtful = QStringLiteral("Doc_0/Res/图片.png");
    const QString accented = QStringLiteral("Doc_0/Res/né.png");
    RawZip zip = SmallRawZip();
    zip.Add(codec->fromUnicode(doubtful), "picture");
    const auto alone = Open(zip);
    QVERIFY(alone);
    QVERIFY(!alone->HasPart(doubtful)); // nothing tells that it is not UTF-8
    zip.Add(accented.toUtf8(), "flagged").flags = Utf8Flag;
    zip.Add(codec->fromUnicode(QStringLiteral("Doc_0/资源.xml")), "x");
    const auto package = Open(zip);
    QVERIFY(package);
    QCOMPARE(package->Read(doubtful).bytes, QByteArray("picture"));
    QCOMPARE(package->Read(accented).bytes, QByteArray("flagged"));
}

void TestPackage::doubledSlashesInNamesAreOne()
{
    RawZip zip = SmallRawZip();
    zip.Add("Doc_0//Pages\\\\\\Page_1.xml", "x");
    const auto package = Open(zip);
    QVERIFY(package);
    QCOMPARE(package->Read(QStringLiteral("Doc_0/Pages/Page_1.xml")).bytes, QByteArray("x"));
}

void TestPackage::namesInNeitherBecomeCodePage437()
{
    QCOMPARE(DecodeEntryName("na\x81", false), QStringLiteral("naü")); // half a character in GB18030
    QCOMPARE(DecodeEntryName("plain", false), QStringLiteral("plain"));
}

void TestPackage::backslashesAndLeadingSlashesAreNormalised()
{
    RawZip zip = SmallRawZip();
    zip.entries[1].name = "/Doc_0\\Document.xml";
    zip.entries[2].name = "./OFD.xml";
    Image(zip).name = "//./Doc_0\\Res\\image.bin";
    CompareImage(zip);
    QCOMPARE(Open(zip)->GetEntryPoint(), QStringLiteral("OFD.xml"));
}

void TestPackage::ofDuplicateNamesTheLastHolds()
{
    RawZip zip = SmallRawZip();
    zip.Add(ImageName.toLatin1(), "second");
    const auto package = Open(zip);
    QVERIFY(package);
    QCOMPARE(package->Read(ImageName).bytes, QByteArray("second"));
    QCOMPARE(package->GetPartNames().count(ImageName), 1);
}

void TestPackage::caseIsIgnoredOnlyWhenAskedAndOnlyWhenUnique()
{
    RawZip zip = SmallRawZip();
    const QString odd = QStringLiteral("doc_0/RES/Image.bin");
    {
        const auto package = Open(zip);
        QVERIFY(!package->HasPart(odd));
        QCOMPARE(package->FindIgnoringCase(odd), ImageName);
        QVERIFY(package->HasPartIgnoringCase(odd));
    }
    zip.Add("DOC_0/Res/image.bin", "other");
    const auto package = Open(zip);
    QCOMPARE(package->FindIgnoringCase(odd), QString());
    QVERIFY(package->HasPartIgnoringCase(odd));
    QVERIFY(!package->HasPartIgnoringCase(QStringLiteral("x")));
}

void TestPackage::aFileNameIsFoundOnlyWhenUniqueInItsFolder()
{
    RawZip zip = SmallRawZip();
    zip.Add("Doc_1/image.bin", "other document");
    const auto package = Open(zip);
    const QString file = QStringLiteral("image.bin");
    QCOMPARE(package->FindByFileName(QStringLiteral("Doc_0/"), file), ImageName);
    QCOMPARE(package->FindByFileName(QString(), file), QString());
    QCOMPARE(package->FindByFileName(QStringLiteral("Doc_0/"), QString()), QString());
}

void TestPackage::moreEntriesThanTheCountSaysAreReadAsTheCountRunsOver()
{
    RawZip zip = SmallRawZip();
    zip.entryCount = quint16(1);
    CompareImage(zip);
}

void TestPackage::aPartStreamsIntoADevice()
{
    const auto package = Open(SmallRawZip());
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QVERIFY(!package->ReadTo(ImageName, buffer));
    QCOMPARE(buffer.data().size(), 5007);
    QBuffer closed;
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QBuffer): device not open");
    QCOMPARE(package->ReadTo(ImageName, closed).kind, PackageErrorKind::WriteFailed);
    QCOMPARE(package->ReadTo(QStringLiteral("no"), buffer).kind, PackageErrorKind::NoSuchPart);
}

void TestPackage::aWrongChecksumIsToldButTheBytesCome()
{
    RawZip zip = SmallRawZip();
    Image(zip).checksum = 12345U;
    const auto package = Open(zip);
    ProblemLog log;
    const ProblemScope scope(log, QStringLiteral("Doc_0/Res.xml"));
    QTest::ignoreMessage(QtWarningMsg, "Doc_0/Res/image.bin: The checksum of the part is wrong.");
    const PartData data = package->Read(ImageName);
    QVERIFY(!data.error);
    QVERIFY(data.hasWrongChecksum);
    QCOMPARE(data.bytes, Image(zip).data);
    QCOMPARE(package->Read(ImageName).bytes, data.bytes); // told once only
    QCOMPARE(int(log.GetProblems().size()), 1);
    QCOMPARE(log.GetProblems().front().kind, ProblemKind::WrongChecksum);
    QCOMPARE(log.GetProblems().front().part, ImageName);
}

void TestPackage::partsReadFromManyThreadsAtOnce()
{
    const RawZip zip = SmallRawZip();
    const auto package = Open(zip);
    std::atomic<int> good{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 50; ++round) {
                const QString name = package->FindIgnoringCase(QStringLiteral("DOC_0/res/IMAGE.bin"));
                const bool isRight = package->Read(name).bytes == zip.entries.at(3).data &&
                                     package->FindByFileName(QString(), QStringLiteral("image.bin")) == name;
                good += isRight ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(good.load(), 400);
}

TETO_TEST_MAIN(TestPackage)
#include "test_package.moc"
