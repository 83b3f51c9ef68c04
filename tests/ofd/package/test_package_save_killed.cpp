#include "package_desk.h"

#include <ofd/package/package_writer.h>
#include <ofd/package/target_file.h>
#include <tests/support/test_main.h>

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QtTest>

#include <atomic>
#include <csignal>
#include <new>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace ofd;

namespace {

// Two contents in turn; a file that is killed on its way to one of them holds one of them, or what it began with.
const QByteArray Contents[] = {"<Document>first</Document>", "<Document>" + QByteArray(5000, 's') + "</Document>"};

// Where a child process is: it is killed at a moment that nobody chose, and the test must know what that hit.
struct Stage
{
    enum : int { Between, Writing, Finishing };
};

// A number that a child process shares with the test.
class SharedStage
{
public:
    SharedStage()
    {
        void* memory = ::mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1,
                              0); // owned
        if (memory == MAP_FAILED)
            qFatal("no shared memory");
        stage = new (memory) std::atomic<int>(Stage::Between);
    }
    ~SharedStage() { ::munmap(stage, sizeof(std::atomic<int>)); }
    SharedStage(const SharedStage&) = delete;
    SharedStage& operator=(const SharedStage&) = delete;

    void Set(int value) const { *stage = value; }
    int Get() const { return *stage; }

private:
    std::atomic<int>* stage; // in the shared memory
};

// Saves the two contents in turn until it is killed.
[[noreturn]] void SaveForEver(const QString& path, const SharedStage& stage)
{
    SaveOptions options;
    options.progress = [&stage](qint64 done, qint64 total) {
        stage.Set(done < total ? Stage::Writing : Stage::Finishing);
        return true;
    };
    for (int turn = 0;; ++turn) {
        const auto source = Package::Open(path);
        stage.Set(Stage::Writing);
        if (!source || !SavePackage(*source, DocumentChange(Contents[turn % 2]), path, options))
            ::_exit(1);
        stage.Set(Stage::Between);
    }
}

// How long a save takes here and now; the file holds its content again after that.
int TypicalSave(const QString& path, const QByteArray& content)
{
    constexpr int rounds = 20;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < rounds; ++i) {
        if (!SavePackage(*Package::Open(path), DocumentChange(content), path))
            qFatal("the file cannot be saved");
    }
    return int(timer.nsecsElapsed() / 1000 / rounds) + 1;
}

} // namespace

// A process that is killed while it saves leaves the old file or the new one, never half of one.
class TestPackageSaveKilled : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<PackageDesk> desk;

private slots:
    void init() { desk = std::make_unique<PackageDesk>(); }

    void aKilledSaveLeavesTheOriginal_data();
    void aKilledSaveLeavesTheOriginal();
    void killedAtAnyMomentTheFileIsTheOldOrTheNewOne_data();
    void killedAtAnyMomentTheFileIsTheOldOrTheNewOne();
    void aSaveClearsUpAfterTheKilledOnly();
    void filesThatAreNamedAtOnceSaveTheSame();
};

void TestPackageSaveKilled::aKilledSaveLeavesTheOriginal_data()
{
    QTest::addColumn<bool>("isNamed");
    QTest::newRow("without a name until it is complete") << false;
    QTest::newRow("named at once") << true;
}

void TestPackageSaveKilled::aKilledSaveLeavesTheOriginal()
{
    QFETCH(const bool, isNamed);
    const int unnamed = ::open(desk->Folder().toLocal8Bit().constData(), O_RDWR | O_TMPFILE, 0600);
    if (unnamed < 0 && !isNamed)
        QSKIP("the file system here has no files without a name");
    ::close(unnamed);
    RawZip zip = OddRawZip();
    const auto source = desk->OpenZip(zip);
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
            SavePackage(*source, DocumentChange(), desk->Path(), options);
            ::_exit(0);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(ReadFile(desk->Path()), zip.Build());
        // Each save clears up after the one before.
        QCOMPARE(desk->FilesLeft().size(), isNamed ? 2 : 1);
    }
    QVERIFY(SavePackage(*source, DocumentChange(), desk->Path()));
    QCOMPARE(desk->FilesLeft(), QStringList(QStringLiteral("a.ofd")));
}

void TestPackageSaveKilled::killedAtAnyMomentTheFileIsTheOldOrTheNewOne_data()
{
    QTest::addColumn<int>("bigBytes");
    QTest::newRow("what is copied") << 6'000'000;
    QTest::newRow("what may be shared or go straight to the disk") << 20'000'000;
}

