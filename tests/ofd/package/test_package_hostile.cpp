#include <ofd/package/limits.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_part.h>
#include <tests/ofd/package/raw_zip.h>
#include <tests/support/test_main.h>

#include <QBuffer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

using namespace ofd;

namespace {

PackageErrorKind OpenKind(const QByteArray& bytes)
{
    PackageError error;
    const std::unique_ptr<Package> package = Package::OpenBytes(bytes, &error);
    return package ? PackageErrorKind::None : error.kind;
}

// Reads everything, whatever it is worth; the point is that it comes back.
int CountReadable(const Package& package)
{
    int readable = 0;
    for (const QString& name : package.GetPartNames())
        readable += package.Read(name).error ? 0 : 1;
    return readable;
}

const QString ImageName = QStringLiteral("Doc_0/Res/image.bin");

} // namespace

// Files made to hurt, or hurt by accident: each gives an error with a name.
class TestPackageHostile : public QObject
{
    Q_OBJECT

private slots:
    void whatIsNoPackageIsToldApart();
    void aMissingFileAFolderAndAPipeAreRefused();
    void aTruncatedFileIsAnErrorAtEveryLength();
    void randomlyDamagedFilesNeverCrash();
    void anEncryptedEntryPointIsToldAsSuch();
    void anEncryptedPartAloneDoesNotHinderTheRest();
    void anUnknownMethodConcernsItsPartOnly();
    void aBombIsRefusedBeforeItIsInflated();
    void aPartThatInflatesBeyondItsPromiseIsCutOff();
    void aPartThatPromisesMoreThanItHoldsIsDamagedOrMarked();
    void aPartBeyondTheMemoryLimitIsRefused();
    void overlappingEntriesAreRejectedButTheFirst();
    void entriesOutsideTheFileAreRejected();
    void aCountThatTheDirectoryCannotHoldIsDamage();
    void namesThatClimbAreOnlyKeys();
    void oneHundredThousandEntriesOpen();
};

void TestPackageHostile::whatIsNoPackageIsToldApart()
{
    QCOMPARE(OpenKind({}), PackageErrorKind::Empty);
    QCOMPARE(OpenKind("%PDF-1.7 and so on, which is quite another thing"), PackageErrorKind::NotAPackage);
    QCOMPARE(OpenKind("PK"), PackageErrorKind::NotAPackage);
    RawZip zip;
    zip.Add("word/document.xml", "<a/>");
    QCOMPARE(OpenKind(zip.Build()), PackageErrorKind::NoEntryPoint);
    QCOMPARE(OpenKind(RawZip().Build()), PackageErrorKind::NoEntryPoint);
}

void TestPackageHostile::aMissingFileAFolderAndAPipeAreRefused()
{
    QTemporaryDir folder;
    PackageError error;
    QVERIFY(!Package::Open(folder.filePath(QStringLiteral("none.ofd")), &error));
    QCOMPARE(error.kind, PackageErrorKind::NotFound);
    QVERIFY(!Package::Open(folder.path(), &error));
    QCOMPARE(error.kind, PackageErrorKind::NotReadable);
    QVERIFY(!Package::Open(QStringLiteral("/dev/zero"), &error));
    QCOMPARE(error.kind, PackageErrorKind::NotReadable);
    QVERIFY(!error.text.isEmpty());
}

