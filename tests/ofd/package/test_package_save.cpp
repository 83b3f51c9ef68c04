#include <ofd/package/byte_source.h>
#include <ofd/package/package.h>
#include <ofd/package/package_writer.h>
#include <ofd/package/target_file.h>
#include <tests/ofd/package/raw_zip.h>
#include <tests/support/test_main.h>

#include <QBuffer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QUuid>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zip.h>

using namespace ofd;

Q_DECLARE_METATYPE(RawZip)

namespace {

const QString DocumentName = QStringLiteral("Doc_0/Document.xml");
const QString ImageName = QStringLiteral("Doc_0/Res/image.bin");

void WriteFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

PackageChanges DocumentChange(const QByteArray& bytes = "<Document>changed</Document>")
{
    PackageChanges changes;
    changes.SetXmlPart(DocumentName, bytes);
    return changes;
}

// Every oddity that must come through a save: what is in the wild and what is merely possible.
RawZip OddRawZip()
{
    RawZip zip = SmallRawZip();
    zip.comment = "an archive comment";
    zip.entries[3].hasDescriptor = true;
    zip.entries[3].localFlags = quint16(1 << 11 | 8);
    zip.entries[0].externalAttributes = 0x41ed0010U;
    zip.Add("Doc_0/Res/twice.bin", "first of two");
    RawEntry& times = zip.Add("Doc_0/Res/times.bin", QByteArray(300, 't'));
    times.localExtra = QByteArray::fromHex("0a000400deadbeef");
    times.centralExtra = QByteArray::fromHex("0a000400cafebabe");
    times.comment = "a comment of its own";
    times.externalAttributes = 0x81a40000U;
    zip.Add("Doc_0/Res/zip64.bin", QByteArray(300, 'z')).hasLocalZip64 = true;
    zip.Add("Doc_0/Res/central64.bin", QByteArray(300, 'c')).hasCentralZip64 = true;
    zip.Add("Doc_0/Res/twice.bin", "second of two");
    zip.Add("Doc_0/Empty/", {}).isStored = true;
    zip.Add(QByteArray::fromHex("b8bdbcfe") + ".xml", "<GB18030/>");
    zip.Add("Doc_0/secret.bin", "as good as encrypted").flags = 1;
    return zip;
}

// Name and raw region (local header, data, descriptor) of every usable entry, in the order of the directory.
QVector<QPair<QString, QByteArray>> RawEntries(const Package& package)
{
    QVector<QPair<QString, QByteArray>> entries;
    for (const ZipEntry& entry : package.GetDirectory().entries)
        entries.append(
            {entry.name, package.GetSource().ReadAt(entry.headerOffset, entry.regionEnd - entry.headerOffset)});
    return entries;
}

// Reads every entry with another program's library, which also checks that all headers agree.
void CompareWithReferee(const QString& path, const Package& package)
{
    int code = 0;
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY | ZIP_CHECKCONS, &code);
    QVERIFY2(archive, qPrintable(QStringLiteral("libzip error %1").arg(code)));
    for (const QString& name : package.GetPartNames()) {
        zip_stat_t facts;
        QCOMPARE(zip_stat(archive, name.toUtf8().constData(), 0, &facts), 0);
        zip_file_t* file = zip_fopen(archive, name.toUtf8().constData(), 0);
        QVERIFY(file);
        QByteArray bytes(int(facts.size), 0);
        QCOMPARE(zip_fread(file, bytes.data(), facts.size), zip_int64_t(facts.size));
        QCOMPARE(zip_fclose(file), 0);
        QCOMPARE(bytes, package.Read(name).bytes);
    }
    zip_discard(archive);
}

