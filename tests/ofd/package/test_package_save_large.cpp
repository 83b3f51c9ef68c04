#include "archive_comparison.h"
#include "package_desk.h"

#include <ofd/package/byte_source.h>
#include <ofd/package/direct_copy.h>
#include <ofd/package/package_writer.h>
#include <tests/support/test_main.h>

#include <QBuffer>
#include <QRandomGenerator>
#include <QStorageInfo>
#include <QtTest>

#include <csignal>
#include <new>

#include <sys/resource.h>

using namespace ofd;

namespace {

constexpr int LargeBytes = 20 << 20; // five requests of the disk, and a rest
constexpr int HeaderBytes = 30;      // of a local header, in front of the name
const QString LargeName = QStringLiteral("Doc_0/large.bin");

QByteArray RandomBytes(int count)
{
    QByteArray bytes(count, 0);
    QRandomGenerator random(7);
    random.fillRange(reinterpret_cast<quint32*>(bytes.data()), count / 4);
    return bytes;
}

// A document part in front of a large one and another edge behind it.
RawZip LargeRawZip()
{
    RawZip zip = SmallRawZip();
    zip.Add("Doc_0/large.bin", RandomBytes(LargeBytes + 123)).isStored = true;
    zip.Add("Doc_0/last.bin", "the last");
    return zip;
}

const ZipEntry& EntryOf(const Package& package, const QString& name)
{
    return package.GetDirectory().entries[size_t(package.FindEntry(name))];
}

// The document part as it is, of this length, not packed: so that each length moves what follows by one byte.
PackageChanges StoredChange(int length)
{
    PackageChanges changes;
    changes.SetPartFromDevice(
        DocumentName,
        [length] {
            auto device = std::make_unique<QBuffer>();
            device->setData(QByteArray(length, 'd'));
            device->open(QIODevice::ReadOnly);
            return device;
        },
        true);
    return changes;
}

// A range in the middle of one file, for a place behind what another file has already.
struct CopyBench
{
    explicit CopyBench(const QString& folder)
        : bytes(RandomBytes(LargeBytes))
        , from(folder + QStringLiteral("/from"))
        , to(folder + QStringLiteral("/to"))
    {
        WriteFile(from.fileName(), bytes);
        WriteFile(to.fileName(), QByteArray(PageBytes, 'h'));
        isOpen = from.open(QIODevice::ReadOnly) && to.open(QIODevice::ReadWrite | QIODevice::Unbuffered);
        range = {from.handle(), to.handle(), 3 * PageBytes, PageBytes, LargeBytes - 5 * PageBytes};
    }

    QByteArray bytes;
    QFile from;
    QFile to;
    PageRange range;
    bool isOpen = false;
};

} // namespace

// What lies behind an edit in a large file is copied by whole pages, straight to the disk.
class TestPackageSaveLarge : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<PackageDesk> desk;

private slots:
    void init() { desk = std::make_unique<PackageDesk>(); }

    void aLargePartBehindAnEditComesThroughByteByByte_data();
    void aLargePartBehindAnEditComesThroughByteByByte();
    void whereverAnEditEndsWhatFollowsKeepsItsPlaceInAPage();
    void savingAgainAndAgainDoesNotMakeTheFileLonger();
    void aSmallFileGetsNoPadding();
    void aSaveCancelledAmidALargePartLeavesTheOriginal();
    void aLargeFileMadeShorterDuringTheSaveIsTold_data();
    void aLargeFileMadeShorterDuringTheSaveIsTold();
    void aProgressThatThrowsAmidALargePartLeavesTheOriginal();
    void aLimitOnTheSizeOfFilesAmidALargePartLeavesTheOriginal();
    void pagesGoStraightToTheDiskWhereTheFileSystemIsFitForIt();
    void pagesDoNotGoStraightToWhereNothingIsGainedByIt();
};

void TestPackageSaveLarge::aLargePartBehindAnEditComesThroughByteByByte_data()
{
    QTest::addColumn<bool>("waitsForDisk");
    QTest::newRow("waiting for the disk") << true;
    QTest::newRow("leaving it to the system") << false;
}