// 200 moments in all.
void TestPackageSaveKilled::killedAtAnyMomentTheFileIsTheOldOrTheNewOne()
{
    QFETCH(const int, bigBytes);
    RawZip zip = OddRawZip();
    const QByteArray big(bigBytes, 'b'); // takes its time
    zip.Add("big.bin", big).isStored = true;
    WriteFile(desk->Path(), zip.Build());
    const QByteArray original = Package::Open(desk->Path())->Read(DocumentName).bytes;
    const SharedStage stage;
    const int saveMicroseconds = TypicalSave(desk->Path(), original);
    const quint32 seed = QRandomGenerator::system()->generate();
    QRandomGenerator random(seed);
    QMap<int, int> killedIn;
    for (int round = 0; round < 100; ++round) {
        stage.Set(Stage::Between);
        const pid_t child = ::fork();
        if (child == 0)
            SaveForEver(desk->Path(), stage);
        while (stage.Get() == Stage::Between && ::waitpid(child, nullptr, WNOHANG) == 0)
            ::usleep(50);
        // Most of a save is waiting for the disk at its end, so every other round looks at its beginning.
        ::usleep(useconds_t(random.bounded(round % 2 ? saveMicroseconds / 5 + 1 : 3 * saveMicroseconds)));
        ::kill(child, SIGKILL);
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY2(WIFSIGNALED(status), "the child could not save");
        ++killedIn[stage.Get()];
        const auto package = Package::Open(desk->Path());
        QVERIFY2(package, qPrintable(QStringLiteral("seed %1, round %2").arg(seed).arg(round)));
        const QByteArray now = package->Read(DocumentName).bytes;
        QVERIFY(now == Contents[0] || now == Contents[1] || now == original);
        QCOMPARE(package->Read(QStringLiteral("big.bin")).bytes, big);
        QVERIFY(desk->FilesLeft().size() <= 2); // what was killed just before its renaming goes with the next save
    }
    qInfo() << "killed between saves, while writing, behind that:" << killedIn;
    QVERIFY(killedIn[Stage::Writing] > 0);
    QVERIFY(killedIn[Stage::Writing] + killedIn[Stage::Finishing] >= 25);
    QVERIFY(SavePackage(*Package::Open(desk->Path()), DocumentChange(), desk->Path()));
    QCOMPARE(desk->FilesLeft(), QStringList(QStringLiteral("a.ofd")));
}

void TestPackageSaveKilled::aSaveClearsUpAfterTheKilledOnly()
{
    const auto source = desk->OpenZip(OddRawZip());
    const pid_t dead = ::fork();
    if (dead == 0)
        ::_exit(0);
    QCOMPARE(::waitpid(dead, nullptr, 0), dead);
    const QByteArray stem = ".saving-" + QByteArray::number(dead);
    const QByteArray left = stem + "-left.tmp";
    const QByteArray locked = stem + "-locked.tmp"; // somebody writes it, though not on this machine
    const QByteArray living = ".saving-" + QByteArray::number(::getpid()) + "-living.tmp";
    for (const QByteArray& name : {left, locked, living, stem + "-notes.txt", QByteArray(".saving-old.tmp")})
        WriteFile(desk->Path(name.constData()), "bytes");
    QFile writer(desk->Path(locked.constData()));
    QVERIFY(writer.open(QIODevice::ReadWrite));
    QCOMPARE(::flock(writer.handle(), LOCK_EX), 0);
    QCOMPARE(::symlink("a.ofd", desk->Path((stem + "-link.tmp").constData()).toLocal8Bit().constData()), 0);
    const int before = desk->FilesLeft().size();
    QVERIFY(SavePackage(*source, DocumentChange(), desk->Path()));
    QVERIFY(!desk->FilesLeft().contains(QString::fromLatin1(left)));
    QCOMPARE(desk->FilesLeft().size(), before - 1);
}

void TestPackageSaveKilled::filesThatAreNamedAtOnceSaveTheSame()
{
    const auto source = desk->OpenZip(OddRawZip());
    QVERIFY(SavePackage(*source, DocumentChange(), desk->Path("unnamed.ofd")));
    TargetFile::SetAlwaysNamed(true);
    const SaveResult named = SavePackage(*source, DocumentChange(), desk->Path("named.ofd"));
    const SaveResult failed =
        SavePackage(*source, DocumentChange("<Document>"), desk->Path("failed.ofd")); // goes again when it fails
    TargetFile::SetAlwaysNamed(false);
    QVERIFY(named);
    QVERIFY(!failed);
    QCOMPARE(ReadFile(desk->Path("named.ofd")).size(), ReadFile(desk->Path("unnamed.ofd")).size());
    QCOMPARE(desk->FilesLeft(),
             QStringList({QStringLiteral("a.ofd"), QStringLiteral("named.ofd"), QStringLiteral("unnamed.ofd")}));
}

TETO_TEST_MAIN(TestPackageSaveKilled)
#include "test_package_save_killed.moc"