// A pipe-like device: no size, no seeking, pieces of any length.
class PipeDevice : public QIODevice
{
public:
    explicit PipeDevice(const QByteArray& data)
        : data(data)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* to, qint64 count) override
    {
        const QByteArray piece = data.mid(given, int(std::min<qint64>(count, 10'007)));
        std::memcpy(to, piece.constData(), size_t(piece.size()));
        given += piece.size();
        return piece.size();
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray data;
    int given = 0;
};

// Gives some bytes and then fails.
class FailingDevice : public QIODevice
{
public:
    FailingDevice() { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }
    bool isSequential() const override { return false; }
    qint64 size() const override { return 1 << 20; }

protected:
    qint64 readData(char* data, qint64 count) override
    {
        if (given > 500'000)
            return -1;
        std::memset(data, 'f', size_t(count));
        given += count;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    qint64 given = 0;
};

} // namespace

// Saving changes what was changed, keeps every other byte, and leaves the old file or the new one, never half of one.
class TestPackageSave : public QObject
{
    Q_OBJECT

private:
    QString Path(const char* name = "a.ofd") const { return folder->filePath(QString::fromLatin1(name)); }
    std::unique_ptr<Package> OpenZip(const RawZip& zip, const char* name = "a.ofd") const
    {
        WriteFile(Path(name), zip.Build());
        return Package::Open(Path(name));
    }
    QStringList FilesLeft() const
    {
        return QDir(folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    void VerifyFailsAndKeeps(const Package& source, const PackageChanges& changes, const SaveOptions& options,
                             PackageErrorKind kind) const;

    std::unique_ptr<QTemporaryDir> folder;

private slots:
    void init() { folder = std::make_unique<QTemporaryDir>(); }

    void withoutAChangeTheFileIsTheSame_data();
    void withoutAChangeTheFileIsTheSame();
    void anEditKeepsTheRawBytesOfEveryOtherEntry_data();
    void anEditKeepsTheRawBytesOfEveryOtherEntry();
    void anotherLibraryReadsWhatWasSaved();
    void aChangedPartKeepsItsPlaceNameAndAttributes();
    void newPartsGoToTheEndAndAreFlaggedWhenNotAscii();
    void removedPartsGoAndTheOthersStay();
    void ofDuplicatesOneRemainsWhenThePartChanges();
    void foreignBytesAroundTheArchiveStay();
    void entriesThatCannotBeReadComeThrough();
    void changingAPartThatLiesOverOthersAddsItAnew();
    void moreThanSixtyFiveThousandEntriesNeedZip64();
    void partsStreamFromDevices();
    void partsThatPackTooWellStayReadable();
    void savesFollowEachOther();
    void savingUnderAnotherNameLeavesTheSource();
    void permissionsAreKeptAndLinksFollowed();
    void aNewFileGetsTheUsualPermissions();
    void aFileChangedByOthersIsNotOverwrittenUnasked();
    void aFileChangedInPlaceIsNeverSavedFrom();
    void aCancelledSaveLeavesTheOriginal();
    void aFailingDeviceLeavesTheOriginal();
    void badXmlLeavesTheOriginal();
    void aFullMediumLeavesTheOriginal();
    void aKilledSaveLeavesTheOriginal_data();
    void aKilledSaveLeavesTheOriginal();
    void killedAtAnyMomentTheFileIsTheOldOrTheNewOne();
    void aSaveClearsUpAfterTheKilledOnly();
    void filesThatAreNamedAtOnceSaveTheSame();
    void targetsThatCannotBeWrittenAreTold();
    void aPackageInMemoryCanBeSaved();
    void aPackageIsMadeFromNothing();
    void freePartNamesAreFreeInAnyCase();
};

void TestPackageSave::VerifyFailsAndKeeps(const Package& source, const PackageChanges& changes,
                                          const SaveOptions& options, PackageErrorKind kind) const
{
    const QByteArray before = ReadFile(Path());
    const QStringList files = FilesLeft();
    const SaveResult result = SavePackage(source, changes, Path(), options);
    QCOMPARE(result.error.kind, kind);
    QVERIFY(!result.error.text.isEmpty());
    QVERIFY(!result.package);
    QCOMPARE(ReadFile(Path()), before);
    QCOMPARE(FilesLeft(), files);
}

void TestPackageSave::withoutAChangeTheFileIsTheSame_data()
{
    QTest::addColumn<QByteArray>("bytes");
    RawZip zip = OddRawZip();
    QTest::newRow("odd") << zip.Build();
    zip.prefix = "foreign";
    zip.trailing = "behind";
    zip.hasZip64End = true;
    QTest::newRow("odder") << zip.Build();
    zip.Add("overlap", "x").headerOffset = 40U;
    QTest::newRow("overlapping") << zip.Build();
}

void TestPackageSave::withoutAChangeTheFileIsTheSame()
{
    QFETCH(QByteArray, bytes);
    WriteFile(Path(), bytes);
    const auto package = Package::Open(Path());
    QVERIFY(package);
    PackageChanges none;
    none.RemovePart(QStringLiteral("was never there"));
    for (const char* target : {"b.ofd", "a.ofd"}) {
        const SaveResult result = SavePackage(*package, none, Path(target));
        QVERIFY2(result, qPrintable(result.error.text));
        QCOMPARE(ReadFile(Path(target)), bytes);
        QCOMPARE(FilesLeft().size(), 2);
    }
}

void TestPackageSave::anEditKeepsTheRawBytesOfEveryOtherEntry_data()
{
    QTest::addColumn<RawZip>("zip");
    RawZip zip = OddRawZip();
    QTest::newRow("odd") << zip;
    zip.hasZip64End = true;
    QTest::newRow("zip64 end") << zip;
    zip.prefix = QByteArray(500, 'p');
    QTest::newRow("prefix, not counted") << zip;
    zip.countsPrefix = true;
    QTest::newRow("prefix, counted") << zip;
}

void TestPackageSave::anEditKeepsTheRawBytesOfEveryOtherEntry()
{
    QFETCH(RawZip, zip);
    const auto source = OpenZip(zip);
    QVERIFY(source);
    // Longer and shorter than before, so that everything behind moves both ways.
    for (const QByteArray& content :
         {QByteArray("<D/>"), "<D>" + QByteArray(100'000, 'x') + QUuid::createUuid().toByteArray() + "</D>"}) {
        const SaveResult result = SavePackage(*source, DocumentChange(content), Path("b.ofd"));
        QVERIFY2(result, qPrintable(result.error.text));
        QCOMPARE(result.package->Read(DocumentName).bytes, content);
        const auto before = RawEntries(*source);
        const auto after = RawEntries(*result.package);
        QCOMPARE(after.size(), before.size());
        for (int i = 0; i < after.size(); ++i) {
            QCOMPARE(after.at(i).first, before.at(i).first);
            if (after.at(i).first != DocumentName)
                QCOMPARE(after.at(i).second, before.at(i).second);
        }
        // The records too are the same but for the offset.
        QVERIFY(ReadFile(Path("b.ofd")).contains("a comment of its own"));
        QVERIFY(ReadFile(Path("b.ofd")).contains(QByteArray::fromHex("0a000400cafebabe")));
        QVERIFY(ReadFile(Path("b.ofd")).endsWith("an archive comment"));
    }
}

void TestPackageSave::anotherLibraryReadsWhatWasSaved()
{
    RawZip zip = SmallRawZip();
    zip.comment = "comment";
    zip.Add("Doc_0/more.bin", QByteArray(200'000, 'm'));
    const auto source = OpenZip(zip);
    PackageChanges changes = DocumentChange();
    changes.SetPart(QStringLiteral("Doc_0/附件.bin"), QByteArray(70'000, 'n'));
    changes.SetPart(QStringLiteral("Doc_0/empty.bin"), {});
    changes.RemovePart(ImageName);
    const SaveResult result = SavePackage(*source, changes, Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->GetPartNames().size(), 5);
    CompareWithReferee(Path(), *result.package);
}

void TestPackageSave::aChangedPartKeepsItsPlaceNameAndAttributes()
{
    const auto source = OpenZip(OddRawZip());
    PackageChanges changes;
    changes.SetPart(QStringLiteral("Doc_0/Res/times.bin"), "new");
    changes.SetXmlPart(QStringLiteral("附件.xml"), "<renewed/>");
    const SaveResult result = SavePackage(*source, changes, Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->GetPartNames(), source->GetPartNames());
    QCOMPARE(result.package->Read(QStringLiteral("附件.xml")).bytes, QByteArray("<renewed/>"));
    const QByteArray bytes = ReadFile(Path());
    QCOMPARE(bytes.count(QByteArray::fromHex("b8bdbcfe")), 2); // local and central, in the old encoding
    const ZipDirectory& directory = result.package->GetDirectory();
    const ZipEntry& entry = directory.entries[size_t(result.package->FindEntry(QStringLiteral("Doc_0/Res/times.bin")))];
    const QByteArray record = bytes.mid(int(directory.directoryOffset + entry.recordOffset), int(entry.recordSize));
    QCOMPARE(record.mid(38, 4), QByteArray::fromHex("0000a481"));
    QVERIFY(record.endsWith("a comment of its own"));
}

void TestPackageSave::newPartsGoToTheEndAndAreFlaggedWhenNotAscii()
{
    const auto source = OpenZip(SmallRawZip());
    PackageChanges changes;
    changes.SetXmlPart(QStringLiteral("Doc_0/Tags/标.xml"), "<a/>");
    changes.SetXmlPart(QStringLiteral("Doc_0/Tags/Tag_1.xml"), "<b/>");
    const SaveResult result = SavePackage(*source, changes, Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->GetPartNames(),
             source->GetPartNames() +
                 QStringList({QStringLiteral("Doc_0/Tags/Tag_1.xml"), QStringLiteral("Doc_0/Tags/标.xml")}));
    const auto& entries = result.package->GetDirectory().entries;
    QCOMPARE(int(entries[4].flags), 0);
    QCOMPARE(int(entries[5].flags), 1 << 11);
    QVERIFY(entries[4].headerOffset > entries[3].headerOffset);
    for (size_t i = 0; i < 4; ++i)
        QCOMPARE(entries[i].headerOffset, source->GetDirectory().entries[i].headerOffset);
}

void TestPackageSave::removedPartsGoAndTheOthersStay()
{
    const auto source = OpenZip(OddRawZip());
    PackageChanges changes;
    changes.RemovePart(ImageName);
    changes.RemovePart(QStringLiteral("Doc_0/Res/twice.bin"));
    const SaveResult result = SavePackage(*source, changes, Path());
    QVERIFY2(result, qPrintable(result.error.text));
    auto before = RawEntries(*source);
    before.erase(std::remove_if(before.begin(), before.end(),
                                [](const auto& e) {
                                    return e.first == ImageName || e.first.endsWith(QStringLiteral("twice.bin"));
                                }),
                 before.end());
    QCOMPARE(RawEntries(*result.package), before);
}

void TestPackageSave::ofDuplicatesOneRemainsWhenThePartChanges()
{
    const QString name = QStringLiteral("Doc_0/Res/twice.bin");
    const auto source = OpenZip(OddRawZip());
    const SaveResult other = SavePackage(*source, DocumentChange(), Path("b.ofd"));
    QCOMPARE(ReadFile(Path("b.ofd")).count("Doc_0/Res/twice.bin"), 4);
    PackageChanges changes;
    changes.SetPart(name, "one");
    const SaveResult result = SavePackage(*source, changes, Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->Read(name).bytes, QByteArray("one"));
    QCOMPARE(ReadFile(Path()).count("Doc_0/Res/twice.bin"), 2);
}

void TestPackageSave::foreignBytesAroundTheArchiveStay()
{
    RawZip zip = OddRawZip();
    zip.prefix = "foreign bytes in front";
    zip.trailing = "foreign bytes behind";
    const auto source = OpenZip(zip);
    QVERIFY(SavePackage(*source, DocumentChange(), Path()));
    QVERIFY(ReadFile(Path()).startsWith("foreign bytes in front"));
    QVERIFY(ReadFile(Path()).endsWith("an archive commentforeign bytes behind"));
}

void TestPackageSave::entriesThatCannotBeReadComeThrough()
{
    RawZip zip = OddRawZip();
    zip.Add("overlapping", "x").headerOffset = quint32(zip.entries[0].name.size() + 60); // inside the document part
    zip.Add("outside", "x").headerOffset = 0x7fffffffU;
    zip.Add("method", "x").method = 99;
    const auto source = OpenZip(zip);
    PackageChanges changes;
    changes.SetPart(ImageName, "moves what comes behind");
    SaveResult result = SavePackage(*source, changes, Path("b.ofd"));
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->GetPartNames(), source->GetPartNames());
    QCOMPARE(result.package->Read(QStringLiteral("method")).error.kind, PackageErrorKind::Unsupported);
    QCOMPARE(result.package->Read(QStringLiteral("Doc_0/secret.bin")).error.kind, PackageErrorKind::Encrypted);
    // When the bytes that it pointed into are replaced, its record has nothing left to point to.
    result = SavePackage(*source, DocumentChange(), Path("b.ofd"));
    QVERIFY2(result, qPrintable(result.error.text));
    QVERIFY(!result.package->HasPart(QStringLiteral("overlapping")));
    QVERIFY(result.package->HasPart(QStringLiteral("outside")));
}

void TestPackageSave::changingAPartThatLiesOverOthersAddsItAnew()
{
    RawZip zip = SmallRawZip();
    zip.Add("overlapping", "x").headerOffset = 45U;
    const auto source = OpenZip(zip);
    PackageChanges changes;
    changes.SetPart(QStringLiteral("overlapping"), "sound now");
    const SaveResult result = SavePackage(*source, changes, Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->Read(QStringLiteral("overlapping")).bytes, QByteArray("sound now"));
    QCOMPARE(result.package->Read(DocumentName).bytes, zip.entries[1].data);
}

void TestPackageSave::moreThanSixtyFiveThousandEntriesNeedZip64()
{
    RawZip zip = SmallRawZip();
    for (int i = 0; i < 65'530; ++i)
        zip.Add("e" + QByteArray::number(i), "x").isStored = true;
    const auto source = OpenZip(zip);
    QVERIFY(!source->GetDirectory().hasZip64End);
    PackageChanges changes;
    changes.SetPart(QStringLiteral("the 65535th"), "y");
    const SaveResult result = SavePackage(*source, changes, Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QVERIFY(result.package->GetDirectory().hasZip64End);
    QCOMPARE(result.package->GetPartNames().size(), 65'534);
    CompareWithReferee(Path(), *result.package);
}

void TestPackageSave::partsStreamFromDevices()
{
    QByteArray data;
    for (int i = 0; i < 200'000; ++i)
        data += QByteArray::number(i * 31LL % 10'007);
    const auto source = OpenZip(SmallRawZip());
    PackageChanges changes;
    changes.SetPartFromDevice(ImageName, [&data] {
        auto buffer = std::make_unique<QBuffer>(&data);
        buffer->open(QIODevice::ReadOnly);
        return buffer;
    });
    changes.SetPartFromDevice(QStringLiteral("piped"), [&data] { return std::make_unique<PipeDevice>(data); });
    const SaveResult result = SavePackage(*source, changes, Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->Read(ImageName).bytes, data);
    QCOMPARE(result.package->Read(QStringLiteral("piped")).bytes, data);
    CompareWithReferee(Path(), *result.package);
}

void TestPackageSave::partsThatPackTooWellStayReadable()
{
    const QByteArray zeros(30 << 20, 0);
    const auto source = OpenZip(SmallRawZip());
    PackageChanges changes;
    changes.SetPart(ImageName, zeros);
    changes.SetXmlPart(QStringLiteral("z.xml"), "<behind/>");
    const SaveResult result = SavePackage(*source, changes, Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->Read(ImageName).bytes, zeros);
    QCOMPARE(result.package->Read(QStringLiteral("z.xml")).bytes, QByteArray("<behind/>"));
    CompareWithReferee(Path(), *result.package);
}

void TestPackageSave::savesFollowEachOther()
{
    std::unique_ptr<Package> package = OpenZip(OddRawZip());
    const QByteArray image = package->Read(ImageName).bytes;
    for (int round = 0; round < 5; ++round) {
        const QByteArray content = "<D>" + QByteArray::number(round) + QByteArray(round * 1000, ' ') + "</D>";
        SaveResult result = SavePackage(*package, DocumentChange(content), Path());
        QVERIFY2(result, qPrintable(result.error.text));
        // The old package goes on reading the old bytes.
        QCOMPARE(package->Read(ImageName).bytes, image);
        package = std::move(result.package);
        QCOMPARE(package->GetPath(), Path());
        QCOMPARE(package->Read(DocumentName).bytes, content);
        QCOMPARE(package->Read(ImageName).bytes, image);
    }
    QCOMPARE(FilesLeft(), QStringList(QStringLiteral("a.ofd")));
}

void TestPackageSave::savingUnderAnotherNameLeavesTheSource()
{
    const auto source = OpenZip(OddRawZip());
    const QByteArray before = ReadFile(Path());
    WriteFile(Path("b.ofd"), "something else that is replaced");
    const SaveResult result = SavePackage(*source, DocumentChange(), Path("b.ofd"));
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(ReadFile(Path()), before);
    QVERIFY(ReadFile(Path("b.ofd")) != before);
    // The source may have gone by then.
    QVERIFY(QFile::remove(Path()));
    QVERIFY(SavePackage(*source, DocumentChange(), Path("c.ofd")));
}

void TestPackageSave::permissionsAreKeptAndLinksFollowed()
{
    const auto source = OpenZip(SmallRawZip());
    QCOMPARE(::chmod(QFile::encodeName(Path()).constData(), 0640), 0);
    QVERIFY(QFile::link(Path(), Path("link.ofd")));
    const SaveResult result = SavePackage(*source, DocumentChange(), Path("link.ofd"));
    QVERIFY2(result, qPrintable(result.error.text));
    QVERIFY(QFileInfo(Path("link.ofd")).isSymLink());
    QCOMPARE(result.package->GetPath(), QFileInfo(Path()).canonicalFilePath());
    struct stat facts = {};
    QCOMPARE(::stat(QFile::encodeName(Path()).constData(), &facts), 0);
    QCOMPARE(int(facts.st_mode & 07777), 0640);
    QCOMPARE(Package::Open(Path())->Read(DocumentName).bytes, QByteArray("<Document>changed</Document>"));
}

void TestPackageSave::aNewFileGetsTheUsualPermissions()
{
    const auto source = OpenZip(SmallRawZip());
    const mode_t mask = ::umask(0027);
    const SaveResult result = SavePackage(*source, {}, Path("b.ofd"));
    ::umask(mask);
    QVERIFY2(result, qPrintable(result.error.text));
    struct stat facts = {};
    QCOMPARE(::stat(QFile::encodeName(Path("b.ofd")).constData(), &facts), 0);
    QCOMPARE(int(facts.st_mode & 07777), 0640);
}

void TestPackageSave::aFileChangedByOthersIsNotOverwrittenUnasked()
{
    const auto source = OpenZip(SmallRawZip());
    SaveOptions force;
    force.overwritesForeignChange = true;
    // Replaced.
    WriteFile(Path("new"), "somebody else's work");
    QCOMPARE(::rename(QFile::encodeName(Path("new")).constData(), QFile::encodeName(Path()).constData()), 0);
    VerifyFailsAndKeeps(*source, DocumentChange(), {}, PackageErrorKind::SourceChanged);
    QVERIFY(SavePackage(*source, DocumentChange(), Path(), force));
    // Removed.
    QVERIFY(QFile::remove(Path()));
    VerifyFailsAndKeeps(*source, DocumentChange(), {}, PackageErrorKind::SourceChanged);
    QVERIFY(SavePackage(*source, DocumentChange(), Path(), force));
    QCOMPARE(Package::Open(Path())->Read(DocumentName).bytes, QByteArray("<Document>changed</Document>"));
}

void TestPackageSave::aFileChangedInPlaceIsNeverSavedFrom()
{
    const auto source = OpenZip(SmallRawZip());
    QFile file(Path());
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.resize(file.size() - 100));
    file.close();
    SaveOptions force;
    force.overwritesForeignChange = true;
    VerifyFailsAndKeeps(*source, DocumentChange(), force, PackageErrorKind::SourceChanged);
    const SaveResult result = SavePackage(*source, {}, Path("b.ofd"), force);
    QCOMPARE(result.error.kind, PackageErrorKind::SourceChanged);
    QVERIFY(!QFile::exists(Path("b.ofd")));
}

void TestPackageSave::aCancelledSaveLeavesTheOriginal()
{
    const auto source = OpenZip(OddRawZip());
    SaveOptions options;
    options.progress = [](qint64, qint64) { return false; };
    VerifyFailsAndKeeps(*source, DocumentChange(), options, PackageErrorKind::Cancelled);
    VerifyFailsAndKeeps(*source, {}, options, PackageErrorKind::Cancelled);
    qint64 last = 0;
    options.progress = [&last](qint64 done, qint64 total) {
        const bool isSound = done > last && done <= total;
        last = done;
        return isSound;
    };
    QVERIFY(SavePackage(*source, DocumentChange(), Path(), options));
    QVERIFY(last > 0);
}

void TestPackageSave::aFailingDeviceLeavesTheOriginal()
{
    const auto source = OpenZip(OddRawZip());
    PackageChanges changes;
    changes.SetPartFromDevice(ImageName, [] { return std::make_unique<FailingDevice>(); });
    VerifyFailsAndKeeps(*source, changes, {}, PackageErrorKind::NotReadable);
    changes.SetPartFromDevice(ImageName, [] { return std::unique_ptr<QIODevice>(); });
    VerifyFailsAndKeeps(*source, changes, {}, PackageErrorKind::NotReadable);
}

void TestPackageSave::badXmlLeavesTheOriginal()
{
    const auto source = OpenZip(OddRawZip());
    VerifyFailsAndKeeps(*source, DocumentChange("<Document>"), {}, PackageErrorKind::BadXml);
    PackageChanges changes;
    changes.RemovePart(QStringLiteral("OFD.xml")); // leaves nothing that could be opened
    VerifyFailsAndKeeps(*source, changes, {}, PackageErrorKind::CheckFailed);
}

void TestPackageSave::aFullMediumLeavesTheOriginal()
{
    RawZip zip = OddRawZip();
    zip.Add("big.bin", QByteArray(400'000, 'b')).isStored = true;
    const auto source = OpenZip(zip);
    // The limit on the size of files stands in for a full disk: a write fails in the middle.
    struct rlimit before = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    for (const rlim_t room : {rlim_t(0), rlim_t(100), rlim_t(100'000), rlim_t(401'000)}) {
        struct rlimit tight = before;
        tight.rlim_cur = room;
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &tight), 0);
        const SaveResult result = SavePackage(*source, DocumentChange(), Path());
        const SaveResult copy = SavePackage(*source, {}, Path("b.ofd"));
        ::setrlimit(RLIMIT_FSIZE, &before);
        QCOMPARE(result.error.kind, PackageErrorKind::WriteFailed);
        QCOMPARE(copy.error.kind, PackageErrorKind::WriteFailed);
        QCOMPARE(ReadFile(Path()), zip.Build());
        QCOMPARE(FilesLeft(), QStringList(QStringLiteral("a.ofd")));
    }
    std::signal(SIGXFSZ, handler);
}

void TestPackageSave::aKilledSaveLeavesTheOriginal_data()
{
    QTest::addColumn<bool>("isNamed");
    QTest::newRow("without a name until it is complete") << false;
    QTest::newRow("named at once") << true;
}

void TestPackageSave::aKilledSaveLeavesTheOriginal()
{
    QFETCH(const bool, isNamed);
    const int unnamed = ::open(folder->path().toLocal8Bit().constData(), O_RDWR | O_TMPFILE, 0600);
    if (unnamed < 0 && !isNamed)
        QSKIP("the file system here has no files without a name");
    ::close(unnamed);
    RawZip zip = OddRawZip();
    const auto source = OpenZip(zip);
    for (int killAt = 1; killAt <= 3; ++killAt) {
        const pid_t child = ::fork();
        if (child == 0) {
            int calls = 0;
            SaveOptions options;
            options.progress = [&](qint64, qint64) {
                if (++calls == killAt)
                    ::kill(::getpid(), SIGKILL);
                return true;
            };
            TargetFile::SetAlwaysNamed(isNamed);
            SavePackage(*source, DocumentChange(), Path(), options);
            ::_exit(0);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(ReadFile(Path()), zip.Build());
        // Each save clears up after the one before.
        QCOMPARE(FilesLeft().size(), isNamed ? 2 : 1);
    }
    QVERIFY(SavePackage(*source, DocumentChange(), Path()));
    QCOMPARE(FilesLeft(), QStringList(QStringLiteral("a.ofd")));
}

void TestPackageSave::killedAtAnyMomentTheFileIsTheOldOrTheNewOne()
{
    RawZip zip = OddRawZip();
    zip.Add("big.bin", QByteArray(400'000, 'b')).isStored = true;
    WriteFile(Path(), zip.Build());
    // Two contents in turn; a file that is killed on its way to one of them holds one of them, or what it began with.
    const QByteArray contents[] = {"<Document>first</Document>", "<Document>" + QByteArray(5000, 's') + "</Document>"};
    const QByteArray original = Package::Open(Path())->Read(DocumentName).bytes;
    const quint32 seed = QRandomGenerator::system()->generate();
    QRandomGenerator random(seed);
    for (int round = 0; round < 200; ++round) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (int turn = 0;; ++turn) {
                const auto source = Package::Open(Path());
                if (!source || !SavePackage(*source, DocumentChange(contents[turn % 2]), Path()))
                    ::_exit(1);
            }
        }
        ::usleep(useconds_t(random.bounded(12'000)));
        ::kill(child, SIGKILL);
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY2(WIFSIGNALED(status), "the child could not save");
        const auto package = Package::Open(Path());
        QVERIFY2(package, qPrintable(QStringLiteral("seed %1, round %2").arg(seed).arg(round)));
        const QByteArray now = package->Read(DocumentName).bytes;
        QVERIFY(now == contents[0] || now == contents[1] || now == original);
        QCOMPARE(package->Read(QStringLiteral("big.bin")).bytes, QByteArray(400'000, 'b'));
        QVERIFY(FilesLeft().size() <= 2); // what was killed just before its renaming goes with the next save
    }
    QVERIFY(SavePackage(*Package::Open(Path()), DocumentChange(), Path()));
    QCOMPARE(FilesLeft(), QStringList(QStringLiteral("a.ofd")));
}

void TestPackageSave::aSaveClearsUpAfterTheKilledOnly()
{
    const auto source = OpenZip(OddRawZip());
    const pid_t dead = ::fork();
    if (dead == 0)
        ::_exit(0);
    QCOMPARE(::waitpid(dead, nullptr, 0), dead);
    const QByteArray stem = ".saving-" + QByteArray::number(dead);
    const QByteArray left = stem + "-left.tmp";
    const QByteArray locked = stem + "-locked.tmp"; // somebody writes it, though not on this machine
    const QByteArray living = ".saving-" + QByteArray::number(::getpid()) + "-living.tmp";
    for (const QByteArray& name : {left, locked, living, stem + "-notes.txt", QByteArray(".saving-old.tmp")})
        WriteFile(Path(name.constData()), "bytes");
    QFile writer(Path(locked.constData()));
    QVERIFY(writer.open(QIODevice::ReadWrite));
    QCOMPARE(::flock(writer.handle(), LOCK_EX), 0);
    QCOMPARE(::symlink("a.ofd", Path((stem + "-link.tmp").constData()).toLocal8Bit().constData()), 0);
    const int before = FilesLeft().size();
    QVERIFY(SavePackage(*source, DocumentChange(), Path()));
    QVERIFY(!FilesLeft().contains(QString::fromLatin1(left)));
    QCOMPARE(FilesLeft().size(), before - 1);
}

void TestPackageSave::filesThatAreNamedAtOnceSaveTheSame()
{
    const auto source = OpenZip(OddRawZip());
    QVERIFY(SavePackage(*source, DocumentChange(), Path("unnamed.ofd")));
    TargetFile::SetAlwaysNamed(true);
    const SaveResult named = SavePackage(*source, DocumentChange(), Path("named.ofd"));
    const SaveResult failed =
        SavePackage(*source, DocumentChange("<Document>"), Path("failed.ofd")); // goes again when it fails
    TargetFile::SetAlwaysNamed(false);
    QVERIFY(named);
    QVERIFY(!failed);
    QCOMPARE(ReadFile(Path("named.ofd")).size(), ReadFile(Path("unnamed.ofd")).size());
    QCOMPARE(FilesLeft(),
             QStringList({QStringLiteral("a.ofd"), QStringLiteral("named.ofd"), QStringLiteral("unnamed.ofd")}));
}

void TestPackageSave::targetsThatCannotBeWrittenAreTold()
{
    const auto source = OpenZip(SmallRawZip());
    QCOMPARE(SavePackage(*source, {}, Path("no/such/folder/a.ofd")).error.kind, PackageErrorKind::NotWritable);
    QCOMPARE(SavePackage(*source, {}, folder->path()).error.kind, PackageErrorKind::NotWritable);
    QCOMPARE(SavePackage(*source, {}, QStringLiteral("/proc/a.ofd")).error.kind, PackageErrorKind::NotWritable);
    QCOMPARE(FilesLeft(), QStringList(QStringLiteral("a.ofd")));
}

void TestPackageSave::aPackageInMemoryCanBeSaved()
{
    const QByteArray bytes = OddRawZip().Build();
    const auto source = Package::OpenBytes(bytes);
    QVERIFY(SavePackage(*source, {}, Path()));
    QCOMPARE(ReadFile(Path()), bytes);
    const SaveResult result = SavePackage(*source, DocumentChange(), Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->Read(ImageName).bytes, source->Read(ImageName).bytes);
}

void TestPackageSave::aPackageIsMadeFromNothing()
{
    PackageChanges parts;
    parts.SetXmlPart(QStringLiteral("OFD.xml"), "<OFD/>");
    parts.SetPart(QStringLiteral("数据.bin"), "data");
    SaveResult result = CreatePackage(parts, Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->GetPartNames(), QStringList({QStringLiteral("OFD.xml"), QStringLiteral("数据.bin")}));
    CompareWithReferee(Path(), *result.package);
    PackageChanges lacking;
    lacking.SetPart(QStringLiteral("x"), "y");
    QCOMPARE(CreatePackage(lacking, Path("b.ofd")).error.kind, PackageErrorKind::CheckFailed);
    QVERIFY(!QFile::exists(Path("b.ofd")));
}

void TestPackageSave::freePartNamesAreFreeInAnyCase()
{
    RawZip zip = SmallRawZip();
    zip.Add("DOC_0/tags/TAG_1.XML", "<a/>");
    const auto package = Package::OpenBytes(zip.Build());
    PackageChanges changes;
    const auto next = [&] {
        return changes.FreePartName(*package, QStringLiteral("Doc_0/Tags/"), QStringLiteral("Tag_"),
                                    QStringLiteral(".xml"));
    };
    QCOMPARE(next(), QStringLiteral("Doc_0/Tags/Tag_2.xml"));
    changes.SetXmlPart(QStringLiteral("Doc_0/Tags/tag_2.xml"), "<a/>");
    QCOMPARE(next(), QStringLiteral("Doc_0/Tags/Tag_3.xml"));
}

TETO_TEST_MAIN(TestPackageSave)
#include "test_package_save.moc"
