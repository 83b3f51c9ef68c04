#include "archive_comparison.h"
#include "package_desk.h"

#include <ofd/package/package_writer.h>
#include <tests/support/test_main.h>

#include <QBuffer>
#include <QTextCodec>
#include <QUuid>
#include <QtTest>

#include <algorithm>
#include <cstring>

using namespace ofd;

Q_DECLARE_METATYPE(RawZip)

namespace {

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

} // namespace

// Saving changes what was changed and keeps every other byte.
class TestPackageSave : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<PackageDesk> desk;

private slots:
    void init() { desk = std::make_unique<PackageDesk>(); }

    void withoutAChangeTheFileIsTheSame_data();
    void withoutAChangeTheFileIsTheSame();
    void anEditKeepsTheRawBytesOfEveryOtherEntry_data();
    void anEditKeepsTheRawBytesOfEveryOtherEntry();
    void anotherLibraryReadsWhatWasSaved();
    void namesKeepTheirReadingWhenTheOneThatTellsItGoes();
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
    void aPackageInMemoryCanBeSaved();
    void aPackageIsMadeFromNothing();
    void freePartNamesAreFreeInAnyCase();
};

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
    WriteFile(desk->Path(), bytes);
    const auto package = Package::Open(desk->Path());
    QVERIFY(package);
    PackageChanges none;
    none.RemovePart(QStringLiteral("was never there"));
    for (const char* target : {"b.ofd", "a.ofd"}) {
        const SaveResult result = SavePackage(*package, none, desk->Path(target));
        QVERIFY2(result, qPrintable(result.error.text));
        QCOMPARE(ReadFile(desk->Path(target)), bytes);
        QCOMPARE(desk->FilesLeft().size(), 2);
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
    const auto source = desk->OpenZip(zip);
    QVERIFY(source);
    // Longer and shorter than before, so that everything behind moves both ways.
    for (const QByteArray& content :
         {QByteArray("<D/>"), "<D>" + QByteArray(100'000, 'x') + QUuid::createUuid().toByteArray() + "</D>"}) {
        const SaveResult result = SavePackage(*source, DocumentChange(content), desk->Path("b.ofd"));
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
        QVERIFY(ReadFile(desk->Path("b.ofd")).contains("a comment of its own"));
        QVERIFY(ReadFile(desk->Path("b.ofd")).contains(QByteArray::fromHex("0a000400cafebabe")));
        QVERIFY(ReadFile(desk->Path("b.ofd")).endsWith("an archive comment"));
    }
}

void TestPackageSave::anotherLibraryReadsWhatWasSaved()
{
    RawZip zip = SmallRawZip();
    zip.comment = "comment";
    zip.Add("Doc_0/more.bin", QByteArray(200'000, 'm'));
    const auto source = desk->OpenZip(zip);
    PackageChanges changes = DocumentChange();
    changes.SetPart(QStringLiteral("Doc_0/附件.bin"), QByteArray(70'000, 'n'));
    changes.SetPart(QStringLiteral("Doc_0/empty.bin"), {});
    changes.RemovePart(ImageName);
    const SaveResult result = SavePackage(*source, changes, desk->Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->GetPartNames().size(), 5);
    CompareWithReferee(desk->Path(), *result.package);
}

void TestPackageSave::namesKeepTheirReadingWhenTheOneThatTellsItGoes()
{
    const QTextCodec* codec = QTextCodec::codecForName("GB18030"); // not owned
    const QString doubtful = QStringLiteral("Doc_0/Res/图片.png");
    const QString clear = QStringLiteral("Doc_0/说明.txt");
    RawZip zip = SmallRawZip();
    zip.Add(codec->fromUnicode(doubtful), "picture");
    zip.Add(codec->fromUnicode(clear), "note");
    const auto source = desk->OpenZip(zip);
    QVERIFY(source);
    PackageChanges changes = DocumentChange();
    const SaveResult edited = SavePackage(*source, changes, desk->Path("edited.ofd"));
    QVERIFY2(edited, qPrintable(edited.error.text));
    QCOMPARE(edited.package->GetPartNames(), source->GetPartNames());
    QVERIFY(ReadFile(desk->Path("edited.ofd")).contains(codec->fromUnicode(doubtful)));
    changes.RemovePart(clear);
    const SaveResult removed = SavePackage(*source, changes, desk->Path("removed.ofd"));
    QVERIFY2(removed, qPrintable(removed.error.text));
    QCOMPARE(removed.package->Read(doubtful).bytes, QByteArray("picture"));
    QVERIFY(!removed.package->HasPart(clear));
    QCOMPARE(removed.package->GetPartNames().size(), source->GetPartNames().size() - 1);
}

void TestPackageSave::aChangedPartKeepsItsPlaceNameAndAttributes()
{
    const auto source = desk->OpenZip(OddRawZip());
    PackageChanges changes;
    changes.SetPart(QStringLiteral("Doc_0/Res/times.bin"), "new");
    changes.SetXmlPart(QStringLiteral("附件.xml"), "<renewed/>");
    const SaveResult result = SavePackage(*source, changes, desk->Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->GetPartNames(), source->GetPartNames());
    QCOMPARE(result.package->Read(QStringLiteral("附件.xml")).bytes, QByteArray("<renewed/>"));
    const QByteArray bytes = ReadFile(desk->Path());
    QCOMPARE(bytes.count(QByteArray::fromHex("b8bdbcfe")), 2); // local and central, in the old encoding
    const ZipDirectory& directory = result.package->GetDirectory();
    const ZipEntry& entry = directory.entries[size_t(result.package->FindEntry(QStringLiteral("Doc_0/Res/times.bin")))];
    const QByteArray record = bytes.mid(int(directory.directoryOffset + entry.recordOffset), int(entry.recordSize));
    QCOMPARE(record.mid(38, 4), QByteArray::fromHex("0000a481"));
    QVERIFY(record.endsWith("a comment of its own"));
}

void TestPackageSave::newPartsGoToTheEndAndAreFlaggedWhenNotAscii()
{
    const auto source = desk->OpenZip(SmallRawZip());
    PackageChanges changes;
    changes.SetXmlPart(QStringLiteral("Doc_0/Tags/标.xml"), "<a/>");
    changes.SetXmlPart(QStringLiteral("Doc_0/Tags/Tag_1.xml"), "<b/>");
    const SaveResult result = SavePackage(*source, changes, desk->Path());
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
    const auto source = desk->OpenZip(OddRawZip());
    PackageChanges changes;
    changes.RemovePart(ImageName);
    changes.RemovePart(QStringLiteral("Doc_0/Res/twice.bin"));
    const SaveResult result = SavePackage(*source, changes, desk->Path());
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
    const auto source = desk->OpenZip(OddRawZip());
    const SaveResult other = SavePackage(*source, DocumentChange(), desk->Path("b.ofd"));
    QCOMPARE(ReadFile(desk->Path("b.ofd")).count("Doc_0/Res/twice.bin"), 4);
    PackageChanges changes;
    changes.SetPart(name, "one");
    const SaveResult result = SavePackage(*source, changes, desk->Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->Read(name).bytes, QByteArray("one"));
    QCOMPARE(ReadFile(desk->Path()).count("Doc_0/Res/twice.bin"), 2);
}

void TestPackageSave::foreignBytesAroundTheArchiveStay()
{
    RawZip zip = OddRawZip();
    zip.prefix = "foreign bytes in front";
    zip.trailing = "foreign bytes behind";
    const auto source = desk->OpenZip(zip);
    QVERIFY(SavePackage(*source, DocumentChange(), desk->Path()));
    QVERIFY(ReadFile(desk->Path()).startsWith("foreign bytes in front"));
    QVERIFY(ReadFile(desk->Path()).endsWith("an archive commentforeign bytes behind"));
}

void TestPackageSave::entriesThatCannotBeReadComeThrough()
{
    RawZip zip = OddRawZip();
    zip.Add("overlapping", "x").headerOffset = quint32(zip.entries[0].name.size() + 60); // inside the document part
    zip.Add("outside", "x").headerOffset = 0x7fffffffU;
    zip.Add("method", "x").method = 99;
    const auto source = desk->OpenZip(zip);
    PackageChanges changes;
    changes.SetPart(ImageName, "moves what comes behind");
    SaveResult result = SavePackage(*source, changes, desk->Path("b.ofd"));
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->GetPartNames(), source->GetPartNames());
    QCOMPARE(result.package->Read(QStringLiteral("method")).error.kind, PackageErrorKind::Unsupported);
    QCOMPARE(result.package->Read(QStringLiteral("Doc_0/secret.bin")).error.kind, PackageErrorKind::Encrypted);
    // When the bytes that it pointed into are replaced, its record has nothing left to point to.
    result = SavePackage(*source, DocumentChange(), desk->Path("b.ofd"));
    QVERIFY2(result, qPrintable(result.error.text));
    QVERIFY(!result.package->HasPart(QStringLiteral("overlapping")));
    QVERIFY(result.package->HasPart(QStringLiteral("outside")));
}

void TestPackageSave::changingAPartThatLiesOverOthersAddsItAnew()
{
    RawZip zip = SmallRawZip();
    zip.Add("overlapping", "x").headerOffset = 45U;
    const auto source = desk->OpenZip(zip);
    PackageChanges changes;
    changes.SetPart(QStringLiteral("overlapping"), "sound now");
    const SaveResult result = SavePackage(*source, changes, desk->Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->Read(QStringLiteral("overlapping")).bytes, QByteArray("sound now"));
    QCOMPARE(result.package->Read(DocumentName).bytes, zip.entries[1].data);
}

void TestPackageSave::moreThanSixtyFiveThousandEntriesNeedZip64()
{
    RawZip zip = SmallRawZip();
    for (int i = 0; i < 65'530; ++i)
        zip.Add("e" + QByteArray::number(i), "x").isStored = true;
    const auto source = desk->OpenZip(zip);
    QVERIFY(!source->GetDirectory().hasZip64End);
    PackageChanges changes;
    changes.SetPart(QStringLiteral("the 65535th"), "y");
    const SaveResult result = SavePackage(*source, changes, desk->Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QVERIFY(result.package->GetDirectory().hasZip64End);
    QCOMPARE(result.package->GetPartNames().size(), 65'534);
    CompareWithReferee(desk->Path(), *result.package);
}

void TestPackageSave::partsStreamFromDevices()
{
    QByteArray data;
    for (int i = 0; i < 200'000; ++i)
        data += QByteArray::number(i * 31LL % 10'007);
    const auto source = desk->OpenZip(SmallRawZip());
    PackageChanges changes;
    changes.SetPartFromDevice(ImageName, [&data] {
        auto buffer = std::make_unique<QBuffer>(&data);
        buffer->open(QIODevice::ReadOnly);
        return buffer;
    });
    changes.SetPartFromDevice(QStringLiteral("piped"), [&data] { return std::make_unique<PipeDevice>(data); });
    const SaveResult result = SavePackage(*source, changes, desk->Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->Read(ImageName).bytes, data);
    QCOMPARE(result.package->Read(QStringLiteral("piped")).bytes, data);
    CompareWithReferee(desk->Path(), *result.package);
}

void TestPackageSave::partsThatPackTooWellStayReadable()
{
    const QByteArray zeros(30 << 20, 0);
    const auto source = desk->OpenZip(SmallRawZip());
    PackageChanges changes;
    changes.SetPart(ImageName, zeros);
    changes.SetXmlPart(QStringLiteral("z.xml"), "<behind/>");
    const SaveResult result = SavePackage(*source, changes, desk->Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->Read(ImageName).bytes, zeros);
    QCOMPARE(result.package->Read(QStringLiteral("z.xml")).bytes, QByteArray("<behind/>"));
    CompareWithReferee(desk->Path(), *result.package);
}

void TestPackageSave::savesFollowEachOther()
{
    std::unique_ptr<Package> package = desk->OpenZip(OddRawZip());
    const QByteArray image = package->Read(ImageName).bytes;
    for (int round = 0; round < 5; ++round) {
        const QByteArray content = "<D>" + QByteArray::number(round) + QByteArray(round * 1000, ' ') + "</D>";
        SaveResult result = SavePackage(*package, DocumentChange(content), desk->Path());
        QVERIFY2(result, qPrintable(result.error.text));
        // The old package goes on reading the old bytes.
        QCOMPARE(package->Read(ImageName).bytes, image);
        package = std::move(result.package);
        QCOMPARE(package->GetPath(), desk->Path());
        QCOMPARE(package->Read(DocumentName).bytes, content);
        QCOMPARE(package->Read(ImageName).bytes, image);
    }
    QCOMPARE(desk->FilesLeft(), QStringList(QStringLiteral("a.ofd")));
}

void TestPackageSave::savingUnderAnotherNameLeavesTheSource()
{
    const auto source = desk->OpenZip(OddRawZip());
    const QByteArray before = ReadFile(desk->Path());
    WriteFile(desk->Path("b.ofd"), "something else that is replaced");
    const SaveResult result = SavePackage(*source, DocumentChange(), desk->Path("b.ofd"));
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(ReadFile(desk->Path()), before);
    QVERIFY(ReadFile(desk->Path("b.ofd")) != before);
    // The source may have gone by then.
    QVERIFY(QFile::remove(desk->Path()));
    QVERIFY(SavePackage(*source, DocumentChange(), desk->Path("c.ofd")));
}

void TestPackageSave::aPackageInMemoryCanBeSaved()
{
    const QByteArray bytes = OddRawZip().Build();
    const auto source = Package::OpenBytes(bytes);
    QVERIFY(SavePackage(*source, {}, desk->Path()));
    QCOMPARE(ReadFile(desk->Path()), bytes);
    const SaveResult result = SavePackage(*source, DocumentChange(), desk->Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->Read(ImageName).bytes, source->Read(ImageName).bytes);
}

void TestPackageSave::aPackageIsMadeFromNothing()
{
    PackageChanges parts;
    parts.SetXmlPart(QStringLiteral("OFD.xml"), "<OFD/>");
    parts.SetPart(QStringLiteral("数据.bin"), "data");
    SaveResult result = CreatePackage(parts, desk->Path());
    QVERIFY2(result, qPrintable(result.error.text));
    QCOMPARE(result.package->GetPartNames(), QStringList({QStringLiteral("OFD.xml"), QStringLiteral("数据.bin")}));
    CompareWithReferee(desk->Path(), *result.package);
    PackageChanges lacking;
    lacking.SetPart(QStringLiteral("x"), "y");
    QCOMPARE(CreatePackage(lacking, desk->Path("b.ofd")).error.kind, PackageErrorKind::CheckFailed);
    QVERIFY(!QFile::exists(desk->Path("b.ofd")));
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