void TestPackageHostile::aTruncatedFileIsAnErrorAtEveryLength()
{
    RawZip zip = SmallRawZip();
    QByteArray noise;
    for (int i = 0; i < 100'000; ++i)
        noise += char(QRandomGenerator::global()->generate());
    zip.entries[3].data = noise;
    const QByteArray whole = zip.Build();
    for (int length = 1024; length < whole.size(); length += 1024)
        QCOMPARE(OpenKind(whole.left(length)), PackageErrorKind::Truncated);
    // Around the end records each byte counts.
    for (int length = whole.size() - 400; length < whole.size(); ++length)
        QVERIFY(OpenKind(whole.left(length)) != PackageErrorKind::None);
    QCOMPARE(OpenKind(whole), PackageErrorKind::None);
}

void TestPackageHostile::randomlyDamagedFilesNeverCrash()
{
    RawZip zip = SmallRawZip();
    zip.hasZip64End = true;
    zip.entries[1].hasCentralZip64 = true;
    const QByteArray whole = zip.Build();
    QRandomGenerator random(20240607);
    QLoggingCategory::setFilterRules(QStringLiteral("tetobaisfla.ofd=false"));
    int opened = 0;
    int readable = 0;
    for (int round = 0; round < 20'000; ++round) {
        QByteArray damaged = whole;
        const int hits = 1 + int(random.bounded(6));
        for (int hit = 0; hit < hits; ++hit)
            damaged[int(random.bounded(damaged.size()))] = char(random.generate());
        const std::unique_ptr<Package> package = Package::OpenBytes(damaged);
        opened += package ? 1 : 0;
        readable += package ? CountReadable(*package) : 0;
    }
    QLoggingCategory::setFilterRules({});
    // Some survive and some do not, else the test would have missed its mark.
    QVERIFY(opened > 100 && opened < 20'000);
    QVERIFY(readable > opened && readable < 3 * 20'000);
}

void TestPackageHostile::anEncryptedEntryPointIsToldAsSuch()
{
    RawZip zip = SmallRawZip();
    zip.entries[2].flags = 1;
    QCOMPARE(OpenKind(zip.Build()), PackageErrorKind::Encrypted);
}

void TestPackageHostile::anEncryptedPartAloneDoesNotHinderTheRest()
{
    RawZip zip = SmallRawZip();
    zip.entries[3].flags = 1;
    const auto package = Package::OpenBytes(zip.Build());
    QVERIFY(package);
    QVERIFY(package->HasEncryptedParts());
    QCOMPARE(package->Read(ImageName).error.kind, PackageErrorKind::Encrypted);
    QVERIFY(!package->Read(QStringLiteral("OFD.xml")).error);
    QVERIFY(!Package::OpenBytes(SmallRawZip().Build())->HasEncryptedParts());
}

void TestPackageHostile::anUnknownMethodConcernsItsPartOnly()
{
    RawZip zip = SmallRawZip();
    zip.entries[3].method = 93;
    const auto package = Package::OpenBytes(zip.Build());
    QVERIFY(package);
    QCOMPARE(package->Read(ImageName).error.kind, PackageErrorKind::Unsupported);
}

void TestPackageHostile::aBombIsRefusedBeforeItIsInflated()
{
    RawZip zip = SmallRawZip();
    zip.entries[3].data = QByteArray(64 << 20, 0); // packs to less than a thousandth
    const auto package = Package::OpenBytes(zip.Build());
    QVERIFY(package);
    QCOMPARE(package->Read(ImageName).error.kind, PackageErrorKind::TooBig);
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QCOMPARE(package->ReadTo(ImageName, buffer).kind, PackageErrorKind::TooBig);
    QVERIFY(buffer.data().isEmpty());
    QCOMPARE(CountReadable(*package), 2);
}

void TestPackageHostile::aPartThatInflatesBeyondItsPromiseIsCutOff()
{
    RawZip zip = SmallRawZip();
    zip.entries[3].data = QByteArray(16 << 20, 0);
    zip.entries[3].size = 1000U;
    const auto package = Package::OpenBytes(zip.Build());
    const PartData data = package->Read(ImageName);
    QCOMPARE(data.error.kind, PackageErrorKind::TooBig);
    QVERIFY(data.bytes.isEmpty());
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QCOMPARE(package->ReadTo(ImageName, buffer).kind, PackageErrorKind::TooBig);
    QVERIFY(buffer.data().size() <= 1000);
}

void TestPackageHostile::aPartThatPromisesMoreThanItHoldsIsDamagedOrMarked()
{
    RawZip zip = SmallRawZip();
    zip.entries[3].size = 9000U; // the stream ends well, but early
    auto package = Package::OpenBytes(zip.Build());
    PartData data = package->Read(ImageName);
    QVERIFY(!data.error);
    QVERIFY(data.hasWrongChecksum);
    QCOMPARE(data.bytes.size(), 5007);
    zip.entries[3].compressedSize = 10U; // the stream does not end
    package = Package::OpenBytes(zip.Build());
    data = package->Read(ImageName);
    QCOMPARE(data.error.kind, PackageErrorKind::Damaged);
    QVERIFY(data.bytes.isEmpty());
}

void TestPackageHostile::aPartBeyondTheMemoryLimitIsRefused()
{
    RawZip zip = SmallRawZip();
    zip.entries[3].size = quint32(limits::MaxPartBytes + 1);
    const auto package = Package::OpenBytes(zip.Build());
    QCOMPARE(package->Read(ImageName).error.kind, PackageErrorKind::TooBig);
}

void TestPackageHostile::overlappingEntriesAreRejectedButTheFirst()
{
    RawZip zip = SmallRawZip();
    zip.Add("again.bin", "x").headerOffset = 36U; // inside the header and data of the document part
    zip.Add("same.bin", "x").headerOffset = 0U;
    const auto package = Package::OpenBytes(zip.Build());
    QVERIFY(package);
    QCOMPARE(package->Read(QStringLiteral("same.bin")).error.kind, PackageErrorKind::Damaged);
    QCOMPARE(package->Read(QStringLiteral("again.bin")).error.kind, PackageErrorKind::Damaged);
    QCOMPARE(CountReadable(*package), 3);
    // A duplicate that cannot be read gives way to one that can.
    RawZip shadow = SmallRawZip();
    shadow.Add(ImageName.toLatin1(), "x").headerOffset = 0U;
    QCOMPARE(Package::OpenBytes(shadow.Build())->Read(ImageName).bytes.size(), 5007);
}

void TestPackageHostile::entriesOutsideTheFileAreRejected()
{
    RawZip zip = SmallRawZip();
    zip.Add("far.bin", "x").headerOffset = 0x7fffffffU;
    zip.Add("long.bin", "x").compressedSize = 0x7fffffffU;
    zip.Add("directory.bin", "x").headerOffset = quint32(zip.Build().size() - 30);
    const auto package = Package::OpenBytes(zip.Build());
    QVERIFY(package);
    for (const char* name : {"far.bin", "long.bin", "directory.bin"})
        QCOMPARE(package->Read(QString::fromLatin1(name)).error.kind, PackageErrorKind::Damaged);
    QCOMPARE(CountReadable(*package), 3);
}

void TestPackageHostile::aCountThatTheDirectoryCannotHoldIsDamage()
{
    RawZip zip = SmallRawZip();
    zip.entryCount = quint16(60'000);
    QCOMPARE(OpenKind(zip.Build()), PackageErrorKind::Damaged);
    zip.entryCount = quint16(5); // fits by size, but is not there
    QCOMPARE(OpenKind(zip.Build()), PackageErrorKind::Damaged);
}

void TestPackageHostile::namesThatClimbAreOnlyKeys()
{
    RawZip zip = SmallRawZip();
    zip.Add("../../etc/passwd", "x");
    const auto package = Package::OpenBytes(zip.Build());
    QVERIFY(package);
    QCOMPARE(package->Read(QStringLiteral("../../etc/passwd")).bytes, QByteArray("x"));
}

void TestPackageHostile::oneHundredThousandEntriesOpen()
{
    RawZip zip = SmallRawZip();
    zip.hasZip64End = true;
    for (int i = 0; i < 100'000; ++i)
        zip.Add("Doc_0/Pages/Page_" + QByteArray::number(i) + "/Content.xml", "x").isStored = true;
    const auto package = Package::OpenBytes(zip.Build());
    QVERIFY(package);
    QCOMPARE(package->GetPartNames().size(), 100'003);
    QCOMPARE(package->Read(QStringLiteral("Doc_0/Pages/Page_99999/Content.xml")).bytes, QByteArray("x"));
}

TETO_TEST_MAIN(TestPackageHostile)
#include "test_package_hostile.moc"