void TestPackageSaveLarge::aLargePartBehindAnEditComesThroughByteByByte()
{
    QFETCH(bool, waitsForDisk);
    const auto source = desk->OpenZip(LargeRawZip());
    QVERIFY(source);
    SaveOptions options;
    options.waitsForDisk = waitsForDisk;
    qint64 told = 0;
    options.progress = [&told](qint64 done, qint64 total) {
        const bool isSound = done > told && done <= total;
        told = done;
        return isSound;
    };
    const SaveResult result = SavePackage(*source, DocumentChange(), desk->Path("b.ofd"), options);
    QVERIFY2(result, qPrintable(result.error.text));
    QVERIFY(told >= LargeBytes);
    QCOMPARE(result.package->Read(DocumentName).bytes, QByteArray("<Document>changed</Document>"));
    const auto before = RawEntries(*source);
    const auto after = RawEntries(*result.package);
    QCOMPARE(after.size(), before.size());
    for (int i = 0; i < after.size(); ++i)
        QVERIFY2(after.at(i).first == DocumentName || after.at(i) == before.at(i), qPrintable(after.at(i).first));
    CompareWithReferee(desk->Path("b.ofd"), *result.package);
}

void TestPackageSaveLarge::whereverAnEditEndsWhatFollowsKeepsItsPlaceInAPage()
{
    const auto source = desk->OpenZip(LargeRawZip());
    QVERIFY(source);
    const QByteArray large = source->Read(LargeName).bytes;
    const qint64 place = EntryOf(*source, LargeName).headerOffset % PageBytes;
    // The room that is left runs through all numbers of bytes too few for a block, and through none at all.
    const SaveResult first = SavePackage(*source, StoredChange(0), desk->Path("b.ofd"));
    QVERIFY2(first, qPrintable(first.error.text));
    const ZipEntry& padded = EntryOf(*first.package, DocumentName);
    const int exact = int(padded.regionEnd - padded.headerOffset) - HeaderBytes - DocumentName.size();
    for (int length = exact - 7; length <= exact + 1; ++length) {
        const SaveResult result = SavePackage(*source, StoredChange(length), desk->Path("b.ofd"));
        QVERIFY2(result, qPrintable(result.error.text));
        QCOMPARE(EntryOf(*result.package, LargeName).headerOffset % PageBytes, place);
        QCOMPARE(result.package->Read(DocumentName).bytes, QByteArray(length, 'd'));
        QVERIFY(result.package->Read(LargeName).bytes == large);
        CompareWithReferee(desk->Path("b.ofd"), *result.package);
    }
}

void TestPackageSaveLarge::savingAgainAndAgainDoesNotMakeTheFileLonger()
{
    std::unique_ptr<Package> package = desk->OpenZip(LargeRawZip());
    QVERIFY(package);
    const qint64 size = package->GetSource().GetSize();
    for (int round = 0; round < 6; ++round) {
        SaveResult result = SavePackage(*package, StoredChange(round * 77), desk->Path());
        QVERIFY2(result, qPrintable(result.error.text));
        package = std::move(result.package);
        QVERIFY(package->GetSource().GetSize() < size + 2 * PageBytes);
    }
}

void TestPackageSaveLarge::aSmallFileGetsNoPadding()
{
    const auto source = desk->OpenZip(SmallRawZip());
    const SaveResult result = SavePackage(*source, StoredChange(10), desk->Path());
    QVERIFY2(result, qPrintable(result.error.text));
    const ZipEntry& entry = EntryOf(*result.package, DocumentName);
    QCOMPARE(entry.regionEnd - entry.headerOffset, qint64(HeaderBytes + DocumentName.size() + 10));
}

void TestPackageSaveLarge::aSaveCancelledAmidALargePartLeavesTheOriginal()
{
    const auto source = desk->OpenZip(LargeRawZip());
    const QByteArray before = ReadFile(desk->Path());
    SaveOptions options;
    options.progress = [](qint64 done, qint64) { return done < (1 << 20); };
    const SaveResult result = SavePackage(*source, DocumentChange(), desk->Path(), options);
    QCOMPARE(result.error.kind, PackageErrorKind::Cancelled);
    QVERIFY(ReadFile(desk->Path()) == before);
    QCOMPARE(desk->FilesLeft(), QStringList{QStringLiteral("a.ofd")});
}

