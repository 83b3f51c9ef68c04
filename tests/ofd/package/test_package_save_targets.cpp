// The file that a save writes to: its permissions, and links that lead to it.
#include "package_desk.h"

#include <ofd/package/package_writer.h>
#include <tests/support/test_main.h>

#include <QDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace ofd;

class TestPackageSaveTargets : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<PackageDesk> desk;

private slots:
    void init() { desk = std::make_unique<PackageDesk>(); }

    void permissionsAreKeptAndLinksFollowed();
    void linksToAFileThatIsNotThereYetMakeIt();
    void linksThatLeadNowhereAreRefused();
    void aNewFileGetsTheUsualPermissions();
};

void TestPackageSaveTargets::permissionsAreKeptAndLinksFollowed()
{
    const auto source = desk->OpenZip(SmallRawZip());
    QCOMPARE(::chmod(QFile::encodeName(desk->Path()).constData(), 0640), 0);
    QVERIFY(QFile::link(desk->Path(), desk->Path("link.ofd")));
    const SaveResult result = SavePackage(*source, DocumentChange(), desk->Path("link.ofd"));
    QVERIFY2(result, qPrintable(result.error.text));
    QVERIFY(QFileInfo(desk->Path("link.ofd")).isSymLink());
    QCOMPARE(result.package->GetPath(), QFileInfo(desk->Path()).canonicalFilePath());
    struct stat facts = {};
    QCOMPARE(::stat(QFile::encodeName(desk->Path()).constData(), &facts), 0);
    QCOMPARE(int(facts.st_mode & 07777), 0640);
    QCOMPARE(Package::Open(desk->Path())->Read(DocumentName).bytes, QByteArray("<Document>changed</Document>"));
}

void TestPackageSaveTargets::linksToAFileThatIsNotThereYetMakeIt()
{
    const auto source = desk->OpenZip(SmallRawZip());
    QVERIFY(QDir(desk->Folder()).mkpath(QStringLiteral("deep/er")));
    const auto link = [this](const char* to, const char* name) {
        return ::symlink(to, QFile::encodeName(desk->Path(name)).constData());
    };
    // By way of another link, and of a folder that is a link: ".." behind it is not what it looks like.
    QCOMPARE(link("deep/er", "folder"), 0);
    QCOMPARE(link("folder/../new.ofd", "second.ofd"), 0);
    QCOMPARE(link("second.ofd", "first.ofd"), 0);
    const SaveResult result = SavePackage(*source, DocumentChange(), desk->Path("first.ofd"));
    QVERIFY2(result, qPrintable(result.error.text));
    QVERIFY(QFileInfo(desk->Path("first.ofd")).isSymLink());
    QVERIFY(QFileInfo(desk->Path("second.ofd")).isSymLink());
    const QString made = QFileInfo(desk->Folder()).canonicalFilePath() + QStringLiteral("/deep/new.ofd");
    QCOMPARE(result.package->GetPath(), made);
    QCOMPARE(Package::Open(made)->Read(DocumentName).bytes, QByteArray("<Document>changed</Document>"));
    QVERIFY(!QFileInfo::exists(desk->Path("new.ofd")));
}

void TestPackageSaveTargets::linksThatLeadNowhereAreRefused()
{
    const auto source = desk->OpenZip(SmallRawZip());
    QCOMPARE(::symlink("round.ofd", QFile::encodeName(desk->Path("round.ofd")).constData()), 0);
    QCOMPARE(::symlink("no/such/folder.ofd", QFile::encodeName(desk->Path("gone.ofd")).constData()), 0);
    const QStringList before = desk->FilesLeft();
    for (const char* name : {"round.ofd", "gone.ofd"}) {
        const SaveResult result = SavePackage(*source, DocumentChange(), desk->Path(name));
        QCOMPARE(result.error.kind, PackageErrorKind::NotWritable);
        QVERIFY(!result.error.text.isEmpty());
        QVERIFY(QFileInfo(desk->Path(name)).isSymLink());
    }
    QCOMPARE(desk->FilesLeft(), before);
}

void TestPackageSaveTargets::aNewFileGetsTheUsualPermissions()
{
    const auto source = desk->OpenZip(SmallRawZip());
    const mode_t mask = ::umask(0027);
    const SaveResult result = SavePackage(*source, {}, desk->Path("b.ofd"));
    ::umask(mask);
    QVERIFY2(result, qPrintable(result.error.text));
    struct stat facts = {};
    QCOMPARE(::stat(QFile::encodeName(desk->Path("b.ofd")).constData(), &facts), 0);
    QCOMPARE(int(facts.st_mode & 07777), 0640);
}

TETO_TEST_MAIN(TestPackageSaveTargets)

#include "test_package_save_targets.moc"
