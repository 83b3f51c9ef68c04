#include "package_desk.h"

#include <ofd/package/package_writer.h>
#include <ofd/package/target_file.h>
#include <tests/support/test_main.h>

#include <QDir>
#include <QFile>
#include <QtTest>

#include <csignal>
#include <cstring>
#include <functional>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace ofd;

namespace {

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

// Runs in a process of its own, so that what it does to the process goes with it; what it answers.
QString InChild(const std::function<QByteArray()>& work)
{
    int ends[2];
    if (::pipe(ends) != 0)
        qFatal("no pipe");
    const pid_t child = ::fork();
    if (child == 0) {
        const QByteArray answer = work();
        ::_exit(::write(ends[1], answer.constData(), size_t(answer.size())) == answer.size() ? 0 : 1);
    }
    ::close(ends[1]);
    QFile pipe;
    pipe.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    const QByteArray answer = pipe.readAll();
    int status = 0;
    ::waitpid(child, &status, 0);
    return status == 0 ? QString::fromUtf8(answer) : QStringLiteral("the child ended with %1").arg(status);
}

// Leaves so many bytes free on the file system of the folder.
void FillUp(const QString& folder, qint64 bytesFree)
{
    QFile filler(folder + QStringLiteral("/filler"));
    filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    const QByteArray block(4096, 'f');
    while (filler.write(block) == block.size())
        continue;
    filler.resize(filler.size() - bytesFree);
}

// Saves into a folder with less room than the file needs; what went wrong with that, empty when nothing did.
QByteArray SaveWhileTheDiskIsFull(const QString& folder)
{
    RawZip zip = OddRawZip();
    zip.Add("big.bin", QByteArray(400'000, 'b')).isStored = true;
    const QString path = folder + QStringLiteral("/a.ofd");
    WriteFile(path, zip.Build());
    const auto source = Package::Open(path);
    for (const qint64 room : {0, 4096, 100 * 1024, 380 * 1024}) {
        FillUp(folder, room);
        for (const bool isNamed : {false, true}) {
            TargetFile::SetAlwaysNamed(isNamed);
            const SaveResult result = SavePackage(*source, DocumentChange(), path);
            if (result.error.kind != PackageErrorKind::DiskFull)
                return "another error: " + result.error.text.toUtf8();
            if (result.error.text != QLatin1String("The disk is full."))
                return "another text: " + result.error.text.toUtf8();
            if (ReadFile(path) != zip.Build())
                return "the original changed";
            if (QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size() != 2)
                return "something was left behind";
        }
    }
    TargetFile::SetAlwaysNamed(false);
    QFile::remove(folder + QStringLiteral("/filler"));
    const SaveResult result = SavePackage(*source, DocumentChange(), path);
    return result ? QByteArray() : "with room it fails too: " + result.error.text.toUtf8();
}

} // namespace

// A save that fails says why and leaves the original as it was, with nothing beside it.
class TestPackageSaveFailures : public QObject
{
    Q_OBJECT

private:
    void VerifyFailsAndKeeps(const Package& source, const PackageChanges& changes, const SaveOptions& options,
                             PackageErrorKind kind) const;

    std::unique_ptr<PackageDesk> desk;

private slots:
    void init() { desk = std::make_unique<PackageDesk>(); }

    void aFileChangedByOthersIsNotOverwrittenUnasked();
    void aFileChangedInPlaceIsNeverSavedFrom();
    void aCancelledSaveLeavesTheOriginal();
    void aFailingDeviceLeavesTheOriginal();
    void badXmlLeavesTheOriginal();
    void aLimitOnTheSizeOfFilesLeavesTheOriginal();
    void aFullDiskLeavesTheOriginal();
    void aFolderThatIsReadOnlyIsTold();
    void targetsThatCannotBeWrittenAreTold();
};

void TestPackageSaveFailures::VerifyFailsAndKeeps(const Package& source, const PackageChanges& changes,
                                                  const SaveOptions& options, PackageErrorKind kind) const
{
    const QByteArray before = ReadFile(desk->Path());
    const QStringList files = desk->FilesLeft();
    const SaveResult result = SavePackage(source, changes, desk->Path(), options);
    QCOMPARE(result.error.kind, kind);
    QVERIFY(!result.error.text.isEmpty());
    QVERIFY(!result.package);
    QCOMPARE(ReadFile(desk->Path()), before);
    QCOMPARE(desk->FilesLeft(), files);
}

void TestPackageSaveFailures::aFileChangedByOthersIsNotOverwrittenUnasked()
{
    const auto source = desk->OpenZip(SmallRawZip());
    SaveOptions force;
    force.overwritesForeignChange = true;
    // Replaced.
    WriteFile(desk->Path("new"), "somebody else's work");
    QCOMPARE(::rename(QFile::encodeName(desk->Path("new")).constData(), QFile::encodeName(desk->Path()).constData()),
             0);
    VerifyFailsAndKeeps(*source, DocumentChange(), {}, PackageErrorKind::SourceChanged);
    QVERIFY(SavePackage(*source, DocumentChange(), desk->Path(), force));
    // Removed.
    QVERIFY(QFile::remove(desk->Path()));
    VerifyFailsAndKeeps(*source, DocumentChange(), {}, PackageErrorKind::SourceChanged);
    QVERIFY(SavePackage(*source, DocumentChange(), desk->Path(), force));
    QCOMPARE(Package::Open(desk->Path())->Read(DocumentName).bytes, QByteArray("<Document>changed</Document>"));
}

void TestPackageSaveFailures::aFileChangedInPlaceIsNeverSavedFrom()
{
    const auto source = desk->OpenZip(SmallRawZip());
    QFile file(desk->Path());
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.resize(file.size() - 100));
    file.close();
    SaveOptions force;
    force.overwritesForeignChange = true;
    VerifyFailsAndKeeps(*source, DocumentChange(), force, PackageErrorKind::SourceChanged);
    const SaveResult result = SavePackage(*source, {}, desk->Path("b.ofd"), force);
    QCOMPARE(result.error.kind, PackageErrorKind::SourceChanged);
    QVERIFY(!QFile::exists(desk->Path("b.ofd")));
}

void TestPackageSaveFailures::aCancelledSaveLeavesTheOriginal()
{
    const auto source = desk->OpenZip(OddRawZip());
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
    QVERIFY(SavePackage(*source, DocumentChange(), desk->Path(), options));
    QVERIFY(last > 0);
}

void TestPackageSaveFailures::aFailingDeviceLeavesTheOriginal()
{
    const auto source = desk->OpenZip(OddRawZip());
    PackageChanges changes;
    changes.SetPartFromDevice(ImageName, [] { return std::make_unique<FailingDevice>(); });
    VerifyFailsAndKeeps(*source, changes, {}, PackageErrorKind::NotReadable);
    changes.SetPartFromDevice(ImageName, [] { return std::unique_ptr<QIODevice>(); });
    VerifyFailsAndKeeps(*source, changes, {}, PackageErrorKind::NotReadable);
}

void TestPackageSaveFailures::badXmlLeavesTheOriginal()
{
    const auto source = desk->OpenZip(OddRawZip());
    VerifyFailsAndKeeps(*source, DocumentChange("<Document>"), {}, PackageErrorKind::BadXml);
    PackageChanges changes;
    changes.RemovePart(QStringLiteral("OFD.xml")); // leaves nothing that could be opened
    VerifyFailsAndKeeps(*source, changes, {}, PackageErrorKind::CheckFailed);
}

void TestPackageSaveFailures::aLimitOnTheSizeOfFilesLeavesTheOriginal()
{
    RawZip zip = OddRawZip();
    zip.Add("big.bin", QByteArray(400'000, 'b')).isStored = true;
    const auto source = desk->OpenZip(zip);
    // A write fails in the middle.
    struct rlimit before = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    for (const rlim_t room : {rlim_t(0), rlim_t(100), rlim_t(100'000), rlim_t(401'000)}) {
        struct rlimit tight = before;
        tight.rlim_cur = room;
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &tight), 0);
        const SaveResult result = SavePackage(*source, DocumentChange(), desk->Path());
        const SaveResult copy = SavePackage(*source, {}, desk->Path("b.ofd"));
        ::setrlimit(RLIMIT_FSIZE, &before);
        QCOMPARE(result.error.kind, PackageErrorKind::WriteFailed);
        QCOMPARE(copy.error.kind, PackageErrorKind::WriteFailed);
        QCOMPARE(ReadFile(desk->Path()), zip.Build());
        QCOMPARE(desk->FilesLeft(), QStringList(QStringLiteral("a.ofd")));
    }
    std::signal(SIGXFSZ, handler);
}

void TestPackageSaveFailures::aFullDiskLeavesTheOriginal()
{
    if (::geteuid() != 0)
        QSKIP("only root may mount a small file system");
    QVERIFY(QDir(desk->Folder()).mkdir(QStringLiteral("small")));
    const QString complaint = InChild([this]() -> QByteArray {
        const QString folder = desk->Path("small");
        const QByteArray rawFolder = QFile::encodeName(folder);
        if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("tmpfs", rawFolder.constData(), "tmpfs", 0, "size=1200k") != 0)
            return "skip: nothing can be mounted here";
        return SaveWhileTheDiskIsFull(folder);
    });
    if (complaint.startsWith(QLatin1String("skip")))
        QSKIP(qPrintable(complaint));
    QCOMPARE(complaint, QString());
}