void TestPackageSaveLarge::aLargeFileMadeShorterDuringTheSaveIsTold_data()
{
    QTest::addColumn<int>("left");
    QTest::newRow("by most of it") << LargeBytes / 4;
    QTest::newRow("by its end") << LargeBytes - (1 << 20); // most of it is copied then, and once more in another way
}

void TestPackageSaveLarge::aLargeFileMadeShorterDuringTheSaveIsTold()
{
    QFETCH(int, left);
    const auto source = desk->OpenZip(LargeRawZip());
    SaveOptions options;
    qint64 told = 0;
    options.progress = [&](qint64 done, qint64) {
        told = done;
        QFile file(desk->Path());
        return file.resize(left);
    };
    const SaveResult result = SavePackage(*source, DocumentChange(), desk->Path("b.ofd"), options);
    QCOMPARE(result.error.kind, PackageErrorKind::SourceChanged);
    QCOMPARE(desk->FilesLeft(), QStringList{QStringLiteral("a.ofd")});
    QVERIFY2(told > 0 && told <= left, qPrintable(QString::number(told)));
}

void TestPackageSaveLarge::aProgressThatThrowsAmidALargePartLeavesTheOriginal()
{
    const auto source = desk->OpenZip(LargeRawZip());
    const QByteArray before = ReadFile(desk->Path());
    SaveOptions options;
    options.progress = [](qint64 done, qint64) -> bool {
        if (done >= (1 << 20))
            throw std::bad_alloc();
        return true;
    };
    QVERIFY_EXCEPTION_THROWN(SavePackage(*source, DocumentChange(), desk->Path(), options), std::bad_alloc);
    QVERIFY(ReadFile(desk->Path()) == before);
    QCOMPARE(desk->FilesLeft(), QStringList{QStringLiteral("a.ofd")});
}

void TestPackageSaveLarge::aLimitOnTheSizeOfFilesAmidALargePartLeavesTheOriginal()
{
    const auto source = desk->OpenZip(LargeRawZip());
    const QByteArray before = ReadFile(desk->Path());
    struct rlimit usual = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &usual), 0);
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit tight = usual;
    tight.rlim_cur = LargeBytes / 2;
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &tight), 0);
    const SaveResult result = SavePackage(*source, DocumentChange(), desk->Path());
    ::setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, handler);
    QCOMPARE(result.error.kind, PackageErrorKind::WriteFailed);
    QVERIFY(ReadFile(desk->Path()) == before);
    QCOMPARE(desk->FilesLeft(), QStringList{QStringLiteral("a.ofd")});
}

void TestPackageSaveLarge::pagesGoStraightToTheDiskWhereTheFileSystemIsFitForIt()
{
    const QByteArray type = QStorageInfo(desk->Folder()).fileSystemType();
    if (type != "ext4" && type != "xfs" && type != "btrfs")
        QSKIP("the folder for temporary files lies elsewhere");
    CopyBench bench(desk->Folder());
    QVERIFY(bench.isOpen);
    qint64 told = 0;
    const auto progress = [&told](qint64 count) {
        told += count;
        return true;
    };
    QCOMPARE(CopyDirectly(bench.range, progress), DirectCopy::Done);
    QCOMPARE(told, bench.range.count);
    const QByteArray expected = QByteArray(PageBytes, 'h') + bench.bytes.mid(3 * PageBytes, int(bench.range.count));
    QVERIFY(ReadFile(bench.to.fileName()) == expected);
}

void TestPackageSaveLarge::pagesDoNotGoStraightToWhereNothingIsGainedByIt()
{
    const QString folder = QStringLiteral("/dev/shm");
    const QTemporaryDir inMemory(folder + QStringLiteral("/test-XXXXXX"));
    if (QStorageInfo(folder).fileSystemType() != "tmpfs" || !inMemory.isValid())
        QSKIP("no file system in memory here");
    const CopyBench bench(inMemory.path());
    QVERIFY(bench.isOpen);
    QCOMPARE(CopyDirectly(bench.range, {}), DirectCopy::Impossible);
    QCOMPARE(bench.to.size(), PageBytes);
}

TETO_TEST_MAIN(TestPackageSaveLarge)
#include "test_package_save_large.moc"