void TestPackageSaveFailures::aFolderThatIsReadOnlyIsTold()
{
    const auto source = desk->OpenZip(SmallRawZip());
    const QByteArray before = ReadFile(desk->Path());
    const QByteArray folder = QFile::encodeName(desk->Folder());
    QCOMPARE(::chmod(QFile::encodeName(desk->Path()).constData(), 0666), 0);
    QCOMPARE(::chmod(folder.constData(), 0555), 0);
    const QString complaint = InChild([&]() -> QByteArray {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0 && ::setuid(nobody) != 0)
            return "skip: root may write everywhere";
        const SaveResult result = SavePackage(*source, DocumentChange(), desk->Path());
        const SaveResult copy = SavePackage(*source, {}, desk->Path("b.ofd"));
        if (result.error.kind != PackageErrorKind::NotWritable || copy.error.kind != PackageErrorKind::NotWritable)
            return "another error: " + result.error.text.toUtf8() + ", " + copy.error.text.toUtf8();
        return result.error.text == QLatin1String("The folder or the file is write-protected.") ? "" : "another text";
    });
    QCOMPARE(::chmod(folder.constData(), 0700), 0);
    if (complaint.startsWith(QLatin1String("skip")))
        QSKIP(qPrintable(complaint));
    QCOMPARE(complaint, QString());
    QCOMPARE(ReadFile(desk->Path()), before);
    QCOMPARE(desk->FilesLeft(), QStringList(QStringLiteral("a.ofd")));
}

void TestPackageSaveFailures::targetsThatCannotBeWrittenAreTold()
{
    const auto source = desk->OpenZip(SmallRawZip());
    QCOMPARE(SavePackage(*source, {}, desk->Path("no/such/folder/a.ofd")).error.kind, PackageErrorKind::NotWritable);
    QCOMPARE(SavePackage(*source, {}, desk->Folder()).error.kind, PackageErrorKind::NotWritable);
    QCOMPARE(SavePackage(*source, {}, QStringLiteral("/proc/a.ofd")).error.kind, PackageErrorKind::NotWritable);
    QCOMPARE(desk->FilesLeft(), QStringList(QStringLiteral("a.ofd")));
}

TETO_TEST_MAIN(TestPackageSaveFailures)
#include "test_package_save_failures.moc"
